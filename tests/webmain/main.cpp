// SPDX-License-Identifier: MIT
// Test programs with widgets and web pages run headless, also when GoogleTest lists their tests
// at build time (outside ctest's environment).
#include <QApplication>
#include <gtest/gtest.h>

namespace {

void setDefault(const char* name, const char* value) {
    if (qEnvironmentVariableIsEmpty(name))
        qputenv(name, value);
}

}  // namespace

int main(int argc, char** argv) {
    setDefault("QT_QPA_PLATFORM", "offscreen");
    setDefault("QT_QUICK_BACKEND", "software");
    setDefault("QTWEBENGINE_DISABLE_SANDBOX", "1");
    setDefault("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu");
    // The web engine shares OpenGL contexts with the widgets; this must precede the application.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
