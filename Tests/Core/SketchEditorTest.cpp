// What can be done to a document of the sample application Sketch: changes and undo. The tools are tried with
// the mouse, by the tour.
#include <memory>

#include "Samples/Sketch/SketchDocumentFile.h"
#include "Samples/Sketch/SketchEditor.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;
using namespace NSSketch;

namespace {

const std::string kSample =
    "# first\n"
    "rectangle  10 10 110 60 fill=#FF0000\n"
    "# second\n"
    "ellipse 200 10 300 60 width=2\n"
    "\n"
    "line 10 100 110 200   width=3\n"
    "polyline 200 100 250 200 300 100\n"
    "text 400 10 \"abc\" size=10\n"
    "# end";

class CFixedMeasure : public ISketchTextMeasure {
 public:
  TSketchSize SizeOfText(const std::string& text, std::int32_t size) override {
    return {static_cast<std::int32_t>(text.size()) * size, size};
  }
};

class SketchEditor : public testing::Test {
 protected:
  SketchEditor() {
    auto document = std::make_unique<CSketchDocument>();
    std::string message;
    EXPECT_TRUE(ReadSketchDocument(kSample, *document, message)) << message;
    fEditor = std::make_unique<CSketchEditor>(std::move(document), fMeasure);
  }
  std::string Written() const { return WriteSketchDocument(fEditor->Document()); }
  CFixedMeasure fMeasure;
  std::unique_ptr<CSketchEditor> fEditor;
};

}  // namespace

// Whatever is done, undo brings every byte back, and redo every byte of what was done.
TEST_F(SketchEditor, UndoesAndRedoesToTheByte) {
  Random random(17);
  std::vector<std::string> states = {Written()};
  for (int i = 0; i < 200; ++i) {
    const auto pick = [&](std::size_t count) {
      return static_cast<std::size_t>(random(0, static_cast<int>(count) - 1));
    };
    const std::size_t count = fEditor->Document().Shapes().size();
    TShapeIndices some;
    for (std::size_t k = 0; k < count; ++k)
      if (pick(2) == 0) some.push_back(k);
    fEditor->Select(some);
    switch (pick(4)) {
      case 0:
        fEditor->Add("Paste", {fEditor->Shape(pick(count)), fEditor->Shape(pick(count))});
        break;
      case 1:
        if (some.size() < count) fEditor->RemoveSelected("Delete");
        break;
      case 2:
        fEditor->MoveSelected({static_cast<int>(pick(9)) - 4, 1});
        break;
      default:
        fEditor->BeginGesture("Gesture");
        if (pick(2) == 0) fEditor->InsertInGesture(fEditor->Shape(0));
        for (std::size_t k = 0; k < 3; ++k)
          fEditor->ReplaceInGesture(pick(count), MovedBy(fEditor->Shape(0), 1, 2));
        pick(3) == 0 ? fEditor->CancelGesture() : fEditor->EndGesture();
    }
    if (Written() != states.back()) states.push_back(Written());
  }
  ASSERT_GT(states.size(), 50u);
  for (std::size_t i = states.size() - 1; fEditor->CanUndo();) {
    fEditor->Undo();  // two moves in a row are one step, and a step may have changed nothing
    while (i > 0 && Written() != states[i]) --i;
    ASSERT_EQ(Written(), states[i]);
  }
  EXPECT_EQ(Written(), kSample);
  EXPECT_FALSE(fEditor->IsModified());
  while (fEditor->CanRedo()) fEditor->Redo();
  EXPECT_EQ(Written(), states.back());
}

TEST_F(SketchEditor, KnowsWhatIsUnsaved) {
  fEditor->Select({0});
  fEditor->MoveSelected({1, 0});
  fEditor->MoveSelected({1, 0});
  EXPECT_TRUE(fEditor->IsModified());
  fEditor->Undo();  // both moves
  EXPECT_EQ(Written(), kSample);
  EXPECT_FALSE(fEditor->IsModified());
  fEditor->Redo();
  fEditor->MarkSaved();
  fEditor->MoveSelected({1, 0});  // not merged into what was saved
  fEditor->Undo();
  EXPECT_FALSE(fEditor->IsModified());
  fEditor->Undo();
  fEditor->RemoveSelected("Delete");  // what was saved cannot come back
  fEditor->Undo();
  EXPECT_TRUE(fEditor->IsModified());
}
