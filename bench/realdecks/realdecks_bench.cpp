// SPDX-License-Identifier: MIT
// Times the folder of real-world decks as a user would go through it: for every deck,
// "zphonetic show DECK" and "zphonetic onekey DECK -o OUT --all-slides", each a new process.
// A run is the whole folder; prints each run, the median, and the slowest deck of the last run.
// Fails when a command ends other than with 0 (written) or 1 (refused with a message).
//
//   realdecks_bench [RUNS] [FOLDER]     (default 3 runs over the configured testdecks/real)
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// The exit status of zphonetic with `arguments`, or -1 for a crash or a hang.
int zphonetic(const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/zphonetic"), arguments);
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return -1;
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    const QString folder =
        argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral(ZPHONETIC_REALDECKS_DIR);
    const QStringList decks =
        QDir(folder).entryList({QStringLiteral("*.pptx")}, QDir::Files, QDir::Name);
    QTemporaryDir dir;
    if (decks.isEmpty() || !dir.isValid()) {
        std::fprintf(stderr, "realdecks_bench: no decks in %s\n", folder.toLocal8Bit().constData());
        return 1;
    }
    std::vector<qint64> times;
    QString slowest;
    qint64 slowestTime = 0;
    int written = 0;
    for (int run = 1; run <= runs; ++run) {
        written = 0;
        slowestTime = 0;
        QElapsedTimer folderTimer;
        folderTimer.start();
        for (const QString& deck : decks) {
            const QString in = folder + QLatin1Char('/') + deck;
            const QString out = dir.filePath(deck);
            QFile::remove(out);
            QElapsedTimer deckTimer;
            deckTimer.start();
            const int shown = zphonetic({QStringLiteral("show"), in});
            const int onekey = zphonetic({QStringLiteral("onekey"), in, QStringLiteral("-o"), out,
                                          QStringLiteral("--all-slides")});
            if (shown < 0 || shown > 1 || onekey < 0 || onekey > 1) {
                std::fprintf(stderr, "realdecks_bench: %s: show ended with %d, onekey with %d\n",
                             deck.toLocal8Bit().constData(), shown, onekey);
                return 1;
            }
            written += onekey == 0;
            if (deckTimer.elapsed() > slowestTime) {
                slowestTime = deckTimer.elapsed();
                slowest = deck;
            }
        }
        times.push_back(folderTimer.elapsed());
        std::printf("run %d: %lld ms for %d decks (%d written, %d refused)\n", run,
                    static_cast<long long>(times.back()), static_cast<int>(decks.size()), written,
                    static_cast<int>(decks.size()) - written);
    }
    std::sort(times.begin(), times.end());
    std::printf(
        "median of %d runs: %lld ms for the folder (%lld ms a deck); slowest deck %s, %lld ms\n",
        runs, static_cast<long long>(times[times.size() / 2]),
        static_cast<long long>(times[times.size() / 2] / decks.size()),
        slowest.toLocal8Bit().constData(), static_cast<long long>(slowestTime));
    return 0;
}
