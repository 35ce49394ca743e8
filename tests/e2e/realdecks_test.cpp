// SPDX-License-Identifier: MIT
// The real-world decks (testdecks/real, written by many programs): `zphonetic show` and
// `zphonetic onekey --all-slides` either succeed, the written deck keeping every entry it did not
// edit byte for byte and opening again in our reader, in Python's zipfile and (when installed) in
// LibreOffice, or refuse it with one line naming the file and what is wrong. Never a crash, a
// hang or another exit status. A deck onekey refuses for want of Chinese text is written by the
// deck's own writer instead (a text box added to slide 1) and checked the same way.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRectF>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <memory>
#include <set>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "qtprinters.h"

namespace {

struct Outcome {
    int status = -1;  // -1: crashed or hung
    QString out;
    QString err;
};

Outcome run(const QString& program, const QStringList& arguments, int timeoutMs = 120000) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("ZPHONETIC_UI_LANGUAGE"), QStringLiteral("en_US"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Outcome outcome;
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
        outcome.err = QStringLiteral("(no end within %1 s)").arg(timeoutMs / 1000);
        return outcome;
    }
    outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

Outcome zphonetic(const QStringList& arguments) {
    return run(QCoreApplication::applicationDirPath() + QStringLiteral("/zphonetic"), arguments);
}

// The lines zphonetic itself wrote to standard error (Qt may add lines of its own).
QStringList errorLines(const QString& err) {
    QStringList lines;
    for (const QString& line : err.split(QLatin1Char('\n')))
        if (line.startsWith(QStringLiteral("zphonetic: ")) &&
            !line.startsWith(QStringLiteral("zphonetic: message ")))
            lines << line;
    return lines;
}

// A refusal: status 1, one line "zphonetic: <deck>: <what is wrong>".
void expectRefusal(const Outcome& outcome, const QString& deck) {
    EXPECT_EQ(outcome.status, 1);
    const QStringList lines = errorLines(outcome.err);
    ASSERT_EQ(lines.size(), 1) << outcome.err.toStdString();
    EXPECT_TRUE(
        lines.first().startsWith(QStringLiteral("zphonetic: ") + deck + QStringLiteral(": ")))
        << lines.first().toStdString();
    EXPECT_GT(lines.first().size(),
              (QStringLiteral("zphonetic: ") + deck + QStringLiteral(": ")).size() + 5);
}

bool isSlide(const QString& part) {
    static const QRegularExpression slide(QStringLiteral("^ppt/slides/slide[0-9]+\\.xml$"));
    return slide.match(part).hasMatch();
}

// What was written: the input's entries in the input's order; those not edited (only slides
// are) stored exactly as they were.
void expectUntouchedEntriesKept(const QByteArray& in, const QByteArray& out) {
    const std::vector<decktest::ZipEntry> before = decktest::zipEntries(in);
    const std::vector<decktest::ZipEntry> after = decktest::zipEntries(out);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        const decktest::ZipEntry& a = before[i];
        const decktest::ZipEntry& b = after[i];
        ASSERT_EQ(a.name, b.name);
        if (a.data == b.data && !(a.raw == b.raw && a.method == b.method && a.crc == b.crc)) {
            ADD_FAILURE() << a.name.toStdString() << " was not copied as stored";
        } else if (a.data != b.data) {
            EXPECT_TRUE(isSlide(a.name)) << a.name.toStdString() << " changed";
        }
    }
}

bool pythonReads(const QString& path, QString* why) {
    const QString python = QStandardPaths::findExecutable(QStringLiteral("python3"));
    if (python.isEmpty()) return true;  // the product builds without Python
    const Outcome outcome =
        run(python, {QStringLiteral("-c"),
                     QStringLiteral("import sys, zipfile\n"
                                    "bad = zipfile.ZipFile(sys.argv[1]).testzip()\n"
                                    "sys.exit('damaged: %s' % bad if bad else 0)\n"),
                     path});
    *why = outcome.err;
    return outcome.status == 0;
}

TEST(RealDecks, EveryDeckIsWrittenOrRefused) {
    const QStringList names = decktest::realDeckNames();
    if (names.isEmpty())
        GTEST_SKIP() << "no real-world decks in " << decktest::realDeckDir().toStdString();
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QStringList written;
    int refused = 0;
    QStringList refusedNames;
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        const QString in = decktest::realDeckDir() + QLatin1Char('/') + name;
        const QByteArray inBytes = decktest::readFile(in);
        const Outcome shown = zphonetic({QStringLiteral("show"), in});
        ASSERT_TRUE(shown.status == 0 || shown.status == 1)
            << shown.status << shown.err.toStdString();
        const QString out = dir.filePath(QStringLiteral("%1.pptx").arg(written.size() + refused));
        const Outcome onekey = zphonetic({QStringLiteral("onekey"), in, QStringLiteral("-o"), out,
                                          QStringLiteral("--all-slides")});
        ASSERT_TRUE(onekey.status == 0 || onekey.status == 1)
            << onekey.status << onekey.err.toStdString();
        EXPECT_EQ(decktest::readFile(in), inBytes);
        if (shown.status == 1) {
            // What show refuses, onekey refuses too, with the same message.
            expectRefusal(shown, in);
            expectRefusal(onekey, in);
            EXPECT_EQ(errorLines(shown.err), errorLines(onekey.err));
            EXPECT_FALSE(QFile::exists(out));
            ++refused;
            refusedNames << name;
            continue;
        }
        EXPECT_TRUE(shown.out.contains(QStringLiteral("slide 1"))) << shown.out.toStdString();
        QByteArray outBytes;
        if (onekey.status == 1) {
            // A deck that opens but has nothing to annotate (most of these have no Chinese): the
            // command says why and writes nothing. The deck's writer is still put to the test:
            // a text box added to slide 1 as a user would, the deck written as a save writes it.
            expectRefusal(onekey, in);
            EXPECT_FALSE(QFile::exists(out));
            QString error;
            const std::unique_ptr<minihost::Deck> deck = minihost::Deck::load(inBytes, in, &error);
            ASSERT_TRUE(deck) << error.toStdString();
            if (deck->slideCount() > 0)
                deck->addTextBox(1, QStringLiteral("你好"), QRectF(40, 40, 200, 40));
            ASSERT_TRUE(deck->save(out, &error)) << error.toStdString();
        }
        outBytes = decktest::readFile(out);
        ASSERT_FALSE(outBytes.isEmpty());
        expectUntouchedEntriesKept(inBytes, outBytes);
        QString error;
        EXPECT_TRUE(minihost::Deck::load(outBytes, out, &error)) << error.toStdString();
        QString why;
        EXPECT_TRUE(pythonReads(out, &why)) << why.toStdString();
        written << out;
    }
    std::printf("%d decks: %d written, %d refused\n", static_cast<int>(names.size()),
                static_cast<int>(written.size()), refused);
    // Only the three that the common unzip programs refuse too: no limit of what a deck may hold
    // refuses a deck people have.
    EXPECT_EQ(refusedNames,
              QStringList({QStringLiteral("Divino_Revelado.pptx"),
                           QStringLiteral("clusterfuzz-testcase-minimized-POIFuzzer-"
                                          "5205835528404992.pptx"),
                           QStringLiteral("clusterfuzz-testcase-minimized-POIXSLFFuzzer-"
                                          "5471515212382208.pptx")}));

    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    // Without a document to convert, LibreOffice would wait for one.
    if (soffice.isEmpty() || written.isEmpty()) return;
    const Outcome converted = run(
        soffice,
        QStringList{
            QStringLiteral("-env:UserInstallation=file://") + dir.filePath(QStringLiteral("lo")),
            QStringLiteral("--headless"), QStringLiteral("--convert-to"), QStringLiteral("pdf"),
            QStringLiteral("--outdir"), dir.filePath(QStringLiteral("pdf"))} +
            written,
        900000);
    ASSERT_EQ(converted.status, 0) << converted.err.toStdString();
    for (const QString& deck : written)
        EXPECT_GT(QFileInfo(dir.filePath(QStringLiteral("pdf/")) +
                            QFileInfo(deck).completeBaseName() + QStringLiteral(".pdf"))
                      .size(),
                  500)
            << "LibreOffice did not open " << deck.toStdString();
}

}  // namespace
