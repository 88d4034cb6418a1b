// The files of the sample Sketch, and pictures of other programs: any bytes are read or refused, and what was
// read is written again.
//
// sources: Samples/Sketch/SketchDocument.cpp Samples/Sketch/SketchDocumentFile.cpp
// sources: Samples/Sketch/SketchPicture.cpp
//
// seeds: Samples/Sketch/Documents
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "Samples/Sketch/SketchDocument.h"
#include "Samples/Sketch/SketchDocumentFile.h"
#include "Samples/Sketch/SketchPicture.h"

using namespace NSSketch;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

CSketchDocument Read(std::string_view bytes) {
  CSketchDocument document;
  std::string message;
  Require(ReadSketchDocument(bytes, document, message));
  Require(message.empty());
  return document;
}

void RequireEqual(const CSketchDocument& a, const CSketchDocument& b) {
  Require(a.CanvasSize() == b.CanvasSize() && a.Background() == b.Background());
  Require(a.Shapes().size() == b.Shapes().size());
  for (std::size_t i = 0; i < a.Shapes().size(); ++i) Require(a.Shapes()[i].fShape == b.Shapes()[i].fShape);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const std::optional<TSketchPicture> picture = PictureOfDIB(bytes, 10000))
    Require(PictureOfDIB(DIBOf(*picture), 10000) == picture);
  CSketchDocument document;
  document.SetCanvasSize({1, 2});
  std::string message;
  if (!ReadSketchDocument(bytes, document, message)) {
    Require(message.starts_with("line ") && document.CanvasSize() == TSketchSize{1, 2} &&
            document.Shapes().empty());
    return 0;
  }
  // To the byte, comments and all.
  Require(WriteSketchDocument(document) == bytes);

  // The same written by the program alone.
  CSketchDocument plain;
  plain.SetCanvasSize(document.CanvasSize());
  plain.SetBackground(document.Background());
  for (const TShapeEntry& entry : document.Shapes()) {
    static_cast<void>(BoundsOf(entry.fShape));
    plain.AppendShape(entry.fShape);
  }
  RequireEqual(document, Read(WriteSketchDocument(plain)));

  // With one shape more, whatever the last line was.
  CSketchDocument longer = document;
  TShape line;
  line.fPoints = {{1, 2}, {3, 4}};
  longer.AppendShape(line);
  RequireEqual(longer, Read(WriteSketchDocument(longer)));

  // A shape that goes and comes back leaves no trace, wherever it was; one that is changed changes its line
  // only.
  if (document.Shapes().empty()) return 0;
  const std::size_t index = size % document.Shapes().size();
  document.InsertShape(index, document.RemoveShape(index));
  Require(WriteSketchDocument(document) == bytes);
  TShape shape = document.Shapes()[index].fShape;
  shape.fColor ^= 0x000100;
  document.ReplaceShape(index, shape);
  const std::string changed = WriteSketchDocument(document);
  Require(changed != bytes);
  RequireEqual(document, Read(changed));
  // Without it, the rest is still a document.
  document.RemoveShape(index);
  document.SetCanvasSize({7, 9});
  document.SetBackground(0x010203);
  RequireEqual(document, Read(WriteSketchDocument(document)));
  return 0;
}
