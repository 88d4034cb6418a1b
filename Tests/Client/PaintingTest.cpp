// What windows show: the picture that views paint together, which pixels are touched, what draw callbacks may
// do, and what the debug settings add.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

namespace {

constexpr std::uint32_t kRed = 0xFF0000, kGreen = 0x00A000, kBlue = 0x0000FF;

// The corner of a client area, as 0x00RRGGBB.
constexpr int kSide = 220;
using Pixels = std::vector<std::uint32_t>;

std::uint32_t Swapped(COLORREF color) { return RGB(GetBValue(color), GetGValue(color), GetRValue(color)); }

// Rectangles and colours, in the order in which they are filled.
using Fills = std::vector<std::pair<TRect, std::uint32_t>>;

}  // namespace

class PaintingTest : public ClientWindowTest {
 protected:
  // Opens the window with this debug setting alone, painted.
  void OpenPainted(TStyleFlags style = kPlain, TFlag TDebugSettings::*setting = nullptr) {
    Open(style);
    Switch(setting);
    Update();
  }
  void Switch(TFlag TDebugSettings::*setting) {
    TDebugSettings settings = {};
    if (setting) settings.*setting = 1;
    EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings(settings), kOK);
  }
  // A view that fills its rectangle with a colour.
  TestView& MakeColored(const std::string& name, const TRect& rect, std::uint32_t color,
                        const std::string& superView = "") {
    fViewRecord.fHooks[name + ":draw"] = FillsWith(rect, color);
    return MakeView(name, rect, View(superView));
  }
  Hook FillsWith(const TRect& rect, std::uint32_t color) {
    return [=, this] {
      const COpenPort port(*fViewRecord.fTools);
      const RECT nativeRect = {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom};
      const HBRUSH brush = CreateSolidBrush(Swapped(color));
      FillRect(port.HDC(), &nativeRect, brush);
      DeleteObject(brush);
    };
  }
  void Invalidate(const TRect& rect) {
    EXPECT_EQ(fMorvane->IMorvane_InvalidateView(RootViewOf(*fRecord.fDocument), rect), kOK);
  }
  void Update() { EXPECT_TRUE(UpdateWindow(Hwnd())); }
  void Repaint(const TRect& rect) {
    Invalidate(rect);
    Update();
  }
  bool IsDirty() const { return GetUpdateRect(Hwnd(), nullptr, FALSE) != FALSE; }
  static Pixels Background() { return Pixels(kSide * kSide, Swapped(GetSysColor(COLOR_WINDOW))); }
  // What the window holds, or the screen shows.
  Pixels Shown(bool onScreen = false) const {
    const HWND hwnd = onScreen ? nullptr : Hwnd();
    const POINT origin = onScreen ? OnScreen({0, 0}) : POINT{0, 0};
    const HDC hdc = GetDC(hwnd);
    const Pixels picture = PixelsOf(hdc, {origin.x, origin.y, origin.x + kSide, origin.y + kSide});
    ReleaseDC(hwnd, hdc);
    return picture;
  }
  // "" if the window shows this picture, filled so; or how it begins to differ.
  std::string Difference(const Fills& fills, Pixels expected = Background()) const {
    for (const auto& [rect, color] : fills)
      for (int y = rect.fTop; y < rect.fBottom; ++y)
        for (int x = rect.fLeft; x < rect.fRight; ++x) expected[y * kSide + x] = color;
    const Pixels shown = Shown();
    const auto [here, there] = std::ranges::mismatch(shown, expected);
    if (here == shown.end()) return "";
    const auto at = static_cast<int>(here - shown.begin());
    char text[100];
    std::snprintf(text, sizeof(text), "(%d, %d) is %06X instead of %06X", at % kSide, at / kSide,
                  static_cast<unsigned>(*here), static_cast<unsigned>(*there));
    return text;
  }
};

TEST_IN_RUN(PaintingTest, ViewsFromBackToFront) {
  OpenPainted();
  EXPECT_EQ(Difference({}), "");
  MakeColored("back", {10, 20, 110, 80}, kRed);
  MakeColored("sub", {90, 60, 200, 200}, kBlue, "back");  // sticks out of its super view, and is cut
  MakeColored("front", {50, 50, 70, 120}, kGreen);
  Update();
  EXPECT_EQ(Difference({{{10, 20, 110, 80}, kRed}, {{90, 60, 110, 80}, kBlue}, {{50, 50, 70, 120}, kGreen}}),
            "");
  // The screen follows when the system gets to it.
  EXPECT_TRUE(YieldUntil([this] { return Shown(true) == Shown(); }));
}

TEST_IN_RUN(PaintingTest, DialogsHaveABackgroundOfTheirOwn) {
  ASSERT_NE(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_3DFACE));
  for (const auto& [name, color] : {std::pair("doc", COLOR_WINDOW),
                                    {"modeless", COLOR_3DFACE},
                                    {"modal", COLOR_3DFACE},
                                    {"floating", COLOR_WINDOW}}) {
    const HWND hwnd = MakeNamed(name).fHwnd;
    UpdateWindow(hwnd);
    const HDC hdc = GetDC(hwnd);
    EXPECT_EQ(GetPixel(hdc, 5, 5), GetSysColor(color)) << name;
    ReleaseDC(hwnd, hdc);
    Release(fWindows[name]);
  }
}

TEST_IN_RUN(PaintingTest, OnlyTheDirtyRegionIsTouched) {
  OpenPainted();
  TestView& view = MakeColored("a", {0, 0, 200, 200}, kRed);
  TestView& untouched = MakeColored("b", {150, 0, 200, 50}, kRed);
  Update();
  // Drawn past the library.
  const HDC hdc = GetDC(Hwnd());
  PatBlt(hdc, 0, 0, 5000, 5000, BLACKNESS);
  ReleaseDC(Hwnd(), hdc);
  const Pixels before = Shown();
  untouched.fDrawCalls = view.fDrawCalls = 0;
  // Two rectangles of one paint, with a gap between them that is inside their bounding box.
  Invalidate({10, 10, 30, 40});
  Repaint({60, 70, 150, 90});
  EXPECT_EQ(view.fDrawCalls, 1);
  EXPECT_EQ(untouched.fDrawCalls, 0);
  EXPECT_EQ(Difference({{{10, 10, 30, 40}, kRed}, {{60, 70, 150, 90}, kRed}}, before), "");
  // Nothing of an earlier paint shows through views that are empty.
  fViewRecord.fHooks.clear();
  Repaint({0, 0, 1000, 1000});
  EXPECT_EQ(Difference({}), "");
}

TEST_IN_RUN(PaintingTest, CallbacksMayInvalidateAndFail) {
  const TRect rect = {0, 0, 100, 100};
  OpenPainted();
  TestView& view = MakeColored("a", rect, kRed);
  Update();
  fViewRecord.fHooks["a:draw"] = [&] {
    fViewRecord.fHooks["a:draw"] = FillsWith(rect, kBlue);
    Invalidate(rect);
    FillsWith(rect, kRed)();
  };
  view.fDrawCalls = 0;
  Repaint({0, 0, 10, 10});
  EXPECT_EQ(view.fDrawCalls, 1);
  EXPECT_TRUE(IsDirty());
  Update();
  EXPECT_EQ(view.fDrawCalls, 2);
  EXPECT_FALSE(IsDirty());
  EXPECT_EQ(Difference({{rect, kBlue}}), "");

  // A failed paint is reported once, and not repeated. What was there before it does not stay.
  const HDC hdc = GetDC(Hwnd());
  PatBlt(hdc, 0, 0, 10, 10, BLACKNESS);
  ReleaseDC(Hwnd(), hdc);
  fRun.fHooks["BeginDraw"] = TError(100002);
  Repaint({0, 0, 10, 10});
  EXPECT_FALSE(IsDirty());
  EXPECT_EQ(Difference({{rect, kBlue}, {{0, 0, 10, 10}, Background()[0]}}), "");
  fRun.fHooks.erase("BeginDraw");
  ExpectReported(100002);
}

// Each window that waits is painted once before another one is shown, and before a title changes: a view that
// is never done keeps nobody from that.
TEST_IN_RUN(PaintingTest, PaintsComeBeforeNewWindowsAndTitles) {
  OpenPainted();
  TestView& endless = MakeView("a", {0, 0, 50, 50});
  WindowRecord& other = MakeNamed("doc1");
  fViewRecord.fHooks["a:draw"] = [this] { Invalidate({0, 0, 10, 10}); };
  const auto paintsOf = [&](const std::function<void()>& action) {
    InvalidateRect(other.fHwnd, nullptr, FALSE);
    Invalidate({0, 0, 10, 10});
    endless.fDrawCalls = 0;
    action();
    EXPECT_FALSE(GetUpdateRect(other.fHwnd, nullptr, FALSE));
    return endless.fDrawCalls;
  };
  EXPECT_EQ(paintsOf([&] { ChangeState(*other.fDocument, [](auto& state) { state.fModified = 1; }); }), 1);
  EXPECT_EQ(paintsOf([&] { Do("+doc2"); }), 1);
  EXPECT_LE(paintsOf([&] { EXPECT_EQ(fMorvane->IMorvane_Yield(), kOK); }), 3);
  fViewRecord.fHooks.clear();
}

TEST_IN_RUN(PaintingTest, TheSizeGripIsNeverPaintedOver) {
  OpenPainted(kSizeable | kWindowStyleBit23);
  const HWND grip = FindWindowExW(Hwnd(), nullptr, L"SCROLLBAR", nullptr);
  ASSERT_NE(grip, nullptr);
  // It has no size of its own until somebody gives it one.
  MoveWindow(grip, 0, 0, 16, 16, TRUE);
  SizeNative(Hwnd(), 220, 200);
  const TSize size = NativeClientSize(Hwnd());
  const TRect place = {size.fWidth - 16, size.fHeight - 16, size.fWidth, size.fHeight};
  const POINT origin = OnScreen({place.fLeft, place.fTop});
  EXPECT_EQ(NativeFrame(grip), (TRect{origin.x, origin.y, origin.x + 16, origin.y + 16}));
  TestView& view = MakeColored("a", {0, 0, size.fWidth, size.fHeight}, kRed);
  Update();
  const Pixels picture = Shown();
  EXPECT_EQ(picture[(place.fBottom - 1) * kSide + place.fLeft - 1], kRed);
  EXPECT_EQ(picture[(place.fTop - 1) * kSide + place.fRight - 1], kRed);
  // Only the grip is dirty: the views are left alone.
  view.fDrawCalls = 0;
  Repaint(place);
  EXPECT_EQ(view.fDrawCalls, 0);
  EXPECT_FALSE(IsDirty());
  // It is painted along with the window, before its own message comes.
  InvalidateRect(Hwnd(), nullptr, FALSE);
  InvalidateRect(grip, nullptr, FALSE);
  Send(WM_PAINT);
  EXPECT_FALSE(GetUpdateRect(grip, nullptr, FALSE));
  // A zoomed window has nothing to grip.
  for (const int command : {SW_SHOW, SW_SHOWMAXIMIZED, SW_RESTORE}) {
    const bool isZoomed = command == SW_SHOWMAXIMIZED;
    ShowWindow(Hwnd(), command);
    EXPECT_EQ(GetWindowLongW(grip, GWL_STYLE) & (SBS_SIZEBOX | SBS_SIZEGRIP),
              isZoomed ? SBS_SIZEBOX : SBS_SIZEGRIP);
    EXPECT_EQ(IsWindowEnabled(grip) == 0, isZoomed);
  }
}

TEST_IN_RUN(PaintingTest, OnlyTranslucentWindowsAreLayered) {
  OpenPainted();
  for (const std::uint8_t wanted : {100, 0, 255, 254, 255}) {
    EXPECT_EQ(Window().IWindow_SetGlobalAlpha(wanted), kOK);
    std::uint8_t alpha = 7;
    EXPECT_EQ(Window().IWindow_GetGlobalAlpha(alpha), kOK);
    EXPECT_EQ(alpha, wanted);
    BYTE native = 255;
    EXPECT_EQ(GetLayeredWindowAttributes(Hwnd(), nullptr, &native, nullptr) != FALSE, wanted != 255);
    EXPECT_EQ(native, wanted);
  }
}

TEST_IN_RUN(PaintingTest, DebugSettings) {
  OpenPainted(kPlain, &TDebugSettings::fDrawInvalidationBlue);
  MakeColored("a", {0, 0, 50, 50}, 0x64C833);
  Update();
  const Pixels before = Shown();
  Switch(nullptr);
  Invalidate({10, 10, 60, 30});
  // As the parts that a view leaves and enters.
  EXPECT_EQ(View("a")->IView_SetParams(
                {kViewEnabled, {0, 0, 70, 50}, kViewDrawDirect, kAutoInvalidationDifference}),
            kOK);
  EXPECT_EQ(Difference({}, before), "");
  Switch(&TDebugSettings::fDrawInvalidationBlue);
  Update();
  EXPECT_EQ(Difference({}, before), "");
  Invalidate({10, 10, 60, 30});
  EXPECT_EQ(Difference({{{10, 10, 60, 30}, 0x9999FF}, {{10, 10, 50, 30}, 0x3C7884}}, before), "");
  Update();
  EXPECT_EQ(Difference({}, before), "");

  Switch(&TDebugSettings::fDrawPaintsRed);
  EXPECT_FALSE(IsDirty());
  fViewRecord.fHooks["a:draw"] = [&, fill = fViewRecord.fHooks["a:draw"]] {
    EXPECT_EQ(Difference({{{10, 10, 30, 20}, 0xD00000}, {{40, 30, 50, 60}, 0xD00000}}, before), "");
    return fill();
  };
  Invalidate({10, 10, 30, 20});
  Repaint({40, 30, 50, 60});
  EXPECT_EQ(Difference({}, before), "");

  // What is drawn over all the rest invalidates it.
  Switch(&TDebugSettings::fDrawViewBounds);
  EXPECT_TRUE(IsDirty());
  fViewRecord.fHooks.erase("a:draw");
  Update();
  const Pixels framed = Shown();
  EXPECT_GT(std::count(framed.begin(), framed.begin() + 50, 0x7F7F7Fu), 0);
  EXPECT_EQ(std::count(framed.begin() + 25 * kSide + 1, framed.begin() + 25 * kSide + 49, 0x7F7F7Fu), 0);
}

// Switched by the commands of the debug menu.
TEST_IN_RUN(PaintingTest, FlushedViewsAppearOneByOne) {
  OpenPainted();
  MakeColored("a", {0, 0, 40, 40}, kRed);
  MakeColored("b", {50, 0, 90, 40}, kBlue);
  std::string shownBefore;  // when b is drawn, apart from a
  fViewRecord.fHooks["b:draw"] = [&, fill = fViewRecord.fHooks["b:draw"]] {
    shownBefore = Difference({{{0, 0, 40, 40}, kRed}});
    return fill();
  };
  constexpr UINT kFlush = 0x9005, kDelay = 0x9006;
  const Rows<UINT, bool, ULONGLONG> rows = {
      {0, false, 0}, {kDelay, false, 0}, {kFlush, true, 70}, {kDelay, true, 0}, {kFlush, false, 0}};
  for (const auto& [command, flushes, pause] : rows) {
    Send(WM_COMMAND, command);
    const HDC hdc = GetDC(Hwnd());
    const RECT all = {0, 0, kSide, kSide};
    FillRect(hdc, &all, GetSysColorBrush(COLOR_WINDOW));
    ReleaseDC(Hwnd(), hdc);
    const ULONGLONG start = GetTickCount64();
    Repaint({0, 0, kSide, kSide});
    EXPECT_GE(GetTickCount64() - start, pause) << "30 ms after each of three views";
    EXPECT_EQ(shownBefore.empty(), flushes) << command;
    EXPECT_EQ(Difference({{{0, 0, 40, 40}, kRed}, {{50, 0, 90, 40}, kBlue}}), "");
  }
}

}  // namespace NSMorvaneTest
