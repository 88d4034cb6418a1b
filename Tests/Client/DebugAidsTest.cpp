// How a client looks into its own running program: the debug menu, the same settings without it, and the view
// inspector. What the layers draw, pixel by pixel, is in the unit tests.
#include <cinttypes>

#include "Support/MenuItems.h"
#include "Support/MouseFixture.h"
#include "Support/NativeMenus.h"

namespace NSMorvaneTest {

class DebugAidsTest : public MouseFixture {
 protected:
  // All settings, in the order of the record.
  std::string Settings() {
    TDebugSettings s = {};
    EXPECT_EQ(fMorvane->IMorvane_GetDebugSettings(s), kOK);
    std::string digits;
    for (const TFlag flag : {s.fDebugMenu, s.fDrawInvalidationBlue, s.fDrawPaintsRed, s.fDrawViewBounds,
                             s.fDrawMouseViewInfo, s.fFlushViews, s.fDelayAfterFlushing})
      digits += std::to_string(flag);
    return digits;
  }
  void Set(const std::string& digits) {
    const auto flag = [&](int i) { return static_cast<TFlag>(digits[i] - '0'); };
    EXPECT_EQ(
        fMorvane->IMorvane_SetDebugSettings({flag(0), flag(1), flag(2), flag(3), flag(4), flag(5), flag(6)}),
        kOK);
  }
  void Command(UINT command) { Send(WM_COMMAND, command); }
  // The last menu of a window, and what stands in it.
  static MenuLines LastMenuOf(HWND hwnd) {
    const MenuLines lines = LinesOfMenu(GetMenu(hwnd));
    const auto title =
        std::find_if(lines.rbegin(), lines.rend(), [](const std::string& line) { return line[0] != ' '; });
    return title == lines.rend() ? MenuLines() : MenuLines(title.base() - 1, lines.end());
  }
  static MenuLines DebugMenu(const std::string& settings) {
    const auto mark = [&](int i) { return settings[i] == '1' ? " checked|" : "|"; };
    return SplitLines("&Debug:|  Own A001|  --|  Draw &Invalidiation Blue 9000" + std::string(mark(1)) +
                      "  Draw &Paints Red 9001" + mark(2) + "  Draw View &Bounds 9004" + mark(3) +
                      "  Draw &Mouse View Info 9003" + mark(4) + "  &Flush Views 9005" + mark(5) +
                      "  &Delay After Flushing 9006" + mark(6) + "  Open Window List 9007");
  }
  std::u16string Tooltip(const std::string& view) const {
    TChar text[kTooltipTextChars + 1] = {};
    EXPECT_EQ(View(view)->IView_GetTooltipText(text), kOK);
    return text;
  }
  bool IsInspected(const std::string& view) const {
    char begin[300];
    std::snprintf(begin, sizeof(begin), "%s\nView: %0*" PRIXPTR "\nBehavior: ", view.c_str(),
                  static_cast<int>(2 * sizeof(void*)), reinterpret_cast<std::uintptr_t>(View(view)));
    return Tooltip(view).starts_with(AsciiText(begin));
  }
  // How many pixels of a rectangle have a colour of the hatching, once everything is painted.
  int Hatched(const TRect& rect) const {
    UpdateWindow(Hwnd());
    const HDC hdc = GetDC(Hwnd());
    const auto pixels = PixelsOf(hdc, {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom});
    ReleaseDC(Hwnd(), hdc);
    return static_cast<int>(std::ranges::count(pixels, 0x7FBF7Fu) + std::ranges::count(pixels, 0x7F7FBFu));
  }
  void Leave() override {
    fRun.fHooks.erase("SetupMenuBar");
    MouseFixture::Leave();
  }
};

TEST_IN_RUN(DebugAidsTest, TheMenu) {
  fRun.fHooks["SetupMenuBar"] = [this] {
    SetItems(*fRun.fMenuBar, kMenuDebug, {MenuItem(u"Own", 7), MenuItem(u"")});
  };
  Open();
  const HWND other = MakeNamed("doc1").fHwnd;
  Send(WM_NULL);
  EXPECT_EQ(LastMenuOf(Hwnd())[0], "&File:") << "nothing of it without the setting";
  const HMENU bar = GetMenu(Hwnd());
  Set("1000000");
  EXPECT_EQ(LastMenuOf(other), DebugMenu("1000000"));
  // Each item switches one setting, which is marked in all windows, and switches it back.
  const Rows<UINT, std::string> items = {{0x9000, "1100000"}, {0x9001, "1110000"}, {0x9004, "1111000"},
                                         {0x9003, "1111100"}, {0x9005, "1111110"}, {0x9006, "1111111"},
                                         {0x9000, "1011111"}, {0x9001, "1001111"}, {0x9004, "1000111"},
                                         {0x9003, "1000011"}, {0x9005, "1000001"}, {0x9006, "1000000"}};
  for (const auto& [command, settings] : items) {
    Command(command);
    EXPECT_EQ(Settings(), settings) << command;
    EXPECT_EQ(LastMenuOf(Hwnd()), DebugMenu(settings));
    EXPECT_EQ(LastMenuOf(other), DebugMenu(settings));
  }
  EXPECT_EQ(GetMenu(Hwnd()), bar);
  Command(0xA001);
  EXPECT_EQ(fRun.fLog.Last(), "MenuCommand:7");
  // Nobody's numbers, and settings as they are.
  fOutput.ForgetLines();
  for (const UINT nobodys : {0x8FFFu, 0x9002u, 0x9008u}) Command(nobodys);
  Set("1000000");
  EXPECT_EQ(Settings(), "1000000");
  EXPECT_EQ(fOutput.CountLines("CWinWindow::RebuildCompleteMenuBar"), 0);
  Command(0x9007);
  const HWND list = FindWindowW(L"WindowListWindowClass", nullptr);
  EXPECT_TRUE(IsWindowVisible(list));
  EXPECT_TRUE(DestroyWindow(list));
  EXPECT_EQ(Settings(), "1000000");
  // Without the menu its commands still work.
  Set("0000000");
  EXPECT_EQ(LastMenuOf(Hwnd())[0], "&File:");
  Command(0x9005);
  EXPECT_EQ(Settings(), "0000010");
}

// A window without a menu bar gets one for the debug menu, and for no other setting.
TEST_IN_RUN(DebugAidsTest, SettingsThatMakeNoMenuBar) {
  Open();
  for (const char* settings : {"0000010", "0111111", "0000000"}) {
    Set(settings);
    EXPECT_EQ(GetMenu(Hwnd()), nullptr) << settings;
  }
  Set("1000000");
  EXPECT_EQ(LastMenuOf(Hwnd())[0], "&Debug:");
}

// outer     50..250
//   inner  100..200
TEST_IN_RUN(DebugAidsTest, Inspector) {
  OpenUnderMouse();
  MakeTracked("outer", {50, 50, 250, 250});
  MakeTracked("inner", {100, 100, 200, 200}, "outer");
  EXPECT_EQ(View("inner")->IView_SetTooltipText(u"own"), kOK);
  PutUnderMouse({150, 150});
  Tick();
  EXPECT_EQ(Tooltip("inner"), u"own");
  const auto inner = [this] { return RectOf(*View("inner")); };
  EXPECT_EQ(Hatched({0, 0, 300, 300}), 0);

  Set("0000100");
  Tick();
  EXPECT_TRUE(IsInspected("inner"));
  EXPECT_EQ(Tooltip("outer"), u"");
  const int hatched = Hatched(inner());
  EXPECT_GT(hatched, 500);
  EXPECT_EQ(Hatched({0, 0, 300, 300}), hatched) << "nothing but this view";
  EXPECT_EQ(View("outer")->IView_SetTooltipText(u"outer's"), kOK);

  // The mouse goes on to the view around it, to which its client has something to say meanwhile.
  PutUnderMouse({75, 75});
  Tick();
  EXPECT_TRUE(IsInspected("outer"));
  EXPECT_EQ(Tooltip("inner"), u"own");
  EXPECT_EQ(Hatched(inner()), 0);
  EXPECT_EQ(View("outer")->IView_SetTooltipText(u"news"), kOK);
  PutUnderMouse({10, 10});
  Tick();
  EXPECT_EQ(Tooltip("outer"), u"news");
  EXPECT_EQ(Hatched({0, 0, 300, 300}), 0);

  // Switched off by its command while the mouse rests.
  PutUnderMouse({150, 150});
  Tick();
  EXPECT_TRUE(IsInspected("inner"));
  EXPECT_EQ(View("outer")->IView_SetTooltipText(u""), kOK);
  Command(0x9003);
  Tick();
  EXPECT_EQ(Tooltip("inner"), u"own");
  EXPECT_EQ(Hatched({0, 0, 300, 300}), 0);

  // Views may end, and the window with them, in whatever it makes the inspector call.
  Command(0x9003);
  Tick();
  ReleaseView("inner");
  Tick();
  EXPECT_TRUE(IsInspected("outer"));
  Hatched({0, 0, 300, 300});
  fViewRecord.fHooks["outer:target"] = [this] {
    fViewRecord.fHooks.clear();
    ReleaseViews();
    Release(fRecord);
  };
  Set("0000000");
  const HWND hwnd = Hwnd();
  Tick();
  EXPECT_FALSE(IsWindow(hwnd));
}

}  // namespace NSMorvaneTest
