// SPDX-License-Identifier: MIT
// The dialog command in a build without the web engine, in a host that renders pages: the host
// says the page cannot be shown, and the dialog closes; nothing is written.
#include <QTest>

#include "dialogfixture.h"
#include "entry/addonresources.h"

namespace {

using NoWebEngine = DialogTest;

TEST_F(NoWebEngine, TheDialogCommandSaysItsPageCannotBeShownAndCloses) {
    minihost::setWebRendering(true);
    const int box = selectBox(QString::fromUtf8("你好"));
    deck->clearJournal();
    model()->openPhoneticDialog();
    QTest::qWait(0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QList<RecordedMessage> messages = minihost::messagesShown();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0].text,
              QStringLiteral("The page ") + pinyinPageUrl() +
                  QStringLiteral(" cannot be shown: this build has no web engine."));
    EXPECT_EQ(messages[0].flags, 0x10u);
    EXPECT_EQ(model()->dialog, nullptr);
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你好"));
    EXPECT_TRUE(deck->undoSteps().isEmpty());
}

}  // namespace
