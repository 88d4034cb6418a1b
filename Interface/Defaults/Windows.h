// Windows: their state, size and root view, and a default for each behaviour.
#pragma once

#include <utility>

#include "Common.h"

namespace NSMorvane {

// The operations that all kinds of windows have, selected by the kind.
template <class TKind>
struct TWindowTraits;
template <>
struct TWindowTraits<IDocumentWindow> {
  using TState = TDocumentWindowState;
  static constexpr auto kGetState = &IDocumentWindow::IDocumentWindow_GetState;
  static constexpr auto kSetState = &IDocumentWindow::IDocumentWindow_SetState;
  static constexpr auto kGetWindow = &IDocumentWindow::IDocumentWindow_GetWindow;
};
template <>
struct TWindowTraits<IModelessDialog> {
  using TState = TModelessDialogState;
  static constexpr auto kGetState = &IModelessDialog::IModelessDialog_GetState;
  static constexpr auto kSetState = &IModelessDialog::IModelessDialog_SetState;
  static constexpr auto kGetWindow = &IModelessDialog::IModelessDialog_GetWindow;
};
template <>
struct TWindowTraits<IModalDialog> {
  using TState = TModalDialogState;
  static constexpr auto kGetState = &IModalDialog::IModalDialog_GetState;
  static constexpr auto kSetState = &IModalDialog::IModalDialog_SetState;
  static constexpr auto kGetWindow = &IModalDialog::IModalDialog_GetWindow;
};
template <>
struct TWindowTraits<IFloatingWindow> {
  using TState = TFloatingWindowState;
  static constexpr auto kGetState = &IFloatingWindow::IFloatingWindow_GetState;
  static constexpr auto kSetState = &IFloatingWindow::IFloatingWindow_SetState;
  static constexpr auto kGetWindow = &IFloatingWindow::IFloatingWindow_GetWindow;
};

// Changes a part of a window's state and keeps the rest:
//   ChangeState(window, [](auto& state) { CopyText(state.fTitle, u"Hello"); });
template <class TKind, class TChange>
TError ChangeState(TKind& window, TChange&& change) {
  typename TWindowTraits<TKind>::TState state;
  const TError error = (window.*TWindowTraits<TKind>::kGetState)(state);
  if (error != kOK) return error;
  change(state);
  return (window.*TWindowTraits<TKind>::kSetState)(state);
}

// The interface that all kinds of windows share, and the root view of a window. They throw XFailed, but only
// for a window that is broken.
template <class TKind>
IWindow& WindowOf(TKind& window) {
  IWindow* common = nullptr;
  ThrowIfFailed((window.*TWindowTraits<TKind>::kGetWindow)(common));
  return *common;
}
template <class TKind>
IView& RootViewOf(TKind& window) {
  IView* root = nullptr;
  ThrowIfFailed(WindowOf(window).IWindow_GetRootView(root));
  return *root;
}

// The frame rectangle of a window in this state when it is neither minimized nor maximized, in screen
// coordinates.
template <class TPlacement>
TRect ShownRect(const TWindowState<TPlacement>& state) {
  const TPlacement& placement = state.fPlacement;
  return placement.fZoomState == kWindowStateIdeal ? placement.fIdealRect : placement.fUserRect;
}

// Gives the client area a size in pixels. The top left corner of the window stays where it is. For a document
// window that is not shown yet, this is the size if it has a menu bar of one row.
template <class TKind>
TError SetClientSize(TKind& window, const TSize& size) {
  return Guarded([&] {
    TRect frame = {};
    ThrowIfFailed(WindowOf(window).IWindow_ClientRectToFrameRect({0, 0, size.fWidth, size.fHeight}, frame));
    return ChangeState(window, [&](auto& state) {
      const TRect old = ShownRect(state);
      state.fPlacement.fUserRect = {old.fLeft, old.fTop, old.fLeft + WidthOf(frame),
                                    old.fTop + HeightOf(frame)};
      state.fPlacement.fZoomState = kWindowStateUser;
    });
  });
}

// What the factories do with a window that its behaviour has not placed; see Placement.h.
enum TFirstPlace {
  kFirstPlaceAsMade,    // nothing: it appears where the system puts it
  kFirstPlaceCascaded,  // in a cascade with the other documents
  kFirstPlaceCentred,   // in the middle of its owner
  kFirstPlaceBeside     // beside the front document
};

// --- Defaults

// Closes when it is asked to.
class CDefaultDocumentWindowBehavior : public IDocumentWindowBehavior {
 public:
  static constexpr TFirstPlace kFirstPlace = kFirstPlaceCascaded;
  explicit CDefaultDocumentWindowBehavior(IDocumentWindow& window) : fWindow(window) {}
  TError IDocumentWindowBehavior_OnClientSizeChanged(const TSize&, const TSize&) override { return kOK; }
  TError IDocumentWindowBehavior_OnPlacementChanged(const TDocumentWindowPlacement&,
                                                    const TDocumentWindowPlacement&) override {
    return kOK;
  }
  TError IDocumentWindowBehavior_OnActivationChanged(TFlag) override { return kOK; }
  TError IDocumentWindowBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IDocumentWindowBehavior_OnKeyboardFocusChanged(TFlag) override { return kOK; }
  TError IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState&) override { return kOK; }
  TError IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IDocumentWindowBehavior_OnHelpRequested(TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IDocumentWindowBehavior_OnRequestClose(TCloseReason) override {
    return fWindow.IDocumentWindow_Release();
  }

 protected:
  IDocumentWindow& fWindow;
};

class CDefaultModelessDialogBehavior : public IModelessDialogBehavior {
 public:
  static constexpr TFirstPlace kFirstPlace = kFirstPlaceCentred;
  explicit CDefaultModelessDialogBehavior(IModelessDialog& window) : fWindow(window) {}
  TError IModelessDialogBehavior_OnClientSizeChanged(const TSize&, const TSize&) override { return kOK; }
  TError IModelessDialogBehavior_OnPlacementChanged(const TModelessDialogPlacement&,
                                                    const TModelessDialogPlacement&) override {
    return kOK;
  }
  TError IModelessDialogBehavior_OnActivationChanged(TFlag) override { return kOK; }
  TError IModelessDialogBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IModelessDialogBehavior_OnKeyboardFocusChanged(TFlag) override { return kOK; }
  TError IModelessDialogBehavior_OnSetupMenuBar(IMenuBarState&) override { return kOK; }
  TError IModelessDialogBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IModelessDialogBehavior_OnHelpRequested(TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IModelessDialogBehavior_OnRequestClose(TCloseReason) override {
    return fWindow.IModelessDialog_Release();
  }

 protected:
  IModelessDialog& fWindow;
};

class CDefaultModalDialogBehavior : public IModalDialogBehavior {
 public:
  static constexpr TFirstPlace kFirstPlace = kFirstPlaceCentred;
  explicit CDefaultModalDialogBehavior(IModalDialog& window) : fWindow(window) {}
  TError IModalDialogBehavior_OnClientSizeChanged(const TSize&, const TSize&) override { return kOK; }
  TError IModalDialogBehavior_OnPlacementChanged(const TModalDialogPlacement&,
                                                 const TModalDialogPlacement&) override {
    return kOK;
  }
  TError IModalDialogBehavior_OnActivationChanged(TFlag) override { return kOK; }
  TError IModalDialogBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IModalDialogBehavior_OnKeyboardFocusChanged(TFlag) override { return kOK; }
  TError IModalDialogBehavior_OnSetupMenuBar(IMenuBarState&) override { return kOK; }
  TError IModalDialogBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IModalDialogBehavior_OnHelpRequested(TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IModalDialogBehavior_OnRequestClose(TCloseReason) override { return fWindow.IModalDialog_Release(); }

 protected:
  IModalDialog& fWindow;
};

class CDefaultFloatingWindowBehavior : public IFloatingWindowBehavior {
 public:
  static constexpr TFirstPlace kFirstPlace = kFirstPlaceBeside;
  explicit CDefaultFloatingWindowBehavior(IFloatingWindow& window) : fWindow(window) {}
  TError IFloatingWindowBehavior_OnClientSizeChanged(const TSize&, const TSize&) override { return kOK; }
  TError IFloatingWindowBehavior_OnPlacementChanged(const TFloatingWindowPlacement&,
                                                    const TFloatingWindowPlacement&) override {
    return kOK;
  }
  TError IFloatingWindowBehavior_OnActivationChanged(TFlag) override { return kOK; }
  TError IFloatingWindowBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IFloatingWindowBehavior_OnKeyboardFocusChanged(TFlag) override { return kOK; }
  TError IFloatingWindowBehavior_OnSetupMenuBar(IMenuBarState&) override { return kOK; }
  TError IFloatingWindowBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IFloatingWindowBehavior_OnHelpRequested(TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IFloatingWindowBehavior_OnRequestClose(TCloseReason) override {
    return fWindow.IFloatingWindow_Release();
  }

 protected:
  IFloatingWindow& fWindow;
};

}  // namespace NSMorvane
