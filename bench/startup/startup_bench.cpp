// SPDX-License-Identifier: MIT
// Times whole processes as a user starts them, in pairs: the bare Qt Widgets program
// (startup_bare) against "zphonetic onekey" on the example deck, and against
// "zphonetic --version". The two runs of a pair follow each other (in alternating order), so a
// busy machine slows both alike; the figure is the median of the pairs' ratios. Checks every
// run's result.
//
//   startup_bench [PAIRS] [DECK]    (default 30 pairs, the example deck)
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

extern char** environ;

namespace {

constexpr double kOneKeyTarget = 1.5;
constexpr double kVersionTarget = 1.2;

struct Run {
    bool ok = false;
    double ms = 0;     // wall time
    double cpuMs = 0;  // the process's user and system time
};

// Runs `arguments` (the program first) with standard output to `output` (or nowhere), and
// measures from the spawn to the end of the wait, and the CPU time the process used.
Run timeProcess(const std::vector<std::string>& arguments, const std::string& output) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO,
                                     output.empty() ? "/dev/null" : output.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    Run run;
    const auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
        int status = 0;
        struct rusage usage {};
        if (wait4(pid, &status, 0, &usage) == pid) {
            run.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
            run.cpuMs = (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 +
                        (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
        }
    }
    run.ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    posix_spawn_file_actions_destroy(&actions);
    return run;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

struct Series {
    const char* name;
    std::vector<std::string> command;
    std::string output;  // where its standard output goes (empty: nowhere)
    double target;
    std::vector<double> bare, subject, ratio, cpuRatio;
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int pairs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 30;
    const QString deck =
        argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral(ZPHONETIC_EXAMPLE_DECK);
    if (!QFile::exists(deck)) {
        std::fprintf(stderr, "startup_bench: %s: no such deck\n", qPrintable(deck));
        return 1;
    }
    QTemporaryDir dir;
    if (!dir.isValid()) return 1;
    // Headless, and a host home of its own, as the command line runs in a test.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ZPHONETIC_HOME", QFile::encodeName(dir.filePath(QStringLiteral("home"))));
    const std::string bin = QFile::encodeName(QCoreApplication::applicationDirPath()).toStdString();
    const std::string bare = bin + "/startup_bare";
    const std::string zphonetic = bin + "/zphonetic";
    const std::string out =
        QFile::encodeName(dir.filePath(QStringLiteral("out.pptx"))).toStdString();
    const std::string version =
        QFile::encodeName(dir.filePath(QStringLiteral("version.txt"))).toStdString();

    std::vector<Series> series = {
        {"zphonetic onekey DECK -o OUT",
         {zphonetic, "onekey", QFile::encodeName(deck).toStdString(), "-o", out},
         std::string(),
         kOneKeyTarget,
         {},
         {},
         {},
         {}},
        {"zphonetic --version", {zphonetic, "--version"}, version, kVersionTarget, {}, {}, {}, {}},
    };
    // One unmeasured round first, so that every file the runs read is in the page cache.
    timeProcess({bare}, std::string());
    for (const Series& s : series) timeProcess(s.command, s.output);

    for (int i = 0; i < pairs; ++i) {
        for (Series& s : series) {
            const bool bareFirst = i % 2 == 0;
            const Run first =
                bareFirst ? timeProcess({bare}, std::string()) : timeProcess(s.command, s.output);
            const Run second =
                bareFirst ? timeProcess(s.command, s.output) : timeProcess({bare}, std::string());
            const Run& b = bareFirst ? first : second;
            const Run& z = bareFirst ? second : first;
            if (!b.ok || !z.ok) {
                std::fprintf(stderr, "startup_bench: %s failed\n", !b.ok ? "startup_bare" : s.name);
                return 1;
            }
            s.bare.push_back(b.ms);
            s.subject.push_back(z.ms);
            s.ratio.push_back(z.ms / b.ms);
            if (b.cpuMs > 0) s.cpuRatio.push_back(z.cpuMs / b.cpuMs);
        }
    }
    // What the runs must have done: the deck written, the version printed.
    QFile printed(QString::fromStdString(version));
    if (!QFile::exists(QString::fromStdString(out)) || !printed.open(QIODevice::ReadOnly) ||
        !printed.readAll().startsWith("zphonetic ")) {
        std::fprintf(stderr, "startup_bench: the runs did not write the deck or the version\n");
        return 1;
    }

    std::printf("start-up, %d pairs each (medians; a ratio is the median of the pairs' ratios):\n",
                pairs);
    for (const Series& s : series) {
        const double ratio = median(s.ratio);
        std::printf(
            "  %-30s %6.1f ms against the bare Qt Widgets start's %6.1f ms: %.2f x (target at "
            "most %.1f: %s); CPU time %.2f x\n",
            s.name, median(s.subject), median(s.bare), ratio, s.target,
            ratio <= s.target ? "met" : "NOT met", s.cpuRatio.empty() ? 0.0 : median(s.cpuRatio));
    }
    return 0;
}
