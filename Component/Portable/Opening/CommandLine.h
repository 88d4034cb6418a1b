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
  // A path, of something that need not exist, from the root on. Empty for a text that is no path, and where
  // there is no current folder.
  virtual NSTextPackage::TString FullPath(const NSTextPackage::TString&) const { return {}; }

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

// The same command line for a process with another current folder: paths stand from the root on, as many of
// them as fit into `maxLength` units. One with blanks, of something that does not exist, gets quotes to stay
// in one piece.
NSTextPackage::TString WithFullPaths(const NSTextPackage::TString& commandLine, const IFileSystemProbe& probe,
                                     std::size_t maxLength);

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
