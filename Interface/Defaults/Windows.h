// Windows: their state, their root view, a document window in one call, and a default for each behaviour.
#pragma once

#include <utility>

#include "Factories.h"

namespace NSMorvane {

// The operations that all kinds of windows have, found by the kind.
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

// Changes something of a window's state and leaves the rest:
//   ChangeState(window, [](auto& state) { CopyText(state.fTitle, u"Hello"); });
template <class TKind, class TChange>
TError ChangeState(TKind& window, TChange&& change) {
  typename TWindowTraits<TKind>::TState state;
  const TError error = (window.*TWindowTraits<TKind>::kGetState)(state);
  if (error != kOK) return error;
  change(state);
  return (window.*TWindowTraits<TKind>::kSetState)(state);
}

// What a window of any kind has in common with the others, and the view that all its views hang under. They
// throw XFailed, and only for a window that is broken.
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

// Makes and shows a document window whose behaviour is a TBehavior, made of the window and `arguments`; it is
// listed in window menus. The window lives until it is released: by its behaviour, as a rule.
template <class TBehavior, class... TArguments>
TError CreateDocumentWindow(IMorvane& morvane, TStyleFlags style, TArguments&&... arguments) {
  CDocumentWindowFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
  TError error = kOK;
  morvane.IMorvane_CreateDocumentWindow(factory, style, 1, error);
  return error;
}

// --- Defaults

// Closes when it is asked to.
class CDefaultDocumentWindowBehavior : public IDocumentWindowBehavior {
 public:
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
