// What exists on Windows only: options of the command line, suppression of AutoPlay. These operations have no
// contract members in front of them and keep exceptions in by themselves.
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

TError CMorvaneImpl::IWinExtensions_GetCommandLineOptions(ITextReceiver& receiver) {
  TError result = kOK;
  const TError error = ErrorOf([&] {
    // A second launch may replace the list while the receiver runs.
    const std::vector<TString> options = fCommandLineOptions;
    for (const TString& option : options) {
      result = receiver.ITextReceiver_ReceiveText(option.c_str());
      if (result != kOK) return;
    }
  });
  return error != kOK ? error : result;
}

// --- AutoPlay

TError CMorvaneImpl::IWinExtensions_SuppressAutoPlay(TAutoPlayCommand command) {
  switch (command) {
    case kAutoPlaySuppress:
      return ErrorOf([this] {
        if (fAutoPlaySuppressCount == 0 && fRegisteredAutoPlayMessage == 0) {
          fRegisteredAutoPlayMessage = ::RegisterWindowMessageW(L"QueryCancelAutoPlay");
          if (fRegisteredAutoPlayMessage == 0) {
            MORVANE_THROW_LAST_ERROR();
            MORVANE_THROW(std::exception());
          }
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

bool CMorvaneImpl::IsAutoPlayQuery(UINT message) {
  if (fAutoPlaySuppressCount == 0) return false;
  MORVANE_ASSERT(fRegisteredAutoPlayMessage != 0);
  if (message != fRegisteredAutoPlayMessage) return false;
  DebugPrint("Stopped an autoplay from occuring!");  // sic
  return true;
}

}  // namespace NSMorvane
