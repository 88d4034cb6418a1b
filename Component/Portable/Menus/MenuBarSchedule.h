// When menu bars are filled anew: requests are counted, and served all at once by the next flush.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace NSMorvane {

class CMenuBarSchedule {
 public:
  CMenuBarSchedule() = default;
  CMenuBarSchedule(const CMenuBarSchedule&) = delete;
  CMenuBarSchedule& operator=(const CMenuBarSchedule&) = delete;

  void Request();
  // Requested, and not yet taken.
  bool IsRequested() const { return fRequests != 0; }
  // All requests are served from here on. False if there are none.
  bool TakeRequests();

  // Runs the set-up of one window. A set-up sends messages by itself, can open a dialog even, and with each
  // of them comes here again. What is asked for the same window meanwhile waits for the end of the outermost
  // one, and is then requested again; the other windows need not wait. Throws what the set-up throws.
  void SetUp(const void* window, const std::function<void()>& setUp);

 private:
  std::uint32_t fRequests = 0;        // since they were last taken
  std::vector<const void*> fInSetUp;  // the innermost last
  bool fIsOneWaiting = false;         // one of these has been asked for again
};

}  // namespace NSMorvane
