# SPDX-License-Identifier: MIT
# Run by CPack (CPACK_PRE_BUILD_SCRIPTS) on the files staged for the Debian package, to lay them
# out as Debian wants them. `cmake --install` lays the project out under its prefix with the add-on
# directory inside bin/ (bin/addons/zphoneticsymbol/, beside the host programs, where the add-on
# looks for itself); under /usr that is no place for a directory. So the package keeps the whole
# installed tree as the program's own under /usr/lib/zphonetic/ (bin/, the host libraries, the
# tagging library, share/zphonetic/), puts in /usr/bin a link to each program, and leaves the
# desktop entry, the icon and the headers where the desktop and compilers look. It adds the
# files Debian asks of every package: the copyright (the project's licence and NOTICES.md) and a
# changelog. The programs find everything from their own real location, which the links do not
# change.
set(staged "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
if(NOT IS_DIRECTORY "${staged}/usr/bin")
    message(FATAL_ERROR "ZphoneticDebianTree: no usr/bin under ${staged}")
endif()

file(RENAME "${staged}/usr" "${staged}/zphonetic")
file(MAKE_DIRECTORY "${staged}/usr/lib" "${staged}/usr/bin" "${staged}/usr/share")
file(RENAME "${staged}/zphonetic" "${staged}/usr/lib/zphonetic")
set(app "${staged}/usr/lib/zphonetic")
foreach(shared applications icons)
    if(IS_DIRECTORY "${app}/share/${shared}")
        file(RENAME "${app}/share/${shared}" "${staged}/usr/share/${shared}")
    endif()
endforeach()
if(IS_DIRECTORY "${app}/include")
    file(RENAME "${app}/include" "${staged}/usr/include")
endif()
file(GLOB programs LIST_DIRECTORIES false "${app}/bin/*")
foreach(program IN LISTS programs)
    get_filename_component(name "${program}" NAME)
    file(CREATE_LINK "../lib/zphonetic/bin/${name}" "${staged}/usr/bin/${name}" SYMBOLIC)
endforeach()

set(doc "${staged}/usr/share/doc/${CPACK_PACKAGE_NAME}")
file(MAKE_DIRECTORY "${doc}")
file(READ "${CPACK_ZPHONETIC_SOURCE_DIR}/NOTICES.md" notices)
file(WRITE "${doc}/copyright" "zphonetic

Copyright (c) zphonetic developers

The add-on, the host it runs in, the tagging library and the programs are distributed under the
MIT licence:

    Permission is hereby granted, free of charge, to any person obtaining a copy
    of this software and associated documentation files (the \"Software\"), to deal
    in the Software without restriction, including without limitation the rights
    to use, copy, modify, merge, publish, distribute, sublicense, and/or sell
    copies of the Software, and to permit persons to whom the Software is
    furnished to do so, subject to the following conditions:

    The above copyright notice and this permission notice shall be included in all
    copies or substantial portions of the Software.

    THE SOFTWARE IS PROVIDED \"AS IS\", WITHOUT WARRANTY OF ANY KIND, EXPRESS OR
    IMPLIED, INCLUDING BUT NOT LIMITED TO THE WARRANTIES OF MERCHANTABILITY,
    FITNESS FOR A PARTICULAR PURPOSE AND NONINFRINGEMENT. IN NO EVENT SHALL THE
    AUTHORS OR COPYRIGHT HOLDERS BE LIABLE FOR ANY CLAIM, DAMAGES OR OTHER
    LIABILITY, WHETHER IN AN ACTION OF CONTRACT, TORT OR OTHERWISE, ARISING FROM,
    OUT OF OR IN CONNECTION WITH THE SOFTWARE OR THE USE OR OTHER DEALINGS IN THE
    SOFTWARE.

${notices}
On Debian systems the Apache License 2.0 named above is in
/usr/share/common-licenses/Apache-2.0.
")
file(WRITE "${doc}/changelog" "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * Built from the zphonetic source tree.

 -- ${CPACK_PACKAGE_CONTACT}  ${CPACK_ZPHONETIC_CHANGELOG_DATE}
")
execute_process(COMMAND gzip -9nf "${doc}/changelog" RESULT_VARIABLE gzipped)
if(NOT gzipped EQUAL 0)
    message(FATAL_ERROR "ZphoneticDebianTree: gzip failed on ${doc}/changelog")
endif()
