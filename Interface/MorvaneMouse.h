// The mouse: its state, its events, its shapes, and its capture. All positions are in pixels; in events they
// are relative to the client area of the window.
#pragma once

#include "MorvaneKeyboard.h"
#include "MorvaneTypes.h"

namespace NSMorvane {

class IView;

// The numbers of the built-in mouse shapes. docs/images/cursors.png shows those that the library draws
// itself; the others are the system's.
enum TBuiltInMouseShape : std::uint32_t {
  kMouseShapeArrow = 1300,         // the usual pointer
  kMouseShapeArrowCopy = 1301,     // what is dragged gets copied
  kMouseShapeArrowLink = 1302,     // what is dragged gets linked
  kMouseShapeArrowHelp = 1303,     // a click explains
  kMouseShapeWait = 1400,          // the application is busy
  kMouseShapeText = 1401,          // text can be selected
  kMouseShapeHand = 1402,          // a link
  kMouseShapeDefault = 1403,       // the same as kMouseShapeArrow
  kMouseShapeMarker = 1404,        // marks a place
  kMouseShapeForbidden = 1405,     // nothing can be dropped here
  kMouseShapeSplitColumns = 1500,  // the line between two columns
  kMouseShapeSplitRows = 1501,     // the line between two rows
  kMouseShapeHandOpen = 1502,      // a page that can be taken and moved
  kMouseShapeMove = 1503,          // moves in all directions
  kMouseShapeCrosshair = 1504,     // a precise point
  kMouseShapeAim = 1505,           // a precise point and the area around it
  kMouseShapeResizeWidth = 1606,
  kMouseShapeResizeHeight = 1607,
  kMouseShapeResizeCorner = 1608,
  kMouseShapePencil = 1700,      // draws lines
  kMouseShapeFill = 1701,        // fills an area
  kMouseShapeBrush = 1702,       // paints
  kMouseShapeHandClosed = 1703,  // a page that is being moved
  kMouseShapeSelect = 1704,      // selects in a rectangle
  kMouseShapePen = 1705,         // draws curves
  kMouseShapePenAdd = 1706,      // adds a point to a curve
  kMouseShapeRotate = 1707,      // turns what is selected
  kMouseShapeCell = 1708,        // selects cells of a table
  kMouseShapeZoom = 1709,        // enlarges
  kMouseShapeEyedropper = 1710   // takes a colour
};

// A mouse shape. Whoever receives it deletes it.
class IMouseShape {
 public:
  // Non-zero if the object is sound.
  virtual std::uint32_t IMouseShape_CheckInvariant() const = 0;
  // A second object with the same shape, which the caller deletes. Null on failure, with the code in
  // `outError`.
  virtual IMouseShape* IMouseShape_Clone(TError& outError) const = 0;

  virtual ~IMouseShape() = default;
};

// The buttons of the mouse: numbers, not bits. The state of several buttons is their numbers combined with
// OR, so that the middle button reads as left and right together.
enum : std::uint32_t {
  kMouseButtonNone = 0,
  kMouseButtonLeft = 1,
  kMouseButtonRight = 2,
  kMouseButtonMiddle = 3,
  kMouseButtonFourth = 4,
  kMouseButtonFifth = 5
};

// What IMorvane_SampleMouseState gives.
struct TMouseState {
  std::uint32_t fButtons;    // all buttons that are down: kMouseButton..., combined with OR
  TPoint fPosition;          // both -15000 if it could not be read
  TModifierKeys fModifiers;  // the keys that are down now
  std::uint32_t fReserved[4];
};

// The two passes over the views under the mouse.
enum TMousePhase : std::uint32_t {
  kMousePhaseNormal = 8000,  // from the front to the root
  kMousePhasePre = 8001  // from the root to the front: a view can claim the event from those in front of it
};

enum TMouseEventType : std::uint32_t {
  kMouseEventClick = 44,         // a button went down
  kMouseEventDoubleClick = 45,   // a button went down for the second time
  kMouseEventContextClick = 46,  // the right button went up
  kMouseEventPreClick = 47,      // the same three, in the pass from the root to the front
  kMouseEventPreDoubleClick = 48,
  kMouseEventPreContextClick = 49,
  kMouseEventWheel = 778
};

// A press or a context click; for a capture also a release.
struct TMouseEvent {
  std::uint32_t fType;  // TMouseEventType
  std::uint64_t fTimeMS;
  std::uint32_t fButtons;  // the button of this event: kMouseButtonLeft, kMouseButtonRight or none
  TPoint fPosition;
  TModifierKeys fModifiers;
  // In the pre pass: the views in front of this one, nearest first; valid only during the call. Else 0 and
  // null.
  std::uint32_t fViewCount;
  IView* const* fViews;
};

// Where the mouse is and what is held down; passed to IViewBehavior_GetMouseShape.
struct TMouseShapeRequest {
  std::uint32_t fButtons;  // as in TMouseState
  TPoint fPosition;
  TModifierKeys fModifiers;
  std::uint32_t fViewCount;  // as in TMouseEvent, in the pre pass of tracking; else 0
  IView* const* fViews;
};

// A movement of the mouse, or of the views under it.
struct TMouseTracking {
  std::uint64_t fTimeMS;
  TMouseShapeRequest fState;
};

// A turn of the wheel. Less than a notch is told as 0, and counts with the next turn in the same direction.
struct TMouseWheelEvent {
  std::uint32_t fType;         // kMouseEventWheel
  std::int32_t fDeltaNotches;  // positive away from the user
  std::uint32_t fButtons;      // as in TMouseState
  TPoint fPosition;
  TModifierKeys fModifiers;
  std::uint64_t fTimeMS;
};

// Implemented by the client. While it is in force, it gets all mouse events of its window, and the views get
// none. Turns of the wheel and keys that it does not handle go on to the focus chain. When the right button
// goes up, IMouseCapture_OnMouseUp is followed by IMouseCapture_OnMouseDown with kMouseEventContextClick. The
// library owns it after a successful IMorvane_AllocateMouseCapture, and deletes it when the capture ends.
class IMouseCapture {
 public:
  virtual TError IMouseCapture_OnMouseDown(const TMouseEvent& event) = 0;
  // The type is kMouseEventClick here too.
  virtual TError IMouseCapture_OnMouseUp(const TMouseEvent& event) = 0;
  virtual TError IMouseCapture_OnMouseMove(const TMouseTracking& event) = 0;
  virtual TError IMouseCapture_OnModifiersChanged(const TModifierKeysEvent& previous,
                                                  const TModifierKeysEvent& now) = 0;
  virtual TError IMouseCapture_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) = 0;
  virtual TError IMouseCapture_OnKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  // Null leaves the shape as it is. The library deletes the shape that it gets.
  virtual IMouseShape* IMouseCapture_GetMouseShape(const TMouseShapeRequest& request, TError& outError) = 0;

  virtual ~IMouseCapture() = default;
};

// What IMorvane_CheckForClickDragOperation finds a press to be.
enum TClickDragResult : std::uint32_t {
  kClickDragDragged = 90,       // the mouse has left the box around the press
  kClickDragHeld = 91,          // the mouse has stayed in the box for 500 milliseconds
  kClickDragReleased = 92,      // the button has gone up
  kClickDragNotApplicable = 93  // the event is not a press that could become a drag
};

}  // namespace NSMorvane
