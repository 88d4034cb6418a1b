#include "Component/Win/Dialogs/WinOpenFileDialog.h"

#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/LateFunctions.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

constexpr DWORD kOpenFlags = OFN_ENABLESIZING | OFN_LONGNAMES | OFN_EXPLORER | OFN_FILEMUSTEXIST |
                             OFN_PATHMUSTEXIST | OFN_ENABLEHOOK | OFN_HIDEREADONLY;
static_assert(kOpenFlags == 0xA81824);

constexpr std::size_t kPathBufferSize = 2048 / sizeof(TChar);

std::vector<CFileType> MakeFileTypes(const std::vector<TFileType>& types, const TString& combinedName) {
  std::vector<CFileType> fileTypes;
  for (const TFileType& type : types) fileTypes.push_back(MakeFileType(type));
  return WithCombinedType(std::move(fileTypes), combinedName);
}

// The URL of what a dialog shows, with a backslash behind a folder; empty without a path.
std::string URLOfFolder(const TString& path) {
  if (path.empty()) return std::string();
  return PathToFileURL(IsExistingFolder(path) && path.back() != u'\\' ? path + u'\\' : path);
}

// The same, but empty also for what does not exist.
std::string URLOfSelection(const TString& path) {
  return IsExistingFolder(path) || IsExistingFile(path) ? URLOfFolder(path) : std::string();
}

// A client's failure ends nothing.
template <class TCall>
bool Succeeds(const char* name, TCall&& call) {
  TError error = kOtherError;
  const TError thrown = ErrorOf([&] { error = call(); });
  if (thrown == kOK && error == kOK) return true;
  DebugPrint(std::string("IOpenDialogCustomizeBehavior_") + name + " failed!");
  return false;
}

}  // namespace

COpenFileDialogInfo::COpenFileDialogInfo(IWindowHost& host, const TFileDialogRequest& request,
                                         IOpenDialogBehavior* behavior, const std::vector<TFileType>& types,
                                         const TString& prompt,
                                         IOpenDialogCustomizeBehavior* customizeBehavior)
    : CFileNameDialogInfo(host, request, kOpenDialogMemory,
                          MakeFileTypes(types, host.GetStartupStrings().fAllFileTypes), prompt),
      fBehavior(behavior),
      fCustomizeBehavior(customizeBehavior) {
  const std::uint32_t remembered = TypeIndexForExtensions(GetFileTypes(), GetMemory().fLastExtensions);
  const auto lastType = static_cast<std::uint32_t>(GetFileTypes().size());
  Prepare(kOpenFlags, remembered != 0 ? remembered : lastType, DefaultExtension(GetFileTypes().front()),
          TString());
  if (!fCustomizeBehavior) return;
  std::uint32_t templateID = 0;
  MORVANE_CHECK(fCustomizeBehavior->IOpenDialogCustomizeBehavior_GetTemplateID(templateID));
  if (LOWORD(templateID) == 0) return;  // it only listens
  GetRecord().Flags |= OFN_ENABLETEMPLATE;
  GetRecord().lpTemplateName = MAKEINTRESOURCEW(LOWORD(templateID));
}

BOOL COpenFileDialogInfo::ShowSystemDialog(OPENFILENAMEW& record) {
  const auto show = FindLate<decltype(GetOpenFileNameW)>(kCommonDialogLibrary, "GetOpenFileNameW");
  return show ? show(&record) : FALSE;
}

// --- The result

// The system has shown that the path exists. Only if not, a file with an extension can be the one that is
// meant.
TString COpenFileDialogInfo::FileForPath(TString& path, const CFileType& fileType) {
  if (HasExtensionOf(path, fileType) || IsExistingFile(path)) return path;
  const TString file = path + ExtensionToAdd(fileType);
  return IsExistingFile(file) ? file : path;
}

UINT COpenFileDialogInfo::GetResultMessage() const {
  return IsAccepted() ? kMsgOpenDialogAccepted : kMsgOpenDialogCancelled;
}

const char* COpenFileDialogInfo::GetFailureLine() const {
  return IsAccepted() ? "Error performing open!" : "Error cancelling open!";
}

TError COpenFileDialogInfo::TellAccepted(const char* url) {
  return fBehavior ? fBehavior->IOpenDialogBehavior_OnPerform(&url, 1) : kOK;
}

TError COpenFileDialogInfo::TellCancelled() {
  return fBehavior ? fBehavior->IOpenDialogBehavior_OnCancel() : kOK;
}

// --- The hook

void COpenFileDialogInfo::OnInitDialog(HWND hookWindow, HWND frame) {
  const COpenFileDialogInfo* const openFileDialogInfo = this;
  const HWND parent = frame;
  MORVANE_ASSERT(0!=openFileDialogInfo);
  MORVANE_ASSERT(openFileDialogInfo->CheckInvariant());
  MORVANE_ASSERT(parent != 0);
  // They go with their windows.
  new COpenFileDialogParentProcWrapper(hookWindow, frame, *this);
  new COpenFileDialogProcWrapper(hookWindow, *this);
}

bool COpenFileDialogInfo::OnNotify(HWND, HWND frame, const NMHDR& notification) {
  // A customise behaviour hears of it after that.
  if (notification.code == CDN_INITDONE && !fCustomizeBehavior) PlaceFrame(frame);
  if (notification.code == CDN_FILEOK) RememberPlace(frame);
  return false;
}

// --- The frame

COpenFileDialogParentProcWrapper::COpenFileDialogParentProcWrapper(HWND hookWindow, HWND frame,
                                                                   COpenFileDialogInfo& info)
    : CFileDialogFrameProcWrapper(frame, info), fHookWindow(hookWindow), fOpenFileDialogInfo(&info) {}

LRESULT COpenFileDialogParentProcWrapper::WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message,
                                                     WPARAM wParam, LPARAM lParam) {
  if (message == WM_DESTROY) fOpenFileDialogInfo = nullptr;
  COpenFileDialogInfo* const info = fOpenFileDialogInfo;
  const HWND hookWindow = fHookWindow;
  const LRESULT result = CFileDialogFrameProcWrapper::WindowProc(wrapper, hwnd, message, wParam, lParam);
  if (info && message == WM_COMMAND && HIWORD(wParam) == CBN_EDITCHANGE && LOWORD(wParam) == kNameComboBox) {
    OFNOTIFYW notification = {{hwnd, kNameEdit, CDN_SELCHANGE}, &info->GetRecord(), nullptr};
    SendMessageW(hookWindow, WM_NOTIFY, kNameEdit, reinterpret_cast<LPARAM>(&notification));
  }
  return result;
}

// --- The hook window

COpenFileDialogProcWrapper::COpenFileDialogProcWrapper(HWND hookWindow, COpenFileDialogInfo& info)
    : CWindowProcOverrider(hookWindow), fHookWindow(hookWindow), fOpenFileDialogInfo(&info) {}

LRESULT COpenFileDialogProcWrapper::WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message,
                                               WPARAM wParam, LPARAM lParam) {
  if (message == WM_DESTROY) fOpenFileDialogInfo = nullptr;
  if (COpenFileDialogInfo* const info = fOpenFileDialogInfo) {
    if (info->IsAutoPlayQuery(message)) {
      SetWindowLongPtrW(hwnd, DWLP_MSGRESULT, 1);
      return 1;
    }
    LRESULT result = 0;
    IOpenDialogCustomizeBehavior* const behavior = info->GetCustomizeBehavior();
    if (behavior && Handle(*behavior, message, wParam, lParam, result)) return result;
    if (!IsWindow(hwnd)) return 0;  // the client has ended the dialog, and with it this object
  }
  return CWindowProcOverrider::WindowProc(wrapper, hwnd, message, wParam, lParam);
}

// True if the message goes no further. The call may end this object.
bool COpenFileDialogProcWrapper::Handle(IOpenDialogCustomizeBehavior& behavior, UINT message, WPARAM wParam,
                                        LPARAM lParam, LRESULT& outResult) {
  const TNativeWindow window = {fHookWindow};
  TFlag handled = 0;
  switch (message) {
    case WM_NOTIFY:
      if (lParam && IsFromDialog(*reinterpret_cast<const NMHDR*>(lParam), GetParent(fHookWindow)))
        OnNotification(behavior, *reinterpret_cast<const NMHDR*>(lParam));
      return false;
    case WM_SIZE:
      Succeeds("OnSize", [&] {
        return behavior.IOpenDialogCustomizeBehavior_OnSize(*this, window, LOWORD(lParam), HIWORD(lParam));
      });
      return false;
    case WM_PAINT: {
      PAINTSTRUCT paint = {};
      const HWND hwnd = fHookWindow;
      if (!BeginPaint(hwnd, &paint)) return false;
      Succeeds("OnPaint", [&] { return behavior.IOpenDialogCustomizeBehavior_OnPaint(*this, window); });
      EndPaint(hwnd, &paint);
      return false;
    }
    case WM_HELP:
      outResult = 1;
      return Succeeds("OnHelp",
                      [&] { return behavior.IOpenDialogCustomizeBehavior_OnHelp(*this, handled); }) &&
             handled != 0;
    case WM_COMMAND:
      outResult = 0;
      return lParam &&
             Succeeds("OnCommand",
                      [&] {
                        return behavior.IOpenDialogCustomizeBehavior_OnCommand(*this, LOWORD(wParam),
                                                                               handled);
                      }) &&
             handled != 0;
    default:
      return false;
  }
}

void COpenFileDialogProcWrapper::OnNotification(IOpenDialogCustomizeBehavior& behavior,
                                                const NMHDR& notification) {
  const HWND frame = GetParent(fHookWindow);
  TString path;
  switch (notification.code) {
    case CDN_INITDONE:
      fOpenFileDialogInfo->PlaceFrame(frame);
      Succeeds("OnInitDone", [&] { return behavior.IOpenDialogCustomizeBehavior_OnInitDone(*this); });
      break;
    case CDN_FOLDERCHANGE: {
      if (!GetDialogText(frame, CDM_GETFOLDERPATH, kPathBufferSize, path)) break;
      const std::string url = URLOfFolder(path);
      Succeeds("OnFolderChanged",
               [&] { return behavior.IOpenDialogCustomizeBehavior_OnFolderChanged(*this, url.c_str()); });
      break;
    }
    case CDN_SELCHANGE: {
      if (!GetDialogText(frame, CDM_GETFILEPATH, kPathBufferSize, path)) break;
      const std::string url = URLOfSelection(path);
      Succeeds("OnSelectionChanged",
               [&] { return behavior.IOpenDialogCustomizeBehavior_OnSelectionChanged(*this, url.c_str()); });
      break;
    }
    default:
      break;
  }
}

TError COpenFileDialogProcWrapper::IOpenDialogInstance_GetControlHandle(std::int32_t controlID,
                                                                        TNativeWindow& outHandle) {
  outHandle.fHwnd = GetDlgItem(fHookWindow, controlID);
  if (outHandle.fHwnd) return kOK;
  const HWND parent = GetParent(fHookWindow);
  if (!parent) return kBadInputProgrammingError;
  outHandle.fHwnd = GetDlgItem(parent, controlID);
  return kOK;
}

TError COpenFileDialogProcWrapper::IOpenDialogInstance_GetModalOwner(IModalOwner*& outOwner) {
  outOwner = this;
  return kOK;
}

TError COpenFileDialogProcWrapper::IModalOwner_GetNativeWindow(TNativeWindow& out) {
  out.fHwnd = GetParent(fHookWindow);
  return kOK;
}

}  // namespace NSMorvane
