// The windows of the library: which there are, which the library has hidden, and how they lie on the screen.
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

// A window stands here from the time that it is wired up until it is released.
class CWindowRegistry : CNotCopied {
 public:
  using TWindows = std::vector<boost::shared_ptr<CWinWindow>>;

  // After this, the next Add cannot fail.
  void MakeRoomForOne();
  void Add(const boost::shared_ptr<CWinWindow>& window);
  void Remove(const CWinWindow* window);

  // All, in order of creation. A window finds its place here again by its number in this list.
  TWindows GetWindows() const;
  bool IsAnyWindow() const;
  bool IsAnyOfKind(TWindowKind kind) const;
  // Shown, and always on top.
  bool IsAnyAlwaysOnTop() const;
  // Null for a handle that is none of theirs.
  CWinWindow* Find(HWND hwnd) const;

  // --- What is shown

  // The library hides a window natively or by moving it above the screen; such a one counts as not shown.
  bool IsHidden(HWND hwnd) const;
  // Does nothing for one that is hidden already.
  void AddHidden(HWND hwnd);
  void RemoveHidden(HWND hwnd);
  // After this, the next AddHidden cannot fail.
  void MakeRoomForHidden();
  std::size_t CountHidden() const { return fHidden.size(); }
  // Natively visible and not hidden by the library. For any window of the process.
  bool IsShown(HWND hwnd) const;
  // The shown top-level windows of the process, front window first, without child windows.
  std::vector<HWND> GetShownHwndsZ() const;
  // Those of the library, front window first.
  TWindows GetVisibleWindowsZ() const;
  TWindows GetVisibleDocumentWindows() const;

  // Natively, those that have been shown. They go out of sight while another application is active.
  void ShowFloatingWindows(bool show) const;

  // --- The end

  // Releases all windows at once, oldest first, without asking anybody. Throws nothing.
  void ReleaseAll();

  // Document windows count until they end, which for one that handles a message is after its release.
  void CountDocumentWindow(int change) { fDocumentWindows += change; }
  bool IsAnyDocumentWindowLeft() const { return fDocumentWindows != 0; }

 private:
  std::vector<boost::weak_ptr<CWinWindow>> fWindows;
  std::vector<HWND> fHidden;
  int fDocumentWindows = 0;
};

}  // namespace NSMorvane
