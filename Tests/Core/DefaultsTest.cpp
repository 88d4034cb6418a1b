// The helpers for clients that need no library: first places, keys and paths as texts, lines that tell a
// failure, answers of dialogs, the clipboard.
#include "Interface/MorvaneDefaults.h"

#include "Component/Portable/Base/Geometry.h"
#include "Tests/Support/RecordingMorvane.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

// A main monitor with task bars at the left and the top, and a smaller one to its right.
TMonitorList TwoMonitors() {
  TMonitorList monitors = {};
  monitors.fMonitorCount = 2;
  monitors.fMonitors[0] = {{1000, 0, 1600, 400}, {1000, 0, 1600, 360}, 32};
  monitors.fMonitors[1] = {{0, 0, 1000, 800}, {40, 30, 1000, 800}, 32};
  monitors.fMainMonitorIndex = 1;
  return monitors;
}

}  // namespace

TEST(FirstPlaceTest, Rectangles) {
  const TRect area = {40, 30, 1000, 800};
  const TSize dialog = {200, 100};
  const TMonitorList monitors = TwoMonitors();
  const Rows<const char*, TRect, TRect> rows = {
      {"centred", CentredRect(dialog, {300, 300, 700, 600}, area), {400, 400, 600, 500}},
      {"over the right edge", CentredRect(dialog, {900, 700, 1100, 900}, area), {800, 700, 1000, 800}},
      {"over the left edge", CentredRect(dialog, {-300, 0, 0, 60}, area), {40, 30, 240, 130}},
      {"too large", CentredRect({2000, 1000}, {300, 300, 700, 600}, area), {40, 30, 2040, 1030}},
      {"to the right", BesideRect(dialog, {100, 100, 700, 600}, {}, area), {708, 100, 908, 200}},
      {"to the left", BesideRect(dialog, {300, 700, 900, 790}, {}, area), {92, 700, 292, 800}},
      {"inside", BesideRect(dialog, area, {44, 80, 996, 796}, area), {788, 88, 988, 188}},
      {"most of it right", WorkAreaFor(monitors, {900, 0, 1200, 100}), {1000, 0, 1600, 360}},
      {"most of it left", WorkAreaFor(monitors, {700, 0, 1200, 100}), area},
      {"nowhere", WorkAreaFor(monitors, {5000, 0, 5100, 100}), area},
      {"by the work area", FrameOnScreen(monitors, {0, 0, 100, 100}), {40, 30, 140, 130}},
      {"maximized", FrameOnScreen(monitors, {996, -4, 1604, 364}), {996, -4, 1604, 364}}};
  for (const auto& [name, rect, wanted] : rows) EXPECT_EQ(rect, wanted) << name;
}

TEST(FirstPlaceTest, Cascade) {
  const TRect area = {40, 30, 1000, 800};
  const TRect first = {64, 54, 664, 554}, second = {92, 82, 692, 582}, third = {120, 110, 720, 610};
  const TRect nearFirst = {70, 50, 300, 300}, elsewhere = {64, 300, 300, 500};
  const Rows<const char*, TSize, std::vector<TRect>, TRect> rows = {
      {"alone", {600, 500}, {}, first},
      {"one", {600, 500}, {first}, second},
      {"a gap", {600, 500}, {third, first}, second},
      {"nearly there", {600, 500}, {nearFirst, second}, third},
      {"not on the diagonal", {600, 500}, {elsewhere}, first},
      {"no room, but free", {930, 740}, {first}, {92, 82, 1022, 822}},
      {"as large as the area", {960, 770}, {}, {64, 54, 1024, 824}}};
  for (const auto& [name, size, others, wanted] : rows)
    EXPECT_EQ(CascadedRect(size, others, area), wanted) << name;
  // However many there are, the title of the next one can be seen.
  std::vector<TRect> all;
  for (int i = 0; i < 60; ++i) {
    all.push_back(CascadedRect({300, 200}, all, area));
    EXPECT_EQ(
        KeptIn({all.back().fLeft, all.back().fTop, all.back().fLeft + 20, all.back().fTop + 20}, area).fTop,
        all.back().fTop)
        << i;
  }
}

TEST(KeyTextTest, KeysByTheirText) {
  constexpr std::uint32_t c = kModifierControl, s = kModifierShift, a = kModifierAlt;
  const Rows<TString, TString, std::uint32_t> rows = {
      {u"Ctrl+S", u"s", c},           {u"ctrl+shift+s", u"s", c | s},
      {u"Alt+Ctrl+2", u"2", a | c},   {u"x", u"x", 0},
      {u"Ctrl++", u"+", c},           {u"+", u"+", 0},
      {u"Shift+Left", u"\xE017", s},  {u"F1", u"\xE001", 0},
      {u"Ctrl+F15", u"\xE00F", c},    {u"Esc", u"\x1B", 0},
      {u"Enter", u"\r", 0},           {u"KeypadEnter", u"\n", 0},
      {u"Ctrl+Space", u" ", c},       {u"Ctrl+f", u"f", c},
      {u"Ctrl+\u00E4", u"\u00E4", c}, {u"\U0001F600", u"\U0001F600", 0}};
  for (const auto& [text, keyText, keys] : rows) {
    const TKeyInterpretation key = KeyOf(text);
    const std::string name = NSTextPackage::StringToUTF8(text, false);
    EXPECT_EQ(TString(key.fKeyText), keyText) << name;
    EXPECT_EQ(key.fModifiers.fKeys, keys) << name;
    EXPECT_EQ(key.fPhysicalTest, 0u) << name;
  }
  for (const TString text :
       {u"", u"Ctrl+", u"Ctrl", u"F0", u"F16", u"F05", u"Cmd+S", u"Ctrl+Save", u"Ctrl +S"})
    EXPECT_EQ(KeyOf(text).fKeyText[0], 0) << NSTextPackage::StringToUTF8(text, false);
}

TEST(URLTest, PathsOfURLs) {
  const Rows<std::string, TString> rows = {
      {"file://C:\\a b\\c.txt", u"C:\\a b\\c.txt"},
      {"file://\"C:\\a b.txt\"", u"C:\\a b.txt"},
      {"file://\"C:\\cut.txt", u"C:\\cut.txt"},
      {"file://\"", u""},
      {"file://C:\\100%25 %41.txt", u"C:\\100%25 %41.txt"},
      {"file://\\\\server\\share\\x", u"\\\\server\\share\\x"},
      {"file://\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u00E4\u20AC\U0001F600"},
      {"file://\xED\xA0\x80x", u"\xD800x"},
      // No UTF-8: cut short, overlong, too large, a lonely follower.
      {"file://a\xE2\x82", u"a\xFFFD\xFFFD"},
      {"file://\xC0\xAF\xE0\x80\xAF", u"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"file://\xF5\x80x\xBF", u"\xFFFD\xFFFDx\xFFFD"},
      {"file://\xF4\x90\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"http://x", u""},
      {"C:\\x", u""},
      {"", u""}};
  for (const auto& [url, path] : rows) EXPECT_EQ(PathOfURL(url), path) << url;
}

TEST(FailureLineTest, FailuresAreToldFromNews) {
  const Rows<const char*, bool> rows = {
      {"kBadFormatError at Component/Win/A.cpp(120): 12005", true},
      {"kUnsupported at Component/Win/A.cpp(120): 12009", true},
      {"Application-specific error at Component/Win/A.cpp(120): 100001", true},
      {"Bad error code at Component/Win/A.cpp(120): 55", true},
      {"[Morvane] Exception thrown at Component/Portable/Surfaces/Region.cpp(88)", true},
      {"Windows error 5 at: Component/Win/Window/WinWindow.cpp(210)", true},
      {"The view behavior 1returned the error 12007 when IViewBehavior_Draw was called. ", true},
      {"Ignored an exception (x) in DrawSubViews.", true},
      {"Ignored error (12007) returned from IViewBehavior_OnOnDutyFocusChanged", true},
      {"Not all subview were removed!", true},
      {"View: Grid", true},
      {"Failed to close next window, stopping quit mode!", true},
      {"RequestClose for a behavior-less document window!!!", true},
      {"Collapsed 5 rebuild menubar requests...", false},
      {"Rebuilding Menu Bar...", false},
      {"CMorvaneImpl::CMorvaneGlue_RequestMenuBarsSetup requested", false},
      {"CWinWindow::IWindowListener_OnActivated 0001", false},
      {"WinSetFocus 0001", false},
      {"]Morvane] Entering quit mode...", false},
      {"Ejecting focus from view being deleted...", false}};
  for (const auto& [line, isFailure] : rows)
    EXPECT_EQ(IsFailureLine("[Morvane] " + std::string(line)), isFailure) << line;
}

// A root object whose dialogs wait for the test to answer them, and whose clipboard is a list.
class DialogRoot : public RecordingMorvane {
 public:
  IAlertBoxListener* fAlert = nullptr;
  ISaveChangesBehavior* fQuestion = nullptr;
  IOpenDialogBehavior* fOpen = nullptr;
  ISaveAsDialogBehavior* fSave = nullptr;
  std::string fBytes;

 private:
  void CMorvaneGlue_CreateAlertBox(IModalOwner*, bool, const TAlertSpec&,
                                   IAlertBoxListener* listener) override {
    Hooked<void>("");
    fAlert = listener;
  }
  void CMorvaneGlue_CreateSaveChangesDialog(ISaveChangesBehavior* behavior, IModalOwner*, bool,
                                            const TString&, TCloseReason) override {
    Hooked<void>("");
    fQuestion = behavior;
  }
  void CMorvaneGlue_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t, IModalOwner*, bool, bool,
                                     const std::vector<TFileType>&, const TString&,
                                     IOpenDialogCustomizeBehavior*) override {
    Hooked<void>("");
    fOpen = behavior;
  }
  void CMorvaneGlue_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior, std::uint32_t, IModalOwner*, bool,
                                       const TString&, const std::vector<TFileType>&,
                                       const TString&) override {
    Hooked<void>("");
    fSave = behavior;
  }
  std::unique_ptr<IData> CMorvaneGlue_GetClipboardData(const TClipboardFormat&) override {
    return std::make_unique<CBytesData>(fBytes);
  }
  void CMorvaneGlue_ReplaceClipboardContents(const std::vector<TClipboardFormat>& formats,
                                             IClipboardDataGetter* getter) override {
    Hooked<void>("");
    for (const TClipboardFormat& format : formats) {
      TError error = kOK;
      const std::unique_ptr<IData> data(getter->IClipboardDataGetter_GetData(format, error));
      ASSERT_TRUE(data) << format.fTag;
      std::uint64_t size = 0;
      EXPECT_EQ(data->IData_GetSize(size), kOK);
      fBytes.resize(size);
      EXPECT_EQ(data->IData_Read(0, size, fBytes.data()), kOK);
      EXPECT_EQ(data->IData_Read(1, size, fBytes.data()), kBadInputProgrammingError);
    }
    delete getter;
  }
};

// An answer is given once, tells what was chosen, and its callback goes with it. One that fails asks again,
// where that is possible. A dialog that cannot be shown leaves no callback behind.
TEST(DialogHelpersTest, AnswersAndTheirEnd) {
  DialogRoot root;
  std::vector<std::string> told;
  const auto used = std::make_shared<int>();
  const auto tell = [&told, used](const std::string& what) {
    told.push_back(what);
    return what == "failing" && told.size() == 1 ? TError{kOtherError} : TError{kOK};
  };
  const auto bytes = [](const std::u16string& path) { return std::string(path.begin(), path.end()); };
  const TFileType types[] = {{u"Drawing", u".sk"}, {u"Picture", u".png"}};
  IModalOwner* const owner = &Dummy<IModalOwner>();
  const TFileDialog dialog = {.fOwner = owner, .fTypes = types};
  const auto alert = [&](const std::string& what) {
    TAlertSpec spec = {};
    spec.fButtonLayout = kAlertOneButton;
    spec.fKind = kAlertNote;
    CopyText(spec.fButton1, u"OK");
    return ShowAlert(root, owner, spec, [=](TAlertResponse) { return tell(what); });
  };
  const auto question = [&] {
    return AskToSaveChanges(
        root, owner, u"a", kCloseByUser,
        {.fOnSave = [=] { return tell("save"); }, .fOnDiscard = [=] { return tell("discard"); }});
  };
  const auto open = [&] {
    return ShowOpenDialog(
        root, dialog, [=](const std::u16string& path) { return tell(bytes(path)); },
        [=] { return tell("cancel"); });
  };
  const auto save = [&] {
    return ShowSaveDialog(root, dialog, u"a", [=](const std::u16string& path, std::size_t type) {
      return tell(bytes(path) + std::to_string(type));
    });
  };
  const char* const urls[] = {"file://C:\\a"};
  const Rows<const char*, std::function<TError()>, std::function<TError()>, std::vector<std::string>> rows = {
      {"alert",
       [&] { return alert("ok"); },
       [&] { return root.fAlert->IAlertBoxListener_OnResponse(kAlertResponseFirst); },
       {"ok"}},
      {"alert that asks again",
       [&] { return alert("failing"); },
       [&] {
         EXPECT_EQ(root.fAlert->IAlertBoxListener_OnResponse(kAlertResponseFirst), kOtherError);
         return root.fAlert->IAlertBoxListener_OnResponse(kAlertResponseFirst);
       },
       {"failing", "failing"}},
      {"save", question, [&] { return root.fQuestion->ISaveChangesBehavior_OnSave(); }, {"save"}},
      {"discard", question, [&] { return root.fQuestion->ISaveChangesBehavior_OnDiscard(); }, {"discard"}},
      {"no callback", question, [&] { return root.fQuestion->ISaveChangesBehavior_OnCancel(); }, {}},
      {"open", open, [&] { return root.fOpen->IOpenDialogBehavior_OnPerform(urls, 1); }, {"C:\\a"}},
      {"open cancelled", open, [&] { return root.fOpen->IOpenDialogBehavior_OnCancel(); }, {"cancel"}},
      {"second type",
       save,
       [&] { return root.fSave->ISaveAsDialogBehavior_OnPerform(urls[0], types[1]); },
       {"C:\\a1"}},
      {"save cancelled", save, [&] { return root.fSave->ISaveAsDialogBehavior_OnCancel(); }, {}}};
  const long uses = used.use_count();
  for (const auto& [name, show, answer, wanted] : rows) {
    told.clear();
    EXPECT_EQ(show(), kOK) << name;
    EXPECT_GT(used.use_count(), uses) << name;
    EXPECT_EQ(answer(), kOK) << name;
    EXPECT_EQ(told, wanted) << name;
    EXPECT_EQ(used.use_count(), uses) << name;
  }
  root.fOnHook = [] { throw XOutOfMemory(); };
  told.clear();
  for (const auto& [name, show, answer, wanted] : rows) {
    EXPECT_EQ(show(), kOutOfMemoryError) << name;
    EXPECT_EQ(used.use_count(), uses) << name;
  }
  EXPECT_TRUE(told.empty());
}

TEST(DialogHelpersTest, CallbacksEndWithTheirScope) {
  int calls = 0;
  std::function<TError(int)> callback;
  {
    const CCallbackScope scope;
    callback = scope.Bind([&](int by) {
      calls += by;
      return TError{kOtherError};
    });
    EXPECT_EQ(callback(2), kOtherError);
  }
  EXPECT_EQ(callback(3), kOK);
  EXPECT_EQ(calls, 2);
}

TEST(ClipboardHelpersTest, TextsAndBytes) {
  DialogRoot root;
  EXPECT_EQ(CopyToClipboard(root, {{{"Priv"}, "abc"}, TextItem(u"\u00E4b")}), kOK);
  EXPECT_EQ(root.fBytes, std::string("\xE4\0b\0\0\0", 6));
  root.fBytes += "rest";
  EXPECT_EQ(ClipboardText(root), u"\u00E4b");
  EXPECT_EQ(ClipboardBytes(root, {"utxt"}).size(), 10u);
  root.fBytes.clear();
  EXPECT_EQ(ClipboardText(root), u"");
  root.fOnHook = [] { throw XOutOfMemory(); };
  EXPECT_EQ(CopyToClipboard(root, {TextItem(u"a")}), kOutOfMemoryError);
}
