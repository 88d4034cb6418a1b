#include "SoakOptions.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace NSSoak {

bool ParseOptions(int argumentCount, char** arguments, std::vector<TOption>& options) {
  std::vector<TOption> given = options;
  bool good = argumentCount % 2 == 1;
  for (int i = 1; good && i < argumentCount; i += 2) {
    const auto option = std::find_if(given.begin(), given.end(), [&](const TOption& known) {
      return std::strcmp(known.fName, arguments[i]) == 0;
    });
    good = option != given.end();
    if (good) option->fValue = arguments[i + 1];
  }
  good = good && std::all_of(given.begin(), given.end(), [](const TOption& option) { return option.fValue; });
  if (good) {
    options = given;
    return true;
  }
  std::fprintf(stderr, "usage: %s [option value]...\n", arguments[0]);
  for (const TOption& option : options)
    std::fprintf(stderr, "  %-12s %s (%s)\n", option.fName, option.fMeaning,
                 option.fValue ? option.fValue : "must be given");
  return false;
}

long long NumberOf(const TOption& option) { return std::max(std::atoll(option.fValue), 1LL); }

}  // namespace NSSoak
