#include "SketchApplication.h"

#include <memory>
#include <utility>

#include "SketchFiles.h"
#include "SketchMessageWindow.h"
#include "SketchWindow.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TStyleFlags kWindowStyle = kWindowResizableBit | kWindowZoomableBit;

}  // namespace

TError CSketchApplication::IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) {
  return Guarded([&] { return OpenUntitled(); });
}

TError CSketchApplication::IMorvaneRunBehavior_OnOpenURL(const char* url) {
  return Guarded([&] { return OpenFile(PathFromURL(url)); });
}

TError CSketchApplication::OpenUntitled() {
  ++fUntitledCount;
  std::u16string name = u"Untitled";
  if (fUntitledCount > 1) name += u" " + AsciiText(std::to_string(fUntitledCount));
  return CreateDocumentWindow<CSketchWindow>(fMorvane, kWindowStyle, fMorvane, *this,
                                             std::make_unique<CSketchDocument>(), std::u16string(), name);
}

TError CSketchApplication::OpenFile(const std::u16string& path) {
  for (CSketchWindow* const window : fWindows)
    if (IsSamePath(window->Path(), path)) return window->Focus();

  auto document = std::make_unique<CSketchDocument>();
  std::u16string message;
  if (!LoadSketch(path, *document, message))
    return CreateDocumentWindow<CSketchMessageWindow>(fMorvane, kWindowStyle, fMorvane, path, message);
  return CreateDocumentWindow<CSketchWindow>(fMorvane, kWindowStyle, fMorvane, *this, std::move(document),
                                             path, NameOfPath(path));
}

}  // namespace NSSketch
