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

// The switches of the debug layers. Each is 0 or 1.
// The first five are 1 at the start: an application sets what it wants to ship with.
struct TDebugSettings {
  TFlag fDebugMenu;             // stored; the debug menu is not built yet
  TFlag fDrawInvalidationBlue;  // invalidated areas are flashed
  TFlag fDrawPaintsRed;         // each buffered draw first flashes its area
  TFlag fDrawViewBounds;        // frames of views are drawn
  TFlag fDrawMouseViewInfo;     // stored, without effect so far
  TFlag fFlushViews;            // drawing goes to the screen after each view
  TFlag fDelayAfterFlushing;    // each such flush is followed by a pause
};

}  // namespace NSMorvane
