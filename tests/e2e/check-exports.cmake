# SPDX-License-Identifier: MIT
# Fails unless the module exports exactly one symbol, GetAppEntryObject: of what
# `nm -D --defined-only` lists, every global symbol counts. Local entries (types t, d, b, r, s:
# the linker can leave some in the dynamic table, as the sanitizer build's linker does) are not
# exported and do not count.
# Run as: cmake -DNM=<nm> -DMODULE=<path> -P check-exports.cmake
execute_process(COMMAND ${NM} -D --defined-only ${MODULE}
    OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${MODULE}: nm failed (${status})")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(names)
foreach(line IN LISTS lines)
    if(line MATCHES "^[0-9a-fA-F]* *([A-Za-z]) (.+)$")
        set(type ${CMAKE_MATCH_1})
        set(name ${CMAKE_MATCH_2})
        if(NOT type MATCHES "^[tdbrs]$")
            list(APPEND names ${name})
        endif()
    else()
        message(FATAL_ERROR "${MODULE}: cannot read nm's line: ${line}")
    endif()
endforeach()
if(NOT names STREQUAL "GetAppEntryObject")
    message(FATAL_ERROR "${MODULE}: exports [${names}], expected only GetAppEntryObject")
endif()
message(STATUS "${MODULE} exports only GetAppEntryObject")
