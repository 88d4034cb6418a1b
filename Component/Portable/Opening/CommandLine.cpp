#include "Component/Portable/Opening/CommandLine.h"

#include <algorithm>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"

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

// The position after the quote that closes the one at `begin`, or the end of the text.
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

// Removes the options from the text after the program's name. What remains are the files.
TString TakeOptions(TString text, std::vector<TString>& outOptions) {
  if (!text.empty() && text.front() == kBlank) text.erase(0, 1);
  TString rest;
  for (TString::size_type i = 0; i < text.size();) {
    if (text[i] == kOptionMark) {
      const TString::size_type end = EndOfOption(text, i);
      outOptions.push_back(text.substr(i, end - i));
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
  return rest;
}

// The file arguments as they are written.
std::vector<TString> CutFileArguments(TString s, const IFileSystemProbe& probe) {
  std::vector<TString> result;
  while (!s.empty()) {
    s.erase(0, s.find_first_not_of(kBlank));
    if (s.empty()) break;
    const TString token = NextFileArgument(s, probe);
    s.erase(0, token.size());
    if (!s.empty() && s.front() == kQuote) s.erase(0, 1);
    if (!s.empty() && s.back() == kQuote) s.pop_back();
    result.push_back(token);
  }
  return result;
}

TString WithoutQuotes(TString text) {
  if (!text.empty() && text.front() == kQuote) text.erase(0, 1);
  if (!text.empty() && text.back() == kQuote) text.pop_back();
  return text;
}

// A file argument for a process with another current folder; unchanged if it has no full path.
TString FullArgument(const TString& argument, const IFileSystemProbe& probe) {
  const bool isQuoted = !argument.empty() && argument.front() == kQuote;
  if (!isQuoted)
    if (const TString existing = probe.NormalizeExistingPath(argument); !existing.empty()) return existing;
  const TString full = probe.FullPath(WithoutQuotes(argument));
  if (full.empty()) return argument;
  return isQuoted || full.find(kBlank) != TString::npos ? kQuote + full + kQuote : full;
}

}  // namespace

CCommandLine ParseCommandLine(const TString& commandLine, const IFileSystemProbe& probe) {
  CCommandLine result;
  const TString files = TakeOptions(WithoutProgramName(commandLine), result.fOptions);
  result.fFiles = SplitFileArguments(files, probe);
  return result;
}

TString WithFullPaths(const TString& commandLine, const IFileSystemProbe& probe, std::size_t maxLength) {
  // Without a blank after the program's name there is nothing to change, or its end is not known.
  const bool isQuoted = !commandLine.empty() && commandLine.front() == kQuote;
  const TString::size_type end = isQuoted ? EndOfQuoted(commandLine, 0) : commandLine.find(kBlank);
  if (end >= commandLine.size()) return commandLine;

  std::vector<TString> options;
  std::vector<TString> files = CutFileArguments(TakeOptions(commandLine.substr(end), options), probe);
  TString start = commandLine.substr(0, end);
  for (const TString& option : options) start += kBlank + option;
  std::size_t length = start.size();
  for (const TString& file : files) length += 1 + file.size();
  bool isChanged = false;
  for (TString& file : files) {
    TString full = FullArgument(file, probe);
    if (full == file || length - file.size() + full.size() > maxLength) continue;
    length += full.size() - file.size();
    file = std::move(full);
    isChanged = true;
  }
  if (!isChanged) return commandLine;
  TString result = start;
  for (const TString& file : files) result += kBlank + file;

  // An odd command line can be read differently after these changes. In that case it is left alone.
  const CCommandLine now = ParseCommandLine(result, probe);
  const auto isSame = [](const TString& a, const TString& b) { return WithoutQuotes(a) == WithoutQuotes(b); };
  const bool isSound = now.fOptions == options &&
                       std::equal(now.fFiles.begin(), now.fFiles.end(), files.begin(), files.end(), isSame);
  return isSound ? result : commandLine;
}

std::vector<TString> SplitFileArguments(const TString& text, const IFileSystemProbe& probe) {
  std::vector<TString> result = CutFileArguments(text, probe);
  for (TString& argument : result)
    if (const TString full = probe.NormalizeExistingPath(argument); !full.empty()) argument = full;
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
