// Mouse shapes: what the numbers load, and the pictures in the library's own resources.
#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

namespace {

// Of 32 by 32 pixels.
const struct {
  std::uint32_t fNumber;
  WORD fSystemCursor;  // 0 for one of the library's own
  WORD fGroup;
  int fBits;
  std::pair<DWORD, DWORD> fHotSpot;
} kShapes[] = {{1300, 32512, 0, 0, {0, 0}}, {1301, 0, 120, 1, {1, 1}},   {1302, 0, 106, 1, {0, 0}},
               {1303, 0, 125, 1, {0, 0}},   {1400, 32514, 0, 0, {0, 0}}, {1401, 32513, 0, 0, {0, 0}},
               {1402, 32649, 0, 0, {0, 0}}, {1403, 32512, 0, 0, {0, 0}}, {1404, 0, 113, 1, {11, 17}},
               {1405, 0, 101, 4, {8, 8}},   {1500, 0, 111, 1, {15, 13}}, {1501, 0, 112, 1, {15, 13}},
               {1502, 0, 105, 4, {6, 7}},   {1503, 0, 124, 1, {14, 12}}, {1504, 0, 116, 1, {15, 15}},
               {1505, 0, 115, 1, {15, 15}}, {1606, 0, 108, 1, {7, 7}},   {1607, 0, 109, 1, {7, 7}},
               {1608, 0, 110, 1, {7, 7}},   {1700, 0, 107, 1, {1, 15}},  {1701, 0, 114, 4, {4, 12}},
               {1702, 0, 102, 4, {2, 15}},  {1703, 0, 104, 4, {6, 7}},   {1704, 0, 126, 1, {4, 4}},
               {1705, 0, 127, 1, {8, 23}},  {1706, 0, 118, 1, {8, 23}},  {1707, 0, 128, 1, {13, 15}},
               {1708, 0, 123, 1, {16, 15}}, {1709, 0, 117, 1, {10, 11}}, {1710, 0, 119, 1, {8, 13}}};

HMODULE Library() { return GetModuleHandleW(L"Morvane.dll"); }

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
    ICONINFO info = {};
    BITMAP mask = {}, colors = {};
    ASSERT_TRUE(GetIconInfo(cursor, &info));
    GetObjectW(info.hbmMask, sizeof(mask), &mask);
    if (info.hbmColor) GetObjectW(info.hbmColor, sizeof(colors), &colors);
    EXPECT_FALSE(info.fIcon);
    EXPECT_EQ(std::pair(info.xHotspot, info.yHotspot), shape.fHotSpot);
    EXPECT_EQ(mask.bmWidth, 32);
    EXPECT_EQ(colors.bmWidth, shape.fBits > 1 ? 32 : 0);
    DeleteObject(info.hbmMask);
    DeleteObject(info.hbmColor);
  }
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
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
