// The validators: which values pass, and that each refusal is reported once.
#include <functional>

#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

template <std::size_t kSize>
void Fill(TChar (&text)[kSize], std::size_t length) {
  std::fill(text, text + kSize, u'x');
  if (length < kSize) text[length] = 0;
}

template <class TRecord>
using TChanges = std::vector<std::function<void(TRecord&)>>;

#define SET(field, ...) [](auto& r) { r.field = __VA_ARGS__; }
#define FILL(field, length) [](auto& r) { Fill(r.field, length); }

class Validators : public ReportingTest {
 protected:
  // Expects a verdict after each of the changes, and a report of each refusal.
  template <class TRecord>
  void Check(const TRecord& good, bool (*validate)(const TRecord&), const TChanges<TRecord>& valid,
             const TChanges<TRecord>& invalid) {
    EXPECT_TRUE(validate(good));
    for (std::size_t i = 0; i < valid.size() + invalid.size(); ++i) {
      const bool isValid = i < valid.size();
      SCOPED_TRACE((isValid ? "valid " : "invalid ") + std::to_string(isValid ? i : i - valid.size()));
      TRecord record = good;
      (isValid ? valid[i] : invalid[i - valid.size()])(record);
      EXPECT_EQ(isValid, validate(record));
      EXPECT_EQ(isValid, fOutput.fAssertions.empty());
      TakeReports();
    }
  }
  template <class TValue>
  void CheckValues(bool (*validate)(TValue), std::initializer_list<std::uint32_t> good,
                   std::initializer_list<std::uint32_t> bad, bool reports = true) {
    for (std::uint32_t value : good) EXPECT_TRUE(validate(static_cast<TValue>(value))) << value;
    EXPECT_EQ("", TakeReports());
    for (std::uint32_t value : bad) EXPECT_FALSE(validate(static_cast<TValue>(value))) << value;
    EXPECT_EQ(reports ? bad.size() : 0, std::exchange(fOutput.fAssertions, {}).size());
  }
  // Minimum, maximum and ideal size, and what else the states of all kinds have.
  template <class TState>
  void CheckState(bool (*validate)(const TState&), const TChanges<TState>& valid,
                  const TChanges<TState>& invalid) {
    TState good{};
    good.fPlacement.fZoomState = kWindowStateUser;
    Check<TState>(good, validate, valid, invalid);
    const auto sizes = [](const Rows<TSize, TSize, TSize>& rows) {
      TChanges<TState> changes;
      for (const auto& row : rows)
        changes.push_back([row](TState& s) {
          std::tie(s.fMinimumClientSize, s.fMaximumClientSize, s.fIdealClientSize) = row;
        });
      return changes;
    };
    const TSize none = {};
    Check<TState>(good, validate,
                  sizes({{none, none, {100, 100}}, {{300, 0}, {0, 300}, none}, {{0, 300}, {0, 300}, none}}),
                  sizes({{{-1, 0}, none, none},
                         {{0, -1}, none, none},
                         {none, {0, -1}, none},
                         {none, none, {-1, -1}},
                         {none, none, {100, 0}},
                         {none, none, {0, 100}},
                         {{300, 0}, {299, 0}, none},
                         {{100, 100}, none, {99, 200}},
                         {{100, 100}, none, {200, 99}},
                         {none, {100, 100}, {101, 50}},
                         {none, {100, 100}, {50, 101}}}));
    Check<TState>(good, validate,
                  {SET(fModified, 1), FILL(fTitle, 1023), SET(fPlacement.fZoomState, kWindowStateIdeal)},
                  {SET(fModified, 2), FILL(fTitle, 1024), SET(fPlacement.fZoomState, TZoomState(2199)),
                   SET(fPlacement.fZoomState, TZoomState(2202))});
  }
};

}  // namespace

TEST_F(Validators, Numbers) {
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
  const auto modifiers = [](std::uint32_t keys) { return ValidateModifierKeys(TModifierKeys{keys, 0}); };
  CheckValues<std::uint32_t>(modifiers, {0, 2, 0x1E}, {1, 0x20, 0x80000000});
}

TEST_F(Validators, Records) {
  EXPECT_TRUE(ValidateDebugSettings({1, 1, 1, 1, 1, 1, 1}));
  Check<TDebugSettings>(
      {}, ValidateDebugSettings, {},
      {SET(fDebugMenu, 2), SET(fDrawInvalidationBlue, 2), SET(fDrawPaintsRed, 2), SET(fDrawViewBounds, 2),
       SET(fDrawMouseViewInfo, 2), SET(fFlushViews, 2), SET(fDelayAfterFlushing, 2)});
  Check<TStartupParams>({u"A", u"B", u"C", 0, 0, 0}, ValidateStartupParams,
                        {FILL(fCompanyName, 255), FILL(fProductName, 255), FILL(fDisplayName, 255)},
                        {FILL(fCompanyName, 0), FILL(fCompanyName, 256), FILL(fProductName, 0),
                         FILL(fProductName, 256), FILL(fDisplayName, 0), FILL(fDisplayName, 256)});
  Check<TKeyInterpretation>(
      {u"a", {}, 0}, ValidateKeyInterpretation, {FILL(fKeyText, 15)},
      {FILL(fKeyText, 0), FILL(fKeyText, 16), SET(fModifiers.fKeys, 1), SET(fPhysicalTest, 2)});
  Check<TViewParams>({kViewEnabled, {0, 0, 10, 10}, kViewDrawDirect, kAutoInvalidationNone},
                     ValidateViewParams,
                     {SET(fFlags, 0xF), SET(fRect, {5, 5, 5, 5}), SET(fDrawMode, kViewDrawPermanent32),
                      SET(fAutoInvalidation, TAutoInvalidation(9))},
                     {SET(fFlags, 0x10), SET(fRect.fRight, -1), SET(fRect.fBottom, -1),
                      SET(fDrawMode, TViewDrawMode(6899)), SET(fDrawMode, TViewDrawMode(6905))});
}

TEST_F(Validators, Monitors) {
  TMonitorList list{};
  list.fMonitorCount = 32;
  list.fMainMonitorIndex = 31;
  for (TMonitor& monitor : list.fMonitors) monitor = {{0, 0, 100, 100}, {0, 0, 100, 100}, 32};
  const auto none = [](TMonitorList& l) { l.fMonitorCount = 0, l.fMainMonitorIndex = 99; };
  Check<TMonitorList>(list, ValidateMonitors, {none, SET(fMonitors[3].fWorkArea, {1, 1, 99, 99})},
                      {SET(fMonitorCount, 33), SET(fMonitorCount, 31), SET(fMonitors[3].fWorkArea.fLeft, -1),
                       SET(fMonitors[3].fWorkArea.fTop, -1), SET(fMonitors[3].fWorkArea.fRight, 101),
                       SET(fMonitors[31].fWorkArea.fBottom, 101), SET(fMonitors[0].fBitDepth, 33)});
}

TEST_F(Validators, Alerts) {
  TAlertSpec good{};
  good.fKind = kAlertPlain;
  good.fButton1[0] = u'a';
  const auto buttons = [](std::size_t second, std::size_t third) {
    return [=](TAlertSpec& s) { Fill(s.fButton2, second), Fill(s.fButton3, third); };
  };
  Check<TAlertSpec>(
      good, ValidateAlertSpec,
      {SET(fButtonLayout, TAlertButtonLayout(1)), FILL(fMessage, 1023), buttons(1, 1)},
      {SET(fKind, TAlertKind(22)), SET(fKind, TAlertKind(27)), FILL(fMessage, 1024), FILL(fDetails, 1024),
       FILL(fButton1, 0), FILL(fButton1, 1024), FILL(fButton2, 1024), buttons(1, 1024), FILL(fButton3, 1)});
}

TEST_F(Validators, WindowStates) {
  CheckState(ValidateDocumentWindowState, {}, {SET(fPlacement.fMinimized, 2), SET(fPlacement.fMaximized, 2)});
  CheckState(ValidateModelessDialogState, {}, {});
  CheckState(ValidateModalDialogState, {}, {SET(fPlacement.fMinimized, 2)});
  CheckState(ValidateFloatingWindowState, {SET(fPlacement.fMaximized, 2)}, {});  // not tested in this kind
}
