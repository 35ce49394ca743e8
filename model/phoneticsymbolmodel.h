// SPDX-License-Identifier: MIT
// The add-on's one piece of shared state: the host objects every command needs, the tagging
// library, the open dialog, the text being annotated with its readings, and the user's last
// layout and bracket choices.
#pragma once

#include <QChar>
#include <QColor>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

class QWidget;
class ZCoreApplication;
class ZPhoneticSymbolWebWindow;
struct PinyinTaggerHandle;

// A text and its format.
struct TextStyle {
    QString fontName;
    QString text;
    QColor color{0, 0, 0, 255};  // opaque black
    int fontSize = 0;            // whole points
    bool bold = false;           // applied as the bold attribute when the style is written
    bool applyColor = false;     // the colour is written only when set
};

// One reading the dialog page confirmed.
struct PhoneticItem {
    QString pinyin;  // what to write for the character; may be empty
    QString text;    // the character itself
    int index = -1;  // its position in the selected text, from 0, as the page sent it
};

// The dialog annotates at most this many UTF-16 units of the selection; a text the page passes
// to getPhoneticText is cut the same way.
constexpr int kDialogTextUnits = 30;

class ZPhoneticSymbolModel : public QObject {
    Q_OBJECT
public:
    // The model, created on first use and never deleted, so that it outlives every host object
    // that might still call into it during shutdown.
    static ZPhoneticSymbolModel* instance();

    // Initialisation while `coreApp` is null: installs the translations, records the core
    // application and `mainWindow`, and loads the tagging library into a new handle.
    void initModel(QWidget* mainWindow);
    // Release while `coreApp` is set: unloads the tagging library, clears `coreApp`, `readings`
    // and `candidates`, and uninstalls the translations. The last choices and style survive.
    void releaseModel();

    // "PhoneticSymbol": reads and tags the selection, then opens the dialog (or its guide view, or
    // warns). Does nothing while a dialog is open.
    void openPhoneticDialog();
    // "PhoneticOneKey": one text box of readings per selected text, as one undo step.
    void applyOneKey();
    // Writes the readings the dialog confirmed, in layout `styleType` with brackets `bracketType`,
    // as one undo step, and remembers both choices.
    void applyPhoneticItems(const QVector<PhoneticItem>& items, int styleType, int bracketType);
    // Sizes the open dialog to `width` + 1 by `height` + 1 design units.
    void resizeDialog(int width, int height);

    // Fields, in this order; public to the add-on's own code.
    TextStyle style;                      // font and text of the current selection
    QStringList readings;                 // one reading per UTF-16 unit of style.text
    QMap<QChar, QStringList> candidates;  // every reading of each Chinese character, default first
    ZCoreApplication* coreApp = nullptr;  // not owned; non-null = initialised
    QWidget* mainWindow = nullptr;        // the dialog's parent; not owned
    ZPhoneticSymbolWebWindow* dialog = nullptr;  // the open dialog, or null
    PinyinTaggerHandle* tagger = nullptr;        // owned
    int styleType = -1;                          // last layout applied; -1 = never chosen
    int bracketType = -1;                        // last bracket pair applied; -1 = never chosen

private slots:
    // The dialog's signalClose: deletes the window later and forgets it.
    void onWindowClose();

private:
    ZPhoneticSymbolModel();
    // The host's warning box "please select one character at least" (warning icon, one OK
    // button), which both commands show when there is nothing to annotate. Nothing without a
    // host application.
    void warnNothingToAnnotate();
};
