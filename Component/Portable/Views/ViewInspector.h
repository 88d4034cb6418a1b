// What the view inspector tells of the view under the mouse: its description, which is lent to it as a
// tooltip, and the part of it that is seen. How that is drawn is the window's business.
#pragma once

#include <boost/weak_ptr.hpp>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Component/Portable/Views/ViewImpl.h"

namespace NSMorvane {

// The front-most live view below `rootView` whose rectangle holds the point and none of whose subviews' does.
// Null if no subview of the root view holds it. Only rectangles count, so no behaviour is called.
TViewImplPtr FindLeafView(const CViewImpl& rootView, const TPoint& point);

// The debug name as text; what is not UTF-8 is read as ASCII.
TString DebugNameText(const CViewImpl& view);

// Several lines: name, addresses, rectangle, flags, kind of invalidation, super views.
TString DescribeView(const CViewImpl& view);

// The part of the view's rectangle that lies in all its super views, and that neither the siblings in front
// of it nor its own subviews cover.
CRegion FindVisibleRegion(const CViewImpl& view);

// Knows which view is inspected. As long as one is, its tooltip is its description. Its own tooltip comes
// back when another view is inspected, or none. If the client has set another text meanwhile, that one stays.
class CViewInspector : CNotCopied {
 public:
  // Inspects this view from now on; null for none. True if it is another one than before. Setting a tooltip
  // calls the view's behaviour, which may end views and the window, so the caller holds the window.
  bool Inspect(const TViewImplPtr& view);
  // Null if none is inspected, or if it has ended.
  TViewImplPtr GetView() const { return fView.lock(); }
  // True if no view is inspected and no tooltip waits for its own text: Inspect(nullptr) would do nothing.
  bool IsIdle() const { return fLentText.empty() && fView.expired(); }

 private:
  void Lend(const TViewImplPtr& view);
  void TakeBack(const TViewImplPtr& borrower);

  boost::weak_ptr<CViewImpl> fView;
  boost::weak_ptr<CViewImpl> fBorrower;  // the view that has a description as its tooltip
  TString fLentText;                     // this description; empty if nothing is lent
  TString fOwnText;                      // the view's own tooltip
  bool fIsToLend = false;                // the view has not been asked yet to take its description
};

}  // namespace NSMorvane
