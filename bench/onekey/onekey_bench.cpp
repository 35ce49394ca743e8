// SPDX-License-Identifier: MIT
// Times "zphonetic onekey DECK -o OUT --all-slides" as a user runs it (a new process each time:
// loading the add-on, the tagging library and its dictionaries is part of the figure) on generated
// decks: one slide of five Chinese text boxes, which shows the fixed cost of a run, and 200 such
// slides; then the large ones, each at two sizes, to show the work grows linearly: a slide with
// one text of 500,000 and of 1,000,000 characters, and a slide of 4,000 and of 8,000 text boxes.
// Checks every run's output. Wall time and the CPU time of the run (which the load of a shared
// machine does not move) are both reported.
//
// With "place", it times instead the placements of the boxes on the 200-slide deck: runs with
// --place below and with --place over, in turns, and the ratio of their CPU times.
//
//   onekey_bench [RUNS]         (default 3; prints each run and the medians)
//   onekey_bench place [RUNS]
#include <sys/resource.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QRectF>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

// The texts of `out` with readings over them.
int textsWithReadingsOver(const QString& out) {
    QString error;
    const auto after = minihost::Deck::loadFile(out, &error);
    if (!after) return -1;
    int count = 0;
    for (int slide = 1; slide <= after->slideCount(); ++slide)
        for (const minihost::ShapeInfo& shape : after->shapes(slide))
            count += after->readingsOver(slide, shape.id).isEmpty() ? 0 : 1;
    return count;
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

// One run of onekey --all-slides with `place` (empty: the add-on's) from `in` to `out`, timed
// into `walls` and `cpus`; false when it fails.
bool runOnce(const QTemporaryDir& dir, const QString& in, const QString& out, const QString& place,
             std::vector<double>& walls, std::vector<double>& cpus) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("ZPHONETIC_HOME"), dir.filePath(QStringLiteral("home")));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    QStringList arguments{QStringLiteral("onekey"), in, QStringLiteral("-o"), out,
                          QStringLiteral("--all-slides")};
    if (!place.isEmpty()) arguments << QStringLiteral("--place") << place;
    const double cpuBefore = childCpuSeconds();
    QElapsedTimer timer;
    timer.start();
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/zphonetic"), arguments);
    if (!process.waitForFinished(600000) || process.exitCode() != 0) {
        std::fprintf(stderr, "onekey_bench: zphonetic failed: %s\n",
                     process.readAllStandardError().constData());
        return false;
    }
    walls.push_back(static_cast<double>(timer.elapsed()) / 1000);
    cpus.push_back(childCpuSeconds() - cpuBefore);
    return true;
}

// The medians of `runs` runs of onekey --all-slides on a deck of `kind`; negative when a run
// fails or its output lacks boxes.
Timing measure(const QTemporaryDir& dir, const DeckKind& kind, int runs) {
    const QString in = dir.filePath(QStringLiteral("deck.pptx"));
    const QString out = dir.filePath(QStringLiteral("deck-pinyin.pptx"));
    if (!writeDeck(in, kind)) return {};
    std::vector<double> walls, cpus;
    for (int i = 0; i < runs; ++i) {
        if (!runOnce(dir, in, out, QString(), walls, cpus)) return {};
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

// --place below against --place over on the 200-slide deck, run in turns so that both meet the
// same load; checks that every text got its box or its readings.
int comparePlacements(const QTemporaryDir& dir, int runs) {
    const DeckKind kind{"200 slides, 1,000 texts", 200, 5, 0};
    const QString in = dir.filePath(QStringLiteral("deck.pptx"));
    const QString out = dir.filePath(QStringLiteral("deck-pinyin.pptx"));
    if (!writeDeck(in, kind)) return 1;
    const int texts = kind.slides * kind.boxes;
    std::vector<double> belowWalls, belowCpus, overWalls, overCpus;
    for (int i = 0; i < runs; ++i) {
        if (!runOnce(dir, in, out, QStringLiteral("below"), belowWalls, belowCpus)) return 1;
        if (newBoxes(in, out) != texts) return 1;
        if (!runOnce(dir, in, out, QStringLiteral("over"), overWalls, overCpus)) return 1;
        if (textsWithReadingsOver(out) != texts) {
            std::fprintf(stderr, "onekey_bench: not every text has readings over it\n");
            return 1;
        }
        std::printf("run %d: below %.3f s wall, %.3f s CPU; over %.3f s wall, %.3f s CPU\n", i + 1,
                    belowWalls.back(), belowCpus.back(), overWalls.back(), overCpus.back());
    }
    std::printf(
        "\n%s, medians of %d runs: below %.3f s CPU (%.3f s wall), over %.3f s CPU "
        "(%.3f s wall); over / below: %.2f (CPU), %.2f (wall)\n",
        kind.what, runs, median(belowCpus), median(belowWalls), median(overCpus), median(overWalls),
        median(overCpus) / median(belowCpus), median(overWalls) / median(belowWalls));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const bool place = argc > 1 && std::strcmp(argv[1], "place") == 0;
    const int first = place ? 2 : 1;
    const int runs = argc > first ? std::max(1, std::atoi(argv[first])) : 3;
    QTemporaryDir dir;
    if (!dir.isValid()) return 1;
    if (place) return comparePlacements(dir, runs);
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
