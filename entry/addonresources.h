// SPDX-License-Identifier: MIT
// Where the add-on finds its own files, where the user started a command, and the addresses of
// the dialog's two views.
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

// The ribbon tab that was current when a command started.
enum class RibbonTab { Other = 0, Home = 1, TextTool = 2 };

// The application's directory + "/addons/zphoneticsymbol" (no trailing separator). Computed on
// first use and kept for the life of the process.
QString addonDirectory();
// `relative` inside the add-on directory (QDir::filePath: "mui/" gives ".../mui/").
QString addonFilePath(const QString& relative);

// Installs "zphoneticsymbol.qm" from the add-on's "mui/" directory through the host's
// translation manager (which looks in "mui/<ui language>/" first). Nothing without a host
// application or translator.
void installAddonTranslation();
// Removes what installAddonTranslation() installed; nothing without a host application or
// translator.
void uninstallAddonTranslation();

// The id ("CT_Home", "CT_TextTool", ...) of the current ribbon tab; empty when there is no main
// window, no ribbon, no list command, or the current index is not a tab (negative, or not below
// the tab count). Example: tabs [CT_Home, CT_TextTool] with index 2 give "".
QString currentRibbonTabId();
// Home for "CT_Home", TextTool for "CT_TextTool" (case-sensitive), Other for anything else.
RibbonTab currentRibbonTab();
// The name by which the page's origin and the usage events call a tab: "home", "texttool", and
// the empty string for Other (neither the origin nor the event exists for other tabs).
QString ribbonTabName(RibbonTab tab);

// The last steps of currentRibbonTabId, over any list of tab commands with childCount() and
// childAt(index) (the host's ZListCommand in the add-on): the "id" of the child at `index`, or
// the empty string when `index` is negative or not below the child count, or the child is null.
// The index is checked here, before the list is asked: a host's list need not check it.
template <class CommandList>
QString childCommandId(const CommandList& list, int index) {
    if (index < 0 || index >= list.childCount()) return QString();
    const QObject* child = list.childAt(index);
    return child ? child->property("id").toString() : QString();
}

// "file:///" + the page path + the origin: for example, with the Text Tool tab current,
// "file:////opt/app/addons/zphoneticsymbol/mui/default/html/pinyin/index.html#/pinyin?from=texttool".
// The four slashes (the path is absolute) and the query after the fragment (where the page's
// router reads it) are deliberate. The origin is "?from=home" for Home and nothing for Other.
QString pinyinPageUrl();
// The same for the guide view ("...index.html#/guide" + origin).
QString guidePageUrl();
