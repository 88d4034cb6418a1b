// One message of the mouse or the keyboard, as the window hands it to its dispatchers.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

// The cursor that goes before all others, or null.
extern HCURSOR gOverrideCursor;
// Shows it at once. With null, the next question for the shape brings the usual one back.
void SetOverrideCursor(HCURSOR cursor);

enum : std::int32_t { kNoButton = 0, kLeftButton = 1, kRightButton = 2 };

struct TMouseMessage {
  TPoint fPosition;          // in client coordinates
  std::int32_t fClickCount;  // 0, 1 or 2
  std::int32_t fButton;      // kNoButton, kLeftButton, kRightButton
  std::int32_t fWheelDelta;  // in the units of the platform, 120 to a notch
};

struct TWinKeyMessage {
  HWND fHwnd;
  std::uint8_t fVirtualKey;
  std::uint8_t fScanCode;
  bool fIsRepeat;  // of a key that is held
  bool fIsExtended;
};

// Nothing for messages that are no presses or releases of keys, and for the keys that drivers make up.
std::optional<TWinKeyMessage> MakeKeyMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// When the message that is being handled was sent, in milliseconds since the system started.
inline std::uint64_t GetMessageTimeMS() { return static_cast<std::uint32_t>(GetMessageTime()); }

}  // namespace NSMorvane
