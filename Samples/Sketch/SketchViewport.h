// How a sheet lies in a window: zoom and scroll position, and the way between the positions of the document
// and those of the window.
//
// The sheet lies in the middle of a desk, which is at least as large as the area in which it is seen.
#pragma once

#include <Morvane.h>

#include "SketchDocument.h"

namespace NSSketch {

class CSketchViewport {
 public:
  explicit CSketchViewport(TSketchSize sheet) : fSheetSize(sheet) {}

  // Each keeps what is in the middle there, as far as it can.
  void SetArea(const NSMorvane::TRect& area);
  void SetSheetSize(TSketchSize size);
  // `fixed` is a position of the window that shows the same part of the sheet afterwards.
  void ZoomTo(int percent, const NSMorvane::TPoint& fixed);
  // The next step of zoom, up or down.
  int NextZoom(bool larger) const;
  // The largest step at which all of the sheet can be seen.
  int FittingZoom() const;
  // The part of a scroll that does not leave the desk.
  NSMorvane::TPoint PossibleScroll(const NSMorvane::TPoint& scroll) const;
  void Scroll(const NSMorvane::TPoint& scroll);

  int Percent() const { return fPercent; }
  double Scale() const { return fPercent / 100.0; }
  const NSMorvane::TRect& Area() const { return fArea; }
  NSMorvane::TRect Desk() const;
  NSMorvane::TRect Sheet() const;
  NSMorvane::TPoint Middle() const;

  TSketchPoint ToDocument(const NSMorvane::TPoint& point) const;
  NSMorvane::TPoint ToWindow(TSketchPoint point) const;
  // All pixels that show a part of the rectangle.
  NSMorvane::TRect ToWindow(const TSketchRect& rect) const;

 private:
  NSMorvane::TSize DeskSize() const;
  void KeepInArea();

  TSketchSize fSheetSize;
  NSMorvane::TRect fArea = {0, 0, 0, 0};
  NSMorvane::TPoint fDesk = {0, 0};  // its top left corner
  int fPercent = 100;
};

}  // namespace NSSketch
