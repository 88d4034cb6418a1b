#include "Component/Portable/Resources/StringScript.h"

#include <algorithm>
#include <limits>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSStringScript {

namespace {

constexpr TChar kParagraphSeparator = 0x2029;

bool IsBlank(TChar c) { return c == u' ' || c == u'\t'; }

bool IsCurlyQuote(TChar c) { return c == 0x201C || c == 0x201D; }

}  // namespace

void CRawByteReader::ReadBytes(std::int64_t start, std::int64_t size, std::uint8_t* destination) {
  if (start < 0 || size < 0 || start > fSize || size > fSize - start) MORVANE_THROW(std::out_of_range(""));
  std::copy_n(fData + start, static_cast<std::size_t>(size), destination);
}

CStringScriptParser::CStringScriptParser(const TString& text)
    : fText(text), fPos(0), fLineEnds(u"\u000D\u000A\u2028\u2029") {
  // An empty text breaks the invariant. Then the current character is the terminator, with which no script
  // can begin, and parsing throws.
  MORVANE_ASSERT(CheckInvariant());
}

std::vector<TScriptEntry> CStringScriptParser::Parse() {
  std::vector<TScriptEntry> entries;
  SkipBlanks();
  while (!IsAtEnd()) {
    if (IsAtLineEnd() || IsAtComment()) {
      SkipToNextLine();
    } else if (NSTextPackage::IsDigit(fText[fPos])) {
      entries.push_back(ParseEntry());
    } else {
      MORVANE_THROW(NSMorvane::XBadFormat());
    }
    SkipBlanks();
  }
  return entries;
}

bool CStringScriptParser::CheckInvariant() const {
  if (fPos == TString::npos || fPos < fText.size()) return true;
  MORVANE_UNREACHED();
  return false;
}

bool CStringScriptParser::IsAtComment() const { return fText[fPos] == u'/' && IsNext(u'/'); }

bool CStringScriptParser::IsNext(TChar c) const { return fText.size() - fPos > 1 && fText[fPos + 1] == c; }

void CStringScriptParser::Advance() {
  MORVANE_ASSERT(fPos != NSTextPackage::TString::npos);
  if (IsAtEnd()) return;
  if (++fPos >= fText.size()) fPos = TString::npos;
}

void CStringScriptParser::RequireMore() const {
  if (IsAtEnd()) MORVANE_THROW(NSMorvane::XBadFormat());
}

void CStringScriptParser::SkipBlanks() {
  while (!IsAtEnd() && IsBlank(fText[fPos])) Advance();
}

void CStringScriptParser::SkipToNextLine() {
  fPos = fText.find_first_of(fLineEnds, fPos);
  if (IsAtEnd()) return;
  if (fText[fPos] == u'\r' && IsNext(u'\n')) Advance();
  Advance();
  MORVANE_ASSERT(CheckInvariant());
}

std::uint16_t CStringScriptParser::ParseNumber() {
  const auto begin = fText.begin() + static_cast<TString::difference_type>(fPos);
  const auto end = std::find_if_not(begin, fText.end(), NSTextPackage::IsDigit);
  if (end == fText.end()) MORVANE_THROW(NSMorvane::XBadFormat());
  std::int32_t number = 0;
  if (!NSTextPackage::ReadDecimal(std::u16string_view(fText).substr(fPos), number) || number < 0 ||
      number > std::numeric_limits<std::uint16_t>::max())
    MORVANE_THROW(NSMorvane::XBadFormat());
  fPos = static_cast<TString::size_type>(end - fText.begin());
  return static_cast<std::uint16_t>(number);
}

TScriptEntry CStringScriptParser::ParseEntry() {
  TScriptEntry entry{ParseNumber(), TString()};
  SkipBlanks();
  RequireMore();
  if (fText[fPos] != u'{') MORVANE_THROW(NSMorvane::XBadFormat());
  Advance();
  RequireMore();
  while (fText[fPos] != u'}') {
    TChar c = fText[fPos];
    if (c == u'\\' && IsNext(u'r')) {
      c = kParagraphSeparator;
      Advance();
    } else if (IsCurlyQuote(c)) {
      c = u'"';
    }
    entry.text += c;
    Advance();
    RequireMore();
  }
  Advance();
  SkipBlanks();
  if (!IsAtEnd()) {
    if (!IsAtLineEnd() && !IsAtComment()) MORVANE_THROW(NSMorvane::XBadFormat());
    SkipToNextLine();
  }
  return entry;
}

std::vector<TScriptEntry> ParseStringScript(const TString& text) { return CStringScriptParser(text).Parse(); }

}  // namespace NSStringScript
