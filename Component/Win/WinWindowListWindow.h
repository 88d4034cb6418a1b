// The list of all windows, for debugging.
#pragma once

namespace NSMorvane {

// Opens it, or brings it to the front.
void OpenWindowList();

}  // namespace NSMorvane
