// The monitors of the desktop.
#include <map>
#include <string>

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

// The depths of the monitors that have been asked for, by the names of their devices: a device context for
// the question costs more than all the others. Process-wide, as the monitors are.
std::map<std::wstring, std::uint32_t> gDepths;

// 0 if the monitor cannot be asked.
std::uint32_t BitDepthOf(const wchar_t* device) {
  const auto known = gDepths.find(device);
  if (known != gDepths.end()) return known->second;
  const CCreatedDC hdc(CreateDCW(L"DISPLAY", device, nullptr, nullptr));
  if (!hdc.Get()) return 0;
  const int bitsPerPixel = GetDeviceCaps(hdc.Get(), BITSPIXEL);
  MORVANE_ASSERT(0!=bitsPerPixel);
  const int planes = GetDeviceCaps(hdc.Get(), PLANES);
  MORVANE_ASSERT(0!=planes);
  return gDepths[device] = static_cast<std::uint32_t>(bitsPerPixel * planes);
}

}  // namespace

void ForgetMonitorDepths() { gDepths.clear(); }

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
    monitor.fBitDepth = BitDepthOf(info.szDevice);
    if (monitor.fBitDepth == 0) return false;
    monitor.fBounds = FromNative(info.rcMonitor);
    monitor.fWorkArea = FromNative(info.rcWork);
    ++outMonitors.fMonitorCount;
  }
  MORVANE_ASSERT(0!=outMonitors.fMonitorCount);
  return true;
}

}  // namespace NSMorvane
