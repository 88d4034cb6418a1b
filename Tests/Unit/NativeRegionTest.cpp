// Handles of regions that change hands.
#include <windows.h>

#include "Component/Portable/Surfaces/Region.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

TEST(NativeRegion, AHandleThatIsTakenOverEndsWithItsRegion) {
  const HRGN handle = CreateRectRgn(1, 1, 20, 20);
  { CRegion owned(handle, false); }
  EXPECT_EQ(0u, GetObjectType(handle));
}
