// Dialogs that block the application, or their owner: after each step the real order, which windows can be
// used, and which is active.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

namespace {

// How often the frame of a window is told to look active or inactive, which is what flashing is.
class FrameChanges {
 public:
  explicit FrameChanges(HWND hwnd) {
    sHwnd = hwnd;
    sCount = 0;
    fHook = SetWindowsHookExW(WH_CALLWNDPROC, Count, nullptr, GetCurrentThreadId());
  }
  ~FrameChanges() { UnhookWindowsHookEx(fHook); }
  int Take() const { return std::exchange(sCount, 0); }

 private:
  static LRESULT CALLBACK Count(int code, WPARAM wParam, LPARAM lParam) {
    const CWPSTRUCT& message = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (message.hwnd == sHwnd && message.message == WM_NCACTIVATE) ++sCount;
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }
  static inline HWND sHwnd;
  static inline int sCount;
  HHOOK fHook;
};

// What the system sends when the user clicks a window.
LRESULT ClickOf(HWND hwnd) {
  return SendMessageW(hwnd, WM_SETCURSOR, reinterpret_cast<WPARAM>(hwnd),
                      MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
}

}  // namespace

class ModalityTest : public ClientWindowTest {
 protected:
  void MakeDocuments() {
    MakeNamed("doc1", Kind::kDocument, fDoc1);
    MakeNamed("doc2", Kind::kDocument, fDoc2);
  }
  void MakeNamed(const std::string& name, Kind kind, WindowRecord& record, IModalOwner* owner = nullptr,
                 const std::map<std::string, Hook>& hooks = {}) {
    record = {};
    record.fHooks = hooks;
    record.fHooks["factory"] = [this, name, &record] { fNames[record.fHwnd] = name; };
    record.fHooks["deleted"] = [this, name] { fEnded.Add(name); };
    Make(kind, record, kWindowStyleBit23, owner);
  }
  // The windows in their order, front first, each with "+" if it can be used; the active one with "*".
  std::string Picture() {
    std::string text;
    for (const HWND hwnd : ShownInOrder()) {
      if (!fNames.contains(hwnd)) continue;
      text += (text.empty() ? "" : " ") + fNames[hwnd];
      if (IsWindowEnabled(hwnd)) text += "+";
      if (GetActiveWindow() == hwnd) text += "*";
    }
    return text;
  }
  // These are in front in this order, and of all windows only the first, which is active, can be used.
  void ExpectBlockedBy(const std::string& front) {
    const std::string picture = Picture();
    EXPECT_EQ(picture.substr(0, front.size()), front);
    EXPECT_EQ(std::count(picture.begin(), picture.end(), '+'), 1) << picture;
  }
  void MakeModal(const std::string& name, WindowRecord& record, IModalOwner* owner = nullptr) {
    MakeNamed(name, Kind::kModal, record, owner);
  }

  std::map<HWND, std::string> fNames;
  CallLog fEnded;
  WindowRecord fDoc1, fDoc2, fModeless, fFloating, fA, fB;
};

TEST_IN_RUN(ModalityTest, TwoNestedDialogs) {
  MakeDocuments();
  MakeNamed("modeless", Kind::kModeless, fModeless);
  MakeNamed("floating", Kind::kFloating, fFloating);
  BringToFront(fDoc1);
  EXPECT_EQ(Picture(), "floating+ doc1+* modeless+ doc2+");
  MakeModal("A", fA);
  EXPECT_EQ(Picture(), "A+* doc1 modeless doc2");
  MakeModal("B", fB);
  EXPECT_EQ(Picture(), "B+* A doc1 modeless doc2");
  Turn();
  // However another window is to be activated, it ends with the newest dialog in front.
  fDoc2.fLog.Take();
  for (const HWND hwnd : {fDoc2.fHwnd, fA.fHwnd, fModeless.fHwnd}) {
    SetForegroundWindow(hwnd);
    ExpectBlockedBy("B+* A ");
    SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    ExpectBlockedBy("B+* A ");
  }
  EXPECT_EQ(fDoc2.fLog.Count("ActivationChanged:1"), 0);
  // The newest dialog flashes when another window is clicked, the other dialog included.
  const FrameChanges frame(fB.fHwnd);
  for (const HWND hwnd : {fA.fHwnd, fDoc1.fHwnd}) {
    PutAt(HWND_BOTTOM, fB);
    frame.Take();
    EXPECT_EQ(ClickOf(hwnd), 0);
    EXPECT_GT(frame.Take(), 0) << fNames[hwnd];
    ExpectBlockedBy("B+* A ");
  }
  // So it is with a real click.
  SetWindowPos(fDoc1.fHwnd, nullptr, 600, 100, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  Click({750, 250}, {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
  EXPECT_TRUE(YieldUntil([&] { return frame.Take() > 0; }));
  ExpectBlockedBy("B+* A ");
  // It does not when it is clicked itself, which puts the windows in order and swallows nothing.
  Turn();
  PutAt(HWND_BOTTOM, fB);
  frame.Take();
  ClickOf(fB.fHwnd);
  ExpectBlockedBy("B+* A ");
  EXPECT_EQ(frame.Take(), 0);

  Release(fB);
  EXPECT_EQ(Picture(), "A+* modeless doc2 doc1");
  SendMessageW(fA.fHwnd, WM_SYSCOMMAND, SC_MINIMIZE, 0);
  EXPECT_FALSE(IsIconic(fA.fHwnd));
  Release(fA);
  EXPECT_EQ(Picture(), "floating+ modeless+* doc2+ doc1+");
  Release(fModeless);
  Release(fFloating);
}

// Dialogs end in any order, and can be opened while another one ends.
TEST_IN_RUN(ModalityTest, DialogsBeginAndEnd) {
  MakeDocuments();
  MakeModal("A", fA);
  MakeModal("B", fB);
  Release(fA);
  EXPECT_EQ(Picture(), "B+* doc2 doc1");
  MakeModal("A", fA);
  EXPECT_EQ(Picture(), "A+* B doc2 doc1");
  MakeNamed("late", Kind::kModeless, fModeless);  // a window that comes later is blocked, too
  EXPECT_EQ(Picture(), "A+* B late doc2 doc1");
  MakeNamed("floating", Kind::kFloating, fFloating);  // and one that floats waits
  EXPECT_EQ(Picture(), "A+* B late doc2 doc1");
  Release(fA);
  EXPECT_EQ(Picture(), "B+* late doc2 doc1");
  Release(fB);
  EXPECT_EQ(Picture(), "floating+ late+* doc2+ doc1+");
  Release(fModeless);
  Release(fFloating);

  MakeModal("A", fA);
  fDoc2.fHooks["ActivationChanged:1"] = [this] {
    fDoc2.fHooks.clear();
    MakeModal("B", fB);
  };
  Release(fA);
  EXPECT_EQ(Picture(), "B+* doc2 doc1");
  Release(fB);
  EXPECT_EQ(Picture(), "doc2+* doc1+");

  // A client ends the dialog from whatever it is told while the dialog appears.
  const Hook end = [this] { return fA.fRelease ? std::exchange(fA.fRelease, nullptr)() : kOK; };
  for (IModalOwner* const owner : {static_cast<IModalOwner*>(nullptr), fDoc1.fOwner}) {
    // The active window is the owner, if there is one.
    const std::string expected = owner ? "doc2+ doc1+*" : "doc2+* doc1+";
    fEnded.Take();
    MakeNamed("A", Kind::kModal, fA, owner, {{"ActivationChanged:1", end}});
    EXPECT_EQ(Picture(), expected);
    BringToFront(fDoc2);
    fDoc2.fHooks["ActivationChanged:0"] = end;
    MakeModal("A", fA, owner);
    fDoc2.fHooks.clear();
    EXPECT_EQ(Picture(), expected);
    EXPECT_EQ(fEnded.Take(), "A A");
  }
}

// A dialog with an owner blocks that one only; one without an owner then blocks the dialog.
TEST_IN_RUN(ModalityTest, DialogsOfOwners) {
  MakeDocuments();
  MakeNamed("modeless", Kind::kModeless, fModeless);
  MakeModal("owned", fA, fModeless.fOwner);
  EXPECT_EQ(GetWindow(fA.fHwnd, GW_OWNER), fModeless.fHwnd);
  EXPECT_EQ(Picture(), "owned+* modeless doc2+ doc1+");
  BringToFront(fDoc1);
  EXPECT_EQ(Picture(), "doc1+* owned+ modeless doc2+");
  MakeModal("B", fB);
  EXPECT_EQ(Picture(), "B+* doc1 owned modeless doc2");
  Release(fB);
  EXPECT_EQ(Picture(), "doc1+* owned+ modeless doc2+");
  BringToFront(fA);
  Release(fA);
  EXPECT_EQ(Picture(), "doc1+ modeless+* doc2+");
  Release(fModeless);

  // The last of two frees the owner.
  MakeModal("A", fA, fDoc1.fOwner);
  MakeModal("B", fB, fDoc1.fOwner);
  Release(fA);
  Turn();
  EXPECT_FALSE(IsWindowEnabled(fDoc1.fHwnd));
  Release(fB);
  Turn();
  EXPECT_TRUE(IsWindowEnabled(fDoc1.fHwnd));

  // The user can get at an owner that its dialog blocks, and the end of another dialog must not free it.
  MakeModal("A", fA, fDoc1.fOwner);
  for (const bool isMinimized : {false, true}) {
    if (isMinimized) ShowWindow(fDoc1.fHwnd, SW_MINIMIZE);
    SetForegroundWindow(fDoc1.fHwnd);
    SetActiveWindow(fDoc1.fHwnd);
    MakeModal("B", fB);
    ExpectBlockedBy("B+* ");
    Release(fB);
    EXPECT_FALSE(IsWindowEnabled(fDoc1.fHwnd));
    EXPECT_TRUE(IsWindowEnabled(fA.fHwnd));
    EXPECT_TRUE(IsWindowEnabled(fDoc2.fHwnd));
  }
  // Nor does the end of its own dialog free it while another one blocks the application.
  MakeModal("B", fB);
  Release(fA);
  ExpectBlockedBy("B+* ");
  Release(fB);
  EXPECT_TRUE(IsWindowEnabled(fDoc1.fHwnd));
  ShowWindow(fDoc1.fHwnd, SW_RESTORE);

  // A dialog whose answer opens the next one: that blocks the owner, which the first one has just freed.
  MakeNamed("A", Kind::kModal, fA, fDoc1.fOwner, {{"RequestClose", [this] {
                                                     const TError error = fA.fRelease();
                                                     MakeModal("B", fB);
                                                     return error;
                                                   }}});
  SendMessageW(fA.fHwnd, WM_CLOSE, 0, 0);
  ExpectBlockedBy("B+* ");
  Release(fB);
  EXPECT_TRUE(IsWindowEnabled(fDoc1.fHwnd));

  // The client is called while the dialog is being moved out of sight, and ends the owner, too.
  MakeModal("A", fA, fDoc1.fOwner);
  fA.fHooks["PlacementChanged"] = [this] { return fDoc1.fRelease(); };
  Release(fA);
  EXPECT_EQ(Picture(), "doc2+*");
  // As after the question whether to save: the dialog ends in a message of its own, and its owner at once.
  MakeNamed("doc1", Kind::kDocument, fDoc1);
  fEnded.Take();
  const Hook endBoth = [this] { return fA.fRelease() == kOK ? fDoc1.fRelease() : kOtherError; };
  MakeNamed("A", Kind::kModal, fA, fDoc1.fOwner, {{"RequestClose", endBoth}});
  SendMessageW(fA.fHwnd, WM_CLOSE, 0, 0);
  EXPECT_EQ(fEnded.Take(), "doc1 A");
  EXPECT_EQ(Picture(), "doc2+*");
}

TEST_F(ModalityTest, QuittingClosesTheNewestDialogFirst) {
  RunFrom([this] {
    MakeDocuments();
    MakeModal("A", fA);
    MakeModal("B", fB);
    Then([this] { Quit(); });
  });
  EXPECT_EQ(fEnded.Take(), "B A doc2 doc1");
  EXPECT_EQ(fB.fLog.Count("RequestClose:1"), 1);
}

// All windows come back from the task bar only if all are there.
TEST_IN_RUN(ModalityTest, AMinimizedApplication) {
  const auto openAndEnd = [this] {
    MakeModal("A", fA);
    EXPECT_EQ(GetActiveWindow(), fA.fHwnd);
    const int minimized = IsIconic(fDoc1.fHwnd) + IsIconic(fDoc2.fHwnd);
    Release(fA);
    return minimized;
  };
  MakeDocuments();
  ShowWindow(fDoc1.fHwnd, SW_MINIMIZE);
  EXPECT_EQ(openAndEnd(), 1);
  ShowWindow(fDoc2.fHwnd, SW_MINIMIZE);
  EXPECT_EQ(openAndEnd(), 0);
  // One that is ended because another one comes back is passed over.
  ShowWindow(fDoc1.fHwnd, SW_MINIMIZE);
  ShowWindow(fDoc2.fHwnd, SW_MINIMIZE);
  for (WindowRecord* const doc : {&fDoc1, &fDoc2}) {
    WindowRecord* const other = doc == &fDoc1 ? &fDoc2 : &fDoc1;
    doc->fHooks["PlacementChanged"] = [=] {
      return IsIconic(doc->fHwnd) || !IsWindow(other->fHwnd) ? kOK : other->fRelease();
    };
  }
  fEnded.Take();
  EXPECT_EQ(openAndEnd(), 0);
  EXPECT_EQ(fEnded.Take().size(), 6u) << "a document, then A";
}

TEST_IN_RUN(ModalityTest, ForeignWindowsAreLeftAlone) {
  HWND foreign[2];
  for (HWND& hwnd : foreign)
    hwnd = CreateWindowExW(0, L"STATIC", L"Foreign", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 80, 80,
                           nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  EnableWindow(foreign[1], FALSE);
  MakeDocuments();
  MakeModal("A", fA);
  EXPECT_TRUE(IsWindowEnabled(foreign[0]));
  EXPECT_FALSE(IsWindowEnabled(fDoc1.fHwnd));
  Release(fA);
  EXPECT_TRUE(IsWindowEnabled(foreign[0]));
  EXPECT_FALSE(IsWindowEnabled(foreign[1]));
  EXPECT_TRUE(IsWindowEnabled(fDoc1.fHwnd));
  for (const HWND hwnd : foreign) DestroyWindow(hwnd);
}

}  // namespace NSMorvaneTest
