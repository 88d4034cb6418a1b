// What a developer sees of a running Sketch.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <memory>
#include <string>

namespace NSSketch {

// From its construction to its destruction: the library's debug menu, and in the debugger's log all that the
// library tells.
class CSketchDebugging : public NSMorvane::CDefaultDebugOutput {
 public:
  // Null unless Sketch was started with the option /debug.
  static std::unique_ptr<CSketchDebugging> IfWanted(NSMorvane::IMorvane& morvane);

  explicit CSketchDebugging(NSMorvane::IMorvane& morvane);
  ~CSketchDebugging() override;

  void IDebugOutput_Assert(const char* file, std::int32_t line, const char* expression) override;
  void IDebugOutput_Print(const char* text) override;
  void IDebugOutput_Indent() override { ++fDepth; }
  void IDebugOutput_Unindent() override { --fDepth; }

 private:
  NSMorvane::IMorvane& fMorvane;
  int fDepth = 0;
};

}  // namespace NSSketch
