// SPDX-License-Identifier: MIT
// The main window and its ribbon: a header bar of tabs whose sub-tab bar holds one command per
// tab. Each tab command carries its id ("CT_Home", "CT_TextTool", ...) as the dynamic property
// "id"; the sub-tab bar's current index is the current tab.
#pragma once

#include <QMainWindow>
#include <QObject>
#include <QWidget>
#include <memory>

#include "hostexport.h"

class ZRbTabWidget;
class ZRbSubTabBar;
class ZListCommand;
class ZMainWindowPrivate;
class ZRbTabWidgetPrivate;
class ZRbSubTabBarPrivate;
class ZListCommandPrivate;

class ZHOST_API ZMainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit ZMainWindow(QWidget* parent = nullptr);
    ~ZMainWindow() override;
    // The ribbon, or null when the window has none.
    ZRbTabWidget* headerBar() const;

    ZMainWindowPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZMainWindowPrivate> d;
};

class ZHOST_API ZRbTabWidget : public QWidget {
    Q_OBJECT
public:
    explicit ZRbTabWidget(QWidget* parent = nullptr);
    ~ZRbTabWidget() override;
    // The bar of tabs, or null.
    ZRbSubTabBar* subTabBar() const;

    ZRbTabWidgetPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZRbTabWidgetPrivate> d;
};

class ZHOST_API ZRbSubTabBar : public QWidget {
    Q_OBJECT
public:
    explicit ZRbSubTabBar(QWidget* parent = nullptr);
    ~ZRbSubTabBar() override;
    // Index of the current tab, -1 when none is current. Not checked against the tab count.
    int currentIdx() const;
    // The command object listing the tabs (a ZListCommand in this host), or null.
    QObject* command() const;

    ZRbSubTabBarPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZRbSubTabBarPrivate> d;
};

// A command that lists child commands.
class ZHOST_API ZListCommand : public QObject {
    Q_OBJECT
public:
    explicit ZListCommand(QObject* parent = nullptr);
    ~ZListCommand() override;
    int childCount() const;
    // The child at `index`, or null when `index` is out of range.
    QObject* childAt(int index) const;

    ZListCommandPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZListCommandPrivate> d;
};
