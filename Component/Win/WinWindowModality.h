// Dialogs that block the whole application: the stack of them, and the order of windows that follows from it.
#pragma once

#include <windows.h>

#include <vector>

namespace NSMorvane {

// The dialogs that block the application, the newest, which is the one that can be used, at the front.
extern std::vector<HWND> gAppModalDialogStack;

void PushAppModal(HWND hWnd);
// Nothing for a window that is not on the stack.
void PopAppModal(HWND hWnd);

// Disables the library's windows under the front of the stack.
void EnforceAppModality();
// Puts the windows in modal order and activates the front one.
void RefreshAppModality();

// A window is about to be activated, or has been clicked; true if the message that told so must be swallowed.
bool OnModalActivationAttempt(HWND hWnd);
bool OnModalClickAttempt(HWND hWnd);

// Whether any shown window of the library is always on top.
bool AnyShownWindowIsAlwaysOnTop();

}  // namespace NSMorvane
