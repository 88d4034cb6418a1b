// The list of all windows that is there for debugging: what it draws, and how it is opened and closed.
#include <regex>

#include "Support/ClientWindows.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

namespace {

struct DrawnCell {
  std::wstring fText;
  TRect fRect;
  COLORREF fBackground;
};
std::vector<DrawnCell> gDrawn;

int WINAPI KeepAndDraw(HDC hdc, LPCWSTR text, int count, LPRECT rect, UINT format) {
  gDrawn.push_back({std::wstring(text, static_cast<std::size_t>(count)), NativeRect(*rect), GetBkColor(hdc)});
  return DrawTextW(hdc, text, count, rect, format);
}

}  // namespace

class WindowListTest : public ClientWindowTest {
 protected:
  // Null if it is not open.
  static HWND List() {
    HWND list = nullptr;
    for (const HWND hwnd : ShownInOrder()) {
      if (NativeClass(hwnd) != L"WindowListWindowClass") continue;
      EXPECT_EQ(list, nullptr) << "there is one list";
      list = hwnd;
    }
    return list;
  }
  // By the key, which the application and its windows have left alone.
  void OpenList() {
    ASSERT_EQ(fWindows["doc1"].fFocusNow(), kOK);
    ASSERT_TRUE(YieldUntil([this] { return GetForegroundWindow() == HwndOf("doc1"); }));
    PressKeys({VK_CONTROL, VK_SHIFT, VK_MENU, 'W'});
    EXPECT_TRUE(YieldUntil([] { return List() && GetForegroundWindow() == List(); }));
  }
  static std::vector<DrawnCell> Redrawn() {
    gDrawn.clear();
    InvalidateRect(List(), nullptr, TRUE);
    UpdateWindow(List());
    return gDrawn;
  }
  void SetTitle(const std::string& name, const char16_t* title) {
    EXPECT_EQ(ChangeState(*fWindows[name].fDocument, [&](auto& state) { CopyText(state.fTitle, title); }),
              kOK);
  }
};

TEST_IN_RUN(WindowListTest, ShowsAllWindows) {
  const PatchedImport draw(L"Morvane.dll", "DrawTextW", KeepAndDraw);
  Do("+doc1 +doc2");
  SetTitle("doc1", u"a & b");
  SetTitle("doc2", u"second");
  for (const char* name : {"doc1", "doc2"}) UpdateWindow(HwndOf(name));
  // A paint that has only just begun gives no rate.
  EXPECT_TRUE(YieldUntil([painted = GetTickCount()] { return GetTickCount() != painted; }));
  OpenList();
  const HWND list = List();
  EXPECT_EQ(NativeTitle(list), L"Window List");
  EXPECT_EQ(NativeFrame(list), (TRect{100, 100, 500, 500}));
  EXPECT_EQ(GetWindow(list, GW_OWNER), nullptr);
  const auto hasStyle = [&](int index, DWORD style) {
    return (static_cast<DWORD>(GetWindowLongW(list, index)) & style) == style;
  };
  EXPECT_TRUE(hasStyle(GWL_STYLE, WS_OVERLAPPEDWINDOW) && hasStyle(GWL_EXSTYLE, 392));

  // Row after row the title and the two figures; every second row has a darker ground.
  const COLORREF plain = GetSysColor(COLOR_WINDOW);
  const COLORREF stripe = RGB(GetRValue(plain) - 20, GetGValue(plain) - 20, GetBValue(plain));
  for (const int width : {0, 700}) {
    if (width) SizeNative(list, width, 300);
    const int right = NativeClientSize(list).fWidth, middle = right / 2;
    const std::vector<DrawnCell> cells = Redrawn();
    ASSERT_EQ(cells.size(), 6u);
    const int height = cells[0].fRect.fBottom;
    EXPECT_GT(height, 12);
    for (int row = 0; row < 2; ++row) {
      const DrawnCell *const title = &cells[row * 3], *const rate = title + 1, *const time = title + 2;
      EXPECT_EQ(title->fText, row ? L"second" : L"a & b");
      EXPECT_TRUE(std::regex_match(rate->fText, std::wregex(L"[0-9.e+]+ fps"))) << rate->fText;
      EXPECT_TRUE(std::regex_match(time->fText, std::wregex(L"[0-9.e+]+ ms"))) << time->fText;
      const int top = row * height, bottom = top + height, half = middle + 4 + (right - middle - 8) / 2;
      EXPECT_EQ(title->fRect, (TRect{4, top, middle - 4, bottom}));
      EXPECT_EQ(rate->fRect, (TRect{middle + 4, top, half, bottom}));
      EXPECT_EQ(time->fRect, (TRect{half, top, right - 4, bottom}));
      for (const DrawnCell* cell : {title, rate, time}) EXPECT_EQ(cell->fBackground, row ? stripe : plain);
      const HDC hdc = GetDC(list);
      EXPECT_EQ(GetPixel(hdc, middle, top + 1), row ? stripe : plain) << "between the halves";
      ReleaseDC(list, hdc);
    }
  }
  // It shows by itself what has changed.
  Do("+floating");
  gDrawn.clear();
  EXPECT_TRUE(YieldUntil([] { return gDrawn.size() >= 9; }));
  Do("-floating -doc2");
  EXPECT_EQ(Redrawn().size(), 3u);
}

TEST_IN_RUN(WindowListTest, IsOpenedAndClosed) {
  Do("+doc1");
  OpenList();
  const HWND list = List();
  SizeNative(list, 10, 10);
  EXPECT_EQ(NativeFrame(list), (TRect{100, 100, 400, 200}));
  OpenList();
  EXPECT_EQ(List(), list);
  ShowWindow(list, SW_MINIMIZE);
  OpenList();
  EXPECT_FALSE(IsIconic(list));
  // A dialog does not block it, and afterwards the user goes on in the document, though the list is in front.
  Do("+modal");
  EXPECT_TRUE(IsWindowEnabled(list));
  Do("-modal");
  EXPECT_EQ(GetForegroundWindow(), HwndOf("doc1"));
  SendMessageW(list, WM_TIMER, 2, 0);
  EXPECT_EQ(fOutput.TakeAssertions(), "wParam == 1");
  SendMessageW(list, WM_CLOSE, 0, 0);
  EXPECT_EQ(List(), nullptr);
  // The second one is closed at the end of the run.
  OpenList();
  EXPECT_EQ(NativeFrame(List()), (TRect{100, 100, 500, 500}));
}

}  // namespace NSMorvaneTest
