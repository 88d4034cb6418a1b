// The document of Sketch: a canvas, and shapes on it in the order in which they are drawn. It knows nothing
// of windows, views or files.
//
// Positions are whole pixels of the document, with (0, 0) at the top left corner of the canvas. They are
// types of their own, so that nobody takes them for positions in a window.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SketchPicture.h"

namespace NSSketch {

struct TSketchPoint {
  std::int32_t fX = 0;
  std::int32_t fY = 0;
  bool operator==(const TSketchPoint&) const = default;
};

struct TSketchSize {
  std::int32_t fWidth = 0;
  std::int32_t fHeight = 0;
  bool operator==(const TSketchSize&) const = default;
};

// The right and bottom sides are exclusive.
struct TSketchRect {
  std::int32_t fLeft = 0;
  std::int32_t fTop = 0;
  std::int32_t fRight = 0;
  std::int32_t fBottom = 0;
  bool operator==(const TSketchRect&) const = default;
};

using TSketchColor = std::uint32_t;  // 0x00RRGGBB

enum : std::int32_t {
  kMaxCoordinate = 100000,  // and -100000 below
  kMaxCanvasSide = 20000,
  kMaxLineWidth = 1000,
  kMaxTextSize = 1000
};
enum : std::size_t { kMaxShapes = 100000, kMaxPoints = 10000, kMaxTextBytes = 4000 };
// Of one picture, and of all pictures of a document.
enum : std::size_t { kMaxPicturePixels = 2 * 1024 * 1024, kMaxAllPicturePixels = 8 * 1024 * 1024 };

enum class TShapeKind { kLine, kRectangle, kEllipse, kPolyline, kText, kPicture };
constexpr std::size_t kShapeKindCount = 6;

// The pixels of a shape, which its copies share. They never change.
class CSharedPicture {
 public:
  CSharedPicture() = default;
  explicit CSharedPicture(TSketchPicture picture)
      : fPicture(std::make_shared<const TSketchPicture>(std::move(picture))) {}
  // Null for none.
  const TSketchPicture* Get() const { return fPicture.get(); }
  std::size_t CountOfPixels() const { return fPicture ? fPicture->fPixels.size() : 0; }
  bool operator==(const CSharedPicture& other) const {
    return fPicture == other.fPicture || (fPicture && other.fPicture && *fPicture == *other.fPicture);
  }

 private:
  std::shared_ptr<const TSketchPicture> fPicture;
};

// A shape. fWidth and fFill mean nothing for a text, fFill nothing for a line and a picture, fSize nothing
// but for a text.
struct TShape {
  TShapeKind fKind = TShapeKind::kLine;
  // Line: the two ends. Rectangle, ellipse: top left and bottom right corner of the box, through which the
  // middle of the outline runs. Polyline: two points or more. Text: the top left corner of the first letter.
  // Picture: top left and bottom right corner of the box that its pixels fill, which need not be as many.
  std::vector<TSketchPoint> fPoints;
  std::string fText;  // UTF-8, without control characters
  TSketchColor fColor = 0x202428;
  std::int32_t fWidth = 1;            // 0: no outline
  std::optional<TSketchColor> fFill;  // a polyline is filled as if it were closed
  std::int32_t fSize = 16;            // the height of the letters' font
  CSharedPicture fPicture;            // of a picture alone

  bool operator==(const TShape&) const = default;
};

constexpr bool CanBeFilled(TShapeKind kind) {
  return kind == TShapeKind::kRectangle || kind == TShapeKind::kEllipse || kind == TShapeKind::kPolyline;
}

// Every pixel that the shape can touch. For a text, whose width only a font knows, the box is generous.
TSketchRect BoundsOf(const TShape& shape);

// A shape as it stands in the document, with what a file had to say about it.
struct TShapeEntry {
  TShape fShape;
  std::string fNotes;  // the comments and blank lines in front of it, as they were read
  std::string fLine;   // the line it was read from; good as long as it says what the shape is
};

// A line of the part in front of the shapes.
enum class THeadLineKind { kNotes, kCanvas, kBackground };
struct THeadLine {
  THeadLineKind fKind = THeadLineKind::kNotes;
  std::string fText;  // as read; kNotes may hold several lines
};

class CSketchDocument {
 public:
  CSketchDocument() = default;

  TSketchSize CanvasSize() const { return fCanvasSize; }
  TSketchColor Background() const { return fBackground; }
  void SetCanvasSize(TSketchSize size);
  void SetBackground(TSketchColor color);

  // The first one is drawn first.
  const std::vector<TShapeEntry>& Shapes() const { return fShapes; }
  std::vector<TShape> CopyOfShapes() const;
  std::size_t CountOfKind(TShapeKind kind) const;
  std::size_t CountOfPicturePixels() const;

  // Puts a shape on top of all others, and behind the last comment of the file.
  void AppendShape(TShape shape);
  // Puts a shape in front of the one that is at `index` now, or at the end. What RemoveShape gave for an
  // index goes back to that index with every byte of its file.
  void InsertShape(std::size_t index, TShapeEntry entry);
  // Comments in front of the shape stay in the document, and are also in the entry returned.
  TShapeEntry RemoveShape(std::size_t index);
  // The shape that was there.
  TShape ReplaceShape(std::size_t index, TShape shape);

  // Another number after each change.
  std::uint64_t Revision() const { return fRevision; }

  // What a file had besides the shapes, kept for writing it again.
  struct TFileParts {
    bool fHasByteOrderMark = false;
    std::string fLineEnd = "\n";
    std::vector<THeadLine> fHead;
    std::string fEndNotes;  // comments and blank lines behind the last shape
  };
  const TFileParts& FileParts() const { return fFileParts; }
  void SetFileParts(TFileParts parts) { fFileParts = std::move(parts); }

 private:
  std::string& NotesAt(std::size_t index);

  TSketchSize fCanvasSize = {800, 600};
  TSketchColor fBackground = 0xFFFFFF;
  std::vector<TShapeEntry> fShapes;
  TFileParts fFileParts;
  std::uint64_t fRevision = 1;
};

}  // namespace NSSketch
