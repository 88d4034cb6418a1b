// Alert boxes: what is shown, how each button is pressed, and what becomes of the windows around.
#include "Support/ClientWindows.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

class AlertTest : public ClientWindowTest {
 protected:
  struct Listener : IAlertBoxListener, ISaveChangesBehavior, CallRecorder {
    TError IAlertBoxListener_OnResponse(TAlertResponse response) override {
      return Call("answer:", std::to_string(response - kAlertResponseFirst + 1));
    }
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
  // Without an owner it blocks the application. Answers the window that is active then, the alert.
  HWND ShowAlert(const TAlertSpec& spec, IModalOwner* owner = nullptr, TFlag blocking = 0) {
    EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(owner, blocking, spec, &fListener), kOK);
    return GetActiveWindow();
  }
  HWND Ask(TCloseReason reason = kCloseByUser, const TChar* name = u"A & B") {
    EXPECT_EQ(fMorvane->IMorvane_CreateSaveChangesDialog(&fListener, fRecord.fOwner, 0, name, reason), kOK);
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
  // What the system needs for a text of this width, as a control of this style shows it.
  static TSize SizeOfText(const std::wstring& text, LONG width, LONG style) {
    const HDC hdc = GetDC(nullptr);
    const HGDIOBJ font = SelectObject(hdc, GetStockObject(DEFAULT_GUI_FONT));
    RECT needed = {0, 0, width, 0};
    const UINT breaks = style & SS_EDITCONTROL ? DT_EDITCONTROL : 0;
    DrawTextW(hdc, text.c_str(), -1, &needed,
              breaks | DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
    SelectObject(hdc, font);
    ReleaseDC(nullptr, hdc);
    return text.empty() ? TSize{} : TSize{needed.right, needed.bottom};
  }
  // Does something as the user does, and waits until the alert has gone.
  std::string AnswerBy(HWND alert, const std::function<void()>& input) {
    EXPECT_EQ(GetActiveWindow(), alert);
    input();
    EXPECT_TRUE(YieldUntil([=] { return !IsWindow(alert); }));
    return fListener.fLog.Take();
  }

  Listener fListener;
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
  // Without a label for the last button, Escape is the last one that there is.
  for (const auto& [layout, answer] : Rows<TAlertButtonLayout, const char*>{
           {kFirstOfTwo, "answer:1"}, {kAlertThreeButtonsFirstDefault, "answer:2"}}) {
    TAlertSpec spec = Spec(layout);
    (layout == kFirstOfTwo ? spec.fButton2 : spec.fButton3)[0] = 0;
    EXPECT_EQ(AnswerBy(ShowAlert(spec, fRecord.fOwner), press({VK_ESCAPE})), answer);
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
    const LONG style = GetWindowLongW(statics[0], GWL_STYLE);
    const TSize needed = SizeOfText(NativeTitle(statics[0]), WidthOf(text), style);
    EXPECT_LE(needed.fWidth, WidthOf(text));
    EXPECT_LE(needed.fHeight, HeightOf(text));
    EXPECT_TRUE(style & SS_NOPREFIX);
    if (hasIcon) {
      const int icons[] = {32513, 32516, 32515};
      EXPECT_EQ(reinterpret_cast<HICON>(SendMessageW(statics[1], STM_GETICON, 0, 0)),
                LoadIconW(nullptr, MAKEINTRESOURCEW(icons[kind - kAlertStop])));
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
  ::SetFocus(GetDlgItem(second, IDCANCEL));
  SendMessageW(second, WM_ACTIVATE, WA_INACTIVE, 0);
  ::SetFocus(nullptr);
  SendMessageW(second, WM_ACTIVATE, WA_CLICKACTIVE, 0);
  EXPECT_EQ(answerBy(second, VK_SPACE), "answer:2");
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
  EXPECT_EQ(GetActiveWindow(), Hwnd());
  // One that blocks returns with the answer.
  Then([this] {
    EXPECT_EQ(fListener.fLog.Take(), "");
    PressKeys({VK_RETURN});
  });
  ShowAlert(Spec(kSecondOfTwo), nullptr, 1);
  EXPECT_EQ(fListener.fLog.Take(), "answer:2");
  // An owner that ends while it comes back.
  WindowRecord& gone = MakeNamed("doc", {}, nullptr, kSizeable);
  ShowWindow(gone.fHwnd, SW_MINIMIZE);
  gone.fHooks["PlacementChanged"] = [&] { Release(gone); };
  const HWND left = ShowAlert(Spec(kAlertOneButton), gone.fOwner);
  EXPECT_FALSE(IsWindow(gone.fHwnd));
  EXPECT_EQ(answerBy(left, VK_RETURN), "answer:1");
  // A dialog that somebody else has put over the document and that blocks nothing, to search for texts say:
  // the document can be used again, whatever the alert has blocked.
  const HWND search = CreateWindowExW(0, L"#32770", L"Search", WS_POPUP | WS_CAPTION, 9, 9, 90, 90, Hwnd(),
                                      nullptr, nullptr, nullptr);
  ShowWindow(search, SW_SHOWNA);
  for (IModalOwner* const owner : {fRecord.fOwner, static_cast<IModalOwner*>(nullptr)}) {
    const HWND alert = ShowAlert(Spec(kAlertOneButton), owner);
    EXPECT_FALSE(IsWindowEnabled(Hwnd()));
    EXPECT_EQ(answerBy(alert, VK_RETURN), "answer:1");
    EXPECT_TRUE(IsWindowEnabled(Hwnd()) && IsWindowEnabled(search));
  }
  // Nor does it count while it is hidden, though it is the one that was active last.
  const WindowRecord& other = MakeNamed("doc1");
  SetActiveWindow(search);
  SetActiveWindow(other.fHwnd);
  ShowWindow(search, SW_HIDE);
  EXPECT_EQ(GetLastActivePopup(Hwnd()), search);
  const HWND last = ShowAlert(Spec(kAlertOneButton));
  EXPECT_FALSE(IsWindowEnabled(Hwnd()));
  EXPECT_EQ(answerBy(last, VK_RETURN), "answer:1");
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
  DestroyWindow(search);
  // Nobody need listen.
  EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(nullptr, 0, Spec(kAlertOneButton), nullptr), kOK);
  answerBy(GetActiveWindow(), VK_ESCAPE);
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

// Labels beyond the layout make no buttons, and long ones make wide ones. The owner need not be the
// library's.
TEST_IN_RUN(AlertTest, LabelsAndOwners) {
  struct Owner : IModalOwner {
    TError IModalOwner_GetNativeWindow(TNativeWindow& out) override {
      out.fHwnd = nullptr;
      return fError;
    }
    TError fError = kOK;
  } owner;
  TAlertSpec spec = Spec(kAlertOneButton);
  CopyText(spec.fButton1, std::u16string(40, u'W'));
  CopyText(spec.fButton2, u"No");
  CopyText(spec.fButton3, u"button");
  const HWND alert = ShowAlert(spec, &owner);
  EXPECT_FALSE(GetDlgItem(alert, IDCANCEL) || GetDlgItem(alert, IDNO));
  const HWND button = GetDlgItem(alert, IDOK);
  const int width = WidthOf(NativeFrame(button));
  EXPECT_EQ(width, SizeOfText(NativeTitle(button), 10000, 0).fWidth + 16);
  EXPECT_EQ(NativeClientSize(alert).fWidth, width + 25);
  EXPECT_EQ(AnswerBy(alert, [] { PressKeys({VK_ESCAPE}); }), "answer:1");
  owner.fError = TError(100321);
  EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(&owner, 0, spec, &fListener), owner.fError);
}

// Wherever the owner is and however high the text. The monitor tells of a task bar at the bottom.
TEST_IN_RUN(AlertTest, StaysOnTheScreen) {
  Open();
  BOOL(WINAPI* const withTaskBar)
  (HMONITOR, LPMONITORINFO) = [](HMONITOR monitor, LPMONITORINFO info) {
    const BOOL result = GetMonitorInfoW(monitor, info);
    info->rcWork.bottom -= 200;
    return result;
  };
  const PatchedImport patch(L"Morvane.dll", "GetMonitorInfoW", withTaskBar);
  const int right = GetSystemMetrics(SM_CXSCREEN), bottom = GetSystemMetrics(SM_CYSCREEN) - 200;
  for (const std::size_t lines : {1, 30, 1000})
    for (const POINT& place : {POINT{0, 0}, {0, bottom - 30}, {right - 60, 0}, {-200, -100}}) {
      SetWindowPos(Hwnd(), nullptr, place.x, place.y, 300, 100, SWP_NOZORDER);
      const HWND alert = ShowAlert(
          Spec(kAlertOneButton, kAlertNote, u"Lines", std::u16string(lines, u'\x2029')), fRecord.fOwner);
      const TRect frame = NativeFrame(alert), button = NativeFrame(GetDlgItem(alert, IDOK));
      EXPECT_TRUE(frame.fLeft >= 0 && frame.fTop >= 0 && frame.fRight <= right && frame.fBottom <= bottom)
          << lines << " " << ::testing::PrintToString(frame);
      EXPECT_TRUE(button.fTop > frame.fTop && button.fBottom < frame.fBottom)
          << lines << " " << ::testing::PrintToString(button);
      AnswerBy(alert, [] { PressKeys({VK_RETURN}); });
    }
}

// Whatever happens while the listener is told.
TEST_IN_RUN(AlertTest, IsAnsweredOnce) {
  Open();
  HWND alert = nullptr;
  for (const auto& inside : std::vector<std::function<void()>>{
           [&] {
             PostMessageW(GetFocus(), WM_KEYDOWN, VK_RETURN, 0);
             Turn();
           },
           [&] { SendMessageW(alert, WM_CLOSE, 0, 0); }, [&] { SendMessageW(alert, WM_COMMAND, 2, 0); }}) {
    fListener.fHooks["answer:"] = [&] {
      fListener.fHooks.clear();
      inside();
    };
    alert = ShowAlert(Spec(kFirstOfTwo), fRecord.fOwner);
    EXPECT_EQ(AnswerBy(alert, [] { PressKeys({VK_RETURN}); }), "answer:1");
  }
  // Quitting asks the front window to close, which the alert is, after the listener has gone.
  struct LastListener : IAlertBoxListener {
    LastListener(const std::function<void()>& quit, int& answers) : fQuit(quit), fAnswers(answers) {}
    TError IAlertBoxListener_OnResponse(TAlertResponse) override {
      const auto quit = fQuit;
      if (++fAnswers == 1) delete this;
      quit();
      return kOK;
    }
    std::function<void()> fQuit;
    int& fAnswers;
  };
  int answers = 0;
  EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(fRecord.fOwner, 0, Spec(kAlertOneButton),
                                              new LastListener([this] { Quit(); }, answers)),
            kOK);
  AnswerBy(GetActiveWindow(), [] { PressKeys({VK_RETURN}); });
  EXPECT_EQ(answers, 1);
}

// In the middle of an answer, which is the usual way to close a document, or before there is one.
TEST_IN_RUN(AlertTest, TheOwnerIsReleased) {
  Do("+doc");
  for (const auto& [id, wanted] :
       Rows<int, std::string>{{6, "save"}, {7, "discard"}, {2, "cancel"}, {0, ""}}) {
    Open();
    const HWND owner = Hwnd(), alert = Ask();
    fListener.fHooks[wanted] = [this] { Release(fRecord); };
    if (id != 0)
      SendMessageW(alert, WM_COMMAND, static_cast<WPARAM>(id), 0);
    else
      Release(fRecord);
    EXPECT_FALSE(IsWindow(owner) || IsWindow(alert)) << wanted;
    EXPECT_EQ(fListener.fLog.Take(), wanted);
    EXPECT_EQ(fOutput.TakeAssertions(), "") << wanted;
    EXPECT_EQ(Picture(), "doc+*") << wanted;
  }
  // One that fails as well is left alone on the screen.
  Open();
  const HWND alert = ShowAlert(Spec(kAlertOneButton), fRecord.fOwner);
  fListener.fHooks["answer:"] = [this] {
    fListener.fHooks.clear();
    Release(fRecord);
    return TError(100321);
  };
  PressKeys({VK_RETURN});
  ExpectReported(100321);
  fListener.fLog.Take();
  EXPECT_EQ(AnswerBy(alert, [] { PressKeys({VK_RETURN}); }), "answer:1");
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

TEST_IN_RUN(AlertTest, SaveChanges) {
  Open();
  for (const auto& [keys, answer] : std::vector<std::pair<std::vector<WORD>, std::string>>{
           {{VK_RETURN}, "save"}, {{VK_ESCAPE}, "cancel"}, {{VK_TAB, VK_SPACE}, "discard"}}) {
    const auto press = [&keys = keys] {
      for (const WORD key : keys) PressKeys({key});
    };
    EXPECT_EQ(AnswerBy(Ask(), press), answer);
  }
  // The two reasons have texts of their own, both with the name of what is to be saved.
  std::wstring texts[2];
  for (const TCloseReason reason : {kCloseByUser, kCloseByLibrary}) {
    const HWND alert = Ask(reason);
    texts[reason] = NativeTitle(StaticsOf(alert)[0]);
    EXPECT_NE(texts[reason].find(L"A & B"), std::wstring::npos);
    EXPECT_EQ(AnswerBy(alert, [=] { SendMessageW(alert, WM_CLOSE, 0, 0); }), "cancel");
  }
  EXPECT_NE(texts[0], texts[1]);
  // A document without a name; an answer that fails; one that is waited for.
  const HWND alert = Ask(kCloseByUser, nullptr);
  EXPECT_NE(NativeTitle(StaticsOf(alert)[0]).find(L"\"\""), std::wstring::npos);
  EXPECT_EQ(NativeTitle(alert), L"Scenario");
  fListener.fHooks["save"] = TError(100321);
  PressKeys({VK_RETURN});
  ExpectReported(100321);
  EXPECT_EQ(AnswerBy(alert, [] { PressKeys({VK_ESCAPE}); }), "save cancel");
  Then([] { PressKeys({VK_ESCAPE}); });
  EXPECT_EQ(fMorvane->IMorvane_CreateSaveChangesDialog(&fListener, nullptr, 1, u"", kCloseByUser), kOK);
  EXPECT_EQ(fListener.fLog.Take(), "cancel");
  // The end of the session, and with it that of all windows, answers what is open.
  Ask();
  EXPECT_EQ(Send(WM_QUERYENDSESSION), 1);
  EXPECT_EQ(fListener.fLog.Take(), "cancel");
}

}  // namespace NSMorvaneTest
