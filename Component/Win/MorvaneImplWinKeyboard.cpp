// The keyboard services of the root object: what keys mean, listeners of modifier keys, key releases.
#include <algorithm>

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

// --- Listeners of modifier keys

void CMorvaneImpl::CMorvaneGlue_AttachModifierKeyListener(IModifierKeyListener* listener) {
  fModifierKeyListeners.push_back(listener);
}

void CMorvaneImpl::CMorvaneGlue_DetachModifierKeyListener(IModifierKeyListener* listener) {
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

void CMorvaneImpl::NotifyModifierKeyListeners(const TModifierKeysEvent& previous,
                                              const TModifierKeysEvent& now) {
  // A listener may detach itself and others.
  const std::list<IModifierKeyListener*> listeners = fModifierKeyListeners;
  for (IModifierKeyListener* const listener : listeners) {
    if (std::find(fModifierKeyListeners.begin(), fModifierKeyListeners.end(), listener) !=
        fModifierKeyListeners.end())
      listener->IModifierKeyListener_OnModifiersChanged(previous, now);
  }
}

// --- Key releases
//
// A callback is in the list until it returns, and is called once whatever it answers.

void CMorvaneImpl::CMorvaneGlue_InstallKeyReleaseCallback(std::uint32_t virtualKey,
                                                          IKeyReleaseCallback* callback) {
  fKeyReleaseCallbacks.emplace_back(virtualKey, callback);
}

void CMorvaneImpl::CMorvaneGlue_RemoveKeyReleaseCallback(std::uint32_t virtualKey,
                                                         IKeyReleaseCallback* callback) {
  if (!ForgetKeyReleaseCallback({virtualKey, callback})) MORVANE_THROW(std::range_error("bad callback"));
}

bool CMorvaneImpl::ForgetKeyReleaseCallback(const TKeyReleaseEntry& entry) {
  const auto found = std::find(fKeyReleaseCallbacks.begin(), fKeyReleaseCallbacks.end(), entry);
  if (found == fKeyReleaseCallbacks.end()) return false;
  fKeyReleaseCallbacks.erase(found);
  return true;
}

TError CMorvaneImpl::CallKeyReleaseCallback(const TKeyReleaseEntry& entry, const TPhysicalKeySpec& key,
                                            TKeyReleaseReason reason) {
  return entry.second ? entry.second->IKeyReleaseCallback_OnKeyReleased(key, reason) : TError{kOK};
}

void CMorvaneImpl::OnKeyReleased(const TPhysicalKeySpec& key) {
  while (true) {
    const auto found = std::find_if(fKeyReleaseCallbacks.begin(), fKeyReleaseCallbacks.end(),
                                    [&](const auto& entry) { return entry.first == key.fVirtualKey; });
    if (found == fKeyReleaseCallbacks.end()) return;
    const TKeyReleaseEntry entry = *found;
    const TError error = CallKeyReleaseCallback(entry, key, kKeyReleaseKeyUp);
    ForgetKeyReleaseCallback(entry);
    MORVANE_CHECK(error);
  }
}

void CMorvaneImpl::AbandonKeyReleases() {
  TError firstError = kOK;
  const std::list<TKeyReleaseEntry> entries = fKeyReleaseCallbacks;
  for (const TKeyReleaseEntry& entry : entries) {
    // Another one may have removed it.
    if (std::find(fKeyReleaseCallbacks.begin(), fKeyReleaseCallbacks.end(), entry) ==
        fKeyReleaseCallbacks.end())
      continue;
    const TPhysicalKeySpec key = {static_cast<std::uint8_t>(entry.first), 0, 0};
    const TError error = CallKeyReleaseCallback(entry, key, kKeyReleaseDeactivated);
    if (firstError == kOK) firstError = error;
  }
  fKeyReleaseCallbacks.clear();
  MORVANE_CHECK(firstError);
}

}  // namespace NSMorvane
