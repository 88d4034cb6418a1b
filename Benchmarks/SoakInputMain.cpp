// Runs Sketch with ten documents and sends it random input from a fixed seed. Fails on an assertion, on an
// error that the application is told of, if the process hangs or crashes, or if it has grown between its
// first tenth and its end. The run is cut into rounds; at the end of each everything is closed, so that what
// is left then can be compared.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>

#include "../Samples/Sketch/SketchApplication.h"
#include "../Samples/Sketch/SketchWindow.h"
#include "SoakFolder.h"
#include "SoakInputEvents.h"
#include "SoakOptions.h"
#include "SoakUse.h"

namespace NSSoak {

using namespace NSMorvane;

namespace {

constexpr std::size_t kDocuments = 10;
constexpr int kRounds = 50;
constexpr int kTurnsToClose = 5000;
constexpr DWORD kWaitMS = 300;
constexpr DWORD kHangMS = 300000;  // a busy machine may leave this one out for long
constexpr std::uint32_t kMessageOpen = 0x50A4;
constexpr std::uint32_t kMessageAnswer = 0x50A5;

struct TOptions {
  long long fEvents;
  unsigned fSeed;
};

// --- What goes wrong

CInputEvents* theEvents = nullptr;  // while there are any
int theFailures = 0;
std::deque<std::string> theLines;  // what the library has said, the last of it
volatile LONG theTurns = 0;

// Where the program is: modules and offsets in them, for a tool that knows their symbols.
void PrintStack() {
  void* frames[120] = {};
  const USHORT count = RtlCaptureStackBackTrace(1, 120, frames, nullptr);
  for (USHORT i = 0; i < count; ++i) {
    HMODULE module = nullptr;
    char name[MAX_PATH] = "";
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const char*>(frames[i]), &module);
    if (module) GetModuleFileNameA(module, name, MAX_PATH);
    const char* const base = std::strrchr(name, '\\');
    std::printf("    at %s+%llx\n", base ? base + 1 : name,
                static_cast<unsigned long long>(reinterpret_cast<ULONG_PTR>(frames[i]) -
                                                reinterpret_cast<ULONG_PTR>(module)));
  }
}

// What stands in the way of the end.
void Describe(HWND window) {
  wchar_t name[64] = {};
  wchar_t title[64] = {};
  GetClassNameW(window, name, 64);
  GetWindowTextW(window, title, 64);
  std::printf("    %p %ls \"%ls\" of %p, style %lX%s\n", static_cast<void*>(window), name, title,
              static_cast<void*>(GetWindow(window, GW_OWNER)), GetWindowLongW(window, GWL_STYLE),
              window == GetForegroundWindow() ? ", in front" : "");
}

// Each text once.
void Fail(const std::string& what) {
  static std::set<std::string> told;
  ++theFailures;
  if (!told.insert(what).second) return;
  std::printf("FAILED: %s, after event %lld\n", what.c_str(), theEvents ? theEvents->Count() : 0);
  if (theEvents) theEvents->PrintLast();
  for (const std::string& line : theLines) std::printf("    %s\n", line.c_str());
  PrintStack();
  std::fflush(stdout);
}

class CSoakOutput : public CDefaultDebugOutput {
 public:
  void IDebugOutput_Assert(const char* file, std::int32_t line, const char* expression) override {
    const std::lock_guard<std::recursive_mutex> guard(fLock);
    Fail(std::string(file) + "(" + std::to_string(line) + "): " + expression);
  }
  void IDebugOutput_Print(const char* text) override {
    const std::lock_guard<std::recursive_mutex> guard(fLock);
    theLines.emplace_back(text);
    if (theLines.size() > 60) theLines.pop_front();
  }

 private:
  std::recursive_mutex fLock;  // any thread may print
};

LONG WINAPI OnCrash(EXCEPTION_POINTERS* pointers) {
  std::printf("FAILED: crashed with %08lX\n", pointers->ExceptionRecord->ExceptionCode);
  if (theEvents) theEvents->PrintLast();
  std::fflush(stdout);
  return EXCEPTION_CONTINUE_SEARCH;
}

// --- The other thread: has a window that is not the application's, and sees to it that the run goes on

constexpr wchar_t kElsewhereClass[] = L"MorvaneSoakElsewhere";
HWND theElsewhere = nullptr;

void CheckThatItGoesOn() {
  static LONG turns = -1;
  static DWORD since = 0;
  if (theTurns == turns && GetTickCount() - since > kWaitMS) CInputEvents::EndWait();
  if (theTurns != turns) {
    turns = theTurns;
    since = GetTickCount();
  } else if (GetTickCount() - since > kHangMS) {
    std::printf("FAILED: hangs\n");
    if (theEvents) theEvents->PrintLast();
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 1);
  }
}

DWORD WINAPI RunElsewhere(void* ready) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kElsewhereClass;
  windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
  RegisterClassW(&windowClass);
  theElsewhere = CreateWindowW(kElsewhereClass, L"Elsewhere", WS_POPUP | WS_CAPTION | WS_VISIBLE, 1000, 820,
                               260, 120, nullptr, nullptr, windowClass.hInstance, nullptr);
  SetEvent(ready);
  SetTimer(theElsewhere, 1, 100, nullptr);
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0; DispatchMessageW(&message))
    if (message.message == WM_TIMER) CheckThatItGoesOn();
  return 0;
}

// --- The run

class CSoakSketch : public NSSketch::CSketchApplication {
 public:
  CSoakSketch(IMorvane& morvane, const TOptions& options, CSoakFolder& folder, bool& outDone)
      : CSketchApplication(morvane), fOptions(options), fFolder(folder), fDone(outDone) {
    static CSoakOutput output;
    ThrowIfFailed(morvane.IMorvane_SetDebugOutput(&output));
  }
  ~CSoakSketch() override { theEvents = nullptr; }

  // Turns come from a timer: after all input, and also in the loops of menus and of window frames.
  TError IMorvaneRunBehavior_OnStartUp() override {
    fEvents = std::make_unique<CInputEvents>(fOptions.fSeed, theElsewhere);
    theEvents = fEvents.get();
    theApplication = this;
    fFolder.Refresh();
    FillSystemCaches();
    return SetTimer(nullptr, 0, 10, OnTimer) != 0 ? kOK : kOtherError;
  }
  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override { return kOK; }
  TError IMorvaneRunBehavior_OnQuitEvent() override {
    return fDone ? CSketchApplication::IMorvaneRunBehavior_OnQuitEvent() : kOK;
  }
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t message, std::uint32_t number) override {
    if (message == kMessageAnswer) {
      const auto answer = std::move(fAnswers.front());
      fAnswers.pop_front();
      return Guarded([&] {
        answer();
        return TError{kOK};
      });
    }
    if (message != kMessageOpen) return CSketchApplication::IMorvaneRunBehavior_OnAppMessage(message, number);
    return Guarded([&] {
      if (fIsClosing) return TError{kOK};
      if (number == kDocuments)
        OpenUntitled();
      else
        OpenFile(fFolder.PathOf(number));
      // While a dialog blocks the application, floating windows stay out of sight.
      if (!IsPaletteShown() && Front() && !Front()->IsBlocked()) ShowPalette(true);
      return TError{kOK};
    });
  }
  // Nothing is shown in which random input could do harm: only what is in the folder is opened, and nothing
  // is saved elsewhere.
  void ShowOpenDialog(const NSSketch::TDialogPlace&, NSSketch::TOnPath onChosen) override {
    const std::u16string path = fFolder.PathOf(fEvents->Random(kDocuments));
    if (fEvents->Random(2) == 0) AnswerLater([=] { onChosen(path); });
  }
  void ShowSaveDialog(const NSSketch::TDialogPlace&, NSSketch::TSaveQuestion question) override {
    const std::u16string path = fFolder.PathOf(fEvents->Random(2 * kDocuments));
    const auto type = static_cast<NSSketch::TSketchFileType>(
        question.fOffersPictures && fEvents->Random(4) == 0 ? 1 + fEvents->Random(2) : 0);
    if (fEvents->Random(2) == 0)
      AnswerLater([=] { question.fOnChosen(path, type); });
    else
      AnswerLater(question.fOnCancel);
  }
  TError IMorvaneRunBehavior_OnUnhandledError(TError error) override {
    Fail("the error " + std::to_string(error));
    return kOK;
  }

 private:
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
    if (!theApplication->fDone) theApplication->Turn();
  }

  void AnswerLater(std::function<void()> answer) {
    fAnswers.push_back(std::move(answer));
    ThrowIfFailed(fMorvane.IMorvane_PostAppMessage(kMessageAnswer, 0));
  }

  void Turn() {
    theTurns = theTurns + 1;
    if (fIsClosing) return CloseMore();
    if (CountDocuments() < kDocuments && fEvents->Random(4) == 0)
      fMorvane.IMorvane_PostAppMessage(kMessageOpen,
                                       static_cast<std::uint32_t>(fEvents->Random(kDocuments + 1)));
    fEvents->SendSome();
    fIsClosing = fEvents->Count() >= (fUse.Round() + 1) * fOptions.fEvents / kRounds;
  }

  std::size_t CountDocuments() {
    CVectorWindowReceiver documents;
    fMorvane.IMorvane_GetDocumentWindowsZ(documents);
    return documents.fWindows.size();
  }

  // One window in a turn, that in front of the others first. Who is asked does not save, or cancels.
  void CloseMore() {
    const std::vector<HWND> windows = VisibleWindows();
    fEvents->LetGo();
    if (windows.empty()) return EndRound();
    if (++fTurnsToClose == kTurnsToClose) {
      Fail(std::to_string(windows.size()) + " windows do not close");
      for (const HWND window : windows) Describe(window);
      std::exit(1);
    }
    const HWND window = windows[fEvents->Random(windows.size())];
    if (!IsWindowEnabled(window)) return;
    if (GetForegroundWindow() != window) SetForegroundWindow(window);
    const std::size_t how = fEvents->Random(5);
    if (how == 0)
      fEvents->SendKey(VK_ESCAPE, {});  // ends a loop of the system's, too, that a window waits for
    else if (how < 3)
      fEvents->SendKey('D', {VK_MENU});
    else
      PostMessageW(window, WM_CLOSE, 0, 0);
  }

  void EndRound() {
    fTurnsToClose = 0;
    if (OpenClipboard(nullptr)) {  // what is copied and pasted in turn doubles
      EmptyClipboard();
      CloseClipboard();
    }
    fUse.EndRound(std::to_string(fEvents->Count()));
    if (fUse.IsOver() && fUse.HasGrown()) Fail("the process has grown");
    fIsClosing = false;
    fFolder.Refresh();
    if (!fUse.IsOver()) return;
    fDone = true;
    fMorvane.IMorvane_StartQuitting();
  }

  static inline CSoakSketch* theApplication = nullptr;
  const TOptions& fOptions;
  CSoakFolder& fFolder;
  bool& fDone;
  std::unique_ptr<CInputEvents> fEvents;
  std::deque<std::function<void()>> fAnswers;  // to file dialogs
  CUseWatch fUse{kRounds};
  int fTurnsToClose = 0;
  bool fIsClosing = false;
};

}  // namespace

}  // namespace NSSoak

int main(int argumentCount, char** arguments) {
  using namespace NSSoak;
  std::vector<TOption> options = {
      {"--documents", nullptr, "the folder with the documents of Sketch, of which copies are opened"},
      {"--input", "1000000", "events"},
      {"--seed", "1", "of the random numbers"}};
  if (!ParseOptions(argumentCount, arguments, options)) return 2;
  const TOptions run = {NumberOf(options[1]), static_cast<unsigned>(NumberOf(options[2]))};
  std::printf("input: %lld events, seed %u\n", run.fEvents, run.fSeed);
  std::fflush(stdout);
  SetUnhandledExceptionFilter(OnCrash);
  const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  CreateThread(nullptr, 0, RunElsewhere, ready, 0, nullptr);
  WaitForSingleObject(ready, INFINITE);
  bool done = false;
  int code = 0;
  try {
    CSoakFolder folder(options[0].fValue, kDocuments);
    const DWORD start = GetTickCount();
    code = RunApplication<CSoakSketch>(StartupParams(u"Morvane", u"Soak input"), run, folder, done);
    std::printf("%.1f s\n", (GetTickCount() - start) / 1000.0);
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "%s\n", exception.what());
    return 2;
  }
  const bool passed = done && code == 0 && theFailures == 0;
  std::printf("%s: %lld events, seed %u, %d failures\n", passed ? "passed" : "FAILED", run.fEvents, run.fSeed,
              theFailures);
  return passed ? 0 : 1;
}
