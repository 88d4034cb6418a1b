// What kind of machine this is: the operating system, the processors, the memory.
//
// Systems and processors that came later than the kinds below are told by their numbers: a later Windows
// counts as the kind that its minor version stands for, and a processor that is in no row as an unknown one.
#pragma once

#include <cstdint>

#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

enum TOSKind : std::uint32_t {
  kOSUnknown = 0,
  kOSMac = 1,
  kOSWin32s = 2,
  kOSWindows95 = 3,
  kOSWindows95Second = 4,
  kOSWindows98 = 5,
  kOSWindowsNT3 = 6,
  kOSWindowsNT4 = 7,
  kOSWindows2000 = 8,
  kOSWindowsXP = 9,
  kOSWindowsServer2003 = 10
};

enum TCPUClass : std::uint32_t {
  kCPUUnknown = 0,
  kCPUIntel386 = 1,
  kCPUIntel486 = 2,
  kCPUIntelPentium = 3,
  kCPUIntelPentiumII = 4,
  kCPUIntelPentiumIII = 5,
  kCPUIntelPentiumIV = 6,
  kCPUIntelOther = 7,
  kCPUPPC601 = 8,
  kCPUPPC603 = 9,
  kCPUPPC604 = 10,
  kCPUPPC603plus = 11,
  kCPUPPC604plus = 12,
  kCPUPPC620 = 13,
  kCPUPPCG3 = 14,
  kCPUPPCG4 = 15,
  kCPUPPCOther = 16,
  kCPUMIPSR4000 = 17,
  kCPUMIPSOther = 18,
  kCPUAlpha21064 = 19,
  kCPUAlpha21066 = 20,
  kCPUAlpha21164 = 21,
  kCPUAlphaOther = 22,
  kCPU68k = 23,
  kCPUIntelIA64 = 24,
  kCPUIntelIA32OnWin64 = 25,
  kCPUAMD64 = 26
};

// What the system answers when it is asked about itself, as it answers it.
struct TSystemAnswers {
  std::uint32_t fPlatformId = 0;  // 0: Win32s, 1: Windows 9x, 2: Windows NT
  std::uint32_t fMajorVersion = 0;
  std::uint32_t fMinorVersion = 0;
  std::uint32_t fBuildNumber = 0;
  NSTextPackage::TString fServicePack;
  std::uint32_t fProcessorType = 0;          // what Windows 9x tells of the processor
  std::uint16_t fProcessorArchitecture = 0;  // what Windows NT tells, with the level
  std::uint16_t fProcessorLevel = 0;
  std::uint16_t fProcessorRevision = 0;
  std::uint32_t fProcessorCount = 0;
  std::uint64_t fTotalPhysical = 0;  // in bytes
  std::uint64_t fTotalPageFile = 0;  // in bytes
  std::uint32_t fAllocationGranularity = 0;
  std::uint32_t fPageSize = 0;
  NSTextPackage::TString fComputerName = u"noname";
};

// The same, understood.
struct CSystemInfo {
  // Reports what it does not know.
  explicit CSystemInfo(const TSystemAnswers& answers);

  TOSKind fOSKind;
  std::uint32_t fMajorVersion;
  std::uint32_t fMinorVersion;
  std::uint32_t fBuildNumber;
  TCPUClass fCPUClass;
  std::uint32_t fCPUCount;
  std::uint16_t fCPURevision;     // 0 for another processor than an x86
  std::uint64_t fPhysicalMemory;  // in bytes, rounded up to whole MiB
  std::uint32_t fAllocationGranularity;
  std::uint32_t fPageSize;
  bool fVirtualMemory;
  NSTextPackage::TString fComputerName;
  NSTextPackage::TString fOSExtra;  // the service pack or release
};

}  // namespace NSMorvane
