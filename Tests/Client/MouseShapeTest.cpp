// Mouse shapes: what the numbers load, and the pictures in the library's own resources.
#include <cstring>

#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

namespace {

struct Picture {
  WORD fCursor;
  int fSize;
  int fBits;
  POINT fHotSpot;
};

struct Shape {
  std::uint32_t fNumber;
  WORD fSystemCursor;  // 0 for one of the library's own
  WORD fGroup;
  std::vector<Picture> fPictures;
};

const std::vector<Shape> kShapes = {
    {1300, 32512, 0, {}},
    {1301, 0, 120, {{21, 32, 1, {1, 1}}}},
    {1302, 0, 106, {{5, 32, 1, {0, 0}}}},
    {1303, 0, 125, {{24, 32, 1, {0, 0}}}},
    {1400, 32514, 0, {}},
    {1401, 32513, 0, {}},
    {1402, 32649, 0, {}},
    {1403, 32512, 0, {}},
    {1404, 0, 113, {{12, 32, 1, {11, 17}}}},
    {1405, 0, 101, {{1, 32, 4, {8, 8}}}},
    {1500, 0, 111, {{10, 32, 1, {15, 13}}}},
    {1501, 0, 112, {{11, 32, 1, {15, 13}}}},
    {1502, 0, 105, {{4, 32, 4, {6, 7}}}},
    {1503, 0, 124, {{23, 32, 1, {14, 12}}}},
    {1504, 0, 116, {{16, 32, 1, {15, 15}}, {17, 16, 1, {8, 8}}}},
    {1505, 0, 115, {{14, 32, 1, {15, 15}}, {15, 16, 1, {8, 8}}}},
    {1606, 0, 108, {{7, 32, 1, {7, 7}}}},
    {1607, 0, 109, {{8, 32, 1, {7, 7}}}},
    {1608, 0, 110, {{9, 32, 1, {7, 7}}}},
    {1700, 0, 107, {{6, 32, 1, {1, 15}}}},
    {1701, 0, 114, {{13, 32, 4, {4, 12}}}},
    {1702, 0, 102, {{2, 32, 4, {2, 15}}}},
    {1703, 0, 104, {{3, 32, 4, {6, 7}}}},
    {1704, 0, 126, {{25, 32, 1, {4, 4}}}},
    {1705, 0, 127, {{26, 32, 1, {8, 23}}}},
    {1706, 0, 118, {{18, 32, 1, {8, 23}}}},
    {1707, 0, 128, {{27, 32, 1, {13, 15}}}},
    {1708, 0, 123, {{22, 32, 1, {16, 15}}}},
    {1709, 0, 117, {{19, 32, 1, {10, 11}}}},
    {1710, 0, 119, {{20, 32, 1, {8, 13}}}},
};

HMODULE Library() { return GetModuleHandleW(L"Morvane.dll"); }

// A resource as it stands in the library; empty if there is none.
std::vector<std::uint8_t> ResourceOf(WORD id, const wchar_t* type) {
  const HRSRC resource = FindResourceW(Library(), MAKEINTRESOURCEW(id), type);
  if (!resource) return {};
  const auto bytes = static_cast<const std::uint8_t*>(LockResource(LoadResource(Library(), resource)));
  return {bytes, bytes + SizeofResource(Library(), resource)};
}

int WordAt(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
  return offset + 1 < bytes.size() ? bytes[offset] | bytes[offset + 1] << 8 : -1;
}

}  // namespace

class MouseShapeTest : public ClientTest {
 protected:
  std::unique_ptr<IMouseShape> Make(std::uint32_t number, TError wantedError = kOK) {
    TError error = kOtherError;
    std::unique_ptr<IMouseShape> shape(
        fMorvane->IMorvane_CreateBuiltInMouseShape(static_cast<TBuiltInMouseShape>(number), error));
    EXPECT_EQ(error, wantedError) << number;
    EXPECT_EQ(shape != nullptr, wantedError == kOK) << number;
    EXPECT_TRUE(!shape || shape->IMouseShape_CheckInvariant() != 0) << number;
    return shape;
  }
  std::unique_ptr<IMouseShape> Load(const char* key, TError wantedError) {
    TError error = kOK;
    std::unique_ptr<IMouseShape> shape(fMorvane->IMorvane_LoadResourceMouseShape(key, error));
    EXPECT_EQ(error, wantedError) << (key ? key : "null");
    EXPECT_EQ(shape != nullptr, wantedError == kOK);
    return shape;
  }
  // What it looks like to the system.
  HCURSOR CursorOf(IMouseShape& shape) {
    EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(&shape), kOK);
    return GetCursor();
  }
};

TEST_F(MouseShapeTest, TheLibraryHoldsItsPictures) {
  std::size_t groups = 0;
  for (WORD id = 100; id < 130; ++id) groups += !ResourceOf(id, RT_GROUP_CURSOR).empty();
  EXPECT_EQ(groups, 25u);
  for (const Shape& shape : kShapes) {
    if (shape.fSystemCursor) continue;
    const std::vector<std::uint8_t> group = ResourceOf(shape.fGroup, RT_GROUP_CURSOR);
    ASSERT_EQ(group.size(), 6 + 14 * shape.fPictures.size()) << shape.fNumber;
    EXPECT_EQ(WordAt(group, 2), 2);  // cursors
    EXPECT_EQ(WordAt(group, 4), static_cast<int>(shape.fPictures.size()));
    for (std::size_t i = 0; i < shape.fPictures.size(); ++i) {
      const Picture& picture = shape.fPictures[i];
      const std::size_t entry = 6 + 14 * i;
      const std::vector<std::uint8_t> cursor = ResourceOf(picture.fCursor, RT_CURSOR);
      SCOPED_TRACE(shape.fNumber);
      EXPECT_EQ(WordAt(group, entry), picture.fSize);
      EXPECT_EQ(WordAt(group, entry + 2), 2 * picture.fSize);  // colours and mask
      EXPECT_EQ(WordAt(group, entry + 6), picture.fBits);
      EXPECT_EQ(WordAt(group, entry + 8), static_cast<int>(cursor.size()));
      EXPECT_EQ(WordAt(group, entry + 12), picture.fCursor);
      EXPECT_EQ(WordAt(cursor, 0), picture.fHotSpot.x);
      EXPECT_EQ(WordAt(cursor, 2), picture.fHotSpot.y);
      ASSERT_GE(cursor.size(), 4 + sizeof(BITMAPINFOHEADER));
      BITMAPINFOHEADER header;
      std::memcpy(&header, cursor.data() + 4, sizeof(header));
      EXPECT_EQ(header.biSize, sizeof(header));
      EXPECT_EQ(header.biWidth, picture.fSize);
      EXPECT_EQ(header.biHeight, 2 * picture.fSize);
      EXPECT_EQ(header.biBitCount, picture.fBits);
      // Palette, colours, mask; rows end at multiples of 32 bits.
      const std::size_t colorRow = (picture.fSize * picture.fBits + 31) / 32 * 4;
      const std::size_t maskBytes = static_cast<std::size_t>(picture.fSize) * 4;
      EXPECT_EQ(cursor.size(), 4 + sizeof(header) + (std::size_t{4} << picture.fBits) +
                                   colorRow * picture.fSize + maskBytes);
      // Something can be seen, and something is left open.
      std::size_t open = 0;
      for (std::size_t at = cursor.size() - maskBytes; at < cursor.size(); ++at)
        for (int bit = 0; bit < 8; ++bit) open += cursor[at] >> bit & 1;
      EXPECT_GT(open, maskBytes);
      EXPECT_LT(open, maskBytes * 8 - 30);
    }
  }
}

TEST_F(MouseShapeTest, EveryNumberLoads) {
  CreateMorvane();
  std::map<HCURSOR, std::uint32_t> seen;
  for (const Shape& shape : kShapes) {
    const std::unique_ptr<IMouseShape> made = Make(shape.fNumber);
    ASSERT_NE(made, nullptr);
    const HCURSOR cursor = CursorOf(*made);
    const HMODULE module = shape.fSystemCursor ? nullptr : Library();
    const WORD id = shape.fSystemCursor ? shape.fSystemCursor : shape.fGroup;
    EXPECT_EQ(cursor, LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_CURSOR, 0, 0, LR_SHARED))
        << shape.fNumber;
    EXPECT_EQ(seen.count(cursor), shape.fNumber == kMouseShapeDefault ? 1u : 0u) << shape.fNumber;
    seen[cursor] = shape.fNumber;
    if (shape.fSystemCursor) continue;
    ICONINFO info = {};
    ASSERT_TRUE(GetIconInfo(cursor, &info));
    EXPECT_FALSE(info.fIcon);
    const auto matches = [&](const Picture& picture) {
      return static_cast<int>(info.xHotspot) == picture.fHotSpot.x &&
             static_cast<int>(info.yHotspot) == picture.fHotSpot.y;
    };
    EXPECT_TRUE(std::any_of(shape.fPictures.begin(), shape.fPictures.end(), matches)) << shape.fNumber;
    if (info.hbmColor) DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
  }
  fMorvane->IMorvane_SetOverrideMouseShape(nullptr);
}

TEST_F(MouseShapeTest, OtherNumbersAndKeysAreRefused) {
  CreateMorvane();
  for (const std::uint32_t number : {0u, 1299u, 1304u, 1406u, 1506u, 1600u, 1605u, 1609u, 1699u, 1711u})
    Make(number, kBadInputProgrammingError);
  Load(nullptr, kBadInputProgrammingError);
  Load("", kBadInputProgrammingError);
  EXPECT_EQ(fOutput.TakeAssertions().size(), 12u);
  // The program has no cursor of that number, nor of those that the reports are about.
  Load("4711", kOtherError);
  EXPECT_EQ(fOutput.TakeAssertions(), CallLog());
  Load("x", kOtherError);
  EXPECT_EQ(fOutput.TakeAssertions(), CallLog{"foundNumber"});
  for (const char* key : {"-1", "65536", "99999999999999999999"}) {
    Load(key, kOtherError);
    EXPECT_EQ(fOutput.TakeAssertions(), CallLog{"resourceID >= 0 && resourceID <= USHRT_MAX"}) << key;
  }
  Load("\xC3\xA9", kOtherError);
  EXPECT_EQ(fOutput.TakeAssertions(), CallLog());
}

TEST_F(MouseShapeTest, ShapesComeFromTheProgramAndAreCloned) {
  CreateMorvane();

  std::unique_ptr<IMouseShape> shape = Load("7", kOK);
  ASSERT_NE(shape, nullptr);
  const HCURSOR cursor = CursorOf(*shape);
  EXPECT_EQ(cursor,
            LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(7), IMAGE_CURSOR, 0, 0, LR_SHARED));
  TError error = kOtherError;
  const std::unique_ptr<IMouseShape> clone(shape->IMouseShape_Clone(error));
  EXPECT_EQ(error, kOK);
  shape.reset();
  ASSERT_NE(clone, nullptr);
  EXPECT_NE(clone->IMouseShape_CheckInvariant(), 0u);
  SetCursor(nullptr);
  EXPECT_EQ(CursorOf(*clone), cursor);
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
}

}  // namespace NSMorvaneTest
