// A picture as pixels, and what other programs take it as and give it as.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace NSSketch {

constexpr std::uint32_t kMaxPictureSide = 20000;

struct TSketchPicture {
  std::uint32_t fWidth = 0;  // 1 at least, and kMaxPictureSide at most; the same for the height
  std::uint32_t fHeight = 0;
  std::vector<std::uint32_t> fPixels;  // 0x00RRGGBB, rows from the top
  bool operator==(const TSketchPicture&) const = default;
};

// A device-independent bitmap of 24 bits, as the system's clipboard has it: its header and the pixels.
std::string DIBOf(const TSketchPicture& picture);

// The picture of such a bitmap of any depth; no value for bytes that are none, for one that is compressed and
// for one of more pixels than that.
std::optional<TSketchPicture> PictureOfDIB(std::string_view dib, std::size_t maxPixels);

// Files. That of a PNG is as large as the pixels: they are stored, not compressed.
std::string BMPOf(const TSketchPicture& picture);
std::string PNGOf(const TSketchPicture& picture);

}  // namespace NSSketch
