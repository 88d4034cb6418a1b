#include "Component/Win/Window/WinViewInspector.h"

#include "Component/Win/Drawing/WinDeviceContext.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"

namespace NSMorvane {

namespace {

constexpr COLORREF kBoundsColor = 0x7F7F7F;
constexpr COLORREF kFallingColor = 0x7FBF7F, kRisingColor = 0xBF7F7F;  // of the hatching
constexpr COLORREF kFrameColor = 0x3F7F3F;
constexpr COLORREF kNameColor = 0x1F1F6F, kNameBorderColor = 0xFFFFFF;

// Further out than any window reaches.
constexpr TRect kAround = {-14000, -14000, 14000, 14000};

// One-pixel lines at 45 degrees across a box, from top to bottom, to the right by `direction` or, with -1, to
// the left. They lie every 11 pixels, so that one of them would begin in the top left corner of `bounds`.
void DrawDiagonals(CDeviceContext& context, const TRect& box, const TRect& bounds, int direction,
                   COLORREF color) {
  constexpr std::int64_t kDistance = 11;
  const std::int64_t height = RectHeight(box);
  // Where lines that touch the box are at its top.
  const std::int64_t first = direction > 0 ? box.fLeft - height + 1 : box.fLeft;
  const std::int64_t end = direction > 0 ? box.fRight : box.fRight + height - 1;
  const std::int64_t corner = bounds.fLeft + direction * (std::int64_t{box.fTop} - bounds.fTop);
  const std::int64_t beyond = (corner - first) % kDistance;
  for (std::int64_t x = first + (beyond + kDistance) % kDistance; x < end; x += kDistance)
    context.DrawLine({ToCoordinate(x), box.fTop}, {ToCoordinate(x + direction * height), box.fBottom}, color,
                     PS_SOLID);
}

void Hatch(CDeviceContext& context, const CRegion& region, const TRect& bounds) {
  if (region.IsEmpty()) return;
  const HDC hdc = context.GetHDC();
  const CClipRegionSaver saver(hdc);
  POINT origin = {};
  GetWindowOrgEx(hdc, &origin);
  CRegion clip(region);  // in pixels of the device
  clip.Offset(-origin.x, -origin.y);
  SelectClipRgn(hdc, clip.GetNativeRegion());
  DrawDiagonals(context, region.GetBounds(), bounds, 1, kFallingColor);
  DrawDiagonals(context, region.GetBounds(), bounds, -1, kRisingColor);
}

// Dark letters with a light border at their sides.
void DrawName(CDeviceContext& context, const TRect& bounds, const TString& name) {
  const auto draw = [&](int distance, COLORREF color) {
    context.DrawLabel({ToCoordinate(std::int64_t{bounds.fLeft} + distance), bounds.fTop}, bounds, name,
                      color);
  };
  draw(0, kNameBorderColor);
  draw(2, kNameBorderColor);
  draw(1, kNameBorderColor);
  draw(1, kNameColor);
}

}  // namespace

// --- Drawing

void DrawViewBounds(CDeviceContext& context, const CViewImpl& view, const TRect& clip) {
  TRect visible = view.GetBounds();
  if (IntersectRect(visible, clip)) {
    context.FrameRect(visible, kBoundsColor, PS_DOT);
    CDeviceContext::Flush();
  } else {
    visible = {};
  }
  for (const TViewImplPtr& subView : view.GetSubViews()) DrawViewBounds(context, *subView, visible);
}

void DrawViewInfo(CDeviceContext& context, const CViewImpl& view) {
  // Without what nobody sees: a view may be four thousand million pixels wide.
  const TRect bounds = view.GetBounds();
  CRegion visible = FindVisibleRegion(view);
  visible.IntersectRect(kAround);
  Hatch(context, visible, bounds);
  // Nothing outside the super views: what is drawn there would stay when the view moves or ends.
  const TRect clip = view.GetClipBounds();
  const CClipRegionSaver saver(context.GetHDC());
  IntersectClipRect(context.GetHDC(), clip.fLeft, clip.fTop, clip.fRight, clip.fBottom);
  TRect frame = bounds;
  if (IntersectRect(frame, kAround)) context.FrameRect(frame, kFrameColor, PS_DASH);
  DrawName(context, bounds, DebugNameText(view));
  CDeviceContext::Flush();
}

// --- The inspector of a window

bool CWinViewInspector::IsOn() const { return fWindow.fHost->GetDebugSettings().fDrawMouseViewInfo != 0; }

bool CWinViewInspector::IsIdle() const { return !IsOn() && fInspector.IsIdle(); }

bool CWinViewInspector::Follow(const TPoint& point, bool isUnderMouse) {
  if (IsIdle()) return false;
  const bool isOn = IsOn();
  const bool isOther =
      fInspector.Inspect(isOn && isUnderMouse ? FindLeafView(*fWindow.fRootView, point) : nullptr);
  if (isOther && isOn) ::InvalidateRect(fWindow.fHwnd, nullptr, FALSE);
  return true;
}

void CWinViewInspector::Draw() const {
  const TViewImplPtr view = IsOn() ? fInspector.GetView() : nullptr;
  if (!view || !view->IsLive()) return;
  CClientContext context(fWindow.fHwnd);
  DrawViewInfo(context, *view);
}

}  // namespace NSMorvane
