// SPDX-License-Identifier: MIT
// A program run as a person's machine would bound it: a process of its own with its address space
// limited (as `ulimit -v` does) and its processor time limited (as `ulimit -t` does: the kernel
// ends it with SIGXCPU, however loaded the machine), killed besides when it has not ended after a
// while of waiting (a program that waits for ever uses no processor time); its output and the
// most memory it held resident.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>

namespace hostile {

struct Outcome {
    int exitCode = -1;      // when it exited
    int signal = 0;         // when a signal ended it (a crash, SIGXCPU, or the kill after waiting)
    bool timedOut = false;  // killed after waiting
    QByteArray out, err;
    long peakResidentKb = 0;  // the most memory it held resident (getrusage's ru_maxrss)
    double seconds = 0;       // of waiting
    double cpuSeconds = 0;    // of the processor, its own and the system's for it
};

// Runs `program` with `arguments`, its address space limited to `addressSpace` bytes and its
// processor time to `cpuSeconds`, killed when it has not ended after `waitSeconds`; standard
// output and error are kept. The environment is this process's, with XDG_RUNTIME_DIR set to a
// private directory (so Qt has nothing to warn about).
Outcome runLimited(const QString& program, const QStringList& arguments, std::uint64_t addressSpace,
                   int cpuSeconds, int waitSeconds);

// "exited 0", "killed by signal 24", "timed out after 600 s", with what it printed on standard
// error: for the messages of failed tests.
std::string describe(const Outcome& outcome);

}  // namespace hostile
