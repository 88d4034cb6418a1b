#include "SketchPainter.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace NSSketch {

namespace {

// The pen of a shape: round ends and corners at any width. Null for none.
HPEN MakePen(const TShape& shape, double scale) {
  if (shape.fWidth == 0) return nullptr;
  const auto width = static_cast<DWORD>(std::max(1.0, std::round(shape.fWidth * scale)));
  LOGBRUSH brush = {BS_SOLID, NativeColor(shape.fColor), 0};
  return ::ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND, width, &brush, 0, nullptr);
}

}  // namespace

CSketchPainter::CSketchPainter(HDC hdc, const TSketchPlacement& placement)
    : fHDC(hdc), fSaved(hdc), fPlacement(placement) {
  ::SetBkMode(fHDC, TRANSPARENT);
  ::SetTextAlign(fHDC, TA_LEFT | TA_TOP);
  ::SetPolyFillMode(fHDC, WINDING);
}

void CSketchPainter::PaintShapes(const CSketchDocument& document) {
  RECT clip;
  if (::GetClipBox(fHDC, &clip) == NULLREGION) return;
  for (const TShapeEntry& entry : document.Shapes()) {
    const TSketchRect bounds = BoundsOf(entry.fShape);
    const POINT topLeft = Place({bounds.fLeft, bounds.fTop}, 0);
    const POINT bottomRight = Place({bounds.fRight, bounds.fBottom}, 0);
    // One pixel more, for what is thinner than a pixel.
    if (topLeft.x <= clip.right && bottomRight.x >= clip.left && topLeft.y <= clip.bottom &&
        bottomRight.y >= clip.top)
      PaintShape(entry.fShape);
  }
}

void CSketchPainter::PaintShape(const TShape& shape) {
  if (shape.fKind == TShapeKind::kText) {
    PaintText(shape);
    return;
  }
  const CGdiObject<HPEN> pen(MakePen(shape, fPlacement.fScale));
  ::SelectObject(fHDC, pen.Get() ? pen.Get() : ::GetStockObject(NULL_PEN));
  UseBrush(shape);
  if (shape.fKind == TShapeKind::kRectangle || shape.fKind == TShapeKind::kEllipse)
    PaintBox(shape, shape.fKind == TShapeKind::kEllipse);
  else
    PaintPolyline(shape);
  ::SelectObject(fHDC, ::GetStockObject(BLACK_PEN));
}

POINT CSketchPainter::Place(const TSketchPoint& point, int outlineWidth) const {
  const double middle = outlineWidth % 2 != 0 ? 0.5 : 0;
  return {static_cast<LONG>(std::floor(fPlacement.fLeft + fPlacement.fScale * (point.fX + middle))),
          static_cast<LONG>(std::floor(fPlacement.fTop + fPlacement.fScale * (point.fY + middle)))};
}

void CSketchPainter::PaintBox(const TShape& shape, bool isEllipse) {
  const POINT topLeft = Place(shape.fPoints[0], shape.fWidth);
  const POINT bottomRight = Place(shape.fPoints[1], shape.fWidth);
  if (isEllipse) {
    // GDI leaves out the last row and column of the box.
    ::Ellipse(fHDC, topLeft.x, topLeft.y, bottomRight.x + 1, bottomRight.y + 1);
    return;
  }
  const POINT corners[] = {topLeft, {bottomRight.x, topLeft.y}, bottomRight, {topLeft.x, bottomRight.y}};
  ::Polygon(fHDC, corners, 4);
}

void CSketchPainter::PaintPolyline(const TShape& shape) {
  std::vector<POINT> points;
  points.reserve(shape.fPoints.size());
  for (const TSketchPoint& point : shape.fPoints) points.push_back(Place(point, shape.fWidth));
  const int count = static_cast<int>(points.size());
  if (shape.fFill) {
    const CSelected noPen(fHDC, ::GetStockObject(NULL_PEN));
    ::Polygon(fHDC, points.data(), count);
  }
  if (shape.fWidth == 0) return;
  // A polyline that ends where it began has a corner there, and no ends.
  const POINT& first = points.front();
  const POINT& last = points.back();
  if (count > 3 && first.x == last.x && first.y == last.y) {
    const CSelected noBrush(fHDC, ::GetStockObject(NULL_BRUSH));
    ::Polygon(fHDC, points.data(), count - 1);
  } else {
    ::Polyline(fHDC, points.data(), count);
  }
}

void CSketchPainter::PaintText(const TShape& shape) {
  const POINT position = Place(shape.fPoints[0], 0);
  const std::u16string text = TextFromUTF8(shape.fText);
  const int size = static_cast<int>(std::lround(shape.fSize * fPlacement.fScale));
  if (size < 1) return;
  ::SelectObject(fHDC, FontOfSize(size));
  ::SetTextColor(fHDC, NativeColor(shape.fColor));
  ::TextOutW(fHDC, position.x, position.y, WideText(text), static_cast<int>(text.size()));
  ::SelectObject(fHDC, ::GetStockObject(SYSTEM_FONT));
}

void CSketchPainter::UseBrush(const TShape& shape) {
  if (shape.fFill) {
    ::SetDCBrushColor(fHDC, NativeColor(*shape.fFill));
    ::SelectObject(fHDC, ::GetStockObject(DC_BRUSH));
  } else {
    ::SelectObject(fHDC, ::GetStockObject(NULL_BRUSH));
  }
}

HFONT CSketchPainter::FontOfSize(int deviceSize) {
  CGdiObject<HFONT>& font = fFonts[deviceSize];
  if (!font.Get()) {
    font = CGdiObject<HFONT>(::CreateFontW(-deviceSize, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                           DEFAULT_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS,
                                           ANTIALIASED_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Arial"));
  }
  return font.Get();
}

}  // namespace NSSketch
