// SPDX-License-Identifier: MIT
// Times "zphonetic onekey DECK -o OUT --all-slides" on a generated deck of 200 slides with five
// Chinese text boxes each, as a user runs it (a new process each time: loading the add-on, the
// tagging library and its dictionaries is part of the figure), and on a one-slide deck of the
// same kind, which shows the fixed cost of a run. Checks every run's output.
//
//   onekey_bench [RUNS]     (default 3; prints each run and the median)
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

constexpr int kSlides = 200;
constexpr int kBoxesPerSlide = 5;

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

bool writeDeck(const QString& path, int slides) {
    auto deck = minihost::Deck::create(slides);
    int next = 0;
    for (int slide = 1; slide <= slides; ++slide)
        for (int box = 0; box < kBoxesPerSlide; ++box) {
            const auto* sentence = kSentences[next++ % std::size(kSentences)];
            deck->addTextBox(slide, QString::fromUtf16(sentence),
                             QRectF(40, 20 + box * 100, 880, 80));
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

// The median wall time of `runs` runs of onekey --all-slides on a deck of `slides` slides; -1 when
// a run fails or its output lacks boxes.
qint64 medianRun(const QTemporaryDir& dir, int slides, int runs) {
    const QString in = dir.filePath(QStringLiteral("lessons-%1.pptx").arg(slides));
    const QString out = dir.filePath(QStringLiteral("lessons-%1-pinyin.pptx").arg(slides));
    if (!writeDeck(in, slides)) return -1;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("ZPHONETIC_HOME"), dir.filePath(QStringLiteral("home")));
    std::vector<qint64> times;
    for (int i = 0; i < runs; ++i) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setStandardOutputFile(QProcess::nullDevice());
        QElapsedTimer timer;
        timer.start();
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/zphonetic"),
                      {QStringLiteral("onekey"), in, QStringLiteral("-o"), out,
                       QStringLiteral("--all-slides")});
        if (!process.waitForFinished(600000) || process.exitCode() != 0) {
            std::fprintf(stderr, "onekey_bench: zphonetic failed: %s\n",
                         process.readAllStandardError().constData());
            return -1;
        }
        times.push_back(timer.elapsed());
        const int boxes = newBoxes(in, out);
        if (boxes != slides * kBoxesPerSlide) {
            std::fprintf(stderr, "onekey_bench: %d new boxes instead of %d\n", boxes,
                         slides * kBoxesPerSlide);
            return -1;
        }
        std::printf("%d slides, run %d: %lld ms\n", slides, i + 1,
                    static_cast<long long>(times.back()));
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    QTemporaryDir dir;
    if (!dir.isValid()) return 1;
    const qint64 one = medianRun(dir, 1, runs);
    const qint64 all = one < 0 ? -1 : medianRun(dir, kSlides, runs);
    if (all < 0) return 1;
    std::printf(
        "onekey --all-slides, median of %d runs: 1 slide (%d boxes) %lld ms; %d slides "
        "(%d boxes) %lld ms\n",
        runs, kBoxesPerSlide, static_cast<long long>(one), kSlides, kSlides * kBoxesPerSlide,
        static_cast<long long>(all));
    return 0;
}
