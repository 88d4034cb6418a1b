// What the file dialogs remember from one use to the next, in the preferences of the application.
#pragma once

#include <cstdint>

#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

struct TDialogMemory {
  TString fFolder;
  TRect fRect = {};         // the frame of the dialog on the screen; left equal to right means none
  TString fLastExtensions;  // the extension list of the file type that was used last
};

// Where the memory of one kind of dialog stands.
struct TDialogMemoryPlace {
  const TChar* fKey;              // the client's number follows behind it
  const TChar* fFolderValue;      // the name of the folder's value
  const TChar* fExtensionsValue;  // null if this kind of dialog has no file types
};

extern const TDialogMemoryPlace kOpenDialogMemory;
extern const TDialogMemoryPlace kSaveDialogMemory;
extern const TDialogMemoryPlace kFolderChooserMemory;

// Neither of the two throws: a dialog works without a memory. What fails is logged.

// Makes no keys. Empty where nothing is stored, and as a whole if anything of it cannot be read.
TDialogMemory ReadDialogMemory(const TStartupStrings& strings, const TDialogMemoryPlace& place,
                               std::uint32_t dialogContext) noexcept;
void WriteDialogMemory(const TStartupStrings& strings, const TDialogMemoryPlace& place,
                       std::uint32_t dialogContext, const TDialogMemory& memory) noexcept;

}  // namespace NSMorvane
