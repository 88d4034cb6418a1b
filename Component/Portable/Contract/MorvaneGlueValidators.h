// The validators of the contract layer: free functions that test a record or a value of the client's.
//
// Each reports the assertion "false" at the test that fails, so that its position tells which rule was
// broken, and returns false. None changes anything, and none reads a fixed array past its end.
#pragma once

#include "Interface/Morvane.h"

namespace NSMorvane {

bool ValidateDebugSettings(const TDebugSettings& settings);
bool ValidateStartupParams(const TStartupParams& params);
bool ValidateMonitors(const TMonitorList& monitors);
bool ValidateShortcutModifiers(TShortcutModifiers mods);
bool ValidateModifierKeys(const TModifierKeys& mods);
// Accepts everything.
bool ValidatePhysicalKeySpec(const TPhysicalKeySpec& spec);
bool ValidateKeyInterpretation(const TKeyInterpretation& interpretation);
bool ValidateBuiltinIcon(TBuiltinIcon icon);
// Reports nothing of its own.
bool IsValidBuiltInMouseShape(TBuiltInMouseShape shape);
bool ValidateDocumentWindowStyleFlags(TStyleFlags flags);
bool ValidateModelessDialogStyleFlags(TStyleFlags flags);
bool ValidateModalDialogStyleFlags(TStyleFlags flags);
bool ValidateFloatingWindowStyleFlags(TStyleFlags flags);
bool ValidateAlertSpec(const TAlertSpec& spec);
// Reports nothing of its own.
bool ValidateCloseReason(TCloseReason reason);
// Defined in the platform half.
bool IsValidNativeWindow(const TNativeWindow& window);

bool ValidateViewParams(const TViewParams& params);
bool ValidateDocumentWindowState(const TDocumentWindowState& state);
bool ValidateModelessDialogState(const TModelessDialogState& state);
bool ValidateModalDialogState(const TModalDialogState& state);
bool ValidateFloatingWindowState(const TFloatingWindowState& state);

}  // namespace NSMorvane
