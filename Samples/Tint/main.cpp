// Sheets of one tint: the program behind the second half of docs/guide.md, which shows it piece by piece.
// What stands between `// [name]` and `// [end]` is printed there, word for word.
//
// A document is a text file with six hexadecimal digits. Clicks on the palette, or Ctrl+1 to Ctrl+3, change
// it.
#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

using namespace NSMorvane;

namespace {

enum TCommand : std::uint32_t { kDetails = 1, kSave, kFirstTint };

constexpr std::uint32_t kTints[] = {0xD9822B, 0x2F9E60, 0x2F6FDE};  // 0x00RRGGBB
constexpr const char16_t* kTintNames[] = {u"_Orange", u"_Green", u"_Blue"};
constexpr const char16_t* kTintKeys[] = {u"Ctrl+1", u"Ctrl+2", u"Ctrl+3"};
constexpr std::uint32_t kFirstTintOfAll = 0x808890;

RECT ToNative(const TRect& rect) { return {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom}; }

void FillWith(HDC hdc, const TRect& rect, std::uint32_t tint) {
  const RECT box = ToNative(rect);
  const HBRUSH brush = ::CreateSolidBrush(RGB((tint >> 16) & 0xFF, (tint >> 8) & 0xFF, tint & 0xFF));
  ::FillRect(hdc, &box, brush);
  ::DeleteObject(brush);
}

std::wstring HexOf(std::uint32_t tint) {
  wchar_t text[16] = {};
  std::swprintf(text, 16, L"%06X", static_cast<unsigned>(tint));
  return text;
}

// What the palette and the details are about: the sheet in front.
class ISheet {
 public:
  virtual std::uint32_t Tint() const = 0;
  virtual TError SetTint(std::uint32_t tint) = 0;
  virtual TError Focus() = 0;
  virtual bool IsModified() const = 0;
  virtual TError Ask(bool isQuitting) = 0;  // whether to save

 protected:
  ~ISheet() = default;
};

// --- Small views

class CTextView : public CDefaultHitViewBehavior {
 public:
  CTextView(IView& view, std::wstring text, std::function<TError()> onClick = {})
      : CDefaultHitViewBehavior(view), fText(std::move(text)), fOnClick(std::move(onClick)) {}
  void SetText(const std::wstring& text) { fText = text; }
  TError IViewBehavior_Draw(IDrawTools& tools) override {
    RECT box = ToNative(RectOf(fView));
    const COpenPort port(tools);
    if (fOnClick) ::DrawFrameControl(port, &box, DFC_BUTTON, DFCS_BUTTONPUSH);
    const UINT across = fOnClick ? DT_CENTER : DT_LEFT;
    ::DrawTextW(port, fText.c_str(), -1, &box, across | DT_VCENTER | DT_SINGLELINE);
    return kOK;
  }
  TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) override {
    outHandled = fOnClick && event.fType == kMouseEventClick && event.fButtons == kMouseButtonLeft ? 1 : 0;
    return outHandled != 0 ? fOnClick() : kOK;
  }

 private:
  std::wstring fText;
  const std::function<TError()> fOnClick;
};

// [raw pixels]
// From black at the left to the tint at the right, pixel by pixel.
class CRampView : public CDefaultViewBehavior {
 public:
  CRampView(IView& view, const ISheet& sheet) : fView(view), fSheet(sheet) {}

  TError IViewBehavior_Draw(IDrawTools& tools) override {
    const RECT view = ToNative(RectOf(fView));
    void* region = nullptr;
    const TError error = tools.IDrawTools_GetDirtyRegion(region);
    if (error != kOK) return error;
    RECT dirty = {}, part = {};
    ::GetRgnBox(static_cast<HRGN>(region), &dirty);
    const COpenPixels pixels(tools);  // closed again at the end of the scope
    if (!pixels || !pixels->fPixels32) return kOtherError;
    // Nothing clips here: what is written must lie in the view, in the dirty part and in the bitmap.
    const RECT bitmap = {pixels->fOriginX, pixels->fOriginY, pixels->fOriginX + pixels->fWidth,
                         pixels->fOriginY + pixels->fHeight};
    if (!::IntersectRect(&part, &view, &dirty) || !::IntersectRect(&part, &part, &bitmap)) return kOK;
    for (LONG y = part.top; y < part.bottom; ++y) {
      std::uint32_t* const row =
          pixels->fPixels32 + static_cast<std::ptrdiff_t>(y - bitmap.top) * (pixels->fRowBytes / 4);
      for (LONG x = part.left; x < part.right; ++x)
        row[x - bitmap.left] =
            Shade(static_cast<std::uint32_t>((x - view.left) * 255 / (view.right - view.left)));
    }
    return kOK;
  }

 private:
  std::uint32_t Shade(std::uint32_t share) const {
    const std::uint32_t tint = fSheet.Tint();
    const auto part = [&](int shift) { return (((tint >> shift) & 0xFF) * share / 255) << shift; };
    return part(16) | part(8) | part(0);
  }

  IView& fView;
  const ISheet& fSheet;
};
// [end]

// --- The palette

class CSwatchView : public CDefaultHitViewBehavior {
 public:
  CSwatchView(IView& view, std::uint32_t tint, std::function<TError()> onClick)
      : CDefaultHitViewBehavior(view), fTint(tint), fOnClick(std::move(onClick)) {}
  TError IViewBehavior_Draw(IDrawTools& tools) override {
    FillWith(COpenPort(tools), RectOf(fView), fTint);
    return kOK;
  }
  TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) override {
    outHandled = event.fType == kMouseEventClick && event.fButtons == kMouseButtonLeft ? 1 : 0;
    return outHandled != 0 ? fOnClick() : kOK;
  }

 private:
  const std::uint32_t fTint;
  const std::function<TError()> fOnClick;
};

// [floating window]
// Above all documents, and hidden while another application is in front.
class CPalette : public CDefaultFloatingWindowBehavior {
 public:
  CPalette(IFloatingWindow& window, IMorvane& morvane, const std::function<TError(std::uint32_t)>& choose)
      : CDefaultFloatingWindowBehavior(window) {
    ThrowIfFailed(ChangeState(window, [](auto& state) {
      CopyText(state.fTitle, u"Tints");
      state.fMinimumClientSize = state.fMaximumClientSize = {132, 44};
    }));
    std::int32_t left = 8;
    for (std::size_t i = 0; i < fSwatches.size(); ++i, left += 40) {
      const std::uint32_t tint = kTints[i];
      ThrowIfFailed(fSwatches[i].Create(morvane, RootViewOf(window), "Swatch", ViewParams(), tint,
                                        [choose, tint] { return choose(tint); }));
      ThrowIfFailed(SetRect(*fSwatches[i].View(), {left, 4, left + 36, 40}));
    }
  }

 private:
  std::array<CViewOf<CSwatchView>, std::size(kTints)> fSwatches;
};

TError ShowPalette(IMorvane& morvane, const std::function<TError(std::uint32_t)>& choose) {
  return CreateFloatingWindow<CPalette>(morvane, 0, morvane, choose);
}
// [end]

// --- The details

// [modeless dialog]
// Stays open beside the documents. Whoever opens it keeps a pointer to it, which `onGone` takes away.
class CDetails : public CDefaultModelessDialogBehavior {
 public:
  CDetails(IModelessDialog& dialog, IMorvane& morvane, const std::function<void()>& onGone)
      : CDefaultModelessDialogBehavior(dialog), fMorvane(morvane), fOnGone(onGone) {
    ThrowIfFailed(ChangeState(dialog, [](auto& state) {
      CopyText(state.fTitle, u"Details");
      state.fMinimumClientSize = state.fMaximumClientSize = {180, 48};
    }));
    ThrowIfFailed(fLabel.Create(morvane, RootViewOf(dialog), "Label", ViewParams(), L""));
    ThrowIfFailed(SetRect(*fLabel.View(), {16, 8, 164, 40}));
  }
  ~CDetails() override { fOnGone(); }

  void Show(const ISheet* sheet) {
    fLabel->SetText(sheet ? L"Tint " + HexOf(sheet->Tint()) : L"No document");
    fMorvane.IMorvane_InvalidateView(*fLabel.View(), RectOf(*fLabel.View()));
  }
  TError Focus() { return fWindow.IModelessDialog_FocusNow(); }

  TError IModelessDialogBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    outHandled = IsKey(fMorvane, event, u"Escape") ? 1 : 0;
    return outHandled != 0 ? fWindow.IModelessDialog_Release() : kOK;
  }

 private:
  IMorvane& fMorvane;
  const std::function<void()> fOnGone;
  CViewOf<CTextView> fLabel;
};

CDetails* OpenDetails(IMorvane& morvane, const std::function<void()>& onGone, TError& outError) {
  CModelessDialogFactory<CDetails, IMorvane&, const std::function<void()>&> factory(morvane, onGone);
  morvane.IMorvane_CreateModelessDialog(factory, kModelessDialogCloseBoxBit, 0, outError);
  return outError == kOK ? factory.Made() : nullptr;
}
// [end]

// --- The question before a document closes

enum class TAnswer { kSave, kDiscard, kCancel };

class CQuestion : public CDefaultModalDialogBehavior {
 public:
  CQuestion(IModalDialog& dialog, IMorvane& morvane, const std::function<TError(TAnswer)>& onAnswer)
      : CDefaultModalDialogBehavior(dialog), fMorvane(morvane), fOnAnswer(onAnswer) {
    ThrowIfFailed(ChangeState(dialog, [](auto& state) {
      CopyText(state.fTitle, u"Tint");
      state.fMinimumClientSize = state.fMaximumClientSize = {300, 100};
    }));
    ThrowIfFailed(fLabel.Create(morvane, RootViewOf(dialog), "Label", ViewParams(),
                                L"The document has changes. Return saves them."));
    ThrowIfFailed(SetRect(*fLabel.View(), {16, 12, 284, 44}));
    constexpr const wchar_t* kTexts[] = {L"Save", L"Discard", L"Cancel"};
    std::int32_t left = 16;
    for (std::size_t i = 0; i < fButtons.size(); ++i, left += 92) {
      ThrowIfFailed(fButtons[i].Create(morvane, RootViewOf(dialog), "Button", ViewParams(), kTexts[i],
                                       [this, i] { return Answer(static_cast<TAnswer>(i)); }));
      ThrowIfFailed(SetRect(*fButtons[i].View(), {left, 60, left + 84, 86}));
    }
  }

  TError IModalDialogBehavior_OnRequestClose(TCloseReason) override { return Answer(TAnswer::kCancel); }
  TError IModalDialogBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    constexpr const char16_t* kKeys[] = {u"Return", u"D", u"Escape"};
    for (std::size_t i = 0; i < std::size(kKeys); ++i) {
      if (!IsKey(fMorvane, event, kKeys[i])) continue;
      outHandled = 1;
      return Answer(static_cast<TAnswer>(i));
    }
    return kOK;
  }

 private:
  TError Answer(TAnswer answer) {
    const std::function<TError(TAnswer)> onAnswer = fOnAnswer;
    const TError error = fWindow.IModalDialog_Release();
    return error == kOK ? onAnswer(answer) : error;
  }

  IMorvane& fMorvane;
  const std::function<TError(TAnswer)> fOnAnswer;
  CViewOf<CTextView> fLabel;
  std::array<CViewOf<CTextView>, 3> fButtons;
};

// --- A document

// What a document asks of the application.
class IApplication {
 public:
  virtual void OnFront(ISheet* sheet) = 0;
  virtual void OnGone(ISheet* sheet) = 0;
  virtual void OnNew(ISheet* sheet) = 0;
  virtual TError ShowDetails() = 0;
  virtual TError Quit() = 0;

 protected:
  ~IApplication() = default;
};

class CSheetWindow : public CDefaultDocumentWindowBehavior, public ISheet {
 public:
  // Without a path the document is a new one.
  CSheetWindow(IDocumentWindow& window, IMorvane& morvane, IApplication& application,
               const std::wstring& path)
      : CDefaultDocumentWindowBehavior(window), fMorvane(morvane), fApplication(application), fPath(path) {
    Load();
    const std::wstring name = fPath.empty() ? L"Untitled" : fPath.substr(fPath.find_last_of(L"\\/") + 1);
    ThrowIfFailed(ChangeState(
        window, [&](auto& state) { CopyText(state.fTitle, std::u16string(name.begin(), name.end())); }));
    ThrowIfFailed(SetClientSize(window, {320, 200}));
    // A bitmap of 32 bits for the length of each paint, whatever the depth of the screen.
    ThrowIfFailed(fRamp.Create(morvane, RootViewOf(window), "Ramp", ViewParams(kViewDrawTemporary32), *this));
    fApplication.OnNew(this);
  }
  ~CSheetWindow() override { fApplication.OnGone(this); }

  std::uint32_t Tint() const override { return fTint; }
  bool IsModified() const override { return fIsModified; }
  TError SetTint(std::uint32_t tint) override {
    if (tint == fTint) return kOK;
    fTint = tint;
    fApplication.OnFront(this);
    const TError error = SetModified(true);
    return error == kOK ? fMorvane.IMorvane_InvalidateView(*fRamp.View(), RectOf(*fRamp.View())) : error;
  }

  TError Focus() override { return fWindow.IDocumentWindow_FocusNow(); }

  TError IDocumentWindowBehavior_OnClientSizeChanged(const TSize&, const TSize& size) override {
    return SetRect(*fRamp.View(), {0, 0, size.fWidth, size.fHeight});
  }
  TError IDocumentWindowBehavior_OnActivationChanged(TFlag active) override {
    if (active != 0) fApplication.OnFront(this);
    return kOK;
  }

  // [close question]
  // Somebody wants the window to close. Nothing happens to it unless it is released here.
  TError IDocumentWindowBehavior_OnRequestClose(TCloseReason) override {
    return fIsModified ? Ask(false) : fWindow.IDocumentWindow_Release();
  }
  TError Ask(bool isQuitting) override {
    if (fIsAsking) return Focus();
    TError error = Focus();
    IModalOwner* owner = nullptr;
    if (error == kOK) error = fWindow.IDocumentWindow_GetModalOwner(owner);
    if (error != kOK) return error;
    error = CreateModalDialog<CQuestion>(fMorvane, owner, 0, fMorvane, [this, isQuitting](TAnswer answer) {
      return OnAnswer(answer, isQuitting);
    });
    fIsAsking = error == kOK;
    return error;
  }
  TError OnAnswer(TAnswer answer, bool isQuitting) {
    fIsAsking = false;
    TError error = answer == TAnswer::kSave ? Save() : kOK;
    if (error != kOK || answer == TAnswer::kCancel) return error;
    fIsModified = false;
    error = fWindow.IDocumentWindow_Release();
    return error == kOK && isQuitting ? fApplication.Quit() : error;
  }
  // [end]

  TError IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    const auto item = [](std::u16string_view text, std::uint32_t command, std::u16string_view shortcut) {
      TMenuItem made = {};
      CopyText(made.fText, text);
      made.fStateFlags = kMenuItemEnabled;
      made.fCommand = command;
      made.fShortcut = KeyOf(shortcut);
      return made;
    };
    const TMenuItem document[] = {item(u"_Save", kSave, u"Ctrl+S"), item(u"_Details", kDetails, u"Ctrl+I")};
    TMenuItem tints[std::size(kTints)];
    for (std::uint32_t i = 0; i < std::size(kTints); ++i)
      tints[i] = item(kTintNames[i], kFirstTint + i, kTintKeys[i]);
    TMenuBarFlags flags = {};
    TError error = state.IMenuBarState_GetFlags(flags);
    flags.fSecondMenuItemEnabled = 1;
    if (error == kOK) error = state.IMenuBarState_SetFlags(flags);
    if (error == kOK) error = state.IMenuBarState_SetMenuItems(kMenuDocument, document, sizeof(document));
    if (error == kOK) error = state.IMenuBarState_SetMenuTitle(kMenu1, u"_Tint");
    return error == kOK ? state.IMenuBarState_SetMenuItems(kMenu1, tints, sizeof(tints)) : error;
  }
  TError IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override {
    outHandled = 1;
    if (event.fCommand == kSave) return Save();
    if (event.fCommand == kDetails) return fApplication.ShowDetails();
    if (event.fCommand == kMenuCommandClose) return IDocumentWindowBehavior_OnRequestClose(kCloseByUser);
    if (event.fCommand >= kFirstTint && event.fCommand < kFirstTint + std::size(kTints))
      return SetTint(kTints[event.fCommand - kFirstTint]);
    outHandled = 0;
    return kOK;
  }

 private:
  void Load() {
    char text[8] = {};
    FILE* const file = fPath.empty() ? nullptr : ::_wfopen(fPath.c_str(), L"rb");
    if (!file) return;
    const std::size_t size = std::fread(text, 1, 6, file);
    std::fclose(file);
    if (size > 0) fTint = static_cast<std::uint32_t>(std::strtoul(text, nullptr, 16)) & 0xFFFFFF;
  }
  // A new document goes into the current folder.
  TError Save() {
    FILE* const file = ::_wfopen(fPath.empty() ? L"Untitled.tint" : fPath.c_str(), L"wb");
    if (!file) return kOtherError;
    const bool isWritten = std::fprintf(file, "%06X\n", static_cast<unsigned>(fTint)) > 0;
    return std::fclose(file) == 0 && isWritten ? SetModified(false) : kOtherError;
  }
  TError SetModified(bool isModified) {
    fIsModified = isModified;
    return ChangeState(fWindow, [&](auto& state) { state.fModified = isModified ? 1 : 0; });
  }

  IMorvane& fMorvane;
  IApplication& fApplication;
  const std::wstring fPath;
  std::uint32_t fTint = kFirstTintOfAll;
  bool fIsModified = false;
  bool fIsAsking = false;
  CViewOf<CRampView> fRamp;
};

// --- The application

class CTintApplication : public CDefaultApplication, public IApplication {
 public:
  // [failures]
  // What goes wrong stands in the debugger's log.
  explicit CTintApplication(IMorvane& morvane)
      : CDefaultApplication(morvane),
        fFailures(morvane, [](const std::string& line) { ::OutputDebugStringA((line + "\n").c_str()); }) {}
  // [end]

  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override { return Open({}); }
  // [font]
  // Before the views of a window are drawn: what is set here stands for all of them.
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools& tools) override {
    const COpenPort port(tools);
    ::SelectObject(port, ::GetStockObject(DEFAULT_GUI_FONT));
    ::SetBkMode(port, TRANSPARENT);
    return kOK;
  }
  // [end]

  // [open files]
  // Each file that is handed over, wherever it comes from: the command line, a drop on a document window, or
  // a second launch, which then ends.
  TError IMorvaneRunBehavior_OnOpenURL(const char* url) override {
    const std::u16string path = PathOfURL(url);
    return path.empty() ? TError{kBadInputProgrammingError} : Open({path.begin(), path.end()});
  }
  // [end]

  // [quitting]
  // The user wants to quit, or the last document has gone. Palettes would be closed first, so the documents
  // are asked before quitting starts: then giving up leaves palettes and dialogs as they were.
  TError IMorvaneRunBehavior_OnQuitEvent() override { return Quit(); }
  TError Quit() override {
    for (ISheet* const sheet : fSheets)
      if (sheet->IsModified()) return sheet->Ask(true);
    return CDefaultApplication::IMorvaneRunBehavior_OnQuitEvent();  // may be called twice
  }
  // [end]

  void OnFront(ISheet* sheet) override {
    fFront = sheet;
    if (fDetails) fDetails->Show(fFront);
  }
  void OnNew(ISheet* sheet) override {
    fSheets.push_back(sheet);
    OnFront(sheet);
  }
  void OnGone(ISheet* sheet) override {
    std::erase(fSheets, sheet);
    if (fFront == sheet) OnFront(nullptr);
  }
  TError ShowDetails() override {
    if (fDetails) return fDetails->Focus();
    TError error = kOK;
    fDetails = OpenDetails(
        fMorvane, [this] { fDetails = nullptr; }, error);
    if (fDetails) fDetails->Show(fFront);
    return error;
  }

 private:
  TError Open(const std::wstring& path) {
    const TError error = CreateDocumentWindow<CSheetWindow>(
        fMorvane, kWindowResizableBit | kWindowZoomableBit, fMorvane, *this, path);
    if (error != kOK || fHasPalette) return error;
    fHasPalette = true;
    const auto choose = [this](std::uint32_t tint) { return fFront ? fFront->SetTint(tint) : kOK; };
    const TError shown = ShowPalette(fMorvane, choose);
    return shown == kOK && fFront ? fFront->Focus() : shown;  // the keys go on to the document
  }

  CFailureOutput fFailures;
  std::vector<ISheet*> fSheets;
  ISheet* fFront = nullptr;
  CDetails* fDetails = nullptr;  // the library's
  bool fHasPalette = false;
};

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  return RunApplication<CTintApplication>(StartupParams(u"Example", u"Tint"));
}
