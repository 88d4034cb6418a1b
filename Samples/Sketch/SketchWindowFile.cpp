// A document's window and its file: saving, and closing without losing anything.
#include "SketchApplication.h"
#include "SketchDocumentFile.h"
#include "SketchFiles.h"
#include "SketchPicture.h"
#include "SketchRendering.h"
#include "SketchWindow.h"

namespace NSSketch {

using namespace NSMorvane;

bool CSketchWindow::SaveTo(const std::u16string& path) {
  if (!Write(path, WriteSketchDocument(fEditor.Document()))) return false;
  fPath = path;
  fName = NameOfPath(path);
  fEditor.MarkSaved();
  fApplication.NoteRecentFile(path);
  ThrowIfFailed(ChangeState(fWindow, [&](TDocumentWindowState& state) { CopyText(state.fTitle, fName); }));
  return true;
}

bool CSketchWindow::Write(const std::u16string& path, const std::string& bytes) {
  std::u16string message;
  if (SaveFile(path, bytes, message)) return true;
  ShowAlert(DialogPlace(), kAlertStop, u"\"" + NameOfPath(path) + u"\" was not saved.",
            message + u"\n" + path);
  return false;
}

// Before it is closed a document needs a file of its own; a picture of it would not do. Closing and quitting
// wait for the answer.
void CSketchWindow::AskWhereToSave(bool thenClose) {
  fApplication.ShowSaveDialog(
      DialogPlace(), {fPath.empty() ? fName + u".sketch" : fPath, !thenClose,
                      fCallbacks.Bind([this, thenClose](const std::u16string& path, TSketchFileType type) {
                        fIsAsking = false;
                        SaveAs(path, type, thenClose);
                      }),
                      fCallbacks.Bind([this, thenClose] {
                        fIsAsking = false;
                        if (thenClose) GiveUpClosing();
                      })});
  fIsAsking = true;
}

// A file that another window shows is not written over.
void CSketchWindow::SaveAs(const std::u16string& path, TSketchFileType type, bool thenClose) {
  bool isSaved = false;
  if (type != TSketchFileType::kDocument)
    ExportPicture(path, type);
  else if (fApplication.WindowOfFile(path, this))
    ShowAlert(DialogPlace(), kAlertCaution, u"\"" + fName + u"\" was not saved.",
              NameOfPath(path) + u" is open in another window.\n" + path);
  else
    isSaved = SaveTo(path);
  if (thenClose) isSaved ? GoOnClosing() : GiveUpClosing();
}

void CSketchWindow::ExportPicture(const std::u16string& path, TSketchFileType type) {
  const TSketchSize size = fEditor.Document().CanvasSize();
  const TSketchPicture page = PictureOf(fEditor.Document(), {0, 0, size.fWidth, size.fHeight}, size);
  Write(path, type == TSketchFileType::kPNG ? PNGOf(page) : BMPOf(page));
}

// --- Closing, and quitting

TError CSketchWindow::IDocumentWindowBehavior_OnRequestClose(TCloseReason reason) {
  return fApplication.OnRequestClose(reason, this, [this] {
    if (!IsBlocked()) RequestClose();
  });
}

bool CSketchWindow::HasUnsavedChanges() const {
  return fEditor.IsModified() && fDiscarded != fEditor.Document().Revision();
}

void CSketchWindow::RequestClose() {
  fCanvas.FinishAll();
  if (!HasUnsavedChanges())
    Close();
  else if (!fIsAsking)
    AskWhetherToSave(kCloseByUser);
}

bool CSketchWindow::AskBeforeQuitting() {
  if (fIsAsking) {
    Focus();
    return true;
  }
  const bool isBlocked = IsBlocked();
  if (!isBlocked) fCanvas.FinishAll();
  if (!HasUnsavedChanges()) return false;
  if (isBlocked) {  // by a dialog that is to be answered first
    fApplication.StopQuitting();
    Focus();
  } else {
    AskWhetherToSave(kCloseByLibrary);
  }
  return true;
}

// [save changes]
void CSketchWindow::AskWhetherToSave(TCloseReason reason) {
  Focus();
  const auto answer = [this](void (CSketchWindow::*perform)()) {
    return fCallbacks.Bind([this, perform] {
      fIsAsking = false;
      (this->*perform)();
      return TError{kOK};
    });
  };
  ThrowIfFailed(AskToSaveChanges(fMorvane, DialogPlace().fOwner, fName, reason,
                                 {.fOnSave = answer(&CSketchWindow::SaveAndClose),
                                  .fOnDiscard = answer(&CSketchWindow::DiscardAndClose),
                                  .fOnCancel = answer(&CSketchWindow::GiveUpClosing)}));
  fIsAsking = true;
}

void CSketchWindow::SaveAndClose() {
  if (fPath.empty())
    AskWhereToSave(true);
  else if (Save())
    GoOnClosing();
  else
    GiveUpClosing();
}

void CSketchWindow::DiscardAndClose() {
  fDiscarded = fEditor.Document().Revision();
  GoOnClosing();
}
// [end]

// While the application is quitting no document goes before all have been asked.
void CSketchWindow::GoOnClosing() {
  if (fApplication.IsQuitting())
    fApplication.GoOnQuitting();
  else
    Close();
}

void CSketchWindow::GiveUpClosing() {
  fIsAsking = false;
  fDiscarded.reset();
  fApplication.StopQuitting();
}

}  // namespace NSSketch
