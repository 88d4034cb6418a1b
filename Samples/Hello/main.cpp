// The smallest application: one window with a line of text in the middle.
#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

using namespace NSMorvane;

class CHelloView : public CDefaultViewBehavior {
 public:
  explicit CHelloView(IView& view) : fView(view) {}

  TError IViewBehavior_Draw(IDrawTools& tools) override {
    const TRect rect = RectOf(fView);
    RECT box = {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom};
    const COpenPort port(tools);
    ::FillRect(port, &box, ::GetSysColorBrush(COLOR_WINDOW));
    ::DrawTextW(port, L"Hello from Morvane", -1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    return kOK;
  }

 private:
  IView& fView;
};

class CHelloWindow : public CDefaultDocumentWindowBehavior {
 public:
  CHelloWindow(IDocumentWindow& window, IMorvane& morvane) : CDefaultDocumentWindowBehavior(window) {
    ThrowIfFailed(ChangeState(window, [](auto& state) { CopyText(state.fTitle, u"Hello"); }));
    ThrowIfFailed(fView.Create(morvane, RootViewOf(window), "Hello", ViewParams()));
  }

  TError IDocumentWindowBehavior_OnClientSizeChanged(const TSize&, const TSize& size) override {
    return SetRect(*fView.View(), {0, 0, size.fWidth, size.fHeight});
  }

 private:
  CViewOf<CHelloView> fView;
};

class CHelloApplication : public CDefaultApplication {
 public:
  using CDefaultApplication::CDefaultApplication;

  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override {
    return CreateDocumentWindow<CHelloWindow>(fMorvane, kWindowResizableBit, fMorvane);
  }
};

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  return RunApplication<CHelloApplication>(StartupParams(u"Example", u"Hello"));
}
