// SPDX-License-Identifier: MIT
// The host application: the Qt application object, the core application behind the object
// model, and the command context handed to add-ons.
#pragma once

#include <QApplication>
#include <QMap>
#include <QString>
#include <QVariant>
#include <memory>

#include "hostexport.h"
#include "nvo/com.h"

class ZDcInfoC;
class ZMainWindow;
namespace zrt {
class ZAppTranslators;
}
namespace slxoldapi {
struct DocumentView;
}

// {0B8E4F5A-1D2C-4E3B-9A7F-6C5D4E3B2A19}
inline constexpr GUID IID_IZApplication = {
    0x0B8E4F5A, 0x1D2C, 0x4E3B, {0x9A, 0x7F, 0x6C, 0x5D, 0x4E, 0x3B, 0x2A, 0x19}};

// The application as the object model sees it: the root that undo transactions and the
// presentation object model hang from.
struct IZApplication : IUnknown {
    // The view of the active presentation window, or null. A plain pointer: not AddRef'd, valid
    // until the view closes; the caller does not release it.
    virtual slxoldapi::DocumentView* activeView() = 0;
    // Looks up the service `serviceId` and writes it (AddRef'd) to *service. S_OK, or
    // E_NOINTERFACE with *service null when the host offers no such service.
    virtual HRESULT QueryService(REFIID serviceId, IUnknown** service) = 0;
};

class ZCoreApplicationPrivate;

// The host's core application: the process-wide IZApplication, plus the services add-ons reach
// through it. Owned by the ZxApplication; never released to zero by add-ons.
class ZHOST_API ZCoreApplication : public IZApplication {
public:
    ZCoreApplication();
    virtual ~ZCoreApplication();
    ZCoreApplication(const ZCoreApplication&) = delete;
    ZCoreApplication& operator=(const ZCoreApplication&) = delete;

    HRESULT QueryInterface(REFIID iid, void** out) override;
    std::uint32_t AddRef() override;
    std::uint32_t Release() override;
    slxoldapi::DocumentView* activeView() override;
    HRESULT QueryService(REFIID serviceId, IUnknown** service) override;

    // The host's translation manager, or null when translations are not available.
    zrt::ZAppTranslators* translator() const;
    // The host's usage-data collector, or null.
    ZDcInfoC* getDcInfo() const;

    ZCoreApplicationPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZCoreApplicationPrivate> d;
};

class ZxApplicationPrivate;

// The Qt application object of the host. QCoreApplication::instance() is a ZxApplication in
// every host program.
class ZHOST_API ZxApplication : public QApplication {
    Q_OBJECT
public:
    ZxApplication(int& argc, char** argv);
    ~ZxApplication() override;

    // The main window the user works in, or null when there is none (a headless host).
    ZMainWindow* currentMainWindow() const;
    // The core application; never null while the application lives.
    ZCoreApplication* coreApplication() const;
    // The flags of messageBox(): one icon (high nibble) or'ed with one set of buttons (low nibble).
    enum MessageBoxFlags : unsigned int {
        ButtonsOk = 0x00,
        ButtonsOkCancel = 0x01,
        ButtonsYesNoCancel = 0x03,
        ButtonsYesNo = 0x04,
        IconError = 0x10,
        IconQuestion = 0x20,
        IconWarning = 0x30,
        IconInformation = 0x40,
    };
    // What messageBox() answers: the button chosen.
    enum MessageBoxAnswer : int {
        AnswerOk = 1,
        AnswerCancel = 2,
        AnswerYes = 6,
        AnswerNo = 7,
    };

    // Shows `text` to the user: in a GUI host a message box whose icon and buttons follow `flags`
    // (MessageBoxFlags, e.g. 0x30 = IconWarning | ButtonsOk); a headless host prints it to
    // standard error. Returns the button chosen (MessageBoxAnswer).
    int messageBox(const QString& text, unsigned int flags);

    ZxApplicationPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZxApplicationPrivate> d;
};

// The source of a command (a ribbon button, a key, a script). Add-ons receive it and need not
// look at it.
class ZHOST_API ZAppObj {
public:
    explicit ZAppObj(const QString& commandId = QString());
    QString commandId() const;

private:
    QString m_commandId;
};

// What a command carries: its arguments, keyed by name ("action" names the command).
class ZHOST_API ZAppContext {
public:
    ZAppContext();
    explicit ZAppContext(const QMap<QString, QVariant>& arguments);
    const QMap<QString, QVariant>& arguments() const;
    void setArgument(const QString& name, const QVariant& value);

private:
    QMap<QString, QVariant> m_arguments;
};
