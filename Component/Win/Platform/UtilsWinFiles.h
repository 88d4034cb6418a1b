// Files as the platform sees them: paths, "file://" texts, and the lists of file types of the file dialogs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Component/Portable/Opening/CommandLine.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Interface/MorvaneDialogs.h"

namespace NSMorvane {

// --- Paths

// A path of fewer than two characters is neither.
bool IsExistingFolder(const NSTextPackage::TString& path);
bool IsExistingFile(const NSTextPackage::TString& path);

// The full path with long names, and with a backslash at the end if it is a folder. Empty if there is no such
// file or folder, or if its full path has 1300 to 2601 characters; a longer one is reported and comes back as
// it stands.
NSTextPackage::TString NormalizeExistingPath(const NSTextPackage::TString& path);

// The file system of this machine.
class CFileSystemProbe final : public IFileSystemProbe {
 public:
  NSTextPackage::TString NormalizeExistingPath(const NSTextPackage::TString& path) const override;
  NSTextPackage::TString FullPath(const NSTextPackage::TString& path) const override;
};

// "file://" and the path as it is, in UTF-8: nothing is escaped and backslashes stay. Half a pair of
// surrogates, which the name of a file can have, becomes three bytes.
std::string PathToFileURL(const NSTextPackage::TString& path);
// The reverse. Empty if the text does not begin with "file://" in lower case.
NSTextPackage::TString FileURLToPath(const std::string& url);

// --- File types

// A file type inside the library. The extensions include their dots and are separated by semicolons.
struct CFileType {
  NSTextPackage::TString fName;
  NSTextPackage::TString fExtensions;
};

CFileType MakeFileType(const TFileType& record);

// At least one piece, which is empty if the type has no extensions.
std::vector<NSTextPackage::TString> SplitExtensions(const CFileType& fileType);

// The extension of `name`, in the spelling of the first type that lists it; case is ignored. Empty if `name`
// has no dot or no type lists it.
NSTextPackage::TString FindExtensionForFile(const std::vector<CFileType>& fileTypes,
                                            const NSTextPackage::TString& name);
// The index of that type, counted from 1, or 0.
std::uint32_t TypeIndexForFile(const std::vector<CFileType>& fileTypes, const NSTextPackage::TString& name);

// `name` itself if it ends in an extension of the type, else `name` with the first extension of the type.
NSTextPackage::TString AppendExtensionIfMissing(const NSTextPackage::TString& name,
                                                const CFileType& fileType);

// Writes the filter of a file dialog: for each type a label and its patterns, each followed by a zero.
// `bufferSize` is in characters; std::bad_alloc is thrown if it is too small. Only the first `bufferSize`
// bytes are cleared beforehand, so a caller that needs the zero at the end of the list passes a buffer of
// zeros that is one character longer than `bufferSize`.
void BuildDialogFilter(const std::vector<CFileType>& fileTypes, TChar* buffer, std::size_t bufferSize);

}  // namespace NSMorvane
