// The block of memory in which the system hands over files that were dropped, as another process could write
// it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace NSMorvane {

// What the block begins with; the platform's DROPFILES. The names follow, each with a zero behind it, and a
// zero behind the last one's.
struct TDroppedFilesHeader {
  std::uint32_t fNamesOffset;  // of the first name, in bytes from the beginning of the block
  std::int32_t fX;
  std::int32_t fY;
  std::uint32_t fIsOutsideClientArea;
  std::uint32_t fIsWide;  // 0: the names are of bytes, else of 16-bit units
};
static_assert(sizeof(TDroppedFilesHeader) == 20);

// Whether the system's functions, which believe what is in a block, stay inside this one.
bool IsSoundDroppedFilesBlock(const std::byte* block, std::size_t size);

}  // namespace NSMorvane
