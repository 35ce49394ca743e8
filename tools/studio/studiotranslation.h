// SPDX-License-Identifier: MIT
// The studio's own texts in the user's language (the host's: setting "ui/language", then
// ZPHONETIC_UI_LANGUAGE, then the system locale): "zphonetic-studio.qm" in
// <language>/ under the program's translation directory, installed through the host's
// translation manager as the add-on's are. A language without a file keeps the English texts.
#pragma once

#include <QString>

namespace studiotranslation {

// <application directory>/../share/zphonetic/translations: beside the programs in an
// installation, and in the build tree.
QString directory();
// Installs the translation of the user's language (and Qt's own, for its standard dialogs).
// Call before the window is made.
void install();
// Removes what install() installed.
void uninstall();

}  // namespace studiotranslation
