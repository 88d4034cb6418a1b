#include "SketchApplication.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "SketchClipboard.h"
#include "SketchCommands.h"
#include "SketchDialogs.h"
#include "SketchFiles.h"
#include "SketchPalette.h"
#include "SketchPropertiesDialog.h"
#include "SketchTextMeasure.h"
#include "SketchTheme.h"
#include "SketchWindow.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TStyleFlags kDocumentStyle = kWindowResizableBit | kWindowZoomableBit;
constexpr std::uint32_t kMessagePaletteAbove = 1;
constexpr std::uint32_t kMessageShowPalette = 2;
constexpr TPoint kPaletteCorner = {10, 24};  // in the client area of the document in front
constexpr std::int64_t kScrollIntervalMS = 25;
constexpr std::int32_t kSheetMargin = 20;  // around what comes from the clipboard
constexpr std::int32_t kShiftOfPastes = 10;

}  // namespace

CSketchApplication::CSketchApplication(IMorvane& morvane)
    : CDefaultApplication(morvane), fDebugging(CSketchDebugging::IfWanted(morvane)), fScrollTimer(morvane) {
  fStyle.fKind = TShapeKind::kRectangle;
  fStyle.fWidth = 3;
  fStyle.fFill = 0x7FB2F0;
  fStyle.fSize = 24;
}

TError CSketchApplication::IMorvaneRunBehavior_OnQuitEvent() {
  if (!IsQuitting()) return CDefaultApplication::IMorvaneRunBehavior_OnQuitEvent();
  return Guarded([&] {
    GoOnQuitting();
    return TError{kOK};
  });
}

TError CSketchApplication::IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) {
  return Guarded([&] {
    OpenUntitled();
    return TError{kOK};
  });
}

TError CSketchApplication::IMorvaneRunBehavior_OnOpenURL(const char* url) {
  return Guarded([&] {
    OpenFile(PathOfURL(url));
    return TError{kOK};
  });
}

TError CSketchApplication::IMorvaneRunBehavior_OnAppMessage(std::uint32_t message, std::uint32_t rounds) {
  if (message == kMessageShowPalette) {
    return Guarded([&] {
      if (!fWindows.empty() && !IsQuitting()) ShowPalette(true);
      return TError{kOK};
    });
  }
  if (message != kMessagePaletteAbove || !fPalette) return kOK;
  fPalette->StayAbove();
  return rounds > 0 ? fMorvane.IMorvane_PostAppMessage(kMessagePaletteAbove, rounds - 1) : kOK;
}

// Says so once; what else fails until the user has answered has most likely the same cause.
TError CSketchApplication::IMorvaneRunBehavior_OnUnhandledError(TError error) {
  if (fIsReporting || IsQuitting()) return kOK;
  fIsReporting = true;
  const TError told = Guarded([&] {
    ShowAlert(
        {fMorvane, nullptr}, kAlertStop, u"Something could not be done.",
        u"There may be too little memory. Save your documents.\nError " + AsciiText(std::to_string(error)));
    return TError{kOK};
  });
  fIsReporting = false;
  return told;
}

// --- Documents

void CSketchApplication::OpenUntitled(std::unique_ptr<CSketchDocument> document) {
  ++fUntitledCount;
  std::u16string name = u"Untitled";
  if (fUntitledCount > 1) name += u" " + AsciiText(std::to_string(fUntitledCount));
  ThrowIfFailed(CreateDocumentWindow<CSketchWindow>(fMorvane, kDocumentStyle, fMorvane, *this,
                                                    std::move(document), std::u16string(), name));
}

// Over the document in front, unless that has a dialog already.
TDialogPlace CSketchApplication::PlaceOfAlert() const {
  return fFront && !fFront->IsBlocked() ? fFront->DialogPlace() : TDialogPlace{fMorvane, nullptr};
}

// The shapes are not in the document from the start, so that it has something to be saved.
void CSketchApplication::OpenFromClipboard() {
  const CSketchDocument pasted = PastedShapes(fMorvane, fStyle);
  std::vector<TShape> shapes = pasted.CopyOfShapes();
  if (shapes.empty()) {
    ShowNothingToPaste(PlaceOfAlert());
    return;
  }
  TSketchRect frame = FrameOf(shapes.front(), TextMeasure());
  for (const TShape& shape : shapes) frame = UnionOf(frame, FrameOf(shape, TextMeasure()));
  for (TShape& shape : shapes) shape = MovedBy(shape, kSheetMargin - frame.fLeft, kSheetMargin - frame.fTop);
  auto document = std::make_unique<CSketchDocument>();
  const auto side = [](std::int32_t from, std::int32_t to) {
    return std::min<std::int32_t>(to - from + 2 * kSheetMargin, kMaxCanvasSide);
  };
  document->SetCanvasSize({side(frame.fLeft, frame.fRight), side(frame.fTop, frame.fBottom)});
  document->SetBackground(pasted.Background());
  OpenUntitled(std::move(document));
  fFront->Editor().Add("Paste", shapes);
}

CSketchWindow* CSketchApplication::WindowOfFile(const std::u16string& path,
                                                const CSketchWindow* except) const {
  const auto found = std::find_if(fWindows.begin(), fWindows.end(), [&](const CSketchWindow* window) {
    return window != except && IsSamePath(window->Path(), path);
  });
  return found == fWindows.end() ? nullptr : *found;
}

void CSketchApplication::OpenFile(const std::u16string& givenPath) {
  const std::u16string path = FullPath(givenPath);
  if (CSketchWindow* const window = WindowOfFile(path)) {
    NoteRecentFile(path);
    window->Focus();
    return;
  }
  auto document = std::make_unique<CSketchDocument>();
  std::u16string message;
  if (!LoadSketch(path, *document, message)) {
    fRecentFiles.Remove(path);
    UpdateMenus();
    ShowAlert(PlaceOfAlert(), kAlertCaution, u"\"" + NameOfPath(path) + u"\" cannot be opened.",
              message + u"\n" + path);
    return;
  }
  ThrowIfFailed(CreateDocumentWindow<CSketchWindow>(fMorvane, kDocumentStyle, fMorvane, *this,
                                                    std::move(document), path, NameOfPath(path)));
  NoteRecentFile(path);
}

void CSketchApplication::OpenRecentFile(std::size_t index) {
  if (index < RecentFiles().size()) OpenFile(std::u16string(RecentFiles()[index]));
}

void CSketchApplication::NoteRecentFile(const std::u16string& path) {
  fRecentFiles.Add(path);
  UpdateMenus();
}

void CSketchApplication::UpdateMenus() {
  for (CSketchWindow* const window : fWindows) window->UpdateMenus();
}

void CSketchApplication::AskWhatToOpen(const TDialogPlace& place) {
  ShowOpenDialog(place, [this](const std::u16string& path) {
    if (!IsQuitting()) OpenFile(path);
  });
}

void CSketchApplication::ShowOpenDialog(const TDialogPlace& place, TOnPath onChosen) {
  NSSketch::ShowOpenDialog(place, std::move(onChosen));
}

void CSketchApplication::ShowSaveDialog(const TDialogPlace& place, TSaveQuestion question) {
  NSSketch::ShowSaveDialog(place, std::move(question));
}

// The palette waits until all the documents of the start are there: it is placed by the one in front.
void CSketchApplication::AddWindow(CSketchWindow& window) {
  fWindows.push_back(&window);
  fFront = &window;
  if (std::exchange(fWantsPalette, false))
    ThrowIfFailed(fMorvane.IMorvane_PostAppMessage(kMessageShowPalette, 0));
}

// The next document in front says so itself when it becomes active.
void CSketchApplication::RemoveWindow(CSketchWindow& window) {
  std::erase(fWindows, &window);
  if (fScrolling == &window) fScrolling = nullptr;
  if (fQuitWindow == &window) fQuitWindow = nullptr;
  if (fFront != &window) return;
  fFront = fWindows.empty() ? nullptr : fWindows.back();
  // The window is going, and nothing may keep it from that.
  Guarded([&] {
    if (fProperties) fProperties->Refresh();
    return TError{kOK};
  });
}

void CSketchApplication::SetFront(CSketchWindow& window) {
  if (fFront == &window) return;
  fFront = &window;
  if (fProperties) fProperties->Refresh();
}

void CSketchApplication::FocusFront() {
  if (fFront) fFront->Focus();
}

void CSketchApplication::OnDocumentChanged(const CSketchWindow& window) {
  if (fProperties && &window == fFront) fProperties->Refresh();
}

bool CSketchApplication::PerformShortcut(const TKeyEvent& event, bool alsoPlain) {
  const auto command = CommandOfKey(fMorvane, event, alsoPlain);
  if (!command || !fFront || fFront->IsBlocked() || !fFront->IsCommandEnabled(*command)) return false;
  fFront->Perform(*command);
  return true;
}

void CSketchApplication::KeepScrolling(CSketchWindow& window) {
  if (fScrolling) return;
  ThrowIfFailed(fScrollTimer.CallEvery(kScrollIntervalMS, [this] { return ScrollOn(); }));
  fScrolling = &window;
}

// It goes on while the mouse rests.
TError CSketchApplication::ScrollOn() {
  return Guarded([&] {
    if (fScrolling && fScrolling->ScrollWithDrag()) return TError{kOK};
    fScrolling = nullptr;
    fScrollTimer.Stop();
    return TError{kOK};
  });
}

// --- Quitting

bool CSketchApplication::IsQuitting() const {
  TFlag isQuitting = 0;
  return fMorvane.IMorvane_IsQuitting(isQuitting) == kOK && isQuitting == 1;
}

TError CSketchApplication::OnRequestClose(TCloseReason reason, CSketchWindow* window,
                                          const std::function<void()>& close) {
  return Guarded([&] {
    if (reason == kCloseByLibrary) {
      fQuitWindow = window;
      GoOnQuitting();
    } else {
      close();
    }
    return TError{kOK};
  });
}

void CSketchApplication::GoOnQuitting() {
  for (CSketchWindow* const window : fWindows)
    if (window->AskBeforeQuitting()) return;
  // Nothing is in the way any more. The library goes on with the next window when this one has gone.
  if (fPalette) fPalette->Close();
  if (fProperties) fProperties->Close();
  if (fQuitWindow) std::exchange(fQuitWindow, nullptr)->Close();
}

void CSketchApplication::StopQuitting() {
  if (!IsQuitting()) return;
  ThrowIfFailed(fMorvane.IMorvane_StopQuitting());
  fQuitWindow = nullptr;
  for (CSketchWindow* const window : fWindows) window->ForgetAnswer();
}

// --- What all documents share

void CSketchApplication::ChooseTool(TSketchTool tool) {
  fTool = tool;
  for (CSketchWindow* const window : fWindows) window->OnToolChanged();
  if (fPalette) fPalette->OnToolChanged();
}

// --- The clipboard

TError CSketchApplication::IMorvaneRunBehavior_OnAppActivation(TFlag active) {
  if (active == 0) return kOK;
  return Guarded([&] {
    LookAtClipboard();
    return TError{kOK};
  });
}

void CSketchApplication::LookAtClipboard() {
  fCanPaste = CanPasteShapes(fMorvane);
  UpdateMenus();
}

std::vector<TShape> CSketchApplication::ShapesToPaste() {
  std::vector<TShape> shapes = PastedShapes(fMorvane, fStyle).CopyOfShapes();
  if (const DWORD number = ::GetClipboardSequenceNumber(); std::exchange(fPasted, number) != number)
    fPasteCount = 0;
  TSketchPoint move = {fPasteCount * kShiftOfPastes, fPasteCount * kShiftOfPastes};
  ++fPasteCount;
  for (const TShape& shape : shapes) move = PossibleMove(shape, move);
  for (TShape& shape : shapes) shape = MovedBy(shape, move.fX, move.fY);
  return shapes;
}

// --- Other windows

// The window that is active stays it.
void CSketchApplication::ShowPalette(bool shown) {
  if (shown == IsPaletteShown()) return;
  if (shown) {
    const HWND active = ::GetActiveWindow();
    CFloatingWindowFactory<CSketchPalette, IMorvane&, CSketchApplication&> factory(fMorvane, *this);
    TError error = kOK;
    fMorvane.IMorvane_CreateFloatingWindow(factory, kFloatingWindowCloseBoxBit, error);
    ThrowIfFailed(error);
    fPalette = factory.Made();
    if (active)
      ::SetActiveWindow(active);
    else
      FocusFront();
    KeepPaletteAbove();
  } else {
    fPalette->Close();
  }
  if (fFront) fFront->UpdateMenus();
}

void CSketchApplication::OnPaletteClosed(const CSketchPalette& palette) {
  if (fPalette != &palette) return;
  fPalette = nullptr;
  if (fFront) fFront->UpdateMenus();
}

void CSketchApplication::OnPropertiesClosed(const CSketchPropertiesDialog& properties) {
  if (fProperties == &properties) fProperties = nullptr;
}

// When the activation is through, and what it has brought about.
void CSketchApplication::KeepPaletteAbove() {
  if (fPalette) ThrowIfFailed(fMorvane.IMorvane_PostAppMessage(kMessagePaletteAbove, 2));
}

void CSketchApplication::ShowProperties() {
  if (fProperties) {
    fProperties->Focus();
    return;
  }
  CModelessDialogFactory<CSketchPropertiesDialog, IMorvane&, CSketchApplication&> factory(fMorvane, *this);
  TError error = kOK;
  fMorvane.IMorvane_CreateModelessDialog(factory, kModelessDialogCloseBoxBit, 0, error);
  ThrowIfFailed(error);
  fProperties = factory.Made();
}

void CSketchApplication::ShowAbout() { NSSketch::ShowAbout({fMorvane, nullptr}); }

TRect CSketchApplication::FrontFrame() const {
  return fFront ? FrameOnScreen(fFront->Window()) : TRect{0, 0, 800, 600};
}

TPoint CSketchApplication::PlaceOfPalette(const TSize& size) const {
  const TPoint corner = fFront ? ClientCornerOnScreen(fFront->Window()) : TPoint{0, 0};
  return {corner.fX + kPaletteCorner.fX + size.fWidth / 2, corner.fY + kPaletteCorner.fY + size.fHeight / 2};
}

TPoint CSketchApplication::PlaceOfProperties(const TSize& size) const {
  const TRect frame = FrontFrame();
  return {frame.fRight - kSidePanelWidth - size.fWidth / 2 - 24, frame.fTop + 90 + size.fHeight / 2};
}

}  // namespace NSSketch
