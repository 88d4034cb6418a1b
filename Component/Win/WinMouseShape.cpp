#include "Component/Win/WinMouseShape.h"

#include <algorithm>
#include <climits>
#include <cwchar>
#include <iterator>
#include <stdexcept>

#include "Component/Portable/TextPackage.h"
#include "Component/Win/UtilsWin.h"

namespace NSMorvane {

namespace {

// The cursor of a built-in shape: one of the system, or a group in the library's own resources.
struct TBuiltInCursor {
  TBuiltInMouseShape fShape;
  bool fIsSystemCursor;
  WORD fId;
};

constexpr TBuiltInCursor System(TBuiltInMouseShape shape, WORD id) { return {shape, true, id}; }
constexpr TBuiltInCursor Own(TBuiltInMouseShape shape, WORD group) { return {shape, false, group}; }

// The numbers of the system's cursors, which the headers give as texts.
enum : WORD { kSystemArrow = 32512, kSystemText = 32513, kSystemWait = 32514, kSystemHand = 32649 };

constexpr TBuiltInCursor kBuiltInCursors[] = {
    System(kMouseShapeArrow, kSystemArrow),
    Own(kMouseShape1301, 120),
    Own(kMouseShape1302, 106),
    Own(kMouseShape1303, 125),
    System(kMouseShapeWait, kSystemWait),
    System(kMouseShapeText, kSystemText),
    System(kMouseShapeHand, kSystemHand),
    System(kMouseShapeDefault, kSystemArrow),
    Own(kMouseShape1404, 113),
    Own(kMouseShape1405, 101),
    Own(kMouseShape1500, 111),
    Own(kMouseShape1501, 112),
    Own(kMouseShape1502, 105),
    Own(kMouseShape1503, 124),
    Own(kMouseShape1504, 116),
    Own(kMouseShape1505, 115),
    Own(kMouseShape1606, 108),
    Own(kMouseShape1607, 109),
    Own(kMouseShape1608, 110),
    Own(kMouseShape1700, 107),
    Own(kMouseShape1701, 114),
    Own(kMouseShape1702, 102),
    Own(kMouseShape1703, 104),
    Own(kMouseShape1704, 126),
    Own(kMouseShape1705, 127),
    Own(kMouseShape1706, 118),
    Own(kMouseShape1707, 128),
    Own(kMouseShape1708, 123),
    Own(kMouseShape1709, 117),
    Own(kMouseShape1710, 119),
};

// The module that this code is in.
HMODULE OwnModule() {
  static const char anchor = 0;
  HMODULE module = nullptr;
  const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&anchor), &module)) MORVANE_THROW_LAST_ERROR();
  return module;
}

std::unique_ptr<IMouseShape> LoadShape(HMODULE module, WORD id) {
  const HANDLE cursor = LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_CURSOR, 0, 0, LR_SHARED);
  if (!cursor) {
    MORVANE_THROW_LAST_ERROR();
    MORVANE_THROW(std::exception());  // it was refused without an error of the system
  }
  auto shape = std::make_unique<CMouseShapeImpl>(static_cast<HCURSOR>(cursor));
  MORVANE_ASSERT_TEXT("IMouseShape_CheckInvariant()", shape->IMouseShape_CheckInvariant() != 0);
  return shape;
}

}  // namespace

CMouseShapeImpl::~CMouseShapeImpl() {
  // Later use fails the invariant; the compiler would leave out a plain store.
  *const_cast<volatile HCURSOR*>(&fCursor) = nullptr;
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
  const long resourceID = std::wcstol(text.c_str(), &end, 10);
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

}  // namespace NSMorvane
