// Menu bars and popup menus of a client: read back from the system item by item, and used by command, by
// shortcut and by key.
#include "Support/NativeMenus.h"
#include "Support/RecordingWindow.h"

namespace NSMorvaneTest {

namespace {

using Items = std::vector<TMenuItem>;

TMenuItem Item(const char16_t* text, std::uint32_t command = 0, std::uint32_t flags = kMenuItemEnabled,
               const char16_t* submenu = u"", const char16_t* keyText = u"", std::uint32_t modifiers = 0) {
  TMenuItem item = {};
  CopyText(item.fText, text);
  CopyText(item.fSubmenuName, submenu);
  CopyText(item.fShortcut.fKeyText, keyText);
  item.fShortcut.fModifiers.fKeys = modifiers;
  item.fStateFlags = flags;
  item.fCommand = command;
  return item;
}

void SetItems(IMenuBarState& state, TMenu menu, const Items& items) {
  const auto size = static_cast<std::uint32_t>(items.size() * sizeof(TMenuItem));
  EXPECT_EQ(state.IMenuBarState_SetMenuItems(menu, items.data(), size), kOK);
}

// One item and a title.
void SetMenu(IMenuBarState& state, TMenu menu, const char16_t* title, std::uint32_t command) {
  EXPECT_EQ(state.IMenuBarState_SetMenuTitle(menu, title), kOK);
  SetItems(state, menu, {Item(u"item", command)});
}

}  // namespace

class MenusTest : public ClientWindowTest {
 protected:
  MenuLines Bar() { return LinesOfMenu(GetMenu(Hwnd())); }
  static MenuLines Bar(const WindowRecord& record) { return LinesOfMenu(GetMenu(record.fHwnd)); }
  // One message with this in it, at the end of which menu bars are flushed.
  void InOneMessage(std::function<void()> body) {
    fHooks.fOnThemeChanged = body;
    SendMessageW(Hwnd(), WM_THEMECHANGED, 0, 0);
  }
  void Request(int times = 1) {
    InOneMessage([=, this] {
      for (int i = 0; i < times; ++i) EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
    });
  }
  void Command(UINT command) { SendMessageW(Hwnd(), WM_COMMAND, command, 0); }
  IDocumentWindow& OpenAnother(WindowRecord& record) {
    IDocumentWindow& window = *Create(0, record);
    SendMessageW(Hwnd(), WM_NULL, 0, 0);
    return window;
  }
};

TEST_F(MenusTest, WholeBar) {
  TMenuBarFlags flags = {1, 1, 0, 1, 1};
  fHooks.fOnSetupMenuBar = [&](IMenuBarState& state) {
    SetItems(state, kMenuApplication, {Item(u"_About", 1), Item(u""), Item(u"Grey", 2, 0)});
    SetItems(state, kMenuDocument, {Item(u"_Save", 3, kMenuItemEnabled, u"", u"s", kModifierControl)});
    SetMenu(state, kMenu1, u"_Edit", 4);
    SetMenu(state, kMenu6, u"Last _own", 5);
    for (const TMenu menu : {kMenuReserved8, kMenuReserved10, kMenuReserved12})
      SetItems(state, menu, {Item(u"never shown")});
    SetItems(state, kMenuWindow, {Item(u"Tile", 6, kMenuItemEnabled | kMenuItemChecked)});
    SetItems(state, kMenuHelp, {Item(u"Topics", 7, 0, u"_Search")});
    return state.IMenuBarState_SetFlags(flags);
  };
  const auto rebuilds = [&] {
    const std::size_t count = fOutput.CountLines("CWinWindow::RebuildCompleteMenuBar");
    fOutput.Reset();
    return count;
  };
  fIsListed = 0;
  RunWithWindow(kWindowResizableBit, [&] {
    // The first window is in no list, and yet it counts.
    fIsListed = 1;
    WindowRecord second;
    WindowRecord third;
    IDocumentWindow& document = OpenAnother(second);
    EXPECT_EQ(ChangeState(document, [](TDocumentWindowState& state) { CopyText(state.fTitle, u"a_b & c"); }),
              kOK);
    Request();
    MenuLines lines = SplitLines(
        "&Application:|  &About A000|  --|  Grey A002 grey|  --|  E&xit C351 grey|&File:|"
        "  &Save\tCtrl+S A003|  --|  &Close A004|&Edit:|  item A005|Last &own:|  item A006|&Window:|"
        "  Always on &Top EA61|  --|  Tile A007 checked|  --|  a_b && c E001 checked|&Help:|"
        "  &Search: grey|    Topics A008 grey|  --|  A scenario of the client tests A009");
    EXPECT_EQ(Bar(second), lines);
    lines[19] = "  a_b && c E001";
    EXPECT_EQ(Bar(), lines);
    const HMENU handle = GetMenu(Hwnd());
    const TSize size = NativeClientSize(Hwnd());
    EXPECT_EQ(fRecord.fSizes.back().second, size) << "the bar takes its room";

    rebuilds();
    Request(3);
    EXPECT_EQ(rebuilds(), 0u) << "for what is there already";
    IDocumentWindow& last = OpenAnother(third);
    EXPECT_EQ(rebuilds(), 3u);
    InOneMessage([&] { Command(60001); });
    EXPECT_EQ(rebuilds(), 1u);
    EXPECT_TRUE(GetWindowLongW(Hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST);
    lines[15] += " checked";
    lines.insert(lines.begin() + 20, "   E002");
    EXPECT_EQ(Bar(), lines);

    // Menus under the same titles take the place of those before.
    flags = {0, 0, 1, 0, 1};
    const HMENU oldMenu = GetSubMenu(handle, 0);
    RECT place = {};
    RECT newPlace = {};
    GetMenuItemRect(Hwnd(), handle, 4, &place);
    Request();
    EXPECT_FALSE(IsMenu(oldMenu));
    EXPECT_TRUE(GetMenuItemRect(Hwnd(), handle, 4, &newPlace) && EqualRect(&place, &newPlace));
    lines[5] = "  E&xit C351";
    lines[9] = "  &Close A004 grey";
    lines.resize(lines.size() - 2);
    EXPECT_EQ(Bar(), lines);
    EXPECT_EQ(GetMenu(Hwnd()), handle);
    EXPECT_EQ(NativeClientSize(Hwnd()), size);

    ShowWindow(third.fHwnd, SW_MINIMIZE);
    SetActiveWindow(Hwnd());
    Command(0xE002);
    EXPECT_EQ(GetActiveWindow(), third.fHwnd);
    EXPECT_FALSE(IsIconic(third.fHwnd));
    Command(0xE003);
    EXPECT_EQ(fOutput.TakeAssertions(), (CallLog{"windowIndex < windows.size()"}));
    EXPECT_EQ(last.IDocumentWindow_Release(), kOK);
    EXPECT_EQ(document.IDocumentWindow_Release(), kOK);

    flags.fShowWindowMenu = 0;
    Request();
    lines.erase(lines.begin() + 14, lines.begin() + 21);
    lines.back() = "    Topics A007 grey";
    EXPECT_EQ(Bar(), lines);
  });
}

// Commands go to the window, and then twice to the application.
TEST_F(MenusTest, Commands) {
  fHooks.fOnSetupMenuBar = [&](IMenuBarState& state) {
    SetItems(state, kMenuDocument,
             {Item(u"Plain", 100, kMenuItemEnabled, u"", u"\xE005"), Item(u"", 101),
              Item(u"Shifted", 102, kMenuItemEnabled, u"", u"k", kModifierControl | kModifierShift),
              Item(u"Grey", 103, 0, u"", u"\xE006")});
  };
  CallLog log;
  std::uint32_t modifiers = 99;
  TFlag handled = 0;
  fHooks.fOnMenuCommand = [&](const TMenuCommandEvent& event, TFlag& outHandled) {
    log.push_back(std::to_string(event.fCommand));
    modifiers = event.fModifiers.fKeys;
    outHandled = handled;
  };
  const auto take = [&] { return std::exchange(log, {}); };
  const auto press = [&](std::vector<WORD> keys) {
    for (const WORD key : keys) SendInputs({KeyInput(key)});
    EXPECT_TRUE(YieldUntil([&] { return !log.empty(); }));
    for (const WORD key : keys) SendInputs({KeyInput(key, KEYEVENTF_KEYUP)});
    return take();
  };
  RunWithWindow(0, [&] {
    Request();
    EXPECT_EQ(Bar().size(), 9u);
    Command(0xA002);
    EXPECT_EQ(fRecord.fCommand.fCommand, 102u);
    EXPECT_EQ(take(), (CallLog{"102", "102"}));
    for (const UINT nobodys : {0xA005u, 0xAFFFu, 0xB000u, 0x9000u, 1u, 50002u, 50016u}) Command(nobodys);
    EXPECT_EQ(take(), CallLog());
    handled = 1;
    Command(0xA004);  // the library's own item
    SendMessageW(Hwnd(), WM_HSCROLL, 0xA000, 0);
    EXPECT_EQ(take(), (CallLog{"50016", "100"}));
    fHooks.fOnQuitEvent = nullptr;
    Command(50001);
    EXPECT_EQ(std::count(fLog.begin(), fLog.end(), "OnQuitEvent"), 1);

    EXPECT_EQ(press({VK_F6, VK_F5}), CallLog{"100"});
    EXPECT_EQ(modifiers, 0u);
    EXPECT_EQ(press({VK_CONTROL, VK_SHIFT, 'K'}), CallLog{"102"});
    EXPECT_EQ(modifiers, kModifierControl | kModifierShift);

    // A window may end in a command.
    fHooks.fOnMenuCommand = nullptr;
    fRecord.fHooks["OnMenuCommand"] = [&] { return Window().IDocumentWindow_Release(); };
    Command(0xA000);
    EXPECT_TRUE(fRecord.fIsDeleted);
  });
}

// The application begins, the view with the focus has the last word; however often they are asked for, it is
// once in one message.
TEST_F(MenusTest, SetUp) {
  const auto append = [](IMenuBarState& state, TChar letter) {
    TChar title[kMenuTextChars + 1] = {};
    state.IMenuBarState_GetMenuTitle(kMenu1, title);
    SetMenu(state, kMenu1, (TextOf(title) + letter).c_str(), 1);
  };
  TChar first = u'a';
  int depth = 0;
  fHooks.fOnSetupMenuBar = [&](IMenuBarState& state) { return append(state, first); };
  CallLog viewLog;
  ViewRecord outerRecord = {viewLog, "outer", {}};
  ViewRecord innerRecord = {viewLog, "inner", {}};
  outerRecord.fHooks["OnSetupMenuBar"] = [&] { return append(*outerRecord.fMenuBar, u'o'); };
  innerRecord.fHooks["OnSetupMenuBar"] = [&] { return append(*innerRecord.fMenuBar, u'i'); };
  const auto make = [&](IView& superView, ViewRecord& record) {
    CViewFactory<RecordingFocusViewBehavior, ViewRecord&> factory(record);
    TError error = kOtherError;
    IView* const view = fMorvane->IMorvane_CreateView(factory, superView, "view", error);
    EXPECT_EQ(error, kOK);
    return view;
  };
  RunWithWindow(0, [&] {
    fRecord.fHooks["OnSetupMenuBar"] = [&] { return append(*fRecord.fMenuBar, u'w'); };
    IView* const outer = make(RootViewOf(Window()), outerRecord);
    IView* const inner = make(*outer, innerRecord);
    for (IView* const view : {outer, inner}) {
      TViewParams params = {
          kViewEnabled | kViewFocusable, {0, 0, 50, 50}, kViewDrawDirect, kAutoInvalidationFull};
      EXPECT_EQ(view->IView_SetParams(params), kOK);
    }
    EXPECT_EQ(WindowOf(Window()).IWindow_SetConceptualFocusView(inner), kOK);
    WindowRecord others[9];
    for (WindowRecord& record : others) OpenAnother(record);
    const auto setUps = [&] {
      std::vector<int> counts = {std::exchange(fRecord.fMenuBarSetups, 0)};
      for (WindowRecord& record : others) counts.push_back(std::exchange(record.fMenuBarSetups, 0));
      return counts;
    };
    Request();
    EXPECT_EQ(Bar().at(4), "awoi:");
    EXPECT_EQ(Bar(others[8]).at(4), "a:");

    setUps();
    fOutput.Reset();
    first = u'b';
    Request(1000);
    EXPECT_EQ(setUps(), std::vector<int>(10, 1));
    EXPECT_EQ(fOutput.CountLines("CMorvaneImpl::CMorvaneGlue_RequestMenuBarsSetup requested"), 1u);
    EXPECT_EQ(fOutput.CountLines("Collapsed 1000 rebuild menubar requests..."), 1u);
    EXPECT_EQ(fOutput.CountLines("CWinWindow::RebuildCompleteMenuBar"), 10u);
    EXPECT_EQ(Bar().at(4), "bwoi:");
    EXPECT_EQ(Bar(others[0]).at(4), "b:");

    for (IView* const view : {inner, outer}) EXPECT_EQ(view->IView_Release(), kOK);
    for (WindowRecord& record : others) EXPECT_EQ(record.fWindow->IDocumentWindow_Release(), kOK);

    // Who asks for another one in the middle of each gets it after that.
    fHooks.fOnSetupMenuBar = [&](IMenuBarState& state) {
      EXPECT_EQ(++depth, 1);
      EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
      SendMessageW(Hwnd(), WM_NULL, 0, 0);
      --depth;
      return append(state, ++first);
    };
    Request();
    EXPECT_EQ(Bar().at(4), "cw:");
    SendMessageW(Hwnd(), WM_NULL, 0, 0);
    EXPECT_EQ(Bar().at(4), "dw:");
    fHooks.fOnSetupMenuBar = nullptr;
  });
}

// A window without anything in its menu bar has none. A failure is reported, and the next request works.
TEST_F(MenusTest, FailingSetUp) {
  RunWithWindow(0, [&] {
    Request();
    EXPECT_EQ(GetMenu(Hwnd()), nullptr);
    TError error = 100001;
    fHooks.fOnSetupMenuBar = [&](IMenuBarState& state) {
      SetMenu(state, kMenu2, u"_Two", 1);
      return error;
    };
    Request();
    EXPECT_EQ(GetMenu(Hwnd()), nullptr);
    error = kOK;
    Request();
    EXPECT_EQ(Bar().at(4), "&Two:");
    fHooks.fOnSetupMenuBar = nullptr;
    ExpectReported(100001);
  });
}

// --- Popup menus

class PopupMenusTest : public ClientWindowTest {
 protected:
  // What the user does, once the popup stands on the screen.
  enum TInput { kKeys, kRightClick };
  // The places of the highlighted item and of the one in its submenu.
  using Path = std::vector<int>;
  struct TUse {
    TInput fInput;
    std::vector<std::pair<WORD, Path>> fKeys;  // with what they highlight; the last one ends it
    std::uint32_t fFlags;
    int fWanted;  // -1: nothing is chosen
  };

  static Path Highlighted(HMENU menu) {
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
      if (!(GetMenuState(menu, i, MF_BYPOSITION) & MF_HILITE)) continue;
      Path path = Highlighted(GetSubMenu(menu, i));
      path.insert(path.begin(), i);
      return path;
    }
    return {};
  }
  void StartUse(const TUse& use) {
    SetCursorPos(0, 0);  // the item under the mouse would be selected
    EXPECT_TRUE(YieldUntil([seen = 0]() mutable {
      POINT place = {1, 1};
      GetCursorPos(&place);
      seen = place.x == 0 && place.y == 0 ? seen + 1 : 0;
      return seen >= 20;
    }));
    fUse = &use;
    fMenu = nullptr;
    fTimer = SetTimer(nullptr, 0, 5, OnTimer);
  }
  // Each key when the one before has had its effect; from the start again if the mouse has taken it away.
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
    const HWND popup = FindWindowW(L"#32768", nullptr);
    if (!popup || !IsWindowVisible(popup)) return;
    const Path now = Highlighted(fMenu);
    if (!fMenu) {
      fMenu = reinterpret_cast<HMENU>(SendMessageW(popup, MN_GETHMENU, 0, 0));
      fLines = LinesOfMenu(fMenu);
      GetWindowRect(popup, &fPopupRect);
      if (fUse->fInput == kRightClick)
        Click({fPopupRect.left + 12, fPopupRect.top + 12}, {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP});
    } else if (now == fBefore) {
      return;
    }
    const auto& keys = fUse->fKeys;
    std::size_t next = 0;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (!keys[i].second.empty() && keys[i].second == now) next = i + 1;
    }
    if (!keys.empty()) SendInputs({KeyInput(keys[next].first), KeyInput(keys[next].first, KEYEVENTF_KEYUP)});
    if (next + 1 >= keys.size()) KillTimer(nullptr, fTimer);
    fBefore = now;
  }

  static inline UINT_PTR fTimer = 0;
  static inline const TUse* fUse = nullptr;
  static inline HMENU fMenu = nullptr;
  static inline Path fBefore;
  static inline MenuLines fLines;
  static inline RECT fPopupRect = {};
};

TEST_F(PopupMenusTest, ChoiceByKeyAndButton) {
  const Items items = {Item(u"_First"), Item(u""),
                       Item(u"Third", 0, kMenuItemEnabled | kMenuItemChecked, u"", u"\xE001"),
                       Item(u"Grey", 0, 0), Item(u"Deep", 0, kMenuItemEnabled, u"_Sub")};
  const MenuLines lines = {"&First 3E8",    "--",    "Third\tF1 3EA checked",
                           "Grey 3EB grey", "&Sub:", "  Deep 3EC"};
  const TUse uses[] = {
      {kKeys, {{VK_DOWN, {0}}, {VK_DOWN, {2}}, {VK_RETURN, {}}}, 0, 2},
      {kKeys, {{VK_ESCAPE, {}}}, 0, -1},
      {kKeys, {{VK_UP, {4}}, {VK_RIGHT, {4, 0}}, {VK_RETURN, {}}}, 1, 4},
      {kRightClick, {}, 0, 0},
      {kRightClick, {{VK_ESCAPE, {}}}, 1, -1},
  };
  RunWithWindow(0, [&] {
    for (const bool contextual : {false, true}) {
      for (const TUse& use : uses) {
        StartUse(use);
        fLines.clear();
        fLog.clear();
        std::int16_t index = -1;
        std::uint16_t contextIndex = 1;
        TFlag made = 7;
        const auto count = static_cast<std::uint32_t>(items.size());
        const int lastKey = use.fKeys.empty() ? 0 : use.fKeys.back().first;
        const int toggled = GetKeyState(lastKey) & 1;
        const TError error =
            contextual ? fMorvane->IMorvane_DisplayContextualMenu(items.data(), count, WindowOf(Window()),
                                                                  {40, 30}, use.fFlags, contextIndex, made)
                       : fMorvane->IMorvane_DisplayPopupMenu(items.data(), count, WindowOf(Window()),
                                                             {40, 30}, use.fFlags, index, made);
        EXPECT_EQ(error, kOK);
        const bool wanted = use.fWanted >= 0;
        EXPECT_EQ(made, wanted ? 1u : 0u) << use.fWanted;
        EXPECT_EQ(contextual ? contextIndex : index, wanted ? use.fWanted : contextual ? 1 : -1);
        EXPECT_EQ(fLines, lines);
        POINT origin = {40, 30};
        ClientToScreen(Hwnd(), &origin);
        EXPECT_TRUE(fPopupRect.left == origin.x && fPopupRect.top == origin.y);
        EXPECT_EQ(fLog, (CallLog{"OnEnterMenuLoop", "OnExitMenuLoop"}));
        // A key that came too late must not go to the next popup.
        EXPECT_TRUE(YieldUntil([&] { return !lastKey || (GetKeyState(lastKey) & 1) != toggled; }));
      }
    }
  });
}

// What the user opens in a bar whose menus have been exchanged under him.
TEST_F(PopupMenusTest, OpensInTheBar) {
  const char16_t* text = u"old";
  fHooks.fOnSetupMenuBar = [&](IMenuBarState& state) {
    SetMenu(state, kMenu1, u"Menu", 1);
    SetItems(state, kMenu1, {Item(text, 7)});
  };
  const TUse use = {kKeys, {{VK_DOWN, {0}}, {VK_RETURN, {}}}, 0, 0};
  RunWithWindow(0, [&] {
    for (const char16_t* const next : {u"old", u"new", u"newer"}) {
      text = next;
      EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
      SendMessageW(Hwnd(), WM_NULL, 0, 0);
    }
    StartUse(use);
    RECT place = {};
    EXPECT_TRUE(GetMenuItemRect(Hwnd(), GetMenu(Hwnd()), 2, &place));
    Click({(place.left + place.right) / 2, (place.top + place.bottom) / 2},
          {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
    EXPECT_TRUE(YieldUntil([&] { return fRecord.fCommand.fCommand == 7; }));
    EXPECT_EQ(fLines, MenuLines{"newer A001"});
    fHooks.fOnSetupMenuBar = nullptr;
  });
}

}  // namespace NSMorvaneTest
