// SPDX-License-Identifier: MIT
// The web part of the web framework (../webpart.h), over Qt WebEngine: a page in a
// QWebEngineView, in a named profile, reaching the one published object through a web channel
// behind the injected window.zxHost adapter.
#include <QFile>
#include <QLayout>
#include <QWebChannel>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineView>

#include "minihost/nvolite/web/localcontent.h"
#include "minihost/nvolite/web/webprofiles.h"
#include "minihost/nvolite/webpart.h"

namespace {

QString resourceText(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return QString();
    return QString::fromUtf8(file.readAll());
}

// qwebchannel.js and the adapter run as one function, so the page gets window.zxHost and none
// of the channel's names.
QWebEngineScript hostAdapterScript() {
    QWebEngineScript script;
    script.setName(QStringLiteral("zxhost"));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(false);
    script.setSourceCode(
        QStringLiteral("(function () {\n") +
        resourceText(QStringLiteral(":/qtwebchannel/qwebchannel.js")) + QStringLiteral("\n") +
        resourceText(QStringLiteral(":/nvolite/zxhostadapter.js")) + QStringLiteral("\n})();\n"));
    return script;
}

class EnginePage : public nvolite::WebPage {
public:
    explicit EnginePage(const nvolite::WebPageSetup& setup) : m_interceptor(setup.interceptor) {
        m_view = new QWebEngineView(setup.container);
        setup.container->layout()->addWidget(m_view);
        m_page = new BridgedPage(webProfile(setup.profileName, setup.offTheRecord), m_view);
        m_filter = new PageRequestFilter(setup.url, m_interceptor, m_page);
        m_filter->setLocalOnly(setup.localContentOnly);
        m_page->setUrlRequestInterceptor(m_filter);
        m_page->setRequestFilter(m_filter);
        m_page->setHome(setup.url);
        m_page->setNavigationAllowed(setup.navigationAllowed);
        if (setup.transparent) m_page->setBackgroundColor(Qt::transparent);
        m_channel = new QWebChannel;
        m_channel->registerObject(QStringLiteral("zxBridge"), setup.bridge);
        m_page->setWebChannel(m_channel);
        m_page->scripts().insert(hostAdapterScript());
        if (setup.closeRequested)
            QObject::connect(m_page, &QWebEnginePage::windowCloseRequested, m_page,
                             setup.closeRequested);
        m_view->setPage(m_page);
        m_page->load(setup.url);
    }

    ~EnginePage() override {
        // The page goes first, while its view is whole: deleted as the view's child, it would
        // tear down its rendering widget inside the view's destructor. Then the view, the
        // channel, and the interceptor the page asked until it went.
        delete m_page;
        delete m_view;
        delete m_channel;
        delete m_interceptor;
    }

    QWidget* view() const override { return m_view; }
    QUrl url() const override { return m_page->url(); }
    void setLocalContentOnly(bool on) override { m_filter->setLocalOnly(on); }
    void runScript(const QString& script, std::function<void(const QVariant&)> done) override {
        m_page->runJavaScript(script, std::move(done));
    }

private:
    QWebEngineUrlRequestInterceptor* m_interceptor;
    QWebEngineView* m_view = nullptr;
    BridgedPage* m_page = nullptr;          // owned (its parent, the view, goes after it)
    PageRequestFilter* m_filter = nullptr;  // owned by the page
    QWebChannel* m_channel = nullptr;
};

class EnginePart : public nvolite::WebPart {
public:
    std::unique_ptr<nvolite::WebPage> showPage(const nvolite::WebPageSetup& setup) override {
        return std::make_unique<EnginePage>(setup);
    }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) nvolite::WebPart* nvoliteWebPart() {
    static EnginePart part;
    return &part;
}
