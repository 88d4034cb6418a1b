// Icons.
#pragma once

#include "MorvaneTypes.h"

namespace NSMorvane {

// The system's own pictures. The system decides how each one looks.
enum TBuiltinIcon : std::uint32_t {
  kIconDocument = 3001,
  kIconProgram = 3002,
  kIconFixedDisk = 3003,
  kIconNetworkDrive = 3004,
  kIconOpticalDrive = 3005,
  kIconFloppyDisk = 3006,
  kIconRecycleBinEmpty = 3007,
  kIconRecycleBinFull = 3008,
  kIconDesktop = 3009,
  kIconGenericFile = 3010,
  kIconFolder = 3011,
  kIconApplication1 = 3012,
  kIconApplication2 = 3013,
  kIconApplication3 = 3014,
  kIconNote = 3015,
  kIconCaution = 3016,
  kIconStop = 3017
};

// An icon that can be drawn at 16, 32, 48 and 128 pixels. Whoever creates one deletes it.
class IIcon {
 public:
  // A new icon with the same picture, which the caller deletes. Null on failure, with the code in `outError`.
  virtual IIcon* IIcon_Clone(TError& outError) const = 0;
  // Sets `outEqualFlag` to 1 if both show the same picture from the same source, else to 0. The flag is valid
  // only if the result is kOK.
  virtual TError IIcon_AreEqual(const IIcon& other, TFlag& outEqualFlag) const = 0;
  // Non-zero if the object is sound.
  virtual std::uint32_t IIcon_CheckInvariant() const = 0;

  virtual ~IIcon() = default;
};

}  // namespace NSMorvane
