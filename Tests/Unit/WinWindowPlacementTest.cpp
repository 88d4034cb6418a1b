#include "Component/Win/WinWindowPlacement.h"

#include <gtest/gtest.h>

#include <limits>

#include "Component/Win/WinWindowKind.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingMorvane.h"

namespace NSMorvane {

namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

// A frame of unequal sides, so that mixed-up ones are found.
constexpr TFrameInsets kInsets = {3, 20, 4, 5};

TEST(WinWindowPlacement, FrameAndClientRectangles) {
  const struct {
    TRect fFrame;
    TRect fClient;
  } kCases[] = {
      {{100, 100, 400, 400}, {103, 120, 396, 395}},
      {{0, 0, 0, 0}, {3, 20, -4, -5}},  // smaller than its own frame: inside out
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(FrameRectToClientRect(c.fFrame, kInsets), c.fClient);
    EXPECT_EQ(ClientRectToFrameRect(c.fClient, kInsets), c.fFrame);
  }
  EXPECT_EQ(FrameRectToClientRect({kMax, kMax, kMin, kMin}, kInsets), (TRect{kMax, kMax, kMin, kMin}));
  EXPECT_EQ(ClientRectToFrameRect({kMin, kMin, kMax, kMax}, kInsets), (TRect{kMin, kMin, kMax, kMax}));

  EXPECT_EQ(ClientSizeToFrameSize({kMax, kMax}, kInsets), (TSize{kMax, kMax}));
}

TEST(WinWindowPlacement, ASizeIsIdealUpToFourPixelsOff) {
  const TSize kIdeal = {200, 100};
  const struct {
    std::int32_t fWidth;
    std::int32_t fHeight;
    bool fIsIdeal;
  } kCases[] = {{204, 104, true},  {196, 96, true},  {205, 100, false}, {195, 100, false},
                {200, 105, false}, {200, 95, false}, {-200, 100, false}};
  for (const auto& c : kCases) {
    const TRect frame = ClientRectToFrameRect({50, 60, 50 + c.fWidth, 60 + c.fHeight}, kInsets);
    EXPECT_EQ(IsClientSizeIdeal(frame, kIdeal, kInsets), c.fIsIdeal) << c.fWidth << " x " << c.fHeight;
  }
  EXPECT_FALSE(IsClientSizeIdeal({kMin, kMin, kMax, kMax}, {kMax, kMax}, kInsets));
  // Without an ideal size nothing that can be seen is ideal.
  EXPECT_FALSE(IsClientSizeIdeal({100, 100, 400, 400}, {0, 0}, kInsets));
}

TEST(WinWindowPlacement, NormalRectangleStandsWhereTheWindowIs) {
  WINDOWPLACEMENT wp = {};
  wp.rcNormalPosition = {100, 200, 400, 450};
  wp.ptMinPosition = {10, 20};
  wp.ptMaxPosition = {-8, -9};
  const TRect kNormal = {100, 200, 400, 450}, kAtMin = {10, 20, 310, 270}, kAtMax = {-8, -9, 292, 241};
  const struct {
    bool fMinimized, fMaximized, fClientIsEmpty;
    TRect fRect;
  } kCases[] = {
      {false, false, false, kNormal}, {true, false, false, kAtMin}, {false, true, false, kAtMax},
      {false, false, true, kAtMin},   {false, true, true, kAtMin},  {true, true, false, kAtMin},
  };
  for (const auto& c : kCases)
    EXPECT_EQ(NormalRect(wp, c.fMinimized, c.fMaximized, c.fClientIsEmpty), c.fRect);

  wp.rcNormalPosition = {kMin, kMin, kMax, kMax};
  EXPECT_EQ(NormalRect(wp, true, false, false), (TRect{10, 20, kMax, kMax}));
}

// --- FitPlacement

class FitPlacementTest : public testing::Test {
 protected:
  FitPlacementTest() {
    fCurrent.fUserRect = {100, 100, 407, 425};  // client 300 x 300
    fCurrent.fIdealRect = {50, 60, 257, 185};   // client 200 x 100
    fCurrent.fIdealClientSize = {200, 100};
    fWanted.fIdealClientSize = fCurrent.fIdealClientSize;
    fWanted.fPlacement.fZoomState = kWindowStateUser;
    fWanted.fPlacement.fUserRect = fCurrent.fUserRect;
    fWanted.fPlacement.fIdealRect = fCurrent.fIdealRect;
  }
  TWindowPlacement Fit(TZoomState currentZoomState = kWindowStateUser) const {
    return FitPlacement(fWanted, fCurrent, currentZoomState, kInsets);
  }

  TWinWindowState fCurrent;
  TWindowStateRecord fWanted;
};

TEST_F(FitPlacementTest, ANewIdealSizeGrowsTheOldIdealRectangle) {
  fWanted.fIdealClientSize = {250, 50};
  EXPECT_EQ(Fit().fIdealRect, (TRect{50, 60, 307, 135}));
  EXPECT_EQ(Fit().fUserRect, fCurrent.fUserRect);

  fWanted.fIdealClientSize = {0, 0};  // none from now on
  EXPECT_EQ(Fit().fIdealRect, fCurrent.fIdealRect);
}

TEST_F(FitPlacementTest, GoingToTheIdealSizeStartsAtTheUsersCorner) {
  fWanted.fPlacement.fZoomState = kWindowStateIdeal;
  EXPECT_EQ(Fit(kWindowStateUser).fIdealRect, (TRect{100, 100, 307, 225}));
  // It is there already, and stays.
  EXPECT_EQ(Fit(kWindowStateIdeal).fIdealRect, fCurrent.fIdealRect);
}

TEST_F(FitPlacementTest, LimitsMoveTheRightAndBottomEdges) {
  const TRect kIdeal = {50, 60, 257, 185};  // client 200 x 100
  const struct {
    TSize fMinimum;
    TSize fMaximum;
    TRect fUser;
    TRect fIdeal;
  } kCases[] = {
      {{400, 350}, {0, 0}, {100, 100, 507, 475}, {50, 60, 457, 435}},
      {{0, 0}, {0, 200}, {100, 100, 407, 325}, kIdeal},  // width is not limited
      {{0, 0}, {150, 80}, {100, 100, 257, 205}, {50, 60, 207, 165}},
      {{250, 250}, {250, 250}, {100, 100, 357, 375}, {50, 60, 307, 335}},
      {{kMax, kMax}, {0, 0}, {100, 100, kMax, kMax}, {50, 60, kMax, kMax}},
  };
  for (const auto& c : kCases) {
    fWanted.fMinimumClientSize = c.fMinimum;
    fWanted.fMaximumClientSize = c.fMaximum;
    const TWindowPlacement placement = Fit();
    EXPECT_EQ(placement.fUserRect, c.fUser) << testing::PrintToString(c.fMinimum);
    EXPECT_EQ(placement.fIdealRect, c.fIdeal) << testing::PrintToString(c.fMaximum);
  }
}

// The limits go before the ideal size.
TEST_F(FitPlacementTest, LimitsHoldForANewIdealRectangleToo) {
  fWanted.fPlacement.fZoomState = kWindowStateIdeal;
  fWanted.fMaximumClientSize = {150, 0};
  EXPECT_EQ(Fit().fIdealRect, (TRect{100, 100, 257, 225}));
}

// Only that nothing overflows, and that the corner stays where the client put it.
TEST_F(FitPlacementTest, AnythingThatFitsIn32BitsIsTaken) {
  fWanted.fPlacement.fZoomState = kWindowStateIdeal;
  fWanted.fIdealClientSize = fWanted.fMinimumClientSize = fWanted.fMaximumClientSize = {kMax, kMax};
  for (const std::int32_t left : {kMin, 0, kMax}) {
    for (const std::int32_t right : {kMin, 0, kMax}) {
      fWanted.fPlacement.fUserRect = {left, left, right, right};
      fWanted.fPlacement.fIdealRect = {right, right, left, left};
      EXPECT_EQ(Fit().fUserRect.fLeft, left);
      EXPECT_EQ(Fit().fUserRect.fTop, left);
    }
  }
}

}  // namespace

// The task bar lies at the left and the top of the main monitor, which is not the first one.
TEST(WinWindowPlacement, BetweenNativePlacementsAndTheClient) {
  NSMorvaneTest::RecordingMorvane morvane;
  morvane.fMonitors.fMonitorCount = 2;
  morvane.fMonitors.fMainMonitorIndex = 1;
  morvane.fMonitors.fMonitors[0] = TMonitor{{-800, 0, 0, 600}, {-800, 7, 0, 600}, 32};
  morvane.fMonitors.fMonitors[1] = TMonitor{{0, 0, 1280, 960}, {60, 24, 1280, 960}, 32};
  const TPoint offset = OffsetToNativePlacement(morvane);
  const TWindowPlacement native = {true, true, kWindowStateIdeal, {40, 76, 240, 176}, {-60, -24, 40, 76}};
  const TRect user = {100, 100, 300, 200}, ideal = {0, 0, 100, 100};

  const auto check = [&](const auto& client, bool minimized, bool maximized) {
    EXPECT_EQ(client.fZoomState, kWindowStateIdeal);
    EXPECT_EQ(client.fUserRect, user);
    EXPECT_EQ(client.fIdealRect, ideal);
    EXPECT_EQ(PlacementFromClient(client, offset), (TWindowPlacement{minimized, maximized, kWindowStateIdeal,
                                                                     native.fUserRect, native.fIdealRect}));
  };
  check(PlacementForClient<TDocumentWindowPlacement>(native, offset), true, true);
  check(PlacementForClient<TModalDialogPlacement>(native, offset), true, false);
  check(PlacementForClient<TFloatingWindowPlacement>(native, offset), false, true);
  // The flag of a floating window comes unchecked.
  TFloatingWindowPlacement odd = {};
  odd.fMaximized = 7;
  EXPECT_FALSE(PlacementFromClient(odd, offset).fMaximized);
}

}  // namespace NSMorvane
