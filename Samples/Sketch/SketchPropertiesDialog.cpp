#include "SketchPropertiesDialog.h"

#include <algorithm>

#include "SketchApplication.h"
#include "SketchDialogs.h"
#include "SketchGdi.h"
#include "SketchWindow.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TSize kClientSize = {264, 330};
constexpr std::int32_t kMargin = 14;
constexpr std::int32_t kLabelWidth = 52;
constexpr std::int32_t kFieldWidth = 60;
constexpr std::int32_t kRowHeight = 22;
constexpr std::int32_t kSwatchesLeft = kMargin + kLabelWidth;

// A place in one of two columns.
TRect Place(std::int32_t top, std::int32_t column, bool isField) {
  const std::int32_t left = kMargin + column * (kLabelWidth + kFieldWidth + 12) + (isField ? kLabelWidth : 0);
  return {left, top, left + (isField ? kFieldWidth : kLabelWidth), top + kRowHeight};
}

TRect SwatchesPlace(std::int32_t top) {
  const TSize size = CSketchSwatches::Size();
  return {kSwatchesLeft, top, kSwatchesLeft + size.fWidth, top + size.fHeight};
}

const char16_t* NameOf(TShapeKind kind) {
  constexpr const char16_t* kNames[kShapeKindCount] = {u"Line",     u"Rectangle", u"Ellipse",
                                                       u"Polyline", u"Text",      u"Picture"};
  return kNames[static_cast<std::size_t>(kind)];
}

// Has a flag set for the length of a block.
class CRefreshScope {
 public:
  explicit CRefreshScope(bool& flag) : fFlag(flag) { fFlag = true; }
  ~CRefreshScope() { fFlag = false; }
  CRefreshScope(const CRefreshScope&) = delete;
  CRefreshScope& operator=(const CRefreshScope&) = delete;

 private:
  bool& fFlag;
};

// While a text is typed these keys belong to it, not to the shapes.
bool IsKeyOfText(TSketchCommand command) {
  switch (command) {
    case kCommandCut:
    case kCommandCopy:
    case kCommandPaste:
    case kCommandDuplicate:
    case kCommandDelete:
    case kCommandSelectAll:
    case kCommandSelectNone:
      return true;
    default:
      return false;
  }
}

}  // namespace

CSketchPropertiesDialog::CSketchPropertiesDialog(IModelessDialog& window, IMorvane& morvane,
                                                 CSketchApplication& application)
    : CDefaultModelessDialogBehavior(window),
      fApplication(application),
      fForm(morvane, WindowOf(window), RootViewOf(window), kClientSize) {
  const auto frameField = [this](std::int32_t TSketchRect::*first, std::int32_t TSketchRect::*last,
                                 bool moves) {
    return [this, first, last, moves](std::int32_t number) {
      ChangeFrame([&](TSketchRect& frame) {
        const std::int32_t length = frame.*last - frame.*first;
        if (moves) frame.*first = number;
        frame.*last = frame.*first + (moves ? length : number);
      });
    };
  };
  const auto horizontal = [&](bool moves) {
    return frameField(&TSketchRect::fLeft, &TSketchRect::fRight, moves);
  };
  const auto vertical = [&](bool moves) {
    return frameField(&TSketchRect::fTop, &TSketchRect::fBottom, moves);
  };
  fForm.Add(fHeading, {kMargin, 8, kClientSize.fWidth - kMargin, 32}, u"", CSketchLabel::TStyle::kBold);
  fForm.Add(fLeftLabel, Place(40, 0, false), u"_Left");
  fForm.Add(fLeft, Place(40, 0, true), -kMaxCoordinate, kMaxCoordinate, horizontal(true));
  fForm.Add(fTopLabel, Place(40, 1, false), u"_Top");
  fForm.Add(fTop, Place(40, 1, true), -kMaxCoordinate, kMaxCoordinate, vertical(true));
  fForm.Add(fWidthLabel, Place(70, 0, false), u"_Width");
  fForm.Add(fWidth, Place(70, 0, true), 0, kMaxCoordinate, horizontal(false));
  fForm.Add(fHeightLabel, Place(70, 1, false), u"_Height");
  fForm.Add(fHeight, Place(70, 1, true), 0, kMaxCoordinate, vertical(false));
  fForm.Add(fColorLabel, Place(108, 0, false), u"_Color");
  fForm.Add(fColor, SwatchesPlace(106), [this](TSketchColor color) {
    Change("Color", [color](TShape& shape) { shape.fColor = color; });
  });
  fForm.Add(fLineLabel, Place(154, 0, false), u"Lin_e");
  fForm.Add(fLine, Place(154, 0, true), 0, kMaxLineWidth, [this](std::int32_t width) {
    Change("Line Width", [width](TShape& shape) {
      if (shape.fKind != TShapeKind::kText) shape.fWidth = width;
    });
  });
  fForm.Add(fIsFilled, {kSwatchesLeft, 184, kClientSize.fWidth - kMargin, 206}, u"_Filled",
            [this](bool filled) {
              const TSketchColor fill = fFill->Color();
              Change("Fill", [filled, fill](TShape& shape) {
                shape.fFill = filled && CanBeFilled(shape.fKind) ? std::optional(fill) : std::nullopt;
              });
            });
  fForm.Add(fFill, SwatchesPlace(210), [this](TSketchColor color) {
    Change("Fill", [color](TShape& shape) {
      if (CanBeFilled(shape.fKind)) shape.fFill = color;
    });
  });
  fForm.Add(fTextLabel, Place(262, 0, false), u"Te_xt");
  fForm.Add(fText, {kSwatchesLeft, 262, kClientSize.fWidth - kMargin, 262 + kRowHeight},
            [this](const std::u16string& text) {
              const std::string utf8 = UTF8FromText(text);
              if (utf8.size() > kMaxTextBytes) return;
              if (utf8.empty()) return;  // a text without letters could not be seen any more
              Change("Edit Text", [&](TShape& shape) {
                if (shape.fKind == TShapeKind::kText) shape.fText = utf8;
              });
            });
  fForm.Add(fSizeLabel, Place(294, 0, false), u"_Size");
  fForm.Add(fSize, Place(294, 0, true), 1, kMaxTextSize, [this](std::int32_t size) {
    Change("Text Size", [size](TShape& shape) {
      if (shape.fKind == TShapeKind::kText) shape.fSize = size;
    });
  });
  fForm.Finish(*fLeft.View());
  PlaceDialog(window, u"Properties", kClientSize, application.PlaceOfProperties(kClientSize));
  Refresh();
}

CSketchPropertiesDialog::~CSketchPropertiesDialog() { fApplication.OnPropertiesClosed(*this); }

// The window may live on for a while, for the message that it is in the middle of.
void CSketchPropertiesDialog::Close() {
  fApplication.OnPropertiesClosed(*this);
  ThrowIfFailed(fWindow.IModelessDialog_Release());
}

CSketchEditor* CSketchPropertiesDialog::Editor() const {
  return fApplication.Front() ? &fApplication.Front()->Editor() : nullptr;
}

void CSketchPropertiesDialog::Change(const char* name, const std::function<void(TShape&)>& change) {
  if (fIsRefreshing) return;
  CSketchEditor* const editor = Editor();
  if (editor && fApplication.Front()->IsBlocked()) {
    Refresh();  // a dialog of the document's is to be answered first
    return;
  }
  if (editor && !editor->Selection().empty()) {
    fApplication.Front()->FinishAll();
    editor->ChangeSelected(name, true, change);
    return;
  }
  // The style stands for shapes of every kind.
  for (const TShapeKind kind : {TShapeKind::kText, TShapeKind::kRectangle}) {
    fApplication.Style().fKind = kind;
    change(fApplication.Style());
  }
  Refresh();
}

// The frame of all that is selected; each shape takes part in proportion.
void CSketchPropertiesDialog::ChangeFrame(const std::function<void(TSketchRect&)>& change) {
  CSketchEditor* const editor = Editor();
  if (!editor || editor->Selection().empty()) return;
  const TSketchRect before = editor->SelectionFrame();
  TSketchRect after = before;
  change(after);
  TSketchPoint move = {after.fLeft - before.fLeft, after.fTop - before.fTop};
  if (after.fRight - before.fRight == move.fX && after.fBottom - before.fBottom == move.fY) {
    for (const std::size_t index : editor->Selection()) move = PossibleMove(editor->Shape(index), move);
    Change("Place", [move](TShape& shape) { shape = MovedBy(shape, move.fX, move.fY); });
    return;
  }
  Change("Place", [&](TShape& shape) {
    const auto scaled = [](std::int32_t value, std::int32_t a, std::int32_t b, std::int32_t newA,
                           std::int32_t newB) {
      if (a == b) return newA + (value - a);
      return newA + static_cast<std::int32_t>(static_cast<std::int64_t>(value - a) * (newB - newA) / (b - a));
    };
    const TSketchRect one = FrameOf(shape, editor->Measure());
    shape = WithFrame(shape,
                      {scaled(one.fLeft, before.fLeft, before.fRight, after.fLeft, after.fRight),
                       scaled(one.fTop, before.fTop, before.fBottom, after.fTop, after.fBottom),
                       scaled(one.fRight, before.fLeft, before.fRight, after.fLeft, after.fRight),
                       scaled(one.fBottom, before.fTop, before.fBottom, after.fTop, after.fBottom)},
                      editor->Measure());
  });
}

void CSketchPropertiesDialog::SetFrame(const TSketchRect& frame, bool hasFrame, bool canStretch) {
  fLeft->SetNumber(frame.fLeft);
  fTop->SetNumber(frame.fTop);
  fWidth->SetNumber(frame.fRight - frame.fLeft);
  fHeight->SetNumber(frame.fBottom - frame.fTop);
  fLeft->SetEnabled(hasFrame);
  fTop->SetEnabled(hasFrame);
  fWidth->SetEnabled(canStretch && frame.fRight > frame.fLeft);
  fHeight->SetEnabled(canStretch && frame.fBottom > frame.fTop);
}

void CSketchPropertiesDialog::Refresh() {
  const CRefreshScope scope(fIsRefreshing);
  const CSketchEditor* const editor = Editor();
  const TShapeIndices none;
  const TShapeIndices& selection = editor ? editor->Selection() : none;
  const TShape& shape = selection.empty() ? fApplication.Style() : editor->Shape(selection.front());
  const auto any = [&](auto condition) {
    return selection.empty() || std::any_of(selection.begin(), selection.end(), [&](std::size_t index) {
             return condition(editor->Shape(index).fKind);
           });
  };
  const bool hasText = any([](TShapeKind kind) { return kind == TShapeKind::kText; });
  const bool hasLine = any([](TShapeKind kind) { return kind != TShapeKind::kText; });
  const bool hasFill = any(CanBeFilled);

  fHeading->SetText(selection.empty()       ? u"New shapes"
                    : selection.size() == 1 ? NameOf(shape.fKind)
                                            : AsciiText(std::to_string(selection.size())) + u" shapes");
  SetFrame(editor ? editor->SelectionFrame() : TSketchRect{}, !selection.empty(),
           !selection.empty() && hasLine);
  fColor->SetColor(shape.fColor);
  fLine->SetNumber(shape.fWidth);
  fLine->SetEnabled(hasLine);
  fIsFilled->SetChecked(shape.fFill.has_value());
  fIsFilled->SetEnabled(hasFill);
  if (shape.fFill) fFill->SetColor(*shape.fFill);
  fFill->SetEnabled(hasFill && shape.fFill.has_value());
  const bool isOneText = selection.size() == 1 && shape.fKind == TShapeKind::kText;
  fText->SetValue(isOneText ? TextFromUTF8(shape.fText) : std::u16string());
  fText->SetEnabled(isOneText);
  fSize->SetNumber(shape.fSize);
  fSize->SetEnabled(hasText);
}

TError CSketchPropertiesDialog::IModelessDialogBehavior_OnRequestClose(TCloseReason reason) {
  return fApplication.OnRequestClose(reason, nullptr, [this] { Close(); });
}

// Escape goes back to the document, and closes the dialog; shortcuts are those of the document in front.
TError CSketchPropertiesDialog::IModelessDialogBehavior_HandleKeyDown(const TKeyEvent& event,
                                                                      TFlag& outHandled) {
  outHandled = 0;
  return Guarded([&] {
    outHandled = 1;
    if (MeaningOf(fForm.Morvane(), event).fCharacter == kKeyEscape) {
      Refresh();  // what was typed and not taken over
      return IModelessDialogBehavior_OnRequestClose(kCloseByUser);
    }
    if (MeaningOf(fForm.Morvane(), event).fCharacter == kKeyCharF1 + 3) {  // there and back
      fForm.Commit();
      fApplication.FocusFront();
      return TError{kOK};
    }
    if (fForm.Key(event)) return TError{kOK};
    const auto command = CommandOfKey(fForm.Morvane(), event);
    if (command && fForm.IsTyping() && IsKeyOfText(*command)) return TError{kOK};
    if (command) fForm.Commit();  // what is typed is part of what is saved, or undone
    outHandled = fApplication.PerformShortcut(event) ? 1 : 0;
    return TError{kOK};
  });
}

}  // namespace NSSketch
