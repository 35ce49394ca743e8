// SPDX-License-Identifier: MIT
// The command line renders no page, so it never loads the web engine: not when it starts, not
// when it loads the add-on, not when it answers the dialog's bridge itself (apply). The dynamic
// loader's own record of every object it maps (LD_DEBUG=files) is the witness.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "onekeyrun.h"

namespace {

// The objects a run of zphonetic mapped, as the dynamic loader names them.
QStringList mappedObjects(const QString& err) {
    static const QRegularExpression file(
        QStringLiteral(R"(\bfile=(\S+)\s+\[\d+\];\s+(needed|dynamically loaded))"));
    QStringList objects;
    for (auto match = file.globalMatch(err); match.hasNext();) objects << match.next().captured(1);
    return objects;
}

// The objects of the web engine and what it brings (and of our web part).
QStringList webEngineObjects(const QStringList& objects) {
    static const QRegularExpression web(
        QStringLiteral("WebEngine|Qt5Quick|Qt5Qml|Qt5Positioning|Qt5WebChannel|nvolite_web"));
    return objects.filter(web);
}

QProcessEnvironment loaderRecord() {
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("LD_DEBUG"), QStringLiteral("files"));
    return environment;
}

TEST(CommandLine, OneKeyNeverLoadsTheWebEngine) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const onekeytest::Outcome run =
        onekeytest::runOneKey({QStringLiteral(ZPHONETIC_EXAMPLES_DIR "/lesson.pptx"),
                               QStringLiteral("-o"), dir.filePath(QStringLiteral("out.pptx"))},
                              loaderRecord());
    ASSERT_EQ(run.status, 0) << run.err.right(2000).toStdString();
    const QStringList objects = mappedObjects(run.err);
    // The run did load what a command needs: the add-on and the tagging library.
    EXPECT_EQ(objects.filter(QStringLiteral("libzphoneticsymbol.so")).size(), 1);
    EXPECT_EQ(objects.filter(QStringLiteral("libPinyinTagger.so")).size(), 1);
    EXPECT_EQ(objects.filter(QStringLiteral("libnvolite.so")).size(), 1);
    EXPECT_EQ(webEngineObjects(objects).join(' ').toStdString(), "");
}

TEST(CommandLine, TheDialogsRoundTripNeverLoadsTheWebEngine) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("LD_DEBUG"), QStringLiteral("files"));
    process.setProcessEnvironment(environment);
    process.start(
        QCoreApplication::applicationDirPath() + QStringLiteral("/zphonetic"),
        {QStringLiteral("apply"), QStringLiteral(ZPHONETIC_EXAMPLES_DIR "/lesson.pptx"),
         QStringLiteral("-o"), dir.filePath(QStringLiteral("out.pptx")), QStringLiteral("--style"),
         QStringLiteral("1"), QStringLiteral("--bracket"), QStringLiteral("1")});
    ASSERT_TRUE(process.waitForFinished(120000));
    const QString err = QString::fromUtf8(process.readAllStandardError());
    ASSERT_EQ(process.exitCode(), 0) << err.right(2000).toStdString();
    const QStringList objects = mappedObjects(err);
    EXPECT_EQ(objects.filter(QStringLiteral("libzphoneticsymbol.so")).size(), 1);
    EXPECT_EQ(webEngineObjects(objects).join(' ').toStdString(), "");
}

}  // namespace
