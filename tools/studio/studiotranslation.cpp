// SPDX-License-Identifier: MIT
#include "studiotranslation.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QPointer>
#include <QTranslator>

#include "nvo/translators.h"
#include "nvo/zapplication.h"
#include "nvo/zrt.h"

namespace {

zrt::ZAppTranslators* translators() {
    auto* app = qobject_cast<ZxApplication*>(QCoreApplication::instance());
    return app ? app->coreApplication()->translator() : nullptr;
}

QPointer<QTranslator>& qtTranslator() {
    static QPointer<QTranslator> translator;
    return translator;
}

}  // namespace

namespace studiotranslation {

QString directory() {
    return QDir(QCoreApplication::applicationDirPath())
        .absoluteFilePath(QStringLiteral("../share/zphonetic/translations"));
}

void install() {
    if (zrt::ZAppTranslators* manager = translators())
        manager->installTranslation(directory() + QLatin1Char('/'),
                                    {QStringLiteral("zphonetic-studio.qm")});
    // Qt's own texts (the buttons of message boxes and file dialogs), when the system has them.
    auto* qt = new QTranslator(QCoreApplication::instance());
    if (qt->load(QStringLiteral("qtbase_") + zrt::i18n::language(1, true),
                 QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(qt);
        qtTranslator() = qt;
    } else {
        delete qt;
    }
}

void uninstall() {
    if (zrt::ZAppTranslators* manager = translators())
        manager->uninstallTranslation(directory() + QLatin1Char('/'));
    delete qtTranslator().data();
}

}  // namespace studiotranslation
