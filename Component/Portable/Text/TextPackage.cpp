// No platform is needed here. The comparisons, which need one, are in the platform half.
#include "Component/Portable/Text/TextPackage.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSTextPackage {

namespace {

constexpr std::size_t kMaxMarkLength = 4;

// What a lead byte means: the number of bytes in the sequence, and the bits of the lead byte that belong to
// the code point.
struct TSequenceForm {
  std::size_t length;
  std::uint8_t leadBits;
};

TSequenceForm FormOfLeadByte(std::uint8_t lead) {
  if (lead < 0x80) return {1, 0x7F};
  if ((lead & 0xE0) == 0xC0) return {2, 0x1F};
  if ((lead & 0xF0) == 0xE0) return {3, 0x0F};
  if ((lead & 0xF8) == 0xF0) return {4, 0x07};
  if ((lead & 0xFC) == 0xF8) return {5, 0x03};
  if ((lead & 0xFE) == 0xFC) return {6, 0x01};
  if (lead == 0xFE) return {7, 0};
  MORVANE_THROW(XIllegalTextFormat());
}

void AppendCodePoint(std::uint32_t codePoint, TString& ioText) {
  if (codePoint < 0x10000) {
    ioText += static_cast<TChar>(codePoint);
    return;
  }
  // The long forms reach far beyond Unicode; their high unit is cut to 16 bits.
  ioText += static_cast<TChar>(((codePoint - 0x10000) >> 10) + 0xD800);
  ioText += static_cast<TChar>((codePoint & 0x3FF) + 0xDC00);
}

bool IsHighSurrogate(TChar c) { return c >= 0xD800 && c < 0xDC00; }
bool IsLowSurrogate(TChar c) { return c >= 0xDC00 && c < 0xE000; }

// What a scan in the "C" locale skips in front of a number.
bool IsScanBlank(TChar c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); }

template <class Number>
TString DecimalText(Number value) {
  char digits[std::numeric_limits<Number>::digits10 + 3];
  const std::to_chars_result result = std::to_chars(std::begin(digits), std::end(digits), value);
  return TString(digits, result.ptr);
}

}  // namespace

// --- Zero-terminated arrays

std::ptrdiff_t CountChars(const TChar* text) {
  return text ? static_cast<std::ptrdiff_t>(std::char_traits<TChar>::length(text)) : -1;
}

std::size_t CountChars(const TChar* text, std::size_t limit) {
  return static_cast<std::size_t>(std::find(text, text + limit, TChar{}) - text);
}

void CopyChars(TChar* destination, const TChar* source, std::size_t maximum) {
  const std::size_t count = CountChars(source, maximum);
  std::copy_n(source, count, destination);
  destination[count] = 0;
}

// --- Text and bytes

TTextMark DetectTextMark(const std::uint8_t* bytes, std::size_t count, std::size_t& outLength) {
  // The mark of UTF-32 begins with that of UTF-16, so it is tried first.
  static const struct {
    TTextMark mark;
    std::size_t length;
    std::uint8_t bytes[kMaxMarkLength];
  } kMarks[] = {{kTextMarkUTF32LittleEndian, 4, {0xFF, 0xFE, 0, 0}},
                {kTextMarkUTF32BigEndian, 4, {0, 0, 0xFE, 0xFF}},
                {kTextMarkUTF8, 3, {0xEF, 0xBB, 0xBF}},
                {kTextMarkUTF16BigEndian, 2, {0xFE, 0xFF}},
                {kTextMarkUTF16LittleEndian, 2, {0xFF, 0xFE}}};
  for (const auto& entry : kMarks) {
    if (count >= entry.length && std::equal(entry.bytes, entry.bytes + entry.length, bytes)) {
      outLength = entry.length;
      return entry.mark;
    }
  }
  outLength = 0;
  return kTextMarkNone;
}

TString ReadText(IByteReader& reader, std::int64_t position, std::int64_t size, TChar replacement) {
  if (size <= 0) return TString();
  std::uint8_t first[kMaxMarkLength] = {};
  const std::int64_t firstCount = std::min<std::int64_t>(size, kMaxMarkLength);
  reader.ReadBytes(position, firstCount, first);
  std::size_t markLength = 0;
  const TTextMark mark = DetectTextMark(first, static_cast<std::size_t>(firstCount), markLength);
  if (mark != kTextMarkUTF8 && mark != kTextMarkNone) MORVANE_THROW(XIllegalTextFormat());

  const std::int64_t restSize = size - static_cast<std::int64_t>(markLength);
  std::vector<std::uint8_t> rest(static_cast<std::size_t>(restSize));
  reader.ReadBytes(position + static_cast<std::int64_t>(markLength), restSize, rest.data());
  return DecodeUTF8(rest.data(), rest.size(), replacement);
}

TString DecodeUTF8(const std::uint8_t* bytes, std::size_t count, TChar) {
  TString result;
  result.reserve(count);
  for (std::size_t i = 0; i < count && bytes[i] != 0;) {
    const TSequenceForm form = FormOfLeadByte(bytes[i]);
    if (form.length > count - i) MORVANE_THROW(XIllegalTextFormat());
    std::uint32_t codePoint = bytes[i] & form.leadBits;
    std::size_t next = 1;
    // The seven-byte form takes its second byte whole; what does not fit into 32 bits is lost.
    if (form.length == 7) codePoint = bytes[i + next++];
    for (; next < form.length; ++next) codePoint = (codePoint << 6) | (bytes[i + next] & 0x3F);
    AppendCodePoint(codePoint, result);
    // Sic: the last byte of the seven-byte form is read again as the next lead byte.
    i += std::min<std::size_t>(form.length, 6);
  }
  return result;
}

void EncodeUTF8(std::uint32_t codePoint, std::string& ioBytes) {
  const auto append = [&](std::uint32_t byte) {
    ioBytes += static_cast<char>(static_cast<unsigned char>(byte));
  };
  if (codePoint < 0x80) {
    append(codePoint);
  } else if (codePoint < 0x800) {
    append(0xC0 | codePoint >> 6);
    append(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    append(0xE0 | codePoint >> 12);
    append(0x80 | (codePoint >> 6 & 0x3F));
    append(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x400000) {
    append(0xF0 | codePoint >> 20);
    append(0x80 | (codePoint >> 18 & 0x03) << 4 | (codePoint >> 12 & 0x0F));
    append(0x80 | (codePoint >> 6 & 0x3F));
    append(0x80 | (codePoint & 0x3F));
  } else {
    MORVANE_THROW(XIllegalTextFormat());
  }
}

TString ASCIIToString(const std::string& text, TChar replacement) {
  TString result;
  result.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > 127 && replacement == 0) MORVANE_THROW(XIllegalTextFormat());
    result += byte > 127 ? replacement : static_cast<TChar>(byte);
  }
  return result;
}

std::string StringToASCII(const TString& text, char replacement) {
  std::string result;
  result.reserve(text.size());
  for (const TChar c : text) result += c > 127 ? replacement : static_cast<char>(c);
  return result;
}

TString UTF8ToString(const std::string& text) {
  return DecodeUTF8(reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), u'?');
}

std::string StringToUTF8(const TString& text, bool withMark) {
  std::string result;
  result.reserve(text.size() + 3);
  if (withMark) result += "\xEF\xBB\xBF";
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint32_t codePoint = text[i];
    if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (text[i + 1] - 0xDC00u);
      ++i;
    }
    EncodeUTF8(codePoint, result);
  }
  return result;
}

// --- Numbers

TString NumberToString(int value) { return DecimalText(value); }
TString NumberToString(unsigned int value) { return DecimalText(value); }
TString NumberToString(long value) { return DecimalText(value); }
TString NumberToString(unsigned long value) { return DecimalText(value); }

namespace {

// Not std::to_chars, whose tables for floating-point values would be a sixth of the library. The point is
// that of the client's locale, whatever it is, and is put right.
TString FormatDouble(const char* format, int precision, double value) {
  const int length = std::snprintf(nullptr, 0, format, precision, value);
  std::string text(static_cast<std::size_t>(std::max(length, 0)) + 1, '\0');
  std::snprintf(text.data(), text.size(), format, precision, value);
  text.resize(std::strlen(text.c_str()));
  const auto isPoint = [](char c) {
    return !(c >= '0' && c <= '9') && !(c >= 'a' && c <= 'z') && c != '-' && c != '+';
  };
  std::replace_if(text.begin(), text.end(), isPoint, '.');
  return TString(text.begin(), text.end());
}

}  // namespace

// A negative precision counts as a missing one, which is six.
TString FloatToString(double value, int places) { return FormatDouble("%.*f", places, value); }
TString FloatToShortString(double value, int digits) { return FormatDouble("%.*g", digits, value); }

bool ReadDecimal(std::u16string_view text, std::int32_t& outValue) {
  auto it = std::find_if_not(text.begin(), text.end(), IsScanBlank);
  bool isNegative = false;
  if (it != text.end() && (*it == u'+' || *it == u'-')) isNegative = *it++ == u'-';
  if (it == text.end() || !IsDigit(*it)) return false;

  const std::int64_t limit = std::int64_t{std::numeric_limits<std::int32_t>::max()} + (isNegative ? 1 : 0);
  std::int64_t magnitude = 0;
  for (; it != text.end() && IsDigit(*it); ++it) magnitude = std::min(limit, magnitude * 10 + (*it - u'0'));
  outValue = static_cast<std::int32_t>(isNegative ? -magnitude : magnitude);
  return true;
}

// --- Templates

TString FormatText(const TString& text, std::uint32_t base, const std::vector<TString>& arguments) {
  TString result;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] != u'^' || i + 1 >= text.size() || !IsDigit(text[i + 1])) {
      result += text[i++];
      continue;
    }
    std::uint64_t index = base;
    for (++i; i < text.size() && IsDigit(text[i]); ++i) {
      // Beyond the last argument the value does not matter any more, but it must not wrap.
      if (index < arguments.size()) index = index * 10 + (text[i] - u'0');
    }
    if (index < arguments.size()) result += arguments[static_cast<std::size_t>(index)];
  }
  return result;
}

}  // namespace NSTextPackage
