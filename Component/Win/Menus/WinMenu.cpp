#include "Component/Win/Menus/WinMenu.h"

#include <utility>

#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

// The modifier bits of a VkKeyScanW result, and the result for a character without a key.
enum : UINT { kScanShift = 0x100, kScanControl = 0x200, kScanAlt = 0x400, kNoVirtualKey = 0xFFFF };

TChar LowerCase(TChar character) {
  // CharLowerW takes a character in place of a pointer.
  const auto argument = reinterpret_cast<LPWSTR>(static_cast<std::uintptr_t>(character));
  return static_cast<TChar>(reinterpret_cast<std::uintptr_t>(CharLowerW(argument)));
}

}  // namespace

// --- Texts

TString EscapeMnemonics(const TString& name) {
  TMenuItem item = {};
  NSTextPackage::CopyChars(item.fText, name.c_str(), kMenuTextChars);
  return CMenuItem::WithEscapedText(item).fText;
}

TString WinPrepareMnemonic(const TString& text) {
  TString doubled;
  for (const TChar c : text) doubled.append(c == u'&' ? 2 : 1, c);

  TString result;
  int singleUnderscoreCount = 0;
  for (std::size_t i = 0; i < doubled.size(); ++i) {
    if (doubled[i] != u'_' || i + 1 == doubled.size()) {
      result += doubled[i];
    } else if (doubled[i + 1] == u'_') {
      result += doubled[++i];
    } else {
      result += u'&';
      ++singleUnderscoreCount;
    }
  }
  if (singleUnderscoreCount > 1) {
    DebugPrint("In WinPrepareMnemonic, result is: " + NSTextPackage::StringToUTF8(result, false));
    DebugPrint("singleUnderscoreCount is: " + NumberText(singleUnderscoreCount));
  }
  return result;
}

// --- Menus

CMenu::CMenu(HMENU menuHandle, bool ownsHandle) : fMenuHandle(menuHandle), fOwnsHandle(ownsHandle) {
  MORVANE_ASSERT(fMenuHandle != NULL);
}

CMenu::~CMenu() {
  if (!fOwnsHandle) return;
  MORVANE_ASSERT(fMenuHandle != NULL);
  DestroyMenu(fMenuHandle);
}

HMENU CMenu::Detach() {
  fOwnsHandle = false;
  return std::exchange(fMenuHandle, nullptr);
}

// --- The builder

CMenuBuilder::CMenuBuilder(std::vector<CMenuItem>& items, UINT firstCommand)
    : fMenu(new CMenuBar),
      fParent(nullptr),
      fSeparatorPending(false),
      fItems(items),
      fFirstCommand(firstCommand),
      fNativeItemCount(0),
      fIsEnabled(true) {}

CMenuBuilder::CMenuBuilder(CMenuBuilder& parent, HMENU popup)
    : fMenu(new CMenu(popup, false)),
      fParent(&parent),
      fSeparatorPending(false),
      fItems(parent.fItems),
      fFirstCommand(parent.fFirstCommand),
      fNativeItemCount(0),
      fIsEnabled(!parent.fParent) {}

// The builder counts its items and remembers what is enabled: asking the system for each item would double
// the number of calls.
void CMenuBuilder::Append(UINT nativeFlags, UINT_PTR commandOrSubmenu, const TString& text) {
  if (!AppendMenuW(GetHandle(), nativeFlags, commandOrSubmenu, WinText(text))) MORVANE_CHECK_LAST_ERROR();
  ++fNativeItemCount;
}

void CMenuBuilder::FlushSeparator() {
  if (!std::exchange(fSeparatorPending, false)) return;
  if (!AppendMenuW(GetHandle(), MF_SEPARATOR, 0, nullptr)) MORVANE_CHECK_LAST_ERROR();
  ++fNativeItemCount;
}

void CMenuBuilder::EnablePath() {
  for (CMenuBuilder* level = this; !level->fIsEnabled; level = level->fParent) {
    const CMenuBuilder& parent = *level->fParent;
    // The submenu that is being filled is always the last item.
    if (EnableMenuItem(parent.GetHandle(), parent.fNativeItemCount - 1, MF_BYPOSITION | MF_ENABLED) == -1)
      MORVANE_CHECK_LAST_ERROR();
    level->fIsEnabled = true;
  }
}

CMenuBuilder& CMenuBuilder::AddSubmenu(const TString& name) {
  FlushSeparator();
  MORVANE_ASSERT(!name.empty());
  CPopupMenu popup;  // owns the menu until it is appended
  Append(MF_POPUP | (fParent ? MF_GRAYED : 0), reinterpret_cast<UINT_PTR>(popup.GetHandle()),
         WinPrepareMnemonic(name));
  fSubmenuBuilders.push_back(boost::shared_ptr<CMenuBuilder>(new CMenuBuilder(*this, popup.Detach())));
  return *fSubmenuBuilders.back();
}

void CMenuBuilder::AddNativeItem(const TString& text, UINT command, UINT nativeFlags) {
  AppendItem(WinPrepareMnemonic(text), command, nativeFlags);
}

void CMenuBuilder::AppendItem(const TString& nativeText, UINT command, UINT nativeFlags) {
  FlushSeparator();
  Append(nativeFlags, command, nativeText);
  if (!(nativeFlags & MF_GRAYED)) EnablePath();
}

void CMenuBuilder::MarkSeparator() {
  if (fNativeItemCount > 0) fSeparatorPending = true;
}

void CMenuBuilder::AddMenuItem(IMorvane& application, const CMenuItem& item) {
  CMenuBuilder* target = this;
  if (!item.fSubmenuName.empty()) {
    if (item.fSubmenuName == fLastSubmenuName) {
      MORVANE_ASSERT(fSubmenuBuilders.size() > 0);
      target = fSubmenuBuilders.back().get();
    } else {
      target = &AddSubmenu(item.fSubmenuName);
    }
  }
  fLastSubmenuName = item.fSubmenuName;

  if (item.fText.empty()) {
    target->MarkSeparator();
  } else {
    TString text = WinPrepareMnemonic(item.fText);
    if (item.fShortcut.fKeyText[0] != 0)
      text += u'\t' + WinPrepareMnemonic(MakeShortcutText(application, item.fShortcut));
    const UINT flags = (item.fStateFlags & kMenuItemEnabled ? MF_ENABLED : MF_GRAYED) |
                       (item.fStateFlags & kMenuItemChecked ? MF_CHECKED : MF_UNCHECKED);
    // An item beyond the range gets 0, so that its number is not one of the library's commands.
    const std::size_t command = fFirstCommand + fItems.size();
    target->AppendItem(text, command <= kLastClientCommand ? static_cast<UINT>(command) : 0, flags);
  }
  // Separators are listed too, so that the number of an item gives its position.
  fItems.push_back(item);
}

void CMenuBuilder::AddMenuItems(IMorvane& application, const std::vector<CMenuItem>& items) {
  for (const CMenuItem& item : items) AddMenuItem(application, item);
}

// --- Accelerators

HACCEL MakeAcceleratorTable(const std::vector<CMenuItem>& items, UINT firstCommand) {
  std::vector<ACCEL> accelerators;
  for (std::size_t i = 0; i < items.size() && firstCommand + i <= kLastClientCommand; ++i) {
    const CMenuItem& item = items[i];
    const bool isEnabled = !item.fText.empty() && (item.fStateFlags & kMenuItemEnabled);
    if (!isEnabled || !IsShortcutUsable(item.fShortcut)) continue;
    const TChar character = item.fShortcut.fKeyText[0];
    UINT scan = GetKeyCharacterVirtualKey(character);
    if (scan == kNoVirtualKey) continue;
    // A capital letter does not ask for Shift by itself.
    if (LowerCase(character) != character) scan &= ~kScanShift;
    const std::uint32_t modifiers = item.fShortcut.fModifiers.fKeys;
    BYTE flags = FVIRTKEY;
    if ((modifiers & kModifierShift) || (scan & kScanShift)) flags |= FSHIFT;
    if ((modifiers & kModifierAlt) || (scan & kScanAlt)) flags |= FALT;
    if ((modifiers & kModifierControl) || (scan & kScanControl)) flags |= FCONTROL;
    accelerators.push_back({flags, LOBYTE(scan), static_cast<WORD>(firstCommand + i)});
  }
  if (accelerators.empty()) return nullptr;
  const HACCEL table = CreateAcceleratorTableW(accelerators.data(), static_cast<int>(accelerators.size()));
  if (!table) MORVANE_CHECK_LAST_ERROR();
  return table;
}

}  // namespace NSMorvane
