#include "Component/Win/Dialogs/WinSaveFileDialog.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/LateFunctions.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

constexpr DWORD kSaveFlags = OFN_ENABLESIZING | OFN_LONGNAMES | OFN_EXPLORER | OFN_PATHMUSTEXIST |
                             OFN_ENABLEHOOK | OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT;
static_assert(kSaveFlags == 0xA80826);

std::vector<CFileType> MakeFileTypes(const std::vector<TFileType>& types) {
  std::vector<CFileType> fileTypes;
  for (const TFileType& type : types) fileTypes.push_back(MakeFileType(type));
  return fileTypes;
}

void CheckSplitting() {
  const std::vector<TString> test = SplitExtensions({u"AIFF file", u".aiff;.aif;.aifc"});
  MORVANE_ASSERT(test.size()==3);
  // The texts are output.
  MORVANE_ASSERT_TEXT("test[0]==L\".aiff\"", test[0] == u".aiff");
  MORVANE_ASSERT_TEXT("test[1]==L\".aif\"", test[1] == u".aif");
  MORVANE_ASSERT_TEXT("test[2]==L\".aifc\"", test[2] == u".aifc");
}

TString GetTypedName(HWND frame) {
  TChar buffer[kMaxFileNameLength + 1] = {};
  const LRESULT result =
      SendMessageW(frame, CDM_GETSPEC, std::size(buffer), reinterpret_cast<LPARAM>(buffer));
  MORVANE_ASSERT(result>=0);
  // With the zero at the end.
  MORVANE_ASSERT_TEXT("result<=kMaxFileNameLength", result <= static_cast<LRESULT>(std::size(buffer)));
  return NSTextPackage::ArrayToString(buffer);
}

// Without the folders.
TString FileOf(const TString& path) { return path.substr(path.rfind(u'\\') + 1); }

// Into the control that this dialog has for the name.
void SetTypedName(HWND frame, const TString& name) {
  const int control = GetDlgItem(frame, kNameComboBox) ? kNameComboBox : kNameEdit;
  SendMessageW(frame, CDM_SETCONTROLTEXT, control, reinterpret_cast<LPARAM>(WinText(name)));
}

}  // namespace

CSaveFileDialogInfo::CSaveFileDialogInfo(IWindowHost& host, const TFileDialogRequest& request,
                                         ISaveAsDialogBehavior* behavior, const TString& templateName,
                                         const std::vector<TFileType>& types, const TString& prompt)
    : CFileNameDialogInfo(host, request, kSaveDialogMemory, MakeFileTypes(types), prompt),
      fBehavior(behavior),
      fTypes(types) {
  std::uint32_t index = TypeIndexForFile(GetFileTypes(), templateName);
  if (index == 0) index = TypeIndexForExtensions(GetFileTypes(), GetMemory().fLastExtensions);
  const CFileType* const startType = GetFileTypeAt(index == 0 ? 1 : index);
  const TString defaultExtension = startType ? DefaultExtension(*startType) : TString();
  CheckSplitting();
  Prepare(kSaveFlags, index, defaultExtension,
          WithDefaultExtension(WithoutForbiddenCharacters(templateName), defaultExtension));
}

BOOL CSaveFileDialogInfo::ShowSystemDialog(OPENFILENAMEW& record) {
  fRefusedName.clear();
  const auto show = FindLate<decltype(GetSaveFileNameW)>(kCommonDialogLibrary, "GetSaveFileNameW");
  return show ? show(&record) : FALSE;
}

// --- The result

// The user has been asked about the path as it stands. If its file has another name and is there, it must not
// be overwritten without a question: the dialog comes back with that name.
TString CSaveFileDialogInfo::FileForPath(TString& path, const CFileType& fileType) {
  if (HasExtensionOf(path, fileType)) return path;
  const TString file = path + ExtensionToAdd(fileType);
  if (file == path || !IsExistingFile(file)) return file;
  path = file;
  return TString();
}

UINT CSaveFileDialogInfo::GetResultMessage() const {
  return IsAccepted() ? kMsgSaveDialogAccepted : kMsgSaveDialogCancelled;
}

const char* CSaveFileDialogInfo::GetFailureLine() const {
  return IsAccepted() ? "Error performing save!" : "Error cancelling save!";
}

TError CSaveFileDialogInfo::TellAccepted(const char* url) {
  const std::uint32_t index = GetChosenType();
  const TFileType fileType = index == 0 || index > fTypes.size() ? TFileType() : fTypes[index - 1];
  return fBehavior ? fBehavior->ISaveAsDialogBehavior_OnPerform(url, fileType) : kOK;
}

TError CSaveFileDialogInfo::TellCancelled() {
  return fBehavior ? fBehavior->ISaveAsDialogBehavior_OnCancel() : kOK;
}

// --- The hook

void CSaveFileDialogInfo::OnInitDialog(HWND, HWND frame) {
  const CSaveFileDialogInfo* const saveFileDialogInfo = this;
  const HWND parent = frame;
  MORVANE_ASSERT(0!=saveFileDialogInfo);
  MORVANE_ASSERT(parent != 0);
  new CFileDialogFrameProcWrapper(frame, *this);  // goes with its window
}

bool CSaveFileDialogInfo::OnNotify(HWND, HWND frame, const NMHDR& notification) {
  switch (notification.code) {
    case CDN_INITDONE:
      PlaceFrame(frame);
      return false;
    case CDN_TYPECHANGE:
      OnTypeChange(frame);
      return false;
    case CDN_FILEOK:
      return OnFileOk(frame);
    default:
      return false;
  }
}

// One without extensions if there are no types.
const CFileType& CSaveFileDialogInfo::GetSelectedType() {
  static const CFileType kNoType;
  const CFileType* const type = GetFileTypeAt(GetRecord().nFilterIndex);
  return type ? *type : kNoType;
}

void CSaveFileDialogInfo::OnTypeChange(HWND frame) {
  const TString name = GetTypedName(frame);
  const CFileType& newType = GetSelectedType();
  const std::vector<TString> extensions = SplitExtensions(newType);
  const TString newName = NameForType(name, GetFileTypes(), newType);
  if (newName != name) SetTypedName(frame, newName);
  MORVANE_ASSERT(extensions.size()>0);
  SetDefaultExtension(DefaultExtension(newType));
  SendMessageW(frame, CDM_SETDEFEXT, 0, reinterpret_cast<LPARAM>(GetRecord().lpstrDefExt));
}

// True if the OK is refused: it comes again by itself, with the completed name, so that the system asks about
// that before it overwrites a file. Not if the system has completed the name in the same way and has asked;
// and no name is refused twice.
bool CSaveFileDialogInfo::OnFileOk(HWND frame) {
  const TString name = GetTypedName(frame);
  const TString completed = CompletedName(name, GetFileTypes(), GetSelectedType());
  const bool isComplete =
      completed == name || NSTextPackage::CompareTextIgnoringCase(FileOf(completed), FileOf(GetPath())) ==
                               NSTextPackage::kTextEqual;
  if (isComplete || name == fRefusedName || completed.size() > kMaxFileNameLength) {
    RememberPlace(frame);
    return false;
  }
  fRefusedName = name;
  SetTypedName(frame, completed);
  const HWND okButton = GetDlgItem(frame, IDOK);
  const WPARAM wParam = MAKEWPARAM(IDOK, BN_CLICKED);
  const LPARAM lParam = reinterpret_cast<LPARAM>(okButton);
  MORVANE_ASSERT(0!=lParam);
  MORVANE_ASSERT(HIWORD(wParam)==BN_CLICKED);
  MORVANE_ASSERT(LOWORD(wParam)==IDOK);
  PostMessageW(frame, WM_COMMAND, wParam, lParam);
  return true;
}

}  // namespace NSMorvane
