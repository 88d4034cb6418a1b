// The names and labels of the application, as the library shows them.
#pragma once

#include <utility>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

class IMorvane;

using NSTextPackage::TString;

enum : std::size_t { kFunctionKeyCount = 15 };

// The names of the application, then its labels in the order of their numbers in bank 1000 of its texts.
struct TStartupStrings {
  TString fCompanyName;
  TString fProductName;
  TString fDisplayName;

  TString fQuitItem;
  TString fCloseItem;
  TString fAboutItem;
  TString fPreferencesItem;
  TString fHideItem;
  TString fFirstMenuTitle;
  TString fSecondMenuTitle;
  TString fWindowMenuTitle;
  TString fLastMenuTitle;
  TString fAllFileTypes;
  TString fSaveChangesOnCloseQuestion;
  TString fSaveChangesOnQuitQuestion;
  TString fSaveButton;
  TString fDontSaveButton;
  TString fCancelButton;
  TString fAlwaysOnTopItem;

  TString fEscapeKeyName;
  TString fFunctionKeyNames[kFunctionKeyCount];
  TString fBackspaceKeyName;
  TString fTabKeyName;
  TString fKeypadEnterKeyName;
  TString fReturnKeyName;
  TString fInsertKeyName;
  TString fHomeKeyName;
  TString fPageUpKeyName;
  TString fDeleteKeyName;
  TString fEndKeyName;
  TString fPageDownKeyName;
  TString fUpKeyName;
  TString fLeftKeyName;
  TString fDownKeyName;
  TString fRightKeyName;
  TString fSpaceKeyName;
  TString fControlKeyName;
  TString fShiftKeyName;
  TString fAltKeyName;
};

// Every label with its number in bank 1000, in ascending order.
std::vector<std::pair<int, TString*>> StartupLabels(TStartupStrings& strings);

// The label with a number in bank 1000, from the application's texts.
TString FetchLabel(IMorvane& application, int number);

}  // namespace NSMorvane
