// Floating windows: palettes above the other windows, shown only while the application is active.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

// Sic: the name is output in the log.
MORVANE_WINDOW_KIND(FloatingWindow, "modeless dialog");

class CFloatingWindowImpl final : public CWinWindowKind<TFloatingWindowKind> {
 public:
  CFloatingWindowImpl(IWindowHost* host, TStyleFlags styleFlags);
  ~CFloatingWindowImpl() override;

 protected:
  MORVANE_WINDOW_KIND_HOOKS(FloatingWindow)
};

}  // namespace NSMorvane
