// Where a window first appears: documents in a cascade, dialogs in the middle of their owner, palettes beside
// their document. All rectangles are frame rectangles in pixels, in screen coordinates.
//
// The factories in Factories.h place the windows whose behaviours derive from the CDefault... classes, unless
// the behaviour's constructor has moved the window or the class says otherwise:
//   static constexpr TFirstPlace kFirstPlace = kFirstPlaceAsMade;
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "Windows.h"

namespace NSMorvane {

// --- The arithmetic

enum : std::int32_t {
  kCascadeMargin = 24,  // from the corner of the work area to the first document
  kCascadeStep = 28,    // from one document to the next, in both directions
  kBesideGap = 8        // between a palette and its document
};

// `rect` moved so that it lies in `area`; if it is too large, its top left corner lies there.
inline TRect KeptIn(const TRect& rect, const TRect& area) {
  const std::int32_t left = std::max(std::min(rect.fLeft, area.fRight - WidthOf(rect)), area.fLeft);
  const std::int32_t top = std::max(std::min(rect.fTop, area.fBottom - HeightOf(rect)), area.fTop);
  return {left, top, left + WidthOf(rect), top + HeightOf(rect)};
}

// A rectangle of this size in the middle of `over`, kept in `area`.
inline TRect CentredRect(const TSize& size, const TRect& over, const TRect& area) {
  const std::int32_t left = over.fLeft + (WidthOf(over) - size.fWidth) / 2;
  const std::int32_t top = over.fTop + (HeightOf(over) - size.fHeight) / 2;
  return KeptIn({left, top, left + size.fWidth, top + size.fHeight}, area);
}

// A rectangle of this size to the right of a window; if there is no room in `area`, to its left; if there is
// no room either, in the upper right corner of the window's client area, so that it never covers title and
// menus.
inline TRect BesideRect(const TSize& size, const TRect& frame, const TRect& client, const TRect& area) {
  TPoint corner = {frame.fRight + kBesideGap, frame.fTop};
  if (corner.fX + size.fWidth > area.fRight) corner.fX = frame.fLeft - kBesideGap - size.fWidth;
  if (corner.fX < area.fLeft) corner = {client.fRight - kBesideGap - size.fWidth, client.fTop + kBesideGap};
  return KeptIn({corner.fX, corner.fY, corner.fX + size.fWidth, corner.fY + size.fHeight}, area);
}

// A rectangle of this size at the first place down the diagonal of `area` where it fits and where none of
// `others` has its corner. If it fits nowhere, it gets a free place partly outside.
inline TRect CascadedRect(const TSize& size, const std::vector<TRect>& others, const TRect& area) {
  const auto at = [&](std::size_t place) {
    const std::int32_t shift = kCascadeMargin + kCascadeStep * static_cast<std::int32_t>(place);
    const std::int32_t left = area.fLeft + shift, top = area.fTop + shift;
    return TRect{left, top, left + size.fWidth, top + size.fHeight};
  };
  const auto isTaken = [&](const TRect& rect) {
    return std::any_of(others.begin(), others.end(), [&](const TRect& other) {
      return std::max(rect.fLeft, other.fLeft) - std::min(rect.fLeft, other.fLeft) < kCascadeStep / 2 &&
             std::max(rect.fTop, other.fTop) - std::min(rect.fTop, other.fTop) < kCascadeStep / 2;
    });
  };
  // Each of the other windows takes at most one place.
  const std::size_t places = others.size() + 1;
  TRect firstFree = at(0);
  for (std::size_t place = places; place-- > 0;)
    if (!isTaken(at(place))) firstFree = at(place);
  for (std::size_t place = 0; place < places; ++place) {
    const TRect rect = at(place);
    if (!isTaken(rect) && rect.fRight <= area.fRight && rect.fBottom <= area.fBottom) return rect;
  }
  // The title must stay visible.
  const bool isSeen =
      firstFree.fLeft + kCascadeStep <= area.fRight && firstFree.fTop + kCascadeStep <= area.fBottom;
  return isSeen ? firstFree : at(0);
}

// The work area of the monitor that shows the most of `rect`, or of the main monitor if none shows any of it.
inline TRect WorkAreaFor(const TMonitorList& monitors, const TRect& rect) {
  TRect found = monitors.fMonitors[monitors.fMainMonitorIndex].fWorkArea;
  std::int64_t most = 0;
  for (std::uint32_t i = 0; i < monitors.fMonitorCount; ++i) {
    const TRect& bounds = monitors.fMonitors[i].fBounds;
    const std::int64_t width =
        std::int64_t{std::min(rect.fRight, bounds.fRight)} - std::max(rect.fLeft, bounds.fLeft);
    const std::int64_t height =
        std::int64_t{std::min(rect.fBottom, bounds.fBottom)} - std::max(rect.fTop, bounds.fTop);
    if (width <= 0 || height <= 0 || width * height <= most) continue;
    most = width * height;
    found = monitors.fMonitors[i].fWorkArea;
  }
  return found;
}

// --- Windows that are there

// Converts the result of IWindow_GetFrameRect, of any window except a floating one, to screen coordinates.
inline TRect FrameOnScreen(const TMonitorList& monitors, const TRect& frame) {
  // A maximized window covers the work area of a monitor, and its rectangle is in screen coordinates already.
  for (std::uint32_t i = 0; i < monitors.fMonitorCount; ++i) {
    const TRect& area = monitors.fMonitors[i].fWorkArea;
    if (frame.fLeft <= area.fLeft && frame.fTop <= area.fTop && frame.fRight >= area.fRight &&
        frame.fBottom >= area.fBottom)
      return frame;
  }
  const TMonitor& main = monitors.fMonitors[monitors.fMainMonitorIndex];
  const std::int32_t x = main.fWorkArea.fLeft - main.fBounds.fLeft;
  const std::int32_t y = main.fWorkArea.fTop - main.fBounds.fTop;
  return {frame.fLeft + x, frame.fTop + y, frame.fRight + x, frame.fBottom + y};
}

// The frame of a window; for a minimized window, the frame that it returns to. Not for floating windows.
// Throws XFailed.
inline TRect FrameOnScreen(const TMonitorList& monitors, IWindow& window) {
  TRect frame = {};
  ThrowIfFailed(window.IWindow_GetFrameRect(frame));
  return FrameOnScreen(monitors, frame);
}

// The documents, modeless dialogs and modal dialogs that are shown, front window first in each list. Palettes
// are left out. Throws XFailed.
struct TShownWindows {
  CVectorWindowReceiver fDocuments, fModelessDialogs, fModalDialogs;

  explicit TShownWindows(IMorvane& morvane) {
    ThrowIfFailed(morvane.IMorvane_GetDocumentWindowsZ(fDocuments));
    ThrowIfFailed(morvane.IMorvane_GetModelessDialogsZ(fModelessDialogs));
    ThrowIfFailed(morvane.IMorvane_GetModalDialogsZ(fModalDialogs));
  }
  // The first window for which `isWanted` is true, or null.
  template <class TTest>
  IWindow* Find(TTest&& isWanted) const {
    for (const CVectorWindowReceiver* list : {&fModalDialogs, &fModelessDialogs, &fDocuments})
      for (IWindow* const window : list->fWindows)
        if (isWanted(*window)) return window;
    return nullptr;
  }
  IWindow* FrontDocument() const {
    return fDocuments.fWindows.empty() ? nullptr : fDocuments.fWindows.front();
  }
};

// The documents alone, which are all that most windows need.
inline std::vector<IWindow*> ShownDocuments(IMorvane& morvane) {
  CVectorWindowReceiver documents;
  ThrowIfFailed(morvane.IMorvane_GetDocumentWindowsZ(documents));
  return documents.fWindows;
}

// --- Placing a window
//
// Call these functions in the constructor of the window's behaviour, before the window is shown, or later.
// Set the size first, then the place. If something goes wrong they return its code, and the window stays
// where it is.

// Moves both rectangles of the window to another top left corner: the one that it shows, and the other one.
template <class TKind>
TError MoveTo(TKind& window, const TPoint& corner) {
  return ChangeState(window, [&](auto& state) {
    for (TRect* const rect : {&state.fPlacement.fUserRect, &state.fPlacement.fIdealRect})
      *rect = {corner.fX, corner.fY, corner.fX + WidthOf(*rect), corner.fY + HeightOf(*rect)};
  });
}

// What the three functions below have in common: `place` finds the rectangle for the size of the window.
template <class TKind, class TPlace>
TError PlaceWith(IMorvane& morvane, TKind& window, TPlace&& place) {
  return Guarded([&] {
    typename TWindowTraits<TKind>::TState state;
    ThrowIfFailed((window.*TWindowTraits<TKind>::kGetState)(state));
    TMonitorList monitors;
    ThrowIfFailed(morvane.IMorvane_GetMonitors(monitors));
    const TRect shown = ShownRect(state);
    const TRect rect = place(monitors, TSize{WidthOf(shown), HeightOf(shown)});
    return MoveTo(window, {rect.fLeft, rect.fTop});
  });
}

// Places a document window on the diagonal of the front document's monitor, where no other document has its
// corner.
template <class TKind>
TError PlaceCascaded(IMorvane& morvane, TKind& window) {
  return PlaceWith(morvane, window, [&](const TMonitorList& monitors, const TSize& size) {
    std::vector<TRect> others;
    for (IWindow* const other : ShownDocuments(morvane))
      if (other != &WindowOf(window)) others.push_back(FrameOnScreen(monitors, *other));
    return CascadedRect(size, others, WorkAreaFor(monitors, others.empty() ? TRect{} : others.front()));
  });
}

// Places a window in the middle of its owner, completely on the owner's monitor. Without an owner, or with an
// owner that is not a window of the library, the active window takes the owner's place, or else the front
// document. Without either, the window is placed in the middle of the main monitor.
template <class TKind>
TError PlaceCentred(IMorvane& morvane, TKind& window, IModalOwner* owner = nullptr) {
  return PlaceWith(morvane, window, [&](const TMonitorList& monitors, const TSize& size) {
    const TShownWindows shown(morvane);
    TNativeWindow wanted = {nullptr};
    if (owner) ThrowIfFailed(owner->IModalOwner_GetNativeWindow(wanted));
    IWindow* over = nullptr;
    if (wanted.fHwnd) {
      over = shown.Find([&](IWindow& each) {
        TNativeWindow native = {nullptr};
        return each.IWindow_GetNativeWindow(native) == kOK && native.fHwnd == wanted.fHwnd;
      });
    }
    const IWindow* const self = &WindowOf(window);
    if (!over) {
      over = shown.Find([&](IWindow& each) {
        TFlag isActive = 0;
        return &each != self && each.IWindow_IsActive(isActive) == kOK && isActive != 0;
      });
    }
    if (!over) over = shown.FrontDocument();
    const TRect area = WorkAreaFor(monitors, over ? FrameOnScreen(monitors, *over) : TRect{});
    return CentredRect(size, over && over != self ? FrameOnScreen(monitors, *over) : area, area);
  });
}

// Places a window beside `document`, or beside the front document if it is null: to its right, else to its
// left, else in the upper right corner of its client area. Without documents, it is placed in the upper right
// corner of the main monitor's work area.
template <class TKind>
TError PlaceBeside(IMorvane& morvane, TKind& window, IWindow* document = nullptr) {
  return PlaceWith(morvane, window, [&](const TMonitorList& monitors, const TSize& size) {
    if (!document) {
      const std::vector<IWindow*> documents = ShownDocuments(morvane);
      if (!documents.empty()) document = documents.front();
    }
    if (!document) {
      const TRect area = WorkAreaFor(monitors, TRect{});
      return BesideRect(size, area, area, area);
    }
    const TRect frame = FrameOnScreen(monitors, *document);
    TRect client = {};
    ThrowIfFailed(document->IWindow_FrameRectToClientRect(frame, client));
    return BesideRect(size, frame, client, WorkAreaFor(monitors, frame));
  });
}

// --- For the factories

// Places a window whose behaviour has just been made. `made` is the rectangle that the window had before: if
// the behaviour has moved the top left corner since then, the window stays where it is. It also stays without
// a root object (see CRootObjectScope), or if something fails.
template <class TBehavior, class TKind>
void GiveFirstPlace(TKind& window, const TRect& made, IModalOwner* owner) {
  if constexpr (requires { TBehavior::kFirstPlace; }) {
    IMorvane* const morvane = RootObject();
    typename TWindowTraits<TKind>::TState state;
    if (!morvane || (window.*TWindowTraits<TKind>::kGetState)(state) != kOK) return;
    const TRect now = ShownRect(state);
    if (now.fLeft != made.fLeft || now.fTop != made.fTop) return;
    if (TBehavior::kFirstPlace == kFirstPlaceCascaded) PlaceCascaded(*morvane, window);
    if (TBehavior::kFirstPlace == kFirstPlaceCentred) PlaceCentred(*morvane, window, owner);
    if (TBehavior::kFirstPlace == kFirstPlaceBeside) PlaceBeside(*morvane, window);
  }
}

}  // namespace NSMorvane
