// SPDX-License-Identifier: MIT
#include "dialog/phoneticsymbolwebwindow.h"

#include <QCloseEvent>

#include "dialog/phoneticsymboljsapi.h"
#include "entry/addonresources.h"
#include "nvo/zlitestyle.h"

namespace {

// The name of the page's web profile; the window's object name is its class name instead.
const char kProfileName[] = "zphonetic_symbol_web_window";

int scaled(double designUnits) {
    return static_cast<int>(ZLiteStyle::dpiScaled(designUnits));
}

}  // namespace

ZPhoneticSymbolWebWindow::ZPhoneticSymbolWebWindow(QWidget* parent)
    : nvolite::ZxCommonWebWindow(parent, false, false, 20) {
    setFixedSize(scaled(627.0), scaled(669.0));
    // One pixel narrower than the window at scale 1, as the host's dialogs are.
    setTitleBarRect(QRect(0, 0, scaled(626.0), scaled(40.0)));
    setWindowTitle(tr("PhoneticSymbol"));
    setCenterOnParent(true);
    setLocalContentOnly(true);
    setObjectName(QStringLiteral("ZPhoneticSymbolWebWindow"));
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setWindowModality(Qt::WindowModal);
}

ZPhoneticSymbolWebWindow::~ZPhoneticSymbolWebWindow() = default;

void ZPhoneticSymbolWebWindow::showPinyinPage() {
    init(pinyinPageUrl(), QString::fromLatin1(kProfileName));
    show();
}

void ZPhoneticSymbolWebWindow::showGuidePage() {
    init(guidePageUrl(), QString::fromLatin1(kProfileName));
    ZxLocateHelpFunc::adjustToRelatedMainWindow(this, 0, true, true);
    show();
}

nvolite::ZxCommonJsApi* ZPhoneticSymbolWebWindow::createJsApi() {
    return new ZPhoneticSymbolJsApi(webViewContainer());
}

QWebEngineUrlRequestInterceptor* ZPhoneticSymbolWebWindow::createUrlRequestInterceptor() {
    return nullptr;
}

void ZPhoneticSymbolWebWindow::closeEvent(QCloseEvent* event) {
    emit signalClose();
    QWidget::closeEvent(event);
}
