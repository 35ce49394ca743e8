// SPDX-License-Identifier: MIT
// "My Readings…" (the Pinyin menu): the user's own readings in a window of the studio. It lists
// the words of the readings file with their readings, and the lines of the file that are not
// used with the reason; it adds, changes and removes words, and chooses how 一 and 不 are
// written (as taught, or as dictionaries write them).
//
// Every change is written to the file at once, and the tagging library reads the file again for
// the next command, so the add-on's next readings take it. Before each change the file is read
// as it is then: what another program wrote meanwhile is kept (a line not used that another
// program changed in the meantime is not touched: the window shows the file again and says so).
#pragma once

#include <QDialog>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "ReadingsFile.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableWidget;

class MyReadingsWindow : public QDialog {
    Q_OBJECT
public:
    explicit MyReadingsWindow(QWidget* parent = nullptr);

    // Where the file is (see the tagging library's header), "" when there is nowhere.
    QString filePath() const { return m_path; }
    // Shows the file as it is now.
    void reload();

    // The widgets, for the program's tests.
    QTableWidget* table() const { return m_table; }
    QPushButton* addButton() const { return m_add; }
    QPushButton* changeButton() const { return m_change; }
    QPushButton* removeButton() const { return m_remove; }
    QRadioButton* taughtButton() const { return m_taught; }
    QRadioButton* originalButton() const { return m_original; }
    QLabel* noteLabel() const { return m_note; }

    // The words' editor that Add and Change open: a dialog of this window, with a field for the
    // word and one for its readings, that refuses (saying why) what the file would not use.
    static const char* const kEditorName;  // its object name, "MyReadingsEditor"

protected:
    void showEvent(QShowEvent* event) override;

private:
    // A row of the table: a word of the file, or a line of it that is not used.
    struct Row {
        QString word;  // "" for a line not used
        int line = 0;  // from 1
        QString text;  // the line as written, for a line not used
    };

    void addWord();
    void changeRow();
    void removeRow();
    void chooseTones(zphonetic::tagger::Tones tones);
    // Opens the editor on `word` and `readings`; `apply` makes the change when it is accepted and
    // returns the problem, if any, which the editor then shows.
    void edit(const QString& title, const QString& word, const QString& readings,
              const std::function<std::optional<zphonetic::tagger::ReadingsProblem>(
                  zphonetic::tagger::ReadingsFile&, const std::u16string&,
                  const std::vector<std::u16string>&)>& apply);
    // Reads the file; false (after saying so) when it cannot be changed.
    bool readForChange(zphonetic::tagger::ReadingsFile* file);
    bool write(const zphonetic::tagger::ReadingsFile& file);
    // The row selected, or -1.
    int selectedRow() const;
    void updateButtons();
    QString describe(const zphonetic::tagger::ReadingsProblem& problem) const;

    QString m_path;
    QList<Row> m_rows;
    QTableWidget* m_table = nullptr;
    QPushButton* m_add = nullptr;
    QPushButton* m_change = nullptr;
    QPushButton* m_remove = nullptr;
    QRadioButton* m_taught = nullptr;
    QRadioButton* m_original = nullptr;
    QLabel* m_note = nullptr;
    QLabel* m_where = nullptr;
};
