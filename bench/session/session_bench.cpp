// SPDX-License-Identifier: MIT
// A long session in one host process: the add-on loaded once, then COMMANDS commands over one
// deck, alternating "PhoneticOneKey" and the "PhoneticSymbol" dialog's round trip (opened, its
// readings asked for and confirmed as the page does), each followed by undo, and before each a
// key typed into the text (a character added, then taken away again by the next), which stays
// on the deck's undo stack. The text has readings over its characters, which follow it as the
// studio makes them follow: each key places them again. Prints the process's resident memory and
// the live host objects every tenth of the way; fails when an object is left alive after a command,
// when the deck is not back to its bytes at the end, or when memory grows by more than LIMIT_KB
// from the first tenth to the end.
//
//   session_bench [COMMANDS [LIMIT_KB]]     (default 10000 commands, 4096 kB)
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QRectF>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "dialogbridge.h"
#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/taggerreadings.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "nvo/zapplication.h"
#include "readingsfollower.h"

namespace {

long residentKb() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmRSS:", 0) == 0) return std::atol(line.c_str() + 6);
    return -1;
}

int fail(const char* what) {
    std::fprintf(stderr, "session_bench: %s\n", what);
    return 1;
}

// The dialog's round trip as the page makes it: the readings asked for, confirmed unchanged in
// the layout `style` with brackets `bracket`.
bool dialogRoundTrip(minihost::AddonSession& session, int style, int bracket) {
    DialogBridge dialog;
    if (!dialog.open(session)) return false;
    QString reply;
    if (!dialog.call(QStringLiteral("getPhoneticText"), {}, &reply)) return false;
    QJsonArray phonetic;
    if (!DialogBridge::readingEntries(reply, &phonetic)) return false;
    const QJsonArray items = DialogBridge::confirmedItems(phonetic, nullptr);
    const bool confirmed = !items.isEmpty() && dialog.confirm(items, style, bracket);
    dialog.finish();
    return confirmed;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    int applicationArgc = 1;
    ZxApplication app(applicationArgc, argv);
    const int commands = argc > 1 ? std::max(2, std::atoi(argv[1])) : 10000;
    const long limitKb = argc > 2 ? std::atol(argv[2]) : 4096;
    minihost::offerEngineReadingService();

    std::unique_ptr<minihost::Deck> deck = minihost::Deck::create(1);
    const QString text = QStringLiteral("银行行长还是觉得音乐很快乐");
    const int box = deck->addTextBox(1, text, QRectF(40, 40, 600, 60));
    // Its readings over its characters, as the engine gives them.
    const minihost::ReadingFunction engine = minihost::engineReadingFunction();
    const std::optional<QList<minihost::Reading>> readings =
        ReadingsFollower::engineReadings(text, engine);
    if (!readings || readings->size() != text.size()) return fail("the engine gave no readings");
    if (!deck->placeReadingsOver(1, box, *readings, QStringLiteral("readings")).isEmpty())
        return fail("the readings were not placed over the text");
    QString error;
    const QByteArray original = deck->toBytes(&error);
    deck = minihost::Deck::load(original, QStringLiteral("session.pptx"), &error);
    minihost::setActiveView(deck->view());
    new ReadingsFollower(deck.get(), engine);
    int status = 0;
    {
        minihost::AddonSession session;
        if (!session.open()) return fail(session.errorString().toUtf8().constData());
        long firstTenthKb = 0;
        QElapsedTimer timer;
        timer.start();
        std::printf("%8s %10s %8s %8s\n", "commands", "rss_kB", "live", "ms");
        std::printf("%8d %10ld %8d %8d\n", 0, residentKb(), minihost::liveObjectCount(), 0);
        for (int i = 0; i < commands && status == 0; ++i) {
            // Typed after the text, or taken back: the text is as read after every second key.
            const int end = i % 2 == 0 ? deck->replaceText(1, box, 13, 0, QStringLiteral("好"),
                                                           QStringLiteral("typing"))
                                       : deck->replaceText(1, box, 13, 1, QString(),
                                                           QStringLiteral("delete text"));
            if (end != 13 + (i + 1) % 2) status = fail("a key did not reach the text");
            if (deck->readingsOver(1, box).size() != end)
                status = fail("the readings did not follow the text");
            if (!deck->selectText(box, 0, 13)) status = fail("the text cannot be selected");
            const bool ran = i % 2 == 0 ? session.trigger(QStringLiteral("PhoneticOneKey"))
                                        : dialogRoundTrip(session, 1 + i / 2 % 3, 1 + i / 6 % 5);
            if (!ran) status = fail("a command did not run");
            if (deck->editedParts().isEmpty()) status = fail("a command changed nothing");
            if (!deck->undo()) status = fail("nothing to undo");
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            if (minihost::liveObjectCount() != 0)
                status = fail("objects left alive after a command");
            if ((i + 1) % (commands / 10) == 0 || i + 1 == commands) {
                const long rss = residentKb();
                if (!firstTenthKb) firstTenthKb = rss;
                std::printf("%8d %10ld %8d %8lld\n", i + 1, rss, minihost::liveObjectCount(),
                            static_cast<long long>(timer.elapsed()));
                std::fflush(stdout);
            }
        }
        const long growth = residentKb() - firstTenthKb;
        std::printf("memory from the first tenth to the end: %+ld kB (limit %ld kB)\n", growth,
                    limitKb);
        if (status == 0 && growth > limitKb) status = fail("memory grew past the limit");
    }
    minihost::setActiveView(nullptr);
    if (status == 0 && commands % 2 == 0 && deck->toBytes(&error) != original)
        status = fail("the deck is not as it was read");
    std::printf("undo steps kept at the end: %d (the limit is %d)\n", deck->undoStack()->count(),
                minihost::Deck::kUndoLimit);
    deck.reset();
    std::printf("live objects at the end: %d; over-released: %d\n", minihost::liveObjectCount(),
                minihost::overReleaseCount());
    if (status == 0 && (minihost::liveObjectCount() != 0 || minihost::overReleaseCount() != 0))
        status = fail("objects left alive or released twice");
    return status;
}
