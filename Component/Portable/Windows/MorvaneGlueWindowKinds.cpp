// The contract members of the four kinds of windows.
//
// Sic: GetState reports under the name of SetState, Release under that of FocusNow.
#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"

namespace NSMorvane {

// --- Document windows

CDocumentWindowGlue::CDocumentWindowGlue() {
  DebugPrint("CDocumentWindowGlue::CDocumentWindowGlue()");
  DebugIndentScope indent;
}

CDocumentWindowGlue::~CDocumentWindowGlue() {
  DebugPrint("CDocumentWindowGlue::~CDocumentWindowGlue()");
  DebugIndentScope indent;
}

bool CDocumentWindowGlue::IDocumentWindow_CheckInvariant() const {
  return CDocumentWindowGlue_CheckInvariant();
}

TError CDocumentWindowGlue::IDocumentWindow_GetState(TDocumentWindowState& state) {
  MORVANE_REQUIRE("IDocumentWindow_SetState()", CDocumentWindowGlue_CheckInvariant());
  Poison(state);
  TError outError;
  CallHook(outError, [&] { state = CDocumentWindowGlue_GetState(); });
  MORVANE_AFTER(CDocumentWindowGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateDocumentWindowState(state));
  return outError;
}

TError CDocumentWindowGlue::IDocumentWindow_SetState(const TDocumentWindowState& state) {
  MORVANE_REQUIRE("IDocumentWindow_SetState()", CDocumentWindowGlue_CheckInvariant());
  MORVANE_REQUIRE("IDocumentWindow_SetState()", ValidateDocumentWindowState(state));
  TError outError;
  CallHook(outError, [&] { CDocumentWindowGlue_SetState(state); });
  MORVANE_AFTER(CDocumentWindowGlue_CheckInvariant());
  return outError;
}

TError CDocumentWindowGlue::IDocumentWindow_GetWindow(IWindow*& outWindow) {
  MORVANE_REQUIRE("IDocumentWindow_GetWindow()", CDocumentWindowGlue_CheckInvariant());
  outWindow = NULL;
  TError outError;
  CallHook(outError, [&] { outWindow = CDocumentWindowGlue_GetWindow(); });
  MORVANE_AFTER(CDocumentWindowGlue_CheckInvariant());
  MORVANE_ASSERT(outWindow != NULL);
  return outError;
}

TError CDocumentWindowGlue::IDocumentWindow_GetModalOwner(IModalOwner*& out) {
  MORVANE_REQUIRE("IDocumentWindow_GetModalOwner()", CDocumentWindowGlue_CheckInvariant());
  out = NULL;
  TError outError;
  CallHook(outError, [&] { out = CDocumentWindowGlue_GetModalOwner(); });
  MORVANE_AFTER(CDocumentWindowGlue_CheckInvariant());
  return outError;
}

TError CDocumentWindowGlue::IDocumentWindow_FocusNow() {
  MORVANE_REQUIRE("IDocumentWindow_FocusNow()", CDocumentWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CDocumentWindowGlue_FocusNow(); });
  MORVANE_AFTER(CDocumentWindowGlue_CheckInvariant());
  return outError;
}

TError CDocumentWindowGlue::IDocumentWindow_GetBehavior(IDocumentWindowBehavior*& outBehavior) {
  MORVANE_REQUIRE("IDocumentWindow_GetBehavior()", CDocumentWindowGlue_CheckInvariant());
  outBehavior = NULL;
  TError outError;
  CallHook(outError, [&] { outBehavior = CDocumentWindowGlue_GetBehavior(); });
  MORVANE_AFTER(CDocumentWindowGlue_CheckInvariant());
  MORVANE_ASSERT(outBehavior != NULL);
  return outError;
}

// The object may be gone behind the call.

TError CDocumentWindowGlue::IDocumentWindow_Release() {
  MORVANE_REQUIRE("IDocumentWindow_FocusNow()", CDocumentWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CDocumentWindowGlue_Release(); });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

// --- Modeless dialogs

CModelessDialogGlue::CModelessDialogGlue() {
  DebugPrint("CModelessDialogGlue::CModelessDialogGlue()");
  DebugIndentScope indent;
}

CModelessDialogGlue::~CModelessDialogGlue() {
  DebugPrint("CModelessDialogGlue::~CModelessDialogGlue()");
  DebugIndentScope indent;
}

bool CModelessDialogGlue::IModelessDialog_CheckInvariant() const {
  return CModelessDialogGlue_CheckInvariant();
}

TError CModelessDialogGlue::IModelessDialog_GetState(TModelessDialogState& state) {
  MORVANE_REQUIRE("IModelessDialog_SetState()", CModelessDialogGlue_CheckInvariant());
  Poison(state);
  TError outError;
  CallHook(outError, [&] { state = CModelessDialogGlue_GetState(); });
  MORVANE_AFTER(CModelessDialogGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateModelessDialogState(state));
  return outError;
}

TError CModelessDialogGlue::IModelessDialog_SetState(const TModelessDialogState& state) {
  MORVANE_REQUIRE("IModelessDialog_SetState()", CModelessDialogGlue_CheckInvariant());
  MORVANE_REQUIRE("IModelessDialog_SetState()", ValidateModelessDialogState(state));
  TError outError;
  CallHook(outError, [&] { CModelessDialogGlue_SetState(state); });
  MORVANE_AFTER(CModelessDialogGlue_CheckInvariant());
  return outError;
}

TError CModelessDialogGlue::IModelessDialog_GetWindow(IWindow*& outWindow) {
  MORVANE_REQUIRE("IModelessDialog_GetWindow()", CModelessDialogGlue_CheckInvariant());
  outWindow = NULL;
  TError outError;
  CallHook(outError, [&] { outWindow = CModelessDialogGlue_GetWindow(); });
  MORVANE_AFTER(CModelessDialogGlue_CheckInvariant());
  MORVANE_ASSERT(outWindow != NULL);
  return outError;
}

TError CModelessDialogGlue::IModelessDialog_GetModalOwner(IModalOwner*& out) {
  MORVANE_REQUIRE("IModelessDialog_GetModalOwner()", CModelessDialogGlue_CheckInvariant());
  out = NULL;
  TError outError;
  CallHook(outError, [&] { out = CModelessDialogGlue_GetModalOwner(); });
  MORVANE_AFTER(CModelessDialogGlue_CheckInvariant());
  return outError;
}

TError CModelessDialogGlue::IModelessDialog_FocusNow() {
  MORVANE_REQUIRE("IModelessDialog_FocusNow()", CModelessDialogGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CModelessDialogGlue_FocusNow(); });
  MORVANE_AFTER(CModelessDialogGlue_CheckInvariant());
  return outError;
}

TError CModelessDialogGlue::IModelessDialog_GetBehavior(IModelessDialogBehavior*& outBehavior) {
  MORVANE_REQUIRE("IModelessDialog_GetBehavior()", CModelessDialogGlue_CheckInvariant());
  outBehavior = NULL;
  TError outError;
  CallHook(outError, [&] { outBehavior = CModelessDialogGlue_GetBehavior(); });
  MORVANE_AFTER(CModelessDialogGlue_CheckInvariant());
  MORVANE_ASSERT(outBehavior != NULL);
  return outError;
}

// The object may be gone behind the call.

TError CModelessDialogGlue::IModelessDialog_Release() {
  MORVANE_REQUIRE("IModelessDialog_FocusNow()", CModelessDialogGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CModelessDialogGlue_Release(); });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

// --- Modal dialogs

CModalDialogGlue::CModalDialogGlue() {
  DebugPrint("CModalDialogGlue::CModalDialogGlue()");
  DebugIndentScope indent;
}

CModalDialogGlue::~CModalDialogGlue() {
  DebugPrint("CModalDialogGlue::~CModalDialogGlue()");
  DebugIndentScope indent;
}

bool CModalDialogGlue::IModalDialog_CheckInvariant() const { return CModalDialogGlue_CheckInvariant(); }

TError CModalDialogGlue::IModalDialog_GetState(TModalDialogState& state) {
  MORVANE_REQUIRE("IModalDialog_SetState()", CModalDialogGlue_CheckInvariant());
  Poison(state);
  TError outError;
  CallHook(outError, [&] { state = CModalDialogGlue_GetState(); });
  MORVANE_AFTER(CModalDialogGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateModalDialogState(state));
  return outError;
}

TError CModalDialogGlue::IModalDialog_SetState(const TModalDialogState& state) {
  MORVANE_REQUIRE("IModalDialog_SetState()", CModalDialogGlue_CheckInvariant());
  MORVANE_REQUIRE("IModalDialog_SetState()", ValidateModalDialogState(state));
  TError outError;
  CallHook(outError, [&] { CModalDialogGlue_SetState(state); });
  MORVANE_AFTER(CModalDialogGlue_CheckInvariant());
  return outError;
}

TError CModalDialogGlue::IModalDialog_GetWindow(IWindow*& outWindow) {
  MORVANE_REQUIRE("IModalDialog_GetWindow()", CModalDialogGlue_CheckInvariant());
  outWindow = NULL;
  TError outError;
  CallHook(outError, [&] { outWindow = CModalDialogGlue_GetWindow(); });
  MORVANE_AFTER(CModalDialogGlue_CheckInvariant());
  MORVANE_ASSERT(outWindow != NULL);
  return outError;
}

TError CModalDialogGlue::IModalDialog_GetModalOwner(IModalOwner*& out) {
  MORVANE_REQUIRE("IModalDialog_GetModalOwner()", CModalDialogGlue_CheckInvariant());
  out = NULL;
  TError outError;
  CallHook(outError, [&] { out = CModalDialogGlue_GetModalOwner(); });
  MORVANE_AFTER(CModalDialogGlue_CheckInvariant());
  return outError;
}

TError CModalDialogGlue::IModalDialog_FocusNow() {
  MORVANE_REQUIRE("IModalDialog_FocusNow()", CModalDialogGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CModalDialogGlue_FocusNow(); });
  MORVANE_AFTER(CModalDialogGlue_CheckInvariant());
  return outError;
}

TError CModalDialogGlue::IModalDialog_GetBehavior(IModalDialogBehavior*& outBehavior) {
  MORVANE_REQUIRE("IModalDialog_GetBehavior()", CModalDialogGlue_CheckInvariant());
  outBehavior = NULL;
  TError outError;
  CallHook(outError, [&] { outBehavior = CModalDialogGlue_GetBehavior(); });
  MORVANE_AFTER(CModalDialogGlue_CheckInvariant());
  MORVANE_ASSERT(outBehavior != NULL);
  return outError;
}

// The object may be gone behind the call.

TError CModalDialogGlue::IModalDialog_Release() {
  MORVANE_REQUIRE("IModalDialog_FocusNow()", CModalDialogGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CModalDialogGlue_Release(); });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

// --- Floating windows

CFloatingWindowGlue::CFloatingWindowGlue() {
  DebugPrint("CFloatingWindowGlue::CFloatingWindowGlue()");
  DebugIndentScope indent;
}

CFloatingWindowGlue::~CFloatingWindowGlue() {
  DebugPrint("CFloatingWindowGlue::~CFloatingWindowGlue()");
  DebugIndentScope indent;
}

bool CFloatingWindowGlue::IFloatingWindow_CheckInvariant() const {
  return CFloatingWindowGlue_CheckInvariant();
}

TError CFloatingWindowGlue::IFloatingWindow_GetState(TFloatingWindowState& state) {
  MORVANE_REQUIRE("IFloatingWindow_SetState()", CFloatingWindowGlue_CheckInvariant());
  Poison(state);
  TError outError;
  CallHook(outError, [&] { state = CFloatingWindowGlue_GetState(); });
  MORVANE_AFTER(CFloatingWindowGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateFloatingWindowState(state));
  return outError;
}

TError CFloatingWindowGlue::IFloatingWindow_SetState(const TFloatingWindowState& state) {
  MORVANE_REQUIRE("IFloatingWindow_SetState()", CFloatingWindowGlue_CheckInvariant());
  MORVANE_REQUIRE("IFloatingWindow_SetState()", ValidateFloatingWindowState(state));
  TError outError;
  CallHook(outError, [&] { CFloatingWindowGlue_SetState(state); });
  MORVANE_AFTER(CFloatingWindowGlue_CheckInvariant());
  return outError;
}

TError CFloatingWindowGlue::IFloatingWindow_GetWindow(IWindow*& outWindow) {
  MORVANE_REQUIRE("IFloatingWindow_GetWindow()", CFloatingWindowGlue_CheckInvariant());
  outWindow = NULL;
  TError outError;
  CallHook(outError, [&] { outWindow = CFloatingWindowGlue_GetWindow(); });
  MORVANE_AFTER(CFloatingWindowGlue_CheckInvariant());
  MORVANE_ASSERT(outWindow != NULL);
  return outError;
}

TError CFloatingWindowGlue::IFloatingWindow_FocusNow() {
  MORVANE_REQUIRE("IFloatingWindow_FocusNow()", CFloatingWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CFloatingWindowGlue_FocusNow(); });
  MORVANE_AFTER(CFloatingWindowGlue_CheckInvariant());
  return outError;
}

TError CFloatingWindowGlue::IFloatingWindow_GetBehavior(IFloatingWindowBehavior*& outBehavior) {
  MORVANE_REQUIRE("IFloatingWindow_GetBehavior()", CFloatingWindowGlue_CheckInvariant());
  outBehavior = NULL;
  TError outError;
  CallHook(outError, [&] { outBehavior = CFloatingWindowGlue_GetBehavior(); });
  MORVANE_AFTER(CFloatingWindowGlue_CheckInvariant());
  MORVANE_ASSERT(outBehavior != NULL);
  return outError;
}

// The object may be gone behind the call.

TError CFloatingWindowGlue::IFloatingWindow_Release() {
  MORVANE_REQUIRE("IFloatingWindow_FocusNow()", CFloatingWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CFloatingWindowGlue_Release(); });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

}  // namespace NSMorvane
