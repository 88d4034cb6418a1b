// The validators: which values pass, and that each refusal is reported once.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <functional>

#include "Component/Portable/MorvaneGlueValidators.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

// Expects `validate(record)` after each change, and the assertion that goes with a refusal.
template <class TRecord>
struct Row {
  bool fValid;
  std::function<void(TRecord&)> fChange;
};

template <class TRecord>
void Check(const TRecord& good, bool (*validate)(const TRecord&), const std::vector<Row<TRecord>>& rows) {
  RecordingDebugOutput output;
  EXPECT_TRUE(validate(good));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE(i);
    TRecord record = good;
    rows[i].fChange(record);
    output.Reset();
    EXPECT_EQ(rows[i].fValid, validate(record));
    EXPECT_EQ(rows[i].fValid ? 0u : 1u, std::min<std::size_t>(1, output.fAssertions.size()));
    for (const std::string& assertion : output.fAssertions) EXPECT_EQ("false", assertion);
    EXPECT_EQ(0, output.fDepth);
  }
}

template <std::size_t kSize>
void Fill(TChar (&text)[kSize], std::size_t length) {
  std::fill(text, text + kSize, u'x');
  if (length < kSize) text[length] = 0;
}

template <class TValue>
void CheckValues(bool (*validate)(TValue), std::initializer_list<std::uint32_t> good,
                 std::initializer_list<std::uint32_t> bad, bool reports = true) {
  RecordingDebugOutput output;
  for (std::uint32_t value : good) EXPECT_TRUE(validate(static_cast<TValue>(value))) << value;
  EXPECT_TRUE(output.fAssertions.empty());
  for (std::uint32_t value : bad) EXPECT_FALSE(validate(static_cast<TValue>(value))) << value;
  EXPECT_EQ(reports ? bad.size() : 0, output.fAssertions.size());
}

template <class TState>
TState GoodState() {
  TState state{};
  state.fPlacement.fZoomState = kWindowStateUser;
  return state;
}

// Minimum, maximum and ideal size, in states of every kind.
template <class TState>
std::vector<Row<TState>> StateRows() {
  const struct {
    bool fValid;
    TSize fMinimum, fMaximum, fIdeal;
  } sizes[] = {
      {false, {-1, 0}, {}, {}},           {false, {0, -1}, {}, {}},
      {false, {}, {-1, 0}, {}},           {false, {}, {0, -1}, {}},
      {false, {}, {}, {-1, -1}},          {false, {}, {}, {100, 0}},
      {false, {}, {}, {0, 100}},          {true, {}, {}, {100, 100}},
      {true, {300, 0}, {0, 300}, {}},     {false, {300, 0}, {299, 0}, {}},
      {false, {0, 300}, {0, 299}, {}},    {true, {0, 300}, {0, 300}, {}},
      {false, {100, 100}, {}, {99, 200}}, {false, {100, 100}, {}, {200, 99}},
      {false, {}, {100, 100}, {101, 50}}, {false, {}, {100, 100}, {50, 101}},
  };
  std::vector<Row<TState>> rows = {
      {false, [](TState& s) { s.fModified = 2; }},
      {true, [](TState& s) { s.fModified = 1; }},
      {true, [](TState& s) { Fill(s.fTitle, 1023); }},
      {false, [](TState& s) { Fill(s.fTitle, 1024); }},
      {false, [](TState& s) { s.fPlacement.fZoomState = static_cast<TZoomState>(2199); }},
      {false, [](TState& s) { s.fPlacement.fZoomState = static_cast<TZoomState>(2202); }},
      {true, [](TState& s) { s.fPlacement.fZoomState = kWindowStateIdeal; }},
  };
  for (const auto& row : sizes)
    rows.push_back({row.fValid, [row](TState& s) {
                      s.fMinimumClientSize = row.fMinimum;
                      s.fMaximumClientSize = row.fMaximum;
                      s.fIdealClientSize = row.fIdeal;
                    }});
  return rows;
}

}  // namespace

TEST(Validators, Numbers) {
  CheckValues(ValidateShortcutModifiers, {4000, 4004}, {3999, 4005});
  CheckValues(ValidateBuiltinIcon, {3001, 3017}, {3000, 3018});
  CheckValues(IsValidBuiltInMouseShape, {1300, 1303, 1400, 1405, 1500, 1505, 1606, 1608, 1700, 1710},
              {1299, 1304, 1399, 1406, 1499, 1506, 1600, 1605, 1609, 1699, 1711}, false);
  CheckValues(ValidateCloseReason, {0, 1}, {2, 0xFFFFFFFF}, false);
  CheckValues(ValidateDocumentWindowStyleFlags, {0, 0x00F00000}, {0x01000000, 0x02000000, 0x00080000});
  CheckValues(ValidateModelessDialogStyleFlags, {0, 0x01F00000, 0x02000000},
              {0x02100000, 0x03000000, 0x04000000, 1});
  CheckValues(ValidateModalDialogStyleFlags, {0, 0x00D00000}, {0x00200000, 0x01000000});
  CheckValues(ValidateFloatingWindowStyleFlags, {0, 0x01F00000}, {0x02000000});
  int shapes = 0;
  for (std::uint32_t shape = 0; shape < 3000; ++shape)
    shapes += IsValidBuiltInMouseShape(static_cast<TBuiltInMouseShape>(shape));
  EXPECT_EQ(30, shapes);
}

TEST(Validators, DebugSettings) {
  RecordingDebugOutput output;
  EXPECT_TRUE(ValidateDebugSettings({1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(std::vector<std::string>{"[Morvane] ValidateDebugSettings()"}, output.fLines);
  EXPECT_EQ(1, output.fIndents);
  for (TFlag TDebugSettings::*field :
       {&TDebugSettings::fDebugMenu, &TDebugSettings::fDrawInvalidationBlue, &TDebugSettings::fDrawPaintsRed,
        &TDebugSettings::fDrawViewBounds, &TDebugSettings::fDrawMouseViewInfo, &TDebugSettings::fFlushViews,
        &TDebugSettings::fDelayAfterFlushing})
    Check<TDebugSettings>({}, ValidateDebugSettings, {{false, [&](TDebugSettings& s) { s.*field = 2; }}});
}

TEST(Validators, StartupParams) {
  TStartupParams good{};
  for (auto* name : {&good.fCompanyName, &good.fProductName, &good.fDisplayName}) Fill(*name, 1);
  std::vector<Row<TStartupParams>> rows;
  using TName = TChar[kStartupNameChars + 1];
  for (TName TStartupParams::*name :
       {&TStartupParams::fCompanyName, &TStartupParams::fProductName, &TStartupParams::fDisplayName}) {
    rows.push_back({false, [=](TStartupParams& p) { Fill(p.*name, 0); }});
    rows.push_back({true, [=](TStartupParams& p) { Fill(p.*name, 255); }});
    rows.push_back({false, [=](TStartupParams& p) { Fill(p.*name, 256); }});
  }
  Check(good, ValidateStartupParams, rows);
}

TEST(Validators, Monitors) {
  TMonitorList list{};
  list.fMonitorCount = 32;
  list.fMainMonitorIndex = 31;
  for (TMonitor& monitor : list.fMonitors) monitor = {{0, 0, 100, 100}, {0, 0, 100, 100}, 32};
  Check<TMonitorList>(list, ValidateMonitors,
                      {{true, [](TMonitorList& l) { l.fMonitorCount = 0, l.fMainMonitorIndex = 99; }},
                       {false, [](TMonitorList& l) { l.fMonitorCount = 33; }},
                       {false, [](TMonitorList& l) { l.fMonitorCount = 31; }},
                       {true,
                        [](TMonitorList& l) {
                          l.fMonitors[3].fWorkArea = {1, 1, 99, 99};
                        }},
                       {false, [](TMonitorList& l) { l.fMonitors[3].fWorkArea.fLeft = -1; }},
                       {false, [](TMonitorList& l) { l.fMonitors[3].fWorkArea.fTop = -1; }},
                       {false, [](TMonitorList& l) { l.fMonitors[3].fWorkArea.fRight = 101; }},
                       {false, [](TMonitorList& l) { l.fMonitors[31].fWorkArea.fBottom = 101; }},
                       {false, [](TMonitorList& l) { l.fMonitors[0].fBitDepth = 33; }}});
  RecordingDebugOutput output;
  list.fMonitors[7].fBitDepth = 48;
  ValidateMonitors(list);
  list.fMonitors[3].fBounds.fRight = 99;
  ValidateMonitors(list);
  EXPECT_EQ((std::vector<std::string>{"[Morvane] Bad bit depth for monitor 7: 48",
                                      "[Morvane] Bad bounds for monitor 3"}),
            output.fLines);
}

TEST(Validators, Keys) {
  CheckValues<std::uint32_t>(
      [](std::uint32_t keys) {
        return ValidateModifierKeys({keys, 0});
      },
      {0, 2, 0x1E}, {1, 0x20, 0x80000000});
  EXPECT_TRUE(ValidatePhysicalKeySpec({255, 255, 0xFFFF}));
  TKeyInterpretation good{};
  good.fKeyText[0] = u'a';
  Check<TKeyInterpretation>(good, ValidateKeyInterpretation,
                            {{false, [](TKeyInterpretation& i) { Fill(i.fKeyText, 0); }},
                             {true, [](TKeyInterpretation& i) { Fill(i.fKeyText, 15); }},
                             {false, [](TKeyInterpretation& i) { Fill(i.fKeyText, 16); }},
                             {false, [](TKeyInterpretation& i) { i.fModifiers.fKeys = 1; }},
                             {false, [](TKeyInterpretation& i) { i.fPhysicalTest = 2; }}});
}

TEST(Validators, Alerts) {
  TAlertSpec good{};
  good.fKind = kAlertPlain;
  good.fButton1[0] = u'a';
  Check<TAlertSpec>(good, ValidateAlertSpec,
                    {{false, [](TAlertSpec& s) { s.fKind = static_cast<TAlertKind>(22); }},
                     {false, [](TAlertSpec& s) { s.fKind = static_cast<TAlertKind>(27); }},
                     {true, [](TAlertSpec& s) { s.fButtonLayout = static_cast<TAlertButtonLayout>(1); }},
                     {true, [](TAlertSpec& s) { Fill(s.fMessage, 1023); }},
                     {false, [](TAlertSpec& s) { Fill(s.fMessage, 1024); }},
                     {false, [](TAlertSpec& s) { Fill(s.fDetails, 1024); }},
                     {false, [](TAlertSpec& s) { Fill(s.fButton1, 0); }},
                     {false, [](TAlertSpec& s) { Fill(s.fButton1, 1024); }},
                     {false, [](TAlertSpec& s) { Fill(s.fButton2, 1024); }},
                     {false, [](TAlertSpec& s) { Fill(s.fButton2, 1), Fill(s.fButton3, 1024); }},
                     {false, [](TAlertSpec& s) { Fill(s.fButton3, 1); }},
                     {true, [](TAlertSpec& s) { Fill(s.fButton2, 1), Fill(s.fButton3, 1); }}});
}

TEST(Validators, ViewParams) {
  const TViewParams good = {kViewEnabled, {0, 0, 10, 10}, kViewDrawDirect, kAutoInvalidationNone};
  Check<TViewParams>(
      good, ValidateViewParams,
      {{true, [](TViewParams& p) { p.fFlags = 0xF; }},
       {false, [](TViewParams& p) { p.fFlags = 0x10; }},
       {true,
        [](TViewParams& p) {
          p.fRect = {5, 5, 5, 5};
        }},
       {false, [](TViewParams& p) { p.fRect.fRight = -1; }},
       {false, [](TViewParams& p) { p.fRect.fBottom = -1; }},
       {true, [](TViewParams& p) { p.fDrawMode = kViewDrawPermanent32; }},
       {false, [](TViewParams& p) { p.fDrawMode = static_cast<TViewDrawMode>(6899); }},
       {false, [](TViewParams& p) { p.fDrawMode = static_cast<TViewDrawMode>(6905); }},
       {true, [](TViewParams& p) { p.fAutoInvalidation = static_cast<TAutoInvalidation>(9); }}});
}

TEST(Validators, WindowStates) {
  Check(GoodState<TDocumentWindowState>(), ValidateDocumentWindowState, StateRows<TDocumentWindowState>());
  Check(GoodState<TModelessDialogState>(), ValidateModelessDialogState, StateRows<TModelessDialogState>());
  Check(GoodState<TModalDialogState>(), ValidateModalDialogState, StateRows<TModalDialogState>());
  Check(GoodState<TFloatingWindowState>(), ValidateFloatingWindowState, StateRows<TFloatingWindowState>());
  Check<TDocumentWindowState>(GoodState<TDocumentWindowState>(), ValidateDocumentWindowState,
                              {{false, [](TDocumentWindowState& s) { s.fPlacement.fMinimized = 2; }},
                               {false, [](TDocumentWindowState& s) { s.fPlacement.fMaximized = 2; }}});
  Check<TModalDialogState>(GoodState<TModalDialogState>(), ValidateModalDialogState,
                           {{false, [](TModalDialogState& s) { s.fPlacement.fMinimized = 2; }}});
  // Not tested in this kind.
  Check<TFloatingWindowState>(GoodState<TFloatingWindowState>(), ValidateFloatingWindowState,
                              {{true, [](TFloatingWindowState& s) { s.fPlacement.fMaximized = 2; }}});
}

TEST(Validators, NativeWindows) {
  RecordingDebugOutput output;
  EXPECT_TRUE(IsValidNativeWindow({::GetDesktopWindow()}));
  EXPECT_TRUE(output.fAssertions.empty());
  EXPECT_FALSE(IsValidNativeWindow({nullptr}));
  EXPECT_FALSE(IsValidNativeWindow({reinterpret_cast<HWND__*>(std::uintptr_t{0x7FFFFFFE})}));
  EXPECT_EQ(2u, output.fAssertions.size());
}
