// What the first process of an application shares with the later ones. All builds that run together must have
// the same record.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

constexpr std::size_t kMaxSentCommandLine = 2600;

// What fCommandLinePending says.
enum : std::uint32_t { kRecordIsFree, kCommandLineWaits, kRecordIsBeingWritten };

struct TSingleInstanceRecord {
  std::uint32_t fCommandLinePending;
  std::uint32_t fProcessId;                 // of the first process
  std::uint32_t fThreadId;                  // its main thread
  TChar fCommandLine[kMaxSentCommandLine];  // terminated only if it is shorter
};
static_assert(offsetof(TSingleInstanceRecord, fCommandLine) == 12 && sizeof(TSingleInstanceRecord) == 5212);

// Cuts a text that is too long, and erases what remains of a longer one that was there before.
inline void WriteCommandLine(TSingleInstanceRecord& record, const NSTextPackage::TString& commandLine) {
  const std::size_t count = std::min(commandLine.size(), kMaxSentCommandLine);
  std::fill(std::copy_n(commandLine.begin(), count, record.fCommandLine), std::end(record.fCommandLine),
            TChar{});
}

// Returns whatever another process has written there.
inline NSTextPackage::TString ReadCommandLine(const TSingleInstanceRecord& record) {
  return NSTextPackage::ArrayToString(record.fCommandLine);
}

}  // namespace NSMorvane
