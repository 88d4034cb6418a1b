// Defaults and small helpers for clients. Optional, and header-only: nothing in it crosses the boundary to
// the library.
//
//   CDefault...            a default for each behaviour that a client implements. Everything answers kOK and
//   nothing is
//                          handled, so that a behaviour overrides just what it needs.
//   CopyText, TextOf       texts into the fixed arrays of records.
//   CVector...Receiver    receivers that collect into a vector or a string.
//   CReleasePtr            an owning pointer that ends an interface by its release operation.
//   C...Factory            factories that make a behaviour of a given type.
//   COpenPort              the native port of a drawing, for the length of a block.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "Morvane.h"

namespace NSMorvane {

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
    fTexts.emplace_back(text);
    return kOK;
  }
  // The first text, or an empty one.
  std::u16string Text() const { return fTexts.empty() ? std::u16string() : fTexts.front(); }

  std::vector<std::u16string> fTexts;
};

class CVectorViewReceiver : public IViewListReceiver {
 public:
  TError IViewListReceiver_ReceiveViews(IView* const* views, std::uint32_t count) override {
    fViews.assign(views, views + count);
    return kOK;
  }
  std::vector<IView*> fViews;
};

class CVectorWindowReceiver : public IWindowListReceiver {
 public:
  TError IWindowListReceiver_ReceiveWindows(IWindow* const* windows, std::uint32_t count) override {
    fWindows.assign(windows, windows + count);
    return kOK;
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
// The behaviour's constructor must not throw across the boundary: what it throws becomes kOtherError.
template <class TBehavior, class TInterface, class... TArguments>
TBehavior* MakeBehavior(TInterface& object, TError& outError, const std::tuple<TArguments...>& arguments) {
  try {
    TBehavior* const behavior = std::apply(
        [&](auto&&... argument) { return new TBehavior(object, static_cast<TArguments>(argument)...); },
        arguments);
    outError = kOK;
    return behavior;
  } catch (...) {
    outError = kOtherError;
    return nullptr;
  }
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

// --- Defaults

// Asks for no idle call before a second has passed. Override OnQuitEvent: without it the application never
// quits.
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

// Transparent to the mouse: override GetHitRects, or derive from CDefaultHitViewBehavior.
class CDefaultViewBehavior : public IViewBehavior {
 public:
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

// --- The port of a drawing

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

 private:
  IDrawTools& fTools;
  HDC__* fHDC = nullptr;
};

}  // namespace NSMorvane
