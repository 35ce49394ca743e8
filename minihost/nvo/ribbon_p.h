// SPDX-License-Identifier: MIT
// The host's side of the ribbon classes: building a ribbon, choosing the current tab, and a
// count of the queries the ribbon answered (so tests can tell that nobody asked).
#pragma once

#include <QList>
#include <QPointer>
#include <QStringList>

#include "hostexport.h"
#include "nvo/ribbon.h"

class ZMainWindowPrivate {
public:
    QPointer<ZRbTabWidget> headerBar;
};

class ZRbTabWidgetPrivate {
public:
    QPointer<ZRbSubTabBar> subTabBar;
};

class ZRbSubTabBarPrivate {
public:
    int currentIdx = -1;
    QPointer<QObject> command;
};

class ZListCommandPrivate {
public:
    QList<QPointer<QObject>> children;
};

namespace minihost {

// Gives `window` a ribbon: a header bar whose sub-tab bar lists one tab command per id, each a
// child of a ZListCommand carrying the id as its dynamic property "id". No tab is current.
// Returns the list command (owned by the window's widgets).
ZHOST_API ZListCommand* buildRibbon(ZMainWindow* window, const QStringList& tabIds);
// Makes tab `index` current. Not checked against the tab count, as the host's own bar does not:
// an index equal to the count is kept as it is.
ZHOST_API void setCurrentTab(ZMainWindow* window, int index);
// Makes the tab with id `tabId` current; false (and nothing changed) when there is none.
ZHOST_API bool setCurrentTabById(ZMainWindow* window, const QString& tabId);
// Adds a child command carrying `id` to `list`; returns it (owned by `list`).
ZHOST_API QObject* addTabCommand(ZListCommand* list, const QString& id);

// How many times headerBar(), subTabBar(), currentIdx(), command(), childCount() or childAt()
// were called since the process started.
ZHOST_API int ribbonQueryCount();

}  // namespace minihost
