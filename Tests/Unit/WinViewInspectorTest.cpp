// What the debug layers draw over views, pixel by pixel.
#include "Component/Win/Window/WinViewInspector.h"

#include <algorithm>

#include "Component/Win/Drawing/WinDeviceContext.h"
#include "Tests/Support/Drawing.h"

using namespace NSMorvaneTest;

namespace {

constexpr int kSide = 100;
using Pixels = std::vector<std::uint32_t>;

// As 0x00RRGGBB.
constexpr std::uint32_t kPaper = 0x000080, kWhite = 0xFFFFFF;
constexpr std::uint32_t kBounds = 0x7F7F7F, kFalling = 0x7FBF7F, kRising = 0x7F7FBF, kFrame = 0x3F7F3F;
constexpr std::uint32_t kName = 0x6F1F1F;

bool IsOnEdge(const TPoint& p, const TRect& rect) {
  return IsPointInRect(p, rect) &&
         (p.fX == rect.fLeft || p.fX == rect.fRight - 1 || p.fY == rect.fTop || p.fY == rect.fBottom - 1);
}

class WinViewInspectorTest : public ReportingTest {
 protected:
  ~WinViewInspectorTest() override { fTree.ReleaseViews(); }
  CViewImpl& Add(CViewImpl& superView, const TRect& rect, const char* name = "") {
    return fTree.MakeView(superView, rect, name);
  }
  // What a bitmap shows whose first pixel is this point.
  template <class TDraw>
  static Pixels PictureOf(const TDraw& draw, const TPoint& origin = {0, 0}) {
    CBufferBitmap bitmap({kSide, kSide}, 32);
    Fill(bitmap, kEverything, RGB(0, 0, 0x80));
    CDeviceContext context;
    const HDC hdc = bitmap.GetNativePort().fHDC;
    context.Attach(hdc);
    SetWindowOrgEx(hdc, origin.fX, origin.fY, nullptr);
    IntersectClipRect(hdc, -5000, -5000, 5000, 5000);
    const CRegion before, after;
    EXPECT_EQ(GetClipRgn(hdc, before.GetNativeRegion()), 1);
    draw(context);
    EXPECT_EQ(GetClipRgn(hdc, after.GetNativeRegion()), 1);
    EXPECT_TRUE(EqualRgn(before.GetNativeRegion(), after.GetNativeRegion()));
    context.Detach();
    return PixelsOf(bitmap);
  }
  // "", or the first place where a picture is not what `isRight` says of a point and its pixel.
  template <class TIsRight>
  static std::string FirstWrong(const Pixels& picture, const TPoint& origin, const TIsRight& isRight) {
    for (int i = 0; i < kSide * kSide; ++i) {
      const TPoint p = {origin.fX + i % kSide, origin.fY + i / kSide};
      if (!isRight(p, picture[i])) return testing::PrintToString(p) + " " + std::to_string(picture[i]);
    }
    return "";
  }

  FakeViewWindow fTree{{0, 0, kSide, kSide}};
  CViewImpl& fRoot = fTree.Root();
};

}  // namespace

TEST_F(WinViewInspectorTest, VisiblePartsAreHatched) {
  struct TCase {
    const char* fName;
    CViewImpl& fView;
    std::vector<TRect> fSeen, fHidden;  // what is seen is in the former and not in the latter
  };
  // Behind it, in front of it, and in it.
  Add(fRoot, {0, 0, 30, 30});
  CViewImpl& overlapped = Add(fRoot, {20, 15, 80, 70});
  Add(overlapped, {30, 30, 45, 50});
  Add(fRoot, {60, 5, 95, 40});
  Add(fRoot, {70, 60, 75, 65}).IView_Release();
  CViewImpl& group = Add(fRoot, {10, 40, 50, 90});
  CViewImpl& sticksOut = Add(group, {30, 50, 95, 97});
  CViewImpl& outside = Add(group, {55, 45, 70, 60});
  CViewImpl& covered = Add(fRoot, {5, 5, 15, 15});
  Add(covered, {0, 0, 50, 50});
  CViewImpl& huge = Add(fRoot, {-1000003, -2000000, 90, 80});
  const TCase cases[] = {
      {"overlapped", overlapped, {{20, 15, 80, 70}}, {{30, 30, 45, 50}, {60, 5, 95, 40}, {10, 40, 50, 90}}},
      {"sticks out", sticksOut, {{30, 50, 50, 90}}, {{55, 45, 70, 60}}},
      {"outside", outside, {}, {}},
      {"covered", covered, {}, {}},
      {"huge", huge, {{0, 0, 90, 80}}, {}},
  };
  for (const TCase& testCase : cases) {
    CViewImpl& view = testCase.fView;
    const std::vector<TRect>& seen = testCase.fSeen;
    const std::vector<TRect>& hidden = testCase.fHidden;
    // Without the huge one in front.
    if (&view != &huge) SetRect(huge, {});
    for (const TPoint& origin : {TPoint{0, 0}, TPoint{7, -3}}) {
      SCOPED_TRACE(testCase.fName);
      const TRect bounds = view.GetBounds();
      const Pixels picture = PictureOf([&](CDeviceContext& context) { DrawViewInfo(context, view); }, origin);
      const auto isInAny = [](const std::vector<TRect>& rects, const TPoint& p) {
        return std::any_of(rects.begin(), rects.end(), [&](const TRect& r) { return IsPointInRect(p, r); });
      };
      int hatched = 0;
      EXPECT_EQ("", FirstWrong(picture, origin, [&](const TPoint& p, std::uint32_t pixel) {
                  const bool isInSuperViews = IsPointInRect(p, view.GetClipBounds());
                  if (IsOnEdge(p, bounds) && isInSuperViews) return pixel == kFrame || pixel == kWhite;
                  if (!isInAny(seen, p) || isInAny(hidden, p)) return pixel == kPaper;
                  hatched += pixel != kPaper;
                  const int right = p.fX - bounds.fLeft, down = p.fY - bounds.fTop;
                  return pixel == ((right + down) % 11 == 0   ? kRising
                                   : (right - down) % 11 == 0 ? kFalling
                                                              : kPaper);
                }));
      EXPECT_EQ(seen.empty(), hatched == 0);
      EXPECT_EQ(IsEmptyRect(view.GetClipBounds()), std::count(picture.begin(), picture.end(), kFrame) <= 10);
    }
    SetRect(huge, {-1000003, -2000000, 90, 80});
  }
}

TEST_F(WinViewInspectorTest, TheNameStandsInTheCorner) {
  CViewImpl& view = Add(fRoot, {20, 10, 60, 40}, "A long name that is cut");
  const TRect bounds = view.GetBounds();
  const Pixels picture = PictureOf([&](CDeviceContext& context) { DrawViewInfo(context, view); });
  CRegion dark;
  EXPECT_EQ("", FirstWrong(picture, {0, 0}, [&](const TPoint& p, std::uint32_t pixel) {
              if (pixel == kName) dark.UnionRect({p.fX, p.fY, p.fX + 1, p.fY + 1});
              return IsPointInRect(p, bounds) || pixel == kPaper;
            }));
  const TRect box = dark.GetBounds();
  EXPECT_GT(RectHeight(box), 4);
  EXPECT_LT(box.fLeft, bounds.fLeft + 6);
  EXPECT_LT(box.fBottom, bounds.fTop + 25);
  EXPECT_GT(box.fRight, bounds.fRight - 8) << "it goes on to the edge";
  // With a border of light at both sides of its letters.
  int bordered = 0;
  for (int i = 1; i + 1 < kSide * kSide; ++i)
    bordered += picture[i] == kName && picture[i - 1] == kWhite && picture[i + 1] == kWhite;
  EXPECT_GT(bordered, 5);
}

TEST_F(WinViewInspectorTest, BoundsAreCutToTheSuperViews) {
  CViewImpl& a = Add(fRoot, {10, 10, 60, 60});
  Add(a, {40, 40, 90, 90});
  CViewImpl& outside = Add(a, {70, 70, 80, 80});
  Add(outside, {20, 20, 30, 30});
  Add(fRoot, {50, 5, 95, 30});
  Add(fRoot, {-20, 80, 8, 90});
  Add(fRoot, {30, 70, 50, 90}).IView_Release();
  Add(fRoot, {30, 70, 30, 90});
  const std::vector<TRect> framed = {
      {5, 0, 98, 95}, {10, 10, 60, 60}, {40, 40, 60, 60}, {50, 5, 95, 30}, {5, 80, 8, 90}};
  const TRect clip = {5, -3, 98, 95};
  std::vector<int> dots(framed.size());
  const Pixels picture = PictureOf([&](CDeviceContext& context) { DrawViewBounds(context, fRoot, clip); });
  EXPECT_EQ("", FirstWrong(picture, {0, 0}, [&](const TPoint& p, std::uint32_t pixel) {
              bool isFramed = false;
              for (std::size_t i = 0; i < framed.size(); ++i) {
                if (!IsOnEdge(p, framed[i])) continue;
                isFramed = true;
                dots[i] += pixel == kBounds;
              }
              return isFramed ? pixel == kBounds || pixel == kWhite : pixel == kPaper;
            }));
  for (std::size_t i = 0; i < framed.size(); ++i) EXPECT_GT(dots[i], 3) << i;
}
