#include "SketchPainter.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace NSSketch {

namespace {

// The width of an outline on the device; what is there at all can be seen.
double DeviceWidth(const TShape& shape, double scale) {
  return shape.fWidth == 0 ? 0 : std::max(1.0, std::round(shape.fWidth * scale));
}

// The pen of a shape: round ends and corners at any width. Null for none.
HPEN MakePen(const TShape& shape, double scale) {
  if (shape.fWidth == 0) return nullptr;
  const LOGBRUSH brush = {BS_SOLID, NativeColor(shape.fColor), 0};
  return ::ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_ROUND | PS_JOIN_ROUND,
                        static_cast<DWORD>(DeviceWidth(shape, scale)), &brush, 0, nullptr);
}

// An ellipse on the device.
struct TEllipse {
  double fCenterX;
  double fCenterY;
  double fRadiusX;
  double fRadiusY;
};

// Adds the points at a distance from an ellipse, outside of it if `distance` is positive, as a polygon that
// cannot be told from the curve.
void AddCurve(const TEllipse& ellipse, double distance, std::vector<POINT>& points,
              std::vector<int>& counts) {
  const double pi = std::acos(-1.0);
  const double radius = std::max(ellipse.fRadiusX, ellipse.fRadiusY) + std::abs(distance);
  const int count = std::clamp(static_cast<int>(pi * std::sqrt(5 * radius)), 16, 2000);
  for (int i = 0; i < count; ++i) {
    const double x = std::cos(2 * pi * i / count);
    const double y = std::sin(2 * pi * i / count);
    const double normalX = x * ellipse.fRadiusY;
    const double normalY = y * ellipse.fRadiusX;
    const double shift = distance / std::max(std::hypot(normalX, normalY), 1e-6);
    points.push_back(
        {static_cast<LONG>(std::lround(ellipse.fCenterX + x * ellipse.fRadiusX + normalX * shift)),
         static_cast<LONG>(std::lround(ellipse.fCenterY + y * ellipse.fRadiusY + normalY * shift))});
  }
  counts.push_back(count);
}

// Adds the inner side of an outline, unless the outline leaves nothing free in the middle.
void AddInnerCurve(const TEllipse& ellipse, double distance, std::vector<POINT>& points,
                   std::vector<int>& counts) {
  const double smaller = std::min(ellipse.fRadiusX, ellipse.fRadiusY);
  const double larger = std::max(ellipse.fRadiusX, ellipse.fRadiusY);
  if (distance >= smaller) return;
  if (distance < smaller * smaller / larger) {
    AddCurve(ellipse, -distance, points, counts);
  } else {  // where it is bent most, the curve at that distance would cross itself
    AddCurve({ellipse.fCenterX, ellipse.fCenterY, ellipse.fRadiusX - distance, ellipse.fRadiusY - distance},
             0, points, counts);
  }
}

}  // namespace

CGdiObject<HFONT> MakeLetterFont(int deviceSize) {
  return CGdiObject<HFONT>(::CreateFontW(-deviceSize, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                         DEFAULT_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS,
                                         ANTIALIASED_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Arial"));
}

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
  if (shape.fKind == TShapeKind::kPicture) PaintPixels(shape);
  UseBrush(shape);
  if (shape.fKind == TShapeKind::kEllipse) {
    PaintEllipse(shape);
    return;
  }
  const CGdiObject<HPEN> pen(MakePen(shape, fPlacement.fScale));
  ::SelectObject(fHDC, pen.Get() ? pen.Get() : ::GetStockObject(NULL_PEN));
  if (shape.fKind == TShapeKind::kPolyline || shape.fKind == TShapeKind::kLine)
    PaintPolyline(shape);
  else
    PaintRectangle(shape);  // that of a picture is around it
  ::SelectObject(fHDC, ::GetStockObject(NULL_PEN));
}

POINT CSketchPainter::Place(const TSketchPoint& point, int outlineWidth) const {
  const double middle = outlineWidth % 2 != 0 ? 0.5 : 0;
  return {static_cast<LONG>(std::floor(fPlacement.fLeft + fPlacement.fScale * (point.fX + middle))),
          static_cast<LONG>(std::floor(fPlacement.fTop + fPlacement.fScale * (point.fY + middle)))};
}

void CSketchPainter::PaintRectangle(const TShape& shape) {
  const POINT topLeft = Place(shape.fPoints[0], shape.fWidth);
  const POINT bottomRight = Place(shape.fPoints[1], shape.fWidth);
  const POINT corners[] = {topLeft, {bottomRight.x, topLeft.y}, bottomRight, {topLeft.x, bottomRight.y}};
  ::Polygon(fHDC, corners, 4);
}

// An outline is the area between two curves. A wide pen would give the same, a hundred times as slowly.
void CSketchPainter::PaintEllipse(const TShape& shape) {
  const POINT topLeft = Place(shape.fPoints[0], shape.fWidth);
  const POINT bottomRight = Place(shape.fPoints[1], shape.fWidth);
  const TEllipse ellipse = {(topLeft.x + bottomRight.x) / 2.0, (topLeft.y + bottomRight.y) / 2.0,
                            (bottomRight.x - topLeft.x) / 2.0, (bottomRight.y - topLeft.y) / 2.0};
  ::SelectObject(fHDC, ::GetStockObject(NULL_PEN));
  std::vector<POINT> points;
  std::vector<int> counts;
  if (shape.fFill) {
    AddCurve(ellipse, 0, points, counts);
    ::Polygon(fHDC, points.data(), counts.front());
  }
  if (shape.fWidth == 0) return;
  points.clear();
  counts.clear();
  const double half = DeviceWidth(shape, fPlacement.fScale) / 2;
  AddCurve(ellipse, half, points, counts);
  AddInnerCurve(ellipse, half, points, counts);
  ::SetDCBrushColor(fHDC, NativeColor(shape.fColor));
  ::SelectObject(fHDC, ::GetStockObject(DC_BRUSH));
  ::SetPolyFillMode(fHDC, ALTERNATE);
  ::PolyPolygon(fHDC, points.data(), counts.data(), static_cast<int>(counts.size()));
  ::SetPolyFillMode(fHDC, WINDING);
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
  // Round ends make round corners where two lines meet. Each line by itself is much faster than all in one,
  // which the system makes a single area of.
  for (int i = 0; i + 1 < count; ++i) ::Polyline(fHDC, points.data() + i, 2);
}

void CSketchPainter::PaintText(const TShape& shape) {
  POINT position = Place(shape.fPoints[0], 0);
  const int size = static_cast<int>(std::lround(shape.fSize * fPlacement.fScale));
  if (size < 1) return;
  ::SelectObject(fHDC, FontOfSize(size));
  ::SetTextColor(fHDC, NativeColor(shape.fColor));
  TEXTMETRICW metrics = {};
  ::GetTextMetricsW(fHDC, &metrics);
  for (const std::u16string& line : LinesOf(TextFromUTF8(shape.fText))) {
    ::TextOutW(fHDC, position.x, position.y, WideText(line), static_cast<int>(line.size()));
    position.y += metrics.tmHeight;
  }
  ::SelectObject(fHDC, ::GetStockObject(SYSTEM_FONT));
}

void CSketchPainter::PaintPixels(const TShape& shape) {
  const TSketchPicture* const picture = shape.fPicture.Get();
  const POINT topLeft = Place(shape.fPoints[0], 0);
  const POINT bottomRight = Place(shape.fPoints[1], 0);
  if (!picture || topLeft.x == bottomRight.x || topLeft.y == bottomRight.y) return;
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = static_cast<LONG>(picture->fWidth);
  info.bmiHeader.biHeight = -static_cast<LONG>(picture->fHeight);  // rows from the top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  ::SetStretchBltMode(fHDC, COLORONCOLOR);
  ::StretchDIBits(fHDC, topLeft.x, topLeft.y, bottomRight.x - topLeft.x, bottomRight.y - topLeft.y, 0, 0,
                  info.bmiHeader.biWidth, -info.bmiHeader.biHeight, picture->fPixels.data(), &info,
                  DIB_RGB_COLORS, SRCCOPY);
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
  if (!font.Get()) font = MakeLetterFont(deviceSize);
  return font.Get();
}

}  // namespace NSSketch
