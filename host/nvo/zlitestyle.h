// SPDX-License-Identifier: MIT
// Sizes in design units to device pixels.
#pragma once

#include "hostexport.h"

class ZHOST_API ZLiteStyle {
public:
    // `value` times the host's scale factor (1 unless the host is configured otherwise).
    static double dpiScaled(double value);
};
