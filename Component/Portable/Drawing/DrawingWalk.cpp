// The drawing walk.
#include "Component/Portable/Drawing/DrawingWalk.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Surfaces/PortState.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Surfaces/TileBitmapPool.h"
#include "Component/Portable/Views/ViewImpl.h"

namespace NSMorvane {

namespace {

// What the walk is drawing to. Inside a buffered view it is another one.
struct TPass {
  IMorvaneRunBehavior* fRunBehavior;
  TDrawBracket& fBracket;
  TRect fDirtyBounds;
  IDrawTools& fTools;
  CDrawToolsGlue* fGlue;  // fTools, if they are the library's own
  const TDebugSettings& fSettings;
};

// --- Guards

// The context that a walk draws to. Its state is restored in the end, and what was known of it is forgotten.
class CPassGuard : CNotCopied {
 public:
  CPassGuard(HDC__* hdc, CDrawToolsGlue* glue) : fGlue(glue), fState(hdc), fGuard(hdc) {
    CClipRegions::GetInstance().StartOver();
  }
  ~CPassGuard() {
    if (fGlue != nullptr) fGlue->GetKnownPort().Forget();
  }

 private:
  CDrawToolsGlue* fGlue;
  CStateRestorer fState;
  CPortGuard fGuard;
};

// The drawing of one view whose clip has been entered.
class CViewScope : CNotCopied {
 public:
  CViewScope(CDrawToolsGlue* glue, CPortClip& clip, const TRect& bounds)
      : fGlue(glue), fClip(clip), fBounds(bounds) {
    if (fGlue != nullptr) fGlue->PushViewBounds(fBounds);
  }
  ~CViewScope() {
    if (fGlue != nullptr) fGlue->PopViewBounds(fBounds);
    fClip.Leave();
  }

 private:
  CDrawToolsGlue* fGlue;
  CPortClip& fClip;
  TRect fBounds;
};

// Pauses a bracket, and resumes it even if an exception passes through.
class CBracketPause : CNotCopied {
 public:
  explicit CBracketPause(TDrawBracket& bracket) : fBracket(&bracket) { fBracket->Pause(); }
  ~CBracketPause() {
    if (fBracket == nullptr) return;
    try {
      fBracket->Resume();
    } catch (...) {
      // The exception that is passing through is the one to report.
    }
  }
  void Resume() {
    TDrawBracket* const bracket = fBracket;
    fBracket = nullptr;
    bracket->Resume();
  }

 private:
  TDrawBracket* fBracket;
};

// The shared bitmap that a view is drawn through. It goes back to where it came from, even if the view has
// changed its mode meanwhile.
class CTileBitmap : CNotCopied {
 public:
  explicit CTileBitmap(CViewImpl& view) : fBitmap(view.GetBitmapForDrawing()) {}
  ~CTileBitmap() {
    if (fBitmap == nullptr) return;
    try {
      CTileBitmapPool::ForDepth(fBitmap->GetInfo().fBitDepth).PutBack(fBitmap);
    } catch (...) {
      // There is no memory to keep it, and the bitmap ends here.
    }
  }

  CBufferBitmap* Get() const { return fBitmap.get(); }

 private:
  boost::shared_ptr<CBufferBitmap> fBitmap;
};

// Lends the tools to a behaviour.
class CToolsLoan : CNotCopied {
 public:
  explicit CToolsLoan(CDrawToolsGlue* glue) : fGlue(glue) {}
  ~CToolsLoan() {
    if (fGlue != nullptr) fGlue->CloseWhatIsLeftOpen();
  }

 private:
  CDrawToolsGlue* fGlue;
};

// --- One view

void DrawSubViews(const TPass& pass, CViewImpl& view);

// The error is only logged, but the buffers in which the view is missing try again with the next paint.
void IgnoreError(CViewImpl& view, const IViewBehavior* behavior, TError error, const char* operation) {
  view.RecordFailedDrawing();
  DebugPrint("The view behavior " + std::to_string(reinterpret_cast<std::intptr_t>(behavior)) +
             "returned the error " +  // sic, no blank
             std::to_string(static_cast<std::int32_t>(error)) + " when " + operation +
             " was called. The error has been ignored to avoid disrupting the drawing of other views.");
}

void DrawSelf(const TPass& pass, CViewImpl& view, IViewBehavior* behavior) {
  if (behavior != nullptr) {
    const CToolsLoan loan(pass.fGlue);
    const TError error = behavior->IViewBehavior_Draw(pass.fTools);
    if (error != kOK) IgnoreError(view, behavior, error, "IViewBehavior_Draw");
  }
  if (pass.fSettings.fFlushViews && pass.fGlue != nullptr)
    pass.fGlue->CDrawToolsGlue_FlushToScreen(pass.fSettings.fDelayAfterFlushing != 0);
}

void PostProcess(const TPass& pass, CViewImpl& view, IViewBehavior* behavior) {
  if (behavior == nullptr) return;
  const CToolsLoan loan(pass.fGlue);
  const TError error = behavior->IViewBehavior_PostProcessDraw(pass.fTools);
  if (error != kOK) IgnoreError(view, behavior, error, "IViewBehavior_PostProcessDraw");
}

void DrawDirect(const TPass& pass, CViewImpl& view) {
  // The caller keeps the view alive, and with it the behaviour.
  IViewBehavior* const behavior = view.GetBehavior();
  DrawSelf(pass, view, behavior);
  DrawSubViews(pass, view);
  pass.fBracket.BeginAgain();
  PostProcess(pass, view, behavior);
}

// Draws the view into a bitmap once, in a bracket of its own. `dirtyBounds` is what the bitmap will show.
void DrawIntoBuffer(const TPass& pass, CViewImpl& view, const TRect& dirtyBounds,
                    CBufferBitmapDrawTools& bufferTools) {
  if (pass.fSettings.fDrawPaintsRed && pass.fGlue != nullptr)
    pass.fGlue->CDrawToolsGlue_FlushToScreen(pass.fSettings.fDelayAfterFlushing != 0);
  // The tools restore clip and origin of the bitmap.
  HDC__* const hdc = bufferTools.CDrawToolsGlue_GetNativePort().fHDC;
  const CPortGuard guard(hdc);
  const CSelectionGuard bitmap(hdc, kSelectedBitmap);
  const CWholeStateGuard wholeState(hdc);
  TDrawBracket bracket(pass.fRunBehavior, bufferTools);
  DrawDirect({pass.fRunBehavior, bracket, dirtyBounds, bufferTools, &bufferTools, pass.fSettings}, view);
}

void CopyToTools(const TPass& pass, CPortClip& clip, const TRect& viewBounds, CBufferBitmap& bitmap,
                 TPoint destPoint, const TRect& sourceRect) {
  CBracketPause pause(pass.fBracket);
  // The run behaviour has just used the port, and may have changed the clip.
  clip.Renew(viewBounds);
  TNativePort port = {};
  ThrowError(pass.fTools.IDrawTools_OpenNativePort(port));
  bitmap.CopyToPort(port, destPoint, sourceRect);
  ThrowError(pass.fTools.IDrawTools_CloseNativePort());
  pause.Resume();
}

void DrawInTiles(const TPass& pass, CPortClip& clip, CViewImpl& view, const TRect& bounds) {
  // A view may be much larger than what can be seen of it.
  TRect visible = clip.GetBox();
  if (!IntersectRect(visible, pass.fDirtyBounds)) return;
  const CTileBitmap bitmap(view);
  CBufferBitmap* const viewBufferBitmap = bitmap.Get();
  MORVANE_ASSERT(viewBufferBitmap != NULL);
  void* nativeRegion = nullptr;
  ThrowError(pass.fTools.IDrawTools_GetDirtyRegion(nativeRegion));
  // A copy: if a behaviour draws with these tools while a tile is being drawn, the tools change their region.
  CRegion region;
  region.UnionRegion(CRegion(static_cast<TNativeRegion>(nativeRegion), true));
  const TSize tileSize = {viewBufferBitmap->GetInfo().fWidth, viewBufferBitmap->GetInfo().fHeight};
  TTileIterator tiles(CutToTiles(bounds, tileSize, visible), tileSize);
  TRect tile;
  while (tiles.GetNextTile(tile)) {
    const TPoint origin = {tile.fLeft, tile.fTop};
    CBufferBitmapDrawTools tileTools(viewBufferBitmap, region.GetNativeRegion(), origin, pass.fGlue);
    DrawIntoBuffer(pass, view, pass.fDirtyBounds, tileTools);
    CopyToTools(pass, clip, bounds, *viewBufferBitmap, origin, tile);
  }
}

void DrawPermanent(const TPass& pass, CPortClip& clip, CViewImpl& view, const TRect& bounds) {
  // Kept alive, since a behaviour may give the view another bitmap.
  const boost::shared_ptr<CBufferBitmap> bitmap = view.GetBitmapForDrawing();
  CBufferBitmap* const viewBufferBitmap = bitmap.get();
  MORVANE_ASSERT(viewBufferBitmap != NULL);
  const TPoint topLeft = {bounds.fLeft, bounds.fTop};
  const CRegion region = view.TakeDirtyRegion();
  try {
    if (!region.IsEmpty()) {
      CBufferBitmapDrawTools bufferTools(viewBufferBitmap, region.GetNativeRegion(), topLeft, pass.fGlue);
      // Also drawn where nothing has to be redrawn on the screen: afterwards, everything inside the super
      // view counts as drawn.
      TRect drawn = bounds;
      if (view.GetSuperView() && !IntersectRect(drawn, view.GetSuperView()->GetBounds())) drawn = {};
      DrawIntoBuffer(pass, view, drawn, bufferTools);
    }
  } catch (...) {
    view.PutBackDirtyRegion(region);
    throw;
  }
  const TPoint origin = viewBufferBitmap->GetOrigin();
  MORVANE_ASSERT((origin.fX == 0) && (origin.fY == 0));
  // Another origin while the bitmap is being drawn into: this is a paint in the middle of that drawing.
  CopyToTools(pass, clip, bounds, *viewBufferBitmap, topLeft,
              OffsetRectBy({0, 0, ToCoordinate(RectWidth(bounds)), ToCoordinate(RectHeight(bounds))},
                           origin.fX, origin.fY));
}

void DrawByMode(const TPass& pass, CPortClip& clip, CViewImpl& view, const TRect& bounds) {
  switch (view.GetDrawMode()) {
    case kViewDrawDirect:
      DrawDirect(pass, view);
      break;
    case kViewDrawTemporary16:
    case kViewDrawTemporary32:
      DrawInTiles(pass, clip, view, bounds);
      break;
    case kViewDrawPermanent16:
    case kViewDrawPermanent32:
      DrawPermanent(pass, clip, view, bounds);
      break;
    default:
      view.GetBitmapForDrawing();  // throws
      break;
  }
}

// Draws a view whose clip has been entered.
void DrawEntered(const TPass& pass, CPortClip& clip, CViewImpl& view, const TRect& bounds) {
  const CViewScope scope(pass.fGlue, clip, bounds);
  try {
    // The run behaviour may have changed the clip.
    if (pass.fBracket.BeginAgain()) clip.Renew(bounds);
    DrawByMode(pass, clip, view, bounds);
  } catch (...) {
    view.RecordFailedDrawing();
    throw;
  }
}

// --- The views of a list

// The subviews that exist at the start, in their order at the start. Drawing one of them may release, reorder
// or add others.
class CSubViewIterator {
 public:
  explicit CSubViewIterator(const CViewImpl& superView)
      : fSuperView(superView), fList(superView.GetSubViewList()), fEnd(superView.GetRawSubViews().size()) {}

  // The next view that is still live and meets `box`; null after the last. In a small paint most views do not
  // meet it, and cost only one look at their rectangle.
  CViewImpl* GetNext(const TRect& box) {
    if (!fSuperView.HasSubViewList(fList.get())) return GetNextOfOldList(box);
    const std::size_t end = std::min(fEnd, fList->fViews.size());
    while (fNext < end) {
      const std::size_t index = fNext++;
      if (DoRectsMeet(fList->fRects[index], box) && fList->fViews[index]->IsLive())
        return fList->fViews[index];
    }
    return nullptr;
  }

 private:
  CViewImpl* GetNextOfOldList(const TRect& box) {
    while (fNext < fEnd) {
      const std::size_t index = fNext++;
      CViewImpl* const view = fList->fViews[index];
      if (Exists(view, index) && DoRectsMeet(view->GetBounds(), box) && view->IsLive()) return view;
    }
    return nullptr;
  }

  // A view is in the list as long as it exists, nearly always at its old place.
  bool Exists(const CViewImpl* view, std::size_t index) const {
    const std::vector<CViewImpl*>& current = fSuperView.GetRawSubViews();
    return (index < current.size() && current[index] == view) ||
           std::find(current.begin(), current.end(), view) != current.end();
  }

  const CViewImpl& fSuperView;
  boost::shared_ptr<const TSubViewList> fList;
  std::size_t fEnd;
  std::size_t fNext = 0;
};

// Draws one subview. An exception is logged and goes no further.
template <class TDraw>
void DrawGuarded(CViewImpl& subView, TDraw&& draw) {
  const TViewImplPtr keepAlive = subView.GetClientsViewReference();
  try {
    draw();
  } catch (const std::exception& e) {
    DebugPrint(std::string("Ignored an exception (") + e.what() + ") in DrawSubViews.");
  } catch (...) {
    DebugPrint("Ignored an unknown exception in DrawSubViews.");
  }
}

// With the library's own tools, port and clip are the same for all subviews, so the clip is read once here. A
// subview that need not be drawn costs one comparison of rectangles.
void DrawSubViewsWithGlue(const TPass& pass, CSubViewIterator& subViews) {
  CPortClip clip(pass.fGlue->CDrawToolsGlue_GetNativePort().fHDC, &pass.fGlue->GetKnownPort());
  TRect box = clip.GetBox();
  if (!IntersectRect(box, pass.fDirtyBounds)) return;
  while (CViewImpl* const subView = subViews.GetNext(box)) {
    const TRect bounds = subView->GetBounds();
    if (clip.Enter(bounds)) DrawGuarded(*subView, [&] { DrawEntered(pass, clip, *subView, bounds); });
  }
}

void DrawSubViews(const TPass& pass, CViewImpl& view) {
  if (view.GetRawSubViews().empty()) return;
  CSubViewIterator subViews(view);
  if (pass.fGlue != nullptr) {
    DrawSubViewsWithGlue(pass, subViews);
    return;
  }
  while (CViewImpl* const subView = subViews.GetNext(pass.fDirtyBounds)) {
    DrawGuarded(*subView, [&] {
      DrawView(pass.fRunBehavior, pass.fBracket, *subView, pass.fDirtyBounds, pass.fTools, pass.fSettings);
    });
  }
}

HDC__* GetPort(IDrawTools& tools, CDrawToolsGlue* glue) {
  TNativePort nativePort = {};
  if (glue != nullptr) {
    nativePort = glue->UsePort();
  } else {
    ThrowError(tools.IDrawTools_OpenNativePort(nativePort));
    ThrowError(tools.IDrawTools_CloseNativePort());
  }
  MORVANE_ASSERT(nativePort.fHDC != NULL);
  return nativePort.fHDC;
}

}  // namespace

void DrawView(IMorvaneRunBehavior* runBehavior, TDrawBracket& bracket, CViewImpl& view,
              const TRect& dirtyBounds, IDrawTools& tools, const TDebugSettings& settings) {
  const TRect bounds = view.GetBounds();
  TRect dirty = bounds;
  if (!IntersectRect(dirty, dirtyBounds)) return;
  const TViewImplPtr keepAlive = view.IsLive() ? view.GetClientsViewReference() : TViewImplPtr();
  CDrawToolsGlue* const glue = dynamic_cast<CDrawToolsGlue*>(&tools);
  HDC__* const hdc = GetPort(tools, glue);
  const CPassGuard guard(hdc, glue);
  CPortClip clip(hdc, glue != nullptr ? &glue->GetKnownPort() : nullptr);
  if (!clip.Enter(bounds)) return;
  DrawEntered({runBehavior, bracket, dirtyBounds, tools, glue, settings}, clip, view, bounds);
}

void DrawSubViews(IMorvaneRunBehavior* runBehavior, TDrawBracket& bracket, CViewImpl& view,
                  const TRect& dirtyBounds, IDrawTools& tools, const TDebugSettings& settings) {
  const TViewImplPtr keepAlive = view.IsLive() ? view.GetClientsViewReference() : TViewImplPtr();
  CDrawToolsGlue* const glue = dynamic_cast<CDrawToolsGlue*>(&tools);
  HDC__* const hdc = GetPort(tools, glue);
  const CPassGuard guard(hdc, glue);
  DrawSubViews({runBehavior, bracket, dirtyBounds, tools, glue, settings}, view);
}

}  // namespace NSMorvane
