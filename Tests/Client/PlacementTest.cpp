// Where windows first appear.
#include "Support/ClientWindows.h"
#include "Support/MenuItems.h"

namespace NSMorvaneTest {

namespace {

// Says that it places itself, and does not.
class CStaysWhereItIs : public CDefaultDocumentWindowBehavior {
 public:
  static constexpr TFirstPlace kFirstPlace = kFirstPlaceAsMade;
  CStaysWhereItIs(IDocumentWindow& window, IDocumentWindow*& made) : CDefaultDocumentWindowBehavior(window) {
    made = &window;
  }
};

}  // namespace

class PlacementTest : public ClientWindowTest {
 protected:
  // What has a frame is placed there by its behaviour.
  HWND MakeAt(const std::string& name, const TRect& frame = {}, IModalOwner* owner = nullptr) {
    std::map<std::string, Hook> hooks;
    if (WidthOf(frame) != 0) {
      hooks["factory"] = [=, this] {
        return ChangeState(*fWindows[name].fDocument,
                           [&](auto& state) { state.fPlacement.fUserRect = frame; });
      };
    }
    return MakeNamed(name, hooks, owner, kPlain).fHwnd;
  }
  // From the corner of the work area, where the places below begin, too.
  TPoint CornerOf(const TRect& frame) {
    const TRect area = WorkArea();
    return {frame.fLeft - area.fLeft, frame.fTop - area.fTop};
  }
  TPoint CornerOf(HWND hwnd) { return CornerOf(NativeFrame(hwnd)); }
  static TPoint MiddleOf(HWND hwnd) { return NSMorvaneTest::MiddleOf(NativeFrame(hwnd)); }
  TRect WorkArea() {
    TMonitorList monitors = {};
    EXPECT_EQ(fMorvane->IMorvane_GetMonitors(monitors), kOK);
    return monitors.fMonitors[monitors.fMainMonitorIndex].fWorkArea;
  }
  TRect InWorkArea(const TRect& rect) {
    const TRect area = WorkArea();
    return {rect.fLeft + area.fLeft, rect.fTop + area.fTop, rect.fRight + area.fLeft,
            rect.fBottom + area.fTop};
  }
};

// Documents are cascaded; what is placed by its behaviour, by its class, or in a program of which nobody
// knows the root object, stays.
TEST_IN_RUN(PlacementTest, Documents) {
  const TPoint asMade = CornerOf(MakeAt("doc"));
  const CRootObjectScope scope(*fMorvane);
  EXPECT_EQ(CornerOf(MakeAt("doc1")), (TPoint{24, 24}));
  EXPECT_EQ(CornerOf(MakeAt("doc2")), (TPoint{52, 52}));
  const TRect own = {200, 300, 500, 600};
  EXPECT_EQ(NativeFrame(MakeAt("doc own", own)), own);
  Do("-doc1");
  EXPECT_EQ(CornerOf(MakeAt("doc3")), (TPoint{24, 24}));
  // The place that the library gives is on the way: 100 is off 80 and 108.
  EXPECT_EQ(CornerOf(MakeAt("doc4")), (TPoint{80, 80}));
  IDocumentWindow* made = nullptr;
  EXPECT_EQ(CreateDocumentWindow<CStaysWhereItIs>(*fMorvane, kPlain, made), kOK);
  TDocumentWindowState state = {};
  EXPECT_EQ(made->IDocumentWindow_GetState(state), kOK);
  EXPECT_EQ(CornerOf(state.fPlacement.fUserRect), asMade);
  EXPECT_EQ(made->IDocumentWindow_Release(), kOK);
}

TEST_IN_RUN(PlacementTest, DialogsAndPalettes) {
  const TRect area = WorkArea();
  const CRootObjectScope scope(*fMorvane);
  // Without any window.
  EXPECT_EQ(MiddleOf(MakeAt("modeless")), NSMorvaneTest::MiddleOf(area));
  Do("-modeless");

  const HWND left = MakeAt("doc left", InWorkArea({40, 40, 540, 540}));
  const HWND right =
      MakeAt("doc right", {area.fRight - 250, area.fTop + 100, area.fRight - 50, area.fTop + 700});
  // Over the owner, on the screen; over the active window, which is that dialog then.
  const HWND dialog = MakeAt("modal", {}, fWindows["doc right"].fOwner);
  EXPECT_EQ(NativeFrame(dialog).fRight, area.fRight);
  EXPECT_EQ(MiddleOf(dialog).fY, MiddleOf(right).fY);
  MoveNative(dialog, area.fLeft + 300, area.fTop + 200);
  EXPECT_EQ(MiddleOf(MakeAt("modeless")), MiddleOf(dialog));
  // Palettes go by the front document.
  const TRect palette = NativeFrame(MakeAt("floating"));
  EXPECT_EQ(palette.fRight, NativeFrame(right).fLeft - kBesideGap);
  EXPECT_EQ(palette.fTop, NativeFrame(right).fTop);
  Release(fWindows["modal"]);
  Release(fWindows["doc right"]);
  EXPECT_EQ(NativeFrame(MakeAt("floating2")).fLeft, NativeFrame(left).fRight + kBesideGap);
}

// The owner counts, which is not the active window here.
TEST_IN_RUN(PlacementTest, OwnerThatIsNotActive) {
  const HWND owner = MakeAt("doc owner", InWorkArea({20, 20, 620, 620}));
  MakeAt("doc", InWorkArea({500, 0, 900, 300}));
  Do("^doc");
  WindowRecord& dialog = fWindows["modal"];
  IModalOwner* const modalOwner = fWindows["doc owner"].fOwner;
  EXPECT_EQ((CreateModalDialog<ModalDialogRecorder>(*fMorvane, modalOwner, kPlain, dialog)), kOK);
  EXPECT_EQ(MiddleOf(dialog.fHwnd), MiddleOf(owner));
}

// Size first, then place. A document window is given its menu bar's room.
TEST_IN_RUN(PlacementTest, SizeOfTheClientArea) {
  const CRootObjectScope scope(*fMorvane);
  fRecord.fHooks["factory"] = [this] { return SetClientSize(*fRecord.fDocument, {640, 400}); };
  fRun.fHooks["SetupMenuBar"] = [this] { SetItems(*fRun.fMenuBar, kMenuDocument, {MenuItem(u"Item")}); };
  Open(kSizeable);
  Turn();
  EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{640, 400}));
  EXPECT_EQ(CornerOf(Hwnd()), (TPoint{24, 24}));
  // A shown window keeps its corner, and moves where it is told.
  EXPECT_EQ(SetClientSize(*fRecord.fDocument, {500, 300}), kOK);
  EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{500, 300}));
  EXPECT_EQ(CornerOf(Hwnd()), (TPoint{24, 24}));
  EXPECT_EQ(PlaceCentred(*fMorvane, *fRecord.fDocument), kOK);
  EXPECT_EQ(MiddleOf(Hwnd()), NSMorvaneTest::MiddleOf(WorkArea()));
}

// A behaviour that ends its window in its own constructor leaves nothing to place.
TEST_IN_RUN(PlacementTest, WindowThatEndsBeforeItIsPlaced) {
  const CRootObjectScope scope(*fMorvane);
  WindowRecord& record = fWindows["modal"];
  MakeNamed("modal", {{"factory", [&] { return record.fRelease(); }}});
  EXPECT_FALSE(IsWindow(record.fHwnd));
}

}  // namespace NSMorvaneTest
