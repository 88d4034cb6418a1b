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
  static constexpr auto kFirstOfTwo = kAlertTwoButtonsFirstDefault;
  static constexpr auto kSecondOfTwo = kAlertTwoButtonsSecondDefault;
  static constexpr auto kThirdOfThree = kAlertThreeButtonsThirdDefault;

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
  // The alert that comes to the front; the next ones block the application, or this owner.
  HWND ShowAlert(const TAlertSpec& spec, IModalOwner* owner = nullptr, TFlag blocking = 0) {
    EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(owner, blocking, spec, &fListener), kOK);
    return GetActiveWindow();
  }
  // In the client coordinates of the alert.
  static TRect PlaceIn(HWND alert, HWND control) {
    RECT rect = {};
    GetWindowRect(control, &rect);
    MapWindowPoints(nullptr, alert, reinterpret_cast<POINT*>(&rect), 2);
    return NativeRect(rect);
  }
  // The text, and behind it the icon, if there is one.
  static std::vector<HWND> StaticsOf(HWND alert) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(alert, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
      if (NativeClass(child) == L"Static") controls.push_back(child);
    return controls;
  }
  // The height that the system needs for a text of this width.
  static LONG HeightOfText(const std::wstring& text, LONG width) {
    const HDC hdc = GetDC(nullptr);
    const HGDIOBJ font = SelectObject(hdc, GetStockObject(DEFAULT_GUI_FONT));
    RECT needed = {0, 0, width, 0};
    DrawTextW(hdc, text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
    SelectObject(hdc, font);
    ReleaseDC(nullptr, hdc);
    return text.empty() ? 0 : needed.bottom;
  }
  // Does something as the user does, and waits until the alert has gone.
  std::string AnswerBy(HWND alert, const std::function<void()>& input) {
    EXPECT_EQ(GetActiveWindow(), alert);
    input();
    EXPECT_TRUE(YieldUntil([=] { return !IsWindow(alert); }));
    return fListener.fLog.Take() + fQuestion.fLog.Take();
  }

  Listener fListener;
  Question fQuestion;
};

// Which button an answer stands for, and where each one stands, is tested with the layout.
TEST_IN_RUN(AlertTest, EachWayToAnswer) {
  Open();
  HWND alert = nullptr;
  const auto click = [&](int id) {
    return [&, id] {
      const TPoint middle = MiddleOf(NativeFrame(GetDlgItem(alert, id)));
      ClickLeft({middle.fX, middle.fY});
    };
  };
  const auto press = [](const std::vector<WORD>& keys) { return [=] { PressKeys(keys); }; };
  const auto close = [&] { PostMessageW(alert, WM_CLOSE, 0, 0); };
  using Input = std::function<void()>;
  for (const auto& [way, layout, input, answer] : Rows<const char*, TAlertButtonLayout, Input, const char*>{
           {"escape, one button", kAlertOneButton, press({VK_ESCAPE}), "answer:1"},
           {"return, the second is the default", kSecondOfTwo, press({VK_RETURN}), "answer:2"},
           {"click on the first", kFirstOfTwo, click(IDOK), "answer:1"},
           {"click on the third", kThirdOfThree, click(IDCANCEL), "answer:3"},
           {"letter of the second", kThirdOfThree, press({VK_MENU, 'T'}), "answer:2"},
           {"close", kAlertThreeButtonsFirstDefault, close, "answer:3"}}) {
    alert = ShowAlert(Spec(layout), fRecord.fOwner);
    EXPECT_EQ(AnswerBy(alert, input), answer) << way;
  }
  EXPECT_EQ(fOutput.TakeAssertions(), "");
  const TAlertSpec unknown = Spec(static_cast<TAlertButtonLayout>(14005));
  EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(nullptr, 0, unknown, &fListener), kOtherError);
  EXPECT_EQ(fOutput.TakeAssertions(), "false");
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
}

TEST_IN_RUN(AlertTest, WhatIsShownAndWhere) {
  Open();
  const std::u16string longWords =
      u"Words that are broken where a line is full, between the words and not within, so that whoever reads "
      u"them can do so without trouble, however many of them there are in a line.";
  for (const auto& [kind, message, details] : Rows<TAlertKind, std::u16string, std::u16string>{
           {kAlertPlain, u"Short", u""},
           {kAlertStop, u"Tom & Jerry", u"Details\x2029of three\r\nlines"},
           {kAlertNote, std::u16string(1023, u'm'), std::u16string(1000, u'd')},
           {kAlertCaution, longWords, u""},
           {kAlertPlain, u"", u""}}) {
    const HWND alert = ShowAlert(Spec(kFirstOfTwo, kind, message, details), fRecord.fOwner);
    EXPECT_EQ(NativeTitle(alert), L"Scenario");
    EXPECT_EQ(GetWindowLongW(alert, GWL_STYLE) & WS_THICKFRAME, 0);
    const std::vector<HWND> statics = StaticsOf(alert);
    const bool hasIcon = kind != kAlertPlain;
    ASSERT_EQ(statics.size(), hasIcon ? 2u : 1u);
    const TRect text = PlaceIn(alert, statics[0]);
    EXPECT_LE(HeightOfText(NativeTitle(statics[0]), WidthOf(text)), HeightOf(text));
    EXPECT_TRUE(GetWindowLongW(statics[0], GWL_STYLE) & SS_NOPREFIX);
    if (hasIcon) {
      EXPECT_NE(SendMessageW(statics[1], STM_GETICON, 0, 0), 0);
    }
    EXPECT_NEAR(PlaceIn(alert, GetDlgItem(alert, IDOK)).fLeft,
                NativeClientSize(alert).fWidth - PlaceIn(alert, GetDlgItem(alert, IDCANCEL)).fRight, 1);
    EXPECT_EQ(GetFocus(), GetDlgItem(alert, IDOK));
    AnswerBy(alert, [] { PressKeys({VK_RETURN}); });
  }
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

TEST_IN_RUN(AlertTest, WindowsAround) {
  Open();
  const auto answerBy = [this](HWND alert, WORD key) { return AnswerBy(alert, [=] { PressKeys({key}); }); };
  // Over a minimized owner, which comes back; it is blocked until the answer.
  ShowWindow(Hwnd(), SW_MINIMIZE);
  const HWND first = ShowAlert(Spec(kAlertOneButton), fRecord.fOwner);
  EXPECT_FALSE(IsIconic(Hwnd()) || IsWindowEnabled(Hwnd()));
  const TPoint middle = MiddleOf(NativeFrame(first)), around = MiddleOf(NativeFrame(Hwnd()));
  EXPECT_NEAR(middle.fX, around.fX, 1);
  EXPECT_NEAR(middle.fY, around.fY, 1);
  // A second one, for the application. The focus is kept while another window is active.
  const HWND second = ShowAlert(Spec(kFirstOfTwo));
  EXPECT_FALSE(IsWindowEnabled(first));
  ::SetFocus(GetDlgItem(second, IDCANCEL));
  SendMessageW(second, WM_ACTIVATE, WA_INACTIVE, 0);
  ::SetFocus(nullptr);
  SendMessageW(second, WM_ACTIVATE, WA_CLICKACTIVE, 0);
  EXPECT_EQ(answerBy(second, VK_SPACE), "answer:2");
  EXPECT_TRUE(IsWindowEnabled(first));
  // A listener that fails keeps the window; one that opens the next alert loses none.
  fListener.fHooks["answer:"] = TError(100321);
  PressKeys({VK_RETURN});
  ExpectReported(100321);
  EXPECT_TRUE(IsWindow(first));
  fListener.fLog.Take();
  HWND next = nullptr;
  fListener.fHooks["answer:"] = [&] {
    fListener.fHooks.clear();
    next = ShowAlert(Spec(kAlertOneButton), fRecord.fOwner);
  };
  EXPECT_EQ(answerBy(first, VK_RETURN), "answer:1");
  EXPECT_FALSE(IsWindowEnabled(Hwnd()));
  EXPECT_EQ(answerBy(next, VK_RETURN), "answer:1");
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
  EXPECT_EQ(GetActiveWindow(), Hwnd());
  // One that blocks returns with the answer.
  Then([this] {
    EXPECT_EQ(fListener.fLog.Take(), "");
    PressKeys({VK_RETURN});
  });
  ShowAlert(Spec(kSecondOfTwo), nullptr, 1);
  EXPECT_EQ(fListener.fLog.Take(), "answer:2");
  // Nobody need listen.
  EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(nullptr, 0, Spec(kAlertOneButton), nullptr), kOK);
  answerBy(GetActiveWindow(), VK_ESCAPE);
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

TEST_IN_RUN(AlertTest, SaveChanges) {
  Open();
  const auto ask = [this](TCloseReason reason) {
    EXPECT_EQ(fMorvane->IMorvane_CreateSaveChangesDialog(&fQuestion, fRecord.fOwner, 0, u"A & B", reason),
              kOK);
    return GetActiveWindow();
  };
  for (const auto& [keys, answer] : std::vector<std::pair<std::vector<WORD>, std::string>>{
           {{VK_RETURN}, "save"}, {{VK_ESCAPE}, "cancel"}, {{VK_TAB, VK_SPACE}, "discard"}}) {
    const auto press = [&keys = keys] {
      for (const WORD key : keys) PressKeys({key});
    };
    EXPECT_EQ(AnswerBy(ask(kCloseByUser), press), answer);
  }
  // The two reasons have texts of their own, both with the name of what is to be saved.
  std::wstring texts[2];
  for (const TCloseReason reason : {kCloseByUser, kCloseByLibrary}) {
    const HWND alert = ask(reason);
    texts[reason] = NativeTitle(StaticsOf(alert)[0]);
    EXPECT_NE(texts[reason].find(L"A & B"), std::wstring::npos);
    EXPECT_EQ(AnswerBy(alert, [=] { SendMessageW(alert, WM_CLOSE, 0, 0); }), "cancel");
  }
  EXPECT_NE(texts[0], texts[1]);
}

}  // namespace NSMorvaneTest
