// The window that a file gets which cannot be opened: it says why.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <string>

#include "SketchCommandWindow.h"

namespace NSSketch {

class CSketchMessageView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchMessageView(NSMorvane::IView& view, std::u16string heading, std::u16string message,
                     std::u16string path)
      : fView(view), fHeading(std::move(heading)), fMessage(std::move(message)), fPath(std::move(path)) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  NSMorvane::IView& fView;
  std::u16string fHeading;
  std::u16string fMessage;
  std::u16string fPath;
};

// Its menus are those of a document, of which only the items that need none can be chosen.
class CSketchMessageWindow : public CSketchCommandWindow {
 public:
  CSketchMessageWindow(NSMorvane::IDocumentWindow& window, NSMorvane::IMorvane& morvane,
                       CSketchApplication& application, const std::u16string& path,
                       const std::u16string& message);

  NSMorvane::TError IDocumentWindowBehavior_OnClientSizeChanged(const NSMorvane::TSize& oldSize,
                                                                const NSMorvane::TSize& newSize) override;

 private:
  NSMorvane::CViewOf<CSketchMessageView> fMessageView;
};

}  // namespace NSSketch
