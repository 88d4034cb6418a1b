// Icons from every source, compared pixel by pixel.
#include "Component/Win/Services/WinIcon.h"

#include <array>

#include "Component/Portable/Opening/PendingCommandLines.h"
#include "Component/Win/Application/WinExtensions.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinFiles.h"
#include "Tests/Support/HandleCounts.h"
#include "Tests/Support/PatchedImport.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::array<std::uint32_t, 4> kSizes = {16, 32, 48, 128};
constexpr TRect kPlaces[] = {{132, 87, 148, 103}, {132, 52, 164, 84}, {132, 1, 180, 49}, {1, 1, 129, 129}};

class WinIconTest : public ReportingTest {
 protected:
  static HICON HandleOf(const std::unique_ptr<IIcon>& icon, std::uint32_t size) {
    return dynamic_cast<const CIconImpl&>(*icon).GetIconHandle(size);
  }
  static int SideOf(HICON icon) {
    ICONINFO info = {};
    BITMAP bitmap = {};
    EXPECT_TRUE(GetIconInfo(icon, &info));
    GetObjectW(info.hbmColor, sizeof(bitmap), &bitmap);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    return bitmap.bmWidth;
  }
  // The pixels, red in bits 0 to 7, after drawing on a background.
  static std::vector<COLORREF> Drawn(HICON icon, int size, COLORREF background) {
    const CCreatedDC hdc(CreateCompatibleDC(nullptr));
    const CWindowDC screen(nullptr);
    const CGdiObject<HBITMAP> bitmap(CreateCompatibleBitmap(screen.Get(), size, size));
    const CObjectSelection selection(hdc.Get(), bitmap.Get());
    const CGdiObject<HBRUSH> brush(CreateSolidBrush(background));
    const RECT all = {0, 0, size, size};
    FillRect(hdc.Get(), &all, brush.Get());
    EXPECT_TRUE(DrawIconEx(hdc.Get(), 0, 0, icon, size, size, 0, nullptr, DI_NORMAL));
    std::vector<COLORREF> pixels;
    for (int y = 0; y < size; ++y)
      for (int x = 0; x < size; ++x) pixels.push_back(GetPixel(hdc.Get(), x, y));
    return pixels;
  }
  // A sheet with a colour of its own for each pixel at `places`, with the alphas of the list, or 255.
  static constexpr std::uint8_t kAlphas[] = {0, 1, 64, 127, 128, 129, 200, 255};
  static std::vector<std::uint8_t> Sheet(unsigned places = 15, bool hasAlphas = false) {
    std::vector<std::uint8_t> sheet(kSheetWidth * kSheetHeight * 4, 0);
    for (int place = 0; place < 4; ++place) {
      const TRect rect = places & 1u << place ? kPlaces[place] : TRect{};
      for (int y = rect.fTop; y < rect.fBottom; ++y)
        for (int x = rect.fLeft; x < rect.fRight; ++x) {
          const std::uint8_t alpha = hasAlphas ? kAlphas[(x - rect.fLeft) % 8] : 255;
          const std::uint8_t pixel[] = {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), 50,
                                        alpha};
          std::copy(pixel, pixel + 4, &sheet[static_cast<std::size_t>((y * kSheetWidth + x) * 4)]);
        }
    }
    return sheet;
  }
  static std::unique_ptr<IIcon> CloneOf(const IIcon& icon) {
    TError error = kOtherError;
    std::unique_ptr<IIcon> clone(icon.IIcon_Clone(error));
    EXPECT_EQ(error, kOK);
    return clone;
  }
};

}  // namespace

TEST_F(WinIconTest, BuiltInKindsAtAllSizes) {
  const HMODULE shell = LoadLibraryW(L"shell32.dll");
  constexpr WORD kShellIcons[] = {1, 3, 9, 10, 12, 7, 32, 33, 35, 151, 4};
  constexpr WORD kSystemIcons[] = {32512, 32512, 32512, 32516, 32515, 32513};
  for (std::uint32_t kind = kIconDocument; kind <= kIconStop; ++kind) {
    // Some builds of Wine lack this one: what the system does not have is an error.
    if (kind == kIconRecycleBinEmpty && !FindResourceW(shell, MAKEINTRESOURCEW(32), MAKEINTRESOURCEW(14))) {
      EXPECT_ANY_THROW(HandleOf(MakeBuiltInIcon(kIconRecycleBinEmpty), 32));
      continue;
    }
    const std::unique_ptr<IIcon> icon = MakeBuiltInIcon(static_cast<TBuiltinIcon>(kind));
    for (const std::uint32_t size : kSizes) {
      const HICON handle = HandleOf(icon, size);
      EXPECT_EQ(SideOf(handle), static_cast<int>(size)) << kind;
      EXPECT_EQ(HandleOf(icon, size), handle) << kind;
    }
    const std::uint32_t index = kind - kIconDocument, shellIcons = std::size(kShellIcons);
    const HICON wanted = index < shellIcons
                             ? LoadIconW(shell, MAKEINTRESOURCEW(kShellIcons[index]))
                             : LoadIconW(nullptr, MAKEINTRESOURCEW(kSystemIcons[index - shellIcons]));
    EXPECT_EQ(Drawn(HandleOf(icon, 32), 32, 0), Drawn(wanted, 32, 0)) << kind;
  }
  for (const std::uint32_t size : {0u, 15u, 24u, 256u})
    EXPECT_ANY_THROW(HandleOf(MakeBuiltInIcon(kIconFolder), size)) << size;
  // Why it failed is told.
  HANDLE(WINAPI* const refuse)
  (HINSTANCE, LPCWSTR, UINT, int, int, UINT) = [](HINSTANCE, LPCWSTR, UINT, int, int, UINT) -> HANDLE {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  };
  const PatchedImport load(nullptr, "LoadImageW", refuse);
  for (const TBuiltinIcon kind : {kIconFolder, kIconStop})
    EXPECT_EQ(kOutOfMemoryError, ErrorOf([&] { HandleOf(MakeBuiltInIcon(kind), 32); }));
  EXPECT_EQ(TakeReports(), "");
}

TEST_F(WinIconTest, FilesAndResources) {
  wchar_t system[MAX_PATH] = {};
  GetSystemDirectoryW(system, MAX_PATH);
  const TString folder = TextFromWin(system);
  for (const TString& path : {folder, folder + u"\\kernel32.dll", TString(u"C:\\")}) {
    const std::unique_ptr<IIcon> icon = MakeIconForURL(PathToFileURL(path));
    EXPECT_EQ(SideOf(HandleOf(icon, 16)), 16);
    const HICON large = HandleOf(icon, 32);
    EXPECT_EQ(SideOf(large), 32);
    EXPECT_EQ(HandleOf(icon, 48), large);
    EXPECT_EQ(HandleOf(icon, 128), large);
  }
  for (const char* const url : {"file://C:\\no\\such.file", "http://a.b/", "nothing", "file://\xC3"})
    EXPECT_EQ(kUnsupportedFormatError, ErrorOf([&] { HandleOf(MakeIconForURL(url), 16); })) << url;
  EXPECT_EQ(TakeReports(), "");
  // An icon of this program, by its number and by one with the same low half; then some that it has not.
  for (const char* const key : {"1004", "66540"})
    for (const std::uint32_t size : kSizes)
      EXPECT_EQ(SideOf(HandleOf(MakeResourceIcon(key), size)), static_cast<int>(size)) << key;
  for (const char* const key : {"2", "none", "99999999999"}) {
    EXPECT_ANY_THROW(HandleOf(MakeResourceIcon(key), 128)) << key;
    EXPECT_EQ(TakeReports(), "0!=result") << key;
  }
}

TEST_F(WinIconTest, SheetsWithASizeMissing) {
  for (unsigned places = 1; places < 16; ++places) {
    const std::unique_ptr<IIcon> icon = MakePixmapIcon(Sheet(places).data());
    for (int place = 0; place < 4; ++place) {
      int given = place;
      while (given >= 0 && !(places & 1u << given)) --given;
      const auto ask = [&] { return HandleOf(icon, kSizes[static_cast<std::size_t>(place)]); };
      if (given < 0) {
        EXPECT_ANY_THROW(ask()) << places;
        EXPECT_EQ(TakeReports(), "0!=result");
      } else {
        EXPECT_EQ(SideOf(ask()), static_cast<int>(kSizes[static_cast<std::size_t>(given)])) << places;
      }
    }
  }
}

TEST_F(WinIconTest, PixelsWithAlphaAndWithout) {
  const auto sheet = Sheet(15, true);
  const std::unique_ptr<IIcon> all = MakePixmapIcon(sheet.data());
  for (const std::size_t place : {0, 1, 2, 3})
    for (const auto& [hasAlphaIcons, background] : Rows<bool, int>{{true, 0}, {true, 255}, {false, 255}}) {
      const TRect& rect = kPlaces[place];
      const int side = static_cast<int>(kSizes[place]);
      const HICON icon =
          hasAlphaIcons ? HandleOf(all, kSizes[place]) : MakeIconFromSheet(sheet.data(), rect, false);
      const auto pixels = Drawn(icon, side, RGB(background, background, background));
      int wrong = 0;
      for (int i = 0; i < side * side; ++i) {
        const int x = i % side, y = i / side;
        const int alpha = hasAlphaIcons ? kAlphas[x % 8] : kAlphas[x % 8] < 128 ? 0 : 255;
        const COLORREF pixel = pixels[static_cast<std::size_t>(i)];
        const auto isOff = [&, back = background](int shown, int value) {
          return std::abs(shown - (value * alpha + back * (255 - alpha)) / 255) > 2;
        };
        wrong += isOff(GetRValue(pixel), rect.fLeft + x) || isOff(GetGValue(pixel), rect.fTop + y) ||
                 isOff(GetBValue(pixel), 50);
      }
      EXPECT_EQ(wrong, 0) << side << " on " << background;
      if (!hasAlphaIcons) DestroyIcon(icon);
    }
  EXPECT_THROW(MakeIconFromSheet(sheet.data(), {0, 0, 15, 16}, false), std::logic_error);
  // A bitmap that cannot be drawn into would leave an icon of nothing.
  HGDIOBJ(WINAPI* const refuse)(HDC, HGDIOBJ) = [](HDC, HGDIOBJ) -> HGDIOBJ { return nullptr; };
  const PatchedImport patch(nullptr, "SelectObject", refuse);
  EXPECT_ANY_THROW(MakeIconFromSheet(sheet.data(), kPlaces[0], false));
}

// From handles, which are looked at once.
TEST_F(WinIconTest, HandlesOfTheClient) {
  const BYTE bits[32] = {};
  const HICON plain = CreateIcon(nullptr, 16, 16, 1, 1, bits, bits);
  const HICON gone = CreateIcon(nullptr, 16, 16, 1, 1, bits, bits);
  DestroyIcon(gone);
  CPendingCommandLines commandLines;
  CWinExtensions extensions(commandLines);
  TError error = kOK;
  for (const auto& [icon16, icon32] :
       Rows<HICON, HICON>{{plain, gone}, {plain, plain}, {nullptr, nullptr}, {nullptr, HICON(4711)}}) {
    EXPECT_EQ(extensions.IWinExtensions_CreateIconFromHandles(icon16, icon32, nullptr, nullptr, error),
              nullptr);
    EXPECT_EQ(error, kBadInputProgrammingError);
  }
  const std::unique_ptr<IIcon> icon(
      extensions.IWinExtensions_CreateIconFromHandles(plain, nullptr, nullptr, nullptr, error));
  ASSERT_EQ(error, kOK);
  static int questions;
  questions = 0;
  BOOL(WINAPI* const count)
  (HICON, PICONINFO) = [](HICON handle, PICONINFO info) {
    ++questions;
    return RealFunction<decltype(GetIconInfo)>(L"user32.dll", "GetIconInfo")(handle, info);
  };
  const PatchedImport patch(nullptr, "GetIconInfo", count);
  const std::unique_ptr<IIcon> clone = CloneOf(*icon);
  EXPECT_EQ(extensions.IWinExtensions_GetIconHandle(*clone, 128, error), plain);
  EXPECT_EQ(questions, 0);
  EXPECT_EQ(extensions.IWinExtensions_GetIconHandle(*clone, 24, error), nullptr);
  EXPECT_EQ(error, kBadInputProgrammingError);
}

TEST_F(WinIconTest, ClonesAndEquality) {
  const auto sheet = Sheet();
  std::unique_ptr<IIcon> icons[] = {MakeBuiltInIcon(kIconNote),    MakeBuiltInIcon(kIconStop),
                                    MakeResourceIcon("1"),         MakeResourceIcon("2"),
                                    MakeIconForURL("file://C:\\"), MakeIconForURL("file://D:\\"),
                                    MakePixmapIcon(sheet.data()),  MakePixmapIcon(sheet.data())};
  const auto areEqual = [](const IIcon& a, const IIcon& b) {
    TFlag equal = 2;
    EXPECT_EQ(a.IIcon_AreEqual(b, equal), kOK);
    return equal == 1;
  };
  for (const auto& a : icons) {
    for (const auto& b : icons) EXPECT_EQ(areEqual(*a, *b), &a == &b);
    const std::unique_ptr<IIcon> clone = CloneOf(*a);
    EXPECT_TRUE(areEqual(*a, *clone) && areEqual(*clone, *a));
  }
  EXPECT_TRUE(areEqual(*icons[0], *MakeBuiltInIcon(kIconNote)));
  EXPECT_TRUE(areEqual(*icons[2], *MakeResourceIcon("1")));
  EXPECT_TRUE(areEqual(*icons[4], *MakeIconForURL("file://C:\\")));
  // A clone keeps the handles when the first one has gone.
  const std::unique_ptr<IIcon> clone = CloneOf(*icons[6]);
  const HICON handle = HandleOf(icons[6], 48);
  icons[6].reset();
  EXPECT_EQ(HandleOf(clone, 48), handle);
  EXPECT_EQ(SideOf(handle), 48);
}

TEST_F(WinIconTest, NoHandleIsLeft) {
  const auto sheet = Sheet(15, true);
  std::int64_t gdi = 0, user = 0;
  for (int i = 0; i < 200; ++i) {
    if (i == 10) gdi = GdiHandles(), user = UserHandles();
    const HICON handle = MakeIconFromSheet(sheet.data(), kPlaces[1], i % 2 == 0);
    const std::unique_ptr<IIcon> icons[] = {MakePixmapIcon(sheet.data()), MakeBuiltInIcon(kIconFolder),
                                            MakeBuiltInIcon(kIconStop), MakeIconForURL("file://C:\\"),
                                            MakeIconFromHandles(nullptr, handle, nullptr, nullptr)};
    for (const auto& icon : icons) HandleOf(CloneOf(*icon), 32);
  }
  EXPECT_LE(GdiHandles(), gdi);
  EXPECT_LE(UserHandles(), user + 100);
}
