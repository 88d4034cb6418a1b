// Where the mouse is, which window is under it, and who has captured it. On some systems each of these
// questions is costly, and one message may ask it several times, so an answer that cannot have changed is
// kept. All of it belongs to the main thread.
#pragma once

#include <windows.h>

#include <optional>

#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Platform/WinMsgEventListener.h"
#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

// True if no other window lies above `hwnd` at a point in its client coordinates. Child windows count as the
// window itself.
bool IsMouseOverWindow(HWND hwnd, const TPoint& point);

// Converts screen coordinates into client coordinates of a window.
TPoint ScreenToClientChecked(HWND hwnd, const TPoint& point);

// Marks a message as dispatched by the loop, for as long as this object lives. The tick of a window then
// takes the position of the mouse from it, as long as that shows no movement.
class CDispatchScope : CNotCopied {
 public:
  explicit CDispatchScope(const MSG& message);
  ~CDispatchScope();

 private:
  const MSG* fOuterMessage;
};

// The position of the mouse on the screen while a message is handled; empty if it cannot be read.
std::optional<POINT> GetCursorForMessage(const TWinMessage& message);

// What a window knows of the mouse while it handles one message. It is forgotten when a client is called, who
// may change it. What changes while a view tells its hit rectangles is noticed with the next message.
class CMouseGlance {
 public:
  void Forget();
  // Called at the beginning of each message. To find the window under the mouse the system sends one to this
  // window too, in the middle of another; with that one nothing has changed.
  void OnMessage(UINT message);
  bool IsOver(HWND hwnd, const TPoint& point);
  // Null: nobody has captured the mouse.
  HWND GetCaptureWindow();
  // Makes it the pointer, unless it is that already.
  void ShowCursor(HCURSOR cursor);

 private:
  std::optional<bool> fIsOver;
  TPoint fPoint = {0, 0};
  std::optional<HWND> fCaptureWindow;
  HCURSOR fShownCursor = nullptr;  // null: not known
  bool fIsAsking = false;          // which window is under the mouse
};

}  // namespace NSMorvane
