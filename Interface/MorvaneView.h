// Views: the rectangles that a window's content is made of.
//
// Every window has a tree of views under its root view. A view's rectangle is in the coordinates of the
// window's client area, not of its super view. What it draws is cut to its own rectangle and to those of all
// its super views. A subview is drawn after its super view, and the last subview in the order ends on top.
#pragma once

#include "MorvaneDrawing.h"
#include "MorvaneKeyboard.h"
#include "MorvaneMenu.h"
#include "MorvaneMouse.h"
#include "MorvaneTypes.h"

namespace NSMorvane {

class IView;
class IViewBehavior;
class IWindow;
struct TNativeWindow;

// Bits of TViewParams::fFlags.
enum : std::uint32_t {
  kViewEnabled = 1,    // takes part in mouse and keyboard, if all its super views are enabled too
  kViewFocusable = 2,  // can get the focus by a click or the Tab key
  kViewMouseTrackable =
      4,             // hears of movements, enter and exit, and is asked for a shape; clicks need it not
  kViewReserved = 8  // accepted, without effect
};

// How a view is buffered.
enum TViewDrawMode : std::uint32_t {
  kViewDrawDirect = 6900,  // draws straight onto the surface it is given
  // Tile by tile through a shared bitmap, whose pixels are at first whatever was there: such a view fills all
  // of itself, or its subviews do.
  kViewDrawTemporary16 = 6901,  // 16 bits a pixel
  kViewDrawTemporary32 = 6902,  // 32 bits a pixel
  kViewDrawPermanent16 = 6903,  // keeps a 16-bit bitmap of its own
  kViewDrawPermanent32 = 6904   // keeps a 32-bit bitmap of its own
};
// A permanent view and its subviews are drawn into its bitmap, and only where that is dirty. The library sees
// to this when views move, change their mode or end, in all the bitmaps that show them; for what only the
// client knows of, see IMorvane_InvalidateView. What fails to be drawn is tried again with the next paint.

// What becomes dirty when a view's rectangle changes.
enum TAutoInvalidation : std::uint32_t {
  kAutoInvalidationNone = 4700,              // nothing, but for subviews newly exposed
  kAutoInvalidationFull = 4701,              // the old and the new rectangle
  kAutoInvalidationDifference = 4702,        // what is in exactly one of the two
  kAutoInvalidationDifferenceTopLeft = 4703  // the difference if the top left corner stays, else all
};

struct TViewParams {
  std::uint32_t fFlags;
  TRect fRect;  // in window client coordinates
  TViewDrawMode fDrawMode;
  TAutoInvalidation fAutoInvalidation;
};

enum : std::size_t { kDebugNameChars = 255, kTooltipTextChars = 1023 };

// Implemented by the client: gets a list of views.
class IViewListReceiver {
 public:
  // The array lives only for the call.
  virtual TError IViewListReceiver_ReceiveViews(IView* const* views, std::uint32_t count) = 0;

 protected:
  virtual ~IViewListReceiver() = default;
};

// Handed to IViewBehavior_GetHitRects: takes the rectangles in which the view can be hit.
class IRectsGetter {
 public:
  // In window client coordinates. May be called more than once; the lists add up.
  virtual TError IRectsGetter_AddRects(const TRect* rects, std::uint32_t count) = 0;

 protected:
  virtual ~IRectsGetter() = default;
};

// A view. Made with IMorvane_CreateView, ended with IView_Release; all views must be released before their
// window is. A view with subviews can be released: it is neither drawn nor hit any more, and ends with its
// last subview.
//
// No flag hides a view. Give it an empty rectangle, and take kViewEnabled away, so that the focus leaves it:
// then it is neither drawn nor hit, and all its subviews with it.
class IView {
 public:
  virtual TError IView_GetBehavior(IViewBehavior*& out) = 0;
  virtual TError IView_GetMotherWindow(IWindow*& outWindow) = 0;
  // Null for the root view.
  virtual TError IView_GetSuperView(IView*& out) = 0;
  // Whether the view and all its super views are enabled.
  virtual TError IView_IsEffectivelyEnabled(TFlag& outEnabledFlag) = 0;
  // kBadInputProgrammingError for unknown flags or draw modes and for a rectangle turned inside out. The
  // subviews stay where they are. Another draw mode has the view drawn again. If a behaviour that hears of a
  // changed kViewEnabled sets that flag itself, the last call holds.
  virtual TError IView_SetParams(const TViewParams& params) = 0;
  virtual TError IView_GetParams(TViewParams& params) = 0;
  // `out` has room for kDebugNameChars + 1 bytes.
  virtual TError IView_GetDebugName(char* out) = 0;
  // `out` has room for kTooltipTextChars + 1 characters.
  virtual TError IView_GetTooltipText(TChar* out) = 0;
  // An empty text takes the tooltip away. Texts beyond kTooltipTextChars are kept and read back cut.
  virtual TError IView_SetTooltipText(const TChar* text) = 0;
  // Moves the view and all its subtree by (dx, dy) pixels. Not for root views. The only subview of a buffered
  // view is moved inside the buffer, and just the strip that comes into sight is drawn: this is how to
  // scroll. All that the subview's rectangle shows is moved, so it must fill that, and the buffered view must
  // not draw over it.
  virtual TError IView_Offset(std::int32_t dx, std::int32_t dy) = 0;
  // The subviews, the first drawn first.
  virtual TError IView_GetSubViewOrder(IViewListReceiver& out) = 0;
  // The same views in another order; nothing is invalidated. kBadInputProgrammingError for any other set of
  // views.
  virtual TError IView_SetSubViewOrder(IView* const* subViews, std::uint32_t count) = 0;
  // Ends the view and its behaviour, here and now. From inside a callback of its behaviour, or of another
  // view in the same pass of calls, it ends when the library is through with it; until then its behaviour may
  // hear that it has lost the focus, and get what is left of that pass. Do not use the pointer afterwards.
  virtual TError IView_Release() = 0;

 protected:
  virtual ~IView() = default;
};

// Implemented by the client for each view. The library deletes it with the view.
//
// A code other than kOK is reported to IMorvaneRunBehavior_OnUnhandledError or logged, and never stops the
// other views from drawing or from getting their turn of the mouse.
class IViewBehavior {
 public:
  virtual TError IViewBehavior_Draw(IDrawTools& tools) = 0;
  // After the subviews, on top of them.
  virtual TError IViewBehavior_PostProcessDraw(IDrawTools& tools) = 0;
  // IView_Offset has moved the view, itself or with a super view.
  virtual TError IViewBehavior_OnOffset(std::int32_t dx, std::int32_t dy) = 0;
  virtual TError IViewBehavior_OnEffectivelyEnabledChanged(TFlag enabled) = 0;
  // The view, or one of its subviews, gets the keys from now on, or no longer: in turns, once each time.
  virtual TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) = 0;
  // `event.fType` tells the pre-click pass from the normal one.
  virtual TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) = 0;
  // Where the view can be hit. A view without rectangles is transparent to the mouse; its subviews are not.
  virtual TError IViewBehavior_GetHitRects(IRectsGetter& out) = 0;
  // Along the focus chain.
  virtual TError IViewBehavior_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) = 0;
  virtual TError IViewBehavior_OnMouseTracking(const TMouseTracking& event, TMousePhase phase,
                                               TFlag& outHandled) = 0;
  virtual TError IViewBehavior_OnMouseEnterExit(TFlag entered) = 0;
  // The shape to show over this view, or null. The library deletes it. Without outHandled the next view is
  // asked, and what it answers stands instead, null included.
  virtual IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest& request, TMousePhase phase,
                                                   TFlag& outHandled, TError& outError) = 0;
  // Along the focus chain.
  virtual TError IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  // Along the focus chain, the focus view last.
  virtual TError IViewBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  // Along the focus chain of a document window.
  virtual TError IViewBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  // For hosted controls, which are not built yet. The native control that takes the keyboard when the view
  // has the focus, or null.
  virtual TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) = 0;

  virtual ~IViewBehavior() = default;
};

// Implemented by the client: makes the behaviour of a view that is being created.
class IViewBehaviorFactory {
 public:
  // `view` is the new view, to be kept by the behaviour. The library owns what is returned.
  virtual IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView& view, TError& outError) = 0;

 protected:
  virtual ~IViewBehaviorFactory() = default;
};

}  // namespace NSMorvane
