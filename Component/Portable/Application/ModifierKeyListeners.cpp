#include "Component/Portable/Application/ModifierKeyListeners.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

void CModifierKeyListeners::Attach(IModifierKeyListener* listener) {
  fModifierKeyListeners.push_back(listener);
}

void CModifierKeyListeners::Detach(IModifierKeyListener* listener) {
  const auto found = std::find(fModifierKeyListeners.begin(), fModifierKeyListeners.end(), listener);
  if (found == fModifierKeyListeners.end()) {
    DebugPrint(
        "CMorvaneGlue_DetachModifierKeyListener called with a listener that has not been previously "
        "attached.");
    MORVANE_UNREACHED();
    MORVANE_THROW(std::invalid_argument("Unknown listener"));
  }
  const std::size_t oldSize = fModifierKeyListeners.size();
  fModifierKeyListeners.erase(found);
  MORVANE_ASSERT(fModifierKeyListeners.size() == oldSize - 1);
}

void CModifierKeyListeners::Notify(const TModifierKeysEvent& previous, const TModifierKeysEvent& now) const {
  const std::list<IModifierKeyListener*> listeners = fModifierKeyListeners;
  for (IModifierKeyListener* const listener : listeners) {
    if (std::find(fModifierKeyListeners.begin(), fModifierKeyListeners.end(), listener) !=
        fModifierKeyListeners.end())
      listener->IModifierKeyListener_OnModifiersChanged(previous, now);
  }
}

}  // namespace NSMorvane
