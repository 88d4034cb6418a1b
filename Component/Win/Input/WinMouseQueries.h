// Where the mouse is, which window is under it, and who has captured it. On some systems each of these
// questions is costly, and one message raises them several times over: what cannot have changed since it was
// asked last is not asked again. All of it belongs to the main thread.
#pragma once

#include <windows.h>

#include <optional>

#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Platform/WinMsgEventListener.h"
#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

// True if nothing lies above `hwnd` at a point in its client coordinates. Child windows count as the window
// itself.
bool IsMouseOverWindow(HWND hwnd, const TPoint& point);

// A point of the screen in the client coordinates of a window.
TPoint ScreenToClientChecked(HWND hwnd, const TPoint& point);

// A message of the loop, from here to the end of its dispatch. The tick of a window then takes the position
// of the mouse from it, as long as that tells of no movement.
class CDispatchScope : CNotCopied {
 public:
  explicit CDispatchScope(const MSG& message);
  ~CDispatchScope();

 private:
  const MSG* fOuterMessage;
};

// The position of the mouse on the screen, for the handling of a message; nothing if it cannot be read.
std::optional<POINT> GetCursorForMessage(const TWinMessage& message);

// What a window has learned in the course of one message. It holds until a client is called, who may change
// all of it; what is changed while a view tells its hit rectangles is noticed with the next message.
class CMouseGlance {
 public:
  void Forget();
  bool IsOver(HWND hwnd, const TPoint& point);
  // Null: nobody has captured the mouse.
  HWND GetCaptureWindow();

 private:
  std::optional<bool> fIsOver;
  TPoint fPoint = {0, 0};
  std::optional<HWND> fCaptureWindow;
};

}  // namespace NSMorvane
