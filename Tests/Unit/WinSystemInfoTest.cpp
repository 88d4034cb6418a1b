// What the system tells of this machine, or refuses to tell.
#include "Component/Win/Services/WinSystemInfo.h"

#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Services/WinRegistry.h"
#include "Tests/Support/PatchedImport.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

int gAsked = 0;

BOOL Refuse() {
  ++gAsked;
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}
BOOL WINAPI TellNoVersion(OSVERSIONINFOW*) { return Refuse(); }
FARPROC WINAPI FindNoVersion(HMODULE, const char*) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(TellNoVersion));
}
BOOL WINAPI TellNoMemory(MEMORYSTATUSEX*) { return Refuse(); }
BOOL WINAPI TellNoName(LPWSTR, LPDWORD) { return Refuse(); }
LSTATUS WINAPI OpenNoKey(HKEY, LPCWSTR, DWORD, REGSAM, PHKEY) { return ERROR_ACCESS_DENIED; }

const TRegPath kProcessors = {u"Software", u"MorvaneSystemTest", u"Hardware", u"Description",
                              u"System",   u"CentralProcessor"};

// The machine's part of the registry is one of the test's own, with one processor.
class CFakeMachine {
 public:
  CFakeMachine() : fProcessor(OpenKeyPath(kProcessors, true), u"0", true) {
    RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\MorvaneSystemTest", 0, KEY_READ, &fRoot);
    EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, fRoot), ERROR_SUCCESS);
  }
  ~CFakeMachine() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(fRoot);
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\MorvaneSystemTest");
  }
  CRegKey fProcessor;

 private:
  HKEY fRoot = nullptr;
};

class WinSystemInfoTest : public ReportingTest {
 protected:
  std::string Report() {
    fOutput.fTrace.clear();
    LogSystemInfo();
    const auto& trace = fOutput.fTrace;
    EXPECT_EQ(std::count(trace.begin(), trace.end(), '>'), std::count(trace.begin(), trace.end(), '<'));
    return TakeLines();
  }
  template <class TFunction>
  std::string ReportWith(const char* name, TFunction* replacement) {
    const PatchedImport patch(nullptr, name, replacement);
    return Report();
  }
};

}  // namespace

TEST_F(WinSystemInfoTest, ThisMachine) {
  Texts beginnings = {"System info:", "", "Computer name: \"", "OS Version: Microsoft Windows "};
  SYSTEM_INFO system = {};
  GetSystemInfo(&system);
  const auto add = [&](const Texts& more) { beginnings.insert(beginnings.end(), more.begin(), more.end()); };
  add({"CPU Count: " + std::to_string(system.dwNumberOfProcessors), ""});
  for (DWORD i = 0; i < system.dwNumberOfProcessors; ++i) {
    add({"CPU " + std::to_string(i)});
    if (GetCPUDetails(i))
      add({"Processor: ", "Vendor: ", "Identifier: ", "Stepping: ", "Clock: ~"});
    else
      add({"Unable to obtain information for CPU"});
  }
  add({"CPU Class: ", "Physical memory: ", "Allocation granularity: 65536", "Page size: 4096", ""});
  LogSystemInfo();
  Texts lines = std::exchange(fOutput.fLines, {});
  std::erase(lines, "Unknown CPU type!");
  ASSERT_EQ(lines.size(), beginnings.size());
  for (std::size_t i = 0; i < lines.size(); ++i)
    EXPECT_TRUE(lines[i].starts_with(beginnings[i])) << lines[i] << " instead of " << beginnings[i];
}

TEST_F(WinSystemInfoTest, WhatTheSystemRefuses) {
  const std::string failure = "Failed to obtain system information!";
  for (const std::string& report :
       {ReportWith("GetProcAddress", FindNoVersion), ReportWith("GlobalMemoryStatusEx", TellNoMemory)}) {
    EXPECT_TRUE(report.starts_with("Windows error 5 at: ") && report.ends_with("; " + failure)) << report;
    EXPECT_FALSE(Has(report, "System info:"));
  }
  const std::string withoutName = ReportWith("GetComputerNameW", TellNoName);
  EXPECT_TRUE(Has(withoutName, "Computer name: \"noname\"; OS Version: ")) << withoutName;
  const std::string withoutKeys = ReportWith("RegOpenKeyExW", OpenNoKey);
  EXPECT_TRUE(Has(withoutKeys, "CPU 0; Unable to obtain information for CPU; CPU ")) << withoutKeys;
  EXPECT_TRUE(withoutKeys.ends_with("Page size: 4096; "));
  EXPECT_FALSE(Has(withoutName + withoutKeys, failure));
  // Nobody listens, and nothing is asked.
  gAsked = 0;
  IDebugOutput* const output = std::exchange(gDebugOutput, nullptr);
  ReportWith("GetProcAddress", FindNoVersion);
  gDebugOutput = output;
  EXPECT_EQ(gAsked, 0);
}

TEST_F(WinSystemInfoTest, ProcessorsOfTheRegistry) {
  CFakeMachine machine;
  const auto tell = [](const std::optional<TCPUDetails>& details) {
    return !details ? TString(u"none")
                    : details->fName + u"|" + details->fVendor + u"|" + details->fIdentifier + u"|" +
                          NSTextPackage::NumberToString(details->fStepping) + u"|" +
                          NSTextPackage::NumberToString(details->fClockMHz);
  };
  EXPECT_EQ(tell(GetCPUDetails(0)), u"|||0|0");
  machine.fProcessor.SetString(u"ProcessorNameString", u"  A  CPU ");
  machine.fProcessor.SetString(u"VendorIdentifier", u"Maker");
  machine.fProcessor.SetString(u"Identifier", u"Family");
  machine.fProcessor.SetNumber(u"Update Status", 6);
  machine.fProcessor.SetNumber(u"~MHz", 3000000000);
  EXPECT_EQ(tell(GetCPUDetails(0)), u"A  CPU |Maker|Family|6|3000000000");
  machine.fProcessor.SetString(u"ProcessorNameString", u"  ");
  EXPECT_EQ(tell(GetCPUDetails(0)), u"|Maker|Family|6|3000000000");
  // Reading makes no key.
  EXPECT_EQ(tell(GetCPUDetails(1)), u"none");
  EXPECT_FALSE(OpenKeyPath(kProcessors, false).HasSubKey(u"1"));
  // A value of a wrong type costs the rest of the report.
  machine.fProcessor.SetString(u"~MHz", u"3000");
  EXPECT_EQ(ErrorOf([] { GetCPUDetails(0); }), kBadFormatError);
  TakeLines();
  const std::string report = Report();
  EXPECT_TRUE(Has(report, "CPU Count: ")) << report;
  EXPECT_TRUE(report.ends_with("; Failed to obtain system information!")) << report;
}
