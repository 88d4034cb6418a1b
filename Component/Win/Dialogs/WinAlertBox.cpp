#include "Component/Win/Dialogs/WinAlertBox.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Menus/WinMenu.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"

namespace NSMorvane {

namespace {

constexpr DWORD kAlertStyle =
    WS_POPUP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
constexpr DWORD kAlertExStyle = WS_EX_CONTROLPARENT | WS_EX_WINDOWEDGE | WS_EX_DLGMODALFRAME;

constexpr DWORD kControlStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
// SS_NOPREFIX, so that an ampersand in a text is shown as it is. SS_EDITCONTROL, so that a word that is wider
// than the text goes on in the next line.
constexpr DWORD kTextStyle = kControlStyle | SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL;
constexpr DWORD kIconStyle = kControlStyle | SS_ICON;
constexpr DWORD kButtonStyle = kControlStyle | WS_TABSTOP | BS_PUSHBUTTON;
constexpr DWORD kDefaultButtonStyle = kControlStyle | WS_TABSTOP | BS_DEFPUSHBUTTON;

enum : std::int32_t { kTextID = 100, kIconID = 101 };

HFONT AlertFont() { return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)); }

WORD SystemIconOf(TAlertKind kind) {
  switch (kind) {
    case kAlertPlain:
      return 0;
    case kAlertStop:
      return 32513;
    case kAlertNote:
      return 32516;
    case kAlertCaution:
      return 32515;
  }
  MORVANE_UNREACHED();
  MORVANE_THROW(std::exception());
}

TString TextOfWindow(HWND hwnd) {
  const int gtlResult = GetWindowTextLengthW(hwnd);
  std::vector<TChar> text(static_cast<std::size_t>(std::max(gtlResult, 0)) + 1);
  const int gtResult = GetWindowTextW(hwnd, WinBuffer(text.data()), static_cast<int>(text.size()));
  MORVANE_ASSERT(gtResult==gtlResult);
  return TString(text.data());
}

// Measures texts of a control in the font of alerts.
class CControlMeasure final : public ITextMeasure {
 public:
  explicit CControlMeasure(HWND control) : fDC(control), fFont(fDC.Get(), AlertFont()) {}

  TSize GetExtent(const TString& text) override {
    SIZE size = {};
    const BOOL gtep32Result =
        GetTextExtentPoint32W(fDC.Get(), WinText(text), static_cast<int>(text.size()), &size);
    MORVANE_ASSERT(FALSE!=gtep32Result);
    return FromNative(size);
  }
  std::size_t CountFitting(const TString& text, std::int32_t width) override {
    int count = 0;
    SIZE size = {};
    GetTextExtentExPointW(fDC.Get(), WinText(text), static_cast<int>(text.size()), width, &count, nullptr,
                          &size);
    return static_cast<std::size_t>(std::max(count, 0));
  }
  std::int32_t GetShownHeight(const TString& text, std::int32_t width) override {
    RECT rect = {0, 0, width, 0};
    DrawTextW(fDC.Get(), WinText(text), static_cast<int>(text.size()), &rect,
              DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_EXPANDTABS | DT_NOPREFIX);
    return text.empty() ? 0 : rect.bottom;
  }

 private:
  CWindowDC fDC;
  CObjectSelection fFont;
};

}  // namespace

// --- Plans

TAlertPlan PlanAlert(const TAlertSpec& spec) {
  return {spec.fButtonLayout,
          ComposeAlertText(NSTextPackage::ArrayToString(spec.fMessage),
                           NSTextPackage::ArrayToString(spec.fDetails)),
          {NSTextPackage::ArrayToString(spec.fButton1), NSTextPackage::ArrayToString(spec.fButton2),
           NSTextPackage::ArrayToString(spec.fButton3)},
          SystemIconOf(spec.fKind)};
}

TAlertPlan PlanSaveChanges(const TStartupStrings& strings, const TString& documentName, TCloseReason reason) {
  const TString& question =
      reason == kCloseByUser ? strings.fSaveChangesOnCloseQuestion : strings.fSaveChangesOnQuitQuestion;
  return {kAlertSaveChanges,
          NSTextPackage::FormatText(question, 0, {documentName}),
          {strings.fSaveButton, strings.fDontSaveButton, strings.fCancelButton},
          0};
}

// --- Mediators

TError CAlertMediator::IAlertBoxListener_OnResponse(TAlertResponse response) {
  return fListener ? fListener->IAlertBoxListener_OnResponse(response) : kOK;
}

TError CSaveChangesMediator::IAlertBoxListener_OnResponse(TAlertResponse response) {
  if (!fBehavior) return kOK;
  switch (response) {
    case kAlertResponseFirst:
      return fBehavior->ISaveChangesBehavior_OnSave();
    case kAlertResponseSecond:
      return fBehavior->ISaveChangesBehavior_OnDiscard();
    case kAlertResponseThird:
      return fBehavior->ISaveChangesBehavior_OnCancel();
  }
  MORVANE_UNREACHED();
  return kOtherError;
}

// --- Construction

CAlertBoxImpl::CAlertBoxImpl(IWindowHost* host, IModalOwner* owner, const TAlertPlan& plan,
                             const boost::shared_ptr<IAlertBoxListener>& listener)
    : CWinWindow(host, kWindowKindAlertBox, owner, kAlertStyle, kAlertExStyle, false, false, true),
      fButtonLayout(plan.fLayout),
      fDefaultButtonID(kAlertButtonNone),
      fListener(listener),
      fStaticTextHwnd(nullptr),
      fIconHwnd(nullptr),
      fSavedFocusHwnd(nullptr) {
  MakeControls(plan);
  Place(owner);
  GetListeners().Add(this);
}

CAlertBoxImpl::~CAlertBoxImpl() {
  PrepareDestruction();
  GetListeners().Remove(this);
  if (fIconHwnd) DestroyWindow(fIconHwnd);
  for (auto button = fButtonHwnds.rbegin(); button != fButtonHwnds.rend(); ++button)
    DestroyWindow(button->second);
  DestroyWindow(fStaticTextHwnd);
}

HWND CAlertBoxImpl::MakeControl(const wchar_t* className, const TString& text, DWORD style, std::int32_t id) {
  const HWND control = CreateWindowExW(0, className, WinText(text), style, 0, 0, 0, 0, GetHwnd(),
                                       reinterpret_cast<HMENU>(static_cast<std::intptr_t>(id)),
                                       GetModuleHandleW(nullptr), nullptr);
  if (!control) MORVANE_THROW(XOutOfMemory());
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(AlertFont()), FALSE);
  return control;
}

void CAlertBoxImpl::MakeControls(const TAlertPlan& plan) {
  fStaticTextHwnd = MakeControl(L"STATIC", NormalizeLineEnds(plan.fText), kTextStyle, kTextID);
  const TAlertButtons buttons = ButtonsOfLayout(plan.fLayout);
  const std::int32_t defaultButtonID = fDefaultButtonID = buttons.fDefaultID;
  MORVANE_ASSERT(0 != defaultButtonID);
  MORVANE_ASSERT(-1 != defaultButtonID);
  for (std::size_t i = 0; i < std::size(plan.fLabels); ++i) {
    if (plan.fLabels[i].empty() || buttons.fIDs[i] == kAlertButtonNone) continue;
    const DWORD style = buttons.fIDs[i] == defaultButtonID ? kDefaultButtonStyle : kButtonStyle;
    fButtonHwnds.emplace_back(
        buttons.fIDs[i], MakeControl(L"BUTTON", WinPrepareMnemonic(plan.fLabels[i]), style, buttons.fIDs[i]));
  }
  MORVANE_ASSERT(fButtonHwnds.size()>0);
  if (fButtonHwnds.empty()) MORVANE_THROW(std::logic_error(""));  // nobody could answer
  if (plan.fSystemIcon == 0) return;
  const TString name = u"#" + NSTextPackage::NumberToString(static_cast<unsigned int>(plan.fSystemIcon));
  fIconHwnd = MakeControl(L"STATIC", name, kIconStyle, kIconID);
}

// --- Size and place

TAlertContents CAlertBoxImpl::Measure() {
  CControlMeasure measure(fStaticTextHwnd);
  TAlertContents contents = {
      MeasureAlertText(TextOfWindow(fStaticTextHwnd), measure), fIconHwnd != nullptr, {}};
  for (const auto& [id, button] : fButtonHwnds)
    contents.fLabelWidths.push_back(measure.GetExtent(TextOfWindow(button)).fWidth);
  contents.fTextSize.fHeight = std::min(contents.fTextSize.fHeight, fMostTextHeight);
  return contents;
}

TSize CAlertBoxImpl::SizeOfFrame(const TSize& clientSize) {
  const TRect frame = CWindowGlue_ClientRectToFrameRect({0, 0, clientSize.fWidth, clientSize.fHeight});
  return {frame.fRight - frame.fLeft, frame.fBottom - frame.fTop};
}

void CAlertBoxImpl::Place(IModalOwner* owner) {
  TNativeWindow ownerWindow = {};
  if (owner) {
    MORVANE_CHECK(owner->IModalOwner_GetNativeWindow(ownerWindow));
    if (ownerWindow.fHwnd) {
      if (::IsIconic(ownerWindow.fHwnd)) ShowWindow(ownerWindow.fHwnd, SW_RESTORE);
      UpdateWindow(ownerWindow.fHwnd);
      // Either can have ended it.
      if (!IsWindow(ownerWindow.fHwnd)) ownerWindow.fHwnd = nullptr;
    }
  }
  const TPoint center = GetPopupCenter(GetHwnd(), ownerWindow.fHwnd, GetRegistry().GetShownHwndsZ());
  const auto centered = [&](const TSize& frame) {
    const TPoint corner = {center.fX - frame.fWidth / 2, center.fY - frame.fHeight / 2};
    return TRect{corner.fX, corner.fY, corner.fX + frame.fWidth, corner.fY + frame.fHeight};
  };
  TMonitorList monitors;
  ThrowError(GetHost().GetMorvane().IMorvane_GetMonitors(monitors));
  const TRect wanted = centered(SizeOfFrame(AlertClientSize(Measure())));
  const TMonitor& monitor = monitors.fMonitors[FindBestMonitor(monitors, wanted)];
  // The buttons stay on the screen, however long the text.
  const std::int64_t room = RectHeight(monitor.fWorkArea) - SizeOfFrame({0, kAlertHeightBesideText}).fHeight;
  fMostTextHeight = ToCoordinate(std::max<std::int64_t>(room, 0));
  const TSize size = AlertClientSize(Measure());
  const TSize frame = SizeOfFrame(size);
  const TPoint offset = OffsetToNativePlacement();
  TWindowStateRecord state = GetWindowState();
  state.fMinimumClientSize = state.fMaximumClientSize = state.fIdealClientSize = size;
  state.fTitle = GetHost().GetStartupStrings().fProductName.substr(0, kTitleChars);
  state.fPlacement.fZoomState = kWindowStateUser;
  state.fPlacement.fUserRect = state.fPlacement.fIdealRect =
      OffsetRectBy(ConstrainRectToMonitor(monitor, centered(frame), frame), offset.fX, offset.fY);
  SetWindowState(state);
}

bool CAlertBoxImpl::OnClientSizeChanged(const TSize&, const TSize& newSize) {
  const TAlertPlaces places = PlaceAlertControls(Measure(), newSize.fWidth);
  const auto move = [](HWND control, const TRect& place) {
    MoveWindow(control, place.fLeft, place.fTop, place.fRight - place.fLeft, place.fBottom - place.fTop,
               TRUE);
  };
  if (fIconHwnd) move(fIconHwnd, places.fIcon);
  move(fStaticTextHwnd, places.fText);
  for (std::size_t i = 0; i < fButtonHwnds.size(); ++i) move(fButtonHwnds[i].second, places.fButtons[i]);
  return true;
}

// --- Activation and keyboard

void CAlertBoxImpl::Show() {
  const boost::shared_ptr<CWinWindow> keepAlive = LockClientsWindowReference();
  CWinWindow::Show();
  if (LockClientsWindowReference() && GetActiveWindow() == GetHwnd()) GiveFocusToButton();
}

void CAlertBoxImpl::OnActivationChanged(bool active) {
  DebugPrint("CAlertBoxImpl::OnActivationChanged");
  if (active) {
    GiveFocusToButton();
  } else if (!fSavedFocusHwnd) {
    fSavedFocusHwnd = GetFocus();
    if (!IsChild(GetHwnd(), fSavedFocusHwnd)) fSavedFocusHwnd = nullptr;
  }
}

// Gives the focus to the button that had it before, or to the default button.
void CAlertBoxImpl::GiveFocusToButton() {
  MORVANE_ASSERT(fButtonHwnds.size()>0);
  if (fButtonHwnds.empty()) return;
  if (fSavedFocusHwnd) {
    SetFocus(std::exchange(fSavedFocusHwnd, nullptr));
    return;
  }
  if (IsChild(GetHwnd(), GetFocus())) return;
  const auto it = std::find_if(fButtonHwnds.begin(), fButtonHwnds.end(),
                               [this](const auto& button) { return button.first == fDefaultButtonID; });
  MORVANE_ASSERT(it!=fButtonHwnds.end());
  SetFocus(it != fButtonHwnds.end() ? it->second : fButtonHwnds.front().second);
}

bool CAlertBoxImpl::PreTranslateMessage(const MSG& message) {
  const boost::shared_ptr<CWinWindow> keepAlive = LockClientsWindowReference();
  MSG copy = message;
  if (IsDialogMessageW(GetHwnd(), &copy)) return true;
  if (message.hwnd == GetHwnd() && message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) return true;
  return CWinWindow::PreTranslateMessage(message);
}

// --- The answer

LRESULT CAlertBoxImpl::IWinMsgEventListener_OnMessage(TWinMessage& message) {
  if (message.fMessage != WM_COMMAND || HIWORD(message.fWParam) != 0) return 0;
  // There is one answer: in the middle of it and after it the listener may be gone.
  if (fIsAnswering || !LockClientsWindowReference()) {
    message.fHandled = true;
    return 0;
  }
  std::int32_t command = LOWORD(message.fWParam);
  // Escape, where the client has given that button no label, counts as the last button, as the close box
  // does.
  const auto isCancel = [](const auto& button) { return button.first == kAlertButtonCancel; };
  if (command == kAlertButtonCancel && std::none_of(fButtonHwnds.begin(), fButtonHwnds.end(), isCancel))
    command = fButtonHwnds.back().first;
  const std::optional<TAlertResponse> response = ResponseOfCommand(fButtonLayout, command);
  if (!response) {
    MORVANE_UNREACHED();
    return 0;
  }
  const CFlagScope answering(fIsAnswering);
  MORVANE_CHECK(fListener->IAlertBoxListener_OnResponse(*response));
  if (LockClientsWindowReference()) ReleaseWindow();
  message.fHandled = true;
  return 0;
}

void CAlertBoxImpl::RequestClose(TCloseReason) {
  MORVANE_ASSERT(fButtonHwnds.size()>0);
  if (fButtonHwnds.empty()) return;
  const auto& [id, button] = fButtonHwnds.back();
  TWinMessage message = {false, GetHwnd(), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                         reinterpret_cast<LPARAM>(button)};
  IWinMsgEventListener_OnMessage(message);
}

void CAlertBoxImpl::OnOwnerReleased() {
  if (!fIsAnswering && LockClientsWindowReference()) ReleaseWindow();
}

}  // namespace NSMorvane
