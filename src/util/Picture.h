#pragma once
#include <cstdint>
#include <vector>

/// Pixels in rows from the top, one number each: premultiplied ARGB. A value.
struct Picture {
    uint32_t width = 0, height = 0;
    std::vector<uint32_t> pixels = {};
    friend bool operator==(const Picture&, const Picture&) = default;
};
