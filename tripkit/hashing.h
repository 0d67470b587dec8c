// One hash over several fields, for the records that are hashable as a whole.
#pragma once

#include <cstddef>
#include <functional>

namespace tripkit {

template <class... Fields>
std::size_t hashOf(const Fields&... fields) {
    std::size_t seed = 0;
    ((seed ^= std::hash<Fields>{}(fields) + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2)),
     ...);
    return seed;
}

}  // namespace tripkit
