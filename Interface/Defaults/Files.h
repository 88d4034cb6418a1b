// Files and their dialogs.
#pragma once

#include "Common.h"

namespace NSMorvane {

class CDefaultOpenDialogCustomizeBehavior : public IOpenDialogCustomizeBehavior {
 public:
  TError IOpenDialogCustomizeBehavior_GetTemplateID(std::uint32_t& outID) override {
    outID = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnFolderChanged(IOpenDialogInstance&, const char*) override {
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnSelectionChanged(IOpenDialogInstance&, const char*) override {
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnInitDone(IOpenDialogInstance&) override { return kOK; }
  TError IOpenDialogCustomizeBehavior_OnCommand(IOpenDialogInstance&, std::int32_t,
                                                TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnHelp(IOpenDialogInstance&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IOpenDialogCustomizeBehavior_OnPaint(IOpenDialogInstance&, TNativeWindow) override { return kOK; }
  TError IOpenDialogCustomizeBehavior_OnSize(IOpenDialogInstance&, TNativeWindow, std::int32_t,
                                             std::int32_t) override {
    return kOK;
  }
};

}  // namespace NSMorvane
