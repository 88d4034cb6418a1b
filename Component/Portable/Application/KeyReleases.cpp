#include "Component/Portable/Application/KeyReleases.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <stdexcept>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

void CKeyReleases::Install(std::uint32_t virtualKey, IKeyReleaseCallback* callback) {
  fEntries.push_back(boost::make_shared<TEntry>(TEntry{virtualKey, callback, false}));
}

void CKeyReleases::Remove(std::uint32_t virtualKey, IKeyReleaseCallback* callback) {
  // A callback that is being called is removed after its call anyway. So if the same pair is installed a
  // second time, that entry is removed instead.
  auto found = fEntries.end();
  for (auto entry = fEntries.begin(); entry != fEntries.end(); ++entry) {
    if ((*entry)->fVirtualKey != virtualKey || (*entry)->fCallback != callback) continue;
    if (found == fEntries.end()) found = entry;
    if ((*entry)->fIsCalled) continue;
    found = entry;
    break;
  }
  if (found == fEntries.end()) MORVANE_THROW(std::range_error("bad callback"));
  fEntries.erase(found);
}

TError CKeyReleases::OnReleased(const TPhysicalKeySpec& key) { return CallAll(kKeyReleaseKeyUp, &key); }

TError CKeyReleases::Abandon() { return CallAll(kKeyReleaseDeactivated, nullptr); }

// Whether it is still in the list, whatever the other callbacks did, and has not been called yet.
bool CKeyReleases::IsWaiting(const TEntryPtr& entry) const {
  return !entry->fIsCalled && std::find(fEntries.begin(), fEntries.end(), entry) != fEntries.end();
}

TError CKeyReleases::CallAll(TKeyReleaseReason reason, const TPhysicalKeySpec* releasedKey) {
  TError firstError = kOK;
  for (const TEntryPtr& entry : std::list<TEntryPtr>(fEntries)) {
    if ((releasedKey && entry->fVirtualKey != releasedKey->fVirtualKey) || !IsWaiting(entry)) continue;
    const TPhysicalKeySpec ownKey = {static_cast<std::uint8_t>(entry->fVirtualKey), 0, 0};
    const TError error = Call(entry, releasedKey ? *releasedKey : ownKey, reason);
    if (firstError == kOK) firstError = error;
  }
  return firstError;
}

TError CKeyReleases::Call(const TEntryPtr& entry, const TPhysicalKeySpec& key, TKeyReleaseReason reason) {
  entry->fIsCalled = true;
  TError error = kOK;
  const TError thrownError = ErrorOf([&] {
    if (entry->fCallback) error = entry->fCallback->IKeyReleaseCallback_OnKeyReleased(key, reason);
  });
  fEntries.remove(entry);
  return thrownError != kOK ? thrownError : error;
}

}  // namespace NSMorvane
