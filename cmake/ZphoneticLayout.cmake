# The build tree runs as it stands and mirrors the installed layout:
#   bin/                              host programs
#   bin/addons/zphoneticsymbol/       the add-on module, mui/zphoneticsymbol.qm, the dialog page
#   lib/                              the host's libraries (libnvo, libnvolite, libslxcore)
#   lib/zphonetic/                    the tagging library libPinyinTagger.so
#   share/zphonetic/dict/             its dictionaries
include(GNUInstallDirs)
# The project's libraries are its own: they install into lib/ under the prefix, as in the build
# tree, whatever the platform's folder for shared libraries.
set(ZPHONETIC_INSTALL_LIBDIR lib)
set(ZPHONETIC_BIN_DIR ${CMAKE_BINARY_DIR}/bin)
set(ZPHONETIC_LIB_DIR ${CMAKE_BINARY_DIR}/${ZPHONETIC_INSTALL_LIBDIR})
set(ZPHONETIC_ADDON_DIR ${ZPHONETIC_BIN_DIR}/addons/zphoneticsymbol)
set(ZPHONETIC_TAGGER_DIR ${ZPHONETIC_LIB_DIR}/zphonetic)
set(ZPHONETIC_DICT_DIR ${CMAKE_BINARY_DIR}/share/zphonetic/dict)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${ZPHONETIC_BIN_DIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${ZPHONETIC_LIB_DIR})
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/archive)
# Programs find the host libraries through the same relative path in the build tree and once
# installed, so they are built with it. A build path of their own would be padded by CMake for
# the install to rewrite it in place, with an empty entry that the loader reads as the working
# directory, where it would look first for every library.
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${ZPHONETIC_INSTALL_LIBDIR}")
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
# The few programs of the tree that link a library outside lib/ (the tagging library's tests and
# benchmark) are built with the paths of what they link instead, relative to themselves.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
