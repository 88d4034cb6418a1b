// Command lines, as the system and other processes hand them over. The input is the record of a second launch
// from its fourth word on: the text, which ends at the first zero, and behind that the names of the files
// that exist, each with a zero behind it. A unit of the text is a byte of the input.
//
// sources: Component/Portable/Opening/CommandLine.cpp Component/Portable/Text/TextPackage.cpp
// sources: Component/Portable/Base/MorvaneImplUtils.cpp
#include <algorithm>
#include <cstdlib>
#include <set>

#include "Component/Portable/Opening/CommandLine.h"
#include "Component/Portable/Opening/SingleInstanceRecord.h"
#include "Component/Portable/Text/TextPackage.h"

using namespace NSMorvane;
using NSTextPackage::TString;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// The normal spelling of what exists is the same with a mark in front, so that nobody takes one for the
// other.
class CFuzzedFileSystem final : public IFileSystemProbe {
 public:
  static constexpr TChar kMark = 0x2022;

  TString NormalizeExistingPath(const TString& path) const override {
    ++fQuestions;
    return fPaths.count(path) != 0 ? kMark + path : TString();
  }
  std::set<TString> fPaths;
  mutable std::size_t fQuestions = 0;
};

bool IsQuoteOrBlank(TChar c) { return c == u'"' || c == u' '; }

// All that is neither blank nor quote, in some order.
TString Letters(TString text) {
  std::erase_if(text, [](TChar c) { return IsQuoteOrBlank(c) || c == CFuzzedFileSystem::kMark; });
  std::sort(text.begin(), text.end());
  return text;
}

TString BehindProgramName(const TString& text) {
  const bool hasQuote = !text.empty() && text.front() == u'"';
  const TString::size_type end = text.find(hasQuote ? u'"' : u' ', hasQuote ? 1 : 0);
  if (end == TString::npos) return hasQuote ? text.substr(1) : text;
  return text.substr(end + 1);
}

void CheckCommandLine(const TString& text, const CFuzzedFileSystem& files) {
  const CCommandLine parsed = ParseCommandLine(text, files);
  TString all;
  for (const TString& option : parsed.fOptions) {
    Require(option.front() == u'/');
    bool isQuoted = false;
    for (const TChar c : option) {
      if (c == u'"') isQuoted = !isQuoted;
      Require(isQuoted || c != u' ');
    }
    all += option;
  }
  for (const TString& file : parsed.fFiles) {
    Require(file.empty() || file.front() != CFuzzedFileSystem::kMark ||
            files.fPaths.count(file.substr(1)) != 0);
    all += file;
  }
  // Nothing gets lost, and nothing comes twice.
  Require(Letters(all) == Letters(BehindProgramName(text)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TString units(data, data + size);
  const TString::size_type firstEnd = std::min(units.find(u'\0'), units.size());
  CFuzzedFileSystem files;
  for (TString::size_type begin = firstEnd + 1; begin < units.size();) {
    const TString::size_type end = std::min(units.find(u'\0', begin), units.size());
    if (end - begin >= 2) files.fPaths.insert(units.substr(begin, end - begin));
    begin = end + 1;
  }
  const TString text = units.substr(0, firstEnd);
  CheckCommandLine(text, files);
  // Each stretch is asked for with what follows it, and not with the rest of a long line.
  const auto stretches =
      static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsQuoteOrBlank)) + 1;
  Require(files.fQuestions <= stretches * (std::min(stretches, kMaxAskedPath) + 3));

  // A text on its way through the record, over one that was there before.
  TSingleInstanceRecord record;
  std::fill(std::begin(record.fCommandLine), std::end(record.fCommandLine), TChar{u'x'});
  WriteCommandLine(record, text);
  Require(ReadCommandLine(record) == text.substr(0, kMaxSentCommandLine));
  // What another process has written: anything, and more than the text.
  std::copy_n(units.begin(), std::min(units.size(), kMaxSentCommandLine), record.fCommandLine);
  CheckCommandLine(ReadCommandLine(record), files);
  return 0;
}
