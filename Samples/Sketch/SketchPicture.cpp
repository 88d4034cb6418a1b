#include "SketchPicture.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace NSSketch {

namespace {

void AddLittle(std::string& bytes, std::uint32_t number, int count = 4) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(number >> 8 * i);
}

void AddBig(std::string& bytes, std::uint32_t number) {
  for (int i = 3; i >= 0; --i) bytes += static_cast<char>(number >> 8 * i);
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
  AddLittle(dib, 40);  // the size of the header
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

std::string BMPOf(const TSketchPicture& picture) {
  constexpr std::uint32_t kHeader = 14;
  const std::string dib = DIBOf(picture);
  std::string bmp = "BM";
  AddLittle(bmp, kHeader + static_cast<std::uint32_t>(dib.size()));
  AddLittle(bmp, 0);
  AddLittle(bmp, kHeader + 40);
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
