// The list of all windows, for debugging.
#pragma once

namespace NSMorvane {

// Not built yet: will open the list or bring it to the front.
void OpenWindowList();

}  // namespace NSMorvane
