// What the sample application Sketch makes of a picture for other programs.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
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
