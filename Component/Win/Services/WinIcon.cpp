#include "Component/Win/Services/WinIcon.h"

#include <windows.h>
// Needs windows.h before it.
#include <shellapi.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstring>
#include <iterator>
#include <stdexcept>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Platform/LateFunctions.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinFiles.h"

namespace NSMorvane {

namespace {

// --- Sources

struct TBuiltInIconSource {
  TBuiltinIcon fIcon;
  bool fIsSystemIcon;  // else one of shell32.dll
  WORD fId;
};

constexpr TBuiltInIconSource kBuiltInIcons[] = {
    {kIconDocument, false, 1},         {kIconProgram, false, 3},         {kIconFixedDisk, false, 9},
    {kIconNetworkDrive, false, 10},    {kIconOpticalDrive, false, 12},   {kIconFloppyDisk, false, 7},
    {kIconRecycleBinEmpty, false, 32}, {kIconRecycleBinFull, false, 33}, {kIconDesktop, false, 35},
    {kIconGenericFile, false, 151},    {kIconFolder, false, 4},          {kIconApplication1, true, 32512},
    {kIconApplication2, true, 32512},  {kIconApplication3, true, 32512}, {kIconNote, true, 32516},
    {kIconCaution, true, 32515},       {kIconStop, true, 32513},
};

// Not shared, since the system returns a shared icon at the size that was asked for first.
HICON LoadOwnIcon(HMODULE module, WORD id, int size) {
  return static_cast<HICON>(
      LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
}

// Icons of the system can only be loaded as shared ones, so the icon is copied.
HICON CopySystemIcon(WORD id, int size) {
  const HANDLE shared = LoadImageW(nullptr, MAKEINTRESOURCEW(id), IMAGE_ICON, size, size, LR_SHARED);
  return shared ? static_cast<HICON>(CopyImage(shared, IMAGE_ICON, size, size, LR_COPYFROMRESOURCE))
                : nullptr;
}

HICON RequireIcon(HICON icon) {
  if (icon) return icon;
  MORVANE_CHECK_LAST_ERROR();
  MORVANE_UNREACHED();
  MORVANE_THROW(std::exception());
}

HICON LoadBuiltInIcon(std::uint32_t icon, int size) {
  const auto source = std::find_if(std::begin(kBuiltInIcons), std::end(kBuiltInIcons),
                                   [&](const TBuiltInIconSource& row) { return row.fIcon == icon; });
  if (source == std::end(kBuiltInIcons)) return nullptr;
  if (source->fIsSystemIcon) return RequireIcon(CopySystemIcon(source->fId, size));
  const HMODULE shell = LoadSystemLibrary(kShellLibrary);
  if (!shell) MORVANE_THROW_LAST_ERROR();
  return RequireIcon(LoadOwnIcon(shell, source->fId, size));
}

// Copies of the two bitmaps of an icon, deleted at the end. A monochrome icon has a mask only.
class CIconBitmaps : CNotCopied {
 public:
  explicit CIconBitmaps(HICON icon) : fInfo(), fIsKnown(GetIconInfo(icon, &fInfo) != FALSE) {}
  ~CIconBitmaps() {
    if (fInfo.hbmMask) DeleteObject(fInfo.hbmMask);
    if (fInfo.hbmColor) DeleteObject(fInfo.hbmColor);
  }
  bool AreThere() const { return fIsKnown && fInfo.hbmMask; }
  BITMAP GetColorBitmap() const {
    BITMAP buffer = {};
    if (fInfo.hbmColor) GetObjectW(fInfo.hbmColor, sizeof(buffer), &buffer);
    return buffer;
  }

 private:
  ICONINFO fInfo;
  bool fIsKnown;
};

NSTextPackage::TString PathOfURL(const std::string& url) {
  try {
    return FileURLToPath(url);
  } catch (const NSTextPackage::XIllegalTextFormat&) {
    return {};
  }
}

HICON LoadURLIcon(const std::string& url, int size) {
  if (size != 16 && size != 32) return nullptr;
  SHFILEINFOW shFileInfo = {};
  const UINT flags = size == 16 ? SHGFI_ICON | SHGFI_SMALLICON : SHGFI_ICON;
  const NSTextPackage::TString path = PathOfURL(url);
  const auto getInfo =
      path.empty() ? nullptr : FindLate<decltype(SHGetFileInfoW)>(kShellLibrary, "SHGetFileInfoW");
  if (!getInfo || !getInfo(WinText(path), 0, &shFileInfo, sizeof(shFileInfo), flags))
    MORVANE_THROW(XUnsupportedFormat());
  MORVANE_ASSERT(0!=shFileInfo.hIcon);
  const BITMAP buffer = CIconBitmaps(shFileInfo.hIcon).GetColorBitmap();
  const LONG iconSize = size;
  MORVANE_ASSERT(buffer.bmHeight==iconSize);
  MORVANE_ASSERT(buffer.bmWidth==iconSize);
  return shFileInfo.hIcon;
}

HICON LoadResourceIcon(const std::string& key, int size) {
  std::int32_t number = 0;
  NSTextPackage::ReadDecimal(NSTextPackage::ASCIIToString(key, u'?'), number);
  return LoadOwnIcon(GetModuleHandleW(nullptr), static_cast<WORD>(number), size);
}

HICON LoadIconOfSize(int size, const TIconData& data) {
  if (!data.fURL.empty()) return LoadURLIcon(data.fURL, size);
  if (data.fBuiltinIcon != 0) return LoadBuiltInIcon(data.fBuiltinIcon, size);
  if (!data.fResourceKey.empty()) return LoadResourceIcon(data.fResourceKey, size);
  return nullptr;
}

}  // namespace

// --- TIconData

TIconData::~TIconData() {
  for (const HICON icon : {fIcon16, fIcon32, fIcon48, fIcon128}) {
    if (!icon) continue;
    const BOOL okFlag = DestroyIcon(icon);
    MORVANE_ASSERT(TRUE==okFlag);
  }
}

void TIconData::DebugValidate() const {
  if (fBuiltinIcon == 0) {
    MORVANE_ASSERT(fResourceKey.empty() || fURL.empty());
  } else {
    MORVANE_ASSERT(fBuiltinIcon >= kIconDocument && fBuiltinIcon <= kIconStop);
    MORVANE_ASSERT(fResourceKey.empty());
    MORVANE_ASSERT(fURL.empty());
  }
  for (const HICON icon : {fIcon16, fIcon32, fIcon48, fIcon128})
    if (icon) MORVANE_ASSERT(CIconBitmaps(icon).AreThere());
}

// --- CIconImpl

CIconImpl::CIconImpl(const boost::shared_ptr<TIconData>& data) : fData(data) {}

// Without its data, later use fails the invariant.
CIconImpl::~CIconImpl() { fData.reset(); }

HICON CIconImpl::GetIconHandle(std::uint32_t size) const {
  const auto load = [&](HICON& slot) {
    if (!slot) slot = LoadIconOfSize(static_cast<int>(size), *fData);
    return slot;
  };
  HICON result = nullptr;
  switch (size) {
    case 16:
      result = load(fData->fIcon16);
      MORVANE_ASSERT(0!=result);
      if (!result) MORVANE_THROW(std::exception());
      return result;
    case 32:
      result = load(fData->fIcon32);
      return result ? result : GetIconHandle(16);
    case 48:
      result = load(fData->fIcon48);
      return result ? result : GetIconHandle(32);
    case 128:
      result = load(fData->fIcon128);
      return result ? result : GetIconHandle(48);
    default:
      MORVANE_THROW(std::exception());
  }
}

bool CIconImpl::CIconGlue_AreEqual(const CIconGlue& other) const {
  const CIconImpl* const otherImpl = dynamic_cast<const CIconImpl*>(&other);
  if (!otherImpl) return false;
  const TIconData& a = *fData;
  const TIconData& b = *otherImpl->fData;
  return &a == &b || (a.fBuiltinIcon != 0 && a.fBuiltinIcon == b.fBuiltinIcon) ||
         (!a.fResourceKey.empty() && a.fResourceKey == b.fResourceKey) ||
         (!a.fURL.empty() && a.fURL == b.fURL);
}

std::unique_ptr<IIcon> CIconImpl::CIconGlue_Clone() const { return std::make_unique<CIconImpl>(fData); }

// --- Making icons

namespace {

std::unique_ptr<IIcon> MakeIconOf(const boost::shared_ptr<TIconData>& data) {
  data->DebugValidate();
  return std::make_unique<CIconImpl>(data);
}

}  // namespace

std::unique_ptr<IIcon> MakeBuiltInIcon(TBuiltinIcon icon) {
  const auto data = boost::make_shared<TIconData>();
  data->fBuiltinIcon = icon;
  return MakeIconOf(data);
}

std::unique_ptr<IIcon> MakeResourceIcon(const std::string& key) {
  const auto data = boost::make_shared<TIconData>();
  data->fResourceKey = key;
  return MakeIconOf(data);
}

std::unique_ptr<IIcon> MakeIconForURL(const std::string& url) {
  const auto data = boost::make_shared<TIconData>();
  data->fURL = url;
  return MakeIconOf(data);
}

std::unique_ptr<IIcon> MakeIconFromHandles(HICON icon16, HICON icon32, HICON icon48, HICON icon128) {
  for (const HICON icon : {icon16, icon32, icon48, icon128})
    if (icon && !CIconBitmaps(icon).AreThere()) MORVANE_THROW(std::invalid_argument(""));
  const auto data = boost::make_shared<TIconData>();
  std::unique_ptr<IIcon> icon = std::make_unique<CIconImpl>(data);
  // Nothing fails from here on, so the handles change their owner.
  data->fIcon16 = icon16;
  data->fIcon32 = icon32;
  data->fIcon48 = icon48;
  data->fIcon128 = icon128;
  return icon;
}

// --- Pixel sheets

namespace {

constexpr std::int32_t kPixelBytes = 4;
enum : std::size_t { kRed, kGreen, kBlue, kAlpha };

// The places of the four sizes on a sheet.
constexpr TRect kPlace16 = {132, 87, 148, 103};
constexpr TRect kPlace32 = {132, 52, 164, 84};
constexpr TRect kPlace48 = {132, 1, 180, 49};
constexpr TRect kPlace128 = {1, 1, 129, 129};

// Calls action(x, y, pixel) for each pixel of a rectangle; x and y are relative to its top left corner.
template <class TAction>
void ForEachPixel(const std::uint8_t* sheet, const TRect& rect, TAction&& action) {
  for (std::int32_t y = rect.fTop; y < rect.fBottom; ++y)
    for (std::int32_t x = rect.fLeft; x < rect.fRight; ++x) {
      const std::int32_t sourcePixelOffset = (y * kSheetWidth + x) * kPixelBytes;
      MORVANE_ASSERT(sourcePixelOffset<181*130*4);
      action(x - rect.fLeft, y - rect.fTop, sheet + sourcePixelOffset);
    }
}

std::uint32_t ColorWord(const std::uint8_t* pixel) {
  return std::uint32_t{pixel[kRed]} << 16 | std::uint32_t{pixel[kGreen]} << 8 | pixel[kBlue];
}

// Owns a bitmap. Throws if the system could not make it.
class CIconBitmap : CNotCopied {
 public:
  explicit CIconBitmap(HBITMAP bitmap) : fBitmap(bitmap) {
    if (!fBitmap) MORVANE_THROW_LAST_ERROR();
  }
  ~CIconBitmap() {
    const BOOL okFlag = DeleteObject(fBitmap);
    MORVANE_ASSERT(TRUE==okFlag);
  }
  HBITMAP Get() const { return fBitmap; }

 private:
  HBITMAP fBitmap;
};

// A bitmap of 32-bit pixels, top row first, with or without alpha.
class CPixelSection {
 public:
  CPixelSection(std::int32_t width, std::int32_t height, bool hasAlpha)
      : fWidth(width), fHeight(height), fBitmap(Make(width, height, hasAlpha)), fSection() {
    if (GetObjectW(fBitmap.Get(), sizeof(fSection), &fSection) < static_cast<int>(sizeof(fSection)))
      MORVANE_THROW(std::exception());
  }

  void SetPixel(std::int32_t x, std::int32_t y, std::uint32_t word) {
    const std::int32_t width = fWidth, height = fHeight, targetPixelOffset = y * width + x;
    MORVANE_ASSERT(targetPixelOffset<(width*height));
    const std::int32_t stride = (fSection.dsBm.bmWidthBytes + 3) / 4 * 4;
    std::memcpy(static_cast<std::uint8_t*>(fSection.dsBm.bmBits) + y * stride + x * kPixelBytes, &word,
                sizeof(word));
  }
  HBITMAP Get() const { return fBitmap.Get(); }

 private:
  static HBITMAP Make(std::int32_t width, std::int32_t height, bool hasAlpha) {
    BITMAPV5HEADER header = {};
    header.bV5Size = sizeof(header);
    header.bV5Width = width;
    header.bV5Height = -height;
    header.bV5Planes = 1;
    header.bV5BitCount = 32;
    header.bV5Compression = BI_BITFIELDS;
    header.bV5RedMask = 0xFF0000;
    header.bV5GreenMask = 0xFF00;
    header.bV5BlueMask = 0xFF;
    header.bV5AlphaMask = hasAlpha ? 0xFF000000 : 0;
    void* bits = nullptr;
    return CreateDIBSection(nullptr, reinterpret_cast<const BITMAPINFO*>(&header), DIB_RGB_COLORS, &bits,
                            nullptr, 0);
  }

  std::int32_t fWidth;
  std::int32_t fHeight;
  CIconBitmap fBitmap;
  DIBSECTION fSection;
};

HICON MakeIcon(HBITMAP color, HBITMAP mask) {
  ICONINFO info = {};
  info.fIcon = TRUE;
  info.hbmColor = color;
  info.hbmMask = mask;
  const HICON icon = CreateIconIndirect(&info);
  if (!icon) MORVANE_THROW_LAST_ERROR();
  return icon;
}

HICON MakeAlphaIcon(const std::uint8_t* sheet, const TRect& rect, std::int32_t width, std::int32_t height) {
  CPixelSection color(width, height, true);
  ForEachPixel(sheet, rect, [&](std::int32_t x, std::int32_t y, const std::uint8_t* pixel) {
    color.SetPixel(x, y, std::uint32_t{pixel[kAlpha]} << 24 | ColorWord(pixel));
  });
  // Rows of a mask are padded to 16 bits.
  const std::vector<std::uint8_t> blank(static_cast<std::size_t>((width + 15) / 16 * 2 * height), 0);
  const CIconBitmap mask(CreateBitmap(width, height, 1, 1, blank.data()));
  return MakeIcon(color.Get(), mask.Get());
}

// Copies one bitmap onto another.
void Blit(HBITMAP target, HBITMAP source, std::int32_t width, std::int32_t height, DWORD operation) {
  const CCreatedDC targetDC(CreateCompatibleDC(nullptr));
  const CCreatedDC sourceDC(CreateCompatibleDC(nullptr));
  if (!targetDC.Get() || !sourceDC.Get()) MORVANE_THROW_LAST_ERROR();
  const CObjectSelection targetSelection(targetDC.Get(), target);
  const CObjectSelection sourceSelection(sourceDC.Get(), source);
  if (!targetSelection.IsSelected() || !sourceSelection.IsSelected()) MORVANE_THROW(std::exception());
  // On a monochrome target, pixels of this colour become 1.
  SetBkColor(sourceDC.Get(), RGB(255, 255, 255));
  if (!BitBlt(targetDC.Get(), 0, 0, width, height, sourceDC.Get(), 0, 0, operation))
    MORVANE_THROW_LAST_ERROR();
}

HICON MakeMaskedIcon(const std::uint8_t* sheet, const TRect& rect, std::int32_t width, std::int32_t height) {
  constexpr std::uint8_t kOpaqueFrom = 128;
  constexpr std::uint32_t kOpaque = 0, kTransparent = 0xFFFFFF;
  constexpr DWORD kClearTransparentPixels = 0x220326;
  if (width % 2 != 0) MORVANE_THROW(std::logic_error(""));
  CPixelSection maskPixels(width, height, false);
  CPixelSection colorPixels(width, height, false);
  ForEachPixel(sheet, rect, [&](std::int32_t x, std::int32_t y, const std::uint8_t* pixel) {
    maskPixels.SetPixel(x, y, pixel[kAlpha] < kOpaqueFrom ? kTransparent : kOpaque);
    colorPixels.SetPixel(x, y, ColorWord(pixel));
  });
  const CIconBitmap mask(CreateBitmap(width, height, 1, 1, nullptr));
  Blit(mask.Get(), maskPixels.Get(), width, height, SRCCOPY);
  const CWindowDC screen(nullptr);
  const CIconBitmap color(CreateCompatibleBitmap(screen.Get(), width, height));
  Blit(color.Get(), colorPixels.Get(), width, height, SRCCOPY);
  Blit(color.Get(), mask.Get(), width, height, kClearTransparentPixels);
  return MakeIcon(color.Get(), mask.Get());
}

// Alpha icons came with Windows XP, which is version 5.1.
bool SystemHasAlphaIcons() {
  static const bool hasThem = [] {
    OSVERSIONINFOW version = {};
    if (!GetSystemVersion(version)) MORVANE_THROW(std::exception());
    return version.dwPlatformId == VER_PLATFORM_WIN32_NT &&
           (version.dwMajorVersion > 5 || (version.dwMajorVersion == 5 && version.dwMinorVersion != 0));
  }();
  return hasThem;
}

bool IsAnythingVisible(const std::uint8_t* sheet, const TRect& rect) {
  bool isVisible = false;
  ForEachPixel(sheet, rect, [&](std::int32_t, std::int32_t, const std::uint8_t* pixel) {
    isVisible = isVisible || pixel[kAlpha] != 0;
  });
  return isVisible;
}

}  // namespace

HICON MakeIconFromSheet(const std::uint8_t* sheet, const TRect& rect, bool hasAlphaIcons) {
  const std::int32_t width = rect.fRight - rect.fLeft;
  const std::int32_t height = rect.fBottom - rect.fTop;
  return hasAlphaIcons ? MakeAlphaIcon(sheet, rect, width, height)
                       : MakeMaskedIcon(sheet, rect, width, height);
}

std::unique_ptr<IIcon> MakePixmapIcon(const void* sheet) {
  const auto pixels = static_cast<const std::uint8_t*>(sheet);
  const auto data = boost::make_shared<TIconData>();
  for (const auto& [place, slot] : {std::pair(kPlace16, &TIconData::fIcon16),
                                    {kPlace32, &TIconData::fIcon32},
                                    {kPlace48, &TIconData::fIcon48},
                                    {kPlace128, &TIconData::fIcon128}})
    if (IsAnythingVisible(pixels, place))
      data.get()->*slot = MakeIconFromSheet(pixels, place, SystemHasAlphaIcons());
  return MakeIconOf(data);
}

}  // namespace NSMorvane
