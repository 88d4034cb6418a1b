// Command lines on a file system that the input makes up. The first byte says which paths exist.
//
// sources: Component/Portable/CommandLine.cpp Component/Portable/TextPackage.cpp
// sources: Component/Portable/MorvaneImplUtils.cpp
#include <algorithm>
#include <cstdlib>

#include "Component/Portable/CommandLine.h"

using namespace NSMorvane;
using NSTextPackage::TString;

namespace {

// Each blank in front of which nothing exists is asked for again with the next argument; more would only be
// slow.
constexpr std::size_t kMaxSize = 400;

void Require(bool condition) {
  if (!condition) std::abort();
}

class MadeUpFileSystem final : public IFileSystemProbe {
 public:
  explicit MadeUpFileSystem(std::uint8_t seed) : fSeed(seed) {}
  TString NormalizeExistingPath(const TString& path) const override {
    if (path.size() < 2 || fSeed == 0) return TString();
    const std::size_t value = path.size() * 31 + path.front() * 7 + path.back();
    return value % fSeed == 0 ? u"N:" + path : TString();
  }

 private:
  std::uint8_t fSeed;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || size > kMaxSize) return 0;
  const MadeUpFileSystem files(data[0]);
  const TString text(data + 1, data + size);

  const CCommandLine result = ParseCommandLine(text, files);
  std::size_t length = 0;
  for (const TString& option : result.fOptions) {
    Require(option.front() == u'/' && text.find(option) != TString::npos);
    // A blank only inside quotes.
    bool isQuoted = false;
    for (const TChar c : option) {
      if (c == u'"') isQuoted = !isQuoted;
      Require(isQuoted || c != u' ');
    }
    length += option.size();
  }
  for (const TString& file : result.fFiles) length += file.size() - (file.compare(0, 2, u"N:") == 0 ? 2 : 0);
  Require(length <= text.size());

  const TString argument = NextFileArgument(text, files);
  Require(text.compare(0, argument.size(), argument) == 0);
  return 0;
}
