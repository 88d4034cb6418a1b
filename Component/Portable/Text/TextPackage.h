// The library's texts: UTF-16 strings, their conversion to and from bytes, and a few common operations.
//
// A line break inside a text is U+2029. Surrogates are passed on unchanged. Narrow strings are used for keys,
// log lines and everything else that is ASCII or UTF-8. Only the two comparisons depend on a locale.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Interface/MorvaneTypes.h"

namespace NSTextPackage {

using TString = std::u16string;

// Text whose encoding is wrong.
class XIllegalTextFormat : public std::logic_error {
 public:
  XIllegalTextFormat() : std::logic_error("") {}
};

// A source of bytes.
class IByteReader {
 public:
  // Copies `size` bytes from position `start` on. If it cannot copy all of them, it throws and copies none.
  virtual void ReadBytes(std::int64_t start, std::int64_t size, std::uint8_t* destination) = 0;
  virtual ~IByteReader() = default;
};

// --- Zero-terminated arrays

// The number of units before the terminator; -1 for a null pointer.
std::ptrdiff_t CountChars(const TChar* text);
// The same, for an array of `limit` units: never reads past it, and returns `limit` if there is no
// terminator.
std::size_t CountChars(const TChar* text, std::size_t limit);

// The text in an array of fixed size, terminated or not.
template <std::size_t kLimit>
std::basic_string_view<TChar> ArrayToView(const TChar (&text)[kLimit]) {
  return {text, CountChars(text, kLimit)};
}
template <std::size_t kLimit>
TString ArrayToString(const TChar (&text)[kLimit]) {
  return TString(ArrayToView(text));
}

// Copies at most `maximum` units, stops at a terminator, and always writes a terminator: `destination` has
// room for `maximum` + 1 units. At most the first `maximum` units of `source` are read.
void CopyChars(TChar* destination, const TChar* source, std::size_t maximum);

// --- Text and bytes

// The byte order mark in front of a text.
enum TTextMark : std::uint32_t {
  kTextMarkUTF8 = 1900,
  kTextMarkUTF32LittleEndian = 1901,
  kTextMarkUTF32BigEndian = 1902,
  kTextMarkUTF16BigEndian = 1903,
  kTextMarkUTF16LittleEndian = 1904,
  kTextMarkNone = 1905
};

// Looks at the first bytes of a text; `count`, up to 4, is the number of these bytes. `outLength` is the
// length of the mark.
TTextMark DetectTextMark(const std::uint8_t* bytes, std::size_t count, std::size_t& outLength);

// Reads UTF-8 with or without its mark; any other mark throws XIllegalTextFormat. A size of 0 gives the empty
// text. The replacement is passed to the decoder, which does not use it.
TString ReadText(IByteReader& reader, std::int64_t position, std::int64_t size, TChar replacement);

// A tolerant decoder: the lead byte alone decides the length of a sequence, continuation bytes give their low
// six bits without any check, and sequences of five, six and seven bytes are accepted. A zero byte in the
// place of a lead byte ends the text. A byte that cannot be a lead byte, and a sequence that the end of the
// block cuts short, throw XIllegalTextFormat.
TString DecodeUTF8(const std::uint8_t* bytes, std::size_t count, TChar replacement);

// Appends one code point. Code points below U+10000 are encoded as usual. Sic: those above get four bytes in
// a layout of their own, without bits 16 and 17, so the decoder does not give them back. Throws
// XIllegalTextFormat from 0x400000 on.
void EncodeUTF8(std::uint32_t codePoint, std::string& ioBytes);

// A byte above 127 becomes the replacement; a replacement of 0 throws XIllegalTextFormat instead.
TString ASCIIToString(const std::string& text, TChar replacement);
// A unit above 127 becomes the replacement.
std::string StringToASCII(const TString& text, char replacement);
// Uses the decoder above, and does not remove a mark.
TString UTF8ToString(const std::string& text);
// Uses the encoder above; a surrogate pair is one code point. `withMark` puts EF BB BF in front.
std::string StringToUTF8(const TString& text, bool withMark);

// --- Numbers

TString NumberToString(int value);
TString NumberToString(unsigned int value);
TString NumberToString(long value);
TString NumberToString(unsigned long value);

// Fixed notation with `places` digits after the point.
TString FloatToString(double value, int places);
// At most so many digits, without zeros at the end; a larger number is written with a power of ten.
TString FloatToShortString(double value, int digits);

// Reads a signed decimal as a scan for a 32-bit "%ld" does: blanks in front and a sign are accepted, and
// whatever follows the digits is ignored. A value out of range becomes the nearest one that is in range.
// False, with outValue untouched, if there is no digit.
bool ReadDecimal(std::u16string_view text, std::int32_t& outValue);

inline bool IsDigit(TChar c) { return c >= u'0' && c <= u'9'; }

// --- Templates and comparison

// Replaces each "^" that is followed by digits with the argument of that index, or with nothing if there is
// no such argument. `base` is put in front of the digits: with a base of 2, "^1" is argument 21. The usual
// base is 0. A "^" without a digit stays.
TString FormatText(const TString& text, std::uint32_t base, const std::vector<TString>& arguments);

enum TTextOrder : std::uint32_t { kTextLess = 17014, kTextGreater = 17015, kTextEqual = 17016 };

// Compare by the rules of the user's locale and ignore the width of characters. A failure of the platform
// throws std::exception.
TTextOrder CompareText(const TString& a, const TString& b);
TTextOrder CompareTextIgnoringCase(const TString& a, const TString& b);

}  // namespace NSTextPackage
