// SPDX-License-Identifier: MIT
// zphonetic (onekey and the others) run as a user runs it, from the tests of the command line.
#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace onekeytest {

struct Outcome {
    int status = -1;  // -1: it crashed or did not finish
    QString out;
    QString err;
};

// Runs `program` (default: the zphonetic beside the test) with `arguments`, headless, in
// English, with `environment` added to the test's own (a variable set to "" is removed).
Outcome runZphonetic(const QStringList& arguments, const QProcessEnvironment& environment = {},
                     const QString& program = {});

// The same with "onekey" before the arguments.
Outcome runOneKey(const QStringList& arguments, const QProcessEnvironment& environment = {},
                  const QString& program = {});

// The first line that zphonetic itself wrote to standard error (Qt may add lines of its own).
QString errorLine(const QString& err);

}  // namespace onekeytest
