// Key releases and listeners of modifier keys, without a keyboard.
#include <functional>
#include <map>

#include "Component/Portable/Application/KeyReleases.h"
#include "Component/Portable/Application/ModifierKeyListeners.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

class KeyListenersTest : public ReportingTest {
 protected:
  // Notes "name key:reason" and "name modifiers>modifiers", and does what the test has put under its name.
  struct CListener : IKeyReleaseCallback, IModifierKeyListener {
    CListener(KeyListenersTest& test, std::string name) : fTest(test), fName(std::move(name)) {}
    TError Note(const std::string& text) {
      fTest.fNotes.push_back(fName + " " + text);
      return fTest.fActions.contains(fName) ? fTest.fActions[fName]() : TError(kOK);
    }
    TError IKeyReleaseCallback_OnKeyReleased(const TPhysicalKeySpec& key, TKeyReleaseReason reason) override {
      return Note(std::to_string(key.fVirtualKey) + (reason == kKeyReleaseKeyUp ? ":up" : ":left"));
    }
    TError IModifierKeyListener_OnModifiersChanged(const TModifierKeysEvent& previous,
                                                   const TModifierKeysEvent& now) override {
      return Note(std::to_string(previous.fModifiers.fKeys) + ">" + std::to_string(now.fModifiers.fKeys));
    }
    KeyListenersTest& fTest;
    std::string fName;
  };

  void Install(std::uint8_t key, std::initializer_list<CListener*> callbacks) {
    for (CListener* const callback : callbacks) fReleases.Install(key, callback);
  }
  TError Remove(std::uint8_t key, CListener& callback) {
    return ErrorOf([&] { fReleases.Remove(key, &callback); });
  }
  std::string Release(std::uint8_t key, TError error = kOK) {
    EXPECT_EQ(fReleases.OnReleased({key, 7, 1}), error);
    return TakeNotes();
  }
  std::string Leave(TError error = kOK) {
    EXPECT_EQ(fReleases.Abandon(), error);
    return TakeNotes();
  }
  std::string Change(std::uint32_t before, std::uint32_t after) {
    fModifiers.Notify({{before, 0}, 0}, {{after, 0}, 0});
    return TakeNotes();
  }
  std::string TakeNotes() { return Joined(std::exchange(fNotes, {})); }

  CKeyReleases fReleases;
  CModifierKeyListeners fModifiers;
  std::map<std::string, std::function<TError()>> fActions;
  Texts fNotes;
  CListener a{*this, "a"}, b{*this, "b"}, c{*this, "c"};
};

}  // namespace

TEST_F(KeyListenersTest, ReleasesAreToldOnce) {
  Install(65, {&a, &c, &a});
  Install(66, {&b});
  EXPECT_EQ(Release(65), "a 65:up; c 65:up; a 65:up");
  EXPECT_EQ(Release(65), "");
  EXPECT_EQ(Remove(66, b), kOK);
  EXPECT_EQ(Remove(66, b), kOtherError);
  EXPECT_EQ(Release(66), "");
  Install(65, {&a, &b});
  Install(66, {&c});
  EXPECT_EQ(Leave(), "a 65:left; b 65:left; c 66:left");
  EXPECT_EQ(Leave(), "");
}

TEST_F(KeyListenersTest, CallbacksMayChangeTheList) {
  // It takes itself out, and another one, which is then not called.
  fActions["a"] = [&] { return Remove(65, a) == kOK ? Remove(65, c) : TError(kOtherError); };
  Install(65, {&a, &c});
  EXPECT_EQ(Release(65), "a 65:up");
  EXPECT_EQ(Release(65), "");
  // Of two alike the one that is not being called is meant.
  fActions["a"] = [&] { return Remove(65, a); };
  Install(65, {&a, &a});
  EXPECT_EQ(Release(65), "a 65:up");
  EXPECT_EQ(Release(65), "");
  // One that is installed on the way waits for the next occasion.
  fActions["a"] = [&] { return Install(65, {&b}), TError(kOK); };
  Install(65, {&a});
  EXPECT_EQ(Release(65), "a 65:up");
  EXPECT_EQ(Release(65), "b 65:up");
  // A call from within a call passes over those that are being called.
  fActions["a"] = [&] { return fReleases.Abandon(); };
  Install(65, {&a, &b});
  EXPECT_EQ(Release(65), "a 65:up; b 65:left");
}

TEST_F(KeyListenersTest, AFailureKeepsNobodyWaiting) {
  fActions["b"] = [] { return TError(100322); };
  for (const bool throws : {false, true}) {
    fActions["a"] = [=] { return throws ? throw 5 : TError(100321); };
    Install(65, {&a, &b, &c});
    EXPECT_EQ(Leave(throws ? TError(kOtherError) : 100321), "a 65:left; b 65:left; c 65:left");
    EXPECT_EQ(Leave(), "");
  }
}

TEST_F(KeyListenersTest, ModifierListenersMayLeaveOnTheWay) {
  fModifiers.Attach(&a);
  fModifiers.Attach(&b);
  EXPECT_EQ(Change(0, 2), "a 0>2; b 0>2");
  fActions["a"] = [&] {
    fModifiers.Detach(&a);
    fModifiers.Detach(&b);
    return TError(kOK);
  };
  EXPECT_EQ(Change(2, 0), "a 2>0");
  EXPECT_EQ(Change(0, 2), "");
  EXPECT_THROW(fModifiers.Detach(&a), std::invalid_argument);
  EXPECT_EQ(TakeReports(), "false");
}
