// The root object without a run: its life, the small hooks, private messages, and what it does with failures
// and requests while nobody listens. Runs are in the client tests.
#include "Component/Win/Application/MorvaneImplWin.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Tests/Support/FailingAllocations.h"
#include "Tests/Support/PatchedImport.h"
#include "Tests/Support/Pictures.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

int gAllocationsLeft = -1;

void* operator new(std::size_t size) {
  void* const block =
      gAllocationsLeft >= 0 && gAllocationsLeft-- == 0 ? nullptr : std::malloc(size ? size : 1);
  if (!block) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace {

BOOL WINAPI GetNoMonitorInfo(HMONITOR, MONITORINFO*) {
  ::SetLastError(ERROR_INVALID_HANDLE);
  return FALSE;
}

// The version that the system tells of.
OSVERSIONINFOW gVersion = {};

BOOL WINAPI GetGivenVersion(OSVERSIONINFOW* out) {
  *out = gVersion;
  return TRUE;
}

FARPROC WINAPI FindGivenVersion(HMODULE module, const char* name) {
  if (std::strcmp(name, "GetVersionExW") == 0)
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(GetGivenVersion));
  return RealFunction<decltype(GetProcAddress)>(L"kernel32.dll", "GetProcAddress")(module, name);
}

class MorvaneImplTest : public ReportingTest {
 protected:
  MorvaneImplTest() {
    EXPECT_EQ(Create("IMorvane"), kOK);
    TakeLines();
  }
  ~MorvaneImplTest() override { TakePendingError(); }

  TError Create(const char* name) {
    TError error = kOK;
    if (IMorvane* const made = Morvane_Create(name, &error)) fMorvane.reset(made);
    return error;
  }
  CMorvaneImpl& Impl() { return *CMorvaneImpl::gMorvaneImpl; }

  std::unique_ptr<IMorvane> fMorvane;
};

}  // namespace

TEST_F(MorvaneImplTest, ThereIsOneRootObject) {
  EXPECT_EQ(Create("IMorvane"), kOtherError);
  for (const char* name : {"iMorvane", "IMorvane ", "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(Create(name), kBadInputProgrammingError) << (name ? name : "null");
  fMorvane.reset();
  EXPECT_EQ(Create("IMorvane"), kOK);
  CMorvaneImpl* const impl = std::exchange(CMorvaneImpl::gMorvaneImpl, nullptr);
  EXPECT_FALSE(fMorvane->IMorvane_CheckInvariant());
  CMorvaneImpl::gMorvaneImpl = impl;
  EXPECT_EQ(TakeReports(), "false");
}

TEST_F(MorvaneImplTest, SystemsThatAreTooOld) {
  fMorvane.reset();
  const PatchedImport patch(nullptr, "GetProcAddress", FindGivenVersion);
  const Rows<const char*, DWORD, DWORD, TError> rows = {
      {"Windows NT 4", VER_PLATFORM_WIN32_NT, 4, kUnsupportedOSVersionError},
      {"Windows 98", VER_PLATFORM_WIN32_WINDOWS, 4, kUnsupportedOSVersionError},
      {"none that there was", VER_PLATFORM_WIN32_WINDOWS, 6, kUnsupportedOSVersionError},
      {"Windows 2000", VER_PLATFORM_WIN32_NT, 5, kOK}};
  for (const auto& [name, platform, major, error] : rows) {
    gVersion.dwPlatformId = platform;
    gVersion.dwMajorVersion = major;
    EXPECT_EQ(Create("IMorvane"), error) << name;
  }
}

TEST_F(MorvaneImplTest, DebugLayersAreOnAtTheStart) {
  TDebugSettings settings = {};
  EXPECT_EQ(fMorvane->IMorvane_GetDebugSettings(settings), kOK);
  constexpr TDebugSettings kAtStart = {1, 1, 1, 1, 1, 0, 0};
  EXPECT_EQ(0, std::memcmp(&settings, &kAtStart, sizeof(settings)));
}

// Whatever fails while it is made, the next one can be made.
TEST_F(MorvaneImplTest, FailedConstructionLeavesNothing) {
  fMorvane.reset();
  int allocations = 0;
  for (TError error = kOutOfMemoryError; error != kOK; ++allocations) {
    gAllocationsLeft = allocations;
    error = Create("IMorvane");
    gAllocationsLeft = -1;
    ASSERT_TRUE(error == kOK || error == kOutOfMemoryError) << error << " at " << allocations;
    ASSERT_EQ(error == kOK, CMorvaneImpl::gMorvaneImpl != nullptr);
  }
  EXPECT_GT(allocations, 3);
}

TEST_F(MorvaneImplTest, IconOfTheProgram) {
  const HICON icon = Impl().GetAppIcon();
  EXPECT_NE(icon, nullptr);
  EXPECT_EQ(icon, LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1)));
  EXPECT_EQ(icon, Impl().GetAppIcon());
}

// A monitor can go between the list of all and the question about it.
TEST_F(MorvaneImplTest, MonitorsThatCannotBeAsked) {
  TMonitorList before;
  ASSERT_EQ(fMorvane->IMorvane_GetMonitors(before), kOK);
  const PatchedImport patch(nullptr, "GetMonitorInfoW", GetNoMonitorInfo);
  TakeLines();
  TMonitorList now;
  EXPECT_EQ(fMorvane->IMorvane_GetMonitors(now), kOK);
  EXPECT_TRUE(Has(TakeLines(), "Failed to get monitor list - reverting to last successful result..."));
  EXPECT_EQ(0, std::memcmp(&now, &before, sizeof(now)));
}

TEST_F(MorvaneImplTest, ViewsAreInvalidatedAndDrawn) {
  DrawingTree tree({0, 0, 100, 100});
  CViewImpl& view = tree.Add({10, 10, 60, 60});
  BehaviorOf(view).fOnDraw = Filling(kEverything, kRed);
  BehaviorOf(tree.Add(view, {20, 20, 80, 30})).fOnDraw = Filling(kEverything, kGreen);
  EXPECT_EQ(fMorvane->IMorvane_InvalidateView(view, {0, 0, 20, 20}), kOK);
  EXPECT_EQ(tree.fInvalidRects, (TRectList{{10, 10, 20, 20}}));
  CBufferBitmap surface({100, 100}, 32);
  const CRegion all(view.GetBounds());
  PlainTools tools(surface.GetNativePort().fHDC, all.GetNativeRegion());
  EXPECT_EQ(fMorvane->IMorvane_DrawView(view, tools), kOK);
  EXPECT_EQ("", DifferenceOf(surface, {{{10, 10, 60, 60}, kRed}, {{20, 20, 60, 30}, kGreen}}));
}

TEST_F(MorvaneImplTest, AutoPlaySuppressionNests) {
  IWinExtensions* extensions = nullptr;
  ASSERT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
  const UINT query = ::RegisterWindowMessageW(L"QueryCancelAutoPlay");
  for (const auto& [command, result, suppressedAfter] :
       Rows<int, TError, bool>{{1, kIllegalCallSequenceProgrammingError, false},
                               {0, kOK, true},
                               {2, kBadInputProgrammingError, true},
                               {0, kOK, true},
                               {1, kOK, true},
                               {1, kOK, false}}) {
    EXPECT_EQ(extensions->IWinExtensions_SuppressAutoPlay(static_cast<TAutoPlayCommand>(command)), result);
    TakeLines();
    EXPECT_EQ(Impl().IsAutoPlayQuery(query), suppressedAfter);
    EXPECT_EQ(TakeLines(), suppressedAfter ? "Stopped an autoplay from occuring!" : "");
  }
}

// --- Failures and requests without a behaviour

TEST_F(MorvaneImplTest, RequestsWithoutBehaviour) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
  Impl().FlushMenuBarRequests();
  Impl().FlushMenuBarRequests();
  EXPECT_EQ(TakeLines(),
            "CMorvaneImpl::CMorvaneGlue_RequestMenuBarsSetup requested; Collapsed 3 rebuild menubar "
            "requests...; Ignoring request to rebuild menu bars since there is no behavior.");
}

TEST_F(MorvaneImplTest, ListenerCallsReachKnownListenersOnly) {
  struct RecordingListener : IMessageCallListener {
    void OnListenerCall1() override { fCalls += '1'; }
    void OnListenerCall2() override { fCalls += '2'; }
    void OnListenerCall3() override { throw XBadFormat(); }
    std::string fCalls;
  } listener;
  const auto send = [&](UINT message) {
    Impl().HandlePrivateMessage(nullptr, message, reinterpret_cast<WPARAM>(&Impl()),
                                reinterpret_cast<LPARAM>(static_cast<IMessageCallListener*>(&listener)));
  };
  Impl().GetMessageCallListeners().Add(&listener);
  for (const UINT message : {kMsgListenerCall1, kMsgListenerCall2, kMsgListenerCall3}) send(message);
  EXPECT_EQ(TakePendingError(), kBadFormatError);
  Impl().GetMessageCallListeners().Remove(&listener);
  send(kMsgListenerCall1);
  EXPECT_EQ(TakeReports(), "false");
  EXPECT_EQ(listener.fCalls, "12");
}
