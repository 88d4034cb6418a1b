// The file dialogs of the system, found and driven by messages, and a client that opens them.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>
#include <dlgs.h>
#include <shlobj.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "Support/ClientWindows.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

enum : int { kNameComboBox = 1148, kTypeComboBox = cmb1 };

inline TFileType FileType(const char16_t* name, const char16_t* extensions) {
  TFileType type = {};
  CopyText(type.fName, name);
  CopyText(type.fExtensions, extensions);
  return type;
}

inline std::wstring TextOf(HWND hwnd) {
  wchar_t text[2000] = {};
  if (hwnd) SendMessageW(hwnd, WM_GETTEXT, 2000, reinterpret_cast<LPARAM>(text));
  return text;
}

// The dialog boxes of this process that are on the screen.
inline std::vector<HWND> DialogBoxes() {
  std::vector<HWND> boxes;
  EnumWindows(
      [](HWND hwnd, LPARAM list) -> BOOL {
        DWORD process = 0;
        wchar_t name[20] = {};
        GetWindowThreadProcessId(hwnd, &process);
        GetClassNameW(hwnd, name, 20);
        if (process == GetCurrentProcessId() && std::wcscmp(name, L"#32770") == 0 && IsWindowVisible(hwnd))
          reinterpret_cast<std::vector<HWND>*>(list)->push_back(hwnd);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&boxes));
  return boxes;
}

// The system's file dialog, or null.
inline HWND FileDialog() {
  for (const HWND box : DialogBoxes())
    if (GetDlgItem(box, kNameComboBox)) return box;
  return nullptr;
}
// A question of the system's over a dialog, or null.
inline HWND MessageBoxOver(HWND dialog) {
  for (const HWND box : DialogBoxes())
    if (GetWindow(box, GW_OWNER) == dialog) return box;
  return nullptr;
}

inline void Press(HWND dialog, int button) {
  PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
}

inline void ChooseType(HWND dialog, int index) {
  const HWND box = GetDlgItem(dialog, kTypeComboBox);
  SendMessageW(box, CB_SETCURSEL, index, 0);
  for (const int news : {CBN_SELENDOK, CBN_SELCHANGE})
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(kTypeComboBox, news), reinterpret_cast<LPARAM>(box));
}

class FileDialogFixture : public ClientWindowTest {
 protected:
  struct Opener : IOpenDialogBehavior, CallRecorder {
    TError IOpenDialogBehavior_OnPerform(const char* const* urls, std::uint32_t count) override {
      EXPECT_EQ(count, 1u);
      return Call("open:", urls[0]);
    }
    TError IOpenDialogBehavior_OnCancel() override { return Call("cancel"); }
  };
  struct Saver : ISaveAsDialogBehavior, CallRecorder {
    TError ISaveAsDialogBehavior_OnPerform(const char* url, const TFileType& type) override {
      const std::u16string name = type.fName;
      return Call("save:", url + ("," + std::string(name.begin(), name.end())));
    }
    TError ISaveAsDialogBehavior_OnCancel() override { return Call("cancel"); }
  };
  struct Chooser : IDirectoryChooserBehavior, CallRecorder {
    TError IDirectoryChooserBehavior_OnPerform(const char* url) override { return Call("folder:", url); }
    TError IDirectoryChooserBehavior_OnCancel() override { return Call("cancel"); }
  };

  FileDialogFixture() {
    fFolder = std::filesystem::temp_directory_path() /
              (L"Morvane Dialogs.d " + std::to_wstring(GetCurrentProcessId()));
    std::filesystem::create_directory(fFolder);
    for (const wchar_t* name : {L"old.wav", L"100%# \u00E4\u4E2D.txt", L"\U0001F600.wav", L"bare"})
      std::ofstream(fFolder / name) << "x";
  }
  ~FileDialogFixture() override {
    std::filesystem::current_path(fFolder.parent_path());  // the system's dialogs have changed it
    std::filesystem::remove_all(fFolder);
    RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\" + fCompany).c_str());
  }

  std::string UrlOf(const wchar_t* name) const {
    const std::u8string path = (fFolder / name).u8string();
    return "file://" + std::string(path.begin(), path.end());
  }
  TError CreateOpen(TFlag blocking = 0, IModalOwner* owner = nullptr,
                    IOpenDialogCustomizeBehavior* customize = nullptr) {
    return fMorvane->IMorvane_CreateOpenDialog(&fOpener, 7, owner, blocking, 1, fTypes.data(),
                                               static_cast<std::uint32_t>(fTypes.size()), u"Which one?",
                                               customize);
  }
  TError CreateSave(const std::u16string& name, TFlag blocking = 0) {
    return fMorvane->IMorvane_CreateSaveAsDialog(&fSaver, 7, nullptr, blocking, name.c_str(), fTypes.data(),
                                                 static_cast<std::uint32_t>(fTypes.size()), nullptr);
  }
  HWND ShowOpen(IModalOwner* owner = nullptr, IOpenDialogCustomizeBehavior* customize = nullptr) {
    EXPECT_EQ(CreateOpen(0, owner, customize), kOK);
    EXPECT_TRUE(FileDialog()) << "the call returns when it is on the screen";
    return Shown();
  }
  HWND ShowSave(const std::u16string& name) {
    EXPECT_EQ(CreateSave(name), kOK);
    EXPECT_TRUE(FileDialog()) << "the call returns when it is on the screen";
    return Shown();
  }
  HWND Shown() {
    EXPECT_TRUE(YieldUntil([] { return FileDialog() != nullptr; }));
    return FileDialog();
  }
  void Type(HWND dialog, const std::wstring& name) {
    EXPECT_TRUE(SetDlgItemTextW(dialog, kNameComboBox, name.c_str()));
  }
  // The dialog ends, and the client hears of it.
  std::string ResultOf(CallRecorder& recorder) {
    EXPECT_TRUE(YieldUntil([&] { return !recorder.fLog.Last().empty(); }));
    EXPECT_TRUE(YieldUntil([] { return FileDialog() == nullptr; }));
    return recorder.fLog.Take();
  }
  std::string Accept(HWND dialog, const std::wstring& name, CallRecorder& recorder) {
    Type(dialog, name);
    Press(dialog, IDOK);
    return ResultOf(recorder);
  }
  std::wstring Remembered(const wchar_t* key, const wchar_t* value) {
    wchar_t text[2000] = {};
    DWORD size = sizeof(text);
    const std::wstring path = L"Software\\" + fCompany + L"\\Scenario\\Preferences\\" + key;
    RegGetValueW(HKEY_CURRENT_USER, path.c_str(), value, RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
  }
  bool IsAnythingRemembered() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, (L"Software\\" + fCompany).c_str(), 0, KEY_READ, &key)) return false;
    RegCloseKey(key);
    return true;
  }
  // Drives a dialog that blocks this thread.
  static std::thread Driver(std::function<void(HWND)> drive) {
    return std::thread([drive = std::move(drive)] {
      const ULONGLONG deadline = GetTickCount64() + kWaitLimitMS;
      while (!FileDialog() && GetTickCount64() < deadline) Sleep(5);
      drive(FileDialog());
    });
  }

  std::filesystem::path fFolder;
  std::vector<TFileType> fTypes = {FileType(u"Sound", u".wav;.aiff"), FileType(u"Text", u".txt")};
  Opener fOpener;
  Saver fSaver;
  Chooser fChooser;
};

}  // namespace NSMorvaneTest
