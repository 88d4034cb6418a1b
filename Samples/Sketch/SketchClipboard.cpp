#include "SketchClipboard.h"

#include <MorvaneDefaults.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "SketchDocumentFile.h"
#include "SketchGdi.h"
#include "SketchGeometry.h"
#include "SketchRendering.h"
#include "SketchTextMeasure.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TClipboardFormat kShapesFormat = {"SkSh"};  // the contents of a file of Sketch
constexpr TClipboardFormat kTextFormat = {"utxt"};
constexpr TClipboardFormat kPictureFormat = {"DIBB"};
constexpr std::int64_t kMaxPicturePixels = 4 * 1024 * 1024;
constexpr std::int32_t kPlaceOfText = 20;  // from the left and from the top
constexpr std::size_t kMaxLines = 200;

// [clipboard data]
class CBytes : public IData {
 public:
  explicit CBytes(std::string bytes) : fBytes(std::move(bytes)) {}
  std::uint32_t IData_CheckInvariant() const override { return 1; }
  TError IData_GetSize(std::uint64_t& out) override {
    out = fBytes.size();
    return kOK;
  }
  TError IData_Read(std::uint64_t offset, std::uint64_t size, void* buffer) override {
    if (offset > fBytes.size() || size > fBytes.size() - offset) return kBadInputProgrammingError;
    std::memcpy(buffer, fBytes.data() + offset, size);
    return kOK;
  }

 private:
  const std::string fBytes;
};

// Formats and what is to be put there for each, the richest first.
class CClipping : public IClipboardDataGetter {
 public:
  void Add(const TClipboardFormat& format, std::string bytes) {
    fFormats.push_back(format);
    fBytes.push_back(std::move(bytes));
  }
  const std::vector<TClipboardFormat>& Formats() const { return fFormats; }
  IData* IClipboardDataGetter_GetData(const TClipboardFormat& format, TError& outError) override {
    IData* data = nullptr;
    outError = Guarded([&] {
      for (std::size_t i = 0; i < fFormats.size(); ++i)
        if (std::strcmp(fFormats[i].fTag, format.fTag) == 0) data = new CBytes(fBytes[i]);
      return data ? kOK : kUnsupportedFormatError;
    });
    return data;
  }

 private:
  std::vector<TClipboardFormat> fFormats;
  std::vector<std::string> fBytes;
};
// [end]

CSketchDocument DocumentOf(const std::vector<TShape>& shapes, TSketchColor background) {
  CSketchDocument document;
  document.SetBackground(background);
  for (const TShape& shape : shapes) document.AppendShape(shape);
  return document;
}

// The lines of all text shapes, as UTF-16 with a zero at the end; empty without any.
std::string TextBytes(const std::vector<TShape>& shapes) {
  std::u16string text;
  for (const TShape& shape : shapes)
    if (shape.fKind == TShapeKind::kText) text += (text.empty() ? u"" : u"\r\n") + TextFromUTF8(shape.fText);
  if (text.empty()) return {};
  return std::string(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(char16_t));
}

// The smallest picture with all of the shapes; empty if it would be very large.
std::string PictureBytes(const std::vector<TShape>& shapes, TSketchColor background) {
  TSketchRect area = {kMaxCoordinate, kMaxCoordinate, -kMaxCoordinate, -kMaxCoordinate};
  for (const TShape& shape : shapes) {
    const bool isText = shape.fKind == TShapeKind::kText;  // whose bounds are generous
    area = UnionOf(area, isText ? FrameOf(shape, TextMeasure()) : BoundsOf(shape));
  }
  const TSketchSize size = {area.fRight - area.fLeft, area.fBottom - area.fTop};
  if (size.fWidth <= 0 || size.fHeight <= 0 || std::int64_t{size.fWidth} * size.fHeight > kMaxPicturePixels)
    return {};
  return DIBOf(PictureOf(DocumentOf(shapes, background), area, size));
}

// What is on the clipboard in a format; empty if that is not there, or not to be had now.
std::string BytesOf(IMorvane& morvane, const TClipboardFormat& format) {
  TError error = kOK;
  const std::unique_ptr<IData> data(morvane.IMorvane_GetClipboardData(format, error));
  std::uint64_t size = 0;
  if (!data || data->IData_GetSize(size) != kOK) return {};
  std::string bytes(size, '\0');
  return data->IData_Read(0, size, bytes.data()) == kOK ? bytes : std::string();
}

// A shape for each line, one below the other.
std::vector<TShape> ShapesOfText(const std::u16string& text, const TShape& style) {
  std::vector<TShape> shapes;
  std::int32_t top = kPlaceOfText;
  for (std::size_t from = 0; from < text.size() && shapes.size() < kMaxLines; top += style.fSize * 5 / 4) {
    const std::size_t end = std::min(text.find(u'\n', from), text.size());
    std::u16string line = text.substr(from, end - from);
    from = end + 1;
    std::replace(line.begin(), line.end(), u'\t', u' ');
    std::erase_if(line, [](char16_t c) { return c < u' ' || c == 127; });
    if (line.empty()) continue;
    TShape shape;
    shape.fKind = TShapeKind::kText;
    shape.fPoints = {{kPlaceOfText, top}};
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
  auto clipping = std::make_unique<CClipping>();
  clipping->Add(kShapesFormat, WriteSketchDocument(DocumentOf(shapes, background)));
  if (std::string text = TextBytes(shapes); !text.empty()) clipping->Add(kTextFormat, std::move(text));
  if (std::string picture = PictureBytes(shapes, background); !picture.empty())
    clipping->Add(kPictureFormat, std::move(picture));
  const std::vector<TClipboardFormat>& formats = clipping->Formats();
  const TError error = morvane.IMorvane_ReplaceClipboardContents(
      formats.data(), static_cast<std::uint32_t>(formats.size()), clipping.get());
  if (error == kOtherError) return false;  // another program has it open
  ThrowIfFailed(error);
  static_cast<void>(clipping.release());  // the library's now
  return true;
}
// [end]

bool CanPasteShapes(IMorvane& morvane) {
  const auto isThere = [&](const TClipboardFormat& format) {
    TFlag there = 0;
    return morvane.IMorvane_IsFormatOnClipboard(format, there) == kOK && there == 1;
  };
  return isThere(kShapesFormat) || isThere(kTextFormat);
}

// [paste]
CSketchDocument PastedShapes(IMorvane& morvane, const TShape& style) {
  CSketchDocument document;
  std::string message;
  if (ReadSketchDocument(BytesOf(morvane, kShapesFormat), document, message) && !document.Shapes().empty())
    return document;
  const std::string bytes = BytesOf(morvane, kTextFormat);
  std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
  return DocumentOf(ShapesOfText(text.substr(0, text.find(u'\0')), style), 0xFFFFFF);
}
// [end]

}  // namespace NSSketch
