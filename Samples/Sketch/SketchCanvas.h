// The canvas of a window: the sheet with the document on a desk, in a buffer of its own, so that covering and
// uncovering the window, or scrolling, draws nothing twice; and the tool that works on it.
//
//   canvas    buffered; what can be seen. It has the keys and the mouse
//     desk      as large as what there is to see: desk, edge and shadow of the sheet. The canvas's only
//     subview
//       grid      the sheet and its grid
//       shapes    the shapes
//       overlay   selection, rubber band
//       text      the field in which a text is typed, as long as one is
//
// Scrolling is an IView_Offset of the desk: it moves the pixels inside the canvas's buffer.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <memory>
#include <optional>

#include "SketchCanvasView.h"
#include "SketchEditor.h"
#include "SketchGridView.h"
#include "SketchOverlayView.h"
#include "SketchShapesView.h"
#include "SketchTextEditing.h"
#include "SketchTextEditor.h"
#include "SketchTools.h"
#include "SketchViewport.h"

namespace NSSketch {

// The window around a canvas.
class ISketchCanvasOwner {
 public:
  // Where the mouse is, in document pixels; no value when it has left.
  virtual void OnPointerMoved(std::optional<TSketchPoint> position) = 0;
  // Zoom, grid, or whether a text or points are being edited.
  virtual void OnCanvasStateChanged() = 0;
  virtual void ShowContextMenu(const NSMorvane::TPoint& point, bool onShape) = 0;
  virtual void ShowProperties() = 0;
  // From now on ScrollWithDrag is to be called every few milliseconds, until it gives false.
  virtual void OnDraggedBeyond() = 0;
  virtual void ChooseTool(TSketchTool tool) = 0;
  virtual const TShape& StyleOfNewShapes() = 0;

 protected:
  virtual ~ISketchCanvasOwner() = default;
};

// It belongs to the window's behaviour.
class CSketchCanvas : public ISketchToolHost {
 public:
  CSketchCanvas(NSMorvane::IMorvane& morvane, CSketchEditor& editor, ISketchCanvasOwner& owner);

  // Throws XFailed, as everything here may.
  void Create(NSMorvane::IWindow& window, NSMorvane::IView& superView);
  NSMorvane::IView& View() const { return *fCanvasView.View(); }
  NSMorvane::IMorvane& Morvane() const { return fMorvane; }
  NSMorvane::IWindow& Window() const { return *fWindow; }
  CSketchEditor& Editor() const { return fEditor; }
  ISketchCanvasOwner& Owner() const { return fOwner; }

  // --- What can be seen
  const CSketchViewport& Viewport() const { return fViewport; }
  // Where the canvas stands in the window.
  void SetArea(const NSMorvane::TRect& area);
  // Moves what is seen, by pixels of the window, as far as there is something to see. False if not at all.
  bool Scroll(NSMorvane::TPoint scroll);
  void ZoomTo(int percent, const NSMorvane::TPoint& fixed);
  // Scrolls until a part of the sheet can be seen.
  void Reveal(const TSketchRect& area);
  bool IsGridShown() const { return fIsGridShown; }
  void ShowGrid(bool shown);
  void InvalidateArea(const TSketchRect& area);
  void InvalidateAll();
  // The sheet has another size or background.
  void OnCanvasChanged();
  // Selections are grey while keys go elsewhere.
  bool IsOnDuty() const { return fIsOnDuty; }
  void SetOnDuty(bool onDuty);

  // --- Tools
  TSketchTool ToolKind() const { return fToolKind; }
  CSketchTool& Tool() const { return *fTool; }
  void SetTool(TSketchTool tool);
  // Where a position of the window is for a tool.
  TSketchPointer Pointer(const NSMorvane::TPoint& point, const NSMorvane::TModifierKeys& modifiers) const;
  std::optional<TSketchRect> Band() const { return fTool->Band(); }
  bool IsDragging() const { return fCanvasView && fCanvasView->IsDragging(); }
  // Scrolls on while a tool has the mouse and that rests beyond an edge. False when it does not.
  bool ScrollWithDrag() { return fCanvasView && fCanvasView->ScrollWithDrag(); }
  // What a tool makes without a mouse: a shape in the middle of what can be seen.
  void MakeShape();

  // --- Points, by key: while they are edited the arrow keys move the current handle of the selected shape.
  // This ends with any change of the selection.
  bool CanEditPoints() const;
  bool IsEditingPoints() const { return CurrentHandle().has_value(); }
  void EditPoints(bool edit);
  // Its place in HandlesOf.
  std::optional<std::size_t> CurrentHandle() const;
  void NextHandle(bool backwards);
  void MoveCurrentHandle(TSketchPoint move);
  // To be called whenever the selection may have changed.
  void CheckCurrentHandle() {
    if (!CurrentHandle()) fHandle.reset();
  }

  // --- Texts
  const CSketchTextEditing& TextEditing() const { return fTextEditing; }
  // Where the field stands in the window; empty while no text is typed.
  NSMorvane::TRect TextRect() const;
  // Another change of the document may have ended the typing: to be called after each.
  void CheckText() {
    if (fIsTextShown && !fTextEditing.IsActive()) ShowText(false);
  }
  // To be called before anything else is done to the document.
  void FinishText(bool keep);
  // The same, and ends what the tool is doing: a polyline stays as far as it was clicked, a drag is given up.
  void FinishAll();

  const TShape& StyleOfNewShapes() override { return fOwner.StyleOfNewShapes(); }
  void OnBandChanged(const TSketchRect& area) override { InvalidateArea(area); }
  void OnToolDone() override { fOwner.ChooseTool(TSketchTool::kSelect); }
  void EditText(std::size_t index) override;
  void EditNewText(TSketchPoint position) override;

 private:
  void PlaceViews();
  void StartText(const std::u16string& text);
  void ShowText(bool shown);
  void PlaceText();
  void OnTyped(const std::u16string& text);
  std::size_t CountOfHandles() const;
  void RevealCurrentHandle();

  NSMorvane::IMorvane& fMorvane;
  CSketchEditor& fEditor;
  ISketchCanvasOwner& fOwner;
  NSMorvane::IWindow* fWindow = nullptr;
  CSketchViewport fViewport;
  bool fIsGridShown = true;
  bool fIsOnDuty = false;
  TSketchTool fToolKind = TSketchTool::kSelect;
  std::unique_ptr<CSketchTool> fTool;
  std::unique_ptr<CSketchTool> fOldTool;  // the one before, which may still be running
  CSketchTextEditing fTextEditing;
  std::optional<std::size_t> fHandle;  // the current one, while points are edited
  std::size_t fHandleShape = 0;        // the shape that it belongs to
  NSMorvane::CViewOf<CSketchCanvasView> fCanvasView;
  NSMorvane::CViewOf<CSketchDeskView> fDeskView;
  NSMorvane::CViewOf<CSketchGridView> fGridView;
  NSMorvane::CViewOf<CSketchShapesView> fShapesView;
  NSMorvane::CViewOf<CSketchOverlayView> fOverlayView;
  NSMorvane::CViewOf<NSMorvane::CDefaultControlViewBehavior> fTextView;
  CSketchTextEditor fTextEditor;
  bool fIsTextShown = false;
};

}  // namespace NSSketch
