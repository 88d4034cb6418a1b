#include "Component/Portable/Opening/PendingCommandLines.h"

#include <iterator>
#include <utility>

namespace NSMorvane {

using NSTextPackage::TString;

void CPendingCommandLines::Add(CCommandLine commandLine) {
  fOptions = std::move(commandLine.fOptions);
  fFiles.insert(fFiles.end(), std::make_move_iterator(commandLine.fFiles.begin()),
                std::make_move_iterator(commandLine.fFiles.end()));
}

void CPendingCommandLines::AddLaunch(CCommandLine commandLine) {
  Add(std::move(commandLine));
  if (fFiles.empty()) fIsReopenRequested = true;
}

TString CPendingCommandLines::TakeFile() {
  const TString file = std::move(fFiles.front());
  fFiles.erase(fFiles.begin());
  return file;
}

bool CPendingCommandLines::TakeReopenRequest() { return std::exchange(fIsReopenRequested, false); }

bool CPendingCommandLines::OnMessage(bool isPending) {
  if (isPending || fUnannounced == 0) return true;
  --fUnannounced;
  return false;
}

bool CPendingCommandLines::OnLook(bool isPending) {
  if (isPending) ++fUnannounced;
  return isPending;
}

}  // namespace NSMorvane
