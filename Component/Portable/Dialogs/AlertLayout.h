// What an alert box says, which buttons it has, and where its parts are placed. No window is needed here;
// ITextMeasure measures the texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"
#include "Interface/MorvaneDialogs.h"

namespace NSMorvane {

using NSTextPackage::TString;

// --- Buttons

// The numbers of the buttons, which are those of the system's common dialogs.
enum TAlertButtonID : std::int32_t {
  kAlertButtonNone = -1,
  kAlertButtonOK = 1,
  kAlertButtonCancel = 2,
  kAlertButtonYes = 6,
  kAlertButtonNo = 7
};

// The layout of the question whether to save changes, in addition to those of TAlertButtonLayout.
constexpr std::uint32_t kAlertSaveChanges = 0;

struct TAlertButtons {
  TAlertButtonID fIDs[3];  // from the left; kAlertButtonNone where there is no button
  TAlertButtonID fDefaultID;
};

// Throws std::logic_error for an unknown layout.
TAlertButtons ButtonsOfLayout(std::uint32_t layout);

// The response that a command of a layout stands for; none if it is no command of the layout. The system
// sends kAlertButtonOK for the Return key in every layout: in a layout without this button, it stands for the
// default button.
std::optional<TAlertResponse> ResponseOfCommand(std::uint32_t layout, std::int32_t command);

// --- Text

// The message, an empty line, and the details.
TString ComposeAlertText(const TString& message, const TString& details);

// Replaces each U+2029, each pair U+000D U+000A, and the first U+000A that stands alone by U+000D.
TString NormalizeLineEnds(const TString& text);

class ITextMeasure {
 public:
  // The size of the text on one line.
  virtual TSize GetExtent(const TString& text) = 0;
  // How many units of the text, from its beginning, fit into `width`.
  virtual std::size_t CountFitting(const TString& text, std::int32_t width) = 0;
  // The height of the text as it is shown with lines of this width.
  virtual std::int32_t GetShownHeight(const TString& text, std::int32_t width) = 0;

 protected:
  virtual ~ITextMeasure() = default;
};

// Lines end at U+000D, or where they are 600 pixels wide. The height is that of these lines, or that of the
// text as it is shown, with lines broken between words, if that is more.
TSize MeasureAlertText(const TString& text, ITextMeasure& measure);

// --- Places

struct TAlertContents {
  TSize fTextSize;
  bool fHasIcon;
  std::vector<std::int32_t> fLabelWidths;
};

TSize AlertClientSize(const TAlertContents& contents);

struct TAlertPlaces {
  TRect fText;
  TRect fIcon;  // empty without an icon
  std::vector<TRect> fButtons;
};

// For a client area of this width.
TAlertPlaces PlaceAlertControls(const TAlertContents& contents, std::int32_t clientWidth);

// How much higher the client area is than the text, or than the icon if that is higher.
enum : std::int32_t { kAlertHeightBesideText = 59 };

}  // namespace NSMorvane
