// The application: opens documents, knows their windows, quits with the last one.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <string>
#include <vector>

namespace NSSketch {

class CSketchWindow;

class CSketchApplication : public NSMorvane::CDefaultApplication {
 public:
  using CDefaultApplication::CDefaultApplication;

  NSMorvane::TError IMorvaneRunBehavior_OnNoDocument(NSMorvane::TNoDocumentKind kind) override;
  NSMorvane::TError IMorvaneRunBehavior_OnOpenURL(const char* url) override;

  // Called by each window with a document, when it comes and when it goes.
  void AddWindow(CSketchWindow& window) { fWindows.push_back(&window); }
  void RemoveWindow(CSketchWindow& window) { std::erase(fWindows, &window); }

 private:
  NSMorvane::TError OpenUntitled();
  NSMorvane::TError OpenFile(const std::u16string& path);

  std::vector<CSketchWindow*> fWindows;
  std::uint32_t fUntitledCount = 0;  // so far
};

}  // namespace NSSketch
