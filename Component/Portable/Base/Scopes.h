// Two small classes that others are built from.
#pragma once

#include <utility>

namespace NSMorvane {

class CNotCopied {
 public:
  CNotCopied(const CNotCopied&) = delete;
  CNotCopied& operator=(const CNotCopied&) = delete;

 protected:
  CNotCopied() = default;
  ~CNotCopied() = default;
};

// Sets a flag as long as it exists, and then restores its old value.
class CFlagScope : CNotCopied {
 public:
  explicit CFlagScope(bool& flag) : fFlag(flag), fBefore(std::exchange(flag, true)) {}
  ~CFlagScope() { fFlag = fBefore; }

 private:
  bool& fFlag;
  const bool fBefore;
};

}  // namespace NSMorvane
