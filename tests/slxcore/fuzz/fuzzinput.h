// SPDX-License-Identifier: MIT
// A fuzz input read a byte at a time, zero when it runs out: how the object model's fuzz targets
// turn their bytes into steps and arguments.
#pragma once

#include <cstddef>
#include <cstdint>

struct FuzzInput {
    const std::uint8_t* data;
    std::size_t size;
    std::size_t at = 0;
    bool more() const { return at < size; }
    int next() { return at < size ? data[at++] : 0; }
};
