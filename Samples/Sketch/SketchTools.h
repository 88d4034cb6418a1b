// The tools: what presses and drags on the canvas do to a document. Positions are those of the document; the
// canvas view turns the mouse into them, and holds the mouse capture while a tool is dragging.
#pragma once

#include <memory>
#include <optional>

#include "SketchEditor.h"

namespace NSSketch {

enum class TSketchTool { kSelect, kLine, kRectangle, kEllipse, kPolyline, kText };
constexpr std::size_t kSketchToolCount = 6;

enum class TSketchCursor {
  kArrow,
  kMove,
  kPoint,
  kCross,
  kText,
  kSizeWE,
  kSizeNS,
  kSizeNWSE,
  kSizeNESW,
  kPencil,
  kPen,
  kCrosshair
};

// Where the mouse is.
struct TSketchPointer {
  TSketchPoint fPosition;
  bool fShift = false;    // constrains, or adds to the selection
  bool fControl = false;  // adds to the selection
  double fSlack = 4;      // how far beside something still counts as on it
  double fBeyondX = 0;    // the part of a pixel by which the mouse is beyond the position
  double fBeyondY = 0;
};

// What a tool needs of the view it works in.
class ISketchToolHost {
 public:
  // How new shapes look: color, width, fill, size.
  virtual const TShape& StyleOfNewShapes() = 0;
  // The rubber band has changed in this part of the sheet.
  virtual void OnBandChanged(const TSketchRect& area) = 0;
  // The shape is made; back to selecting.
  virtual void OnToolDone() = 0;
  // Let the user edit the text of a shape, or a new text at a point.
  virtual void EditText(std::size_t index) = 0;
  virtual void EditNewText(TSketchPoint position) = 0;

 protected:
  virtual ~ISketchToolHost() = default;
};

class CSketchTool {
 public:
  virtual ~CSketchTool() = default;

  virtual TSketchCursor CursorAt(const TSketchPointer& pointer) const = 0;
  // True if drags are to follow, with the mouse captured, up to a release.
  virtual bool Press(const TSketchPointer& pointer, bool isDouble) = 0;
  // Whether the press has grabbed something, which should not move before the mouse clearly does.
  virtual bool HasGrabbed() const { return false; }
  virtual void Drag(const TSketchPointer&) {}
  virtual void Release(const TSketchPointer&) {}
  // The mouse moves with no button down.
  virtual void Hover(const TSketchPointer&) {}
  // Ends what is being done, and keeps it or not. False if there was nothing to end.
  virtual bool Finish() { return false; }
  virtual bool Cancel() { return false; }
  // What the rubber band covers; no value if there is none.
  virtual std::optional<TSketchRect> Band() const { return std::nullopt; }
};

std::unique_ptr<CSketchTool> MakeSketchTool(TSketchTool tool, CSketchEditor& editor, ISketchToolHost& host);

// What a change by this tool is called in "Undo Rectangle"; empty for the one that selects.
const char* NameOfNewShape(TSketchTool tool);

// A shape of this kind and style, with the usual size, around a point: what a tool makes without a mouse.
TShape ShapeAround(TSketchTool tool, const TShape& style, TSketchPoint center);

// The handle of the selected shape at a point. Only a shape that is selected alone has handles.
std::optional<THandle> HandleAt(const CSketchEditor& editor, const TSketchPointer& pointer);

// Moves a handle of the selected shape, told by its place in HandlesOf. A handle does not go past the one on
// the other side.
void MoveHandle(CSketchEditor& editor, std::size_t handle, TSketchPoint move);

}  // namespace NSSketch
