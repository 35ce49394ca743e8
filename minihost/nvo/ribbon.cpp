// SPDX-License-Identifier: MIT
#include <QHBoxLayout>
#include <QVariant>

#include "minihost/nvo/ribbon_p.h"

namespace {

int& queryCount() {
    static int count = 0;
    return count;
}

void countQuery() {
    ++queryCount();
}

}  // namespace

ZMainWindow::ZMainWindow(QWidget* parent)
    : QMainWindow(parent), d(std::make_unique<ZMainWindowPrivate>()) {}

ZMainWindow::~ZMainWindow() = default;

ZRbTabWidget* ZMainWindow::headerBar() const {
    countQuery();
    return d->headerBar.data();
}

ZRbTabWidget::ZRbTabWidget(QWidget* parent)
    : QWidget(parent), d(std::make_unique<ZRbTabWidgetPrivate>()) {}

ZRbTabWidget::~ZRbTabWidget() = default;

ZRbSubTabBar* ZRbTabWidget::subTabBar() const {
    countQuery();
    return d->subTabBar.data();
}

ZRbSubTabBar::ZRbSubTabBar(QWidget* parent)
    : QWidget(parent), d(std::make_unique<ZRbSubTabBarPrivate>()) {}

ZRbSubTabBar::~ZRbSubTabBar() = default;

int ZRbSubTabBar::currentIdx() const {
    countQuery();
    return d->currentIdx;
}

QObject* ZRbSubTabBar::command() const {
    countQuery();
    return d->command.data();
}

ZListCommand::ZListCommand(QObject* parent)
    : QObject(parent), d(std::make_unique<ZListCommandPrivate>()) {}

ZListCommand::~ZListCommand() = default;

int ZListCommand::childCount() const {
    countQuery();
    return d->children.size();
}

QObject* ZListCommand::childAt(int index) const {
    countQuery();
    if (index < 0 || index >= d->children.size()) return nullptr;
    return d->children.at(index).data();
}

namespace minihost {

ZListCommand* buildRibbon(ZMainWindow* window, const QStringList& tabIds) {
    auto* header = new ZRbTabWidget(window);
    auto* bar = new ZRbSubTabBar(header);
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bar);
    auto* list = new ZListCommand(bar);
    for (const QString& id : tabIds) addTabCommand(list, id);
    bar->d_func()->command = list;
    header->d_func()->subTabBar = bar;
    window->setMenuWidget(header);
    window->d_func()->headerBar = header;
    return list;
}

QObject* addTabCommand(ZListCommand* list, const QString& id) {
    auto* child = new QObject(list);
    child->setProperty("id", id);
    list->d_func()->children.append(child);
    return child;
}

void setCurrentTab(ZMainWindow* window, int index) {
    ZRbTabWidget* header = window->d_func()->headerBar.data();
    if (!header || !header->d_func()->subTabBar) return;
    header->d_func()->subTabBar->d_func()->currentIdx = index;
}

bool setCurrentTabById(ZMainWindow* window, const QString& tabId) {
    ZRbTabWidget* header = window->d_func()->headerBar.data();
    if (!header || !header->d_func()->subTabBar) return false;
    ZRbSubTabBarPrivate* bar = header->d_func()->subTabBar->d_func();
    auto* list = qobject_cast<ZListCommand*>(bar->command.data());
    if (!list) return false;
    const auto& children = list->d_func()->children;
    for (int i = 0; i < children.size(); ++i) {
        if (children.at(i) && children.at(i)->property("id").toString() == tabId) {
            bar->currentIdx = i;
            return true;
        }
    }
    return false;
}

int ribbonQueryCount() {
    return queryCount();
}

}  // namespace minihost
