// The layout of every record that crosses to the client, which may be built by another compiler. There is
// nothing to run: this compiles or it does not, for 64 and for 32 bits.
#include <Morvane.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <type_traits>

using namespace NSMorvane;

namespace {

using TNumbers = std::initializer_list<std::size_t>;

constexpr bool Same(const TNumbers& a, const TNumbers& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}
constexpr bool Same(const TNumbers& found, const TNumbers& in64, const TNumbers& in32) {
  return Same(found, sizeof(void*) == 8 ? in64 : in32);
}

// A record, its size, and where its fields begin; in a second list, if they differ, for 32 bits.
#define RECORD(Type, FOUND, ...)                                                  \
  static_assert(                                                                  \
      [] {                                                                        \
        using R = Type;                                                           \
        return std::is_standard_layout_v<R> && std::is_trivially_copyable_v<R> && \
               Same({sizeof(R), FOUND}, __VA_ARGS__);                             \
      }(),                                                                        \
      #Type)
#define AT(field) offsetof(R, field)
#define AND ,

// clang-format off
RECORD(TPoint, AT(fX) AND AT(fY), {8, 0, 4});
RECORD(TSize, AT(fWidth) AND AT(fHeight), {8, 0, 4});
RECORD(TRect, AT(fLeft) AND AT(fTop) AND AT(fRight) AND AT(fBottom), {16, 0, 4, 8, 12});
RECORD(TDebugSettings,
       AT(fDebugMenu) AND AT(fDrawInvalidationBlue) AND AT(fDrawPaintsRed) AND AT(fDrawViewBounds) AND
       AT(fDrawMouseViewInfo) AND AT(fFlushViews) AND AT(fDelayAfterFlushing),
       {28, 0, 4, 8, 12, 16, 20, 24});
RECORD(TStartupParams,
       AT(fCompanyName) AND AT(fProductName) AND AT(fDisplayName) AND AT(fStartupFlag) AND AT(fReserved) AND
       AT(fLingerMS),
       {1548, 0, 512, 1024, 1536, 1540, 1544});
RECORD(TMonitor, AT(fBounds) AND AT(fWorkArea) AND AT(fBitDepth), {36, 0, 16, 32});
RECORD(TMonitorList, AT(fMonitorCount) AND AT(fMonitors) AND AT(fMainMonitorIndex), {1160, 0, 4, 1156});
RECORD(TClipboardFormat, AT(fTag), {5, 0});
static_assert(sizeof(TClipboardFormat[3]) == 15);

// Keyboard and menus.
RECORD(TModifierKeys, AT(fKeys) AND AT(fReserved), {8, 0, 4});
RECORD(TKeyInterpretation, AT(fKeyText) AND AT(fModifiers) AND AT(fPhysicalTest), {44, 0, 32, 40});
RECORD(TPhysicalKeySpec, AT(fVirtualKey) AND AT(fScanCode) AND AT(fExtended), {4, 0, 1, 2});
RECORD(TKeyEvent, AT(fPhysicalKey) AND AT(fModifiers) AND AT(fIsRepeat) AND AT(fTimeMS), {24, 0, 4, 12, 16});
RECORD(TModifierKeysEvent, AT(fModifiers) AND AT(fTimeMS), {16, 0, 8});
RECORD(TMenuItem,
       AT(fSubmenuName) AND AT(fText) AND AT(fStateFlags) AND AT(fShortcut) AND AT(fCommand) AND AT(fIcon),
       {1088, 0, 512, 1024, 1028, 1072, 1080}, {1080, 0, 512, 1024, 1028, 1072, 1076});
RECORD(TMenuCommandEvent, AT(fCommand) AND AT(fModifiers), {12, 0, 4});
RECORD(TMenuBarFlags,
       AT(fShowHelpItem) AND AT(fHelpItemEnabled) AND AT(fQuitEnabled) AND AT(fSecondMenuItemEnabled) AND
       AT(fShowWindowMenu),
       {20, 0, 4, 8, 12, 16});

// The mouse.
RECORD(TMouseState, AT(fButtons) AND AT(fPosition) AND AT(fModifiers) AND AT(fReserved), {36, 0, 4, 12, 20});
RECORD(TMouseEvent,
       AT(fType) AND AT(fTimeMS) AND AT(fButtons) AND AT(fPosition) AND AT(fModifiers) AND AT(fViewCount) AND
       AT(fViews),
       {48, 0, 8, 16, 20, 28, 36, 40});
RECORD(TMouseShapeRequest, AT(fButtons) AND AT(fPosition) AND AT(fModifiers) AND AT(fViewCount) AND AT(fViews),
       {32, 0, 4, 12, 20, 24}, {28, 0, 4, 12, 20, 24});
RECORD(TMouseTracking, AT(fTimeMS) AND AT(fState), {40, 0, 8});
RECORD(TMouseWheelEvent,
       AT(fType) AND AT(fDeltaNotches) AND AT(fButtons) AND AT(fPosition) AND AT(fModifiers) AND AT(fTimeMS),
       {40, 0, 4, 8, 12, 20, 32});

// Views and drawing.
RECORD(TViewParams, AT(fFlags) AND AT(fRect) AND AT(fDrawMode) AND AT(fAutoInvalidation), {28, 0, 4, 20, 24});
RECORD(TNativePort, AT(fHDC), {8, 0}, {4, 0});
RECORD(TRawPixels,
       AT(fOriginX) AND AT(fOriginY) AND AT(fWidth) AND AT(fHeight) AND AT(fRowBytes) AND AT(fPixels16) AND
       AT(fPixels32) AND AT(fFlags),
       {48, 0, 4, 8, 12, 16, 24, 32, 40}, {32, 0, 4, 8, 12, 16, 20, 24, 28});

// Windows and dialogs.
RECORD(TNativeWindow, AT(fHwnd), {8, 0}, {4, 0});
RECORD(TDocumentWindowPlacement,
       AT(fMinimized) AND AT(fMaximized) AND AT(fZoomState) AND AT(fUserRect) AND AT(fIdealRect),
       {44, 0, 4, 8, 12, 28});
RECORD(TModalDialogPlacement, AT(fMinimized) AND AT(fZoomState) AND AT(fUserRect) AND AT(fIdealRect),
       {40, 0, 4, 8, 24});
RECORD(TFloatingWindowPlacement, AT(fMaximized) AND AT(fZoomState) AND AT(fUserRect) AND AT(fIdealRect),
       {40, 0, 4, 8, 24});
#define STATE                                                                                             \
  AT(fMinimumClientSize) AND AT(fMaximumClientSize) AND AT(fIdealClientSize) AND AT(fModified) AND        \
  AT(fTitle) AND AT(fPlacement)
RECORD(TDocumentWindowState, STATE, {2120, 0, 8, 16, 24, 28, 2076});
RECORD(TModalDialogState, STATE, {2116, 0, 8, 16, 24, 28, 2076});
RECORD(TFloatingWindowState, STATE, {2116, 0, 8, 16, 24, 28, 2076});
static_assert(std::is_same_v<TModelessDialogState, TDocumentWindowState>);
RECORD(TAlertSpec,
       AT(fButtonLayout) AND AT(fKind) AND AT(fMessage) AND AT(fDetails) AND AT(fButton1) AND AT(fButton2) AND
       AT(fButton3),
       {10248, 0, 4, 8, 2056, 4104, 6152, 8200});
RECORD(TFileType, AT(fName) AND AT(fExtensions), {2568, 0, 512});
// clang-format on

}  // namespace
