// The keyboard services of the root object.
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Input/WinKeyboard.h"

namespace NSMorvane {

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

// --- Listeners

void CMorvaneImpl::CMorvaneGlue_AttachModifierKeyListener(IModifierKeyListener* listener) {
  fModifierKeyListeners.Attach(listener);
}

void CMorvaneImpl::CMorvaneGlue_DetachModifierKeyListener(IModifierKeyListener* listener) {
  fModifierKeyListeners.Detach(listener);
}

void CMorvaneImpl::NotifyModifierKeyListeners(const TModifierKeysEvent& previous,
                                              const TModifierKeysEvent& now) {
  fModifierKeyListeners.Notify(previous, now);
}

void CMorvaneImpl::CMorvaneGlue_InstallKeyReleaseCallback(std::uint32_t virtualKey,
                                                          IKeyReleaseCallback* callback) {
  fKeyReleases.Install(virtualKey, callback);
}

void CMorvaneImpl::CMorvaneGlue_RemoveKeyReleaseCallback(std::uint32_t virtualKey,
                                                         IKeyReleaseCallback* callback) {
  fKeyReleases.Remove(virtualKey, callback);
}

void CMorvaneImpl::OnKeyReleased(const TPhysicalKeySpec& key) { MORVANE_CHECK(fKeyReleases.OnReleased(key)); }

}  // namespace NSMorvane
