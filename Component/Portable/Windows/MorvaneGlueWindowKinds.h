// The contract classes of the four kinds of windows.
//
// Their members differ only in their names. What a member does is written once, in the macros; a class lists
// the names of its kind. `Kind` is the part that all names of a kind have in common. A macro stands for the
// whole body of its member, and uses the member's parameters by their names in the interface.
//
// Sic: GetState reports under the name of SetState, and Release under that of FocusNow.
#pragma once

#include <boost/shared_ptr.hpp>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

#define MORVANE_KIND_LIFE(text) \
  DebugPrint(text);             \
  DebugIndentScope indent

#define MORVANE_KIND_GET_STATE(Kind)                                      \
  MORVANE_ENTER("I" #Kind "_SetState()", C##Kind##Glue_CheckInvariant()); \
  Poison(state);                                                          \
  TError outError;                                                        \
  CallHook(outError, [&] { state = C##Kind##Glue_GetState(); });          \
  MORVANE_AFTER(C##Kind##Glue_CheckInvariant());                          \
  if (outError == kOK) MORVANE_ASSERT(Validate##Kind##State(state));      \
  return outError

#define MORVANE_KIND_SET_STATE(Kind)                                      \
  MORVANE_ENTER("I" #Kind "_SetState()", C##Kind##Glue_CheckInvariant()); \
  MORVANE_REQUIRE("I" #Kind "_SetState()", Validate##Kind##State(state)); \
  TError outError;                                                        \
  CallHook(outError, [&] { C##Kind##Glue_SetState(state); });             \
  MORVANE_AFTER(C##Kind##Glue_CheckInvariant());                          \
  return outError

#define MORVANE_KIND_GET_WINDOW(Kind)                                      \
  MORVANE_ENTER("I" #Kind "_GetWindow()", C##Kind##Glue_CheckInvariant()); \
  outWindow = NULL;                                                        \
  TError outError;                                                         \
  CallHook(outError, [&] { outWindow = C##Kind##Glue_GetWindow(); });      \
  MORVANE_AFTER(C##Kind##Glue_CheckInvariant());                           \
  MORVANE_ASSERT(outWindow != NULL);                                       \
  return outError

#define MORVANE_KIND_GET_MODAL_OWNER(Kind)                                     \
  MORVANE_ENTER("I" #Kind "_GetModalOwner()", C##Kind##Glue_CheckInvariant()); \
  out = NULL;                                                                  \
  TError outError;                                                             \
  CallHook(outError, [&] { out = C##Kind##Glue_GetModalOwner(); });            \
  MORVANE_AFTER(C##Kind##Glue_CheckInvariant());                               \
  return outError

#define MORVANE_KIND_FOCUS_NOW(Kind)                                      \
  MORVANE_ENTER("I" #Kind "_FocusNow()", C##Kind##Glue_CheckInvariant()); \
  TError outError;                                                        \
  CallHook(outError, [&] { C##Kind##Glue_FocusNow(); });                  \
  MORVANE_AFTER(C##Kind##Glue_CheckInvariant());                          \
  return outError

#define MORVANE_KIND_GET_BEHAVIOR(Kind)                                      \
  MORVANE_ENTER("I" #Kind "_GetBehavior()", C##Kind##Glue_CheckInvariant()); \
  outBehavior = NULL;                                                        \
  TError outError;                                                           \
  CallHook(outError, [&] { outBehavior = C##Kind##Glue_GetBehavior(); });    \
  MORVANE_AFTER(C##Kind##Glue_CheckInvariant());                             \
  MORVANE_ASSERT(outBehavior != NULL);                                       \
  return outError

// The object is not kept alive, and may be gone after the call.
#define MORVANE_KIND_RELEASE(Kind)                                          \
  MORVANE_REQUIRE("I" #Kind "_FocusNow()", C##Kind##Glue_CheckInvariant()); \
  TError outError;                                                          \
  CallHook(outError, [&] { C##Kind##Glue_Release(); });                     \
  MORVANE_ASSERT(IsValidError(outError));                                   \
  return outError

// The defaults of KeepAlive and CheckInvariant apply when the derived classes have been destroyed: what is
// left of the object is unsound.

class CDocumentWindowGlue : public IDocumentWindow {
 public:
  CDocumentWindowGlue() { MORVANE_KIND_LIFE("CDocumentWindowGlue::CDocumentWindowGlue()"); }
  ~CDocumentWindowGlue() override { MORVANE_KIND_LIFE("CDocumentWindowGlue::~CDocumentWindowGlue()"); }

  bool IDocumentWindow_CheckInvariant() const override { return CDocumentWindowGlue_CheckInvariant(); }
  TError IDocumentWindow_GetState(TDocumentWindowState& state) override {
    MORVANE_KIND_GET_STATE(DocumentWindow);
  }
  TError IDocumentWindow_SetState(const TDocumentWindowState& state) override {
    MORVANE_KIND_SET_STATE(DocumentWindow);
  }
  TError IDocumentWindow_GetWindow(IWindow*& outWindow) override { MORVANE_KIND_GET_WINDOW(DocumentWindow); }
  TError IDocumentWindow_GetModalOwner(IModalOwner*& out) override {
    MORVANE_KIND_GET_MODAL_OWNER(DocumentWindow);
  }
  TError IDocumentWindow_FocusNow() override { MORVANE_KIND_FOCUS_NOW(DocumentWindow); }
  TError IDocumentWindow_GetBehavior(IDocumentWindowBehavior*& outBehavior) override {
    MORVANE_KIND_GET_BEHAVIOR(DocumentWindow);
  }
  TError IDocumentWindow_Release() override { MORVANE_KIND_RELEASE(DocumentWindow); }

 protected:
  virtual boost::shared_ptr<void> KeepAlive() const { return {}; }
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
  CModelessDialogGlue() { MORVANE_KIND_LIFE("CModelessDialogGlue::CModelessDialogGlue()"); }
  ~CModelessDialogGlue() override { MORVANE_KIND_LIFE("CModelessDialogGlue::~CModelessDialogGlue()"); }

  bool IModelessDialog_CheckInvariant() const override { return CModelessDialogGlue_CheckInvariant(); }
  TError IModelessDialog_GetState(TModelessDialogState& state) override {
    MORVANE_KIND_GET_STATE(ModelessDialog);
  }
  TError IModelessDialog_SetState(const TModelessDialogState& state) override {
    MORVANE_KIND_SET_STATE(ModelessDialog);
  }
  TError IModelessDialog_GetWindow(IWindow*& outWindow) override { MORVANE_KIND_GET_WINDOW(ModelessDialog); }
  TError IModelessDialog_GetModalOwner(IModalOwner*& out) override {
    MORVANE_KIND_GET_MODAL_OWNER(ModelessDialog);
  }
  TError IModelessDialog_FocusNow() override { MORVANE_KIND_FOCUS_NOW(ModelessDialog); }
  TError IModelessDialog_GetBehavior(IModelessDialogBehavior*& outBehavior) override {
    MORVANE_KIND_GET_BEHAVIOR(ModelessDialog);
  }
  TError IModelessDialog_Release() override { MORVANE_KIND_RELEASE(ModelessDialog); }

 protected:
  virtual boost::shared_ptr<void> KeepAlive() const { return {}; }
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
  CModalDialogGlue() { MORVANE_KIND_LIFE("CModalDialogGlue::CModalDialogGlue()"); }
  ~CModalDialogGlue() override { MORVANE_KIND_LIFE("CModalDialogGlue::~CModalDialogGlue()"); }

  bool IModalDialog_CheckInvariant() const override { return CModalDialogGlue_CheckInvariant(); }
  TError IModalDialog_GetState(TModalDialogState& state) override { MORVANE_KIND_GET_STATE(ModalDialog); }
  TError IModalDialog_SetState(const TModalDialogState& state) override {
    MORVANE_KIND_SET_STATE(ModalDialog);
  }
  TError IModalDialog_GetWindow(IWindow*& outWindow) override { MORVANE_KIND_GET_WINDOW(ModalDialog); }
  TError IModalDialog_GetModalOwner(IModalOwner*& out) override { MORVANE_KIND_GET_MODAL_OWNER(ModalDialog); }
  TError IModalDialog_FocusNow() override { MORVANE_KIND_FOCUS_NOW(ModalDialog); }
  TError IModalDialog_GetBehavior(IModalDialogBehavior*& outBehavior) override {
    MORVANE_KIND_GET_BEHAVIOR(ModalDialog);
  }
  TError IModalDialog_Release() override { MORVANE_KIND_RELEASE(ModalDialog); }

 protected:
  virtual boost::shared_ptr<void> KeepAlive() const { return {}; }
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
  CFloatingWindowGlue() { MORVANE_KIND_LIFE("CFloatingWindowGlue::CFloatingWindowGlue()"); }
  ~CFloatingWindowGlue() override { MORVANE_KIND_LIFE("CFloatingWindowGlue::~CFloatingWindowGlue()"); }

  bool IFloatingWindow_CheckInvariant() const override { return CFloatingWindowGlue_CheckInvariant(); }
  TError IFloatingWindow_GetState(TFloatingWindowState& state) override {
    MORVANE_KIND_GET_STATE(FloatingWindow);
  }
  TError IFloatingWindow_SetState(const TFloatingWindowState& state) override {
    MORVANE_KIND_SET_STATE(FloatingWindow);
  }
  TError IFloatingWindow_GetWindow(IWindow*& outWindow) override { MORVANE_KIND_GET_WINDOW(FloatingWindow); }
  TError IFloatingWindow_FocusNow() override { MORVANE_KIND_FOCUS_NOW(FloatingWindow); }
  TError IFloatingWindow_GetBehavior(IFloatingWindowBehavior*& outBehavior) override {
    MORVANE_KIND_GET_BEHAVIOR(FloatingWindow);
  }
  TError IFloatingWindow_Release() override { MORVANE_KIND_RELEASE(FloatingWindow); }

 protected:
  virtual boost::shared_ptr<void> KeepAlive() const { return {}; }
  virtual bool CFloatingWindowGlue_CheckInvariant() const { return false; }
  virtual TFloatingWindowState CFloatingWindowGlue_GetState() = 0;
  virtual void CFloatingWindowGlue_SetState(const TFloatingWindowState& state) = 0;
  virtual IWindow* CFloatingWindowGlue_GetWindow() = 0;
  virtual void CFloatingWindowGlue_FocusNow() = 0;
  virtual IFloatingWindowBehavior* CFloatingWindowGlue_GetBehavior() = 0;
  virtual void CFloatingWindowGlue_Release() = 0;
};

#undef MORVANE_KIND_LIFE
#undef MORVANE_KIND_GET_STATE
#undef MORVANE_KIND_SET_STATE
#undef MORVANE_KIND_GET_WINDOW
#undef MORVANE_KIND_GET_MODAL_OWNER
#undef MORVANE_KIND_FOCUS_NOW
#undef MORVANE_KIND_GET_BEHAVIOR
#undef MORVANE_KIND_RELEASE

}  // namespace NSMorvane
