// What the command lines of this launch and of later ones ask for, until the client has been asked to do it.
#pragma once

#include <cstdint>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Opening/CommandLine.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

class CPendingCommandLines : CNotCopied {
 public:
  CPendingCommandLines() = default;

  // Adds the command line of this launch. Its options replace the options so far. Its files are put behind
  // those of earlier launches that still wait for a dialog to end, so none gets lost.
  void Add(CCommandLine commandLine);
  // The same for a later launch. If no file is waiting then, it asks for a document.
  void AddLaunch(CCommandLine commandLine);

  const std::vector<NSTextPackage::TString>& GetOptions() const { return fOptions; }
  bool IsAnyFile() const { return !fFiles.empty(); }
  // Removes the first file, which must be there, and returns it.
  NSTextPackage::TString TakeFile();
  // Whether a launch has asked for a document since the last call.
  bool TakeReopenRequest();
  // Whether the client is to be asked to open something.
  bool IsAnythingDue() const { return IsAnyFile() || fIsReopenRequested; }

  // A later launch writes its command line into a record, and sends a message that can get lost. So the
  // record is also looked at from time to time: OnMessage is for the message, OnLook for such a look.
  // `isPending` tells whether a command line is waiting in the record; the result is true if it must be read
  // now.
  bool OnMessage(bool isPending);
  bool OnLook(bool isPending);

 private:
  std::vector<NSTextPackage::TString> fOptions;  // with their "/"
  std::vector<NSTextPackage::TString> fFiles;    // still to be passed to the client
  bool fIsReopenRequested = false;               // a later launch came without files
  std::uint32_t fUnannounced = 0;                // command lines that were read before their message came
};

}  // namespace NSMorvane
