#include "BenchStart.h"

#include <windows.h>

#include <memory>
#include <optional>

#include "LibraryWindow.h"

namespace NSBench {

namespace {

class CStartedRun : public CDefaultApplication {
 public:
  CStartedRun(IMorvane& morvane, HANDLE event) : CDefaultApplication(morvane), fEvent(event) {}

  TError IMorvaneRunBehavior_OnStartUp() override {
    return Guarded([&] {
      ThrowIfFailed(fMorvane.IMorvane_SetDebugSettings(TDebugSettings{}));
      fWindow = &CreateLibraryWindow(fMorvane);
      fScene.emplace(fMorvane, *fWindow, TArrangement::kDirect, fPainter, Cells(kCellsInClient));
      return fMorvane.IMorvane_PostAppMessage(0, 0);
    });
  }
  // The window is painted.
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t, std::uint32_t) override {
    Require(fPainter.TakeCount() >= kCellsInClient, "a first paint of all cells");
    SetEvent(fEvent);
    fScene.reset();
    return fWindow->IDocumentWindow_Release();
  }

 private:
  HANDLE fEvent;
  CCellPainter fPainter{TCellText::kNone};
  IDocumentWindow* fWindow = nullptr;
  std::optional<CCellScene> fScene;
};

// Seconds from the start of the program to its signal.
double TimeStart(const std::wstring& program) {
  static int number = 0;
  const std::wstring name =
      L"MorvaneBench" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++number);
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, name.c_str());
  Require(event != nullptr, "no event");
  std::wstring command = L"\"" + program + L"\" /signal:" + name;
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  const double start = Now();
  Require(CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                         &startup, &process) != 0,
          "a program beside this one does not start");
  const HANDLE handles[] = {event, process.hProcess};
  const DWORD which = WaitForMultipleObjects(2, handles, FALSE, 60000);
  const double elapsed = Now() - start;
  Require(which == WAIT_OBJECT_0, "a started program did not paint");
  Require(WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0, "a started program did not end");
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  CloseHandle(event);
  return elapsed;
}

std::wstring ProgramPath() {
  wchar_t path[MAX_PATH];
  const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::wstring(path, length);
}

}  // namespace

void MeasureStart(const TOptions& options) {
  const std::wstring library = ProgramPath();
  const std::wstring plain = library.substr(0, library.find_last_of(L'\\') + 1) + L"BenchPlainStart.exe";
  // Both files are in the system's cache from here on.
  TimeStart(library);
  TimeStart(plain);
  PrintRow({"start", "Start of a process to its first paint of 1,000 views", "at most 1.25", "ms"},
           Compare(
               options, [&] { return TimeStart(library) * 1000; }, [&] { return TimeStart(plain) * 1000; }));
}

int RunAsStarted(const char* eventName) {
  const HANDLE event = OpenEventA(EVENT_MODIFY_STATE, FALSE, eventName);
  Require(event != nullptr, "the event has gone");
  return RunApplication<CStartedRun>(StartupParams(u"Morvane", u"Bench start"), event);
}

}  // namespace NSBench
