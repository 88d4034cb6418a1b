// Floating windows: palettes above the others, which are there only while the application is active.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

// These windows have always called themselves so in the log.
MORVANE_WINDOW_KIND(FloatingWindow, "modeless dialog");

class CFloatingWindowImpl final : public CWinWindowKind<TFloatingWindowKind> {
 public:
  CFloatingWindowImpl(IWindowHost* host, TStyleFlags styleFlags);
  ~CFloatingWindowImpl() override;

 protected:
  MORVANE_WINDOW_KIND_HOOKS(FloatingWindow)
};

}  // namespace NSMorvane
