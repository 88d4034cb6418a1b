// The block of memory in which the system passes dropped files. Another process may have written it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace NSMorvane {

// The beginning of the block, the platform's DROPFILES. The names follow, each with a zero after it, and one
// more zero after the last name.
struct TDroppedFilesHeader {
  std::uint32_t fNamesOffset;  // of the first name, in bytes from the beginning of the block
  std::int32_t fX;
  std::int32_t fY;
  std::uint32_t fIsOutsideClientArea;
  std::uint32_t fIsWide;  // 0: the names consist of bytes, else of 16-bit units
};
static_assert(sizeof(TDroppedFilesHeader) == 20);

// Whether the system's functions, which trust the content of a block, stay inside this one.
bool IsSoundDroppedFilesBlock(const std::byte* block, std::size_t size);

}  // namespace NSMorvane
