// The monitors of the desktop.
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

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
    if (!GetMonitorInfoW(handle, &info)) MORVANE_CHECK_LAST_ERROR();
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

}  // namespace NSMorvane
