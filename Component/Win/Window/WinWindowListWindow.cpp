#include "Component/Win/Window/WinWindowListWindow.h"

namespace NSMorvane {

// The window list is not built yet: nothing opens.
void OpenWindowList() {}

}  // namespace NSMorvane
