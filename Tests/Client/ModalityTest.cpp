// Dialogs that block the application, or their owner: after each step the real order, which windows can be
// used, and which is active.
#include "Support/WindowKinds.h"

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
  int Get() const { return sCount; }

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

class ForeignWindow {
 public:
  ForeignWindow()
      : fHwnd(CreateWindowExW(0, L"STATIC", L"Foreign", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 80, 80,
                              nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)) {}
  ~ForeignWindow() { DestroyWindow(fHwnd); }
  operator HWND() const { return fHwnd; }

 private:
  HWND fHwnd;
};

}  // namespace

class ModalityTest : public WindowKindsTest {
 protected:
  // The windows in their order, front first, each with "+" if it can be used; the active one with "*".
  std::string Picture() {
    std::string text;
    for (const HWND hwnd : ShownInOrder()) {
      const auto it = fNames.find(hwnd);
      if (it == fNames.end()) continue;
      text += (text.empty() ? "" : " ") + it->second;
      if (IsWindowEnabled(hwnd)) text += "+";
      if (GetActiveWindow() == hwnd) text += "*";
    }
    return text;
  }
  void MakeNamed(const std::string& name, Kind kind, KindRecord& record, IModalOwner* owner = nullptr,
                 const CallHooks& hooks = {}) {
    record = {};
    record.fHooks = hooks;
    record.fHooks["factory"] = [this, name, &record] { fNames[record.fHwnd] = name; };
    record.fHooks["deleted"] = [this, name] { fEnded.push_back(name); };
    Make(kind, record, kWindowStyleBit23, owner);
  }
  // These are in front in this order, and of all windows only the first, which is active, can be used.
  void ExpectBlockedBy(const std::string& front) {
    const std::string picture = Picture();
    EXPECT_EQ(picture.substr(0, front.size()), front);
    EXPECT_EQ(std::count(picture.begin(), picture.end(), '+'), 1) << picture;
  }
  void MakeDocuments() {
    MakeNamed("doc1", Kind::kDocument, fDoc1);
    MakeNamed("doc2", Kind::kDocument, fDoc2);
  }

  std::map<HWND, std::string> fNames;
  CallLog fEnded;
  KindRecord fDoc1, fDoc2, fModeless, fFloating, fA, fB;
};

TEST_F(ModalityTest, TwoNestedDialogs) {
  RunWith({[this] {
             MakeDocuments();
             MakeNamed("modeless", Kind::kModeless, fModeless);
             MakeNamed("floating", Kind::kFloating, fFloating);
             BringToFront(fDoc1);
             EXPECT_EQ(Picture(), "floating+ doc1+* modeless+ doc2+");
             MakeNamed("A", Kind::kModal, fA);
             EXPECT_EQ(Picture(), "A+* doc1 modeless doc2");
             MakeNamed("B", Kind::kModal, fB);
             EXPECT_EQ(Picture(), "B+* A doc1 modeless doc2");
           },
           [this] {
             // However another window is to be activated, it ends with the newest dialog in front.
             fDoc2.fLog.clear();
             for (const HWND hwnd : {fDoc2.fHwnd, fA.fHwnd, fModeless.fHwnd}) {
               SetForegroundWindow(hwnd);
               ExpectBlockedBy("B+* A ");
               SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
               ExpectBlockedBy("B+* A ");
             }
             EXPECT_EQ(fDoc2.Count("OnActivationChanged 1"), 0u);
           },
           [this] {
             // The newest dialog flashes when another window is clicked, the other dialog included.
             FrameChanges frame(fB.fHwnd);
             for (const HWND hwnd : {fA.fHwnd, fDoc1.fHwnd}) {
               SetWindowPos(fB.fHwnd, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
               const int changes = frame.Get();
               EXPECT_EQ(ClickOf(hwnd), 0);
               EXPECT_GT(frame.Get(), changes) << fNames[hwnd];
               ExpectBlockedBy("B+* A ");
             }
             // So it is with a real click.
             int before = frame.Get();
             SetWindowPos(fDoc1.fHwnd, nullptr, 600, 100, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
             SetCursorPos(750, 250);
             INPUT click[2] = {};
             click[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
             click[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
             EXPECT_EQ(SendInput(2, click, sizeof(INPUT)), 2u);
             EXPECT_TRUE(YieldUntil([&] { return frame.Get() > before; }));
             ExpectBlockedBy("B+* A ");
             // It does not when it is clicked itself, which puts the windows in order and swallows nothing.
             before = frame.Get();
             SetWindowPos(fB.fHwnd, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
             ClickOf(fB.fHwnd);
             ExpectBlockedBy("B+* A ");
             EXPECT_EQ(frame.Get(), before);
           },
           [this] {
             Release(fB);
             EXPECT_EQ(Picture(), "A+* modeless doc2 doc1");
             SendMessageW(fA.fHwnd, WM_SYSCOMMAND, SC_MINIMIZE, 0);
             EXPECT_FALSE(IsIconic(fA.fHwnd));
             Release(fA);
             EXPECT_EQ(Picture(), "floating+ modeless+* doc2+ doc1+");
             Release(fModeless);
             Release(fFloating);
           }});
}

// The older dialog goes first: the newer one still blocks.
TEST_F(ModalityTest, DialogsEndInAnyOrder) {
  RunWith({[this] {
    MakeDocuments();
    MakeNamed("A", Kind::kModal, fA);
    MakeNamed("B", Kind::kModal, fB);
    Release(fA);
    EXPECT_EQ(Picture(), "B+* doc2 doc1");
    MakeNamed("A", Kind::kModal, fA);
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
  }});
}

// A dialog with an owner blocks that one only; one without an owner then blocks the dialog.
TEST_F(ModalityTest, DialogOfAModelessDialog) {
  RunWith({[this] {
    MakeDocuments();
    MakeNamed("modeless", Kind::kModeless, fModeless);
    MakeNamed("owned", Kind::kModal, fA, fModeless.fOwner);
    EXPECT_EQ(GetWindow(fA.fHwnd, GW_OWNER), fModeless.fHwnd);
    EXPECT_EQ(Picture(), "owned+* modeless doc2+ doc1+");
    BringToFront(fDoc1);
    EXPECT_EQ(Picture(), "doc1+* owned+ modeless doc2+");
    MakeNamed("B", Kind::kModal, fB);
    EXPECT_EQ(Picture(), "B+* doc1 owned modeless doc2");
    Release(fB);
    EXPECT_EQ(Picture(), "doc1+* owned+ modeless doc2+");
    BringToFront(fA);
    Release(fA);
    EXPECT_EQ(Picture(), "doc1+ modeless+* doc2+");
    Release(fModeless);
  }});
}

// A client ends the dialog from whatever it is told while the dialog appears.
TEST_F(ModalityTest, DialogsEndedWhileTheyAppear) {
  RunWith({[this] {
    MakeDocuments();
    const auto end = [this] { return fA.fRelease ? std::exchange(fA.fRelease, nullptr)() : kOK; };
    for (IModalOwner* const owner : {static_cast<IModalOwner*>(nullptr), fDoc1.fOwner}) {
      // The active window is the owner, if there is one.
      const std::string expected = owner ? "doc2+ doc1+*" : "doc2+* doc1+";
      MakeNamed("A", Kind::kModal, fA, owner, {{"OnActivationChanged 1", end}});
      EXPECT_EQ(Picture(), expected);
      BringToFront(fDoc2);
      fDoc2.fHooks["OnActivationChanged 0"] = end;
      MakeNamed("A", Kind::kModal, fA, owner);
      fDoc2.fHooks.erase("OnActivationChanged 0");
      EXPECT_EQ(Picture(), expected);
      EXPECT_EQ(std::exchange(fEnded, {}), (CallLog{"A", "A"}));
    }
  }});
}

// One that is opened while another one ends is in front of all, and usable alone.
TEST_F(ModalityTest, ADialogOpenedWhileAnotherEnds) {
  RunWith({[this] {
    MakeDocuments();
    MakeNamed("A", Kind::kModal, fA);
    fDoc2.fHooks["OnActivationChanged 1"] = [this] {
      fDoc2.fHooks.clear();
      MakeNamed("B", Kind::kModal, fB);
    };
    Release(fA);
    EXPECT_EQ(Picture(), "B+* doc2 doc1");
    Release(fB);
    EXPECT_EQ(Picture(), "doc2+* doc1+");
  }});
}

TEST_F(ModalityTest, TheLastDialogFreesItsOwner) {
  RunWith({[this] {
             MakeDocuments();
             MakeNamed("A", Kind::kModal, fA, fDoc1.fOwner);
             MakeNamed("B", Kind::kModal, fB, fDoc1.fOwner);
             Release(fA);
           },
           [this] {
             EXPECT_FALSE(IsWindowEnabled(fDoc1.fHwnd));
             Release(fB);
           },
           [this] { EXPECT_TRUE(IsWindowEnabled(fDoc1.fHwnd)); }});
}

// The user can get at an owner that its dialog blocks, and the end of another dialog must not free it.
TEST_F(ModalityTest, ABlockedOwnerIsNotFreedByOthers) {
  RunWith({[this] {
    MakeDocuments();
    MakeNamed("A", Kind::kModal, fA, fDoc1.fOwner);
    for (const bool isMinimized : {false, true}) {
      if (isMinimized) ShowWindow(fDoc1.fHwnd, SW_MINIMIZE);
      SetForegroundWindow(fDoc1.fHwnd);
      SetActiveWindow(fDoc1.fHwnd);
      MakeNamed("B", Kind::kModal, fB);
      ExpectBlockedBy("B+* ");
      Release(fB);
      EXPECT_FALSE(IsWindowEnabled(fDoc1.fHwnd));
      EXPECT_TRUE(IsWindowEnabled(fA.fHwnd));
      EXPECT_TRUE(IsWindowEnabled(fDoc2.fHwnd));
    }
    // Nor does the end of its own dialog free it while another one blocks the application.
    MakeNamed("B", Kind::kModal, fB);
    Release(fA);
    ExpectBlockedBy("B+* ");
    Release(fB);
    EXPECT_TRUE(IsWindowEnabled(fDoc1.fHwnd));
  }});
}

// The owner is told of the dialog's end while that is on its way, and ends too.
TEST_F(ModalityTest, AnOwnerEndsWhileItsDialogDoes) {
  RunWith({[this] {
    MakeDocuments();
    MakeNamed("A", Kind::kModal, fA, fDoc1.fOwner);
    fDoc1.fHooks["OnActivationChanged 1"] = [this] {
      fDoc1.fHooks.clear();
      return std::exchange(fDoc1.fRelease, nullptr)();
    };
    Release(fA);
    EXPECT_EQ(Picture(), "doc2+*");
  }});
}

// As after the question whether to save: the dialog ends in a message of its own, and its owner at once.
TEST_F(ModalityTest, AnOwnerEndsWithItsDialog) {
  RunWith({[this] {
    MakeDocuments();
    const auto endBoth = [this] { return fA.fRelease() == kOK ? fDoc1.fRelease() : kOtherError; };
    MakeNamed("A", Kind::kModal, fA, fDoc1.fOwner, {{"OnRequestClose", endBoth}});
    SendMessageW(fA.fHwnd, WM_CLOSE, 0, 0);
    EXPECT_EQ(fEnded, (CallLog{"doc1", "A"}));
    EXPECT_EQ(Picture(), "doc2+*");
  }});
}

TEST_F(ModalityTest, QuittingClosesTheNewestDialogFirst) {
  RunWith({[this] {
    MakeDocuments();
    MakeNamed("A", Kind::kModal, fA);
    MakeNamed("B", Kind::kModal, fB);
  }});
  EXPECT_EQ(fEnded, (CallLog{"B", "A", "doc2", "doc1"}));
  EXPECT_EQ(fB.Count("OnRequestClose 1"), 1u);
}

// All windows come back from the task bar only if all are there.
TEST_F(ModalityTest, AMinimizedApplication) {
  RunWith({[this] {
    MakeDocuments();
    const auto openAndEnd = [this] {
      MakeNamed("A", Kind::kModal, fA);
      EXPECT_EQ(GetActiveWindow(), fA.fHwnd);
      const bool areMinimized = IsIconic(fDoc1.fHwnd) && IsIconic(fDoc2.fHwnd);
      const bool isAny = IsIconic(fDoc1.fHwnd) || IsIconic(fDoc2.fHwnd);
      Release(fA);
      return areMinimized ? "all" : isAny ? "one" : "none";
    };
    ShowWindow(fDoc1.fHwnd, SW_MINIMIZE);
    EXPECT_STREQ(openAndEnd(), "one");
    ShowWindow(fDoc2.fHwnd, SW_MINIMIZE);
    EXPECT_STREQ(openAndEnd(), "none");
    // One that is ended because another one comes back is passed over.
    ShowWindow(fDoc1.fHwnd, SW_MINIMIZE);
    ShowWindow(fDoc2.fHwnd, SW_MINIMIZE);
    for (KindRecord* const doc : {&fDoc1, &fDoc2}) {
      KindRecord* const other = doc == &fDoc1 ? &fDoc2 : &fDoc1;
      doc->fHooks["OnPlacementChanged"] = [=] {
        return IsIconic(doc->fHwnd) || !IsWindow(other->fHwnd) ? kOK : other->fRelease();
      };
    }
    MakeNamed("A", Kind::kModal, fA);
    EXPECT_EQ(fEnded.size(), 3u);
    EXPECT_EQ(GetActiveWindow(), fA.fHwnd);
    Release(fA);
  }});
}

TEST_F(ModalityTest, ForeignWindowsAreLeftAlone) {
  const ForeignWindow enabled, disabled;
  EnableWindow(disabled, FALSE);
  RunWith({[&] {
    MakeDocuments();
    MakeNamed("A", Kind::kModal, fA);
    EXPECT_TRUE(IsWindowEnabled(enabled));
    EXPECT_FALSE(IsWindowEnabled(fDoc1.fHwnd));
    Release(fA);
    EXPECT_TRUE(IsWindowEnabled(enabled));
    EXPECT_FALSE(IsWindowEnabled(disabled));
    EXPECT_TRUE(IsWindowEnabled(fDoc1.fHwnd));
    ShowWindow(enabled, SW_HIDE);
    ShowWindow(disabled, SW_HIDE);
  }});
}

}  // namespace NSMorvaneTest
