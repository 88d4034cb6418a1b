// Menus that pop up at a point of a window.
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Menus/WinMenu.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

constexpr UINT kFirstPopupCommand = 1000;
enum : std::uint32_t { kRightButtonDoesNotChoose = 1 };

// Returns false if nothing was chosen. Messages are handled meanwhile and may end the window, so it is not
// touched afterwards.
bool TrackPopupItems(IMorvane& morvane, const std::vector<TMenuItem>& items, IWindow& window,
                     const TPoint& point, std::uint32_t flags, std::int32_t& outIndex) {
  MORVANE_CHECK(morvane.IMorvane_WakeUpIdle());
  TNativeWindow nativeWindow = {};
  MORVANE_CHECK(window.IWindow_GetNativeWindow(nativeWindow));
  MORVANE_ASSERT(0!=nativeWindow.fHwnd);
  POINT place = ToNative(point);
  if (!::ClientToScreen(nativeWindow.fHwnd, &place)) MORVANE_CHECK_LAST_ERROR();

  std::vector<CMenuItem> resultMenuItemList;
  CMenuBuilder bar(resultMenuItemList, kFirstPopupCommand);
  CMenuBuilder& popup = bar.AddSubmenu(u"Popup Menu");
  popup.AddMenuItems(morvane, std::vector<CMenuItem>(items.begin(), items.end()));

  const UINT trackFlags =
      TPM_RETURNCMD | (flags & kRightButtonDoesNotChoose ? TPM_LEFTBUTTON : TPM_RIGHTBUTTON);
  const std::int32_t result =
      ::TrackPopupMenu(popup.GetHandle(), trackFlags, place.x, place.y, 0, nativeWindow.fHwnd, nullptr);
  if (result == 0) return false;
  MORVANE_ASSERT(result>=1000);
  MORVANE_ASSERT(result<(1000+static_cast<std::int32_t>(resultMenuItemList.size())));
  outIndex = result - static_cast<std::int32_t>(kFirstPopupCommand);
  return true;
}

}  // namespace

bool CMorvaneImpl::CMorvaneGlue_DisplayPopupMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                                 const TPoint& point, std::uint32_t flags,
                                                 std::int16_t& inOutSelectedIndex) {
  std::int32_t selectedIndex = -1;
  if (!TrackPopupItems(*this, items, window, point, flags, selectedIndex)) return false;
  MORVANE_ASSERT(selectedIndex >= 0);
  inOutSelectedIndex = static_cast<std::int16_t>(selectedIndex);
  return true;
}

bool CMorvaneImpl::CMorvaneGlue_DisplayContextualMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                                      const TPoint& point, std::uint32_t flags,
                                                      std::uint16_t& outSelectedIndex) {
  std::int32_t selectedIndex = -1;
  if (!TrackPopupItems(*this, items, window, point, flags, selectedIndex)) return false;
  outSelectedIndex = static_cast<std::uint16_t>(selectedIndex);
  return true;
}

}  // namespace NSMorvane
