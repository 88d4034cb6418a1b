// The window as the view tree sees it. All windows implement both classes, which the client does not see.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <vector>

#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

using NSTextPackage::TString;

class CViewImpl;

// Focus and tab order.
class IImplFocusTools {
 public:
  // Both return the same view, whether the window is active or not: the one that will have the focus after
  // the change in progress.
  virtual CViewImpl* IImplFocusTools_GetOnDutyFocusView() = 0;
  virtual CViewImpl* IImplFocusTools_GetConceptualFocusView() = 0;
  virtual void IImplFocusTools_SetConceptualFocusView(CViewImpl* view) = 0;
  virtual void IImplFocusTools_GetTabViews(std::vector<CViewImpl*>& out) = 0;
  // Does nothing if the view is in no tab order. A view that ends depends on it, so it cannot fail.
  virtual void IImplFocusTools_RemoveTabView(const CViewImpl* view) noexcept = 0;
  // Keeps the window in memory for as long as it is held: behaviours may end it from their callbacks.
  virtual boost::shared_ptr<void> IImplFocusTools_KeepAlive() = 0;

 protected:
  virtual ~IImplFocusTools() = default;
};

// Painting and tooltips.
class IViewWindow {
 public:
  // Request that this part of the screen is painted again, in client coordinates.
  virtual void InvalidateRect(const TRect& rect) = 0;
  virtual void InvalidateRegion(const CRegion& region) = 0;
  // What is requested between these two calls may be passed on to the system at once, with the second. Nobody
  // outside the library is called in between.
  virtual void BeginInvalidations() = 0;
  virtual void EndInvalidations() noexcept = 0;
  // A view has moved: the tooltips follow at the next tick.
  virtual void MarkToolRectsDirty() = 0;
  // A number that stands for the tooltip, 0 on failure.
  virtual std::uint32_t AddTool(CViewImpl& view, const TString& text) = 0;
  virtual void UpdateToolText(std::uint32_t tool, CViewImpl& view, const TString& text) = 0;
  virtual void RemoveTool(std::uint32_t tool, CViewImpl& view) = 0;

 protected:
  virtual ~IViewWindow() = default;
};

}  // namespace NSMorvane
