// The contract class of a window, of whatever kind.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <vector>

#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

class CViewImpl;

class CWindowGlue : public IWindow {
 public:
  CWindowGlue();
  ~CWindowGlue() override;

  TError IWindow_GetNativeWindow(TNativeWindow& outNativeWindow) override;
  TError IWindow_GetOnDutyFocusView(IView*& out) override;
  TError IWindow_GetConceptualFocusView(IView*& out) override;
  TError IWindow_SetConceptualFocusView(IView* newConceptualFocusView) override;
  TError IWindow_GetTabViews(IViewListReceiver& out) override;
  TError IWindow_SetTabViews(IView* const* tabViews, std::uint32_t count) override;
  TError IWindow_GetRootView(IView*& outRootView) override;
  TError IWindow_IsActive(TFlag& outActiveFlag) override;
  TError IWindow_GetFrameRect(TRect& out) override;
  TError IWindow_FrameRectToClientRect(const TRect& in, TRect& out) override;
  TError IWindow_ClientRectToFrameRect(const TRect& in, TRect& out) override;
  TError IWindow_GetGlobalAlpha(std::uint8_t& outAlpha) override;
  TError IWindow_SetGlobalAlpha(std::uint8_t alpha) override;

 protected:
  // These defaults apply when the derived classes have been destroyed: what is left of the object is unsound.
  virtual boost::shared_ptr<void> KeepAlive() const { return {}; }
  virtual bool CWindowGlue_CheckInvariant() const { return false; }
  virtual TNativeWindow CWindowGlue_GetNativeWindow() = 0;
  virtual CViewImpl* CWindowGlue_GetOnDutyFocusView() = 0;
  virtual CViewImpl* CWindowGlue_GetConceptualFocusView() = 0;
  virtual void CWindowGlue_SetConceptualFocusView(CViewImpl* view) = 0;
  virtual std::vector<CViewImpl*> CWindowGlue_GetTabViews() = 0;
  virtual void CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& tabViews) = 0;
  virtual CViewImpl* CWindowGlue_GetRootView() = 0;
  virtual bool CWindowGlue_IsActive() = 0;
  virtual TRect CWindowGlue_GetFrameRect() = 0;
  virtual TRect CWindowGlue_FrameRectToClientRect(const TRect& rect) = 0;
  virtual TRect CWindowGlue_ClientRectToFrameRect(const TRect& rect) = 0;
  virtual std::uint8_t CWindowGlue_GetGlobalAlpha() = 0;
  virtual void CWindowGlue_SetGlobalAlpha(std::uint8_t alpha) = 0;
};

// Whether no view is listed twice, none is null, and all are below the root view of `window`.
bool AreValidTabViews(const std::vector<CViewImpl*>& tabViews, IWindow* window);

}  // namespace NSMorvane
