// Documents of the sample application Sketch: their files, and what can be done to them, changes and undo.
// The tools are tried with the mouse, by the tour.
#include <memory>

#include "Samples/Sketch/SketchDocumentFile.h"
#include "Samples/Sketch/SketchEditor.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;
using namespace NSSketch;

namespace {

const std::string kSample =
    "# A house\n"
    "canvas 320 200\n"
    "\n"
    "background #DDEEFF\n"
    "# walls\n"
    "rectangle 10 20 110 120   fill=#FFCC00 width=3\n"
    "\n"
    "# roof\n"
    "polyline 0 20 60 -30 120 20 color=#883311 width=4 fill=#AA4422\n"
    "ellipse 50 50 50 90\n"
    "line -100000 100000 7 8 width=0\n"
    "picture 3 4 5 6 #ff000000FF00 #0000FF102030 #000000FFFFFF  width=0\n"
    "  text 10 130 \"say \\\"a\\\\b\\\"\\n\xC3\xA4\" size=9 color=#0a0B0c\n"
    "# end";

CSketchDocument Read(const std::string& bytes) {
  CSketchDocument document;
  std::string message;
  EXPECT_TRUE(ReadSketchDocument(bytes, document, message)) << message;
  return document;
}

class CFixedMeasure : public ISketchTextMeasure {
 public:
  TSketchSize SizeOfText(const std::string& text, std::int32_t size) override {
    return {static_cast<std::int32_t>(text.size()) * size, size};
  }
};

class SketchEditor : public testing::Test {
 protected:
  std::string Written() const { return WriteSketchDocument(fEditor.Document()); }

  CFixedMeasure fMeasure;
  CSketchEditor fEditor{std::make_unique<CSketchDocument>(Read(kSample)), fMeasure};
};

}  // namespace

TEST(SketchDocument, ReadsEveryStatement) {
  const CSketchDocument document = Read(kSample);
  // The same shapes without the lines of the file.
  CSketchDocument copy;
  copy.SetCanvasSize(document.CanvasSize());
  copy.SetBackground(document.Background());
  for (const TShapeEntry& entry : document.Shapes()) copy.AppendShape(entry.fShape);
  EXPECT_EQ(WriteSketchDocument(copy),
            "canvas 320 200\n"
            "background #DDEEFF\n"
            "rectangle 10 20 110 120 width=3 fill=#FFCC00\n"
            "polyline 0 20 60 -30 120 20 color=#883311 width=4 fill=#AA4422\n"
            "ellipse 50 50 50 90\n"
            "line -100000 100000 7 8 width=0\n"
            "picture 3 4 5 6 #FF000000FF00 #0000FF102030 #000000FFFFFF width=0\n"
            "text 10 130 \"say \\\"a\\\\b\\\"\\n\xC3\xA4\" size=9 color=#0A0B0C\n");
}

TEST(SketchDocument, WritesWhatItReadToTheByte) {
  std::string withCarriageReturns;
  for (const char c : kSample) withCarriageReturns += c == '\n' ? "\r\n" : std::string(1, c);
  const std::string cases[] = {
      kSample, withCarriageReturns, "\xEF\xBB\xBF" + kSample, "", "\n\n", "# only a comment", "line 1 2 3 4"};
  for (const std::string& bytes : cases) EXPECT_EQ(WriteSketchDocument(Read(bytes)), bytes);
}

TEST(SketchDocument, SaysWhatIsWrongWithAFile) {
  const std::pair<const char*, const char*> cases[] = {
      {"\n# x\nrectangle 1 2 3\n", "line 3: rectangle needs four numbers"},
      {"line 1 2 3 4.5", "line 1: \"4.5\" is not a whole number"},
      {"line 1 2 3 100001", "line 1: \"100001\" is out of range: -100000 to 100000"},
      {"ellipse 5 1 4 2", "line 1: ellipse needs left, top, right, bottom, in this order"},
      {"text 1 2 \"a", "line 1: the text has no closing quote"},
      {"text 1 2 \"a\\", "line 1: in a text, a backslash needs a quote, a backslash or an n behind it"},
      {"line 1 2 3 4 width=1 width=1", "line 1: \"width\" is given twice"},
      {"line 1 2 3 4 fill=#000000", "line 1: line has no fill"},
      {"line 1 2 3 4 color=#12345G", "line 1: \"#12345G\" is not a color like #2F6FDE"},
      {"canvas 1 2\ncanvas 1 2", "line 2: canvas is given twice"},
      {"line 1 2 3 4\nbackground #000000", "line 2: background must stand in front of the first shape"},
      {"# \xC3", "line 1: this is not UTF-8 text"},
      {"line 1 2 3 4\r\r\n", "line 1: there is a control character in it"},
      {"\npicture 1 2 3 4 width=0",
       "line 2: picture needs four numbers and rows of pixels like #FF000000FF00"},
      {"picture 1 2 3 #000000", "line 1: picture needs four numbers"},
      {"picture 3 2 1 4 #000000", "line 1: picture needs left, top, right, bottom, in this order"},
      {"picture 1 2 3 4 #00000", "line 1: a row of pixels needs six digits for each"},
      {"picture 1 2 3 4 #", "line 1: a row of pixels needs six digits for each"},
      {"picture 1 2 3 4 #000000 #000000000000", "line 1: the rows of a picture must be equally long"},
      {"picture 1 2 3 4 #00000000000G", "line 1: \"00000G\" is not a pixel like 2F6FDE"},
      {"picture 1 2 3 4 #000000 fill=#000000", "line 1: picture has no fill"},
  };
  for (const auto& [bytes, expected] : cases) {
    CSketchDocument document;
    std::string message;
    EXPECT_FALSE(ReadSketchDocument(bytes, document, message)) << bytes;
    EXPECT_EQ(message, expected);
    EXPECT_TRUE(document.Shapes().empty());
  }
}

TEST(SketchDocument, HoldsItsLimits) {
  for (const auto& [head, repeated, tail, limit] :
       {std::tuple("polyline", " 1 2", "", std::size_t{kMaxPoints}),
        {"text 1 2 \"", "a", "\"", kMaxTextBytes},
        {"", "line 1 2 3 4\n", "", kMaxShapes},
        {"picture 1 2 3 4", " #000000", "", kMaxPictureSide},
        {"picture 1 2 3 4 #", "000000", "", kMaxPictureSide}})
    for (const std::size_t more : {0, 1}) {
      std::string bytes = head, message;
      for (std::size_t i = 0; i < limit + more; ++i) bytes += repeated;
      CSketchDocument document;
      EXPECT_EQ(ReadSketchDocument(bytes + tail, document, message), more == 0) << repeated;
    }
}

TEST(SketchDocument, ChangesOnlyTheLinesOfWhatHasChanged) {
  CSketchDocument document = Read(kSample);
  TShape wall = document.Shapes()[0].fShape;
  wall.fPoints[1] = {120, 130};
  wall.fFill.reset();
  const TShape before = document.ReplaceShape(0, wall);
  document.SetCanvasSize({400, 300});
  std::string expected = kSample;
  expected.replace(expected.find("canvas 320 200"), 14, "canvas 400 300");
  const std::string oldWall = "rectangle 10 20 110 120   fill=#FFCC00 width=3";
  expected.replace(expected.find(oldWall), oldWall.size(), "rectangle 10 20 120 130 width=3");
  EXPECT_EQ(WriteSketchDocument(document), expected);
  document.ReplaceShape(0, before);
  document.SetCanvasSize({320, 200});
  EXPECT_EQ(WriteSketchDocument(document), kSample);
  // Comments stay when shapes go and come back.
  for (std::size_t index = 0; index < document.Shapes().size(); ++index) {
    TShapeEntry removed = document.RemoveShape(index);
    EXPECT_NE(WriteSketchDocument(document).find("\n# roof\n"), std::string::npos) << index;
    document.InsertShape(index, std::move(removed));
    EXPECT_EQ(WriteSketchDocument(document), kSample) << index;
  }
  // A new shape comes behind the last line.
  document.AppendShape(before);
  EXPECT_EQ(WriteSketchDocument(document), kSample + "\nrectangle 10 20 110 120 width=3 fill=#FFCC00\n");
  // Also where that has half a line end.
  CSketchDocument half = Read("\r\n\t\r");
  half.AppendShape(before);
  EXPECT_EQ(WriteSketchDocument(half), "\r\n\t\r\nrectangle 10 20 110 120 width=3 fill=#FFCC00\r\n");
}

// --- Changes and undo

// Whatever is done, undo brings every byte back, and redo every byte of what was done.
TEST_F(SketchEditor, UndoesAndRedoesToTheByte) {
  Random random(17);
  std::vector<std::string> states = {Written()};
  for (int i = 0; i < 200; ++i) {
    const auto pick = [&](std::size_t count) {
      return static_cast<std::size_t>(random(0, static_cast<int>(count) - 1));
    };
    const std::size_t count = fEditor.Document().Shapes().size();
    TShapeIndices some;
    for (std::size_t k = 0; k < count; ++k)
      if (pick(2) == 0) some.push_back(k);
    fEditor.Select(some);
    switch (pick(4)) {
      case 0:
        fEditor.Add("Paste", {fEditor.Shape(pick(count)), fEditor.Shape(pick(count))});
        break;
      case 1:
        if (some.size() < count) fEditor.RemoveSelected("Delete");
        break;
      case 2:
        fEditor.MoveSelected({static_cast<int>(pick(9)) - 4, 1});
        break;
      default:
        fEditor.BeginGesture("Gesture");
        if (pick(2) == 0) fEditor.InsertInGesture(fEditor.Shape(0));
        for (std::size_t k = 0; k < 3; ++k)
          fEditor.ReplaceInGesture(pick(count), MovedBy(fEditor.Shape(0), 1, 2));
        pick(3) == 0 ? fEditor.CancelGesture() : fEditor.EndGesture();
    }
    if (Written() != states.back()) states.push_back(Written());
  }
  ASSERT_GT(states.size(), 50u);
  for (std::size_t i = states.size() - 1; fEditor.CanUndo();) {
    fEditor.Undo();  // two moves in a row are one step, and a step may have changed nothing
    while (i > 0 && Written() != states[i]) --i;
    ASSERT_EQ(Written(), states[i]);
  }
  EXPECT_EQ(Written(), kSample);
  EXPECT_FALSE(fEditor.IsModified());
  while (fEditor.CanRedo()) fEditor.Redo();
  EXPECT_EQ(Written(), states.back());
}

TEST_F(SketchEditor, HasRoomForSoManyPixels) {
  const auto picture = [](std::uint32_t width, std::uint32_t height) {
    TShape shape;
    shape.fKind = TShapeKind::kPicture;
    shape.fPoints = {{0, 0}, {1, 1}};
    shape.fPicture = CSharedPicture({width, height, std::vector<std::uint32_t>(width * height)});
    return shape;
  };
  const std::size_t before = fEditor.Document().Shapes().size();
  const auto left = static_cast<std::uint32_t>(kMaxAllPicturePixels - 6);  // one of 6 is there
  fEditor.Add("Paste", {picture(left / 2 + 1, 1), picture(left / 2, 1)});
  EXPECT_EQ(fEditor.Document().Shapes().size(), before);
  fEditor.Add("Paste", {picture(left / 2, 1), picture(left / 2, 1)});
  EXPECT_EQ(fEditor.Document().Shapes().size(), before + 2);
  EXPECT_FALSE(fEditor.HasRoomFor({picture(1, 1)}));
}

TEST_F(SketchEditor, KnowsWhatIsUnsaved) {
  fEditor.Select({0});
  fEditor.MoveSelected({1, 0});
  fEditor.MoveSelected({1, 0});
  EXPECT_TRUE(fEditor.IsModified());
  fEditor.Undo();  // both moves
  EXPECT_EQ(Written(), kSample);
  EXPECT_FALSE(fEditor.IsModified());
  fEditor.Redo();
  fEditor.MarkSaved();
  fEditor.MoveSelected({1, 0});  // not merged into what was saved
  fEditor.Undo();
  EXPECT_FALSE(fEditor.IsModified());
  fEditor.Undo();
  fEditor.RemoveSelected("Delete");  // what was saved cannot come back
  fEditor.Undo();
  EXPECT_TRUE(fEditor.IsModified());
}
