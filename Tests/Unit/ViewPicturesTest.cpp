// What is on the screen, pixel by pixel: random trees whose views move, change, end and are painted where
// they are dirty, against a painter who draws all of the tree each time.
#include <map>

#include "Tests/Support/Drawing.h"

using namespace NSMorvaneTest;

namespace {

constexpr TSize kScreen = {60, 50};
constexpr TRect kRootBounds = {0, 0, 54, 46};  // ends before the screen does
constexpr COLORREF kOutside = RGB(255, 255, 255);

// What a client keeps of one of its views. Coordinates start at the corner of the view.
struct Content {
  // How much the picture may change when the view's rectangle does. It limits the kinds of automatic
  // invalidation that are enough.
  enum TKind { kPlain, kStartsAtTopLeft, kDependsOnSize } fKind;
  COLORREF fColour;
  std::vector<std::pair<TRect, COLORREF>> fPatches;

  // The picture, in window coordinates and in the order in which it is filled.
  std::vector<std::pair<TRect, COLORREF>> FillsIn(const TRect& bounds) const {
    std::vector<std::pair<TRect, COLORREF>> fills = {{kEverything, fColour}};
    const auto add = [&](const TRect& rect, const TPoint& corner, COLORREF colour) {
      fills.push_back({OffsetRectBy(rect, corner.fX, corner.fY), colour});
    };
    const COLORREF other = fColour ^ kRed;
    if (fKind == kPlain) return fills;
    add({4, -100, 6, 100}, {bounds.fLeft, bounds.fTop}, other);
    add({-100, 3, 100, 4}, {bounds.fLeft, bounds.fTop}, other);
    for (const auto& [rect, colour] : fPatches) add(rect, {bounds.fLeft, bounds.fTop}, colour);
    if (fKind == kDependsOnSize) add({-4, -3, 0, 0}, {bounds.fRight, bounds.fBottom}, other);
    return fills;
  }
};

// A window with views, their client, who does what is his to do and no more, and the screen.
class PaintedTree {
 public:
  explicit PaintedTree(int seed) : fRandom(seed) {
    fContents[&fTree.Root()] = {Content::kPlain, SomeColour(), {}};
    Prepare(fTree.Root());
    if (fRandom(0, 3) == 0) SetMode(fTree.Root(), kViewDrawPermanent32);
    Fill(fSurface, kEverything, kOutside);
    fTree.InvalidateRect(kRootBounds);
    for (int i = 0; i < 7; ++i) AddView();
  }

  // One random change. Returns what it was.
  std::string Step() {
    std::vector<CViewImpl*> views = ViewsBelow(fTree.Root());
    if (views.size() < 4) return AddView();
    CViewImpl& view = *views[fRandom(0, static_cast<int>(views.size()) - 1)];
    const int kind = fRandom(0, 19);
    if (kind == 0) return AddView();
    if (kind == 1) return Release(view);
    if (kind == 2) return SwapSubViews(*view.GetSuperView());
    if (kind < 6) return ChangeContent(view);
    if (kind == 6) return DrawElsewhere(view);
    if (kind < 12) return ChangeParams(view);
    return Move(view);
  }

  void Paint() {
    const CRegion dirty = std::exchange(fTree.fInvalid, CRegion());
    fTree.Draw(fSurface, dirty);
  }

  // "" or where screen and painter differ.
  std::string Difference() {
    std::vector<std::uint32_t> expected(kScreen.fWidth * kScreen.fHeight, PixelOf(kOutside));
    PaintAll(fTree.Root(), kRootBounds, expected);
    const std::vector<std::uint32_t> actual = PixelsOf(fSurface);
    CRegion wrong;
    for (int i = 0; i < static_cast<int>(expected.size()); ++i)
      if (expected[i] != actual[i]) {
        const int x = i % kScreen.fWidth, y = i / kScreen.fWidth;
        wrong.UnionRect({x, y, x + 1, y + 1});
      }
    return wrong.IsEmpty() ? "" : testing::PrintToString(wrong.GetBounds());
  }

  std::string Describe() { return DescribeBelow(fTree.Root(), ""); }

 private:
  static bool IsPermanent(const CViewImpl& view) { return view.GetDirtyRegion() != nullptr; }
  static std::uint32_t PixelOf(COLORREF colour) {
    return RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour));
  }
  // Such that 5 bits keep all of it.
  COLORREF SomeColour() {
    static constexpr int kShades[] = {0, 66, 132, 198, 255};
    return RGB(fRandom(0, 1) * 255, kShades[fRandom(0, 4)], kShades[fRandom(0, 4)]);
  }
  TRect SomeRect(const CViewImpl& superView) {
    // Mostly in sight, and often cut.
    const TRect& around = superView.GetBounds();
    TRect rect = fRandom.Rect(-12, 25, 30);
    return OffsetRectBy({rect.fLeft, rect.fTop, rect.fRight + 6, rect.fBottom + 6}, around.fLeft,
                        around.fTop);
  }
  TViewDrawMode SomeMode() { return fRandom(0, 1) == 0 ? kModes[fRandom(3, 4)] : kModes[fRandom(0, 4)]; }
  // Such that the client need not know what he has declared.
  TAutoInvalidation SomeInvalidation(Content::TKind kind) {
    const auto invalidation = static_cast<TAutoInvalidation>(fRandom(4700, 4703));
    const bool isEnough =
        kind == Content::kPlain || invalidation < kAutoInvalidationDifference ||
        (kind == Content::kStartsAtTopLeft && invalidation == kAutoInvalidationDifferenceTopLeft);
    return isEnough ? invalidation : kAutoInvalidationFull;
  }
  static std::vector<CViewImpl*> ViewsBelow(const CViewImpl& view) {
    std::vector<CViewImpl*> views;
    for (const TViewImplPtr& subView : view.GetSubViews()) {
      views.push_back(subView.get());
      for (CViewImpl* each : ViewsBelow(*subView)) views.push_back(each);
    }
    return views;
  }
  static std::string DescribeBelow(const CViewImpl& view, const std::string& indent) {
    std::string text = indent + testing::PrintToString(view.GetBounds()) + " " +
                       std::to_string(view.GetDrawMode()) + " " +
                       std::to_string(view.GetParams().fAutoInvalidation) + "\n";
    for (const TViewImplPtr& subView : view.GetSubViews()) text += DescribeBelow(*subView, indent + "  ");
    return text;
  }

  // --- The painter

  void PaintAll(const CViewImpl& view, const TRect& clip, std::vector<std::uint32_t>& pixels) {
    TRect visible = view.GetBounds();
    if (!IntersectRect(visible, clip)) return;
    for (const auto& [rect, colour] : fContents.at(&view).FillsIn(view.GetBounds())) {
      TRect filled = rect;
      if (!IntersectRect(filled, visible)) continue;
      for (int y = filled.fTop; y < filled.fBottom; ++y)
        for (int x = filled.fLeft; x < filled.fRight; ++x) pixels[y * kScreen.fWidth + x] = PixelOf(colour);
    }
    for (const TViewImplPtr& subView : view.GetSubViews()) PaintAll(*subView, visible, pixels);
  }

  // --- The client

  void Prepare(CViewImpl& view) {
    BehaviorOf(view).fOnDraw = [this, &view](IDrawTools& tools) {
      return Drawing([&](HDC hdc) {
        for (const auto& [rect, colour] : fContents.at(&view).FillsIn(view.GetBounds()))
          Fill(hdc, rect, colour);
      })(tools);
    };
  }
  // A buffer does not tell the buffer that it lies in: that is the client's to do.
  void InvalidateWithBuffersAround(CViewImpl* view, const TRect& rect) {
    TRect part = rect;
    if (!view || !IntersectRect(part, view->GetBounds())) return;
    while (view) {
      view->InvalidateRect(part);
      while (view && !IsPermanent(*view)) view = view->GetSuperView().get();
      if (view) view = view->GetSuperView().get();
    }
  }
  std::string AddView() {
    const std::vector<CViewImpl*> views = ViewsBelow(fTree.Root());
    const int super = fRandom(-1, static_cast<int>(views.size()) - 1);
    CViewImpl& superView = super < 0 ? fTree.Root() : *views[super];
    const TRect rect = SomeRect(superView);
    const TViewDrawMode mode = SomeMode();
    const CRegion invalid = fTree.fInvalid;  // what the fixture forgets
    CViewImpl& view = fTree.Add(superView, rect, mode);
    fTree.fInvalid = invalid;
    const auto kind = static_cast<Content::TKind>(fRandom(0, 2));
    fContents[&view] = {kind, SomeColour(), {}};
    Prepare(view);
    SetInvalidation(view, SomeInvalidation(kind));
    InvalidateWithBuffersAround(&view, rect);
    return "add " + testing::PrintToString(rect) + " " + std::to_string(mode);
  }
  std::string Release(CViewImpl& view) {
    const std::string what = "release " + testing::PrintToString(view.GetBounds());
    // A view that lives on behind its subviews is not drawn, so its content may go.
    fContents.erase(&view);
    view.IView_Release();
    return what;
  }
  std::string SwapSubViews(CViewImpl& superView) {
    const std::vector<TViewImplPtr> subViews = superView.GetSubViews();
    std::vector<IView*> order;
    for (const TViewImplPtr& subView : subViews) order.push_back(subView.get());
    const int a = fRandom(0, static_cast<int>(order.size()) - 1);
    const int b = fRandom(0, static_cast<int>(order.size()) - 1);
    std::swap(order[a], order[b]);
    superView.IView_SetSubViewOrder(order.data(), static_cast<std::uint32_t>(order.size()));
    for (int each : {a, b}) InvalidateWithBuffersAround(&superView, subViews[each]->GetBounds());
    return "swap";
  }
  std::string ChangeContent(CViewImpl& view) {
    Content& content = fContents.at(&view);
    if (content.fKind == Content::kPlain) {
      content.fColour = SomeColour();
      InvalidateWithBuffersAround(&view, view.GetBounds());
      return "colour";
    }
    const TRect patch = fRandom.Rect(0, 20, 12);
    content.fPatches.push_back({patch, SomeColour()});
    InvalidateWithBuffersAround(&view, OffsetRectBy(patch, view.GetBounds().fLeft, view.GetBounds().fTop));
    return "patch";
  }
  std::string DrawElsewhere(CViewImpl& view) {
    CBufferBitmap surface(kScreen, 32);
    const CRegion all(TRect{0, 0, kScreen.fWidth, kScreen.fHeight});
    PlainTools tools(surface.GetNativePort().fHDC, all.GetNativeRegion());
    TDrawBracket bracket(&fTree.fRunBehavior, tools);
    DrawView(&fTree.fRunBehavior, bracket, view, view.GetBounds(), tools, {});
    return "draw elsewhere";
  }
  std::string ChangeParams(CViewImpl& view) {
    const TRect old = view.GetBounds();
    TViewParams params = view.GetParams();
    const int change = fRandom(0, 4);
    if (change > 0) {
      const int dx = fRandom(-9, 9), dy = fRandom(-9, 9);
      params.fRect = OffsetRectBy(old, dx, dy);
      if (change == 1) params.fRect = {old.fLeft, old.fTop, params.fRect.fRight, params.fRect.fBottom};
      if (change == 2) params.fRect = SomeRect(*view.GetSuperView());
      params.fRect.fRight = std::max(params.fRect.fRight, params.fRect.fLeft);
      params.fRect.fBottom = std::max(params.fRect.fBottom, params.fRect.fTop);
    }
    if (fRandom(0, 2) == 0) params.fDrawMode = SomeMode();
    params.fAutoInvalidation = SomeInvalidation(fContents.at(&view).fKind);
    params.fFlags = fRandom(0, 7);
    view.IView_SetParams(params);
    if (params.fAutoInvalidation == kAutoInvalidationNone && !(old == params.fRect))
      for (const TRect& rect : {old, params.fRect})
        InvalidateWithBuffersAround(view.GetSuperView().get(), rect);
    return "set " + testing::PrintToString(old) + " to " + testing::PrintToString(params.fRect) + " " +
           std::to_string(params.fDrawMode) + " " + std::to_string(params.fAutoInvalidation);
  }
  std::string Move(CViewImpl& view) {
    const int reach = fRandom(0, 3) == 0 ? 60 : 9;
    const int dx = fRandom(-reach, reach), dy = fRandom(-reach, reach);
    CViewImpl& superView = *view.GetSuperView();
    const std::string what = "move " + testing::PrintToString(view.GetBounds()) + " by " +
                             std::to_string(dx) + " " + std::to_string(dy);
    const bool isDoneByTheLibrary =
        IsPermanent(view) || (IsPermanent(superView) && superView.GetSubViews().size() == 1);
    view.IView_Offset(dx, dy);
    if (!isDoneByTheLibrary) InvalidateMoved(view, superView, dx, dy);
    return what;
  }
  // The views without automatic invalidation.
  void InvalidateMoved(CViewImpl& view, CViewImpl& around, int dx, int dy) {
    const TAutoInvalidation invalidation = view.GetParams().fAutoInvalidation;
    if (invalidation == kAutoInvalidationFull) return;
    if (invalidation == kAutoInvalidationNone) {
      InvalidateWithBuffersAround(&around, OffsetRectBy(view.GetBounds(), -dx, -dy));
      InvalidateWithBuffersAround(view.GetSuperView().get(), view.GetBounds());
    }
    for (const TViewImplPtr& subView : view.GetSubViews()) InvalidateMoved(*subView, around, dx, dy);
  }

  Random fRandom;
  std::map<const CViewImpl*, Content> fContents;
  CBufferBitmap fSurface{kScreen, 32};
  DrawingTree fTree{kRootBounds};
};

}  // namespace

using ViewPictures = ReportingTest;

TEST_F(ViewPictures, RandomTreesLookAsIfTheyWereDrawnWhole) {
  for (int seed = 1; seed <= 80 && !HasFailure(); ++seed) {
    PaintedTree tree(seed);
    Random random(seed + 1000);
    Texts steps;
    for (int step = 0; step < 40; ++step) {
      steps.push_back(tree.Step());
      // What is not painted at once adds up.
      if (random(0, 2) == 0) continue;
      steps.back() += " *";
      tree.Paint();
      const std::string difference = tree.Difference();
      ASSERT_EQ("", difference) << "seed " << seed << " after " << Joined(steps) << "\n" << tree.Describe();
    }
  }
  EXPECT_FALSE(fOutput.HasLine("Ignored"));
  // A buffer with nothing around it is told when its only subview moves.
  for (const std::string& report : std::exchange(fOutput.fAssertions, {}))
    EXPECT_EQ("NULL != bufferedViewsSuperView", report);
}
