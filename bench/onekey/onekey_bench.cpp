// SPDX-License-Identifier: MIT
// Times "zphonetic onekey DECK -o OUT --all-slides" as a user runs it (a new process each time:
// loading the add-on, the tagging library and its dictionaries is part of the figure) on generated
// decks: one slide of five Chinese text boxes, which shows the fixed cost of a run, and 200 such
// slides; then the large ones, each at two sizes, to show the work grows linearly: a slide with
// one text of 500,000 and of 1,000,000 characters, and a slide of 4,000 and of 8,000 text boxes.
// Checks every run's output. Wall time and the CPU time of the run (which the load of a shared
// machine does not move) are both reported.
//
//   onekey_bench [RUNS]     (default 3; prints each run and the medians)
#include <sys/resource.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QRectF>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "minihost/slxcore/deck.h"

namespace {

const char16_t* const kSentences[] = {u"床前明月光，疑是地上霜。",
                                      u"举头望明月，低头思故乡。",
                                      u"银行行长还是觉得音乐很快乐。",
                                      u"他重新说了一遍：这很重要。",
                                      u"一个人，一天，一年。",
                                      u"不是不好，是不对。",
                                      u"我们一起学习汉语拼音。",
                                      u"今天天气很好，我们去公园散步吧。",
                                      u"老师说：大家好！",
                                      u"春眠不觉晓，处处闻啼鸟。",
                                      u"长江后浪推前浪。"};

// A deck of `slides` slides with `boxes` text boxes each: the sentences above in turn, or, when
// `characters` is given, texts of that many Chinese characters.
struct DeckKind {
    const char* what;
    int slides;
    int boxes;
    int characters;
};

bool writeDeck(const QString& path, const DeckKind& kind) {
    const QString poem = QString::fromUtf16(u"床前明月光疑是地上霜举头望明月低头思故乡");
    QString repeated;
    while (repeated.size() < kind.characters)
        repeated += poem.left(kind.characters - repeated.size());
    auto deck = minihost::Deck::create(kind.slides);
    int next = 0;
    for (int slide = 1; slide <= kind.slides; ++slide)
        for (int box = 0; box < kind.boxes; ++box) {
            const QString text =
                kind.characters ? repeated
                                : QString::fromUtf16(kSentences[next++ % std::size(kSentences)]);
            deck->addTextBox(slide, text, QRectF(40, 20 + (box % 5) * 100, 880, 80));
        }
    QString error;
    if (deck->save(path, &error)) return true;
    std::fprintf(stderr, "onekey_bench: %s\n", error.toUtf8().constData());
    return false;
}

int newBoxes(const QString& in, const QString& out) {
    QString error;
    const auto before = minihost::Deck::loadFile(in, &error);
    const auto after = minihost::Deck::loadFile(out, &error);
    if (!before || !after) return -1;
    int count = 0;
    for (int slide = 1; slide <= after->slideCount(); ++slide)
        count += after->shapes(slide).size() - before->shapes(slide).size();
    return count;
}

double childCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Timing {
    double wall = -1, cpu = -1;  // seconds, medians of the runs
};

// The medians of `runs` runs of onekey --all-slides on a deck of `kind`; negative when a run
// fails or its output lacks boxes.
Timing measure(const QTemporaryDir& dir, const DeckKind& kind, int runs) {
    const QString in = dir.filePath(QStringLiteral("deck.pptx"));
    const QString out = dir.filePath(QStringLiteral("deck-pinyin.pptx"));
    if (!writeDeck(in, kind)) return {};
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
            std::fprintf(stderr, "onekey_bench: zphonetic failed: %s\n",
                         process.readAllStandardError().constData());
            return {};
        }
        walls.push_back(static_cast<double>(timer.elapsed()) / 1000);
        cpus.push_back(childCpuSeconds() - cpuBefore);
        const int boxes = newBoxes(in, out);
        if (boxes != kind.slides * kind.boxes) {
            std::fprintf(stderr, "onekey_bench: %d new boxes instead of %d\n", boxes,
                         kind.slides * kind.boxes);
            return {};
        }
        std::printf("%s, run %d: %.3f s wall, %.3f s CPU\n", kind.what, i + 1, walls.back(),
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
    const DeckKind kinds[] = {{"1 slide, 5 texts", 1, 5, 0},
                              {"200 slides, 1,000 texts", 200, 5, 0},
                              {"1 text of 500,000 characters", 1, 1, 500000},
                              {"1 text of 1,000,000 characters", 1, 1, 1000000},
                              {"1 slide of 4,000 texts", 1, 4000, 0},
                              {"1 slide of 8,000 texts", 1, 8000, 0}};
    std::vector<Timing> timings;
    for (const DeckKind& kind : kinds) {
        timings.push_back(measure(dir, kind, runs));
        if (timings.back().wall < 0) return 1;
    }
    // What a run does beyond starting: its CPU less that of the one-slide deck.
    const double start = timings[0].cpu;
    std::printf("\nonekey --all-slides, medians of %d runs: wall, CPU, CPU beyond the start\n",
                runs);
    for (std::size_t i = 0; i < timings.size(); ++i)
        std::printf("  %-32s %7.3f s %7.3f s %7.3f s\n", kinds[i].what, timings[i].wall,
                    timings[i].cpu, timings[i].cpu - start);
    std::printf("work at twice the size: %.2f times (characters), %.2f times (texts)\n",
                (timings[3].cpu - start) / (timings[2].cpu - start),
                (timings[5].cpu - start) / (timings[4].cpu - start));
    return 0;
}
