// Shapes to GDI.
#pragma once

#include <map>

#include "SketchGdi.h"

namespace NSSketch {

// Where a document lies on a device: device = fLeft + fScale * document, and likewise fTop.
struct TSketchPlacement {
  double fScale = 1;
  double fLeft = 0;
  double fTop = 0;
};

// The font of texts, for letters of this size on the device.
CGdiObject<HFONT> MakeLetterFont(int deviceSize);

// Paints shapes on a context. The context's colours, modes and objects are as before when the painter goes.
//
// An outline of an odd width runs through the middle of the pixels that its points name, one of an even width
// along their left and top sides: at a scale of 1, horizontal and vertical lines fill whole pixels.
class CSketchPainter {
 public:
  CSketchPainter(HDC hdc, const TSketchPlacement& placement);

  // All shapes that meet the context's clip.
  void PaintShapes(const CSketchDocument& document);
  void PaintShape(const TShape& shape);

 private:
  // The device position of a document position, for an outline of this many document pixels.
  POINT Place(const TSketchPoint& point, int outlineWidth) const;
  void PaintRectangle(const TShape& shape);
  void PaintEllipse(const TShape& shape);
  void PaintPolyline(const TShape& shape);
  void PaintText(const TShape& shape);
  void PaintPixels(const TShape& shape);
  void UseBrush(const TShape& shape);
  HFONT FontOfSize(int deviceSize);

  HDC fHDC;
  CSavedContext fSaved;
  TSketchPlacement fPlacement;
  std::map<int, CGdiObject<HFONT>> fFonts;
};

}  // namespace NSSketch
