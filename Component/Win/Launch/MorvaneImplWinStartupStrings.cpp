#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"

#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Interface/Morvane.h"

namespace NSMorvane {

std::vector<std::pair<int, TString*>> StartupLabels(TStartupStrings& strings) {
  std::vector<std::pair<int, TString*>> labels = {
      {1, &strings.fQuitItem},
      {2, &strings.fCloseItem},
      {3, &strings.fAboutItem},
      {4, &strings.fPreferencesItem},
      {5, &strings.fHideItem},
      {6, &strings.fFirstMenuTitle},
      {7, &strings.fSecondMenuTitle},
      {8, &strings.fWindowMenuTitle},
      {9, &strings.fLastMenuTitle},
      {10, &strings.fAllFileTypes},
      {11, &strings.fSaveChangesOnCloseQuestion},
      {12, &strings.fSaveChangesOnQuitQuestion},
      {13, &strings.fSaveButton},
      {14, &strings.fDontSaveButton},
      {15, &strings.fCancelButton},
      {23, &strings.fAlwaysOnTopItem},
      {100, &strings.fEscapeKeyName},
  };
  for (TString& name : strings.fFunctionKeyNames) labels.emplace_back(labels.back().first + 1, &name);
  for (TString TStartupStrings::*name :
       {&TStartupStrings::fBackspaceKeyName, &TStartupStrings::fTabKeyName,
        &TStartupStrings::fKeypadEnterKeyName, &TStartupStrings::fReturnKeyName,
        &TStartupStrings::fInsertKeyName, &TStartupStrings::fHomeKeyName, &TStartupStrings::fPageUpKeyName,
        &TStartupStrings::fDeleteKeyName, &TStartupStrings::fEndKeyName, &TStartupStrings::fPageDownKeyName,
        &TStartupStrings::fUpKeyName, &TStartupStrings::fLeftKeyName, &TStartupStrings::fDownKeyName,
        &TStartupStrings::fRightKeyName, &TStartupStrings::fSpaceKeyName, &TStartupStrings::fControlKeyName,
        &TStartupStrings::fShiftKeyName, &TStartupStrings::fAltKeyName}) {
    labels.emplace_back(labels.back().first + 1, &(strings.*name));
  }
  return labels;
}

TString FetchLabel(IMorvane& application, int number) {
  class CReceiver : public ITextReceiver {
   public:
    TError ITextReceiver_ReceiveText(const TChar* text) override {
      return ErrorOf([&] { fText = text; });
    }
    TString fText;
  };
  CReceiver receiver;
  MORVANE_CHECK(
      application.IMorvane_GetResourceString(("SSTR/1000/" + std::to_string(number)).c_str(), receiver));
  return receiver.fText;
}

}  // namespace NSMorvane
