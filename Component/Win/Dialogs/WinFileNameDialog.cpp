#include "Component/Win/Dialogs/WinFileNameDialog.h"

#include <cderr.h>

#include <algorithm>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/LateFunctions.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

constexpr DWORD kMaxFileTitleLength = 261;

// 0 if the user has cancelled the dialog.
DWORD GetDialogError() {
  const auto getError =
      FindLate<decltype(CommDlgExtendedError)>(kCommonDialogLibrary, "CommDlgExtendedError");
  return getError ? getError() : CDERR_INITIALIZATION;
}

// Copies what fits, with a zero behind it.
template <std::size_t kSize>
void CopyText(TChar (&buffer)[kSize], const TString& text) {
  const std::size_t count = std::min(text.size(), kSize - 1);
  std::fill(std::copy_n(text.begin(), count, buffer), std::end(buffer), TChar());
}

}  // namespace

CFileNameDialogInfo::CFileNameDialogInfo(IWindowHost& host, const TFileDialogRequest& request,
                                         const TDialogMemoryPlace& place, std::vector<CFileType> fileTypes,
                                         const TString& prompt)
    : CFileDialogInfo(host, request, place),
      fFileTypes(std::move(fileTypes)),
      fInitialFolder(GetMemory().fFolder.substr(0, kMaxFileNameLength)),
      fPrompt(prompt.substr(0, kMaxPromptLength)) {
  // An empty pattern would end the list.
  std::vector<CFileType> shown = fFileTypes;
  for (CFileType& fileType : shown)
    if (fileType.fExtensions.empty()) fileType.fExtensions = u".*";
  BuildDialogFilter(shown, fFilterBuffer, kFilterBufferSize);
}

void CFileNameDialogInfo::Prepare(DWORD flags, DWORD filterIndex, const TString& defaultExtension,
                                  const TString& name) {
  CopyText(fFileBuffer, name);
  SetDefaultExtension(defaultExtension);
  fOpenFileName.lStructSize = sizeof(fOpenFileName);
  fOpenFileName.hInstance = GetModuleHandleW(nullptr);
  if (!fFileTypes.empty()) fOpenFileName.lpstrFilter = WinText(fFilterBuffer);
  fOpenFileName.nFilterIndex = filterIndex;
  fOpenFileName.lpstrFile = WinBuffer(fFileBuffer);
  fOpenFileName.nMaxFile = kMaxFileNameLength + 1;
  fOpenFileName.nMaxFileTitle = kMaxFileTitleLength;
  if (!fInitialFolder.empty()) fOpenFileName.lpstrInitialDir = WinText(fInitialFolder);
  if (!fPrompt.empty()) fOpenFileName.lpstrTitle = WinText(fPrompt);
  fOpenFileName.Flags = flags;
  if (!defaultExtension.empty()) fOpenFileName.lpstrDefExt = WinText(fDefaultExtension);
  fOpenFileName.lCustData = reinterpret_cast<LPARAM>(this);
  fOpenFileName.lpfnHook = HookProc;
}

void CFileNameDialogInfo::SetDefaultExtension(const TString& extension) {
  CopyText(fDefaultExtension, extension);
}

const CFileType* CFileNameDialogInfo::GetFileTypeAt(DWORD filterIndex) const {
  return filterIndex == 0 || filterIndex > fFileTypes.size() ? nullptr : &fFileTypes[filterIndex - 1];
}

std::string CFileNameDialogInfo::ShowDialog() {
  for (;;) {
    fChosenType = 0;
    fOpenFileName.hwndOwner = GetOwnerHwnd();
    if (!ShowSystemDialog(fOpenFileName)) {
      const DWORD error = GetDialogError();
      if (error == 0) return std::string();
      DebugPrint("The system's file dialog has failed: " + NumberText(error));
      if (error != FNERR_INVALIDFILENAME || fFileBuffer[0] == 0) return std::string();
      CopyText(fFileBuffer, TString());
      continue;
    }
    if (fOpenFileName.nFilterIndex == 0 && !fFileTypes.empty()) {
      MORVANE_UNREACHED();
      return std::string();
    }
    TString path = GetPath();
    fChosenType = TypeIndexForFile(fFileTypes, path);
    if (fChosenType == 0) fChosenType = fOpenFileName.nFilterIndex;
    const CFileType* const fileType = GetFileTypeAt(fChosenType);
    const TString file = FileForPath(path, fileType ? *fileType : CFileType());
    if (file.empty()) {
      CopyText(fFileBuffer, path);
      continue;
    }
    TDialogMemory& memory = GetMemory();
    memory.fFolder = path.substr(0, fOpenFileName.nFileOffset);
    memory.fLastExtensions = fileType ? fileType->fExtensions : TString();
    return PathToFileURL(file);
  }
}

// --- The hook

CFileNameDialogInfo* CFileNameDialogInfo::FromRecord(const OPENFILENAMEW* openFileName) {
  return openFileName ? reinterpret_cast<CFileNameDialogInfo*>(openFileName->lCustData) : nullptr;
}

UINT_PTR CALLBACK CFileNameDialogInfo::HookProc(HWND hwnd, UINT message, WPARAM, LPARAM lParam) {
  if (message != WM_INITDIALOG && message != WM_NOTIFY) return 0;
  const HWND parent = GetParent(hwnd);
  try {
    if (message == WM_INITDIALOG) {
      const auto openFileName = reinterpret_cast<const OPENFILENAMEW*>(lParam);
      MORVANE_ASSERT(0!=openFileName);
      CFileNameDialogInfo* const info = FromRecord(openFileName);
      if (!info) return 0;
      // Without its frame the dialog does not tell when it is on the screen.
      try {
        info->OnInitDialog(hwnd, parent);
      } catch (...) {
        info->SignalOpen();
        throw;
      }
      return 0;
    }
    const auto header = reinterpret_cast<const NMHDR*>(lParam);
    // The controls of the client's template notify the hook window, too.
    if (!header || !IsFromDialog(*header, parent)) return 0;
    CFileNameDialogInfo* const info = FromRecord(reinterpret_cast<const OFNOTIFYW*>(header)->lpOFN);
    if (!info || !info->OnNotify(hwnd, parent, *header)) return 0;
    SetWindowLongPtrW(hwnd, DWLP_MSGRESULT, 1);
    return 1;
  } catch (...) {
    MORVANE_UNREACHED();
    return 0;
  }
}

bool IsFromDialog(const NMHDR& notification, HWND frame) {
  return notification.hwndFrom == frame && notification.code <= CDN_FIRST && notification.code >= CDN_LAST;
}

bool GetDialogText(HWND frame, UINT message, std::size_t bufferSize, TString& outText) {
  std::vector<TChar> buffer(bufferSize + 1);
  const LRESULT result = SendMessageW(frame, message, bufferSize, reinterpret_cast<LPARAM>(buffer.data()));
  if (result >= static_cast<LRESULT>(bufferSize)) return false;
  outText = result < 1 ? TString() : TString(buffer.data());
  return true;
}

}  // namespace NSMorvane
