# SPDX-License-Identifier: MIT
# Fails unless the module's dynamic symbol table defines exactly one global symbol,
# GetAppEntryObject. Local entries (lower-case types) are not exported: the sanitizer build's
# linker leaves a local copy of a template instance in the table.
# Run as: cmake -DNM=<nm> -DMODULE=<path> -P check-exports.cmake
execute_process(COMMAND ${NM} -D --defined-only ${MODULE}
    OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${MODULE}: nm failed (${status})")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(names)
foreach(line IN LISTS lines)
    if(line MATCHES "^[0-9a-f]* [a-z] ")
        continue()
    endif()
    string(REGEX REPLACE "^.* " "" name "${line}")
    list(APPEND names ${name})
endforeach()
if(NOT names STREQUAL "GetAppEntryObject")
    message(FATAL_ERROR "${MODULE}: exports [${names}], expected only GetAppEntryObject")
endif()
message(STATUS "${MODULE} exports only GetAppEntryObject")
