// What the sample application Sketch makes of a picture for other programs, and of one from them.
#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Samples/Sketch/SketchPicture.h"

using namespace NSSketch;

namespace {

std::string Hex(const std::string& bytes) {
  std::string text;
  for (const char c : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof(digits), "%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    text += digits;
  }
  return text;
}

const TSketchPicture kPicture = {2, 2, {0xFF0000, 0x00FF00, 0x0000FF, 0x102030}};

}  // namespace

// What another program has made of the same pixels.
TEST(SketchPicture, IsAPNG) {
  EXPECT_EQ(Hex(PNGOf(kPicture)),
            "89504E470D0A1A0A0000000D4948445200000002000000020802000000FDD49A73"
            "00000019494441547801010E00F1FF00FF000000FF00000000FF1020301A94035E3D460670"
            "0000000049454E44AE426082");
}

TEST(SketchPicture, IsStoredInSeveralBlocksIfItIsLarge) {
  const std::string png = PNGOf({200, 200, std::vector<std::uint32_t>(200 * 200, 0xABCDEF)});
  constexpr std::size_t kRows = 200 * (1 + 3 * 200);
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(png.at(at)); };
  std::size_t at = 8 + 25 + 8 + 2;  // signature, IHDR, the front of IDAT, the front of the stream
  std::size_t stored = 0;
  bool isLast = false;
  while (!isLast) {
    isLast = byte(at) == 1;
    const std::size_t size = byte(at + 1) | byte(at + 2) << 8;
    EXPECT_EQ(size ^ 0xFFFF, static_cast<std::size_t>(byte(at + 3) | byte(at + 4) << 8));
    stored += size;
    at += 5 + size;
  }
  EXPECT_EQ(stored, kRows);
  EXPECT_EQ(png.size(), at + 4 + 4 + 12);
}

TEST(SketchPicture, IsABitmapWithRowsFromTheBottom) {
  const std::string kHeader =
      "280000000200000002000000010018000000000000000000000000000000000000000000000000"
      "00";
  const std::string kPixels =
      "FF00003020100000"
      "0000FF00FF000000";
  EXPECT_EQ(Hex(DIBOf(kPicture)), kHeader + kPixels);
  EXPECT_EQ(Hex(BMPOf(kPicture)), "424D460000000000000036000000" + kHeader + kPixels);
}

namespace {

// A bitmap of 2 by 2 pixels. `rest` is what follows the header of 40 bytes, in hexadecimal digits.
struct TStoredBitmap {
  int fHeaderSize;
  bool fHasRowsFromTop;
  int fBits;
  int fCompression;
  int fColors;
  const char* fRest;

  std::string Bytes() const {
    char header[81];
    std::snprintf(header, sizeof(header), "%02X00000002000000%s0100%02X00%02X000000%024d%02X000000%08d",
                  static_cast<unsigned>(fHeaderSize), fHasRowsFromTop ? "FEFFFFFF" : "02000000",
                  static_cast<unsigned>(fBits), static_cast<unsigned>(fCompression), 0,
                  static_cast<unsigned>(fColors), 0);
    const std::string hex = std::string(header) + fRest;
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
      bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
  }
};

}  // namespace

TEST(SketchPicture, ComesOfABitmapOfAnyDepth) {
  const TSketchPicture chess = {2, 2, {0x000000, 0xFFFFFF, 0xFFFFFF, 0x000000}};
  const TSketchPicture red = {2, 2, {0xFF0000, 0xFF0000, 0xFF0000, 0xFF0000}};
  const std::pair<TStoredBitmap, TSketchPicture> cases[] = {
      {{40, false, 24, 0, 0, "FF00003020100000 0000FF00FF000000"}, kPicture},
      {{40, true, 32, 0, 0, "0000FF0000FF0000 FF00000030201000"}, kPicture},
      // With masks, behind the header and in it.
      {{40, true, 32, 3, 0, "FF00000000FF00000000FF00 FF00000000FF0000 0000FF0010203000"}, kPicture},
      {{52, true, 32, 3, 0, "FF00000000FF00000000FF00 FF00000000FF0000 0000FF0010203000"}, kPicture},
      {{40, true, 16, 0, 0, "007C007C 007C00FC"}, red},
      {{40, true, 16, 3, 0, "00F80000E00700001F000000 00F800F8 00F800F8"}, red},
      // With a palette.
      {{40, true, 8, 0, 4, "0000FF0000FF0000FF00000030201000 00010000 02030000"}, kPicture},
      {{40, true, 4, 0, 4, "0000FF0000FF0000FF00000030201000 01000000 23000000"}, kPicture},
      {{40, true, 1, 0, 0, "00000000FFFFFF00 40000000 80000000"}, chess},
      {{40, true, 8, 0, 1, "0000FF00 00000000 00000000"}, red},
      {{40, true, 8, 0, 1, "FFFFFF00 07000000 00070000"}, chess}};  // colours that it does not have
  for (auto [bitmap, picture] : cases) {
    std::string rest = bitmap.fRest;
    std::erase(rest, ' ');
    bitmap.fRest = rest.c_str();
    const std::string dib = bitmap.Bytes();
    EXPECT_EQ(PictureOfDIB(dib, 4), picture) << rest;
    EXPECT_EQ(PictureOfDIB(dib, 3), std::nullopt) << rest;
    for (std::size_t size = 0; size < dib.size(); ++size)
      EXPECT_EQ(PictureOfDIB(dib.substr(0, size), 4), std::nullopt) << size << " bytes of " << rest;
  }
}

TEST(SketchPicture, IsNoneOfOtherBytes) {
  const std::string dib = DIBOf(kPicture) + std::string(100, '\0');
  // A place in the header, and the number that is put there.
  const std::pair<std::size_t, std::uint32_t> cases[] = {
      {0, 39},  {0, 0xFFFFFFF0}, {4, 0},     {4, 0xFFFFFFFE},  {4, 20001},
      {8, 0},   {8, 0x80000000}, {8, 20001}, {14, 0},          {14, 2},
      {14, 64}, {16, 1},         {16, 3},    {32, 0x40000000}, {32, 0xFFFFFFFF}};
  for (const auto& [at, number] : cases) {
    std::string bad = dib;
    for (std::size_t i = 0; i < (at == 14 ? 2 : 4); ++i) bad[at + i] = static_cast<char>(number >> 8 * i);
    EXPECT_EQ(PictureOfDIB(bad, 1000000), std::nullopt) << number << " at " << at;
  }
}
