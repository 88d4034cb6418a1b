// A document's window and its file: saving, and closing without losing anything.
#include "SketchApplication.h"
#include "SketchDialogs.h"
#include "SketchFiles.h"
#include "SketchWindow.h"

namespace NSSketch {

using namespace NSMorvane;

bool CSketchWindow::Save() { return SaveTo(fPath); }

bool CSketchWindow::SaveTo(const std::u16string& path) {
  std::u16string message;
  if (!SaveSketch(path, fEditor.Document(), message)) {
    ShowMessage(DialogPlace(), {u"Sketch", NameOfPath(path) + u" was not saved", {message, path}, {u"OK"}},
                [](std::size_t) {});
    return false;
  }
  fPath = path;
  fName = NameOfPath(path);
  fEditor.MarkSaved();
  ThrowIfFailed(ChangeState(fWindow, [&](TDocumentWindowState& state) { CopyText(state.fTitle, fName); }));
  return true;
}

void CSketchWindow::AskWhereToSave(bool thenClose) {
  const std::u16string path = fPath.empty() ? fName + u".sketch" : fPath;
  AskForPath(DialogPlace(), u"Save As", u"Save", FullPath(path),
             fLife.WhileAlive([this, thenClose](const std::u16string& chosen) {
               fIsAsking = false;
               SaveAs(FullPath(chosen), thenClose);
             }),
             thenClose ? std::function<void()>(fLife.WhileAlive([this] { GiveUpClosing(); }))
                       : std::function<void()>());
  fIsAsking = thenClose;
}

// A file that another window shows is not written over, and any other only if the user says so.
void CSketchWindow::SaveAs(const std::u16string& path, bool thenClose) {
  if (fApplication.WindowOfFile(path, this)) {
    if (thenClose) GiveUpClosing();
    ShowMessage(DialogPlace(),
                {u"Sketch",
                 fName + u" was not saved",
                 {NameOfPath(path) + u" is open in another window.", path},
                 {u"OK"}},
                fLife.WhileAlive([this, path](std::size_t) {
                  if (CSketchWindow* const other = fApplication.WindowOfFile(path, this)) other->Focus();
                }));
    return;
  }
  const auto save = [this, path, thenClose] {
    const bool isSaved = SaveTo(path);
    if (thenClose) isSaved ? GoOnClosing() : GiveUpClosing();
  };
  if (IsSamePath(path, fPath) || !IsFile(path)) {
    save();
    return;
  }
  ShowMessage(DialogPlace(),
              {u"Sketch",
               u"Replace " + NameOfPath(path) + u"?",
               {u"There is a file of this name already. Its contents would be lost.", path},
               {u"_Replace", u"Cancel"}},
              fLife.WhileAlive([this, save, thenClose](std::size_t answer) {
                fIsAsking = false;
                if (answer == 0)
                  save();
                else if (thenClose)
                  GiveUpClosing();
              }));
  fIsAsking = thenClose;
}

// --- Closing, and quitting

bool CSketchWindow::HasUnsavedChanges() const {
  return fEditor.IsModified() && fDiscarded != fEditor.Document().Revision();
}

void CSketchWindow::RequestClose() {
  fCanvas.FinishAll();
  if (!HasUnsavedChanges())
    Close();
  else if (!fIsAsking)
    AskWhetherToSave(false);
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
    AskWhetherToSave(true);
  }
  return true;
}

void CSketchWindow::AskWhetherToSave(bool isQuitting) {
  Focus();
  const TMessage message = {u"Sketch",
                            u"Save the changes to " + fName + u"?",
                            {isQuitting ? u"It has changes that would be lost by quitting."
                                        : u"The document has changes that are not in its file yet."},
                            {u"_Save", u"_Don't Save", u"Cancel"}};
  const auto onAnswer = [this](std::size_t answer) {
    fIsAsking = false;
    if (answer == 0 && fPath.empty()) {
      AskWhereToSave(true);
      return;
    }
    if (answer == 1) fDiscarded = fEditor.Document().Revision();
    if (answer == 1 || (answer == 0 && Save()))
      GoOnClosing();
    else
      GiveUpClosing();
  };
  ShowMessage(DialogPlace(), message, fLife.WhileAlive(onAnswer));
  fIsAsking = true;
}

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
