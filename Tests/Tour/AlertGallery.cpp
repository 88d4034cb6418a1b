// Shows an alert of each layout, and the question whether to save changes, side by side. Each ends when it is
// answered, and the program with the last of them. scripts/alert-gallery takes its picture.
#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

using namespace NSMorvane;

namespace {

struct TPicture {
  TAlertButtonLayout fLayout;
  TAlertKind fKind;
  const char16_t* fMessage;
  const char16_t* fDetails;
  const char16_t* fButtons[3];
};

constexpr TPicture kPictures[] = {
    {kAlertOneButton,
     kAlertStop,
     u"\"Daylight\" cannot be opened.",
     u"The file is not a Sketch document.",
     {u"_OK", u"", u""}},
    {kAlertTwoButtonsFirstDefault,
     kAlertNote,
     u"The picture has been exported to \"Pictures\".",
     u"",
     {u"_Show in Folder", u"_Close", u""}},
    {kAlertTwoButtonsSecondDefault,
     kAlertCaution,
     u"Replace \"Daylight\"?",
     u"Another program has changed the file since it was opened. What it has changed will be lost.",
     {u"_Replace", u"Cancel", u""}},
    {kAlertThreeButtonsFirstDefault,
     kAlertPlain,
     u"Three shapes lie beyond the edge of the page, where they are not printed.",
     u"",
     {u"_Print", u"_Move Them", u"Cancel"}},
    {kAlertThreeButtonsThirdDefault,
     kAlertCaution,
     u"The folder for backups is not there any more:\rZ:\\Backups\\"
     u"AVeryLongNameOfAFolderThatNobodyWouldTypeButSomeProgramHasMadeUpFromTheNameOfTheDocumentAndTheDate",
     u"There is no other copy of Night & Day.",
     {u"_Make Folder", u"_Delete Copies", u"Cancel"}},
};

class CGallery : public CDefaultApplication {
 public:
  using CDefaultApplication::CDefaultApplication;

  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override {
    return Guarded([&] {
      if (fOpen > 0) return TError{kOK};
      CDocumentWindowFactory<CDefaultDocumentWindowBehavior> factory;
      TError error = kOK;
      IDocumentWindow* const window = fMorvane.IMorvane_CreateDocumentWindow(factory, 0, 0, error);
      ThrowIfFailed(error);
      TNativeWindow native = {};
      ThrowIfFailed(WindowOf(*window).IWindow_GetNativeWindow(native));
      SetWindowPos(native.fHwnd, nullptr, 3000, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER);  // out of the picture
      IModalOwner* owner = nullptr;
      ThrowIfFailed(window->IDocumentWindow_GetModalOwner(owner));
      for (const TPicture& picture : kPictures) {
        TAlertSpec spec = {};
        spec.fButtonLayout = picture.fLayout;
        spec.fKind = picture.fKind;
        CopyText(spec.fMessage, picture.fMessage);
        CopyText(spec.fDetails, picture.fDetails);
        CopyText(spec.fButton1, picture.fButtons[0]);
        CopyText(spec.fButton2, picture.fButtons[1]);
        CopyText(spec.fButton3, picture.fButtons[2]);
        ThrowIfFailed(ShowAlert(fMorvane, owner, spec, [this](TAlertResponse) { return OnAnswer(); }));
        Hang(GetActiveWindow());
      }
      const auto onAnswer = [this] { return OnAnswer(); };
      ThrowIfFailed(AskToSaveChanges(fMorvane, owner, u"Daylight", kCloseByUser, {{}, onAnswer, onAnswer}));
      Hang(GetActiveWindow());
      return TError{kOK};
    });
  }

 private:
  // Beside the one before if there is room, else below it.
  void Hang(HWND alert) {
    constexpr int kGap = 16;
    constexpr int kWidth = 712;
    RECT rect = {};
    GetWindowRect(alert, &rect);
    const int width = rect.right - rect.left;
    if (fX + width + kGap > kWidth) {
      fX = kGap;
      fY = fBelow;
    }
    SetWindowPos(alert, nullptr, fX, fY, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    fX += width + kGap;
    fBelow = (std::max)(fBelow, fY + static_cast<int>(rect.bottom - rect.top) + kGap);
    ++fOpen;
  }
  TError OnAnswer() { return --fOpen == 0 ? fMorvane.IMorvane_StartQuitting() : TError{kOK}; }

  int fOpen = 0;
  int fX = 16;
  int fY = 16;
  int fBelow = 16;
};

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  return RunApplication<CGallery>(StartupParams(u"Morvane", u"Sketch"));
}
