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
  using DrawHook = std::function<TError(IDrawTools&)>;

  TestView(IView& view, const TRect& rect, COLORREF color) : fView(view), fRect(rect), fColor(color) {}
  ~TestView() override {
    if (fOnDeleted) fOnDeleted();
  }

  TError IViewBehavior_Draw(IDrawTools& tools) override {
    ++fDrawCalls;
    if (fDraw) return fDraw(tools);
    return Fill(tools, fRect, fColor);
  }
  TError IViewBehavior_PostProcessDraw(IDrawTools& tools) override {
    return fPostProcess ? fPostProcess(tools) : kOK;
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
  DrawHook fPostProcess;
  std::function<void()> fOnDeleted;
};

// --- The fixture

// A run behaviour that also logs what windows cause.
class WindowRunBehavior : public RecordingRunBehavior {
 public:
  WindowRunBehavior(CallLog& log, RunHooks& hooks, std::deque<std::function<void()>>& steps,
                    const CallHooks& more)
      : RecordingRunBehavior(log, hooks, steps), fLog(log), fMore(more) {}

  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools&) override {
    ++fBeginDrawCalls;
    return RunHook(fMore, "OnBeginDraw");
  }
  TError IMorvaneRunBehavior_OnEndDraw(IDrawTools&) override {
    ++fEndDrawCalls;
    return RunHook(fMore, "OnEndDraw");
  }
  TError IMorvaneRunBehavior_OnThemeChanged() override { return Call("OnThemeChanged"); }
  TError IMorvaneRunBehavior_OnEnterMenuLoop() override { return Call("OnEnterMenuLoop"); }
  TError IMorvaneRunBehavior_OnExitMenuLoop() override { return Call("OnExitMenuLoop"); }

  static inline int fBeginDrawCalls = 0;
  static inline int fEndDrawCalls = 0;

 private:
  TError Call(const std::string& name) {
    fLog.push_back(name);
    return RunHook(fMore, name);
  }

  CallLog& fLog;
  const CallHooks& fMore;
};

// One document window, as the only content of the run. A scenario is what happens while it is open.
class WindowClientTest : public ClientTest {
 protected:
  // Runs an application with one document window, calls the scenario when it is shown and painted, and quits.
  void RunWithWindow(TStyleFlags styleFlags, std::function<void()> scenario) {
    CreateMorvane();
    EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings(fDebugSettings), kOK);
    WindowRunBehavior::fBeginDrawCalls = 0;
    WindowRunBehavior::fEndDrawCalls = 0;
    fHooks.fOnNoDocument = [=, this](TNoDocumentKind) {
      OpenWindow(styleFlags);
      Then([=, this] {
        scenario();
        Then([this] { CloseAll(); });
      });
      return kOK;
    };
    const TError error =
        fMorvane->IMorvane_Run(new WindowRunBehavior(fLog, fHooks, fSteps, fRunHooks), fParams);
    EXPECT_EQ(error, kOK);
  }

  void OpenWindow(TStyleFlags styleFlags) {
    fRecord = {};
    RecordingWindowFactory factory(fRecord);
    TError error = kOtherError;
    fDocument = fMorvane->IMorvane_CreateDocumentWindow(factory, styleFlags, 0, error);
    ASSERT_EQ(error, kOK);
    ASSERT_EQ(fDocument->IDocumentWindow_GetWindow(fWindow), kOK);
    fHwnd = fRecord.fHwnd;
    ASSERT_EQ(fWindow->IWindow_GetRootView(fRootView), kOK);
  }

  // A view with a behaviour that paints it in one colour; null for the super view stands for the root view.
  TestView& AddView(const TRect& rect, COLORREF color, IView* superView = nullptr,
                    TViewDrawMode mode = kViewDrawDirect) {
    CViewFactory<TestView, const TRect&, const COLORREF&> factory(rect, color);
    TError error = kOtherError;
    fMorvane->IMorvane_CreateView(factory, superView ? *superView : *fRootView, "test view", error);
    EXPECT_EQ(error, kOK);
    TestView& view = *factory.Made();
    fViews.insert(&view);
    view.fOnDeleted = [this, &view] { fViews.erase(&view); };
    TViewParams params = {kViewEnabled, rect, mode, kAutoInvalidationFull};
    EXPECT_EQ(view.fView.IView_SetParams(params), kOK);
    return view;
  }

  void Invalidate(const TRect& rect) { EXPECT_EQ(fMorvane->IMorvane_InvalidateView(*fRootView, rect), kOK); }
  void Update() { EXPECT_TRUE(UpdateWindow(fHwnd)); }
  TRect ClientRect() const {
    RECT rect = {};
    GetClientRect(fHwnd, &rect);
    return {rect.left, rect.top, rect.right, rect.bottom};
  }

  void ReleaseViews() {
    // A super view dies with its last subview only.
    for (TestView* const view : std::set<TestView*>(fViews)) EXPECT_EQ(view->fView.IView_Release(), kOK);
  }
  void CloseWindow() {
    ReleaseViews();
    EXPECT_TRUE(fViews.empty());
    if (!fHwnd || !IsWindow(fHwnd)) return;
    EXPECT_EQ(fDocument->IDocumentWindow_Release(), kOK);
  }
  void CloseAll() {
    fRecord.fHooks.clear();
    CloseWindow();
    Quit();
  }

  TDebugSettings fDebugSettings = {};  // all off
  WindowRecord fRecord;
  CallHooks fRunHooks;  // of the callbacks that WindowRunBehavior adds
  IDocumentWindow* fDocument = nullptr;
  IWindow* fWindow = nullptr;
  IView* fRootView = nullptr;
  HWND fHwnd = nullptr;
  std::set<TestView*> fViews;
};

// --- Pictures

// What a context shows at a place, as 0x00RRGGBB.
class Picture {
 public:
  // The client area of a window, as the window holds it.
  static Picture OfWindow(HWND hwnd) {
    RECT rect;
    GetClientRect(hwnd, &rect);
    const HDC hdc = GetDC(hwnd);
    Picture picture(hdc, 0, 0, rect.right, rect.bottom);
    ReleaseDC(hwnd, hdc);
    return picture;
  }
  // The same part of the screen.
  static Picture OfScreen(HWND hwnd) {
    RECT rect;
    GetClientRect(hwnd, &rect);
    POINT origin = {0, 0};
    ClientToScreen(hwnd, &origin);
    const HDC hdc = GetDC(nullptr);
    Picture picture(hdc, origin.x, origin.y, rect.right, rect.bottom);
    ReleaseDC(nullptr, hdc);
    return picture;
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
  int Width() const { return fWidth; }
  int Height() const { return fHeight; }

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
  Picture(HDC hdc, int x, int y, int width, int height) : fWidth(width), fHeight(height) {
    fPixels.resize(static_cast<std::size_t>(width) * height);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HDC memory = CreateCompatibleDC(hdc);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, hdc, x, y, SRCCOPY);
    GdiFlush();
    for (std::size_t i = 0; i < fPixels.size(); ++i)
      fPixels[i] = static_cast<const std::uint32_t*>(bits)[i] & 0xFFFFFF;
    SelectObject(memory, old);
    DeleteDC(memory);
    DeleteObject(bitmap);
  }

  int fWidth;
  int fHeight;
  std::vector<std::uint32_t> fPixels;
};

}  // namespace NSMorvaneTest
