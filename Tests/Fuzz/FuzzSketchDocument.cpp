// The documents of the sample application Sketch: any bytes are read or refused, what was read is written as
// it was, and what is written without the help of the old lines says the same.
//
// sources: Samples/Sketch/SketchDocument.cpp Samples/Sketch/SketchDocumentFile.cpp
#include <cstdint>
#include <cstdlib>

#include "Samples/Sketch/SketchDocumentFile.h"

using namespace NSSketch;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

CSketchDocument ReadGood(const std::string& bytes) {
  CSketchDocument document;
  std::string message;
  Require(ReadSketchDocument(bytes, document, message));
  return document;
}

// The same shapes, canvas and background, without anything of the file.
CSketchDocument Copy(const CSketchDocument& document) {
  CSketchDocument copy;
  copy.SetCanvasSize(document.CanvasSize());
  copy.SetBackground(document.Background());
  for (const TShapeEntry& entry : document.Shapes()) copy.AppendShape(entry.fShape);
  return copy;
}

void RequireSame(const CSketchDocument& a, const CSketchDocument& b) {
  Require(a.CanvasSize() == b.CanvasSize() && a.Background() == b.Background());
  Require(a.Shapes().size() == b.Shapes().size());
  for (std::size_t i = 0; i < a.Shapes().size(); ++i) Require(a.Shapes()[i].fShape == b.Shapes()[i].fShape);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  CSketchDocument document;
  std::string message;
  if (!ReadSketchDocument(bytes, document, message)) {
    Require(message.starts_with("line ") && message.find(": ") != std::string::npos);
    Require(document.Shapes().empty() && document.Revision() == CSketchDocument().Revision());
    return 0;
  }
  Require(message.empty());
  Require(WriteSketchDocument(document) == bytes);
  RequireSame(ReadGood(WriteSketchDocument(Copy(document))), document);

  // Removing and bringing back, and changing and changing back, leave no trace.
  const std::size_t count = document.Shapes().size();
  if (count == 0) return 0;
  const std::size_t index = size % count;
  TShapeEntry removed = document.RemoveShape(index);
  Require(ReadGood(WriteSketchDocument(document)).Shapes().size() == count - 1);
  document.InsertShape(index, std::move(removed));
  TShape changed = document.Shapes()[index].fShape;
  changed.fColor ^= 0xFFFFFF;
  TShape old = document.ReplaceShape(index, changed);
  RequireSame(ReadGood(WriteSketchDocument(document)), document);
  document.ReplaceShape(index, std::move(old));
  Require(WriteSketchDocument(document) == bytes);
  BoundsOf(document.Shapes()[index].fShape);
  return 0;
}
