#include "Component/Win/Input/WinMouseShape.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cwchar>
#include <iterator>
#include <stdexcept>

#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

// Process-wide, as there is one mouse.
HCURSOR gOverrideCursor = nullptr;

namespace {

// The cursor of a built-in shape: one of the system, or a group in the library's own resources.
struct TBuiltInCursor {
  TBuiltInMouseShape fShape;
  bool fIsSystemCursor;
  WORD fId;
};

constexpr TBuiltInCursor System(TBuiltInMouseShape shape, WORD id) { return {shape, true, id}; }
constexpr TBuiltInCursor Own(TBuiltInMouseShape shape, WORD group) { return {shape, false, group}; }

// The numbers of the system's cursors, which the headers define as text pointers.
enum : WORD { kSystemArrow = 32512, kSystemText = 32513, kSystemWait = 32514, kSystemHand = 32649 };

constexpr TBuiltInCursor kBuiltInCursors[] = {
    System(kMouseShapeArrow, kSystemArrow),
    Own(kMouseShapeArrowCopy, 120),
    Own(kMouseShapeArrowLink, 106),
    Own(kMouseShapeArrowHelp, 125),
    System(kMouseShapeWait, kSystemWait),
    System(kMouseShapeText, kSystemText),
    System(kMouseShapeHand, kSystemHand),
    System(kMouseShapeDefault, kSystemArrow),
    Own(kMouseShapeMarker, 113),
    Own(kMouseShapeForbidden, 101),
    Own(kMouseShapeSplitColumns, 111),
    Own(kMouseShapeSplitRows, 112),
    Own(kMouseShapeHandOpen, 105),
    Own(kMouseShapeMove, 124),
    Own(kMouseShapeCrosshair, 116),
    Own(kMouseShapeAim, 115),
    Own(kMouseShapeResizeWidth, 108),
    Own(kMouseShapeResizeHeight, 109),
    Own(kMouseShapeResizeCorner, 110),
    Own(kMouseShapePencil, 107),
    Own(kMouseShapeFill, 114),
    Own(kMouseShapeBrush, 102),
    Own(kMouseShapeHandClosed, 104),
    Own(kMouseShapeSelect, 126),
    Own(kMouseShapePen, 127),
    Own(kMouseShapePenAdd, 118),
    Own(kMouseShapeRotate, 128),
    Own(kMouseShapeCell, 123),
    Own(kMouseShapeZoom, 117),
    Own(kMouseShapeEyedropper, 119),
};

// The module that this code is in.
HMODULE OwnModule() {
  static const char anchor = 0;
  HMODULE module = nullptr;
  const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&anchor), &module)) MORVANE_CHECK_LAST_ERROR();
  return module;
}

std::unique_ptr<IMouseShape> LoadShape(HMODULE module, WORD id) {
  const HANDLE cursor = LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_CURSOR, 0, 0, LR_SHARED);
  if (!cursor) MORVANE_THROW_LAST_ERROR();
  auto shape = std::make_unique<CMouseShapeImpl>(static_cast<HCURSOR>(cursor));
  MORVANE_ASSERT_TEXT("IMouseShape_CheckInvariant()", shape->IMouseShape_CheckInvariant() != 0);
  return shape;
}

}  // namespace

CMouseShapeImpl::~CMouseShapeImpl() {
  // Makes the invariant fail on later use.
  PoisonField(fCursor, nullptr);
}

IMouseShape* CMouseShapeImpl::IMouseShape_Clone(TError& outError) const {
  IMouseShape* clone = nullptr;
  outError = ErrorOf([&] { clone = new CMouseShapeImpl(fCursor); });
  return clone;
}

std::unique_ptr<IMouseShape> MakeBuiltInMouseShape(TBuiltInMouseShape mouseShape) {
  const auto row = std::find_if(std::begin(kBuiltInCursors), std::end(kBuiltInCursors),
                                [&](const TBuiltInCursor& cursor) { return cursor.fShape == mouseShape; });
  if (row == std::end(kBuiltInCursors)) {
    MORVANE_UNREACHED();
    return LoadShape(nullptr, kSystemArrow);
  }
  return LoadShape(row->fIsSystemCursor ? nullptr : OwnModule(), row->fId);
}

std::unique_ptr<IMouseShape> LoadMouseShape(const std::string& key) {
  const std::wstring text = WinText(NSTextPackage::ASCIIToString(key, 0));
  wchar_t* end = nullptr;
  const std::int64_t resourceID = std::wcstol(text.c_str(), &end, 10);
  const bool foundNumber = end != text.c_str();
  MORVANE_ASSERT(foundNumber);
  MORVANE_ASSERT(resourceID >= 0 && resourceID <= USHRT_MAX);
  return LoadShape(GetModuleHandleW(nullptr), static_cast<WORD>(resourceID));
}

HCURSOR NativeCursorOf(const IMouseShape& shape) {
  const CMouseShapeImpl* const impl = dynamic_cast<const CMouseShapeImpl*>(&shape);
  if (!impl) MORVANE_THROW(std::invalid_argument(""));
  return impl->GetCursor();
}

void SetOverrideCursor(HCURSOR cursor) {
  gOverrideCursor = cursor;
  if (cursor) SetCursor(cursor);
}

}  // namespace NSMorvane
