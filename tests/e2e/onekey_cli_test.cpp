// SPDX-License-Identifier: MIT
// zphonetic onekey as a user runs it: on decks the tests write and on the public test decks.
// Every written deck is read again; its new boxes hold the readings, every other zip entry is the
// input's byte for byte, the input is never touched, and LibreOffice (when installed) opens it.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRectF>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cctype>
#include <memory>
#include <set>
#include <string>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "onekeyrun.h"
#include "qtprinters.h"

namespace {

using onekeytest::errorLine;
using onekeytest::Outcome;

Outcome zphonetic(const QStringList& arguments) {
    return onekeytest::runOneKey(arguments);
}

// The texts of the shapes of `slide` in `after` that `before` does not have, in order.
QStringList newTexts(const minihost::Deck& before, const minihost::Deck& after, int slide) {
    std::set<int> old;
    for (const minihost::ShapeInfo& shape : before.shapes(slide)) old.insert(shape.id);
    QStringList texts;
    for (const minihost::ShapeInfo& shape : after.shapes(slide))
        if (!old.count(shape.id)) texts << shape.text;
    return texts;
}

class OneKeyCommand : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }

    QString path(const QString& name) const { return dir.filePath(name); }

    // A two-slide deck: slide 1 with 2 text boxes (ids given back); slide 2 with one, a box
    // without Chinese (id 3) and an empty one (id 4).
    QString writeDeck() {
        auto deck = minihost::Deck::create(2);
        first = deck->addTextBox(1, QStringLiteral("我们学习汉语"), QRectF(40, 40, 500, 60));
        second = deck->addTextBox(1, QStringLiteral("中国"), QRectF(40, 140, 500, 60));
        deck->addTextBox(2, QStringLiteral("你好"), QRectF(40, 40, 500, 60));
        deck->addTextBox(2, QStringLiteral("Page 2"), QRectF(40, 140, 500, 60));
        deck->addTextBox(2, QString(), QRectF(40, 240, 500, 60));
        QString error;
        EXPECT_TRUE(deck->save(path(QStringLiteral("in.pptx")), &error)) << error.toStdString();
        return path(QStringLiteral("in.pptx"));
    }

    // Checks `out` against `in`: both readable, every zip entry but the edited slides' the same
    // bytes, and the input as it was.
    void expectOnlySlidesChanged(const QString& in, const QByteArray& inBytes, const QString& out,
                                 const QStringList& changedSlides) {
        EXPECT_EQ(decktest::readFile(in), inBytes) << "the input was modified";
        const std::vector<decktest::ZipEntry> before = decktest::zipEntries(inBytes);
        const std::vector<decktest::ZipEntry> after = decktest::zipEntries(decktest::readFile(out));
        ASSERT_EQ(before.size(), after.size());
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(before[i].name, after[i].name);
            if (changedSlides.contains(before[i].name))
                EXPECT_NE(before[i].data, after[i].data) << before[i].name.toStdString();
            else
                EXPECT_EQ(before[i].data, after[i].data) << before[i].name.toStdString();
        }
    }

    QTemporaryDir dir;
    int first = 0;
    int second = 0;
};

}  // namespace

TEST_F(OneKeyCommand, WithoutSlideOrSelectionEveryTextOfSlideOneGetsABox) {
    const QString in = writeDeck();
    const QByteArray inBytes = decktest::readFile(in);
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run = zphonetic({in, QStringLiteral("-o"), out});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, QStringLiteral("slide 1: new text box 4: \"wǒ men xué xí hàn yǔ\"\n"
                                      "slide 1: new text box 5: \"zhōnɡ ɡuó\"\n"
                                      "wrote %1: 2 new text boxes on 1 slide\n")
                           .arg(out));

    QString error;
    const auto before = minihost::Deck::loadFile(in, &error);
    const auto after = minihost::Deck::loadFile(out, &error);
    ASSERT_TRUE(after) << error.toStdString();
    EXPECT_EQ(newTexts(*before, *after, 1),
              QStringList({QStringLiteral("wǒ men xué xí hàn yǔ"), QStringLiteral("zhōnɡ ɡuó")}));
    EXPECT_TRUE(newTexts(*before, *after, 2).isEmpty());
    for (const minihost::ShapeInfo& shape : after->shapes(1).mid(2)) {
        EXPECT_EQ(shape.box.topLeft(), QPointF(400, 250));
        EXPECT_TRUE(shape.followsText);
    }
    expectOnlySlidesChanged(in, inBytes, out, {QStringLiteral("ppt/slides/slide1.xml")});
}

TEST_F(OneKeyCommand, ARunOfTextGivesTheReadingsOfThatRunOnly) {
    const QString in = writeDeck();
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run = zphonetic({in, QStringLiteral("-o"), out, QStringLiteral("--select"),
                                   QStringLiteral("%1:2+2").arg(first)});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.startsWith(QStringLiteral("slide 1: new text box 4: \"xué xí\"\n")));
}

TEST_F(OneKeyCommand, LongReadingsArePrintedAsTheirStartAndLength) {
    // 50 characters: "chuánɡ qián mínɡ yuè ɡuānɡ " and so on, 275 units of readings.
    const QString poem = QStringLiteral("床前明月光");
    auto deck = minihost::Deck::create(1);
    deck->addTextBox(1, poem.repeated(10), QRectF(40, 40, 880, 300));
    QString error;
    ASSERT_TRUE(deck->save(path(QStringLiteral("in.pptx")), &error)) << error.toStdString();
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run = zphonetic({path(QStringLiteral("in.pptx")), QStringLiteral("-o"), out});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QString readings =
        QStringLiteral("chuánɡ qián mínɡ yuè ɡuānɡ ").repeated(10).trimmed();  // 269 units
    ASSERT_EQ(readings.size(), 269);
    EXPECT_EQ(run.out, QStringLiteral("slide 1: new text box 3: \"%1\"... (269 characters)\n"
                                      "wrote %2: 1 new text box on 1 slide\n")
                           .arg(readings.left(200), out));
    // The box itself holds them all.
    const auto after = minihost::Deck::loadFile(out, &error);
    ASSERT_TRUE(after) << error.toStdString();
    EXPECT_EQ(after->text(1, 3), readings);
}

TEST_F(OneKeyCommand, WholeShapesAreSelectedByTheirIds) {
    const QString in = writeDeck();
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run = zphonetic(
        {in, QStringLiteral("-o"), out, QStringLiteral("--select"), QString::number(second)});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    QString error;
    const auto before = minihost::Deck::loadFile(in, &error);
    const auto after = minihost::Deck::loadFile(out, &error);
    ASSERT_TRUE(after);
    EXPECT_EQ(newTexts(*before, *after, 1), QStringList{QStringLiteral("zhōnɡ ɡuó")});
}

TEST_F(OneKeyCommand, AnotherSlideIsChosenWithSlide) {
    const QString in = writeDeck();
    const QByteArray inBytes = decktest::readFile(in);
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run =
        zphonetic({in, QStringLiteral("-o"), out, QStringLiteral("--slide"), QStringLiteral("2")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    QString error;
    const auto before = minihost::Deck::loadFile(in, &error);
    const auto after = minihost::Deck::loadFile(out, &error);
    ASSERT_TRUE(after);
    // "Page 2" gives no readings, so the last attempt was 你好's box: no warning.
    EXPECT_EQ(newTexts(*before, *after, 2), QStringList{QStringLiteral("nǐ hǎo")});
    EXPECT_FALSE(run.err.contains(QStringLiteral("zphonetic: message")));
    expectOnlySlidesChanged(in, inBytes, out, {QStringLiteral("ppt/slides/slide2.xml")});
}

TEST_F(OneKeyCommand, AllSlidesWorksThroughEverySlideWithAPlainLineWithoutATerminal) {
    const QString in = writeDeck();
    const QByteArray inBytes = decktest::readFile(in);
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run = zphonetic({in, QStringLiteral("-o"), out, QStringLiteral("--all-slides")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(
        run.out.endsWith(QStringLiteral("wrote %1: 3 new text boxes on 2 slides\n").arg(out)))
        << run.out.toStdString();
    EXPECT_FALSE(run.err.contains(QLatin1Char('\r')));  // no progress bar into a pipe
    QString error;
    const auto before = minihost::Deck::loadFile(in, &error);
    const auto after = minihost::Deck::loadFile(out, &error);
    ASSERT_TRUE(after);
    EXPECT_EQ(newTexts(*before, *after, 1).size(), 2);
    EXPECT_EQ(newTexts(*before, *after, 2), QStringList{QStringLiteral("nǐ hǎo")});
    expectOnlySlidesChanged(
        in, inBytes, out,
        {QStringLiteral("ppt/slides/slide1.xml"), QStringLiteral("ppt/slides/slide2.xml")});
}

TEST_F(OneKeyCommand, TextWithoutChineseGetsTheWarningAndFailsWritingNothing) {
    const QString in = writeDeck();
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run =
        zphonetic({in, QStringLiteral("-o"), out, QStringLiteral("--slide"), QStringLiteral("2"),
                   QStringLiteral("--select"), QStringLiteral("3")});  // "Page 2"
    EXPECT_EQ(run.status, 1);
    // The add-on's warning, in the language its translation gives it, then the host's verdict.
    EXPECT_TRUE(run.err.contains(QStringLiteral("zphonetic: message (flags 0x30): ")))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.endsWith(
        QStringLiteral("zphonetic: %1: the selection has no Chinese text: nothing written\n")
            .arg(in)))
        << run.err.toStdString();
    EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
    EXPECT_FALSE(QFile::exists(out));
}

TEST_F(OneKeyCommand, AllSlidesOfADeckWithoutChineseFailsWritingNothing) {
    auto deck = minihost::Deck::create(2);
    deck->addTextBox(1, QStringLiteral("Page 1"), QRectF(40, 40, 500, 60));
    deck->addTextBox(2, QStringLiteral("Page 2"), QRectF(40, 40, 500, 60));
    const QString in = path(QStringLiteral("latin.pptx"));
    ASSERT_TRUE(deck->save(in, nullptr));
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run = zphonetic({in, QStringLiteral("-o"), out, QStringLiteral("--all-slides")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        errorLine(run.err),
        QStringLiteral("zphonetic: %1: the selection has no Chinese text: nothing written").arg(in))
        << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(out));
}

TEST_F(OneKeyCommand, HelpDocumentsTheSelectionSyntax) {
    const Outcome run = zphonetic({QStringLiteral("--help")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.startsWith(QStringLiteral(
        "Usage: zphonetic onekey DECK -o OUT [--slide N] [--select SELECTION] [--place WHERE]\n")));
    EXPECT_TRUE(run.out.contains(QStringLiteral("3,5,7    the whole shapes 3, 5 and 7")));
    EXPECT_TRUE(run.out.contains(
        QStringLiteral("3:2+4    a run of text in shape 3: 4 UTF-16 units from unit 2")));
    EXPECT_TRUE(run.out.contains(QStringLiteral("--all-slides")));
    EXPECT_TRUE(run.out.contains(QStringLiteral("--place WHERE     where the new text boxes go")));
}

// Every error: its exact message, a non-zero status, the input as it was and no output.
TEST_F(OneKeyCommand, ErrorsNameWhatIsWrongAndTouchNothing) {
    const QString in = writeDeck();
    const QByteArray inBytes = decktest::readFile(in);
    const QString out = path(QStringLiteral("out.pptx"));
    QFile text(path(QStringLiteral("notes.txt")));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("not a deck\n");
    text.close();
    const QString missing = path(QStringLiteral("missing.pptx"));
    const QString o = QStringLiteral("-o");

    const struct {
        QStringList arguments;
        QString message;
    } cases[] = {
        {{missing, o, out},
         missing + QStringLiteral(": cannot be opened (No such file or directory)")},
        {{text.fileName(), o, out}, text.fileName() + QStringLiteral(": not a zip archive")},
        {{in, o, out, QStringLiteral("--slide"), QStringLiteral("3")},
         in + QStringLiteral(": there is no slide 3 (the deck has 2)")},
        {{in, o, out, QStringLiteral("--slide"), QStringLiteral("0")},
         QStringLiteral("--slide: \"0\" is not a slide number (1, 2, ...)")},
        {{in, o, out, QStringLiteral("--select"), QStringLiteral("9")},
         in + QStringLiteral(": slide 1 has no shape 9")},
        {{in, o, out, QStringLiteral("--slide"), QStringLiteral("2"), QStringLiteral("--select"),
          QStringLiteral("4")},
         in + QStringLiteral(": shape 4 on slide 2 holds no text")},
        {{in, o, out, QStringLiteral("--select"), QStringLiteral("%1:4+5").arg(first)},
         in + QStringLiteral(": shape %1 on slide 1 has 6 units of text: 4+5 is outside it")
                  .arg(first)},
        {{in, o, out, QStringLiteral("--select"), QStringLiteral("two")},
         in + QStringLiteral(
                  ": --select \"two\" is neither shape ids (3,5) nor a run of text (3:2+4)")},
        {{in, o, in}, in + QStringLiteral(": is the input deck: write the result to another file")},
        {{in}, in + QStringLiteral(": needs an output file: -o OUT")},
        {{in, o, out, QStringLiteral("--all-slides"), QStringLiteral("--slide"),
          QStringLiteral("1")},
         QStringLiteral("--all-slides: works on every slide: give no --slide or --select with it")},
        {{in, o, path(QStringLiteral("no/such/dir/out.pptx"))},
         path(QStringLiteral("no/such/dir/out.pptx")) + QStringLiteral(": cannot be written")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const Outcome run = zphonetic(c.arguments);
        EXPECT_NE(run.status, 0);
        EXPECT_TRUE(errorLine(run.err).startsWith(QStringLiteral("zphonetic: ") + c.message))
            << run.err.toStdString();
        EXPECT_EQ(decktest::readFile(in), inBytes);
        EXPECT_FALSE(QFile::exists(out));
    }
}

// The public decks: every Chinese text of every slide gets its box, everything else stays.
struct PublicDeck {
    const char* file;
    const char16_t* readings;  // the one box each of these decks gets, on slide 1
};

class PublicDecks : public OneKeyCommand, public ::testing::WithParamInterface<PublicDeck> {};

TEST_P(PublicDecks, AllSlidesAnnotatesTheChineseTextsAndKeepsTheRest) {
    const QString in = decktest::testDeckDir() + QLatin1Char('/') + QLatin1String(GetParam().file);
    if (!QFile::exists(in)) GTEST_SKIP() << "no " << in.toStdString();
    const QByteArray inBytes = decktest::readFile(in);
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run = zphonetic({in, QStringLiteral("-o"), out, QStringLiteral("--all-slides")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();

    QString error;
    const auto before = minihost::Deck::loadFile(in, &error);
    const auto after = minihost::Deck::loadFile(out, &error);
    ASSERT_TRUE(after) << error.toStdString();
    ASSERT_EQ(after->slideCount(), 1);
    const QString readings = QString::fromUtf16(GetParam().readings);
    EXPECT_EQ(newTexts(*before, *after, 1), QStringList{readings});
    EXPECT_TRUE(run.out.contains(QStringLiteral("\"%1\"\n").arg(readings)))
        << run.out.toStdString();
    expectOnlySlidesChanged(in, inBytes, out, {QStringLiteral("ppt/slides/slide1.xml")});
}

INSTANTIATE_TEST_SUITE_P(
    OneKeyCommand, PublicDecks,
    ::testing::Values(
        // Paragraphs "Gdfafsdafafa", 嘿嘿, 哈哈哈哈哈, 呵呵呵 and an empty one: the breaks give
        // empty readings, skipped with their space, and the last one leaves the trailing space.
        PublicDeck{"poi-bug64693.pptx", u"hēi hēi hā hā hā hā hɑ hē hē hē "},
        // Only the kanji of ゾルゲと尾崎、淡々と最期 are read; every other text has none.
        PublicDeck{"poi-with_japanese.pptx", u"wěi qí dàn zuì qī "},
        // 暒龢加咊晴弗 with 晴 written as the compatibility ideograph U+FA12, outside
        // U+4E00..U+9FA5: it is not Chinese to the add-on and gets no reading.
        PublicDeck{"pypptx-txt-font-typeface.pptx", u"qínɡ hé jiā hé fú"}),
    [](const ::testing::TestParamInfo<PublicDeck>& info) {
        std::string name = info.param.file;
        name = name.substr(0, name.find('.'));
        for (char& c : name)
            if (!isalnum(static_cast<unsigned char>(c))) c = '_';
        return name;
    });

TEST_F(OneKeyCommand, LibreOfficeOpensTheWrittenDecks) {
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty()) GTEST_SKIP() << "LibreOffice (soffice) is not installed: not checked";
    QStringList outputs;
    const QString written = writeDeck();
    outputs << path(QStringLiteral("written.pptx"));
    ASSERT_EQ(
        zphonetic({written, QStringLiteral("-o"), outputs.last(), QStringLiteral("--all-slides")})
            .status,
        0);
    for (const char* name :
         {"poi-bug64693.pptx", "poi-with_japanese.pptx", "pypptx-txt-font-typeface.pptx"}) {
        const QString in = decktest::testDeckDir() + QLatin1Char('/') + QLatin1String(name);
        if (!QFile::exists(in)) continue;
        outputs << path(QStringLiteral("pinyin-") + QLatin1String(name));
        ASSERT_EQ(
            zphonetic({in, QStringLiteral("-o"), outputs.last(), QStringLiteral("--all-slides")})
                .status,
            0);
    }
    QProcess process;
    process.start(soffice, QStringList{QStringLiteral("-env:UserInstallation=file://") +
                                           path(QStringLiteral("lo")),
                                       QStringLiteral("--headless"), QStringLiteral("--convert-to"),
                                       QStringLiteral("pdf"), QStringLiteral("--outdir"),
                                       path(QStringLiteral("pdf"))} +
                               outputs);
    ASSERT_TRUE(process.waitForFinished(600000));
    for (const QString& output : outputs) {
        const QString pdf = path(QStringLiteral("pdf/")) + QFileInfo(output).completeBaseName() +
                            QStringLiteral(".pdf");
        EXPECT_TRUE(QFile::exists(pdf)) << "LibreOffice did not convert " << output.toStdString()
                                        << ": " << process.readAllStandardError().toStdString();
        EXPECT_GT(QFileInfo(pdf).size(), 1000);
    }
}
