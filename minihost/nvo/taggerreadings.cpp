// SPDX-License-Identifier: MIT
#include "minihost/nvo/taggerreadings.h"

#include <QDir>
#include <cstdio>
#include <exception>
#include <memory>

#include "Tagger.h"
#include "Utf16.h"
#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostcontrol.h"
#include "nvo/readingservice.h"

namespace minihost {
namespace {

using zphonetic::tagger::Dictionaries;
using zphonetic::tagger::OwnReadingsSource;
using zphonetic::tagger::Tagger;

// The dictionaries, opened once per function; a failure is reported once and remembered. The
// user's own readings are found with them, and read again whenever their file changes.
struct EngineState {
    std::unique_ptr<Tagger> tagger;
    std::unique_ptr<OwnReadingsSource> own;
    bool failed = false;

    Tagger* open() {
        if (tagger || failed) return tagger.get();
        const QDir directory(minihost::directory(ZDirDictionaries));
        const auto path = [&](const char* name) {
            return QDir::toNativeSeparators(directory.filePath(QLatin1String(name)))
                .toLocal8Bit()
                .toStdString();
        };
        try {
            tagger = std::make_unique<Tagger>(std::make_shared<const Dictionaries>(
                path("Pinyin.dic"), path("firrule.dic"), path("secrule.dic")));
            own = std::make_unique<OwnReadingsSource>(
                zphonetic::tagger::ownReadingsPath(), [](const std::string& note) {
                    std::fprintf(stderr, "zphonetic: %s\n", note.c_str());
                });
        } catch (const std::exception& error) {
            failed = true;
            // The dictionaries' own errors name the file and what is wrong with it.
            std::fprintf(stderr, "zphonetic: %s\n",
                         zphonetic::tagger::printable(error.what()).c_str());
        }
        return tagger.get();
    }
};

}  // namespace

ReadingFunction engineReadingFunction() {
    auto state = std::make_shared<EngineState>();
    return [state](const QString& text, QVector<HostReading>& readings) {
        Tagger* tagger = state->open();
        if (!tagger) return false;
        tagger->setOwnReadings(state->own->current());
        try {
            const auto& syllables =
                tagger->readings(reinterpret_cast<const char16_t*>(text.utf16()),
                                 static_cast<std::size_t>(text.size()));
            for (const auto* syllable : syllables)
                readings.append(
                    {syllable ? QString::fromUtf16(syllable->units, syllable->size) : QString(),
                     1});
            return true;
        } catch (const std::exception& error) {
            // A damaged block of a dictionary (named by the error), or no memory: no readings.
            std::fprintf(stderr, "zphonetic: %s\n", error.what());
            return false;
        }
    };
}

void offerEngineReadingService() {
    IUnknown* readings = createReadingService(engineReadingFunction());
    registerService(SID_ZReadingService, readings);
    readings->Release();
}

}  // namespace minihost
