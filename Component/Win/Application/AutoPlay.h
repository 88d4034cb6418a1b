// Suppression of the programs that the system starts from inserted media.
#pragma once

#include <windows.h>

#include <cstdint>

#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Interface/MorvaneWinExtensions.h"

namespace NSMorvane {

class CAutoPlay : CNotCopied {
 public:
  // Suppressions nest. A release without a suppression gives kIllegalCallSequenceProgrammingError.
  TError Suppress(TAutoPlayCommand command);
  // Whether the message is the system's AutoPlay query and AutoPlay is suppressed.
  bool IsSuppressedQuery(UINT message) const;

 private:
  UINT fRegisteredAutoPlayMessage = 0;  // 0 until the first suppression
  std::uint32_t fAutoPlaySuppressCount = 0;
};

}  // namespace NSMorvane
