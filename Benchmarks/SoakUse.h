// What a process uses, and whether that has grown.
#pragma once

#include <map>
#include <string>

namespace NSSoak {

struct TUse {
  long long fBytes;                               // committed memory of its own
  std::map<std::string, unsigned long> fObjects;  // handles, by what they are
};

// Measures at the end of each round of a run, and compares the first tenth of the rounds with the last.
class CUseWatch {
 public:
  // A multiple of ten.
  explicit CUseWatch(int rounds) : fRounds(rounds) {}

  // Prints a line with `what` after each tenth.
  void EndRound(const std::string& what);
  bool IsOver() const { return fRound == fRounds; }
  int Round() const { return fRound; }
  // When it is over: by more than 2 MiB, or 16 handles of a kind. What is kept for later varies, so the most
  // of the first tenth counts, and the least of the last.
  bool HasGrown() const;

 private:
  int fRounds;
  int fRound = 0;  // how many have ended
  TUse fFirst = {};
  TUse fLast = {};
};

// Has the system make what it makes once and then keeps, so that it does not count as growth.
void FillSystemCaches();

}  // namespace NSSoak
