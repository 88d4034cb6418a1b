// What windows make of native messages: callbacks in their order, results, windows that end in the middle,
// failures, sizes, dropped files, and messages that nobody should have sent.
#include "Support/ClientWindows.h"
// After the above.
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>

namespace NSMorvaneTest {

class MessagesTest : public ClientWindowTest {
 protected:
  // The calls that one message has led to, those of the application first.
  std::string CallsOf(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    fRun.fLog.Take();
    fRecord.fLog.Take();
    Send(message, wParam, lParam);
    return fRun.fLog.Take() + fRecord.fLog.Take();
  }
};

// --- Results and callbacks

TEST_IN_RUN(MessagesTest, ResultsAndCallbacks) {
  Open();
  fRecord.fHooks["RequestClose"] = Hook();
  fOutput.ForgetLines();
  for (const auto& [message, wParam, calls] :
       Rows<UINT, WPARAM, const char*>{{WM_THEMECHANGED, 0, "ThemeChanged"},
                                       {WM_ENTERMENULOOP, 0, "EnterMenuLoop"},
                                       {WM_EXITMENULOOP, 0, "ExitMenuLoop"},
                                       {WM_HELP, 0, "HelpRequested"},
                                       {WM_CLOSE, 0, "RequestClose:0"},
                                       {WM_SYSCOMMAND, SC_CLOSE, "RequestClose:0"},
                                       {WM_ACTIVATE, WA_INACTIVE, "ActivationChanged:0"},
                                       {WM_ACTIVATE, WA_ACTIVE, "ActivationChanged:1"},
                                       {WM_ACTIVATE, WA_CLICKACTIVE, "ActivationChanged:1"},
                                       {WM_ACTIVATE, MAKEWPARAM(WA_ACTIVE, 1), ""},
                                       {WM_ACTIVATE, 77, "ActivationChanged:0"},
                                       {WM_SETFOCUS, 0, "KeyboardFocusChanged:1"}})
    EXPECT_EQ(CallsOf(message, wParam), calls) << message << " " << wParam;
  EXPECT_EQ(fOutput.TakeAssertions(), "LOWORD(wParam) == WA_INACTIVE");
  // AutoPlay is refused while it is suppressed.
  IWinExtensions* extensions = nullptr;
  EXPECT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
  for (const TAutoPlayCommand command : {kAutoPlaySuppress, kAutoPlayRelease}) {
    EXPECT_EQ(extensions->IWinExtensions_SuppressAutoPlay(command), kOK);
    EXPECT_EQ(Send(RegisterWindowMessageW(L"QueryCancelAutoPlay")), command == kAutoPlaySuppress);
  }
  // Nothing can be closed that has no system menu.
  SetWindowLongW(Hwnd(), GWL_STYLE, GetWindowLongW(Hwnd(), GWL_STYLE) & ~WS_SYSMENU);
  EXPECT_EQ(CallsOf(WM_CLOSE), "");
  fRecord.fHooks.clear();
}

// --- Sizes

// How far limits and work areas allow a window to grow is tested with the placement.
TEST_IN_RUN(MessagesTest, LimitsOfTheSize) {
  Open(kSizeable);
  const auto setLimits = [this](const TSize& minimum, const TSize& maximum) {
    Change([&](auto& state) {
      state.fMinimumClientSize = minimum;
      state.fMaximumClientSize = maximum;
    });
  };
  setLimits({210, 0}, {0, 400});
  SizeNative(Hwnd(), 50, 2000);
  EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{210, 400}));
  // Maximizing goes as far as the maximum. The system menu passes coordinates in the low bits.
  setLimits({}, {500, 400});
  Send(WM_SYSCOMMAND, SC_MAXIMIZE | 2);
  EXPECT_FALSE(IsZoomed(Hwnd()));
  EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{500, 400}));
  // From the task bar, too. The height of a menu bar, which there is not here, counts then.
  SizeNative(Hwnd(), 300, 300);
  ShowWindow(Hwnd(), SW_MINIMIZE);
  Send(WM_SYSCOMMAND, SC_MAXIMIZE);
  EXPECT_FALSE(IsIconic(Hwnd()) || IsZoomed(Hwnd()));
  EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{500, 400 + GetSystemMetrics(SM_CYMENU)}));
  // No limit that matters: as usual.
  setLimits({}, {5000, 4000});
  Send(WM_SYSCOMMAND, SC_MAXIMIZE | 2);
  EXPECT_TRUE(IsZoomed(Hwnd()));
}

// --- Dropped files

namespace {

// What a drop of these files comes with, cut at the end, and with its list at another offset.
WPARAM MakeDrop(const std::vector<std::wstring>& names, std::size_t cutBytes = 0,
                DWORD offset = sizeof(DROPFILES)) {
  std::wstring list;
  for (const std::wstring& name : names) list += name + L'\0';
  list += L'\0';
  DROPFILES header = {};
  header.pFiles = offset;
  header.fWide = TRUE;
  std::string bytes(reinterpret_cast<const char*>(&header), sizeof(header));
  bytes.append(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(wchar_t));
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes.size() - cutBytes);
  std::memcpy(GlobalLock(block), bytes.data(), bytes.size() - cutBytes);
  GlobalUnlock(block);
  return reinterpret_cast<WPARAM>(block);
}

}  // namespace

TEST_IN_RUN(MessagesTest, DroppedFiles) {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::wstring file = program;
  const std::string fileCall = "OpenURL:file://" + std::string(file.begin(), file.end());
  Open();
  // A name with blanks is taken apart unless something of that name is there. A folder ends with a backslash.
  EXPECT_EQ(
      CallsOf(WM_DROPFILES, MakeDrop({L"C:\\Program Files", file, L"C:\\none there.txt"})),
      "OpenURL:file://C:\\Program Files\\ " + fileCall + " OpenURL:file://C:\\none OpenURL:file://there.txt");
  // Those behind a failure are opened, too, and the first failure is reported.
  fRun.fHooks["OpenURL"] = [error = TError(100003)]() mutable { return ++error; };
  EXPECT_EQ(CallsOf(WM_DROPFILES, MakeDrop({file, file, L"a b.txt"})),
            fileCall + " " + fileCall + " OpenURL:file://a OpenURL:file://b.txt");
  ExpectReported(100004);
  // Drops that are none are ignored, and freed like any other: cut within the list, within the header, and
  // with the list beyond the end.
  for (const WPARAM none : {WPARAM{0}, WPARAM{0x1234}, ~WPARAM{0}, MakeDrop({}), MakeDrop({L"a.txt"}, 2),
                            MakeDrop({L"a.txt"}, 16), MakeDrop({L"a.txt"}, 0, 0x7FFFFFFF)}) {
    EXPECT_EQ(CallsOf(WM_DROPFILES, none), "") << none;
    EXPECT_EQ(GlobalFlags(reinterpret_cast<HGLOBAL>(none)), GMEM_INVALID_HANDLE) << none;
  }
}

// --- Messages from anywhere

TEST_IN_RUN(MessagesTest, NonsenseIsSurvived) {
  Open(kWindowResizableBit | kWindowStyleBit23);
  fRecord.fHooks["RequestClose:0"] = Hook();
  const UINT messages[] = {
      WM_GETMINMAXINFO, WM_NOTIFY,         WM_COMMAND,   WM_HSCROLL,     WM_VSCROLL,    WM_SETCURSOR,
      WM_SIZE,          WM_SYSCOMMAND,     WM_INITMENU,  WM_ACTIVATEAPP, WM_TIMER,      WM_DISPLAYCHANGE,
      WM_IME_NOTIFY,    WM_CAPTURECHANGED, WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_MOUSEWHEEL, WM_KEYDOWN,
      WM_KEYUP,         WM_SYSKEYUP,       WM_CHAR,      WM_USER,        1225,          0xFFFF};
  const LPARAM bad = static_cast<LPARAM>(0xDEAD0000);
  const std::pair<WPARAM, LPARAM> arguments[] = {
      {0, 0}, {0, 16}, {0xFFFF, bad}, {static_cast<WPARAM>(bad), -1}, {0xA000, 0}, {0xE000, 0}};
  for (const UINT message : messages) {
    for (const auto& [wParam, lParam] : arguments) {
      Send(message, wParam, lParam);
      ASSERT_TRUE(IsWindow(Hwnd())) << message;
      EXPECT_EQ(fOutput.TakeAssertions(), "") << message << " " << wParam << " " << lParam;
    }
  }
}

}  // namespace NSMorvaneTest
