#include "SketchFiles.h"

#include <windows.h>

#include <cstring>

#include "SketchDocumentFile.h"
#include "SketchGdi.h"

namespace NSSketch {

namespace {

constexpr LONGLONG kMaxFileBytes = 64 * 1024 * 1024;
constexpr int kMaxTemporaries = 100;  // names tried for the file that is written first

// Owns the handle of a file.
class CFile {
 public:
  CFile(const std::u16string& path, DWORD access, DWORD disposition)
      : fHandle(::CreateFileW(WideText(path), access, FILE_SHARE_READ, nullptr, disposition,
                              FILE_FLAG_SEQUENTIAL_SCAN, nullptr)) {}
  ~CFile() {
    if (IsOpen()) ::CloseHandle(fHandle);
  }
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;
  bool IsOpen() const { return fHandle != INVALID_HANDLE_VALUE; }
  HANDLE Handle() const { return fHandle; }

 private:
  HANDLE fHandle;
};

// What the system says about an error, as one line.
std::u16string SystemMessage(DWORD error) {
  wchar_t text[512] = {};
  DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                                  0, text, 512, nullptr);
  while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L' '))
    --length;
  return std::u16string(reinterpret_cast<const char16_t*>(text), length);
}

bool IsFolder(const std::u16string& path) {
  const DWORD attributes = ::GetFileAttributesW(WideText(path));
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool ReadBytes(const std::u16string& path, std::string& outBytes, std::u16string& outMessage) {
  if (IsFolder(path)) {
    outMessage = u"This is a folder.";
    return false;
  }
  const CFile file(path, GENERIC_READ, OPEN_EXISTING);
  LARGE_INTEGER size = {};
  if (!file.IsOpen() || !::GetFileSizeEx(file.Handle(), &size)) {
    outMessage = SystemMessage(::GetLastError());
    return false;
  }
  if (size.QuadPart > kMaxFileBytes) {
    outMessage = u"The file is larger than 64 megabytes.";
    return false;
  }
  outBytes.resize(static_cast<std::size_t>(size.QuadPart));
  DWORD bytesRead = 0;
  if (!::ReadFile(file.Handle(), outBytes.data(), static_cast<DWORD>(outBytes.size()), &bytesRead, nullptr)) {
    outMessage = SystemMessage(::GetLastError());
    return false;
  }
  if (bytesRead != outBytes.size()) {
    outMessage = SystemMessage(ERROR_HANDLE_EOF);
    return false;
  }
  return true;
}

bool HasExtension(const std::u16string& path, const std::u16string& extension) {
  return path.size() >= extension.size() &&
         IsSamePath(path.substr(path.size() - extension.size()), extension);
}

// Makes a file that is not there yet, complete on the disk. Otherwise returns the system's error, and nothing
// is left behind.
DWORD WriteNewFile(const std::u16string& path, const std::string& bytes) {
  DWORD error = ERROR_SUCCESS;
  {
    const CFile file(path, GENERIC_WRITE, CREATE_NEW);
    if (!file.IsOpen()) return ::GetLastError();
    DWORD written = 0;
    if (!::WriteFile(file.Handle(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
      error = ::GetLastError();
    else if (written != bytes.size())
      error = ERROR_DISK_FULL;
    else if (!::FlushFileBuffers(file.Handle()))
      error = ::GetLastError();
  }
  if (error != ERROR_SUCCESS) ::DeleteFileW(WideText(path));
  return error;
}

}  // namespace

std::u16string NameOfPath(const std::u16string& path) {
  const std::size_t last = path.find_last_not_of(u"\\/");  // a folder's path may end with a separator
  const std::u16string trimmed = path.substr(0, last + 1);
  return trimmed.substr(trimmed.find_last_of(u"\\/") + 1);
}

std::u16string FullPath(const std::u16string& path) {
  const DWORD room = ::GetFullPathNameW(WideText(path), 0, nullptr, nullptr);
  std::u16string full(room, u'\0');
  const DWORD length =
      ::GetFullPathNameW(WideText(path), room, reinterpret_cast<wchar_t*>(full.data()), nullptr);
  if (length == 0 || length >= room) return path;
  full.resize(length);
  return full;
}

bool IsSamePath(const std::u16string& a, const std::u16string& b) {
  return ::CompareStringOrdinal(WideText(a), static_cast<int>(a.size()), WideText(b),
                                static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

bool LoadSketch(const std::u16string& path, CSketchDocument& outDocument, std::u16string& outMessage) {
  std::string bytes;
  if (!ReadBytes(path, bytes, outMessage)) return false;
  std::string message;
  if (ReadSketchDocument(bytes, outDocument, message)) return true;
  if (!HasExtension(path, u".sketch"))
    outMessage = u"It is no drawing of Sketch, whose files are text and end in \".sketch\".\n";
  outMessage += u"In " + TextFromUTF8(message) + u".";
  return false;
}

bool SaveFile(const std::u16string& path, const std::string& bytes, std::u16string& outMessage) {
  std::u16string temporary;
  DWORD error = ERROR_FILE_EXISTS;
  for (int i = 1; error == ERROR_FILE_EXISTS && i <= kMaxTemporaries; ++i) {
    temporary = path + u"." + TextFromUTF8(std::to_string(i)) + u".new";
    error = WriteNewFile(temporary, bytes);
  }
  if (error == ERROR_SUCCESS && !::MoveFileExW(WideText(temporary), WideText(path),
                                               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    error = ::GetLastError();
    ::DeleteFileW(WideText(temporary));
  }
  if (error == ERROR_SUCCESS) return true;
  outMessage = SystemMessage(error);
  return false;
}

}  // namespace NSSketch
