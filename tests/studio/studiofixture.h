// SPDX-License-Identifier: MIT
// The studio's real window for a test: made, shown (headless) and the host's current main
// window, over a copy of the example deck in a temporary folder. Message boxes are real when a
// test asks for them (showMessageBoxes) and are then answered as a person clicks them.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <memory>

#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hoststore.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxrender/slidescene.h"
#include "slidethumbnails.h"
#include "slideview.h"
#include "studiowindow.h"

class StudioTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(QFile::copy(QStringLiteral(ZPHONETIC_EXAMPLE_DECK), lessonPath()));
        QFile::setPermissions(lessonPath(), QFile::ReadOwner | QFile::WriteOwner);
        minihost::setShowMessageBoxes(false);
        minihost::clearMessagesShown();
        minihost::clearUsageEvents();
        // Where "Pinyin at Once" puts its boxes: as a new user finds it.
        minihost::setHostSetting(QStringLiteral("studio/oneKeyPlacement"), QVariant());
        window = std::make_unique<StudioWindow>();
        window->resize(1200, 800);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    void TearDown() override {
        minihost::setShowMessageBoxes(false);
        minihost::setUnshownMessageBoxAnswer(7);  // "No": do not save what a test changed
        window.reset();
        minihost::setUnshownMessageBoxAnswer(0);
    }

    QString lessonPath() const { return dir.filePath(QStringLiteral("lesson.pptx")); }

    // The ribbon button of `action` on tab `tabId`.
    QToolButton* ribbonButton(const QString& tabId, QAction* action) {
        QWidget* panel = minihost::ribbonTabPanel(window.get(), tabId);
        if (!panel) return nullptr;
        for (QToolButton* button : panel->findChildren<QToolButton*>())
            if (button->defaultAction() == action) return button;
        return nullptr;
    }

    // On the slide view, in its pixels: where text position `pos` of shape `id` is drawn (the
    // middle of its line), and a point inside the shape's box.
    QPoint textPoint(int id, int pos) const {
        const minihost::SlideScene scene(*window->deck(), window->deck()->currentSlide());
        return window->slideView()->toWidget(scene.text(id)->cursorLine(pos).center()).toPoint();
    }
    QPoint insideShape(int id, double fx = 0.5, double fy = 0.5) const {
        const QRectF box =
            minihost::SlideScene(*window->deck(), window->deck()->currentSlide()).boxOf(id);
        return window->slideView()
            ->toWidget(QPointF(box.left() + box.width() * fx, box.top() + box.height() * fy))
            .toPoint();
    }
    void clickOnSlide(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(window->slideView(), Qt::LeftButton, modifiers, at);
    }
    // A drag with the left button held, through a point between, as a hand does.
    void dragOnSlide(const QPoint& from, const QPoint& to) {
        SlideView* view = window->slideView();
        QTest::mousePress(view, Qt::LeftButton, Qt::NoModifier, from);
        for (const QPoint& at : {(from + to) / 2, to}) {
            // QTest::mouseMove moves without the button held, which is no drag.
            QMouseEvent move(QEvent::MouseMove, at, view->mapToGlobal(at), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(view, &move);
        }
        QTest::mouseRelease(view, Qt::LeftButton, Qt::NoModifier, to);
    }

    // Ctrl+`key` on the window, as a person presses it.
    void ctrl(Qt::Key key) { QTest::keyClick(window.get(), key, Qt::ControlModifier); }
    // Opens a deck of one slide holding `texts` (each at its box) and selects them all with a
    // click and Shift+clicks. Their ids.
    QList<int> openTexts(const QList<QPair<QString, QRectF>>& texts) {
        auto made = minihost::Deck::create(1);
        QList<int> ids;
        for (const auto& [text, box] : texts) ids << made->addTextBox(1, text, box);
        const QString path = dir.filePath(QStringLiteral("texts.pptx"));
        QString error;
        EXPECT_TRUE(made->save(path, &error)) << error.toStdString();
        EXPECT_TRUE(window->openFile(path));
        for (int i = 0; i < ids.size(); ++i)
            clickOnSlide(insideShape(ids.at(i)), i ? Qt::ShiftModifier : Qt::NoModifier);
        EXPECT_EQ(window->deck()->selectedShapes(), ids);
        return ids;
    }
    // Clicks "Pinyin at Once" on the Home tab: the boxes it made, by id.
    QMap<int, QRectF> pinyinAtOnce(const QList<int>& texts) {
        QTest::mouseClick(ribbonButton(QStringLiteral("CT_Home"), window->phoneticOneKeyAction()),
                          Qt::LeftButton);
        QMap<int, QRectF> boxes;
        for (const minihost::ShapeInfo& shape : window->deck()->shapes(1))
            if (!texts.contains(shape.id)) boxes.insert(shape.id, shape.box);
        return boxes;
    }

    // The window as a person sees it, with `dialog` (a window of its own) over it, saved to the
    // build tree's screenshots folder.
    void screenshot(const QString& name, QWidget* dialog = nullptr) {
        const QString folder = QStringLiteral(ZPHONETIC_SCREENSHOT_DIR);
        QDir().mkpath(folder);
        // The thumbnails are drawn from the event loop, a few at a time, as a person sees them.
        for (int turns = 0; window->thumbnails()->pending() > 0 && turns < 100; ++turns)
            QCoreApplication::processEvents();
        QPixmap picture = window->grab();
        if (dialog) {
            QPainter painter(&picture);
            painter.drawPixmap(window->mapFromGlobal(dialog->mapToGlobal(QPoint())),
                               dialog->grab());
        }
        EXPECT_TRUE(picture.save(folder + QLatin1Char('/') + name));
    }

    QTemporaryDir dir;
    std::unique_ptr<StudioWindow> window;
};

// Answers the next real message box with `button` as a person clicks it, and keeps its text.
// Shows boxes for as long as it lives.
class MessageBoxAnswer : public QObject {
public:
    explicit MessageBoxAnswer(QMessageBox::StandardButton button) : m_button(button) {
        minihost::setShowMessageBoxes(true);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || !box->button(m_button)) return;
            text = box->text();
            icon = box->icon();
            m_timer.stop();
            QTest::mouseClick(box->button(m_button), Qt::LeftButton);
        });
        m_timer.start(20);
    }
    ~MessageBoxAnswer() override { minihost::setShowMessageBoxes(false); }

    QString text;  // empty until a box was answered
    QMessageBox::Icon icon = QMessageBox::NoIcon;

private:
    QMessageBox::StandardButton m_button;
    QTimer m_timer;
};
