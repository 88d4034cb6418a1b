#include "Component/Portable/System/SystemReport.h"

#include <cmath>
#include <cstdio>
#include <iterator>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

using NSTextPackage::TString;

namespace {

// By TOSKind: the version and the build follow.
constexpr const char* kOSFormats[] = {"Unknown OS",
                                      "MacOS %d.%d.%d",
                                      "Microsoft Win32s %d.%03d (Build %d)",
                                      "Microsoft Windows 95 %d.%03d (Build %d)",
                                      "Microsoft Windows 95 %d.%03d (Build %d)",
                                      "Microsoft Windows 98 %d.%03d (Build %d)",
                                      "Microsoft Windows NT %d.%02d (Build %d)",
                                      "Microsoft Windows NT %d.%02d (Build %d)",
                                      "Microsoft Windows 2000 %d.%02d (Build %d)",
                                      "Microsoft Windows XP %d.%02d (Build %d)",
                                      "Microsoft Windows Server 2003 %d.%02d (Build %d)"};
static_assert(std::size(kOSFormats) == kOSWindowsServer2003 + 1);

// By TCPUClass.
constexpr const char* kCPUNames[] = {
    "UnknownCPU",     "Intel386",         "Intel486",    "IntelPentium", "IntelPentiumII", "IntelPentiumIII",
    "IntelPentiumIV", "IntelOther",       "PPC601",      "PPC603",       "PPC604",         "PPC603plus",
    "PPC604plus",     "PPC620",           "PPCG3",       "PPCG4",        "PPCOther",       "MIPSR4000",
    "MIPSOther",      "Alpha_21064",      "Alpha_21066", "Alpha_21164",  "AlphaOther",     "68k",
    "IntelIA64",      "IntelIA32OnWin64", "AMD64"};
static_assert(std::size(kCPUNames) == kCPUAMD64 + 1);

std::string PlainText(const TString& text) { return NSTextPackage::StringToASCII(text, '_'); }

// To the nearest multiple; what lies in the middle goes away from zero.
double RoundTo(double value, double roundTo) {
  MORVANE_ASSERT(roundTo != 0);
  MORVANE_ASSERT(roundTo == 0.1);
  return std::round(value / roundTo) * roundTo;
}

void LogCPU(std::uint32_t index, const TCPUDetailsReader& readDetails) {
  DebugPrint("CPU " + std::to_string(index));
  const DebugIndentScope indent;
  const std::optional<TCPUDetails> details = readDetails(index);
  if (!details) {
    DebugPrint("Unable to obtain information for CPU");
    return;
  }
  DebugPrint("Processor: " + PlainText(details->fName));
  DebugPrint("Vendor: " + PlainText(details->fVendor));
  DebugPrint("Identifier: " + PlainText(details->fIdentifier));
  DebugPrint("Stepping: " + std::to_string(details->fStepping));
  DebugPrint("Clock: ~" + std::to_string(details->fClockMHz) + " MHz");
}

void LogMachine(const CSystemInfo& info, const TCPUDetailsReader& readDetails) {
  const DebugIndentScope indent;
  DebugPrint("Computer name: \"" + PlainText(info.fComputerName) + "\"");
  DebugPrint("OS Version: " + OSText(info));
  DebugPrint("CPU Count: " + std::to_string(info.fCPUCount));
  DebugPrint("");
  {
    const DebugIndentScope deeper;
    for (std::uint32_t i = 0; i < info.fCPUCount; ++i) LogCPU(i, readDetails);
  }
  DebugPrint(std::string("CPU Class: ") + kCPUNames[info.fCPUClass] +
             ", rev: " + std::to_string(info.fCPURevision));
  DebugPrint("Physical memory: " + FormatByteCount(info.fPhysicalMemory) + ", virtual memory is " +
             (info.fVirtualMemory ? "on" : "off"));
  DebugPrint("Allocation granularity: " + std::to_string(info.fAllocationGranularity));
  DebugPrint("Page size: " + std::to_string(info.fPageSize));
}

}  // namespace

void LogSystemReport(const CSystemInfo& info, const TCPUDetailsReader& readDetails) {
  DebugPrint("System info:");
  DebugPrint("");
  LogMachine(info, readDetails);
  DebugPrint("");
}

std::string OSText(const CSystemInfo& info) {
  char text[128];
  std::snprintf(text, sizeof(text), kOSFormats[info.fOSKind], static_cast<int>(info.fMajorVersion),
                static_cast<int>(info.fMinorVersion), static_cast<int>(info.fBuildNumber));
  return std::string(text) + " " + PlainText(info.fOSExtra);
}

std::string FormatByteCount(std::uint64_t bytes) {
  constexpr struct {
    std::uint64_t fSize;
    const char* fName;
  } kUnits[] = {{0x40000000, " GB"}, {0x100000, " MB"}, {0x400, " kB"}};
  for (const auto& unit : kUnits) {
    if (bytes < unit.fSize) continue;
    const double count = RoundTo(static_cast<double>(bytes) / static_cast<double>(unit.fSize), 0.1);
    return PlainText(NSTextPackage::FloatToString(count, 1)) + unit.fName;
  }
  return bytes == 1 ? "1 byte" : std::to_string(bytes) + " bytes";
}

}  // namespace NSMorvane
