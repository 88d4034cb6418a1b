// Hearing what the library says about itself.
#pragma once

#include "Common.h"

namespace NSMorvane {

// Forgets everything. Derive from it to see just the assertions.
class CDefaultDebugOutput : public IDebugOutput {
 public:
  virtual ~CDefaultDebugOutput() = default;
  void IDebugOutput_Assert(const char*, std::int32_t, const char*) override {}
  void IDebugOutput_Print(const char*) override {}
  void IDebugOutput_Indent() override {}
  void IDebugOutput_Unindent() override {}
};

}  // namespace NSMorvane
