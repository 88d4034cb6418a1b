// The command line of a long run: names of options, each with its value.
#pragma once

#include <vector>

namespace NSSoak {

struct TOption {
  const char* fName;
  const char* fValue;  // the default one, and after ParseOptions the one that was given
  const char* fMeaning;
};

// False, after a word about the usage, if there is an option that is not known, one without its value, or one
// without a default that is not given.
bool ParseOptions(int argumentCount, char** arguments, std::vector<TOption>& options);

// The number of an option that is one, at least 1.
long long NumberOf(const TOption& option);

}  // namespace NSSoak
