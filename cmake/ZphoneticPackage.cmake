# The Debian package (cpack -G DEB): everything the project installs, laid out under /usr as
# `cmake --install` lays it out under any prefix (programs and bin/addons/ in bin/, the host
# libraries in lib/, the tagging library in lib/zphonetic/, its dictionaries in
# share/zphonetic/dict/). A program added later with its own install rules is packaged with no
# change here. The run-time dependencies are what dpkg-shlibdeps (dpkg-dev) finds the installed
# programs and libraries linked against.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zphonetic)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Pinyin for the Chinese text of presentation slides: the zphoneticsymbol add-on and its host")
set(CPACK_PACKAGE_CONTACT "zphonetic developers <zphonetic@localhost>")
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
