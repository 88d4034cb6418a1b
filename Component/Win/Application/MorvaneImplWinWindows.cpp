// Making windows, alerts and views, and the lists of windows.
#include <algorithm>
#include <boost/make_shared.hpp>

#include "Component/Portable/Drawing/DrawingWalk.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Dialogs/WinAlertBox.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"
#include "Component/Win/WindowKinds/WinDocumentWindow.h"
#include "Component/Win/WindowKinds/WinFloatingWindow.h"
#include "Component/Win/WindowKinds/WinModalDialog.h"
#include "Component/Win/WindowKinds/WinModelessDialog.h"

namespace NSMorvane {

namespace {

// Throws unless the view is one of the library's. Clients can implement IView too.
CViewImpl& ViewOf(IView& view) {
  CViewImpl* const impl = dynamic_cast<CViewImpl*>(&view);
  if (!impl) MORVANE_THROW(std::invalid_argument(""));
  return *impl;
}

}  // namespace

// --- Lists

namespace {

std::vector<IWindow*> WindowsOfKind(const std::vector<boost::shared_ptr<CWinWindow>>& shownWindows,
                                    TWindowKind kind, const char* invariant) {
  std::vector<IWindow*> result;
  for (const boost::shared_ptr<CWinWindow>& window : shownWindows) {
    if (window->GetWindowKind() != kind) continue;
    MORVANE_ASSERT_TEXT(invariant, window->CheckInvariant());
    result.push_back(window.get());
  }
  return result;
}

}  // namespace

std::vector<IWindow*> CMorvaneImpl::CMorvaneGlue_GetDocumentWindowsZ() {
  return WindowsOfKind(fWindows->GetVisibleWindowsZ(), kWindowKindDocument,
                       "documentWindow->CheckInvariant()");
}

std::vector<IWindow*> CMorvaneImpl::CMorvaneGlue_GetModelessDialogsZ() {
  return WindowsOfKind(fWindows->GetVisibleWindowsZ(), kWindowKindModelessDialog,
                       "modelessDialog->CheckInvariant()");
}

std::vector<IWindow*> CMorvaneImpl::CMorvaneGlue_GetModalDialogsZ() {
  return WindowsOfKind(fWindows->GetVisibleWindowsZ(), kWindowKindModalDialog,
                       "modalDialog->CheckInvariant()");
}

std::vector<IWindow*> CMorvaneImpl::CMorvaneGlue_GetFloatingWindowsZ() {
  return WindowsOfKind(fWindows->GetVisibleWindowsZ(), kWindowKindFloating,
                       "floatingWindow->CheckInvariant()");
}

// --- Making windows

namespace {

// Wires a new window up and starts it. After a failure nothing of it is left.
template <class TStart>
void StartWired(const boost::shared_ptr<CWinWindow>& window, TStart&& start) {
  window->SetClientsWindowReference(window);
  try {
    start();
  } catch (...) {
    // The window holds itself. It is released here, unless a callback has released it already.
    if (window->LockClientsWindowReference()) window->ReleaseWindow();
    throw;
  }
}

// Gives the window the behaviour that the factory makes, and shows it.
template <class TKind, class TFactory>
void StartWindow(const boost::shared_ptr<TKind>& window, TFactory& factory,
                 typename TKind::TBehavior* (TFactory::*createBehavior)(typename TKind::TInterface&,
                                                                        TError&)) {
  StartWired(window, [&] {
    TError error = kProgrammingError;
    std::unique_ptr<typename TKind::TBehavior> behavior((factory.*createBehavior)(*window, error));
    MORVANE_CHECK(error);
    window->SetBehavior(std::move(behavior));
    window->Show();
  });
}

}  // namespace

// Windows call the run behaviour, so they can be made only during a run.
void CMorvaneImpl::RequireRun() const {
  MORVANE_ASSERT(0!=fBehavior);
  if (!fBehavior) MORVANE_THROW(XIllegalCallSequence());
}

IDocumentWindow* CMorvaneImpl::CMorvaneGlue_CreateDocumentWindow(IDocumentWindowBehaviorFactory& factory,
                                                                 TStyleFlags styleFlags,
                                                                 bool listedInWindowMenu) {
  RequireRun();
  const boost::shared_ptr<CDocumentWindowImpl> window(
      new CDocumentWindowImpl(this, styleFlags, listedInWindowMenu));
  StartWindow(window, factory,
              &IDocumentWindowBehaviorFactory::IDocumentWindowBehaviorFactory_CreateBehavior);
  RequestMenuBars();
  return window.get();
}

IModelessDialog* CMorvaneImpl::CMorvaneGlue_CreateModelessDialog(IModelessDialogBehaviorFactory& factory,
                                                                 TStyleFlags styleFlags,
                                                                 bool listedInWindowMenu) {
  RequireRun();
  const boost::shared_ptr<CModelessDialogImpl> window(
      new CModelessDialogImpl(this, styleFlags, listedInWindowMenu));
  StartWindow(window, factory,
              &IModelessDialogBehaviorFactory::IModelessDialogBehaviorFactory_CreateBehavior);
  RequestMenuBars();
  return window.get();
}

IModalDialog* CMorvaneImpl::CMorvaneGlue_CreateModalDialog(IModalDialogBehaviorFactory& factory,
                                                           IModalOwner* owner, bool blocking,
                                                           TStyleFlags styleFlags) {
  RequireRun();
  boost::shared_ptr<CModalDialogImpl> window(new CModalDialogImpl(this, owner, styleFlags));
  StartWindow(window, factory, &IModalDialogBehaviorFactory::IModalDialogBehaviorFactory_CreateBehavior);
  if (!blocking) return window.get();
  const HWND hwnd = window->GetHwnd();
  window.reset();  // so that the dialog ends when it is released
  RunModalLoop(hwnd);
  return nullptr;
}

IFloatingWindow* CMorvaneImpl::CMorvaneGlue_CreateFloatingWindow(IFloatingWindowBehaviorFactory& factory,
                                                                 TStyleFlags styleFlags) {
  RequireRun();
  const boost::shared_ptr<CFloatingWindowImpl> window(new CFloatingWindowImpl(this, styleFlags));
  StartWindow(window, factory,
              &IFloatingWindowBehaviorFactory::IFloatingWindowBehaviorFactory_CreateBehavior);
  return window.get();
}

// --- Alert boxes

void CMorvaneImpl::CMorvaneGlue_CreateAlertBox(IModalOwner* modalOwner, bool blocking,
                                               const TAlertSpec& alertSpec, IAlertBoxListener* listener) {
  ShowAlert(modalOwner, blocking, PlanAlert(alertSpec), boost::make_shared<CAlertMediator>(listener));
}

void CMorvaneImpl::CMorvaneGlue_CreateSaveChangesDialog(ISaveChangesBehavior* behavior,
                                                        IModalOwner* modalOwner, bool blocking,
                                                        const TString& documentName, TCloseReason reason) {
  ShowAlert(modalOwner, blocking, PlanSaveChanges(fStartupStrings, documentName, reason),
            boost::make_shared<CSaveChangesMediator>(behavior));
}

void CMorvaneImpl::ShowAlert(IModalOwner* owner, bool blocking, const TAlertPlan& plan,
                             const boost::shared_ptr<IAlertBoxListener>& listener) {
  RequireRun();
  boost::shared_ptr<CAlertBoxImpl> alert(new CAlertBoxImpl(this, owner, plan, listener));
  StartWired(alert, [&] { alert->Show(); });
  if (!blocking) return;
  const HWND hwnd = alert->GetHwnd();
  alert.reset();  // so that the alert ends when it is answered
  RunModalLoop(hwnd);
}

// --- Views

IView* CMorvaneImpl::CMorvaneGlue_CreateView(IViewBehaviorFactory& factory, IView& superView,
                                             const std::string& debugName) {
  return CViewImpl::MakeSubView(factory, ViewOf(superView), debugName).get();
}

void CMorvaneImpl::CMorvaneGlue_InvalidateView(IView& view, const TRect& rect) {
  ViewOf(view).InvalidateRect(rect);
}

void CMorvaneImpl::CMorvaneGlue_DrawView(IView& view, IDrawTools& tools) {
  CViewImpl& impl = ViewOf(view);
  // The run behaviour is called before and after the drawing, and may release the view or change the
  // settings.
  const TViewImplPtr keepAlive = impl.IsLive() ? impl.GetClientsViewReference() : TViewImplPtr();
  const TRect bounds = impl.GetBounds();
  const TDebugSettings settings = fDebugSettings;
  TDrawBracket bracket(fBehavior, tools);
  DrawView(fBehavior, bracket, impl, bounds, tools, settings);
}

}  // namespace NSMorvane
