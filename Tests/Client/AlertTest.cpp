// Alert boxes: what is shown, how each button is pressed, and what becomes of the windows around.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class AlertTest : public ClientWindowTest {
 protected:
  struct Listener : IAlertBoxListener, CallRecorder {
    TError IAlertBoxListener_OnResponse(TAlertResponse response) override {
      return Call("answer:", std::to_string(response - kAlertResponseFirst + 1));
    }
  };
  struct Question : ISaveChangesBehavior, CallRecorder {
    TError ISaveChangesBehavior_OnSave() override { return Call("save"); }
    TError ISaveChangesBehavior_OnDiscard() override { return Call("discard"); }
    TError ISaveChangesBehavior_OnCancel() override { return Call("cancel"); }
  };

  static TAlertSpec Spec(TAlertButtonLayout layout, TAlertKind kind = kAlertPlain,
                         const std::u16string& message = u"Message", const std::u16string& details = u"") {
    TAlertSpec spec = {};
    spec.fButtonLayout = layout;
    spec.fKind = kind;
    CopyText(spec.fMessage, message);
    CopyText(spec.fDetails, details);
    CopyText(spec.fButton1, u"_One");
    if (layout >= kAlertTwoButtonsFirstDefault) CopyText(spec.fButton2, u"_Two");
    if (layout >= kAlertThreeButtonsFirstDefault) CopyText(spec.fButton3, u"T_hree");
    return spec;
  }
  // The alert that comes to the front.
  HWND ShowAlert(const TAlertSpec& spec, IModalOwner* owner = nullptr, TError wanted = kOK) {
    EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(owner, 0, spec, &fListener), wanted);
    return wanted == kOK ? GetActiveWindow() : nullptr;
  }
  static HWND ButtonOf(HWND alert, int id) { return GetDlgItem(alert, id); }
  static std::wstring ClassOf(HWND hwnd) {
    wchar_t name[100] = {};
    GetClassNameW(hwnd, name, 100);
    return name;
  }
  // In the client coordinates of the alert.
  static TRect PlaceIn(HWND alert, HWND control) {
    RECT rect = {};
    GetWindowRect(control, &rect);
    MapWindowPoints(nullptr, alert, reinterpret_cast<POINT*>(&rect), 2);
    return NativeRect(rect);
  }
  static std::vector<HWND> ControlsOf(HWND alert, const wchar_t* className) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(alert, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
      if (ClassOf(child) == className) controls.push_back(child);
    return controls;
  }
  // Presses a key as the user does, and waits until the alert has gone.
  std::string AnswerBy(HWND alert, const std::function<void()>& input) {
    EXPECT_EQ(GetActiveWindow(), alert);
    input();
    EXPECT_TRUE(YieldUntil([=] { return !IsWindow(alert); }));
    return fListener.fLog.Take();
  }
  static void PressKey(WORD key) { SendInputs({KeyInput(key), KeyInput(key, KEYEVENTF_KEYUP)}); }
  static void PressAlt(WORD key) {
    SendInputs({KeyInput(VK_MENU), KeyInput(key), KeyInput(key, KEYEVENTF_KEYUP),
                KeyInput(VK_MENU, KEYEVENTF_KEYUP)});
  }

  Listener fListener;
  Question fQuestion;
};

TEST_IN_RUN(AlertTest, EachButtonInEachWay) {
  Open();
  struct TCase {
    TAlertButtonLayout fLayout;
    std::vector<int> fIDs;
    std::string fAtReturn, fAtEscape, fAtClose;
  };
  const std::vector<WORD> mnemonics = {'O', 'T', 'H'};
  for (const TCase& c : std::vector<TCase>{{kAlertOneButton, {1}, "1", "1", "1"},
                                           {kAlertTwoButtonsFirstDefault, {1, 2}, "1", "2", "2"},
                                           {kAlertTwoButtonsSecondDefault, {1, 2}, "2", "2", "2"},
                                           {kAlertThreeButtonsFirstDefault, {6, 7, 2}, "1", "3", "3"},
                                           {kAlertThreeButtonsThirdDefault, {6, 7, 2}, "3", "3", "3"}}) {
    const auto show = [&] { return ShowAlert(Spec(c.fLayout), fRecord.fOwner); };
    for (std::size_t i = 0; i < c.fIDs.size(); ++i) {
      const std::string wanted = "answer:" + std::to_string(i + 1);
      HWND alert = show();
      EXPECT_EQ(AnswerBy(alert,
                         [&] {
                           const TRect place = NativeFrame(ButtonOf(alert, c.fIDs[i]));
                           Click({(place.fLeft + place.fRight) / 2, (place.fTop + place.fBottom) / 2},
                                 {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
                         }),
                wanted);
      alert = show();
      EXPECT_EQ(AnswerBy(alert, [&] { PressAlt(mnemonics[i]); }), wanted);
    }
    HWND alert = show();
    EXPECT_EQ(AnswerBy(alert, [] { PressKey(VK_RETURN); }), "answer:" + c.fAtReturn) << c.fLayout;
    alert = show();
    EXPECT_EQ(AnswerBy(alert, [] { PressKey(VK_ESCAPE); }), "answer:" + c.fAtEscape) << c.fLayout;
    alert = show();
    EXPECT_EQ(AnswerBy(alert, [&] { PostMessageW(alert, WM_CLOSE, 0, 0); }), "answer:" + c.fAtClose)
        << c.fLayout;
  }
  EXPECT_EQ(fOutput.TakeAssertions(), "");
  // Unknown layouts and kinds.
  ShowAlert(Spec(static_cast<TAlertButtonLayout>(14005)), nullptr, kOtherError);
  EXPECT_EQ(fOutput.TakeAssertions(), "false");
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
}

TEST_IN_RUN(AlertTest, WhatIsShownAndWhere) {
  Open();
  for (const auto& [kind, message, details] :
       std::vector<std::tuple<TAlertKind, std::u16string, std::u16string>>{
           {kAlertPlain, u"Short", u""},
           {kAlertStop, u"Tom & Jerry", u"Details\x2029of three\r\nlines"},
           {kAlertNote, std::u16string(1023, u'm'), std::u16string(1000, u'd')},
           {kAlertCaution,
            u"Words that are broken where a line is full, between the words and not within, so that "
            u"whoever reads them can do so without trouble, however many of them there are in a line.",
            u"And\n\nso on"},
           {kAlertPlain, u"", u""}}) {
    const HWND alert = ShowAlert(Spec(kAlertTwoButtonsFirstDefault, kind, message, details), fRecord.fOwner);
    const auto statics = ControlsOf(alert, L"Static");
    const bool hasIcon = kind != kAlertPlain;
    ASSERT_EQ(statics.size(), hasIcon ? 2u : 1u);
    EXPECT_EQ(NativeTitle(alert), L"Scenario");
    // The text fits its control, as the system breaks it.
    const TRect text = PlaceIn(alert, statics[0]);
    EXPECT_EQ(text.fLeft, hasIcon ? 66 : 15);
    EXPECT_EQ(text.fTop, 11);
    std::wstring shown(3000, 0);
    shown.resize(static_cast<std::size_t>(GetWindowTextW(statics[0], shown.data(), 3000)));
    const HDC hdc = GetDC(statics[0]);
    const HGDIOBJ font = SelectObject(hdc, GetStockObject(DEFAULT_GUI_FONT));
    RECT needed = {0, 0, text.fRight - text.fLeft, 0};
    DrawTextW(hdc, shown.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
    SelectObject(hdc, font);
    ReleaseDC(statics[0], hdc);
    if (!shown.empty()) {
      EXPECT_LE(needed.bottom, text.fBottom - text.fTop);
    }
    EXPECT_EQ(GetWindowLongW(statics[0], GWL_STYLE) & SS_NOPREFIX, SS_NOPREFIX);
    if (hasIcon) {
      EXPECT_EQ(PlaceIn(alert, statics[1]), (TRect{15, 11, 47, 43}));
      EXPECT_NE(SendMessageW(statics[1], STM_GETICON, 0, 0), 0);
    }
    // The row of buttons is in the middle, all inside the window, which cannot be sized.
    const TSize client = NativeClientSize(alert);
    const TRect one = PlaceIn(alert, ButtonOf(alert, 1)), two = PlaceIn(alert, ButtonOf(alert, 2));
    EXPECT_EQ(one.fTop, client.fHeight - 59 + 25);
    EXPECT_EQ(one.fBottom - one.fTop, 23);
    EXPECT_EQ(two.fLeft, one.fRight + 6);
    EXPECT_NEAR(one.fLeft, client.fWidth - two.fRight, 1);
    EXPECT_EQ(GetWindowLongW(alert, GWL_STYLE) & WS_THICKFRAME, 0);
    EXPECT_EQ(GetFocus(), ButtonOf(alert, 1));
    AnswerBy(alert, [] { PressKey(VK_RETURN); });
  }
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

TEST_IN_RUN(AlertTest, WindowsAround) {
  Open();
  const HWND owner = Hwnd();
  // Over a minimized owner, which comes back; it is blocked until the answer.
  ShowWindow(owner, SW_MINIMIZE);
  const HWND first = ShowAlert(Spec(kAlertOneButton), fRecord.fOwner);
  EXPECT_FALSE(IsIconic(owner));
  EXPECT_FALSE(IsWindowEnabled(owner));
  const TRect frame = NativeFrame(first), around = NativeFrame(owner);
  EXPECT_NEAR(frame.fLeft + frame.fRight, around.fLeft + around.fRight, 2);
  EXPECT_NEAR(frame.fTop + frame.fBottom, around.fTop + around.fBottom, 2);
  // A second one, for the application.
  const HWND second = ShowAlert(Spec(kAlertTwoButtonsFirstDefault));
  EXPECT_FALSE(IsWindowEnabled(first));
  // The focus is kept while another window is active.
  ::SetFocus(ButtonOf(second, 2));
  SendMessageW(second, WM_ACTIVATE, WA_INACTIVE, 0);
  ::SetFocus(nullptr);
  SendMessageW(second, WM_ACTIVATE, WA_CLICKACTIVE, 0);
  EXPECT_EQ(GetFocus(), ButtonOf(second, 2));
  EXPECT_EQ(AnswerBy(second, [] { PressKey(VK_SPACE); }), "answer:2");
  EXPECT_TRUE(IsWindowEnabled(first));
  // A listener that fails keeps the window; one that opens the next alert loses none.
  fListener.fHooks["answer:"] = TError(100321);
  PressKey(VK_RETURN);
  ExpectReported(100321);
  EXPECT_TRUE(IsWindow(first));
  fListener.fLog.Take();
  HWND next = nullptr;
  fListener.fHooks["answer:"] = [&] {
    fListener.fHooks.clear();
    next = ShowAlert(Spec(kAlertOneButton), fRecord.fOwner);
  };
  EXPECT_EQ(AnswerBy(first, [] { PressKey(VK_RETURN); }), "answer:1");
  EXPECT_FALSE(IsWindowEnabled(owner));
  EXPECT_EQ(AnswerBy(next, [] { PressKey(VK_RETURN); }), "answer:1");
  EXPECT_TRUE(IsWindowEnabled(owner));
  EXPECT_EQ(GetActiveWindow(), owner);
  // One that blocks returns with the answer.
  Then([this] {
    EXPECT_EQ(fListener.fLog.Take(), "");
    PressKey(VK_RETURN);
  });
  EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(nullptr, 1, Spec(kAlertTwoButtonsSecondDefault), &fListener),
            kOK);
  EXPECT_EQ(fListener.fLog.Take(), "answer:2");
  // Nobody need listen.
  EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(nullptr, 0, Spec(kAlertOneButton), nullptr), kOK);
  AnswerBy(GetActiveWindow(), [] { PressKey(VK_ESCAPE); });
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

TEST_IN_RUN(AlertTest, SaveChanges) {
  Open();
  const auto ask = [this](TCloseReason reason) {
    const std::u16string name = u"A & B";
    EXPECT_EQ(fMorvane->IMorvane_CreateSaveChangesDialog(&fQuestion, fRecord.fOwner, 0, name.c_str(), reason),
              kOK);
    return GetActiveWindow();
  };
  for (const auto& [key, wanted] : std::vector<std::pair<WORD, std::string>>{
           {VK_RETURN, "save"}, {VK_ESCAPE, "cancel"}, {VK_TAB, "discard"}}) {
    const HWND alert = ask(kCloseByUser);
    EXPECT_NE(NativeTitle(ControlsOf(alert, L"Static")[0]).find(L"A & B"), std::wstring::npos);
    PressKey(key);
    if (key == VK_TAB) {
      EXPECT_TRUE(YieldUntil([=] { return GetFocus() == ButtonOf(alert, 7); }));
      PressKey(VK_SPACE);
    }
    EXPECT_TRUE(YieldUntil([=] { return !IsWindow(alert); }));
    EXPECT_EQ(fQuestion.fLog.Take(), wanted);
  }
  // The two reasons have texts of their own.
  std::wstring texts[2];
  for (const TCloseReason reason : {kCloseByUser, kCloseByLibrary}) {
    const HWND alert = ask(reason);
    texts[reason] = NativeTitle(ControlsOf(alert, L"Static")[0]);
    SendMessageW(alert, WM_CLOSE, 0, 0);
    EXPECT_EQ(fQuestion.fLog.Take(), "cancel");
  }
  EXPECT_NE(texts[0], texts[1]);
}

}  // namespace NSMorvaneTest
