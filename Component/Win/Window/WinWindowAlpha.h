// The global alpha of a window. An opaque window is never layered.
#pragma once

#include <windows.h>

#include <cstdint>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class CWinWindowAlpha : CNotCopied {
 public:
  explicit CWinWindowAlpha(const TWindowCore& window) : fWindow(window) {}

  std::uint8_t Get() const;
  // Changes the style of the native window, which gets messages about that.
  void Set(std::uint8_t alpha);

 private:
  const TWindowCore& fWindow;
  std::uint8_t fAlpha = 255;
};

}  // namespace NSMorvane
