// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
