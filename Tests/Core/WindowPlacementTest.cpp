// Where windows stand: frames and limits, and what the platform and the client each call a placement.
#include "Component/Portable/Windows/WindowPlacement.h"

#include "Tests/Support/RecordingMorvane.h"

using namespace NSMorvaneTest;

namespace {

// A frame of unequal sides, so that mixed-up ones are found.
constexpr TFrameInsets kInsets = {3, 20, 4, 5};

constexpr TRect kWorld = {kMin, kMin, kMax, kMax};

// The task bar lies at the left and the top of the main monitor, which is not the first one.
class TwoMonitors : public RecordingMorvane {
 public:
  TwoMonitors() {
    TMonitorList& monitors = Given<TMonitorList>();
    monitors.fMonitorCount = 2;
    monitors.fMainMonitorIndex = 1;
    monitors.fMonitors[0] = TMonitor{{-800, 0, 0, 600}, {-800, 7, 0, 600}, 32};
    monitors.fMonitors[1] = TMonitor{{0, 0, 1280, 960}, {60, 24, 1280, 960}, 32};
  }
};

}  // namespace

using WindowPlacement = ReportingTest;

TEST_F(WindowPlacement, FrameAndClientRectangles) {
  for (const auto& [frame, client] :
       Rows<TRect, TRect>{{{100, 100, 400, 400}, {103, 120, 396, 395}},
                          {{0, 0, 0, 0}, {3, 20, -4, -5}}}) {  // smaller than its own frame: inside out
    EXPECT_EQ(FrameRectToClientRect(frame, kInsets), client);
    EXPECT_EQ(ClientRectToFrameRect(client, kInsets), frame);
  }
  EXPECT_EQ(FrameRectToClientRect({kMax, kMax, kMin, kMin}, kInsets), (TRect{kMax, kMax, kMin, kMin}));
  EXPECT_EQ(ClientRectToFrameRect(kWorld, kInsets), kWorld);
}

TEST_F(WindowPlacement, ASizeIsIdealUpToFourPixelsOff) {
  const Rows<std::int32_t, std::int32_t, bool> rows = {
      {204, 104, true}, {196, 96, true}, {205, 100, false}, {195, 100, false}, {200, 105, false}};
  for (const auto& [width, height, isIdeal] : rows) {
    const TRect frame = ClientRectToFrameRect({50, 60, 50 + width, 60 + height}, kInsets);
    EXPECT_EQ(IsClientSizeIdeal(frame, {200, 100}, kInsets), isIdeal) << width << " x " << height;
  }
  EXPECT_FALSE(IsClientSizeIdeal(kWorld, {kMax, kMax}, kInsets));
  // Without an ideal size nothing that can be seen is ideal.
  EXPECT_FALSE(IsClientSizeIdeal({100, 100, 400, 400}, {0, 0}, kInsets));
}

TEST_F(WindowPlacement, NormalRectangleStandsWhereTheWindowIs) {
  const TNativePlacement native = {{100, 200, 400, 450}, {10, 20}, {-8, -9}};
  const TRect normal = {100, 200, 400, 450}, atMin = {10, 20, 310, 270}, atMax = {-8, -9, 292, 241};
  const Rows<bool, bool, bool, TRect> rows = {{false, false, false, normal}, {true, false, false, atMin},
                                              {false, true, false, atMax},   {false, false, true, atMin},
                                              {false, true, true, atMin},    {true, true, false, atMin}};
  for (const auto& [minimized, maximized, clientIsEmpty, rect] : rows)
    EXPECT_EQ(NormalRect(native, minimized, maximized, clientIsEmpty), rect);
}

// A window with a client area of 300 x 300, which is to have another placement.
TEST_F(WindowPlacement, FitsWhatIsWanted) {
  TWinWindowState current;
  current.fUserRect = {100, 100, 407, 425};
  current.fIdealRect = {50, 60, 257, 185};
  current.fIdealClientSize = {200, 100};
  TWindowStateRecord wanted;
  wanted.fPlacement.fUserRect = current.fUserRect;
  wanted.fPlacement.fIdealRect = current.fIdealRect;
  constexpr TZoomState kUser = kWindowStateUser, kIdeal = kWindowStateIdeal;
  const TSize none = {}, same = current.fIdealClientSize, most = {kMax, kMax};
  const TRect user = current.fUserRect, ideal = current.fIdealRect;
  for (const auto& [from, to, idealSize, minimum, maximum, userRect, idealRect] :
       Rows<TZoomState, TZoomState, TSize, TSize, TSize, TRect, TRect>{
           {kUser, kUser, same, none, none, user, ideal},
           // A new ideal size grows the old rectangle; or there is none from now on.
           {kUser, kUser, {250, 50}, none, none, user, {50, 60, 307, 135}},
           // Going to the ideal size starts at the user's corner; who is there already stays.
           {kUser, kIdeal, same, none, none, user, {100, 100, 307, 225}},
           {kIdeal, kIdeal, same, none, none, user, ideal},
           {kUser, kIdeal, none, none, none, user, user},
           // Limits move the right and bottom edges; 0 is no limit.
           {kUser, kUser, same, {400, 350}, none, {100, 100, 507, 475}, {50, 60, 457, 435}},
           {kUser, kUser, same, none, {0, 200}, {100, 100, 407, 325}, ideal},
           {kUser, kUser, same, none, {150, 80}, {100, 100, 257, 205}, {50, 60, 207, 165}},
           // They go before the ideal size.
           {kUser, kIdeal, same, none, {150, 0}, {100, 100, 257, 425}, {100, 100, 257, 225}}}) {
    wanted.fPlacement.fZoomState = to;
    wanted.fIdealClientSize = idealSize;
    wanted.fMinimumClientSize = minimum;
    wanted.fMaximumClientSize = maximum;
    const TWindowPlacement placement = FitPlacement(wanted, current, from, kInsets);
    EXPECT_EQ(placement.fUserRect, userRect) << testing::PrintToString(minimum);
    EXPECT_EQ(placement.fIdealRect, idealRect) << testing::PrintToString(maximum);
  }
  // A place of the ideal size that the client has saved stays, on a new window, too; one of another size does
  // not.
  wanted.fMinimumClientSize = wanted.fMaximumClientSize = none;
  for (const auto& [idealSize, given, idealRect] :
       Rows<TSize, TRect, TRect>{{same, {300, 200, 507, 325}, {300, 200, 507, 325}},
                                 {{250, 50}, {300, 200, 557, 275}, {300, 200, 557, 275}},
                                 {same, {300, 200, 557, 275}, {100, 100, 307, 225}}}) {
    wanted.fPlacement.fZoomState = kIdeal;
    wanted.fPlacement.fIdealRect = given;
    wanted.fIdealClientSize = idealSize;
    EXPECT_EQ(FitPlacement(wanted, current, kUser, kInsets).fIdealRect, idealRect);
  }
  // Nothing overflows, and the corner stays where the client put it.
  wanted.fPlacement.fZoomState = kIdeal;
  wanted.fIdealClientSize = wanted.fMinimumClientSize = wanted.fMaximumClientSize = most;
  for (const std::int32_t left : {kMin, 0, kMax})
    for (const std::int32_t right : {kMin, 0, kMax}) {
      wanted.fPlacement.fUserRect = {left, left, right, right};
      wanted.fPlacement.fIdealRect = {right, right, left, left};
      const TRect fitted = FitPlacement(wanted, current, kUser, kInsets).fUserRect;
      EXPECT_EQ((TPoint{left, left}), (TPoint{fitted.fLeft, fitted.fTop}));
    }
}

TEST_F(WindowPlacement, BetweenNativePlacementsAndTheClient) {
  TwoMonitors morvane;
  const TPoint offset = OffsetToNativePlacement(morvane, false);
  const TWindowPlacement native = {true, true, kWindowStateIdeal, {40, 76, 240, 176}, {-60, -24, 40, 76}};
  const auto check = [&](const auto& client, bool minimized, bool maximized) {
    EXPECT_EQ(client.fZoomState, kWindowStateIdeal);
    EXPECT_EQ(client.fUserRect, (TRect{100, 100, 300, 200}));
    EXPECT_EQ(client.fIdealRect, (TRect{0, 0, 100, 100}));
    EXPECT_EQ(PlacementFromClient(client, offset), (TWindowPlacement{minimized, maximized, kWindowStateIdeal,
                                                                     native.fUserRect, native.fIdealRect}));
  };
  check(PlacementForClient<TDocumentWindowPlacement>(native, offset), true, true);
  check(PlacementForClient<TFloatingWindowPlacement>(native, offset), false, true);
  EXPECT_EQ(OffsetToNativePlacement(morvane, true), (TPoint{0, 0}))
      << "a tool window is placed on the screen";
  // What lies behind the records is not read.
  for (const std::uint32_t index : {2u, 0xEEEEEEEEu}) {
    morvane.Given<TMonitorList>().fMainMonitorIndex = index;
    EXPECT_EQ(OffsetToNativePlacement(morvane, false), (TPoint{0, 0}));
    EXPECT_TRUE(Has(TakeReports(), "mainMonitorIndex < monitors.fMonitorCount"));
  }
}

// Up to the work area of the monitor, which begins at (60, 24); places are native ones, of either sort.
TEST_F(WindowPlacement, MaximumOfALimitedWindow) {
  TwoMonitors morvane;
  TWinWindowState state;
  const TRect none = {}, start = {100, 100, 407, 425};
  const Rows<TSize, TSize, bool, TRect, TRect> rows = {
      {{0, 0}, {0, 0}, false, start, none},
      {{1220, 936}, {0, 0}, false, start, none},
      {{1219, 936}, {0, 0}, false, start, {0, 0, 1220, 936}},
      {{400, 200}, {0, 0}, false, start, {100, 100, 507, 325}},
      {{400, 0}, {0, 0}, false, start, {100, 0, 507, 936}},
      {{400, 0}, {0, 0}, true, start, {100, 24, 507, 960}},
      {{0, 200}, {0, 0}, false, start, {0, 100, 1220, 325}},
      {{0, 200}, {0, 0}, true, start, {60, 100, 1280, 325}},
      // A wider minimum sticks out.
      {{0, 200}, {1300, 0}, true, start, {60, 100, 1367, 325}},
      // On the other monitor, most of it: what is native there differs from the screen, too.
      {{400, 0}, {0, 0}, false, {-500, 10, -30, 100}, {-500, -17, -93, 576}},
      {{400, 0}, {0, 0}, true, {-500, 10, -30, 100}, {-500, 7, -93, 600}}};
  for (const auto& [maximum, minimum, isToolWindow, from, rect] : rows) {
    state.fMaximumClientSize = maximum;
    state.fMinimumClientSize = minimum;
    const TPoint offset = OffsetToNativePlacement(morvane, isToolWindow);
    const auto to = LimitedMaximum(morvane.Given<TMonitorList>(), from, state, kInsets, offset);
    EXPECT_EQ(to.value_or(none), rect) << testing::PrintToString(maximum) << isToolWindow;
  }
}
