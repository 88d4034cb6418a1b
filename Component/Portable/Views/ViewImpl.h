// The one view class of the library: the tree under a window's root view.
//
// All rectangles are in client coordinates of the window. A view is live from SetClientsViewReference to
// IView_Release; after that it may stay alive behind its subviews, but every walk passes it over.
//
// Whatever calls a behaviour may come back to a tree that has changed: views released, made or reordered. So
// a walk goes over shared pointers that it took beforehand; the client's operations keep their view alive
// (MorvaneGlueContract.h).
//
//   ViewImpl.cpp              life, parameters, enabling, tooltips, hit test
//   ViewImplInvalidation.cpp  bounds, invalidation, moving
//   ViewImplBuffers.cpp       bitmaps, dirty regions
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Component/Portable/Contract/MorvaneGlueView.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

class CBufferBitmap;
class CViewImpl;
class IImplFocusTools;
class IViewWindow;

using TViewImplPtr = boost::shared_ptr<CViewImpl>;

class CViewImpl : public CViewGlue {
 public:
  // --- Life

  // A root view. The window stays the caller's.
  explicit CViewImpl(IWindow* motherWindow);
  // The last subview of `superView`, in the same window. std::invalid_argument if that is gone already. The
  // name is cut to kDebugNameChars.
  CViewImpl(CViewImpl& superView, const std::string& debugName);
  // A live subview whose behaviour comes from the client's factory. If the factory fails, its code is thrown
  // and the view is gone again. The result is held by its own client reference.
  static TViewImplPtr MakeSubView(IViewBehaviorFactory& factory, CViewImpl& superView,
                                  const std::string& debugName);
  ~CViewImpl() override;
  CViewImpl(const CViewImpl&) = delete;
  CViewImpl& operator=(const CViewImpl&) = delete;

  // Once, with a pointer to this view.
  void SetClientsViewReference(TViewImplPtr reference);
  // Null, and reported, for a view that is gone.
  TViewImplPtr GetClientsViewReference() const;
  bool IsLive() const { return fClientsViewReference.get() != nullptr; }
  // Once. May be null: a view without a behaviour draws nothing and is never hit.
  void SetBehavior(boost::shared_ptr<IViewBehavior> behavior);
  bool CheckInvariant() const;

  // --- What it is

  // Null before SetBehavior, and while the behaviour is being destroyed.
  IViewBehavior* GetBehavior() const { return fBehavior.get(); }
  // Null once the window has gone before its views.
  IWindow* GetMotherWindow() const { return fMotherWindow; }
  // The window, or null once that has gone before its views.
  IImplFocusTools* GetFocusTools() const { return fImplFocusTools; }
  // Null for a root view.
  const TViewImplPtr& GetSuperView() const { return fSuperView; }
  // The live ones, the first drawn first.
  std::vector<TViewImplPtr> GetSubViews() const;
  // With those that are gone (see IsLive). Any callback may change it.
  const std::vector<CViewImpl*>& GetRawSubViews() const { return fSubViews; }
  const TRect& GetBounds() const { return fRect; }
  TViewParams GetParams() const { return {fFlags, fRect, fDrawMode, fAutoInvalidation}; }
  std::uint32_t GetFlags() const { return fFlags; }
  TViewDrawMode GetDrawMode() const { return fDrawMode; }
  const std::string& GetDebugName() const { return fDebugName; }
  const TString& GetTooltipText() const { return fTooltipText; }
  // The window's number for the tooltip, 0 for none.
  std::uint32_t GetTooltipHandle() const { return fTooltipHandle; }
  bool IsEffectivelyEnabled() const { return (fFlags & kViewEnabled) != 0 && fIsEffectivelyEnabled; }
  bool CanBeFocusTargetNow() const { return (fFlags & kViewFocusable) != 0 && IsEffectivelyEnabled(); }
  bool IsMouseTrackable() const { return IsEffectivelyEnabled() && (fFlags & kViewMouseTrackable) != 0; }

  // --- The tree

  // As the last subview. The list does not own it.
  void AddSubView(CViewImpl* view);
  // std::logic_error if it is not in the list.
  void RemoveSubView(CViewImpl* view);
  // The live views of this subtree that have a hit rectangle under the point: outermost first, the topmost
  // last.
  std::vector<TViewImplPtr> HitTest(const TPoint& point) const;
  // Whether one of the subviews has the point in its rectangle; if not, HitTest finds nothing below this
  // view. Calls no behaviour.
  bool HasSubViewAt(const TPoint& point) const;

  // For the window, on its way out: the views that are left must not reach for it.
  void ForgetWindow();

  // --- Bounds and dirty areas

  // Subviews stay where they are.
  void SetBounds(const TRect& rect);
  // The own rectangle cut to those of all super views; the zero rectangle if nothing is left.
  TRect GetClipBounds() const;
  // What the client asks for: the part of the view in `rect` becomes dirty, in the nearest buffered view,
  // beginning with this one, and on the screen. Of the screen only what all super views leave in sight; a
  // buffer records also what is out of sight, since that may come into sight without being drawn.
  void InvalidateRect(const TRect& rect);

  // --- Buffers

  // What the view is drawn into: null for the direct mode, a shared tile for the temporary modes, the view's
  // own bitmap for the permanent ones.
  boost::shared_ptr<CBufferBitmap> GetBitmapForDrawing();
  // What GetBitmapForDrawing gave, once the drawing is through.
  void ReleaseBitmapForDrawing(const boost::shared_ptr<CBufferBitmap>& bufferBitmap);
  // What has to be drawn into the own bitmap; from here on it counts as drawn, but for what lies outside the
  // super view. Permanent modes only.
  CRegion TakeDirtyRegion();
  // What was taken could not be drawn.
  void PutBackDirtyRegion(const CRegion& region);
  // The view could not be drawn: the bitmaps around it that are being drawn into have to try again.
  void RecordFailedDrawing() noexcept;
  // What has to be drawn, left alone. Null but in the permanent modes.
  const CRegion* GetDirtyRegion() const { return fCollapsedDirtyRegion.get(); }

 protected:
  boost::shared_ptr<void> KeepAlive() const override { return fClientsViewReference; }
  bool CViewGlue_CheckInvariant() const override;
  IViewBehavior* CViewGlue_GetBehavior() override;
  IWindow* CViewGlue_GetMotherWindow() override;
  IView* CViewGlue_GetSuperView() override;
  bool CViewGlue_IsEffectivelyEnabled() override;
  void CViewGlue_SetParams(const TViewParams& params) override;
  TViewParams CViewGlue_GetParams() override;
  std::string CViewGlue_GetDebugName() override;
  TString CViewGlue_GetTooltipText() override;
  void CViewGlue_SetTooltipText(const TString& text) override;
  void CViewGlue_Offset(std::int32_t dx, std::int32_t dy) override;
  std::vector<IView*> CViewGlue_GetSubViewOrder() override;
  void CViewGlue_SetSubViewOrder(const std::vector<IView*>& subViews) override;
  void CViewGlue_Release() override;

 private:
  // The permanent bitmap and what of it is dirty: both or neither.
  struct TPermanentBuffer {
    boost::shared_ptr<CBufferBitmap> fBitmap;
    std::unique_ptr<CRegion> fDirtyRegion;
  };

  static bool IsPermanentMode(TViewDrawMode mode) {
    return mode == kViewDrawPermanent16 || mode == kViewDrawPermanent32;
  }

  // Life
  void LeaveTabViews();
  void GiveUpFocus();
  void AddTooltip(const TString& text);
  void RemoveTooltip();
  static void ReleaseSuperViews(TViewImplPtr view);

  // Enabling and hits
  // The first code of a view that was to get the focus and failed.
  TError SetEnabled(bool ownEnabled, bool ancestorsEnabled, bool visible);
  void ApplyEnabled(bool ownEnabled, bool ancestorsEnabled, bool visible, std::vector<TViewImplPtr>& changed);
  TError TellEnabled();
  bool HasHeardEnabled() const;
  bool HasFocus() const;
  bool IsHit(const TPoint& point) const;
  static void AppendHits(const TViewImplPtr& view, const TPoint& point, std::vector<TViewImplPtr>& hits);

  // Bounds
  void BoundsChanged(const TRect& oldRect);
  TAutoInvalidation ResolveAutoInvalidation(const TRect& oldRect) const;
  // The picture of this view has changed in `area`, a rectangle or a region: it becomes dirty on the screen
  // and in the nearest buffer or, with `inAllBuffers`, in every one on the way up.
  template <class TArea>
  void Invalidate(TArea area, bool inAllBuffers);
  void InvalidatePicture(const TRect& rect);
  void InvalidateAround(const TRect& rect);
  void InvalidateDifference(const TRect& a, const TRect& b);
  void MoveDirtyRegion(std::int64_t dx, std::int64_t dy);
  bool IsOnlySubView() const;
  bool ScrollPixelsInSuperView(const TPoint& distance, const TRect& destination);
  void ScrollInSuperView(const TPoint& distance);
  void MoveSubtree(std::int32_t dx, std::int32_t dy, CViewImpl& around, bool handled);
  void MarkToolRectsDirty();

  // Buffers
  static TSize BufferSize(const TRect& rect);
  bool IsBufferBeingDrawn() const;
  static TPermanentBuffer MakePermanentBuffer(TViewDrawMode mode, const TRect& rect);
  void SetPermanentBuffer(TPermanentBuffer buffer);

  TViewImplPtr fClientsViewReference;  // stands for the client's hold; null: the view counts as gone
  std::uint32_t fFlags;
  TRect fRect;
  TViewDrawMode fDrawMode;
  TAutoInvalidation fAutoInvalidation;
  boost::shared_ptr<IViewBehavior> fBehavior;
  IWindow* fMotherWindow;
  TViewImplPtr fSuperView;  // a super view lives as long as its subviews
  std::vector<CViewImpl*> fSubViews;
  bool fIsVisibleInTree;       // only handed down
  bool fIsEffectivelyEnabled;  // as far as the super views go
  bool fToldOwnEnabled;        // as the behaviour has last heard
  bool fToldAncestorsEnabled;
  std::unique_ptr<CRegion> fCollapsedDirtyRegion;              // permanent modes only
  boost::shared_ptr<CBufferBitmap> fPermanentOffscreenBitmap;  // permanent modes only
  std::string fDebugName;
  IImplFocusTools* fImplFocusTools;  // the window, as is the next
  IViewWindow* fViewWindow;
  TString fTooltipText;
  std::uint32_t fTooltipHandle;
};

}  // namespace NSMorvane
