#include "SketchFileDialogs.h"

#include <iterator>
#include <span>

namespace NSSketch {

using namespace NSMorvane;

namespace {

// Dialogs that belong together remember folder and place under the same number.
constexpr std::uint32_t kDialogContext = 1;

// In the order of TSketchFileType.
constexpr TFileType kFileTypes[] = {{u"Sketch drawing", u".sketch"},
                                    {u"PNG picture of the page", u".png"},
                                    {u"Bitmap picture of the page", u".bmp"}};

TFileDialog DialogOf(const TDialogPlace& place, std::size_t typeCount) {
  return {
      .fOwner = place.fOwner, .fTypes = std::span(kFileTypes).first(typeCount), .fContext = kDialogContext};
}

}  // namespace

// [open dialog]
void ShowOpenDialog(const TDialogPlace& place, TOnPath onChosen) {
  ThrowIfFailed(
      NSMorvane::ShowOpenDialog(place.fMorvane, DialogOf(place, 1), [onChosen](const std::u16string& path) {
        onChosen(path);
        return TError{kOK};
      }));
}
// [end]

void ShowSaveDialog(const TDialogPlace& place, TSaveQuestion question) {
  const std::size_t typeCount = question.fOffersPictures ? std::size(kFileTypes) : 1;
  ThrowIfFailed(NSMorvane::ShowSaveDialog(
      place.fMorvane, DialogOf(place, typeCount), question.fPath,
      [question](const std::u16string& path, std::size_t type) {
        question.fOnChosen(path, static_cast<TSketchFileType>(type));
        return TError{kOK};
      },
      [question] {
        question.fOnCancel();
        return TError{kOK};
      }));
}

}  // namespace NSSketch
