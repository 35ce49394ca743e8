// SPDX-License-Identifier: MIT
// The host calls with which the binding finds and loads the tagging library, as the add-on's code
// makes them: the engine's test executable is linked with --wrap for _nvo_GetDirInfo and
// _Xloadlibrary (tests/engine/CMakeLists.txt), so each call from the add-on passes through
// hostcalls.cpp, is written down, and goes on to the host unchanged.
#pragma once

#include <string>
#include <vector>

namespace hostcalls {

// "GetDirInfo <id>" and "loadlibrary <path in UTF-8>", in the order they were made.
const std::vector<std::string>& journal();
void clear();

}  // namespace hostcalls
