// A picture as pixels, and what other programs take it as.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace NSSketch {

struct TSketchPicture {
  std::uint32_t fWidth = 0;  // 1 at least, and 20,000 at most; the same for the height
  std::uint32_t fHeight = 0;
  std::vector<std::uint32_t> fPixels;  // 0x00RRGGBB, rows from the top
};

// A device-independent bitmap of 24 bits, as the system's clipboard has it: its header and the pixels.
std::string DIBOf(const TSketchPicture& picture);

// Files. That of a PNG is as large as the pixels: they are stored, not compressed.
std::string BMPOf(const TSketchPicture& picture);
std::string PNGOf(const TSketchPicture& picture);

}  // namespace NSSketch
