// What windows show: the picture that views paint together, which pixels are touched, what draw callbacks may
// do, and what the debug settings add.
#include <algorithm>

#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class PaintingTest : public PaintedWindowTest {
 protected:
  static constexpr COLORREF kRed = RGB(255, 0, 0);
  static constexpr COLORREF kGreen = RGB(0, 160, 0);
  static constexpr COLORREF kBlue = RGB(0, 0, 255);

  Picture Background() const {
    const TRect client = ClientRect();
    return Picture(client.fRight, client.fBottom, GetSysColor(COLOR_WINDOW));
  }
  // Empty if the window shows what is expected.
  std::string Difference(const Picture& expected) const {
    return Picture::OfWindow(Hwnd()).DifferenceTo(expected);
  }
  // Draws past the library.
  void ScribbleAll() const {
    const HDC hdc = GetDC(Hwnd());
    const TRect client = ClientRect();
    PatBlt(hdc, 0, 0, client.fRight, client.fBottom, BLACKNESS);
    ReleaseDC(Hwnd(), hdc);
  }
  bool IsDirty() const {
    RECT rect;
    return GetUpdateRect(Hwnd(), &rect, FALSE) != FALSE;
  }
};

// --- The picture

TEST_F(PaintingTest, BackgroundAndViewsFromBackToFront) {
  int depth = 0;
  int paints = 0;
  fHooks.fOnBeginDraw = [&] { paints += ++depth; };
  fHooks.fOnEndDraw = [&] { --depth; };
  RunPainted(0, [&] {
    EXPECT_EQ(Difference(Background()), "");
    TestView& back = AddView({10, 20, 110, 80}, kRed);
    // Sticks out of its super view, and is cut.
    AddView({90, 60, 200, 200}, kBlue, &back.fView);
    AddView({50, 50, 70, 120}, kGreen);
    Update();
    Picture expected = Background();
    expected.Fill({10, 20, 110, 80}, kRed);
    expected.Fill({90, 60, 110, 80}, kBlue);
    expected.Fill({50, 50, 70, 120}, kGreen);
    EXPECT_EQ(Difference(expected), "");
    // The screen follows when the system gets to it.
    EXPECT_TRUE(YieldUntil([&] { return Picture::OfScreen(Hwnd()).DifferenceTo(expected).empty(); }));
    EXPECT_EQ(depth, 0);
    EXPECT_GT(paints, 0);
  });
}

TEST_F(PaintingTest, EveryDrawModeShowsTheSame) {
  RunPainted(0, [this] {
    Picture expected = Background();
    TRect rect = {10, 10, 60, 60};
    for (const TViewDrawMode mode : {kViewDrawDirect, kViewDrawTemporary16, kViewDrawTemporary32,
                                     kViewDrawPermanent16, kViewDrawPermanent32}) {
      AddView(rect, kBlue, nullptr, mode);
      expected.Fill(rect, kBlue);
      rect = {rect.fLeft + 40, rect.fTop + 30, rect.fRight + 40, rect.fBottom + 30};
    }
    Update();
    EXPECT_EQ(Difference(expected), "");
    for (TestView* view : fViews) view->fColor = kRed;
    Invalidate({0, 0, 100, 1000});
    Update();
    // Inside the permanent views nothing became dirty but what was invalidated.
    rect = {10, 10, 60, 60};
    for (int i = 0; i < 5; ++i) {
      expected.Fill({rect.fLeft, rect.fTop, std::min(rect.fRight, 100), rect.fBottom}, i < 3 ? kRed : kBlue);
      rect = {rect.fLeft + 40, rect.fTop + 30, rect.fRight + 40, rect.fBottom + 30};
    }
    EXPECT_EQ(Difference(expected), "");
  });
}

// --- What is touched

TEST_F(PaintingTest, OnlyTheDirtyRegionIsTouched) {
  RunPainted(0, [this] {
    TestView& view = AddView({0, 0, 200, 200}, kRed);
    Update();
    ScribbleAll();
    Picture expected = Picture::OfWindow(Hwnd());
    const int calls = view.fDrawCalls;
    // Two rectangles of one paint, with a gap between them that is inside their bounding box.
    Invalidate({10, 10, 30, 40});
    Invalidate({60, 70, 150, 90});
    Update();
    EXPECT_EQ(view.fDrawCalls, calls + 1);
    expected.Fill({10, 10, 30, 40}, kRed);
    expected.Fill({60, 70, 150, 90}, kRed);
    EXPECT_EQ(Difference(expected), "");
    // Beyond the view there is background.
    Invalidate({190, 190, 220, 210});
    Update();
    expected.Fill({190, 190, 220, 210}, GetSysColor(COLOR_WINDOW));
    expected.Fill({190, 190, 200, 200}, kRed);
    EXPECT_EQ(Difference(expected), "");
  });
}

TEST_F(PaintingTest, TheBufferIsAsLargeAsTheDirtyBox) {
  RunPainted(0, [this] {
    TestView& view = AddView({0, 0, 200, 200}, kRed);
    TestView& untouched = AddView({150, 0, 200, 50}, kBlue);
    Update();
    untouched.fDrawCalls = 0;
    TRawPixels pixels = {};
    RECT box = {};
    view.fDraw = [&](IDrawTools& tools) {
      EXPECT_EQ(tools.IDrawTools_OpenRawPixels(pixels), kOK);
      EXPECT_EQ(tools.IDrawTools_CloseRawPixels(), kOK);
      void* region = nullptr;
      EXPECT_EQ(tools.IDrawTools_GetDirtyRegion(region), kOK);
      EXPECT_EQ(GetRgnBox(static_cast<HRGN>(region), &box), COMPLEXREGION);
    };
    Invalidate({10, 20, 30, 40});
    Invalidate({25, 35, 100, 120});
    Update();
    EXPECT_EQ((std::vector<LONG>{10, 20, 90, 100, 360}),
              (std::vector<LONG>{pixels.fOriginX, pixels.fOriginY, pixels.fWidth, pixels.fHeight,
                                 pixels.fRowBytes}));
    EXPECT_EQ((std::vector<LONG>{10, 20, 100, 120}),
              (std::vector<LONG>{box.left, box.top, box.right, box.bottom}));
    EXPECT_EQ(untouched.fDrawCalls, 0);
  });
}

TEST_F(PaintingTest, NothingOfAnEarlierPaintShowsThrough) {
  RunPainted(0, [this] {
    TestView& view = AddView({20, 20, 80, 80}, kRed);
    Update();
    // From now on the view is empty. A state that it leaves in the context is gone the next time.
    view.fDraw = [](IDrawTools& tools) {
      TNativePort port;
      EXPECT_EQ(tools.IDrawTools_OpenNativePort(port), kOK);
      EXPECT_EQ(GetROP2(port.fHDC), R2_COPYPEN);
      SetROP2(port.fHDC, R2_XORPEN);
      return tools.IDrawTools_CloseNativePort();
    };
    for (int i = 0; i < 3; ++i) {
      Invalidate(ClientRect());
      Update();
      EXPECT_EQ(Difference(Background()), "");
    }
  });
}

// --- What draw callbacks do

TEST_F(PaintingTest, CallbacksMayInvalidate) {
  RunPainted(0, [this] {
    TestView& view = AddView({0, 0, 100, 100}, kRed);
    Update();
    view.fDraw = [&](IDrawTools& tools) {
      if (view.fColor == kRed) {
        view.fColor = kBlue;
        Invalidate({0, 0, 100, 100});
        return TestView::Fill(tools, view.fRect, kRed);
      }
      return TestView::Fill(tools, view.fRect, kBlue);
    };
    view.fDrawCalls = 0;
    Invalidate({0, 0, 10, 10});
    Update();
    EXPECT_EQ(view.fDrawCalls, 1);
    EXPECT_TRUE(IsDirty());
    Update();
    EXPECT_EQ(view.fDrawCalls, 2);
    EXPECT_FALSE(IsDirty());
    Picture expected = Background();
    expected.Fill({0, 0, 100, 100}, kBlue);
    EXPECT_EQ(Difference(expected), "");
  });
}

TEST_F(PaintingTest, CallbacksMayEndTheWindow) {
  RunPainted(0, [this] {
    TestView& view = AddView({0, 0, 100, 100}, kRed);
    Update();
    fLog.clear();
    view.fDraw = [this](IDrawTools&) {
      // Both die when the paint is through.
      ReleaseViews();
      EXPECT_EQ(Window().IDocumentWindow_Release(), kOK);
      EXPECT_TRUE(IsWindow(Hwnd()));
    };
    Invalidate({0, 0, 10, 10});
    UpdateWindow(Hwnd());
    EXPECT_FALSE(IsWindow(Hwnd()));
    EXPECT_EQ(fRecord.Count("deleted"), 1u);
  });
}

// --- Failures

TEST_F(PaintingTest, AFailedPaintIsReportedOnceAndNotRepeated) {
  RunPainted(0, {[this] {
                   fHooks.fOnBeginDraw = TError{100002};
                   Invalidate({0, 0, 10, 10});
                   Update();
                   EXPECT_FALSE(IsDirty());
                   fHooks.fOnBeginDraw = nullptr;
                 },
                 [this] { ExpectReported(100002); }});
}

// --- Size grip and alpha

TEST_F(PaintingTest, TheSizeGripIsNeverPaintedOver) {
  RunPainted(kWindowResizableBit | kWindowZoomableBit | kWindowStyleBit23, [this] {
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
      EXPECT_EQ((std::vector<LONG>{rect.left, rect.top, rect.right, rect.bottom}),
                (std::vector<LONG>{place.fLeft, place.fTop, place.fRight, place.fBottom}));
      ReleaseViews();
      TestView& view = AddView(client, kRed);
      Update();
      UpdateWindow(grip);
      Picture picture = Picture::OfWindow(Hwnd());
      EXPECT_EQ(picture.ColorAt(place.fLeft - 1, place.fBottom - 1), kRed);
      EXPECT_EQ(picture.ColorAt(place.fRight - 1, place.fTop - 1), kRed);
      // Only the grip is dirty: the views are left alone.
      view.fDrawCalls = 0;
      Invalidate(place);
      Update();
      EXPECT_EQ(view.fDrawCalls, 0);
      EXPECT_FALSE(IsDirty());
    }
    // A zoomed window has nothing to grip.
    const struct {
      int fCommand;
      LONG fStyle;
    } steps[] = {{SW_SHOW, SBS_SIZEGRIP}, {SW_SHOWMAXIMIZED, SBS_SIZEBOX}, {SW_RESTORE, SBS_SIZEGRIP}};
    for (const auto& step : steps) {
      ShowWindow(Hwnd(), step.fCommand);
      EXPECT_EQ(GetWindowLongW(grip, GWL_STYLE) & (SBS_SIZEBOX | SBS_SIZEGRIP), step.fStyle);
      EXPECT_EQ(IsWindowEnabled(grip) != 0, step.fStyle == SBS_SIZEGRIP);
    }
  });
}

TEST_F(PaintingTest, OnlyTranslucentWindowsAreLayered) {
  RunPainted(0, [this] {
    const auto isLayered = [this] { return (GetWindowLongW(Hwnd(), GWL_EXSTYLE) & WS_EX_LAYERED) != 0; };
    const auto alpha = [this] {
      std::uint8_t value = 7;
      EXPECT_EQ(WindowOf(Window()).IWindow_GetGlobalAlpha(value), kOK);
      return value;
    };
    EXPECT_EQ(alpha(), 255);
    for (const int wanted : {255, 100, 0, 255, 254, 255}) {
      EXPECT_EQ(WindowOf(Window()).IWindow_SetGlobalAlpha(static_cast<std::uint8_t>(wanted)), kOK);
      EXPECT_EQ(alpha(), wanted);
      EXPECT_EQ(isLayered(), wanted != 255);
      if (wanted == 255) continue;
      BYTE native = 0;
      DWORD flags = 0;
      EXPECT_TRUE(GetLayeredWindowAttributes(Hwnd(), nullptr, &native, &flags));
      EXPECT_EQ(native, wanted);
    }
    Invalidate(ClientRect());
    Update();
    EXPECT_EQ(Difference(Background()), "");
  });
}

// --- Debug settings

TEST_F(PaintingTest, InvalidationFlashesBlue) {
  fDebugSettings.fDrawInvalidationBlue = 1;
  RunPainted(0, [this] {
    AddView({0, 0, 50, 50}, RGB(100, 200, 51));
    Update();
    Picture expected = Picture::OfWindow(Hwnd());
    Invalidate({10, 10, 60, 30});
    expected.Fill({10, 10, 60, 30}, RGB(153, 153, 255));  // of white
    expected.Fill({10, 10, 50, 30}, RGB(60, 120, 132));
    EXPECT_EQ(Difference(expected), "");
    Update();
    expected = Background();
    expected.Fill({0, 0, 50, 50}, RGB(100, 200, 51));
    EXPECT_EQ(Difference(expected), "");
  });
}

TEST_F(PaintingTest, PaintsFlashRed) {
  fDebugSettings.fDrawPaintsRed = 1;
  RunPainted(0, [this] {
    TestView& view = AddView({0, 0, 100, 100}, kBlue);
    Update();
    Picture expected = Picture::OfWindow(Hwnd());
    Picture during = expected;
    view.fDraw = [&](IDrawTools& tools) {
      during = Picture::OfWindow(Hwnd());
      return TestView::Fill(tools, view.fRect, kBlue);
    };
    Invalidate({10, 10, 30, 20});
    Invalidate({40, 30, 50, 60});
    Update();
    EXPECT_EQ(Difference(expected), "");
    expected.Fill({10, 10, 30, 20}, RGB(0xD0, 0, 0));
    expected.Fill({40, 30, 50, 60}, RGB(0xD0, 0, 0));
    EXPECT_EQ(during.DifferenceTo(expected), "");
  });
}

TEST_F(PaintingTest, BoundsOfViewsAreFramed) {
  fDebugSettings.fDrawViewBounds = 1;
  RunPainted(0, [this] {
    TestView& back = AddView({20, 20, 120, 100}, RGB(255, 255, 0));
    AddView({60, 60, 200, 200}, RGB(255, 255, 0), &back.fView);  // cut to its super view
    Update();
    Picture picture = Picture::OfWindow(Hwnd());
    const auto isOnFrame = [&](int x, int y) {
      // Along the line some pixels have the colour of the frame.
      int count = 0;
      for (int d = -4; d <= 4; ++d) {
        const int fx = x % 10 == 0 ? x + d : x;
        const int fy = x % 10 == 0 ? y : y + d;
        count += picture.ColorAt(fx, fy) == RGB(0x7F, 0x7F, 0x7F);
      }
      return count > 0;
    };
    EXPECT_TRUE(isOnFrame(60, 20));
    EXPECT_TRUE(isOnFrame(80, 99));
    EXPECT_TRUE(isOnFrame(119, 45));
    EXPECT_TRUE(isOnFrame(90, 60));
    EXPECT_FALSE(isOnFrame(60, 40));
    EXPECT_FALSE(isOnFrame(80, 80));
    EXPECT_FALSE(isOnFrame(150, 150));
  });
}

TEST_F(PaintingTest, FlushingShowsEachViewAtOnce) {
  fDebugSettings.fFlushViews = 1;
  RunPainted(0, [this] {
    TestView& first = AddView({0, 0, 50, 50}, kRed);
    TestView& second = AddView({50, 0, 100, 50}, kBlue);
    Update();
    ScribbleAll();
    Picture expected = Picture::OfWindow(Hwnd());
    second.fDraw = [&](IDrawTools& tools) {
      expected.Fill({10, 10, 50, 20}, kRed);
      EXPECT_EQ(Difference(expected), "") << "the first view, and nothing else";
      return TestView::Fill(tools, second.fRect, kBlue);
    };
    first.fColor = kRed;
    // The root view flushes the background of the dirty region first.
    expected.Fill({10, 10, 80, 20}, GetSysColor(COLOR_WINDOW));
    Invalidate({10, 10, 80, 20});
    Update();
    expected.Fill({50, 10, 80, 20}, kBlue);
    EXPECT_EQ(Difference(expected), "");
  });
}

}  // namespace NSMorvaneTest
