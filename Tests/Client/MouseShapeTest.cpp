// Mouse shapes: what the numbers load, and the pictures in the library's own resources.
#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

namespace {

// Numbers, and the cursors that they load: from 32512 on the system's, before that groups of pictures.
const std::pair<std::uint32_t, WORD> kShapes[] = {
    {1300, 32512}, {1301, 120},   {1302, 106}, {1303, 125}, {1400, 32514}, {1401, 32513},
    {1402, 32649}, {1403, 32512}, {1404, 113}, {1405, 101}, {1500, 111},   {1501, 112},
    {1502, 105},   {1503, 124},   {1504, 116}, {1505, 115}, {1606, 108},   {1607, 109},
    {1608, 110},   {1700, 107},   {1701, 114}, {1702, 102}, {1703, 104},   {1704, 126},
    {1705, 127},   {1706, 118},   {1707, 128}, {1708, 123}, {1709, 117},   {1710, 119}};

// The pictures: the group, the number, the size, bits for a pixel, the hot spot.
struct TPicture {
  WORD fGroup;
  WORD fCursor;
  int fSize;
  int fBits;
  POINT fHotSpot;
};
const TPicture kPictures[] = {
    {101, 1, 32, 4, {8, 8}},    {102, 2, 32, 4, {2, 15}},   {104, 3, 32, 4, {6, 7}},
    {105, 4, 32, 4, {6, 7}},    {106, 5, 32, 1, {0, 0}},    {107, 6, 32, 1, {1, 15}},
    {108, 7, 32, 1, {7, 7}},    {109, 8, 32, 1, {7, 7}},    {110, 9, 32, 1, {7, 7}},
    {111, 10, 32, 1, {15, 13}}, {112, 11, 32, 1, {15, 13}}, {113, 12, 32, 1, {11, 17}},
    {114, 13, 32, 4, {4, 12}},  {115, 14, 32, 1, {15, 15}}, {115, 15, 16, 1, {8, 8}},
    {116, 16, 32, 1, {15, 15}}, {116, 17, 16, 1, {8, 8}},   {117, 19, 32, 1, {10, 11}},
    {118, 18, 32, 1, {8, 23}},  {119, 20, 32, 1, {8, 13}},  {120, 21, 32, 1, {1, 1}},
    {123, 22, 32, 1, {16, 15}}, {124, 23, 32, 1, {14, 12}}, {125, 24, 32, 1, {0, 0}},
    {126, 25, 32, 1, {4, 4}},   {127, 26, 32, 1, {8, 23}},  {128, 27, 32, 1, {13, 15}}};

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

TEST_F(MouseShapeTest, EveryNumberLoadsItsCursor) {
  CreateMorvane();
  for (const auto& [number, id] : kShapes) {
    const HMODULE module = id < 32512 ? GetModuleHandleW(L"Morvane.dll") : nullptr;
    EXPECT_EQ(CursorOf(Make(number)), LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_CURSOR, 0, 0, LR_SHARED))
        << number;
  }
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
}

// All of them, and as they were drawn.
TEST_F(MouseShapeTest, Pictures) {
  using Words = std::vector<int>;
  std::map<WORD, Words> groups;
  for (const auto& [group, cursor, size, bits, hotSpot] : kPictures) {
    SCOPED_TRACE(cursor);
    // Palette, colours and mask, which have rows of whole 32 bits, behind hot spot and header.
    const int bytes = 4 + 40 + (4 << bits) + ((size * bits + 31) / 32 * 4 + 4) * size;
    const Words words = ResourceOf(cursor, RT_CURSOR);
    ASSERT_EQ(words.size() * 2, static_cast<std::size_t>(bytes));
    EXPECT_EQ((Words{words[0], words[1], words[4], words[6], words[9]}),
              (Words{hotSpot.x, hotSpot.y, size, 2 * size, bits}));
    const Words entry = {size, 2 * size, 1, bits, bytes, 0, cursor};
    groups[group].insert(groups[group].end(), entry.begin(), entry.end());
  }
  for (WORD id = 100; id < 130; ++id) {
    const Words group = ResourceOf(id, RT_GROUP_CURSOR);
    ASSERT_EQ(group.empty(), !groups.contains(id)) << id;
    if (!group.empty()) {
      EXPECT_EQ(Words(group.begin() + 3, group.end()), groups[id]) << id;
    }
  }
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
