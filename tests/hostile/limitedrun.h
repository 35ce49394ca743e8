// SPDX-License-Identifier: MIT
// A program run as a person's machine would bound it: a process of its own with its address space
// limited (as `ulimit -v` does) and a time after which it is killed, its output and the most
// memory it held resident.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>

namespace hostile {

struct Outcome {
    int exitCode = -1;  // when it exited
    int signal = 0;     // when a signal ended it (a crash, or the kill at the time limit)
    bool timedOut = false;
    QByteArray out, err;
    long peakResidentKb = 0;  // the most memory it held resident (getrusage's ru_maxrss)
    double seconds = 0;
};

// Runs `program` with `arguments`, its address space limited to `addressSpace` bytes and killed
// after `seconds`; standard output and error are kept. The environment is this process's, with
// XDG_RUNTIME_DIR set to a private directory (so Qt has nothing to warn about).
Outcome runLimited(const QString& program, const QStringList& arguments, std::uint64_t addressSpace,
                   int seconds);

// "exited 0", "killed by signal 11", "timed out after 120 s", with what it printed on standard
// error: for the messages of failed tests.
std::string describe(const Outcome& outcome);

}  // namespace hostile
