// Command lines: options, which begin with "/", and the files and folders to open.
#pragma once

#include <cstddef>
#include <vector>

#include "Component/Portable/TextPackage.h"

namespace NSMorvane {

// The file system as far as command lines need it.
class IFileSystemProbe {
 public:
  // The full, long spelling of the path of an existing file or folder, with a backslash at the end for a
  // folder. Empty if nothing of that name exists.
  virtual NSTextPackage::TString NormalizeExistingPath(const NSTextPackage::TString& path) const = 0;

 protected:
  ~IFileSystemProbe() = default;
};

struct CCommandLine {
  std::vector<NSTextPackage::TString> fOptions;  // with their "/"
  std::vector<NSTextPackage::TString> fFiles;
};

// Takes a whole command line apart, the name of the program in front. A "/" outside quotes begins an option,
// also in the middle of a word; the option ends at the next blank outside quotes. What is left are the files.
// A program name that nothing follows and that has no quotes counts as a file.
CCommandLine ParseCommandLine(const NSTextPackage::TString& commandLine, const IFileSystemProbe& probe);

// The paths in a text, separated by blanks, each in its normal spelling if it exists and as it stands if it
// does not. A path in quotes keeps them.
std::vector<NSTextPackage::TString> SplitFileArguments(const NSTextPackage::TString& text,
                                                       const IFileSystemProbe& probe);

// Nothing longer is looked for in a line without quotes. A line of thousands of files would otherwise ask the
// file system for millions of paths.
constexpr std::size_t kMaxAskedPath = 1300;

// The first argument in a text that does not begin with a blank: the stretch in quotes that it begins with,
// or else the longest part in front of a blank that exists, or else the part in front of the first blank.
NSTextPackage::TString NextFileArgument(const NSTextPackage::TString& text, const IFileSystemProbe& probe);

}  // namespace NSMorvane
