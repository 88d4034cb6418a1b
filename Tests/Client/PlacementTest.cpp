// Where windows first appear.
#include "Support/ClientWindows.h"

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
  WindowRecord& MakeAt(Kind kind, const TRect& frame = {}, IModalOwner* owner = nullptr) {
    WindowRecord& record = fDocuments.emplace_back();
    if (WidthOf(frame) != 0) {
      record.fHooks["factory"] = [&record, frame] {
        ThrowIfFailed(
            ChangeState(*record.fDocument, [&](auto& state) { state.fPlacement.fUserRect = frame; }));
      };
    }
    Make(kind, record, kPlain, owner);
    return record;
  }
  TPoint Corner(const WindowRecord& record) {
    const TRect frame = NativeFrame(record.fHwnd);
    return {frame.fLeft - fArea.fLeft, frame.fTop - fArea.fTop};
  }
  TRect WorkArea() {
    TMonitorList monitors = {};
    EXPECT_EQ(fMorvane->IMorvane_GetMonitors(monitors), kOK);
    return monitors.fMonitors[monitors.fMainMonitorIndex].fWorkArea;
  }
  void Leave() override {
    for (auto record = fDocuments.rbegin(); record != fDocuments.rend(); ++record)
      if (IsWindow(record->fHwnd)) Release(*record);
  }
  static TPoint Middle(const TRect& rect) {
    return {(rect.fLeft + rect.fRight) / 2, (rect.fTop + rect.fBottom) / 2};
  }

  TRect fArea = {};
};

// Documents are cascaded; what is placed by its behaviour, by its class, or in a program of which nobody
// knows the root object, stays.
TEST_IN_RUN(PlacementTest, Documents) {
  fArea = WorkArea();
  const TPoint asMade = Corner(MakeAt(Kind::kDocument));
  const CRootObjectScope scope(*fMorvane);
  WindowRecord& first = MakeAt(Kind::kDocument);
  EXPECT_EQ(Corner(first), (TPoint{24, 24}));
  EXPECT_EQ(Corner(MakeAt(Kind::kDocument)), (TPoint{52, 52}));
  const TRect own = {200, 300, 500, 600};
  EXPECT_EQ(NativeFrame(MakeAt(Kind::kDocument, own).fHwnd), own);
  Release(first);
  EXPECT_EQ(Corner(MakeAt(Kind::kDocument)), (TPoint{24, 24}));
  // The place that the library gives is on the way: 100 is off 80 and 108.
  EXPECT_EQ(Corner(MakeAt(Kind::kDocument)), (TPoint{80, 80}));
  IDocumentWindow* made = nullptr;
  EXPECT_EQ(CreateDocumentWindow<CStaysWhereItIs>(*fMorvane, kPlain, made), kOK);
  TDocumentWindowState state = {};
  EXPECT_EQ(made->IDocumentWindow_GetState(state), kOK);
  EXPECT_EQ(
      (TPoint{state.fPlacement.fUserRect.fLeft - fArea.fLeft, state.fPlacement.fUserRect.fTop - fArea.fTop}),
      asMade);
  EXPECT_EQ(made->IDocumentWindow_Release(), kOK);
}

TEST_IN_RUN(PlacementTest, DialogsAndPalettes) {
  fArea = WorkArea();
  const CRootObjectScope scope(*fMorvane);
  // Without any window.
  WindowRecord& lonely = MakeAt(Kind::kModeless);
  EXPECT_EQ(Middle(NativeFrame(lonely.fHwnd)), Middle(fArea));
  Release(lonely);

  WindowRecord& left =
      MakeAt(Kind::kDocument, {fArea.fLeft + 40, fArea.fTop + 40, fArea.fLeft + 540, fArea.fTop + 540});
  WindowRecord& right =
      MakeAt(Kind::kDocument, {fArea.fRight - 250, fArea.fTop + 100, fArea.fRight - 50, fArea.fTop + 700});
  BringToFront(right);
  // Over the owner, on the screen; over the active window, which is that dialog then.
  WindowRecord& dialog = MakeAt(Kind::kModal, {}, right.fOwner);
  const TRect overRight = NativeFrame(dialog.fHwnd);
  EXPECT_EQ(overRight.fRight, fArea.fRight);
  EXPECT_EQ(Middle(overRight).fY, Middle(NativeFrame(right.fHwnd)).fY);
  SetWindowPos(dialog.fHwnd, nullptr, fArea.fLeft + 300, fArea.fTop + 200, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  EXPECT_EQ(Middle(NativeFrame(MakeAt(Kind::kModeless).fHwnd)), Middle(NativeFrame(dialog.fHwnd)));
  // Palettes go by the front document.
  const TRect palette = NativeFrame(MakeAt(Kind::kFloating).fHwnd);
  EXPECT_EQ(palette.fRight, NativeFrame(right.fHwnd).fLeft - kBesideGap);
  EXPECT_EQ(palette.fTop, NativeFrame(right.fHwnd).fTop);
  Release(dialog);
  Release(right);
  EXPECT_EQ(NativeFrame(MakeAt(Kind::kFloating).fHwnd).fLeft, NativeFrame(left.fHwnd).fRight + kBesideGap);
}

// The owner counts, which is not the active window here.
TEST_IN_RUN(PlacementTest, OwnerThatIsNotActive) {
  fArea = WorkArea();
  WindowRecord& owner =
      MakeAt(Kind::kDocument, {fArea.fLeft + 20, fArea.fTop + 20, fArea.fLeft + 620, fArea.fTop + 620});
  BringToFront(MakeAt(Kind::kDocument, {fArea.fLeft + 500, fArea.fTop, fArea.fLeft + 900, fArea.fTop + 300}));
  WindowRecord& dialog = fDocuments.emplace_back();
  EXPECT_EQ((CreateModalDialog<ModalDialogRecorder>(*fMorvane, owner.fOwner, kPlain, dialog)), kOK);
  EXPECT_EQ(Middle(NativeFrame(dialog.fHwnd)), Middle(NativeFrame(owner.fHwnd)));
}

// Size first, then place. A document window is given its menu bar's room.
TEST_IN_RUN(PlacementTest, SizeOfTheClientArea) {
  fArea = WorkArea();
  const CRootObjectScope scope(*fMorvane);
  WindowRecord& record = fDocuments.emplace_back();
  record.fHooks["factory"] = [&] { return SetClientSize(*record.fDocument, {640, 400}); };
  fRun.fHooks["SetupMenuBar"] = [this] {
    TMenuItem item = {};
    CopyText(item.fText, u"Item");
    item.fStateFlags = kMenuItemEnabled;
    return fRun.fMenuBar->IMenuBarState_SetMenuItems(kMenuDocument, &item, sizeof(item));
  };
  Make(Kind::kDocument, record, kSizeable);
  Turn();
  EXPECT_EQ(NativeClientSize(record.fHwnd), (TSize{640, 400}));
  EXPECT_EQ(Corner(record), (TPoint{24, 24}));
  // A shown window keeps its corner, and moves where it is told.
  EXPECT_EQ(SetClientSize(*record.fDocument, {500, 300}), kOK);
  EXPECT_EQ(NativeClientSize(record.fHwnd), (TSize{500, 300}));
  EXPECT_EQ(Corner(record), (TPoint{24, 24}));
  EXPECT_EQ(PlaceCentred(*fMorvane, *record.fDocument), kOK);
  EXPECT_EQ(Middle(NativeFrame(record.fHwnd)), Middle(fArea));
}

// A behaviour that ends its window in its own constructor leaves nothing to place.
TEST_IN_RUN(PlacementTest, WindowThatEndsBeforeItIsPlaced) {
  const CRootObjectScope scope(*fMorvane);
  WindowRecord& record = fDocuments.emplace_back();
  record.fHooks["factory"] = [&] { return record.fRelease(); };
  Make(Kind::kModal, record);
  EXPECT_FALSE(IsWindow(record.fHwnd));
}

}  // namespace NSMorvaneTest
