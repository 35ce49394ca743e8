// SPDX-License-Identifier: MIT
#include "studiowindow.h"

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QSplitter>
#include <QStatusBar>
#include <QUndoGroup>

#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hoststore.h"
#include "minihost/nvo/taggerreadings.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/hosttransaction.h"
#include "myreadingswindow.h"
#include "nvo/transaction.h"
#include "nvo/zapplication.h"
#include "readingsfollower.h"
#include "recentfiles.h"
#include "slidethumbnails.h"
#include "slideview.h"
#include "studioicons.h"

namespace {

const QString kHome = QStringLiteral("CT_Home");
const QString kInsert = QStringLiteral("CT_Insert");
const QString kTextTool = QStringLiteral("CT_TextTool");

// The host setting that keeps where "Pinyin at Once" puts its boxes, by placement name.
const QString kPlacementKey = QStringLiteral("studio/oneKeyPlacement");

// What the Pinyin menu offers for "Pinyin at Once", in its order; the first is the default.
struct PlacementChoice {
    minihost::Placement placement;
    const char* text;
};
const PlacementChoice kPlacementChoices[] = {
    {minihost::Placement::Below, QT_TRANSLATE_NOOP("StudioWindow", "Below the Text")},
    {minihost::Placement::Above, QT_TRANSLATE_NOOP("StudioWindow", "Above the Text")},
    {minihost::Placement::Over, QT_TRANSLATE_NOOP("StudioWindow", "Over the Characters")},
    {minihost::Placement::Addon, QT_TRANSLATE_NOOP("StudioWindow", "Where the Add-on Puts Them")},
};

// The remembered placement, when it is one the menu offers; else the default.
minihost::Placement rememberedPlacement() {
    minihost::Placement placement = kPlacementChoices[0].placement;
    if (minihost::parsePlacement(minihost::hostSetting(kPlacementKey).toString(), &placement))
        for (const PlacementChoice& choice : kPlacementChoices)
            if (choice.placement == placement) return placement;
    return kPlacementChoices[0].placement;
}

bool isDeckFile(const QUrl& url) {
    return url.isLocalFile() &&
           url.toLocalFile().endsWith(QLatin1String(".pptx"), Qt::CaseInsensitive);
}

}  // namespace

const char* const StudioWindow::kPhoneticSymbol = "PhoneticSymbol";
const char* const StudioWindow::kPhoneticOneKey = "PhoneticOneKey";

StudioWindow::StudioWindow(QWidget* parent)
    : ZMainWindow(parent),
      m_placement(rememberedPlacement()),
      m_history(new QUndoGroup(this)),
      m_engineReadings(minihost::engineReadingFunction()) {
    setObjectName(QStringLiteral("StudioWindow"));
    setWindowIcon(studioicons::application());
    setAcceptDrops(true);
    // The add-on takes the current main window as its dialog's parent when it is loaded.
    minihost::setCurrentMainWindow(this);

    m_thumbnails = new SlideThumbnails;
    m_thumbnails->setMinimumWidth(180);
    m_slideView = new SlideView;
    auto* splitter = new QSplitter;
    splitter->addWidget(m_thumbnails);
    splitter->addWidget(m_slideView);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);
    m_slideLabel = new QLabel;
    statusBar()->addWidget(m_slideLabel);

    buildActions();
    buildRibbon();
    buildMenus();

    connect(m_slideView, &SlideView::textEditingChanged, this, &StudioWindow::textEditingChanged);
    connect(m_history, &QUndoGroup::cleanChanged, this,
            [this](bool clean) { setWindowModified(m_deck && !clean); });

    m_addon.open();
    showTitle();
    showSlidePosition();
    resize(1200, 800);
}

StudioWindow::~StudioWindow() {
    // An open dialog is closed the way the user closes it, so the add-on forgets it before the
    // entry object (and with it the add-on's model) is released.
    for (QWidget* child : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (child->isWindow()) child->close();
    m_slideView->setDeck(nullptr);
    m_thumbnails->setDeck(nullptr);
    if (m_deck && minihost::activeView() == m_deck->view()) minihost::setActiveView(nullptr);
}

void StudioWindow::buildActions() {
    m_openAction = new QAction(tr("&Open..."), this);
    m_openAction->setShortcut(QKeySequence::Open);
    connect(m_openAction, &QAction::triggered, this, &StudioWindow::chooseFileToOpen);
    m_saveAction = new QAction(tr("&Save"), this);
    m_saveAction->setShortcut(QKeySequence::Save);
    connect(m_saveAction, &QAction::triggered, this, &StudioWindow::save);
    m_saveAsAction = new QAction(tr("Save &As..."), this);
    m_saveAsAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    connect(m_saveAsAction, &QAction::triggered, this, &StudioWindow::chooseFileToSaveAs);
    m_quitAction = new QAction(tr("&Quit"), this);
    m_quitAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(m_quitAction, &QAction::triggered, this, &QWidget::close);

    // The stack's own actions: enabled, and named after the step, as the stack says.
    m_undoAction = m_history->createUndoAction(this, tr("&Undo"));
    m_undoAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    m_redoAction = m_history->createRedoAction(this, tr("&Redo"));
    m_redoAction->setShortcuts(
        {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});

    m_symbolAction = new QAction(studioicons::phoneticSymbol(), tr("Pinyin Readings"), this);
    m_symbolAction->setObjectName(QString::fromLatin1(kPhoneticSymbol));
    m_symbolAction->setToolTip(tr("Check and choose the pinyin of the selected text"));
    connect(m_symbolAction, &QAction::triggered, this,
            [this] { runCommand(QString::fromLatin1(kPhoneticSymbol)); });
    m_oneKeyAction = new QAction(studioicons::phoneticOneKey(), tr("Pinyin at Once"), this);
    m_oneKeyAction->setObjectName(QString::fromLatin1(kPhoneticOneKey));
    m_oneKeyAction->setToolTip(tr("Write the pinyin of each selected text into a new text box"));
    connect(m_oneKeyAction, &QAction::triggered, this,
            [this] { runCommand(QString::fromLatin1(kPhoneticOneKey)); });

    m_oneKeyOverAction = new QAction(studioicons::phoneticOneKey(), tr("Pinyin over Text"), this);
    m_oneKeyOverAction->setObjectName(QStringLiteral("PinyinOverText"));
    m_oneKeyOverAction->setToolTip(
        tr("Write the pinyin of each selected text over its characters, as school books print it"));
    connect(m_oneKeyOverAction, &QAction::triggered, this, &StudioWindow::runOneKeyOver);

    m_myReadingsAction = new QAction(tr("My &Readings..."), this);
    m_myReadingsAction->setToolTip(
        tr("Words you give readings of your own, and the tones of 一 "
           "and 不"));
    connect(m_myReadingsAction, &QAction::triggered, this, [this] {
        if (!m_myReadings) m_myReadings = new MyReadingsWindow(this);
        m_myReadings->show();
        m_myReadings->raise();
        m_myReadings->activateWindow();
    });

    m_textBoxAction = new QAction(studioicons::textBox(), tr("Text Box"), this);
    m_textBoxAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_T));
    m_textBoxAction->setToolTip(tr("Add a text box to the slide and type in it"));
    connect(m_textBoxAction, &QAction::triggered, this, &StudioWindow::insertTextBox);

    m_nextSlideAction = new QAction(tr("&Next Slide"), this);
    m_nextSlideAction->setShortcut(QKeySequence(Qt::Key_PageDown));
    m_previousSlideAction = new QAction(tr("&Previous Slide"), this);
    m_previousSlideAction->setShortcut(QKeySequence(Qt::Key_PageUp));
    for (QAction* action : {m_nextSlideAction, m_previousSlideAction}) {
        const int step = action == m_nextSlideAction ? 1 : -1;
        connect(action, &QAction::triggered, this, [this, step] {
            if (m_deck) m_deck->setCurrentSlide(m_deck->currentSlide() + step);
        });
    }
    for (const PlacementChoice& choice : kPlacementChoices) {
        QAction* action = new QAction(tr(choice.text), this);
        action->setCheckable(true);
        action->setChecked(choice.placement == m_placement);
        const minihost::Placement placement = choice.placement;
        connect(action, &QAction::triggered, this,
                [this, placement] { choosePlacement(placement); });
        m_placementActions << action;
    }
    m_aboutAction = new QAction(tr("&About zphonetic-studio"), this);
    connect(m_aboutAction, &QAction::triggered, this, [this] {
        minihost::hostApplication()->messageBox(
            tr("zphonetic-studio %1\nWrites the pinyin of the Chinese text on your slides.")
                .arg(QApplication::applicationVersion()),
            ZxApplication::IconInformation | ZxApplication::ButtonsOk);
    });
}

void StudioWindow::buildMenus() {
    // The ribbon is the window's menu widget, so the menu bar goes above the tabs, into the
    // ribbon's header (QMainWindow::menuBar() would replace the ribbon).
    auto* menus = new QMenuBar;
    static_cast<QBoxLayout*>(headerBar()->layout())->insertWidget(0, menus);
    QMenu* file = menus->addMenu(tr("&File"));
    file->addAction(m_openAction);
    m_recentMenu = file->addMenu(tr("Open &Recent"));
    file->addAction(m_saveAction);
    file->addAction(m_saveAsAction);
    file->addSeparator();
    file->addAction(m_quitAction);
    QMenu* edit = menus->addMenu(tr("&Edit"));
    edit->addAction(m_undoAction);
    edit->addAction(m_redoAction);
    QMenu* view = menus->addMenu(tr("&View"));
    view->addAction(m_nextSlideAction);
    view->addAction(m_previousSlideAction);
    QMenu* insert = menus->addMenu(tr("&Insert"));
    insert->addAction(m_textBoxAction);
    QMenu* pinyin = menus->addMenu(tr("&Pinyin"));
    pinyin->addAction(m_symbolAction);
    pinyin->addAction(m_oneKeyAction);
    pinyin->addAction(m_oneKeyOverAction);
    QMenu* placement = pinyin->addMenu(tr("Pinyin at Once &Puts Its Boxes"));
    placement->addActions(m_placementActions);
    pinyin->addSeparator();
    pinyin->addAction(m_myReadingsAction);
    QMenu* help = menus->addMenu(tr("&Help"));
    help->addAction(m_aboutAction);
    rebuildRecentMenu();
}

void StudioWindow::buildRibbon() {
    minihost::buildRibbon(this, {kHome, kInsert, kTextTool});
    minihost::setRibbonTabTitle(this, kHome, tr("Home"));
    minihost::setRibbonTabTitle(this, kInsert, tr("Insert"));
    minihost::setRibbonTabTitle(this, kTextTool, tr("Text Tool"));
    for (const QString& tab : {kHome, kTextTool}) {
        minihost::addRibbonAction(this, tab, m_symbolAction);
        minihost::addRibbonAction(this, tab, m_oneKeyAction);
        minihost::addRibbonAction(this, tab, m_oneKeyOverAction);
    }
    minihost::addRibbonAction(this, kInsert, m_textBoxAction);
    minihost::setCurrentTabById(this, kHome);
}

void StudioWindow::rebuildRecentMenu() {
    m_recentMenu->clear();
    const QStringList paths = recentfiles::list();
    for (int i = 0; i < paths.size(); ++i) {
        const QString path = paths.at(i);
        QAction* action = m_recentMenu->addAction(
            QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(path).fileName()));
        action->setToolTip(path);
        action->setData(path);
        connect(action, &QAction::triggered, this, [this, path] { openFile(path); });
    }
    m_recentMenu->setEnabled(!paths.isEmpty());
}

bool StudioWindow::hasUnsavedChanges() const {
    return m_deck && !m_deck->undoStack()->isClean();
}

QAction* StudioWindow::placementAction(minihost::Placement placement) const {
    for (int i = 0; i < m_placementActions.size(); ++i)
        if (kPlacementChoices[i].placement == placement) return m_placementActions.at(i);
    return nullptr;
}

void StudioWindow::choosePlacement(minihost::Placement placement) {
    m_placement = placement;
    for (int i = 0; i < m_placementActions.size(); ++i)
        m_placementActions.at(i)->setChecked(kPlacementChoices[i].placement == placement);
    minihost::setHostSetting(kPlacementKey, minihost::placementName(placement));
}

bool StudioWindow::maySetDeckAside() {
    if (!hasUnsavedChanges()) return true;
    const QString name = m_path.isEmpty() ? m_deck->name() : QFileInfo(m_path).fileName();
    const int answer = minihost::hostApplication()->messageBox(
        tr("%1 has changes that are not saved. Save them first?").arg(name),
        ZxApplication::IconQuestion | ZxApplication::ButtonsYesNoCancel);
    if (answer == ZxApplication::AnswerYes) return save();
    return answer == ZxApplication::AnswerNo;
}

bool StudioWindow::openFile(const QString& path) {
    if (!maySetDeckAside()) return false;
    QString error;
    std::unique_ptr<minihost::Deck> deck = minihost::Deck::loadFile(path, &error);
    if (!deck) {
        showError(tr("The deck could not be opened.\n\n%1").arg(error));
        return false;
    }
    showDeck(std::move(deck), path);
    recentfiles::add(path);
    rebuildRecentMenu();
    return true;
}

void StudioWindow::showDeck(std::unique_ptr<minihost::Deck> deck, const QString& path) {
    m_slideView->setDeck(deck.get());
    m_thumbnails->setDeck(deck.get());
    minihost::setActiveView(deck->view());
    m_history->addStack(deck->undoStack());
    m_history->setActiveStack(deck->undoStack());
    // Readings over a text follow its edits; the follower goes with the deck.
    new ReadingsFollower(deck.get(), m_engineReadings);
    connect(deck.get(), &minihost::Deck::currentSlideChanged, this,
            &StudioWindow::showSlidePosition);
    // The previous deck goes only once nothing shows it any more.
    m_deck = std::move(deck);
    m_path = QFileInfo(path).absoluteFilePath();
    textEditingChanged(false);
    showTitle();
    showSlidePosition();
}

bool StudioWindow::save() {
    if (!m_deck) return false;
    if (m_path.isEmpty()) {
        chooseFileToSaveAs();
        return !hasUnsavedChanges();
    }
    return saveTo(m_path);
}

bool StudioWindow::saveTo(const QString& path) {
    if (!m_deck) return false;
    QString error;
    if (!m_deck->save(path, &error)) {
        showError(tr("The deck could not be saved.\n\n%1").arg(error));
        return false;
    }
    m_path = QFileInfo(path).absoluteFilePath();
    recentfiles::add(m_path);
    rebuildRecentMenu();
    showTitle();
    return true;
}

void StudioWindow::chooseFileToOpen() {
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Open a Deck"), m_path.isEmpty() ? QString() : QFileInfo(m_path).path(),
        tr("Presentations (*.pptx)"));
    if (!path.isEmpty()) openFile(path);
}

void StudioWindow::chooseFileToSaveAs() {
    if (!m_deck) return;
    QString path = QFileDialog::getSaveFileName(this, tr("Save the Deck As"), m_path,
                                                tr("Presentations (*.pptx)"));
    if (path.isEmpty()) return;
    if (!path.endsWith(QLatin1String(".pptx"), Qt::CaseInsensitive)) path += QLatin1String(".pptx");
    saveTo(path);
}

bool StudioWindow::addonReady() {
    if (!m_addon.isOpen()) {
        showError(tr("The pinyin add-on could not be loaded, so its commands are not available."
                     "\n\n%1")
                      .arg(m_addon.errorString()));
        return false;
    }
    // Without the tagging library or its dictionaries the add-on could only open its guide or say
    // that nothing is selected: name what is missing instead.
    QString problem;
    const QString missing = minihost::missingReadingFile(&problem);
    if (!missing.isEmpty()) {
        showError(tr("%1: %2").arg(missing, problem));
        return false;
    }
    // The add-on works on the active view: the deck this window shows (or none).
    minihost::setActiveView(m_deck ? m_deck->view() : nullptr);
    return true;
}

bool StudioWindow::runCommand(const QString& action) {
    if (!addonReady()) return false;
    ZAppObj source(action);
    if (m_deck && action == QLatin1String(kPhoneticOneKey))
        runOneKey(&source, m_placement, tr("Pinyin at Once"));
    else
        m_addon.trigger(action, &source);
    return true;
}

bool StudioWindow::runOneKeyOver() {
    if (!addonReady()) return false;
    ZAppObj source(QString::fromLatin1(kPhoneticOneKey));
    if (m_deck)
        runOneKey(&source, minihost::Placement::Over, tr("Pinyin over Text"));
    else
        m_addon.trigger(QString::fromLatin1(kPhoneticOneKey), &source);
    return true;
}

void StudioWindow::runOneKey(ZAppObj* source, minihost::Placement placement,
                             const QString& stepName) {
    minihost::Deck& deck = *m_deck;
    const int slide = deck.currentSlide();
    // The texts the add-on reads, in the order it makes their boxes; a selected run alone.
    const QList<int> sources = minihost::readingSources(deck);
    const minihost::Deck::TextSelection run =
        deck.hasTextSelection() ? deck.textSelection() : minihost::Deck::TextSelection{};
    QList<int> before;
    for (const minihost::ShapeInfo& shape : deck.shapes(slide)) before << shape.id;
    // One undo step for the command and the placement: the add-on joins the host's step and
    // gives it its own name.
    const bool oneStep =
        minihost::openHostTransaction(minihost::hostApplication()->coreApplication(), stepName);
    m_addon.trigger(QString::fromLatin1(kPhoneticOneKey), source);
    QList<minihost::MadeBox> made;
    for (const minihost::ShapeInfo& shape : deck.shapes(slide))
        if (!before.contains(shape.id)) made.append({shape.id, 0});
    // Which box holds the readings of which text is clear when there is one box per text.
    if (made.size() == sources.size()) {
        for (int i = 0; i < made.size(); ++i) {
            made[i].source = sources.at(i);
            if (run.shapeId == made[i].source) {
                made[i].start = run.start;
                made[i].length = run.length;
            }
        }
    }
    const QString problem = minihost::placeReadingBoxes(deck, slide, made, placement,
                                                        minihost::OffSlide::MoveInside, tr("move"));
    // The add-on named the step for what it did; over the text, the step is what the person
    // asked for.
    if (placement == minihost::Placement::Over)
        ZFormatStaticTransGuard::instance()->setName(stepName);
    if (oneStep) minihost::commitHostTransaction();
    // The boxes stay where the add-on put them, and the person learns why.
    if (!problem.isEmpty() && placement == minihost::Placement::Over)
        showError(tr("The pinyin could not be placed over its text: %1").arg(problem));
}

void StudioWindow::insertTextBox() {
    if (!m_deck) return;
    // In the middle of the slide, where a person looks first; the user drags it from there.
    const QSizeF slide = m_deck->slideSize();
    const QSizeF size(slide.width() / 3, slide.height() / 9);
    const QRectF box(
        QPointF((slide.width() - size.width()) / 2, (slide.height() - size.height()) / 2), size);
    const int id = m_deck->insertTextBox(m_deck->currentSlide(), box, tr("insert text box"));
    if (!id) return;
    // The text cursor in it, so the user types at once.
    m_deck->selectText(id, 0, 0);
    m_slideView->setFocus();
}

void StudioWindow::showTitle() {
    const bool open = m_deck != nullptr;
    m_saveAction->setEnabled(open);
    m_saveAsAction->setEnabled(open);
    setWindowFilePath(m_path);
    setWindowTitle(open ? tr("%1[*] - zphonetic-studio").arg(QFileInfo(m_path).fileName())
                        : QStringLiteral("zphonetic-studio"));
    setWindowModified(hasUnsavedChanges());
}

void StudioWindow::showSlidePosition() {
    const bool open = m_deck != nullptr;
    m_nextSlideAction->setEnabled(open && m_deck->currentSlide() < m_deck->slideCount());
    m_previousSlideAction->setEnabled(open && m_deck->currentSlide() > 1);
    m_slideLabel->setText(
        open ? tr("Slide %1 of %2").arg(m_deck->currentSlide()).arg(m_deck->slideCount())
             : tr("Open a deck with File > Open, or drop one here."));
}

void StudioWindow::textEditingChanged(bool active) {
    minihost::setCurrentTabById(this, active ? kTextTool : kHome);
}

void StudioWindow::showError(const QString& text) {
    minihost::hostApplication()->messageBox(text,
                                            ZxApplication::IconError | ZxApplication::ButtonsOk);
}

void StudioWindow::closeEvent(QCloseEvent* event) {
    if (maySetDeckAside())
        event->accept();
    else
        event->ignore();
}

void StudioWindow::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!urls.isEmpty() && isDeckFile(urls.first())) event->acceptProposedAction();
}

void StudioWindow::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty() || !isDeckFile(urls.first())) return;
    event->acceptProposedAction();
    openFile(urls.first().toLocalFile());
}

bool StudioWindow::event(QEvent* event) {
    // A child may become a window only after it was added (its flags are set later).
    if (event->type() == QEvent::ChildAdded) {
        QObject* child = static_cast<QChildEvent*>(event)->child();
        if (child->isWidgetType()) child->installEventFilter(this);
    }
    return ZMainWindow::event(event);
}

bool StudioWindow::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if ((type == QEvent::Show || type == QEvent::Resize || type == QEvent::Hide) &&
        watched->isWidgetType()) {
        auto* child = static_cast<QWidget*>(watched);
        if (child->isWindow() && child->parentWidget() == this) {
            if (type == QEvent::Hide) {
                if (isVisible()) activateWindow();
            } else {
                // The page sizes its dialog once it has rendered: it stays centred.
                child->move(geometry().center() - child->rect().center());
            }
        }
    }
    return ZMainWindow::eventFilter(watched, event);
}
