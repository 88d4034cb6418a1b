// String scripts: the text format of numbered, translatable strings.
//
//   // a comment, up to the end of the line
//   1 {Open}
//   2 { Save as...\r(new name) }
//
// A string is everything between its braces, line ends included; "\r" gives U+2029 and curly double quotes
// become straight ones. There is no way to write a closing brace inside a string.
#pragma once

#include <vector>

#include "Component/Portable/Text/TextPackage.h"

namespace NSStringScript {

using NSTextPackage::TChar;
using NSTextPackage::TString;

// A block in memory, not owned. A range that is not inside it throws std::out_of_range.
class CRawByteReader : public NSTextPackage::IByteReader {
 public:
  CRawByteReader(const std::uint8_t* data, std::uint32_t size) : fSize(size), fData(data) {}

  void ReadBytes(std::int64_t start, std::int64_t size, std::uint8_t* destination) override;

 private:
  std::uint32_t fSize;
  const std::uint8_t* fData;
};

struct TScriptEntry {
  std::uint16_t id;
  TString text;
};

// Lives for one parse of one text, which it refers to.
class CStringScriptParser {
 public:
  explicit CStringScriptParser(const TString& text);

  // The entries in the order of the script; two may have the same id. Any error of syntax throws XBadFormat,
  // and an empty text is one.
  std::vector<TScriptEntry> Parse();

 private:
  bool CheckInvariant() const;
  bool IsAtEnd() const { return fPos == TString::npos; }
  bool IsAtLineEnd() const { return fLineEnds.find(fText[fPos]) != TString::npos; }
  bool IsAtComment() const;
  // Whether `c` is the next character. False if there is none.
  bool IsNext(TChar c) const;
  void Advance();
  // Throws at the end of the text, inside an entry.
  void RequireMore() const;
  void SkipBlanks();
  void SkipToNextLine();
  std::uint16_t ParseNumber();
  TScriptEntry ParseEntry();

  const TString& fText;
  TString::size_type fPos;  // of the current character, or npos at the end
  const TString fLineEnds;
};

std::vector<TScriptEntry> ParseStringScript(const TString& text);

}  // namespace NSStringScript
