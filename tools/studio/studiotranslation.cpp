// SPDX-License-Identifier: MIT
#include "studiotranslation.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>

#include "nvo/translators.h"
#include "nvo/zapplication.h"
#include "nvo/zrt.h"

namespace studiotranslation {

QString directory() {
    return QDir(QCoreApplication::applicationDirPath())
        .absoluteFilePath(QStringLiteral("../share/zphonetic/translations"));
}

void install() {
    auto* app = qobject_cast<ZxApplication*>(QCoreApplication::instance());
    zrt::ZAppTranslators* translators = app ? app->coreApplication()->translator() : nullptr;
    if (translators)
        translators->installTranslation(directory() + QLatin1Char('/'),
                                        {QStringLiteral("zphonetic-studio.qm")});
    // Qt's own texts (the buttons of message boxes and file dialogs), when the system has them.
    auto* qt = new QTranslator(QCoreApplication::instance());
    if (qt->load(QStringLiteral("qtbase_") + zrt::i18n::language(1, true),
                 QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qt);
    else
        delete qt;
}

}  // namespace studiotranslation
