// SPDX-License-Identifier: MIT
#include "myreadingswindow.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStyle>
#include <QTableWidget>

#include "ReadingsStore.h"
#include "minihost/nvo/hostcontrol.h"
#include "nvo/zapplication.h"

using zphonetic::tagger::LoadedReadings;
using zphonetic::tagger::OwnWord;
using zphonetic::tagger::ReadingsFile;
using zphonetic::tagger::ReadingsProblem;
using zphonetic::tagger::Tones;

namespace {

const unsigned int kError = 0x10;  // the host's message box flag

QString joined(const std::vector<std::u16string>& readings) {
    QStringList out;
    for (const std::u16string& r : readings) out << QString::fromStdU16String(r);
    return out.join(QLatin1Char(' '));
}

std::vector<std::u16string> split(const QString& readings) {
    std::vector<std::u16string> out;
    for (const QString& r :
         readings.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts))
        out.push_back(r.toStdU16String());
    return out;
}

}  // namespace

const char* const MyReadingsWindow::kEditorName = "MyReadingsEditor";

MyReadingsWindow::MyReadingsWindow(QWidget* parent)
    : QDialog(parent), m_path(QString::fromStdString(zphonetic::tagger::ownReadingsPath())) {
    setObjectName(QStringLiteral("MyReadingsWindow"));
    setWindowTitle(tr("My Readings"));

    auto* intro =
        new QLabel(tr("Give a word readings of your own: they are used wherever the "
                      "word occurs, over what the pinyin commands would choose."));
    intro->setWordWrap(true);

    m_table = new QTableWidget(0, 2);
    m_table->setHorizontalHeaderLabels({tr("Word"), tr("Readings")});
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_table->verticalHeader()->hide();
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setWordWrap(true);
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &MyReadingsWindow::updateButtons);
    connect(m_table, &QTableWidget::cellDoubleClicked, this, &MyReadingsWindow::changeRow);
    // The reasons of the lines not used wrap within their column, whatever its width.
    connect(m_table->horizontalHeader(), &QHeaderView::sectionResized, m_table,
            &QTableWidget::resizeRowsToContents);

    m_add = new QPushButton(tr("&Add..."));
    m_change = new QPushButton(tr("&Change..."));
    m_remove = new QPushButton(tr("&Remove"));
    connect(m_add, &QPushButton::clicked, this, &MyReadingsWindow::addWord);
    connect(m_change, &QPushButton::clicked, this, &MyReadingsWindow::changeRow);
    connect(m_remove, &QPushButton::clicked, this, &MyReadingsWindow::removeRow);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(m_add);
    buttons->addWidget(m_change);
    buttons->addWidget(m_remove);
    buttons->addStretch();
    auto* words = new QHBoxLayout;
    words->addWidget(m_table, 1);
    words->addLayout(buttons);

    auto* tones = new QGroupBox(tr("The tones of 一 and 不"));
    m_taught = new QRadioButton(tr("As taught in school: 一个 yí gè, 不是 bú shì"));
    m_original = new QRadioButton(tr("As dictionaries write them: 一个 yī gè, 不是 bù shì"));
    auto* group = new QButtonGroup(this);
    group->addButton(m_taught);
    group->addButton(m_original);
    // A click of the user's, not a change made by reload().
    connect(m_taught, &QRadioButton::clicked, this, [this] { chooseTones(Tones::Taught); });
    connect(m_original, &QRadioButton::clicked, this, [this] { chooseTones(Tones::Original); });
    auto* tonesLayout = new QVBoxLayout(tones);
    tonesLayout->addWidget(m_taught);
    tonesLayout->addWidget(m_original);

    m_note = new QLabel;
    m_note->setWordWrap(true);
    m_note->hide();
    m_where = new QLabel;
    m_where->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_where->setWordWrap(true);
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close);
    // Named here: Qt's own translations of its buttons may not be installed.
    close->button(QDialogButtonBox::Close)->setText(tr("Close"));
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addLayout(words, 1);
    layout->addWidget(tones);
    layout->addWidget(m_note);
    layout->addWidget(m_where);
    layout->addWidget(close);
    resize(640, 480);
    reload();
}

void MyReadingsWindow::showEvent(QShowEvent* event) {
    reload();
    QDialog::showEvent(event);
}

QString MyReadingsWindow::describe(const ReadingsProblem& problem) const {
    using Kind = ReadingsProblem::Kind;
    const QString subject = QString::fromStdString(problem.subject);
    switch (problem.kind) {
        case Kind::Utf16:
            return tr("The file is UTF-16 text: save it as UTF-8 to use it.");
        case Kind::NotUtf8:
            return tr("Not UTF-8 text.");
        case Kind::NotChinese:
            return tr("\"%1\" is not a word of Chinese characters.").arg(subject);
        case Kind::TooLong:
            return tr("\"%1\" is longer than %2 characters.")
                .arg(subject)
                .arg(zphonetic::tagger::kMaxOwnWordLength);
        case Kind::NoReadings:
            return tr("%1 has no readings.").arg(subject);
        case Kind::WrongCount: {
            const QString characters = problem.expected == 1
                                           ? tr("1 character")
                                           : tr("%1 characters").arg(problem.expected);
            const QString readings =
                problem.count == 1 ? tr("1 reading") : tr("%1 readings").arg(problem.count);
            return tr("%1 has %2 but %3.").arg(subject, characters, readings);
        }
        case Kind::NotPinyin:
            return tr("\"%1\" is not a pinyin syllable.").arg(subject);
        case Kind::Repeated:
            return tr("%1 is already on line %2.").arg(subject).arg(problem.expected);
        case Kind::BadTones:
            return tr("The tones must be \"taught\" or \"original\".");
        case Kind::RepeatedTones:
            return tr("The tones are already set on line %1.").arg(problem.expected);
    }
    return QString();
}

void MyReadingsWindow::reload() {
    m_note->hide();
    m_rows.clear();
    m_table->setRowCount(0);
    const LoadedReadings loaded = zphonetic::tagger::loadReadingsFile(m_path.toStdString());
    const ReadingsFile& file = loaded.file;
    for (const OwnWord& word : file.words()) {
        m_rows.append({QString::fromStdU16String(word.word), static_cast<int>(word.line), {}});
        const int row = m_table->rowCount();
        m_table->insertRow(row);
        m_table->setItem(row, 0, new QTableWidgetItem(m_rows.last().word));
        m_table->setItem(row, 1, new QTableWidgetItem(joined(word.readings)));
    }
    // The lines not used come after the words, each with why, to be changed or removed.
    const QIcon warning = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    for (const ReadingsProblem& problem : file.problems()) {
        if (problem.line == 0) continue;
        const QString text = QString::fromUtf8(file.line(problem.line).c_str());
        m_rows.append({QString(), static_cast<int>(problem.line), text});
        const int row = m_table->rowCount();
        m_table->insertRow(row);
        auto* line = new QTableWidgetItem(warning, text.trimmed());
        auto* why = new QTableWidgetItem(describe(problem));
        why->setForeground(QColor(0xb0, 0x00, 0x20));
        const QString whole =
            tr("Line %1 of the file is not used: %2").arg(problem.line).arg(describe(problem));
        line->setToolTip(whole);
        why->setToolTip(whole);
        m_table->setItem(row, 0, line);
        m_table->setItem(row, 1, why);
    }
    m_table->resizeRowsToContents();
    const bool original = file.tones() == Tones::Original;
    m_taught->setChecked(!original);
    m_original->setChecked(original);

    // What keeps the whole file from being used or changed.
    QString trouble;
    if (!loaded.error.empty())
        trouble = tr("The file cannot be used: %1.").arg(QString::fromStdString(loaded.error));
    else if (file.isUtf16())
        trouble = describe(file.problems().front());
    const bool usable = trouble.isEmpty() && !m_path.isEmpty();
    m_add->setEnabled(usable);
    m_taught->setEnabled(usable);
    m_original->setEnabled(usable);
    if (!trouble.isEmpty()) {
        m_note->setText(trouble);
        m_note->show();
    }
    m_where->setText(m_path.isEmpty() ? tr("There is nowhere to keep them: neither HOME nor "
                                           "XDG_CONFIG_HOME is set.")
                                      : tr("Kept in %1").arg(m_path));
    updateButtons();
}

int MyReadingsWindow::selectedRow() const {
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void MyReadingsWindow::updateButtons() {
    const bool selected = selectedRow() >= 0 && m_add->isEnabled();
    m_change->setEnabled(selected);
    m_remove->setEnabled(selected);
}

bool MyReadingsWindow::readForChange(ReadingsFile* file) {
    LoadedReadings loaded = zphonetic::tagger::loadReadingsFile(m_path.toStdString());
    if (!loaded.error.empty() || loaded.file.isUtf16()) {
        reload();
        return false;
    }
    *file = std::move(loaded.file);
    return true;
}

bool MyReadingsWindow::write(const ReadingsFile& file) {
    const std::string error = zphonetic::tagger::saveReadingsFile(m_path.toStdString(), file);
    if (!error.empty()) {
        minihost::hostApplication()->messageBox(tr("Your readings could not be saved.\n\n%1: %2")
                                                    .arg(m_path, QString::fromStdString(error)),
                                                kError);
        return false;
    }
    reload();
    return true;
}

void MyReadingsWindow::edit(
    const QString& title, const QString& word, const QString& readings,
    const std::function<std::optional<ReadingsProblem>(
        ReadingsFile&, const std::u16string&, const std::vector<std::u16string>&)>& apply) {
    auto* editor = new QDialog(this);
    editor->setObjectName(QString::fromLatin1(kEditorName));
    editor->setAttribute(Qt::WA_DeleteOnClose);
    editor->setWindowTitle(title);
    auto* wordField = new QLineEdit(word);
    wordField->setObjectName(QStringLiteral("word"));
    auto* readingsField = new QLineEdit(readings);
    readingsField->setObjectName(QStringLiteral("readings"));
    readingsField->setPlaceholderText(QStringLiteral("zēng lǎo shī / zeng1 lao3 shi1"));
    auto* hint = new QLabel(tr("One reading for each character, with tone marks or tone numbers."));

    auto* problem = new QLabel;
    problem->setObjectName(QStringLiteral("problem"));
    problem->setWordWrap(true);
    problem->setStyleSheet(QStringLiteral("color: #b00020"));
    problem->hide();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    auto* form = new QFormLayout(editor);
    // Tall enough for a reason that wraps, as the words are checked.
    form->setSizeConstraint(QLayout::SetMinimumSize);
    form->addRow(tr("Word:"), wordField);
    form->addRow(tr("Readings:"), readingsField);
    form->addRow(hint);
    form->addRow(problem);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::rejected, editor, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, editor, [=] {
        ReadingsFile file;
        if (!readForChange(&file)) {
            editor->reject();
            return;
        }
        const std::optional<ReadingsProblem> refused =
            apply(file, wordField->text().trimmed().toStdU16String(), split(readingsField->text()));
        if (refused) {
            problem->setText(describe(*refused));
            problem->show();
            editor->adjustSize();
            return;
        }
        if (write(file)) editor->accept();
    });
    if (!word.isEmpty()) readingsField->setFocus();
    editor->open();
}

void MyReadingsWindow::addWord() {
    edit(tr("Add a Word"), QString(), QString(),
         [](ReadingsFile& file, const std::u16string& word,
            const std::vector<std::u16string>& readings) { return file.set(word, readings); });
}

void MyReadingsWindow::changeRow() {
    const int index = selectedRow();
    if (index < 0 || index >= m_rows.size() || !m_add->isEnabled()) return;
    const Row row = m_rows.at(index);
    if (!row.word.isEmpty()) {
        // The word's line as the file has it when the change is made.
        edit(tr("Change a Word"), row.word, m_table->item(index, 1)->text(),
             [row](ReadingsFile& file, const std::u16string& word,
                   const std::vector<std::u16string>& readings) {
                 const OwnWord* old = file.find(row.word.toStdU16String());
                 return old ? file.replaceLine(old->line, word, readings)
                            : file.set(word, readings);
             });
        return;
    }
    const QStringList fields =
        row.text.split(QRegularExpression(QStringLiteral("[\\s\\x{3000}]+")), Qt::SkipEmptyParts);
    edit(tr("Change a Word"), fields.value(0), fields.mid(1).join(QLatin1Char(' ')),
         [row](ReadingsFile& file, const std::u16string& word,
               const std::vector<std::u16string>& readings) {
             // Another program may have changed the file meanwhile: the line is replaced only
             // where it still is, else the word is set as Add sets it.
             if (QString::fromUtf8(file.line(row.line).c_str()) != row.text)
                 return file.set(word, readings);
             return file.replaceLine(row.line, word, readings);
         });
}

void MyReadingsWindow::removeRow() {
    const int index = selectedRow();
    if (index < 0 || index >= m_rows.size()) return;
    const Row row = m_rows.at(index);
    ReadingsFile file;
    if (!readForChange(&file)) return;
    bool removed = false;
    if (!row.word.isEmpty())
        removed = file.remove(row.word.toStdU16String());
    else if (QString::fromUtf8(file.line(row.line).c_str()) == row.text)
        removed = file.removeLine(row.line);
    if (!removed) {
        reload();
        m_note->setText(tr("The file was changed by another program; it is shown as it is now."));
        m_note->show();
        return;
    }
    write(file);
}

void MyReadingsWindow::chooseTones(Tones tones) {
    ReadingsFile file;
    if (!readForChange(&file)) return;
    if (file.tones() == tones) return;
    file.setTones(tones);
    write(file);
}
