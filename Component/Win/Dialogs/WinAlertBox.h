// Alert boxes, and the question whether to save changes, which is an alert box with fixed buttons.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "Component/Portable/Dialogs/AlertLayout.h"
#include "Component/Win/Platform/WinMsgEventListener.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

// What an alert shows: the alert of a client, or the question whether to save changes.
struct TAlertPlan {
  std::uint32_t fLayout;
  TString fText;
  TString fLabels[3];  // an empty label makes no button
  WORD fSystemIcon;    // its number, or 0 for none
};

TAlertPlan PlanAlert(const TAlertSpec& spec);
TAlertPlan PlanSaveChanges(const TStartupStrings& strings, const TString& documentName, TCloseReason reason);

// Passes the answer on to the client's listener, which may be null.
class CAlertMediator final : public IAlertBoxListener {
 public:
  explicit CAlertMediator(IAlertBoxListener* listener) : fListener(listener) {}
  TError IAlertBoxListener_OnResponse(TAlertResponse response) override;

 private:
  IAlertBoxListener* fListener;
};

class CSaveChangesMediator final : public IAlertBoxListener {
 public:
  explicit CSaveChangesMediator(ISaveChangesBehavior* behavior) : fBehavior(behavior) {}
  TError IAlertBoxListener_OnResponse(TAlertResponse response) override;

 private:
  ISaveChangesBehavior* fBehavior;
};

class CAlertBoxImpl final : public CWinWindow, public IWinMsgEventListener {
 public:
  // `owner` may be null. It is restored if it is minimized, and painted, before the alert is placed over it.
  CAlertBoxImpl(IWindowHost* host, IModalOwner* owner, const TAlertPlan& plan,
                const boost::shared_ptr<IAlertBoxListener>& listener);
  ~CAlertBoxImpl() override;

  void Show() override;
  // Keys work as in the dialogs of the system.
  bool PreTranslateMessage(const MSG& message) override;

  LRESULT IWinMsgEventListener_OnMessage(TWinMessage& message) override;

 protected:
  bool OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) override;
  bool OnPlacementChanged(const TWindowPlacement&, const TWindowPlacement&) override { return true; }
  void OnActivationChanged(bool active) override;
  void OnKeyboardFocusChanged(bool) override {}
  // Counts as pressing the last button; nothing in the middle of an answer.
  void RequestClose(TCloseReason reason) override;
  // Goes unanswered, unless it is in the middle of an answer, with which it goes.
  void OnOwnerReleased() override;
  void RequestMenuBarSetup(CMenuBarState&) override {}
  bool OnKeyDown(const TKeyEvent&) override { return false; }
  bool OnHelpRequested() override { return false; }
  bool OnMenuCommand(const TMenuCommandEvent&) override { return false; }

 private:
  HWND MakeControl(const wchar_t* className, const TString& text, DWORD style, std::int32_t id);
  void MakeControls(const TAlertPlan& plan);
  TAlertContents Measure();
  TSize SizeOfFrame(const TSize& clientSize);
  void Place(IModalOwner* owner);
  void GiveFocusToButton();

  std::uint32_t fButtonLayout;
  std::int32_t fDefaultButtonID;
  boost::shared_ptr<IAlertBoxListener> fListener;
  HWND fStaticTextHwnd;
  std::vector<std::pair<std::int32_t, HWND>> fButtonHwnds;  // with their numbers, from the left
  HWND fIconHwnd;                                           // or null
  HWND fSavedFocusHwnd;  // the control that had the keyboard when the alert was left, or null
  std::int32_t fMostTextHeight = std::numeric_limits<std::int32_t>::max();  // what is beyond is cut off
  bool fIsAnswering = false;                                                // the listener is being told
};

}  // namespace NSMorvane
