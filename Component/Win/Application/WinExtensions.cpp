#include "Component/Win/Application/WinExtensions.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Opening/PendingCommandLines.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Services/WinIcon.h"
#include "Component/Win/Window/WinNativeControl.h"

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

// --- Icons

HICON__* CWinExtensions::IWinExtensions_GetIconHandle(const IIcon& icon, std::uint32_t size,
                                                      TError& outError) {
  HICON handle = nullptr;
  const bool isSize = size == 16 || size == 32 || size == 48 || size == 128;
  const CIconImpl* const impl = isSize ? dynamic_cast<const CIconImpl*>(&icon) : nullptr;
  outError = kBadInputProgrammingError;
  if (impl && icon.IIcon_CheckInvariant() != 0)
    outError = ErrorOf([&] { handle = impl->GetIconHandle(size); });
  return handle;
}

IIcon* CWinExtensions::IWinExtensions_CreateIconFromHandles(HICON__* icon16, HICON__* icon32, HICON__* icon48,
                                                            HICON__* icon128, TError& outError) {
  const HICON handles[] = {icon16, icon32, icon48, icon128};
  outError = kBadInputProgrammingError;
  bool isAnyGiven = false;
  for (const HICON handle : handles) {
    if (!handle) continue;
    if (std::count(std::begin(handles), std::end(handles), handle) > 1) return nullptr;
    isAnyGiven = true;
  }
  if (!isAnyGiven) return nullptr;
  IIcon* icon = nullptr;
  outError = ErrorOf([&] { icon = MakeIconFromHandles(icon16, icon32, icon48, icon128).release(); });
  return icon;
}

// --- Native controls

IWinNativeControlCallbackToken* CWinExtensions::IWinExtensions_HostNativeControl(
    HWND__* hwnd, IWinNativeControlCallback* callback, IView& view, TError& outError) {
  IWinNativeControlCallbackToken* token = nullptr;
  outError = ErrorOf([&] { token = HostNativeControl(hwnd, callback, view).release(); });
  return token;
}

}  // namespace NSMorvane
