// Command lines: options, which begin with "/", and the files and folders to open.
#pragma once

#include <cstddef>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

// The file system as far as command lines need it.
class IFileSystemProbe {
 public:
  // The full, long spelling of the path of an existing file or folder, with a backslash at the end for a
  // folder. Empty if nothing of that name exists.
  virtual NSTextPackage::TString NormalizeExistingPath(const NSTextPackage::TString& path) const = 0;
  // The full path of something that need not exist. Empty for a text that is not a path, and if there is no
  // current folder.
  virtual NSTextPackage::TString FullPath(const NSTextPackage::TString&) const { return {}; }

 protected:
  ~IFileSystemProbe() = default;
};

struct CCommandLine {
  std::vector<NSTextPackage::TString> fOptions;  // with their "/"
  std::vector<NSTextPackage::TString> fFiles;
};

// Splits a whole command line, which begins with the name of the program. A "/" outside quotes begins an
// option, even in the middle of a word; the option ends at the next blank outside quotes. What remains are
// the files. A program name without quotes counts as a file if nothing follows it.
CCommandLine ParseCommandLine(const NSTextPackage::TString& commandLine, const IFileSystemProbe& probe);

// The same command line for a process with another current folder: as many paths as fit into `maxLength`
// units become full paths. A path with blanks of something that does not exist gets quotes, so that it
// remains one argument.
NSTextPackage::TString WithFullPaths(const NSTextPackage::TString& commandLine, const IFileSystemProbe& probe,
                                     std::size_t maxLength);

// The paths in a text, separated by blanks: each in its normal spelling if it exists, and as it is written if
// it does not. A path in quotes keeps them, but for the second quote of the last of several.
std::vector<NSTextPackage::TString> SplitFileArguments(const NSTextPackage::TString& text,
                                                       const IFileSystemProbe& probe);

// In a line without quotes, no longer path is looked for. Otherwise a line of thousands of files would ask
// the file system for millions of paths.
constexpr std::size_t kMaxAskedPath = 1300;

// The first argument in a text, which must not begin with a blank. If the text begins with a quote, it is the
// part in quotes. Otherwise it is the longest beginning of the text, up to its end or to a blank, that exists
// as a path; if none exists, it is the part before the first blank.
NSTextPackage::TString NextFileArgument(const NSTextPackage::TString& text, const IFileSystemProbe& probe);

}  // namespace NSMorvane
