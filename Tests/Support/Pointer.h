// The mouse pointer, put somewhere for good.
#pragma once

#include <windows.h>

namespace NSMorvaneTest {

// Puts the pointer at a position of the screen with `put(position)` and waits, with `waitUntil(condition)`,
// until it is there to stay; gives what waitUntil gives.
//
// A display tells of moves late, one by one, and so takes the pointer back to where it has been: then it is
// put there again. By way of the neighbouring pixel, since a pointer that the system believes to be there
// already is not moved at all; and for a tenth of a second the system tells what it believes.
template <class TPut, class TWaitUntil>
auto PutPointer(const POINT& point, const TPut& put, const TWaitUntil& waitUntil) {
  constexpr ULONGLONG kBelief = 130;  // milliseconds
  constexpr ULONGLONG kAgain = 50;
  put(point);
  ULONGLONG lastAway = ::GetTickCount64();
  ULONGLONG lastPut = lastAway;
  return waitUntil([&] {
    POINT now = {};
    ::GetCursorPos(&now);
    const ULONGLONG time = ::GetTickCount64();
    if (now.x == point.x && now.y == point.y) return time - lastAway > kBelief;
    lastAway = time;
    if (time - lastPut > kAgain) {
      put({point.x ^ 1, point.y});
      put(point);
      lastPut = time;
    }
    return false;
  });
}

}  // namespace NSMorvaneTest
