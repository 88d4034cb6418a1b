// What the report says of machines of all kinds.
#include "Component/Portable/System/SystemReport.h"

#include "Component/Portable/System/SystemInfo.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::uint32_t k9x = 1, kNT = 2;

TSystemAnswers Windows(std::uint32_t platform, std::uint32_t major, std::uint32_t minor,
                       std::uint32_t build = 1, const TString& servicePack = u"") {
  TSystemAnswers answers;
  answers.fPlatformId = platform;
  answers.fMajorVersion = major;
  answers.fMinorVersion = minor;
  answers.fBuildNumber = build;
  answers.fServicePack = servicePack;
  return answers;
}

class SystemReport : public ReportingTest {
 protected:
  std::string Reported(const TSystemAnswers& answers, const TCPUDetailsReader& readDetails = {}) {
    fOutput.fTrace.clear();
    LogSystemReport(CSystemInfo(answers), readDetails);
    return fOutput.fTrace;
  }
};

}  // namespace

TEST_F(SystemReport, Systems) {
  for (const auto& [answers, text] : Rows<TSystemAnswers, std::string>{
           {Windows(0, 1, 30, 172), "Microsoft Win32s 1.030 (Build 172) "},
           {Windows(k9x, 4, 0, 0x040003B6), "Microsoft Windows 95 4.000 (Build 950) "},
           {Windows(k9x, 3, 1001, 950, u"B"), "Microsoft Windows 95 3.1001 (Build 950) Service Release 2"},
           {Windows(k9x, 3, 1000, 950, u"B"), "Microsoft Windows 95 3.1000 (Build 950) "},
           {Windows(k9x, 4, 10, 2222, u"A"), "Microsoft Windows 98 4.010 (Build 2222) "},
           {Windows(k9x, 5, 0), "Microsoft Windows 98 5.000 (Build 1) "},
           {Windows(kNT, 3, 51, 1057, u"Service Pack 5"),
            "Microsoft Windows NT 3.51 (Build 1057) Service Pack 5"},
           {Windows(kNT, 4, 0, 1381), "Microsoft Windows NT 4.00 (Build 1381) "},
           {Windows(kNT, 5, 0, 2195, u"\u00E4\U0001F600"), "Microsoft Windows 2000 5.00 (Build 2195) ___"},
           {Windows(kNT, 5, 1, 2600), "Microsoft Windows XP 5.01 (Build 2600) "},
           {Windows(kNT, 5, 2, 3790), "Microsoft Windows Server 2003 5.02 (Build 3790) "},
           // Later ones are told by their numbers.
           {Windows(kNT, 6, 1, 7601), "Microsoft Windows XP 6.01 (Build 7601) "},
           {Windows(kNT, 6, 3, 9600), "Microsoft Windows 2000 6.03 (Build 9600) "},
           {Windows(kNT, 10, 0, 26100), "Microsoft Windows 2000 10.00 (Build 26100) "},
           {Windows(3, 4, 2), "Unknown OS "}})
    EXPECT_EQ(OSText(CSystemInfo(answers)), text);
  EXPECT_EQ(TakeReports(), "");
  EXPECT_EQ(OSText(CSystemInfo(Windows(kNT, 2, 0))), "Unknown OS ");
  EXPECT_EQ(TakeReports(), "false");
  CSystemInfo other(Windows(kNT, 9, 2, 2));
  other.fOSKind = kOSMac;
  EXPECT_EQ(OSText(other), "MacOS 9.2.2 ");
}

TEST_F(SystemReport, Processors) {
  const auto classOf = [this](std::uint32_t platform, std::uint16_t architecture, std::uint16_t level,
                              std::uint32_t type = 0) {
    TSystemAnswers answers = Windows(platform, platform == k9x ? 4 : 10, 0);
    answers.fProcessorArchitecture = architecture;
    answers.fProcessorLevel = level;
    answers.fProcessorType = type;
    answers.fProcessorRevision = 0xFFFF;
    const std::string report = Reported(answers);
    const std::size_t begin = report.find("CPU Class: ") + 11;
    return report.substr(begin, report.find(" Physical") - begin);
  };
  for (const auto& [architecture, level, name] :
       Rows<std::uint16_t, std::uint16_t, std::string>{{0, 3, "Intel386, rev: 65535"},
                                                       {0, 4, "Intel486, rev: 65535"},
                                                       {0, 5, "IntelPentium, rev: 65535"},
                                                       {0, 6, "IntelPentiumII, rev: 65535"},
                                                       {0, 7, "IntelPentiumIII, rev: 65535"},
                                                       {0, 15, "IntelPentiumIV, rev: 65535"},
                                                       {0, 8, "IntelOther, rev: 65535"},
                                                       {1, 4, "MIPSR4000, rev: 0"},
                                                       {1, 3, "MIPSOther, rev: 0"},
                                                       {2, 21064, "Alpha_21064, rev: 0"},
                                                       {2, 21066, "Alpha_21066, rev: 0"},
                                                       {2, 21164, "Alpha_21164, rev: 0"},
                                                       {2, 21264, "AlphaOther, rev: 0"},
                                                       {3, 1, "PPC601, rev: 0"},
                                                       {3, 3, "PPC603, rev: 0"},
                                                       {3, 4, "PPC604, rev: 0"},
                                                       {3, 6, "PPC603plus, rev: 0"},
                                                       {3, 9, "PPC604plus, rev: 0"},
                                                       {3, 20, "PPC620, rev: 0"},
                                                       {3, 8, "PPCOther, rev: 0"},
                                                       {6, 1, "IntelIA64, rev: 0"},
                                                       {9, 1, "AMD64, rev: 65535"},
                                                       {10, 1, "IntelIA32OnWin64, rev: 65535"}})
    EXPECT_EQ(classOf(kNT, architecture, level), name);
  EXPECT_FALSE(fOutput.HasLine("Unknown CPU type!"));
  // Of ARM and ARM64, and of later levels, nothing is known; nor of what nobody has thought of yet.
  for (const auto& [architecture, level, name] :
       Rows<std::uint16_t, std::uint16_t, std::string>{{5, 7, "UnknownCPU, rev: 0"},
                                                       {6, 2, "UnknownCPU, rev: 0"},
                                                       {9, 25, "UnknownCPU, rev: 65535"},
                                                       {10, 6, "UnknownCPU, rev: 65535"},
                                                       {12, 1, "UnknownCPU, rev: 0"},
                                                       {0xFFFF, 0xFFFF, "UnknownCPU, rev: 0"}}) {
    fOutput.fLines.clear();
    EXPECT_EQ(classOf(kNT, architecture, level), name);
    EXPECT_EQ(fOutput.fLines[0], "Unknown CPU type!") << architecture;
  }
  fOutput.fLines.clear();
  for (const auto& [type, name] : Rows<std::uint32_t, std::string>{{386, "Intel386, rev: 65535"},
                                                                   {486, "Intel486, rev: 65535"},
                                                                   {586, "IntelPentium, rev: 65535"},
                                                                   {8664, "IntelOther, rev: 65535"}})
    EXPECT_EQ(classOf(k9x, 0, 3, type), name);
  EXPECT_EQ(classOf(0, 0, 3, 386), "UnknownCPU, rev: 65535");
  EXPECT_FALSE(fOutput.HasLine("Unknown CPU type!"));
}

TEST_F(SystemReport, ByteCounts) {
  for (const auto& [bytes, text] : Rows<std::uint64_t, std::string>{{0, "0 bytes"},
                                                                    {1, "1 byte"},
                                                                    {2, "2 bytes"},
                                                                    {1023, "1023 bytes"},
                                                                    {1024, "1.0 kB"},
                                                                    {1279, "1.2 kB"},
                                                                    {1280, "1.3 kB"},
                                                                    {1536, "1.5 kB"},
                                                                    {0xFFFFF, "1024.0 kB"},
                                                                    {0x100000, "1.0 MB"},
                                                                    {0x3FFFFFFF, "1024.0 MB"},
                                                                    {0x40000000, "1.0 GB"},
                                                                    {0x140000000, "5.0 GB"},
                                                                    {0x60000000000, "6144.0 GB"}})
    EXPECT_EQ(FormatByteCount(bytes), text);
}

TEST_F(SystemReport, AllLinesInOrder) {
  TSystemAnswers answers = Windows(kNT, 10, 0, 19045);
  answers.fProcessorArchitecture = 9;
  answers.fProcessorLevel = 1;
  answers.fProcessorRevision = 0x3A09;
  answers.fProcessorCount = 2;
  answers.fTotalPhysical = 0x3FFF00001;  // 16 GiB less one MiB, and a byte
  answers.fTotalPageFile = 1;
  answers.fAllocationGranularity = 65536;
  answers.fPageSize = 4096;
  answers.fComputerName = u"K\u00FCche";
  EXPECT_EQ(
      Reported(answers,
               [](std::uint32_t index) {
                 return index == 0
                            ? std::optional<TCPUDetails>({u"A\u2122 CPU", u"Maker", u"Family 1", 7, 3600})
                            : std::nullopt;
               }),
      "System info:  > Computer name: \"K_che\" OS Version: Microsoft Windows 2000 10.00 (Build 19045)  "
      "CPU Count: 2  > CPU 0 > Processor: A_ CPU Vendor: Maker Identifier: Family 1 Stepping: 7 Clock: "
      "~3600 MHz < CPU 1 > Unable to obtain information for CPU < < CPU Class: AMD64, rev: 14857 "
      "Physical memory: 16.0 GB, virtual memory is on Allocation granularity: 65536 Page size: 4096 < "
      " ");
  EXPECT_EQ(CSystemInfo(answers).fPhysicalMemory, 0x400000000u);
  answers.fTotalPhysical = 0x300000;
  answers.fTotalPageFile = 0;
  answers.fProcessorCount = 64;
  int asked = 0;
  EXPECT_TRUE(Has(Reported(answers, [&](std::uint32_t) { return ++asked, std::nullopt; }),
                  "Physical memory: 3.0 MB, virtual memory is off"));
  EXPECT_EQ(asked, 64);
  // A failure in the middle leaves the indentation as it was.
  fOutput.fTrace.clear();
  EXPECT_THROW(LogSystemReport(CSystemInfo(answers),
                               [](std::uint32_t) -> std::optional<TCPUDetails> { throw XBadFormat(); }),
               XBadFormat);
  EXPECT_TRUE(fOutput.fTrace.ends_with("CPU Count: 64  > CPU 0 > < < < ")) << fOutput.fTrace;
}
