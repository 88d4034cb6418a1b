// What command lines have asked for, the own one and those of later launches, until the client has been told.
#pragma once

#include <cstdint>
#include <vector>

#include "Component/Portable/Opening/CommandLine.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

class CPendingCommandLines {
 public:
  CPendingCommandLines() = default;
  CPendingCommandLines(const CPendingCommandLines&) = delete;
  CPendingCommandLines& operator=(const CPendingCommandLines&) = delete;

  // The own command line. Its options take the place of those before; its files come behind those of an
  // earlier launch that still wait for a dialog to end: none gets lost.
  void Add(CCommandLine commandLine);
  // The same for that of a later launch. One without files asks for a document.
  void AddLaunch(CCommandLine commandLine);

  const std::vector<NSTextPackage::TString>& GetOptions() const { return fOptions; }
  bool IsAnyFile() const { return !fFiles.empty(); }
  // The first one, which is forgotten.
  NSTextPackage::TString TakeFile();
  // Whether a launch has asked for a document since the last time.
  bool TakeReopenRequest();
  // Whether the client is to be asked to open something.
  bool IsAnythingDue() const { return IsAnyFile() || fIsReopenRequested; }

  // A later launch leaves its command line in a record, and sends a message that can get lost. So the record
  // is looked at now and then, too. `isPending` tells whether a command line waits there; true if it is to be
  // read now.
  bool OnMessage(bool isPending);
  bool OnLook(bool isPending);

 private:
  std::vector<NSTextPackage::TString> fOptions;  // with their "/"
  std::vector<NSTextPackage::TString> fFiles;    // still to be handed to the client
  bool fIsReopenRequested = false;               // a later launch came without files
  std::uint32_t fUnannounced = 0;                // that were read before their message came, if it ever does
};

}  // namespace NSMorvane
