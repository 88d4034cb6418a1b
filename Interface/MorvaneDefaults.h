// Defaults and small helpers for clients. Optional, and header-only: nothing in it crosses the boundary to
// the library.
//
//   RunApplication          all of a main program: the root object, the run, the exit code.
//   CDefault...             a default for each behaviour that a client implements. Everything answers kOK and
//                           nothing is handled, so that a behaviour overrides just what it needs.
//   CreateDocumentWindow    a document window with a behaviour of a given type, in one call.
//   CViewOf                 a view with a behaviour of a given type, made in one call, which ends with its
//                           owner.
//   RootViewOf, ChangeState and their like: what takes two calls or more of the interfaces.
//   COpenPort, COpenPixels  the port or the pixels of a drawing, for the length of a block.
//   Guarded, ThrowIfFailed  exceptions inside the client, error codes at the boundary.
//   CopyText, TextOf        texts into and out of the fixed arrays of records.
//   C...Receiver            receivers that collect into a vector.
//   CReleasePtr             an owning pointer that ends an interface by its release operation.
//   C...Factory             factories that make a behaviour of a given type.
#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "Morvane.h"

namespace NSMorvane {

// --- Failures
//
// Nothing may be thrown across the boundary. Inside, a client may work with exceptions all the same.

// Carries an error code out of the client's own functions.
struct XFailed {
  TError fError;
};

inline void ThrowIfFailed(TError error) {
  if (error != kOK) throw XFailed{error};
}

// Calls `body`, which returns a TError, and turns what it throws into one: the code of an XFailed,
// kOutOfMemoryError, or kOtherError for anything else.
//   TError IViewBehavior_Draw(IDrawTools& tools) override {
//     return Guarded([&] { ...; return kOK; });
//   }
template <class TBody>
TError Guarded(TBody&& body) {
  try {
    return body();
  } catch (const XFailed& failed) {
    return failed.fError;
  } catch (const std::bad_alloc&) {
    return kOutOfMemoryError;
  } catch (...) {
    return kOtherError;
  }
}

// --- Texts

// Copies a text into a fixed array of a record, cut to fit, always terminated:
//   CopyText(params.fProductName, u"Sketch");
template <std::size_t kSize>
void CopyText(TChar (&destination)[kSize], std::u16string_view text) {
  destination[text.copy(destination, kSize - 1)] = 0;
}

// The text in a fixed array of a record.
template <std::size_t kSize>
std::u16string TextOf(const TChar (&text)[kSize]) {
  std::size_t length = 0;
  while (length < kSize && text[length] != 0) ++length;
  return std::u16string(text, length);
}

// ASCII to UTF-16, for numbers and the like. Other bytes become '?'.
inline std::u16string AsciiText(std::string_view ascii) {
  std::u16string text;
  for (unsigned char c : ascii) text += c < 128 ? static_cast<TChar>(c) : u'?';
  return text;
}

// --- Rectangles

inline std::int32_t WidthOf(const TRect& rect) { return rect.fRight - rect.fLeft; }
inline std::int32_t HeightOf(const TRect& rect) { return rect.fBottom - rect.fTop; }

// --- Receivers

class CTextReceiver : public ITextReceiver {
 public:
  TError ITextReceiver_ReceiveText(const TChar* text) override {
    return Guarded([&] {
      fTexts.emplace_back(text);
      return TError{kOK};
    });
  }
  // The first text, or an empty one.
  std::u16string Text() const { return fTexts.empty() ? std::u16string() : fTexts.front(); }

  std::vector<std::u16string> fTexts;
};

class CVectorViewReceiver : public IViewListReceiver {
 public:
  TError IViewListReceiver_ReceiveViews(IView* const* views, std::uint32_t count) override {
    return Guarded([&] {
      fViews.assign(views, views + count);
      return TError{kOK};
    });
  }
  std::vector<IView*> fViews;
};

class CVectorWindowReceiver : public IWindowListReceiver {
 public:
  TError IWindowListReceiver_ReceiveWindows(IWindow* const* windows, std::uint32_t count) override {
    return Guarded([&] {
      fWindows.assign(windows, windows + count);
      return TError{kOK};
    });
  }
  std::vector<IWindow*> fWindows;
};

// --- Owning pointers

inline void ReleaseInterface(IView* view) { view->IView_Release(); }
inline void ReleaseInterface(IDocumentWindow* window) { window->IDocumentWindow_Release(); }
inline void ReleaseInterface(IModelessDialog* dialog) { dialog->IModelessDialog_Release(); }
inline void ReleaseInterface(IModalDialog* dialog) { dialog->IModalDialog_Release(); }
inline void ReleaseInterface(IFloatingWindow* window) { window->IFloatingWindow_Release(); }

struct CReleaser {
  template <class TInterface>
  void operator()(TInterface* object) const {
    ReleaseInterface(object);
  }
};

// A view or a window that ends with its owner:
//   CReleasePtr<IView> view(morvane.IMorvane_CreateView(...));
// Views go before their window: declare the window first.
template <class TInterface>
using CReleasePtr = std::unique_ptr<TInterface, CReleaser>;

// --- Factories

// A factory that makes a TBehavior with the new view or window as its first argument and whatever else it was
// given:
//   CViewFactory<CGridView, CDocument&> factory(document);
// What the behaviour's constructor throws becomes an error code, as in Guarded.
template <class TBehavior, class TInterface, class... TArguments>
TBehavior* MakeBehavior(TInterface& object, TError& outError, const std::tuple<TArguments...>& arguments) {
  TBehavior* behavior = nullptr;
  outError = Guarded([&] {
    behavior = std::apply(
        [&](auto&&... argument) { return new TBehavior(object, static_cast<TArguments>(argument)...); },
        arguments);
    return TError{kOK};
  });
  return behavior;
}

template <class TBehavior, class... TArguments>
class CViewFactory : public IViewBehaviorFactory {
 public:
  explicit CViewFactory(TArguments... arguments) : fArguments(static_cast<TArguments>(arguments)...) {}
  IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView& object, TError& outError) override {
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

template <class TBehavior, class... TArguments>
class CDocumentWindowFactory : public IDocumentWindowBehaviorFactory {
 public:
  explicit CDocumentWindowFactory(TArguments... arguments)
      : fArguments(static_cast<TArguments>(arguments)...) {}
  IDocumentWindowBehavior* IDocumentWindowBehaviorFactory_CreateBehavior(IDocumentWindow& object,
                                                                         TError& outError) override {
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

template <class TBehavior, class... TArguments>
class CModelessDialogFactory : public IModelessDialogBehaviorFactory {
 public:
  explicit CModelessDialogFactory(TArguments... arguments)
      : fArguments(static_cast<TArguments>(arguments)...) {}
  IModelessDialogBehavior* IModelessDialogBehaviorFactory_CreateBehavior(IModelessDialog& object,
                                                                         TError& outError) override {
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

template <class TBehavior, class... TArguments>
class CModalDialogFactory : public IModalDialogBehaviorFactory {
 public:
  explicit CModalDialogFactory(TArguments... arguments) : fArguments(static_cast<TArguments>(arguments)...) {}
  IModalDialogBehavior* IModalDialogBehaviorFactory_CreateBehavior(IModalDialog& object,
                                                                   TError& outError) override {
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

template <class TBehavior, class... TArguments>
class CFloatingWindowFactory : public IFloatingWindowBehaviorFactory {
 public:
  explicit CFloatingWindowFactory(TArguments... arguments)
      : fArguments(static_cast<TArguments>(arguments)...) {}
  IFloatingWindowBehavior* IFloatingWindowBehaviorFactory_CreateBehavior(IFloatingWindow& object,
                                                                         TError& outError) override {
    fMade = MakeBehavior<TBehavior>(object, outError, fArguments);
    return fMade;
  }
  // What was made last; the library owns it.
  TBehavior* Made() const { return fMade; }

 private:
  std::tuple<TArguments...> fArguments;
  TBehavior* fMade = nullptr;
};

// --- Windows

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

// --- Views

// The parameters of an enabled view, with an empty rectangle until it is told where it stands.
inline TViewParams ViewParams(TViewDrawMode drawMode = kViewDrawDirect,
                              TAutoInvalidation autoInvalidation = kAutoInvalidationFull) {
  return {kViewEnabled, {0, 0, 0, 0}, drawMode, autoInvalidation};
}

// The rectangle of a view, in window client coordinates; empty if the view is broken.
inline TRect RectOf(IView& view) {
  TViewParams params = ViewParams();
  return view.IView_GetParams(params) == kOK ? params.fRect : TRect{0, 0, 0, 0};
}

inline TError SetRect(IView& view, const TRect& rect) {
  TViewParams params = ViewParams();
  const TError error = view.IView_GetParams(params);
  if (error != kOK) return error;
  params.fRect = rect;
  return view.IView_SetParams(params);
}

// A view with a behaviour of the type TBehavior. The view ends with its owner:
//   CViewOf<CGridView> fGrid;
//   ThrowIfFailed(fGrid.Create(morvane, RootViewOf(window), "Grid", ViewParams(), document));
//   fGrid->SetSpacing(20);
// The owner is the window's behaviour, say, and not the behaviour of a super view: that one waits for its
// subviews to go first, and both would stay for ever. Declare super views before their subviews.
template <class TBehavior>
class CViewOf {
 public:
  // Makes the view under `superView`, with a behaviour made of the view and `arguments`.
  template <class... TArguments>
  TError Create(IMorvane& morvane, IView& superView, const char* debugName, const TViewParams& params,
                TArguments&&... arguments) {
    CViewFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
    TError error = kOK;
    CReleasePtr<IView> view(morvane.IMorvane_CreateView(factory, superView, debugName, error));
    if (!view) return error;
    error = view->IView_SetParams(params);
    if (error != kOK) return error;
    fView = std::move(view);
    fBehavior = factory.Made();
    return kOK;
  }
  // The view, or null before Create.
  IView* View() const { return fView.get(); }
  // Its behaviour, or null.
  TBehavior* operator->() const { return fBehavior; }
  explicit operator bool() const { return fView != nullptr; }

 private:
  CReleasePtr<IView> fView;
  TBehavior* fBehavior = nullptr;
};

// --- Defaults

// Asks for no idle call before a second has passed. OnQuitEvent does nothing: override it, or derive from
// CDefaultApplication.
class CDefaultRunBehavior : public IMorvaneRunBehavior {
 public:
  TError IMorvaneRunBehavior_OnStartUp() override { return kOK; }
  TError IMorvaneRunBehavior_OnCleanUp() override { return kOK; }
  TError IMorvaneRunBehavior_OnQuitEvent() override { return kOK; }
  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override { return kOK; }
  TError IMorvaneRunBehavior_OnOpenURL(const char*) override { return kOK; }
  TError IMorvaneRunBehavior_OnSetupMenuBar(IMenuBarState&) override { return kOK; }
  TError IMorvaneRunBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IMorvaneRunBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IMorvaneRunBehavior_OnIdle(std::int64_t& inOutDelayMS) override {
    inOutDelayMS = 1000;
    return kOK;
  }
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools&) override { return kOK; }
  TError IMorvaneRunBehavior_OnEndDraw(IDrawTools&) override { return kOK; }
  TError IMorvaneRunBehavior_OnAppActivation(TFlag) override { return kOK; }
  TError IMorvaneRunBehavior_OnThemeChanged() override { return kOK; }
  TError IMorvaneRunBehavior_OnEnterMenuLoop() override { return kOK; }
  TError IMorvaneRunBehavior_OnExitMenuLoop() override { return kOK; }
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t, std::uint32_t) override { return kOK; }
  TError IMorvaneRunBehavior_OnUnhandledError(TError) override { return kOK; }
};

// Quits when it is asked to, and when its last document window has gone.
class CDefaultApplication : public CDefaultRunBehavior {
 public:
  explicit CDefaultApplication(IMorvane& morvane) : fMorvane(morvane) {}
  TError IMorvaneRunBehavior_OnQuitEvent() override { return fMorvane.IMorvane_StartQuitting(); }

 protected:
  IMorvane& fMorvane;
};

// Transparent to the mouse: override GetHitRects, or derive from CDefaultHitViewBehavior.
class CDefaultViewBehavior : public IViewBehavior {
 public:
  CDefaultViewBehavior() = default;
  explicit CDefaultViewBehavior(IView&) {}  // as factories call it: a view that only holds others
  TError IViewBehavior_Draw(IDrawTools&) override { return kOK; }
  TError IViewBehavior_PostProcessDraw(IDrawTools&) override { return kOK; }
  TError IViewBehavior_OnOffset(std::int32_t, std::int32_t) override { return kOK; }
  TError IViewBehavior_OnEffectivelyEnabledChanged(TFlag) override { return kOK; }
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag) override { return kOK; }
  TError IViewBehavior_HandleClick(const TMouseEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_GetHitRects(IRectsGetter&) override { return kOK; }
  TError IViewBehavior_OnMouseWheel(const TMouseWheelEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_OnMouseTracking(const TMouseTracking&, TMousePhase, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_OnMouseEnterExit(TFlag) override { return kOK; }
  IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest&, TMousePhase, TFlag& outHandled,
                                           TError& outError) override {
    outHandled = 0;
    outError = kOK;
    return nullptr;
  }
  TError IViewBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_OnSetupMenuBar(IMenuBarState&) override { return kOK; }
  TError IViewBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) override {
    out.fHwnd = nullptr;
    return kOK;
  }
};

// Can be hit everywhere in its rectangle.
class CDefaultHitViewBehavior : public CDefaultViewBehavior {
 public:
  explicit CDefaultHitViewBehavior(IView& view) : fView(view) {}
  TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
    TViewParams params;
    const TError error = fView.IView_GetParams(params);
    return error == kOK ? out.IRectsGetter_AddRects(&params.fRect, 1) : error;
  }

 protected:
  IView& fView;
};

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

class CDefaultMouseCapture : public IMouseCapture {
 public:
  TError IMouseCapture_OnMouseDown(const TMouseEvent&) override { return kOK; }
  TError IMouseCapture_OnMouseUp(const TMouseEvent&) override { return kOK; }
  TError IMouseCapture_OnMouseMove(const TMouseTracking&) override { return kOK; }
  TError IMouseCapture_OnModifiersChanged(const TModifierKeysEvent&, const TModifierKeysEvent&) override {
    return kOK;
  }
  TError IMouseCapture_OnMouseWheel(const TMouseWheelEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IMouseCapture_OnKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  IMouseShape* IMouseCapture_GetMouseShape(const TMouseShapeRequest&, TError& outError) override {
    outError = kOK;
    return nullptr;
  }
};

class CDefaultOpenDialogCustomizeBehavior : public IOpenDialogCustomizeBehavior {
 public:
  TError IOpenDialogCustomizeBehavior_GetTemplateID(std::uint32_t& outID) override {
    outID = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnFolderChanged(IOpenDialogInstance&, const char*) override {
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnSelectionChanged(IOpenDialogInstance&, const char*) override {
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnInitDone(IOpenDialogInstance&) override { return kOK; }
  TError IOpenDialogCustomizeBehavior_OnCommand(IOpenDialogInstance&, std::int32_t,
                                                TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnHelp(IOpenDialogInstance&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnPaint(IOpenDialogInstance&, TNativeWindow) override { return kOK; }
  TError IOpenDialogCustomizeBehavior_OnSize(IOpenDialogInstance&, TNativeWindow, std::int32_t,
                                             std::int32_t) override {
    return kOK;
  }
};

// Forgets everything. Derive from it to see just the assertions.
class CDefaultDebugOutput : public IDebugOutput {
 public:
  virtual ~CDefaultDebugOutput() = default;
  void IDebugOutput_Assert(const char*, std::int32_t, const char*) override {}
  void IDebugOutput_Print(const char*) override {}
  void IDebugOutput_Indent() override {}
  void IDebugOutput_Unindent() override {}
};

// --- Drawing

// The native port, open for the length of its life; null if the tools refuse it.
class COpenPort {
 public:
  explicit COpenPort(IDrawTools& tools) : fTools(tools) {
    TNativePort port = {nullptr};
    if (tools.IDrawTools_OpenNativePort(port) == kOK) fHDC = port.fHDC;
  }
  ~COpenPort() {
    if (fHDC) fTools.IDrawTools_CloseNativePort();
  }
  COpenPort(const COpenPort&) = delete;
  COpenPort& operator=(const COpenPort&) = delete;
  HDC__* HDC() const { return fHDC; }
  operator HDC__*() const { return fHDC; }

 private:
  IDrawTools& fTools;
  HDC__* fHDC = nullptr;
};

// The pixels, open for the length of its life; false if the tools refuse them.
class COpenPixels {
 public:
  explicit COpenPixels(IDrawTools& tools)
      : fTools(tools), fIsOpen(tools.IDrawTools_OpenRawPixels(fPixels) == kOK) {}
  ~COpenPixels() {
    if (fIsOpen) fTools.IDrawTools_CloseRawPixels();
  }
  COpenPixels(const COpenPixels&) = delete;
  COpenPixels& operator=(const COpenPixels&) = delete;
  explicit operator bool() const { return fIsOpen; }
  const TRawPixels& operator*() const { return fPixels; }
  const TRawPixels* operator->() const { return &fPixels; }

 private:
  IDrawTools& fTools;
  TRawPixels fPixels = {};
  bool fIsOpen;
};

// --- The application

// The names of an application that goes away with its last window. What the user reads is the product's name.
inline TStartupParams StartupParams(std::u16string_view company, std::u16string_view product) {
  TStartupParams params = {};
  CopyText(params.fCompanyName, company);
  CopyText(params.fProductName, product);
  CopyText(params.fDisplayName, product);
  return params;
}

// Runs a TApplication, made of the root object and `arguments`, to its end. The result is an exit code for
// main: 0, or the error code of what went wrong. The debug layers, which are on unless told otherwise, are
// off.
//   int main() { return RunApplication<CHelloApplication>(StartupParams(u"Example", u"Hello")); }
template <class TApplication, class... TArguments>
int RunApplication(const TStartupParams& params, TArguments&&... arguments) {
  TError error = kOK;
  const std::unique_ptr<IMorvane> morvane(Morvane_Create("IMorvane", &error));
  if (morvane) {
    error = Guarded([&] {
      ThrowIfFailed(morvane->IMorvane_SetDebugSettings(TDebugSettings{}));
      auto application = std::make_unique<TApplication>(*morvane, std::forward<TArguments>(arguments)...);
      const TError result = morvane->IMorvane_Run(application.get(), params);
      // A run that succeeds has deleted its behaviour.
      if (result == kOK) static_cast<void>(application.release());
      return result;
    });
  }
  return error == kOK ? 0 : static_cast<int>(error);
}

}  // namespace NSMorvane
