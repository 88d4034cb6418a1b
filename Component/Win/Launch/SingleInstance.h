// One process of an application per session. The first one creates a shared record under the application's
// name; a later one leaves its command line there, posts kMsgSecondInstance to the first one's main thread,
// and ends.
//
// The record has no lock but fCommandLinePending: who turns it from free to being written has the record, and
// others wait. A process that dies while it writes leaves the record taken for good.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Opening/SingleInstanceRecord.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

// Posted by a later process to the main thread of the first one: a command line is waiting.
constexpr UINT kMsgSecondInstance = 1135;

// A named piece of memory that processes share. Failures go to CheckLastError.
class CFileMapping : CNotCopied {
 public:
  // Creates it, or opens it if it is already there.
  CFileMapping(const NSTextPackage::TString& name, std::uint32_t size);
  // Opens a mapping that another process makes, and waits for it up to ten seconds.
  explicit CFileMapping(const NSTextPackage::TString& name);
  ~CFileMapping();

  HANDLE GetHandle() const { return fHandle; }
  // Whether it was there before this object.
  bool WasThere() const { return fWasThere; }

 private:
  NSTextPackage::TString fName;
  HANDLE fHandle;
  bool fWasThere;
};

// The memory of a mapping at an address of this process.
class CFileMappingView : CNotCopied {
 public:
  explicit CFileMappingView(const CFileMapping& mapping);
  ~CFileMappingView();

  void* GetAddress() const { return fAddress; }
  // The size in bytes, rounded up to whole pages.
  std::size_t GetSize() const;

 private:
  const CFileMapping& fMapping;
  void* fAddress;
};

// The mapping of this process if it is the first one, otherwise null. Open for the whole run. Process-wide,
// since it marks the process as the first one.
extern CFileMapping* gFileMappingInstance;

// True if this process is now the first one of that name. The calling thread gets the messages from then on.
// Also true, with no record, if it cannot tell another process anything: it runs alone then.
bool TryBecomeFirstInstance(const NSTextPackage::TString& name);

// Hands a command line to the first process, which gets up to kMaxSentCommandLine units of it. Waits for
// about ten seconds while another command line is pending, then drops this one silently.
void SendCommandLineToFirstInstance(const NSTextPackage::TString& name,
                                    const NSTextPackage::TString& commandLine);

// Whether a command line waits in the record of this process. Costs next to nothing.
bool IsCommandLinePending();

// Takes the waiting command line. To be called on the first process's main thread only.
NSTextPackage::TString TakeSentCommandLine();

// After this the next process that starts is the first one.
void ReleaseFirstInstance();

}  // namespace NSMorvane
