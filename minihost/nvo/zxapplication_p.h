// SPDX-License-Identifier: MIT
// The host's side of ZxApplication: the main window it reports, headless mode, and what a
// headless host recorded instead of showing it (message boxes, URLs for the browser).
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUrl>

#include "hostexport.h"
#include "minihost/nvo/hostcontrol.h"
#include "nvo/ribbon.h"
#include "nvo/zapplication.h"

class ZHOST_API ZxApplicationPrivate : public QObject {
    Q_OBJECT
public:
    // `headless` records message boxes and URLs instead of showing them.
    explicit ZxApplicationPrivate(bool headless);
    ~ZxApplicationPrivate() override;

    // The window currentMainWindow() answers (not owned; forgotten when it is destroyed).
    void setCurrentMainWindow(ZMainWindow* window) { mainWindow = window; }

    bool headless() const { return m_headless; }

    // The answer a messageBox() that is not shown gives: 0 (the default) means "the first
    // button" (OK or Yes).
    int headlessAnswer = 0;
    // Whether messageBox() shows a real box (default: unless headless).
    bool showMessageBoxes;

    ZCoreApplication core;
    QPointer<ZMainWindow> mainWindow;
    QList<RecordedMessage> messages;  // every message box asked for, oldest first
    QList<QUrl> openedUrls;           // headless URLs for the browser, oldest first

public slots:
    // The URL handler a headless host registers for http, https and file URLs.
    void recordUrl(const QUrl& url);

private:
    bool m_headless;
};
