// The clipboard: blocks of bytes, and what an application puts there and reads.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Common.h"

namespace NSMorvane {

// A block of bytes in memory.
class CBytesData : public IData {
 public:
  explicit CBytesData(std::string bytes) : fBytes(std::move(bytes)) {}

  std::uint32_t IData_CheckInvariant() const override { return 1; }
  TError IData_GetSize(std::uint64_t& out) override {
    out = fBytes.size();
    return kOK;
  }
  TError IData_Read(std::uint64_t offset, std::uint64_t size, void* buffer) override {
    if (offset > fBytes.size() || size > fBytes.size() - offset) return kBadInputProgrammingError;
    if (size > 0) std::memcpy(buffer, fBytes.data() + offset, size);
    return kOK;
  }

 private:
  const std::string fBytes;
};

// One thing in one of the forms in which it goes to the clipboard.
struct TClipboardItem {
  TClipboardFormat fFormat;
  std::string fBytes;
};

// The bytes of a text in the format "utxt".
inline std::string BytesOfText(const std::u16string& text) {
  return std::string(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(TChar));
}
inline TClipboardItem TextItem(const std::u16string& text) { return {{"utxt"}, BytesOfText(text)}; }

class CClipboardItems : public IClipboardDataGetter {
 public:
  explicit CClipboardItems(std::vector<TClipboardItem> items) : fItems(std::move(items)) {}

  IData* IClipboardDataGetter_GetData(const TClipboardFormat& format, TError& outError) override {
    std::unique_ptr<IData> data;
    outError = Guarded([&] {
      for (const TClipboardItem& item : fItems)
        if (std::memcmp(item.fFormat.fTag, format.fTag, sizeof(format.fTag)) == 0)
          data = std::make_unique<CBytesData>(item.fBytes);
      return data ? kOK : kUnsupportedFormatError;
    });
    return data.release();
  }

 private:
  const std::vector<TClipboardItem> fItems;
};

// Puts one thing on the clipboard, in all the forms that other programs may want it in, the richest first.
// kOtherError if another program has the clipboard open; the old contents may be gone then.
inline TError CopyToClipboard(IMorvane& morvane, std::vector<TClipboardItem> items) {
  return Guarded([&] {
    std::vector<TClipboardFormat> formats;
    for (const TClipboardItem& item : items) formats.push_back(item.fFormat);
    auto getter = std::make_unique<CClipboardItems>(std::move(items));
    const TError error = morvane.IMorvane_ReplaceClipboardContents(
        formats.data(), static_cast<std::uint32_t>(formats.size()), getter.get());
    if (error == kOK) static_cast<void>(getter.release());  // the library's now
    return error;
  });
}

// What is on the clipboard in a format; empty if there is nothing, or if it cannot be had now.
inline std::string ClipboardBytes(IMorvane& morvane, const TClipboardFormat& format) {
  TError error = kOK;
  const std::unique_ptr<IData> data(morvane.IMorvane_GetClipboardData(format, error));
  std::uint64_t size = 0;
  if (!data || data->IData_GetSize(size) != kOK) return {};
  std::string bytes(size, '\0');
  return data->IData_Read(0, size, bytes.data()) == kOK ? bytes : std::string();
}
// The text on the clipboard, up to its first zero.
inline std::u16string ClipboardText(IMorvane& morvane) {
  const std::string bytes = ClipboardBytes(morvane, {"utxt"});
  std::u16string text(bytes.size() / sizeof(TChar), u'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(TChar));
  return text.substr(0, text.find(u'\0'));
}
inline bool IsOnClipboard(IMorvane& morvane, const TClipboardFormat& format) {
  TFlag isThere = 0;
  return morvane.IMorvane_IsFormatOnClipboard(format, isThere) == kOK && isThere == 1;
}

}  // namespace NSMorvane
