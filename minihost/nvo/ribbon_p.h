// SPDX-License-Identifier: MIT
// The host's side of the ribbon classes: what each keeps behind its d-pointer. Building a ribbon
// and choosing its tab are the host's public controls (hostcontrol.h).
#pragma once

#include <QList>
#include <QPointer>
#include <QStringList>

#include "hostexport.h"
#include "minihost/nvo/hostcontrol.h"
#include "nvo/ribbon.h"

class QStackedWidget;
class QTabBar;

class ZMainWindowPrivate {
public:
    QPointer<ZRbTabWidget> headerBar;
};

class ZRbTabWidgetPrivate {
public:
    QPointer<ZRbSubTabBar> subTabBar;
    QStackedWidget* panels = nullptr;  // one panel of command buttons per tab, in tab order
};

class ZRbSubTabBarPrivate {
public:
    int currentIdx = -1;
    QPointer<QObject> command;
    QTabBar* tabs = nullptr;  // what the user sees and clicks, one tab per child command
};

class ZListCommandPrivate {
public:
    QList<QPointer<QObject>> children;
};
