#include "SketchClipboard.h"

#include <MorvaneDefaults.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "SketchDocumentFile.h"
#include "SketchGdi.h"
#include "SketchGeometry.h"
#include "SketchPicture.h"
#include "SketchRendering.h"
#include "SketchTextMeasure.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TClipboardFormat kShapesFormat = {"SkSh"};  // the contents of a file of Sketch
constexpr TClipboardFormat kPictureFormat = {"DIBB"};
constexpr std::int64_t kMaxCopiedPixels = 4 * 1024 * 1024;
constexpr std::int32_t kPlaceOfPasted = 20;  // from the left and from the top
constexpr std::size_t kMaxLines = 200;

CSketchDocument DocumentOf(const std::vector<TShape>& shapes, TSketchColor background) {
  CSketchDocument document;
  document.SetBackground(background);
  for (const TShape& shape : shapes) document.AppendShape(shape);
  return document;
}

// The lines of all text shapes; empty without any.
std::u16string TextOfShapes(const std::vector<TShape>& shapes) {
  std::u16string text;
  for (const TShape& shape : shapes)
    if (shape.fKind == TShapeKind::kText)
      for (const std::u16string& line : LinesOf(TextFromUTF8(shape.fText)))
        text += (text.empty() ? u"" : u"\r\n") + line;
  return text;
}

// The smallest picture with all of the shapes; empty if it would be very large.
std::string PictureBytes(const std::vector<TShape>& shapes, TSketchColor background) {
  TSketchRect area = {kMaxCoordinate, kMaxCoordinate, -kMaxCoordinate, -kMaxCoordinate};
  for (const TShape& shape : shapes) {
    const bool isText = shape.fKind == TShapeKind::kText;  // whose bounds are generous
    area = UnionOf(area, isText ? FrameOf(shape, TextMeasure()) : BoundsOf(shape));
  }
  const TSketchSize size = {area.fRight - area.fLeft, area.fBottom - area.fTop};
  if (size.fWidth <= 0 || size.fHeight <= 0 || std::int64_t{size.fWidth} * size.fHeight > kMaxCopiedPixels)
    return {};
  return DIBOf(PictureOf(DocumentOf(shapes, background), area, size));
}

// One without an outline, a pixel of the canvas for each of its own. None if there is no picture.
std::vector<TShape> ShapesOfPicture(const std::string& dib) {
  std::optional<TSketchPicture> picture = PictureOfDIB(dib, kMaxPicturePixels);
  if (!picture) return {};
  TShape shape;
  shape.fKind = TShapeKind::kPicture;
  shape.fPoints = {{kPlaceOfPasted, kPlaceOfPasted},
                   {kPlaceOfPasted + static_cast<std::int32_t>(picture->fWidth),
                    kPlaceOfPasted + static_cast<std::int32_t>(picture->fHeight)}};
  shape.fWidth = 0;
  shape.fPicture = CSharedPicture(*std::move(picture));
  return {shape};
}

// A shape for each line, one below the other.
std::vector<TShape> ShapesOfText(const std::u16string& text, const TShape& style) {
  std::vector<TShape> shapes;
  std::int32_t top = kPlaceOfPasted;
  for (std::size_t from = 0; from < text.size() && shapes.size() < kMaxLines; top += style.fSize * 5 / 4) {
    const std::size_t end = std::min(text.find(u'\n', from), text.size());
    std::u16string line = text.substr(from, end - from);
    from = end + 1;
    std::replace(line.begin(), line.end(), u'\t', u' ');
    std::erase_if(line, [](char16_t c) { return c < u' ' || c == 127; });
    if (line.empty()) continue;
    TShape shape;
    shape.fKind = TShapeKind::kText;
    shape.fPoints = {{kPlaceOfPasted, top}};
    shape.fText = UTF8FromText(line.substr(0, kMaxTextBytes / 3));  // a unit takes three bytes at most
    shape.fColor = style.fColor;
    shape.fSize = style.fSize;
    shapes.push_back(std::move(shape));
  }
  return shapes;
}

}  // namespace

// [copy]
bool CopyShapes(IMorvane& morvane, const std::vector<TShape>& shapes, TSketchColor background) {
  std::vector<TClipboardItem> items = {{kShapesFormat, WriteSketchDocument(DocumentOf(shapes, background))}};
  if (const std::u16string text = TextOfShapes(shapes); !text.empty()) items.push_back(TextItem(text));
  if (std::string picture = PictureBytes(shapes, background); !picture.empty())
    items.push_back({kPictureFormat, std::move(picture)});
  const TError error = CopyToClipboard(morvane, std::move(items));
  if (error == kOtherError) return false;  // another program has it open
  ThrowIfFailed(error);
  return true;
}
// [end]

bool CanPasteShapes(IMorvane& morvane) {
  return IsOnClipboard(morvane, kShapesFormat) || IsOnClipboard(morvane, {"utxt"}) ||
         IsOnClipboard(morvane, kPictureFormat);
}

// [paste]
CSketchDocument PastedShapes(IMorvane& morvane, const TShape& style) {
  CSketchDocument document;
  std::string message;
  if (ReadSketchDocument(ClipboardBytes(morvane, kShapesFormat), document, message) &&
      !document.Shapes().empty())
    return document;
  std::vector<TShape> shapes = ShapesOfText(ClipboardText(morvane), style);
  if (shapes.empty()) shapes = ShapesOfPicture(ClipboardBytes(morvane, kPictureFormat));
  return DocumentOf(shapes, 0xFFFFFF);
}
// [end]

}  // namespace NSSketch
