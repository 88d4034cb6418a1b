// What the four kinds of windows that clients make have in common: a behaviour of the client's, and a state
// record in the client's coordinates. A kind adds its native style and its own names.
#pragma once

#include <algorithm>
#include <memory>
#include <string>

#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

// Defines T<Name>Kind: the classes of a kind, the operations of its behaviour, and its name in the log.
// `Name` is the common part of these names.
#define MORVANE_WINDOW_KIND(Name, nameInLog)                                                              \
  struct T##Name##Kind {                                                                                  \
    using TGlue = C##Name##Glue;                                                                          \
    using TInterface = I##Name;                                                                           \
    using TBehavior = I##Name##Behavior;                                                                  \
    using TState = T##Name##State;                                                                        \
    static constexpr const char* kNameInLog = nameInLog;                                                  \
    static constexpr auto kOnClientSizeChanged = &TBehavior::I##Name##Behavior_OnClientSizeChanged;       \
    static constexpr auto kOnPlacementChanged = &TBehavior::I##Name##Behavior_OnPlacementChanged;         \
    static constexpr auto kOnActivationChanged = &TBehavior::I##Name##Behavior_OnActivationChanged;       \
    static constexpr auto kHandleKeyDown = &TBehavior::I##Name##Behavior_HandleKeyDown;                   \
    static constexpr auto kOnKeyboardFocusChanged = &TBehavior::I##Name##Behavior_OnKeyboardFocusChanged; \
    static constexpr auto kOnSetupMenuBar = &TBehavior::I##Name##Behavior_OnSetupMenuBar;                 \
    static constexpr auto kOnHelpRequested = &TBehavior::I##Name##Behavior_OnHelpRequested;               \
    static constexpr auto kOnRequestClose = &TBehavior::I##Name##Behavior_OnRequestClose;                 \
  }

// Stands in the class of a kind: the hooks of its contract class, which call CWinWindowKind. A kind that can
// own modal dialogs adds GetModalOwner.
#define MORVANE_WINDOW_KIND_HOOKS(Name)                                              \
  bool C##Name##Glue_CheckInvariant() const override { return CheckInvariant(); }    \
  TState C##Name##Glue_GetState() override { return GetKindState(); }                \
  void C##Name##Glue_SetState(const TState& state) override { SetKindState(state); } \
  IWindow* C##Name##Glue_GetWindow() override { return this; }                       \
  void C##Name##Glue_FocusNow() override { FocusNow(); }                             \
  TBehavior* C##Name##Glue_GetBehavior() override { return GetKindBehavior(); }      \
  void C##Name##Glue_Release() override { ReleaseWindow(); }

template <class TKind>
class CWinWindowKind : public CWinWindow, public TKind::TGlue {
 public:
  using TInterface = typename TKind::TInterface;
  using TBehavior = typename TKind::TBehavior;
  using TState = typename TKind::TState;
  using TPlacement = decltype(TState::fPlacement);

  // Called once. The window takes ownership.
  void SetBehavior(std::unique_ptr<TBehavior> behavior) {
    MORVANE_ASSERT_TEXT("0==fBehavior", !fBehavior);
    MORVANE_ASSERT_TEXT("0!=behavior", behavior != nullptr);
    fBehavior = std::move(behavior);
  }

 protected:
  CWinWindowKind(IWindowHost* host, TWindowKind windowKind, IModalOwner* owner, DWORD style, DWORD exStyle,
                 bool makeSizeGrip, bool listedInWindowMenu, bool hasCloseCommand)
      : CWinWindow(host, windowKind, owner, style, exStyle, makeSizeGrip, listedInWindowMenu,
                   hasCloseCommand) {}

  // For both contract classes of the object.
  boost::shared_ptr<void> KeepAlive() const override { return CWinWindow::KeepAlive(); }

  // Called first by the destructor of every kind: the behaviour is deleted while the window is still
  // complete.
  void EndKind() {
    PrepareDestruction();
    fBehavior.reset();
  }

  TBehavior* GetKindBehavior() const { return fBehavior.get(); }

  // --- The state as the client sees it

  TState GetKindState() {
    const TWindowStateRecord own = GetWindowState();
    TState state = {};
    state.fMinimumClientSize = own.fMinimumClientSize;
    state.fMaximumClientSize = own.fMaximumClientSize;
    state.fIdealClientSize = own.fIdealClientSize;
    state.fModified = own.fModified ? 1 : 0;
    std::copy_n(own.fTitle.begin(), std::min<std::size_t>(own.fTitle.size(), kTitleChars), state.fTitle);
    state.fPlacement = PlacementForClient<TPlacement>(own.fPlacement, OffsetToNativePlacement());
    return state;
  }

  void SetKindState(const TState& state) {
    TWindowStateRecord own;
    own.fMinimumClientSize = state.fMinimumClientSize;
    own.fMaximumClientSize = state.fMaximumClientSize;
    own.fIdealClientSize = state.fIdealClientSize;
    own.fModified = state.fModified == 1;
    own.fTitle.assign(state.fTitle, std::find(state.fTitle, state.fTitle + kTitleChars, u'\0'));
    own.fPlacement = PlacementFromClient(state.fPlacement, OffsetToNativePlacement());
    SetWindowState(own);
  }

  // --- What the window asks of its kind

  bool OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) override {
    if (!fBehavior) return false;
    MORVANE_CHECK((*fBehavior.*TKind::kOnClientSizeChanged)(oldSize, newSize));
    return true;
  }
  bool OnPlacementChanged(const TWindowPlacement& oldPlacement,
                          const TWindowPlacement& newPlacement) override {
    if (!fBehavior) return false;
    const TPoint offset = OffsetToNativePlacement();
    MORVANE_CHECK(
        (*fBehavior.*TKind::kOnPlacementChanged)(PlacementForClient<TPlacement>(oldPlacement, offset),
                                                 PlacementForClient<TPlacement>(newPlacement, offset)));
    return true;
  }
  void OnActivationChanged(bool active) override {
    if (fBehavior) MORVANE_CHECK((*fBehavior.*TKind::kOnActivationChanged)(active ? 1 : 0));
  }
  bool OnKeyDown(const TKeyEvent& event) override {
    if (!fBehavior) return false;
    TFlag handled = 0;
    MORVANE_CHECK((*fBehavior.*TKind::kHandleKeyDown)(event, handled));
    return handled == 1;
  }
  void OnKeyboardFocusChanged(bool focused) override {
    if (fBehavior) MORVANE_CHECK((*fBehavior.*TKind::kOnKeyboardFocusChanged)(focused ? 1 : 0));
  }
  bool OnHelpRequested() override {
    if (!fBehavior) return false;
    TFlag handled = 0;
    MORVANE_CHECK((*fBehavior.*TKind::kOnHelpRequested)(handled));
    return handled == 1;
  }
  void RequestClose(TCloseReason reason) override {
    if (!fBehavior) {
      DebugPrint(std::string("RequestClose for a behavior-less ") + TKind::kNameInLog + "!!!");
      ReleaseWindow();
      return;
    }
    MORVANE_ASSERT(CheckInvariant());
    MORVANE_CHECK((*fBehavior.*TKind::kOnRequestClose)(reason));
  }
  void RequestMenuBarSetup(CMenuBarState& state) override {
    if (!fBehavior) {
      DebugPrint(std::string("RequestMenuBarSetup for a behavior-less ") + TKind::kNameInLog + "!!!");
      return;
    }
    MORVANE_CHECK((*fBehavior.*TKind::kOnSetupMenuBar)(state));
  }
  // Commands of dialogs and floating windows go to the run behaviour.
  bool OnMenuCommand(const TMenuCommandEvent&) override { return false; }

  std::unique_ptr<TBehavior> fBehavior;
};

}  // namespace NSMorvane
