// Tables.
#pragma once

#include <tuple>
#include <vector>

namespace NSMorvaneTest {

// A table, whose rows a loop takes apart.
template <class... TColumns>
using Rows = std::vector<std::tuple<TColumns...>>;

}  // namespace NSMorvaneTest
