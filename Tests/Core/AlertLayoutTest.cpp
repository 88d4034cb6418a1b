// Alert boxes without their window: buttons, line ends, and rectangles to the pixel. Every character is 10 by
// 13 here.
#include "Component/Portable/Dialogs/AlertLayout.h"

#include "Component/Portable/Base/Geometry.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

class AlertLayout : public ReportingTest, protected ITextMeasure {
 protected:
  TSize GetExtent(const TString& text) override { return {static_cast<std::int32_t>(text.size()) * 10, 13}; }
  std::size_t CountFitting(const TString& text, std::int32_t width) override {
    fUnits += text.size();
    return std::min(text.size(), static_cast<std::size_t>(width / 10));
  }
  std::int32_t GetShownHeight(const TString&, std::int32_t) override { return fShownHeight; }

  std::int32_t fShownHeight = 0;
  std::size_t fUnits = 0;  // that have been looked at to find out how many fit
};

}  // namespace

TEST_F(AlertLayout, ButtonsAndResponses) {
  const auto responses = [](std::uint32_t layout) {
    std::string text;
    for (const int command : {-1, 0, 1, 2, 3, 6, 7}) {
      const auto response = ResponseOfCommand(layout, command);
      text += response ? std::to_string(*response - kAlertResponseFirst + 1) : "-";
    }
    return text;
  };
  // For no button, 0, OK, Cancel, 3, Yes and No.
  for (const auto& [layout, ids, defaultID, wanted] : Rows<std::uint32_t, std::vector<int>, int, std::string>{
           {kAlertOneButton, {1, -1, -1}, 1, "--11---"},
           {kAlertTwoButtonsFirstDefault, {1, 2, -1}, 1, "--12---"},
           {kAlertTwoButtonsSecondDefault, {1, 2, -1}, 2, "--12---"},
           {kAlertThreeButtonsFirstDefault, {6, 7, 2}, 6, "--13-12"},
           {kAlertThreeButtonsThirdDefault, {6, 7, 2}, 2, "--33-12"},
           {kAlertSaveChanges, {6, 7, 2}, 6, "--13-12"}}) {
    const TAlertButtons buttons = ButtonsOfLayout(layout);
    EXPECT_EQ(std::vector<int>(std::begin(buttons.fIDs), std::end(buttons.fIDs)), ids) << layout;
    EXPECT_EQ(buttons.fDefaultID, defaultID) << layout;
    EXPECT_EQ(responses(layout), wanted) << layout;
  }
  for (const std::uint32_t unknown : {1u, 13999u, 14005u}) {
    EXPECT_THROW(ButtonsOfLayout(unknown), std::logic_error);
    EXPECT_EQ(TakeReports(), "false");
  }
}

TEST_F(AlertLayout, TextAndLineEnds) {
  EXPECT_EQ(ComposeAlertText(u"m", u"d"), u"m\r\rd");
  EXPECT_EQ(ComposeAlertText(u"m", u""), u"m");
  EXPECT_EQ(ComposeAlertText(u"", u"d"), u"d");
  const Rows<TString, TString> rows = {{u"", u""},
                                       {u"a\x2029\x2029z", u"a\r\rz"},
                                       {u"a\r\nb\r\n\r\n", u"a\rb\r\r"},
                                       {u"\r\n\n", u"\r\r"},
                                       {u"a\x2029\nb", u"a\rb"},
                                       {u"a\nb\nc", u"a\rb\nc"},
                                       {u"\r\r\n\n\n", u"\r\r\r\n"}};
  for (const auto& [text, normalized] : rows) EXPECT_EQ(NormalizeLineEnds(text), normalized);
}

TEST_F(AlertLayout, Measuring) {
  const Rows<TString, TSize> rows = {{u"", {0, 0}},
                                     {u"abc", {30, 13}},
                                     {u"a\rabcd\rab", {40, 39}},
                                     {u"a\r", {10, 13}},
                                     {u"\r\ra", {10, 39}},
                                     {u"\r", {0, 13}},
                                     {TString(60, u'x'), {600, 13}},
                                     {TString(61, u'x'), {600, 26}},
                                     {TString(121, u'x') + u"\rab", {600, 52}},
                                     {TString(100000, u'x'), {600, 1667 * 13}}};
  for (const auto& [text, size] : rows)
    EXPECT_EQ(MeasureAlertText(text, *this), size) << NSTextPackage::StringToUTF8(text, false);
  EXPECT_LT(fUnits, 2000000u) << "the work is to grow with the text, and not with its square";
  // Lines that are broken between words can be more.
  fShownHeight = 65;
  EXPECT_EQ(MeasureAlertText(u"abc", *this), (TSize{30, 65}));
}

TEST_F(AlertLayout, Places) {
  const auto check = [](const char* name, const TAlertContents& contents, const TSize& size,
                        const TRect& text, const TRect& icon, const std::vector<TRect>& buttons) {
    SCOPED_TRACE(name);
    EXPECT_EQ(AlertClientSize(contents), size);
    const TAlertPlaces places = PlaceAlertControls(contents, size.fWidth);
    EXPECT_EQ(places.fText, text);
    EXPECT_EQ(places.fIcon, icon);
    EXPECT_EQ(places.fButtons, buttons);
  };
  const TRect icon = {15, 11, 47, 43}, text = {15, 11, 115, 24};
  check("a short line gets the icon's height", {{100, 13}, true, {20}}, {172, 91}, {66, 11, 166, 43}, icon,
        {{48, 57, 123, 80}});
  check("the least button", {{100, 13}, false, {59}}, {121, 72}, text, {}, {{23, 38, 98, 61}});
  check("a wider one", {{100, 13}, false, {60}}, {121, 72}, text, {}, {{22, 38, 98, 61}});
  check("two buttons, wider than the text", {{50, 40}, false, {20, 84}}, {206, 99}, {15, 11, 65, 51}, {},
        {{12, 65, 87, 88}, {93, 65, 193, 88}});
  check("three buttons", {{50, 40}, true, {0, 0, 0}}, {262, 99}, {66, 11, 116, 51}, icon,
        {{12, 65, 87, 88}, {93, 65, 168, 88}, {174, 65, 249, 88}});
  check("a long text", {{600, 130}, true, {20}}, {672, 189}, {66, 11, 666, 141}, icon,
        {{298, 155, 373, 178}});
  // Buttons are centred in the client area that there is.
  EXPECT_EQ(PlaceAlertControls({{10, 10}, false, {0}}, 200).fButtons[0], (TRect{62, 35, 137, 58}));
}
