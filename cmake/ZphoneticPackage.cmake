# The Debian package (cpack -G DEB): everything the project installs, laid out as
# `cmake --install` lays it out (programs and bin/addons/ in bin/, the host libraries in lib/, the
# tagging library in lib/zphonetic/, its dictionaries in share/zphonetic/dict/), as the programs'
# own tree in /usr/lib/zphonetic/ with a link in /usr/bin to each program
# (ZphoneticDebianTree.cmake, which also adds the copyright and the changelog). A program added
# later with its own install rules is packaged with no change here. The run-time dependencies are
# what dpkg-shlibdeps (dpkg-dev) finds the installed programs and libraries linked against. The
# package passes lintian without errors (tests/install/debian-package.sh).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zphonetic)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "pinyin readings for the Chinese text of presentation slides")
set(CPACK_PACKAGE_DESCRIPTION
    "zphonetic works out the pinyin reading of every Chinese character of the
text selected on a slide, in context, and writes the readings into the slide.
It holds the zphoneticsymbol add-on, the host it runs in, the tagging library
with its dictionaries, the zphonetic command line and zphonetic studio, a
desktop window for decks.")
set(CPACK_PACKAGE_CONTACT "zphonetic developers <zphonetic@example.org>")
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/ZphoneticDebianTree.cmake)
# What ZphoneticDebianTree.cmake reads (CPack hands every CPACK_ variable to it).
set(CPACK_ZPHONETIC_SOURCE_DIR ${PROJECT_SOURCE_DIR})
set(CPACK_ZPHONETIC_CHANGELOG_DATE "Wed, 25 Nov 2026 12:00:00 +0000")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# The build's debugging information stays in the build tree.
set(CPACK_STRIP_FILES TRUE)
set(CPACK_DEBIAN_PACKAGE_SECTION text)
# dpkg-shlibdeps finds the host libraries in the package itself through the programs' RUNPATH
# ($ORIGIN/../lib), and every other library in the Debian package that provides it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The dialog's Chinese text and the readings need a CJK font to be seen.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS fonts-noto-cjk)
include(CPack)
