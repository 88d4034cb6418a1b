#include "Component/Win/Dialogs/WinFolderChooserDialog.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/LateFunctions.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinFiles.h"

namespace NSMorvane {

namespace {

constexpr UINT kBrowseFlags = BIF_RETURNONLYFSDIRS | BIF_EDITBOX | BIF_NEWDIALOGSTYLE;
static_assert(kBrowseFlags == 0x51);

// False if the item is no folder of the file system. The buffer holds MAX_PATH characters at least.
bool GetItemPath(PCIDLIST_ABSOLUTE itemList, TChar* buffer) {
  const auto getPath = FindLate<decltype(SHGetPathFromIDListW)>(kShellLibrary, "SHGetPathFromIDListW");
  return getPath && getPath(itemList, WinBuffer(buffer));
}

}  // namespace

CFolderChooserDialogInfo::CFolderChooserDialogInfo(IWindowHost& host, const TFileDialogRequest& request,
                                                   IDirectoryChooserBehavior* behavior, const TString& prompt)
    : CFileDialogInfo(host, request, kFolderChooserMemory), fBehavior(behavior), fPrompt(prompt) {
  const auto getMalloc = FindLate<decltype(SHGetMalloc)>(kShellLibrary, "SHGetMalloc");
  if (!getMalloc || FAILED(getMalloc(&fShellMalloc)) || !fShellMalloc) MORVANE_THROW(XOutOfMemory());
}

CFolderChooserDialogInfo::~CFolderChooserDialogInfo() { fShellMalloc->Release(); }

std::string CFolderChooserDialogInfo::ShowDialog() {
  TChar displayName[MAX_PATH] = {};
  BROWSEINFOW browseInfo = {};
  browseInfo.hwndOwner = GetOwnerHwnd();
  browseInfo.pszDisplayName = WinBuffer(displayName);
  browseInfo.lpszTitle = WinText(fPrompt);
  browseInfo.ulFlags = HasOle() ? kBrowseFlags : kBrowseFlags & ~BIF_NEWDIALOGSTYLE;
  browseInfo.lpfn = BrowseProc;
  browseInfo.lParam = reinterpret_cast<LPARAM>(this);
  const auto browse = FindLate<decltype(SHBrowseForFolderW)>(kShellLibrary, "SHBrowseForFolderW");
  const PIDLIST_ABSOLUTE itemList = browse ? browse(&browseInfo) : nullptr;
  if (!itemList) return std::string();
  TChar buffer[MAX_PATH + 1] = {};
  const bool isFolder = GetItemPath(itemList, buffer);
  fShellMalloc->Free(itemList);
  TString path = NSTextPackage::ArrayToString(buffer);
  if (!isFolder || path.empty()) return std::string();
  if (path.back() != u'\\') path += u'\\';
  GetMemory().fFolder = path;
  return PathToFileURL(path);
}

// --- The result

UINT CFolderChooserDialogInfo::GetResultMessage() const {
  return IsAccepted() ? kMsgFolderDialogAccepted : kMsgFolderDialogCancelled;
}

// Sic: the words of the save dialog.
const char* CFolderChooserDialogInfo::GetFailureLine() const {
  return IsAccepted() ? "Error performing save!" : "Error cancelling save!";
}

TError CFolderChooserDialogInfo::TellAccepted(const char* url) {
  return fBehavior ? fBehavior->IDirectoryChooserBehavior_OnPerform(url) : kOK;
}

TError CFolderChooserDialogInfo::TellCancelled() {
  return fBehavior ? fBehavior->IDirectoryChooserBehavior_OnCancel() : kOK;
}

// --- The callback

int CALLBACK CFolderChooserDialogInfo::BrowseProc(HWND procWindow, UINT message, LPARAM lParam, LPARAM data) {
  CFolderChooserDialogInfo* const folderChooserDialogInfo = reinterpret_cast<CFolderChooserDialogInfo*>(data);
  if (message == BFFM_INITIALIZED) {
    MORVANE_ASSERT(0!=folderChooserDialogInfo);
    MORVANE_ASSERT(procWindow != 0);
    if (!folderChooserDialogInfo) return 0;
    try {
      folderChooserDialogInfo->OnInitialized(procWindow);
    } catch (...) {
      folderChooserDialogInfo->SignalOpen();
      MORVANE_UNREACHED();
    }
  }
  if (message == BFFM_SELCHANGED) {
    TChar path[MAX_PATH + 1] = {};
    if (GetItemPath(reinterpret_cast<PCIDLIST_ABSOLUTE>(lParam), path))
      SendMessageW(procWindow, BFFM_SETSTATUSTEXTW, 0, reinterpret_cast<LPARAM>(path));
  }
  return 0;
}

void CFolderChooserDialogInfo::OnInitialized(HWND frame) {
  new CFileDialogFrameProcWrapper(frame, *this);  // goes with its window
  const TString& folder = GetMemory().fFolder;
  if (!folder.empty() && folder.size() < MAX_PATH)
    SendMessageW(frame, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(WinText(folder)));
  PlaceFrame(frame);
}

void CFolderChooserDialogInfo::OnFrameDestroyed(HWND frame) {
  RememberPlace(frame);
  CFileDialogInfo::OnFrameDestroyed(frame);
}

}  // namespace NSMorvane
