#include "Component/Portable/Opening/DroppedFiles.h"

#include <cstring>

namespace NSMorvane {

namespace {

// Whether a list of names is ended by an empty name inside the block. The system always reads a first name,
// even from a list that begins with an empty one.
template <class TUnit>
bool IsTerminatedList(const std::byte* list, std::size_t size) {
  bool atStart = false;
  for (; size >= sizeof(TUnit); list += sizeof(TUnit), size -= sizeof(TUnit)) {
    TUnit unit;
    std::memcpy(&unit, list, sizeof(unit));
    if (unit == 0 && atStart) return true;
    atStart = unit == 0;
  }
  return false;
}

}  // namespace

bool IsSoundDroppedFilesBlock(const std::byte* block, std::size_t size) {
  TDroppedFilesHeader header;
  if (size < sizeof(header)) return false;
  std::memcpy(&header, block, sizeof(header));
  if (header.fNamesOffset > size) return false;
  const std::byte* const list = block + header.fNamesOffset;
  const std::size_t listSize = size - header.fNamesOffset;
  return header.fIsWide != 0 ? IsTerminatedList<std::uint16_t>(list, listSize)
                             : IsTerminatedList<std::uint8_t>(list, listSize);
}

}  // namespace NSMorvane
