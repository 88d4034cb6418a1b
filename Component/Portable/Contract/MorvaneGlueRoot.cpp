// The contract members of the root interface: run, debugging, texts.
#include <cstring>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"
#include "Component/Portable/Contract/MorvaneGlueRoot.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"

namespace NSMorvane {

// --- Life and debugging

CMorvaneGlue::CMorvaneGlue() {
  DebugPrint("CMorvaneGlue::CMorvaneGlue()");
  DebugIndentScope indent;
}

CMorvaneGlue::~CMorvaneGlue() {
  DebugPrint("CMorvaneGlue::~CMorvaneGlue()");
  DebugIndentScope indent;
}

bool CMorvaneGlue::IMorvane_CheckInvariant() const { return CMorvaneGlue_CheckInvariant(); }

TError CMorvaneGlue::IMorvane_SetDebugOutput(IDebugOutput* output) {
  gDebugOutput = output;
  return kOK;
}

TError CMorvaneGlue::IMorvane_SetDebugSettings(const TDebugSettings& settings) {
  MORVANE_REQUIRE("IMorvane_SetDebugSettings()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_SetDebugSettings()", ValidateDebugSettings(settings));
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_SetDebugSettings(settings); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_GetDebugSettings(TDebugSettings& outSettings) {
  MORVANE_REQUIRE("IMorvane_GetDebugSettings()", CMorvaneGlue_CheckInvariant());
  Poison(outSettings);
  TError outError;
  CallHook(outError, [&] { outSettings = CMorvaneGlue_GetDebugSettings(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateDebugSettings(outSettings));
  return outError;
}

// --- The run of the application

TError CMorvaneGlue::IMorvane_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) {
  MORVANE_REQUIRE("IMorvane_Run()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_Run()", ValidateStartupParams(params));
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_Run(behavior, params); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_GetBehavior(IMorvaneRunBehavior*& outBehavior) {
  MORVANE_REQUIRE("IMorvane_GetBehavior()", CMorvaneGlue_CheckInvariant());
  outBehavior = NULL;
  TError outError;
  CallHook(outError, [&] { outBehavior = CMorvaneGlue_GetBehavior(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  MORVANE_ASSERT(outBehavior != NULL);
  return outError;
}

TError CMorvaneGlue::IMorvane_GetBehavior(IMorvaneRunBehavior*& outBehavior) const {
  MORVANE_REQUIRE("IMorvane_GetBehavior()", CMorvaneGlue_CheckInvariant());
  outBehavior = NULL;
  TError outError;
  CallHook(outError, [&] { outBehavior = CMorvaneGlue_GetBehavior(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  MORVANE_ASSERT(outBehavior != NULL);
  return outError;
}

TError CMorvaneGlue::IMorvane_StartQuitting() {
  MORVANE_REQUIRE("IMorvane_StartQuitting()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_StartQuitting(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_StopQuitting() {
  MORVANE_REQUIRE("IMorvane_StopQuitting()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_StopQuitting(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_IsQuitting(TFlag& outIsQuittingFlag) {
  MORVANE_REQUIRE("IMorvane_IsQuitting()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { outIsQuittingFlag = CMorvaneGlue_IsQuitting() ? 1 : 0; });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_GetMonitors(TMonitorList& outMonitors) {
  MORVANE_REQUIRE("IMorvane_GetMonitors()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { outMonitors = CMorvaneGlue_GetMonitors(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateMonitors(outMonitors));
  return outError;
}

TError CMorvaneGlue::IMorvane_Yield() {
  MORVANE_REQUIRE("IMorvane_Yield()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_Yield(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_WakeUpIdle() {
  MORVANE_REQUIRE("IMorvane_WakeUpIdle()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_WakeUpIdle(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_PostAppMessage(std::uint32_t a, std::uint32_t b) {
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_PostAppMessage(a, b); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

// --- Texts and time

TError CMorvaneGlue::IMorvane_GetResourceString(const char* key, ITextReceiver& out) {
  MORVANE_REQUIRE("IMorvane_GetResourceString()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_GetResourceString()", key != NULL);
  MORVANE_REQUIRE("IMorvane_GetResourceString()", std::strlen(key) > 0);
  TError outError;
  CallHookForError(
      outError, [&] { return out.ITextReceiver_ReceiveText(CMorvaneGlue_GetResourceString(key).c_str()); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_GetCurrentMS(std::uint64_t& out) {
  MORVANE_REQUIRE("IMorvane_GetCurrentMS()", CMorvaneGlue_CheckInvariant());
  out = 0;
  TError outError;
  CallHook(outError, [&] { out = CMorvaneGlue_GetCurrentMS(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_ConvertMSToPrecisionTicks(std::uint64_t ms, std::uint64_t& out) {
  MORVANE_REQUIRE("IMorvane_ConvertMSToPrecisionTicks()", CMorvaneGlue_CheckInvariant());
  out = 0;
  TError outError;
  CallHook(outError, [&] { out = CMorvaneGlue_ConvertMSToPrecisionTicks(ms); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

// --- Platforms

TError CMorvaneGlue::IMorvane_GetMacExtensions(void*& outMacExtensions) {
  MORVANE_REQUIRE("IMorvane_GetMacExtensions()", CMorvaneGlue_CheckInvariant());
  outMacExtensions = NULL;
  TError outError;
  CallHook(outError, [&] { outMacExtensions = CMorvaneGlue_GetMacExtensions(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  MORVANE_ASSERT(outMacExtensions != NULL);
  return outError;
}

TError CMorvaneGlue::IMorvane_GetWinExtensions(IWinExtensions*& outWinExtensions) {
  MORVANE_REQUIRE("IMorvane_GetWinExtensions()", CMorvaneGlue_CheckInvariant());
  outWinExtensions = NULL;
  TError outError;
  CallHook(outError, [&] { outWinExtensions = CMorvaneGlue_GetWinExtensions(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  MORVANE_ASSERT(outWinExtensions != NULL);
  return outError;
}

}  // namespace NSMorvane
