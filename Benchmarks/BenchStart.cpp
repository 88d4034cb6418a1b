#include "BenchStart.h"

#include <windows.h>

#include <string>

namespace NSBench {

namespace {

// Seconds from the start of the program to its signal.
double TimeStart(const std::string& program) {
  static int number = 0;
  const std::string name =
      "MorvaneBench" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++number);
  const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, name.c_str());
  Require(event != nullptr, "no event");
  std::string command = "\"" + program + "\" " + kSignalOption + name;
  STARTUPINFOA startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  const double start = Now();
  Require(CreateProcessA(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
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

// One that stands beside this.
std::string ProgramPath(const char* name) {
  char path[MAX_PATH];
  const std::string own(path, GetModuleFileNameA(nullptr, path, MAX_PATH));
  return own.substr(0, own.find_last_of('\\') + 1) + name;
}

}  // namespace

void MeasureStart(const TOptions& options) {
  const std::string library = ProgramPath("BenchLibraryStart.exe");
  const std::string plain = ProgramPath("BenchPlainStart.exe");
  // Both files are in the system's cache from here on.
  TimeStart(library);
  TimeStart(plain);
  PrintRow({"start", "Start of a process to its first paint of 1,000 views", "at most 1.15", "ms"},
           Compare(
               options, [&] { return TimeStart(library) * 1000; }, [&] { return TimeStart(plain) * 1000; }));
}

}  // namespace NSBench
