#include "SketchGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace NSSketch {

namespace {

bool IsBox(const TShape& shape) {
  return shape.fKind == TShapeKind::kRectangle || shape.fKind == TShapeKind::kEllipse ||
         shape.fKind == TShapeKind::kPicture;
}

TSketchPoint Clamped(TSketchPoint point) {
  return {std::clamp<std::int32_t>(point.fX, -kMaxCoordinate, kMaxCoordinate),
          std::clamp<std::int32_t>(point.fY, -kMaxCoordinate, kMaxCoordinate)};
}

double DistanceToSegment(TSketchPoint point, TSketchPoint a, TSketchPoint b) {
  const double dx = b.fX - a.fX;
  const double dy = b.fY - a.fY;
  const double square = dx * dx + dy * dy;
  const double along =
      square == 0 ? 0 : std::clamp(((point.fX - a.fX) * dx + (point.fY - a.fY) * dy) / square, 0.0, 1.0);
  return std::hypot(point.fX - (a.fX + along * dx), point.fY - (a.fY + along * dy));
}

bool HitsPolyline(const std::vector<TSketchPoint>& points, TSketchPoint point, double reach) {
  for (std::size_t i = 0; i + 1 < points.size(); ++i)
    if (DistanceToSegment(point, points[i], points[i + 1]) <= reach) return true;
  return false;
}

// How often a closed polyline winds around a point; not at all if it is outside.
int Windings(const std::vector<TSketchPoint>& points, TSketchPoint point) {
  int windings = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const TSketchPoint a = points[i];
    const TSketchPoint b = points[(i + 1) % points.size()];
    const std::int64_t side = static_cast<std::int64_t>(b.fX - a.fX) * (point.fY - a.fY) -
                              static_cast<std::int64_t>(point.fX - a.fX) * (b.fY - a.fY);
    if (a.fY <= point.fY && b.fY > point.fY && side > 0) ++windings;
    if (a.fY > point.fY && b.fY <= point.fY && side < 0) --windings;
  }
  return windings;
}

bool HitsRectangle(const TSketchRect& box, TSketchPoint point, double reach, bool isFilled) {
  const auto within = [&](double grow) {
    return point.fX >= box.fLeft - grow && point.fX <= box.fRight + grow && point.fY >= box.fTop - grow &&
           point.fY <= box.fBottom + grow;
  };
  return within(reach) && (isFilled || !within(-reach));
}

bool HitsEllipse(const TSketchRect& box, TSketchPoint point, double reach, bool isFilled) {
  const double x = point.fX - (box.fLeft + box.fRight) / 2.0;
  const double y = point.fY - (box.fTop + box.fBottom) / 2.0;
  const auto within = [&](double grow) {
    const double radiusX = (box.fRight - box.fLeft) / 2.0 + grow;
    const double radiusY = (box.fBottom - box.fTop) / 2.0 + grow;
    return radiusX > 0 && radiusY > 0 && x * x / (radiusX * radiusX) + y * y / (radiusY * radiusY) <= 1;
  };
  return within(reach) && (isFilled || !within(-reach));
}

// Where a value goes when the span from `a` to `b` becomes that from `newA` to `newB`.
std::int32_t Stretched(std::int32_t value, std::int32_t a, std::int32_t b, std::int32_t newA,
                       std::int32_t newB) {
  if (a == b) return newA;
  return newA +
         static_cast<std::int32_t>(std::llround(static_cast<double>(value - a) * (newB - newA) / (b - a)));
}

}  // namespace

TSketchRect FrameOf(const TShape& shape, ISketchTextMeasure& measure) {
  if (shape.fPoints.empty()) return {};
  const TSketchPoint first = shape.fPoints.front();
  if (shape.fKind == TShapeKind::kText) {
    const TSketchSize size = measure.SizeOfText(shape.fText, shape.fSize);
    return {first.fX, first.fY, first.fX + size.fWidth, first.fY + size.fHeight};
  }
  TSketchRect frame = {first.fX, first.fY, first.fX, first.fY};
  for (const TSketchPoint& point : shape.fPoints) {
    frame.fLeft = std::min(frame.fLeft, point.fX);
    frame.fTop = std::min(frame.fTop, point.fY);
    frame.fRight = std::max(frame.fRight, point.fX);
    frame.fBottom = std::max(frame.fBottom, point.fY);
  }
  return frame;
}

TSketchRect UnionOf(const TSketchRect& a, const TSketchRect& b) {
  return {std::min(a.fLeft, b.fLeft), std::min(a.fTop, b.fTop), std::max(a.fRight, b.fRight),
          std::max(a.fBottom, b.fBottom)};
}

bool HitsShape(const TShape& shape, TSketchPoint point, double slack, ISketchTextMeasure& measure) {
  const double reach = shape.fWidth / 2.0 + slack;
  const bool isFilled = shape.fFill.has_value();
  switch (shape.fKind) {
    case TShapeKind::kLine:
      return HitsPolyline(shape.fPoints, point, reach);
    case TShapeKind::kPolyline:
      return HitsPolyline(shape.fPoints, point, reach) || (isFilled && Windings(shape.fPoints, point) != 0);
    case TShapeKind::kRectangle:
      return HitsRectangle(FrameOf(shape, measure), point, reach, isFilled);
    case TShapeKind::kEllipse:
      return HitsEllipse(FrameOf(shape, measure), point, reach, isFilled);
    case TShapeKind::kText:
      return HitsRectangle(FrameOf(shape, measure), point, slack, true);
    case TShapeKind::kPicture:
      return HitsRectangle(FrameOf(shape, measure), point, reach, true);
  }
  return false;
}

bool LiesWithin(const TShape& shape, const TSketchRect& rect, ISketchTextMeasure& measure) {
  const TSketchRect frame = FrameOf(shape, measure);
  return frame.fLeft >= rect.fLeft && frame.fTop >= rect.fTop && frame.fRight <= rect.fRight &&
         frame.fBottom <= rect.fBottom;
}

std::optional<std::size_t> ShapeAt(const CSketchDocument& document, TSketchPoint point, double slack,
                                   ISketchTextMeasure& measure) {
  for (std::size_t i = document.Shapes().size(); i-- > 0;)
    if (HitsShape(document.Shapes()[i].fShape, point, slack, measure)) return i;
  return std::nullopt;
}

std::vector<THandle> HandlesOf(const TShape& shape) {
  std::vector<THandle> handles;
  if (shape.fKind == TShapeKind::kText) return handles;
  if (!IsBox(shape)) {
    for (std::size_t i = 0; i < shape.fPoints.size(); ++i)
      handles.push_back({THandleKind::kPoint, i, shape.fPoints[i]});
    return handles;
  }
  const TSketchPoint a = shape.fPoints[0];
  const TSketchPoint b = shape.fPoints[1];
  const TSketchPoint middle = {a.fX + (b.fX - a.fX) / 2, a.fY + (b.fY - a.fY) / 2};
  return {{THandleKind::kTopLeft, 0, a},
          {THandleKind::kTop, 0, {middle.fX, a.fY}},
          {THandleKind::kTopRight, 0, {b.fX, a.fY}},
          {THandleKind::kRight, 0, {b.fX, middle.fY}},
          {THandleKind::kBottomRight, 0, b},
          {THandleKind::kBottom, 0, {middle.fX, b.fY}},
          {THandleKind::kBottomLeft, 0, {a.fX, b.fY}},
          {THandleKind::kLeft, 0, {a.fX, middle.fY}}};
}

TShape WithHandleAt(const TShape& shape, const THandle& handle, TSketchPoint point, bool constrain) {
  TShape result = shape;
  point = Clamped(point);
  if (handle.fKind == THandleKind::kPoint) {
    if (constrain && shape.fPoints.size() > 1) {
      const std::size_t neighbour = handle.fPoint > 0 ? handle.fPoint - 1 : 1;
      point = Clamped(ConstrainedTo45(shape.fPoints[neighbour], point));
    }
    result.fPoints.at(handle.fPoint) = point;
    return result;
  }
  const THandleKind kind = handle.fKind;
  const bool left =
      kind == THandleKind::kTopLeft || kind == THandleKind::kLeft || kind == THandleKind::kBottomLeft;
  const bool top =
      kind == THandleKind::kTopLeft || kind == THandleKind::kTop || kind == THandleKind::kTopRight;
  const bool sideOnly = kind == THandleKind::kLeft || kind == THandleKind::kRight;
  const bool heightOnly = kind == THandleKind::kTop || kind == THandleKind::kBottom;
  // The corner that stays, and the one that is pulled.
  TSketchPoint fixed = shape.fPoints[0];
  TSketchPoint pulled = shape.fPoints[1];
  if (left) std::swap(fixed.fX, pulled.fX);
  if (top) std::swap(fixed.fY, pulled.fY);
  if (!heightOnly) pulled.fX = point.fX;
  if (!sideOnly) pulled.fY = point.fY;
  if (constrain && !sideOnly && !heightOnly) {
    const std::int32_t side = std::max(std::abs(pulled.fX - fixed.fX), std::abs(pulled.fY - fixed.fY));
    pulled = Clamped(
        {fixed.fX + (pulled.fX < fixed.fX ? -side : side), fixed.fY + (pulled.fY < fixed.fY ? -side : side)});
  }
  result.fPoints = BoxPoints(fixed, pulled);
  return result;
}

TShape MovedBy(TShape shape, std::int32_t dx, std::int32_t dy) {
  for (TSketchPoint& point : shape.fPoints) point = Clamped({point.fX + dx, point.fY + dy});
  return shape;
}

TSketchPoint PossibleMove(const TShape& shape, TSketchPoint move) {
  for (const TSketchPoint& point : shape.fPoints) {
    move.fX = std::clamp(move.fX, -kMaxCoordinate - point.fX, kMaxCoordinate - point.fX);
    move.fY = std::clamp(move.fY, -kMaxCoordinate - point.fY, kMaxCoordinate - point.fY);
  }
  return move;
}

TShape WithFrame(const TShape& shape, const TSketchRect& frame, ISketchTextMeasure& measure) {
  TShape result = shape;
  const TSketchRect old = FrameOf(shape, measure);
  const bool isText = shape.fKind == TShapeKind::kText;
  for (TSketchPoint& point : result.fPoints) {
    if (isText)
      point = Clamped({frame.fLeft, frame.fTop});
    else
      point = Clamped({Stretched(point.fX, old.fLeft, old.fRight, frame.fLeft, frame.fRight),
                       Stretched(point.fY, old.fTop, old.fBottom, frame.fTop, frame.fBottom)});
  }
  if (IsBox(result)) result.fPoints = BoxPoints(result.fPoints[0], result.fPoints[1]);
  return result;
}

TSketchPoint ConstrainedTo45(TSketchPoint from, TSketchPoint to) {
  const std::int32_t dx = to.fX - from.fX;
  const std::int32_t dy = to.fY - from.fY;
  const double steepness = std::atan2(std::abs(dy), std::abs(dx));
  const double eighth = std::atan(1.0) / 2;  // half of 45 degrees
  if (steepness < eighth) return {to.fX, from.fY};
  if (steepness > 3 * eighth) return {from.fX, to.fY};
  const std::int32_t side = std::max(std::abs(dx), std::abs(dy));
  return {from.fX + (dx < 0 ? -side : side), from.fY + (dy < 0 ? -side : side)};
}

std::vector<TSketchPoint> BoxPoints(TSketchPoint a, TSketchPoint b) {
  return {{std::min(a.fX, b.fX), std::min(a.fY, b.fY)}, {std::max(a.fX, b.fX), std::max(a.fY, b.fY)}};
}

}  // namespace NSSketch
