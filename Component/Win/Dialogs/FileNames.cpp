#include "Component/Win/Dialogs/FileNames.h"

#include <algorithm>
#include <utility>

namespace NSMorvane {

using NSTextPackage::TString;

std::vector<CFileType> WithCombinedType(std::vector<CFileType> fileTypes, const TString& combinedName) {
  if (fileTypes.size() < 2) return fileTypes;
  CFileType combined = {combinedName, TString()};
  for (const CFileType& fileType : fileTypes) {
    if (fileType.fExtensions.empty()) continue;
    if (!combined.fExtensions.empty()) combined.fExtensions += u';';
    combined.fExtensions += fileType.fExtensions;
  }
  fileTypes.push_back(std::move(combined));
  return fileTypes;
}

std::uint32_t TypeIndexForExtensions(const std::vector<CFileType>& fileTypes, const TString& extensions) {
  std::uint32_t index = 0;
  for (const CFileType& fileType : fileTypes) {
    ++index;
    if (NSTextPackage::CompareTextIgnoringCase(fileType.fExtensions, extensions) == NSTextPackage::kTextEqual)
      return index;
  }
  return 0;
}

TString ExtensionToAdd(const CFileType& fileType) {
  const TString extension = SplitExtensions(fileType).front();
  return extension.find_first_of(u"*?") == TString::npos ? extension : TString();
}

TString DefaultExtension(const CFileType& fileType) {
  const TString extension = ExtensionToAdd(fileType);
  return extension.substr(extension.empty() || extension.front() != u'.' ? 0 : 1, kMaxDefaultExtensionLength);
}

TString WithDefaultExtension(const TString& templateName, const TString& defaultExtension) {
  const TString::size_type dot = templateName.rfind(u'.');
  const TString::size_type backslash = templateName.rfind(u'\\');
  const bool hasExtension = dot != TString::npos && (backslash == TString::npos || backslash < dot);
  const bool isName = !templateName.empty() && templateName.back() != u'\\';
  TString name = templateName;
  if (!hasExtension && isName && !defaultExtension.empty()) name += u'.' + defaultExtension;
  return name.substr(0, kMaxFileNameLength);
}

TString WithoutForbiddenCharacters(const TString& name) {
  TString result = name;
  const auto begin = static_cast<TString::difference_type>(name.rfind(u'\\') + 1);
  std::replace_if(
      result.begin() + begin, result.end(),
      [](TChar c) { return c < u' ' || TString(u"<>:\"/|?*").find(c) != TString::npos; }, u'_');
  return result;
}

bool HasExtensionOf(const TString& name, const CFileType& fileType) {
  for (const TString& extension : SplitExtensions(fileType)) {
    if (extension.empty() || name.size() <= extension.size()) continue;
    if (NSTextPackage::CompareTextIgnoringCase(name.substr(name.size() - extension.size()), extension) ==
        NSTextPackage::kTextEqual)
      return true;
  }
  return false;
}

TString NameForType(const TString& name, const std::vector<CFileType>& fileTypes, const CFileType& newType) {
  const TString oldExtension = FindExtensionForFile(fileTypes, name);
  const TString newExtension = ExtensionToAdd(newType);
  if (oldExtension.empty() || newExtension.empty()) return name;
  return name.substr(0, name.size() - oldExtension.size()) + newExtension;
}

TString CompletedName(const TString& name, const std::vector<CFileType>& fileTypes,
                      const CFileType& chosenType) {
  TString result = name;
  if (result.size() > 1 && result.front() == u'"' && result.back() == u'"')
    result = result.substr(1, result.size() - 2);
  result.resize(result.find_last_not_of(u" .") + 1);  // nothing is left of a folder such as ".."
  const TString extension = ExtensionToAdd(chosenType);
  if (result.empty() || result.back() == u'\\') return name;
  const bool isComplete = extension.empty() || !FindExtensionForFile(fileTypes, result).empty() ||
                          HasExtensionOf(result, chosenType);
  if (!isComplete) return result + extension;
  return name.back() == u' ' || name.back() == u'.' ? result : name;
}

}  // namespace NSMorvane
