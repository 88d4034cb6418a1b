// Menu bars and popup menus of a client: read back from the system item by item, and used by command, by
// shortcut and by key.
#include "Support/ClientWindows.h"
#include "Support/MenuItems.h"
#include "Support/NativeMenus.h"

namespace NSMorvaneTest {

namespace {

// One item and a title.
void SetMenu(IMenuBarState& state, TMenu menu, const char16_t* title, std::uint32_t command) {
  EXPECT_EQ(state.IMenuBarState_SetMenuTitle(menu, title), kOK);
  SetItems(state, menu, {MenuItem(u"item", command)});
}

}  // namespace

class MenusTest : public ClientWindowTest {
 protected:
  static MenuLines BarOf(const WindowRecord& record) { return LinesOfMenu(GetMenu(record.fHwnd)); }
  // The title of the first menu of the client's own.
  static std::string TitleIn(const WindowRecord& record) { return BarOf(record).at(4); }
  // At the end of one message menu bars are flushed.
  void Request(int times = 1) {
    fRun.fHooks["ThemeChanged"] = [=, this] {
      for (int i = 0; i < times; ++i) EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
    };
    Send(WM_THEMECHANGED);
  }
  void Command(UINT command) { Send(WM_COMMAND, command); }
  // Hooks that set up the menu bar; without any no window has one.
  void SetUpBy(std::function<TError(IMenuBarState&)> setUp) {
    fRun.fHooks["SetupMenuBar"] = [=, this] { return setUp(*fRun.fMenuBar); };
  }
  void Leave() override {
    fRun.fHooks.erase("SetupMenuBar");
    ClientWindowTest::Leave();
  }
};

TEST_IN_RUN(MenusTest, WholeBar) {
  struct {
    std::string fExit = "  E&xit C351 grey", fClose = "  &Close A004", fOnTop = "  Always on &Top EA61";
    std::string fWindows = "  a_b && c E001 checked", fHelp = "|  --|  A scenario of the client tests A009";
    MenuLines Lines() const {
      return SplitLines("&Application:|  &About A000|  --|  Grey A002 grey|  --|" + fExit +
                        "|&File:|  &Save\tCtrl+S A003|  --|" + fClose +
                        "|&Edit:|  item A005|Last &own:|  item A006|&Window:|" + fOnTop +
                        "|  --|  Tile A007 checked|  --|" + fWindows +
                        "|&Help:|  &Search: grey|    Topics A008 grey" + fHelp);
    }
  } bar;
  TMenuBarFlags flags = {1, 1, 0, 1, 1};
  SetUpBy([&](IMenuBarState& state) {
    SetItems(state, kMenuApplication, {MenuItem(u"_About", 1), MenuItem(u""), MenuItem(u"Grey", 2, 0)});
    SetItems(state, kMenuDocument, {MenuItem(u"_Save", 3, kMenuItemEnabled, u"", u"s", kModifierControl)});
    SetMenu(state, kMenu1, u"_Edit", 4);
    SetMenu(state, kMenu6, u"Last _own", 5);
    for (const TMenu menu : {kMenuReserved8, kMenuReserved10, kMenuReserved12})
      SetItems(state, menu, {MenuItem(u"never shown")});
    SetItems(state, kMenuWindow, {MenuItem(u"Tile", 6, kMenuItemEnabled | kMenuItemChecked)});
    SetItems(state, kMenuHelp, {MenuItem(u"Topics", 7, 0, u"_Search")});
    return state.IMenuBarState_SetFlags(flags);
  });
  // The first window is in no list, and yet it counts.
  fIsListed = 0;
  Open(kWindowResizableBit);
  fIsListed = 1;
  WindowRecord& second = MakeNamed("doc1");
  EXPECT_EQ(ChangeState(*second.fDocument, [](auto& state) { CopyText(state.fTitle, u"a_b & c"); }), kOK);
  Request();
  EXPECT_EQ(BarOf(second), bar.Lines());
  bar.fWindows = "  a_b && c E001";
  EXPECT_EQ(BarOf(fRecord), bar.Lines());
  const HMENU handle = GetMenu(Hwnd());
  EXPECT_EQ(fRecord.fSizes.back().second, NativeClientSize(Hwnd())) << "the bar takes its room";

  fOutput.ForgetLines();
  Request();
  EXPECT_EQ(fOutput.CountLines("CWinWindow::RebuildCompleteMenuBar"), 0) << "for what is there already";
  Do("+doc2");
  Command(60001);
  EXPECT_TRUE(GetWindowLongW(Hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST);
  bar.fOnTop += " checked";
  bar.fWindows += "|   E002";
  EXPECT_EQ(BarOf(fRecord), bar.Lines());

  // Menus under the same titles take the place of those before, in the same bar.
  flags = {0, 0, 1, 0, 1};
  const HMENU oldMenu = GetSubMenu(handle, 0);
  Request();
  EXPECT_FALSE(IsMenu(oldMenu));
  bar.fExit = "  E&xit C351";
  bar.fClose += " grey";
  bar.fHelp = "";
  EXPECT_EQ(BarOf(fRecord), bar.Lines());
  EXPECT_EQ(GetMenu(Hwnd()), handle);

  ShowWindow(HwndOf("doc2"), SW_MINIMIZE);
  SetActiveWindow(Hwnd());
  Command(0xE002);
  EXPECT_EQ(GetActiveWindow(), HwndOf("doc2"));
  EXPECT_FALSE(IsIconic(HwndOf("doc2")));
}

// Documents and modeless dialogs as the client wants, modal dialogs with a close command, and nothing else.
TEST_IN_RUN(MenusTest, WindowsInTheWindowMenu) {
  SetUpBy([](IMenuBarState& state) { return state.IMenuBarState_SetFlags({0, 0, 0, 0, 1}); });
  Open();
  fIsDialogListed = 1;
  Do("+modeless1");
  fIsDialogListed = 0;
  Do("+modeless2");
  MakeNamed("with a close command", {}, fRecord.fOwner);
  MakeNamed("without", {}, fRecord.fOwner, kPlain);
  Do("+floating");
  Send(WM_NULL);
  MenuLines lines = BarOf(fRecord);
  std::erase_if(lines, [](const std::string& line) { return line.find(" E00") == line.npos; });
  EXPECT_EQ(lines, (MenuLines{"   E000 checked", "   E001", "   E003"}));
}

// Commands go to the window, and then twice to the application.
TEST_IN_RUN(MenusTest, Commands) {
  SetUpBy([](IMenuBarState& state) {
    SetItems(state, kMenuDocument,
             {MenuItem(u"Plain", 100, kMenuItemEnabled, u"", u"\xE005"), MenuItem(u"", 101),
              MenuItem(u"Shifted", 102, kMenuItemEnabled, u"", u"k", kModifierControl | kModifierShift),
              MenuItem(u"Grey", 103, 0, u"", u"\xE006")});
    return kOK;
  });
  const auto press = [this](const std::vector<WORD>& keys) {
    SendKeys(keys);
    EXPECT_TRUE(YieldUntil([this] { return fRun.fLog.Last().starts_with("MenuCommand"); }));
    SendKeys(keys, KEYEVENTF_KEYUP);
    return fRun.fLog.Take();
  };
  // The calls of the window, then those of the application.
  const auto commandCalls = [this](UINT command) {
    fRecord.fLog.Take();
    fRun.fLog.Take();
    Command(command);
    return fRecord.fLog.Take() + " " + fRun.fLog.Take();
  };
  OpenWithFocusTree();
  Request();
  EXPECT_EQ(commandCalls(0xA002), "MenuCommand:102 MenuCommand:102 MenuCommand:102");
  // First of all along the focus chain, past views that have been released.
  SetFocus("leaf");
  EXPECT_EQ(ViewCallsOf([this] { Command(0xA002); }), "leaf:command inner:command outer:command");
  ReleaseView("inner");
  fViewRecord.fHooks["outer:command"] = Handles();
  ViewCalls();
  EXPECT_EQ(commandCalls(0xA002), " ");
  EXPECT_EQ(ViewCalls(), "leaf:command outer:command");
  ReleaseViews();
  for (const UINT nobodys : {0xA005u, 0xAFFFu, 0xB000u, 0x9002u, 0x9008u, 1u, 50002u, 50016u})
    EXPECT_EQ(commandCalls(nobodys), " ") << nobodys;
  fRun.fHooks["MenuCommand"] = Handles();
  Command(0xA004);  // the library's own item
  Send(WM_HSCROLL, 0xA000);
  EXPECT_EQ(fRun.fLog.Take(), "MenuCommand:50016 MenuCommand:100");
  fRecord.fLog.Take();
  EXPECT_EQ(press({VK_F6, VK_F5}), "MenuCommand:100");
  EXPECT_EQ(fRecord.fLog.Count("HandleKeyDown"), 1) << "the shortcut of a grey item alone is a key";
  EXPECT_EQ(fRun.fCommand.fModifiers.fKeys, 0u);
  EXPECT_EQ(press({VK_CONTROL, VK_SHIFT, 'K'}), "MenuCommand:102");
  EXPECT_EQ(fRun.fCommand.fModifiers.fKeys, kModifierControl | kModifierShift);

  // A window may end in a command.
  fRecord.fHooks["MenuCommand"] = [this] { Release(fRecord); };
  Command(0xA000);
  EXPECT_FALSE(IsWindow(Hwnd()));
}

// The application begins, the view with the focus has the last word; however often they are asked for, it is
// once in one message.
TEST_IN_RUN(MenusTest, SetUp) {
  const auto append = [](IMenuBarState*& state, TChar letter) {
    return [=, &state] {
      TChar title[kMenuTextChars + 1] = {};
      EXPECT_EQ(state->IMenuBarState_GetMenuTitle(kMenu1, title), kOK);
      SetMenu(*state, kMenu1, (TextOf(title) + letter).c_str(), 1);
    };
  };
  OpenWithFocusTree();
  Request();
  EXPECT_EQ(GetMenu(Hwnd()), nullptr) << "there is nothing in it";
  Hook& ofApplication = fRun.fHooks["SetupMenuBar"];
  ofApplication = append(fRun.fMenuBar, u'a');
  fRecord.fHooks["SetupMenuBar"] = append(fRecord.fMenuBar, u'w');
  fViewRecord.fHooks["outer:menu"] = append(fViewRecord.fMenuBar, u'o');
  fViewRecord.fHooks["inner:menu"] = append(fViewRecord.fMenuBar, u'i');
  SetFocus("inner");
  WindowRecord& other = MakeNamed("doc1");
  Request();
  EXPECT_EQ(TitleIn(fRecord), "awoi:");
  EXPECT_EQ(TitleIn(other), "a:");

  ofApplication = append(fRun.fMenuBar, u'b');
  other.fMenuBarSetups = fRecord.fMenuBarSetups = 0;
  Request(1000);
  EXPECT_EQ(other.fMenuBarSetups + fRecord.fMenuBarSetups, 2);
  EXPECT_EQ(TitleIn(fRecord), "bwoi:");
  ReleaseViews();
  // A window that the set-up of another one ends is passed over.
  BringToFront(fRecord);
  fRecord.fHooks["SetupMenuBar"] = [&, hook = fRecord.fHooks["SetupMenuBar"]] {
    fRecord.fHooks["SetupMenuBar"] = hook;
    Release(other);
  };
  Request();
  EXPECT_EQ(fOutput.CountLines("RequestMenuBarSetup for a behavior-less document window!!!"), 0);

  // So is one that the application ends in its own part.
  WindowRecord& third = MakeNamed("doc2");
  Send(WM_NULL);
  ofApplication = [&, hook = ofApplication] {
    ofApplication = hook;
    Release(third);
  };
  third.fMenuBarSetups = 0;
  Request();
  EXPECT_EQ(third.fMenuBarSetups, 0);

  // Who asks for another one in the middle of each gets it after that. A failure is reported, and the next
  // request works.
  ofApplication = [&, depth = 0, letter = u'b']() mutable {
    EXPECT_EQ(++depth, 1);
    EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
    Send(WM_NULL);
    --depth;
    append(fRun.fMenuBar, ++letter)();
  };
  Request();
  EXPECT_EQ(TitleIn(fRecord), "cw:");
  Send(WM_NULL);
  EXPECT_EQ(TitleIn(fRecord), "dw:");
  ofApplication = TError(100001);
  Request();
  EXPECT_EQ(TitleIn(fRecord), "dw:");
  ExpectReported(100001);
}

// --- Popup menus

// With a user who does something once a popup stands on the screen.
class PopupMenusTest : public MenusTest {
 protected:
  struct TUse {
    const char* fName;
    bool fByButton;           // a click of the right button, on the first item
    std::vector<WORD> fKeys;  // what comes then
    std::uint32_t fFlags;
    int fWanted;  // -1: nothing is chosen
  };

  void StartUse(const TUse& use) {
    PutMouse({0, 0});  // the item under the mouse would be selected
    fUse = &use;
    fOwner = Hwnd();
    fMenu = nullptr;
    fTimer = SetTimer(nullptr, 0, 5, OnTimer);
  }
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
    const HWND popup = FindWindowW(L"#32768", nullptr);
    if (!popup || !IsWindowVisible(popup)) return;
    if (!fMenu) {
      fMenu = reinterpret_cast<HMENU>(SendMessageW(popup, MN_GETHMENU, 0, 0));
      fLines = LinesOfMenu(fMenu);
      fFrame = NativeFrame(popup);
      const POINT place = {fFrame.fLeft + 12, fFrame.fTop + 12};
      if (fUse->fByButton) Click(place, {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP});
    }
    if (fUse->fByButton && !(GetMenuState(fMenu, 0, MF_BYPOSITION) & MF_HILITE)) return;
    KillTimer(nullptr, fTimer);
    for (const WORD key : fUse->fKeys) PostMessageW(fOwner, WM_KEYDOWN, key, 1);
  }

  static inline UINT_PTR fTimer = 0;
  static inline const TUse* fUse = nullptr;
  static inline HWND fOwner = nullptr;
  static inline HMENU fMenu = nullptr;
  static inline MenuLines fLines;
  static inline TRect fFrame = {};
};

TEST_IN_RUN(PopupMenusTest, ChoiceByKeyAndButton) {
  const std::vector<TMenuItem> items = {
      MenuItem(u"_First"), MenuItem(u""),
      MenuItem(u"Third", 0, kMenuItemEnabled | kMenuItemChecked, u"", u"\xE001"), MenuItem(u"Grey", 0, 0),
      MenuItem(u"Deep", 0, kMenuItemEnabled, u"_Sub")};
  const auto count = static_cast<std::uint32_t>(items.size());
  const TUse uses[] = {{"arrow keys", false, {VK_DOWN, VK_DOWN, VK_RETURN}, 0, 2},
                       {"escape", false, {VK_ESCAPE}, 0, -1},
                       {"into the submenu", false, {VK_UP, VK_RIGHT, VK_RETURN}, 1, 4},
                       {"right button", true, {}, 0, 0},
                       {"right button, then escape", true, {VK_ESCAPE}, 1, -1}};
  Open();
  const auto expectUse = [&](const TUse& use, bool contextual) {
    SCOPED_TRACE(use.fName);
    StartUse(use);
    fRun.fLog.Take();
    std::int16_t index = -1;
    std::uint16_t contextIndex = 1;
    TFlag made = 7;
    EXPECT_EQ(contextual ? fMorvane->IMorvane_DisplayContextualMenu(items.data(), count, Window(), {40, 30},
                                                                    use.fFlags, contextIndex, made)
                         : fMorvane->IMorvane_DisplayPopupMenu(items.data(), count, Window(), {40, 30},
                                                               use.fFlags, index, made),
              kOK);
    KillTimer(nullptr, fTimer);
    EXPECT_EQ(made, use.fWanted >= 0);
    EXPECT_EQ(contextual ? contextIndex : index, use.fWanted >= 0 ? use.fWanted : contextual ? 1 : -1);
    EXPECT_EQ(fLines, SplitLines("&First 3E8|--|Third\tF1 3EA checked|Grey 3EB grey|&Sub:|  Deep 3EC"));
    const POINT origin = OnScreen({40, 30});
    EXPECT_TRUE(fFrame.fLeft == origin.x && fFrame.fTop == origin.y);
    EXPECT_EQ(fRun.fLog.Take(), "EnterMenuLoop ExitMenuLoop");
  };
  for (const TUse& use : uses) {
    expectUse(use, false);
    expectUse(use, true);
  }
}

}  // namespace NSMorvaneTest
