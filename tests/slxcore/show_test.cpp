// SPDX-License-Identifier: MIT
// zphonetic show: the listing of a deck, and its errors.
#include <gtest/gtest.h>

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

}  // namespace
