// A window with a native control in a view, and a callback that writes down what reaches it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "Support/MouseFixture.h"

namespace NSMorvaneTest {

// A hosted control, as a client does it by hand. Written down are the messages below, and notifications as
// "c!273/768", with the code of WM_COMMAND or WM_NOTIFY.
inline const std::pair<UINT, const char*> kMessages[] = {
    {WM_SETFOCUS, "focus"}, {WM_KILLFOCUS, "blur"},     {WM_MOUSEMOVE, "move"}, {WM_MOUSELEAVE, "leave"},
    {WM_KEYDOWN, "down"},   {WM_KEYUP, "up"},           {WM_CHAR, "char"},      {WM_UPDATEUISTATE, "ui"},
    {WM_APP, "app"},        {WM_NCDESTROY, "destroyed"}};

inline const char* NameOfMessage(UINT message) {
  const auto* const row = std::ranges::find(kMessages, message, &std::pair<UINT, const char*>::first);
  return row == std::end(kMessages) ? nullptr : row->second;
}

inline std::string NotificationWord(UINT message, WPARAM wParam, LPARAM lParam) {
  const int code = message == WM_NOTIFY    ? static_cast<int>(reinterpret_cast<const NMHDR*>(lParam)->code)
                   : message == WM_COMMAND ? HIWORD(wParam)
                                           : LOWORD(wParam);
  return "!" + std::to_string(message) + "/" + std::to_string(code);
}

class Callback : public IWinNativeControlCallback {
 public:
  Callback(ViewRecord& record, const std::string& name) : fRecord(record), fName(name) {}

  TError IWinNativeControlCallback_OnControlNotification(std::uint32_t message, TWinParam wParam,
                                                         TWinResult lParam, TWinResult& outResult) override {
    EXPECT_EQ(outResult, 0);
    outResult = fAnswer;
    return fRecord.Call(fName + NotificationWord(message, wParam, lParam));
  }
  TError IWinNativeControlCallback_OnControlProc(HWND__* hwnd, std::uint32_t message, TWinParam wParam,
                                                 TWinResult lParam, TWinResult oldProc,
                                                 TWinResult& outResult) override {
    EXPECT_EQ(outResult, 0);
    if (message == WM_UPDATEUISTATE) fUIState = wParam;
    const char* const name = NameOfMessage(message);
    // The hook may end this object.
    const TError error = name                  ? fRecord.Call(fName + ":" + name)
                         : message == WM_PAINT ? fRecord.CallUnlogged(fName + ":paint")
                                               : TError{kOK};
    if (error != kOK) return error;
    outResult = CallWindowProcW(reinterpret_cast<WNDPROC>(oldProc), hwnd, message, wParam, lParam);
    return kOK;
  }

  TWinResult fAnswer = 0;
  WPARAM fUIState = 0;

 private:
  ViewRecord& fRecord;
  const std::string fName;
};

class NativeControlsTest : public MouseFixture {
 protected:
  using Token = std::unique_ptr<IWinNativeControlCallbackToken>;

  // A control at a place of the window, in the view or not.
  HWND MakeControlAt(const TRect& rect, const wchar_t* windowClass = L"EDIT", DWORD style = 0) {
    const HWND control =
        CreateWindowExW(0, windowClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, rect.fLeft,
                        rect.fTop, rect.fRight - rect.fLeft, rect.fBottom - rect.fTop, Hwnd(), nullptr,
                        GetModuleHandleW(nullptr), nullptr);
    EXPECT_NE(control, nullptr);
    return control;
  }
  Token HostIn(const std::string& view, HWND control, IWinNativeControlCallback* callback,
               TError wantedError = kOK) {
    IWinExtensions* extensions = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
    TError error = kProgrammingError;
    Token token(extensions->IWinExtensions_HostNativeControl(control, callback, *View(view), error));
    EXPECT_EQ(error, wantedError);
    EXPECT_EQ(token != nullptr, wantedError == kOK);
    return token;
  }
  // A view v that names an edit as its native control, and a view w, both focusable; the edit has the name c.
  void OpenWithControl() {
    Open();
    constexpr std::uint32_t kFlags = kTrackable | kViewFocusable;
    fView = &MakeView("v", {10, 10, 110, 110}, nullptr, kFlags);
    MakeView("w", {120, 10, 210, 110}, nullptr, kFlags);
    fControl = fView->fControl = MakeControlAt({30, 30, 90, 90});
    fToken = HostIn("v", fControl, &fCallback);
    ViewCalls();
  }
  static LONG_PTR ProcOf(HWND hwnd) { return GetWindowLongPtrW(hwnd, GWLP_WNDPROC); }
  LRESULT Notify(LPARAM code) {
    const NMHDR header = {fControl, 7, static_cast<UINT>(code)};
    return Send(WM_NOTIFY, 7, reinterpret_cast<LPARAM>(&header));
  }
  void Leave() override {
    fToken.reset();
    MouseFixture::Leave();
  }

  TestView* fView = nullptr;
  HWND fControl = nullptr;
  Callback fCallback{fViewRecord, "c"};
  Token fToken;
};

}  // namespace NSMorvaneTest
