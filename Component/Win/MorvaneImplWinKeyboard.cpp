// The keyboard services of the root object: what keys mean, listeners of modifier keys, key releases.
#include "Component/Win/MorvaneImplWin.h"
#include "Component/Win/WinKeyboard.h"

namespace NSMorvane {

// --- What keys mean

bool CMorvaneImpl::CMorvaneGlue_CanKeyBeInterpretedAs(const TPhysicalKeySpec& physicalKey,
                                                      const TModifierKeys& physicalMods,
                                                      const TKeyInterpretation& wantedInterpretation) {
  return CanKeyBeInterpretedAs(physicalMods, physicalKey, wantedInterpretation);
}

TKeyInterpretation CMorvaneImpl::CMorvaneGlue_GetDefaultInterpretation(const TPhysicalKeySpec& physicalKey,
                                                                       const TModifierKeys& physicalMods) {
  return GetDefaultInterpretation(physicalMods, physicalKey);
}

}  // namespace NSMorvane
