// SPDX-License-Identifier: MIT
// The real dialog window, headless in the web engine, on a test page that calls the five bridge
// methods through window.zxHost: the replies arrive and the round trip writes into the deck.
#include <QJsonDocument>
#include <QSignalSpy>
#include <memory>

#include "dialogfixture.h"

namespace {

const int kTimeout = 60000;

using DialogPage = DialogTest;

TEST_F(DialogPage, FiveMethodsThroughZxHostAndTheRoundTrip) {
    minihost::setWebRendering(true);
    const int box = deck->addTextBox(1, QString::fromUtf8("你好"), QRectF(100, 100, 300, 50));
    ASSERT_TRUE(deck->selectText(box, 0, 2));
    // What openPhoneticDialog prepares, then its window on the test page instead of the add-on's.
    model()->style.text = QString::fromUtf8("你好");
    model()->style.color = QColor(0, 0, 255);
    model()->readings = QStringList{QString::fromUtf8("nǐ"), QString::fromUtf8("hǎo")};
    model()->candidates = {
        {QString::fromUtf8("你")[0], {QString::fromUtf8("nǐ")}},
        {QString::fromUtf8("好")[0], {QString::fromUtf8("hǎo"), QString::fromUtf8("hào")}}};
    // The model's slot would delete the window (and its page) as soon as the page confirms; the
    // test keeps it to read what the page received, and checks the close signal instead.
    auto window = std::make_unique<ZPhoneticSymbolWebWindow>(nullptr);
    model()->dialog = window.get();
    struct Forget {  // the model must not keep the window past this test, whatever fails
        ~Forget() { ZPhoneticSymbolModel::instance()->dialog = nullptr; }
    } forget;
    QSignalSpy closed(window.get(), SIGNAL(signalClose()));
    ASSERT_TRUE(window->init(
        QStringLiteral("file:///" ZPHONETIC_TEST_PAGES "/fivemethods.html#/pinyin?from=home"),
        QStringLiteral("zphonetic_symbol_web_window")));
    window->show();
    ASSERT_TRUE(minihost::waitForPageAttribute(window.get(), "data-rendered", "pinyin", kTimeout));

    bool ok = false;
    const QVariantMap results =
        QJsonDocument::fromJson(
            minihost::runPageScript(window.get(), "JSON.stringify(window.results)", kTimeout, &ok)
                .toString()
                .toUtf8())
            .toVariant()
            .toMap();
    ASSERT_TRUE(ok);
    EXPECT_EQ(results.value("enterprise").toString(), "{\"isEnterprise\":0}");
    EXPECT_EQ(results.value("callstatus").toString(), "ok");
    EXPECT_EQ(results.value("texts").toString(), QString::fromUtf8("你好"));
    EXPECT_EQ(results.value("readings").toStringList(),
              (QStringList{QString::fromUtf8("nǐ"), QString::fromUtf8("hǎo")}));
    EXPECT_EQ(results.value("color").toList(), (QVariantList{0, 0, 255}));
    EXPECT_TRUE(results.contains("resize"));
    EXPECT_TRUE(results.value("resize").isNull());
    EXPECT_EQ(results.value("set").toMap(), (QVariantMap{{"callstatus", "ok"}}));

    EXPECT_EQ(window->size(), QSize(501, 301));
    const QList<QUrl> opened = minihost::urlsOpened();
    ASSERT_EQ(opened.size(), 1);
    EXPECT_TRUE(opened[0].toString().startsWith(
        "https://help.example.invalid/zphonetic/pinyin?from=home&app_type=client&app_name="));
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你（nǐ）好（hǎo）"));
    EXPECT_EQ(model()->styleType, 2);
    EXPECT_EQ(model()->bracketType, 1);
    // setPhoneticText closed the window.
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(closed.count(), 1);
    model()->styleType = -1;
    model()->bracketType = -1;
}

}  // namespace
