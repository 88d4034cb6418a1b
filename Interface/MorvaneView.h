// Views: the rectangles that a window's content is made of.
//
// Every window has a tree of views under its root view. A view's rectangle is in the coordinates of the
// window's client area, not of its super view. What it draws is clipped to its own rectangle and to those of
// all its super views. A subview is drawn after its super view, and the last subview in the order ends on
// top.
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
  kViewEnabled = 1,    // gets mouse and keyboard input, if all its super views are enabled too
  kViewFocusable = 2,  // can get the focus by a click or the Tab key
  // Gets mouse movements, enter and exit, and is asked for a mouse shape. Clicks come without this flag too.
  kViewMouseTrackable = 4,
  kViewReserved = 8  // accepted, without effect
};

// How a view is buffered.
enum TViewDrawMode : std::uint32_t {
  kViewDrawDirect = 6900,  // draws straight onto the surface it is given
  // Drawn tile by tile through a shared bitmap, whose pixels are undefined at first: the view, or its
  // subviews, must fill the whole view.
  kViewDrawTemporary16 = 6901,  // 16 bits a pixel
  kViewDrawTemporary32 = 6902,  // 32 bits a pixel
  kViewDrawPermanent16 = 6903,  // keeps a 16-bit bitmap of its own
  kViewDrawPermanent32 = 6904   // keeps a 32-bit bitmap of its own
};
// A permanent view and its subviews are drawn into its bitmap, and only where the bitmap is dirty. When views
// move, change their draw mode or end, the library makes the affected parts dirty in all bitmaps that show
// them. For changes that only the client knows of, see IMorvane_InvalidateView. What fails to be drawn is
// tried again with the next paint.

// What becomes dirty when a view's rectangle changes.
enum TAutoInvalidation : std::uint32_t {
  // Nothing; but if the view has subviews, what is in exactly one of its old and its new rectangle.
  kAutoInvalidationNone = 4700,
  kAutoInvalidationFull = 4701,              // the old and the new rectangle
  kAutoInvalidationDifference = 4702,        // what is in exactly one of the two
  kAutoInvalidationDifferenceTopLeft = 4703  // the difference if the top left corner stays, else both
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
  // The array is valid only during the call.
  virtual TError IViewListReceiver_ReceiveViews(IView* const* views, std::uint32_t count) = 0;

 protected:
  virtual ~IViewListReceiver() = default;
};

// Passed to IViewBehavior_GetHitRects: collects the rectangles in which the view can be hit.
class IRectsGetter {
 public:
  // In window client coordinates. May be called more than once; the lists add up.
  virtual TError IRectsGetter_AddRects(const TRect* rects, std::uint32_t count) = 0;

 protected:
  virtual ~IRectsGetter() = default;
};

// A view. Made with IMorvane_CreateView, ended with IView_Release; all views must be released before their
// window is, but not the root view, which belongs to its window. A view with subviews can be released: it is
// neither drawn nor hit any more, and ends with its last subview.
//
// No flag hides a view. To hide it, give it an empty rectangle, and clear kViewEnabled so that the focus
// leaves it: then neither the view nor its subviews are drawn or hit.
class IView {
 public:
  virtual TError IView_GetBehavior(IViewBehavior*& out) = 0;
  virtual TError IView_GetMotherWindow(IWindow*& outWindow) = 0;
  // Null for the root view.
  virtual TError IView_GetSuperView(IView*& out) = 0;
  // Whether the view and all its super views are enabled.
  virtual TError IView_IsEffectivelyEnabled(TFlag& outEnabledFlag) = 0;
  // kBadInputProgrammingError for unknown flags, for an unknown draw mode, and for a rectangle whose right or
  // bottom edge lies before the opposite edge. The subviews stay where they are. A new draw mode invalidates
  // the view. If a behaviour is told of a change of kViewEnabled and sets that flag itself, the last call
  // wins.
  virtual TError IView_SetParams(const TViewParams& params) = 0;
  virtual TError IView_GetParams(TViewParams& params) = 0;
  // `out` has room for kDebugNameChars + 1 bytes.
  virtual TError IView_GetDebugName(char* out) = 0;
  // `out` has room for kTooltipTextChars + 1 characters.
  virtual TError IView_GetTooltipText(TChar* out) = 0;
  // An empty text removes the tooltip. Texts beyond kTooltipTextChars are kept and read back cut. Of the
  // views under the mouse, the front-most that has a text shows it.
  virtual TError IView_SetTooltipText(const TChar* text) = 0;
  // Moves the view and its whole subtree by (dx, dy) pixels. kBadInputProgrammingError for a root view. If
  // the view is the only subview of a view in a permanent mode, its pixels are moved inside the bitmap, and
  // only the strip that comes into sight is drawn: this is how to scroll. All pixels in the subview's
  // rectangle are moved, so the subview must fill it, and the super view must not draw over it.
  virtual TError IView_Offset(std::int32_t dx, std::int32_t dy) = 0;
  // The subviews in the order in which they are drawn. The receiver's result is ignored.
  virtual TError IView_GetSubViewOrder(IViewListReceiver& out) = 0;
  // `subViews` are the same views in another order; else kBadInputProgrammingError. Nothing is invalidated.
  virtual TError IView_SetSubViewOrder(IView* const* subViews, std::uint32_t count) = 0;
  // Ends the view and its behaviour at once. In a callback of its behaviour, or of another view in the same
  // pass of calls, the view ends only when the library has finished with it: until then its behaviour may be
  // told that it has lost the focus, and may get the remaining calls of that pass. Do not use the pointer
  // after this call.
  virtual TError IView_Release() = 0;

 protected:
  virtual ~IView() = default;
};

// Implemented by the client for each view. The library deletes it with the view.
//
// A code other than kOK is reported to IMorvaneRunBehavior_OnUnhandledError or logged, and never keeps the
// other views from drawing or from getting mouse events.
class IViewBehavior {
 public:
  virtual TError IViewBehavior_Draw(IDrawTools& tools) = 0;
  // Draws on top of the subviews, after they have been drawn.
  virtual TError IViewBehavior_PostProcessDraw(IDrawTools& tools) = 0;
  // IView_Offset has moved the view, alone or with a super view. A code keeps no subview from moving along.
  virtual TError IViewBehavior_OnOffset(std::int32_t dx, std::int32_t dy) = 0;
  virtual TError IViewBehavior_OnEffectivelyEnabledChanged(TFlag enabled) = 0;
  // 1: the view, or a view below it, now gets the keys. 0: it no longer does. The two values alternate.
  virtual TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) = 0;
  // `event.fType` tells the pre-click pass from the normal one.
  virtual TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) = 0;
  // Where the view can be hit: nowhere without rectangles, or with a code; its subviews can be all the same.
  virtual TError IViewBehavior_GetHitRects(IRectsGetter& out) = 0;
  // Called along the focus chain, from the focus view to the root view, until a view handles it.
  virtual TError IViewBehavior_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) = 0;
  virtual TError IViewBehavior_OnMouseTracking(const TMouseTracking& event, TMousePhase phase,
                                               TFlag& outHandled) = 0;
  virtual TError IViewBehavior_OnMouseEnterExit(TFlag entered) = 0;
  // The shape to show over this view, or null. The library deletes it. If `outHandled` stays 0, the next view
  // is asked, and its answer replaces this one even if it is null.
  virtual IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest& request, TMousePhase phase,
                                                   TFlag& outHandled, TError& outError) = 0;
  // Called along the focus chain, from the focus view to the root view, until a view handles it.
  virtual TError IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  // Called along the focus chain, the focus view last.
  virtual TError IViewBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  // Called along the focus chain, in document windows only.
  virtual TError IViewBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  // The native control that gets the keyboard when the view has the focus, or null. See
  // IWinExtensions_HostNativeControl.
  virtual TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) = 0;

  virtual ~IViewBehavior() = default;
};

// Implemented by the client: makes the behaviour of a view that is being created.
class IViewBehaviorFactory {
 public:
  // `view` is the new view; the behaviour may keep the reference. The library owns what is returned. Until
  // this call returns, the view can have no subviews, no focus and no place in the tab order
  // (kBadInputProgrammingError), and releasing it has no effect.
  virtual IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView& view, TError& outError) = 0;

 protected:
  virtual ~IViewBehaviorFactory() = default;
};

}  // namespace NSMorvane
