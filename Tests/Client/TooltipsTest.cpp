// Tooltips of views, seen from their native control.
#include <windows.h>
// After the above.
#include <commctrl.h>

#include "Support/FocusTree.h"

namespace NSMorvaneTest {

class TooltipsTest : public FocusTreeTest {
 protected:
  // The tooltip control of a window, or null.
  static HWND TooltipOf(HWND window) {
    HWND hwnd = nullptr;
    while ((hwnd = FindWindowExW(nullptr, hwnd, TOOLTIPS_CLASSW, nullptr)) != nullptr)
      if (GetWindow(hwnd, GW_OWNER) == window) break;
    return hwnd;
  }
  HWND Tooltip() { return TooltipOf(Hwnd()); }
  // Every tool as its text and its rectangle, or the control that it stands for.
  CallLog Tools() {
    CallLog tools;
    const auto count = static_cast<WPARAM>(SendMessageW(Tooltip(), TTM_GETTOOLCOUNT, 0, 0));
    for (WPARAM i = 0; i < count; ++i) {
      wchar_t text[80] = {};
      TTTOOLINFOW info = {};
      info.cbSize = TTTOOLINFOW_V2_SIZE;
      info.lpszText = text;
      EXPECT_TRUE(SendMessageW(Tooltip(), TTM_ENUMTOOLSW, i, reinterpret_cast<LPARAM>(&info)));
      info.cbSize = TTTOOLINFOW_V2_SIZE;
      info.lpszText = text;
      SendMessageW(Tooltip(), TTM_GETTEXTW, 80, reinterpret_cast<LPARAM>(&info));
      EXPECT_EQ(info.hwnd, Hwnd());
      std::string tool(text, text + std::wcslen(text));
      if (info.uFlags & TTF_IDISHWND) {
        tool += info.uId == reinterpret_cast<UINT_PTR>(fOtherRecord.fNativeFocusTarget) ? " control" : " ?";
      } else {
        for (const LONG edge : {info.rect.left, info.rect.top, info.rect.right, info.rect.bottom})
          tool += " " + std::to_string(edge);
      }
      tools.push_back(tool);
    }
    return tools;
  }
  void SetText(IView& view, const TChar* text) { EXPECT_EQ(view.IView_SetTooltipText(text), kOK); }
  void SetRect(IView& view, const TRect& rect) {
    TViewParams params = {};
    EXPECT_EQ(view.IView_GetParams(params), kOK);
    params.fRect = rect;
    EXPECT_EQ(view.IView_SetParams(params), kOK);
  }
};

TEST_F(TooltipsTest, ToolsFollowTheirViews) {
  RunWithViews({[this] {
    EXPECT_EQ(Tooltip(), nullptr);
    SetText(*fLeaf, u"leaf");
    ASSERT_NE(Tooltip(), nullptr);
    const LONG style = GetWindowLongW(Tooltip(), GWL_STYLE);
    EXPECT_EQ(style & (WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP | WS_VISIBLE),
              static_cast<LONG>(WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP));
    EXPECT_TRUE(GetWindowLongW(Tooltip(), GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_EQ(SendMessageW(Tooltip(), TTM_GETMAXTIPWIDTH, 0, 0), 300);

    SetText(*fOther, u"a & b");
    EXPECT_EQ(Tools(), (CallLog{"leaf 10 10 90 90", "a & b 10 10 90 90"}));
    SetText(*fLeaf, u"new");
    // Cut to all super views, and at the next tick only.
    SetRect(*fOuter, {0, 0, 50, 100});
    SetRect(*fInner, {0, 20, 100, 60});
    EXPECT_EQ(fOther->IView_Offset(5, 7), kOK);
    EXPECT_EQ(Tools(), (CallLog{"new 10 10 90 90", "a & b 10 10 90 90"}));
    const CallLog moved = {"new 10 20 50 60", "a & b 15 17 95 97"};
    EXPECT_TRUE(YieldUntil([&] { return Tools() == moved; }));
    SetRect(*fInner, {200, 200, 300, 300});  // nothing of the leaf is left
    EXPECT_TRUE(YieldUntil([&] { return Tools().front() == "new 0 0 0 0"; }));

    SetText(*fLeaf, u"");
    EXPECT_EQ(Tools(), CallLog{"a & b 15 17 95 97"});
    Release(fOther);
    EXPECT_EQ(Tools(), CallLog());
    SetText(*fLeaf, u"again");
    EXPECT_EQ(Tools().size(), 1u);
  }});
  EXPECT_EQ(Tooltip(), nullptr);
}

// A native control lies over its view: the tip shows there too.
TEST_F(TooltipsTest, AControlHasAToolOfItsOwn) {
  RunWithViews({[this] {
    fOtherRecord.fNativeFocusTarget = MakeControl();
    SetText(*fOther, u"tip");
    EXPECT_EQ(Tools(), (CallLog{"tip control", "tip 10 10 90 90"}));
    SetText(*fOther, u"");
    EXPECT_EQ(Tools(), CallLog());
    fOtherRecord.fHooks["GetNativeFocusTarget"] = TError(100322);
    EXPECT_EQ(fOther->IView_SetTooltipText(u"tip"), TError(100322));
    EXPECT_EQ(Tools(), CallLog());
    TChar text[kTooltipTextChars + 1] = {};
    EXPECT_EQ(fOther->IView_GetTooltipText(text), kOK);
    EXPECT_EQ(TextOf(text), u"");
    fOtherRecord.fHooks.clear();
  }});
}

namespace {

CallLog* gTooltipLog = nullptr;
WNDPROC gTooltipProc = nullptr;

// Notes what the control is told about activation and about the mouse.
LRESULT CALLBACK RecordingTooltipProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == TTM_ACTIVATE) gTooltipLog->push_back("activate " + std::to_string(wParam));
  if (message == TTM_RELAYEVENT)
    gTooltipLog->push_back(std::to_string(reinterpret_cast<const MSG*>(lParam)->message));
  return CallWindowProcW(gTooltipProc, hwnd, message, wParam, lParam);
}

}  // namespace

TEST_F(TooltipsTest, WhatTheControlHears) {
  CallLog log;
  gTooltipLog = &log;
  WindowRecord second;
  RunWithViews({[&, this] {
    SetText(*fLeaf, u"leaf");
    gTooltipProc = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(Tooltip(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(RecordingTooltipProc)));
    Create(kPlain, second);
    SetActiveWindow(Hwnd());
    EXPECT_EQ(log, (CallLog{"activate 0", "activate 1"}));
    // Each press is followed by a release, so that it looks like a whole click. Nobody else's windows count.
    const struct {
      UINT fMessage;
      CallLog fRelayed;
    } rows[] = {{WM_MOUSEMOVE, {"512"}},
                {WM_LBUTTONDOWN, {"513", "514"}},
                {WM_LBUTTONUP, {"514"}},
                {WM_LBUTTONDBLCLK, {"515", "514"}},
                {WM_RBUTTONDOWN, {"516", "517"}},
                {WM_RBUTTONUP, {"517"}},
                {WM_RBUTTONDBLCLK, {}},
                {WM_MBUTTONDOWN, {"519", "520"}},
                {WM_MBUTTONUP, {"520"}},
                {WM_MBUTTONDBLCLK, {}},
                {WM_MOUSEWHEEL, {}},
                {WM_KEYDOWN, {}},
                {WM_NCMOUSEMOVE, {}}};
    for (const auto& row : rows) {
      log.clear();
      PostMessageW(second.fHwnd, row.fMessage, 0, 0);
      MSG msg;
      while (
          PeekMessageW(&msg, second.fHwnd, row.fMessage, row.fMessage, PM_NOREMOVE | (QS_POSTMESSAGE << 16)))
        EXPECT_EQ(fMorvane->IMorvane_Yield(), kOK);
      // The real mouse may move at any time.
      if (row.fMessage != WM_MOUSEMOVE) std::erase(log, "512");
      EXPECT_EQ(log, row.fRelayed) << row.fMessage;
    }
  }});
}

// With the real mouse: the tip appears over its view, and goes at a press.
TEST_F(TooltipsTest, ATipIsSeenUntilTheMouseIsPressed) {
  RunWithViews({[this] {
    SetText(*fLeaf, u"leaf");
    SendMessageW(Tooltip(), TTM_SETDELAYTIME, TTDT_INITIAL, 1);
    SendMessageW(Tooltip(), TTM_SETDELAYTIME, TTDT_AUTOPOP, 32000);
    POINT place = {40, 40};
    ClientToScreen(Hwnd(), &place);
    SetCursorPos(0, 0);
    SetCursorPos(place.x, place.y);
    EXPECT_TRUE(YieldUntil([this] { return IsWindowVisible(Tooltip()) != FALSE; }));
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    EXPECT_EQ(SendInput(1, &input, sizeof(input)), 1u);
    EXPECT_TRUE(YieldUntil([this] { return !IsWindowVisible(Tooltip()); }));
    input.mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(1, &input, sizeof(input));
  }});
}

}  // namespace NSMorvaneTest
