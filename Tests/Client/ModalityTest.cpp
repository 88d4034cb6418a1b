// Dialogs that block the application, or their owner: after each step the real order, which windows can be
// used, and which is active, as a picture.
#include "Support/ClientWindows.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

namespace {

HWND gFlashed = nullptr;

BOOL WINAPI NoteFlash(FLASHWINFO* flash) {
  gFlashed = flash->hwnd;
  return FlashWindowEx(flash);
}

// What the system sends when the user clicks a window.
LRESULT ClickOf(HWND hwnd) {
  return SendMessageW(hwnd, WM_SETCURSOR, reinterpret_cast<WPARAM>(hwnd),
                      MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
}

}  // namespace

class ModalityTest : public ClientWindowTest {
 protected:
  // What is done, and the picture that it gives.
  using Pictures = Rows<const char*, const char*>;

  void ExpectPictures(const Pictures& rows) {
    for (const auto& [steps, picture] : rows) {
      Do(steps);
      EXPECT_EQ(Picture(), picture) << steps;
    }
  }
  // These are in front in this order, and of all windows only the first, which is active, can be used.
  void ExpectBlockedBy(const std::string& front) {
    const std::string picture = Picture();
    EXPECT_EQ(picture.substr(0, front.size()), front);
    EXPECT_EQ(std::count(picture.begin(), picture.end(), '+'), 1) << picture;
  }
  void PutSideBySide(const std::vector<std::string>& names) {
    int left = 0;
    for (const std::string& name : names) {
      MoveNative(HwndOf(name), left, 100);
      left += 310;
    }
  }
  void FocusNow(const std::string& name) { EXPECT_EQ(fWindows[name].fFocusNow(), kOK); }
  // Near the bottom of the window, which is not covered there when windows lie side by side.
  void ClickFor(const std::string& clicked, const std::string& active) {
    const TRect frame = NativeFrame(HwndOf(clicked));
    ClickLeft({frame.fLeft + 60, frame.fBottom - 30});
    EXPECT_TRUE(YieldUntil([&] { return GetActiveWindow() == HwndOf(active); }));
  }
};

TEST_IN_RUN(ModalityTest, TwoNestedDialogs) {
  ExpectPictures({{"+doc1 +doc2 +modeless +floating ^doc1", "floating+ doc1+* modeless+ doc2+"},
                  {"+A", "A+* doc1 modeless doc2"},
                  {"+B", "B+* A doc1 modeless doc2"}});
  Turn();
  // However another window is to be activated, it ends with the newest dialog in front.
  fWindows["doc2"].fLog.Take();
  for (const char* name : {"doc2", "A", "modeless"}) {
    SetForegroundWindow(HwndOf(name));
    ExpectBlockedBy("B+* A ");
    SetWindowPos(HwndOf(name), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    ExpectBlockedBy("B+* A ");
  }
  EXPECT_EQ(fWindows["doc2"].fLog.Count("ActivationChanged:1"), 0);
  // The newest dialog flashes when another window is clicked, the other dialog included; not when it is
  // clicked itself, which puts the windows in order and swallows nothing.
  const PatchedImport patch(L"Morvane.dll", "FlashWindowEx", NoteFlash);
  for (const std::string name : {"A", "doc1", "B"}) {
    Turn();
    PutAt(HWND_BOTTOM, fWindows["B"]);
    gFlashed = nullptr;
    const LRESULT result = ClickOf(HwndOf(name));
    EXPECT_TRUE(name == "B" || result == 0);
    EXPECT_EQ(gFlashed, name == "B" ? nullptr : HwndOf("B")) << name;
    ExpectBlockedBy("B+* A ");
  }
  // So it is with a real click.
  MoveNative(HwndOf("doc1"), 600, 100);
  gFlashed = nullptr;
  ClickLeft({750, 250});
  EXPECT_TRUE(YieldUntil([] { return gFlashed != nullptr; }));
  ExpectBlockedBy("B+* A ");

  ExpectPictures({{"-B", "A+* modeless doc2 doc1"}});
  SendMessageW(HwndOf("A"), WM_SYSCOMMAND, SC_MINIMIZE, 0);
  EXPECT_FALSE(IsIconic(HwndOf("A")));
  ExpectPictures({{"-A", "floating+ modeless+* doc2+ doc1+"}, {"-modeless -floating", "doc2+* doc1+"}});
}

// Dialogs end in any order, and can be opened while another one ends.
TEST_IN_RUN(ModalityTest, DialogsBeginAndEnd) {
  ExpectPictures({{"+doc1 +doc2 +A +B -A", "B+* doc2 doc1"},
                  {"+A", "A+* B doc2 doc1"},
                  {"+modeless", "A+* B modeless doc2 doc1"},  // a window that comes later is blocked, too
                  {"+floating", "A+* B modeless doc2 doc1"},  // and one that floats waits
                  {"-A", "B+* modeless doc2 doc1"},
                  {"-B", "floating+ modeless+* doc2+ doc1+"},
                  {"-modeless -floating +A", "A+* doc2 doc1"}});
  HooksOf("doc2")["ActivationChanged:1"] = [this] {
    HooksOf("doc2").clear();
    Do("+B");
  };
  ExpectPictures({{"-A", "B+* doc2 doc1"}, {"-B", "doc2+* doc1+"}});

  // A client ends the dialog from whatever it is told while the dialog appears.
  const Hook end = [this] {
    auto& release = fWindows["A"].fRelease;
    return release ? std::exchange(release, nullptr)() : kOK;
  };
  // The active window is the owner, if there is one.
  for (const auto& [owner, picture] : {std::pair<IModalOwner*, const char*>{nullptr, "doc2+* doc1+"},
                                       {fWindows["doc1"].fOwner, "doc1+* doc2+"}}) {
    MakeNamed("A", {{"ActivationChanged:1", end}}, owner);
    EXPECT_EQ(Picture(), picture);
    Do("^doc2");
    HooksOf("doc2")["ActivationChanged:0"] = end;
    MakeNamed("A", {}, owner);
    HooksOf("doc2").clear();
    EXPECT_EQ(Picture(), picture);
  }

  // And while the click of a window that it blocks brings it to the front: that click is over.
  const HWND foreign = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 80, 80, nullptr,
                                       nullptr, nullptr, nullptr);
  MakeNamed("A");
  SetActiveWindow(foreign);
  HooksOf("A")["ActivationChanged:1"] = end;
  const PatchedImport patch(L"Morvane.dll", "FlashWindowEx", NoteFlash);
  SetCursor(nullptr);
  SendMessageW(HwndOf("doc1"), WM_SETCURSOR, reinterpret_cast<WPARAM>(HwndOf("doc1")),
               MAKELPARAM(HTCAPTION, WM_LBUTTONDOWN));
  EXPECT_EQ(GetCursor(), nullptr) << "the window itself has not heard of it";
  EXPECT_EQ(gFlashed, nullptr);
  EXPECT_EQ(Picture(), "doc1+ doc2+");
  DestroyWindow(foreign);
}

// A dialog with an owner blocks that one only; one without an owner then blocks the dialog.
TEST_IN_RUN(ModalityTest, DialogsOfOwners) {
  Do("+doc1 +doc2 +modeless +A<modeless");
  EXPECT_EQ(GetWindow(HwndOf("A"), GW_OWNER), HwndOf("modeless"));
  ExpectPictures({{"", "A+* modeless doc2+ doc1+"},
                  {"^doc1", "doc1+* A+ modeless doc2+"},
                  {"+B", "B+* doc1 A modeless doc2"},
                  {"-B", "doc1+* A+ modeless doc2+"},
                  {"^A -A", "modeless+* doc1+ doc2+"},
                  // The last of two frees the owner.
                  {"-modeless +A<doc1 +B<doc1 -A", "B+* doc1 doc2+"},
                  {"-B", "doc1+* doc2+"}});

  // The user can get at an owner that its dialog blocks, and the end of another dialog must not free it.
  Do("+A<doc1");
  for (const bool isMinimized : {false, true}) {
    if (isMinimized) ShowWindow(HwndOf("doc1"), SW_MINIMIZE);
    SetForegroundWindow(HwndOf("doc1"));
    SetActiveWindow(HwndOf("doc1"));
    Do("+B");
    ExpectBlockedBy("B+* ");
    Do("-B");
    EXPECT_FALSE(IsWindowEnabled(HwndOf("doc1")));
    EXPECT_TRUE(IsWindowEnabled(HwndOf("A")) && IsWindowEnabled(HwndOf("doc2")));
  }
  // Nor does the end of its own dialog free it while another one blocks the application.
  Do("+B -A");
  ExpectBlockedBy("B+* ");
  Do("-B");
  EXPECT_TRUE(IsWindowEnabled(HwndOf("doc1")));
  ShowWindow(HwndOf("doc1"), SW_RESTORE);

  // A dialog whose answer opens the next one: that blocks the owner, which the first one has just freed.
  const auto closeBy = [this](const char* steps) {
    MakeNamed("A", {{"RequestClose", [=, this] { Do(steps); }}}, fWindows["doc1"].fOwner);
    fRun.fLog.Take();
    SendMessageW(HwndOf("A"), WM_CLOSE, 0, 0);
  };
  closeBy("-A +B");
  ExpectBlockedBy("B+* ");
  Do("-B");
  EXPECT_TRUE(IsWindowEnabled(HwndOf("doc1")));
  // As after the question whether to save: the dialog ends in a message of its own, and its owner at once.
  closeBy("-A -doc1");
  EXPECT_EQ(fRun.fLog.Take(), "A.RequestClose:0 doc1.deleted A.deleted");
}

// Whoever activates a window that a dialog blocks, or clicks it, gets the last of the dialogs over it, with
// its owners behind it.
TEST_IN_RUN(ModalityTest, ABlockedWindowGivesItsDialog) {
  fRun.fHooks["SetupMenuBar"] = [this] { return fRun.fMenuBar->IMenuBarState_SetFlags({0, 0, 0, 0, 1}); };
  Do("+doc1 +doc2 +A<doc1 +B<A");
  PutSideBySide({"doc1", "doc2", "A", "B"});
  const auto minimize = [this] {
    ShowWindow(HwndOf("doc1"), SW_MINIMIZE);
    Turn();
  };
  const auto command = [this](const char* name, UINT message, WPARAM number) {
    SendMessageW(HwndOf(name), message, number, 0);
  };
  const auto expectDialogInFront = [this] {
    EXPECT_EQ(Picture(), "B+* A doc1 doc2+");
    EXPECT_EQ(Listed(), "doc1 doc2");
    EXPECT_EQ(GetFocus(), HwndOf("B"));
  };
  const std::pair<const char*, std::function<void()>> ways[] = {
      {"operation", [&] { FocusNow("doc1"); }},
      {"operation, first dialog", [&] { FocusNow("A"); }},
      {"operation, last dialog", [&] { FocusNow("B"); }},
      {"menu", [&] { command("doc2", WM_COMMAND, 0xE000); }},
      {"menu, first dialog", [&] { command("doc2", WM_COMMAND, 0xE002); }},
      {"click", [&] { EXPECT_EQ(ClickOf(HwndOf("doc1")), 0); }},
      {"real click", [&] { ClickFor("doc1", "B"); }},
      {"real click, first dialog", [&] { ClickFor("A", "B"); }},
      {"real click, last dialog", [&] { ClickFor("B", "B"); }},
      {"foreground", [&] { SetForegroundWindow(HwndOf("doc1")); }},
      {"active", [&] { SetActiveWindow(HwndOf("A")); }},
      {"task bar", [&] { minimize(), command("doc1", WM_SYSCOMMAND, SC_RESTORE); }},
      {"task bar, active",
       [&] {
         minimize(), SetForegroundWindow(HwndOf("doc1"));
         EXPECT_TRUE(IsIconic(HwndOf("doc1"))) << "not by being active alone";
         command("doc1", WM_SYSCOMMAND, SC_RESTORE);
       }},
      {"restored", [&] { minimize(), ShowWindow(HwndOf("doc1"), SW_RESTORE); }},
      {"operation, minimized", [&] { minimize(), FocusNow("doc1"); }},
      {"operation on a dialog, minimized", [&] { minimize(), FocusNow("A"); }},
  };
  for (const auto& [way, action] : ways) {
    SCOPED_TRACE(way);
    FocusNow("doc2");
    EXPECT_EQ(Picture(), "doc2+* B+ A doc1");
    Turn();
    for (const char* name : {"doc1", "A"}) fWindows[name].fLog.Take();
    action();
    expectDialogInFront();
    Turn();
    expectDialogInFront();
    EXPECT_FALSE(IsIconic(HwndOf("doc1")));
    for (const char* name : {"doc1", "A"}) {
      const CallLog& log = fWindows[name].fLog;
      EXPECT_EQ(log.Count("ActivationChanged:0"), log.Count("ActivationChanged:1")) << name;
    }
  }
  // The dialogs end from the last to the first, and their owners have the keyboard then.
  for (const auto& row : Pictures{{"-B", "A+* doc1 doc2+"}, {"-A", "doc1+* doc2+"}}) {
    ExpectPictures({row});
    EXPECT_EQ(GetFocus(), GetActiveWindow());
  }
  fRun.fHooks.erase("SetupMenuBar");
}

// A dialog with an owner over the dialog that blocks the application: it can be used, and that one cannot.
TEST_IN_RUN(ModalityTest, ADialogOverTheDialogOfTheApplication) {
  ExpectPictures({{"+doc1 +doc2 +X +A<X", "A+* X doc2 doc1"}});
  for (const char* name : {"doc1", "X", "A"}) {
    FocusNow(name);
    ExpectBlockedBy("A+* X ");
    ClickOf(HwndOf(name));
    ExpectBlockedBy("A+* X ");
    SetForegroundWindow(HwndOf(name));
    ExpectBlockedBy("A+* X ");
  }
  // From the task bar only the dialog comes, which takes the window along where it is asked for.
  ShowWindow(HwndOf("doc1"), SW_MINIMIZE);
  const std::pair<UINT, WPARAM> taskBar = {WM_SYSCOMMAND, SC_RESTORE}, windowMenu = {WM_COMMAND, 0xE000};
  for (const auto& [message, command] : {taskBar, windowMenu}) {
    SendMessageW(HwndOf("doc1"), message, command, 0);
    ExpectBlockedBy("A+* X ");
    EXPECT_EQ(GetFocus(), HwndOf("A"));
    EXPECT_EQ(IsIconic(HwndOf("doc1")) != 0, message == WM_SYSCOMMAND);
  }
  // A dialog of the application that goes leaves both as they were.
  ExpectPictures({{"+B<X", "B+* A+ X doc1 doc2"},
                  {"+Y", "Y+* B A X doc1 doc2"},
                  {"-Y", "B+* A+ X doc1 doc2"},
                  {"-B", "A+* X doc1 doc2"},
                  {"-A", "X+* doc1 doc2"},
                  {"-X", "doc1+* doc2+"}});
  // Floating windows stay away until the application is free.
  ExpectPictures({{"+floating +X", "X+* doc1 doc2"},
                  {"+A<X", "A+* X doc1 doc2"},
                  {"-A", "X+* doc1 doc2"},
                  {"-X", "floating+ doc1+* doc2+"},
                  // Also if a dialog stays active that the ended one has owned.
                  {"+X +A<X", "A+* X doc1 doc2"},
                  {"-X", "floating+ A+* doc1+ doc2+"}});
  EXPECT_EQ(fOutput.TakeAssertions(), "fChildWindows.size()==0");
}

// A window that becomes active comes to the front, also one that lies beside the others: so it is active
// again after a dialog.
TEST_IN_RUN(ModalityTest, ActivationRaises) {
  Do("+doc1 +doc2 +doc3");
  PutSideBySide({"doc1", "doc2", "doc3"});
  const auto expectFront = [this](const std::string& front, const std::string& documents) {
    EXPECT_EQ(Picture(), front);
    EXPECT_EQ(Listed(), documents);
  };
  FocusNow("doc1");
  expectFront("doc1+* doc3+ doc2+", "doc1 doc3 doc2");
  SetActiveWindow(HwndOf("doc2"));
  expectFront("doc2+* doc1+ doc3+", "doc2 doc1 doc3");
  ClickFor("doc3", "doc3");
  expectFront("doc3+* doc2+ doc1+", "doc3 doc2 doc1");
  PutAt(HWND_BOTTOM, fWindows["doc3"]);
  FocusNow("doc3");  // active already
  expectFront("doc3+* doc2+ doc1+", "doc3 doc2 doc1");
  FocusNow("doc1");
  Do("+A");
  for (const char* name : {"doc3", "doc2"}) FocusNow(name);
  Do("-A");
  expectFront("doc1+* doc3+ doc2+", "doc1 doc3 doc2");
}

TEST_F(ModalityTest, QuittingClosesTheNewestDialogFirst) {
  ExpectRun(
      "StartUp B.RequestClose:1 B.deleted A.RequestClose:1 A.deleted doc2.RequestClose:1 doc2.deleted "
      "doc1.RequestClose:1 doc1.deleted CleanUp deleted",
      [this] {
        Do("+doc1 +doc2 +A +B");
        Then([this] { Quit(); });
      });
}

// All windows come back from the task bar only if all are there.
TEST_IN_RUN(ModalityTest, AMinimizedApplication) {
  Do("+doc1 +doc2");
  const auto minimizedIn = [this](const std::vector<std::string>& names) {
    for (const std::string& name : names) ShowWindow(HwndOf(name), SW_MINIMIZE);
    Do("+A");
    EXPECT_EQ(GetActiveWindow(), HwndOf("A"));
    const int minimized = IsIconic(HwndOf("doc1")) + IsIconic(HwndOf("doc2"));
    Do("-A");
    return minimized;
  };
  EXPECT_EQ(minimizedIn({"doc1"}), 1);
  EXPECT_EQ(minimizedIn({"doc2"}), 0);
  // One that is ended because another one comes back is passed over.
  for (const auto& [doc, other] : {std::pair{"doc1", "doc2"}, {"doc2", "doc1"}})
    HooksOf(doc)["PlacementChanged"] = [this, doc = doc, other = other] {
      return IsIconic(HwndOf(doc)) || !IsWindow(HwndOf(other)) ? kOK : fWindows[other].fRelease();
    };
  fRun.fLog.Take();
  EXPECT_EQ(minimizedIn({"doc1", "doc2"}), 0);
  const std::string ended = fRun.fLog.Take();
  EXPECT_TRUE(ended == "doc1.deleted A.deleted" || ended == "doc2.deleted A.deleted") << ended;
}

TEST_IN_RUN(ModalityTest, ForeignWindowsAreLeftAlone) {
  for (const DWORD disabled : {0l, WS_DISABLED}) {
    const HWND foreign =
        CreateWindowExW(0, L"STATIC", L"Foreign", WS_OVERLAPPEDWINDOW | WS_VISIBLE | disabled, 10, 10, 80, 80,
                        nullptr, nullptr, nullptr, nullptr);
    Do("+doc1 +A");
    EXPECT_EQ(IsWindowEnabled(foreign), !disabled);
    Do("-A");
    EXPECT_EQ(IsWindowEnabled(foreign), !disabled);
    Do("-doc1");
    DestroyWindow(foreign);
  }
}

// A window of another thread, as of a file dialog, can end at any moment. Here one ends when the library has
// asked for its process, or so often whether it is there.
TEST_IN_RUN(ModalityTest, ForeignWindowsEndAtAnyMoment) {
  static HWND foreign = nullptr;
  static int looks = 0;
  static DWORD(WINAPI* const processOf)(HWND, DWORD*) = [](HWND hwnd, DWORD* out) -> DWORD {
    const DWORD thread = GetWindowThreadProcessId(hwnd, out);
    if (hwnd == foreign && out && looks == 0) DestroyWindow(std::exchange(foreign, nullptr));
    return thread;
  };
  static BOOL(WINAPI* const isThere)(HWND) = [](HWND hwnd) -> BOOL {
    const BOOL result = IsWindow(hwnd);
    if (hwnd == foreign && looks > 0 && --looks == 0) DestroyWindow(std::exchange(foreign, nullptr));
    return result;
  };
  const PatchedImport asked(L"Morvane.dll", "GetWindowThreadProcessId", processOf);
  const PatchedImport looked(L"Morvane.dll", "IsWindow", isThere);
  Do("+doc1");
  for (const int end : {0, 1, 2, 3}) {
    looks = end;
    foreign = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 80, 80, nullptr, nullptr,
                              nullptr, nullptr);
    Do("+A");
    EXPECT_EQ(foreign, nullptr);
    ExpectPictures({{"", "A+* doc1"}, {"-A", "doc1+*"}});
    EXPECT_EQ(fOutput.TakeAssertions(), "") << "after " << end << " looks";
  }
}

// A window of the client's own ends while it owns dialogs, and the system destroys them with it. They block
// nothing any more and are asked to close. A client that does not do so keeps an object that it can use.
TEST_IN_RUN(ModalityTest, AForeignOwnerTakesItsDialogsAlong) {
  struct Owner : IModalOwner {
    TError IModalOwner_GetNativeWindow(TNativeWindow& out) override {
      out.fHwnd = fHwnd;
      return kOK;
    }
    HWND fHwnd = nullptr;
  } owner;
  struct Listener : IAlertBoxListener {
    TError IAlertBoxListener_OnResponse(TAlertResponse) override { return kOtherError; }
  } listener;
  const auto destroyOwner = [&] { EXPECT_TRUE(DestroyWindow(owner.fHwnd)); };
  // Whatever has a native owner that a client has given it by the handle.
  const auto destroyOwnerOf = [&](HWND dialog) {
    SetWindowLongPtrW(dialog, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner.fHwnd));
    destroyOwner();
  };
  const auto alert = [&](IModalOwner* alertOwner, TFlag blocking) {
    TAlertSpec spec = {};
    spec.fButtonLayout = kAlertOneButton;
    spec.fKind = kAlertPlain;
    CopyText(spec.fMessage, u"text");
    CopyText(spec.fButton1, u"OK");
    EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(alertOwner, blocking, spec, &listener), kOK);
  };
  const auto makeBlocking = [&] { MakeNamed("A", {}, nullptr, kPlain, 1); };
  const std::string ofA = "A.RequestClose:0 A.deleted";
  Do("+doc1");
  for (const auto& [name, show, calls] : Rows<const char*, std::function<void()>, std::string>{
           {"modeless", [&] { Do("+modeless"), destroyOwnerOf(HwndOf("modeless")); },
            "modeless.RequestClose:0 modeless.deleted"},
           {"modal", [&] { MakeNamed("A", {}, &owner), destroyOwner(); }, ofA},
           {"over it", [&] { MakeNamed("A", {}, &owner), Do("+B<A"), destroyOwner(); },
            "B.RequestClose:0 B.deleted " + ofA},
           {"for all", [&] { Do("+A"), destroyOwnerOf(HwndOf("A")); }, ofA},
           {"blocking", [&] { Then([&] { destroyOwnerOf(HwndOf("A")); }), makeBlocking(); }, ofA},
           {"by its handle",
            [&] { Then([&] { DestroyWindow(HwndOf("A")); }), makeBlocking(), destroyOwner(); }, ofA},
           {"alert", [&] { alert(&owner, 0), destroyOwner(); }, ""},
           {"blocking alert", [&] { Then([&] { destroyOwnerOf(GetActiveWindow()); }), alert(nullptr, 1); },
            ""},
       }) {
    SCOPED_TRACE(name);
    owner.fHwnd = CreateWindowExW(0, L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 80, 80,
                                  nullptr, nullptr, nullptr, nullptr);
    fRun.fLog.Take();
    show();
    EXPECT_FALSE(IsWindow(owner.fHwnd));
    EXPECT_EQ(fRun.fLog.Take(), calls);
    Turn();
    FocusNow("doc1");
    EXPECT_EQ(Picture(), "doc1+*");
  }
  // A client that keeps it can use what is left, which nobody sees.
  owner.fHwnd =
      CreateWindowExW(0, L"STATIC", L"Owner", WS_POPUP, 10, 10, 80, 80, nullptr, nullptr, nullptr, nullptr);
  IWindow& window = *MakeNamed("A", {{"RequestClose", [] {}}}, &owner).fWindow;
  IView* root = nullptr;
  EXPECT_EQ(window.IWindow_GetRootView(root), kOK);
  CViewFactory<CDefaultHitViewBehavior> factory;
  TError error = kOtherError;
  IView* const view = fMorvane->IMorvane_CreateView(factory, *root, "view", error);
  EXPECT_EQ(view->IView_SetTooltipText(u"tip"), kOK);
  destroyOwner();
  TRect frame = {};
  TNativeWindow native = {};
  for (const TError each :
       {SetRect(*view, {0, 0, 50, 50}), view->IView_SetTooltipText(u"other tip"),
        window.IWindow_SetConceptualFocusView(nullptr), window.IWindow_GetFrameRect(frame),
        window.IWindow_SetGlobalAlpha(99), fWindows["A"].fFocusNow(), window.IWindow_GetNativeWindow(native)})
    EXPECT_EQ(each, kOK);
  EXPECT_FALSE(IsWindowVisible(native.fHwnd));
  Turn();
  EXPECT_EQ(Picture(), "doc1+*");
  EXPECT_EQ(view->IView_Release(), kOK);
  Do("-A");
  EXPECT_FALSE(IsWindow(native.fHwnd));
}

}  // namespace NSMorvaneTest
