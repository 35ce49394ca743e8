// SPDX-License-Identifier: MIT
// The whole round trip a person makes in the studio, headless, with the add-on's real dialog in
// the web engine: select text on a slide, click the ribbon's command, answer the page with clicks
// and keys, see the slide change, undo, redo, save. Screenshots of each stage go to the build
// tree's screenshots/ folder.
#include <QAction>
#include <QListWidget>
#include <QRegularExpression>
#include <QTabBar>

#include "decktestutil.h"
#include "minihost/nvolite/webhost.h"
#include "nvolite/zxcommonwebwidget.h"
#include "slidethumbnails.h"
#include "studiofixture.h"

namespace {

const int kTimeout = 60000;

QString u(const char* text) {
    return QString::fromUtf8(text);
}

class StudioDialog : public StudioTest {
protected:
    void SetUp() override {
        StudioTest::SetUp();
        minihost::setWebRendering(true);
        minihost::setWebProfilesOffTheRecord(true);
    }

    // The add-on's dialog over the window, once it is there.
    nvolite::ZxCommonWebWidget* waitForDialog() {
        for (int waited = 0; waited < kTimeout; waited += 50) {
            for (auto* widget : window->findChildren<nvolite::ZxCommonWebWidget*>())
                if (widget->isVisible()) return widget;
            QTest::qWait(50);
        }
        return nullptr;
    }

    bool waitForDialogClosed() {
        for (int waited = 0; waited < kTimeout; waited += 50) {
            if (window->findChildren<nvolite::ZxCommonWebWidget*>().isEmpty()) return true;
            QTest::qWait(50);
        }
        return false;
    }

    // The centre of the page element `selector`, in the web view's pixels (scrolled into view).
    QPoint elementCentre(nvolite::ZxCommonWebWidget* dialog, const QString& selector) {
        bool ok = false;
        const QVariant rect = minihost::runPageScript(
            dialog,
            QStringLiteral("(function(){var e=document.querySelector('%1');"
                           "e.scrollIntoView({block:'center'});var r=e.getBoundingClientRect();"
                           "return [r.left+r.width/2, r.top+r.height/2];})()")
                .arg(selector),
            kTimeout, &ok);
        const QVariantList centre = rect.toList();
        if (!ok || centre.size() != 2) return QPoint(-1, -1);
        return QPoint(int(centre.at(0).toDouble()), int(centre.at(1).toDouble()));
    }

    // Clicks the page element `selector` with the mouse, as a person does.
    void clickInPage(nvolite::ZxCommonWebWidget* dialog, const QString& selector) {
        const QPoint at = elementCentre(dialog, selector);
        ASSERT_GE(at.x(), 0) << selector.toStdString();
        QWidget* input = minihost::webWidgetView(dialog)->focusProxy();
        ASSERT_NE(input, nullptr);
        QTest::mouseMove(input, at);
        QTest::mousePress(input, Qt::LeftButton, {}, at);
        QTest::mouseRelease(input, Qt::LeftButton, {}, at, 30);
        QTest::qWait(100);
    }

    QVariant pageValue(nvolite::ZxCommonWebWidget* dialog, const QString& script) {
        bool ok = false;
        const QVariant value = minihost::runPageScript(dialog, script, kTimeout, &ok);
        EXPECT_TRUE(ok) << script.toStdString();
        return value;
    }
};

TEST_F(StudioDialog, ThePinyinDialogsRoundTripFromTheRibbon) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    screenshot(QStringLiteral("studio-deck.png"));
    QTabBar* tabs = qobject_cast<QTabBar*>(minihost::ribbonTabBar(window.get()));
    ASSERT_NE(tabs, nullptr);
    // Slide 2, from its thumbnail.
    QListWidget* thumbnails = window->thumbnails()->list();
    QTest::mouseClick(thumbnails->viewport(), Qt::LeftButton, {},
                      thumbnails->visualItemRect(thumbnails->item(1)).center());
    ASSERT_EQ(window->deck()->currentSlide(), 2);

    // The four characters 银行行长 of the text box: a click selects the shape, a drag in it
    // selects the text.
    EXPECT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_Home"));
    clickOnSlide(insideShape(3));
    EXPECT_EQ(window->deck()->selectedShapes(), QList<int>{3});
    dragOnSlide(textPoint(3, 0), textPoint(3, 4));
    ASSERT_TRUE(window->deck()->hasTextSelection());
    EXPECT_EQ(window->slideView()->textAnchor(), 0);
    EXPECT_EQ(window->slideView()->textCursor(), 4);
    ASSERT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_TextTool"));
    EXPECT_EQ(tabs->currentIndex(), 2);
    screenshot(QStringLiteral("studio-text-selected.png"));

    minihost::clearUsageEvents();
    QToolButton* button =
        ribbonButton(QStringLiteral("CT_TextTool"), window->phoneticSymbolAction());
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    nvolite::ZxCommonWebWidget* dialog = waitForDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isWindow());
    EXPECT_EQ(dialog->parentWidget(), window.get());
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    ASSERT_TRUE(minihost::waitForPageAttribute(dialog, QStringLiteral("data-rendered"),
                                               QStringLiteral("pinyin"), kTimeout));
    ASSERT_EQ(minihost::usageEvents().size(), 1);
    EXPECT_EQ(minihost::usageEvents().at(0).name, QStringLiteral("nvo_phoneticsymbol_texttool"));
    EXPECT_EQ(minihost::usageEvents().at(0).parameters.value(QStringLiteral("action")),
              QStringLiteral("symbol"));
    // The page shows the four characters, one select for each polyphone.
    EXPECT_EQ(pageValue(dialog,
                        QStringLiteral("document.querySelectorAll('select.reading-choice').length"))
                  .toInt(),
              3);
    EXPECT_EQ(
        pageValue(dialog, QStringLiteral("document.querySelectorAll('.cell').length")).toInt(), 4);
    const QString shown = pageValue(dialog, QStringLiteral("document.body.innerText")).toString();
    EXPECT_TRUE(
        QRegularExpression(u("银.*行.*行.*长"), QRegularExpression::DotMatchesEverythingOption)
            .match(shown)
            .hasMatch())
        << shown.toStdString();
    QTest::qWait(300);  // the page fits the window to itself after rendering
    const QPoint offCentre = dialog->geometry().center() - window->geometry().center();
    EXPECT_LE(offCentre.manhattanLength(), 2) << "the dialog is not over the window's centre";
    screenshot(QStringLiteral("studio-dialog.png"), dialog);

    // The first 行 read as xínɡ: its reading list focused (a click would open the list as a
    // popup menu), then one key up, typed.
    QWidget* input = minihost::webWidgetView(dialog)->focusProxy();
    pageValue(dialog,
              QStringLiteral(
                  "document.querySelector('select.reading-choice[data-index=\"1\"]').focus()"));
    QTest::keyClick(input, Qt::Key_Up);
    QTest::qWait(100);
    EXPECT_EQ(
        pageValue(dialog,
                  QStringLiteral(
                      "document.querySelector('select.reading-choice[data-index=\"1\"]').value"))
            .toString(),
        u("xínɡ"));
    clickInPage(dialog, QStringLiteral(".layouts input[value=\"2\"]"));
    clickInPage(dialog, QStringLiteral(".brackets input[value=\"1\"]"));
    EXPECT_TRUE(
        pageValue(dialog,
                  QStringLiteral("document.querySelector('.layouts input[value=\"2\"]').checked"))
            .toBool());
    EXPECT_TRUE(
        pageValue(dialog,
                  QStringLiteral("document.querySelector('.brackets input[value=\"1\"]').checked"))
            .toBool());
    clickInPage(dialog, QStringLiteral("button.confirm"));
    ASSERT_TRUE(waitForDialogClosed());

    const QString original = u("银行行长还是觉得音乐很快乐。\r他重新说了一遍：这很重要。");
    const QString expected = u(
        "银（yín）行（xínɡ）行（hánɡ）长（zhǎnɡ）还是觉得音乐很快乐。\r他重新说了一遍：这很重要。");
    EXPECT_EQ(window->deck()->text(2, 3), expected);
    EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo set phonetic symbol"));
    EXPECT_TRUE(window->isWindowModified());
    screenshot(QStringLiteral("studio-after-dialog.png"));

    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(window->deck()->text(2, 3), original);
    QTest::keyClick(window.get(), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(window->deck()->text(2, 3), expected);

    const QByteArray before = decktest::readFile(lessonPath());
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    QString error;
    auto reread = minihost::Deck::loadFile(lessonPath(), &error);
    ASSERT_TRUE(reread) << error.toStdString();
    EXPECT_EQ(reread->text(2, 3), expected);
    const QByteArray after = decktest::readFile(lessonPath());
    for (const decktest::ZipEntry& entry : decktest::zipEntries(before)) {
        if (entry.name == QStringLiteral("ppt/slides/slide2.xml")) continue;
        EXPECT_EQ(decktest::zipPart(after, entry.name), entry.data) << entry.name.toStdString();
    }
}

TEST_F(StudioDialog, FromHomeWithAShapeSelectedTheGuideOpensAndHomeIsCounted) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    clickOnSlide(insideShape(2));  // the title, selected as a shape: no text selected
    ASSERT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_Home"));
    minihost::clearUsageEvents();
    QTest::mouseClick(ribbonButton(QStringLiteral("CT_Home"), window->phoneticSymbolAction()),
                      Qt::LeftButton);
    nvolite::ZxCommonWebWidget* dialog = waitForDialog();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(minihost::waitForPageAttribute(dialog, QStringLiteral("data-rendered"),
                                               QStringLiteral("guide"), kTimeout));
    EXPECT_TRUE(minihost::webWidgetUrl(dialog).endsWith(QStringLiteral("#/guide?from=home")))
        << minihost::webWidgetUrl(dialog).toStdString();
    ASSERT_EQ(minihost::usageEvents().size(), 1);
    EXPECT_EQ(minihost::usageEvents().at(0).name, QStringLiteral("nvo_phoneticsymbol_home"));
    EXPECT_EQ(minihost::usageEvents().at(0).parameters.value(QStringLiteral("action")),
              QStringLiteral("symbol"));
    screenshot(QStringLiteral("studio-guide.png"), dialog);
    // Closed without confirming: nothing written, no step.
    dialog->close();
    ASSERT_TRUE(waitForDialogClosed());
    EXPECT_EQ(window->deck()->text(1, 2), u("静夜思"));
    EXPECT_FALSE(window->undoAction()->isEnabled());
}

}  // namespace
