// SPDX-License-Identifier: MIT
// The dialog's bridge, called exactly as the page calls it: its five methods and its meta object.
#include <json/reader.h>
#include <QJsonDocument>
#include <QMetaMethod>
#include <sstream>

#include "dialog/phoneticsymboljsapi.h"
#include "dialogfixture.h"
#include "engine/taggerbinding.h"
#include "minihost/nvo/hostreadingservice.h"
#include "minihost/nvo/hoststore.h"
#include "nvo/readingservice.h"
#include "usage/clientinfo.h"

namespace {

using JsApi = DialogTest;

// The reply text of a call as a JSON value.
Json::Value replyOf(const QVariantMap& reply) {
    EXPECT_TRUE(reply.value("ok").toBool()) << reply.value("error").toString().toStdString();
    Json::Value value;
    Json::CharReaderBuilder builder;
    const std::string text = reply.value("result").toString().toStdString();
    std::string errors;
    std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    EXPECT_TRUE(reader->parse(text.data(), text.data() + text.size(), &value, &errors)) << text;
    return value;
}

Json::Value parsed(const char* text) {
    Json::Value value;
    std::istringstream stream(text);
    stream >> value;
    return value;
}

TEST_F(JsApi, FiveSlotsInOrder) {
    const QMetaObject& meta = ZPhoneticSymbolJsApi::staticMetaObject;
    EXPECT_STREQ(meta.className(), "ZPhoneticSymbolJsApi");
    EXPECT_EQ(meta.superClass(), &nvolite::ZxCommonJsApi::staticMetaObject);
    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 5);
    const char* expected[] = {"getPhoneticText(ZxWebViewJSContext&)",
                              "setPhoneticText(ZxWebViewJSContext&)",
                              "changeSize(ZxWebViewJSContext&)", "onOpenPromeBrowser(QString)",
                              "onGetIsEnterprise(ZxWebViewJSContext&)"};
    for (int i = 0; i < 5; ++i) {
        const QMetaMethod slot = meta.method(meta.methodOffset() + i);
        EXPECT_EQ(slot.methodSignature(), expected[i]);
        EXPECT_EQ(slot.methodType(), QMetaMethod::Slot);
        EXPECT_EQ(slot.access(), QMetaMethod::Private);
    }
    ZPhoneticSymbolJsApi api(nullptr);
    EXPECT_FALSE(api.allowRemoteOrigin());
    EXPECT_FALSE(api.allowNavigation());
}

TEST_F(JsApi, TheReplyForDuDeInRed) {
    model()->style.text = QString::fromUtf8("都得");
    model()->style.color = QColor(255, 0, 0);
    model()->readings = QStringList{QString::fromUtf8("dōu"), QString::fromUtf8("děi")};
    model()->candidates = {
        {QString::fromUtf8("都")[0], {QString::fromUtf8("dōu"), QString::fromUtf8("dū")}},
        {QString::fromUtf8("得")[0],
         {QString::fromUtf8("dé"), QString::fromUtf8("de"), QString::fromUtf8("děi")}}};
    ZPhoneticSymbolWebWindow window(nullptr);
    ASSERT_TRUE(
        window.init(QStringLiteral("file:///nowhere/index.html#/pinyin"), QStringLiteral("test")));
    const Json::Value reply = replyOf(minihost::callBridge(&window, "getPhoneticText", "{}"));
    EXPECT_EQ(reply, parsed(R"({
       "callstatus" : "ok",
       "result" : {
          "bracketType" : -1,
          "data" : {
             "color" : [ 255, 0, 0 ],
             "phonetic" : [
                { "duyin" : [ "dōu", "dū" ], "index" : 0, "pinyin" : "dōu", "text" : "都" },
                { "duyin" : [ "dé", "de", "děi" ], "index" : 1, "pinyin" : "děi", "text" : "得" }
             ]
          },
          "styleType" : -1
       }
    })"));
}

TEST_F(JsApi, NothingToShowIsANullResult) {
    ZPhoneticSymbolWebWindow window(nullptr);
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/index.html"), QStringLiteral("test")));
    model()->readings.clear();
    model()->candidates.clear();
    EXPECT_EQ(replyOf(minihost::callBridge(&window, "getPhoneticText", "{}")),
              parsed(R"({"callstatus":"ok","result":null})"));
    // A text without any character from U+4E00 to U+9FA5.
    EXPECT_EQ(replyOf(minihost::callBridge(&window, "getPhoneticText", R"({"text":"abc, 123!"})")),
              parsed(R"({"callstatus":"ok","result":null})"));
}

TEST_F(JsApi, AGivenTextIsTaggedAfreshInBlack) {
    model()->style.color = QColor(255, 0, 0);
    ZPhoneticSymbolWebWindow window(nullptr);
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/index.html"), QStringLiteral("test")));
    const Json::Value reply = replyOf(
        minihost::callBridge(&window, "getPhoneticText", QString::fromUtf8(R"({"text":"你A好"})")));
    const Json::Value& data = reply["result"]["data"];
    EXPECT_EQ(data["color"], parsed("[0,0,0]"));
    ASSERT_EQ(data["phonetic"].size(), 3u);
    EXPECT_EQ(data["phonetic"][0]["pinyin"].asString(), "nǐ");
    EXPECT_EQ(data["phonetic"][0]["duyin"], parsed(R"(["nǐ"])"));  // one reading: one element
    EXPECT_EQ(data["phonetic"][1]["pinyin"].asString(), "");       // a Latin letter
    EXPECT_EQ(data["phonetic"][1]["duyin"], parsed("[]"));
    EXPECT_EQ(data["phonetic"][2]["pinyin"].asString(), "hǎo");
    EXPECT_EQ(reply["result"]["styleType"].asInt(), -1);
    EXPECT_EQ(reply["result"]["bracketType"].asInt(), -1);
    EXPECT_TRUE(model()->readings.isEmpty());  // the model is not touched
}

TEST_F(JsApi, AGivenTextOf31UnitsIsCutTo30) {
    ZPhoneticSymbolWebWindow window(nullptr);
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/index.html"), QStringLiteral("test")));
    const QString text = QString::fromUtf8("你").repeated(31);
    const Json::Value reply = replyOf(minihost::callBridge(
        &window, "getPhoneticText",
        QString::fromUtf8(QJsonDocument::fromVariant(QVariantMap{{"text", text}}).toJson())));
    EXPECT_EQ(reply["result"]["data"]["phonetic"].size(), 30u);
}

TEST_F(JsApi, AGivenTextWithoutTheTaggingLibraryIsNull) {
    model()->releaseModel();  // no tagger, no core application
    ZPhoneticSymbolWebWindow window(nullptr);
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/index.html"), QStringLiteral("test")));
    EXPECT_EQ(replyOf(minihost::callBridge(&window, "getPhoneticText",
                                           QString::fromUtf8(R"({"text":"你好"})"))),
              parsed(R"({"callstatus":"ok","result":null})"));
    model()->initModel(nullptr);
}

TEST_F(JsApi, AGivenTextWithATaggerWhoseLibraryDidNotLoadIsNull) {
    // Initialised, with a tagger handle, but the library was not found: the readings come from
    // nowhere else, though the host offers a reading service that would answer (it stands in
    // only when the feature is off).
    IUnknown* service = minihost::createReadingService(
        [](const QString& text, QVector<minihost::HostReading>& readings) {
            for (int i = 0; i < text.size(); ++i) readings.append({QStringLiteral("dú")});
            return true;
        });
    minihost::registerService(SID_ZReadingService, service);
    service->Release();
    model()->releaseModel();
    minihost::setDirectory(ZDirTaggingLibrary, QStringLiteral("/nonexistent/zphonetic"));
    model()->initModel(nullptr);
    ASSERT_NE(model()->coreApp, nullptr);
    ASSERT_NE(model()->tagger, nullptr);
    ASSERT_EQ(model()->tagger->library, nullptr);
    ZPhoneticSymbolWebWindow window(nullptr);
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/index.html"), QStringLiteral("test")));
    EXPECT_EQ(replyOf(minihost::callBridge(&window, "getPhoneticText",
                                           QString::fromUtf8(R"({"text":"你好"})"))),
              parsed(R"({"callstatus":"ok","result":null})"));
    model()->releaseModel();
    minihost::unregisterService(SID_ZReadingService);
    minihost::setDirectory(ZDirTaggingLibrary, TaggerDoubleLibrary::directory());
    model()->initModel(nullptr);
}

TEST_F(JsApi, ChangeSizeNeedsBothAndAddsOnePixel) {
    selectBox(QString::fromUtf8("你好"));
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(call("changeSize", R"({"width":600,"height":0})").value("result").isValid());
    EXPECT_EQ(window->size(), QSize(627, 669));
    call("changeSize", R"({"width":600})");
    call("changeSize", R"({"width":"wide","height":400})");
    EXPECT_EQ(window->size(), QSize(627, 669));
    call("changeSize", R"({"width":600,"height":400})");
    EXPECT_EQ(window->size(), QSize(601, 401));
    minihost::setScaleFactor(2.0);
    call("changeSize", R"({"width":600,"height":400})");
    EXPECT_EQ(window->size(), QSize(1202, 802));
    minihost::setScaleFactor(1.0);
}

TEST_F(JsApi, ResizeDialogWithoutADialogDoesNothing) {
    model()->resizeDialog(600, 400);  // no crash, nothing to size
    EXPECT_EQ(model()->dialog, nullptr);
}

TEST_F(JsApi, TheBrowserUrlIsBuiltOnceAndKept) {
    // The only test of this program that opens a URL: the cache lives as long as the process.
    ZPhoneticSymbolWebWindow window(nullptr);
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/index.html"), QStringLiteral("test")));
    EXPECT_TRUE(
        minihost::callBridge(&window, "openPromeBrowser", R"({"url":""})").value("ok").toBool());
    EXPECT_TRUE(minihost::urlsOpened().isEmpty());  // an empty url is ignored
    minihost::callBridge(&window, "openPromeBrowser",
                         R"({"url":"https://help.example.invalid/pinyin?from=home"})");
    minihost::callBridge(&window, "openPromeBrowser",
                         R"({"url":"https://help.example.invalid/other?from=texttool"})");
    const QList<QUrl> opened = minihost::urlsOpened();
    ASSERT_EQ(opened.size(), 2);
    const QString expected =
        "https://help.example.invalid/pinyin?from=home&app_type=client&app_name=" +
        QCoreApplication::applicationName() + "&app_version=" + ClientInfo::instance().appVersion +
        "&app_dist=";
    EXPECT_EQ(opened[0].toString(), expected);
    EXPECT_EQ(opened[1], opened[0]);
}

TEST_F(JsApi, IsEnterpriseIsTheExactCompactText) {
    ZPhoneticSymbolWebWindow window(nullptr);
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/index.html"), QStringLiteral("test")));
    const QVariantMap reply = minihost::callBridge(&window, "onGetIsEnterprise", "{}");
    EXPECT_EQ(reply.value("result").toString(), "{\"isEnterprise\":0}");
    minihost::setHostSetting(QStringLiteral("product/enterprise"), true);
    EXPECT_EQ(minihost::callBridge(&window, "onGetIsEnterprise", "{}").value("result").toString(),
              "{\"isEnterprise\":1}");
    minihost::setHostSetting(QStringLiteral("product/enterprise"), QVariant());
}

}  // namespace
