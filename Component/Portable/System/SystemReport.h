// The description of the machine that a run writes to the debug output when it begins.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "Component/Portable/System/SystemInfo.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

struct TCPUDetails {
  NSTextPackage::TString fName;
  NSTextPackage::TString fVendor;
  NSTextPackage::TString fIdentifier;
  std::uint32_t fStepping = 0;
  std::uint32_t fClockMHz = 0;
};

// Nothing if the system knows nothing of the processor with this index.
using TCPUDetailsReader = std::function<std::optional<TCPUDetails>(std::uint32_t index)>;

// A failure of `readDetails` passes through, with the lines so far printed.
void LogSystemReport(const CSystemInfo& info, const TCPUDetailsReader& readDetails);

// "Microsoft Windows NT 4.00 (Build 1381) Service Pack 6"
std::string OSText(const CSystemInfo& info);
// "1.5 kB", with one digit after the point, of which a half is rounded up.
std::string FormatByteCount(std::uint64_t bytes);

}  // namespace NSMorvane
