// SPDX-License-Identifier: MIT
// Readings over their text, as LibreOffice draws them. Each case is a one-slide deck to which
// `zphonetic onekey --place over` gives readings (the real add-on and tagging library), converted
// to PDF by LibreOffice (all cases in one run) and read back with poppler, the library under
// pdftotext, one box per character. Over every line of the rendering, each Chinese character must
// have exactly one reading, its centre within 0.25 em of the character's; no two readings may
// touch, and no reading may overlap a character of the text.
//
// Largest differences measured (LibreOffice 7.4.7, poppler 22.12, Noto fonts): centres 0.03 em,
// on the line mixing Latin text and digits with Chinese; every other case within 0.01 em.
// Readings are 0.05 of their size clear of the text and of each other at least a quarter.
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>

#include "decktestutil.h"
#include "libreofficedecks.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/readingsover.h"

using lotest::kNotoFonts;
using lotest::paragraph;
using lotest::textBox;

namespace {

constexpr double kCentreTolerance = 0.25;  // em, of the character

struct Case {
    QString name;
    QByteArray deck;
};

std::vector<Case> cases() {
    const QString poem[] = {QStringLiteral("床前明月光，"), QStringLiteral("疑是地上霜。"),
                            QStringLiteral("举头望明月，"), QStringLiteral("低头思故乡。")};
    QByteArray centred;
    for (const QString& line : poem) centred += paragraph(line, 28, "<a:pPr algn=\"ctr\"/>");
    return {
        {QStringLiteral("one line"),
         decktest::deckWithShapes(
             textBox(40, 40, 880, 60, paragraph(QStringLiteral("床前明月光，疑是地上霜。"), 28)))},
        {QStringLiteral("centred poem of four lines at 28 pt"),
         decktest::deckWithShapes(textBox(180, 60, 600, 240, centred))},
        {QStringLiteral("a paragraph that wraps"),
         decktest::deckWithShapes(
             textBox(40, 40, 400, 400,
                     paragraph(QStringLiteral("春眠不觉晓，处处闻啼鸟。夜来风雨声，花落知多少。"
                                              "《春晓》是孟浩然的作品，学生整理了全文。"),
                               24, {}, {}, kNotoFonts)))},
        {QStringLiteral("a right-aligned line"),
         decktest::deckWithShapes(textBox(
             100, 100, 700, 60,
             paragraph(QStringLiteral("右对齐的一行文字，靠右。"), 28, "<a:pPr algn=\"r\"/>")))},
        {QStringLiteral("Latin letters and digits among Chinese"),
         decktest::deckWithShapes(
             textBox(40, 40, 880, 60,
                     paragraph(QStringLiteral("学习Python 3和C++很有趣，2024年的课。"), 28)))},
        {QStringLiteral("18 pt"),
         decktest::deckWithShapes(textBox(
             40, 40, 400, 200,
             paragraph(QStringLiteral("小字十八磅的文字，一样要准确；它会换行，看看第二行。"),
                       18)))},
        {QStringLiteral("60 pt"),
         decktest::deckWithShapes(
             textBox(40, 40, 600, 400,
                     paragraph(QStringLiteral("大字六十磅，换行。"), 60, {}, {}, kNotoFonts)))},
        {QStringLiteral("a placeholder that inherits its size"),
         lotest::placeholderDeck(
             QStringLiteral("占位符里的文字从母版得到三十二磅的字号，并且会换行到第二行。"))},
    };
}

struct Outcome {
    int status = -1;
    QString out, err;
};

// zphonetic onekey DECK -o OUT --place over, with a home and readings file of its own.
Outcome placeOver(const QString& deck, const QString& out, const QString& home) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("ZPHONETIC_HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ZPHONETIC_PROGRAM),
                  {QStringLiteral("onekey"), deck, QStringLiteral("-o"), out,
                   QStringLiteral("--place"), QStringLiteral("over")});
    if (!process.waitForFinished(120000)) return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

#ifdef ZPHONETIC_HAVE_POPPLER_QT5

using lotest::Glyph;

// A word of the rendering: its text and the box around its characters.
struct Word {
    QString text;
    QRectF box;
    double em = 0;  // its size
};

std::vector<Word> wordsOf(const std::vector<Glyph>& glyphs) {
    std::vector<Word> words;
    for (const Glyph& g : glyphs) {
        if (words.empty() || g.word != glyphs[&g - glyphs.data() - 1].word) words.emplace_back();
        Word& word = words.back();
        word.text += g.c;
        word.box = word.box.isNull() ? g.box() : word.box.united(g.box());
        word.em = std::max(word.em, g.height / 1.3);
    }
    return words;
}

// What the rendering of one case shows, or what is wrong with it.
struct Measured {
    double worstCentre = 0;  // em
    double leastGap = 1e9;   // between neighbouring readings, points
    int readings = 0;
};

// Checks every rule on the rendering: the characters are the text's (the largest size on the
// page), the readings everything smaller.
Measured check(const std::vector<Glyph>& glyphs) {
    Measured measured;
    double textEm = 0;
    for (const Glyph& g : glyphs) textEm = std::max(textEm, g.height / 1.3);
    std::vector<Glyph> text;
    std::vector<Word> readings;
    for (const Word& word : wordsOf(glyphs)) {
        if (word.em > 0.75 * textEm) continue;
        readings.push_back(word);
    }
    for (const Glyph& g : glyphs)
        if (g.height / 1.3 > 0.75 * textEm) text.push_back(g);
    measured.readings = static_cast<int>(readings.size());

    // Each reading belongs to the nearest line under it, over the nearest character of it.
    std::vector<int> readingsOf(text.size(), 0);
    for (const Word& reading : readings) {
        int best = -1;
        double bestScore = 1e9;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const QRectF box = text[i].box();
            const double below = box.top() - reading.box.bottom();
            if (below < -0.5 * reading.em) continue;  // not under the reading
            const double score =
                below * 4 + std::abs(box.left() + box.height() / 2.6 - reading.box.center().x());
            if (score < bestScore) {
                bestScore = score;
                best = static_cast<int>(i);
            }
        }
        EXPECT_GE(best, 0) << "reading " << reading.text.toStdString() << " is over no text";
        if (best < 0) continue;
        const Glyph& c = text[best];
        EXPECT_TRUE(minihost::isReadChinese(c.c)) << "reading " << reading.text.toStdString()
                                                  << " is over " << QString(c.c).toStdString();
        ++readingsOf[best];
        // An ideograph is one em wide; poppler's box also holds the character spacing after it.
        const double em = c.height / 1.3;
        const double middle = c.left + em / 2;
        const double centre = std::abs(middle - reading.box.center().x()) / em;
        measured.worstCentre = std::max(measured.worstCentre, centre);
        EXPECT_LE(centre, kCentreTolerance)
            << "reading " << reading.text.toStdString() << " over " << QString(c.c).toStdString()
            << ": centre " << reading.box.center().x() << ", the character's " << middle;
        for (const Glyph& g : text)
            EXPECT_FALSE(reading.box.intersects(g.box()))
                << "reading " << reading.text.toStdString() << " overlaps "
                << QString(g.c).toStdString() << " of the text";
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!minihost::isReadChinese(text[i].c)) continue;
        EXPECT_EQ(readingsOf[i], 1)
            << QString(text[i].c).toStdString() << " at " << text[i].left << ", "
            << text[i].baseline << " has " << readingsOf[i] << " readings";
    }
    // Neighbouring readings on one line of readings do not touch.
    std::sort(readings.begin(), readings.end(), [](const Word& a, const Word& b) {
        return std::make_pair(std::round(a.box.bottom()), a.box.left()) <
               std::make_pair(std::round(b.box.bottom()), b.box.left());
    });
    for (std::size_t i = 0; i + 1 < readings.size(); ++i) {
        const Word& a = readings[i];
        const Word& b = readings[i + 1];
        if (std::abs(a.box.bottom() - b.box.bottom()) > 0.3 * a.em) continue;
        const double gap = b.box.left() - a.box.right();
        measured.leastGap = std::min(measured.leastGap, gap);
        EXPECT_GT(gap, 0) << "readings " << a.text.toStdString() << " and " << b.text.toStdString()
                          << " touch";
    }
    return measured;
}

TEST(ReadingsOverAgainstLibreOffice, EachCharacterHasItsReadingCentredOverItClearOfTheText) {
    const QString soffice = lotest::soffice();
    if (soffice.isEmpty())
        GTEST_SKIP() << "LibreOffice (soffice) is not installed: readings are not measured";
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::vector<Case> all = cases();
    QStringList files;
    std::vector<int> characters;
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i].name.toStdString());
        const QString in = dir.filePath(QStringLiteral("in%1.pptx").arg(i));
        QFile file(in);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) &&
                    file.write(all[i].deck) == all[i].deck.size());
        file.close();
        files << dir.filePath(QStringLiteral("case%1.pptx").arg(i));
        const Outcome run = placeOver(in, files.last(), dir.path());
        ASSERT_EQ(run.status, 0) << run.err.toStdString();
        QString error;
        const auto deck = minihost::Deck::loadFile(files.last(), &error);
        ASSERT_TRUE(deck) << error.toStdString();
        const QString text = deck->text(1, 2);
        characters.push_back(
            static_cast<int>(std::count_if(text.cbegin(), text.cend(), minihost::isReadChinese)));
        ASSERT_EQ(deck->readingsOver(1, 2).size(), characters.back());
    }
    QString output;
    ASSERT_TRUE(lotest::convertToPdf(soffice, files, dir.path(), &output))
        << "soffice did not finish";
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i].name.toStdString());
        const std::vector<Glyph> glyphs =
            lotest::pdfGlyphs(dir.filePath(QStringLiteral("case%1.pdf").arg(i)));
        ASSERT_FALSE(glyphs.empty()) << "no text in LibreOffice's PDF: " << output.toStdString();
        const Measured measured = check(glyphs);
        EXPECT_EQ(measured.readings, characters[i]);
        std::printf("%s: %d readings, centres within %.3f em, readings %.1f pt apart at least\n",
                    all[i].name.toUtf8().constData(), measured.readings, measured.worstCentre,
                    measured.leastGap);
    }
}

#else

TEST(ReadingsOverAgainstLibreOffice, EachCharacterHasItsReadingCentredOverItClearOfTheText) {
    GTEST_SKIP() << "built without poppler's Qt library (libpoppler-qt5-dev): readings are not "
                    "measured";
}

#endif

}  // namespace
