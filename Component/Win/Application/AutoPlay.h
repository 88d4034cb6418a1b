// Suppression of the programs that the system starts from inserted media.
#pragma once

#include <windows.h>

#include <cstdint>

#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Interface/MorvaneWinExtensions.h"

namespace NSMorvane {

class CAutoPlay : CNotCopied {
 public:
  // Suppressions nest; to release what is not suppressed is kIllegalCallSequenceProgrammingError.
  TError Suppress(TAutoPlayCommand command);
  // Whether a message is the system's question about starting a program, and that is suppressed.
  bool IsSuppressedQuery(UINT message) const;

 private:
  UINT fRegisteredAutoPlayMessage = 0;  // 0 until it is first suppressed
  std::uint32_t fAutoPlaySuppressCount = 0;
};

}  // namespace NSMorvane
