// The contract classes of the four kinds of windows.
#pragma once

#include "Interface/Morvane.h"

namespace NSMorvane {

class CDocumentWindowGlue : public IDocumentWindow {
 public:
  CDocumentWindowGlue();
  ~CDocumentWindowGlue() override;

  bool IDocumentWindow_CheckInvariant() const override;
  TError IDocumentWindow_GetState(TDocumentWindowState& state) override;
  TError IDocumentWindow_SetState(const TDocumentWindowState& state) override;
  TError IDocumentWindow_GetWindow(IWindow*& outWindow) override;
  TError IDocumentWindow_GetModalOwner(IModalOwner*& out) override;
  TError IDocumentWindow_FocusNow() override;
  TError IDocumentWindow_GetBehavior(IDocumentWindowBehavior*& outBehavior) override;
  TError IDocumentWindow_Release() override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CDocumentWindowGlue_CheckInvariant() const { return false; }
  virtual TDocumentWindowState CDocumentWindowGlue_GetState() = 0;
  virtual void CDocumentWindowGlue_SetState(const TDocumentWindowState& state) = 0;
  virtual IWindow* CDocumentWindowGlue_GetWindow() = 0;
  virtual IModalOwner* CDocumentWindowGlue_GetModalOwner() = 0;
  virtual void CDocumentWindowGlue_FocusNow() = 0;
  virtual IDocumentWindowBehavior* CDocumentWindowGlue_GetBehavior() = 0;
  virtual void CDocumentWindowGlue_Release() = 0;
};

class CModelessDialogGlue : public IModelessDialog {
 public:
  CModelessDialogGlue();
  ~CModelessDialogGlue() override;

  bool IModelessDialog_CheckInvariant() const override;
  TError IModelessDialog_GetState(TModelessDialogState& state) override;
  TError IModelessDialog_SetState(const TModelessDialogState& state) override;
  TError IModelessDialog_GetWindow(IWindow*& outWindow) override;
  TError IModelessDialog_GetModalOwner(IModalOwner*& out) override;
  TError IModelessDialog_FocusNow() override;
  TError IModelessDialog_GetBehavior(IModelessDialogBehavior*& outBehavior) override;
  TError IModelessDialog_Release() override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CModelessDialogGlue_CheckInvariant() const { return false; }
  virtual TModelessDialogState CModelessDialogGlue_GetState() = 0;
  virtual void CModelessDialogGlue_SetState(const TModelessDialogState& state) = 0;
  virtual IWindow* CModelessDialogGlue_GetWindow() = 0;
  virtual IModalOwner* CModelessDialogGlue_GetModalOwner() = 0;
  virtual void CModelessDialogGlue_FocusNow() = 0;
  virtual IModelessDialogBehavior* CModelessDialogGlue_GetBehavior() = 0;
  virtual void CModelessDialogGlue_Release() = 0;
};

class CModalDialogGlue : public IModalDialog {
 public:
  CModalDialogGlue();
  ~CModalDialogGlue() override;

  bool IModalDialog_CheckInvariant() const override;
  TError IModalDialog_GetState(TModalDialogState& state) override;
  TError IModalDialog_SetState(const TModalDialogState& state) override;
  TError IModalDialog_GetWindow(IWindow*& outWindow) override;
  TError IModalDialog_GetModalOwner(IModalOwner*& out) override;
  TError IModalDialog_FocusNow() override;
  TError IModalDialog_GetBehavior(IModalDialogBehavior*& outBehavior) override;
  TError IModalDialog_Release() override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CModalDialogGlue_CheckInvariant() const { return false; }
  virtual TModalDialogState CModalDialogGlue_GetState() = 0;
  virtual void CModalDialogGlue_SetState(const TModalDialogState& state) = 0;
  virtual IWindow* CModalDialogGlue_GetWindow() = 0;
  virtual IModalOwner* CModalDialogGlue_GetModalOwner() = 0;
  virtual void CModalDialogGlue_FocusNow() = 0;
  virtual IModalDialogBehavior* CModalDialogGlue_GetBehavior() = 0;
  virtual void CModalDialogGlue_Release() = 0;
};

class CFloatingWindowGlue : public IFloatingWindow {
 public:
  CFloatingWindowGlue();
  ~CFloatingWindowGlue() override;

  bool IFloatingWindow_CheckInvariant() const override;
  TError IFloatingWindow_GetState(TFloatingWindowState& state) override;
  TError IFloatingWindow_SetState(const TFloatingWindowState& state) override;
  TError IFloatingWindow_GetWindow(IWindow*& outWindow) override;
  TError IFloatingWindow_FocusNow() override;
  TError IFloatingWindow_GetBehavior(IFloatingWindowBehavior*& outBehavior) override;
  TError IFloatingWindow_Release() override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CFloatingWindowGlue_CheckInvariant() const { return false; }
  virtual TFloatingWindowState CFloatingWindowGlue_GetState() = 0;
  virtual void CFloatingWindowGlue_SetState(const TFloatingWindowState& state) = 0;
  virtual IWindow* CFloatingWindowGlue_GetWindow() = 0;
  virtual void CFloatingWindowGlue_FocusNow() = 0;
  virtual IFloatingWindowBehavior* CFloatingWindowGlue_GetBehavior() = 0;
  virtual void CFloatingWindowGlue_Release() = 0;
};

}  // namespace NSMorvane
