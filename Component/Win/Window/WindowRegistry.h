// The windows of the library: which exist, which the library has hidden, and their z-order.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <cstdint>
#include <vector>

#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class CWinWindow;
enum TWindowKind : std::uint32_t;

// A window is registered from its wiring up until its release.
class CWindowRegistry : CNotCopied {
 public:
  using TWindows = std::vector<boost::shared_ptr<CWinWindow>>;

  // After this, the next Add cannot fail.
  void MakeRoomForOne();
  void Add(const boost::shared_ptr<CWinWindow>& window);
  void Remove(const CWinWindow* window);

  // All windows, in order of creation. The window menu refers to a window by its index in this list.
  TWindows GetWindows() const;
  bool IsAnyWindow() const;
  bool IsAnyOfKind(TWindowKind kind) const;
  // Whether a shown window is always on top.
  bool IsAnyAlwaysOnTop() const;
  // Null if the handle belongs to none of them.
  CWinWindow* Find(HWND hwnd) const;

  // --- What is shown

  // The library hides a window natively or by moving it above the screen. Such a window counts as not shown.
  bool IsHidden(HWND hwnd) const;
  // Does nothing for a window that is hidden already.
  void AddHidden(HWND hwnd);
  void RemoveHidden(HWND hwnd);
  // After this, the next AddHidden cannot fail.
  void MakeRoomForHidden();
  std::size_t CountHidden() const { return fHidden.size(); }
  // Natively visible and not hidden by the library. For any window of the process.
  bool IsShown(HWND hwnd) const;
  // The shown top-level windows of the process, front window first, without child windows and the list of
  // windows.
  std::vector<HWND> GetShownHwndsZ() const;
  // The shown windows of the library, front window first.
  TWindows GetVisibleWindowsZ() const;
  TWindows GetVisibleDocumentWindows() const;

  // Shows or hides, natively, the floating windows that have been shown. They are hidden while another
  // application is active.
  void ShowFloatingWindows(bool show) const;

  // --- The end

  // Releases all windows at once, oldest first, without asking the client. Does not throw.
  void ReleaseAll();

  // Document windows are counted until they end; a window that is handling a message ends after its release.
  void CountDocumentWindow(int change) { fDocumentWindows += change; }
  bool IsAnyDocumentWindowLeft() const { return fDocumentWindows != 0; }

 private:
  // The plain pointer spares a lock wherever one window is looked for among many.
  struct TEntry {
    CWinWindow* fWindow;
    boost::weak_ptr<CWinWindow> fReference;
  };

  std::vector<TEntry> fWindows;
  std::vector<HWND> fHidden;
  int fDocumentWindows = 0;
};

}  // namespace NSMorvane
