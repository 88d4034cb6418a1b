// What the root object passes on to the services of the platform: clipboard and icons.
#include <memory>
#include <vector>

#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Services/WinClipboard.h"
#include "Component/Win/Services/WinIcon.h"

namespace NSMorvane {

namespace {

// The clipboard is opened for the hider window, which exists while the application runs.
HWND RequireHider(HWND hiderWindow) {
  MORVANE_ASSERT_TEXT("0!=fHiderWindow", hiderWindow != nullptr);
  if (!hiderWindow) MORVANE_THROW(XIllegalCallSequence());
  return hiderWindow;
}

}  // namespace

// --- Clipboard

bool CMorvaneImpl::CMorvaneGlue_IsFormatOnClipboard(const TClipboardFormat& format) {
  return IsFormatOnClipboard(format, RequireHider(GetHiderWindow()));
}

std::unique_ptr<IData> CMorvaneImpl::CMorvaneGlue_GetClipboardData(const TClipboardFormat& format) {
  return GetClipboardData(format, RequireHider(GetHiderWindow()));
}

void CMorvaneImpl::CMorvaneGlue_ReplaceClipboardContents(const std::vector<TClipboardFormat>& formats,
                                                         IClipboardDataGetter* getter) {
  ReplaceClipboardContents(formats, getter, RequireHider(GetHiderWindow()));
}

// --- Icons

std::unique_ptr<IIcon> CMorvaneImpl::CMorvaneGlue_CreateBuiltInIcon(TBuiltinIcon icon) {
  return MakeBuiltInIcon(icon);
}

std::unique_ptr<IIcon> CMorvaneImpl::CMorvaneGlue_CreateIconForURL(const std::string& url) {
  return MakeIconForURL(url);
}

std::unique_ptr<IIcon> CMorvaneImpl::CMorvaneGlue_CreateResourceIcon(const std::string& key) {
  return MakeResourceIcon(key);
}

std::unique_ptr<IIcon> CMorvaneImpl::CMorvaneGlue_CreatePixmapIcon(const void* pixmapRGBA) {
  return MakePixmapIcon(pixmapRGBA);
}

}  // namespace NSMorvane
