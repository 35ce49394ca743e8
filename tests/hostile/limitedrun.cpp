// SPDX-License-Identifier: MIT
#include "limitedrun.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <cstring>
#include <string>
#include <vector>

extern char** environ;

namespace hostile {

Outcome runLimited(const QString& program, const QStringList& arguments, std::uint64_t addressSpace,
                   int cpuSeconds, int waitSeconds) {
    Outcome outcome;
    QTemporaryDir dir;
    const QString runtime = dir.filePath(QStringLiteral("runtime"));
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    const QString outPath = dir.filePath(QStringLiteral("out")),
                  errPath = dir.filePath(QStringLiteral("err"));

    // Everything the child needs is made before the fork: after it, only calls that are safe in
    // a copy of a process with threads.
    std::vector<std::string> strings{QFile::encodeName(program).toStdString()};
    for (const QString& argument : arguments) strings.push_back(argument.toStdString());
    std::vector<char*> argv;
    for (std::string& s : strings) argv.push_back(s.data());
    argv.push_back(nullptr);
    std::vector<std::string> environment{"XDG_RUNTIME_DIR=" + runtime.toStdString()};
    for (char** e = environ; *e; ++e)
        if (std::strncmp(*e, "XDG_RUNTIME_DIR=", 16) != 0) environment.emplace_back(*e);
    std::vector<char*> envp;
    for (std::string& s : environment) envp.push_back(s.data());
    envp.push_back(nullptr);
    const int out = ::open(QFile::encodeName(outPath).constData(), O_WRONLY | O_CREAT, 0600);
    const int err = ::open(QFile::encodeName(errPath).constData(), O_WRONLY | O_CREAT, 0600);
    const rlimit memory{addressSpace, addressSpace};
    const rlimit processor{static_cast<rlim_t>(cpuSeconds), static_cast<rlim_t>(cpuSeconds) + 1};
    const rlimit noCore{0, 0};

    QElapsedTimer timer;
    timer.start();
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::dup2(out, 1);
        ::dup2(err, 2);
        if (addressSpace) ::setrlimit(RLIMIT_AS, &memory);
        ::setrlimit(RLIMIT_CPU, &processor);
        ::setrlimit(RLIMIT_CORE, &noCore);
        ::execve(argv[0], argv.data(), envp.data());
        ::_exit(127);
    }
    ::close(out);
    ::close(err);
    if (pid < 0) return outcome;
    int status = 0;
    rusage usage{};
    for (;;) {
        const pid_t done = ::wait4(pid, &status, WNOHANG, &usage);
        if (done == pid) break;
        if (timer.elapsed() > waitSeconds * 1000ll && !outcome.timedOut) {
            outcome.timedOut = true;
            ::kill(pid, SIGKILL);
        }
        QThread::msleep(10);
    }
    outcome.seconds = timer.elapsed() / 1000.0;
    outcome.peakResidentKb = usage.ru_maxrss;
    outcome.cpuSeconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    if (WIFEXITED(status)) outcome.exitCode = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
    QFile outFile(outPath), errFile(errPath);
    if (outFile.open(QIODevice::ReadOnly)) outcome.out = outFile.readAll();
    if (errFile.open(QIODevice::ReadOnly)) outcome.err = errFile.readAll();
    return outcome;
}

std::string describe(const Outcome& outcome) {
    const QString what =
        outcome.timedOut ? QStringLiteral("timed out after %1 s").arg(outcome.seconds)
        : outcome.signal ? QStringLiteral("killed by signal %1").arg(outcome.signal)
                         : QStringLiteral("exited %1").arg(outcome.exitCode);
    return (what + QStringLiteral(" in %1 s (%2 s of processor), %3 kB resident at most; "
                                  "standard error:\n%4")
                       .arg(outcome.seconds)
                       .arg(outcome.cpuSeconds)
                       .arg(outcome.peakResidentKb)
                       .arg(QString::fromUtf8(outcome.err.left(2000))))
        .toStdString();
}

}  // namespace hostile
