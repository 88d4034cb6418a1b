#include "SketchCommandWindow.h"

#include <windows.h>

#include <algorithm>

#include "SketchApplication.h"
#include "SketchDialogs.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr std::int32_t kScreenMargin = 24;  // left free around a new window

}  // namespace

void SetUpWindow(IMorvane& morvane, IDocumentWindow& window, const std::u16string& title,
                 const TSize& minimum, TSize ideal) {
  TMonitorList monitors;
  ThrowIfFailed(morvane.IMorvane_GetMonitors(monitors));
  const TRect& screen = monitors.fMonitors[monitors.fMainMonitorIndex].fWorkArea;
  TRect frame = {0, 0, 0, 0};  // around an empty client area
  ThrowIfFailed(WindowOf(window).IWindow_ClientRectToFrameRect({0, 0, 0, 0}, frame));
  const TSize room = {WidthOf(screen) - WidthOf(frame) - 2 * kScreenMargin,
                      HeightOf(screen) - HeightOf(frame) - 2 * kScreenMargin};
  ideal.fWidth = std::max(std::min(ideal.fWidth, room.fWidth), minimum.fWidth);
  ideal.fHeight = std::max(std::min(ideal.fHeight, room.fHeight), minimum.fHeight);

  ThrowIfFailed(ChangeState(window, [&](TDocumentWindowState& state) {
    CopyText(state.fTitle, title);
    state.fMinimumClientSize = minimum;
    state.fIdealClientSize = ideal;
    state.fPlacement.fZoomState = kWindowStateIdeal;
  }));
}

CSketchCommandWindow::CSketchCommandWindow(IDocumentWindow& window, IMorvane& morvane,
                                           CSketchApplication& application, const std::u16string& path)
    : CDefaultDocumentWindowBehavior(window), fMorvane(morvane), fApplication(application), fPath(path) {}

CSketchCommandWindow::~CSketchCommandWindow() { fApplication.OnCommandWindowGone(*this); }

bool CSketchCommandWindow::IsBlocked() const {
  TNativeWindow native = {nullptr};
  ThrowIfFailed(Window().IWindow_GetNativeWindow(native));
  return !::IsWindowEnabled(native.fHwnd) || !::IsWindowVisible(native.fHwnd);
}

TDialogPlace CSketchCommandWindow::DialogPlace() const {
  IModalOwner* owner = nullptr;
  ThrowIfFailed(fWindow.IDocumentWindow_GetModalOwner(owner));
  return {fMorvane, owner};
}

// --- Commands

bool CSketchCommandWindow::IsCommandEnabled(TSketchCommand command) const {
  return command == kCommandAbout || command == kCommandNew || command == kCommandOpen ||
         command == kCommandClose;
}

void CSketchCommandWindow::Perform(TSketchCommand command) {
  switch (command) {
    case kCommandAbout:
      fApplication.ShowAbout();
      break;
    case kCommandNew:
      fApplication.OpenUntitled();
      break;
    case kCommandOpen:
      AskForPath(DialogPlace(), u"Open", u"Open", fPath,
                 [&application = fApplication](const std::u16string& path) { application.OpenFile(path); });
      break;
    case kCommandClose:
      if (!IsBlocked()) RequestClose();
      break;
    default:
      break;
  }
}

// What has no place in the menus. Keys of items that cannot be chosen do nothing.
TError CSketchCommandWindow::IDocumentWindowBehavior_HandleKeyDown(const TKeyEvent& event,
                                                                   TFlag& outHandled) {
  outHandled = 0;
  return Guarded([&] {
    const auto command = CommandOfKey(fMorvane, event);
    if (!command) return TError{kOK};
    outHandled = 1;
    if (IsCommandEnabled(*command)) Perform(*command);
    return TError{kOK};
  });
}

TError CSketchCommandWindow::IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) {
  return Guarded([&] {
    FillMenuBar(state, *this);
    return TError{kOK};
  });
}

TError CSketchCommandWindow::IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event,
                                                                   TFlag& outHandled) {
  outHandled = 1;
  return Guarded([&] {
    // It may have been chosen before a dialog came.
    if (!IsBlocked()) Perform(static_cast<TSketchCommand>(event.fCommand));
    return TError{kOK};
  });
}

TError CSketchCommandWindow::IDocumentWindowBehavior_OnHelpRequested(TFlag& outHandled) {
  outHandled = 1;
  return Guarded([&] {
    if (!IsBlocked()) Perform(kCommandAbout);
    return TError{kOK};
  });
}

// --- Closing

TError CSketchCommandWindow::IDocumentWindowBehavior_OnRequestClose(TCloseReason reason) {
  return fApplication.OnRequestClose(reason, this, [this] {
    if (!IsBlocked()) RequestClose();
  });
}

}  // namespace NSSketch
