// Prints what its own file says of it: manifest, version resource, icon and texts.
#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <cstddef>
#include <cstdio>
#include <iterator>
#include <memory>
#include <regex>
#include <string>
#include <vector>

using namespace NSMorvane;

namespace {

void Print(const char* what, const std::wstring& text) {
  char bytes[1024] = {};
  ::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes, sizeof(bytes) - 1, nullptr, nullptr);
  std::printf("%s: %s\n", what, bytes);
}

void PrintManifest() {
  const HRSRC found = ::FindResourceW(nullptr, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24));
  if (!found) return;
  const std::string text(static_cast<const char*>(::LockResource(::LoadResource(nullptr, found))),
                         ::SizeofResource(nullptr, found));
  const std::regex value("<(dpiAware|dpiAwareness) [^>]*>([^<]*)<");
  for (std::sregex_iterator i(text.begin(), text.end(), value), end; i != end; ++i)
    std::printf("%s: %s\n", (*i)[1].str().c_str(), (*i)[2].str().c_str());
  const std::regex system("<supportedOS ");
  std::printf("systems: %d\n",
              static_cast<int>(std::distance(std::sregex_iterator(text.begin(), text.end(), system), {})));
}

// What the manifest brings about: the library gets the common controls of that version, which lie aside.
void PrintCommonControls() {
  wchar_t file[MAX_PATH] = L"";
  ::GetModuleFileNameW(::GetModuleHandleW(L"comctl32.dll"), file, MAX_PATH);
  const std::wregex version(L"common-controls_[0-9a-f]+_([0-9]+)\\.", std::regex::icase);
  std::wcmatch found;
  if (std::regex_search(file, found, version)) Print("common controls", found[1].str());
}

void PrintVersion() {
  wchar_t file[MAX_PATH];
  ::GetModuleFileNameW(nullptr, file, MAX_PATH);
  std::vector<std::byte> info(::GetFileVersionInfoSizeW(file, nullptr));
  if (!::GetFileVersionInfoW(file, 0, static_cast<DWORD>(info.size()), info.data())) return;
  void* value = nullptr;
  UINT size = 0;
  if (::VerQueryValueW(info.data(), L"\\", &value, &size)) {
    const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(value);
    std::printf("version: %d.%d.%d.%d of type %lu\n", HIWORD(fixed.dwFileVersionMS),
                LOWORD(fixed.dwFileVersionMS), HIWORD(fixed.dwFileVersionLS), LOWORD(fixed.dwFileVersionLS),
                fixed.dwFileType);
  }
  for (const wchar_t* name : {L"CompanyName", L"FileDescription", L"FileVersion", L"LegalCopyright",
                              L"OriginalFilename", L"ProductName"})
    if (::VerQueryValueW(info.data(), (std::wstring(L"\\StringFileInfo\\040904B0\\") + name).c_str(), &value,
                         &size))
      Print("text", static_cast<const wchar_t*>(value));
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  PrintManifest();
  PrintCommonControls();
  PrintVersion();
  if (::LoadIconW(instance, MAKEINTRESOURCEW(1))) std::printf("icon: 1\n");
  TError error = kOK;
  const std::unique_ptr<IMorvane> morvane(Morvane_Create("IMorvane", &error));
  CTextReceiver receiver;
  if (morvane && morvane->IMorvane_GetResourceString("SSTR/1000/6", receiver) == kOK) {
    const std::u16string text = receiver.Text();
    Print("first menu", {text.begin(), text.end()});
  }
  return 0;
}
