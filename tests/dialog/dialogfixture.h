// SPDX-License-Identifier: MIT
// The add-on's model initialised in the headless host, over a one-slide deck and the test tagging
// library; dialogs are driven through their bridge without rendering unless a test asks.
#pragma once

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QPointer>
#include <QTemporaryDir>

#include "dialog/phoneticsymbolwebwindow.h"
#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvolite/webhost.h"
#include "minihost/slxcore/deck.h"
#include "model/phoneticsymbolmodel.h"
#include "nvo/zapplication.h"
#include "taggerdoublelibrary.h"

class DialogTest : public testing::Test {
protected:
    static ZPhoneticSymbolModel* model() { return ZPhoneticSymbolModel::instance(); }

    void SetUp() override {
        ASSERT_TRUE(tagger.isLoaded()) << "the test tagging library did not load";
        minihost::setWebRendering(false);
        minihost::setWebProfilesOffTheRecord(true);
        minihost::setScaleFactor(1.0);
        minihost::resetFeatureStates();
        minihost::setDirectory(ZDirTaggingLibrary, TaggerDoubleLibrary::directory());
        minihost::setDirectory(ZDirDictionaries, QStringLiteral("/opt/zphonetic/dict"));
        tagger.setReading(u'你', u"nǐ");
        tagger.setReading(u'好', u"hǎo");
        tagger.setReading(u'都', u"dōu dū");
        tagger.setReading(u'得', u"dé de děi");
        deck = minihost::Deck::create(1);
        minihost::setActiveView(deck->view());
        model()->initModel(nullptr);
        minihost::clearMessagesShown();
        minihost::clearUrlsOpened();
    }

    void TearDown() override {
        if (ZPhoneticSymbolWebWindow* open = model()->dialog) {
            open->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        EXPECT_EQ(model()->dialog, nullptr);
        model()->releaseModel();
        minihost::setActiveView(nullptr);
        minihost::resetDirectories();
        minihost::setWebRendering(true);
    }

    // A text box with `text` on the slide, its whole text selected.
    int selectBox(const QString& text) {
        const int id = deck->addTextBox(1, text, QRectF(100, 100, 300, 50));
        EXPECT_TRUE(deck->selectText(id, 0, text.size()));
        return id;
    }

    // The window of the open dialog; fails the test when none is open.
    ZPhoneticSymbolWebWindow* openDialog() {
        model()->openPhoneticDialog();
        EXPECT_NE(model()->dialog, nullptr);
        return model()->dialog;
    }

    QVariantMap call(const char* method, const QString& arguments) {
        return minihost::callBridge(model()->dialog, QString::fromLatin1(method), arguments);
    }

    TaggerDoubleLibrary tagger;
    std::unique_ptr<minihost::Deck> deck;
};
