// SPDX-License-Identifier: MIT
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QVariant>

#include "minihost/nvo/hostjournal_p.h"
#include "minihost/nvo/ribbon_p.h"

ZMainWindow::ZMainWindow(QWidget* parent)
    : QMainWindow(parent), d(std::make_unique<ZMainWindowPrivate>()) {}

ZMainWindow::~ZMainWindow() = default;

ZRbTabWidget* ZMainWindow::headerBar() const {
    minihost::noteHostCall(QStringLiteral("ZMainWindow.headerBar()"));
    return d->headerBar.data();
}

ZRbTabWidget::ZRbTabWidget(QWidget* parent)
    : QWidget(parent), d(std::make_unique<ZRbTabWidgetPrivate>()) {}

ZRbTabWidget::~ZRbTabWidget() = default;

ZRbSubTabBar* ZRbTabWidget::subTabBar() const {
    minihost::noteHostCall(QStringLiteral("ZRbTabWidget.subTabBar()"));
    return d->subTabBar.data();
}

ZRbSubTabBar::ZRbSubTabBar(QWidget* parent)
    : QWidget(parent), d(std::make_unique<ZRbSubTabBarPrivate>()) {}

ZRbSubTabBar::~ZRbSubTabBar() = default;

int ZRbSubTabBar::currentIdx() const {
    minihost::noteHostCall(QStringLiteral("ZRbSubTabBar.currentIdx()"));
    return d->currentIdx;
}

QObject* ZRbSubTabBar::command() const {
    minihost::noteHostCall(QStringLiteral("ZRbSubTabBar.command()"));
    return d->command.data();
}

ZListCommand::ZListCommand(QObject* parent)
    : QObject(parent), d(std::make_unique<ZListCommandPrivate>()) {}

ZListCommand::~ZListCommand() = default;

int ZListCommand::childCount() const {
    minihost::noteHostCall(QStringLiteral("ZListCommand.childCount()"));
    return d->children.size();
}

QObject* ZListCommand::childAt(int index) const {
    minihost::noteHostCall(QStringLiteral("ZListCommand.childAt(%1)").arg(index));
    if (index < 0 || index >= d->children.size()) return nullptr;
    return d->children.at(index).data();
}

namespace {

ZRbSubTabBar* subTabBarOf(const ZMainWindow* window) {
    ZRbTabWidget* header = window ? window->d_func()->headerBar.data() : nullptr;
    return header ? header->d_func()->subTabBar.data() : nullptr;
}

ZListCommand* tabListOf(const ZMainWindow* window) {
    ZRbSubTabBar* bar = subTabBarOf(window);
    return bar ? qobject_cast<ZListCommand*>(bar->d_func()->command.data()) : nullptr;
}

// The index of the tab with id `tabId`, or -1.
int tabIndex(const ZMainWindow* window, const QString& tabId) {
    ZListCommand* list = tabListOf(window);
    if (!list) return -1;
    const auto& children = list->d_func()->children;
    for (int i = 0; i < children.size(); ++i)
        if (children.at(i) && children.at(i)->property("id").toString() == tabId) return i;
    return -1;
}

// Shows tab `index` and its panel; an index the bar does not have shows no panel.
void showTab(ZRbSubTabBar* bar, int index) {
    bar->d_func()->currentIdx = index;
    QTabBar* tabs = bar->d_func()->tabs;
    auto* header = qobject_cast<ZRbTabWidget*>(bar->parentWidget());
    QStackedWidget* panels = header ? header->d_func()->panels : nullptr;
    if (!tabs || !panels) return;
    const bool valid = index >= 0 && index < tabs->count();
    if (valid && tabs->currentIndex() != index) {
        const QSignalBlocker blocker(tabs);
        tabs->setCurrentIndex(index);
    }
    panels->setVisible(valid && index < panels->count());
    if (valid && index < panels->count()) panels->setCurrentIndex(index);
}

}  // namespace

namespace minihost {

ZListCommand* buildRibbon(ZMainWindow* window, const QStringList& tabIds) {
    auto* header = new ZRbTabWidget(window);
    auto* bar = new ZRbSubTabBar(header);
    auto* tabs = new QTabBar(bar);
    tabs->setObjectName(QStringLiteral("ribbonTabs"));
    tabs->setDrawBase(false);
    tabs->setExpanding(false);
    auto* barLayout = new QHBoxLayout(bar);
    barLayout->setContentsMargins(0, 0, 0, 0);
    barLayout->addWidget(tabs);
    barLayout->addStretch();
    auto* panels = new QStackedWidget(header);
    panels->setObjectName(QStringLiteral("ribbonPanels"));
    panels->setVisible(false);
    auto* layout = new QVBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(panels);
    auto* list = new ZListCommand(bar);
    bar->d_func()->command = list;
    bar->d_func()->tabs = tabs;
    header->d_func()->subTabBar = bar;
    header->d_func()->panels = panels;
    // A click on a tab makes it current; the tab bar is the ribbon's only input.
    QObject::connect(tabs, &QTabBar::currentChanged, bar,
                     [bar](int index) { showTab(bar, index); });
    for (const QString& id : tabIds) addTabCommand(list, id);
    window->setMenuWidget(header);
    window->d_func()->headerBar = header;
    return list;
}

QObject* addTabCommand(ZListCommand* list, const QString& id) {
    auto* child = new QObject(list);
    child->setProperty("id", id);
    list->d_func()->children.append(child);
    // In a built ribbon the new command is a tab the user sees, with its panel.
    auto* bar = qobject_cast<ZRbSubTabBar*>(list->parent());
    auto* header = bar ? qobject_cast<ZRbTabWidget*>(bar->parentWidget()) : nullptr;
    if (header && bar->d_func()->tabs && header->d_func()->panels) {
        auto* panel = new QWidget;
        panel->setObjectName(id);
        auto* row = new QHBoxLayout(panel);
        row->setContentsMargins(6, 4, 6, 4);
        row->addStretch();
        header->d_func()->panels->addWidget(panel);
        const QSignalBlocker blocker(bar->d_func()->tabs);
        bar->d_func()->tabs->addTab(id);
        // A new tab bar makes its first tab current by itself; the ribbon's current tab stays.
        showTab(bar, bar->d_func()->currentIdx);
    }
    return child;
}

void setCurrentTab(ZMainWindow* window, int index) {
    if (ZRbSubTabBar* bar = subTabBarOf(window)) showTab(bar, index);
}

bool setCurrentTabById(ZMainWindow* window, const QString& tabId) {
    const int index = tabIndex(window, tabId);
    if (index < 0) return false;
    showTab(subTabBarOf(window), index);
    return true;
}

QString currentTabId(const ZMainWindow* window) {
    ZRbSubTabBar* bar = subTabBarOf(window);
    ZListCommand* list = tabListOf(window);
    if (!bar || !list) return QString();
    const int index = bar->d_func()->currentIdx;
    const auto& children = list->d_func()->children;
    if (index < 0 || index >= children.size() || !children.at(index)) return QString();
    return children.at(index)->property("id").toString();
}

void setRibbonParts(ZMainWindow* window, ZRbTabWidget* header, ZRbSubTabBar* bar,
                    QObject* command) {
    window->d_func()->headerBar = header;
    if (header) header->d_func()->subTabBar = bar;
    if (bar) bar->d_func()->command = command;
}

bool setRibbonTabTitle(ZMainWindow* window, const QString& tabId, const QString& title) {
    const int index = tabIndex(window, tabId);
    QTabBar* tabs = index >= 0 ? subTabBarOf(window)->d_func()->tabs : nullptr;
    if (!tabs || index >= tabs->count()) return false;
    tabs->setTabText(index, title);
    return true;
}

QWidget* ribbonTabPanel(ZMainWindow* window, const QString& tabId) {
    const int index = tabIndex(window, tabId);
    if (index < 0) return nullptr;
    QStackedWidget* panels = window->d_func()->headerBar->d_func()->panels;
    return panels && index < panels->count() ? panels->widget(index) : nullptr;
}

QToolButton* addRibbonAction(ZMainWindow* window, const QString& tabId, QAction* action) {
    QWidget* panel = ribbonTabPanel(window, tabId);
    auto* row = panel ? qobject_cast<QBoxLayout*>(panel->layout()) : nullptr;
    if (!row) return nullptr;
    auto* button = new QToolButton(panel);
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setIconSize(QSize(32, 32));
    row->insertWidget(row->count() - 1, button);  // before the closing stretch
    return button;
}

QWidget* ribbonTabBar(ZMainWindow* window) {
    ZRbSubTabBar* bar = subTabBarOf(window);
    return bar ? bar->d_func()->tabs : nullptr;
}

}  // namespace minihost
