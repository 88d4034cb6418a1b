// The machine, as this system describes it.
#pragma once

#include <cstdint>
#include <optional>

#include "Component/Portable/System/SystemReport.h"

namespace NSMorvane {

// Writes a description of the machine to the debug output. Does not throw: after a failure the rest is
// missing, and a line says so.
void LogSystemInfo();

// What the registry has on a processor; nothing if it does not know it. Creates no key. Throws XBadFormat for
// a value of a type that it should not have.
std::optional<TCPUDetails> GetCPUDetails(std::uint32_t index);

}  // namespace NSMorvane
