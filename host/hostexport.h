// SPDX-License-Identifier: MIT
// Symbol visibility of the host libraries. Every library of this project is built with hidden
// symbols; what a host library publishes to add-ons is marked ZHOST_API here.
#pragma once

#define ZHOST_API __attribute__((visibility("default")))
