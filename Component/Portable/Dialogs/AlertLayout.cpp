#include "Component/Portable/Dialogs/AlertLayout.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

namespace {

constexpr TChar kReturn = u'\r';
constexpr TChar kLineFeed = u'\n';
constexpr TChar kLineBreak = u'\x2029';

constexpr std::int32_t kLineWidth = 600;
// More than a line holds: what is to be fitted into it is not the whole of a long text each time.
constexpr std::size_t kMostUnitsInLine = 1000;
constexpr std::int32_t kMargin = 15;
constexpr std::int32_t kTop = 11;
constexpr std::int32_t kIconSide = 32;
constexpr std::int32_t kTextBesideIcon = 66;
constexpr std::int32_t kWidthOfIcon = kTextBesideIcon - kMargin;
constexpr std::int32_t kWidthBesideText = 21;
constexpr std::int32_t kWidthBesideButtons = 25;
constexpr std::int32_t kButtonsBelowText = 25;
constexpr std::int32_t kLeastButtonWidth = 75;
constexpr std::int32_t kWidthBesideLabel = 16;
constexpr std::int32_t kButtonHeight = 23;
constexpr std::int32_t kButtonGap = 6;

std::int32_t ButtonWidth(std::int32_t labelWidth) {
  return std::max(labelWidth + kWidthBesideLabel, kLeastButtonWidth);
}

// All buttons with the gaps between them.
std::int32_t RowWidth(const std::vector<std::int32_t>& labelWidths) {
  if (labelWidths.empty()) return 0;
  return std::accumulate(labelWidths.begin(), labelWidths.end(),
                         kButtonGap * static_cast<std::int32_t>(labelWidths.size() - 1),
                         [](std::int32_t sum, std::int32_t width) { return sum + ButtonWidth(width); });
}

std::int32_t HeightBesideIcon(const TAlertContents& contents) {
  return contents.fHasIcon ? std::max(contents.fTextSize.fHeight, kIconSide) : contents.fTextSize.fHeight;
}

}  // namespace

// --- Buttons

TAlertButtons ButtonsOfLayout(std::uint32_t layout) {
  switch (layout) {
    case kAlertOneButton:
      return {{kAlertButtonOK, kAlertButtonNone, kAlertButtonNone}, kAlertButtonOK};
    case kAlertTwoButtonsFirstDefault:
      return {{kAlertButtonOK, kAlertButtonCancel, kAlertButtonNone}, kAlertButtonOK};
    case kAlertTwoButtonsSecondDefault:
      return {{kAlertButtonOK, kAlertButtonCancel, kAlertButtonNone}, kAlertButtonCancel};
    case kAlertThreeButtonsThirdDefault:
      return {{kAlertButtonYes, kAlertButtonNo, kAlertButtonCancel}, kAlertButtonCancel};
    case kAlertThreeButtonsFirstDefault:
    case kAlertSaveChanges:
      return {{kAlertButtonYes, kAlertButtonNo, kAlertButtonCancel}, kAlertButtonYes};
  }
  MORVANE_UNREACHED();
  MORVANE_THROW(std::logic_error(""));
}

std::optional<TAlertResponse> ResponseOfCommand(std::uint32_t layout, std::int32_t command) {
  const TAlertButtons buttons = ButtonsOfLayout(layout);
  if (layout == kAlertOneButton && command == kAlertButtonCancel) return kAlertResponseFirst;
  if (command == kAlertButtonOK && buttons.fIDs[0] != kAlertButtonOK) command = buttons.fDefaultID;
  constexpr TAlertResponse kResponses[] = {kAlertResponseFirst, kAlertResponseSecond, kAlertResponseThird};
  for (std::size_t i = 0; i < std::size(kResponses); ++i)
    if (buttons.fIDs[i] != kAlertButtonNone && buttons.fIDs[i] == command) return kResponses[i];
  return std::nullopt;
}

// --- Text

TString ComposeAlertText(const TString& message, const TString& details) {
  if (message.empty() || details.empty()) return message + details;
  return message + TString(2, kReturn) + details;
}

TString NormalizeLineEnds(const TString& text) {
  TString result = text;
  std::replace(result.begin(), result.end(), kLineBreak, kReturn);
  for (std::size_t i = 0; (i = result.find(u"\r\n", i)) != TString::npos; ++i) result.erase(i + 1, 1);
  if (const std::size_t i = result.find(kLineFeed); i != TString::npos) result[i] = kReturn;
  return result;
}

TSize MeasureAlertText(const TString& text, ITextMeasure& measure) {
  const std::int32_t lineHeight = measure.GetExtent(u"\xC5\xC4\xD6qy\xA3\xBD_^\\").fHeight;
  TSize size = {0, 0};
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(kReturn, begin), text.size());
    if (begin == end) size.fHeight += lineHeight;
    while (begin < end) {
      const TString rest = text.substr(begin, std::min(end - begin, kMostUnitsInLine));
      const std::size_t count =
          std::clamp<std::size_t>(measure.CountFitting(rest, kLineWidth), 1, rest.size());
      size.fWidth = std::max(size.fWidth, measure.GetExtent(rest.substr(0, count)).fWidth);
      size.fHeight += lineHeight;
      begin += count;
    }
    begin = end + 1;
  }
  size.fHeight = std::max(size.fHeight, measure.GetShownHeight(text, size.fWidth));
  return size;
}

// --- Places

TSize AlertClientSize(const TAlertContents& contents) {
  const std::int32_t textWidth = contents.fTextSize.fWidth + (contents.fHasIcon ? kWidthOfIcon : 0);
  return {std::max(RowWidth(contents.fLabelWidths) + kWidthBesideButtons, textWidth + kWidthBesideText),
          HeightBesideIcon(contents) + kAlertHeightBesideText};
}

TAlertPlaces PlaceAlertControls(const TAlertContents& contents, std::int32_t clientWidth) {
  TAlertPlaces places = {};
  const std::int32_t height = HeightBesideIcon(contents);
  const std::int32_t textLeft = contents.fHasIcon ? kTextBesideIcon : kMargin;
  if (contents.fHasIcon) places.fIcon = {kMargin, kTop, kMargin + kIconSide, kTop + kIconSide};
  places.fText = {textLeft, kTop, textLeft + contents.fTextSize.fWidth, kTop + height};
  const std::int32_t top = height + kButtonsBelowText;
  std::int32_t left = (clientWidth - RowWidth(contents.fLabelWidths)) / 2;
  for (const std::int32_t labelWidth : contents.fLabelWidths) {
    const std::int32_t right = left + ButtonWidth(labelWidth);
    places.fButtons.push_back({left, top, right, top + kButtonHeight});
    left = right + kButtonGap;
  }
  return places;
}

}  // namespace NSMorvane
