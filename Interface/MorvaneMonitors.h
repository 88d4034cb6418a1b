// The monitors of the desktop.
#pragma once

#include "MorvaneTypes.h"

namespace NSMorvane {

enum : std::uint32_t { kMaxMonitors = 32 };

// One monitor, in screen coordinates.
struct TMonitor {
  TRect fBounds;            // all of it
  TRect fWorkArea;          // the part that task bars leave free; lies within fBounds
  std::uint32_t fBitDepth;  // bits per pixel, at most 32
};

// Monitors beyond the thirty-second are not listed.
struct TMonitorList {
  std::uint32_t fMonitorCount;
  TMonitor fMonitors[kMaxMonitors];
  std::uint32_t fMainMonitorIndex;  // below fMonitorCount
};

}  // namespace NSMorvane
