// SPDX-License-Identifier: MIT
// Times the studio's window as a person meets it, headless, in one process:
//   open   opening a 200-slide deck (five Chinese text boxes a slide) until its first slide is
//          drawn: reading the file, the thumbnails, and one paint of the slide view;
//   type   a key typed into a text on slide 100 until the slide view has painted it: the edit
//          and its undo step, the slide laid out again, one paint; afterwards the thumbnails
//          panel must have drawn that slide's picture again and no other;
//   type with readings over
//          the same into another text of slide 100 that has readings over its characters
//          (placed by "Pinyin at Once" set to over the characters): its readings asked of the
//          engine again and placed again over it, in the key's undo step;
//   dialog from the click on the ribbon's "PhoneticSymbol" button, with 30 characters selected,
//          until the add-on's page says it has rendered them ("data-rendered"); the first run
//          starts the web engine and is reported apart.
// Each run is checked: the deck has its 200 slides, the page shows 30 characters, each key is in
// the text and drew one thumbnail.
//
//   studio_bench [RUNS]     (default 5; prints each run and the median; 20 times RUNS keys)
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QRectF>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hoststore.h"
#include "minihost/nvolite/webhost.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/placement.h"
#include "nvo/zapplication.h"
#include "nvolite/zxcommonwebwidget.h"
#include "slidethumbnails.h"
#include "slideview.h"
#include "studiowindow.h"

namespace {

constexpr int kSlides = 200;
constexpr int kTimeout = 60000;
const QString kSentence =
    QString::fromUtf8("我们一起学习汉语拼音，今天天气很好，我们去公园散步吧。老师说：大家好！");

bool writeDeck(const QString& path) {
    auto deck = minihost::Deck::create(kSlides);
    for (int slide = 1; slide <= kSlides; ++slide)
        for (int box = 0; box < 5; ++box)
            deck->addTextBox(slide, kSentence, QRectF(40, 20 + box * 100, 880, 80));
    QString error;
    if (deck->save(path, &error)) return true;
    std::fprintf(stderr, "studio_bench: %s\n", error.toUtf8().constData());
    return false;
}

qint64 median(std::vector<qint64> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? -1 : values[values.size() / 2];
}

// Opens `path` in `window` and paints its first slide; the wall time in microseconds, or -1.
qint64 timeOpen(StudioWindow& window, const QString& path) {
    QElapsedTimer timer;
    timer.start();
    if (!window.openFile(path)) return -1;
    window.slideView()->repaint();
    const qint64 elapsed = timer.nsecsElapsed() / 1000;
    return window.deck()->slideCount() == kSlides ? elapsed : -1;
}

// Lets the thumbnails panel draw every picture it has still to draw.
void drawThumbnails(StudioWindow& window) {
    for (int waited = 0; window.thumbnails()->pending() > 0 && waited < kTimeout; ++waited)
        QTest::qWait(1);
}

// Types `keys` letters into text `box` (from 0) of slide 100, one at a time, each until the slide
// view has painted it; the wall time of each in microseconds, or an empty list when a key did not
// reach the text, drew other thumbnails than its slide's, or (`readings`) left the text without
// one reading over each of its Chinese characters.
std::vector<qint64> timeTyping(StudioWindow& window, int keys, int box, bool readings) {
    minihost::Deck& deck = *window.deck();
    constexpr int slide = kSlides / 2;
    if (!deck.setCurrentSlide(slide)) return {};
    const int text = deck.shapes(slide).at(box).id;
    if (!deck.selectText(text, 10, 0)) return {};
    int chinese = 0;
    for (const QChar c : kSentence) chinese += minihost::isReadChinese(c) ? 1 : 0;
    SlideView* view = window.slideView();
    view->repaint();
    drawThumbnails(window);
    std::vector<qint64> times;
    for (int key = 0; key < keys; ++key) {
        const int drawn = window.thumbnails()->drawnCount();
        QElapsedTimer timer;
        timer.start();
        QTest::keyClick(view, static_cast<char>('a' + key % 26));
        view->repaint();
        times.push_back(timer.nsecsElapsed() / 1000);
        drawThumbnails(window);
        if (deck.text(slide, text).size() != kSentence.size() + key + 1) {
            std::fprintf(stderr, "studio_bench: key %d did not reach the text\n", key + 1);
            return {};
        }
        if (const int redrawn = window.thumbnails()->drawnCount() - drawn; redrawn != 1) {
            std::fprintf(stderr, "studio_bench: key %d: %d thumbnails drawn again, not 1\n",
                         key + 1, redrawn);
            return {};
        }
        if (readings && deck.readingsOver(slide, text).size() != chinese) {
            std::fprintf(stderr, "studio_bench: key %d: %d readings over the text, not %d\n",
                         key + 1, static_cast<int>(deck.readingsOver(slide, text).size()), chinese);
            return {};
        }
    }
    deck.setCurrentSlide(1);
    return times;
}

// Places readings over the characters of text `box` of slide 100 as a person does: "Pinyin at
// Once" set to over the characters, the text selected. False when none were placed.
bool placeReadingsOver(StudioWindow& window, int box) {
    minihost::Deck& deck = *window.deck();
    constexpr int slide = kSlides / 2;
    window.placementAction(minihost::Placement::Over)->trigger();
    const int text = deck.shapes(slide).at(box).id;
    if (!deck.setCurrentSlide(slide) || !deck.selectShapes({text}) ||
        !window.runCommand(QString::fromLatin1(StudioWindow::kPhoneticOneKey)))
        return false;
    drawThumbnails(window);
    return !deck.readingsOver(slide, text).isEmpty();
}

nvolite::ZxCommonWebWidget* openDialog(StudioWindow& window) {
    for (auto* widget : window.findChildren<nvolite::ZxCommonWebWidget*>())
        if (widget->isVisible()) return widget;
    return nullptr;
}

// Selects 30 characters of slide 1, clicks "PhoneticSymbol" on the ribbon and waits for the page;
// the wall time in microseconds, or -1. The dialog is closed afterwards.
qint64 timeDialog(StudioWindow& window, QToolButton* button) {
    if (!window.deck()->selectText(window.deck()->shapes(1).first().id, 0, 30)) return -1;
    QElapsedTimer timer;
    timer.start();
    QTest::mouseClick(button, Qt::LeftButton);
    nvolite::ZxCommonWebWidget* dialog = openDialog(window);
    if (!dialog || !minihost::waitForPageAttribute(dialog, QStringLiteral("data-rendered"),
                                                   QStringLiteral("pinyin"), kTimeout))
        return -1;
    const qint64 elapsed = timer.nsecsElapsed() / 1000;
    bool ok = false;
    const int shown =
        minihost::runPageScript(dialog, QStringLiteral("document.querySelectorAll('.cell').length"),
                                kTimeout, &ok)
            .toInt();
    dialog->close();
    for (int waited = 0; openDialog(window) && waited < kTimeout; waited += 10) QTest::qWait(10);
    QTest::qWait(50);
    if (!ok || shown != 30) {
        std::fprintf(stderr, "studio_bench: the page shows %d characters, not 30\n", shown);
        return -1;
    }
    return elapsed;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND")) qputenv("QT_QUICK_BACKEND", "software");
    if (qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    QTemporaryDir dir;
    if (!dir.isValid()) return 2;
    minihost::setHomeDirectory(dir.filePath(QStringLiteral("home")));
    int applicationArgc = 1;
    ZxApplication app(applicationArgc, argv);
    minihost::setWebProfilesOffTheRecord(true);
    const QString path = dir.filePath(QStringLiteral("lessons-200.pptx"));
    if (!writeDeck(path)) return 1;

    StudioWindow window;
    window.resize(1200, 800);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) return 1;
    std::vector<qint64> opens;
    for (int run = 0; run < runs; ++run) {
        const qint64 time = timeOpen(window, path);
        if (time < 0) return 1;
        std::printf("open 200 slides, run %d: %.1f ms\n", run + 1, time / 1000.0);
        opens.push_back(time);
    }

    drawThumbnails(window);
    const std::vector<qint64> keys = timeTyping(window, 20 * runs, 0, false);
    if (keys.empty()) return 1;
    std::printf(
        "type a key, slide 100 of 200, to the slide painted: median %.2f ms, slowest "
        "%.2f ms over %zu keys; one thumbnail drawn again for each\n",
        median(keys) / 1000.0, *std::max_element(keys.begin(), keys.end()) / 1000.0, keys.size());
    if (!placeReadingsOver(window, 1)) {
        std::fprintf(stderr, "studio_bench: no readings were placed over the text\n");
        return 1;
    }
    const std::vector<qint64> readingKeys = timeTyping(window, 20 * runs, 1, true);
    if (readingKeys.empty()) return 1;
    std::printf(
        "type a key into a text with readings over it, to the slide painted: median %.2f ms, "
        "slowest %.2f ms over %zu keys; its readings placed again for each\n",
        median(readingKeys) / 1000.0,
        *std::max_element(readingKeys.begin(), readingKeys.end()) / 1000.0, readingKeys.size());

    QToolButton* button = nullptr;
    for (QToolButton* candidate :
         minihost::ribbonTabPanel(&window, QStringLiteral("CT_Home"))->findChildren<QToolButton*>())
        if (candidate->defaultAction() == window.phoneticSymbolAction()) button = candidate;
    if (!button) return 1;
    const qint64 cold = timeDialog(window, button);
    if (cold < 0) return 1;
    std::printf("dialog, first (starts the web engine): %.1f ms\n", cold / 1000.0);
    std::vector<qint64> dialogs;
    for (int run = 0; run < runs; ++run) {
        const qint64 time = timeDialog(window, button);
        if (time < 0) return 1;
        std::printf("dialog, run %d: %.1f ms\n", run + 1, time / 1000.0);
        dialogs.push_back(time);
    }
    std::printf(
        "median: open 200 slides %.1f ms; a key typed to the slide painted %.2f ms (%.2f ms with "
        "readings over the text); click to rendered page (30 characters) %.1f ms\n",
        median(opens) / 1000.0, median(keys) / 1000.0, median(readingKeys) / 1000.0,
        median(dialogs) / 1000.0);
    return 0;
}
