// What becomes dirty when views change: single cases, and random trees against a model that knows nothing but
// pixels.
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/PixelSet.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

class ViewInvalidation : public ReportingTest {
 protected:
  ~ViewInvalidation() override { fWindow.ReleaseViews(); }

  FakeViewWindow fWindow;
  CViewImpl& fRoot = fWindow.Root();
};

// One view as the rules know it. All questions are asked pixel by pixel.
struct Model {
  using Contains = std::function<bool(const TPoint&)>;

  Model* fSuperView = nullptr;
  std::vector<Model*> fSubViews;
  PixelSet* fScreen = nullptr;  // what the window has to paint
  CViewImpl* fView = nullptr;   // the real one
  TRect fRect = {};
  TViewDrawMode fMode = kViewDrawDirect;
  TAutoInvalidation fInvalidation = kAutoInvalidationNone;
  PixelSet fDirty;  // while buffered

  bool IsBuffered() const { return fMode == kViewDrawPermanent16 || fMode == kViewDrawPermanent32; }
  // In the picture of this view. Every buffer on the way up takes what the views so far have left of it, or
  // the nearest one only, and the window what all have left.
  void Invalidate(const Contains& contains, bool inAllBuffers = true) {
    TRect clip = fRect;
    const auto isLeft = [&](const TPoint& p) { return IsPointInRect(p, clip) && contains(p); };
    bool isTaken = false;
    for (Model* view = this; view; view = view->fSuperView) {
      const TRect& rect = view->fRect;
      clip = {std::max(clip.fLeft, rect.fLeft), std::max(clip.fTop, rect.fTop),
              std::min(clip.fRight, rect.fRight), std::min(clip.fBottom, rect.fBottom)};
      if (!view->IsBuffered() || (isTaken && !inAllBuffers)) continue;
      view->fDirty.Add(isLeft);
      isTaken = true;
    }
    fScreen->Add(isLeft);
  }
  static Contains In(const TRect& rect) { return PixelSet::In(rect); }
  static Contains InOne(const TRect& a, const TRect& b) {
    return [a, b](const TPoint& p) { return IsPointInRect(p, a) != IsPointInRect(p, b); };
  }
  // `around` shows what the view leaves behind. True if both rectangles are dirty as a whole.
  bool InvalidateMoved(const TRect& old, Model& around) {
    const bool sameCorner = old.fLeft == fRect.fLeft && old.fTop == fRect.fTop;
    if (fInvalidation == kAutoInvalidationFull ||
        (fInvalidation == kAutoInvalidationDifferenceTopLeft && !sameCorner)) {
      around.Invalidate(In(old));
      Invalidate(In(fRect));
      return fInvalidation == kAutoInvalidationFull;
    }
    if (fInvalidation != kAutoInvalidationNone) around.Invalidate(InOne(old, fRect));
    return false;
  }
  void SetParams(const TRect& rect, TViewDrawMode mode, TAutoInvalidation invalidation) {
    fInvalidation = invalidation;
    const TRect old = fRect;
    fRect = rect;
    if (!(old == rect)) {
      const bool isResized = RectWidth(old) != RectWidth(rect) || RectHeight(old) != RectHeight(rect);
      if (isResized || fInvalidation != kAutoInvalidationNone || !fSubViews.empty())
        AllDirty();
      else
        fDirty.Move(rect.fLeft - old.fLeft, rect.fTop - old.fTop);
      if (fSuperView) InvalidateMoved(old, *fSuperView);
      if (fSuperView && fInvalidation == kAutoInvalidationNone && !fSubViews.empty())
        fSuperView->Invalidate(InOne(old, rect));
    }
    if (mode == fMode) return;
    fMode = mode;
    AllDirty();
    Invalidate(In(rect));
  }
  void AllDirty() { fDirty.Set(In(fRect)); }
  // What lies outside the super view has not reached the screen.
  void TakeDirty() {
    fDirty.Set(
        [&](const TPoint& p) { return IsPointInRect(p, fRect) && !IsPointInRect(p, fSuperView->fRect); });
  }
  void Offset(std::int32_t dx, std::int32_t dy) {
    Model& super = *fSuperView;
    const TRect moved = OffsetRectBy(fRect, dx, dy);
    bool handled = false;
    if (IsBuffered()) {
      super.Invalidate(In(fRect));
      super.Invalidate(In(moved));
      handled = true;
    } else if (super.IsBuffered() && super.fSubViews.size() == 1) {
      const auto isInside = PixelSet::In(super.fRect);
      const auto wasThere = PixelSet::In(fRect), isThere = PixelSet::In(moved);
      PixelSet movedDirt = super.fDirty;
      movedDirt.Move(dx, dy);
      super.fDirty.Add([&](const TPoint& p) {
        const TPoint from = {p.fX - dx, p.fY - dy};
        const bool isCopied = wasThere(from) && isInside(from);
        return isInside(p) && (movedDirt(p) || ((wasThere(p) || isThere(p)) && !isCopied));
      });
      super.fSuperView->Invalidate(In(super.fRect));
      handled = true;
    }
    MoveSubtree(dx, dy, super, handled);
  }
  void MoveSubtree(std::int32_t dx, std::int32_t dy, Model& around, bool handled) {
    const TRect old = fRect;
    fRect = OffsetRectBy(fRect, dx, dy);
    if (IsBuffered()) fDirty.Move(dx, dy);
    if (!handled) handled = InvalidateMoved(old, around);
    for (Model* subView : fSubViews) subView->MoveSubtree(dx, dy, around, handled);
  }
};

class RandomTree {
 public:
  explicit RandomTree(int seed) : fRandom(seed) {
    for (int i = 0; i < 7; ++i) {
      fModels.push_back(std::make_unique<Model>());
      Model& model = *fModels.back();
      model.fScreen = &fScreen;
      if (i == 0) {
        model.fView = &fWindow.Root();
        model.fRect = model.fView->GetBounds();
        continue;
      }
      model.fSuperView = fModels[fRandom(0, i - 1)].get();
      model.fSuperView->fSubViews.push_back(&model);
      model.fRect = SomeRect();
      model.fInvalidation = kAutoInvalidationFull;
      model.fView = &fWindow.MakeView(*model.fSuperView->fView, model.fRect, "view");
      SetInvalidation(*model.fView, kAutoInvalidationFull);
    }
  }
  ~RandomTree() { fWindow.ReleaseViews(); }

  // One random change, to a view and to its model. Returns what it was.
  const char* Step() {
    Model& model = *fModels[fRandom(1, 6)];
    fWindow.Reset();
    fScreen = PixelSet();
    const int kind = fRandom(0, 8);
    if (kind < 3) return TakeDirtyRegion(model);
    if (kind == 3) {
      const TRect rect = SomeRect();
      model.fView->InvalidateRect(rect);
      model.Invalidate(Model::In(rect), false);
      return "InvalidateRect";
    }
    const std::int32_t dx = fRandom(-9, 9), dy = fRandom(-9, 9);
    if (kind < 7 && HasRoom(model, dx, dy)) {
      model.fView->IView_Offset(dx, dy);
      model.Offset(dx, dy);
      return "IView_Offset";
    }
    // Often the same size, and often a place close by.
    TRect rect = fRandom(0, 2) == 0 ? SomeRect() : OffsetRectBy(model.fRect, fRandom(-3, 3), fRandom(-3, 3));
    if (!IsInRoom(rect)) rect = SomeRect();
    if (fRandom(0, 3) == 0) rect.fRight += 2;
    const TViewDrawMode mode =
        fRandom(0, 2) == 0 ? static_cast<TViewDrawMode>(fRandom(6900, 6904)) : model.fMode;
    const auto invalidation = static_cast<TAutoInvalidation>(fRandom(4700, 4703));
    model.fView->IView_SetParams({1, rect, mode, invalidation});
    model.SetParams(rect, mode, invalidation);
    return "IView_SetParams";
  }
  // Whether window and buffers have recorded what the model says.
  void Compare() {
    EXPECT_EQ(fScreen, PixelSet(fWindow.fInvalid));
    for (const auto& model : fModels) {
      EXPECT_EQ(model->fRect, model->fView->GetBounds());
      EXPECT_EQ(model->IsBuffered(), model->fView->GetDirtyRegion() != nullptr);
      if (!model->IsBuffered()) continue;
      EXPECT_EQ(model->fDirty, PixelSet(*model->fView->GetDirtyRegion()));
      // Pixels that scrolled far out of a view would leave the model.
      if (!IsInRoom(model->fView->GetDirtyRegion()->GetBounds())) TakeDirtyRegion(*model);
    }
  }

 private:
  static const char* TakeDirtyRegion(Model& model) {
    if (model.IsBuffered()) {
      EXPECT_EQ(model.fDirty, PixelSet(model.fView->TakeDirtyRegion()));
      model.TakeDirty();
    }
    return "TakeDirtyRegion";
  }
  static bool IsInRoom(const TRect& rect) { return PixelSet::HasRoom(rect, 12); }
  static bool HasRoom(const Model& model, std::int32_t dx, std::int32_t dy) {
    return IsInRoom(OffsetRectBy(model.fRect, dx, dy)) &&
           std::all_of(model.fSubViews.begin(), model.fSubViews.end(),
                       [&](const Model* subView) { return HasRoom(*subView, dx, dy); });
  }
  TRect SomeRect() { return fRandom.Rect(-8, 30, 25); }

  Random fRandom;
  FakeViewWindow fWindow{{0, 0, 40, 40}};
  PixelSet fScreen;
  std::vector<std::unique_ptr<Model>> fModels;
};

}  // namespace

// Bits move inside the bitmap; only what comes into sight is dirty.
TEST_F(ViewInvalidation, OnlySubViewOfABufferScrolls) {
  // The mark is at (20, 20) of the window.
  for (const auto& [dx, dy, dirty, markMoves] :
       Rows<std::int32_t, std::int32_t, TRectList, bool>{{0, -5, {{10, 85, 110, 90}}, true},
                                                         {3, 5, {{10, 10, 110, 15}, {10, 15, 13, 90}}, true},
                                                         {kMin, 0, {{10, 10, 110, 90}}, false}}) {
    CViewImpl& frame = fWindow.MakeView(fRoot, {10, 10, 110, 90}, "frame");
    CViewImpl& page = fWindow.MakeView(frame, {0, 0, 300, 300}, "page");
    SetMode(frame, kViewDrawPermanent32);
    frame.TakeDirtyRegion();
    const boost::shared_ptr<CBufferBitmap> bitmap = frame.GetBitmapForDrawing();
    std::uint32_t* const pixels = static_cast<std::uint32_t*>(bitmap->OpenPixels());
    pixels[10 * 100 + 10] = 0x123456;
    EXPECT_EQ(kOK, page.IView_Offset(dx, dy));
    EXPECT_EQ(dirty, frame.TakeDirtyRegion().GetRects());
    EXPECT_TRUE(!markMoves || 0x123456 == pixels[(10 + dy) * 100 + 10 + dx]);
    bitmap->ClosePixels(pixels);
    fWindow.ReleaseViews();
  }
}

TEST_F(ViewInvalidation, ViewsStopAtTheEdgeOfTheWorld) {
  for (const TViewDrawMode mode : {kViewDrawDirect, kViewDrawPermanent32})
    for (std::uint32_t invalidation = 4700; invalidation <= 4703; ++invalidation) {
      CViewImpl& view = fWindow.MakeView(fRoot, {10, 20, 30, 50}, "view", kViewEnabled, mode);
      CViewImpl& sub = fWindow.MakeView(view, {10, 20, 15, 30}, "sub", kViewEnabled, mode);
      for (CViewImpl* each : {&view, &sub})
        SetInvalidation(*each, static_cast<TAutoInvalidation>(invalidation));
      EXPECT_EQ(kOK, view.IView_Offset(kMax, kMin));
      EXPECT_EQ(kOK, view.IView_Offset(kMax, kMin));
      EXPECT_EQ((TRect{kMax - 20, kMin, kMax, kMin + 30}), view.GetBounds());
      EXPECT_EQ(kOK, view.IView_Offset(kMin, kMax));
      // A bitmap of that size cannot be had.
      EXPECT_EQ(mode == kViewDrawDirect, SetRect(view, {kMin, kMin, kMax, kMax}) == kOK);
      view.InvalidateRect({kMin, kMin, kMax, kMax});
      fWindow.ReleaseViews();
    }
}

TEST_F(ViewInvalidation, DirtyPixelsOfRandomTreesAreThoseOfTheModel) {
  for (int seed = 1; seed <= 30 && !HasFailure(); ++seed) {
    RandomTree tree(seed);
    for (int step = 0; step < 60 && !HasFailure(); ++step) {
      const char* const what = tree.Step();
      SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step) + ", " + what);
      tree.Compare();
    }
  }
}
