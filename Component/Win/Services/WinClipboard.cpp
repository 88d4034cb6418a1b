#include "Component/Win/Services/WinClipboard.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

namespace {

using NSTextPackage::TString;

// --- Formats

struct TKnownFormat {
  const char* fTag;
  UINT fNumber;
};

constexpr TKnownFormat kKnownFormats[] = {
    {"utxt", CF_UNICODETEXT}, {"TEXT", CF_TEXT}, {"WAVE", CF_WAVE},  {"RIFF", CF_RIFF},
    {"HBMP", CF_BITMAP},      {"DIBB", CF_DIB},  {"FURL", CF_HDROP},
};

// The number of a format. A private format has the same number in every program.
UINT NumberOfFormat(const TClipboardFormat& format) {
  const char* const end = std::find(std::begin(format.fTag), std::end(format.fTag), '\0');
  const std::string tag(std::begin(format.fTag), end);
  const auto known = std::find_if(std::begin(kKnownFormats), std::end(kKnownFormats),
                                  [&](const TKnownFormat& row) { return row.fTag == tag; });
  if (known != std::end(kKnownFormats)) return known->fNumber;
  const UINT number = RegisterClipboardFormatW(WinText(u"SMUGGLER_" + NSTextPackage::ASCIIToString(tag, 0)));
  if (number == 0) MORVANE_THROW_LAST_ERROR();
  return number;
}

// --- Guards

class CClipboardOpener : CNotCopied {
 public:
  // The system would open it a second time for the same window, and the first close would end both.
  explicit CClipboardOpener(HWND owner) {
    if (gIsOpen) MORVANE_THROW(XIllegalCallSequence());
    // Many programs look at it for a moment whenever it changes.
    for (int i = 1; !OpenClipboard(owner); ++i) {
      if (i == kTries) MORVANE_THROW_LAST_ERROR();
      Sleep(kPauseMS);
    }
    gIsOpen = true;
  }
  ~CClipboardOpener() {
    gIsOpen = false;
    const BOOL okFlag = CloseClipboard();
    MORVANE_ASSERT(TRUE==okFlag);
  }

 private:
  static constexpr int kTries = 10;
  static constexpr DWORD kPauseMS = 10;
  static inline bool gIsOpen = false;
};

// A block of global memory for the clipboard, locked and filled with zeros.
class CGlobalBuffer : CNotCopied {
 public:
  explicit CGlobalBuffer(std::size_t size)
      : fGlobalData(GlobalAlloc(GMEM_MOVEABLE, size)), fLockedData(nullptr) {
    if (!fGlobalData) MORVANE_THROW_LAST_ERROR();
    const std::size_t actualSize = GlobalSize(fGlobalData);
    MORVANE_ASSERT(actualSize >= size);
    fLockedData = GlobalLock(fGlobalData);
    if (!fLockedData) {
      const DWORD error = GetLastError();
      Free();
      SetLastError(error);
      MORVANE_THROW_LAST_ERROR();
    }
    std::memset(fLockedData, 0, actualSize);
  }
  ~CGlobalBuffer() {
    if (!fGlobalData) return;
    if (fLockedData) Unlock();
    Free();
  }

  void* GetData() const { return fLockedData; }

  // The clipboard owns the first `size` bytes of the block from here on.
  void HandOver(UINT format, std::size_t size) {
    Unlock();
    if (size < GlobalSize(fGlobalData))
      if (const HGLOBAL shorter = GlobalReAlloc(fGlobalData, size, GMEM_MOVEABLE)) fGlobalData = shorter;
    if (!SetClipboardData(format, fGlobalData)) MORVANE_THROW_LAST_ERROR();
    fGlobalData = nullptr;
  }

 private:
  void Unlock() {
    fLockedData = nullptr;
    const BOOL okFlag = GlobalUnlock(fGlobalData);
    MORVANE_ASSERT(0==okFlag);
  }
  void Free() {
    fGlobalData = GlobalFree(fGlobalData);
    MORVANE_ASSERT(0==fGlobalData);
  }

  HGLOBAL fGlobalData;
  void* fLockedData;
};

// --- Reading

// A copy of what was on the clipboard, which may change at any time.
class CClipboardDataReader final : public IData {
 public:
  // The clipboard must be open. The size is that of the block, including what follows the end of a text.
  explicit CClipboardDataReader(HGLOBAL globalData) {
    MORVANE_ASSERT_TEXT("0!=fGlobalData", globalData != nullptr);
    const void* const lockedData = GlobalLock(globalData);
    if (!lockedData) MORVANE_THROW_LAST_ERROR();
    const TError error = ErrorOf([&] {
      const auto bytes = static_cast<const std::byte*>(lockedData);
      fData.assign(bytes, bytes + GlobalSize(globalData));
    });
    GlobalUnlock(globalData);
    ThrowError(error);
  }

  std::uint32_t IData_CheckInvariant() const override { return 1; }
  TError IData_GetSize(std::uint64_t& out) override {
    out = fData.size();
    return kOK;
  }
  TError IData_Read(std::uint64_t start, std::uint64_t size, void* destination) override {
    if (start > fData.size() || size > fData.size() - start) return kBadInputProgrammingError;
    if (size != 0) std::memcpy(destination, fData.data() + start, static_cast<std::size_t>(size));
    return kOK;
  }

 private:
  std::vector<std::byte> fData;
};

// --- Writing

// The size of a text's unit in bytes; 0 for a format that is no text.
std::size_t SizeOfUnit(UINT format) {
  return format == CF_UNICODETEXT ? sizeof(TChar) : format == CF_TEXT ? sizeof(char) : 0;
}

void PutOnClipboard(const TClipboardFormat& format, UINT number, IClipboardDataGetter& getter) {
  TError error = kProgrammingError;
  const std::unique_ptr<IData> data(getter.IClipboardDataGetter_GetData(format, error));
  MORVANE_CHECK(error);
  if (!data) MORVANE_THROW(std::invalid_argument(""));
  MORVANE_ASSERT(1==data->IData_CheckInvariant());
  std::uint64_t size = 0;
  MORVANE_CHECK(data->IData_GetSize(size));
  MORVANE_ASSERT(size>0);
  // A text without a terminator gets one; a text with half a unit is refused.
  const std::size_t unit = size == 0 ? 0 : SizeOfUnit(number);
  if (size > SIZE_MAX - unit) MORVANE_THROW(XOutOfMemory());
  if (unit != 0 && size % unit != 0) MORVANE_THROW(std::invalid_argument(""));
  const auto bytes = static_cast<std::size_t>(size);
  CGlobalBuffer buffer(bytes + unit);
  void* const clipboardBuffer = buffer.GetData();
  MORVANE_ASSERT(0!=clipboardBuffer);
  MORVANE_CHECK(data->IData_Read(0, size, clipboardBuffer));
  const char* const end = static_cast<const char*>(clipboardBuffer) + bytes;
  const bool isTerminated = std::all_of(end - unit, end, [](char byte) { return byte == 0; });
  buffer.HandOver(number, isTerminated ? bytes : bytes + unit);
}

}  // namespace

bool IsFormatOnClipboard(const TClipboardFormat& format, HWND owner) {
  const UINT number = NumberOfFormat(format);
  const CClipboardOpener opener(owner);
  UINT onClipboard = 0;
  do {
    SetLastError(ERROR_SUCCESS);
    onClipboard = EnumClipboardFormats(onClipboard);
  } while (onClipboard != 0 && onClipboard != number);
  if (onClipboard == 0) MORVANE_CHECK_LAST_ERROR();
  return onClipboard == number;
}

std::unique_ptr<IData> GetClipboardData(const TClipboardFormat& format, HWND owner) {
  const UINT number = NumberOfFormat(format);
  const CClipboardOpener opener(owner);
  if (!IsClipboardFormatAvailable(number)) MORVANE_THROW(XProgrammingError());
  if (number == CF_BITMAP) MORVANE_THROW(XUnsupportedFormat());  // no block of memory
  const HANDLE handle = ::GetClipboardData(number);
  if (!handle) MORVANE_THROW_LAST_ERROR();
  return std::make_unique<CClipboardDataReader>(handle);
}

void ReplaceClipboardContents(const std::vector<TClipboardFormat>& formats, IClipboardDataGetter* getter,
                              HWND owner) {
  MORVANE_ASSERT_TEXT("0!=clipbardDataGetter", getter != nullptr || formats.empty());  // sic
  std::vector<UINT> numbers;
  for (const TClipboardFormat& format : formats) numbers.push_back(NumberOfFormat(format));
  if (std::find(numbers.begin(), numbers.end(), UINT{CF_BITMAP}) != numbers.end())
    MORVANE_THROW(XUnsupportedFormat());  // no block of memory
  const CClipboardOpener opener(owner);
  if (!EmptyClipboard()) MORVANE_THROW_LAST_ERROR();
  for (std::size_t i = 0; i < formats.size(); ++i) PutOnClipboard(formats[i], numbers[i], *getter);
  delete getter;
}

}  // namespace NSMorvane
