#include "Component/Win/Dialogs/DialogMemory.h"

#include <array>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Services/WinRegistry.h"

namespace NSMorvane {

const TDialogMemoryPlace kOpenDialogMemory = {u"Open Dialog", u"Initial folder",
                                              u"Last file type extensions"};
const TDialogMemoryPlace kSaveDialogMemory = {u"Save Dialog", u"Initial folder",
                                              u"Last file type extensions"};
const TDialogMemoryPlace kFolderChooserMemory = {u"Folder Chooser", u"Folder", nullptr};

namespace {

constexpr TChar kPositionKey[] = u"Position";

constexpr std::array<std::pair<const TChar*, std::int32_t TRect::*>, 4> kSides = {
    {{u"Left", &TRect::fLeft},
     {u"Top", &TRect::fTop},
     {u"Right", &TRect::fRight},
     {u"Bottom", &TRect::fBottom}}};

TRegPath PathOf(const TStartupStrings& strings, const TDialogMemoryPlace& place,
                std::uint32_t dialogContext) {
  TRegPath path = GetPreferencesPath(strings);
  path.push_back(place.fKey + NSTextPackage::NumberToString(dialogContext));
  return path;
}

TDialogMemory Read(const TRegPath& path, const TDialogMemoryPlace& place) {
  TDialogMemory memory;
  if (!KeyPathExists(path)) return memory;
  const CRegKey key = OpenKeyPath(path, false);
  memory.fFolder = key.GetString(place.fFolderValue);
  if (place.fExtensionsValue) memory.fLastExtensions = key.GetString(place.fExtensionsValue);
  if (key.HasSubKey(kPositionKey)) {
    const CRegKey position(key, kPositionKey, false);
    for (const auto& [name, side] : kSides)
      memory.fRect.*side = static_cast<std::int32_t>(position.GetNumber(name));
  }
  return memory;
}

void Write(const TRegPath& path, const TDialogMemoryPlace& place, const TDialogMemory& memory) {
  CRegKey key = OpenKeyPath(path, true);
  key.SetString(place.fFolderValue, memory.fFolder);
  if (place.fExtensionsValue) key.SetString(place.fExtensionsValue, memory.fLastExtensions);
  CRegKey position(key, kPositionKey, true);
  for (const auto& [name, side] : kSides)
    position.SetNumber(name, static_cast<std::uint32_t>(memory.fRect.*side));
}

}  // namespace

TDialogMemory ReadDialogMemory(const TStartupStrings& strings, const TDialogMemoryPlace& place,
                               std::uint32_t dialogContext) noexcept {
  try {
    return Read(PathOf(strings, place, dialogContext), place);
  } catch (...) {
    DebugPrint("The memory of a dialog cannot be read.");
    return TDialogMemory();
  }
}

void WriteDialogMemory(const TStartupStrings& strings, const TDialogMemoryPlace& place,
                       std::uint32_t dialogContext, const TDialogMemory& memory) noexcept {
  try {
    Write(PathOf(strings, place, dialogContext), place, memory);
  } catch (...) {
    DebugPrint("The memory of a dialog cannot be written.");
  }
}

}  // namespace NSMorvane
