// The clipboard.
#pragma once

#include "MorvaneTypes.h"

namespace NSMorvane {

// A format: four characters and a zero byte. "utxt" is UTF-16 text, "TEXT" 8-bit text, "WAVE", "RIFF",
// "HBMP", "DIBB" and "FURL" are the platform's own (CF_UNICODETEXT, CF_TEXT, CF_WAVE, CF_RIFF, CF_BITMAP,
// CF_DIB and CF_HDROP, with the layouts that the platform publishes); any other tag, of ASCII characters, is
// a format private to applications of this library. Upper and lower case make no difference in such a private
// tag. A tag may be shorter than four characters; one with other than ASCII characters gives kOtherError.
//
// "HBMP" is a handle and no block of bytes, so that a client can only ask whether it is there. "DIBB" has the
// bytes of the picture.
#pragma pack(push, 1)
struct TClipboardFormat {
  char fTag[5];
};
#pragma pack(pop)

// A block of bytes. Whoever receives it deletes it.
class IData {
 public:
  // Non-zero if the object is sound.
  virtual std::uint32_t IData_CheckInvariant() const = 0;
  // In bytes.
  virtual TError IData_GetSize(std::uint64_t& out) = 0;
  // Copies `size` bytes, beginning at `offset`. kBadInputProgrammingError, with nothing read, for a range
  // that goes beyond the end.
  virtual TError IData_Read(std::uint64_t offset, std::uint64_t size, void* buffer) = 0;

  virtual ~IData() = default;
};

// Implemented by the client: supplies the data of the formats that go to the clipboard. The library deletes
// it on success; otherwise the client keeps the ownership.
class IClipboardDataGetter {
 public:
  // Called once for each format, in order, while the clipboard is open. The clipboard cannot be used during
  // the call (kIllegalCallSequenceProgrammingError). The library deletes what is returned. Set `outError`;
  // with kOK the result must not be null.
  virtual IData* IClipboardDataGetter_GetData(const TClipboardFormat& format, TError& outError) = 0;

  virtual ~IClipboardDataGetter() = default;
};

}  // namespace NSMorvane
