// Documents of the sample application Sketch and their files.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Samples/Sketch/SketchDocument.h"
#include "Samples/Sketch/SketchDocumentFile.h"

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
    "  text 10 130 \"say \\\"a\\\\b\\\" \xC3\xA4\" size=9 color=#0a0B0c\n"
    "# end";

CSketchDocument Read(const std::string& bytes) {
  CSketchDocument document;
  std::string message;
  EXPECT_TRUE(ReadSketchDocument(bytes, document, message)) << message;
  return document;
}

std::string Shaped(const CSketchDocument& document) {
  std::string text;
  for (const TShapeEntry& entry : document.Shapes()) text += std::string(NameOfKind(entry.fShape.fKind))[0];
  return text;
}

}  // namespace

TEST(SketchDocument, ReadsEveryStatement) {
  const CSketchDocument document = Read(kSample);
  EXPECT_EQ(document.CanvasSize(), (TSketchSize{320, 200}));
  EXPECT_EQ(document.Background(), 0xDDEEFFu);
  ASSERT_EQ(Shaped(document), "rpelt");
  const auto shape = [&](std::size_t index) { return document.Shapes()[index].fShape; };
  EXPECT_EQ(shape(0).fPoints, (std::vector<TSketchPoint>{{10, 20}, {110, 120}}));
  EXPECT_EQ(shape(0).fFill, 0xFFCC00u);
  EXPECT_EQ(shape(0).fWidth, 3);
  EXPECT_EQ(shape(1).fPoints, (std::vector<TSketchPoint>{{0, 20}, {60, -30}, {120, 20}}));
  EXPECT_EQ(shape(1).fColor, 0x883311u);
  EXPECT_FALSE(shape(2).fFill.has_value());
  EXPECT_EQ(shape(2).fWidth, 1);
  EXPECT_EQ(shape(3).fPoints, (std::vector<TSketchPoint>{{-100000, 100000}, {7, 8}}));
  EXPECT_EQ(shape(4).fText, "say \"a\\b\" \xC3\xA4");
  EXPECT_EQ(shape(4).fSize, 9);
  EXPECT_EQ(shape(4).fColor, 0x0A0B0Cu);
  EXPECT_EQ(document.CountOfKind(TShapeKind::kEllipse), 1u);
}

TEST(SketchDocument, WritesWhatItReadToTheByte) {
  std::string withCarriageReturns;
  for (const char c : kSample) withCarriageReturns += c == '\n' ? "\r\n" : std::string(1, c);
  const std::string cases[] = {
      kSample, withCarriageReturns, "\xEF\xBB\xBF" + kSample, "", "\n\n", "# only a comment", "line 1 2 3 4"};
  for (const std::string& bytes : cases) EXPECT_EQ(WriteSketchDocument(Read(bytes)), bytes);
}

TEST(SketchDocument, SaysWhatIsWrongWithAFile) {
  const struct {
    const char* fBytes;
    const char* fMessage;
  } cases[] = {
      {"\n# x\nrectangle 1 2 3\n", "line 3: rectangle needs four numbers"},
      {"circle 1 2 3", "line 1: there is no shape \"circle\""},
      {"line 1 2 3 4.5", "line 1: \"4.5\" is not a whole number"},
      {"line 1 2 3 100001", "line 1: \"100001\" is out of range: -100000 to 100000"},
      {"ellipse 5 1 4 2", "line 1: ellipse needs left, top, right, bottom, in this order"},
      {"polyline 1 2", "line 1: polyline needs two points or more"},
      {"polyline 1 2 3 4 5", "line 1: polyline needs an even count of numbers"},
      {"text 1 2", "line 1: text needs two numbers and a text in quotes"},
      {"text 1 2 \"a", "line 1: the text has no closing quote"},
      {"text 1 2 \"a\\", "line 1: in a text, a backslash needs a quote or a backslash behind it"},
      {"text 1 2 \"a\"size=4", "line 1: a blank is missing behind the text"},
      {"line 1 2 3 4 width=1001", "line 1: \"1001\" is out of range: 0 to 1000"},
      {"line 1 2 3 4 width=1 width=1", "line 1: \"width\" is given twice"},
      {"line 1 2 3 4 fill=#000000", "line 1: line has no fill"},
      {"line 1 2 3 4 color=#12345G", "line 1: \"#12345G\" is not a color like #2F6FDE"},
      {"line 1 2 3 4 colour=#123456", "line 1: there is no attribute \"colour\""},
      {"line 1 2 3 4 width=1 5", "line 1: \"5\" is neither a number nor an attribute"},
      {"canvas 800 600 a=b", "line 1: there is more than canvas takes"},
      {"canvas 0 600", "line 1: \"0\" is out of range: 1 to 20000"},
      {"canvas 1 2\ncanvas 1 2", "line 2: canvas is given twice"},
      {"line 1 2 3 4\nbackground #000000", "line 2: background must stand in front of the first shape"},
      {"background", "line 1: background needs a color"},
      {"# \xC3", "line 1: this is not UTF-8 text"},
      {"line 1 2 3 4\r\r\n", "line 1: there is a control character in it"},
      {"text 1 2 \"a\tb\"", "line 1: there is a control character in it"},
  };
  for (const auto& test : cases) {
    CSketchDocument document;
    std::string message;
    EXPECT_FALSE(ReadSketchDocument(test.fBytes, document, message)) << test.fBytes;
    EXPECT_EQ(message, test.fMessage);
    EXPECT_TRUE(document.Shapes().empty());
  }
}

TEST(SketchDocument, HoldsItsLimits) {
  const auto repeated = [](const char* text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
  };
  const auto accepted = [](const std::string& bytes) {
    CSketchDocument document;
    std::string message;
    return ReadSketchDocument(bytes, document, message);
  };
  for (const std::size_t more : {0, 1}) {
    EXPECT_EQ(accepted("polyline" + repeated(" 1 2", kMaxPoints + more)), more == 0);
    EXPECT_EQ(accepted("text 1 2 \"" + repeated("a", kMaxTextBytes + more) + "\""), more == 0);
    EXPECT_EQ(accepted(repeated("line 1 2 3 4\n", kMaxShapes + more)), more == 0);
  }
  EXPECT_FALSE(accepted(std::string("line 1 2 3 4\0", 13)));
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
}

TEST(SketchDocument, KeepsCommentsOfShapesThatGoAndComeBack) {
  CSketchDocument document = Read(kSample);
  for (std::size_t index = 0; index < document.Shapes().size(); ++index) {
    TShapeEntry removed = document.RemoveShape(index);
    const std::string without = WriteSketchDocument(document);
    for (const char* comment : {"# walls\n", "\n# roof\n", "# end"})
      EXPECT_NE(without.find(comment), std::string::npos) << index;
    document.InsertShape(index, std::move(removed));
    EXPECT_EQ(WriteSketchDocument(document), kSample) << index;
  }
}

TEST(SketchDocument, PutsNewShapesBehindTheLastLine) {
  CSketchDocument document = Read(kSample);
  TShape text;
  text.fKind = TShapeKind::kText;
  text.fPoints = {{-5, 6}};
  text.fText = "\\ and \"";
  text.fColor = 0x00FF7F;
  text.fSize = 30;
  document.AppendShape(text);
  const std::string written = WriteSketchDocument(document);
  EXPECT_EQ(written, kSample + "\ntext -5 6 \"\\\\ and \\\"\" size=30 color=#00FF7F\n");
  EXPECT_EQ(Read(written).Shapes().back().fShape, text);
  document.RemoveShape(document.Shapes().size() - 1);
  EXPECT_EQ(WriteSketchDocument(document), kSample);
}
