// Objects that open the port or the pixels of a drawing for the length of a block.
#pragma once

#include "Common.h"

namespace NSMorvane {

// Keeps the native port open as long as it exists. The port is null if the tools refuse to open it.
class COpenPort {
 public:
  explicit COpenPort(IDrawTools& tools) : fTools(tools) {
    TNativePort port = {nullptr};
    if (tools.IDrawTools_OpenNativePort(port) == kOK) fHDC = port.fHDC;
  }
  // With a font, which a port that stays closed does not get.
  COpenPort(IDrawTools& tools, HFONT__* font) : fTools(tools) {
    TNativePort port = {nullptr};
    if (tools.IDrawTools_OpenNativePortWithFont(font, port) == kOK) fHDC = port.fHDC;
  }
  ~COpenPort() {
    if (fHDC) fTools.IDrawTools_CloseNativePort();
  }
  COpenPort(const COpenPort&) = delete;
  COpenPort& operator=(const COpenPort&) = delete;
  HDC__* HDC() const { return fHDC; }
  operator HDC__*() const { return fHDC; }

 private:
  IDrawTools& fTools;
  HDC__* fHDC = nullptr;
};

// Keeps the pixels open as long as it exists. It converts to false if the tools refuse to open them.
class COpenPixels {
 public:
  explicit COpenPixels(IDrawTools& tools)
      : fTools(tools), fIsOpen(tools.IDrawTools_OpenRawPixels(fPixels) == kOK) {}
  ~COpenPixels() {
    if (fIsOpen) fTools.IDrawTools_CloseRawPixels();
  }
  COpenPixels(const COpenPixels&) = delete;
  COpenPixels& operator=(const COpenPixels&) = delete;
  explicit operator bool() const { return fIsOpen; }
  const TRawPixels& operator*() const { return fPixels; }
  const TRawPixels* operator->() const { return &fPixels; }

 private:
  IDrawTools& fTools;
  TRawPixels fPixels = {};
  bool fIsOpen;
};

}  // namespace NSMorvane
