#include "EventRows.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "Cells.h"
#include "LibraryWindow.h"
#include "PlainEventWindow.h"

namespace NSBench {

namespace {

constexpr int kNestedViews = 20;

// Counts what it is told.
class CCountingView : public CEmptyView {
 public:
  CCountingView(IView& view, const TRect& rect, std::uint64_t& count)
      : CEmptyView(view), fRect(rect), fCount(count) {}
  TError IViewBehavior_GetHitRects(IRectsGetter& getter) override {
    return getter.IRectsGetter_AddRects(&fRect, 1);
  }
  TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) override {
    ++fCount;
    return CEmptyView::IViewBehavior_HandleClick(event, outHandled);
  }
  TError IViewBehavior_OnMouseTracking(const TMouseTracking& event, TMousePhase phase,
                                       TFlag& outHandled) override {
    ++fCount;
    return CEmptyView::IViewBehavior_OnMouseTracking(event, phase, outHandled);
  }
  TError IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    ++fCount;
    return CEmptyView::IViewBehavior_HandleKeyDown(event, outHandled);
  }

 private:
  TRect fRect;
  std::uint64_t& fCount;
};

TViewParams TrackableParams(const TRect& rect) {
  TViewParams params = ViewParams(kViewDrawDirect, kAutoInvalidationNone);
  params.fFlags |= kViewMouseTrackable | kViewFocusable;
  params.fRect = rect;
  return params;
}

// A window with views beside each other, or each in the one before; in front, with the cursor on it.
class CEventScene {
 public:
  CEventScene(IMorvane& morvane, int viewCount, bool nested)
      : fWindow(&CreateLibraryWindow(morvane)), fViews(static_cast<std::size_t>(viewCount)) {
    IView* superView = &RootViewOf(*fWindow);
    int index = 0;
    for (auto& view : fViews) {
      const RECT cell = CellRect(index++);
      const TRect rect = nested ? TRect{0, 0, kClientWidth, kClientHeight}
                                : TRect{cell.left, cell.top, cell.right, cell.bottom};
      ThrowIfFailed(view.Create(morvane, *superView, "Event", TrackableParams(rect), rect, fCount));
      if (nested) superView = view.View();
    }
    if (nested) ThrowIfFailed(WindowOf(*fWindow).IWindow_SetConceptualFocusView(superView));
    UpdateWindow(Hwnd());
    POINT middle = {kClientWidth / 2, kClientHeight / 2};
    ClientToScreen(Hwnd(), &middle);
    SetCursorPos(middle.x, middle.y);
  }
  HWND Hwnd() const { return HwndOf(*fWindow); }
  std::uint64_t TakeCount() { return std::exchange(fCount, 0); }

 private:
  std::uint64_t fCount = 0;
  CReleasePtr<IDocumentWindow> fWindow;
  std::vector<CViewOf<CCountingView>> fViews;
};

// The plain program with the same rectangles. It looks for what is under the mouse where the mouse is, since
// the rectangles may have moved, and where the message says; it asks for the place of the cursor, for the
// window under both places, and whether the mouse is captured.
class CPlainRects {
 public:
  explicit CPlainRects(int count) {
    for (int i = 0; i < count; ++i) fRects.push_back(CellRect(i));
  }
  // Hidden. It must not outlive this object.
  CPlainEventWindow MakeWindow() {
    return CPlainEventWindow(
        [this](HWND hwnd, UINT message, LPARAM lParam) {
          if (message == WM_MOUSEMOVE) OnMove(hwnd, lParam);
        },
        false);
  }
  std::uint64_t TakeHits() { return std::exchange(fHits, 0); }

 private:
  void OnMove(HWND hwnd, LPARAM lParam) {
    POINT cursor;
    GetCursorPos(&cursor);
    ScreenToClient(hwnd, &cursor);
    const RECT* const rectUnderCursor = Find(hwnd, cursor);
    if (GetCapture()) return;
    const POINT point = {LOWORD(lParam), HIWORD(lParam)};
    const bool isAtCursor = point.x == cursor.x && point.y == cursor.y;
    const RECT* const rect = isAtCursor ? rectUnderCursor : Find(hwnd, point);
    if (rect && rect != std::exchange(fLast, rect)) ++fHits;
  }
  const RECT* Find(HWND hwnd, POINT point) const {
    POINT onScreen = point;
    ClientToScreen(hwnd, &onScreen);
    if (WindowFromPoint(onScreen) != hwnd) return nullptr;
    const auto rect = std::find_if(fRects.rbegin(), fRects.rend(),
                                   [&](const RECT& candidate) { return PtInRect(&candidate, point); });
    return rect == fRects.rend() ? nullptr : &*rect;
  }
  std::vector<RECT> fRects;
  const RECT* fLast = nullptr;
  std::uint64_t fHits = 0;
};

// The count that `takeCount` gives must not stay 0 while `measure` gives a rate.
double RateOf(const std::function<double()>& measure, const std::function<std::uint64_t()>& takeCount) {
  takeCount();
  const double rate = measure();
  Require(takeCount() > 0, "nobody was told of the messages");
  return rate;
}

// Moves the pointer by the display server, over cells that all counts have, while this program goes on.
class CMover {
 public:
  static constexpr int kPositions = 200;

  static std::string Program() { return "Z:\\usr\\bin\\xdotool"; }
  static bool IsThere() { return GetFileAttributesA(Program().c_str()) != INVALID_FILE_ATTRIBUTES; }

  explicit CMover(HWND hwnd) {
    std::string command = Program();
    for (int i = 0; i < kPositions; ++i) {
      fLast = {3 + (i % 30) * kCellWidth, 30};
      ClientToScreen(hwnd, &fLast);
      command += " mousemove " + std::to_string(fLast.x) + " " + std::to_string(fLast.y) + " sleep 0.005";
    }
    STARTUPINFOA startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    Require(CreateProcessA(Program().c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                           &startup, &process) != 0,
            "the pointer's mover does not start");
    // A program of the host has no handle here.
    if (process.hThread) CloseHandle(process.hThread);
    if (process.hProcess) CloseHandle(process.hProcess);
    fEarliestEnd = Now() + kPositions * 0.005;
  }
  // The pointer rests where it was sent last. It comes there a few times on the way.
  bool HasEnded() const {
    POINT cursor;
    return Now() > fEarliestEnd && GetCursorPos(&cursor) && cursor.x == fLast.x && cursor.y == fLast.y;
  }

 private:
  POINT fLast = {};
  double fEarliestEnd = 0;
};

class CEventRows {
 public:
  CEventRows(IMorvane& morvane, const TOptions& options) : fMorvane(morvane), fOptions(options) {}

  void MeasureMoves(const TRowTexts& texts, int viewCount) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CEventScene scene(fMorvane, viewCount, false);
    CPlainRects rects(viewCount);
    CPlainEventWindow plain = rects.MakeWindow();
    int step = 0;
    const TMeasure measure = Repeated([&](HWND hwnd) {
      // From cell to cell over the cells that all counts have.
      step = (step + 1) % 97;
      SendMessageW(hwnd, WM_MOUSEMOVE, 0, MAKELPARAM(3 + step * 8, 30));
    });
    PrintRow(texts, Compare(fOptions, Sample(scene, measure),
                            PlainSample(plain, measure, [&] { return rects.TakeHits(); })));
  }

  // Microseconds for each position of the pointer in turn, which the display server moves from view to view.
  // Ticks of the library's timer that fall between count too.
  void MeasureRealMoves(const TRowTexts& texts, int viewCount) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    if (!CMover::IsThere()) return Progress("  needs " + CMover::Program());
    CEventScene scene(fMorvane, viewCount, false);
    CPlainRects rects(viewCount);
    CPlainEventWindow plain = rects.MakeWindow();
    PrintRow(texts, Compare(fOptions,
                            TimeMoves([&] { return scene.Hwnd(); },
                                      [&] { ThrowIfFailed(fMorvane.IMorvane_Yield()); },
                                      [&] { return scene.TakeCount(); }),
                            [&] {
                              plain.Show(true);
                              const double result = TimeMoves([&] { return plain.Hwnd(); }, PumpPlainMessages,
                                                              [&] { return rects.TakeHits(); })();
                              plain.Show(false);
                              return result;
                            }));
  }

  // `send` sends to a window with nested views, and to one whose procedure does nothing.
  void MeasureNested(const TRowTexts& texts, const std::function<void(HWND)>& send) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CEventScene scene(fMorvane, kNestedViews, true);
    const TMeasure measure = Repeated(send);
    MeasureAgainstEmpty(texts, Sample(scene, measure), measure);
  }

  // Ticks that come through the loop, as they do from the timer.
  void MeasureTicks(const TRowTexts& texts, int viewCount) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    CEventScene scene(fMorvane, viewCount, false);
    // One in a turn, since two timer messages of a window end IMorvane_Yield.
    const auto measure = [&](HWND hwnd, const std::function<void()>& pump) {
      return FramesPerSecond(fOptions.fSampleSeconds, [&] {
        PostMessageW(hwnd, WM_TIMER, 0, 0);
        pump();
      });
    };
    MeasureAgainstEmpty(
        texts, [&] { return measure(scene.Hwnd(), [&] { ThrowIfFailed(fMorvane.IMorvane_Yield()); }); },
        [&](HWND hwnd) { return measure(hwnd, PumpPlainMessages); });
  }

 private:
  static void PumpPlainMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  TSample TimeMoves(const std::function<HWND()>& hwnd, const std::function<void()>& pump,
                    const std::function<std::uint64_t()>& takeCount) {
    return [=] {
      pump();
      takeCount();
      const CMover mover(hwnd());
      const double deadline = Now() + 30;
      double spent = 0;
      while (!mover.HasEnded()) {
        Require(Now() < deadline, "the pointer does not move");
        MsgWaitForMultipleObjectsEx(0, nullptr, 20, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        const double start = Now();
        pump();
        spent += Now() - start;
      }
      Require(takeCount() >= CMover::kPositions * 9 / 10, "nine of ten positions are told");
      return spent * 1e6 / CMover::kPositions;
    };
  }

  // Gives a rate of the messages that it sends to a window.
  using TMeasure = std::function<double(HWND hwnd)>;

  TMeasure Repeated(const std::function<void(HWND)>& send) {
    return [send, this](HWND hwnd) { return FramesPerSecond(fOptions.fSampleSeconds, [&] { send(hwnd); }); };
  }
  TSample Sample(CEventScene& scene, const TMeasure& measure) {
    return [&scene, measure] {
      return RateOf([&] { return measure(scene.Hwnd()); }, [&] { return scene.TakeCount(); });
    };
  }
  // The plain window is there only while it is measured, and then in front.
  TSample PlainSample(CPlainEventWindow& plain, const TMeasure& measure,
                      const std::function<std::uint64_t()>& takeCount) {
    return [&plain, measure, takeCount] {
      plain.Show(true);
      const double rate = RateOf([&] { return measure(plain.Hwnd()); }, takeCount);
      plain.Show(false);
      return rate;
    };
  }
  void MeasureAgainstEmpty(const TRowTexts& texts, const TSample& sample, const TMeasure& plainMeasure) {
    std::uint64_t count = 0;
    CPlainEventWindow plain([&](HWND, UINT, LPARAM) { ++count; }, false);
    PrintRow(texts, Compare(fOptions, sample,
                            PlainSample(plain, plainMeasure, [&] { return std::exchange(count, 0); })));
  }

  IMorvane& fMorvane;
  const TOptions& fOptions;
};

}  // namespace

void MeasureEvents(IMorvane& morvane, const TOptions& options) {
  constexpr char kRate[] = "messages/s";
  CEventRows rows(morvane, options);
  rows.MeasureMoves({"move-100", "Mouse moves over 100 trackable views; plain with a list of rectangles",
                     "at least 0.8", kRate},
                    100);
  rows.MeasureMoves({"move", "The same with 1,000 views", "at least 0.8", kRate}, 1000);
  rows.MeasureMoves({"move-10000", "The same with 10,000 views", "at least 0.8", kRate}, 10000);
  rows.MeasureRealMoves(
      {"move-real", "The pointer really moved, to 200 places, 5 ms each, over 1,000 trackable views", "",
       "us"},
      1000);
  rows.MeasureNested(
      {"click", "A press and a release over 20 nested views; an empty procedure", "", "clicks/s"},
      [](HWND hwnd) {
        SendMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(400, 300));
        SendMessageW(hwnd, WM_LBUTTONUP, 0, MAKELPARAM(400, 300));
      });
  rows.MeasureNested(
      {"key", "A key that none of 20 views with the focus takes; an empty procedure", "", kRate},
      [](HWND hwnd) { SendMessageW(hwnd, WM_KEYDOWN, 'A', 0x001E0001); });
  rows.MeasureTicks(
      {"tick-0", "Ticks of the timer of 25 ms without views, through the loop; an empty procedure", "",
       kRate},
      0);
  rows.MeasureTicks({"tick", "The same with 1,000 trackable views", "", kRate}, 1000);
  rows.MeasureTicks({"tick-10000", "The same with 10,000 trackable views", "", kRate}, 10000);
}

}  // namespace NSBench
