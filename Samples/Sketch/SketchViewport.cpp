#include "SketchViewport.h"

#include <MorvaneDefaults.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr int kSteps[] = {10, 25, 33, 50, 67, 75, 100, 125, 150, 200, 300, 400, 600, 800};
constexpr std::int32_t kMargin = 32;  // of desk around the sheet

std::int32_t Floor(double value) { return static_cast<std::int32_t>(std::floor(value)); }

}  // namespace

TSize CSketchViewport::DeskSize() const {
  return {std::max(WidthOf(fArea), Floor(fSheetSize.fWidth * Scale()) + 2 * kMargin),
          std::max(HeightOf(fArea), Floor(fSheetSize.fHeight * Scale()) + 2 * kMargin)};
}

TRect CSketchViewport::Desk() const {
  const TSize size = DeskSize();
  return {fDesk.fX, fDesk.fY, fDesk.fX + size.fWidth, fDesk.fY + size.fHeight};
}

TRect CSketchViewport::Sheet() const {
  const TSize desk = DeskSize();
  const std::int32_t width = std::max(Floor(fSheetSize.fWidth * Scale()), 1);
  const std::int32_t height = std::max(Floor(fSheetSize.fHeight * Scale()), 1);
  const std::int32_t left = fDesk.fX + (desk.fWidth - width) / 2;
  const std::int32_t top = fDesk.fY + (desk.fHeight - height) / 2;
  return {left, top, left + width, top + height};
}

TPoint CSketchViewport::Middle() const {
  return {(fArea.fLeft + fArea.fRight) / 2, (fArea.fTop + fArea.fBottom) / 2};
}

void CSketchViewport::SetArea(const TRect& area) {
  fDesk.fX += area.fLeft - fArea.fLeft;
  fDesk.fY += area.fTop - fArea.fTop;
  fArea = area;
  KeepInArea();
}

void CSketchViewport::SetSheetSize(TSketchSize size) {
  fSheetSize = size;
  KeepInArea();
}

void CSketchViewport::ZoomTo(int percent, const TPoint& fixed) {
  const TRect before = Sheet();
  const double x = (fixed.fX - before.fLeft) / Scale();
  const double y = (fixed.fY - before.fTop) / Scale();
  fPercent = std::clamp(percent, kSteps[0], *std::rbegin(kSteps));
  const TRect after = Sheet();
  fDesk.fX += fixed.fX - (after.fLeft + Floor(x * Scale() + 0.5));
  fDesk.fY += fixed.fY - (after.fTop + Floor(y * Scale() + 0.5));
  KeepInArea();
}

int CSketchViewport::NextZoom(bool larger) const {
  if (larger) {
    const auto* const next = std::upper_bound(std::begin(kSteps), std::end(kSteps), fPercent);
    return next == std::end(kSteps) ? fPercent : *next;
  }
  const auto* const same = std::lower_bound(std::begin(kSteps), std::end(kSteps), fPercent);
  return same == std::begin(kSteps) ? fPercent : *(same - 1);
}

int CSketchViewport::FittingZoom() const {
  const double width = 100.0 * (WidthOf(fArea) - 2 * kMargin) / fSheetSize.fWidth;
  const double height = 100.0 * (HeightOf(fArea) - 2 * kMargin) / fSheetSize.fHeight;
  return std::clamp(Floor(std::min(width, height)), kSteps[0], *std::rbegin(kSteps));
}

TPoint CSketchViewport::PossibleScroll(const TPoint& scroll) const {
  const TRect desk = Desk();
  return {
      std::clamp(scroll.fX, std::min(fArea.fRight - desk.fRight, 0), std::max(fArea.fLeft - desk.fLeft, 0)),
      std::clamp(scroll.fY, std::min(fArea.fBottom - desk.fBottom, 0), std::max(fArea.fTop - desk.fTop, 0))};
}

void CSketchViewport::Scroll(const TPoint& scroll) {
  fDesk.fX += scroll.fX;
  fDesk.fY += scroll.fY;
}

void CSketchViewport::KeepInArea() {
  const TSize desk = DeskSize();
  fDesk.fX = std::clamp(fDesk.fX, fArea.fRight - desk.fWidth, fArea.fLeft);
  fDesk.fY = std::clamp(fDesk.fY, fArea.fBottom - desk.fHeight, fArea.fTop);
}

TSketchPoint CSketchViewport::ToDocument(const TPoint& point) const {
  const TRect sheet = Sheet();
  return {Floor((point.fX - sheet.fLeft) / Scale()), Floor((point.fY - sheet.fTop) / Scale())};
}

TPoint CSketchViewport::ToWindow(TSketchPoint point) const {
  const TRect sheet = Sheet();
  return {sheet.fLeft + Floor(point.fX * Scale()), sheet.fTop + Floor(point.fY * Scale())};
}

TRect CSketchViewport::ToWindow(const TSketchRect& rect) const {
  const TPoint topLeft = ToWindow(TSketchPoint{rect.fLeft, rect.fTop});
  const TPoint bottomRight = ToWindow(TSketchPoint{rect.fRight, rect.fBottom});
  return {topLeft.fX, topLeft.fY, bottomRight.fX + 1, bottomRight.fY + 1};
}

}  // namespace NSSketch
