// The whole document, small. It writes pixels instead of drawing.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <cstdint>

#include "SketchDocument.h"
#include "SketchPicture.h"

namespace NSSketch {

class CSketchPreviewView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchPreviewView(NSMorvane::IView& view, const CSketchDocument& document)
      : fView(view), fDocument(document) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

  // The size of the picture of this document that fits into a box: one side of the box, and the document's
  // proportions.
  static NSMorvane::TSize FittingSize(const CSketchDocument& document, const NSMorvane::TSize& box);

 private:
  // Makes the picture again if the document or the size has changed.
  void UpdatePicture(const NSMorvane::TSize& size);
  // The part of the picture inside `part`, which is in drawing coordinates.
  void CopyPixels(const NSMorvane::TRawPixels& target, const NSMorvane::TRect& part) const;

  NSMorvane::IView& fView;
  const CSketchDocument& fDocument;
  NSMorvane::TRect fRect = {0, 0, 0, 0};  // the view's, while it draws
  TSketchPicture fPicture;
  std::uint64_t fRevision = 0;  // of what it shows
};

}  // namespace NSSketch
