// Mouse and keyboard.
#pragma once

#include "Common.h"

namespace NSMorvane {

class CDefaultMouseCapture : public IMouseCapture {
 public:
  TError IMouseCapture_OnMouseDown(const TMouseEvent&) override { return kOK; }
  TError IMouseCapture_OnMouseUp(const TMouseEvent&) override { return kOK; }
  TError IMouseCapture_OnMouseMove(const TMouseTracking&) override { return kOK; }
  TError IMouseCapture_OnModifiersChanged(const TModifierKeysEvent&, const TModifierKeysEvent&) override {
    return kOK;
  }
  TError IMouseCapture_OnMouseWheel(const TMouseWheelEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IMouseCapture_OnKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  IMouseShape* IMouseCapture_GetMouseShape(const TMouseShapeRequest&, TError& outError) override {
    outError = kOK;
    return nullptr;
  }
};

}  // namespace NSMorvane
