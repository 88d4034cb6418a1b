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
  // The focus after each of several presses of Tab.
  std::string Walk(int count) {
    std::string names;
    for (; count > 0; --count) Press(VK_TAB), names += Focus() + " ";
    return names;
  }

  CallLog& fLog = fViewRecord.fLog;
};

// --- The chain

TEST_IN_RUN(KeyboardTest, AKeyGoesUntilSomebodyTakesIt) {
  OpenWithFocusTree();
  SetFocus("leaf");
  const std::string views = "leaf:key inner:key outer:key";
  EXPECT_EQ(Press('A'), views + " window:key run:key");
  fRecord.fHooks["HandleKeyDown"].fHandled = 1;
  EXPECT_EQ(Press('A'), views + " window:key");
  fRecord.fHooks["HandleKeyDown"].fHandled = 0;
  EXPECT_EQ(Press(255), "");
  // What somebody takes stays from the system, which would close the window for this one.
  fRecord.fHooks["RequestClose"] = kOK;
  const auto closesByKey = [this](TFlag handled) {
    fViewRecord.fHooks["leaf:key"] = Handles(handled);
    Press(VK_F4, 0x20000000, WM_SYSKEYDOWN);
    Turn();
    return fRecord.fLog.Count("RequestClose:0");
  };
  EXPECT_EQ(closesByKey(1), 0);
  EXPECT_EQ(closesByKey(0), 1);
  fRecord.fHooks.erase("RequestClose");
  SetFocus("");
  EXPECT_EQ(Press('A'), "window:key run:key");

  // A failure ends the chain, and is reported.
  SetFocus("leaf");
  fViewRecord.fHooks["inner:key"] = TError(100321);
  EXPECT_EQ(Press('A'), "leaf:key inner:key");
  ExpectReported(100321);
}

TEST_IN_RUN(KeyboardTest, WhatAKeyEventTells) {
  const struct {
    WPARAM fKey;
    std::uint32_t fFlags;  // of the message
    UINT fMessage;
    std::vector<int> fHeld;
    std::vector<std::uint32_t> fTold;  // virtual key, scan code, extended, modifiers, repeat
  } rows[] = {
      {'A', 0x401E0000, WM_KEYDOWN, {VK_SHIFT}, {'A', 0x1E, 0, kModifierShift, 1}},
      {VK_RETURN, 0x011C0000, WM_KEYDOWN, {VK_CONTROL}, {VK_RETURN, 0x1C, 1, kModifierControl, 0}},
      {'Q', 0x20100000, WM_SYSKEYDOWN, {VK_MENU, VK_CONTROL}, {'Q', 0x10, 0, 12, 0}},
  };
  OpenWithFocusTree();
  SetFocus("leaf");
  const TKeyEvent& event = fViewRecord.fKey;
  const TPhysicalKeySpec& key = event.fPhysicalKey;
  fViewRecord.fHooks["leaf:key"] = [&] { EXPECT_EQ(event.fTimeMS, static_cast<DWORD>(GetMessageTime())); };
  for (const auto& row : rows) {
    Hold(row.fHeld);
    Press(row.fKey, row.fFlags, row.fMessage);
    EXPECT_EQ((std::vector<std::uint32_t>{key.fVirtualKey, key.fScanCode, key.fExtended,
                                          event.fModifiers.fKeys, event.fIsRepeat}),
              row.fTold);
  }
}

// --- Tab

TEST_IN_RUN(KeyboardTest, TabFollowsTheTabViews) {
  OpenWithFocusTree();
  SetTabViews({"leaf", "other", "inner"});
  EXPECT_EQ(Walk(2), "leaf other ");
  Hold({VK_SHIFT});
  EXPECT_EQ(Walk(2), "leaf inner ");
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
  Listener a(fViewRecord, "a"), b(fViewRecord, "b");
  OpenWithFocusTree();
  fRecord.fHooks["HandleKeyDown"].fHandled = 1;
  EXPECT_EQ(fMorvane->IMorvane_AttachModifierKeyListener(&a), kOK);
  EXPECT_EQ(fMorvane->IMorvane_AttachModifierKeyListener(&b), kOK);
  Hold({VK_SHIFT});
  EXPECT_EQ(Press(VK_SHIFT), "a0>2 b0>2 window:key");
  EXPECT_EQ(Press(VK_SHIFT, 0x40000000), "window:key");  // a repeat
  EXPECT_EQ(Press('A'), "window:key");
  Hold({VK_SHIFT, VK_CONTROL});
  EXPECT_EQ(Press(VK_RCONTROL), "a2>10 b2>10 window:key");

  // The mouse capture comes first. Its failure uses the message up, and the event does not count as told.
  EXPECT_EQ(fMorvane->IMorvane_AllocateMouseCapture(&Window(), new RecordingCapture(fViewRecord)), kOK);
  EXPECT_EQ(Press('A'), "@:key window:key");
  fViewRecord.fHooks["@:key"] = Handles();
  EXPECT_EQ(Press('A'), "@:key");
  Hold({VK_SHIFT});
  fViewRecord.fHooks["@"] = TError(100323);
  EXPECT_EQ(LetGo(VK_CONTROL), "@10>2");
  ExpectReported(100323);
  EXPECT_EQ(fMorvane->IMorvane_ReleaseMouseCapture(), kOK);

  for (Listener* const listener : {&a, &b})
    EXPECT_EQ(fMorvane->IMorvane_DetachModifierKeyListener(listener), kOK);
  Hold({});
  EXPECT_EQ(LetGo(VK_SHIFT), "");
  EXPECT_EQ(fMorvane->IMorvane_DetachModifierKeyListener(&a), kBadInputProgrammingError);
  EXPECT_NE(fOutput.TakeAssertions(), "");
}

TEST_IN_RUN(KeyboardTest, ReleasesAreToldOnce) {
  Listener a(fViewRecord, "a"), b(fViewRecord, "b"), c(fViewRecord, "c");
  const auto install = [this](std::uint32_t key, const std::vector<Listener*>& callbacks) {
    for (Listener* const callback : callbacks)
      EXPECT_EQ(fMorvane->IMorvane_InstallKeyReleaseCallback(key, callback), kOK);
  };
  const auto remove = [this](std::uint32_t key, Listener& callback) {
    return fMorvane->IMorvane_RemoveKeyReleaseCallback(key, &callback);
  };
  OpenWithFocusTree();
  install('A', {&a, &c, &a});
  install('B', {&b});
  EXPECT_EQ(LetGo('A'), "a65:713 c65:713 a65:713");
  EXPECT_EQ(LetGo('A'), "");
  EXPECT_EQ(remove('B', b), kOK);
  EXPECT_EQ(remove('B', b), kOtherError);
  // A failure is reported.
  fViewRecord.fHooks["a"] = TError(100321);
  install('A', {&a});
  EXPECT_EQ(LetGo('A'), "a65:713");
  ExpectReported(100321);
  // Without a focus view the window does not hold the keyboard for anybody.
  fViewRecord.fHooks.clear();
  install('A', {&a});
  install('B', {&b});
  const auto deactivate = [this] { Send(WM_ACTIVATE, WA_INACTIVE); };
  EXPECT_EQ(ViewCallsOf(deactivate), "");
  SetFocus("other");
  EXPECT_EQ(ViewCallsOf(deactivate), "other:off a65:714 b66:714");
  EXPECT_EQ(LetGo('A'), "");
  // One that fails, in whatever way, does not keep the others from their call.
  for (const auto& [hook, error] :
       {std::pair(Hook(100321), TError(100321)), std::pair(Hook([] { throw 5; }), TError(kOtherError))}) {
    install('A', {&a});
    install('B', {&b});
    fViewRecord.fHooks["a"] = hook;
    EXPECT_EQ(ViewCallsOf(deactivate), "a65:714 b66:714");
    ExpectReported(error);
  }
}

// --- Keys by their text

TEST_IN_RUN(KeyboardTest, KeysByTheirText) {
  OpenWithFocusTree();
  SetFocus("leaf");
  const struct {
    std::vector<int> fHeld;
    WPARAM fKey;
    const char16_t* fText;
    bool fIsKey;
  } rows[] = {{{VK_CONTROL}, 'S', u"Ctrl+S", true},
              {{VK_CONTROL}, 'S', u"S", false},
              {{VK_CONTROL}, 'S', u"Ctrl+Nothing", false},
              {{VK_CONTROL, VK_SHIFT}, 'S', u"Ctrl+S", false},
              {{VK_CONTROL, VK_SHIFT}, 'S', u"Ctrl+Shift+S", true},
              {{VK_SHIFT}, '2', u"Shift+2", true},
              {{VK_SHIFT}, '2', u"@", true},
              {{}, '2', u"@", false},
              {{VK_SHIFT}, VK_F5, u"Shift+F5", true},
              {{}, VK_ESCAPE, u"Esc", true},
              {{}, VK_LEFT, u"Left", true},
              {{}, VK_LEFT, u"Right", false}};
  for (const auto& row : rows) {
    Hold(row.fHeld);
    Press(row.fKey);
    EXPECT_EQ(IsKey(*fMorvane, fViewRecord.fKey, row.fText), row.fIsKey) << row.fKey << " " << &row - rows;
  }
}

}  // namespace NSMorvaneTest
