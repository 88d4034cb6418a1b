// When menu bars are filled again: requests are counted, and the next flush handles all of them at once.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

class CMenuBarSchedule : CNotCopied {
 public:
  CMenuBarSchedule() = default;

  void Request();
  // Whether there are requests that have not been taken yet.
  bool IsRequested() const { return fRequests != 0; }
  // Takes all requests, which the caller then handles. False if there are none.
  bool TakeRequests();

  // Runs the set-up of one window. A set-up sends messages and may even open a dialog, and each of these can
  // lead to another call of this. If the set-up of the same window is running already, the call does nothing
  // now, and a new request is made at the end of the outermost set-up. The set-ups of other windows run at
  // once. Throws what the set-up throws.
  void SetUp(const void* window, const std::function<void()>& setUp);

 private:
  std::uint32_t fRequests = 0;        // since they were last taken
  std::vector<const void*> fInSetUp;  // windows in set-up, the innermost last
  bool fIsOneWaiting = false;         // a set-up of one of these has been asked for again
};

}  // namespace NSMorvane
