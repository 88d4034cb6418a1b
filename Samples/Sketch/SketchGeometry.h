// What can be asked of shapes and done to them: where a shape is hit, its frame, its handles, moving it and
// pulling a handle. Nothing here changes a document.
#pragma once

#include <vector>

#include "SketchDocument.h"

namespace NSSketch {

// Knows how large a text is, which only a font does.
class ISketchTextMeasure {
 public:
  // The box around one line of text, UTF-8, in document pixels.
  virtual TSketchSize SizeOfText(const std::string& text, std::int32_t letterSize) = 0;

 protected:
  virtual ~ISketchTextMeasure() = default;
};

// The box around the points of a shape, its outline aside. Right and bottom are positions of points here.
TSketchRect FrameOf(const TShape& shape, ISketchTextMeasure& measure);

// The smallest box around two.
TSketchRect UnionOf(const TSketchRect& a, const TSketchRect& b);

// Whether a click at this point is on the shape. Up to `slack` pixels beside it still are.
bool HitsShape(const TShape& shape, TSketchPoint point, double slack, ISketchTextMeasure& measure);

// Whether the shape lies within the rectangle with all its points.
bool LiesWithin(const TShape& shape, const TSketchRect& rect, ISketchTextMeasure& measure);

// The front-most shape at a point; no value if there is none.
std::optional<std::size_t> ShapeAt(const CSketchDocument& document, TSketchPoint point, double slack,
                                   ISketchTextMeasure& measure);

// --- Handles
//
// A rectangle, an ellipse and a picture have eight on their box, a line and a polyline one on each point, a
// text none.

enum class THandleKind {
  kTopLeft,
  kTop,
  kTopRight,
  kRight,
  kBottomRight,
  kBottom,
  kBottomLeft,
  kLeft,
  kPoint
};

struct THandle {
  THandleKind fKind = THandleKind::kPoint;
  std::size_t fPoint = 0;  // of kPoint: which point of the shape
  TSketchPoint fPosition;
};

std::vector<THandle> HandlesOf(const TShape& shape);

// The shape after one of its handles was pulled to a point. `constrain` keeps a box as wide as it is high,
// and a line at a multiple of 45 degrees.
TShape WithHandleAt(const TShape& shape, const THandle& handle, TSketchPoint point, bool constrain);

// --- Moves

TShape MovedBy(TShape shape, std::int32_t dx, std::int32_t dy);

// The part of a move that leaves the shape within the coordinates that a file can hold.
TSketchPoint PossibleMove(const TShape& shape, TSketchPoint move);

// The shape with the frame that is asked for: moved, and stretched unless it is a text. A side that has no
// length stays so.
TShape WithFrame(const TShape& shape, const TSketchRect& frame, ISketchTextMeasure& measure);

// `to`, brought onto the nearest line through `from` that is a multiple of 45 degrees steep.
TSketchPoint ConstrainedTo45(TSketchPoint from, TSketchPoint to);

// The box with these two corners, in the order that files want.
std::vector<TSketchPoint> BoxPoints(TSketchPoint a, TSketchPoint b);

}  // namespace NSSketch
