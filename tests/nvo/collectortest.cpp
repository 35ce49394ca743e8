// SPDX-License-Identifier: MIT
// The usage collector keeps every event in memory and appends it to the local log; it sends
// nothing.
#include <gtest/gtest.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "minihost/nvo/dcinfo_p.h"

namespace {

QList<QByteArray> logLines() {
    QFile log(ZDcInfoCPrivate::logPath());
    if (!log.open(QIODevice::ReadOnly)) return {};
    QList<QByteArray> lines = log.readAll().split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    return lines;
}

}  // namespace

TEST(Collector, KeepsTheEventAndAppendsOneJsonLine) {
    QFile::remove(ZDcInfoCPrivate::logPath());
    ZDcInfoC collector;
    const QHash<QString, QString> parameters{{QStringLiteral("action"), QStringLiteral("onekey")}};
    EXPECT_TRUE(collector.postGeneralEvent(QStringLiteral("nvo_phoneticsymbol_home"), parameters, 0,
                                           0, ZDcProbabilityAlways, true));
    ASSERT_EQ(collector.d_func()->events.size(), 1);
    const UsageEvent& event = collector.d_func()->events.first();
    EXPECT_EQ(event.name, QStringLiteral("nvo_phoneticsymbol_home"));
    EXPECT_EQ(event.parameters, parameters);
    EXPECT_EQ(event.probability, 1);
    EXPECT_TRUE(event.immediate);

    const auto lines = logLines();
    ASSERT_EQ(lines.size(), 1);
    const QJsonObject line = QJsonDocument::fromJson(lines.first()).object();
    EXPECT_EQ(line.value(QStringLiteral("name")).toString(),
              QStringLiteral("nvo_phoneticsymbol_home"));
    EXPECT_EQ(line.value(QStringLiteral("parameters")).toObject().value(QStringLiteral("action")),
              QStringLiteral("onekey"));
}

TEST(Collector, AppendsToTheLogItFinds) {
    QFile::remove(ZDcInfoCPrivate::logPath());
    ZDcInfoC first;
    first.postGeneralEvent(QStringLiteral("a"), {}, 0, 0, ZDcProbabilityAlways, true);
    ZDcInfoC second;
    second.postGeneralEvent(QStringLiteral("b"), {}, 0, 0, ZDcProbabilityAlways, false);
    EXPECT_EQ(logLines().size(), 2);
}

TEST(Collector, DropsNamelessAndNeverKeptEvents) {
    QFile::remove(ZDcInfoCPrivate::logPath());
    ZDcInfoC collector;
    EXPECT_FALSE(collector.postGeneralEvent(QString(), {}, 0, 0, ZDcProbabilityAlways, true));
    EXPECT_FALSE(
        collector.postGeneralEvent(QStringLiteral("x"), {}, 0, 0, ZDcProbabilityNever, true));
    EXPECT_TRUE(collector.d_func()->events.isEmpty());
    EXPECT_TRUE(logLines().isEmpty());
}

TEST(Collector, CanKeepEventsInMemoryOnly) {
    QFile::remove(ZDcInfoCPrivate::logPath());
    ZDcInfoC collector;
    collector.d_func()->writeLog = false;
    EXPECT_TRUE(
        collector.postGeneralEvent(QStringLiteral("x"), {}, 0, 0, ZDcProbabilityAlways, true));
    EXPECT_EQ(collector.d_func()->events.size(), 1);
    EXPECT_FALSE(QFile::exists(ZDcInfoCPrivate::logPath()));
}
