// What an alert box says, which buttons it has, and where everything stands. No window is needed here; what
// text takes in pixels is asked of ITextMeasure.
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

// The layout of the question whether to save changes, beside those of TAlertButtonLayout.
constexpr std::uint32_t kAlertSaveChanges = 0;

struct TAlertButtons {
  TAlertButtonID fIDs[3];  // from the left; kAlertButtonNone where there is no button
  TAlertButtonID fDefaultID;
};

// Throws std::logic_error for an unknown layout.
TAlertButtons ButtonsOfLayout(std::uint32_t layout);

// The response that a command of a layout stands for; none if it is no command of the layout. The system
// sends kAlertButtonOK for the Return key in every layout: where there is no such button it stands for the
// default one.
std::optional<TAlertResponse> ResponseOfCommand(std::uint32_t layout, std::int32_t command);

// --- Text

// The message, and below it, behind an empty line, the details.
TString ComposeAlertText(const TString& message, const TString& details);

// U+000D in the place of each U+2029, of each pair U+000D U+000A, and of the first U+000A that stands alone.
TString NormalizeLineEnds(const TString& text);

class ITextMeasure {
 public:
  // On one line.
  virtual TSize GetExtent(const TString& text) = 0;
  // How many units from the front fit into `width`.
  virtual std::size_t CountFitting(const TString& text, std::int32_t width) = 0;
  // The height of the text as it is shown with lines of this width.
  virtual std::int32_t GetShownHeight(const TString& text, std::int32_t width) = 0;

 protected:
  virtual ~ITextMeasure() = default;
};

// Lines end at U+000D, and where 600 pixels are full. The height is what that gives, or what the lines take
// as they are shown, which are broken between words, if that is more.
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
  TRect fIcon;  // empty without one
  std::vector<TRect> fButtons;
};

// For a client area of this width.
TAlertPlaces PlaceAlertControls(const TAlertContents& contents, std::int32_t clientWidth);

// How much higher the client area is than the text.
enum : std::int32_t { kAlertHeightBesideText = 59 };

}  // namespace NSMorvane
