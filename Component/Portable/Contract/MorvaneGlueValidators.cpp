#include "Component/Portable/Contract/MorvaneGlueValidators.h"

#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

namespace {

// The length of the text in a fixed array; the size of the array if no terminator is in it.
template <std::size_t kSize>
std::size_t LengthIn(const TChar (&text)[kSize]) {
  return NSTextPackage::CountChars(text, kSize);
}

bool FitsIn(const TSize& size, const TSize& limit) {
  return size.fWidth <= limit.fWidth && size.fHeight <= limit.fHeight;
}

}  // namespace

// One rule of a validator. A broken rule is reported at its own position, and the validator returns false.
#define RULE(...)          \
  do {                     \
    if (!(__VA_ARGS__)) {  \
      MORVANE_UNREACHED(); \
      return false;        \
    }                      \
  } while (false)

bool ValidateDebugSettings(const TDebugSettings& settings) {
  DebugPrint("ValidateDebugSettings()");
  DebugIndentScope indent;
  RULE(settings.fDebugMenu < 2);
  RULE(settings.fDrawInvalidationBlue < 2);
  RULE(settings.fDrawPaintsRed < 2);
  RULE(settings.fDrawViewBounds < 2);
  RULE(settings.fDrawMouseViewInfo < 2);
  RULE(settings.fFlushViews < 2);
  RULE(settings.fDelayAfterFlushing < 2);
  return true;
}

bool ValidateStartupParams(const TStartupParams& params) {
  DebugPrint("ValidateStartupParams()");
  DebugIndentScope indent;
  const auto isName = [](std::size_t length) { return length >= 1 && length <= kStartupNameChars; };
  RULE(isName(LengthIn(params.fCompanyName)));
  RULE(isName(LengthIn(params.fProductName)));
  RULE(isName(LengthIn(params.fDisplayName)));
  return true;
}

bool ValidateMonitors(const TMonitorList& monitors) {
  if (monitors.fMonitorCount == 0) return true;
  RULE(monitors.fMonitorCount <= kMaxMonitors);
  RULE(monitors.fMainMonitorIndex < monitors.fMonitorCount);
  for (std::uint32_t i = 0; i < monitors.fMonitorCount; ++i) {
    const TMonitor& monitor = monitors.fMonitors[i];
    const TRect& bounds = monitor.fBounds;
    const TRect& work = monitor.fWorkArea;
    if (!(work.fLeft >= bounds.fLeft && work.fTop >= bounds.fTop && bounds.fRight >= work.fRight &&
          bounds.fBottom >= work.fBottom)) {
      DebugPrint("Bad bounds for monitor " + std::to_string(i));
      RULE(false);
    }
    if (monitor.fBitDepth > 32) {
      DebugPrint("Bad bit depth for monitor " + std::to_string(i) + ": " + std::to_string(monitor.fBitDepth));
      RULE(false);
    }
  }
  return true;
}

bool ValidateShortcutModifiers(TShortcutModifiers mods) {
  RULE(mods >= kShortcutNone && mods <= kShortcutCommandAltShift);
  return true;
}

bool ValidateModifierKeys(const TModifierKeys& mods) {
  RULE((mods.fKeys & ~kModifierMask) == 0);
  return true;
}

bool ValidatePhysicalKeySpec(const TPhysicalKeySpec&) { return true; }

bool ValidateKeyInterpretation(const TKeyInterpretation& interpretation) {
  const std::size_t length = LengthIn(interpretation.fKeyText);
  RULE(length >= 1);
  RULE(length <= kKeyTextChars);
  RULE(ValidateModifierKeys(interpretation.fModifiers));
  RULE(ValidateFlag(interpretation.fPhysicalTest));
  return true;
}

bool ValidateBuiltinIcon(TBuiltinIcon icon) {
  RULE(icon >= kIconDocument && icon <= kIconStop);
  return true;
}

bool IsValidBuiltInMouseShape(TBuiltInMouseShape shape) {
  const std::uint32_t number = shape;
  return (number >= 1300 && number <= 1303) || (number >= 1400 && number <= 1405) ||
         (number >= 1500 && number <= 1505) || (number >= 1606 && number <= 1608) ||
         (number >= 1700 && number <= 1710);
}

bool ValidateDocumentWindowStyleFlags(TStyleFlags flags) {
  RULE((flags & ~0x00F00000u) == 0);
  return true;
}

bool ValidateModelessDialogStyleFlags(TStyleFlags flags) {
  RULE((flags & ~0x03F00000u) == 0);
  RULE((flags & kModelessDialogBorderlessBit) == 0 || (flags & 0x01F00000u) == 0);
  return true;
}

bool ValidateModalDialogStyleFlags(TStyleFlags flags) {
  RULE((flags & ~0x00D00000u) == 0);
  return true;
}

bool ValidateFloatingWindowStyleFlags(TStyleFlags flags) {
  RULE((flags & ~0x01F00000u) == 0);
  return true;
}

bool ValidateAlertSpec(const TAlertSpec& spec) {
  RULE(spec.fKind >= kAlertPlain && spec.fKind <= kAlertCaution);
  RULE(LengthIn(spec.fMessage) <= kAlertTextChars);
  RULE(LengthIn(spec.fDetails) <= kAlertTextChars);
  RULE(LengthIn(spec.fButton1) >= 1);
  RULE(LengthIn(spec.fButton1) <= kAlertTextChars);
  RULE(LengthIn(spec.fButton2) <= kAlertTextChars);
  RULE(LengthIn(spec.fButton3) <= kAlertTextChars);
  RULE(spec.fButton2[0] != 0 || spec.fButton3[0] == 0);
  return true;
}

bool ValidateCloseReason(TCloseReason reason) { return reason == kCloseByUser || reason == kCloseByLibrary; }

bool ValidateViewParams(const TViewParams& params) {
  RULE((params.fFlags & ~0xFu) == 0);
  RULE(params.fRect.fRight >= params.fRect.fLeft && params.fRect.fBottom >= params.fRect.fTop);
  RULE(params.fDrawMode >= kViewDrawDirect && params.fDrawMode <= kViewDrawPermanent32);
  return true;
}

namespace {

// What the states of all kinds have in common: everything before the placement.
template <class TState>
bool ValidateSizesAndTitle(const TState& state) {
  const TSize& minimum = state.fMinimumClientSize;
  const TSize& maximum = state.fMaximumClientSize;
  const TSize& ideal = state.fIdealClientSize;
  const TSize zero = {0, 0};
  RULE(FitsIn(zero, minimum));
  RULE(FitsIn(zero, maximum));
  RULE(FitsIn(zero, ideal));
  RULE((ideal.fWidth == 0) == (ideal.fHeight == 0));
  RULE(minimum.fWidth == 0 || maximum.fWidth == 0 || minimum.fWidth <= maximum.fWidth);
  RULE(minimum.fHeight == 0 || maximum.fHeight == 0 || minimum.fHeight <= maximum.fHeight);
  RULE(ideal.fWidth == 0 || minimum.fWidth == 0 || minimum.fWidth <= ideal.fWidth);
  RULE(ideal.fHeight == 0 || minimum.fHeight == 0 || minimum.fHeight <= ideal.fHeight);
  RULE(ideal.fWidth == 0 || maximum.fWidth == 0 || ideal.fWidth <= maximum.fWidth);
  RULE(ideal.fHeight == 0 || maximum.fHeight == 0 || ideal.fHeight <= maximum.fHeight);
  RULE(state.fModified < 2);
  RULE(LengthIn(state.fTitle) <= kTitleChars);
  return true;
}

bool IsZoomState(TZoomState zoomState) {
  return zoomState == kWindowStateIdeal || zoomState == kWindowStateUser;
}

bool ValidatePlacement(const TDocumentWindowPlacement& placement) {
  RULE(placement.fMinimized < 2);
  RULE(placement.fMaximized < 2);
  RULE(IsZoomState(placement.fZoomState));
  return true;
}

bool ValidatePlacement(const TModalDialogPlacement& placement) {
  RULE(placement.fMinimized < 2);
  RULE(IsZoomState(placement.fZoomState));
  return true;
}

bool ValidatePlacement(const TFloatingWindowPlacement& placement) {
  RULE(IsZoomState(placement.fZoomState));
  return true;
}

template <class TState>
bool ValidateState(const TState& state) {
  return ValidateSizesAndTitle(state) && ValidatePlacement(state.fPlacement);
}

}  // namespace

bool ValidateDocumentWindowState(const TDocumentWindowState& state) { return ValidateState(state); }
bool ValidateModelessDialogState(const TModelessDialogState& state) { return ValidateState(state); }
bool ValidateModalDialogState(const TModalDialogState& state) { return ValidateState(state); }
bool ValidateFloatingWindowState(const TFloatingWindowState& state) { return ValidateState(state); }

#undef RULE

}  // namespace NSMorvane
