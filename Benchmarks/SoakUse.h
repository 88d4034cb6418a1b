// What a process uses, and whether that has grown.
#pragma once

#include <string>

namespace NSSoak {

struct TUse {
  long long fBytes;  // committed memory of its own
  unsigned long fGdiObjects;
  unsigned long fUserObjects;  // 0 if not counted
};

// Counting USER objects can take seconds.
TUse MeasureUse(bool withUserObjects);

// One line on the standard output.
void Print(const std::string& what, const TUse& use);

// By more than 2 MiB, or 16 handles of a kind.
bool HasGrown(const TUse& before, const TUse& after);

}  // namespace NSSoak
