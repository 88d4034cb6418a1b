// The row `start`, on the side of the library: a program that shows a document window with 1,000 views,
// signals the event that "/signal:" names once they have been painted, and ends. As in other applications,
// what is in the window is made before it is shown. It is a program of its own, so that nothing is measured
// along with it.
#include <vector>

#include "LibraryWindow.h"
#include "Measure.h"

namespace NSBench {

namespace {

class CStartedWindow : public CDefaultDocumentWindowBehavior {
 public:
  static constexpr TFirstPlace kFirstPlace = kFirstPlaceAsMade;
  CStartedWindow(IDocumentWindow& window, IMorvane& morvane, CCellPainter& painter)
      : CDefaultDocumentWindowBehavior(window), fViews(kCellsInClient) {
    ThrowIfFailed(ChangeState(window, [](auto& state) { CopyText(state.fTitle, u"Library"); }));
    ThrowIfFailed(SetClientSize(window, {kClientWidth, kClientHeight}));
    int index = 0;
    for (const RECT& cell : Cells(kCellsInClient)) {
      TViewParams params = ViewParams(kViewDrawDirect, kAutoInvalidationNone);
      params.fRect = {cell.left, cell.top, cell.right, cell.bottom};
      ThrowIfFailed(fViews[index].Create(morvane, RootViewOf(window), "Cell", params, painter, cell, index));
      ++index;
    }
  }

 private:
  std::vector<CViewOf<CCellView>> fViews;
};

class CStartedRun : public CDefaultApplication {
 public:
  CStartedRun(IMorvane& morvane, HANDLE event) : CDefaultApplication(morvane), fEvent(event) {}

  TError IMorvaneRunBehavior_OnStartUp() override {
    const TError error = CreateDocumentWindow<CStartedWindow>(fMorvane, 0, fMorvane, fPainter);
    return error == kOK ? fMorvane.IMorvane_PostAppMessage(0, 0) : error;
  }
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t, std::uint32_t) override {
    Require(fPainter.TakeCount() >= kCellsInClient, "a first paint of all cells");
    SetEvent(fEvent);
    return fMorvane.IMorvane_StartQuitting();
  }

 private:
  const HANDLE fEvent;
  CCellPainter fPainter{TCellText::kNone};
};

}  // namespace

}  // namespace NSBench

int main(int argumentCount, char** arguments) {
  using namespace NSBench;
  return RunApplication<CStartedRun>(StartupParams(u"Morvane", u"Bench start"),
                                     OpenSignal(argumentCount, arguments));
}
