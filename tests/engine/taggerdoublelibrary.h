// SPDX-License-Identifier: MIT
// The test tagging library seen from a test: its directory, its script and its journal.
#pragma once

#include <dlfcn.h>

#include <QString>
#include <string>
#include <vector>

#include "taggerdouble/taggerdouble.h"

// Holds the test tagging library open for the lifetime of a test, so that its script and
// journal survive the engine's own load and unload of the same library.
class TaggerDoubleLibrary {
public:
    static QString directory() { return QStringLiteral(ZPHONETIC_TAGGER_DOUBLE_DIR); }

    TaggerDoubleLibrary()
        : m_library(
              dlopen(ZPHONETIC_TAGGER_DOUBLE_DIR "/libPinyinTagger.so", RTLD_NOW | RTLD_LOCAL)) {
        reset = function<TaggerDoubleResetFn>("TaggerDouble_Reset");
        setReading = function<TaggerDoubleSetReadingFn>("TaggerDouble_SetReading");
        setAnswer = function<TaggerDoubleSetAnswerFn>("TaggerDouble_SetAnswer");
        setNullObject = function<TaggerDoubleSetNullObjectFn>("TaggerDouble_SetNullObject");
        m_journal = function<TaggerDoubleJournalFn>("TaggerDouble_Journal");
        liveObjects = function<TaggerDoubleLiveObjectsFn>("TaggerDouble_LiveObjects");
        if (reset) reset();
    }
    ~TaggerDoubleLibrary() { dlclose(m_library); }
    TaggerDoubleLibrary(const TaggerDoubleLibrary&) = delete;
    TaggerDoubleLibrary& operator=(const TaggerDoubleLibrary&) = delete;

    bool isLoaded() const { return m_library && reset && m_journal; }
    // The journal's lines in UTF-8.
    std::vector<std::string> journal() const {
        const QStringList lines =
            QString::fromUtf16(m_journal()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        std::vector<std::string> result;
        for (const QString& line : lines) result.push_back(line.toStdString());
        return result;
    }
    void answer(const char16_t* text, const std::u16string& reply) {
        setAnswer(text, reply.data(), static_cast<std::int32_t>(reply.size()));
    }

    TaggerDoubleResetFn reset = nullptr;
    TaggerDoubleSetReadingFn setReading = nullptr;
    TaggerDoubleSetAnswerFn setAnswer = nullptr;
    TaggerDoubleSetNullObjectFn setNullObject = nullptr;
    TaggerDoubleLiveObjectsFn liveObjects = nullptr;

private:
    template <typename Fn>
    Fn function(const char* name) {
        static_assert(sizeof(Fn) == sizeof(void*));
        return m_library ? reinterpret_cast<Fn>(dlsym(m_library, name)) : nullptr;
    }

    void* m_library;
    TaggerDoubleJournalFn m_journal = nullptr;
};
