// The question whether to save changes, from an application with five documents that the user has changed:
// when it quits, and when the session ends. The answers are given by the keyboard.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class SaveChangesTest : public ClientWindowTest {
 protected:
  // A document whose window asks before it closes.
  struct Document : ISaveChangesBehavior {
    TError ISaveChangesBehavior_OnSave() override {
      if (const TError error = std::exchange(fSaveError, kOK); error != kOK) return error;
      fIsSaved = true;
      Release(*fWindow);
      return kOK;
    }
    TError ISaveChangesBehavior_OnDiscard() override {
      fIsDiscarded = true;
      Release(*fWindow);
      return kOK;
    }
    TError ISaveChangesBehavior_OnCancel() override {
      TFlag isQuitting = 0;
      const TError error = fMorvane->IMorvane_IsQuitting(isQuitting);
      return error == kOK && isQuitting ? fMorvane->IMorvane_StopQuitting() : error;
    }
    IMorvane* fMorvane = nullptr;
    WindowRecord* fWindow = nullptr;
    TError fSaveError = kOK;  // of the next try
    bool fIsSaved = false;
    bool fIsDiscarded = false;
  };
  static constexpr WORD kSave[] = {VK_RETURN};
  static constexpr WORD kDiscard[] = {VK_TAB, VK_SPACE};
  static constexpr WORD kCancel[] = {VK_ESCAPE};
  // The front window comes last.
  static inline const std::vector<std::string> kNames = {"doc1", "doc2", "doc3", "doc4", "doc5"};

  void OpenDocuments() {
    for (const std::string& name : kNames) {
      Document& document = fDocuments[name];
      document.fMorvane = fMorvane;
      document.fWindow = &MakeNamed(name);
      for (const TCloseReason reason : {kCloseByUser, kCloseByLibrary}) {
        const std::u16string title(name.begin(), name.end());
        const Hook ask([this, &document, reason, title] {
          return fMorvane->IMorvane_CreateSaveChangesDialog(&document, document.fWindow->fOwner, 0,
                                                            title.c_str(), reason);
        });
        HooksOf(name)["RequestClose:" + std::to_string(reason)] = ask;
        HooksOf(name)["RequestClose"] = ask;
      }
    }
    fRun.fLog.Take();
  }
  // The question about a document, when it can be answered; null if it does not come.
  HWND QuestionAbout(const std::string& name) {
    const auto isThere = [this, &name] {
      const HWND active = GetActiveWindow();
      return GetForegroundWindow() == active && GetWindow(active, GW_OWNER) == HwndOf(name) &&
             GetFocus() == GetDlgItem(active, IDYES);
    };
    EXPECT_TRUE(YieldUntil(isThere)) << name;
    return isThere() ? GetActiveWindow() : nullptr;
  }
  // False if nobody has asked.
  template <std::size_t kCount>
  bool Answer(const std::string& name, const WORD (&keys)[kCount]) {
    const HWND question = QuestionAbout(name);
    if (!question) return false;
    const std::wstring text = NativeTitle(FindWindowExW(question, nullptr, L"STATIC", nullptr));
    EXPECT_NE(text.find(L"\"" + std::wstring(name.begin(), name.end()) + L"\""), std::wstring::npos) << name;
    EXPECT_NE(text.find(L"exiting"), std::wstring::npos) << "the reason";
    for (const WORD key : keys) PressKeys({key});
    EXPECT_TRUE(YieldUntil([=] { return !IsWindow(question); })) << name;
    return true;
  }
  // A few ticks of the windows' timers, in which something unwanted might happen.
  void LetTimePass() {
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < 100;) Turn();
  }
  // Which documents were saved, and which were given up.
  std::string Saved() const { return NamesWhere(&Document::fIsSaved); }
  std::string Discarded() const { return NamesWhere(&Document::fIsDiscarded); }
  std::string NamesWhere(bool Document::*flag) const {
    std::string text;
    for (const auto& [name, document] : fDocuments)
      if (document.*flag) text += (text.empty() ? "" : " ") + name;
    return text;
  }
  // The application goes on with the three documents that are left, and nobody is asked any more.
  void ExpectGoesOn() {
    EXPECT_FALSE(IsQuitting());
    fRun.fLog.Take();
    LetTimePass();
    EXPECT_EQ(fRun.fLog.Take(), "");
    EXPECT_EQ(Picture(), "doc3+* doc2+ doc1+");
    EXPECT_EQ(Saved(), "doc5");
    EXPECT_EQ(Discarded(), "doc4");
  }

  std::map<std::string, Document> fDocuments;
};

// The first is saved, which fails at first, the second given up, the third not answered. Later the user quits
// again, and saves the others.
TEST_IN_RUN(SaveChangesTest, QuittingIsCancelledAtTheThirdOfFive) {
  OpenDocuments();
  EXPECT_EQ(StartQuitting(), kOK);
  fDocuments["doc5"].fSaveError = TError(100321);
  const HWND question = QuestionAbout("doc5");
  EXPECT_TRUE(IsWindowEnabled(HwndOf("doc1")) && !IsWindowEnabled(HwndOf("doc5")));
  PressKeys({VK_RETURN});
  ExpectReported(100321);
  EXPECT_EQ(QuestionAbout("doc5"), question) << "what could not be saved is asked about once more";
  EXPECT_TRUE(Answer("doc5", kSave) && Answer("doc4", kDiscard) && Answer("doc3", kCancel));
  EXPECT_EQ(fRun.fLog.Take(),
            "doc5.RequestClose:1 doc5.deleted doc4.RequestClose:1 doc4.deleted doc3.RequestClose:1");
  ExpectGoesOn();
  EXPECT_EQ(StartQuitting(), kOK);
  EXPECT_TRUE(Answer("doc3", kSave) && Answer("doc2", kSave) && Answer("doc1", kSave));
  EXPECT_EQ(Saved(), "doc1 doc2 doc3 doc5");
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

// The system asks one of the windows, and is kept waiting for the answers of the user.
TEST_IN_RUN(SaveChangesTest, EndOfTheSession) {
  OpenDocuments();
  bool areAnswered = false;
  Then([&] { areAnswered = Answer("doc5", kSave) && Answer("doc4", kDiscard) && Answer("doc3", kCancel); });
  EXPECT_EQ(SendMessageW(HwndOf("doc2"), WM_QUERYENDSESSION, 0, 0), 0);
  EXPECT_TRUE(std::exchange(areAnswered, false));
  // All are told that the session goes on.
  for (const char* name : {"doc1", "doc2", "doc3"}) SendMessageW(HwndOf(name), WM_ENDSESSION, FALSE, 0);
  ExpectGoesOn();
  // The next time it does end: nobody is asked when the process may be ended at any moment.
  Then([&] { areAnswered = Answer("doc3", kSave) && Answer("doc2", kSave) && Answer("doc1", kSave); });
  const HWND asked = HwndOf("doc2");
  EXPECT_EQ(SendMessageW(asked, WM_QUERYENDSESSION, 0, 0), 1);
  EXPECT_TRUE(areAnswered);
  EXPECT_FALSE(IsWindow(asked));
  EXPECT_EQ(Saved(), "doc1 doc2 doc3 doc5");
  EXPECT_TRUE(IsQuitting());
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

}  // namespace NSMorvaneTest
