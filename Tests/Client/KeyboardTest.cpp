// Keys on their way: the focus chain, the window, Tab, the application; listeners of modifier keys; releases.
#include "Support/MouseFixture.h"

namespace NSMorvaneTest {

class KeyboardTest : public ClientWindowTest {
 protected:
  KeyboardTest() {
    fRecord.fHooks["HandleKeyDown"] = [this] { fLog.Add("window:key"); };
    fRun.fHooks["HandleKeyDown"] = [this] { fLog.Add("run:key"); };
  }
  ~KeyboardTest() override { Hold({}); }

  // Has the loop handle a key message; the flags are those of its lParam. Answers the calls of views, and of
  // those who write into their log.
  std::string Press(WPARAM key, std::uint32_t flags = 0, UINT message = WM_KEYDOWN) {
    ViewCalls();
    EXPECT_TRUE(PostMessageW(Hwnd(), message, key, static_cast<LPARAM>(flags | 1)));
    MSG msg;
    while (PeekMessageW(&msg, Hwnd(), WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE))
      EXPECT_EQ(fMorvane->IMorvane_Yield(), kOK);
    return ViewCalls();
  }
  std::string LetGo(WPARAM key) { return Press(key, 0xC0000000u, WM_KEYUP); }
  // These keys are down from now on, and no other.
  static void Hold(const std::vector<int>& keys) {
    BYTE state[256] = {};
    for (const int key : keys) state[key] = 0x80;
    EXPECT_TRUE(SetKeyboardState(state));
  }
  CallLog& fLog = fViewRecord.fLog;
};

// Who is offered a key, and in which order, is tested with the dispatch.
TEST_IN_RUN(KeyboardTest, AKeyGoesUntilSomebodyTakesIt) {
  OpenWithFocusTree();
  SetFocus("leaf");
  EXPECT_EQ(Press('A'), "leaf:key inner:key outer:key window:key run:key");
  EXPECT_EQ(Press(255), "");
  // What somebody takes stays from the system, which would close the window for this one.
  fRecord.fHooks["RequestClose"] = kOK;
  for (const TFlag handled : {1, 0}) {
    fViewRecord.fHooks["leaf:key"] = Handles(handled);
    Press(VK_F4, 0x20000000, WM_SYSKEYDOWN);
    Turn();
    EXPECT_EQ(fRecord.fLog.Count("RequestClose:0"), handled ? 0 : 1);
  }
  fRecord.fHooks.erase("RequestClose");
  SetTabViews({"leaf", "other", "inner"});
  Press(VK_TAB);
  EXPECT_EQ(Focus(), "other");
  Hold({VK_SHIFT});
  Press(VK_TAB);
  EXPECT_EQ(Focus(), "leaf");
  // A failure ends the chain, and is reported.
  fViewRecord.fHooks["inner:key"] = TError(100321);
  EXPECT_EQ(Press('A'), "leaf:key inner:key");
  ExpectReported(100321);
}

TEST_IN_RUN(KeyboardTest, WhatAKeyEventTells) {
  // Told are virtual key, scan code, extended, modifiers, repeat; last what the key is called.
  using Numbers = std::vector<std::uint32_t>;
  const Rows<UINT, WPARAM, std::uint32_t, std::vector<int>, Numbers, std::u16string> rows = {
      {WM_KEYDOWN, 'A', 0x401E0000, {VK_SHIFT}, {'A', 0x1E, 0, 2, 1}, u"Shift+A"},
      {WM_KEYDOWN, VK_LEFT, 0x014B0000, {VK_CONTROL}, {VK_LEFT, 0x4B, 1, 8, 0}, u"Ctrl+Left"},
      {WM_SYSKEYDOWN, 'Q', 0x20100000, {VK_MENU, VK_CONTROL}, {'Q', 0x10, 0, 12, 0}, u"Ctrl+Alt+Q"}};
  OpenWithFocusTree();
  SetFocus("leaf");
  const TKeyEvent& event = fViewRecord.fKey;
  const TPhysicalKeySpec& key = event.fPhysicalKey;
  fViewRecord.fHooks["leaf:key"] = [&] { EXPECT_EQ(event.fTimeMS, static_cast<DWORD>(GetMessageTime())); };
  for (const auto& [message, pressed, flags, held, told, name] : rows) {
    SCOPED_TRACE(::testing::PrintToString(name));
    Hold(held);
    Press(pressed, flags, message);
    EXPECT_EQ(
        (Numbers{key.fVirtualKey, key.fScanCode, key.fExtended, event.fModifiers.fKeys, event.fIsRepeat}),
        told);
    EXPECT_TRUE(IsKey(*fMorvane, event, name));
    EXPECT_FALSE(IsKey(*fMorvane, event, u"Ctrl+A"));
    EXPECT_FALSE(IsKey(*fMorvane, event, u"Ctrl+Nothing"));
  }
}

// As from a touch keyboard or a list of symbols.
TEST_IN_RUN(KeyboardTest, TextWithoutAKey) {
  OpenWithFocusTree();
  SetFocus("leaf");
  std::u16string told;
  fViewRecord.fHooks["leaf:key"] = [&] {
    const TKeyEvent event = fViewRecord.fKey;
    TKeyInterpretation meaning = {};
    EXPECT_EQ(fMorvane->IMorvane_GetDefaultInterpretation(event.fPhysicalKey, event.fModifiers, meaning),
              kOK);
    told += meaning.fKeyText;
  };
  const std::u16string text = u"\u20AC\U0001F600";
  for (const char16_t unit : text) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = unit;
    input.ki.dwFlags = KEYEVENTF_UNICODE;
    SendInputs({input});
    input.ki.dwFlags |= KEYEVENTF_KEYUP;
    SendInputs({input});
  }
  EXPECT_TRUE(YieldUntil([&] { return told.size() >= text.size(); }));
  EXPECT_EQ(told, text);
}

// --- Modifier keys and releases

namespace {

// Writes down the modifiers before and after; of releases the key and the reason.
class Listener : public IModifierKeyListener, public IKeyReleaseCallback {
 public:
  Listener(ViewRecord& record, const char* name) : fRecord(record), fName(name) {}
  TError IModifierKeyListener_OnModifiersChanged(const TModifierKeysEvent& previous,
                                                 const TModifierKeysEvent& now) override {
    EXPECT_EQ(now.fTimeMS, static_cast<DWORD>(GetMessageTime()));
    fRecord.Call(fName,
                 std::to_string(previous.fModifiers.fKeys) + ">" + std::to_string(now.fModifiers.fKeys));
    return kOtherError;  // nobody looks at it
  }
  TError IKeyReleaseCallback_OnKeyReleased(const TPhysicalKeySpec& key, TKeyReleaseReason reason) override {
    return fRecord.Call(fName, std::to_string(key.fVirtualKey) + ":" + std::to_string(reason));
  }

 private:
  ViewRecord& fRecord;
  std::string fName;
};

}  // namespace

TEST_IN_RUN(KeyboardTest, ModifierKeys) {
  Listener a(fViewRecord, "a");
  OpenWithFocusTree();
  fRecord.fHooks["HandleKeyDown"].fHandled = 1;
  EXPECT_EQ(fMorvane->IMorvane_AttachModifierKeyListener(&a), kOK);
  Hold({VK_SHIFT});
  EXPECT_EQ(Press(VK_SHIFT), "a0>2 window:key");
  EXPECT_EQ(Press(VK_SHIFT, 0x40000000), "window:key");  // a repeat
  EXPECT_EQ(Press('A'), "window:key");
  Hold({VK_SHIFT, VK_CONTROL});
  EXPECT_EQ(Press(VK_RCONTROL), "a2>10 window:key");

  // The mouse capture comes first. Its failure does not use the message up, and the event counts as told.
  EXPECT_EQ(fMorvane->IMorvane_AllocateMouseCapture(&Window(), new RecordingCapture(fViewRecord)), kOK);
  EXPECT_EQ(Press('A'), "@:key window:key");
  fViewRecord.fHooks["@:key"] = Handles();
  EXPECT_EQ(Press('A'), "@:key");
  Hold({VK_SHIFT});
  fViewRecord.fHooks["@"] = TError(100323);
  EXPECT_EQ(Press(VK_SHIFT), "@10>2 @:key");
  ExpectReported(100323);
  fViewRecord.fHooks.erase("@");
  EXPECT_EQ(LetGo(VK_CONTROL), "@2>2");
  EXPECT_EQ(fMorvane->IMorvane_ReleaseMouseCapture(), kOK);

  EXPECT_EQ(fMorvane->IMorvane_DetachModifierKeyListener(&a), kOK);
  Hold({});
  EXPECT_EQ(LetGo(VK_SHIFT), "");
  EXPECT_EQ(fMorvane->IMorvane_DetachModifierKeyListener(&a), kBadInputProgrammingError);
  EXPECT_NE(fOutput.TakeAssertions(), "");
}

// What becomes of many callbacks, and of those that fail, is tested with the list of them.
TEST_IN_RUN(KeyboardTest, ReleasesAreToldOnce) {
  Listener a(fViewRecord, "a"), b(fViewRecord, "b");
  const auto install = [this](std::uint32_t key, Listener& callback) {
    EXPECT_EQ(fMorvane->IMorvane_InstallKeyReleaseCallback(key, &callback), kOK);
  };
  const auto deactivate = [this] { Send(WM_ACTIVATE, WA_INACTIVE); };
  OpenWithFocusTree();
  install('A', a);
  install('B', b);
  fViewRecord.fHooks["a"] = TError(100321);
  EXPECT_EQ(LetGo('A'), "a65:713");
  ExpectReported(100321);
  EXPECT_EQ(LetGo('A'), "");
  EXPECT_EQ(fMorvane->IMorvane_RemoveKeyReleaseCallback('B', &b), kOK);
  EXPECT_EQ(fMorvane->IMorvane_RemoveKeyReleaseCallback('B', &b), kOtherError);
  // Without a focus view the window does not hold the keyboard for anybody.
  install('A', a);
  EXPECT_EQ(ViewCallsOf(deactivate), "");
  SetFocus("other");
  EXPECT_EQ(ViewCallsOf(deactivate), "other:off a65:714");
  ExpectReported(100321);
}

}  // namespace NSMorvaneTest
