// Files: the path of a URL, and a default for the behaviour of an open dialog.
#pragma once

#include <string>
#include <string_view>

#include "Common.h"

namespace NSMorvane {

// The path in a "file://" URL of the library, in the form that the system expects:
//   const std::filesystem::path path(PathOfURL(url));
// Such URLs are not escaped: percent signs and blanks belong to the file's name. Quotes around the path,
// which come from a command line, are removed. All characters are kept, whatever the code page is; bytes that
// are not UTF-8 become U+FFFD. Empty if the text is not a "file://" URL.
inline std::u16string PathOfURL(std::string_view url) {
  constexpr std::string_view kScheme = "file://";
  if (!url.starts_with(kScheme)) return {};
  url.remove_prefix(kScheme.size());
  if (url.starts_with('"')) {
    url.remove_prefix(1);
    if (url.ends_with('"')) url.remove_suffix(1);
  }
  std::u16string path;
  for (std::size_t i = 0; i < url.size();) {
    const auto byteAt = [&](std::size_t at) {
      return at < url.size() ? static_cast<unsigned char>(url[at]) : 0u;
    };
    const unsigned first = byteAt(i);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    std::uint32_t code = length < 2 ? first : first & (0x7Fu >> length);
    bool isGood = length > 0;
    for (std::size_t k = 1; k < length; ++k) {
      isGood = isGood && (byteAt(i + k) & 0xC0) == 0x80;
      code = code << 6 | (byteAt(i + k) & 0x3F);
    }
    // A surrogate without its partner is accepted: the name of a file may contain one.
    if (!isGood || (length == 3 && code < 0x800) || (length == 4 && (code < 0x10000 || code > 0x10FFFF))) {
      path += u'\xFFFD';
      ++i;
      continue;
    }
    if (code >= 0x10000) {
      path += static_cast<TChar>(0xD800 + ((code - 0x10000) >> 10));
      path += static_cast<TChar>(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      path += static_cast<TChar>(code);
    }
    i += length;
  }
  return path;
}

class CDefaultOpenDialogCustomizeBehavior : public IOpenDialogCustomizeBehavior {
 public:
  TError IOpenDialogCustomizeBehavior_GetTemplateID(std::uint32_t& outID) override {
    outID = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnFolderChanged(IOpenDialogInstance&, const char*) override {
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnSelectionChanged(IOpenDialogInstance&, const char*) override {
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnInitDone(IOpenDialogInstance&) override { return kOK; }
  TError IOpenDialogCustomizeBehavior_OnCommand(IOpenDialogInstance&, std::int32_t,
                                                TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnHelp(IOpenDialogInstance&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnPaint(IOpenDialogInstance&, TNativeWindow) override { return kOK; }
  TError IOpenDialogCustomizeBehavior_OnSize(IOpenDialogInstance&, TNativeWindow, std::int32_t,
                                             std::int32_t) override {
    return kOK;
  }
};

}  // namespace NSMorvane
