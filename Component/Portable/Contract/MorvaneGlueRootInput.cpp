// The contract members of the root interface: clipboard, icons, mouse, keyboard, menus.
#include <cstring>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"
#include "Component/Portable/Contract/MorvaneGlueRoot.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"

namespace NSMorvane {

// --- Clipboard

TError CMorvaneGlue::IMorvane_IsFormatOnClipboard(const TClipboardFormat& format, TFlag& outExistsFlag) {
  MORVANE_REQUIRE("IMorvane_IsFormatOnClipboard()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { outExistsFlag = CMorvaneGlue_IsFormatOnClipboard(format) ? 1 : 0; });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateFlag(outExistsFlag));
  return outError;
}

IData* CMorvaneGlue::IMorvane_GetClipboardData(const TClipboardFormat& format, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_GetClipboardData()", CMorvaneGlue_CheckInvariant());
  IData* out = NULL;
  CallHook(outError, [&] { out = CMorvaneGlue_GetClipboardData(format).release(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (out) MORVANE_ASSERT(out->IData_CheckInvariant() != 0);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

TError CMorvaneGlue::IMorvane_ReplaceClipboardContents(const TClipboardFormat* formats,
                                                       std::uint32_t formatCount,
                                                       IClipboardDataGetter* clipbardDataGetter) {
  MORVANE_REQUIRE("IMorvane_ReplaceClipboardContents()", CMorvaneGlue_CheckInvariant());
  // Sic: the parameter's name is part of the text.
  MORVANE_REQUIRE("IMorvane_ReplaceClipboardContents()", (formatCount == 0) || (clipbardDataGetter != NULL));
  TError outError;
  CallHook(outError, [&] {
    CMorvaneGlue_ReplaceClipboardContents(CheckedArray(formats, formatCount), clipbardDataGetter);
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

// --- Icons

IIcon* CMorvaneGlue::IMorvane_CreateBuiltInIcon(TBuiltinIcon icon, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateBuiltInIcon()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT("IMorvane_CreateBuiltInIcon()", ValidateBuiltinIcon(icon));
  IIcon* out = NULL;
  CallHook(outError, [&] { out = CMorvaneGlue_CreateBuiltInIcon(icon).release(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (out) MORVANE_ASSERT(out->IIcon_CheckInvariant() != 0);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

IIcon* CMorvaneGlue::IMorvane_CreateIconForURL(const char* fileOrFolderOrVolumeURL, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateIconForURL()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT_TEXT("IMorvane_CreateIconForURL()", "fileOrFolderOrVolumeURL[0] != 0",
                           fileOrFolderOrVolumeURL && fileOrFolderOrVolumeURL[0] != 0);
  IIcon* out = NULL;
  CallHook(outError, [&] { out = CMorvaneGlue_CreateIconForURL(fileOrFolderOrVolumeURL).release(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (out) MORVANE_ASSERT(out->IIcon_CheckInvariant() != 0);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

// Sic: the next two members report under the name of IMorvane_CreateBuiltInIcon.

IIcon* CMorvaneGlue::IMorvane_CreateResourceIcon(const char* key, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateBuiltInIcon()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT_TEXT("IMorvane_CreateBuiltInIcon()", "std::strlen(key) > 0",
                           key && std::strlen(key) > 0);
  IIcon* out = NULL;
  CallHook(outError, [&] { out = CMorvaneGlue_CreateResourceIcon(key).release(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (out) MORVANE_ASSERT(out->IIcon_CheckInvariant() != 0);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

IIcon* CMorvaneGlue::IMorvane_CreatePixmapIcon(const void* pixmapRGBA, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateBuiltInIcon()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT("IMorvane_CreateBuiltInIcon()", pixmapRGBA != NULL);
  IIcon* out = NULL;
  CallHook(outError, [&] { out = CMorvaneGlue_CreatePixmapIcon(pixmapRGBA).release(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (out) MORVANE_ASSERT(out->IIcon_CheckInvariant() != 0);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

// --- Mouse

TError CMorvaneGlue::IMorvane_SampleMouseState(TMouseState& outState, IWindow* window) {
  MORVANE_REQUIRE("IMorvane_SampleMouseState()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { outState = CMorvaneGlue_SampleMouseState(window); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_SetOverrideMouseShape(IMouseShape* overrideShape) {
  MORVANE_REQUIRE("IMorvane_SetOverrideMouseShape()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_SetOverrideMouseShape()", (overrideShape == NULL) || (overrideShape->IMouseShape_CheckInvariant() != 0));
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_SetOverrideMouseShape(overrideShape); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_RequestMouseShapeArbitration() {
  MORVANE_REQUIRE("IMorvane_RequestMouseShapeArbitration()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_RequestMouseShapeArbitration(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_AllocateMouseCapture(IWindow* window, IMouseCapture* capture) {
  MORVANE_REQUIRE("IMorvane_AllocateMouseCapture()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_AllocateMouseCapture()", window != NULL);
  MORVANE_REQUIRE("IMorvane_AllocateMouseCapture()", capture != NULL);
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_AllocateMouseCapture(window, capture); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_ReleaseMouseCapture() {
  MORVANE_REQUIRE("IMorvane_ReleaseMouseCapture()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_ReleaseMouseCapture(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_CheckForClickDragOperation(IWindow& window, const TMouseEvent& event,
                                                         TClickDragResult& outResult) {
  MORVANE_REQUIRE("IMorvane_CheckForClickDragOperation()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { outResult = CMorvaneGlue_CheckForClickDragOperation(window, event); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

IMouseShape* CMorvaneGlue::IMorvane_LoadResourceMouseShape(const char* key, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_LoadResourceMouseShape()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT("IMorvane_LoadResourceMouseShape()", key != NULL);
  MORVANE_REQUIRE_OUT("IMorvane_LoadResourceMouseShape()", std::strlen(key) > 0);
  IMouseShape* resultMouseShape = NULL;
  CallHook(outError, [&] { resultMouseShape = CMorvaneGlue_LoadResourceMouseShape(key).release(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(resultMouseShape != NULL);
  if (outError != kOK) MORVANE_ASSERT(resultMouseShape == NULL);
  return resultMouseShape;
}

IMouseShape* CMorvaneGlue::IMorvane_CreateBuiltInMouseShape(TBuiltInMouseShape mouseShape, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateBuiltInMouseShape()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT("IMorvane_CreateBuiltInMouseShape()", IsValidBuiltInMouseShape(mouseShape));
  IMouseShape* resultMouseShape = NULL;
  CallHook(outError, [&] { resultMouseShape = CMorvaneGlue_CreateBuiltInMouseShape(mouseShape).release(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(resultMouseShape != NULL);
  if (outError != kOK) MORVANE_ASSERT(resultMouseShape == NULL);
  return resultMouseShape;
}

// --- Keyboard

// Sic: the next member reports under the name of IMorvane_LoadResourceMouseShape.

TError CMorvaneGlue::IMorvane_AttachModifierKeyListener(IModifierKeyListener* listener) {
  MORVANE_REQUIRE("IMorvane_LoadResourceMouseShape()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_LoadResourceMouseShape()", listener != NULL);
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_AttachModifierKeyListener(listener); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_DetachModifierKeyListener(IModifierKeyListener* listener) {
  MORVANE_REQUIRE("IMorvane_DetachModifierKeyListener()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_DetachModifierKeyListener(listener); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_InstallKeyReleaseCallback(std::uint32_t virtualKey,
                                                        IKeyReleaseCallback* callback) {
  MORVANE_REQUIRE("IMorvane_InstallKeyReleaseCallback()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_InstallKeyReleaseCallback(virtualKey, callback); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_RemoveKeyReleaseCallback(std::uint32_t virtualKey,
                                                       IKeyReleaseCallback* callback) {
  MORVANE_REQUIRE("IMorvane_RemoveKeyReleaseCallback()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_RemoveKeyReleaseCallback(virtualKey, callback); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_ShortcutModsToModifiers(TShortcutModifiers shortcutMods,
                                                      TModifierKeys& outMods) {
  MORVANE_REQUIRE("IMorvane_ShortcutModsToModifiers()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_ShortcutModsToModifiers", ValidateShortcutModifiers(shortcutMods));  // sic
  TError outError;
  CallHook(outError, [&] { outMods = CMorvaneGlue_ShortcutModsToModifiers(shortcutMods); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateModifierKeys(outMods));
  return outError;
}

TError CMorvaneGlue::IMorvane_CanKeyBeInterpretedAs(const TPhysicalKeySpec& physicalKey,
                                                    const TModifierKeys& physicalMods,
                                                    const TKeyInterpretation& wantedInterpretation,
                                                    TFlag& outFlag) {
  MORVANE_REQUIRE("IMorvane_CanKeyBeInterpretedAs()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_CanKeyBeInterpretedAs()", ValidatePhysicalKeySpec(physicalKey));
  MORVANE_REQUIRE("IMorvane_CanKeyBeInterpretedAs()", ValidateModifierKeys(physicalMods));
  MORVANE_REQUIRE("IMorvane_CanKeyBeInterpretedAs()", ValidateKeyInterpretation(wantedInterpretation));
  TError outError;
  CallHook(outError, [&] {
    outFlag = CMorvaneGlue_CanKeyBeInterpretedAs(physicalKey, physicalMods, wantedInterpretation) ? 1 : 0;
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_GetDefaultInterpretation(const TPhysicalKeySpec& physicalKey,
                                                       const TModifierKeys& physicalMods,
                                                       TKeyInterpretation& outInterpretation) {
  MORVANE_REQUIRE("IMorvane_GetDefaultInterpretation()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_GetDefaultInterpretation()", ValidatePhysicalKeySpec(physicalKey));
  MORVANE_REQUIRE("IMorvane_GetDefaultInterpretation()", ValidateModifierKeys(physicalMods));
  TError outError;
  CallHook(outError,
           [&] { outInterpretation = CMorvaneGlue_GetDefaultInterpretation(physicalKey, physicalMods); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

// --- Menus

TError CMorvaneGlue::IMorvane_RequestMenuBarsSetup() {
  MORVANE_REQUIRE("IMorvane_RequestMenuBarsSetup()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_RequestMenuBarsSetup(); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_DisplayPopupMenu(const TMenuItem* items, std::uint32_t itemCount,
                                               IWindow& window, const TPoint& point, std::uint32_t flags,
                                               std::int16_t& inOutSelectedIndex,
                                               TFlag& outSelectionMadeFlag) {
  MORVANE_REQUIRE("IMorvane_DisplayPopupMenu()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_DisplayPopupMenu()", itemCount > 0);
  MORVANE_REQUIRE("IMorvane_DisplayPopupMenu()", ((inOutSelectedIndex == -1) || (static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount)));
  TError outError;
  CallHook(outError, [&] {
    outSelectionMadeFlag = CMorvaneGlue_DisplayPopupMenu(CheckedArray(items, itemCount), window, point, flags,
                                                         inOutSelectedIndex)
                               ? 1
                               : 0;
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateFlag(outSelectionMadeFlag));
  if (outError == kOK && outSelectionMadeFlag == 1)
    MORVANE_ASSERT(static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount);
  return outError;
}

TError CMorvaneGlue::IMorvane_DisplayContextualMenu(const TMenuItem* items, std::uint32_t itemCount,
                                                    IWindow& window, const TPoint& point, std::uint32_t flags,
                                                    std::uint16_t& outSelectedIndex,
                                                    TFlag& outSelectionMadeFlag) {
  MORVANE_REQUIRE("IMorvane_DisplayContextualMenu()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_DisplayContextualMenu()", itemCount > 0);
  TError outError;
  CallHook(outError, [&] {
    outSelectionMadeFlag = CMorvaneGlue_DisplayContextualMenu(CheckedArray(items, itemCount), window, point,
                                                              flags, outSelectedIndex)
                               ? 1
                               : 0;
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateFlag(outSelectionMadeFlag));
  if (outError == kOK) MORVANE_ASSERT(outSelectedIndex < itemCount);
  return outError;
}

}  // namespace NSMorvane
