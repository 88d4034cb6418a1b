// Offscreen bitmaps, judged by their pixels.
#include <gtest/gtest.h>
#include <windows.h>

#include <limits>

#include "Component/Portable/BufferBitmap.h"
#include "Tests/Support/Drawing.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {
namespace {

using namespace NSMorvaneTest;

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

TEST(BufferBitmap, PixelsAreWhatIsDrawn) {
  const struct {
    std::int32_t depth, width, rowBytes;
    std::uint32_t red, blue;
  } rows[] = {{16, 3, 8, 0x7C00, 0x001F}, {16, 4, 8, 0x7C00, 0x001F}, {32, 3, 12, 0xFF0000, 0x0000FF}};
  for (const auto& row : rows) {
    CBufferBitmap bitmap({row.width, 5}, row.depth);
    EXPECT_EQ(row.rowBytes, bitmap.GetInfo().fRowBytes);
    EXPECT_FALSE(bitmap.GetInfo().fTopDown);
    EXPECT_EQ((TRect{}), PaintedPixels(bitmap));
    Fill(bitmap, {1, 1, 2, 4}, kRed);
    Fill(bitmap, {2, 4, 3, 5}, kBlue);
    EXPECT_EQ(row.red, PixelAt(bitmap, 1, 3));
    EXPECT_EQ(0u, PixelAt(bitmap, 1, 4));
    EXPECT_EQ(row.blue, PixelAt(bitmap, 2, 4));
    // The other way: what is put into the pixels is in the context.
    void* const pixels = bitmap.OpenPixels();
    char* const lastRow = static_cast<char*>(pixels) + 4 * row.rowBytes;
    if (row.depth == 16) {
      *reinterpret_cast<std::uint16_t*>(lastRow) = 0x7C00;
    } else {
      *reinterpret_cast<std::uint32_t*>(lastRow) = 0xFF0000;
    }
    bitmap.ClosePixels(pixels);
    EXPECT_EQ(kRed, GetPixel(bitmap.GetNativePort().fHDC, 0, 4));
  }
}

TEST(BufferBitmap, OriginAndClipAreLogical) {
  RecordingDebugOutput output;
  CBufferBitmap bitmap({20, 20}, 32);
  EXPECT_EQ((TPoint{0, 0}), bitmap.SetOrigin({100, 50}));
  EXPECT_EQ((TPoint{100, 50}), bitmap.SetOrigin({90, 55}));
  EXPECT_EQ((TPoint{90, 55}), bitmap.GetOrigin());

  bitmap.ClipToRegion(CRegion(TRect{92, 57, 200, 200}).GetNativeRegion());
  Fill(bitmap, {0, 0, 1000, 1000}, kRed);
  EXPECT_EQ((TRect{2, 2, 20, 20}), PaintedPixels(bitmap));

  // A moved origin takes the clip along: the region covers the same logical coordinates as before.
  bitmap.SetOrigin({91, 56});
  RECT box = {};
  GetClipBox(bitmap.GetNativePort().fHDC, &box);
  EXPECT_EQ((TRect{92, 57, 111, 76}), (TRect{box.left, box.top, box.right, box.bottom}));
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(BufferBitmap, TheStateComesBack) {
  RecordingDebugOutput output;
  CBufferBitmap bitmap({20, 20}, 32);
  bitmap.SetOrigin({3, 4});
  bitmap.ClipToRegion(CRegion(TRect{5, 6, 8, 9}).GetNativeRegion());
  bitmap.SaveState();
  bitmap.SetOrigin({-7, 12});
  bitmap.ClipToRegion(CRegion(TRect{0, 0, 100, 100}).GetNativeRegion());
  bitmap.RestoreState();
  EXPECT_EQ((TPoint{3, 4}), bitmap.GetOrigin());
  Fill(bitmap, {0, 0, 100, 100}, kRed);
  EXPECT_EQ((TRect{2, 2, 5, 5}), PaintedPixels(bitmap));

  // No clip is a state too.
  CBufferBitmap unclipped({10, 10}, 32);
  SelectClipRgn(unclipped.GetNativePort().fHDC, nullptr);
  unclipped.SaveState();
  unclipped.ClipToRegion(CRegion(TRect{5, 6, 8, 9}).GetNativeRegion());
  unclipped.RestoreState();
  Fill(unclipped, {0, 0, 100, 100}, kRed);
  EXPECT_EQ((TRect{0, 0, 10, 10}), PaintedPixels(unclipped));
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(BufferBitmap, ASecondSaveIsReportedAndCarriedOut) {
  RecordingDebugOutput output;
  CBufferBitmap bitmap({20, 20}, 32);
  bitmap.SaveState();
  bitmap.SetOrigin({1, 1});
  bitmap.SaveState();
  EXPECT_EQ((std::vector<std::string>{"fSaveStateCount == 0"}), output.fAssertions);
  output.Reset();
  bitmap.SetOrigin({2, 2});
  bitmap.RestoreState();
  EXPECT_EQ((TPoint{1, 1}), bitmap.GetOrigin());
  EXPECT_EQ((std::vector<std::string>{"fSaveStateCount == 1"}), output.fAssertions);
  bitmap.RestoreState();
  EXPECT_EQ((TPoint{0, 0}), bitmap.GetOrigin());
  output.Reset();
  bitmap.RestoreState();
  EXPECT_EQ((std::vector<std::string>{"fSaveStateCount == 1", "fSavedStateStack.size() > 0"}),
            output.fAssertions);
  output.Reset();
  {
    CBufferBitmap left({1, 1}, 32);
    left.SaveState();
  }
  EXPECT_EQ((std::vector<std::string>{"fSaveStateCount == 0", "false"}), output.fAssertions);
}

TEST(BufferBitmap, CopiesConvertTheDepthAndLeaveThePortAsItWas) {
  RecordingDebugOutput output;
  for (std::int32_t sourceDepth : {16, 32}) {
    for (std::int32_t targetDepth : {16, 32}) {
      CBufferBitmap source({20, 20}, sourceDepth);
      CBufferBitmap target({20, 20}, targetDepth);
      source.SaveState();
      source.SetOrigin({100, 200});
      source.ClipToRegion(CRegion(TRect{100, 200, 120, 220}).GetNativeRegion());
      Fill(source, {104, 206, 107, 208}, kRed);
      const HDC port = target.GetNativePort().fHDC;
      SetWindowOrgEx(port, 50, 60, nullptr);
      SetBkColor(port, 0x123456);
      SetROP2(port, R2_NOT);
      source.CopyToPort(target.GetNativePort(), {51, 62}, {103, 205, 110, 215});
      EXPECT_EQ(0x123456u, GetBkColor(port));
      EXPECT_EQ((TRect{2, 3, 5, 5}), PaintedPixels(target)) << sourceDepth << " to " << targetDepth;
      EXPECT_EQ(targetDepth == 16 ? 0x7C00u : 0xFF0000u, PixelAt(target, 2, 3));
      source.RestoreState();
    }
  }
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(BufferBitmap, SizesThatCannotBe) {
  RecordingDebugOutput output;
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  // The bytes of the fourth are 0, those of the last 4, if counted in 32 bits.
  for (const TSize& size :
       {TSize{0, 5}, TSize{5, 0}, TSize{5, -5}, TSize{32768, 32768}, TSize{kMax, kMax}, TSize{1, kMax}}) {
    output.Reset();
    EXPECT_THROW(CBufferBitmap(size, 32), std::bad_alloc) << size.fWidth << " by " << size.fHeight;
    EXPECT_TRUE(output.HasLine("Component/Portable/BufferBitmap.cpp("));
  }
}

}  // namespace
}  // namespace NSMorvane
