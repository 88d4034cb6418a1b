// Callbacks of the client that wait for the release of a key.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <list>

#include "Interface/MorvaneKeyboard.h"
#include "Interface/MorvaneTypes.h"

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// A callback stays in the list until its call returns, and is called only once, whatever it returns. During
// the call it may install and remove callbacks, itself included.
class CKeyReleases : CNotCopied {
 public:
  CKeyReleases() = default;

  // The client keeps the ownership of the callback.
  void Install(std::uint32_t virtualKey, IKeyReleaseCallback* callback);
  // Removes one such pair. Throws std::range_error if there is none.
  void Remove(std::uint32_t virtualKey, IKeyReleaseCallback* callback);

  // These two call the callbacks that are installed now, and remove them. A callback that is installed
  // meanwhile waits for the next occasion. If one fails, the others are called all the same; the first
  // failure is returned.
  //
  // Calls the callbacks that wait for the release of this key.
  TError OnReleased(const TPhysicalKeySpec& key);
  // Calls all callbacks, because the keyboard has gone elsewhere.
  TError Abandon();

 private:
  struct TEntry {
    std::uint32_t fVirtualKey;
    IKeyReleaseCallback* fCallback;
    bool fIsCalled;  // its call has begun; it stays in the list until the call returns
  };
  using TEntryPtr = boost::shared_ptr<TEntry>;

  bool IsWaiting(const TEntryPtr& entry) const;
  TError CallAll(TKeyReleaseReason reason, const TPhysicalKeySpec* releasedKey);
  TError Call(const TEntryPtr& entry, const TPhysicalKeySpec& key, TKeyReleaseReason reason);

  std::list<TEntryPtr> fEntries;
};

}  // namespace NSMorvane
