// The windows of the library: which there are, and how they lie on the screen.
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

  // Front window first, without those that the library has hidden.
  TWindows GetVisibleWindowsZ() const;
  TWindows GetVisibleDocumentWindows() const;

  // Releases all windows at once, oldest first, without asking anybody. Throws nothing.
  void ReleaseAll();

  // Document windows count until they end, which for one that handles a message is after its release.
  void CountDocumentWindow(int change) { fDocumentWindows += change; }
  bool IsAnyDocumentWindowLeft() const { return fDocumentWindows != 0; }

 private:
  std::vector<boost::weak_ptr<CWinWindow>> fWindows;
  int fDocumentWindows = 0;
};

extern CWindowRegistry* gWindowRegistry;

}  // namespace NSMorvane
