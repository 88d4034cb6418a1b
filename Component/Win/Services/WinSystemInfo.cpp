#include "Component/Win/Services/WinSystemInfo.h"

#include <windows.h>

#include <exception>
#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Services/WinRegistry.h"

namespace NSMorvane {

using NSTextPackage::TString;

namespace {

void AskForVersion(TSystemAnswers& outAnswers) {
  OSVERSIONINFOW version = {};
  if (!GetSystemVersion(version)) MORVANE_THROW_LAST_ERROR();
  outAnswers.fPlatformId = version.dwPlatformId;
  outAnswers.fMajorVersion = version.dwMajorVersion;
  outAnswers.fMinorVersion = version.dwMinorVersion;
  outAnswers.fBuildNumber = version.dwBuildNumber;
  outAnswers.fServicePack = TextFromWin(version.szCSDVersion);
}

void AskForProcessors(TSystemAnswers& outAnswers) {
  SYSTEM_INFO system = {};
  GetSystemInfo(&system);
  outAnswers.fProcessorType = system.dwProcessorType;
  outAnswers.fProcessorArchitecture = system.wProcessorArchitecture;
  outAnswers.fProcessorLevel = system.wProcessorLevel;
  outAnswers.fProcessorRevision = system.wProcessorRevision;
  outAnswers.fProcessorCount = system.dwNumberOfProcessors;
  outAnswers.fAllocationGranularity = system.dwAllocationGranularity;
  outAnswers.fPageSize = system.dwPageSize;
}

void AskForMemory(TSystemAnswers& outAnswers) {
  MEMORYSTATUSEX memory = {};
  memory.dwLength = sizeof(memory);
  if (!GlobalMemoryStatusEx(&memory)) MORVANE_THROW_LAST_ERROR();
  outAnswers.fTotalPhysical = memory.ullTotalPhys;
  outAnswers.fTotalPageFile = memory.ullTotalPageFile;
}

void AskForName(TSystemAnswers& ioAnswers) {
  wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = {};
  DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
  if (GetComputerNameW(name, &size)) ioAnswers.fComputerName = TextFromWin(name);
}

TSystemAnswers AskSystem() {
  TSystemAnswers answers;
  AskForVersion(answers);
  AskForProcessors(answers);
  AskForMemory(answers);
  AskForName(answers);
  return answers;
}

}  // namespace

void LogSystemInfo() {
  if (!gDebugOutput) return;  // nobody would read it
  const TError error = ErrorOf([] { LogSystemReport(CSystemInfo(AskSystem()), GetCPUDetails); });
  if (error != kOK) DebugPrint("Failed to obtain system information!");
}

std::optional<TCPUDetails> GetCPUDetails(std::uint32_t index) {
  const TString path = u"Hardware\\Description\\System\\CentralProcessor\\";
  const auto key = CRegKey(HKEY_LOCAL_MACHINE).FindSubKey(path + NSTextPackage::NumberToString(index));
  if (!key) return std::nullopt;
  TCPUDetails details;
  details.fName = key->GetString(u"ProcessorNameString");
  details.fName.erase(0, details.fName.find_first_not_of(u' '));
  details.fClockMHz = key->GetNumber(u"~MHz");
  details.fIdentifier = key->GetString(u"Identifier");
  details.fStepping = key->GetNumber(u"Update Status");
  details.fVendor = key->GetString(u"VendorIdentifier");
  return details;
}

}  // namespace NSMorvane
