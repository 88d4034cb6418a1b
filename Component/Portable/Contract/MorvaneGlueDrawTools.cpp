// The contract members of the draw tools, and the dirty region of the view that is being drawn.
#include <cstddef>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"
#include "Component/Portable/Contract/MorvaneGlueDrawTools.h"

namespace NSMorvane {

CDrawToolsGlue::CDrawToolsGlue(const TNativePort& nativePort, void* dirtyRegion)
    : fNativePort(nativePort), fDirtyRegion(dirtyRegion), fKnownPort(nativePort.fHDC) {
  MORVANE_ASSERT(fNativePort.fHDC != NULL);
}

CDrawToolsGlue::~CDrawToolsGlue() {
  MORVANE_ASSERT(!fNativePortIsOpen);
  MORVANE_ASSERT(!fRawPixelsAreOpen);
}

TError CDrawToolsGlue::IDrawTools_GetDirtyRegion(void*& outNativeRegion) {
  MORVANE_REQUIRE("CDrawToolsGlue::IDrawTools_GetDirtyRegion", (outNativeRegion == NULL));
  TError outError;
  CallHook(outError, [&] { outNativeRegion = GetCurrentDirtyRegion().GetNativeRegion(); });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

// Subviews begin with what is dirty in their super view, which is cut out once for all of them.
const CRegion& CDrawToolsGlue::GetCurrentDirtyRegion() {
  if (!fWholeDirtyRegion) fWholeDirtyRegion = CRegion(static_cast<TNativeRegion>(fDirtyRegion), true);
  const CRegion* region = &*fWholeDirtyRegion;
  for (TLevel& level : fLevels) {
    if (!level.fDirtyRegion) {
      CRegion part(*region);
      part.IntersectRect(level.fBounds);
      level.fDirtyRegion = std::move(part);
    }
    region = &*level.fDirtyRegion;
  }
  return *region;
}

TError CDrawToolsGlue::IDrawTools_OpenNativePort(TNativePort& out) {
  MORVANE_REQUIRE_SEQUENCE("CDrawToolsGlue::IDrawTools_OpenNativePort", !fNativePortIsOpen);
  MORVANE_REQUIRE_SEQUENCE("CDrawToolsGlue::IDrawTools_OpenNativePort", !fRawPixelsAreOpen);
  TError outError;
  CallHook(outError, [&] {
    out = UsePort();
    PutFontBack();
    fNativePortIsOpen = true;
  });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

TError CDrawToolsGlue::IDrawTools_OpenNativePortWithFont(HFONT__* font, TNativePort& out) {
  MORVANE_REQUIRE("CDrawToolsGlue::IDrawTools_OpenNativePortWithFont", IsFont(font));
  MORVANE_REQUIRE_SEQUENCE("CDrawToolsGlue::IDrawTools_OpenNativePortWithFont", !fNativePortIsOpen);
  MORVANE_REQUIRE_SEQUENCE("CDrawToolsGlue::IDrawTools_OpenNativePortWithFont", !fRawPixelsAreOpen);
  TError outError;
  CallHook(outError, [&] {
    out = UsePort();
    HFONT__* const selected = GetSelectedFont(out.fHDC);
    if (fLentFont == nullptr) fFontBefore = selected;
    if (selected != font) SelectFont(out.fHDC, font);
    fLentFont = font;
    fNativePortIsOpen = true;
  });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

TError CDrawToolsGlue::IDrawTools_CloseNativePort() {
  // Closing the wrong one of the two is bad input, which is tested before the sequence. Sic: the report names
  // the operation that opens.
  MORVANE_REQUIRE("CDrawToolsGlue::IDrawTools_OpenNativePort", !fRawPixelsAreOpen);
  MORVANE_REQUIRE_SEQUENCE("CDrawToolsGlue::IDrawTools_CloseNativePort", fNativePortIsOpen);
  TError outError;
  CallHook(outError, [&] {
    CDrawToolsGlue_CloseNativePort();
    fNativePortIsOpen = false;
  });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

TError CDrawToolsGlue::IDrawTools_OpenRawPixels(TRawPixels& out) {
  MORVANE_REQUIRE_SEQUENCE("CDrawToolsGlue::IDrawTools_OpenRawPixels", !fNativePortIsOpen);
  MORVANE_REQUIRE_SEQUENCE("CDrawToolsGlue::IDrawTools_OpenRawPixels", !fRawPixelsAreOpen);
  TError outError;
  CallHook(outError, [&] {
    out = CDrawToolsGlue_OpenRawPixels();
    fRawPixelsAreOpen = true;
  });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

TError CDrawToolsGlue::IDrawTools_CloseRawPixels() {
  MORVANE_REQUIRE("CDrawToolsGlue::IDrawTools_CloseRawPixels", !fNativePortIsOpen);
  MORVANE_REQUIRE_SEQUENCE("CDrawToolsGlue::IDrawTools_CloseRawPixels", fRawPixelsAreOpen);
  TError outError;
  CallHook(outError, [&] {
    CDrawToolsGlue_CloseRawPixels();
    fRawPixelsAreOpen = false;
  });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

void CDrawToolsGlue::PutFontBack() {
  if (fLentFont == nullptr) return;
  SelectFont(fNativePort.fHDC, fFontBefore);
  fLentFont = nullptr;
}

void CDrawToolsGlue::PushViewBounds(const TRect& bounds) {
  MORVANE_ASSERT(!fNativePortIsOpen);
  MORVANE_ASSERT(!fRawPixelsAreOpen);
  fLevels.push_back({bounds, std::nullopt});
}

void CDrawToolsGlue::PopViewBounds(const TRect& rect) {
  MORVANE_ASSERT(!fNativePortIsOpen);
  MORVANE_ASSERT(!fRawPixelsAreOpen);
  MORVANE_ASSERT_TEXT("fCurrentViewSubtreeBounds.size() > 0", fLevels.size() > 0);
  if (fLevels.empty()) return;
  const TRect& top = fLevels.back().fBounds;
  MORVANE_ASSERT(top.fLeft == rect.fLeft);
  MORVANE_ASSERT(top.fTop == rect.fTop);
  MORVANE_ASSERT(top.fRight == rect.fRight);
  MORVANE_ASSERT(top.fBottom == rect.fBottom);
  fLevels.pop_back();
}

void CDrawToolsGlue::CloseWhatIsLeftOpen() {
  MORVANE_ASSERT(!fNativePortIsOpen);
  MORVANE_ASSERT(!fRawPixelsAreOpen);
  if (fNativePortIsOpen) IDrawTools_CloseNativePort();
  if (fRawPixelsAreOpen) IDrawTools_CloseRawPixels();
}

TNativePort CDrawToolsGlue::UsePort() {
  fKnownPort.Use();
  return CDrawToolsGlue_GetNativePort();
}

}  // namespace NSMorvane
