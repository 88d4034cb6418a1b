// The monitors of the desktop, and the coordinates that depend on them.
#include "Component/Portable/Base/Geometry.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Interface/MorvaneRoot.h"

namespace NSMorvane {

namespace {

struct TMonitorCollector {
  std::vector<HMONITOR> fMonitors;
  bool fOutOfMemory = false;
};

BOOL CALLBACK CollectMonitor(HMONITOR hMonitor, HDC, LPRECT, LPARAM dwData) {
  MORVANE_ASSERT(0!=dwData);
  MORVANE_ASSERT(0!=hMonitor);
  auto& collector = *reinterpret_cast<TMonitorCollector*>(dwData);
  try {
    collector.fMonitors.push_back(hMonitor);
  } catch (...) {
    collector.fOutOfMemory = true;
  }
  return TRUE;
}

// What is added on the way from the screen to the workspace.
TPoint WorkspaceOffset(const TMonitorList& monitors) {
  const std::uint32_t mainMonitorIndex = monitors.fMainMonitorIndex;
  MORVANE_ASSERT(mainMonitorIndex < monitors.fMonitorCount);
  if (mainMonitorIndex >= kMaxMonitors) return TPoint{0, 0};  // nothing lies there to be read
  const TMonitor& monitor = monitors.fMonitors[mainMonitorIndex];
  return TPoint{monitor.fBounds.fLeft - monitor.fWorkArea.fLeft,
                monitor.fBounds.fTop - monitor.fWorkArea.fTop};
}

TPoint CurrentWorkspaceOffset(IMorvane& morvane) {
  TMonitorList monitors;
  ThrowError(morvane.IMorvane_GetMonitors(monitors));
  return WorkspaceOffset(monitors);
}

}  // namespace

bool EnumerateMonitors(TMonitorList& outMonitors) {
  outMonitors = TMonitorList{};
  TMonitorCollector collector;
  if (!EnumDisplayMonitors(nullptr, nullptr, CollectMonitor, reinterpret_cast<LPARAM>(&collector))) {
    MORVANE_UNREACHED();
    return false;
  }
  if (collector.fOutOfMemory) MORVANE_THROW(XOutOfMemory());
  return DescribeMonitors(collector.fMonitors, outMonitors);
}

bool DescribeMonitors(const std::vector<HMONITOR>& monitorVector, TMonitorList& outMonitors) {
  MORVANE_ASSERT(monitorVector.size()>0);
  outMonitors = TMonitorList{};
  for (HMONITOR handle : monitorVector) {
    if (outMonitors.fMonitorCount >= kMaxMonitors) break;
    MONITORINFOEXW info = {};
    info.cbSize = sizeof(info);
    if (!GetMonitorInfoW(handle, &info)) MORVANE_THROW_LAST_ERROR();
    if (info.dwFlags & MONITORINFOF_PRIMARY) outMonitors.fMainMonitorIndex = outMonitors.fMonitorCount;

    TMonitor& monitor = outMonitors.fMonitors[outMonitors.fMonitorCount];
    const CCreatedDC hdc(CreateDCW(nullptr, info.szDevice, nullptr, nullptr));
    if (!hdc.Get()) return false;
    const int bitsPerPixel = GetDeviceCaps(hdc.Get(), BITSPIXEL);
    MORVANE_ASSERT(0!=bitsPerPixel);
    const int planes = GetDeviceCaps(hdc.Get(), PLANES);
    MORVANE_ASSERT(0!=planes);
    monitor.fBitDepth = static_cast<std::uint32_t>(bitsPerPixel * planes);
    monitor.fBounds = FromNative(info.rcMonitor);
    monitor.fWorkArea = FromNative(info.rcWork);
    ++outMonitors.fMonitorCount;
  }
  MORVANE_ASSERT(0!=outMonitors.fMonitorCount);
  return true;
}

TRect ScreenRectToWorkspace(const TRect& rect, IMorvane& morvane) {
  const TPoint offset = CurrentWorkspaceOffset(morvane);
  return OffsetRectBy(rect, offset.fX, offset.fY);
}

TRect WorkspaceRectToScreen(const TRect& rect, IMorvane& morvane) {
  const TPoint offset = CurrentWorkspaceOffset(morvane);
  return OffsetRectBy(rect, -std::int64_t{offset.fX}, -std::int64_t{offset.fY});
}

}  // namespace NSMorvane
