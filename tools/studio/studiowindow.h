// SPDX-License-Identifier: MIT
// The studio's main window: the host's main window (ZMainWindow, the one the add-on finds as
// ZxApplication::currentMainWindow()), with a ribbon of the tabs Home, Insert and Text Tool, a
// menu bar, the slide thumbnails and the current slide of one open deck. The add-on is loaded
// as a host loads it, once per window, and its two commands run on the deck the window shows.
//
// The deck is the object model's, and the window watches it rather than being told: what the
// user selects is the view's selection, which the add-on reads; every change (the add-on's
// commands, the user's edits on the slide) is an undo step on the deck's undo stack, whose undo
// and redo actions are the Edit menu's and whose clean state is the title's modified mark; the
// slide view and the thumbnails redraw the slides the deck names as changed. Errors the user must
// see (a deck that cannot be read or written, a missing add-on) are host message boxes, and the
// window keeps what it had open.
#pragma once

#include <QPointer>
#include <QString>
#include <memory>

#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/hostreadingservice.h"
#include "minihost/slxcore/placement.h"
#include "nvo/ribbon.h"

class MyReadingsWindow;
class QAction;
class QLabel;
class QMenu;
class QUndoGroup;
class SlideThumbnails;
class SlideView;
class ZAppObj;
namespace minihost {
class Deck;
}

class StudioWindow : public ZMainWindow {
    Q_OBJECT
public:
    // The two commands of the add-on, as the ribbon triggers them.
    static const char* const kPhoneticSymbol;  // "PhoneticSymbol"
    static const char* const kPhoneticOneKey;  // "PhoneticOneKey"

    // Makes itself the host's current main window and loads the add-on (a failure is reported
    // when a command is used).
    explicit StudioWindow(QWidget* parent = nullptr);
    ~StudioWindow() override;

    // Opens the deck at `path` in place of the open one (asking first when that one has unsaved
    // changes). False, with a message box naming the file and what is wrong, when it cannot be
    // read; then the open deck stays.
    bool openFile(const QString& path);
    // Writes the deck to its own file (the first time: asks where). False after a message box
    // when it cannot be written.
    bool save();
    // Writes the deck to `path` and makes that the deck's file.
    bool saveTo(const QString& path);

    // The open deck (null before the first file), its file, and whether it has changes the file
    // does not have (its undo stack is not clean).
    minihost::Deck* deck() const { return m_deck.get(); }
    QString filePath() const { return m_path; }
    bool hasUnsavedChanges() const;

    // Runs an add-on command ("PhoneticSymbol", "PhoneticOneKey") on the open deck, as its ribbon
    // buttons do. False (after a message box) when the add-on is not loaded. "PhoneticOneKey"
    // then places the boxes it made by oneKeyPlacement(), inside the slide, in the same undo step.
    bool runCommand(const QString& action);
    // "Pinyin over Text": runs "PhoneticOneKey" and puts each syllable of the boxes it made over
    // its character (minihost::Placement::Over), in one undo step "Pinyin over Text". False (after
    // a message box) when the add-on is not loaded.
    bool runOneKeyOver();

    // Where "Pinyin at Once" puts its boxes: below their texts unless the user chose otherwise in
    // the Pinyin menu (remembered in the host settings, for the next window and the next run).
    minihost::Placement oneKeyPlacement() const { return m_placement; }

    // The widgets and actions, for the program's tests.
    SlideView* slideView() const { return m_slideView; }
    SlideThumbnails* thumbnails() const { return m_thumbnails; }
    QAction* phoneticSymbolAction() const { return m_symbolAction; }
    QAction* phoneticOneKeyAction() const { return m_oneKeyAction; }
    QAction* pinyinOverTextAction() const { return m_oneKeyOverAction; }
    QAction* textBoxAction() const { return m_textBoxAction; }
    // "My Readings..." (Pinyin menu): shows the window of the user's own readings.
    QAction* myReadingsAction() const { return m_myReadingsAction; }
    QAction* undoAction() const { return m_undoAction; }
    QAction* redoAction() const { return m_redoAction; }
    QMenu* recentFilesMenu() const { return m_recentMenu; }
    // The Pinyin menu's choice of `placement` for "Pinyin at Once" (null: not offered).
    QAction* placementAction(minihost::Placement placement) const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    // Windows of this window's own (the add-on's dialog) are watched from when they are added.
    bool event(QEvent* event) override;
    // Such a window is centred over this one when shown and resized; when it goes, this window
    // takes the keyboard back (so Ctrl+Z undoes at once).
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void chooseFileToOpen();
    void chooseFileToSaveAs();
    void insertTextBox();
    void textEditingChanged(bool active);

private:
    void buildActions();
    void buildMenus();
    void buildRibbon();
    void rebuildRecentMenu();
    // Asks whether to save unsaved changes: true when the caller may go on (saved or discarded).
    bool maySetDeckAside();
    void showDeck(std::unique_ptr<minihost::Deck> deck, const QString& path);
    void showTitle();
    void showSlidePosition();
    void showError(const QString& text);
    // Whether the add-on's commands can run (else a message box says why); then the add-on works
    // on this window's deck.
    bool addonReady();
    // "PhoneticOneKey" and the placement of the boxes it made, as one undo step `stepName`.
    void runOneKey(ZAppObj* source, minihost::Placement placement, const QString& stepName);
    void choosePlacement(minihost::Placement placement);

    std::unique_ptr<minihost::Deck> m_deck;
    minihost::AddonSession m_addon;  // after the deck: its entry object is released first
    QString m_path;
    minihost::Placement m_placement;
    QUndoGroup* m_history;  // the open deck's undo stack, behind the undo and redo actions
    // The engine's readings, for readings over a text that follow its edits (the dictionaries
    // are opened when first asked).
    minihost::ReadingFunction m_engineReadings;

    SlideView* m_slideView = nullptr;
    SlideThumbnails* m_thumbnails = nullptr;
    QLabel* m_slideLabel = nullptr;
    QAction* m_openAction = nullptr;
    QAction* m_saveAction = nullptr;
    QAction* m_saveAsAction = nullptr;
    QAction* m_quitAction = nullptr;
    QAction* m_undoAction = nullptr;
    QAction* m_redoAction = nullptr;
    QAction* m_symbolAction = nullptr;
    QAction* m_oneKeyAction = nullptr;
    QAction* m_oneKeyOverAction = nullptr;
    QAction* m_textBoxAction = nullptr;
    QAction* m_myReadingsAction = nullptr;
    QPointer<MyReadingsWindow> m_myReadings;
    QAction* m_nextSlideAction = nullptr;
    QAction* m_previousSlideAction = nullptr;
    QAction* m_aboutAction = nullptr;
    QList<QAction*> m_placementActions;  // in the order of the Pinyin menu
    QMenu* m_recentMenu = nullptr;
};
