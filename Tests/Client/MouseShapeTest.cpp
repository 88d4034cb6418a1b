// Mouse shapes: what the numbers load, and the pictures in the library's own resources.
#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

namespace {

// Numbers, and the cursors that they load; those from 32512 on are the system's.
constexpr std::pair<std::uint32_t, WORD> kShapes[] = {
    {1300, 32512}, {1301, 120},   {1302, 106}, {1303, 125}, {1400, 32514}, {1401, 32513},
    {1402, 32649}, {1403, 32512}, {1404, 113}, {1405, 101}, {1500, 111},   {1501, 112},
    {1502, 105},   {1503, 124},   {1504, 116}, {1505, 115}, {1606, 108},   {1607, 109},
    {1608, 110},   {1700, 107},   {1701, 114}, {1702, 102}, {1703, 104},   {1704, 126},
    {1705, 127},   {1706, 118},   {1707, 128}, {1708, 123}, {1709, 117},   {1710, 119}};

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
  for (const auto& [number, id] : kShapes) {
    const HMODULE module = id < 32512 ? library : nullptr;
    EXPECT_EQ(CursorOf(Make(number)), LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_CURSOR, 0, 0, LR_SHARED))
        << number;
  }
  // As they were drawn.
  for (const auto& [number, x, isColored] : {std::tuple{1404u, 11u, false}, {1405u, 8u, true}}) {
    ICONINFO info = {};
    ASSERT_TRUE(GetIconInfo(CursorOf(Make(number)), &info));
    EXPECT_EQ(info.xHotspot, x);
    EXPECT_EQ(info.hbmColor != nullptr, isColored);
    DeleteObject(info.hbmMask);
    DeleteObject(info.hbmColor);
  }
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
