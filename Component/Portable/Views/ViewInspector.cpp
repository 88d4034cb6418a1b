#include "Component/Portable/Views/ViewInspector.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Interface/MorvaneView.h"

namespace NSMorvane {

namespace {

// As many hexadecimal digits as an address has.
TString AddressText(const void* address) {
  constexpr int kDigits = 2 * sizeof(address);
  char text[kDigits + 1];
  std::snprintf(text, sizeof(text), "%0*" PRIXPTR, kDigits, reinterpret_cast<std::uintptr_t>(address));
  return NSTextPackage::ASCIIToString(text, u'?');
}

// The address under which the client knows the view.
TString ViewAddressText(const CViewImpl& view) { return AddressText(static_cast<const IView*>(&view)); }

TString RectText(const TRect& rect) {
  TString text = u"{";
  for (const std::int32_t edge : {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom})
    text += (text.size() > 1 ? u", " : u"") + NSTextPackage::NumberToString(edge);
  return text + u"}";
}

TString FlagsText(std::uint32_t flags) {
  const TString enabled = flags & kViewEnabled ? u"Enabled, " : u"Disabled, ";
  const TString focusable = flags & kViewFocusable ? u"Focusable, " : u"Non-focusable, ";
  return enabled + focusable + (flags & kViewMouseTrackable ? u"Mouse trackable" : u"Non-mouse trackable");
}

const TChar* AutoInvalidationText(TAutoInvalidation mode) {
  switch (mode) {
    case kAutoInvalidationNone:
      return u"none";
    case kAutoInvalidationFull:
      return u"all";
    case kAutoInvalidationDifference:
      return u"difference";
    case kAutoInvalidationDifferenceTopLeft:
      return u"difference, top-left anchor";
    default:
      MORVANE_UNREACHED();
      return u"";
  }
}

}  // namespace

// --- Views

TViewImplPtr FindLeafView(const CViewImpl& rootView, const TPoint& point) {
  if (!IsPointInRect(point, rootView.GetBounds())) return nullptr;
  TViewImplPtr leaf;
  for (const CViewImpl* view = &rootView;; view = leaf.get()) {
    const std::vector<CViewImpl*>& subViews = view->GetRawSubViews();
    const auto found = std::find_if(subViews.rbegin(), subViews.rend(), [&](const CViewImpl* subView) {
      return IsPointInRect(point, subView->GetBounds()) && subView->IsLive();
    });
    if (found == subViews.rend()) return leaf;
    leaf = (*found)->GetClientsViewReference();
  }
}

CRegion FindVisibleRegion(const CViewImpl& view) {
  CRegion visible(view.GetClipBounds());
  const auto subtract = [&](const CViewImpl* other) {
    if (other->IsLive()) visible.SubtractRect(other->GetBounds());
  };
  if (const CViewImpl* const superView = view.GetSuperView().get()) {
    const std::vector<CViewImpl*>& siblings = superView->GetRawSubViews();
    for (auto sibling = siblings.rbegin(); sibling != siblings.rend() && *sibling != &view; ++sibling)
      subtract(*sibling);
  }
  for (const CViewImpl* const subView : view.GetRawSubViews()) subtract(subView);
  return visible;
}

// --- Texts

TString DebugNameText(const CViewImpl& view) {
  try {
    return NSTextPackage::UTF8ToString(view.GetDebugName());
  } catch (const NSTextPackage::XIllegalTextFormat&) {
    return NSTextPackage::ASCIIToString(view.GetDebugName(), u'?');
  }
}

TString DescribeView(const CViewImpl& view) {
  const TViewParams params = view.GetParams();
  TString text = DebugNameText(view);
  if (!text.empty()) text += u'\n';
  text += u"View: " + ViewAddressText(view) + u'\n';
  text += u"Behavior: " + AddressText(view.GetBehavior()) + u'\n';
  text += u"Clip bounds: " + RectText(params.fRect) + u'\n';
  text += u"View flags: " + FlagsText(params.fFlags) + u'\n';
  text += TString(u"Auto-invalidation mode: ") + AutoInvalidationText(params.fAutoInvalidation);
  TString separator = u"\nSuper views: ";
  for (const CViewImpl* super = view.GetSuperView().get(); super; super = super->GetSuperView().get()) {
    const TString name = DebugNameText(*super);
    text += separator + (name.empty() ? name : name + u' ') + ViewAddressText(*super);
    separator = u", ";
  }
  return text;
}

// --- The inspector

bool CViewInspector::Inspect(const TViewImplPtr& view) {
  const TViewImplPtr borrower = fBorrower.lock();
  if (!borrower || borrower != view) TakeBack(borrower);
  const bool isOther = fView.lock() != view;
  if (isOther) fIsToLend = view != nullptr;
  fView = view;
  // As long as another view keeps its description, this one waits.
  if (view && fLentText.empty() && std::exchange(fIsToLend, false)) Lend(view);
  return isOther;
}

// A view that refuses a tooltip is inspected without one.
void CViewInspector::Lend(const TViewImplPtr& view) {
  TString ownText = view->GetTooltipText();
  TString description = DescribeView(*view);
  // Not more than a client can read back.
  description.resize(std::min<std::size_t>(description.size(), kTooltipTextChars));
  if (!view->IsLive() || view->IView_SetTooltipText(description.c_str()) != kOK) return;
  fBorrower = view;
  fLentText.swap(description);
  fOwnText.swap(ownText);
}

// If the view has ended there is nothing to take back. If it refuses its own text, the next look tries again.
void CViewInspector::TakeBack(const TViewImplPtr& borrower) {
  if (borrower && borrower->GetTooltipText() == fLentText &&
      borrower->IView_SetTooltipText(fOwnText.c_str()) != kOK)
    return;
  fBorrower.reset();
  fLentText.clear();
  fOwnText.clear();
}

}  // namespace NSMorvane
