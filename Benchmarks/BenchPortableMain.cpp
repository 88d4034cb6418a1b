// Rows that a client cannot measure from outside: hit tests over a view tree, and regions. Bench runs it.
#include <windows.h>

#include <random>
#include <vector>

#include "Cells.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Measure.h"
#include "Tests/Support/FakeViewWindow.h"

using namespace NSBench;
using namespace NSMorvane;

namespace {

// --- Hit tests

constexpr int kHitTests = 100000;
constexpr int kHitViews = 1000;

class CHitViewFactory : public IViewBehaviorFactory {
 public:
  IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView& view, TError& outError) override {
    outError = kOK;
    return new CDefaultHitViewBehavior(view);
  }
};

void MeasureHitTests(const TOptions& options) {
  std::mt19937 random(1);
  std::vector<TPoint> points;
  for (int i = 0; i < kHitTests; ++i)
    points.push_back({static_cast<std::int32_t>(random() % kClientWidth),
                      static_cast<std::int32_t>(random() % kClientHeight)});
  std::vector<RECT> rects;
  NSMorvaneTest::FakeViewWindow window({0, 0, kClientWidth, kClientHeight});
  std::vector<CViewImpl*> views;
  CHitViewFactory factory;
  for (int i = 0; i < kHitViews; ++i) {
    rects.push_back(CellRect(i));
    views.push_back(CViewImpl::MakeSubView(factory, window.Root(), "Cell").get());
    NSMorvaneTest::SetRect(*views.back(), {rects[static_cast<std::size_t>(i)].left, rects.back().top,
                                           rects.back().right, rects.back().bottom});
  }

  // Both sides say how many hits there were in all.
  std::size_t libraryHits = 0;
  const TSample library = [&] {
    libraryHits = 0;
    const double start = Now();
    for (const TPoint& point : points) libraryHits += window.Root().HitTest(point).size();
    return (Now() - start) * 1e9 / kHitTests;
  };
  std::size_t plainHits = 0;
  const TSample plain = [&] {
    plainHits = 0;
    const double start = Now();
    for (const TPoint& point : points) {
      std::vector<std::size_t> hits;
      for (std::size_t i = 0; i < rects.size(); ++i)
        if (point.fX >= rects[i].left && point.fX < rects[i].right && point.fY >= rects[i].top &&
            point.fY < rects[i].bottom)
          hits.push_back(i);
      plainHits += hits.size();
    }
    return (Now() - start) * 1e9 / kHitTests;
  };
  const TComparison comparison = Compare(options, library, plain);
  Require(libraryHits == kHitTests && plainHits == kHitTests, "one hit for each point");
  PrintRow({"hit-test", "A hit test of 1,000 views, with a linear search of 1,000 rectangles", "", "ns"},
           comparison);
  for (CViewImpl* view : views) view->IView_Release();
}

// --- Regions

constexpr int kRegions = 1000;
constexpr int kRegionRects = 200;

void MeasureRegions(const TOptions& options) {
  std::mt19937 random(1);
  std::vector<TRect> rects;
  for (int i = 0; i < kRegionRects; ++i) {
    const std::int32_t left = static_cast<std::int32_t>(random() % 760);
    const std::int32_t top = static_cast<std::int32_t>(random() % 560);
    rects.push_back({left, top, left + 1 + static_cast<std::int32_t>(random() % 40),
                     top + 1 + static_cast<std::int32_t>(random() % 40)});
  }
  const TRect box = {100, 100, 700, 500};

  std::size_t libraryRects = 0;
  const TSample library = [&] {
    libraryRects = 0;
    const double start = Now();
    for (int i = 0; i < kRegions; ++i) {
      CRegion region;
      for (const TRect& rect : rects) region.UnionRect(rect);
      region.IntersectRect(box);
      libraryRects += region.GetRects().size();
    }
    return (Now() - start) * 1e6 / kRegions;
  };
  std::size_t plainRects = 0;
  const TSample plain = [&] {
    plainRects = 0;
    const double start = Now();
    for (int i = 0; i < kRegions; ++i) {
      const HRGN region = CreateRectRgn(0, 0, 0, 0);
      for (const TRect& rect : rects) {
        const HRGN part = CreateRectRgn(rect.fLeft, rect.fTop, rect.fRight, rect.fBottom);
        CombineRgn(region, region, part, RGN_OR);
        DeleteObject(part);
      }
      const HRGN boxRegion = CreateRectRgn(box.fLeft, box.fTop, box.fRight, box.fBottom);
      CombineRgn(region, region, boxRegion, RGN_AND);
      DeleteObject(boxRegion);
      std::vector<char> data(GetRegionData(region, 0, nullptr));
      RGNDATA* const regionData = reinterpret_cast<RGNDATA*>(data.data());
      GetRegionData(region, static_cast<DWORD>(data.size()), regionData);
      plainRects += regionData->rdh.nCount;
      DeleteObject(region);
    }
    return (Now() - start) * 1e6 / kRegions;
  };
  const TComparison comparison = Compare(options, library, plain);
  Require(libraryRects == plainRects && libraryRects > kRegions * kRegionRects / 2, "the same rectangles");
  PrintRow({"regions", "A region of 200 rectangles built, cut to a box and taken apart", "", "us"},
           comparison);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  TOptions options;
  if (!ParseOptions(argumentCount, arguments, options)) return 2;
  if (options.Wants("hit-test")) MeasureHitTests(options);
  if (options.Wants("regions")) MeasureRegions(options);
  return 0;
}
