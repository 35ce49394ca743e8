// SPDX-License-Identifier: MIT
#include "entry/addonresources.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>
#include <QVariant>

#include "common/hostapplication.h"
#include "nvo/ribbon.h"
#include "nvo/translators.h"

namespace {

const char kTranslationFolder[] = "mui/";
const char kTranslationFile[] = "zphoneticsymbol.qm";

zrt::ZAppTranslators* hostTranslator() {
    ZxApplication* app = hostApplication();
    return app ? app->coreApplication()->translator() : nullptr;
}

QString pageUrl(const char* pagePath) {
    const QString name = ribbonTabName(currentRibbonTab());
    const QString origin = name.isEmpty() ? QString() : QStringLiteral("?from=") + name;
    const QString path = addonFilePath(QLatin1String(pagePath));
    return QStringLiteral("file:///%1%2").arg(path).arg(origin);
}

}  // namespace

QString addonDirectory() {
    // GUI thread only, so the cache needs no lock.
    static QString directory;
    if (directory.isEmpty())
        directory =
            QCoreApplication::applicationDirPath() + QStringLiteral("/addons/zphoneticsymbol");
    return directory;
}

QString addonFilePath(const QString& relative) {
    return QDir(addonDirectory()).filePath(relative);
}

void installAddonTranslation() {
    const QString directory = addonFilePath(QLatin1String(kTranslationFolder));
    const QStringList files{QLatin1String(kTranslationFile)};
    if (zrt::ZAppTranslators* translator = hostTranslator())
        translator->installTranslation(directory, files);
}

void uninstallAddonTranslation() {
    const QString directory = addonFilePath(QLatin1String(kTranslationFolder));
    if (zrt::ZAppTranslators* translator = hostTranslator())
        translator->uninstallTranslation(directory);
}

QString currentRibbonTabId() {
    ZxApplication* app = hostApplication();
    ZMainWindow* window = app ? app->currentMainWindow() : nullptr;
    if (!window) return QString();
    ZRbTabWidget* header = window->headerBar();
    if (!header) return QString();
    ZRbSubTabBar* bar = header->subTabBar();
    if (!bar) return QString();
    auto* list = qobject_cast<ZListCommand*>(bar->command());
    if (!list) return QString();
    return childCommandId(*list, bar->currentIdx());
}

RibbonTab currentRibbonTab() {
    const QString id = currentRibbonTabId();
    if (id == QLatin1String("CT_Home")) return RibbonTab::Home;
    if (id == QLatin1String("CT_TextTool")) return RibbonTab::TextTool;
    return RibbonTab::Other;
}

QString ribbonTabName(RibbonTab tab) {
    switch (tab) {
        case RibbonTab::Home:
            return QStringLiteral("home");
        case RibbonTab::TextTool:
            return QStringLiteral("texttool");
        case RibbonTab::Other:
            break;
    }
    return QString();
}

QString pinyinPageUrl() {
    return pageUrl("mui/default/html/pinyin/index.html#/pinyin");
}

QString guidePageUrl() {
    return pageUrl("mui/default/html/pinyin/index.html#/guide");
}
