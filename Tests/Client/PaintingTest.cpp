// What windows show: the picture that views paint together, which pixels are touched, what draw callbacks may
// do, and what the debug settings add.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 160, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

// Pixels as 0x00RRGGBB.
class Picture {
 public:
  // What a context shows from a place on.
  Picture(HDC hdc, const POINT& origin, const TSize& size) : fWidth(size.fWidth), fHeight(size.fHeight) {
    fPixels.resize(static_cast<std::size_t>(fWidth) * fHeight);
    const BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), fWidth, -fHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HDC memory = CreateCompatibleDC(hdc);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, fWidth, fHeight, hdc, origin.x, origin.y, SRCCOPY);
    GdiFlush();
    std::copy_n(static_cast<const std::uint32_t*>(bits), fPixels.size(), fPixels.begin());
    for (std::uint32_t& pixel : fPixels) pixel &= 0xFFFFFF;
    SelectObject(memory, old);
    DeleteDC(memory);
    DeleteObject(bitmap);
  }
  Picture(const TSize& size, COLORREF color) : fWidth(size.fWidth), fHeight(size.fHeight) {
    fPixels.resize(static_cast<std::size_t>(fWidth) * fHeight);
    Fill({0, 0, fWidth, fHeight}, color);
  }
  void Fill(const TRect& rect, COLORREF color) {
    for (int y = std::max(rect.fTop, 0); y < std::min(rect.fBottom, fHeight); ++y)
      for (int x = std::max(rect.fLeft, 0); x < std::min(rect.fRight, fWidth); ++x)
        fPixels[y * fWidth + x] = RGB(GetBValue(color), GetGValue(color), GetRValue(color));
  }
  COLORREF ColorAt(int x, int y) const {
    const std::uint32_t pixel = fPixels[y * fWidth + x];
    return RGB(GetBValue(pixel), GetGValue(pixel), GetRValue(pixel));
  }
  // Empty if they are equal; otherwise how they begin to differ.
  std::string DifferenceTo(const Picture& expected) const {
    const auto [here, there] = std::ranges::mismatch(fPixels, expected.fPixels);
    if (fWidth != expected.fWidth || fHeight != expected.fHeight) return "another size";
    if (here == fPixels.end()) return "";
    const auto at = static_cast<int>(here - fPixels.begin());
    char text[100];
    std::snprintf(text, sizeof(text), "(%d, %d) is %06X instead of %06X", at % fWidth, at / fWidth,
                  static_cast<unsigned>(*here), static_cast<unsigned>(*there));
    return text;
  }

 private:
  int fWidth;
  int fHeight;
  std::vector<std::uint32_t> fPixels;
};

}  // namespace

class PaintingTest : public ClientWindowTest {
 protected:
  // Opens the window with these debug settings, painted.
  void OpenPainted(TStyleFlags style = kPlain, const TDebugSettings& settings = {}) {
    Open(style);
    EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings(settings), kOK);
    Update();
  }
  // A view that fills its rectangle with a colour.
  TestView& MakeColored(const std::string& name, const TRect& rect, COLORREF color,
                        const std::string& superView = "", TViewDrawMode mode = kViewDrawDirect) {
    fViewRecord.fHooks[name + ":draw"] = FillsWith(rect, color);
    return MakeView(name, rect, View(superView), kViewEnabled, mode);
  }
  Hook FillsWith(const TRect& rect, COLORREF color) {
    return [=, this] {
      TNativePort port;
      ThrowIfFailed(fViewRecord.fTools->IDrawTools_OpenNativePort(port));
      const RECT nativeRect = {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom};
      const HBRUSH brush = CreateSolidBrush(color);
      FillRect(port.fHDC, &nativeRect, brush);
      DeleteObject(brush);
      return fViewRecord.fTools->IDrawTools_CloseNativePort();
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
  TRect ClientRect() const {
    const TSize size = NativeClientSize(Hwnd());
    return {0, 0, size.fWidth, size.fHeight};
  }
  bool IsDirty() const {
    RECT rect;
    return GetUpdateRect(Hwnd(), &rect, FALSE) != FALSE;
  }
  Picture Background() const { return Picture(NativeClientSize(Hwnd()), GetSysColor(COLOR_WINDOW)); }
  // The client area, as the window holds it or as the screen shows it.
  Picture Shown(bool onScreen = false) const {
    const HWND hwnd = onScreen ? nullptr : Hwnd();
    const HDC hdc = GetDC(hwnd);
    const Picture picture(hdc, onScreen ? OnScreen({0, 0}) : POINT{0, 0}, NativeClientSize(Hwnd()));
    ReleaseDC(hwnd, hdc);
    return picture;
  }
  // Empty if the window shows what is expected.
  std::string Difference(const Picture& expected) const { return Shown().DifferenceTo(expected); }
  // Draws past the library.
  void ScribbleAll() const {
    const HDC hdc = GetDC(Hwnd());
    PatBlt(hdc, 0, 0, 5000, 5000, BLACKNESS);
    ReleaseDC(Hwnd(), hdc);
  }
};

// --- The picture

TEST_IN_RUN(PaintingTest, ViewsFromBackToFront) {
  int depth = 0;
  int paints = 0;
  fRun.fHooks["BeginDraw"] = [&] { paints += ++depth; };
  fRun.fHooks["EndDraw"] = [&] { --depth; };
  OpenPainted();
  EXPECT_EQ(Difference(Background()), "");
  MakeColored("back", {10, 20, 110, 80}, kRed);
  MakeColored("sub", {90, 60, 200, 200}, kBlue, "back");  // sticks out of its super view, and is cut
  MakeColored("front", {50, 50, 70, 120}, kGreen);
  Update();
  Picture expected = Background();
  expected.Fill({10, 20, 110, 80}, kRed);
  expected.Fill({90, 60, 110, 80}, kBlue);
  expected.Fill({50, 50, 70, 120}, kGreen);
  EXPECT_EQ(Difference(expected), "");
  // The screen follows when the system gets to it.
  EXPECT_TRUE(YieldUntil([&] { return Shown(true).DifferenceTo(expected).empty(); }));
  EXPECT_EQ(depth, 0);
  EXPECT_GT(paints, 0);
  ReleaseViews();

  // Every draw mode shows the same. Inside the permanent views nothing becomes dirty but what is invalidated.
  const TViewDrawMode modes[] = {kViewDrawDirect, kViewDrawTemporary16, kViewDrawTemporary32,
                                 kViewDrawPermanent16, kViewDrawPermanent32};
  for (const COLORREF color : {kBlue, kRed}) {
    expected = Background();
    for (int i = 0; i < 5; ++i) {
      const TRect rect = {10 + 40 * i, 10 + 30 * i, 60 + 40 * i, 60 + 30 * i};
      const std::string name(1, static_cast<char>('a' + i));
      if (color == kBlue) MakeColored(name, rect, kBlue, "", modes[i]);
      fViewRecord.fHooks[name + ":draw"] = FillsWith(rect, color);
      expected.Fill(rect, kBlue);
      if (i < 3 && color == kRed)
        expected.Fill({rect.fLeft, rect.fTop, std::min(rect.fRight, 100), rect.fBottom}, kRed);
    }
    Repaint({0, 0, 100, 1000});
    EXPECT_EQ(Difference(expected), "");
  }
}

// --- What is touched

TEST_IN_RUN(PaintingTest, OnlyTheDirtyRegionIsTouched) {
  OpenPainted();
  TestView& view = MakeColored("a", {0, 0, 200, 200}, kRed);
  TestView& untouched = MakeColored("b", {150, 0, 200, 50}, kRed);
  Update();
  ScribbleAll();
  Picture expected = Shown();
  untouched.fDrawCalls = view.fDrawCalls = 0;
  // Two rectangles of one paint, with a gap between them that is inside their bounding box.
  Invalidate({10, 10, 30, 40});
  Repaint({60, 70, 150, 90});
  EXPECT_EQ(view.fDrawCalls, 1);
  EXPECT_EQ(untouched.fDrawCalls, 0);
  expected.Fill({10, 10, 30, 40}, kRed);
  expected.Fill({60, 70, 150, 90}, kRed);
  EXPECT_EQ(Difference(expected), "");
  // Beyond the view there is background.
  Repaint({190, 190, 220, 210});
  expected.Fill({190, 190, 220, 210}, GetSysColor(COLOR_WINDOW));
  expected.Fill({190, 190, 200, 200}, kRed);
  EXPECT_EQ(Difference(expected), "");

  // The buffer is as large as the box around what is dirty.
  TRawPixels pixels = {};
  RECT box = {};
  fViewRecord.fHooks["a:draw"] = [&] {
    IDrawTools& tools = *fViewRecord.fTools;
    EXPECT_EQ(tools.IDrawTools_OpenRawPixels(pixels), kOK);
    EXPECT_EQ(tools.IDrawTools_CloseRawPixels(), kOK);
    void* region = nullptr;
    EXPECT_EQ(tools.IDrawTools_GetDirtyRegion(region), kOK);
    EXPECT_EQ(GetRgnBox(static_cast<HRGN>(region), &box), COMPLEXREGION);
  };
  Invalidate({10, 20, 30, 40});
  Repaint({25, 35, 100, 120});
  EXPECT_EQ((TRect{pixels.fOriginX, pixels.fOriginY, pixels.fWidth, pixels.fHeight}),
            (TRect{10, 20, 90, 100}));
  EXPECT_EQ(pixels.fRowBytes, 360);
  EXPECT_EQ(NativeRect(box), (TRect{10, 20, 100, 120}));
  ReleaseView("b");

  // Nothing of an earlier paint shows through views that are empty. A state that they leave in the context is
  // gone the next time.
  fViewRecord.fHooks["a:draw"] = [&] {
    TNativePort port;
    EXPECT_EQ(fViewRecord.fTools->IDrawTools_OpenNativePort(port), kOK);
    EXPECT_EQ(GetROP2(port.fHDC), R2_COPYPEN);
    SetROP2(port.fHDC, R2_XORPEN);
    return fViewRecord.fTools->IDrawTools_CloseNativePort();
  };
  for (int i = 0; i < 3; ++i) {
    Repaint(ClientRect());
    EXPECT_EQ(Difference(Background()), "");
  }
}

// --- What draw callbacks do

TEST_IN_RUN(PaintingTest, CallbacksMayInvalidateFailAndEndTheWindow) {
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
  Picture expected = Background();
  expected.Fill(rect, kBlue);
  EXPECT_EQ(Difference(expected), "");

  // A failed paint is reported once, and not repeated.
  fRun.fHooks["BeginDraw"] = TError(100002);
  Repaint({0, 0, 10, 10});
  EXPECT_FALSE(IsDirty());
  fRun.fHooks.erase("BeginDraw");
  ExpectReported(100002);

  fViewRecord.fHooks["a:draw"] = [this] {
    // Both die when the paint is through.
    ReleaseViews();
    Release(fRecord);
    EXPECT_TRUE(IsWindow(Hwnd()));
  };
  Invalidate({0, 0, 10, 10});
  UpdateWindow(Hwnd());
  EXPECT_FALSE(IsWindow(Hwnd()));
}

// --- Size grip and alpha

TEST_IN_RUN(PaintingTest, TheSizeGripIsNeverPaintedOver) {
  OpenPainted(kSizeable | kWindowStyleBit23);
  const HWND grip = FindWindowExW(Hwnd(), nullptr, L"SCROLLBAR", nullptr);
  ASSERT_NE(grip, nullptr);
  // It has no size of its own until somebody gives it one.
  MoveWindow(grip, 0, 0, 16, 16, TRUE);
  for (const int size : {320, 360}) {
    SetWindowPos(Hwnd(), nullptr, 0, 0, size, size, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    const TRect client = ClientRect();
    const TRect place = {client.fRight - 16, client.fBottom - 16, client.fRight, client.fBottom};
    RECT rect;
    GetWindowRect(grip, &rect);
    MapWindowPoints(nullptr, Hwnd(), reinterpret_cast<POINT*>(&rect), 2);
    EXPECT_EQ(NativeRect(rect), place);
    ReleaseViews();
    TestView& view = MakeColored("a", client, kRed);
    Update();
    UpdateWindow(grip);
    const Picture picture = Shown();
    EXPECT_EQ(picture.ColorAt(place.fLeft - 1, place.fBottom - 1), kRed);
    EXPECT_EQ(picture.ColorAt(place.fRight - 1, place.fTop - 1), kRed);
    // Only the grip is dirty: the views are left alone.
    view.fDrawCalls = 0;
    Repaint(place);
    EXPECT_EQ(view.fDrawCalls, 0);
    EXPECT_FALSE(IsDirty());
  }
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
  for (const std::uint8_t wanted : {255, 100, 0, 255, 254, 255}) {
    EXPECT_EQ(Window().IWindow_SetGlobalAlpha(wanted), kOK);
    std::uint8_t alpha = 7;
    EXPECT_EQ(Window().IWindow_GetGlobalAlpha(alpha), kOK);
    EXPECT_EQ(alpha, wanted);
    BYTE native = 255;
    EXPECT_EQ(GetLayeredWindowAttributes(Hwnd(), nullptr, &native, nullptr) != FALSE, wanted != 255);
    EXPECT_EQ(native, wanted);
    EXPECT_EQ((GetWindowLongW(Hwnd(), GWL_EXSTYLE) & WS_EX_LAYERED) != 0, wanted != 255);
  }
  Repaint(ClientRect());
  EXPECT_EQ(Difference(Background()), "");
}

// --- Debug settings

TEST_IN_RUN(PaintingTest, InvalidationFlashesBlueAndPaintsRed) {
  TDebugSettings settings = {};
  settings.fDrawInvalidationBlue = 1;
  OpenPainted(kPlain, settings);
  MakeColored("a", {0, 0, 50, 50}, RGB(100, 200, 51));
  Update();
  const Picture before = Shown();
  Picture expected = before;
  Invalidate({10, 10, 60, 30});
  expected.Fill({10, 10, 60, 30}, RGB(153, 153, 255));  // of white
  expected.Fill({10, 10, 50, 30}, RGB(60, 120, 132));
  EXPECT_EQ(Difference(expected), "");
  Update();
  EXPECT_EQ(Difference(before), "");

  settings = {};
  settings.fDrawPaintsRed = 1;
  EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings(settings), kOK);
  expected = before;
  expected.Fill({10, 10, 30, 20}, RGB(0xD0, 0, 0));
  expected.Fill({40, 30, 50, 60}, RGB(0xD0, 0, 0));
  fViewRecord.fHooks["a:draw"] = [&, fill = fViewRecord.fHooks["a:draw"]] {
    EXPECT_EQ(Difference(expected), "");
    return fill();
  };
  Invalidate({10, 10, 30, 20});
  Repaint({40, 30, 50, 60});
  EXPECT_EQ(Difference(before), "");
}

TEST_IN_RUN(PaintingTest, FlushingShowsEachViewAtOnce) {
  TDebugSettings settings = {};
  settings.fFlushViews = 1;
  OpenPainted(kPlain, settings);
  MakeColored("a", {0, 0, 50, 50}, kRed);
  MakeColored("b", {50, 0, 100, 50}, kBlue);
  Update();
  ScribbleAll();
  Picture expected = Shown();
  expected.Fill({10, 10, 80, 20}, GetSysColor(COLOR_WINDOW));
  expected.Fill({10, 10, 50, 20}, kRed);
  fViewRecord.fHooks["b:draw"] = [&] { EXPECT_EQ(Difference(expected), ""); };
  Repaint({10, 10, 80, 20});
}

TEST_IN_RUN(PaintingTest, BoundsOfViewsAreFramed) {
  TDebugSettings settings = {};
  settings.fDrawViewBounds = 1;
  OpenPainted(kPlain, settings);
  MakeColored("back", {20, 20, 120, 100}, RGB(255, 255, 0));
  MakeColored("sub", {60, 60, 200, 200}, RGB(255, 255, 0), "back");  // cut to its super view
  Update();
  const Picture picture = Shown();
  const auto isOnFrame = [&](int x, int y) {
    // Along the line some pixels have the colour of the frame.
    int count = 0;
    for (int d = -4; d <= 4; ++d)
      count += picture.ColorAt(x % 10 ? x : x + d, x % 10 ? y + d : y) == RGB(0x7F, 0x7F, 0x7F);
    return count > 0;
  };
  for (const POINT& on : {POINT{60, 20}, {80, 99}, {119, 45}, {90, 60}})
    EXPECT_TRUE(isOnFrame(on.x, on.y)) << on.x;
  for (const POINT& off : {POINT{60, 40}, {80, 80}, {150, 150}})
    EXPECT_FALSE(isOnFrame(off.x, off.y)) << off.x;
  // Settings of what is on the screen invalidate it; others do not.
  const auto isDirtyAfterSetting = [&] {
    EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings(settings), kOK);
    const bool isDirty = IsDirty();
    Update();
    return isDirty;
  };
  EXPECT_EQ(fMorvane->IMorvane_GetDebugSettings(settings), kOK);
  EXPECT_FALSE(isDirtyAfterSetting());
  settings.fDrawViewBounds = 0;
  EXPECT_TRUE(isDirtyAfterSetting());
  settings.fDrawMouseViewInfo = 1;
  EXPECT_TRUE(isDirtyAfterSetting());
}

}  // namespace NSMorvaneTest
