// SPDX-License-Identifier: MIT
#include "tonesoption.h"

#include "ReadingsStore.h"
#include "reporterror.h"

const char kTonesHelp[] =
    "  --tones TONES     how 一 and 不 are written: taught (一个 yí gè, 不是 bú shì) or\n"
    "                    original (一个 yī gè, 不是 bù shì, as dictionaries write them);\n"
    "                    default: the choice kept with your own readings (zphonetic words)\n";

int takeTonesOption(QStringList& arguments) {
    const int at = arguments.indexOf(QStringLiteral("--tones"));
    if (at < 0) return 0;
    if (at + 1 >= arguments.size())
        return reportError(QStringLiteral("--tones"), QStringLiteral("needs a value"));
    const QString value = arguments.at(at + 1);
    if (!zphonetic::tagger::parseTones(value.toStdString()))
        return reportError(QStringLiteral("--tones"),
                           QStringLiteral("\"%1\" is not taught or original").arg(value));
    // The tagging library reads it whenever it makes a tagger.
    qputenv(zphonetic::tagger::kTonesVariable, value.toUtf8());
    arguments.erase(arguments.begin() + at, arguments.begin() + at + 2);
    return 0;
}
