#include "Component/Portable/System/SystemInfo.h"

#include <algorithm>
#include <iterator>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

namespace {

enum : std::uint32_t { kPlatformWin32s = 0, kPlatformWindows9x = 1, kPlatformNT = 2 };

enum : std::uint16_t {
  kArchitectureIntel = 0,
  kArchitectureMIPS = 1,
  kArchitectureAlpha = 2,
  kArchitecturePPC = 3,
  kArchitectureIA64 = 6,
  kArchitectureAMD64 = 9,
  kArchitectureIA32OnWin64 = 10
};

constexpr int kAnyLevel = -1;

// The first row that fits counts.
constexpr struct {
  std::uint16_t fArchitecture;
  int fLevel;
  TCPUClass fClass;
} kProcessors[] = {{kArchitectureIntel, 3, kCPUIntel386},
                   {kArchitectureIntel, 4, kCPUIntel486},
                   {kArchitectureIntel, 5, kCPUIntelPentium},
                   {kArchitectureIntel, 6, kCPUIntelPentiumII},
                   {kArchitectureIntel, 7, kCPUIntelPentiumIII},
                   {kArchitectureIntel, 15, kCPUIntelPentiumIV},
                   {kArchitectureIntel, kAnyLevel, kCPUIntelOther},
                   {kArchitectureMIPS, 4, kCPUMIPSR4000},
                   {kArchitectureMIPS, kAnyLevel, kCPUMIPSOther},
                   {kArchitectureAlpha, 21064, kCPUAlpha21064},
                   {kArchitectureAlpha, 21066, kCPUAlpha21066},
                   {kArchitectureAlpha, 21164, kCPUAlpha21164},
                   {kArchitectureAlpha, kAnyLevel, kCPUAlphaOther},
                   {kArchitecturePPC, 1, kCPUPPC601},
                   {kArchitecturePPC, 3, kCPUPPC603},
                   {kArchitecturePPC, 4, kCPUPPC604},
                   {kArchitecturePPC, 6, kCPUPPC603plus},
                   {kArchitecturePPC, 9, kCPUPPC604plus},
                   {kArchitecturePPC, 20, kCPUPPC620},
                   {kArchitecturePPC, kAnyLevel, kCPUPPCOther},
                   {kArchitectureIA64, 1, kCPUIntelIA64},
                   {kArchitectureAMD64, 1, kCPUAMD64},
                   {kArchitectureIA32OnWin64, 1, kCPUIntelIA32OnWin64}};

TOSKind KindOfWindows9x(const TSystemAnswers& answers) {
  if (answers.fMajorVersion > 4 || (answers.fMajorVersion == 4 && answers.fMinorVersion > 0))
    return kOSWindows98;
  // Sic: the number that tells the second release is that of the build.
  return answers.fMinorVersion > 1000 ? kOSWindows95Second : kOSWindows95;
}

TOSKind KindOfWindowsNT(const TSystemAnswers& answers) {
  switch (answers.fMajorVersion) {
    case 0:
    case 1:
    case 2:
      MORVANE_UNREACHED();
      return kOSUnknown;
    case 3:
      return kOSWindowsNT3;
    case 4:
      return kOSWindowsNT4;
    default:
      if (answers.fMinorVersion == 1) return kOSWindowsXP;
      if (answers.fMinorVersion == 2) return kOSWindowsServer2003;
      return kOSWindows2000;
  }
}

TOSKind KindOf(const TSystemAnswers& answers) {
  switch (answers.fPlatformId) {
    case kPlatformWin32s:
      return kOSWin32s;
    case kPlatformWindows9x:
      return KindOfWindows9x(answers);
    case kPlatformNT:
      return KindOfWindowsNT(answers);
    default:
      return kOSUnknown;
  }
}

TCPUClass ClassOfType(std::uint32_t processorType) {
  switch (processorType) {
    case 386:
      return kCPUIntel386;
    case 486:
      return kCPUIntel486;
    case 586:
      return kCPUIntelPentium;
    default:
      return kCPUIntelOther;
  }
}

TCPUClass ClassOfArchitecture(std::uint16_t architecture, std::uint16_t level) {
  const auto found = std::find_if(std::begin(kProcessors), std::end(kProcessors), [&](const auto& row) {
    return row.fArchitecture == architecture && (row.fLevel == level || row.fLevel == kAnyLevel);
  });
  if (found != std::end(kProcessors)) return found->fClass;
  DebugPrint("Unknown CPU type!");
  return kCPUUnknown;
}

TCPUClass ClassOf(TOSKind kind, const TSystemAnswers& answers) {
  if (kind >= kOSWindows95 && kind <= kOSWindows98) return ClassOfType(answers.fProcessorType);
  if (kind >= kOSWindowsNT3)
    return ClassOfArchitecture(answers.fProcessorArchitecture, answers.fProcessorLevel);
  return kCPUUnknown;
}

bool IsX86(std::uint16_t architecture) {
  return architecture == kArchitectureIntel || architecture == kArchitectureAMD64 ||
         architecture == kArchitectureIA32OnWin64;
}

NSTextPackage::TString ExtraOf(TOSKind kind, const TSystemAnswers& answers) {
  if (answers.fPlatformId == kPlatformNT) return answers.fServicePack;
  return kind == kOSWindows95Second ? u"Service Release 2" : u"";
}

std::uint64_t RoundUpToMiB(std::uint64_t bytes) {
  constexpr std::uint64_t kBelowMiB = 0xFFFFF;
  return (bytes + kBelowMiB) & ~kBelowMiB;
}

}  // namespace

CSystemInfo::CSystemInfo(const TSystemAnswers& answers)
    : fOSKind(KindOf(answers)),
      fMajorVersion(answers.fMajorVersion),
      fMinorVersion(answers.fMinorVersion),
      fBuildNumber(answers.fBuildNumber & 0xFFFF),
      fCPUClass(ClassOf(fOSKind, answers)),
      fCPUCount(answers.fProcessorCount),
      fCPURevision(IsX86(answers.fProcessorArchitecture) ? answers.fProcessorRevision : std::uint16_t{0}),
      fPhysicalMemory(RoundUpToMiB(answers.fTotalPhysical)),
      fAllocationGranularity(answers.fAllocationGranularity),
      fPageSize(answers.fPageSize),
      fVirtualMemory(answers.fTotalPageFile != 0),
      fComputerName(answers.fComputerName),
      fOSExtra(ExtraOf(fOSKind, answers)) {}

}  // namespace NSMorvane
