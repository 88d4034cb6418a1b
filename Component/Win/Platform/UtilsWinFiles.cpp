#include "Component/Win/Platform/UtilsWinFiles.h"

#include <algorithm>
#include <cstring>

#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

using NSTextPackage::TString;

namespace {

constexpr char kFileURLStart[] = "file://";
constexpr std::size_t kFileURLStartLength = sizeof(kFileURLStart) - 1;
constexpr std::size_t kMinPathLength = 2;
constexpr DWORD kMaxPathLength = 1300;
constexpr TChar kExtensionDivider = u';';

enum class TPathKind { kNothing, kFile, kFolder };

TPathKind KindOfPath(const TString& path) {
  if (path.size() < kMinPathLength) return TPathKind::kNothing;
  const DWORD attributes = ::GetFileAttributesW(WinText(path));
  if (attributes == INVALID_FILE_ATTRIBUTES) return TPathKind::kNothing;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? TPathKind::kFolder : TPathKind::kFile;
}

// Replaces the path by the result of a call; if the call fails, the path stays as it is. A result that does
// not fit makes the path empty. A result of more than 2601 characters is reported and gives false.
template <class PathCall>
bool ReplacePath(TString& ioPath, PathCall call) {
  TChar buffer[kMaxPathLength + 1] = {};
  const DWORD result = call(WinText(ioPath), kMaxPathLength, WinBuffer(buffer));
  if (result >= sizeof(buffer)) {
    MORVANE_UNREACHED();
    return false;
  }
  if (result != 0) ioPath = NSTextPackage::ArrayToString(buffer);
  return true;
}

TString LongForm(TString path) {
  const auto longPath = [](const wchar_t* source, DWORD size, wchar_t* buffer) {
    return ::GetLongPathNameW(source, buffer, size);
  };
  const auto fullPath = [](const wchar_t* source, DWORD size, wchar_t* buffer) {
    return ::GetFullPathNameW(source, size, buffer, nullptr);
  };
  if (ReplacePath(path, longPath)) ReplacePath(path, fullPath);
  return path;
}

// From the last dot on; empty without a dot.
TString ExtensionOf(const TString& name) {
  const TString::size_type dot = name.rfind(u'.');
  return dot == TString::npos ? TString() : name.substr(dot);
}

struct TExtensionMatch {
  std::uint32_t fTypeIndex;  // from 1, or 0 for none
  TString fExtension;
};

TExtensionMatch MatchExtension(const std::vector<CFileType>& fileTypes, const TString& name) {
  const TString wanted = ExtensionOf(name);
  if (!wanted.empty()) {
    std::uint32_t index = 0;
    for (const CFileType& fileType : fileTypes) {
      ++index;
      for (const TString& extension : SplitExtensions(fileType)) {
        if (NSTextPackage::CompareTextIgnoringCase(extension, wanted) == NSTextPackage::kTextEqual)
          return {index, extension};
      }
    }
  }
  return {0, TString()};
}

}  // namespace

// --- Paths

bool IsExistingFolder(const TString& path) { return KindOfPath(path) == TPathKind::kFolder; }

bool IsExistingFile(const TString& path) { return KindOfPath(path) == TPathKind::kFile; }

TString NormalizeExistingPath(const TString& path) {
  const TPathKind kind = KindOfPath(path);
  if (kind == TPathKind::kNothing) return TString();
  TString result = LongForm(path);
  if (kind == TPathKind::kFolder && !result.empty() && result.back() != u'\\') result += u'\\';
  return result;
}

TString CFileSystemProbe::NormalizeExistingPath(const TString& path) const {
  return NSMorvane::NormalizeExistingPath(path);
}

// Only the colon after a drive letter belongs to a path. A text with another colon may have a meaning of its
// own for the client, so it has no full path.
TString CFileSystemProbe::FullPath(const TString& path) const {
  if (path.empty() || path.find(u':', path.size() > 1 && path[1] == u':' ? 2 : 0) != TString::npos) return {};
  TChar buffer[kMaxPathLength + 1] = {};
  const DWORD length = ::GetFullPathNameW(WinText(path), kMaxPathLength, WinBuffer(buffer), nullptr);
  return length < kMaxPathLength ? TString(buffer, length) : TString();
}

std::string PathToFileURL(const TString& path) {
  std::string url = kFileURLStart;
  for (std::size_t i = 0; i < path.size(); ++i) {
    const bool isPair = IS_HIGH_SURROGATE(path[i]) && i + 1 < path.size() && IS_LOW_SURROGATE(path[i + 1]);
    if (!isPair) {
      url += NSTextPackage::StringToUTF8(path.substr(i, 1), false);
      continue;
    }
    const std::uint32_t code = 0x10000 + ((path[i] & 0x3FFu) << 10) + (path[i + 1] & 0x3FFu);
    url += static_cast<char>(0xF0 | code >> 18);
    for (const int shift : {12, 6, 0}) url += static_cast<char>(0x80 | (code >> shift & 0x3F));
    ++i;
  }
  return url;
}

TString FileURLToPath(const std::string& url) {
  if (url.compare(0, kFileURLStartLength, kFileURLStart) != 0) return TString();
  return NSTextPackage::UTF8ToString(url.substr(kFileURLStartLength));
}

// --- File types

CFileType MakeFileType(const TFileType& record) {
  return CFileType{NSTextPackage::ArrayToString(record.fName),
                   NSTextPackage::ArrayToString(record.fExtensions)};
}

std::vector<TString> SplitExtensions(const CFileType& fileType) {
  std::vector<TString> pieces;
  const TString& text = fileType.fExtensions;
  TString::size_type begin = 0;
  for (;;) {
    const TString::size_type end = text.find(kExtensionDivider, begin);
    pieces.push_back(text.substr(begin, end - begin));
    if (end == TString::npos) return pieces;
    begin = end + 1;
  }
}

TString FindExtensionForFile(const std::vector<CFileType>& fileTypes, const TString& name) {
  return MatchExtension(fileTypes, name).fExtension;
}

std::uint32_t TypeIndexForFile(const std::vector<CFileType>& fileTypes, const TString& name) {
  return MatchExtension(fileTypes, name).fTypeIndex;
}

TString AppendExtensionIfMissing(const TString& name, const CFileType& fileType) {
  if (TypeIndexForFile({fileType}, name) != 0) return name;
  return name + SplitExtensions(fileType).front();
}

void BuildDialogFilter(const std::vector<CFileType>& fileTypes, TChar* buffer, std::size_t bufferSize) {
  std::memset(buffer, 0, bufferSize);
  std::size_t position = 0;
  const auto write = [&](const TString& text) {
    const std::size_t count = text.size() + 1;
    if (count > bufferSize - position) MORVANE_THROW(XOutOfMemory());
    std::copy_n(text.c_str(), count, buffer + position);
    position += count;
  };
  for (const CFileType& fileType : fileTypes) {
    TString pattern;
    for (const TChar c : fileType.fExtensions) {
      if (c == u'.') pattern += u'*';
      pattern += c;
    }
    write(fileType.fName + u" (" + pattern + u")");
    write(pattern);
  }
}

}  // namespace NSMorvane
