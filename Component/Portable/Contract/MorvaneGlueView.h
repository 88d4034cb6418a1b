// The contract class of a view.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"
#include "Interface/MorvaneView.h"

namespace NSMorvane {

using NSTextPackage::TString;

class CViewGlue : public IView {
 public:
  TError IView_GetBehavior(IViewBehavior*& out) override;
  TError IView_GetMotherWindow(IWindow*& outWindow) override;
  TError IView_GetSuperView(IView*& out) override;
  TError IView_IsEffectivelyEnabled(TFlag& outEnabledFlag) override;
  TError IView_SetParams(const TViewParams& clientsParams) override;
  TError IView_GetParams(TViewParams& params) override;
  TError IView_GetDebugName(char* out) override;
  TError IView_GetTooltipText(TChar* out) override;
  TError IView_SetTooltipText(const TChar* text) override;
  TError IView_Offset(std::int32_t dx, std::int32_t dy) override;
  TError IView_GetSubViewOrder(IViewListReceiver& out) override;
  TError IView_SetSubViewOrder(IView* const* subViews, std::uint32_t count) override;
  TError IView_Release() override;

 protected:
  virtual boost::shared_ptr<void> KeepAlive() const { return {}; }
  virtual bool CViewGlue_CheckInvariant() const = 0;
  virtual IViewBehavior* CViewGlue_GetBehavior() = 0;
  virtual IWindow* CViewGlue_GetMotherWindow() = 0;
  virtual IView* CViewGlue_GetSuperView() = 0;
  virtual bool CViewGlue_IsEffectivelyEnabled() = 0;
  virtual void CViewGlue_SetParams(const TViewParams& params) = 0;
  virtual TViewParams CViewGlue_GetParams() = 0;
  virtual std::string CViewGlue_GetDebugName() = 0;
  virtual TString CViewGlue_GetTooltipText() = 0;
  virtual void CViewGlue_SetTooltipText(const TString& text) = 0;
  virtual void CViewGlue_Offset(std::int32_t dx, std::int32_t dy) = 0;
  virtual std::vector<IView*> CViewGlue_GetSubViewOrder() = 0;
  virtual void CViewGlue_SetSubViewOrder(const std::vector<IView*>& subViews) = 0;
  virtual void CViewGlue_Release() = 0;
};

}  // namespace NSMorvane
