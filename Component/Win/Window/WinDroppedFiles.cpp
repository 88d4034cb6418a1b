#include "Component/Win/Window/WinDroppedFiles.h"

// Needs windows.h before it.
#include <shellapi.h>
#include <shlobj.h>

#include <cstddef>
#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Opening/CommandLine.h"
#include "Component/Portable/Opening/DroppedFiles.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Platform/LateFunctions.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinFiles.h"
#include "Component/Win/Window/WindowHost.h"

namespace NSMorvane {

namespace {

using NSTextPackage::TString;

// Owns the block of global memory that came with WM_DROPFILES, which may contain anything.
class CDroppedFiles : CNotCopied {
 public:
  explicit CDroppedFiles(HGLOBAL block)
      : fDrop(static_cast<HDROP>(block)),
        fQueryFile(FindLate<decltype(DragQueryFileW)>(kShellLibrary, "DragQueryFileW")) {}
  ~CDroppedFiles() {
    if (const auto finish = FindLate<decltype(DragFinish)>(kShellLibrary, "DragFinish")) finish(fDrop);
  }

  UINT GetCount() const { return QueryFile(0xFFFFFFFF, nullptr, 0); }
  // Empty if there is no such file.
  TString GetName(UINT index) const {
    const UINT length = QueryFile(index, nullptr, 0);
    if (length == 0) return TString();
    TString name(std::size_t{length} + 2, u'\0');
    QueryFile(index, WinBuffer(name.data()), length + 2);
    name.resize(std::char_traits<TChar>::length(name.c_str()));
    return name;
  }

 private:
  UINT QueryFile(UINT index, wchar_t* buffer, UINT size) const {
    return fQueryFile ? fQueryFile(fDrop, index, buffer, size) : 0;
  }

  const HDROP fDrop;
  decltype(DragQueryFileW)* const fQueryFile;
};

static_assert(sizeof(DROPFILES) == sizeof(TDroppedFilesHeader) &&
              offsetof(DROPFILES, pFiles) == offsetof(TDroppedFilesHeader, fNamesOffset) &&
              offsetof(DROPFILES, fWide) == offsetof(TDroppedFilesHeader, fIsWide));

// Anyone can send the message, so the block is checked before it is read.
bool IsSoundDrop(HGLOBAL block) {
  const std::size_t size = GlobalSize(block);
  if (size == 0) return false;
  const auto bytes = static_cast<const std::byte*>(GlobalLock(block));
  if (!bytes) return false;
  const bool isSound = IsSoundDroppedFilesBlock(bytes, size);
  GlobalUnlock(block);
  return isSound;
}

}  // namespace

void LetDroppedFilesIn(HWND window) {
  constexpr UINT kCopyGlobalData = 0x0049;  // no header has it
  for (const UINT message : {UINT{WM_DROPFILES}, UINT{WM_COPYDATA}, kCopyGlobalData})
    ChangeWindowMessageFilterEx(window, message, MSGFLT_ALLOW, nullptr);
}

void OpenDroppedFiles(HGLOBAL drop, IWindowHost& host) {
  if (GlobalFlags(drop) == GMEM_INVALID_HANDLE) return;  // there is nothing to be freed
  const CDroppedFiles files(drop);
  if (!IsSoundDrop(drop)) return;
  const UINT count = files.GetCount();
  // A file that cannot be opened does not keep the others from it.
  TError firstError = kOK;
  for (UINT index = 0; index < count; ++index) {
    const TString name = files.GetName(index);
    for (const TString& path : SplitFileArguments(name, CFileSystemProbe())) {
      const TError error = ErrorOf([&] {
        IMorvaneRunBehavior* const behavior = host.GetBehavior();
        if (behavior) MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnOpenURL(PathToFileURL(path).c_str()));
      });
      if (firstError == kOK) firstError = error;
    }
  }
  MORVANE_CHECK(firstError);
}

}  // namespace NSMorvane
