// SPDX-License-Identifier: MIT
// Times "zphonetic onekey DECK -o OUT --all-slides" as a user runs it (a new process each run) on
// a slide with one text of 500,000 and of 1,000,000 Chinese characters, and on a slide of 4,000
// and of 8,000 text boxes; and on a slide with one text of one character, which is what a run
// costs before it does any work (start-up, the add-on, the tagging library). The time of a deck
// less that start-up is its work: at twice the size, twice the work is linear. Each output is
// read again and must hold the boxes made.
//
//   largedeck_bench [RUNS]     (default 3; prints each run, then the medians)
#include <sys/resource.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QRectF>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "minihost/slxcore/deck.h"

namespace {

const char16_t kPoem[] = u"床前明月光疑是地上霜举头望明月低头思故乡";

// A one-slide deck with `boxes` text boxes of `characters` Chinese characters each.
bool writeDeck(const QString& path, int boxes, int characters) {
    const QString poem = QString::fromUtf16(kPoem);
    QString text;
    while (text.size() < characters) text += poem.left(characters - text.size());
    auto deck = minihost::Deck::create(1);
    for (int i = 0; i < boxes; ++i)
        deck->addTextBox(1, text, QRectF(40, 20 + (i % 50) * 10, 880, 20));
    QString error;
    if (deck->save(path, &error)) return true;
    std::fprintf(stderr, "largedeck_bench: %s\n", error.toUtf8().constData());
    return false;
}

int boxesOn(const QString& path) {
    QString error;
    const auto deck = minihost::Deck::loadFile(path, &error);
    return deck ? deck->shapes(1).size() : -1;
}

double childCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

struct Timing {
    double wall = -1, cpu = -1;  // seconds, medians
};

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The medians of `runs` runs of onekey --all-slides on a deck of `boxes` boxes of `characters`.
Timing measure(const QTemporaryDir& dir, const char* what, int boxes, int characters, int runs) {
    const QString in = dir.filePath(QStringLiteral("deck-%1-%2.pptx").arg(boxes).arg(characters));
    const QString out = dir.filePath(QStringLiteral("out.pptx"));
    if (!writeDeck(in, boxes, characters)) return {};
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("ZPHONETIC_HOME"), dir.filePath(QStringLiteral("home")));
    std::vector<double> walls, cpus;
    for (int i = 0; i < runs; ++i) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setStandardOutputFile(QProcess::nullDevice());
        const double cpuBefore = childCpuSeconds();
        QElapsedTimer timer;
        timer.start();
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/zphonetic"),
                      {QStringLiteral("onekey"), in, QStringLiteral("-o"), out,
                       QStringLiteral("--all-slides")});
        if (!process.waitForFinished(600000) || process.exitCode() != 0) {
            std::fprintf(stderr, "largedeck_bench: zphonetic failed: %s\n",
                         process.readAllStandardError().constData());
            return {};
        }
        walls.push_back(timer.elapsed() / 1000.0);
        cpus.push_back(childCpuSeconds() - cpuBefore);
        if (boxesOn(out) != 2 * boxes) {
            std::fprintf(stderr, "largedeck_bench: %d boxes instead of %d\n", boxesOn(out),
                         2 * boxes);
            return {};
        }
        std::printf("%s, run %d: %.2f s wall, %.2f s CPU\n", what, i + 1, walls.back(),
                    cpus.back());
    }
    return {median(walls), median(cpus)};
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    QTemporaryDir dir;
    if (!dir.isValid()) return 1;
    struct Case {
        const char* what;
        int boxes, characters;
        Timing timing;
    } cases[] = {{"1 text of 1 character (start-up)", 1, 1, {}},
                 {"1 text of 500,000 characters", 1, 500000, {}},
                 {"1 text of 1,000,000 characters", 1, 1000000, {}},
                 {"4,000 texts of 5 characters", 4000, 5, {}},
                 {"8,000 texts of 5 characters", 8000, 5, {}}};
    for (Case& c : cases) {
        c.timing = measure(dir, c.what, c.boxes, c.characters, runs);
        if (c.timing.wall < 0) return 1;
    }
    const Timing start = cases[0].timing;
    std::printf("\nmedians of %d runs: wall, CPU; CPU less the start-up\n", runs);
    for (const Case& c : cases)
        std::printf("  %-36s %6.2f s %6.2f s %6.2f s\n", c.what, c.timing.wall, c.timing.cpu,
                    c.timing.cpu - start.cpu);
    auto ratio = [&](int small, int large) {
        return (cases[large].timing.cpu - start.cpu) / (cases[small].timing.cpu - start.cpu);
    };
    std::printf("work at twice the size: %.2f times (characters), %.2f times (shapes)\n",
                ratio(1, 2), ratio(3, 4));
    return 0;
}
