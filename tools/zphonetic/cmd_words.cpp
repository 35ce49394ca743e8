// SPDX-License-Identifier: MIT
// zphonetic words: the user's own readings, the file the tagging library reads them from (words
// with their readings, and how 一 and 不 are written), listed, checked and edited. Every edit
// reads the file as it is, changes its own lines only and writes the file whole.
#include <QRegularExpression>
#include <cstdio>

#include "ReadingsStore.h"
#include "subcommands.h"

using zphonetic::tagger::LoadedReadings;
using zphonetic::tagger::OwnWord;
using zphonetic::tagger::ReadingsFile;
using zphonetic::tagger::ReadingsProblem;
using zphonetic::tagger::Tones;

namespace {

void printHelp(const QString& path) {
    std::printf(
        "Usage: zphonetic words list\n"
        "       zphonetic words add WORD READING...\n"
        "       zphonetic words remove WORD\n"
        "       zphonetic words check\n"
        "       zphonetic words tones [taught|original]\n"
        "       zphonetic words path\n\n"
        "Your own readings: words that get the readings you give them wherever they occur,\n"
        "over everything the tagging library would decide, and how 一 and 不 are written.\n"
        "They are kept in %s\n"
        "(ZPHONETIC_READINGS_FILE, else XDG_CONFIG_HOME, else HOME decides where), a word a\n"
        "line with the reading of each character: 曾老师 zēng lǎo shī\n\n"
        "  list              prints the words, a word a line, as they are used\n"
        "  add WORD READING...\n"
        "                    gives WORD these readings, one per character, with tone marks or\n"
        "                    tone numbers (曾老师 zeng1 lao3 shi1); a word already there gets the\n"
        "                    new ones\n"
        "  remove WORD       takes WORD out\n"
        "  check             names every line that is not used, with its number; the status is\n"
        "                    1 when there is one\n"
        "  tones [TONES]     prints, or sets, how 一 and 不 are written: taught (一个 yí gè,\n"
        "                    不是 bú shì, as first-grade books print them; the default) or\n"
        "                    original (一个 yī gè, 不是 bù shì, as dictionaries write them)\n"
        "  path              prints where the file is\n",
        path.isEmpty() ? "(nowhere: neither HOME nor XDG_CONFIG_HOME is set)"
                       : path.toUtf8().constData());
}

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QString text(const std::u16string& utf16) {
    return QString::fromStdU16String(utf16);
}

QString readingsOf(const OwnWord& word) {
    QStringList readings;
    for (const std::u16string& r : word.readings) readings << text(r);
    return readings.join(QLatin1Char(' '));
}

int noPath() {
    return reportError(QStringLiteral("words"),
                       QStringLiteral("no file for your readings: neither HOME nor "
                                      "XDG_CONFIG_HOME is set"));
}

// The file where the commands find it. Returns 0 with the file in *loaded, or the exit status of
// the error it reported (no path at all; for an edit, a file that cannot be edited).
int load(const QString& path, bool forEditing, LoadedReadings* loaded) {
    if (path.isEmpty()) return noPath();
    *loaded = zphonetic::tagger::loadReadingsFile(path.toStdString());
    if (!forEditing) return 0;
    if (!loaded->error.empty())
        return reportError(path, text(loaded->error) + QStringLiteral(": left as it is"));
    if (loaded->file.isUtf16())
        return reportError(
            path, text(loaded->file.problems().front().what()) + QStringLiteral(": left as it is"));
    return 0;
}

int save(const QString& path, const ReadingsFile& file) {
    const std::string error = zphonetic::tagger::saveReadingsFile(path.toStdString(), file);
    return error.empty() ? 0 : reportError(path, text(error));
}

int listWords(const QString& path) {
    LoadedReadings loaded;
    if (const int status = load(path, false, &loaded)) return status;
    for (const OwnWord& word : loaded.file.words())
        std::printf("%s %s\n", text(word.word).toUtf8().constData(),
                    readingsOf(word).toUtf8().constData());
    // The words listed are those used; say so when the file has others.
    const size_t unused = loaded.file.problems().size();
    if (!loaded.error.empty())
        reportError(path, text(loaded.error) + QStringLiteral(": none of it is read"));
    else if (unused != 0)
        reportError(path,
                    QStringLiteral("%1 %2 not used (zphonetic words check names %3)")
                        .arg(unused)
                        .arg(unused == 1 ? QStringLiteral("line is") : QStringLiteral("lines are"))
                        .arg(unused == 1 ? QStringLiteral("it") : QStringLiteral("them")));
    return 0;
}

int addWord(const QString& path, const QStringList& arguments) {
    if (arguments.size() < 2)
        return reportError(QStringLiteral("words add"), QStringLiteral("needs WORD READING..."));
    const QString word = arguments.first();
    std::vector<std::u16string> typed;
    for (const QString& argument : arguments.mid(1))
        for (const QString& reading :
             argument.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts))
            typed.push_back(reading.toStdU16String());
    LoadedReadings loaded;
    if (const int status = load(path, true, &loaded)) return status;
    const OwnWord* before = loaded.file.find(word.toStdU16String());
    const QString was = before ? readingsOf(*before) : QString();
    if (const std::optional<ReadingsProblem> problem =
            loaded.file.set(word.toStdU16String(), typed))
        return reportError(QStringLiteral("words add"), text(problem->what()));
    if (const int status = save(path, loaded.file)) return status;
    const QString now = readingsOf(*loaded.file.find(word.toStdU16String()));
    if (before)
        std::printf("changed %s: %s (was %s)\n", word.toUtf8().constData(),
                    now.toUtf8().constData(), was.toUtf8().constData());
    else
        std::printf("added %s %s\n", word.toUtf8().constData(), now.toUtf8().constData());
    return 0;
}

int removeWord(const QString& path, const QStringList& arguments) {
    if (arguments.size() != 1)
        return reportError(QStringLiteral("words remove"), QStringLiteral("needs one WORD"));
    const QString word = arguments.first();
    LoadedReadings loaded;
    if (const int status = load(path, true, &loaded)) return status;
    if (!loaded.file.remove(word.toStdU16String()))
        return reportError(word, QStringLiteral("not among your readings (%1)").arg(path));
    if (const int status = save(path, loaded.file)) return status;
    std::printf("removed %s\n", word.toUtf8().constData());
    return 0;
}

int checkFile(const QString& path) {
    LoadedReadings loaded;
    if (const int status = load(path, false, &loaded)) return status;
    if (!loaded.error.empty())
        return reportError(path, text(loaded.error) + QStringLiteral(": none of it is read"));
    if (!loaded.stamp.exists) {
        std::printf("%s: no such file: no readings of your own\n", path.toUtf8().constData());
        return 0;
    }
    const ReadingsFile& file = loaded.file;
    for (const ReadingsProblem& problem : file.problems()) {
        const QString what = text(problem.message());
        reportError(path, problem.line == 0 ? what + QStringLiteral(": none of it is read") : what);
    }
    if (!file.problems().empty()) return 1;
    const size_t words = file.words().size();
    std::printf("%s: %zu %s, tones %s: every line is used\n", path.toUtf8().constData(), words,
                words == 1 ? "word" : "words", zphonetic::tagger::tonesName(file.tones()));
    return 0;
}

int tones(const QString& path, const QStringList& arguments) {
    if (arguments.size() > 1)
        return reportError(QStringLiteral("words tones"),
                           QStringLiteral("takes taught, original or nothing"));
    LoadedReadings loaded;
    if (arguments.isEmpty()) {
        if (const int status = load(path, false, &loaded)) return status;
        std::printf("%s\n", zphonetic::tagger::tonesName(loaded.file.tones()));
        return 0;
    }
    const std::optional<Tones> chosen =
        zphonetic::tagger::parseTones(arguments.first().toStdString());
    if (!chosen)
        return reportError(
            QStringLiteral("words tones"),
            QStringLiteral("\"%1\" is not taught or original").arg(arguments.first()));
    if (const int status = load(path, true, &loaded)) return status;
    loaded.file.setTones(*chosen);
    if (const int status = save(path, loaded.file)) return status;
    std::printf("tones %s\n", zphonetic::tagger::tonesName(*chosen));
    return 0;
}

}  // namespace

int runWords(const QStringList& arguments) {
    const QString path = QString::fromStdString(zphonetic::tagger::ownReadingsPath());
    const QString action = arguments.value(0);
    const QStringList rest = arguments.mid(1);
    if (action.isEmpty() || action == QLatin1String("--help")) {
        printHelp(path);
        return action.isEmpty() ? 2 : 0;
    }
    if (action == QLatin1String("add")) return addWord(path, rest);
    if (action == QLatin1String("remove")) return removeWord(path, rest);
    if (action == QLatin1String("tones")) return tones(path, rest);
    const bool bare = action == QLatin1String("list") || action == QLatin1String("check") ||
                      action == QLatin1String("path");
    if (!bare)
        return reportError(QStringLiteral("words"),
                           QStringLiteral("\"%1\" is not list, add, remove, check, tones or path "
                                          "(see zphonetic words --help)")
                               .arg(action));
    if (!rest.isEmpty())
        return reportError(QStringLiteral("words ") + action, QStringLiteral("takes no arguments"));
    if (action == QLatin1String("list")) return listWords(path);
    if (action == QLatin1String("check")) return checkFile(path);
    if (path.isEmpty()) return noPath();
    std::printf("%s\n", path.toUtf8().constData());
    return 0;
}
