// The list of all windows, for debugging.
#pragma once

namespace NSMorvane {

// Will open it, or bring it to the front; it is not built yet.
void OpenWindowList();

}  // namespace NSMorvane
