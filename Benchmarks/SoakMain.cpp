// Opens, paints and closes windows, thousands of them, in one process, and fails if the process has grown
// between its first tenth and its end.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "SoakUse.h"
#include "SoakWindow.h"

namespace NSSoak {

namespace {

struct TOptions {
  int fWindows = 5000;
  int fRepaints = 200000;
};

bool ParseOptions(int argumentCount, char** arguments, TOptions& out) {
  bool good = argumentCount % 2 == 1;
  for (int i = 1; good && i < argumentCount; i += 2) {
    if (std::strcmp(arguments[i], "--windows") == 0) {
      out.fWindows = std::atoi(arguments[i + 1]);
    } else if (std::strcmp(arguments[i], "--repaints") == 0) {
      out.fRepaints = std::atoi(arguments[i + 1]);
    } else {
      good = false;
    }
  }
  if (good && out.fWindows >= 20 && out.fRepaints >= out.fWindows) return true;
  std::fprintf(stderr,
               "usage: %s [--windows N] [--repaints N]\n"
               "  --windows   document windows opened and closed, at least 20 (5000)\n"
               "  --repaints  partial repaints in all of them together, at least one for each (200000)\n",
               arguments[0]);
  return false;
}

// --- The run

class CSoakRun : public CDefaultRunBehavior {
 public:
  CSoakRun(IMorvane& morvane, const TOptions& options, bool& outSuccess)
      : fMorvane(morvane), fOptions(options), fSuccess(outSuccess) {}

  TError IMorvaneRunBehavior_OnStartUp() override {
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
    if (fDone == fOptions.fWindows / 10) {
      fUseAtFirstTenth = MeasureUse(true);
      Print(std::to_string(fDone), fUseAtFirstTenth);
    } else if (fDone % (fOptions.fWindows / 20) == 0 && fDone < fOptions.fWindows) {
      Print(std::to_string(fDone), MeasureUse(false));
    }
    if (fDone < fOptions.fWindows) return fMorvane.IMorvane_PostAppMessage(0, 0);
    Judge();
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

  void Judge() {
    const TUse end = MeasureUse(true);
    Print(std::to_string(fDone), end);
    fSuccess = !HasGrown(fUseAtFirstTenth, end);
  }

  IMorvane& fMorvane;
  const TOptions& fOptions;
  bool& fSuccess;
  int fDone = 0;
  TUse fUseAtFirstTenth = {};
};

}  // namespace

}  // namespace NSSoak

int main(int argumentCount, char** arguments) {
  using namespace NSSoak;
  TOptions options;
  if (!ParseOptions(argumentCount, arguments, options)) return 2;
  bool success = false;
  const int code = RunApplication<CSoakRun>(StartupParams(u"Morvane", u"Soak"), options, success);
  std::printf("%s: %d windows, %d repaints\n", code == 0 && success ? "passed" : "FAILED", options.fWindows,
              options.fRepaints);
  return code == 0 && success ? 0 : 1;
}
