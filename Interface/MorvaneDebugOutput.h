// The debug output of the library: failed assertions, lines and their indentation; and the settings of the
// debug layers.
#pragma once

#include "MorvaneTypes.h"

namespace NSMorvane {

// Implemented by the client, installed with IMorvane_SetDebugOutput, and never deleted by the library. It is
// called on the thread that caused the output, which is nearly always the main thread.
class IDebugOutput {
 public:
  // A check inside the library or a check of a client's call has failed. The library continues after it.
  virtual void IDebugOutput_Assert(const char* file, std::int32_t line, const char* expression) = 0;
  // One finished line, at most 2001 characters, without a line ending.
  virtual void IDebugOutput_Print(const char* text) = 0;
  // From now on lines are indented one level more.
  virtual void IDebugOutput_Indent() = 0;
  // Undoes one IDebugOutput_Indent.
  virtual void IDebugOutput_Unindent() = 0;

 protected:
  virtual ~IDebugOutput() = default;
};

// The switches of the debug layers, which show on the screen what the library does. Each is 0 or 1.
// The first five are 1 at the start: an application sets what it wants to ship with.
struct TDebugSettings {
  // The menu bars of document windows end with a menu "Debug", whose items switch the other settings and open
  // a list of all windows. The client's items of kMenuDebug stand first in it. What it switches can be set
  // without it, too.
  TFlag fDebugMenu;
  // What is invalidated is tinted blue until it is painted.
  TFlag fDrawInvalidationBlue;
  // A paint begins by filling what it will paint with red. What is drawn behind a view that has a buffer goes
  // to the screen before that view.
  TFlag fDrawPaintsRed;
  // Each view has a dotted frame, cut off by its super views.
  TFlag fDrawViewBounds;
  // The view under the mouse is hatched where it is seen, and framed; its debug name stands in its corner.
  // Its tooltip says what and where it is, until the mouse leaves it: a text that the client has set
  // meanwhile stays, otherwise it gets its own text back.
  TFlag fDrawMouseViewInfo;
  // What has been drawn goes to the screen after each view, so that one sees them come, one after the other.
  TFlag fFlushViews;
  // A pause of about 30 milliseconds follows each of these flushes and each blue tint, 50 follow the red.
  TFlag fDelayAfterFlushing;
};

}  // namespace NSMorvane
