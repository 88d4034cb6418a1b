// What is left of a view that has been deleted. To look is undefined, so the tests on the host, whose
// sanitizers would end them, do without it.
#include <new>

#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

// In memory that is still there afterwards.
TEST(DeletedView, IsNoGoodAnyMore) {
  FakeViewWindow window;
  alignas(CViewImpl) unsigned char memory[sizeof(CViewImpl)];
  CViewImpl* const view = new (memory) CViewImpl(window.Root(), "view");
  EXPECT_TRUE(view->CheckInvariant());
  view->~CViewImpl();
  EXPECT_FALSE(view->CheckInvariant());
  EXPECT_EQ(666u, view->GetFlags());
  EXPECT_EQ(666u, view->GetDrawMode());
}
