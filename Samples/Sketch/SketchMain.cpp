// Sketch: a vector drawing program, the sample of a whole application.
#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchApplication.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  return NSMorvane::RunApplication<NSSketch::CSketchApplication>(
      NSMorvane::StartupParams(u"Morvane", u"Sketch"));
}
