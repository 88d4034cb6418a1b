// A list of all windows, for debugging: the title of each, how often it has been painted in the last seconds,
// and how long a paint took. It shows itself anew each second.
//
// There is one list at most. It is a plain native window, no window of the library's: clients do not hear of
// it, and no dialog blocks it.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>

namespace NSMorvane {

class CWindowRegistry;

// Opens the list of these windows, or brings it to the front if it is open.
void OpenWindowList(const boost::shared_ptr<CWindowRegistry>& windows);

// Whether this is the list. It must be left out wherever the windows of the application are put in order or
// activated: it is always in front of them.
bool IsWindowList(HWND hwnd);

// Called at the end of the run, in case the user has left it open.
void CloseWindowList();

}  // namespace NSMorvane
