// SPDX-License-Identifier: MIT
// zphonetic show: the listing of a deck, and its errors.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "qtprinters.h"

namespace {

struct Captured {
    int status;
    QString out, err;
};

// Runs the built program: zphonetic show ARGS, with a runtime directory of its own so Qt has
// nothing to warn about on standard error.
Captured run(const QStringList& args) {
    QTemporaryDir runtime;
    QFile::setPermissions(runtime.path(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ZPHONETIC_PROGRAM), QStringList{QStringLiteral("show")} + args);
    if (!process.waitForFinished(60000)) return {-1, {}, QStringLiteral("did not finish")};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

TEST(Show, ListsSlidesShapesIdsTextsAndFormats) {
    QTemporaryDir dir;
    auto deck = minihost::Deck::create(2);
    deck->addTextBox(1, QStringLiteral("你好\r世界"), QRectF(10, 20, 300, 40));
    deck->addTextBox(2, QStringLiteral("a\"b"), QRectF(0, 0, 100, 50));
    const QString path = dir.filePath("two.pptx");
    QString error;
    ASSERT_TRUE(deck->save(path, &error)) << error.toStdString();
    const Captured c = run({path});
    EXPECT_EQ(c.status, 0);
    EXPECT_EQ(c.err, QString());
    EXPECT_EQ(c.out,
              path + QStringLiteral(": 2 slides, 960 x 540 pt\n"
                                    "slide 1: 1 shape\n"
                                    "  shape 2 \"TextBox 1\" text box at 10, 20, 300 x 40 pt\n"
                                    "    text (5 units): \"你好\\r世界\"\n"
                                    "    font: Calibri 18 pt, colour #000000\n"
                                    "slide 2: 1 shape\n"
                                    "  shape 2 \"TextBox 1\" text box at 0, 0, 100 x 50 pt\n"
                                    "    text (3 units): \"a\\\"b\"\n"
                                    "    font: Calibri 18 pt, colour #000000\n"));
}

TEST(Show, PublicDeckWithAGroupAndAPlaceholder) {
    const QString path = decktest::testDeckDir() + QStringLiteral("/pypptx-test_slides.pptx");
    if (!QFile::exists(path))
        GTEST_SKIP() << "public test decks not found in " << path.toStdString();
    const Captured c = run({path});
    EXPECT_EQ(c.status, 0);
    EXPECT_TRUE(c.out.contains(QStringLiteral("group"))) << c.out.toStdString();
    EXPECT_TRUE(c.out.contains(QStringLiteral("\"Group test text\""))) << c.out.toStdString();
    EXPECT_TRUE(c.out.contains(QStringLiteral("placed by its layout"))) << c.out.toStdString();
}

TEST(Show, ErrorsNameTheFileAndExitNonZero) {
    QTemporaryDir dir;
    const QString path = dir.filePath("not-a-deck.pptx");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("hello");
    file.close();
    Captured c = run({path});
    EXPECT_EQ(c.status, 1);
    EXPECT_EQ(c.err,
              QStringLiteral("zphonetic: ") + path + QStringLiteral(": not a zip archive\n"));
    EXPECT_EQ(c.out, QString());
    c = run({});
    EXPECT_EQ(c.status, 1);
    EXPECT_EQ(c.err, QStringLiteral("zphonetic: show: usage: zphonetic show DECK\n"));
    c = run({dir.filePath(QStringLiteral("absent.pptx"))});
    EXPECT_EQ(c.status, 1);
    EXPECT_EQ(c.err, QStringLiteral("zphonetic: ") + dir.filePath(QStringLiteral("absent.pptx")) +
                         QStringLiteral(": cannot be opened (No such file or directory)\n"));
}

// A deck's text, names and relationship targets, and the file's own name, reach the terminal with
// their control characters (and the characters that reorder a line) escaped: a deck can neither
// clear the screen nor set the clipboard through the listing or an error.
TEST(Show, ControlCharactersOfTheDeckAndItsNameAreEscaped) {
    QTemporaryDir dir;
    const QByteArray shape =
        "<p:sp><p:nvSpPr><p:cNvPr id=\"2\" name=\"N\x1b[31m\"/><p:cNvSpPr txBox=\"1\"/><p:nvPr/>"
        "</p:nvSpPr><p:spPr/><p:txBody><a:bodyPr/><a:p><a:r><a:rPr lang=\"zh-CN\"><a:latin "
        "typeface=\"F\x1b[2J\"/></a:rPr><a:t>\xe4\xb8\xad\x1b]52;c;aGk=\x07\xe2\x80\xae\\x1b</a:t>"
        "</a:r></a:p></p:txBody></p:sp>";
    const QString path = dir.filePath(QStringLiteral("a\x1b[2J.pptx"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(decktest::deckWithShapes(shape));
    file.close();
    const QString shown = dir.filePath(QStringLiteral("a\\x1b[2J.pptx"));
    Captured c = run({path});
    EXPECT_EQ(c.status, 0);
    EXPECT_EQ(c.out, shown + QStringLiteral(
                                 ": 1 slide, 960 x 540 pt\n"
                                 "slide 1: 1 shape\n"
                                 "  shape 2 \"N\\x1b[31m\" text box, placed by its layout\n"
                                 "    text (18 units): \"中\\x1b]52;c;aGk=\\x07\\u202e\\\\x1b\"\n"
                                 "    font: F\\x1b[2J 18 pt, colour #000000\n"));

    decktest::Parts parts = decktest::blankParts();
    QByteArray rels = decktest::partOf(parts, QStringLiteral("ppt/_rels/presentation.xml.rels"));
    rels.replace("Target=\"slides/slide1.xml\"", "Target=\"../../\x1b]52;c;aGk=\x07\"");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(decktest::makeZip(
        decktest::replaced(parts, QStringLiteral("ppt/_rels/presentation.xml.rels"), rels)));
    file.close();
    c = run({path});
    EXPECT_EQ(c.status, 1);
    EXPECT_EQ(c.err, QStringLiteral("zphonetic: ") + shown +
                         QStringLiteral(": relationship target \"../../\\x1b]52;c;aGk=\\x07\" of "
                                        "\"ppt/presentation.xml\" points outside the archive\n"));
}

// Only a regular file is read: a FIFO would block the open, a device never end.
TEST(Show, AFifoOrADeviceIsRefusedAtOnce) {
    QTemporaryDir dir;
    const QString fifo = dir.filePath(QStringLiteral("deck.pptx"));
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    Captured c = run({fifo});
    EXPECT_EQ(c.status, 1);
    EXPECT_EQ(c.err,
              QStringLiteral("zphonetic: ") + fifo + QStringLiteral(": not a regular file\n"));
    c = run({QStringLiteral("/dev/zero")});
    EXPECT_EQ(c.status, 1);
    EXPECT_EQ(c.err, QStringLiteral("zphonetic: /dev/zero: not a regular file\n"));
}

}  // namespace
