// Mouse shapes: what the numbers load, and the pictures in the library's own resources.
#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

namespace {

struct TPicture {
  WORD fCursor;
  int fSize;
  int fBits;
  POINT fHotSpot;
};

// Numbers, and the cursors that they load; those from 32512 on are the system's, the others are groups of
// pictures.
const struct {
  std::uint32_t fNumber;
  WORD fId;
  std::vector<TPicture> fPictures;
} kShapes[] = {
    {1300, 32512, {}},
    {1301, 120, {{21, 32, 1, {1, 1}}}},
    {1302, 106, {{5, 32, 1, {0, 0}}}},
    {1303, 125, {{24, 32, 1, {0, 0}}}},
    {1400, 32514, {}},
    {1401, 32513, {}},
    {1402, 32649, {}},
    {1403, 32512, {}},
    {1404, 113, {{12, 32, 1, {11, 17}}}},
    {1405, 101, {{1, 32, 4, {8, 8}}}},
    {1500, 111, {{10, 32, 1, {15, 13}}}},
    {1501, 112, {{11, 32, 1, {15, 13}}}},
    {1502, 105, {{4, 32, 4, {6, 7}}}},
    {1503, 124, {{23, 32, 1, {14, 12}}}},
    {1504, 116, {{16, 32, 1, {15, 15}}, {17, 16, 1, {8, 8}}}},
    {1505, 115, {{14, 32, 1, {15, 15}}, {15, 16, 1, {8, 8}}}},
    {1606, 108, {{7, 32, 1, {7, 7}}}},
    {1607, 109, {{8, 32, 1, {7, 7}}}},
    {1608, 110, {{9, 32, 1, {7, 7}}}},
    {1700, 107, {{6, 32, 1, {1, 15}}}},
    {1701, 114, {{13, 32, 4, {4, 12}}}},
    {1702, 102, {{2, 32, 4, {2, 15}}}},
    {1703, 104, {{3, 32, 4, {6, 7}}}},
    {1704, 126, {{25, 32, 1, {4, 4}}}},
    {1705, 127, {{26, 32, 1, {8, 23}}}},
    {1706, 118, {{18, 32, 1, {8, 23}}}},
    {1707, 128, {{27, 32, 1, {13, 15}}}},
    {1708, 123, {{22, 32, 1, {16, 15}}}},
    {1709, 117, {{19, 32, 1, {10, 11}}}},
    {1710, 119, {{20, 32, 1, {8, 13}}}},
};

// A resource of the library, as words; empty if there is none.
std::vector<int> ResourceOf(WORD id, const wchar_t* type) {
  const HMODULE library = GetModuleHandleW(L"Morvane.dll");
  const HRSRC resource = FindResourceW(library, MAKEINTRESOURCEW(id), type);
  if (!resource) return {};
  const auto words = static_cast<const WORD*>(LockResource(LoadResource(library, resource)));
  return {words, words + SizeofResource(library, resource) / sizeof(WORD)};
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
  const HMODULE library = GetModuleHandleW(L"Morvane.dll");
  for (const auto& [number, id, pictures] : kShapes) {
    SCOPED_TRACE(number);
    const HMODULE module = id < 32512 ? library : nullptr;
    EXPECT_EQ(CursorOf(Make(number)),
              LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_CURSOR, 0, 0, LR_SHARED));
    if (!module) continue;
    // As they were drawn.
    const std::vector<int> group = ResourceOf(id, RT_GROUP_CURSOR);
    ASSERT_EQ(group.size(), 3 + 7 * pictures.size());
    for (std::size_t i = 0; i < pictures.size(); ++i) {
      const auto& [cursor, size, bits, hotSpot] = pictures[i];
      const std::vector<int> words = ResourceOf(cursor, RT_CURSOR);
      // Palette, colours and mask, which have rows of whole 32 bits, behind hot spot and header.
      const int bytes = 4 + 40 + (4 << bits) + ((size * bits + 31) / 32 * 4 + 4) * size;
      const int* const entry = &group[3 + 7 * i];
      EXPECT_EQ((std::vector<int>(entry, entry + 7)),
                (std::vector<int>{size, 2 * size, 1, bits, bytes, 0, cursor}));
      ASSERT_EQ(words.size() * 2, static_cast<std::size_t>(bytes));
      EXPECT_EQ((std::vector<int>{words[0], words[1], words[4], words[6], words[9]}),
                (std::vector<int>{hotSpot.x, hotSpot.y, size, 2 * size, bits}));
    }
  }
  int groups = 0;
  for (WORD id = 100; id < 130; ++id) groups += !ResourceOf(id, RT_GROUP_CURSOR).empty();
  EXPECT_EQ(groups, 25);
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
}

TEST_F(MouseShapeTest, OtherNumbersAndKeysAreRefused) {
  CreateMorvane();
  for (const std::uint32_t number : {0u, 1299u, 1304u, 1406u, 1506u, 1605u, 1609u, 1711u})
    Make(number, kBadInputProgrammingError);
  EXPECT_NE(fOutput.TakeAssertions(), "");
  for (const char* key : {"4711", "x", "-1", "99999999999999999999", "\xC3\xA9"}) Load(key, kOtherError);
  Load("", kBadInputProgrammingError);
  EXPECT_NE(fOutput.TakeAssertions(), "");

  // The program has one of its own.
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
