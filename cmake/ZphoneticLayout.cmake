# The build tree runs as it stands and mirrors the installed layout:
#   bin/                              host programs
#   bin/addons/zphoneticsymbol/       the add-on module, mui/zphoneticsymbol.qm, the dialog page
#   lib/                              the host's libraries (libnvo, libnvolite, libslxcore)
#   lib/zphonetic/                    the tagging library libPinyinTagger.so
#   share/zphonetic/dict/             its dictionaries
include(GNUInstallDirs)
set(ZPHONETIC_BIN_DIR ${CMAKE_BINARY_DIR}/bin)
set(ZPHONETIC_LIB_DIR ${CMAKE_BINARY_DIR}/lib)
set(ZPHONETIC_ADDON_DIR ${ZPHONETIC_BIN_DIR}/addons/zphoneticsymbol)
set(ZPHONETIC_TAGGER_DIR ${ZPHONETIC_LIB_DIR}/zphonetic)
set(ZPHONETIC_DICT_DIR ${CMAKE_BINARY_DIR}/share/zphonetic/dict)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${ZPHONETIC_BIN_DIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${ZPHONETIC_LIB_DIR})
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/archive)
# Programs find the host libraries next to them, in the build tree and once installed.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
set(CMAKE_BUILD_RPATH "${ZPHONETIC_LIB_DIR}")
