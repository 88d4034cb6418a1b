#include "SketchPicture.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <iterator>

namespace NSSketch {

namespace {

void AddLittle(std::string& bytes, std::uint32_t number, int count = 4) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(number >> 8 * i);
}

void AddBig(std::string& bytes, std::uint32_t number) {
  for (int i = 3; i >= 0; --i) bytes += static_cast<char>(number >> 8 * i);
}

std::uint32_t LittleAt(std::string_view bytes, std::size_t at, std::size_t count = 4) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < count; ++i)
    number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << 8 * i;
  return number;
}

// --- Bitmaps

constexpr std::uint32_t kBitmapHeaderSize = 40;
constexpr std::uint32_t kUncompressed = 0;
constexpr std::uint32_t kMasksGiven = 3;

// The bits of a pixel that are a colour's, as eight bits.
std::uint32_t Channel(std::uint32_t pixel, std::uint32_t mask) {
  if (mask == 0) return 0;
  const int shift = std::countr_zero(mask);
  return static_cast<std::uint32_t>(std::uint64_t{(pixel & mask) >> shift} * 255 / (mask >> shift));
}

// The pixel at a place of a row, as it is stored: the leftmost pixel of a byte is in its highest bits.
std::uint32_t StoredPixel(std::string_view row, std::size_t x, std::uint32_t bits) {
  if (bits >= 8) return LittleAt(row, x * (bits / 8), bits / 8);
  const std::size_t first = x * bits;
  return LittleAt(row, first / 8, 1) >> (8 - bits - first % 8) & ((1u << bits) - 1);
}

// --- PNG

std::uint32_t CRCOf(const std::string& bytes) {
  static const auto kTable = [] {
    std::array<std::uint32_t, 256> table;
    for (std::uint32_t i = 0; i < 256; ++i) {
      table[i] = i;
      for (int bit = 0; bit < 8; ++bit) table[i] = table[i] >> 1 ^ (table[i] & 1 ? 0xEDB88320 : 0);
    }
    return table;
  }();
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) crc = kTable[(crc ^ static_cast<unsigned char>(c)) & 0xFF] ^ crc >> 8;
  return ~crc;
}

void AddChunk(std::string& png, const std::string& name, const std::string& content) {
  AddBig(png, static_cast<std::uint32_t>(content.size()));
  png += name + content;
  AddBig(png, CRCOf(name + content));
}

// A zlib stream of blocks that are stored as they are.
std::string Stored(const std::string& bytes) {
  constexpr std::size_t kMaxBlock = 0xFFFF;
  std::string stream = "\x78\x01";
  std::uint32_t a = 1;
  std::uint32_t b = 0;
  for (std::size_t at = 0; at < bytes.size(); at += kMaxBlock) {
    const std::string block = bytes.substr(at, kMaxBlock);
    const auto size = static_cast<std::uint32_t>(block.size());
    stream += static_cast<char>(at + size == bytes.size() ? 1 : 0);
    AddLittle(stream, size | (~size & 0xFFFF) << 16);
    stream += block;
    for (const char c : block) {
      a = (a + static_cast<unsigned char>(c)) % 65521;
      b = (b + a) % 65521;
    }
  }
  AddBig(stream, b << 16 | a);
  return stream;
}

}  // namespace

std::string DIBOf(const TSketchPicture& picture) {
  std::string dib;
  AddLittle(dib, kBitmapHeaderSize);
  AddLittle(dib, picture.fWidth);
  AddLittle(dib, picture.fHeight);
  AddLittle(dib, 1, 2);   // planes
  AddLittle(dib, 24, 2);  // bits
  dib.append(24, '\0');
  // Rows from the bottom, each filled up to four bytes.
  for (std::size_t y = picture.fHeight; y-- > 0;) {
    for (std::size_t x = 0; x < picture.fWidth; ++x)
      AddLittle(dib, picture.fPixels[y * picture.fWidth + x], 3);
    dib.append(picture.fWidth % 4, '\0');
  }
  return dib;
}

std::optional<TSketchPicture> PictureOfDIB(std::string_view dib, std::size_t maxPixels) {
  if (dib.size() < kBitmapHeaderSize) return std::nullopt;
  const std::uint32_t headerSize = LittleAt(dib, 0);
  const auto width = static_cast<std::int32_t>(LittleAt(dib, 4));
  const auto height = static_cast<std::int32_t>(LittleAt(dib, 8));  // below zero with rows from the top
  const std::uint32_t bits = LittleAt(dib, 14, 2);
  const std::uint32_t compression = LittleAt(dib, 16);
  const std::uint32_t givenColors = LittleAt(dib, 32);
  const std::uint64_t rows = static_cast<std::uint64_t>(std::abs(std::int64_t{height}));
  if (headerSize < kBitmapHeaderSize || width <= 0 || rows == 0 || rows > kMaxPictureSide ||
      static_cast<std::uint32_t>(width) > kMaxPictureSide ||
      rows * static_cast<std::uint64_t>(width) > maxPixels)
    return std::nullopt;
  constexpr std::uint32_t kDepths[] = {1, 4, 8, 16, 24, 32};
  if (std::find(std::begin(kDepths), std::end(kDepths), bits) == std::end(kDepths)) return std::nullopt;
  const bool hasMasks = compression == kMasksGiven && (bits == 16 || bits == 32);
  if (compression != kUncompressed && !hasMasks) return std::nullopt;

  // Behind a short header stand the masks, then in any case the palette, then the pixels.
  const std::uint64_t paletteStart =
      std::uint64_t{headerSize} + (hasMasks && headerSize == kBitmapHeaderSize ? 12 : 0);
  const std::uint32_t colors = givenColors == 0 && bits <= 8 ? 1u << bits : givenColors;
  const std::uint64_t start = paletteStart + std::uint64_t{colors} * 4;
  const std::uint64_t rowBytes = (static_cast<std::uint64_t>(width) * bits + 31) / 32 * 4;
  if (start + rowBytes * rows > dib.size()) return std::nullopt;

  std::array<std::uint32_t, 3> masks = {0xFF0000, 0x00FF00, 0x0000FF};
  if (bits == 16) masks = {0x7C00, 0x03E0, 0x001F};
  if (hasMasks)
    for (std::size_t i = 0; i < 3; ++i) masks[i] = LittleAt(dib, kBitmapHeaderSize + 4 * i);
  TSketchPicture picture = {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(rows), {}};
  picture.fPixels.reserve(picture.fWidth * static_cast<std::size_t>(rows));
  for (std::uint64_t y = 0; y < rows; ++y) {
    const std::uint64_t stored = height < 0 ? y : rows - 1 - y;
    const std::string_view row = dib.substr(static_cast<std::size_t>(start + stored * rowBytes));
    for (std::size_t x = 0; x < picture.fWidth; ++x) {
      const std::uint32_t pixel = StoredPixel(row, x, bits);
      if (bits > 8)
        picture.fPixels.push_back(Channel(pixel, masks[0]) << 16 | Channel(pixel, masks[1]) << 8 |
                                  Channel(pixel, masks[2]));
      else  // one that the palette does not have is black
        picture.fPixels.push_back(
            pixel < colors ? LittleAt(dib, static_cast<std::size_t>(paletteStart) + 4 * pixel, 3) : 0);
    }
  }
  return picture;
}

std::string BMPOf(const TSketchPicture& picture) {
  constexpr std::uint32_t kHeader = 14;
  const std::string dib = DIBOf(picture);
  std::string bmp = "BM";
  AddLittle(bmp, kHeader + static_cast<std::uint32_t>(dib.size()));
  AddLittle(bmp, 0);
  AddLittle(bmp, kHeader + kBitmapHeaderSize);
  return bmp + dib;
}

std::string PNGOf(const TSketchPicture& picture) {
  std::string header;
  AddBig(header, picture.fWidth);
  AddBig(header, picture.fHeight);
  header += std::string("\x08\x02\x00\x00\x00", 5);  // 8 bits of red, green and blue each
  std::string rows;
  for (std::size_t y = 0; y < picture.fHeight; ++y) {
    rows += '\0';  // no filter
    for (std::size_t x = 0; x < picture.fWidth; ++x) {
      const std::uint32_t pixel = picture.fPixels[y * picture.fWidth + x];
      for (const int shift : {16, 8, 0}) rows += static_cast<char>(pixel >> shift);
    }
  }
  std::string png = "\x89PNG\r\n\x1A\n";
  AddChunk(png, "IHDR", header);
  AddChunk(png, "IDAT", Stored(rows));
  AddChunk(png, "IEND", {});
  return png;
}

}  // namespace NSSketch
