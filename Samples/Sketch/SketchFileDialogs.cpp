#include "SketchFileDialogs.h"

#include <iterator>
#include <utility>

namespace NSSketch {

using namespace NSMorvane;

namespace {

// Dialogs that belong together remember folder and place under the same number.
constexpr std::uint32_t kDialogContext = 1;

// In the order of TSketchFileType.
constexpr TFileType kFileTypes[] = {{u"Sketch drawing", u".sketch"},
                                    {u"PNG picture of the page", u".png"},
                                    {u"Bitmap picture of the page", u".bmp"}};

// [open dialog]
// Keeps the callback until the dialog is answered, which happens once.
class COpenAnswer : public IOpenDialogBehavior {
 public:
  explicit COpenAnswer(TOnPath onChosen) : fOnChosen(std::move(onChosen)) {}

  TError IOpenDialogBehavior_OnPerform(const char* const* urls, std::uint32_t) override {
    const std::unique_ptr<COpenAnswer> self(this);
    return Guarded([&] {
      fOnChosen(PathOfURL(urls[0]));
      return TError{kOK};
    });
  }
  TError IOpenDialogBehavior_OnCancel() override {
    delete this;
    return kOK;
  }

 private:
  const TOnPath fOnChosen;
};
// [end]

class CSaveAnswer : public ISaveAsDialogBehavior {
 public:
  explicit CSaveAnswer(TSaveQuestion question) : fQuestion(std::move(question)) {}

  TError ISaveAsDialogBehavior_OnPerform(const char* url, const TFileType& chosen) override {
    const std::unique_ptr<CSaveAnswer> self(this);
    return Guarded([&] {
      std::size_t type = 0;
      while (type + 1 < std::size(kFileTypes) && TextOf(kFileTypes[type].fName) != TextOf(chosen.fName))
        ++type;
      fQuestion.fOnChosen(PathOfURL(url), static_cast<TSketchFileType>(type));
      return TError{kOK};
    });
  }
  TError ISaveAsDialogBehavior_OnCancel() override {
    const std::unique_ptr<CSaveAnswer> self(this);
    return Guarded([&] {
      fQuestion.fOnCancel();
      return TError{kOK};
    });
  }

 private:
  const TSaveQuestion fQuestion;
};

}  // namespace

// [show open dialog]
void ShowOpenDialog(const TDialogPlace& place, TOnPath onChosen) {
  auto answer = std::make_unique<COpenAnswer>(std::move(onChosen));
  ThrowIfFailed(place.fMorvane.IMorvane_CreateOpenDialog(answer.get(), kDialogContext, place.fOwner, 0, 0,
                                                         kFileTypes, 1, nullptr, nullptr));
  static_cast<void>(answer.release());  // its own from here on
}
// [end]

void ShowSaveDialog(const TDialogPlace& place, TSaveQuestion question) {
  const std::u16string path = question.fPath;
  const std::uint32_t typeCount = question.fOffersPictures ? std::size(kFileTypes) : 1;
  auto answer = std::make_unique<CSaveAnswer>(std::move(question));
  ThrowIfFailed(place.fMorvane.IMorvane_CreateSaveAsDialog(answer.get(), kDialogContext, place.fOwner, 0,
                                                           path.c_str(), kFileTypes, typeCount, nullptr));
  static_cast<void>(answer.release());
}

}  // namespace NSSketch
