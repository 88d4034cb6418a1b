// Views: life, parameters, enabling, tooltips, hit test.
#include "Component/Portable/Views/ViewImpl.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstddef>
#include <utility>

#include "Component/Portable/Base/LentList.h"
#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Component/Portable/Views/FocusSearch.h"
#include "Component/Portable/Views/IgnoredErrors.h"
#include "Component/Portable/Views/ViewWindow.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

namespace {

// Runs a step of a view's end. An exception stops here, and the next step follows.
template <class TStep>
void RunDestructorStep(const TStep& step) noexcept {
  try {
    try {
      step();
    } catch (const std::exception& e) {
      DebugPrint(std::string("Ignored an exception (") + e.what() + ") in CViewImpl::~CViewImpl.");
    } catch (...) {
      DebugPrint("Ignored an unknown exception in CViewImpl::~CViewImpl.");
    }
  } catch (...) {
    // Not even the line could be printed.
  }
}

// Looks for the point in the rectangles that a behaviour passes.
class CRectGetter : public IRectsGetter {
 public:
  explicit CRectGetter(const TPoint& point) : fPoint(point) {}

  TError IRectsGetter_AddRects(const TRect* rects, std::uint32_t count) override {
    if (!rects && count > 0) return kBadInputProgrammingError;
    for (std::uint32_t i = 0; i < count && !fIsHit; ++i) fIsHit = IsPointInRect(fPoint, rects[i]);
    return kOK;
  }
  bool IsHit() const { return fIsHit; }

 private:
  TPoint fPoint;
  bool fIsHit = false;
};

// Where the destructor of a view leaves its super view for ReleaseSuperViews. Process-wide, since a
// destructor has no arguments.
TViewImplPtr* gSuperViewTaker = nullptr;

}  // namespace

// --- Life

CViewImpl::CViewImpl(IWindow* motherWindow)
    : fFlags(kViewEnabled),
      fRect(),
      fDrawMode(kViewDrawDirect),
      fAutoInvalidation(kAutoInvalidationNone),
      fMotherWindow(motherWindow),
      fPlace(0),
      fIsVisibleInTree(true),
      fIsEffectivelyEnabled(true),
      fToldOwnEnabled(true),
      fToldAncestorsEnabled(true),
      fDebugName("Root view"),
      fImplFocusTools(nullptr),
      fViewWindow(nullptr),
      fTooltipHandle(0) {}

CViewImpl::CViewImpl(CViewImpl& superView, const std::string& debugName)
    : CViewImpl(superView.fMotherWindow) {
  // The object is complete already: if something is thrown from here on, the destructor runs.
  TViewImplPtr reference = superView.GetClientsViewReference();
  if (!reference) MORVANE_THROW(std::invalid_argument(""));
  fDebugName.assign(debugName, 0, kDebugNameChars);
  fImplFocusTools = superView.fImplFocusTools;
  fViewWindow = superView.fViewWindow;
  fIsVisibleInTree = superView.fIsVisibleInTree;
  fIsEffectivelyEnabled = fToldAncestorsEnabled = superView.IsEffectivelyEnabled();
  superView.AddSubView(this);
  fSuperView = std::move(reference);
}

TViewImplPtr CViewImpl::MakeSubView(IViewBehaviorFactory& factory, CViewImpl& superView,
                                    const std::string& debugName) {
  const TViewImplPtr view(new CViewImpl(superView, debugName));
  TError error = kOK;
  IViewBehavior* const behavior = factory.IViewBehaviorFactory_CreateBehavior(*view, error);
  const boost::shared_ptr<IViewBehavior> ownedBehavior(behavior);
  MORVANE_CHECK(error);
  MORVANE_ASSERT(behavior != NULL);
  view->SetClientsViewReference(view);
  try {
    view->SetBehavior(ownedBehavior);
  } catch (...) {
    view->CViewGlue_Release();
    MORVANE_RETHROW();
  }
  return view;
}

void CViewImpl::SetClientsViewReference(TViewImplPtr reference) {
  MORVANE_ASSERT(0==fClientsViewReference.get());
  fClientsViewReference = std::move(reference);
}

TViewImplPtr CViewImpl::GetClientsViewReference() const {
  MORVANE_ASSERT(0!=fClientsViewReference.get());
  TViewImplPtr newReference = fClientsViewReference;
  MORVANE_ASSERT(newReference.get() != NULL);
  return newReference;
}

void CViewImpl::SetBehavior(boost::shared_ptr<IViewBehavior> behavior) {
  MORVANE_ASSERT(fBehavior.get() == NULL);
  fBehavior = std::move(behavior);
  if (!fSuperView) {
    IImplFocusTools* const document = dynamic_cast<IImplFocusTools*>(fMotherWindow);
    MORVANE_ASSERT(0!=document);
    fImplFocusTools = document;
    fViewWindow = dynamic_cast<IViewWindow*>(fMotherWindow);
  }
  if (fBehavior && fViewWindow && !fTooltipText.empty()) AddTooltip(TString(fTooltipText));
}

CViewImpl::~CViewImpl() {
  TViewImplPtr* const superViewTaker = std::exchange(gSuperViewTaker, nullptr);
  MORVANE_ASSERT(fClientsViewReference.get() == NULL);
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT(GetRawSubViews().empty());
  LeaveTabViews();
  RunDestructorStep([this] { InvalidateAround(fRect); });
  RunDestructorStep([this] { RemoveTooltip(); });
  RunDestructorStep([this] { fBehavior.reset(); });
  // Once more, in case the behaviour made the first attempt fail.
  RunDestructorStep([this] { RemoveTooltip(); });
  RunDestructorStep([this] {
    if (fSuperView) fSuperView->RemoveSubView(this);
  });
  PoisonField(fDrawMode, static_cast<TViewDrawMode>(666));
  PoisonField(fFlags, std::uint32_t{666});
  fDebugName = "<deleted>";
  if (superViewTaker)
    superViewTaker->swap(fSuperView);
  else
    ReleaseSuperViews(std::move(fSuperView));
}

// When the last subview of a released view ends, that view ends with it, and perhaps its own super view too.
// Each destructor in such a chain passes its super view to this loop, where the next destructor runs. So a
// deep tree needs no deep stack.
void CViewImpl::ReleaseSuperViews(TViewImplPtr view) {
  while (view) {
    TViewImplPtr nextView;
    gSuperViewTaker = &nextView;
    view.reset();
    gSuperViewTaker = nullptr;
    view.swap(nextView);
  }
}

void CViewImpl::LeaveTabViews() noexcept {
  if (fImplFocusTools) fImplFocusTools->IImplFocusTools_RemoveTabView(this);
}

void CViewImpl::GiveUpFocus() {
  if (!HasFocus()) return;
  DebugPrint("Ejecting focus from view being deleted...");
  DebugIndentScope indent;
  EjectFocus(*fImplFocusTools);
}

bool CViewImpl::HasFocus() const {
  return fImplFocusTools && (fImplFocusTools->IImplFocusTools_GetOnDutyFocusView() == this ||
                             fImplFocusTools->IImplFocusTools_GetConceptualFocusView() == this);
}

void CViewImpl::CViewGlue_Release() {
  TViewImplPtr reference;
  reference.swap(fClientsViewReference);
  // From here on the view cannot get the focus back. If subviews keep it in memory, it stays in the tab list.
  if (GetRawSubViews().empty()) LeaveTabViews();
  RunDestructorStep([this] { GiveUpFocus(); });
  // If a walk or its subviews keep the view in memory, it must disappear from the picture now. Otherwise it
  // ends here, and its destructor does this.
  if (reference.use_count() > 1) RunDestructorStep([this] { InvalidateAround(fRect); });
}

void CViewImpl::ForgetWindow() {
  fMotherWindow = nullptr;
  fImplFocusTools = nullptr;
  fViewWindow = nullptr;
  fTooltipHandle = 0;
  for (CViewImpl* subView : GetRawSubViews()) subView->ForgetWindow();
}

bool CViewImpl::CheckInvariant() const {
  return fDrawMode >= kViewDrawDirect && fDrawMode <= kViewDrawPermanent32 && fFlags < 16 &&
         (fClientsViewReference.get() == nullptr || fClientsViewReference.get() == this) &&
         fDebugName.length() < 256;
}

// --- The tree

const std::vector<CViewImpl*>& CViewImpl::GetRawSubViews() const {
  static const std::vector<CViewImpl*> none;
  return fSubViews ? fSubViews->fViews : none;
}

void CViewImpl::AddSubView(CViewImpl* view) {
  if (!fSubViews) fSubViews = boost::make_shared<TSubViewList>();
  fSubViews->fRects.push_back(view->fRect);
  try {
    fSubViews->fViews.push_back(view);
  } catch (...) {
    fSubViews->fRects.pop_back();
    throw;
  }
  view->fPlace = fSubViews->fViews.size() - 1;
  ForgetSubViewsAt();
}

void CViewImpl::RemoveSubView(CViewImpl* view) {
  const std::size_t place = FindSubView(*view);
  if (place == GetRawSubViews().size()) {
    DebugPrint("RemoveSubView called with a view that isn't a sub view!");
    MORVANE_THROW(std::logic_error(""));
  }
  if (fSubViews.use_count() > 1) {
    // A walk goes on with the old list. Without memory for another one it misses a view.
    ErrorOf([this] { fSubViews = boost::make_shared<TSubViewList>(*fSubViews); });
  }
  fSubViews->fViews.erase(fSubViews->fViews.begin() + static_cast<std::ptrdiff_t>(place));
  fSubViews->fRects.erase(fSubViews->fRects.begin() + static_cast<std::ptrdiff_t>(place));
  ForgetSubViewsAt();
}

// Views leave from the front of the list or from its end, and the others then stand before their last place.
// Returns the length of the list if the view is not in it.
std::size_t CViewImpl::FindSubView(const CViewImpl& view) const {
  const std::vector<CViewImpl*>& views = GetRawSubViews();
  if (views.empty()) return 0;
  if (views.front() == &view) return view.fPlace = 0;
  for (std::size_t place = std::min(view.fPlace, views.size() - 1); place > 0; --place)
    if (views[place] == &view) return view.fPlace = place;
  return static_cast<std::size_t>(std::find(views.begin(), views.end(), &view) - views.begin());
}

void CViewImpl::PassOnBounds() const {
  if (!fSuperView) return;
  const std::size_t place = fSuperView->FindSubView(*this);
  if (place < fSuperView->GetRawSubViews().size()) fSuperView->fSubViews->fRects[place] = fRect;
  fSuperView->ForgetSubViewsAt();
}

std::vector<TViewImplPtr> CViewImpl::GetSubViews() const {
  std::vector<TViewImplPtr> result;
  result.reserve(GetRawSubViews().size());
  for (const CViewImpl* subView : GetRawSubViews())
    if (subView->IsLive()) result.push_back(subView->fClientsViewReference);
  return result;
}

std::vector<IView*> CViewImpl::CViewGlue_GetSubViewOrder() {
  std::vector<IView*> result;
  result.reserve(GetRawSubViews().size());
  for (CViewImpl* subView : GetRawSubViews())
    if (subView->IsLive()) result.push_back(subView);
  return result;
}

// The client does not know of released views any more, but they stay in the list until they end.
void CViewImpl::CViewGlue_SetSubViewOrder(const std::vector<IView*>& subViews) {
  const std::vector<CViewImpl*>& oldOrder = GetRawSubViews();
  const auto newList = boost::make_shared<TSubViewList>();
  std::vector<CViewImpl*>& newOrder = newList->fViews;
  newOrder.reserve(oldOrder.size());
  for (IView* subView : subViews) newOrder.push_back(dynamic_cast<CViewImpl*>(subView));
  for (CViewImpl* subView : oldOrder)
    if (!subView->IsLive()) newOrder.push_back(subView);
  std::vector<CViewImpl*> sortedOld = oldOrder;
  std::vector<CViewImpl*> sortedNew = newOrder;
  std::sort(sortedOld.begin(), sortedOld.end());
  std::sort(sortedNew.begin(), sortedNew.end());
  if (sortedOld != sortedNew) MORVANE_THROW(std::invalid_argument(""));
  newList->fRects.reserve(newOrder.size());
  for (const CViewImpl* subView : newOrder) {
    subView->fPlace = newList->fRects.size();
    newList->fRects.push_back(subView->fRect);
  }
  fSubViews = newList;
  ForgetSubViewsAt();
}

// --- Hit test

namespace {

// For the views that a hit test has still to ask. Process-wide, since views belong to the main thread.
CListMemory<TViewImplPtr> gCandidatesMemory;

}  // namespace

std::vector<TViewImplPtr> CViewImpl::HitTest(const TPoint& point, std::vector<TViewImplPtr> buffer) const {
  std::vector<TViewImplPtr> hits = std::move(buffer);
  if (!IsLive() || !IsPointInRect(point, fRect)) return hits;
  const TViewImplPtr self = fClientsViewReference;
  CLentList<TViewImplPtr> candidates(gCandidatesMemory);
  AppendHits(point, hits, *candidates);
  return hits;
}

bool CViewImpl::HasSubViewAt(const TPoint& point) const {
  if (!IsPointInRect(point, fRect)) return false;
  const std::vector<CViewImpl*>& subViews = FindSubViewsAt(point);
  return std::any_of(subViews.begin(), subViews.end(),
                     [](const CViewImpl* subView) { return subView->IsLive(); });
}

// The point must be in the rectangle of this view, and the caller holds the view. `candidates` is a stack.
void CViewImpl::AppendHits(const TPoint& point, std::vector<TViewImplPtr>& hits,
                           std::vector<TViewImplPtr>& candidates) const {
  if (IsHit(point)) hits.push_back(fClientsViewReference);
  if (!IsLive() || GetRawSubViews().empty()) return;
  const std::size_t begin = candidates.size();
  for (const CViewImpl* subView : FindSubViewsAt(point))
    if (subView->IsLive()) candidates.push_back(subView->fClientsViewReference);
  const std::size_t end = candidates.size();
  for (std::size_t i = begin; i < end; ++i)
    if (const CViewImpl& subView = *candidates[i]; subView.IsLive())
      subView.AppendHits(point, hits, candidates);
  candidates.resize(begin);
}

// Between two movements of the mouse, and within one message, the views are looked for at the same point
// again and again.
const std::vector<CViewImpl*>& CViewImpl::FindSubViewsAt(const TPoint& point) const {
  if (!fSubViewsAt) fSubViewsAt = std::make_unique<TSubViewsAt>();
  TSubViewsAt& found = *fSubViewsAt;
  if (found.fIsKnown && found.fPoint.fX == point.fX && found.fPoint.fY == point.fY) return found.fSubViews;
  found.fIsKnown = false;
  found.fSubViews.clear();
  if (fSubViews) {
    std::size_t place = 0;
    for (const TRect& rect : fSubViews->fRects) {
      if (IsPointInRect(point, rect)) found.fSubViews.push_back(fSubViews->fViews[place]);
      ++place;
    }
  }
  found.fPoint = point;
  found.fIsKnown = true;
  return found.fSubViews;
}

void CViewImpl::ForgetSubViewsAt() const {
  if (fSubViewsAt) fSubViewsAt->fIsKnown = false;
}

// A view that fails to answer is not hit. The mouse must get to the other views all the same, and what the
// window does beside must not stop: it asks with nearly every message.
bool CViewImpl::IsHit(const TPoint& point) const {
  if (!fBehavior) return false;
  CRectGetter getter(point);
  const IViewBehavior* const behavior = fBehavior.get();
  const TError error = ErrorOf([&] { MORVANE_CHECK(fBehavior->IViewBehavior_GetHitRects(getter)); });
  if (error == kOK) return getter.IsHit() && IsLive();
  PrintIgnoredMouseError(behavior, error, "IViewBehavior_GetHitRects");
  return false;
}

// --- Parameters

void CViewImpl::CViewGlue_SetParams(const TViewParams& params) {
  // A behaviour that is told of the change may set the flags itself, and then its setting wins. So this call
  // writes only the flags that it changes.
  const std::uint32_t changedFlags = params.fFlags ^ fFlags;
  // If the view that gets the focus fails, the rest is done all the same.
  TError focusError = kOK;
  const auto ejectFocus = [&] {
    const TError error = ErrorOf([this] { EjectFocus(*fImplFocusTools); });
    if (focusError == kOK) focusError = error;
  };
  if ((changedFlags & kViewEnabled) != 0)
    focusError = SetEnabled((params.fFlags & kViewEnabled) != 0, fIsEffectivelyEnabled, fIsVisibleInTree);
  const bool losesFocusable = (changedFlags & fFlags & kViewFocusable) != 0;
  if (losesFocusable && HasFocus()) {
    MORVANE_ASSERT(fImplFocusTools != NULL);
    // If there is no other candidate, it would follow itself as long as it is focusable.
    if (!IsOnlyFocusCandidate(*this, *fImplFocusTools)) ejectFocus();
  }
  const std::uint32_t plainFlags = changedFlags & ~std::uint32_t{kViewEnabled};
  fFlags = (fFlags & ~plainFlags) | (params.fFlags & plainFlags);
  if (losesFocusable && HasFocus()) ejectFocus();
  fAutoInvalidation = params.fAutoInvalidation;
  SetBounds(params.fRect);
  if (params.fDrawMode != fDrawMode) {
    SetPermanentBuffer(MakePermanentBuffer(params.fDrawMode, fRect));
    fDrawMode = params.fDrawMode;
    InvalidatePicture(fRect);
  }
  MORVANE_CHECK(focusError);
}

// The whole subtree changes before any behaviour is told, so that a behaviour that makes another change does
// not find a tree that is half changed.
TError CViewImpl::SetEnabled(bool ownEnabled, bool ancestorsEnabled, bool visible) {
  std::vector<TViewImplPtr> changed;
  ApplyEnabled(ownEnabled, ancestorsEnabled, visible, changed);
  TError firstError = kOK;
  for (const TViewImplPtr& view : changed) {
    const TError error = view->TellEnabled();
    if (firstError == kOK) firstError = error;
  }
  return firstError;
}

// `changed` gets the live views whose behaviours must be told, subviews before their super view.
void CViewImpl::ApplyEnabled(bool ownEnabled, bool ancestorsEnabled, bool visible,
                             std::vector<TViewImplPtr>& changed) {
  const bool isChanged =
      ownEnabled != ((fFlags & kViewEnabled) != 0) || ancestorsEnabled != fIsEffectivelyEnabled;
  fFlags &= ~static_cast<std::uint32_t>(kViewEnabled);
  if (ownEnabled) fFlags |= kViewEnabled;
  fIsEffectivelyEnabled = ancestorsEnabled;
  fIsVisibleInTree = visible;
  if (!isChanged) return;
  for (const CViewImpl* subView : GetRawSubViews())
    if (const TViewImplPtr& reference = subView->fClientsViewReference)
      reference->ApplyEnabled((reference->fFlags & kViewEnabled) != 0, ancestorsEnabled && ownEnabled,
                              visible, changed);
  if (IsLive()) changed.push_back(fClientsViewReference);
}

// Does nothing if the state has been changed back meanwhile, or if the behaviour has been told already. The
// result is the code of a view that was to get the focus.
TError CViewImpl::TellEnabled() {
  if (!IsLive()) return kOK;
  // A view that has been told may have got the focus in between.
  const bool hasHeard = HasHeardEnabled();
  TError error = kOK;
  if ((!hasHeard || (HasFocus() && !CanBeFocusTargetNow())) && fImplFocusTools && IsFocusInSubtree(*this))
    error = ErrorOf([this] { EjectFocus(*fImplFocusTools); });
  if (hasHeard || !IsLive() || HasHeardEnabled()) return error;
  fToldOwnEnabled = (fFlags & kViewEnabled) != 0;
  fToldAncestorsEnabled = fIsEffectivelyEnabled;
  if (fBehavior) fBehavior->IViewBehavior_OnEffectivelyEnabledChanged(IsEffectivelyEnabled() ? 1 : 0);
  return error;
}

bool CViewImpl::HasHeardEnabled() const {
  return fToldOwnEnabled == ((fFlags & kViewEnabled) != 0) && fToldAncestorsEnabled == fIsEffectivelyEnabled;
}

void CViewImpl::CViewGlue_SetTooltipText(const TString& text) {
  if (text == fTooltipText) return;
  TString newText = text;
  if (fBehavior && fViewWindow) {
    if (newText.empty()) {
      RemoveTooltip();
    } else if (fTooltipHandle != 0) {
      fViewWindow->UpdateToolText(fTooltipHandle, *this, newText);
    } else {
      AddTooltip(newText);
      if (fTooltipHandle == 0) MORVANE_THROW(XOutOfMemory());
    }
  }
  fTooltipText.swap(newText);
}

// Each of these asks the behaviour for its control, and the behaviour may set another text meanwhile.

void CViewImpl::AddTooltip(const TString& text) {
  const std::uint32_t added = fViewWindow->AddTool(*this, text);
  const std::uint32_t handle = std::exchange(fTooltipHandle, added);
  if (handle != 0) fViewWindow->RemoveTool(handle, *this);
}

void CViewImpl::RemoveTooltip() {
  if (fTooltipHandle == 0 || !fViewWindow) return;
  const std::uint32_t handle = std::exchange(fTooltipHandle, 0);
  try {
    fViewWindow->RemoveTool(handle, *this);
  } catch (...) {
    if (fTooltipHandle == 0) fTooltipHandle = handle;
    MORVANE_RETHROW();
  }
}

// --- Plain hooks

bool CViewImpl::CViewGlue_CheckInvariant() const { return CheckInvariant(); }

IViewBehavior* CViewImpl::CViewGlue_GetBehavior() { return fBehavior.get(); }

IWindow* CViewImpl::CViewGlue_GetMotherWindow() { return fMotherWindow; }

IView* CViewImpl::CViewGlue_GetSuperView() { return fSuperView.get(); }

bool CViewImpl::CViewGlue_IsEffectivelyEnabled() { return IsEffectivelyEnabled(); }

TViewParams CViewImpl::CViewGlue_GetParams() { return GetParams(); }

std::string CViewImpl::CViewGlue_GetDebugName() { return fDebugName; }

TString CViewImpl::CViewGlue_GetTooltipText() { return fTooltipText; }

}  // namespace NSMorvane
