#include "SketchCursors.h"

namespace NSSketch {

using namespace NSMorvane;

IMouseShape* MakeMouseShape(IMorvane& morvane, TSketchCursor cursor, TError& outError) {
  // The keys are numbers of cursors in Sketch.rc.
  switch (cursor) {
    case TSketchCursor::kArrow:
      return morvane.IMorvane_CreateBuiltInMouseShape(kMouseShapeArrow, outError);
    case TSketchCursor::kText:
      return morvane.IMorvane_CreateBuiltInMouseShape(kMouseShapeText, outError);
    case TSketchCursor::kPencil:
      return morvane.IMorvane_CreateBuiltInMouseShape(kMouseShapePencil, outError);
    case TSketchCursor::kPen:
      return morvane.IMorvane_CreateBuiltInMouseShape(kMouseShapePen, outError);
    case TSketchCursor::kCrosshair:
      return morvane.IMorvane_CreateBuiltInMouseShape(kMouseShapeCrosshair, outError);
    case TSketchCursor::kMove:
      return morvane.IMorvane_LoadResourceMouseShape("101", outError);
    case TSketchCursor::kPoint:
      return morvane.IMorvane_LoadResourceMouseShape("102", outError);
    case TSketchCursor::kCross:
      return morvane.IMorvane_LoadResourceMouseShape("103", outError);
    case TSketchCursor::kSizeWE:
      return morvane.IMorvane_LoadResourceMouseShape("104", outError);
    case TSketchCursor::kSizeNS:
      return morvane.IMorvane_LoadResourceMouseShape("105", outError);
    case TSketchCursor::kSizeNWSE:
      return morvane.IMorvane_LoadResourceMouseShape("106", outError);
    case TSketchCursor::kSizeNESW:
      return morvane.IMorvane_LoadResourceMouseShape("107", outError);
  }
  outError = kBadInputProgrammingError;
  return nullptr;
}

}  // namespace NSSketch
