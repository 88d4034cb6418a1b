// An application that leaves to CDefaultApplication what that can do.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class DefaultApplicationTest : public ClientWindowTest {
 protected:
  class CApplication : public CDefaultApplication {
   public:
    CApplication(IMorvane& morvane, DefaultApplicationTest& test)
        : CDefaultApplication(morvane), fTest(test) {}
    TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override {
      ++fTest.fNoDocumentCalls;
      fTest.fNoDocument();
      return kOK;
    }
    TError IMorvaneRunBehavior_OnIdle(std::int64_t& inOutDelayMS) override {
      inOutDelayMS = 10;
      if (fTest.fIdle) fTest.fIdle(*this);
      return kOK;
    }

   private:
    DefaultApplicationTest& fTest;
  };

  // Files are handed over, with which the application can do nothing.
  void Run() {
    CreateMorvane(L"a.txt b.txt c.txt");
    EXPECT_EQ(fMorvane->IMorvane_Run(new CApplication(*fMorvane, *this), fParams), kOK);
    EXPECT_EQ(fNoDocumentCalls, 1);
  }

  int fNoDocumentCalls = 0;
  std::function<void()> fNoDocument;
  std::function<void(CApplication&)> fIdle;
};

TEST_F(DefaultApplicationTest, FilesOpenWhatIsOpenWithoutThem) {
  fNoDocument = [this] { Make(Kind::kDocument, fRecord); };
  fIdle = [this](CApplication& application) {
    fIdle = nullptr;
    fRecord.fHooks["RequestClose"] = Hook();
    // It may be asked for twice.
    for (int i = 0; i < 2; ++i) EXPECT_EQ(application.IMorvaneRunBehavior_OnQuitEvent(), kOK);
    EXPECT_EQ(fRecord.fLog.Count("RequestClose:1"), 1);
    Release(fRecord);
  };
  Run();
}

TEST_F(DefaultApplicationTest, EndsIfNothingIsOpened) {
  fNoDocument = [] {};
  Run();
}

// A dialog that blocks nobody stays until it is answered, and the application with it. So does an alert.
TEST_F(DefaultApplicationTest, ADialogStaysUntilItIsAnswered) {
  WindowRecord dialog;
  const auto makeAlert = [this] {
    TAlertSpec spec = {kAlertOneButton, kAlertStop, u"It has failed", u"", u"_OK", u"", u""};
    EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(nullptr, 0, spec, nullptr), kOK);
  };
  const auto answerAlert = [] { PostMessageW(GetActiveWindow(), WM_COMMAND, IDOK, 0); };
  using Action = std::function<void()>;
  for (const auto& [make, end] :
       {std::pair<Action, Action>{[&] { Make(Kind::kModal, dialog); }, [&] { Release(dialog); }},
        {[&] { Make(Kind::kModeless, dialog); }, [&] { Release(dialog); }},
        {makeAlert, answerAlert}}) {
    SetCommandLineOfThisProcess(L"\"app.exe\"");
    fNoDocumentCalls = 0;
    fNoDocument = make;
    int calls = 0;
    fIdle = [&](CApplication&) {
      if (++calls == 20) end();
      EXPECT_FALSE(IsQuitting());
    };
    Run();
    EXPECT_GE(calls, 20);
    EXPECT_EQ(dialog.fLog.Count("RequestClose:1"), 0);
    DeleteMorvane();
  }
}

}  // namespace NSMorvaneTest
