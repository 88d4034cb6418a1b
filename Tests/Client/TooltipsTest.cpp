// Tooltips of views, seen from their native control.
#include "Support/NativeControls.h"
// After the above.
#include <commctrl.h>

namespace NSMorvaneTest {

class TooltipsTest : public NativeControlsTest {
 protected:
  // The tooltip control of the window, or null.
  HWND Tooltip() const {
    HWND hwnd = nullptr;
    do hwnd = FindWindowExW(nullptr, hwnd, TOOLTIPS_CLASSW, nullptr);
    while (hwnd && GetWindow(hwnd, GW_OWNER) != Hwnd());
    return hwnd;
  }
  LRESULT Tell(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageW(Tooltip(), message, wParam, lParam);
  }
  // Every tool as its text and its rectangle, or the control that it stands for.
  std::string Tools() const {
    std::string tools;
    const LRESULT count = Tell(TTM_GETTOOLCOUNT);
    for (LRESULT i = 0; i < count; ++i) {
      wchar_t text[80] = {};
      TTTOOLINFOW info = {};
      info.cbSize = TTTOOLINFOW_V2_SIZE;
      info.lpszText = text;
      EXPECT_TRUE(Tell(TTM_ENUMTOOLSW, i, reinterpret_cast<LPARAM>(&info)));
      info.lpszText = text;
      Tell(TTM_GETTEXTW, 80, reinterpret_cast<LPARAM>(&info));
      EXPECT_EQ(info.hwnd, Hwnd());
      const bool isControl = info.uFlags & TTF_IDISHWND;
      EXPECT_TRUE(!isControl || info.uId == reinterpret_cast<UINT_PTR>(fOther->fControl));
      tools += std::string(text, text + std::wcslen(text)) + " " +
               (isControl ? "control" : ::testing::PrintToString(NativeRect(info.rect))) + "; ";
    }
    return tools;
  }
  void SetText(const char* view, const TChar* text) {
    EXPECT_EQ(View(view)->IView_SetTooltipText(text), kOK);
  }
};

TEST_IN_RUN(TooltipsTest, ToolsFollowTheirViews) {
  PutMouse({0, 0});
  OpenWithFocusTree();
  EXPECT_EQ(Tooltip(), nullptr);
  SetText("leaf", u"leaf");
  const LONG style = WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP;
  EXPECT_EQ(GetWindowLongW(Tooltip(), GWL_STYLE) & (style | WS_VISIBLE), style);
  EXPECT_TRUE(GetWindowLongW(Tooltip(), GWL_EXSTYLE) & WS_EX_TOPMOST);
  EXPECT_EQ(Tell(TTM_GETMAXTIPWIDTH), 300);

  SetText("other", u"a\u2029b");
  EXPECT_EQ(Tools(), "leaf (10, 10, 90, 90); a\r\nb (10, 10, 90, 90); ");
  SetText("other", u"\u2029");
  EXPECT_EQ(Tools(), "leaf (10, 10, 90, 90); \r\n (10, 10, 90, 90); ");
  SetText("other", u"a & b");
  SetText("leaf", u"new");
  // Cut to all super views, and at the next tick only.
  SetRect(*View("outer"), {0, 0, 50, 100});
  SetRect(*View("inner"), {0, 20, 100, 60});
  EXPECT_EQ(View("other")->IView_Offset(5, 7), kOK);
  EXPECT_EQ(Tools(), "new (10, 10, 90, 90); a & b (10, 10, 90, 90); ");
  EXPECT_TRUE(YieldUntil([&] { return Tools() == "new (10, 20, 50, 60); a & b (15, 17, 95, 97); "; }))
      << Tools();
  SetText("leaf", u"");
  EXPECT_EQ(Tools(), "a & b (15, 17, 95, 97); ");

  // A native control lies over its view: the tip shows there too.
  SetText("other", u"");
  fOther->fControl = MakeControl();
  SetText("other", u"tip");
  EXPECT_EQ(Tools(), "tip control; tip (15, 17, 95, 97); ");
  SetText("other", u"other\u2029tip");
  EXPECT_EQ(Tools(), "other\r\ntip control; other\r\ntip (15, 17, 95, 97); ");
  fViewRecord.fHooks["other:target"] = TError(100321);
  EXPECT_EQ(View("other")->IView_SetTooltipText(u"new"), 100321u);
  EXPECT_EQ(Tools(), "other\r\ntip control; other\r\ntip (15, 17, 95, 97); ");
  fViewRecord.fHooks.clear();
  SetText("other", u"");
  fViewRecord.fHooks["other:target"] = TError(100322);
  EXPECT_EQ(View("other")->IView_SetTooltipText(u"tip"), 100322u);
  EXPECT_EQ(Tools(), "");

  SetText("leaf", u"again");
  ReleaseView("leaf");
  EXPECT_EQ(Tools(), "");
  fViewRecord.fHooks.clear();
}

// Whatever control the view has when it gets its text: the tip shows over the one that the mouse is over.
TEST_IN_RUN(TooltipsTest, ControlsThatComeAndGo) {
  OpenWithFocusTree();
  SetText("other", u"tip");
  for (int i = 0; i < 2; ++i) {
    const HWND control = MakeControl();
    const Token token = HostIn("other", control, &fCallback);
    fOther->fControl = control;
    SendMessageW(control, WM_MOUSEMOVE, 0, 0);
    EXPECT_EQ(Tools(), "tip (10, 10, 90, 90); tip control; ");
    // It is no focus target any more, since it is disabled, say.
    fOther->fControl = nullptr;
    EXPECT_EQ(View("other")->IView_SetTooltipText(u"new"), kOK);
    fOther->fControl = control;
    EXPECT_EQ(Tools(), "new (10, 10, 90, 90); new control; ");
    if (i == 0) SetText("other", u"tip");
    DestroyWindow(control);
    fOther->fControl = nullptr;
    EXPECT_EQ(Tools(), i == 0 ? "tip (10, 10, 90, 90); " : "new (10, 10, 90, 90); ");
  }
  SetText("other", u"");
  EXPECT_EQ(Tools(), "");
}

// The mouse does not move any more when there is something to tell about the place that it is over.
TEST_IN_RUN(TooltipsTest, ATipForAMouseThatRests) {
  OpenWithFocusTree();
  PutMouse(OnScreen({50, 50}));
  Turn();
  SetText("leaf", u"tip");
  Tell(TTM_SETDELAYTIME, TTDT_INITIAL, 10);
  EXPECT_TRUE(YieldUntil([this] { return IsWindowVisible(Tooltip()) != 0; }));
}

// A button in a panel, say, whose text was there before.
TEST_IN_RUN(TooltipsTest, TheViewInFrontShowsItsTip) {
  OpenWithFocusTree();
  SetText("outer", u"panel");
  SetText("leaf", u"button");
  SetRect(*View("leaf"), {40, 40, 60, 60});
  for (const WPARAM delay : {TTDT_INITIAL, TTDT_RESHOW}) Tell(TTM_SETDELAYTIME, delay, 10);
  const auto shown = [this] {
    wchar_t text[80] = {};
    TTTOOLINFOW info = {};
    info.cbSize = TTTOOLINFOW_V2_SIZE;
    info.lpszText = text;
    const LRESULT isShown = Tell(TTM_GETCURRENTTOOLW, 0, reinterpret_cast<LPARAM>(&info));
    return std::wstring(isShown && IsWindowVisible(Tooltip()) ? text : L"");
  };
  for (const auto& [place, text] :
       Rows<POINT, std::wstring>{{{50, 50}, L"button"}, {{20, 20}, L"panel"}, {{55, 45}, L"button"}}) {
    PutMouse(OnScreen(place));
    EXPECT_TRUE(YieldUntil([&, expected = text] { return shown() == expected; }));
  }
  // Without it the panel shows through.
  SetText("leaf", u"");
  EXPECT_TRUE(YieldUntil([&] { return shown() == L"panel"; }));
}

namespace {

CallLog gHeard;
WNDPROC gTooltipProc = nullptr;

// Notes what the control is told about activation and about the mouse.
LRESULT CALLBACK RecordingTooltipProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == TTM_ACTIVATE) gHeard.Add("activate:" + std::to_string(wParam));
  if (message == TTM_RELAYEVENT) gHeard.Add(std::to_string(reinterpret_cast<const MSG*>(lParam)->message));
  return CallWindowProcW(gTooltipProc, hwnd, message, wParam, lParam);
}

}  // namespace

TEST_IN_RUN(TooltipsTest, WhatTheControlHears) {
  PutMouse({0, 0});
  OpenWithFocusTree();
  SetText("leaf", u"leaf");
  gTooltipProc = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(Tooltip(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(RecordingTooltipProc)));
  const HWND second = MakeNamed("doc").fHwnd;
  SetActiveWindow(Hwnd());
  EXPECT_EQ(gHeard.Take(), "activate:0 activate:1");
  // Off during a capture, and on after it, whoever ends it.
  const auto capture = [this] {
    EXPECT_EQ(fMorvane->IMorvane_AllocateMouseCapture(&Window(), new RecordingCapture(fViewRecord)), kOK);
    return gHeard.Take();
  };
  EXPECT_EQ(capture(), "activate:0");
  EXPECT_EQ(fMorvane->IMorvane_ReleaseMouseCapture(), kOK);
  EXPECT_EQ(gHeard.Take(), "activate:1");
  EXPECT_EQ(capture(), "activate:0");
  SetCapture(second);
  EXPECT_EQ(gHeard.Take(), "activate:1");
  ReleaseCapture();
  // Each press is followed by a release, so that it looks like a whole click. It hears of all windows.
  const std::pair<UINT, const char*> rows[] = {
      {WM_MOUSEMOVE, "512"},       {WM_LBUTTONDOWN, "513 514"}, {WM_LBUTTONDBLCLK, "515 514"},
      {WM_RBUTTONDOWN, "516 517"}, {WM_RBUTTONUP, "517"},       {WM_RBUTTONDBLCLK, ""},
      {WM_MBUTTONDOWN, "519 520"}, {WM_MOUSEWHEEL, ""},         {WM_KEYDOWN, ""}};
  for (const auto& [message, relayed] : rows) {
    gHeard.Take();
    PostMessageW(second, message, 0, 0);
    MSG msg;
    while (PeekMessageW(&msg, second, message, message, PM_NOREMOVE | (QS_POSTMESSAGE << 16)))
      EXPECT_EQ(fMorvane->IMorvane_Yield(), kOK);
    // The real mouse may move at any time.
    if (message != WM_MOUSEMOVE) gHeard.Remove("512");
    EXPECT_EQ(gHeard.Take(), relayed) << message;
  }
}

}  // namespace NSMorvaneTest
