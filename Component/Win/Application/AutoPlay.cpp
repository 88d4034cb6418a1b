#include "Component/Win/Application/AutoPlay.h"

#include <exception>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

TError CAutoPlay::Suppress(TAutoPlayCommand command) {
  switch (command) {
    case kAutoPlaySuppress:
      return ErrorOf([this] {
        if (fAutoPlaySuppressCount == 0 && fRegisteredAutoPlayMessage == 0) {
          fRegisteredAutoPlayMessage = ::RegisterWindowMessageW(L"QueryCancelAutoPlay");
          if (fRegisteredAutoPlayMessage == 0) MORVANE_THROW_LAST_ERROR();
        }
        ++fAutoPlaySuppressCount;
      });
    case kAutoPlayRelease:
      if (fAutoPlaySuppressCount == 0) return kIllegalCallSequenceProgrammingError;
      MORVANE_ASSERT(fAutoPlaySuppressCount > 0);
      --fAutoPlaySuppressCount;
      return kOK;
  }
  return kBadInputProgrammingError;
}

bool CAutoPlay::IsSuppressedQuery(UINT message) const {
  if (fAutoPlaySuppressCount == 0) return false;
  MORVANE_ASSERT(fRegisteredAutoPlayMessage != 0);
  if (message != fRegisteredAutoPlayMessage) return false;
  DebugPrint("Stopped an autoplay from occuring!");  // sic
  return true;
}

}  // namespace NSMorvane
