#include "Component/Win/Application/WinExtensions.h"

#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Opening/PendingCommandLines.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

using NSTextPackage::TString;

TError CWinExtensions::IWinExtensions_GetCommandLineOptions(ITextReceiver& receiver) {
  TError result = kOK;
  const TError error = ErrorOf([&] {
    // A second launch may replace the list while the receiver runs.
    const std::vector<TString> options = fCommandLines.GetOptions();
    for (const TString& option : options) {
      result = receiver.ITextReceiver_ReceiveText(option.c_str());
      if (result != kOK) return;
    }
  });
  return error != kOK ? error : result;
}

TError CWinExtensions::IWinExtensions_SuppressAutoPlay(TAutoPlayCommand command) {
  return fAutoPlay.Suppress(command);
}

// --- What this build does not have

HICON__* CWinExtensions::IWinExtensions_GetIconHandle(const IIcon&, std::uint32_t, TError& outError) {
  outError = kUnsupported;
  return nullptr;
}

IIcon* CWinExtensions::IWinExtensions_CreateIconFromHandles(HICON__*, HICON__*, HICON__*, HICON__*,
                                                            TError& outError) {
  outError = kUnsupported;
  return nullptr;
}

IWinNativeControlCallbackToken* CWinExtensions::IWinExtensions_HostNativeControl(HWND__*,
                                                                                 IWinNativeControlCallback*,
                                                                                 IView&, TError& outError) {
  outError = kUnsupported;
  return nullptr;
}

}  // namespace NSMorvane
