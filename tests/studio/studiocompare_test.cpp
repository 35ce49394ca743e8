// SPDX-License-Identifier: MIT
// The slides as the studio draws them against the same deck rendered by LibreOffice (to PDF,
// then to PNG at 96 dpi, the studio's pixel per 0.75 pt): the same text lines (their number and
// where they start, across and down) and the same text colour, slide by slide. Both pictures go
// to the screenshots folder. Skipped where LibreOffice or pdftoppm is not installed.
#include <QAction>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include "decktestutil.h"
#include "minihost/slxrender/sliderenderer.h"
#include "studiofixture.h"

namespace {

// The rows of text on a picture: bands of rows with ink (pixels far from the background).
struct Line {
    int top = 0;
    int bottom = 0;
    int left = 0;
};

bool isInk(QRgb pixel, QRgb background) {
    return std::abs(qRed(pixel) - qRed(background)) + std::abs(qGreen(pixel) - qGreen(background)) +
               std::abs(qBlue(pixel) - qBlue(background)) >
           240;
}

QList<Line> linesOf(const QImage& image) {
    const QRgb background = image.pixel(2, 2);
    QList<Line> lines;
    bool inLine = false;
    for (int y = 0; y < image.height(); ++y) {
        int left = -1;
        for (int x = 0; x < image.width() && left < 0; ++x)
            if (isInk(image.pixel(x, y), background)) left = x;
        if (left >= 0 && !inLine) lines.append({y, y, left});
        if (left >= 0) {
            lines.last().bottom = y;
            lines.last().left = std::min(lines.last().left, left);
        }
        inLine = left >= 0;
    }
    // A gap of a few rows inside a line (between the strokes of a character) is no new line.
    QList<Line> merged;
    for (const Line& line : lines) {
        if (!merged.isEmpty() && line.top - merged.last().bottom <= 4) {
            merged.last().bottom = line.bottom;
            merged.last().left = std::min(merged.last().left, line.left);
        } else {
            merged.append(line);
        }
    }
    return merged;
}

// The colour of the darkest ink: the text's.
QColor textColour(const QImage& image) {
    QRgb darkest = qRgb(255, 255, 255);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) < qGray(darkest)) darkest = image.pixel(x, y);
    return QColor(darkest);
}

// Draws every slide of the deck open in the window and renders the file `path` (the same deck)
// with LibreOffice; the pictures go to the screenshots folder as compare-<name>-slide-N-studio.png
// and ...-libreoffice.png. Every text line must be where LibreOffice puts it, in its colour.
void expectDrawnAsLibreOfficeRendersThem(const StudioWindow& window, const QString& path,
                                         const QString& name, const QTemporaryDir& dir) {
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
    if (soffice.isEmpty() || pdftoppm.isEmpty()) GTEST_SKIP() << "LibreOffice or pdftoppm missing";
    QProcess convert;
    convert.setWorkingDirectory(dir.path());
    convert.start(soffice, {QStringLiteral("-env:UserInstallation=file://") +
                                dir.filePath(QStringLiteral("lo")),
                            QStringLiteral("--headless"), QStringLiteral("--convert-to"),
                            QStringLiteral("pdf"), path});
    ASSERT_TRUE(convert.waitForFinished(180000));
    QProcess pages;
    pages.setWorkingDirectory(dir.path());
    pages.start(pdftoppm,
                {QStringLiteral("-r"), QStringLiteral("96"), QStringLiteral("-png"),
                 dir.filePath(QFileInfo(path).completeBaseName() + QStringLiteral(".pdf")), name});
    ASSERT_TRUE(pages.waitForFinished(60000));

    const QString folder = QStringLiteral(ZPHONETIC_SCREENSHOT_DIR);
    QDir().mkpath(folder);
    for (int slide = 1; slide <= window.deck()->slideCount(); ++slide) {
        const QImage theirs(dir.filePath(QStringLiteral("%1-%2.png").arg(name).arg(slide)));
        ASSERT_FALSE(theirs.isNull()) << "slide " << slide;
        QImage ours(theirs.size(), QImage::Format_RGB32);
        ours.fill(Qt::white);
        {
            QPainter painter(&ours);
            painter.setRenderHint(QPainter::Antialiasing);
            minihost::paintSlide(painter, *window.deck(), slide,
                                 QRectF(QPointF(), QSizeF(ours.size())));
        }
        const QString prefix =
            QStringLiteral("%1/compare-%2slide-%3-")
                .arg(folder, name == QLatin1String("page") ? QString() : name + QLatin1Char('-'))
                .arg(slide);
        ours.save(prefix + QStringLiteral("studio.png"));
        theirs.save(prefix + QStringLiteral("libreoffice.png"));

        const QList<Line> ourLines = linesOf(ours);
        const QList<Line> theirLines = linesOf(theirs);
        ASSERT_GE(theirLines.size(), 3) << "slide " << slide;  // a title and two lines at least
        ASSERT_EQ(ourLines.size(), theirLines.size()) << "slide " << slide;
        for (int i = 0; i < ourLines.size(); ++i) {
            // Within 8 pixels (6 pt): the same line in the same place.
            EXPECT_NEAR(ourLines.at(i).top, theirLines.at(i).top, 8)
                << "slide " << slide << " line " << i;
            EXPECT_NEAR(ourLines.at(i).bottom, theirLines.at(i).bottom, 8)
                << "slide " << slide << " line " << i;
            EXPECT_NEAR(ourLines.at(i).left, theirLines.at(i).left, 8)
                << "slide " << slide << " line " << i;
        }
        const QColor ourColour = textColour(ours);
        const QColor theirColour = textColour(theirs);
        EXPECT_NEAR(ourColour.red(), theirColour.red(), 24) << "slide " << slide;
        EXPECT_NEAR(ourColour.green(), theirColour.green(), 24) << "slide " << slide;
        EXPECT_NEAR(ourColour.blue(), theirColour.blue(), 24) << "slide " << slide;
    }
}

TEST_F(StudioTest, SlidesAreDrawnAsLibreOfficeRendersThem) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    expectDrawnAsLibreOfficeRendersThem(*window, lessonPath(), QStringLiteral("page"), dir);
}

TEST_F(StudioTest, ReadingsOverTheirTextAreDrawnAsLibreOfficeRendersThem) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    // "Pinyin over Text" on every slide, with all its texts selected.
    for (int slide = 1; slide <= window->deck()->slideCount(); ++slide) {
        ASSERT_TRUE(window->deck()->setCurrentSlide(slide));
        ASSERT_TRUE(window->deck()->selectShapes({2, 3}));
        window->pinyinOverTextAction()->trigger();
        EXPECT_FALSE(window->deck()->readingsOver(slide, 3).isEmpty()) << "slide " << slide;
    }
    const QString path = dir.filePath(QStringLiteral("over.pptx"));
    QString error;
    ASSERT_TRUE(window->deck()->save(path, &error)) << error.toStdString();
    expectDrawnAsLibreOfficeRendersThem(*window, path, QStringLiteral("over"), dir);
}

// The mean absolute difference of two pictures, both scaled to 160 x 90 grey (0 to 1).
double difference(const QImage& a, const QImage& b) {
    auto grey = [](const QImage& image) {
        return image.convertToFormat(QImage::Format_RGB32)
            .scaled(160, 90, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const QImage first = grey(a), second = grey(b);
    double sum = 0;
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 160; ++x)
            sum += std::abs(qGray(first.pixel(x, y)) - qGray(second.pixel(x, y))) / 255.0;
    return sum / (160 * 90);
}

// Real decks of five different writers (a university course, a conference talk, a report full
// of tables and charts, a company's deck with diagrams, a deck with a gradient master) opened
// in the studio's window: the window is saved beside LibreOffice's page of the same slide
// (build/screenshots/real-DECK-studio.png and -libreoffice.png, to be looked at), and the slide
// as the window shows it is LibreOffice's page within 0.10 (160 x 90 grey, mean absolute
// difference).
TEST_F(StudioTest, RealDecksInTheWindowBesideLibreOffice) {
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
    if (soffice.isEmpty() || pdftoppm.isEmpty()) GTEST_SKIP() << "LibreOffice or pdftoppm missing";
    const struct {
        const char* deck;
        int slide;
    } shown[] = {{"ececapstonespring2012", 2},
                 {"alterman_security", 3},
                 {"aascu.org_workarea_downloadasset.aspx_id=5864", 23},
                 {"60810", 13},
                 {"45541_Footer", 2}};
    QStringList decks;
    for (const auto& s : shown)
        decks << QDir(decktest::realDeckDir())
                     .filePath(QString::fromLatin1(s.deck) + QStringLiteral(".pptx"));
    if (!QFile::exists(decks.first())) GTEST_SKIP() << "no real-world decks";
    QProcess convert;
    convert.start(soffice,
                  QStringList{QStringLiteral("-env:UserInstallation=file://") +
                                  dir.filePath(QStringLiteral("lo")),
                              QStringLiteral("--headless"), QStringLiteral("--convert-to"),
                              QStringLiteral("pdf"), QStringLiteral("--outdir"), dir.path()} +
                      decks);
    ASSERT_TRUE(convert.waitForFinished(300000));
    const QString folder = QStringLiteral(ZPHONETIC_SCREENSHOT_DIR);
    QDir().mkpath(folder);
    for (const auto& s : shown) {
        const QString name = QString::fromLatin1(s.deck);
        ASSERT_TRUE(window->openFile(decks.at(static_cast<int>(&s - shown))));
        ASSERT_TRUE(window->deck()->setCurrentSlide(s.slide));
        // LibreOffice leaves hidden slides out of the PDF.
        int pageNumber = s.slide;
        for (int slide = 1; slide < s.slide; ++slide)
            if (window->deck()->drawing(slide).hidden) --pageNumber;
        QProcess page;
        page.start(pdftoppm,
                   {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("72"),
                    QStringLiteral("-f"), QString::number(pageNumber), QStringLiteral("-l"),
                    QString::number(pageNumber), QStringLiteral("-singlefile"),
                    dir.filePath(name + QStringLiteral(".pdf")), dir.filePath(name)});
        ASSERT_TRUE(page.waitForFinished(60000));
        const QImage theirs(dir.filePath(name + QStringLiteral(".png")));
        ASSERT_FALSE(theirs.isNull()) << s.deck;
        screenshot(QStringLiteral("real-%1-studio.png").arg(name));
        theirs.save(folder + QStringLiteral("/real-%1-libreoffice.png").arg(name));
        // The slide as the view shows it: its place in the view's pixels.
        SlideView* view = window->slideView();
        const QRect slide = QRectF(view->toWidget(QPointF(0, 0)),
                                   view->toWidget(QPointF(window->deck()->slideSize().width(),
                                                          window->deck()->slideSize().height())))
                                .toRect();
        const QImage ours = view->grab(slide).toImage();
        EXPECT_LE(difference(ours, theirs), 0.10) << s.deck;
    }
}

}  // namespace
