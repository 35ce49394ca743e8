// SPDX-License-Identifier: MIT
#include <QDesktopServices>
#include <QMessageBox>
#include <cstdio>

#include "minihost/nvo/printable.h"
#include "minihost/nvo/zxapplication_p.h"

namespace {

const char* const kUrlSchemes[] = {"http", "https", "file"};

bool isHeadlessPlatform(const QString& platform) {
    return platform == QLatin1String("offscreen") || platform == QLatin1String("minimal");
}

// The button codes of the flags' low nibble, as a GUI box offers them.
QMessageBox::StandardButtons buttonsFor(unsigned int flags) {
    switch (flags & 0x0F) {
        case ZxApplication::ButtonsOkCancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case ZxApplication::ButtonsYesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case ZxApplication::ButtonsYesNo:
            return QMessageBox::Yes | QMessageBox::No;
        default:
            return QMessageBox::Ok;
    }
}

QMessageBox::Icon iconFor(unsigned int flags) {
    switch (flags & 0xF0) {
        case ZxApplication::IconError:
            return QMessageBox::Critical;
        case ZxApplication::IconQuestion:
            return QMessageBox::Question;
        case ZxApplication::IconWarning:
            return QMessageBox::Warning;
        case ZxApplication::IconInformation:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

int answerCode(int button) {
    switch (button) {
        case QMessageBox::Cancel:
            return ZxApplication::AnswerCancel;
        case QMessageBox::Yes:
            return ZxApplication::AnswerYes;
        case QMessageBox::No:
            return ZxApplication::AnswerNo;
        default:
            return ZxApplication::AnswerOk;
    }
}

}  // namespace

ZxApplicationPrivate::ZxApplicationPrivate(bool headless)
    : showMessageBoxes(!headless), m_headless(headless) {
    if (m_headless)
        for (const char* scheme : kUrlSchemes)
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "recordUrl");
}

ZxApplicationPrivate::~ZxApplicationPrivate() {
    if (m_headless)
        for (const char* scheme : kUrlSchemes)
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
}

void ZxApplicationPrivate::recordUrl(const QUrl& url) {
    openedUrls.append(url);
    std::fprintf(stderr, "zphonetic: open in browser: %s\n",
                 minihost::printable(url.toString()).toUtf8().constData());
}

namespace {

// Web pages (the add-on's dialog) share OpenGL contexts with the widgets; the attribute must be
// set before the application object exists, or the web engine warns when the add-on loads it.
int& beforeApplication(int& argc) {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    return argc;
}

}  // namespace

ZxApplication::ZxApplication(int& argc, char** argv)
    : QApplication(beforeApplication(argc), argv),
      d(std::make_unique<ZxApplicationPrivate>(isHeadlessPlatform(platformName()))) {}

ZxApplication::~ZxApplication() {
    // Windows closed last (a dialog deletes itself later) go now, while the web profiles and the
    // rest of the application they use still exist.
    sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

ZMainWindow* ZxApplication::currentMainWindow() const {
    return d->mainWindow.data();
}

ZCoreApplication* ZxApplication::coreApplication() const {
    return &d->core;
}

int ZxApplication::messageBox(const QString& text, unsigned int flags) {
    d->messages.append({text, flags});
    if (!d->showMessageBoxes) {
        std::fprintf(stderr, "zphonetic: message (flags 0x%X): %s\n", flags,
                     minihost::printable(text).toUtf8().constData());
        if (d->headlessAnswer) return d->headlessAnswer;
        // The first button: Yes for the boxes that ask yes or no.
        const unsigned int buttons = flags & 0x0F;
        return buttons == ButtonsYesNoCancel || buttons == ButtonsYesNo ? AnswerYes : AnswerOk;
    }
    QMessageBox box(iconFor(flags), applicationName(), text, buttonsFor(flags), d->mainWindow);
    return answerCode(box.exec());
}

ZAppObj::ZAppObj(const QString& commandId) : m_commandId(commandId) {}

QString ZAppObj::commandId() const {
    return m_commandId;
}

ZAppContext::ZAppContext() = default;

ZAppContext::ZAppContext(const QMap<QString, QVariant>& arguments) : m_arguments(arguments) {}

const QMap<QString, QVariant>& ZAppContext::arguments() const {
    return m_arguments;
}

void ZAppContext::setArgument(const QString& name, const QVariant& value) {
    m_arguments.insert(name, value);
}
