#include <algorithm>
#include <string>
#include <vector>

#include "EventRows.h"
#include "LibraryWindow.h"
#include "PlainEventWindow.h"
#include "PlainWindow.h"

namespace NSBench {

namespace {

constexpr int kMenus = 6;
constexpr int kItemsInMenu = 50;       // of the bar that is measured,
constexpr int kItemsInSmallMenu = 10;  // and of the one of windows that are measured
constexpr int kShortcutsInMenu = 17;   // of the enabled items: a hundred in all, as far as there are letters
constexpr int kCellsInForm = 60;
constexpr UINT kFirstCommand = 0xA000;

// --- The menu bar that all windows show while one is in use

// Everything but the first item stays the same from build to build.
struct TBenchMenus {
  std::vector<TMenuItem> fItems[kMenus];
  int fShortcuts = 0;

  explicit TBenchMenus(int itemsInMenu = kItemsInMenu) {
    // Function keys, letters and digits with changing modifiers, so that all shortcuts differ.
    constexpr char16_t kKeys[] = u"abcdefghijklmnopqrstuvwxyz0123456789";
    constexpr std::uint32_t kModifiers[] = {kModifierControl, kModifierControl | kModifierAlt,
                                            kModifierControl | kModifierShift};
    for (int menu = 0; menu < kMenus; ++menu) {
      for (int i = 0; i < itemsInMenu; ++i) {
        TMenuItem item = {};
        const std::string text = "Item _" + std::to_string(menu * itemsInMenu + i);
        CopyText(item.fText, std::u16string(text.begin(), text.end()));
        item.fStateFlags = kMenuItemEnabled;
        item.fCommand = static_cast<std::uint32_t>(menu * itemsInMenu + i);
        if (i < kShortcutsInMenu && fShortcuts < 100) {
          item.fShortcut.fKeyText[0] = kKeys[fShortcuts % 36];
          item.fShortcut.fModifiers.fKeys = kModifiers[fShortcuts / 36];
          ++fShortcuts;
        }
        fItems[menu].push_back(item);
      }
    }
  }
  void Change() {
    TChar& last = fItems[0][0].fText[0];
    last = last == u'I' ? u'J' : u'I';
  }
};

TBenchMenus* gBenchMenus = nullptr;

// --- What plain programs do

// Builds the same bar with the platform alone, and puts it in the place of the one before.
class CPlainMenuBar {
 public:
  explicit CPlainMenuBar(HWND hwnd) : fHwnd(hwnd) {}
  ~CPlainMenuBar() {
    if (fAccelerators) DestroyAcceleratorTable(fAccelerators);
  }
  void Rebuild(const TBenchMenus& menus) {
    const HMENU bar = CreateMenu();
    std::vector<ACCEL> accelerators;
    UINT command = kFirstCommand;
    for (const std::vector<TMenuItem>& items : menus.fItems) {
      const HMENU popup = CreatePopupMenu();
      AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), L"Menu");
      for (const TMenuItem& item : items) {
        std::wstring text;
        for (const TChar* c = item.fText; *c; ++c) text += *c == u'_' ? L'&' : static_cast<wchar_t>(*c);
        if (const TChar key = item.fShortcut.fKeyText[0]) {
          const bool shift = item.fShortcut.fModifiers.fKeys & kModifierShift;
          text += shift ? L"\tCtrl+Shift+" : L"\tCtrl+";
          text += static_cast<wchar_t>(key);
          accelerators.push_back({static_cast<BYTE>(FVIRTKEY | FCONTROL | (shift ? FSHIFT : 0)),
                                  LOBYTE(VkKeyScanW(static_cast<WCHAR>(key))), static_cast<WORD>(command)});
        }
        AppendMenuW(popup, MF_STRING, command++, text.c_str());
      }
    }
    SetMenu(fHwnd, bar);
    if (fBar) DestroyMenu(fBar);
    fBar = bar;
    if (fAccelerators) DestroyAcceleratorTable(fAccelerators);
    fAccelerators = CreateAcceleratorTableW(accelerators.data(), static_cast<int>(accelerators.size()));
  }

 private:
  HWND fHwnd;
  HMENU fBar = nullptr;  // the window's
  HACCEL fAccelerators = nullptr;
};

// A window with cells, opened as an application opens one.
class CPlainForm {
 public:
  CPlainForm(CCellPainter& painter, const TBenchMenus& menus)
      : fWindow(painter, Cells(kCellsInForm)), fMenuBar(fWindow.Hwnd()) {
    fMenuBar.Rebuild(menus);
    OpenPlainWindow(fWindow.Hwnd());
  }

 private:
  CPlainWindow fWindow;
  CPlainMenuBar fMenuBar;
};

// --- The same with the library

class CForm : public CDefaultDocumentWindowBehavior {
 public:
  CForm(IDocumentWindow& window, IMorvane& morvane, CCellPainter& painter)
      : CDefaultDocumentWindowBehavior(window), fCells(kCellsInForm) {
    ThrowIfFailed(SetClientSize(window, {kClientWidth, kClientHeight}));
    int index = 0;
    for (auto& cell : fCells) {
      const RECT rect = CellRect(index);
      TViewParams params = ViewParams(kViewDrawDirect);
      params.fRect = {rect.left, rect.top, rect.right, rect.bottom};
      ThrowIfFailed(cell.Create(morvane, RootViewOf(window), "Cell", params, painter, rect, index++));
    }
  }

 private:
  std::vector<CViewOf<CCellView>> fCells;
};

// --- Rows

using TWindows = std::vector<CReleasePtr<IDocumentWindow>>;

class CWindowRows {
 public:
  CWindowRows(IMorvane& morvane, const TOptions& options) : fMorvane(morvane), fOptions(options) {}

  void MeasureMenuBar(const TRowTexts& texts) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    TBenchMenus menus;
    Require(menus.fShortcuts == 100, "100 shortcuts");
    const CMenusInUse use(menus);
    const TWindows windows = Open(1);
    const HWND hwnd = HwndOf(*windows[0]);
    Flush(hwnd, 1);
    Require(GetMenu(hwnd) != nullptr && GetMenuItemCount(GetSubMenu(GetMenu(hwnd), 2)) == kItemsInMenu,
            "the menu bar is there");
    CPlainEventWindow plain;
    CPlainMenuBar plainBar(plain.Hwnd());
    PrintRow(texts, Compare(fOptions, Rate([&] {
                              menus.Change();
                              Flush(hwnd, 1);
                            }),
                            Rate([&] {
                              menus.Change();
                              plainBar.Rebuild(menus);
                            })));
  }

  void MeasureRequests(const TRowTexts& texts) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    TBenchMenus menus;
    const CMenusInUse use(menus);
    const TWindows windows = Open(10);
    const HWND hwnd = HwndOf(*windows[0]);
    const auto side = [&](int requests) {
      return Rate([&menus, hwnd, requests, this] {
        menus.Change();
        Flush(hwnd, requests);
      });
    };
    PrintRow(texts, Compare(fOptions, side(1000), side(1)));
  }

  // Batches of windows that are opened, painted and closed, in windows a second.
  void MeasureOpening(const TRowTexts& texts, int count) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    PrintRow(texts, Compare(fOptions, Batch(count, [&] { Open(count); }), Batch(count, [&] {
                              std::vector<std::unique_ptr<CPlainEventWindow>> windows;
                              for (int i = 0; i < count; ++i)
                                windows.push_back(std::make_unique<CPlainEventWindow>());
                            })));
  }

  // The same with windows that have cells and a menu bar.
  void MeasureOpeningForms(const TRowTexts& texts, int count) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    TBenchMenus menus(kItemsInSmallMenu);
    const CMenusInUse use(menus);
    CCellPainter painter(TCellText::kPortsFont);
    // Not all: the last of the cascade reach beyond the screen.
    const auto requirePaints = [&] {
      Require(painter.TakeCount() >= static_cast<std::uint64_t>(count) * kCellsInForm * 9 / 10,
              "the cells are painted");
    };
    PrintRow(texts, Compare(fOptions,
                            Batch(count,
                                  [&] {
                                    Open<CForm>(count, fMorvane, painter);
                                    requirePaints();
                                  }),
                            Batch(count, [&] {
                              std::vector<std::unique_ptr<CPlainForm>> windows;
                              for (int i = 0; i < count; ++i)
                                windows.push_back(std::make_unique<CPlainForm>(painter, menus));
                              requirePaints();
                            })));
  }

  void MeasureModalDialog(const TRowTexts& texts, int windowCount) {
    if (!fOptions.Wants(texts.fName)) return;
    Progress(texts.fName);
    const TWindows windows = Open(windowCount);
    const auto enableAll = [&](BOOL enable) {
      for (const auto& window : windows) EnableWindow(HwndOf(*window), enable);
    };
    PrintRow(texts, Compare(fOptions, Rate([&] {
                              CModalDialogFactory<CDefaultModalDialogBehavior> factory;
                              TError error = kOK;
                              const CReleasePtr<IModalDialog> dialog(
                                  fMorvane.IMorvane_CreateModalDialog(factory, nullptr, 0, 0, error));
                              ThrowIfFailed(error);
                              Require(!IsWindowEnabled(HwndOf(*windows[0])), "the dialog blocks the windows");
                            }),
                            Rate([&] {
                              enableAll(FALSE);
                              { const CPlainEventWindow dialog; }
                              enableAll(TRUE);
                            })));
  }

 private:
  // The menus are those of all windows while this lives.
  struct CMenusInUse {
    explicit CMenusInUse(TBenchMenus& menus) { gBenchMenus = &menus; }
    ~CMenusInUse() { gBenchMenus = nullptr; }
  };

  template <class TBehavior = CDefaultDocumentWindowBehavior, class... TArguments>
  TWindows Open(int count, TArguments&&... arguments) {
    TWindows windows;
    CDocumentWindowFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
    for (int i = 0; i < count; ++i) {
      TError error = kOK;
      windows.emplace_back(fMorvane.IMorvane_CreateDocumentWindow(factory, 0, 0, error));
      ThrowIfFailed(error);
    }
    return windows;
  }
  // Menu bars are rebuilt at the end of a message in which they have been asked for.
  void Flush(HWND hwnd, int requests) {
    for (int i = 0; i < requests; ++i) ThrowIfFailed(fMorvane.IMorvane_RequestMenuBarsSetup());
    SendMessageW(hwnd, WM_NULL, 0, 0);
  }
  // Windows a second.
  static TSample Batch(int count, std::function<void()> batch) {
    return [=] {
      const double start = Now();
      batch();
      return count / (Now() - start);
    };
  }
  TSample Rate(std::function<void()> frame) {
    return [this, frame = std::move(frame)] { return FramesPerSecond(fOptions.fSampleSeconds, frame); };
  }

  IMorvane& fMorvane;
  const TOptions& fOptions;
};

}  // namespace

TError FillMenuBar(IMenuBarState& state) {
  if (!gBenchMenus) return kOK;
  for (int i = 0; i < kMenus; ++i) {
    const auto menu = static_cast<TMenu>(kMenu1 + i);
    const std::vector<TMenuItem>& items = gBenchMenus->fItems[i];
    TError error = state.IMenuBarState_SetMenuTitle(menu, u"Menu");
    if (error == kOK)
      error = state.IMenuBarState_SetMenuItems(menu, items.data(),
                                               static_cast<std::uint32_t>(items.size() * sizeof(TMenuItem)));
    if (error != kOK) return error;
  }
  return kOK;
}

void MeasureWindows(IMorvane& morvane, const TOptions& options) {
  CWindowRows rows(morvane, options);
  rows.MeasureMenuBar(
      {"menu", "A menu bar of 300 items with 100 shortcuts built anew; the platform alone", "", "bars/s"});
  rows.MeasureRequests(
      {"menu-requests", "10 such bars, asked for 1,000 times in one message; asked for once", "", "times/s"});
  rows.MeasureOpening(
      {"windows", "200 windows opened, painted and closed; plain windows", "at least 0.71", "windows/s"},
      200);
  rows.MeasureOpeningForms({"windows-60", "The same with 60 views, which draw text, and a menu bar in each",
                            "at least 0.71", "windows/s"},
                           200);
  rows.MeasureModalDialog(
      {"modal-5", "A modal dialog opened and closed over 5 windows; plain windows, enabled one by one",
       "at least 0.5", "dialogs/s"},
      5);
  rows.MeasureModalDialog({"modal", "The same over 50 windows", "at least 0.5", "dialogs/s"}, 50);
}

}  // namespace NSBench
