// SPDX-License-Identifier: MIT
// The real-world decks drawn by `zphonetic render` against LibreOffice's rendering of the same
// decks (to PDF, then to PNG with pdftoppm): every slide, both pictures scaled to 160 x 90 grey,
// compared by their mean absolute difference (0 to 1 of full scale). Over all slides the median
// must be at most 0.04 and at most one slide in ten may differ by more than 0.10. LibreOffice's
// pictures are kept in the build tree and made again only for a deck that has none; the figures
// of every deck go to render-compare/figures.md. Skipped where LibreOffice or pdftoppm is not
// installed.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTextStream>
#include <algorithm>
#include <cmath>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"

namespace {

constexpr int kWidth = 640;  // both renderings, before they are scaled to 160 x 90

bool run(const QString& program, const QStringList& arguments, int milliseconds,
         QString* output = nullptr) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool finished = process.waitForFinished(milliseconds);
    if (output) *output = QString::fromLocal8Bit(process.readAll());
    return finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

// The PNG files of a folder in page order (pdftoppm pads the numbers to the page count's width,
// zphonetic does not).
QStringList pagesIn(const QString& folder) {
    QStringList files = QDir(folder).entryList({QStringLiteral("*.png")}, QDir::Files);
    auto number = [](const QString& name) {
        const int dash = name.lastIndexOf(QLatin1Char('-'));
        return name.mid(dash + 1, name.size() - dash - 5).toInt();
    };
    std::sort(files.begin(), files.end(),
              [&](const QString& a, const QString& b) { return number(a) < number(b); });
    for (QString& file : files) file = QDir(folder).filePath(file);
    return files;
}

// The picture as 160 x 90 grey levels, each pixel the mean of the area it covers.
std::vector<double> thumbnail(const QImage& image) {
    const QImage small = image.convertToFormat(QImage::Format_RGB32)
                             .scaled(160, 90, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    std::vector<double> grey;
    grey.reserve(160 * 90);
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 160; ++x) grey.push_back(qGray(small.pixel(x, y)) / 255.0);
    return grey;
}

double difference(const QImage& a, const QImage& b) {
    const std::vector<double> first = thumbnail(a);
    const std::vector<double> second = thumbnail(b);
    double sum = 0;
    for (std::size_t i = 0; i < first.size(); ++i) sum += std::abs(first[i] - second[i]);
    return sum / static_cast<double>(first.size());
}

double median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

TEST(RenderCompare, RealDecksAreDrawnAsLibreOfficeDrawsThem) {
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
    if (soffice.isEmpty() || pdftoppm.isEmpty()) GTEST_SKIP() << "LibreOffice or pdftoppm missing";
    const QStringList decks = decktest::realDeckNames();
    if (decks.isEmpty())
        GTEST_SKIP() << "no real-world decks in " << decktest::realDeckDir().toStdString();

    const QDir work(QStringLiteral(RENDER_COMPARE_DIR));
    ASSERT_TRUE(work.mkpath(QStringLiteral("libreoffice")));
    // LibreOffice once over every deck it has not drawn yet (a deck it cannot open gets no PDF:
    // it is left out below).
    QStringList missing;
    for (const QString& deck : decks)
        if (!QFileInfo::exists(work.filePath(QStringLiteral("libreoffice/") +
                                             QFileInfo(deck).completeBaseName() +
                                             QStringLiteral(".pdf"))))
            missing << QDir(decktest::realDeckDir()).filePath(deck);
    if (!missing.isEmpty()) {
        QStringList arguments{QStringLiteral("-env:UserInstallation=file://") +
                                  work.filePath(QStringLiteral("profile")),
                              QStringLiteral("--headless"),
                              QStringLiteral("--convert-to"),
                              QStringLiteral("pdf"),
                              QStringLiteral("--outdir"),
                              work.filePath(QStringLiteral("libreoffice"))};
        run(soffice, arguments + missing, 900000);
        // A deck LibreOffice cannot open is marked, so it is not tried on every run.
        for (const QString& deck : missing) {
            const QString pdf =
                work.filePath(QStringLiteral("libreoffice/") + QFileInfo(deck).completeBaseName() +
                              QStringLiteral(".pdf"));
            if (!QFileInfo::exists(pdf)) QFile(pdf).open(QIODevice::WriteOnly);
        }
    }

    std::vector<double> all;
    QString table;
    QTextStream figures(&table);
    figures << "| deck | slides | median | worst | above 0.10 |\n|---|---|---|---|---|\n";
    for (const QString& deck : decks) {
        const QString base = QFileInfo(deck).completeBaseName();
        const QString pdf =
            work.filePath(QStringLiteral("libreoffice/") + base + QStringLiteral(".pdf"));
        if (QFileInfo(pdf).size() == 0) {
            figures << "| " << base << " | LibreOffice cannot open it | | | |\n";
            continue;
        }
        const QString theirs = work.filePath(QStringLiteral("libreoffice/") + base);
        if (pagesIn(theirs).isEmpty()) {
            ASSERT_TRUE(work.mkpath(theirs));
            ASSERT_TRUE(
                run(pdftoppm,
                    {QStringLiteral("-png"), QStringLiteral("-scale-to-x"), QString::number(kWidth),
                     QStringLiteral("-scale-to-y"), QStringLiteral("-1"), pdf,
                     QDir(theirs).filePath(QStringLiteral("page"))},
                    300000))
                << base.toStdString();
        }
        const QString ours = work.filePath(QStringLiteral("zphonetic/") + base);
        QDir(ours).removeRecursively();
        QString output;
        const bool drawn =
            run(QStringLiteral(ZPHONETIC_PROGRAM),
                {QStringLiteral("render"), QDir(decktest::realDeckDir()).filePath(deck),
                 QStringLiteral("-o"), ours, QStringLiteral("--width"), QString::number(kWidth)},
                300000, &output);
        if (!drawn) {
            // A deck the object model refuses says so (the real-deck tests check the message).
            figures << "| " << base << " | refused: " << output.trimmed() << " | | | |\n";
            continue;
        }
        // LibreOffice leaves hidden slides out of a PDF.
        QString error;
        const auto opened =
            minihost::Deck::loadFile(QDir(decktest::realDeckDir()).filePath(deck), &error);
        ASSERT_TRUE(opened) << error.toStdString();
        const QStringList drawnPages = pagesIn(ours);
        QStringList ourPages;
        for (int slide = 1; slide <= drawnPages.size(); ++slide)
            if (!opened->drawing(slide).hidden) ourPages << drawnPages.at(slide - 1);
        const QStringList theirPages = pagesIn(theirs);
        EXPECT_EQ(ourPages.size(), theirPages.size()) << base.toStdString();
        std::vector<double> deckFigures;
        QStringList worst;  // the slides above 0.10, by their file
        for (int i = 0; i < std::min(ourPages.size(), theirPages.size()); ++i) {
            deckFigures.push_back(difference(QImage(ourPages.at(i)), QImage(theirPages.at(i))));
            if (deckFigures.back() > 0.10)
                worst << QFileInfo(ourPages.at(i)).completeBaseName().mid(6) +
                             QStringLiteral(" (%1)").arg(deckFigures.back(), 0, 'f', 2);
        }
        all.insert(all.end(), deckFigures.begin(), deckFigures.end());
        const auto above = std::count_if(deckFigures.begin(), deckFigures.end(),
                                         [](double d) { return d > 0.10; });
        figures << "| " << base << " | " << deckFigures.size() << " | "
                << QString::number(median(deckFigures), 'f', 3) << " | "
                << QString::number(deckFigures.empty()
                                       ? 0
                                       : *std::max_element(deckFigures.begin(), deckFigures.end()),
                                   'f', 3)
                << " | " << above
                << (worst.isEmpty() ? QString()
                                    : QStringLiteral(": slide ") + worst.join(QStringLiteral(", ")))
                << " |\n";
    }
    const auto above = std::count_if(all.begin(), all.end(), [](double d) { return d > 0.10; });
    figures << "| all | " << all.size() << " | " << QString::number(median(all), 'f', 3) << " | "
            << QString::number(all.empty() ? 0 : *std::max_element(all.begin(), all.end()), 'f', 3)
            << " | " << above << " |\n";
    figures.flush();
    QFile out(work.filePath(QStringLiteral("figures.md")));
    ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
    out.write(table.toUtf8());
    std::printf("%s", table.toUtf8().constData());

    ASSERT_GT(all.size(), 100u);  // the decks were drawn, not skipped
    EXPECT_LE(median(all), 0.04);
    EXPECT_LE(static_cast<double>(above), 0.10 * static_cast<double>(all.size()));
}

}  // namespace
