// SPDX-License-Identifier: MIT
// What keeps the dialog's page to itself, in the real web engine, headless: the window's profile
// lets it load files of its own directory only, the add-on's page runs only its own scripts and
// styles, and the host opens only web addresses the page asks for.
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <memory>

#include "dialogfixture.h"
#include "usage/clientinfo.h"

namespace {

const int kTimeout = 60000;

QVariant pageValue(nvolite::ZxCommonWebWidget* window, const QString& expression) {
    bool ok = false;
    const QVariant json =
        minihost::runPageScript(window, "JSON.stringify(" + expression + ")", kTimeout, &ok);
    EXPECT_TRUE(ok) << expression.toStdString();
    return QJsonDocument::fromJson("[" + json.toString().toUtf8() + "]")
        .toVariant()
        .toList()
        .value(0);
}

// The value of `expression` in the page as text: strings as they are, anything else as JSON.
std::string pageText(nvolite::ZxCommonWebWidget* window, const QString& expression) {
    bool ok = false;
    const QVariant text = minihost::runPageScript(
        window,
        "(function (v) { return typeof v === 'string' ? v : JSON.stringify(v); })(" + expression +
            ")",
        kTimeout, &ok);
    EXPECT_TRUE(ok) << expression.toStdString();
    return text.toString().toStdString();
}

bool write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

const QByteArray kSvg =
    "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'><rect width='4' "
    "height='4'/></svg>";

// A page that tries to load pictures and read files, in and out of its directory, and keeps
// what happened to each in window.results.
QByteArray probePage(const QStringList& sources) {
    QByteArray list;
    for (const QString& source : sources)
        list += (list.isEmpty() ? "'" : ", '") + source.toUtf8() + "'";
    return R"(<!DOCTYPE html>
<html><head><meta charset="utf-8"><title>probe</title></head><body><script>
function load(src) {
  return new Promise(function (resolve) {
    var img = new Image();
    img.onload = function () { resolve('loaded'); };
    img.onerror = function () { resolve('blocked'); };
    img.src = src;
  });
}
function read(src) {
  return new Promise(function (resolve) {
    var request = new XMLHttpRequest();
    request.onload = function () { resolve(request.responseText.indexOf('svg') >= 0 ? 'read' : 'empty'); };
    request.onerror = function () { resolve('blocked'); };
    try { request.open('GET', src); request.send(); } catch (e) { resolve('blocked'); }
  });
}
var sources = [)" +
           list + R"(];
Promise.all(sources.map(load).concat(sources.map(read))).then(function (results) {
  window.results = results;
  document.documentElement.setAttribute('data-rendered', 'probe');
});
</script></body></html>
)";
}

class Confinement : public DialogTest {
protected:
    void SetUp() override {
        DialogTest::SetUp();
        minihost::setWebRendering(true);
    }

    // The add-on's dialog on a box of 你好, its page drawn; null when it did not open.
    ZPhoneticSymbolWebWindow* openDialogOnGreeting() {
        selectBox(QString::fromUtf8("你好"));
        ZPhoneticSymbolWebWindow* window = openDialog();
        if (window && !minihost::waitForPageAttribute(window, "data-rendered", "pinyin", kTimeout))
            return nullptr;
        return window;
    }

    // Runs `script`, as a script that got into the page would, and waits until it marks the page
    // data-probe="done".
    static bool probe(ZPhoneticSymbolWebWindow* window, const QString& script) {
        bool ok = false;
        minihost::runPageScript(window, script, kTimeout, &ok);
        return ok && minihost::waitForPageAttribute(window, "data-probe", "done", kTimeout);
    }
};

TEST_F(Confinement, TheDialogsPageLoadsFilesOfItsOwnDirectoryOnly) {
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    const QString home = root.filePath(QStringLiteral("page"));
    ASSERT_TRUE(QDir().mkpath(home + QStringLiteral("/pictures")));
    ASSERT_TRUE(write(home + QStringLiteral("/inside.svg"), kSvg));
    ASSERT_TRUE(write(home + QStringLiteral("/pictures/deeper.svg"), kSvg));
    ASSERT_TRUE(write(root.filePath(QStringLiteral("outside.svg")), kSvg));
    const QStringList sources = {
        QStringLiteral("inside.svg"), QStringLiteral("pictures/deeper.svg"),
        QStringLiteral("../outside.svg"),
        QStringLiteral("file://") + root.filePath(QStringLiteral("outside.svg")),
        QStringLiteral("pictures/../../outside.svg")};
    ASSERT_TRUE(write(home + QStringLiteral("/probe.html"), probePage(sources)));

    // The add-on's window, as the command opens it, on the probe instead of its own page.
    auto window = std::make_unique<ZPhoneticSymbolWebWindow>(nullptr);
    ASSERT_TRUE(window->init(QStringLiteral("file:///") + home + QStringLiteral("/probe.html"),
                             QStringLiteral("zphonetic_symbol_web_window")));
    window->show();
    ASSERT_TRUE(minihost::waitForPageAttribute(window.get(), "data-rendered", "probe", kTimeout));
    const QStringList results =
        pageValue(window.get(), QStringLiteral("window.results")).toStringList();
    EXPECT_EQ(results.join(' ').toStdString(),
              "loaded loaded blocked blocked blocked read read blocked blocked blocked");
}

TEST_F(Confinement, TheAddOnsPageRunsOnlyItsOwnScriptsAndStyles) {
    ZPhoneticSymbolWebWindow* window = openDialogOnGreeting();
    ASSERT_NE(window, nullptr);
    // What a script that got into the page would try: a script and a style of its own, a style
    // written as text, code made from a string. Each must be refused, and reported as such.
    ASSERT_TRUE(probe(window, QStringLiteral(R"js(
        window.refused = [];
        document.addEventListener('securitypolicyviolation', function (event) {
            window.refused.push(event.violatedDirective);
        });
        var script = document.createElement('script');
        script.textContent = 'window.injected = true;';
        document.head.appendChild(script);
        var style = document.createElement('style');
        style.textContent = 'body { visibility: hidden; }';
        document.head.appendChild(style);
        document.querySelector('main').setAttribute('style', 'display: none');
        try { window.evaluated = eval('1 + 1'); } catch (e) { window.evaluated = 'refused'; }
        setTimeout(function () {
            document.documentElement.setAttribute('data-probe', 'done');
        }, 200);
    )js")));
    EXPECT_EQ(pageText(window, QStringLiteral("String(window.injected === true)")), "false");
    EXPECT_EQ(pageText(window, QStringLiteral("getComputedStyle(document.body).visibility")),
              "visible");
    EXPECT_EQ(pageText(window,
                       QStringLiteral("getComputedStyle(document.querySelector('main')).display")),
              "block");
    EXPECT_EQ(pageText(window, QStringLiteral("window.evaluated")), "refused");
    const QStringList refused = pageValue(window, QStringLiteral("window.refused")).toStringList();
    EXPECT_TRUE(refused.contains(QStringLiteral("script-src-elem")) ||
                refused.contains(QStringLiteral("script-src")))
        << refused.join(' ').toStdString();
    EXPECT_TRUE(refused.contains(QStringLiteral("style-src-elem")) ||
                refused.contains(QStringLiteral("style-src")))
        << refused.join(' ').toStdString();
    // The page itself is whole: its own scripts drew the view and its own style laid it out.
    EXPECT_EQ(
        pageValue(window, QStringLiteral("document.querySelectorAll('.cell').length")).toInt(), 2);
    EXPECT_EQ(
        pageText(window,
                 QStringLiteral("getComputedStyle(document.querySelector('.titlebar')).display")),
        "flex");
}

TEST_F(Confinement, TheHostOpensOnlyWebAddressesThePageAsksFor) {
    ZPhoneticSymbolWebWindow* window = openDialogOnGreeting();
    ASSERT_NE(window, nullptr);
    // Each address asked for in turn through window.zxHost, as a script in the page would; the
    // outcome of each call is kept in order.
    ASSERT_TRUE(probe(window, QStringLiteral(R"js(
        window.outcomes = [];
        var addresses = ['file:///etc/passwd', 'javascript:alert(1)', 'smb://server/share',
                         'data:text/html,<p>x</p>', 'https:no-host', 'ftp://example.invalid/x',
                         'https://help.example.invalid/pinyin?from=home',
                         'http://other.example.invalid/?from=texttool'];
        addresses.reduce(function (previous, address) {
            return previous.then(function () {
                return zxHost.openBrowser(address).then(function () {
                    window.outcomes.push('opened');
                }, function (error) {
                    window.outcomes.push(error.message);
                });
            });
        }, Promise.resolve()).then(function () {
            document.documentElement.setAttribute('data-probe', 'done');
        });
    )js")));
    EXPECT_EQ(pageText(window, QStringLiteral("window.outcomes.join('\\n')")),
              "openPromeBrowser: not a web address: file:///etc/passwd\n"
              "openPromeBrowser: not a web address: javascript:alert(1)\n"
              "openPromeBrowser: not a web address: smb://server/share\n"
              "openPromeBrowser: not a web address: data:text/html,<p>x</p>\n"
              "openPromeBrowser: not a web address: https:no-host\n"
              "openPromeBrowser: not a web address: ftp://example.invalid/x\n"
              "opened\n"
              "opened");
    // The add-on's own rule stands: the first address it was given is the one it opens, then
    // and ever after (this test is the first of its process to open one).
    const QString first =
        "https://help.example.invalid/pinyin?from=home&app_type=client&app_name=" +
        QCoreApplication::applicationName() + "&app_version=" + ClientInfo::instance().appVersion +
        "&app_dist=";
    const QList<QUrl> opened = minihost::urlsOpened();
    ASSERT_EQ(opened.size(), 2);
    EXPECT_EQ(opened[0].toString(), first);
    EXPECT_EQ(opened[1], opened[0]);
}

}  // namespace
