// The operations that exist on Windows only. They have no contract members in front of them, so each keeps
// its exceptions in itself.
#pragma once

#include "Component/Win/Application/AutoPlay.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Interface/Morvane.h"

namespace NSMorvane {

class CPendingCommandLines;

class CWinExtensions : CNotCopied, public IWinExtensions {
 public:
  explicit CWinExtensions(const CPendingCommandLines& commandLines) : fCommandLines(commandLines) {}

  const CAutoPlay& GetAutoPlay() const { return fAutoPlay; }

  HICON__* IWinExtensions_GetIconHandle(const IIcon& icon, std::uint32_t size, TError& outError) override;
  IIcon* IWinExtensions_CreateIconFromHandles(HICON__* icon16, HICON__* icon32, HICON__* icon48,
                                              HICON__* icon128, TError& outError) override;
  TError IWinExtensions_GetCommandLineOptions(ITextReceiver& receiver) override;
  TError IWinExtensions_SuppressAutoPlay(TAutoPlayCommand command) override;
  IWinNativeControlCallbackToken* IWinExtensions_HostNativeControl(HWND__* hwnd,
                                                                   IWinNativeControlCallback* callback,
                                                                   IView& view, TError& outError) override;

 private:
  const CPendingCommandLines& fCommandLines;
  CAutoPlay fAutoPlay;
};

}  // namespace NSMorvane
