// SPDX-License-Identifier: MIT
// Runs a test executable inside a headless host application whose home (settings, registry,
// usage log, configuration directory) is a fresh temporary directory, so tests never touch the
// user's files and never see each other's.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "minihost/nvo/hoststore.h"
#include "nvo/zapplication.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Pages in the web engine, headless: software rendering, and no sandbox (tests run as root).
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND")) qputenv("QT_QUICK_BACKEND", "software");
    if (qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    ::testing::InitGoogleTest(&argc, argv);
    ZxApplication app(argc, argv);
    QTemporaryDir home;
    if (!home.isValid()) return 2;
    qputenv("ZPHONETIC_HOME", home.path().toLocal8Bit());
    minihost::setHomeDirectory(home.path());
    // The configuration directory too: the tagging library reads the user's own readings there.
    qputenv("XDG_CONFIG_HOME", (home.path() + QStringLiteral("/config")).toLocal8Bit());
    qunsetenv("ZPHONETIC_READINGS_FILE");
    qunsetenv("ZPHONETIC_TONES");
    return RUN_ALL_TESTS();
}
