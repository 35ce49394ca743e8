// SPDX-License-Identifier: MIT
// zphonetic apply and readings, run as a user runs them: on decks the tests write with the real
// writer, each layout with each bracket kind, the results re-read from the file and opened by
// LibreOffice.
#include <gtest/gtest.h>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "minihost/slxcore/deck.h"

namespace {

QString u(const char* text) {
    return QString::fromUtf8(text);
}

struct ProgramRun {
    int exitCode = -1;
    QString out;
    QString err;
};

class Apply : public testing::Test {
protected:
    // A one-slide deck with one text box holding `text`; its shape id in *id.
    QString deckWith(const QString& name, const QString& text, int* id = nullptr) {
        auto deck = minihost::Deck::create(1);
        const int box = deck->addTextBox(1, text, QRectF(100, 100, 400, 60));
        if (id) *id = box;
        const QString path = dir.filePath(name);
        QString error;
        EXPECT_TRUE(deck->save(path, &error)) << error.toStdString();
        return path;
    }

    ProgramRun zphonetic(const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("ZPHONETIC_HOME"), dir.filePath(QStringLiteral("home")));
        environment.insert(QStringLiteral("ZPHONETIC_UI_LANGUAGE"), QStringLiteral("en_US"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(ZPHONETIC_PROGRAM), arguments);
        ProgramRun run;
        if (!process.waitForFinished(120000)) return run;
        run.exitCode = process.exitCode();
        run.out = QString::fromUtf8(process.readAllStandardOutput());
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

    // The texts of slide 1's shapes, re-read from `path`.
    QStringList texts(const QString& path) {
        QString error;
        auto deck = minihost::Deck::loadFile(path, &error);
        EXPECT_TRUE(deck) << error.toStdString();
        QStringList result;
        if (deck)
            for (const minihost::ShapeInfo& shape : deck->shapes(1)) result << shape.text;
        return result;
    }

    QTemporaryDir dir;
};

struct Layout {
    int style;
    int bracket;
    QStringList expected;  // slide 1's texts after applying to 你好
};

TEST_F(Apply, EveryLayoutWithEveryBracketKind) {
    int id = 0;
    const QString input = deckWith(QStringLiteral("in.pptx"), u("你好"), &id);
    const char* open[] = {"", "（", "[", "", "/", "{"};
    const char* close[] = {"", "）", "]", "", "/", "}"};
    QStringList written;
    for (int bracket = 1; bracket <= 5; ++bracket) {
        const QString o = u(open[bracket]), c = u(close[bracket]);
        const QString group = o + u("nǐ hǎo") + c;
        const Layout layouts[] = {
            {1, bracket, {u("你好") + group}},
            {2, bracket, {u("你") + o + u("nǐ") + c + u("好") + o + u("hǎo") + c}},
            {3, bracket, {u("你好"), group}},
        };
        for (const Layout& layout : layouts) {
            const QString output =
                dir.filePath(QStringLiteral("out-%1-%2.pptx").arg(layout.style).arg(bracket));
            const ProgramRun run =
                zphonetic({QStringLiteral("apply"), input, QStringLiteral("-o"), output,
                           QStringLiteral("--select"), QStringLiteral("%1:0+2").arg(id),
                           QStringLiteral("--style"), QString::number(layout.style),
                           QStringLiteral("--bracket"), QString::number(bracket)});
            ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
            EXPECT_EQ(texts(output), layout.expected)
                << "style " << layout.style << ", bracket " << bracket;
            written << output;
        }
    }
    EXPECT_EQ(texts(input), QStringList{u("你好")});  // the input is untouched

    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty()) GTEST_SKIP() << "soffice not found: LibreOffice check skipped";
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(
        soffice,
        QStringList{QStringLiteral("--headless"),
                    QStringLiteral("-env:UserInstallation=file://") + dir.filePath("profile"),
                    QStringLiteral("--convert-to"), QStringLiteral("pdf"),
                    QStringLiteral("--outdir"), dir.filePath(QStringLiteral("pdf"))} +
            written);
    ASSERT_TRUE(process.waitForFinished(300000)) << "soffice did not finish";
    EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
    for (const QString& deck : written)
        EXPECT_GT(
            QFileInfo(dir.filePath("pdf/") + QFileInfo(deck).completeBaseName() + ".pdf").size(),
            1000)
            << "LibreOffice made no PDF of " << deck.toStdString();
}

TEST_F(Apply, PicksReplaceTheReadingsInContext) {
    int id = 0;
    const QString input = deckWith(QStringLiteral("in.pptx"), u("都得"), &id);
    const QString output = dir.filePath(QStringLiteral("out.pptx"));
    const ProgramRun run = zphonetic(
        {QStringLiteral("apply"), input, QStringLiteral("-o"), output, QStringLiteral("--style"),
         QStringLiteral("1"), QStringLiteral("--bracket"), QStringLiteral("2"),
         QStringLiteral("--select"), QStringLiteral("%1:0+2").arg(id), QStringLiteral("--pick"),
         u("0=dū"), QStringLiteral("--pick"), u("1=děi")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(texts(output), QStringList{u("都得[dū děi]")});
}

TEST_F(Apply, TonesChosenForTheRunAreTheDialogsReadings) {
    int id = 0;
    const QString input = deckWith(QStringLiteral("in.pptx"), u("一个不是"), &id);
    const QString output = dir.filePath(QStringLiteral("out.pptx"));
    const QStringList arguments{QStringLiteral("apply"),     input,
                                QStringLiteral("-o"),        output,
                                QStringLiteral("--style"),   QStringLiteral("1"),
                                QStringLiteral("--bracket"), QStringLiteral("2")};
    ProgramRun run = zphonetic(arguments);
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(texts(output), QStringList{u("一个不是[yí ɡè bú shì]")});
    run = zphonetic(arguments + QStringList{QStringLiteral("--tones"), QStringLiteral("original")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(texts(output), QStringList{u("一个不是[yī ɡè bù shì]")});
}

TEST_F(Apply, PlaceBelowMovesTheOwnTextBoxUnderItsText) {
    int id = 0;
    const QString input = deckWith(QStringLiteral("in.pptx"), u("银行行长"), &id);
    const QString output = dir.filePath(QStringLiteral("out.pptx"));
    const ProgramRun run =
        zphonetic({QStringLiteral("apply"), input, QStringLiteral("-o"), output,
                   QStringLiteral("--style"), QStringLiteral("3"), QStringLiteral("--bracket"),
                   QStringLiteral("3"), QStringLiteral("--place"), QStringLiteral("below")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QString error;
    const auto deck = minihost::Deck::loadFile(output, &error);
    ASSERT_TRUE(deck) << error.toStdString();
    const QList<minihost::ShapeInfo> shapes = deck->shapes(1);
    ASSERT_EQ(shapes.size(), 2);
    EXPECT_EQ(shapes[1].text, u("yín hánɡ hánɡ zhǎnɡ"));
    // The source is at 100, 100, 400 x 60: the readings right under it, as wide.
    EXPECT_EQ(shapes[1].box.topLeft(), QPointF(100, 160));
    EXPECT_EQ(shapes[1].box.width(), 400);
}

TEST_F(Apply, PlaceOverPutsEachSyllableOverItsCharacter) {
    int id = 0;
    const QString input = deckWith(QStringLiteral("in.pptx"), u("银行行长"), &id);
    const QString output = dir.filePath(QStringLiteral("out.pptx"));
    const ProgramRun run =
        zphonetic({QStringLiteral("apply"), input, QStringLiteral("-o"), output,
                   QStringLiteral("--style"), QStringLiteral("3"), QStringLiteral("--bracket"),
                   QStringLiteral("1"), QStringLiteral("--place"), QStringLiteral("over")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    QString error;
    const auto deck = minihost::Deck::loadFile(output, &error);
    ASSERT_TRUE(deck) << error.toStdString();
    // The text, and over it a group of a box a syllable: the dialog's own box is gone.
    EXPECT_EQ(deck->shapes(1).size(), 1 + 1 + 4);
    EXPECT_EQ(deck->text(1, id), u("银行行长"));
    EXPECT_EQ(
        deck->readingsOver(1, id),
        (QList<minihost::Reading>{{0, u("yín")}, {1, u("hánɡ")}, {2, u("hánɡ")}, {3, u("zhǎnɡ")}}));
    // Each over its character: centred on it, above its line.
    const minihost::TextLayout layout = *deck->textLayout(1, id);
    for (const minihost::ShapeInfo& shape : deck->shapes(1)) {
        if (!shape.name.startsWith(QStringLiteral("Pinyin ")) || !shape.hasTextFrame) continue;
        const minihost::CharPlace place = layout.place(shape.name.mid(7).toInt());
        EXPECT_LE(shape.box.bottom(), layout.lines().at(place.line).baseline - 18 * 0.95);
        EXPECT_GT(shape.box.center().x(), place.left);
        EXPECT_LT(shape.box.center().x(), place.right);
    }
}

TEST_F(Apply, PlaceIsForTheOwnTextBoxOnly) {
    const QString input = deckWith(QStringLiteral("in.pptx"), u("你好"));
    const QString output = dir.filePath(QStringLiteral("out.pptx"));
    const ProgramRun run =
        zphonetic({QStringLiteral("apply"), input, QStringLiteral("-o"), output,
                   QStringLiteral("--style"), QStringLiteral("1"), QStringLiteral("--bracket"),
                   QStringLiteral("1"), QStringLiteral("--place"), QStringLiteral("below")});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains(
        "zphonetic: --place: moves the readings' own text box: give it with --style 3"))
        << run.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(output));
}

TEST_F(Apply, ErrorsNameTheFileAndLeaveTheInputUntouched) {
    const QString input = deckWith(QStringLiteral("in.pptx"), u("你好"));
    QFile file(input);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray original = file.readAll();
    file.close();

    const QString output = dir.filePath(QStringLiteral("out.pptx"));
    ProgramRun run = zphonetic({QStringLiteral("apply"), input, QStringLiteral("-o"), output,
                                QStringLiteral("--style"), QStringLiteral("1")});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_EQ(run.err.trimmed().split('\n').constLast(),
              "zphonetic: " + input + ": needs --style N and --bracket N");

    run = zphonetic({QStringLiteral("apply"), dir.filePath("missing.pptx"), QStringLiteral("-o"),
                     output, QStringLiteral("--style"), QStringLiteral("1"),
                     QStringLiteral("--bracket"), QStringLiteral("1")});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains("zphonetic: " + dir.filePath("missing.pptx") + ": "))
        << run.err.toStdString();

    run = zphonetic({QStringLiteral("apply"), input, QStringLiteral("-o"), output,
                     QStringLiteral("--select"), QStringLiteral("99"), QStringLiteral("--style"),
                     QStringLiteral("1"), QStringLiteral("--bracket"), QStringLiteral("1")});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains("zphonetic: " + input + ": slide 1 has no shape 99"))
        << run.err.toStdString();

    run = zphonetic({QStringLiteral("apply"), input, QStringLiteral("-o"), output,
                     QStringLiteral("--style"), QStringLiteral("1"), QStringLiteral("--bracket"),
                     QStringLiteral("1"), QStringLiteral("--pick"), u("7=nǐ")});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains("zphonetic: --pick: no character at index 7 (the dialog shows 2)"))
        << run.err.toStdString();

    EXPECT_FALSE(QFileInfo::exists(output));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), original);
}

TEST_F(Apply, ReadingsShowsWhatTheDialogShows) {
    ProgramRun run = zphonetic({QStringLiteral("readings"), u("你A好")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, u("0\t你\tnǐ\tnǐ\n1\tA\t\t\n2\t好\thǎo\thǎo hào\n"));
    run = zphonetic({QStringLiteral("readings"), u("你"), QStringLiteral("--json")});
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.out.contains("\"callstatus\" : \"ok\"")) << run.out.toStdString();
    run = zphonetic({QStringLiteral("readings"), QStringLiteral("abc")});
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains("zphonetic: abc: nothing to annotate")) << run.err.toStdString();
}

}  // namespace
