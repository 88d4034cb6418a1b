// Offscreen bitmaps, judged by their pixels, and handles of regions that change hands.
#include <cstring>

#include "Tests/Support/Drawing.h"

using namespace NSMorvaneTest;

using BufferBitmap = ReportingTest;

TEST_F(BufferBitmap, PixelsAreWhatIsDrawn) {
  for (const auto& [depth, width, rowBytes, red, blue] :
       Rows<std::int32_t, std::int32_t, std::int32_t, std::uint32_t, std::uint32_t>{
           {16, 3, 8, 0x7C00, 0x001F}, {16, 4, 8, 0x7C00, 0x001F}, {32, 3, 12, 0xFF0000, 0x0000FF}}) {
    CBufferBitmap bitmap({width, 5}, depth);
    EXPECT_EQ(rowBytes, bitmap.GetInfo().fRowBytes);
    EXPECT_FALSE(bitmap.GetInfo().fTopDown);
    EXPECT_EQ((TRect{}), PaintedPixels(bitmap));
    Fill(bitmap, {1, 1, 2, 4}, kRed);
    Fill(bitmap, {2, 4, 3, 5}, kBlue);
    EXPECT_EQ(red, PixelAt(bitmap, 1, 3));
    EXPECT_EQ(0u, PixelAt(bitmap, 1, 4));
    EXPECT_EQ(blue, PixelAt(bitmap, 2, 4));
    // The other way: what is put into the pixels is in the context.
    void* const pixels = bitmap.OpenPixels();
    std::memcpy(static_cast<char*>(pixels) + 4 * rowBytes, &red, depth / 8);
    bitmap.ClosePixels(pixels);
    EXPECT_EQ(kRed, GetPixel(bitmap.GetNativePort().fHDC, 0, 4));
  }
}

TEST_F(BufferBitmap, AMovedOriginTakesTheClipAlong) {
  CBufferBitmap bitmap({20, 20}, 32);
  bitmap.SetOrigin({90, 55});
  bitmap.ClipToRegion(CRegion(TRect{92, 57, 200, 200}).GetNativeRegion());
  bitmap.SetOrigin({91, 56});
  Fill(bitmap, kEverything, kRed);
  EXPECT_EQ((TRect{1, 1, 20, 20}), PaintedPixels(bitmap));
}

TEST_F(BufferBitmap, CopiesConvertTheDepthAndLeaveThePortAsItWas) {
  for (std::int32_t sourceDepth : {16, 32})
    for (std::int32_t targetDepth : {16, 32}) {
      CBufferBitmap source({20, 20}, sourceDepth), target({20, 20}, targetDepth);
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
    }
  // A copy that fails is only reported.
  CBufferBitmap source({20, 20}, 32);
  source.CopyToPort({nullptr}, {0, 0}, {0, 0, 5, 5});
  EXPECT_EQ("okFlag", TakeReports());
}

TEST_F(BufferBitmap, SizesThatCannotBe) {
  // The bytes of the fourth are 0, those of the last 4, if counted in 32 bits.
  for (const TSize& size :
       {TSize{0, 5}, TSize{5, 0}, TSize{5, -5}, TSize{32768, 32768}, TSize{kMax, kMax}, TSize{1, kMax}}) {
    EXPECT_THROW(CBufferBitmap(size, 32), std::bad_alloc) << size.fWidth << " by " << size.fHeight;
  }
}

TEST(NativeRegion, AHandleThatIsTakenOverEndsWithItsRegion) {
  const HRGN handle = CreateRectRgn(1, 1, 20, 20);
  { CRegion owned(handle, false); }
  EXPECT_EQ(0u, GetObjectType(handle));
}
