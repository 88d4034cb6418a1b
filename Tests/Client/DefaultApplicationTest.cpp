// An application that leaves to CDefaultApplication what that can do.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class DefaultApplicationTest : public ClientWindowTest {
 protected:
  class CApplication : public CDefaultApplication {
   public:
    CApplication(IMorvane& morvane, RunRecord& record) : CDefaultApplication(morvane), fRecord(record) {}
    TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override { return fRecord.Call("NoDocument"); }
    TError IMorvaneRunBehavior_OnIdle(std::int64_t& inOutDelayMS) override {
      inOutDelayMS = 10;
      return fRecord.CallUnlogged("Idle");
    }

   private:
    RunRecord& fRecord;
  };

  // Files are handed over, with which the application can do nothing.
  void ExpectCalls(const std::string& calls) {
    CreateMorvane(L"a.txt b.txt c.txt");
    fApplication = new CApplication(*fMorvane, fRun);
    EXPECT_EQ(fMorvane->IMorvane_Run(fApplication, fParams), kOK);
    EXPECT_EQ(fRun.fLog.Take(), calls);
  }

  CApplication* fApplication = nullptr;
};

TEST_F(DefaultApplicationTest, FilesOpenWhatIsOpenWithoutThem) {
  fRun.fHooks["NoDocument"] = [this] { MakeNamed("doc", {{"RequestClose", Hook()}}); };
  fRun.fHooks["Idle"] = [this] {
    fRun.fHooks.erase("Idle");
    // It may be asked for twice.
    for (int i = 0; i < 2; ++i) EXPECT_EQ(fApplication->IMorvaneRunBehavior_OnQuitEvent(), kOK);
    Do("-doc");
  };
  ExpectCalls("NoDocument doc.RequestClose:1 doc.deleted");
}

TEST_F(DefaultApplicationTest, EndsIfNothingIsOpened) { ExpectCalls("NoDocument"); }

// A dialog that blocks nobody stays until it is answered, and the application with it. So does an alert.
TEST_F(DefaultApplicationTest, ADialogStaysUntilItIsAnswered) {
  const auto makeAlert = [this] {
    TAlertSpec spec = {kAlertOneButton, kAlertStop, u"It has failed", u"", u"_OK", u"", u""};
    EXPECT_EQ(fMorvane->IMorvane_CreateAlertBox(nullptr, 0, spec, nullptr), kOK);
  };
  const auto answerAlert = [] { PostMessageW(GetActiveWindow(), WM_COMMAND, IDOK, 0); };
  const auto doing = [this](const char* step) { return [=, this] { Do(step); }; };
  using Action = std::function<void()>;
  for (const auto& [make, end, calls] : Rows<Action, Action, const char*>{
           {doing("+modal"), doing("-modal"), "NoDocument modal.deleted"},
           {doing("+modeless"), doing("-modeless"), "NoDocument modeless.deleted"},
           {makeAlert, answerAlert, "NoDocument"}}) {
    fRun.fHooks["NoDocument"] = make;
    int idleCalls = 0;
    fRun.fHooks["Idle"] = [&, end = end] {
      if (++idleCalls == 20) end();
      EXPECT_FALSE(IsQuitting());
    };
    ExpectCalls(calls);
    EXPECT_GE(idleCalls, 20);
    DeleteMorvane();
  }
}

}  // namespace NSMorvaneTest
