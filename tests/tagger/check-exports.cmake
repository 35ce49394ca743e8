# SPDX-License-Identifier: MIT
# The tagging library exports exactly its six functions.
execute_process(COMMAND nm -D --defined-only ${LIBRARY} OUTPUT_VARIABLE out RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${out}")
set(names "")
foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[0-9a-fA-F]* *[A-Za-z] +" "" name "${line}")
    list(APPEND names "${name}")
endforeach()
list(SORT names)
set(expected CloseDictionary GetPinyinObject LoadPinYinLibrary OpenDictionary PinyinTagSen
             ReleasePinyinObject)
if(NOT names STREQUAL expected)
    message(FATAL_ERROR "exports are '${names}', expected '${expected}'")
endif()
