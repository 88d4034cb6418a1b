// Windows with views to look at: behaviours that draw, and the picture that a window shows.
#pragma once

#include <memory>
#include <set>

#include "Support/ClientFixture.h"
#include "Support/RecordingWindow.h"

namespace NSMorvaneTest {

// --- Views

// Draws a rectangle in one colour, unless a hook does something else.
class TestView : public CDefaultViewBehavior {
 public:
  using DrawHook = Hook<IDrawTools&>;

  TestView(IView& view, const TRect& rect, COLORREF color) : fView(view), fRect(rect), fColor(color) {}
  ~TestView() override {
    if (fOnDeleted) fOnDeleted();
  }

  TError IViewBehavior_Draw(IDrawTools& tools) override {
    ++fDrawCalls;
    return fDraw ? fDraw(tools) : Fill(tools, fRect, fColor);
  }

  static TError Fill(IDrawTools& tools, const TRect& rect, COLORREF color) {
    TNativePort port;
    const TError error = tools.IDrawTools_OpenNativePort(port);
    if (error != kOK) return error;
    const RECT nativeRect = {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom};
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(port.fHDC, &nativeRect, brush);
    DeleteObject(brush);
    return tools.IDrawTools_CloseNativePort();
  }

  IView& fView;
  TRect fRect;
  COLORREF fColor;
  int fDrawCalls = 0;
  DrawHook fDraw;
  std::function<void()> fOnDeleted;
};

// --- The fixture

// A document window with views that draw.
class PaintedWindowTest : public ClientWindowTest {
 protected:
  // The steps begin with the window shown and painted, and the debug settings made.
  void RunPainted(TStyleFlags style, Steps steps) {
    steps.insert(steps.begin(), [this] {
      EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings(fDebugSettings), kOK);
      Update();
    });
    steps.push_back([this] { ReleaseViews(); });
    RunWithWindow(style, steps);
  }
  template <std::invocable TStep>
  void RunPainted(TStyleFlags style, TStep step) {
    RunPainted(style, Steps{step});
  }

  // A view with a behaviour that paints it in one colour; null for the super view stands for the root view.
  TestView& AddView(const TRect& rect, COLORREF color, IView* superView = nullptr,
                    TViewDrawMode mode = kViewDrawDirect) {
    CViewFactory<TestView, const TRect&, const COLORREF&> factory(rect, color);
    TError error = kOtherError;
    fMorvane->IMorvane_CreateView(factory, superView ? *superView : Root(), "test view", error);
    EXPECT_EQ(error, kOK);
    TestView& view = *factory.Made();
    fViews.insert(&view);
    view.fOnDeleted = [this, &view] { fViews.erase(&view); };
    EXPECT_EQ(view.fView.IView_SetParams({kViewEnabled, rect, mode, kAutoInvalidationFull}), kOK);
    return view;
  }
  IView& Root() { return RootViewOf(Window()); }
  void Invalidate(const TRect& rect) { EXPECT_EQ(fMorvane->IMorvane_InvalidateView(Root(), rect), kOK); }
  void Update() { EXPECT_TRUE(UpdateWindow(Hwnd())); }
  TRect ClientRect() const {
    const TSize size = NativeClientSize(Hwnd());
    return {0, 0, size.fWidth, size.fHeight};
  }
  void ReleaseViews() {
    // A super view dies with its last subview only.
    for (TestView* const view : std::set<TestView*>(fViews)) EXPECT_EQ(view->fView.IView_Release(), kOK);
  }

  TDebugSettings fDebugSettings = {};  // all off
  std::set<TestView*> fViews;
};

// --- Pictures

// What a context shows at a place, as 0x00RRGGBB.
class Picture {
 public:
  // The client area of a window, as the window holds it.
  static Picture OfWindow(HWND hwnd) { return Picture(hwnd, {0, 0}, NativeClientSize(hwnd)); }
  // The same part of the screen.
  static Picture OfScreen(HWND hwnd) {
    POINT origin = {0, 0};
    ClientToScreen(hwnd, &origin);
    return Picture(nullptr, origin, NativeClientSize(hwnd));
  }
  // In one colour.
  Picture(int width, int height, COLORREF color) : fWidth(width), fHeight(height) {
    fPixels.resize(static_cast<std::size_t>(width) * height);
    Fill({0, 0, width, height}, color);
  }

  void Fill(const TRect& rect, COLORREF color) {
    for (int y = std::max(rect.fTop, 0); y < std::min(rect.fBottom, fHeight); ++y)
      for (int x = std::max(rect.fLeft, 0); x < std::min(rect.fRight, fWidth); ++x)
        At(x, y) = RGB(GetBValue(color), GetGValue(color), GetRValue(color));
  }
  std::uint32_t& At(int x, int y) { return fPixels[static_cast<std::size_t>(y) * fWidth + x]; }
  COLORREF ColorAt(int x, int y) {
    const std::uint32_t pixel = At(x, y);
    return RGB(GetBValue(pixel), GetGValue(pixel), GetRValue(pixel));
  }

  // Empty if they are equal; otherwise where they begin to differ, and how.
  std::string DifferenceTo(const Picture& expected) const {
    if (fWidth != expected.fWidth || fHeight != expected.fHeight) return "another size";
    std::size_t count = 0;
    std::string first;
    for (std::size_t i = 0; i < fPixels.size(); ++i) {
      if (fPixels[i] == expected.fPixels[i]) continue;
      if (count++ > 0) continue;
      char text[100];
      std::snprintf(text, sizeof(text), "(%d, %d) is %06X instead of %06X", static_cast<int>(i % fWidth),
                    static_cast<int>(i / fWidth), static_cast<unsigned>(fPixels[i]),
                    static_cast<unsigned>(expected.fPixels[i]));
      first = text;
    }
    return count == 0 ? "" : std::to_string(count) + " pixels differ, the first: " + first;
  }

 private:
  Picture(HWND hwnd, const POINT& origin, const TSize& size) : fWidth(size.fWidth), fHeight(size.fHeight) {
    fPixels.resize(static_cast<std::size_t>(fWidth) * fHeight);
    const HDC hdc = GetDC(hwnd);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = fWidth;
    info.bmiHeader.biHeight = -fHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HDC memory = CreateCompatibleDC(hdc);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, fWidth, fHeight, hdc, origin.x, origin.y, SRCCOPY);
    GdiFlush();
    for (std::size_t i = 0; i < fPixels.size(); ++i)
      fPixels[i] = static_cast<const std::uint32_t*>(bits)[i] & 0xFFFFFF;
    SelectObject(memory, old);
    DeleteDC(memory);
    DeleteObject(bitmap);
    ReleaseDC(hwnd, hdc);
  }

  int fWidth;
  int fHeight;
  std::vector<std::uint32_t> fPixels;
};

}  // namespace NSMorvaneTest
