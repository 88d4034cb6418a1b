// What is on the screen, pixel by pixel: random trees in any modes, whose views move, change, end and are
// painted where they are dirty, against a painter who draws all of the tree each time.
#include <map>

#include "Tests/Support/Pictures.h"

using namespace NSMorvaneTest;

namespace {

constexpr TSize kScreen = {60, 50};
constexpr TRect kRootBounds = {2, 1, 54, 46};
constexpr COLORREF kOutside = RGB(1, 2, 3);  // no view has it

std::uint32_t PixelOf(COLORREF colour) {
  return RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour));
}

// What a client keeps of one of its views. Coordinates start at the corner of the view.
struct Content {
  // How much the picture may change when the view's rectangle does. It limits the kinds of automatic
  // invalidation that are enough.
  enum TKind { kPlain, kStartsAtTopLeft, kDependsOnSize } fKind;
  COLORREF fColour;
  Fills fPatches;

  // The picture, in window coordinates.
  Fills FillsIn(const TRect& bounds) const {
    Fills fills = {{kEverything, fColour}};
    if (fKind == kPlain) return fills;
    const COLORREF other = fColour ^ kRed;
    const auto add = [&](const TRect& rect, int x, int y, COLORREF colour) {
      fills.push_back({OffsetRectBy(rect, x, y), colour});
    };
    add({4, -100, 6, 100}, bounds.fLeft, bounds.fTop, other);
    add({-100, 3, 100, 4}, bounds.fLeft, bounds.fTop, other);
    for (const auto& [rect, colour] : fPatches) add(rect, bounds.fLeft, bounds.fTop, colour);
    if (fKind == kDependsOnSize) add({-4, -3, 0, 0}, bounds.fRight, bounds.fBottom, other);
    return fills;
  }
};

// A window with views, their client, who does what is his to do and no more, and the screen.
class PaintedTree {
 public:
  explicit PaintedTree(int seed) : fRandom(seed) {
    Prepare(fTree.Root(), Content::kPlain);
    if (fRandom(0, 3) == 0) SetMode(fTree.Root(), kViewDrawPermanent32);
    fTree.InvalidateRect(kRootBounds);
    for (int i = 0; i < 7; ++i) AddView();
  }

  // One random change. Returns what it was.
  const char* Step() {
    const std::vector<CViewImpl*> views = ViewsBelow(fTree.Root());
    const int kind = views.size() < 4 ? 0 : fRandom(0, 19);
    if (kind == 0) return AddView(), "add";
    CViewImpl& view = *views[fRandom(0, static_cast<int>(views.size()) - 1)];
    if (kind == 1) return Release(view), "release";
    if (kind == 2) return SwapSubViews(*view.GetSuperView()), "swap";
    if (kind < 6) return ChangeContent(view), "change";
    if (kind == 6) return DrawElsewhere(view), "draw elsewhere";
    if (kind < 12) return ChangeParams(view), "set";
    return Move(view), "move";
  }

  // Where the screen is wrong afterwards. The surface is a new one each time, so that what is drawn outside
  // of what is dirty shows.
  TRect Paint() {
    const CRegion dirty = std::exchange(fTree.fInvalid, CRegion());
    CBufferBitmap surface(kScreen, 32);
    Fill(surface, kEverything, kOutside);
    fTree.Draw(surface, dirty);
    const std::vector<std::uint32_t> drawn = PixelsOf(surface);
    std::vector<std::uint32_t> expected(drawn.size(), PixelOf(kOutside));
    PaintAll(fTree.Root(), kRootBounds, expected);
    return BoxOf(drawn.size(), kScreen.fWidth, [&](int i) {
      const bool isDirty = PtInRegion(dirty.GetNativeRegion(), i % kScreen.fWidth, i / kScreen.fWidth);
      if (isDirty) fShown[i] = drawn[i];
      return fShown[i] != expected[i] || (!isDirty && drawn[i] != PixelOf(kOutside));
    });
  }

 private:
  static bool IsPermanent(const CViewImpl& view) { return view.GetDirtyRegion() != nullptr; }
  // The red part is all or nothing.
  COLORREF SomeColour() { return ColourOf(fRandom(0, 1) * 4 + fRandom(0, 24) * 5); }
  // Mostly in sight, and often cut.
  TRect SomeRect(const CViewImpl& superView) {
    const TRect& around = superView.GetBounds();
    const TRect rect = fRandom.Rect(-12, 25, 30);
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

  void Prepare(CViewImpl& view, Content::TKind kind) {
    fContents[&view] = {kind, SomeColour(), {}};
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
  void AddView() {
    const std::vector<CViewImpl*> views = ViewsBelow(fTree.Root());
    const int super = fRandom(-1, static_cast<int>(views.size()) - 1);
    CViewImpl& superView = super < 0 ? fTree.Root() : *views[super];
    const TRect rect = SomeRect(superView);
    const CRegion invalid = fTree.fInvalid;  // what the fixture forgets
    CViewImpl& view = fTree.Add(superView, rect, SomeMode());
    fTree.fInvalid = invalid;
    const auto kind = static_cast<Content::TKind>(fRandom(0, 2));
    Prepare(view, kind);
    SetInvalidation(view, SomeInvalidation(kind));
    InvalidateWithBuffersAround(&view, rect);
  }
  // A view that lives on behind its subviews is not drawn, so its content may go.
  void Release(CViewImpl& view) {
    fContents.erase(&view);
    view.IView_Release();
  }
  void SwapSubViews(CViewImpl& superView) {
    const std::vector<TViewImplPtr> subViews = superView.GetSubViews();
    std::vector<IView*> order;
    for (const TViewImplPtr& subView : subViews) order.push_back(subView.get());
    const int last = static_cast<int>(order.size()) - 1, a = fRandom(0, last), b = fRandom(0, last);
    std::swap(order[a], order[b]);
    superView.IView_SetSubViewOrder(order.data(), static_cast<std::uint32_t>(order.size()));
    for (int each : {a, b}) InvalidateWithBuffersAround(&superView, subViews[each]->GetBounds());
  }
  void ChangeContent(CViewImpl& view) {
    Content& content = fContents.at(&view);
    TRect changed = view.GetBounds();
    if (content.fKind == Content::kPlain) {
      content.fColour = SomeColour();
    } else {
      content.fPatches.push_back({fRandom.Rect(0, 20, 12), SomeColour()});
      changed = OffsetRectBy(content.fPatches.back().first, changed.fLeft, changed.fTop);
    }
    InvalidateWithBuffersAround(&view, changed);
  }
  void DrawElsewhere(CViewImpl& view) {
    CBufferBitmap surface(kScreen, 32);
    const CRegion all(TRect{0, 0, kScreen.fWidth, kScreen.fHeight});
    PlainTools tools(surface.GetNativePort().fHDC, all.GetNativeRegion());
    TDrawBracket bracket(&fTree.fRunBehavior, tools);
    DrawView(&fTree.fRunBehavior, bracket, view, view.GetBounds(), tools, {});
  }
  void ChangeParams(CViewImpl& view) {
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
  }
  void Move(CViewImpl& view) {
    const int reach = fRandom(0, 3) == 0 ? 60 : 9;
    const int dx = fRandom(-reach, reach), dy = fRandom(-reach, reach);
    CViewImpl& superView = *view.GetSuperView();
    const bool isDoneByTheLibrary =
        IsPermanent(view) || (IsPermanent(superView) && superView.GetSubViews().size() == 1);
    view.IView_Offset(dx, dy);
    if (!isDoneByTheLibrary) InvalidateMoved(view, superView, dx, dy);
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
  std::vector<std::uint32_t> fShown =
      std::vector<std::uint32_t>(kScreen.fWidth * kScreen.fHeight, PixelOf(kOutside));
  DrawingTree fTree{kRootBounds};
};

}  // namespace

using ViewPictures = ReportingTest;

TEST_F(ViewPictures, RandomTreesLookAsIfTheyWereDrawnWhole) {
  for (int seed = 1; seed <= 80; ++seed) {
    PaintedTree tree(seed);
    Random random(seed + 1000);
    Texts steps;
    for (int step = 0; step < 40; ++step) {
      steps.push_back(tree.Step());
      // What is not painted at once adds up.
      if (random(0, 2) == 0) continue;
      steps.back() += " *";
      ASSERT_EQ(TRect{}, tree.Paint()) << "seed " << seed << " after " << Joined(steps);
    }
  }
  EXPECT_FALSE(fOutput.HasLine("Ignored"));
  // A buffer with nothing around it is told when its only subview moves.
  for (const std::string& report : std::exchange(fOutput.fAssertions, {}))
    EXPECT_EQ("NULL != bufferedViewsSuperView", report);
}
