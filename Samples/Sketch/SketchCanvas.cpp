#include "SketchCanvas.h"

#include <algorithm>
#include <cmath>

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr std::int32_t kRevealMargin = 16;

}  // namespace

CSketchCanvas::CSketchCanvas(IMorvane& morvane, CSketchEditor& editor, ISketchCanvasOwner& owner)
    : fMorvane(morvane),
      fEditor(editor),
      fOwner(owner),
      fViewport(editor.Document().CanvasSize()),
      fTool(MakeSketchTool(fToolKind, editor, *this)),
      fTextEditing(editor),
      fTextEditor(morvane, [this](const std::u16string& text) { OnTyped(text); }) {}

void CSketchCanvas::Create(IWindow& window, IView& superView) {
  fWindow = &window;
  TViewParams params = ViewParams(kViewDrawPermanent32, kAutoInvalidationDifferenceTopLeft);
  params.fFlags |= kViewFocusable | kViewMouseTrackable;
  ThrowIfFailed(fCanvasView.Create(fMorvane, superView, "Canvas", params, *this));
  ThrowIfFailed(fDeskView.Create(fMorvane, View(), "Desk", ViewParams(), fViewport));
  IView& desk = *fDeskView.View();
  ThrowIfFailed(fGridView.Create(fMorvane, desk, "Grid", ViewParams(), *this));
  ThrowIfFailed(fShapesView.Create(fMorvane, desk, "Shapes", ViewParams(), fEditor.Document(), fViewport));
  ThrowIfFailed(fOverlayView.Create(fMorvane, desk, "Overlay", ViewParams(), *this));
  TViewParams textParams = ControlViewParams();
  textParams.fFlags &= ~std::uint32_t{kViewEnabled};  // until a text is typed
  ThrowIfFailed(fTextView.Create(fMorvane, desk, "Text", textParams));
  fTextEditor.Make(*fTextView.View(), CSketchTextEditing::kMaxLength);
  ThrowIfFailed(window.IWindow_SetConceptualFocusView(&View()));
}

// --- What can be seen

void CSketchCanvas::PlaceViews() {
  ThrowIfFailed(SetRect(View(), fViewport.Area()));
  ThrowIfFailed(SetRect(*fDeskView.View(), fViewport.Desk()));
  ThrowIfFailed(SetRect(*fGridView.View(), fViewport.Sheet()));
  ThrowIfFailed(SetRect(*fShapesView.View(), fViewport.Sheet()));
  // Handles and frames may lie beside the sheet.
  ThrowIfFailed(SetRect(*fOverlayView.View(), fViewport.Desk()));
  PlaceText();
}

void CSketchCanvas::SetArea(const TRect& area) {
  fViewport.SetArea(area);
  PlaceViews();
}

bool CSketchCanvas::Scroll(TPoint scroll) {
  scroll = fViewport.PossibleScroll(scroll);
  if (scroll.fX == 0 && scroll.fY == 0) return false;
  fViewport.Scroll(scroll);
  ThrowIfFailed(fDeskView.View()->IView_Offset(scroll.fX, scroll.fY));
  fOwner.OnCanvasStateChanged();
  return true;
}

void CSketchCanvas::ZoomTo(int percent, const TPoint& fixed) {
  const int before = fViewport.Percent();
  fViewport.ZoomTo(percent, fixed);
  if (fViewport.Percent() == before) return;
  PlaceViews();
  InvalidateAll();
  fOwner.OnCanvasStateChanged();
}

void CSketchCanvas::Reveal(const TSketchRect& area) {
  const TRect part = fViewport.ToWindow(area);
  const TRect& seen = fViewport.Area();
  // As much as needed, and so that the top left corner is seen if not all can be.
  const auto distance = [](std::int32_t from, std::int32_t to, std::int32_t first, std::int32_t last) {
    if (from < first + kRevealMargin) return first + kRevealMargin - from;
    if (to > last - kRevealMargin) return std::max(last - kRevealMargin - to, first + kRevealMargin - from);
    return 0;
  };
  Scroll({distance(part.fLeft, part.fRight, seen.fLeft, seen.fRight),
          distance(part.fTop, part.fBottom, seen.fTop, seen.fBottom)});
}

void CSketchCanvas::ShowGrid(bool shown) {
  fIsGridShown = shown;
  InvalidateAll();
  fOwner.OnCanvasStateChanged();
}

void CSketchCanvas::InvalidateArea(const TSketchRect& area) {
  if (!fCanvasView) return;
  TRect rect = fViewport.ToWindow(area);
  rect = {rect.fLeft - kOverlayReach, rect.fTop - kOverlayReach, rect.fRight + kOverlayReach,
          rect.fBottom + kOverlayReach};
  ThrowIfFailed(fMorvane.IMorvane_InvalidateView(View(), rect));
}

void CSketchCanvas::InvalidateAll() {
  ThrowIfFailed(fMorvane.IMorvane_InvalidateView(View(), fViewport.Area()));
}

void CSketchCanvas::OnCanvasChanged() {
  fViewport.SetSheetSize(fEditor.Document().CanvasSize());
  PlaceViews();
  InvalidateAll();
}

void CSketchCanvas::SetOnDuty(bool onDuty) {
  fIsOnDuty = onDuty;
  for (const std::size_t index : fEditor.Selection()) InvalidateArea(BoundsOf(fEditor.Shape(index)));
}

// --- Tools

void CSketchCanvas::SetTool(TSketchTool tool) {
  if (tool == fToolKind) return;
  FinishAll();
  // A tool may choose another one from inside itself: let it return before it goes.
  fToolKind = tool;
  fOldTool = std::move(fTool);
  fTool = MakeSketchTool(tool, fEditor, *this);
  fMorvane.IMorvane_RequestMouseShapeArbitration();
}

TSketchPointer CSketchCanvas::Pointer(const TPoint& point, const TModifierKeys& modifiers) const {
  constexpr double kSlack = 4;
  const TSketchPoint position = fViewport.ToDocument(point);
  const TPoint pixel = fViewport.ToWindow(position);  // its first one, where it is shown as several
  const double scale = std::max(fViewport.Scale(), 1.0);
  return {position,
          (modifiers.fKeys & kModifierShift) != 0,
          (modifiers.fKeys & kModifierControl) != 0,
          kSlack / fViewport.Scale(),
          std::max(point.fX - pixel.fX, 0) / scale,
          std::max(point.fY - pixel.fY, 0) / scale};
}

void CSketchCanvas::MakeShape() {
  const TSketchPoint middle = fViewport.ToDocument(fViewport.Middle());
  const TShape shape = ShapeAround(fToolKind, StyleOfNewShapes(), middle);
  if (fToolKind == TSketchTool::kText) {
    EditNewText(shape.fPoints[0]);
  } else {
    fEditor.Add(NameOfNewShape(fToolKind), {shape});
    OnToolDone();
  }
}

// --- Points

std::size_t CSketchCanvas::CountOfHandles() const {
  const TShapeIndices& selection = fEditor.Selection();
  return selection.size() == 1 ? HandlesOf(fEditor.Shape(selection[0])).size() : 0;
}

bool CSketchCanvas::CanEditPoints() const {
  return fToolKind == TSketchTool::kSelect && !fTextEditing.IsActive() && CountOfHandles() > 0;
}

std::optional<std::size_t> CSketchCanvas::CurrentHandle() const {
  const bool isValid = fHandle && CanEditPoints() && fEditor.Selection()[0] == fHandleShape;
  return isValid && *fHandle < CountOfHandles() ? fHandle : std::nullopt;
}

void CSketchCanvas::EditPoints(bool edit) {
  fHandle.reset();
  if (edit && CanEditPoints()) {
    fHandle = 0;
    fHandleShape = fEditor.Selection()[0];
    RevealCurrentHandle();
  }
  for (const std::size_t index : fEditor.Selection()) InvalidateArea(BoundsOf(fEditor.Shape(index)));
  fOwner.OnCanvasStateChanged();
}

void CSketchCanvas::NextHandle(bool backwards) {
  if (!IsEditingPoints()) return;
  const std::size_t count = CountOfHandles();
  fHandle = (*fHandle + (backwards ? count - 1 : 1)) % count;
  InvalidateArea(BoundsOf(fEditor.Shape(fHandleShape)));
  RevealCurrentHandle();
}

void CSketchCanvas::MoveCurrentHandle(TSketchPoint move) {
  if (!IsEditingPoints()) return;
  MoveHandle(fEditor, *fHandle, move);
  RevealCurrentHandle();
}

void CSketchCanvas::RevealCurrentHandle() {
  const TSketchPoint point = HandlesOf(fEditor.Shape(fHandleShape))[*fHandle].fPosition;
  Reveal({point.fX, point.fY, point.fX, point.fY});
}

// --- Texts

// As large as the text, with some room for the next letter.
TRect CSketchCanvas::TextRect() const {
  if (!fTextEditing.IsActive()) return {0, 0, 0, 0};
  const TShape& shape = fEditor.Shape(fTextEditing.Index());
  TSketchRect frame = FrameOf(shape, fEditor.Measure());
  frame.fRight += 2 * shape.fSize;
  return fViewport.ToWindow(frame);
}

// [place control]
void CSketchCanvas::PlaceText() {
  if (fTextEditing.IsActive()) {
    const double size = fEditor.Shape(fTextEditing.Index()).fSize * fViewport.Scale();
    fTextEditor.SetLetterSize(static_cast<int>(std::lround(size)));
  }
  ThrowIfFailed(SetRect(*fTextView.View(), TextRect()));
  fTextView->Follow();
}

void CSketchCanvas::ShowText(bool shown) {
  fIsTextShown = shown;
  // The view that has the focus must not be disabled: the focus would go wherever Tab leads.
  if (!shown) ThrowIfFailed(fWindow->IWindow_SetConceptualFocusView(&View()));
  TViewParams params = {};
  ThrowIfFailed(fTextView.View()->IView_GetParams(params));
  params.fFlags = shown ? params.fFlags | kViewEnabled : params.fFlags & ~std::uint32_t{kViewEnabled};
  ThrowIfFailed(fTextView.View()->IView_SetParams(params));
  PlaceText();
  if (shown) ThrowIfFailed(fWindow->IWindow_SetConceptualFocusView(fTextView.View()));
}
// [end]

void CSketchCanvas::StartText(const std::u16string& text) {
  fTextEditor.Start(text);
  ShowText(true);
  InvalidateArea(BoundsOf(fEditor.Shape(fTextEditing.Index())));
  fOwner.OnCanvasStateChanged();
}

void CSketchCanvas::OnTyped(const std::u16string& text) {
  fTextEditing.SetText(UTF8FromText(text));
  if (!fTextEditing.IsActive()) return;
  PlaceText();
  InvalidateArea(BoundsOf(fEditor.Shape(fTextEditing.Index())));
}

void CSketchCanvas::FinishText(bool keep) {
  if (!fTextEditing.IsActive()) return;
  const TSketchRect area = BoundsOf(fEditor.Shape(fTextEditing.Index()));
  fTextEditing.Finish(keep);
  CheckText();
  InvalidateArea(area);
  fOwner.OnCanvasStateChanged();
}

void CSketchCanvas::FinishAll() {
  FinishText(true);
  if (!fTool->Finish()) fTool->Cancel();
}

void CSketchCanvas::EditText(std::size_t index) {
  FinishText(true);
  if (index >= fEditor.Document().Shapes().size()) return;
  fOwner.ChooseTool(TSketchTool::kSelect);
  fTextEditing.Start(index);
  StartText(TextFromUTF8(fEditor.Shape(index).fText));
}

void CSketchCanvas::EditNewText(TSketchPoint position) {
  FinishText(true);
  if (!fEditor.HasRoomFor(1)) return;
  TShape shape = ShapeAround(TSketchTool::kText, StyleOfNewShapes(), position);
  shape.fPoints = {position};
  fOwner.ChooseTool(TSketchTool::kSelect);
  fTextEditing.StartNew(shape);
  StartText({});
}

}  // namespace NSSketch
