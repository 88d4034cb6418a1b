// The one view class of the library: the tree under a window's root view.
//
// All rectangles are in client coordinates of the window. A view is live from SetClientsViewReference to
// IView_Release. After that its subviews may keep it in memory, but every walk skips it.
//
// After any call of a behaviour, the tree may have changed: views may have been released, made or reordered.
// So a walk uses shared pointers that it has taken beforehand; the client's operations keep their view alive
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

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Contract/MorvaneGlueView.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

class CBufferBitmap;
class CViewImpl;
class IImplFocusTools;
class IViewWindow;

using TViewImplPtr = boost::shared_ptr<CViewImpl>;

// The subviews of a view in the order in which they are drawn, also those that have been released, and beside
// them their rectangles: a walk looks at these, which lie together, before it touches a view.
struct TSubViewList {
  std::vector<CViewImpl*> fViews;
  std::vector<TRect> fRects;
};

class CViewImpl : public CViewGlue, CNotCopied {
 public:
  // --- Life

  // A root view. It does not own the window.
  explicit CViewImpl(IWindow* motherWindow);
  // The last subview of `superView`, in the same window. Throws std::invalid_argument if that view has been
  // released. The name is cut to kDebugNameChars.
  CViewImpl(CViewImpl& superView, const std::string& debugName);
  // Makes a live subview whose behaviour comes from the client's factory. If the factory fails, its code is
  // thrown and the view ends. The view is held by its own client reference.
  static TViewImplPtr MakeSubView(IViewBehaviorFactory& factory, CViewImpl& superView,
                                  const std::string& debugName);
  ~CViewImpl() override;

  // Called once, with a pointer to this view.
  void SetClientsViewReference(TViewImplPtr reference);
  // Null, after an assertion, for a view that has been released.
  TViewImplPtr GetClientsViewReference() const;
  bool IsLive() const { return fClientsViewReference.get() != nullptr; }
  // Called once. The behaviour may be null: a view without one draws nothing and is never hit.
  void SetBehavior(boost::shared_ptr<IViewBehavior> behavior);
  bool CheckInvariant() const;

  // --- What it is

  // Null before SetBehavior, and while the behaviour is being destroyed.
  IViewBehavior* GetBehavior() const { return fBehavior.get(); }
  // Null if the window has ended before its views.
  IWindow* GetMotherWindow() const { return fMotherWindow; }
  // The window, or null if that has ended before its views.
  IImplFocusTools* GetFocusTools() const { return fImplFocusTools; }
  // Null for a root view.
  const TViewImplPtr& GetSuperView() const { return fSuperView; }
  // The live subviews in the order in which they are drawn.
  std::vector<TViewImplPtr> GetSubViews() const;
  // All subviews, also those that have been released (see IsLive). Any callback may change the list.
  const std::vector<CViewImpl*>& GetRawSubViews() const;
  // The same with the rectangles; null if there have never been any. The order of this list never changes,
  // and no view leaves it: the view gets another list then. Views are added at its end, and rectangles follow
  // their views.
  boost::shared_ptr<const TSubViewList> GetSubViewList() const { return fSubViews; }
  bool HasSubViewList(const TSubViewList* list) const { return fSubViews.get() == list; }
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

  // Adds it as the last subview. The list does not own it.
  void AddSubView(CViewImpl* view);
  // Throws std::logic_error if it is not in the list.
  void RemoveSubView(CViewImpl* view);
  // The live views of this subtree that have a hit rectangle at the point, from the outermost to the topmost.
  // The result takes over the memory of `buffer`, which must be empty.
  std::vector<TViewImplPtr> HitTest(const TPoint& point, std::vector<TViewImplPtr> buffer = {}) const;
  // Whether one of the subviews has the point in its rectangle; if not, HitTest finds nothing below this
  // view. Calls no behaviour.
  bool HasSubViewAt(const TPoint& point) const;

  // Called by a window that is ending: the views that are left must not use it any more.
  void ForgetWindow();

  // --- Bounds and dirty areas

  // Subviews stay where they are.
  void SetBounds(const TRect& rect);
  // The view's rectangle clipped to those of all super views; the zero rectangle if nothing is left.
  TRect GetClipBounds() const;
  // The client's request: the part of the view in `rect` becomes dirty in the nearest buffered view,
  // beginning with this one, and on the screen. On the screen it is clipped to all super views. A buffer also
  // records what is out of sight, since that can come into sight without being drawn.
  void InvalidateRect(const TRect& rect);

  // --- Buffers

  // What the view is drawn into: null for the direct mode, a shared tile for the temporary modes, the view's
  // own bitmap for the permanent ones.
  boost::shared_ptr<CBufferBitmap> GetBitmapForDrawing();
  // Returns what has to be drawn into the view's own bitmap. From here on it counts as drawn, except for what
  // lies outside the super view. Permanent modes only.
  CRegion TakeDirtyRegion();
  // Makes a region dirty again that was taken but could not be drawn.
  void PutBackDirtyRegion(const CRegion& region);
  // Called when the view could not be drawn: makes it dirty in the bitmaps around it that are being drawn
  // into, so that they try again.
  void RecordFailedDrawing() noexcept;
  // What has to be drawn, without taking it. Null except in the permanent modes.
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
  // The permanent bitmap and its dirty region: both or neither.
  struct TPermanentBuffer {
    boost::shared_ptr<CBufferBitmap> fBitmap;
    std::unique_ptr<CRegion> fDirtyRegion;
  };

  // The subviews, also those that have been released, whose rectangles contain a point.
  struct TSubViewsAt {
    TPoint fPoint = {0, 0};
    bool fIsKnown = false;
    std::vector<CViewImpl*> fSubViews;
  };

  static bool IsPermanentMode(TViewDrawMode mode) {
    return mode == kViewDrawPermanent16 || mode == kViewDrawPermanent32;
  }

  // Life
  void LeaveTabViews() noexcept;
  void GiveUpFocus();
  void AddTooltip(const TString& text);
  void RemoveTooltip();
  static void ReleaseSuperViews(TViewImplPtr view);

  // Returns the first code of a view that was to get the focus and failed.
  TError SetEnabled(bool ownEnabled, bool ancestorsEnabled, bool visible);
  void ApplyEnabled(bool ownEnabled, bool ancestorsEnabled, bool visible, std::vector<TViewImplPtr>& changed);
  TError TellEnabled();
  bool HasHeardEnabled() const;
  bool HasFocus() const;
  bool IsHit(const TPoint& point) const;
  void AppendHits(const TPoint& point, std::vector<TViewImplPtr>& hits,
                  std::vector<TViewImplPtr>& candidates) const;
  const std::vector<CViewImpl*>& FindSubViewsAt(const TPoint& point) const;
  // Called when a subview comes, goes or moves.
  void ForgetSubViewsAt() const;

  // The list of subviews
  std::size_t FindSubView(const CViewImpl& view) const;
  // Tells the super view where this view is now.
  void PassOnBounds() const;

  // Bounds
  void BoundsChanged(const TRect& oldRect);
  TAutoInvalidation ResolveAutoInvalidation(const TRect& oldRect) const;
  // The picture of this view has changed in `area`, a rectangle or a region. It becomes dirty on the screen
  // and in the nearest buffer, or with `inAllBuffers` in every buffer on the way up.
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

  TViewImplPtr fClientsViewReference;  // the client's reference; null if the view has been released
  std::uint32_t fFlags;
  TRect fRect;
  TViewDrawMode fDrawMode;
  TAutoInvalidation fAutoInvalidation;
  boost::shared_ptr<IViewBehavior> fBehavior;
  IWindow* fMotherWindow;
  TViewImplPtr fSuperView;                           // a super view lives as long as its subviews
  boost::shared_ptr<TSubViewList> fSubViews;         // null at first
  mutable std::size_t fPlace;                        // in the list of the super view, or a bit before that
  mutable std::unique_ptr<TSubViewsAt> fSubViewsAt;  // of the last point that was asked for; null at first
  bool fIsVisibleInTree;                             // only passed on to subviews
  bool fIsEffectivelyEnabled;                        // whether all super views are enabled
  bool fToldOwnEnabled;                              // what the behaviour was last told
  bool fToldAncestorsEnabled;
  std::unique_ptr<CRegion> fCollapsedDirtyRegion;              // permanent modes only
  boost::shared_ptr<CBufferBitmap> fPermanentOffscreenBitmap;  // permanent modes only
  std::string fDebugName;
  IImplFocusTools* fImplFocusTools;  // the window, like the next field
  IViewWindow* fViewWindow;
  TString fTooltipText;
  std::uint32_t fTooltipHandle;
};

}  // namespace NSMorvane
