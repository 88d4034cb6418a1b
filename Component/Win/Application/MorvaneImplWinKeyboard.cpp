// The keyboard services of the root object: what keys mean, listeners of modifier keys, key releases.
#include <algorithm>
#include <boost/make_shared.hpp>

#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Input/WinKeyboard.h"

namespace NSMorvane {

// --- What keys mean

TModifierKeys CMorvaneImpl::CMorvaneGlue_ShortcutModsToModifiers(TShortcutModifiers shortcutMods) {
  switch (shortcutMods) {
    case kShortcutNone:
      return {0, 0};
    case kShortcutCommand:
      return {kModifierControl, 0};
    case kShortcutCommandShift:
      return {kModifierControl | kModifierShift, 0};
    case kShortcutCommandAlt:
      return {kModifierControl | kModifierAlt, 0};
    case kShortcutCommandAltShift:
      return {kModifierControl | kModifierAlt | kModifierShift, 0};
  }
  MORVANE_UNREACHED();
  MORVANE_THROW(std::exception());
}

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
  fKeyReleaseCallbacks.push_back(
      boost::make_shared<TKeyReleaseEntry>(TKeyReleaseEntry{virtualKey, callback, false}));
}

void CMorvaneImpl::CMorvaneGlue_RemoveKeyReleaseCallback(std::uint32_t virtualKey,
                                                         IKeyReleaseCallback* callback) {
  // One that is being called is removed after its call anyway. If there is another one with the same pair,
  // that one is meant.
  auto found = fKeyReleaseCallbacks.end();
  for (auto entry = fKeyReleaseCallbacks.begin(); entry != fKeyReleaseCallbacks.end(); ++entry) {
    if ((*entry)->fVirtualKey != virtualKey || (*entry)->fCallback != callback) continue;
    if (found == fKeyReleaseCallbacks.end()) found = entry;
    if ((*entry)->fIsCalled) continue;
    found = entry;
    break;
  }
  if (found == fKeyReleaseCallbacks.end()) MORVANE_THROW(std::range_error("bad callback"));
  fKeyReleaseCallbacks.erase(found);
}

TError CMorvaneImpl::CallKeyRelease(const boost::shared_ptr<TKeyReleaseEntry>& entry,
                                    const TPhysicalKeySpec& key, TKeyReleaseReason reason) {
  // A copy: the callback may remove itself.
  const boost::shared_ptr<TKeyReleaseEntry> called = entry;
  called->fIsCalled = true;
  TError error = kOK;
  const TError thrownError = ErrorOf([&] {
    if (called->fCallback) error = called->fCallback->IKeyReleaseCallback_OnKeyReleased(key, reason);
  });
  fKeyReleaseCallbacks.remove(called);
  return thrownError != kOK ? thrownError : error;
}

void CMorvaneImpl::OnKeyReleased(const TPhysicalKeySpec& key) {
  MORVANE_CHECK(CallKeyReleases(kKeyReleaseKeyUp, &key));
}

TError CMorvaneImpl::AbandonKeyReleases() { return CallKeyReleases(kKeyReleaseDeactivated, nullptr); }

bool CMorvaneImpl::IsWaiting(const boost::shared_ptr<TKeyReleaseEntry>& entry) const {
  return !entry->fIsCalled && std::find(fKeyReleaseCallbacks.begin(), fKeyReleaseCallbacks.end(), entry) !=
                                  fKeyReleaseCallbacks.end();
}

// Calls those that are there now: one that is installed on the way waits for the next occasion. A failure is
// no reason not to call the others; the first one is returned.
TError CMorvaneImpl::CallKeyReleases(TKeyReleaseReason reason, const TPhysicalKeySpec* releasedKey) {
  TError firstError = kOK;
  for (const auto& entry : TKeyReleaseList(fKeyReleaseCallbacks)) {
    if ((releasedKey && entry->fVirtualKey != releasedKey->fVirtualKey) || !IsWaiting(entry)) continue;
    const TPhysicalKeySpec ownKey = {static_cast<std::uint8_t>(entry->fVirtualKey), 0, 0};
    const TError error = CallKeyRelease(entry, releasedKey ? *releasedKey : ownKey, reason);
    if (firstError == kOK) firstError = error;
  }
  return firstError;
}

}  // namespace NSMorvane
