#include "SketchRecentFiles.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "SketchFiles.h"
#include "SketchGdi.h"

namespace NSSketch {

namespace {

// A list of texts, each with a zero at its end, and another one at the end of all.
constexpr wchar_t kKey[] = L"Software\\Morvane\\Sketch";
constexpr wchar_t kValue[] = L"RecentFiles";
constexpr DWORD kMaxBytes = 1024 * 1024;

}  // namespace

CSketchRecentFiles::CSketchRecentFiles() {
  DWORD bytes = 0;
  const auto read = [&](void* out) {
    return ::RegGetValueW(HKEY_CURRENT_USER, kKey, kValue, RRF_RT_REG_MULTI_SZ, nullptr, out, &bytes) ==
           ERROR_SUCCESS;
  };
  if (!read(nullptr) || bytes > kMaxBytes) return;
  std::u16string list(bytes / sizeof(char16_t), u'\0');
  bytes = static_cast<DWORD>(list.size() * sizeof(char16_t));
  if (!read(list.data())) return;
  for (std::size_t from = 0; from < list.size() && fPaths.size() < kMaxRecentFiles;) {
    const std::size_t end = std::min(list.find(u'\0', from), list.size());
    if (end > from) fPaths.push_back(list.substr(from, end - from));
    from = end + 1;
  }
}

void CSketchRecentFiles::Add(const std::u16string& path) {
  if (!fPaths.empty() && fPaths.front() == path) return;
  std::erase_if(fPaths, [&](const std::u16string& other) { return IsSamePath(other, path); });
  fPaths.insert(fPaths.begin(), path);
  if (fPaths.size() > kMaxRecentFiles) fPaths.pop_back();
  Write();
}

void CSketchRecentFiles::Remove(const std::u16string& path) {
  if (std::erase_if(fPaths, [&](const std::u16string& other) { return IsSamePath(other, path); }) > 0)
    Write();
}

// Where that fails, the list is one of this run only.
void CSketchRecentFiles::Write() const {
  std::u16string list;
  for (const std::u16string& path : fPaths) list += path + u'\0';
  list += u'\0';
  ::RegSetKeyValueW(HKEY_CURRENT_USER, kKey, kValue, REG_MULTI_SZ, list.data(),
                    static_cast<DWORD>(list.size() * sizeof(char16_t)));
}

}  // namespace NSSketch
