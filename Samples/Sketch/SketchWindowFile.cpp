// A document's window and its file: saving, and closing without losing anything.
#include "SketchApplication.h"
#include "SketchDialogs.h"
#include "SketchFiles.h"
#include "SketchWindow.h"

namespace NSSketch {

using namespace NSMorvane;

IModalOwner* CSketchWindow::ModalOwner() const {
  IModalOwner* owner = nullptr;
  ThrowIfFailed(fWindow.IDocumentWindow_GetModalOwner(owner));
  return owner;
}

TDialogPlace CSketchWindow::DialogPlace() const { return {fMorvane, ModalOwner(), MiddleOf(Window())}; }

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
             fLife.WhileAlive(
                 [this, thenClose](const std::u16string& chosen) { SaveAs(FullPath(chosen), thenClose); }));
}

// A file that another window shows is not written over, and any other only if the user says so.
void CSketchWindow::SaveAs(const std::u16string& path, bool thenClose) {
  if (fApplication.WindowOfFile(path, this)) {
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
    if (SaveTo(path) && thenClose) Close();
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
              fLife.WhileAlive([save](std::size_t answer) {
                if (answer == 0) save();
              }));
}

void CSketchWindow::Close() { ThrowIfFailed(fWindow.IDocumentWindow_Release()); }

TError CSketchWindow::IDocumentWindowBehavior_OnRequestClose(TCloseReason reason) {
  return Guarded([&] {
    if (IsBlocked()) return TError{kOK};
    fCanvas.FinishAll();
    if (!fEditor.IsModified())
      Close();
    else
      AskWhetherToSave(reason);
    return TError{kOK};
  });
}

// If the application is quitting, it goes on with the next window when this one has gone.
void CSketchWindow::AskWhetherToSave(TCloseReason reason) {
  Focus();
  const TMessage message = {
      u"Sketch",
      u"Save the changes to " + fName + u"?",
      {reason == kCloseByUser ? u"The document has changes that are not in its file yet."
                              : u"It has changes that would be lost by quitting."},
      {u"_Save", u"_Don't Save", u"Cancel"}};
  const auto onAnswer = [this](std::size_t answer) {
    const bool isDone = answer == 1 || (answer == 0 && !fPath.empty() && Save());
    if (isDone) {
      Close();
      return;
    }
    TFlag isQuitting = 0;
    ThrowIfFailed(fMorvane.IMorvane_IsQuitting(isQuitting));
    if (isQuitting == 1) ThrowIfFailed(fMorvane.IMorvane_StopQuitting());
    if (answer == 0 && fPath.empty()) AskWhereToSave(true);
  };
  ShowMessage(DialogPlace(), message, fLife.WhileAlive(onAnswer));
}

}  // namespace NSSketch
