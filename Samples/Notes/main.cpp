// A pin board of notes: the program behind docs/guide.md, which shows it piece by piece. What stands between
// `// [name]` and `// [end]` is printed there, word for word.
#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <algorithm>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

using namespace NSMorvane;

namespace {

// [commands]
enum TCommand : std::uint32_t {
  kNewBoard = 1,
  kNewNote,
  kNextColour,
  kChangingColour,
  kRemoveNote,
  kBoardSettings,
  kAbout
};
// [end]

constexpr COLORREF kNoteColours[] = {RGB(255, 241, 168), RGB(201, 231, 255), RGB(214, 245, 205),
                                     RGB(255, 214, 224)};
constexpr COLORREF kBoardColours[] = {RGB(236, 228, 214), RGB(222, 230, 236)};

RECT ToNative(const TRect& rect) { return {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom}; }

void FillWith(HDC hdc, const TRect& rect, COLORREF colour) {
  const RECT box = ToNative(rect);
  const HBRUSH brush = ::CreateSolidBrush(colour);
  ::FillRect(hdc, &box, brush);
  ::DeleteObject(brush);
}

// In the font that the application has set for all views.
void DrawLabel(HDC hdc, const TRect& rect, const wchar_t* text, UINT format) {
  RECT box = ToNative(rect);
  ::DrawTextW(hdc, text, -1, &box, format);
}

TRect Inset(const TRect& rect, int by) {
  return {rect.fLeft + by, rect.fTop + by, rect.fRight - by, rect.fBottom - by};
}

// [menu item]
TMenuItem Item(std::u16string_view text, std::uint32_t command, std::u16string_view shortcut = {}) {
  TMenuItem item = {};
  CopyText(item.fText, text);
  item.fStateFlags = kMenuItemEnabled;
  item.fCommand = command;
  item.fShortcut = KeyOf(shortcut);
  return item;
}

TError SetItems(IMenuBarState& state, TMenu menu, const std::vector<TMenuItem>& items) {
  return state.IMenuBarState_SetMenuItems(menu, items.data(),
                                          static_cast<std::uint32_t>(items.size() * sizeof(TMenuItem)));
}
// [end]

// --- Dialogs: a line of text and a button

// [button]
class CButtonView : public CDefaultHitViewBehavior {
 public:
  CButtonView(IView& view, IMorvane& morvane, std::function<TError()> action)
      : CDefaultHitViewBehavior(view), fMorvane(morvane), fAction(std::move(action)) {}

  TError IViewBehavior_Draw(IDrawTools& tools) override {
    const TRect rect = RectOf(fView);
    RECT box = ToNative(rect);
    const COpenPort port(tools);
    ::DrawFrameControl(port, &box, DFC_BUTTON, DFCS_BUTTONPUSH);
    DrawLabel(port, rect, L"OK", DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    if (!fHasFocus) return kOK;
    RECT ring = ToNative(Inset(rect, 3));
    ::DrawFocusRect(port, &ring);
    return kOK;
  }
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) override {
    fHasFocus = gained != 0;
    return fMorvane.IMorvane_InvalidateView(fView, RectOf(fView));
  }
  TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) override {
    outHandled = event.fType == kMouseEventClick && event.fButtons == kMouseButtonLeft ? 1 : 0;
    return outHandled != 0 ? fAction() : kOK;
  }
  TError IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    outHandled = IsKey(fMorvane, event, u"Space") ? 1 : 0;
    return outHandled != 0 ? fAction() : kOK;
  }

 private:
  IMorvane& fMorvane;
  std::function<TError()> fAction;
  bool fHasFocus = false;
};
// [end]

class CLabelView : public CDefaultViewBehavior {
 public:
  CLabelView(IView& view, std::wstring text) : fView(view), fText(std::move(text)) {}
  TError IViewBehavior_Draw(IDrawTools& tools) override {
    DrawLabel(COpenPort(tools), RectOf(fView), fText.c_str(), DT_LEFT | DT_WORDBREAK);
    return kOK;
  }

 private:
  IView& fView;
  std::wstring fText;
};

// [modal dialog]
class CMessageDialog : public CDefaultModalDialogBehavior {
 public:
  CMessageDialog(IModalDialog& dialog, IMorvane& morvane, std::wstring text)
      : CDefaultModalDialogBehavior(dialog), fMorvane(morvane) {
    ThrowIfFailed(ChangeState(dialog, [](auto& state) {
      CopyText(state.fTitle, u"Notes");
      state.fMinimumClientSize = state.fMaximumClientSize = {320, 120};
    }));
    ThrowIfFailed(fLabel.Create(morvane, RootViewOf(dialog), "Label", ViewParams(), std::move(text)));
    TViewParams params = ViewParams();
    params.fFlags |= kViewFocusable;
    ThrowIfFailed(fButton.Create(morvane, RootViewOf(dialog), "OK", params, morvane,
                                 [this] { return fWindow.IModalDialog_Release(); }));
    ThrowIfFailed(SetRect(*fLabel.View(), {16, 16, 304, 70}));
    ThrowIfFailed(SetRect(*fButton.View(), {230, 82, 304, 106}));
    ThrowIfFailed(WindowOf(dialog).IWindow_SetConceptualFocusView(fButton.View()));
  }

  // The button has Space; here are the keys that any button might have.
  TError IModalDialogBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    outHandled = IsKey(fMorvane, event, u"Return") || IsKey(fMorvane, event, u"Escape") ? 1 : 0;
    return outHandled != 0 ? fWindow.IModalDialog_Release() : kOK;
  }

 private:
  IMorvane& fMorvane;
  CViewOf<CLabelView> fLabel;
  CViewOf<CButtonView> fButton;
};
// [end]

// [blocking]
// Blocks the whole application, and returns when the dialog has gone.
TError ShowAbout(IMorvane& morvane) {
  return RunModalDialog<CMessageDialog>(morvane, 0, morvane,
                                        L"Notes, the program behind the guide of Morvane.");
}
// [end]

// --- The board

// What a note asks of its board.
class IBoard {
 public:
  virtual TError SelectNote(IView& note) = 0;
  virtual TError RemoveNote(IView& note) = 0;
  virtual IWindow& GetWindow() = 0;

 protected:
  ~IBoard() = default;
};

// [capture]
// Moves a note with the mouse, from the press to the release.
class CNoteDrag : public CDefaultMouseCapture {
 public:
  CNoteDrag(IMorvane& morvane, IView& note, const TPoint& start)
      : fMorvane(morvane), fNote(note), fLast(start) {}

  TError IMouseCapture_OnMouseMove(const TMouseTracking& event) override {
    const TPoint now = event.fState.fPosition;
    const TError error = fNote.IView_Offset(now.fX - fLast.fX, now.fY - fLast.fY);
    fLast = now;
    return error;
  }
  TError IMouseCapture_OnMouseUp(const TMouseEvent&) override {
    return fMorvane.IMorvane_ReleaseMouseCapture();
  }
  IMouseShape* IMouseCapture_GetMouseShape(const TMouseShapeRequest&, TError& outError) override {
    return fMorvane.IMorvane_CreateBuiltInMouseShape(kMouseShapeHand, outError);
  }

 private:
  IMorvane& fMorvane;
  IView& fNote;
  TPoint fLast;
};
// [end]

class CNoteView : public CDefaultHitViewBehavior {
 public:
  CNoteView(IView& view, IMorvane& morvane, IBoard& board, std::wstring text)
      : CDefaultHitViewBehavior(view),
        fMorvane(morvane),
        fBoard(board),
        fText(std::move(text)),
        fColourTimer(morvane) {}

  // [draw]
  TError IViewBehavior_Draw(IDrawTools& tools) override {
    const TRect rect = RectOf(fView);
    const COpenPort port(tools);  // closed again at the end of the scope
    FillWith(port, rect, fHasFocus ? RGB(90, 90, 90) : RGB(190, 180, 160));
    FillWith(port, Inset(rect, fHasFocus ? 2 : 1), kNoteColours[fColour]);
    DrawLabel(port, Inset(rect, 8), fText.c_str(), DT_LEFT | DT_WORDBREAK);
    return kOK;
  }
  // [end]

  // [click]
  TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) override {
    outHandled = 1;
    if (event.fType == kMouseEventContextClick) return ShowMenu(event.fPosition);
    if (event.fType != kMouseEventClick || event.fButtons != kMouseButtonLeft) {
      outHandled = 0;
      return kOK;
    }
    TError error = fBoard.SelectNote(fView);
    TClickDragResult result = kClickDragNotApplicable;
    if (error == kOK) error = fMorvane.IMorvane_CheckForClickDragOperation(fBoard.GetWindow(), event, result);
    if (error != kOK || result != kClickDragDragged) return error;
    auto drag = std::make_unique<CNoteDrag>(fMorvane, fView, event.fPosition);
    error = fMorvane.IMorvane_AllocateMouseCapture(&fBoard.GetWindow(), drag.get());
    if (error == kOK) static_cast<void>(drag.release());  // the library's now
    return error;
  }
  // [end]

  // [shape]
  IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest&, TMousePhase phase, TFlag& outHandled,
                                           TError& outError) override {
    outError = kOK;
    outHandled = phase == kMousePhaseNormal ? 1 : 0;
    if (outHandled == 0) return nullptr;
    return fMorvane.IMorvane_CreateBuiltInMouseShape(kMouseShapeHand, outError);
  }
  // [end]

  // [keys]
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) override {
    fHasFocus = gained != 0;
    return Redraw();
  }
  TError IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    struct TStep {
      std::u16string_view fKey;
      TPoint fDistance;
    };
    static constexpr TStep kSteps[] = {
        {u"Left", {-8, 0}}, {u"Right", {8, 0}}, {u"Up", {0, -8}}, {u"Down", {0, 8}}};
    for (const TStep& step : kSteps) {
      if (!IsKey(fMorvane, event, step.fKey)) continue;
      outHandled = 1;
      return fView.IView_Offset(step.fDistance.fX, step.fDistance.fY);
    }
    return kOK;
  }
  // [end]

  // [view menu]
  TError IViewBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    const TError error = state.IMenuBarState_SetMenuTitle(kMenu1, u"_Note");
    return error == kOK ? SetItems(state, kMenu1, Items()) : error;
  }
  TError IViewBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override {
    outHandled = 1;
    return Perform(event.fCommand, outHandled);
  }
  // [end]

 private:
  std::vector<TMenuItem> Items() const {
    std::vector<TMenuItem> items = {Item(u"Next _colour", kNextColour, u"Ctrl+K"),
                                    Item(u"C_hanging colour", kChangingColour, u"Ctrl+Shift+K"),
                                    Item(u"_Remove", kRemoveNote, u"Ctrl+R")};
    if (fIsChanging) items[1].fStateFlags |= kMenuItemChecked;
    return items;
  }
  // [popup]
  TError ShowMenu(const TPoint& point) {
    const std::vector<TMenuItem> items = Items();
    std::uint16_t index = 0;
    TFlag isChosen = 0;
    const TError error =
        fMorvane.IMorvane_DisplayContextualMenu(items.data(), static_cast<std::uint32_t>(items.size()),
                                                fBoard.GetWindow(), point, 0, index, isChosen);
    if (error != kOK || isChosen == 0) return error;
    TFlag handled = 1;
    return Perform(items[index].fCommand, handled);
  }
  // [end]
  TError Perform(std::uint32_t command, TFlag& outHandled) {
    switch (command) {
      case kNextColour:
        return NextColour();
      case kChangingColour:
        return ToggleChanging();
      case kRemoveNote:
        return fBoard.RemoveNote(fView);
      default:
        outHandled = 0;
        return kOK;
    }
  }
  // [timer]
  // The timer ends with the note.
  TError ToggleChanging() {
    fIsChanging = !fIsChanging;
    TError error = kOK;
    if (fIsChanging)
      error = fColourTimer.CallEvery(800, [this] { return NextColour(); });
    else
      fColourTimer.Stop();
    return error == kOK ? fMorvane.IMorvane_RequestMenuBarsSetup() : error;
  }
  TError NextColour() {
    fColour = (fColour + 1) % std::size(kNoteColours);
    return Redraw();
  }
  // [end]
  TError Redraw() { return fMorvane.IMorvane_InvalidateView(fView, RectOf(fView)); }

  IMorvane& fMorvane;
  IBoard& fBoard;
  std::wstring fText;
  std::size_t fColour = 0;
  CTimer fColourTimer;
  bool fIsChanging = false;
  bool fHasFocus = false;
};

class CPaperView : public CDefaultHitViewBehavior {
 public:
  CPaperView(IView& view, IView& board) : CDefaultHitViewBehavior(view), fBoard(board) {}
  TError IViewBehavior_Draw(IDrawTools& tools) override {
    FillWith(COpenPort(tools), RectOf(fView), kBoardColours[0]);
    return kOK;
  }
  // [wheel]
  TError IViewBehavior_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) override {
    outHandled = 1;
    const TRect seen = RectOf(fBoard), now = RectOf(fView);
    const std::int32_t wanted = now.fTop + event.fDeltaNotches * 32;
    const std::int32_t top = std::clamp(wanted, std::min(seen.fBottom - (now.fBottom - now.fTop), 0), 0);
    return fView.IView_Offset(0, top - now.fTop);
  }
  // [end]

 private:
  IView& fBoard;
};

// [document window]
class CBoardWindow : public CDefaultDocumentWindowBehavior, public IBoard {
 public:
  CBoardWindow(IDocumentWindow& window, IMorvane& morvane)
      : CDefaultDocumentWindowBehavior(window), fMorvane(morvane) {
    ThrowIfFailed(ChangeState(window, [](auto& state) { CopyText(state.fTitle, u"Board"); }));
    ThrowIfFailed(SetClientSize(window, {420, 320}));
    ThrowIfFailed(fBoard.Create(morvane, RootViewOf(window), "Board", ViewParams(kViewDrawPermanent32)));
    ThrowIfFailed(fPaper.Create(morvane, *fBoard.View(), "Paper", ViewParams(), *fBoard.View()));
    ThrowIfFailed(SetRect(*fPaper.View(), {0, 0, 2000, 2000}));
    ThrowIfFailed(AddNote(L"Drag me, or move me with the arrow keys."));
    ThrowIfFailed(AddNote(L"Tab goes from note to note; the wheel scrolls the board."));
    ThrowIfFailed(GetWindow().IWindow_SetConceptualFocusView(fNotes.front().View()));
  }

  TError IDocumentWindowBehavior_OnClientSizeChanged(const TSize&, const TSize& size) override {
    return SetRect(*fBoard.View(), {0, 0, size.fWidth, size.fHeight});
  }
  // [end]

  // [window menu]
  TError IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    return SetItems(state, kMenuDocument,
                    {Item(u"_New note", kNewNote, u"Ctrl+N"), Item(u"_Settings", kBoardSettings)});
  }
  TError IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override {
    outHandled = 1;
    if (event.fCommand == kNewNote) return AddNote(L"A new note");
    if (event.fCommand == kBoardSettings) return ShowSettings();
    if (event.fCommand == kMenuCommandClose) return fWindow.IDocumentWindow_Release();
    outHandled = 0;
    return kOK;
  }
  // [end]

  // [owned dialog]
  // Blocks this window only; the call returns at once.
  TError ShowSettings() {
    IModalOwner* owner = nullptr;
    TError error = fWindow.IDocumentWindow_GetModalOwner(owner);
    if (error != kOK) return error;
    return CreateModalDialog<CMessageDialog>(fMorvane, owner, 0, fMorvane,
                                             L"This dialog belongs to its board. Other boards go on.");
  }
  // [end]

  TError SelectNote(IView& note) override { return GetWindow().IWindow_SetConceptualFocusView(&note); }
  TError RemoveNote(IView& note) override {
    fNotes.remove_if([&](const CViewOf<CNoteView>& each) { return each.View() == &note; });
    return SetTabOrder();
  }
  IWindow& GetWindow() override { return WindowOf(fWindow); }

 private:
  // [tab order]
  TError AddNote(const wchar_t* text) {
    return Guarded([&] { return MakeNote(text); });
  }
  TError MakeNote(const wchar_t* text) {
    const std::int32_t place = static_cast<std::int32_t>(fNotes.size());
    TViewParams params = ViewParams();
    params.fFlags |= kViewFocusable | kViewMouseTrackable;
    params.fRect = {30 + place * 40, 30 + place * 110, 210 + place * 40, 120 + place * 110};
    CViewOf<CNoteView> note;
    ThrowIfFailed(note.Create(fMorvane, *fPaper.View(), "Note", params, fMorvane, *this, text));
    ThrowIfFailed(note.View()->IView_SetTooltipText(u"A note"));
    fNotes.push_back(std::move(note));
    return SetTabOrder();
  }
  // With one note only, Tab has nowhere to go.
  TError SetTabOrder() {
    std::vector<IView*> tabViews;
    if (fNotes.size() > 1)
      for (const CViewOf<CNoteView>& each : fNotes) tabViews.push_back(each.View());
    return GetWindow().IWindow_SetTabViews(tabViews.data(), static_cast<std::uint32_t>(tabViews.size()));
  }
  // [end]

  IMorvane& fMorvane;
  CViewOf<CDefaultViewBehavior> fBoard;  // keeps the pixels
  CViewOf<CPaperView> fPaper;            // its only subview: what scrolls
  std::list<CViewOf<CNoteView>> fNotes;
};

// [application]
class CNotesApplication : public CDefaultApplication {
 public:
  using CDefaultApplication::CDefaultApplication;

  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override { return OpenBoard(); }
  // What is set here stands for all views.
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools& tools) override {
    const COpenPort port(tools);
    ::SelectObject(port, ::GetStockObject(DEFAULT_GUI_FONT));
    ::SetBkMode(port, TRANSPARENT);
    return kOK;
  }
  TError IMorvaneRunBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    TMenuBarFlags flags = {};
    TError error = state.IMenuBarState_GetFlags(flags);
    flags.fSecondMenuItemEnabled = 1;
    flags.fShowWindowMenu = 1;
    if (error == kOK) error = state.IMenuBarState_SetFlags(flags);
    if (error != kOK) return error;
    return SetItems(state, kMenuApplication,
                    {Item(u"New _board", kNewBoard, u"Ctrl+B"), Item(u"_About", kAbout)});
  }
  TError IMorvaneRunBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override {
    outHandled = 1;
    if (event.fCommand == kNewBoard) return OpenBoard();
    if (event.fCommand == kAbout) return ShowAbout(fMorvane);
    outHandled = 0;
    return kOK;
  }

 private:
  TError OpenBoard() {
    return CreateDocumentWindow<CBoardWindow>(fMorvane, kWindowResizableBit | kWindowZoomableBit, fMorvane);
  }
};
// [end]

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  return RunApplication<CNotesApplication>(StartupParams(u"Example", u"Notes"));
}
