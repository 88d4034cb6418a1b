// Blocks of dropped files. What is called sound is walked in the way of the system's functions, which look
// for no end; the address sanitizer stands at the ends of the block.
//
// sources: Component/Portable/Opening/DroppedFiles.cpp
#include "Component/Portable/Opening/DroppedFiles.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

using namespace NSMorvane;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

template <class TUnit>
TUnit UnitAt(const std::byte* address) {
  TUnit unit;
  std::memcpy(&unit, address, sizeof(unit));
  return unit;
}

// How many names there are: each is passed with its zero, and a zero behind it ends the list.
template <class TUnit>
std::size_t CountNames(const std::byte* list) {
  std::size_t count = 0;
  do {
    while (UnitAt<TUnit>(list) != 0) list += sizeof(TUnit);
    list += sizeof(TUnit);
    ++count;
  } while (UnitAt<TUnit>(list) != 0);
  return count;
}

// An own block of that very size.
void CheckBlock(const std::uint8_t* data, std::size_t size) {
  const std::unique_ptr<std::byte[]> block(new std::byte[size]);
  if (size > 0) std::memcpy(block.get(), data, size);
  if (!IsSoundDroppedFilesBlock(block.get(), size)) return;
  TDroppedFilesHeader header;
  Require(size >= sizeof(header));
  std::memcpy(&header, block.get(), sizeof(header));
  const std::byte* const list = block.get() + header.fNamesOffset;
  const std::size_t count = header.fIsWide ? CountNames<std::uint16_t>(list) : CountNames<std::uint8_t>(list);
  Require(count > 0 && count <= size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CheckBlock(data, size);
  // The same bytes as the list of a good header, which is one with an end, whatever they are.
  for (const std::uint32_t isWide : {0u, 1u}) {
    const TDroppedFilesHeader header = {sizeof(header), 0, 0, 0, isWide};
    std::vector<std::uint8_t> bytes(sizeof(header) + size);
    std::memcpy(bytes.data(), &header, sizeof(header));
    if (size > 0) std::memcpy(bytes.data() + sizeof(header), data, size);
    CheckBlock(bytes.data(), bytes.size());
    bytes.insert(bytes.end(), 5, 0);
    Require(IsSoundDroppedFilesBlock(reinterpret_cast<const std::byte*>(bytes.data()), bytes.size()));
    CheckBlock(bytes.data(), bytes.size());
  }
  return 0;
}
