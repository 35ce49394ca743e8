// SPDX-License-Identifier: MIT
#include "minihost/nvo/printable.h"

#include "Utf16.h"

namespace minihost {

QString printable(const QString& text) {
    // One rule for every program of the project: the tagging library's tools print with it too.
    return QString::fromStdString(zphonetic::tagger::printable(text.toStdString()));
}

}  // namespace minihost
