// SPDX-License-Identifier: MIT
// "PhoneticSymbol": which view opens (or the warning), the 30-unit cut, one dialog at a time, and
// the round trip through the bridge into the deck.
#include <algorithm>

#include "dialogfixture.h"

namespace {

using OpenDialog = DialogTest;

bool tagged(const std::vector<std::string>& journal, const QString& text) {
    return std::find(journal.begin(), journal.end(), ("PinyinTagSen " + text).toStdString()) !=
           journal.end();
}

TEST_F(OpenDialog, ASelectionOf30UnitsIsKeptWhole) {
    const QString text = QString::fromUtf8("你").repeated(30);
    selectBox(text);
    ASSERT_NE(openDialog(), nullptr);
    EXPECT_EQ(model()->style.text, text);
    EXPECT_EQ(model()->readings.size(), 30);
    EXPECT_TRUE(tagged(tagger.journal(), text));
}

TEST_F(OpenDialog, ASelectionOf31IsCutTo30BeforeTagging) {
    selectBox(QString::fromUtf8("你").repeated(30) + QString::fromUtf8("好"));
    ASSERT_NE(openDialog(), nullptr);
    EXPECT_EQ(model()->style.text, QString::fromUtf8("你").repeated(30));
    EXPECT_TRUE(tagged(tagger.journal(), QString::fromUtf8("你").repeated(30)));
    EXPECT_FALSE(
        tagged(tagger.journal(), QString::fromUtf8("你").repeated(30) + QString::fromUtf8("好")));
    EXPECT_FALSE(model()->candidates.contains(QString::fromUtf8("好")[0]));
}

TEST_F(OpenDialog, OpensThePinyinViewWithTheWindowsSetup) {
    selectBox(QString::fromUtf8("你好"));
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(
        minihost::webWidgetUrl(window).endsWith("/mui/default/html/pinyin/index.html#/pinyin"));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->size(), QSize(627, 669));
    EXPECT_EQ(window->parentWidget(), model()->mainWindow);
}

TEST_F(OpenDialog, ASecondCommandWhileOpenChangesNothing) {
    selectBox(QString::fromUtf8("你好"));
    ZPhoneticSymbolWebWindow* first = openDialog();
    const int widgets = minihost::webWidgets().size();
    selectBox(QString::fromUtf8("都得"));
    model()->openPhoneticDialog();
    EXPECT_EQ(model()->dialog, first);
    EXPECT_EQ(model()->style.text, QString::fromUtf8("你好"));
    EXPECT_EQ(minihost::webWidgets().size(), widgets);
}

TEST_F(OpenDialog, AfterClosingTheNextCommandOpensANewWindow) {
    selectBox(QString::fromUtf8("你好"));
    ZPhoneticSymbolWebWindow* first = openDialog();
    ASSERT_NE(first, nullptr);
    QPointer<ZPhoneticSymbolWebWindow> watch(first);
    first->close();
    EXPECT_EQ(model()->dialog, nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(watch.isNull());  // deleted later
    EXPECT_NE(openDialog(), nullptr);
}

TEST_F(OpenDialog, NoSelectionOpensTheGuide) {
    deck->clearSelection();
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(minihost::webWidgetUrl(window).endsWith("index.html#/guide"));
    EXPECT_TRUE(minihost::messagesShown().isEmpty());
}

TEST_F(OpenDialog, NoTaggerOpensTheGuide) {
    selectBox(QString::fromUtf8("你好"));
    model()->releaseModel();
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(minihost::webWidgetUrl(window).endsWith("index.html#/guide"));
}

TEST_F(OpenDialog, TextWithoutChineseWarns) {
    selectBox(QStringLiteral("abc 123"));
    model()->openPhoneticDialog();
    EXPECT_EQ(model()->dialog, nullptr);
    const QList<RecordedMessage> messages = minihost::messagesShown();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0].text, "please select one character at least");
    EXPECT_EQ(messages[0].flags, 0x30u);
    EXPECT_TRUE(model()->readings.isEmpty() || model()->candidates.isEmpty());
}

TEST_F(OpenDialog, StyleIsNotResetBetweenOpenings) {
    selectBox(QString::fromUtf8("你好"));
    ASSERT_NE(openDialog(), nullptr);
    model()->dialog->close();
    // Values the selection's reading cannot give stay from before; values it reads are replaced.
    model()->style.bold = true;
    model()->style.applyColor = true;
    model()->style.fontSize = 77;
    model()->style.fontName = QStringLiteral("Replaced");
    selectBox(QString::fromUtf8("都得"));
    ASSERT_NE(openDialog(), nullptr);
    EXPECT_EQ(model()->style.text, QString::fromUtf8("都得"));
    EXPECT_TRUE(model()->style.bold);
    EXPECT_TRUE(model()->style.applyColor);
    EXPECT_NE(model()->style.fontSize, 77);
    EXPECT_NE(model()->style.fontName, QStringLiteral("Replaced"));
    model()->style = TextStyle();
}

TEST_F(OpenDialog, TheRoundTripWritesIntoTheDeckAsOneUndoStep) {
    const int box = deck->addTextBox(1, QString::fromUtf8("你好"), QRectF(100, 100, 300, 50));
    ASSERT_TRUE(deck->selectText(box, 0, 2));
    ASSERT_NE(openDialog(), nullptr);
    const QVariantMap reply = call(
        "setPhoneticText",
        QString::fromUtf8(
            R"({"styleType":1,"bracketType":2,"phonetic":"[{\"index\":0,\"pinyin\":\"nǐ\",\"text\":\"你\"},{\"index\":1,\"pinyin\":\"hǎo\",\"text\":\"好\"}]"})"));
    EXPECT_EQ(reply.value("result").toString().simplified(), "{ \"callstatus\" : \"ok\" }");
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你好[nǐ hǎo]"));
    EXPECT_EQ(model()->styleType, 1);
    EXPECT_EQ(model()->bracketType, 2);
    EXPECT_EQ(deck->undoSteps(), QStringList{"set phonetic symbol"});
    QCoreApplication::processEvents();  // the queued close
    EXPECT_EQ(model()->dialog, nullptr);
    EXPECT_TRUE(deck->undo());
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你好"));
    model()->styleType = -1;
    model()->bracketType = -1;
}

TEST_F(OpenDialog, AnArrayInsteadOfAStringAppliesNothingAndCloses) {
    const int box = deck->addTextBox(1, QString::fromUtf8("你好"), QRectF(100, 100, 300, 50));
    ASSERT_TRUE(deck->selectText(box, 0, 2));
    ASSERT_NE(openDialog(), nullptr);
    deck->clearJournal();
    const QVariantMap reply = call(
        "setPhoneticText",
        QString::fromUtf8(
            R"({"styleType":1,"bracketType":2,"phonetic":[{"index":0,"pinyin":"nǐ","text":"你"}]})"));
    EXPECT_TRUE(reply.value("ok").toBool());
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你好"));
    EXPECT_TRUE(deck->journal().isEmpty());
    EXPECT_EQ(model()->styleType, -1);  // no apply: the choices are not stored either
    EXPECT_NE(model()->dialog, nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(model()->dialog, nullptr);
}

TEST_F(OpenDialog, ReadingsNestedDeeperThanTheReaderGoesApplyNothingAndClose) {
    const int box = selectBox(QString::fromUtf8("你好"));
    ASSERT_NE(openDialog(), nullptr);
    deck->clearJournal();
    const QString deep = QString(2000, QLatin1Char('[')) + QString(2000, QLatin1Char(']'));
    const QVariantMap reply =
        call("setPhoneticText",
             QStringLiteral(R"({"styleType":1,"bracketType":1,"phonetic":"%1"})").arg(deep));
    EXPECT_EQ(reply.value("result").toString().simplified(), "{ \"callstatus\" : \"ok\" }");
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你好"));
    EXPECT_TRUE(deck->journal().isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(model()->dialog, nullptr);
}

TEST_F(OpenDialog, AnEmptyArrayAppliesNothingAndCloses) {
    selectBox(QString::fromUtf8("你好"));
    ASSERT_NE(openDialog(), nullptr);
    deck->clearJournal();
    call("setPhoneticText", R"({"styleType":1,"bracketType":1,"phonetic":"[]"})");
    EXPECT_TRUE(deck->journal().isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(model()->dialog, nullptr);
}

}  // namespace
