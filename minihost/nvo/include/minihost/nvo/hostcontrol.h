// SPDX-License-Identifier: MIT
// The host's public controls, for host programs (the command line, the studio) and tests: what a
// host program sets up around the add-on (its main window and ribbon, the active view, the
// services it offers) and what the host did in the user's place (message boxes shown, URLs
// opened, usage events kept). Host programs use these instead of the libraries' private sides.
// Everything runs on the GUI thread, after the ZxApplication is made and before it goes.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <cstdint>

#include "hostexport.h"
#include "nvo/com.h"

class QAction;
class QToolButton;
class QWidget;
class ZCoreApplication;
class ZListCommand;
class ZMainWindow;
class ZRbSubTabBar;
class ZRbTabWidget;
class ZxApplication;
namespace slxoldapi {
struct DocumentView;
}

// One message box the host showed (or, headless, recorded instead of showing).
struct RecordedMessage {
    QString text;
    unsigned int flags = 0;
};

// One usage event the collector kept.
struct UsageEvent {
    QString name;
    QHash<QString, QString> parameters;
    unsigned int reserved1 = 0;
    unsigned int reserved2 = 0;
    int probability = 0;
    bool immediate = false;
};

namespace minihost {

// The process's host application, or null before it is made.
ZHOST_API ZxApplication* hostApplication();

// --- The main window ---------------------------------------------------------------------------
// Makes `window` the one ZxApplication::currentMainWindow() answers (not owned; forgotten when it
// is destroyed). Null: no main window, as in a headless host.
ZHOST_API void setCurrentMainWindow(ZMainWindow* window);

// --- The ribbon ----------------------------------------------------------------------------------
// Gives `window` a ribbon: a header bar whose sub-tab bar shows one tab per id (titled with the id
// until setRibbonTabTitle), each tab a child command of a ZListCommand carrying the id as its
// dynamic property "id", and under the tabs the current tab's panel of command buttons. No tab
// is current. Returns the list command (owned by the window's widgets).
ZHOST_API ZListCommand* buildRibbon(ZMainWindow* window, const QStringList& tabIds);
// Adds a child command carrying `id` to `list` (a tab without a panel); returns it (owned by
// `list`).
ZHOST_API QObject* addTabCommand(ZListCommand* list, const QString& id);
// Makes tab `index` current, as a click on it does. Not checked against the tab count, as the
// host's own bar does not: an index equal to the count is kept as it is (and no tab is shown).
ZHOST_API void setCurrentTab(ZMainWindow* window, int index);
// Makes the tab with id `tabId` current; false (and nothing changed) when there is none.
ZHOST_API bool setCurrentTabById(ZMainWindow* window, const QString& tabId);
// The id of the current tab; empty when there is no ribbon or no valid current tab.
ZHOST_API QString currentTabId(const ZMainWindow* window);
// The text the user sees on tab `tabId`; false when there is no such tab.
ZHOST_API bool setRibbonTabTitle(ZMainWindow* window, const QString& tabId, const QString& title);
// The panel shown under tab `tabId` while it is current, where the host program puts that tab's
// command buttons (laid out left to right); null when there is no such tab.
ZHOST_API QWidget* ribbonTabPanel(ZMainWindow* window, const QString& tabId);
// Puts a button for `action` on the panel of tab `tabId`, after the buttons already there: its
// icon above its text, both following the action. Returns the button (owned by the panel); null
// when there is no such tab.
ZHOST_API QToolButton* addRibbonAction(ZMainWindow* window, const QString& tabId, QAction* action);
// Hands `window` a ribbon made of the given parts, any of which may be null: `header` as its
// header bar, `bar` as the header bar's sub-tab bar, `command` as the bar's command object (any
// QObject: the add-on expects a ZListCommand). For host programs that make their own ribbon, and
// for the states a ribbon passes through while it is made (a window without a header bar, a bar
// without a command). The parts are not drawn and stay owned by their Qt parents.
ZHOST_API void setRibbonParts(ZMainWindow* window, ZRbTabWidget* header, ZRbSubTabBar* bar,
                              QObject* command);
// The tab bar the user clicks (a QTabBar inside the sub-tab bar); null without a ribbon.
ZHOST_API QWidget* ribbonTabBar(ZMainWindow* window);

// --- The open presentation ---------------------------------------------------------------------
// Makes `view` the view IZApplication::activeView() answers (not owned; null = no presentation
// window). The deck's own selection is the view's selection (minihost::Deck).
ZHOST_API void setActiveView(slxoldapi::DocumentView* view);
ZHOST_API slxoldapi::DocumentView* activeView();

// --- Services ----------------------------------------------------------------------------------
// Offers `service` under `serviceId` through IZApplication::QueryService, taking a reference; a
// service offered under that id before is released and replaced. Null unregisters.
ZHOST_API void registerService(const GUID& serviceId, IUnknown* service);
// Releases the service offered under `serviceId`; unknown ids are ignored.
ZHOST_API void unregisterService(const GUID& serviceId);
// The service offered under `serviceId`, without a new reference; null when none.
ZHOST_API IUnknown* service(const GUID& serviceId);
// The same for a core application a program made on its own, without a ZxApplication.
ZHOST_API void registerService(ZCoreApplication* core, const GUID& serviceId, IUnknown* service);
ZHOST_API void unregisterService(ZCoreApplication* core, const GUID& serviceId);

// --- Translations and the usage collector ------------------------------------------------------
// Translators installed under `directory` (exactly as installTranslation was given it).
ZHOST_API int installedTranslations(const QString& directory);
// Removes the core application's translation manager (translator() answers null) or gives it a
// new, empty one.
ZHOST_API void setTranslatorAvailable(bool available);
// Removes the core application's usage collector (getDcInfo() answers null) or gives it a new
// one, which keeps no events yet.
ZHOST_API void setUsageCollectorAvailable(bool available);

// --- The host's journal ------------------------------------------------------------------------
// What was asked of the application framework, one line per call, oldest first, as the deck's
// call journal keeps what was asked of the object model (minihost::Deck::journal): the ribbon's
// queries ("ZMainWindow.headerBar()", "ZRbTabWidget.subTabBar()", "ZRbSubTabBar.currentIdx()",
// "ZRbSubTabBar.command()", "ZListCommand.childCount()", "ZListCommand.childAt(0)"), the
// translation manager's calls ("ZAppTranslators.installTranslation(/dir, [a.qm, b.qm])",
// "ZAppTranslators.uninstallTranslation(/dir)", whatever they loaded or found), the libraries
// asked for ("_Xloadlibrary(/lib/libPinyinTagger.so, 0)", loaded or not), and the
// references taken on a core application and given back, with the count afterwards
// ("ZCoreApplication.AddRef() = 1", "ZCoreApplication.Release() = 0"; a Release with none
// taken leaves 0 and is noted all the same). The last 10,000 lines are kept.
ZHOST_API QStringList hostJournal();
ZHOST_API void clearHostJournal();

// --- What the host did in the user's place -----------------------------------------------------
// True when the host runs without a display (platform "offscreen" or "minimal").
ZHOST_API bool isHeadless();
// Whether ZxApplication::messageBox shows a real QMessageBox (modal over the current main
// window). Default: shown unless headless. A headless host prints the text instead.
ZHOST_API void setShowMessageBoxes(bool show);
ZHOST_API bool showsMessageBoxes();
// The button code a message box that is not shown answers (1 = OK, 2 = Cancel, 6 = Yes,
// 7 = No); 0 (the default) answers the first button: OK, or Yes.
ZHOST_API void setUnshownMessageBoxAnswer(int answer);
// Every message box asked for since the last clear, shown or not, oldest first.
ZHOST_API QList<RecordedMessage> messagesShown();
ZHOST_API void clearMessagesShown();
// URLs a headless host was asked to open in the browser (and recorded instead), oldest first.
ZHOST_API QList<QUrl> urlsOpened();
ZHOST_API void clearUrlsOpened();
// The usage events the core application's collector kept, oldest first (empty without one).
ZHOST_API QList<UsageEvent> usageEvents();
// Forgets the kept events (the log file keeps its lines).
ZHOST_API void clearUsageEvents();

}  // namespace minihost
