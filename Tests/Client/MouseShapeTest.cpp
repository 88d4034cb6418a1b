// Mouse shapes: what the numbers load, and the pictures in the library's own resources.
#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

namespace {

struct Picture {
  WORD fCursor;
  int fSize;
  int fBits;
  POINT fHotSpot;
};

const struct {
  std::uint32_t fNumber;
  WORD fSystemCursor;  // 0 for one of the library's own
  WORD fGroup;
  std::vector<Picture> fPictures;
} kShapes[] = {
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

// A resource of the library, as words; empty if there is none.
std::vector<int> ResourceOf(WORD id, const wchar_t* type) {
  const HRSRC resource = FindResourceW(Library(), MAKEINTRESOURCEW(id), type);
  if (!resource) return {};
  const auto words = static_cast<const WORD*>(LockResource(LoadResource(Library(), resource)));
  return {words, words + SizeofResource(Library(), resource) / sizeof(WORD)};
}

}  // namespace

class MouseShapeTest : public ClientTest {
 protected:
  using Shape = std::unique_ptr<IMouseShape>;

  Shape Checked(IMouseShape* shape, const TError& error, TError wantedError) {
    EXPECT_EQ(error, wantedError);
    EXPECT_EQ(shape != nullptr, wantedError == kOK);
    EXPECT_TRUE(!shape || shape->IMouseShape_CheckInvariant() != 0);
    return Shape(shape);
  }
  Shape Make(std::uint32_t number, TError wantedError = kOK) {
    TError error = kOtherError;
    const auto shape = static_cast<TBuiltInMouseShape>(number);
    return Checked(fMorvane->IMorvane_CreateBuiltInMouseShape(shape, error), error, wantedError);
  }
  Shape Load(const char* key, TError wantedError) {
    TError error = kOK;
    return Checked(fMorvane->IMorvane_LoadResourceMouseShape(key, error), error, wantedError);
  }
  // What it looks like to the system.
  HCURSOR CursorOf(const Shape& shape) {
    EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(shape.get()), kOK);
    return GetCursor();
  }
};

TEST_F(MouseShapeTest, EveryNumberLoadsItsPictures) {
  CreateMorvane();
  std::map<HCURSOR, std::uint32_t> seen;
  for (const auto& shape : kShapes) {
    SCOPED_TRACE(shape.fNumber);
    const HCURSOR cursor = CursorOf(Make(shape.fNumber));
    const HMODULE module = shape.fSystemCursor ? nullptr : Library();
    const WORD id = shape.fSystemCursor ? shape.fSystemCursor : shape.fGroup;
    EXPECT_EQ(cursor, LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_CURSOR, 0, 0, LR_SHARED));
    EXPECT_EQ(seen.count(cursor), shape.fNumber == kMouseShapeDefault ? 1u : 0u);
    seen[cursor] = shape.fNumber;
    if (shape.fSystemCursor) continue;
    const std::vector<int> group = ResourceOf(shape.fGroup, RT_GROUP_CURSOR);
    ASSERT_EQ(group.size(), 3 + 7 * shape.fPictures.size());
    for (std::size_t i = 0; i < shape.fPictures.size(); ++i) {
      const Picture& picture = shape.fPictures[i];
      const int* const entry = &group[3 + 7 * i];
      const std::vector<int> bits = ResourceOf(picture.fCursor, RT_CURSOR);
      // Palette, colours and mask, which have rows of whole 32 bits, behind hot spot and header.
      const int colorRow = (picture.fSize * picture.fBits + 31) / 32 * 4;
      const int bytes = 4 + 40 + (4 << picture.fBits) + (colorRow + 4) * picture.fSize;
      EXPECT_EQ(
          (std::vector<int>(entry, entry + 7)),
          (std::vector<int>{picture.fSize, 2 * picture.fSize, 1, picture.fBits, bytes, 0, picture.fCursor}));
      ASSERT_EQ(bits.size() * 2, static_cast<std::size_t>(bytes));
      EXPECT_EQ((std::vector<int>{bits[0], bits[1], bits[4], bits[6], bits[9]}),
                (std::vector<int>{picture.fHotSpot.x, picture.fHotSpot.y, picture.fSize, 2 * picture.fSize,
                                  picture.fBits}));
    }
  }
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
  WORD groups = 0;
  for (WORD id = 100; id < 130; ++id) groups += !ResourceOf(id, RT_GROUP_CURSOR).empty();
  EXPECT_EQ(groups, 25);
}

TEST_F(MouseShapeTest, OtherNumbersAndKeysAreRefused) {
  CreateMorvane();
  for (const std::uint32_t number : {0u, 1299u, 1304u, 1406u, 1506u, 1600u, 1605u, 1609u, 1699u, 1711u}) {
    Make(number, kBadInputProgrammingError);
    EXPECT_NE(fOutput.TakeAssertions(), "");
  }
  // The program has no cursor of that number, nor of those that the reports are about.
  const char* const range = "resourceID >= 0 && resourceID <= USHRT_MAX";
  const struct {
    const char* fKey;
    const char* fAssertion;
  } rows[] = {
      {"4711", ""},    {"x", "foundNumber"}, {"-1", range}, {"65536", range}, {"99999999999999999999", range},
      {"\xC3\xA9", ""}};
  for (const auto& row : rows) {
    Load(row.fKey, kOtherError);
    EXPECT_EQ(fOutput.TakeAssertions(), row.fAssertion) << row.fKey;
  }
  for (const char* key : {static_cast<const char*>(nullptr), ""}) Load(key, kBadInputProgrammingError);
  EXPECT_NE(fOutput.TakeAssertions(), "");
}

TEST_F(MouseShapeTest, ShapesComeFromTheProgramAndAreCloned) {
  CreateMorvane();
  Shape shape = Load("7", kOK);
  const HCURSOR cursor = CursorOf(shape);
  EXPECT_EQ(cursor,
            LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(7), IMAGE_CURSOR, 0, 0, LR_SHARED));
  TError error = kOtherError;
  const Shape clone = Checked(shape->IMouseShape_Clone(error), error, kOK);
  shape.reset();
  SetCursor(nullptr);
  EXPECT_EQ(CursorOf(clone), cursor);
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
}

}  // namespace NSMorvaneTest
