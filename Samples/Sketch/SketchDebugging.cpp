#include "SketchDebugging.h"

#include <windows.h>

#include <algorithm>

namespace NSSketch {

using namespace NSMorvane;

// [debug option]
std::unique_ptr<CSketchDebugging> CSketchDebugging::IfWanted(IMorvane& morvane) {
  IWinExtensions* extensions = nullptr;
  ThrowIfFailed(morvane.IMorvane_GetWinExtensions(extensions));
  CTextReceiver options;
  ThrowIfFailed(extensions->IWinExtensions_GetCommandLineOptions(options));
  const bool isWanted = std::ranges::count(options.fTexts, u"/debug") > 0;
  return isWanted ? std::make_unique<CSketchDebugging>(morvane) : nullptr;
}

CSketchDebugging::CSketchDebugging(IMorvane& morvane) : fMorvane(morvane) {
  TDebugSettings settings = {};
  settings.fDebugMenu = 1;
  ThrowIfFailed(fMorvane.IMorvane_SetDebugSettings(settings));
  ThrowIfFailed(fMorvane.IMorvane_SetDebugOutput(this));
}

CSketchDebugging::~CSketchDebugging() { fMorvane.IMorvane_SetDebugOutput(nullptr); }

void CSketchDebugging::IDebugOutput_Assert(const char* file, std::int32_t line, const char* expression) {
  const std::string place = std::string(file) + "(" + std::to_string(line) + "): ";
  ::OutputDebugStringA((place + expression + "\n").c_str());
}

void CSketchDebugging::IDebugOutput_Print(const char* text) {
  const std::string indentation(2 * static_cast<std::size_t>(std::max(fDepth, 0)), ' ');
  ::OutputDebugStringA((indentation + text + "\n").c_str());
}
// [end]

}  // namespace NSSketch
