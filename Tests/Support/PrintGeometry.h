// How points, sizes and rectangles look in the messages of failed tests.
#pragma once

#include <ostream>

#include "../../Interface/MorvaneTypes.h"

namespace NSMorvane {

inline void PrintTo(const TPoint& p, std::ostream* out) { *out << "(" << p.fX << ", " << p.fY << ")"; }
inline void PrintTo(const TSize& s, std::ostream* out) {
  *out << "(" << s.fWidth << " x " << s.fHeight << ")";
}
inline void PrintTo(const TRect& r, std::ostream* out) {
  *out << "(" << r.fLeft << ", " << r.fTop << ", " << r.fRight << ", " << r.fBottom << ")";
}

}  // namespace NSMorvane
