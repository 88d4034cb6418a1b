#include "Component/Portable/CommandLine.h"

#include <algorithm>

#include "Component/Portable/MorvaneImplUtils.h"

namespace NSMorvane {

using NSTextPackage::TString;

namespace {

constexpr TChar kBlank = u' ';
constexpr TChar kQuote = u'"';
constexpr TChar kOptionMark = u'/';

TString WithoutProgramName(TString text) {
  if (!text.empty() && text.front() == kQuote) {
    text.erase(0, 1);
    const TString::size_type pos = text.find(kQuote);
    MORVANE_ASSERT(pos!=NSTextPackage::TString::npos);
    if (pos != TString::npos) text.erase(0, pos + 1);
  } else if (const TString::size_type pos = text.find(kBlank); pos != TString::npos) {
    text.erase(0, pos + 1);
  }
  return text;
}

// Behind the quote that closes the one at `begin`, or the end of the text.
TString::size_type EndOfQuoted(const TString& text, TString::size_type begin) {
  const TString::size_type closing = text.find(kQuote, begin + 1);
  return closing == TString::npos ? text.size() : closing + 1;
}

TString::size_type EndOfOption(const TString& text, TString::size_type begin) {
  TString::size_type end = begin;
  while (end < text.size() && text[end] != kBlank)
    end = text[end] == kQuote ? EndOfQuoted(text, end) : end + 1;
  return end;
}

}  // namespace

CCommandLine ParseCommandLine(const TString& commandLine, const IFileSystemProbe& probe) {
  TString text = WithoutProgramName(commandLine);
  if (!text.empty() && text.front() == kBlank) text.erase(0, 1);

  CCommandLine result;
  TString rest;
  for (TString::size_type i = 0; i < text.size();) {
    if (text[i] == kOptionMark) {
      const TString::size_type end = EndOfOption(text, i);
      result.fOptions.push_back(text.substr(i, end - i));
      i = end + 1;  // the blank too
    } else if (text[i] == kQuote) {
      const TString::size_type end = EndOfQuoted(text, i);
      rest.append(text, i, end - i);
      i = end;
    } else {
      rest += text[i++];
    }
  }
  if (!rest.empty() && rest.back() == kBlank) rest.pop_back();
  result.fFiles = SplitFileArguments(rest, probe);
  return result;
}

std::vector<TString> SplitFileArguments(const TString& text, const IFileSystemProbe& probe) {
  std::vector<TString> result;
  TString s = text;
  while (!s.empty()) {
    s.erase(0, s.find_first_not_of(kBlank));
    const TString token = NextFileArgument(s, probe);
    s.erase(0, token.size());
    if (!s.empty() && s.front() == kQuote) s.erase(0, 1);
    if (!s.empty() && s.back() == kQuote) s.pop_back();
    const TString full = probe.NormalizeExistingPath(token);
    result.push_back(full.empty() ? token : full);
  }
  return result;
}

TString NextFileArgument(const TString& text, const IFileSystemProbe& probe) {
  if (!text.empty() && text.front() == kQuote) return text.substr(0, EndOfQuoted(text, 0));
  if (text.size() <= kMaxAskedPath && !probe.NormalizeExistingPath(text).empty()) return text;

  const TString::size_type firstBlank = text.find(kBlank);
  TString::size_type end = TString::npos;
  for (TString::size_type blank = firstBlank; blank <= kMaxAskedPath; blank = text.find(kBlank, blank + 1)) {
    if (!probe.NormalizeExistingPath(text.substr(0, blank)).empty()) end = blank;
  }
  return text.substr(0, end != TString::npos ? end : firstBlank);
}

}  // namespace NSMorvane
