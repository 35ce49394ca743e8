# SPDX-License-Identifier: MIT
# Fails unless the module's dynamic symbol table defines exactly one symbol, GetAppEntryObject.
# Run as: cmake -DNM=<nm> -DMODULE=<path> -P check-exports.cmake
execute_process(COMMAND ${NM} -D --defined-only ${MODULE}
    OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${MODULE}: nm failed (${status})")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(names)
foreach(line IN LISTS lines)
    string(REGEX REPLACE "^.* " "" name "${line}")
    list(APPEND names ${name})
endforeach()
if(NOT names STREQUAL "GetAppEntryObject")
    message(FATAL_ERROR "${MODULE}: exports [${names}], expected only GetAppEntryObject")
endif()
message(STATUS "${MODULE} exports only GetAppEntryObject")
