// SPDX-License-Identifier: MIT
// Times the studio's window as a person meets it, headless, in one process:
//   open   opening a 200-slide deck (five Chinese text boxes a slide) until its first slide is
//          drawn: reading the file, the thumbnails, and one paint of the slide view;
//   dialog from the click on the ribbon's "PhoneticSymbol" button, with 30 characters selected,
//          until the add-on's page says it has rendered them ("data-rendered"); the first run
//          starts the web engine and is reported apart.
// Each run is checked: the deck has its 200 slides, the page shows 30 characters.
//
//   studio_bench [RUNS]     (default 5; prints each run and the median)
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
#include "nvo/zapplication.h"
#include "nvolite/zxcommonwebwidget.h"
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
    std::printf("median: open 200 slides %.1f ms; click to rendered page (30 characters) %.1f ms\n",
                median(opens) / 1000.0, median(dialogs) / 1000.0);
    return 0;
}
