// Callbacks of the client that wait for the release of a key.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <list>

#include "Interface/MorvaneKeyboard.h"
#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

// A callback is in the list until it returns, and is called once whatever it answers. It may install and
// remove others, and itself, meanwhile.
class CKeyReleases {
 public:
  CKeyReleases() = default;
  CKeyReleases(const CKeyReleases&) = delete;
  CKeyReleases& operator=(const CKeyReleases&) = delete;

  // The callback stays the client's.
  void Install(std::uint32_t virtualKey, IKeyReleaseCallback* callback);
  // One such pair. std::range_error if there is none.
  void Remove(std::uint32_t virtualKey, IKeyReleaseCallback* callback);

  // These two call those that are there now, and forget them: one that is installed on the way waits for the
  // next occasion. A failure is no reason not to call the others; the first one is returned.
  //
  // What waits for the release of this key.
  TError OnReleased(const TPhysicalKeySpec& key);
  // All that wait: the keyboard has gone elsewhere.
  TError Abandon();

 private:
  struct TEntry {
    std::uint32_t fVirtualKey;
    IKeyReleaseCallback* fCallback;
    bool fIsCalled;  // once; it is in the list until the call returns
  };
  using TEntryPtr = boost::shared_ptr<TEntry>;

  bool IsWaiting(const TEntryPtr& entry) const;
  TError CallAll(TKeyReleaseReason reason, const TPhysicalKeySpec* releasedKey);
  TError Call(const TEntryPtr& entry, const TPhysicalKeySpec& key, TKeyReleaseReason reason);

  std::list<TEntryPtr> fEntries;
};

}  // namespace NSMorvane
