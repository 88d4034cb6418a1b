// The properties of what is selected in the document in front, in a modeless dialog that follows the
// selection; of new shapes, if nothing is selected.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchControls.h"
#include "SketchEditor.h"
#include "SketchTextField.h"

namespace NSSketch {

class CSketchApplication;

class CSketchPropertiesDialog : public NSMorvane::CDefaultModelessDialogBehavior {
 public:
  CSketchPropertiesDialog(NSMorvane::IModelessDialog& window, NSMorvane::IMorvane& morvane,
                          CSketchApplication& application);
  ~CSketchPropertiesDialog() override;

  // Shows what is so now. To be called after each change of a document, a selection or the window in front.
  void Refresh();
  void Focus() { NSMorvane::ThrowIfFailed(fWindow.IModelessDialog_FocusNow()); }
  void Close();

  NSMorvane::TError IModelessDialogBehavior_OnRequestClose(NSMorvane::TCloseReason reason) override;
  NSMorvane::TError IModelessDialogBehavior_HandleKeyDown(const NSMorvane::TKeyEvent& event,
                                                          NSMorvane::TFlag& outHandled) override;

 private:
  // Changes the selected shapes, or how new ones will look.
  void Change(const char* name, const std::function<void(TShape&)>& change);
  void ChangeFrame(const std::function<void(TSketchRect&)>& change);
  void SetFrame(const TSketchRect& frame, bool hasFrame, bool canStretch);
  CSketchEditor* Editor() const;

  CSketchApplication& fApplication;
  bool fIsRefreshing = false;
  CSketchForm fForm;
  NSMorvane::CViewOf<CSketchLabel> fHeading;
  NSMorvane::CViewOf<CSketchLabel> fLeftLabel;
  NSMorvane::CViewOf<CSketchNumberField> fLeft;
  NSMorvane::CViewOf<CSketchLabel> fTopLabel;
  NSMorvane::CViewOf<CSketchNumberField> fTop;
  NSMorvane::CViewOf<CSketchLabel> fWidthLabel;
  NSMorvane::CViewOf<CSketchNumberField> fWidth;
  NSMorvane::CViewOf<CSketchLabel> fHeightLabel;
  NSMorvane::CViewOf<CSketchNumberField> fHeight;
  NSMorvane::CViewOf<CSketchLabel> fColorLabel;
  NSMorvane::CViewOf<CSketchSwatches> fColor;
  NSMorvane::CViewOf<CSketchLabel> fLineLabel;
  NSMorvane::CViewOf<CSketchNumberField> fLine;
  NSMorvane::CViewOf<CSketchCheckBox> fIsFilled;
  NSMorvane::CViewOf<CSketchSwatches> fFill;
  NSMorvane::CViewOf<CSketchLabel> fTextLabel;
  NSMorvane::CViewOf<CSketchTextField> fText;
  NSMorvane::CViewOf<CSketchLabel> fSizeLabel;
  NSMorvane::CViewOf<CSketchNumberField> fSize;
};

}  // namespace NSSketch
