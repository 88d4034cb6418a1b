// Opens, paints and closes windows, thousands of them, in one process, and fails if the process has grown
// between its first tenth and its end.
#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "SoakOptions.h"
#include "SoakUse.h"
#include "SoakWindow.h"

namespace NSSoak {

namespace {

constexpr int kRounds = 20;

struct TOptions {
  int fWindows;
  int fRepaints;
};

class CSoakRun : public CDefaultRunBehavior {
 public:
  CSoakRun(IMorvane& morvane, const TOptions& options, bool& outSuccess)
      : fMorvane(morvane), fOptions(options), fSuccess(outSuccess) {}

  TError IMorvaneRunBehavior_OnStartUp() override {
    FillSystemCaches();
    const TError error = fMorvane.IMorvane_SetDebugSettings(TDebugSettings{});
    return error == kOK ? fMorvane.IMorvane_PostAppMessage(0, 0) : error;
  }
  // One window for each message, so that the loop runs in between as it does in any application.
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t, std::uint32_t) override {
    if (fDone == fOptions.fWindows) return kOK;
    const TError error = Guarded([&] {
      RunWindow(fMorvane, static_cast<unsigned>(fDone), RepaintsBefore(fDone + 1) - RepaintsBefore(fDone));
      return TError{kOK};
    });
    if (error != kOK) return Stop("a window failed with the error " + std::to_string(error));
    ++fDone;
    while (fDone * kRounds >= (fUse.Round() + 1) * fOptions.fWindows) fUse.EndRound(std::to_string(fDone));
    if (fDone < fOptions.fWindows) return fMorvane.IMorvane_PostAppMessage(0, 0);
    fSuccess = !fUse.HasGrown();
    return fMorvane.IMorvane_StartQuitting();
  }
  // Between two windows there is none, and the library asks whether that is the end.
  TError IMorvaneRunBehavior_OnQuitEvent() override { return kOK; }
  TError IMorvaneRunBehavior_OnUnhandledError(TError error) override {
    return Stop("the library reports the error " + std::to_string(error));
  }

 private:
  int RepaintsBefore(int window) const {
    return static_cast<int>(static_cast<long long>(fOptions.fRepaints) * window / fOptions.fWindows);
  }

  TError Stop(const std::string& why) {
    std::printf("FAILED: %s, at window %d\n", why.c_str(), fDone);
    std::fflush(stdout);
    std::_Exit(1);
  }

  IMorvane& fMorvane;
  const TOptions& fOptions;
  bool& fSuccess;
  int fDone = 0;
  CUseWatch fUse{kRounds};
};

}  // namespace

}  // namespace NSSoak

int main(int argumentCount, char** arguments) {
  using namespace NSSoak;
  std::vector<TOption> options = {{"--windows", "5000", "document windows opened and closed"},
                                  {"--repaints", "200000", "partial repaints in all of them together"}};
  if (!ParseOptions(argumentCount, arguments, options)) return 2;
  const TOptions run = {static_cast<int>(NumberOf(options[0])), static_cast<int>(NumberOf(options[1]))};
  bool success = false;
  const int code = RunApplication<CSoakRun>(StartupParams(u"Morvane", u"Soak"), run, success);
  std::printf("%s: %d windows, %d repaints\n", code == 0 && success ? "passed" : "FAILED", run.fWindows,
              run.fRepaints);
  return code == 0 && success ? 0 : 1;
}
