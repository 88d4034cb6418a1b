// What the file dialogs make of file types, extensions and typed names. Nothing here asks the system, but for
// the comparison of texts.
#pragma once

#include <cstdint>
#include <vector>

#include "Component/Win/Platform/UtilsWinFiles.h"

namespace NSMorvane {

enum : std::size_t {
  kMaxFileNameLength = 1300,
  kMaxDefaultExtensionLength = 260,
};

// The types of an open dialog: if there are two or more, one that combines them all is put behind them.
std::vector<CFileType> WithCombinedType(std::vector<CFileType> fileTypes,
                                        const NSTextPackage::TString& combinedName);

// The index, counted from 1, of the first type with this extension list, in any case; or 0.
std::uint32_t TypeIndexForExtensions(const std::vector<CFileType>& fileTypes,
                                     const NSTextPackage::TString& extensions);

// What a name without an extension gets: the first extension of the type. Empty if the type lists none, or a
// pattern such as ".*".
NSTextPackage::TString ExtensionToAdd(const CFileType& fileType);
// The same as the system takes it, without the dot.
NSTextPackage::TString DefaultExtension(const CFileType& fileType);

// The name that a save dialog begins with. One without an extension gets the default one; a dot in the name
// of a folder begins none. Cut to kMaxFileNameLength.
NSTextPackage::TString WithDefaultExtension(const NSTextPackage::TString& templateName,
                                            const NSTextPackage::TString& defaultExtension);

// The name of a file cannot have certain characters: each becomes an underscore. Those of the folders before
// it stay.
NSTextPackage::TString WithoutForbiddenCharacters(const NSTextPackage::TString& name);

// Whether the name ends in an extension of the type, which may have more than one dot, with something before
// it; case does not count.
bool HasExtensionOf(const NSTextPackage::TString& name, const CFileType& fileType);

// A typed name when another type is chosen: an extension that any of the types lists is replaced; without
// one, the name stays.
NSTextPackage::TString NameForType(const NSTextPackage::TString& name,
                                   const std::vector<CFileType>& fileTypes, const CFileType& newType);

// A typed name when it is accepted: if no type lists its extension, it gets that of the chosen type behind
// it. Quotes around the name are taken off then. Blanks and dots at its end, which no file has, go always.
// Names of folders, which end in a backslash, stay.
NSTextPackage::TString CompletedName(const NSTextPackage::TString& name,
                                     const std::vector<CFileType>& fileTypes, const CFileType& chosenType);

}  // namespace NSMorvane
