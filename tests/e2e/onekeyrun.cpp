// SPDX-License-Identifier: MIT
#include "onekeyrun.h"

#include <QCoreApplication>
#include <QProcess>

namespace onekeytest {

Outcome runOneKey(const QStringList& arguments, const QProcessEnvironment& environment,
                  const QString& program) {
    return runZphonetic(QStringList{QStringLiteral("onekey")} + arguments, environment, program);
}

Outcome runZphonetic(const QStringList& arguments, const QProcessEnvironment& environment,
                     const QString& program) {
    QProcess process;
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    all.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    all.insert(QStringLiteral("ZPHONETIC_UI_LANGUAGE"), QStringLiteral("en_US"));
    for (const QString& name : environment.keys()) {
        if (environment.value(name).isEmpty())
            all.remove(name);
        else
            all.insert(name, environment.value(name));
    }
    process.setProcessEnvironment(all);
    process.start(program.isEmpty()
                      ? QCoreApplication::applicationDirPath() + QStringLiteral("/zphonetic")
                      : program,
                  arguments);
    Outcome run;
    if (!process.waitForFinished(120000)) return run;
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

QString errorLine(const QString& err) {
    for (const QString& line : err.split(QLatin1Char('\n')))
        if (line.startsWith(QStringLiteral("zphonetic: "))) return line;
    return {};
}

}  // namespace onekeytest
