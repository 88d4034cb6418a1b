// Keys on their way: the focus chain, the window, Tab, the application; listeners of modifier keys; releases.
#include "Support/FocusTree.h"

namespace NSMorvaneTest {

class KeyboardTest : public FocusTreeTest {
 protected:
  KeyboardTest() {
    fRecord.fHooks["HandleKeyDown"] = [this] { fViewLog.push_back("window key"); };
    fHooks.fHandleKeyDown = [this](const TKeyEvent&, TFlag& outHandled) {
      fViewLog.push_back("application key");
      outHandled = fApplicationTakesKeys;
    };
  }
  ~KeyboardTest() override { Hold({}); }

  // Has the loop handle a key message; the flags are those of its lParam.
  void Press(WPARAM key, std::uint32_t flags = 0, UINT message = WM_KEYDOWN) {
    EXPECT_TRUE(PostMessageW(Hwnd(), message, key, static_cast<LPARAM>(flags | 1)));
    MSG msg;
    while (PeekMessageW(&msg, Hwnd(), WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE))
      EXPECT_EQ(fMorvane->IMorvane_Yield(), kOK);
  }
  void LetGo(WPARAM key) { Press(key, 0xC0000000u, WM_KEYUP); }
  // These keys are down from now on, and no other.
  static void Hold(const std::vector<int>& keys) {
    BYTE state[256] = {};
    for (const int key : keys) state[key] = 0x80;
    EXPECT_TRUE(SetKeyboardState(state));
  }
  CallLog CallsOf(WPARAM key, std::uint32_t flags = 0) {
    fViewLog.clear();
    Press(key, flags);
    return TakeViewLog();
  }
  void SetTabViews(const std::vector<IView*>& views) {
    EXPECT_EQ(WindowOf(Window()).IWindow_SetTabViews(views.data(), static_cast<std::uint32_t>(views.size())),
              kOK);
  }
  void SetFlags(IView& view, std::uint32_t flags) {
    TViewParams params = {};
    EXPECT_EQ(view.IView_GetParams(params), kOK);
    params.fFlags = flags;
    EXPECT_EQ(view.IView_SetParams(params), kOK);
  }

  TFlag fApplicationTakesKeys = 0;
};

// --- The chain

TEST_F(KeyboardTest, AKeyGoesUntilSomebodyTakesIt) {
  const struct {
    const char* fTaker;
    TFlag& fFlag;
  } takers[] = {{"leaf", fLeafRecord.fTakesKeys},
                {"inner", fInnerRecord.fTakesKeys},
                {"outer", fOuterRecord.fTakesKeys},
                {"window", fRecord.fTakesKeys},
                {"application", fApplicationTakesKeys}};
  RunWithViews({[&, this] {
    SetFocusView(fLeaf);
    CallLog all;
    for (const auto& taker : takers) {
      all.push_back(std::string(taker.fTaker) + " key");
      taker.fFlag = 1;
      EXPECT_EQ(CallsOf('A'), all);
      taker.fFlag = 0;
    }
    EXPECT_EQ(CallsOf('A'), all);
    EXPECT_EQ(CallsOf(255), CallLog());
    SetFocusView(nullptr);
    EXPECT_EQ(CallsOf('A'), (CallLog{"window key", "application key"}));
  }});
}

TEST_F(KeyboardTest, WhatAKeyEventTells) {
  const struct {
    WPARAM fKey;
    std::uint32_t fFlags;  // of the message
    UINT fMessage;
    std::vector<int> fHeld;
    std::vector<std::uint32_t> fTold;  // virtual key, scan code, extended, modifiers, repeat
  } rows[] = {
      {'A', 0x001E0000, WM_KEYDOWN, {}, {'A', 0x1E, 0, 0, 0}},
      {'A', 0x401E0000, WM_KEYDOWN, {VK_SHIFT}, {'A', 0x1E, 0, kModifierShift, 1}},
      {VK_RETURN, 0x011C0000, WM_KEYDOWN, {VK_CONTROL}, {VK_RETURN, 0x1C, 1, kModifierControl, 0}},
      {'Q', 0x20100000, WM_SYSKEYDOWN, {VK_MENU, VK_CONTROL}, {'Q', 0x10, 0, 12, 0}},
  };
  DWORD messageTime = 0;
  fLeafRecord.fTakesKeys = 1;
  fLeafRecord.fHooks["key"] = [&] { messageTime = static_cast<DWORD>(GetMessageTime()); };
  RunWithViews({[&, this] {
    SetFocusView(fLeaf);
    for (const auto& row : rows) {
      Hold(row.fHeld);
      Press(row.fKey, row.fFlags, row.fMessage);
      const TKeyEvent& event = fLeafRecord.fLastKey;
      const TPhysicalKeySpec& key = event.fPhysicalKey;
      EXPECT_EQ((std::vector<std::uint32_t>{key.fVirtualKey, key.fScanCode, key.fExtended,
                                            event.fModifiers.fKeys, event.fIsRepeat}),
                row.fTold);
      EXPECT_EQ(event.fTimeMS, messageTime);
    }
  }});
}

TEST_F(KeyboardTest, AFailureEndsTheChain) {
  fInnerRecord.fHooks["key"] = TError(100321);
  RunWithViews({[this] {
    SetFocusView(fLeaf);
    EXPECT_EQ(CallsOf('A'), (CallLog{"leaf key", "inner key"}));
    ExpectReported(100321);
  }});
}

TEST_F(KeyboardTest, AViewMayEndItselfInItsHandler) {
  fLeafRecord.fHooks["key"] = [this] { Release(fLeaf); };
  RunWithViews({[this] {
    SetFocusView(fLeaf);
    EXPECT_EQ(CallsOf('A'), (CallLog{"leaf key", "leaf lost", "inner lost", "outer lost", "leaf deleted",
                                     "window key", "application key"}));
    EXPECT_EQ(FocusView(), nullptr);
  }});
}

// --- Tab

TEST_F(KeyboardTest, TabFollowsTheTabViews) {
  RunWithViews({[this] {
    SetTabViews({});
    EXPECT_EQ(CallsOf(VK_TAB), CallLog{"window key"});  // taken, though there is no view to go to
    SetTabViews({fLeaf, fOther, fInner});
    const auto walk = [this](int count) {
      std::vector<IView*> views;
      for (int i = 0; i < count; ++i) {
        Press(VK_TAB);
        views.push_back(FocusView());
      }
      return views;
    };
    EXPECT_EQ(walk(4), (std::vector<IView*>{fLeaf, fOther, fInner, fLeaf}));
    SetFlags(*fOther, kViewFocusable);  // disabled
    EXPECT_EQ(walk(2), (std::vector<IView*>{fInner, fLeaf}));
    SetFlags(*fOther, kViewFocusable | kViewEnabled);
    Hold({VK_SHIFT});
    EXPECT_EQ(walk(4), (std::vector<IView*>{fInner, fOther, fLeaf, fInner}));
    SetFocusView(nullptr);
    EXPECT_EQ(walk(1), std::vector<IView*>{fInner});
    // Those who get the key before it is a step can take it.
    fInnerRecord.fTakesKeys = 1;
    EXPECT_EQ(walk(1), std::vector<IView*>{fInner});
    SetTabViews({fOther});
    SetFocusView(fOther);
    EXPECT_EQ(walk(1), std::vector<IView*>{fOther});
    EXPECT_EQ(fOutput.TakeAssertions(), std::vector<std::string>{"view != anchorView"});
  }});
}

// A view that can have the focus no longer passes it on to the next in the order of Tab.
TEST_F(KeyboardTest, TheFocusIsPassedOn) {
  RunWithViews({[this] {
    const auto focusAfter = [this](IView* view, const std::function<void()>& action) {
      SetFocusView(view);
      fViewLog.clear();
      action();
      return FocusView();
    };
    SetTabViews({fLeaf, fOther, fInner});
    EXPECT_EQ(focusAfter(fLeaf, [this] { SetFlags(*fLeaf, kViewEnabled); }), fOther);  // not focusable
    EXPECT_EQ(TakeViewLog(), (CallLog{"leaf lost", "inner lost", "outer lost", "other gained"}));
    SetFlags(*fLeaf, kViewEnabled | kViewFocusable);
    EXPECT_EQ(focusAfter(fLeaf, [this] { SetFlags(*fOuter, 0); }), fOther);  // disabled from above
    SetFlags(*fOuter, kViewEnabled);
    // The end of a view takes it out of the order first.
    EXPECT_EQ(focusAfter(fOther, [this] { Release(fOther); }), fLeaf);
    EXPECT_TRUE(fOutput.HasLine("Ejecting focus from view being deleted..."));
    SetTabViews({fLeaf});
    EXPECT_EQ(focusAfter(fLeaf, [this] { SetFlags(*fLeaf, kViewFocusable); }), nullptr);
    EXPECT_EQ(fOutput.TakeAssertions(), std::vector<std::string>());
  }});
}

// --- Modifier keys

namespace {

// Writes down the modifiers before and after.
class ModifierListener : public IModifierKeyListener {
 public:
  ModifierListener(CallLog& log, const char* name) : fLog(log), fName(name) {}
  TError IModifierKeyListener_OnModifiersChanged(const TModifierKeysEvent& previous,
                                                 const TModifierKeysEvent& now) override {
    fLog.push_back(fName + " " + std::to_string(previous.fModifiers.fKeys) + " " +
                   std::to_string(now.fModifiers.fKeys));
    fIsTimely = now.fTimeMS == static_cast<DWORD>(GetMessageTime());
    if (fHook) fHook();
    return kOtherError;  // nobody looks at it
  }

  CallLog& fLog;
  std::string fName;
  std::function<void()> fHook;
  bool fIsTimely = false;
};

// The same of releases, with the reason.
class ReleaseCallback : public IKeyReleaseCallback {
 public:
  ReleaseCallback(CallLog& log, const char* name) : fLog(log), fName(name) {}
  TError IKeyReleaseCallback_OnKeyReleased(const TPhysicalKeySpec& key, TKeyReleaseReason reason) override {
    fLog.push_back(fName + " " + std::to_string(key.fVirtualKey) + " " + std::to_string(reason));
    return fHook();
  }

  CallLog& fLog;
  std::string fName;
  Hook<> fHook;
};

// Takes the keys that it is told to, before everybody else.
class KeyCapture : public CDefaultMouseCapture {
 public:
  KeyCapture(CallLog& log, const TFlag& takesKeys) : fLog(log), fTakesKeys(takesKeys) {}
  TError IMouseCapture_OnModifiersChanged(const TModifierKeysEvent& previous,
                                          const TModifierKeysEvent& now) override {
    fLog.push_back("capture " + std::to_string(previous.fModifiers.fKeys) + " " +
                   std::to_string(now.fModifiers.fKeys));
    return now.fModifiers.fKeys == 0 ? TError(100323) : kOK;
  }
  TError IMouseCapture_OnKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    fLog.push_back("capture key");
    outHandled = fTakesKeys;
    return kOK;
  }

 private:
  CallLog& fLog;
  const TFlag& fTakesKeys;
};

}  // namespace

TEST_F(KeyboardTest, TheMouseCaptureComesFirst) {
  ModifierListener listener(fViewLog, "listener");
  TFlag captureTakesKeys = 0;
  fRecord.fTakesKeys = 1;
  RunWithViews({[&, this] {
    SetFocusView(fOther);
    EXPECT_EQ(fMorvane->IMorvane_AttachModifierKeyListener(&listener), kOK);
    EXPECT_EQ(fMorvane->IMorvane_AllocateMouseCapture(&WindowOf(Window()),
                                                      new KeyCapture(fViewLog, captureTakesKeys)),
              kOK);
    EXPECT_EQ(CallsOf('A'), (CallLog{"capture key", "other key", "window key"}));
    captureTakesKeys = 1;
    EXPECT_EQ(CallsOf('A'), CallLog{"capture key"});
    Hold({VK_CONTROL});
    EXPECT_EQ(CallsOf(VK_CONTROL), (CallLog{"capture 0 8", "capture key"}));
    // A failure uses the message up, and the event does not count as told.
    Hold({});
    fViewLog.clear();
    LetGo(VK_CONTROL);
    EXPECT_EQ(TakeViewLog(), CallLog{"capture 8 0"});
    ExpectReported(100323);
    EXPECT_EQ(fMorvane->IMorvane_ReleaseMouseCapture(), kOK);
    Hold({VK_SHIFT});
    EXPECT_EQ(CallsOf(VK_SHIFT), (CallLog{"listener 8 2", "other key", "window key"}));
    EXPECT_EQ(fMorvane->IMorvane_DetachModifierKeyListener(&listener), kOK);
  }});
}

TEST_F(KeyboardTest, ListenersHearOfModifierKeys) {
  ModifierListener a(fViewLog, "a"), b(fViewLog, "b");
  fLeafRecord.fTakesKeys = 1;
  RunWithViews({[&, this] {
    EXPECT_EQ(fMorvane->IMorvane_AttachModifierKeyListener(&a), kOK);
    EXPECT_EQ(fMorvane->IMorvane_AttachModifierKeyListener(&b), kOK);
    Hold({VK_SHIFT});
    Press(VK_SHIFT);
    EXPECT_EQ(TakeViewLog(), (CallLog{"a 0 2", "b 0 2", "window key", "application key"}));
    EXPECT_TRUE(a.fIsTimely);
    Press(VK_SHIFT, 0x40000000);  // a repeat
    Press('A');
    EXPECT_EQ(std::count(fViewLog.begin(), fViewLog.end(), "window key"), 2);
    EXPECT_EQ(TakeViewLog().size(), 4u);
    Hold({VK_SHIFT, VK_CONTROL});
    Press(VK_RCONTROL);
    EXPECT_EQ(TakeViewLog(), (CallLog{"a 2 10", "b 2 10", "window key", "application key"}));
    // A listener that leaves, taking another one along.
    a.fHook = [&] {
      EXPECT_EQ(fMorvane->IMorvane_DetachModifierKeyListener(&a), kOK);
      EXPECT_EQ(fMorvane->IMorvane_DetachModifierKeyListener(&b), kOK);
    };
    Hold({});
    LetGo(VK_CONTROL);
    EXPECT_EQ(TakeViewLog(), CallLog{"a 10 0"});
    LetGo(VK_SHIFT);
    EXPECT_EQ(TakeViewLog(), CallLog());
    EXPECT_EQ(fMorvane->IMorvane_DetachModifierKeyListener(&a), TError(kBadInputProgrammingError));
    EXPECT_TRUE(fOutput.HasLine(
        "CMorvaneGlue_DetachModifierKeyListener called with a listener that has not been previously "
        "attached."));
    EXPECT_EQ(fOutput.TakeAssertions().size(), 1u);
  }});
}

// --- Releases

TEST_F(KeyboardTest, ReleasesAreToldOnce) {
  ReleaseCallback a(fViewLog, "a"), b(fViewLog, "b"), c(fViewLog, "c");
  RunWithViews({[&, this] {
    const auto install = [this](std::uint32_t key, ReleaseCallback& callback) {
      EXPECT_EQ(fMorvane->IMorvane_InstallKeyReleaseCallback(key, &callback), kOK);
    };
    const auto remove = [this](std::uint32_t key, ReleaseCallback& callback) {
      return fMorvane->IMorvane_RemoveKeyReleaseCallback(key, &callback);
    };
    const auto callsOfRelease = [this](WPARAM key) {
      LetGo(key);
      return TakeViewLog();
    };
    install('A', a);
    install('B', b);
    install('A', c);
    install('A', a);
    EXPECT_EQ(callsOfRelease('C'), CallLog());
    EXPECT_EQ(callsOfRelease('A'), (CallLog{"a 65 713", "c 65 713", "a 65 713"}));
    EXPECT_EQ(callsOfRelease('A'), CallLog());
    EXPECT_EQ(remove('B', b), kOK);
    EXPECT_EQ(remove('B', b), TError(kOtherError));
    EXPECT_EQ(callsOfRelease('B'), CallLog());

    // From within the call: it may take itself out, and others.
    a.fHook = [&] {
      EXPECT_EQ(remove('A', a), kOK);
      return remove('A', c);
    };
    install('A', a);
    install('A', c);
    EXPECT_EQ(callsOfRelease('A'), CallLog{"a 65 713"});
    // A failure is reported, and the callback is through all the same.
    a.fHook = TError(100321);
    install('A', a);
    EXPECT_EQ(callsOfRelease('A'), CallLog{"a 65 713"});
    ExpectReported(100321);
    EXPECT_EQ(callsOfRelease('A'), CallLog());

    // Without a focus view the window does not hold the keyboard for anybody.
    a.fHook = nullptr;
    install('A', a);
    install('B', b);
    SendMessageW(Hwnd(), WM_ACTIVATE, WA_INACTIVE, 0);
    EXPECT_EQ(TakeViewLog(), CallLog());
    SetFocusView(fOther);
    fViewLog.clear();
    SendMessageW(Hwnd(), WM_ACTIVATE, WA_INACTIVE, 0);
    EXPECT_EQ(TakeViewLog(), (CallLog{"other lost", "a 65 714", "b 66 714"}));
    EXPECT_EQ(callsOfRelease('A'), CallLog());
  }});
}

// --- The real keyboard

TEST_F(KeyboardTest, TypedKeys) {
  fLeafRecord.fTakesKeys = 1;
  RunWithViews({[this] {
    SetFocusView(fLeaf);
    SendInputs({KeyInput(VK_LSHIFT), KeyInput('2'), KeyInput('2', KEYEVENTF_KEYUP),
                KeyInput(VK_LSHIFT, KEYEVENTF_KEYUP)});
    ASSERT_TRUE(YieldUntil([this] { return fLeafRecord.fLastKey.fPhysicalKey.fVirtualKey == '2'; }));
    const TKeyEvent event = fLeafRecord.fLastKey;
    EXPECT_EQ(event.fModifiers.fKeys, std::uint32_t{kModifierShift});
    TKeyInterpretation reading = {};
    EXPECT_EQ(fMorvane->IMorvane_GetDefaultInterpretation(event.fPhysicalKey, event.fModifiers, reading),
              kOK);
    EXPECT_EQ(TextOf(reading.fKeyText), u"@");
    EXPECT_EQ(reading.fModifiers.fKeys, 0u);
    TFlag canBeAt = 0;
    EXPECT_EQ(
        fMorvane->IMorvane_CanKeyBeInterpretedAs(event.fPhysicalKey, event.fModifiers, reading, canBeAt),
        kOK);
    EXPECT_EQ(canBeAt, 1u);
  }});
}

}  // namespace NSMorvaneTest
