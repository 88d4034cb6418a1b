// What else the portable half has from the platform half.
#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Component/Portable/Surfaces/PortState.h"
#include "Tests/Support/Contract.h"

namespace {

int gWindow = 0;
int gAnyFont = 0;
HFONT__* gFont = reinterpret_cast<HFONT__*>(&gAnyFont);

}  // namespace

namespace NSMorvane {

bool IsValidNativeWindow(const TNativeWindow& window) {
  return static_cast<void*>(window.fHwnd) == static_cast<void*>(&gWindow);
}

// Fonts stand for themselves: all contexts have the same one selected.
bool IsFont(HFONT__* font) { return font != nullptr; }
HFONT__* GetSelectedFont(HDC__*) { return gFont; }
void SelectFont(HDC__*, HFONT__* font) { gFont = font; }

// Nothing is clipped here.
void CKnownPort::SelectClip() const {}

}  // namespace NSMorvane

namespace NSMorvaneTest {

TNativeWindow AnyNativeWindow() { return {reinterpret_cast<HWND__*>(&gWindow)}; }

}  // namespace NSMorvaneTest
