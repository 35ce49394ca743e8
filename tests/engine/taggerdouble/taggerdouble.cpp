// SPDX-License-Identifier: MIT
// The test tagging library: the six entry points of libPinyinTagger.so over a scripted answer
// table, plus the control functions of taggerdouble.h.
#include "taggerdouble.h"

#include <cstring>
#include <map>
#include <set>
#include <string>

#include "nvo/readingservice.h"

#define TAGGER_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

struct Script {
    std::map<char16_t, std::u16string> readings;
    std::map<std::u16string, std::u16string> answers;
    std::set<std::u16string> nullAnswers;  // texts answered with a null buffer
    bool nullObject = false;
    std::u16string journal;
    int liveObjects = 0;
};

Script& script() {
    static Script instance;
    return instance;
}

// Tagger objects are slots of a static table, so an object the engine deliberately keeps is no
// leak of the test process.
int g_objects[64];
int g_nextObject = 0;

void record(const std::u16string& line) {
    script().journal += line + u'\n';
}

std::u16string composeAnswer(const std::u16string& text) {
    std::u16string answer;
    for (char16_t character : text) {
        answer += character;
        answer += u'/';
        const auto reading = script().readings.find(character);
        if (reading != script().readings.end()) answer += reading->second;
    }
    return answer;
}

}  // namespace

TAGGER_EXPORT int LoadPinYinLibrary(void* hostInterface) {
    const char16_t* kind = u"null";
    if (hostInterface) {
        auto* unknown = static_cast<IUnknown*>(hostInterface);
        void* host = nullptr;
        kind =
            unknown->QueryInterface(IID_IZReadingHost, &host) == S_OK && host ? u"host" : u"other";
        if (host) static_cast<IUnknown*>(host)->Release();
    }
    record(std::u16string(u"LoadPinYinLibrary ") + kind);
    return 0;
}

// The broken variant stands for an installation whose library lacks its dictionary entry
// points, which the add-on deliberately does not guard against.
#ifndef TAGGER_DOUBLE_BROKEN
TAGGER_EXPORT int OpenDictionary(const char16_t* pinyinDic, const char16_t* firstRules,
                                 const char16_t* secondRules) {
    record(u"OpenDictionary " + std::u16string(pinyinDic) + u'|' + std::u16string(firstRules) +
           u'|' + std::u16string(secondRules));
    return 0;
}

TAGGER_EXPORT int CloseDictionary() {
    record(u"CloseDictionary");
    return 0;
}
#endif

TAGGER_EXPORT int GetPinyinObject(void** tagger) {
    if (!tagger) return -1;
    if (script().nullObject) {
        record(u"GetPinyinObject null");
        *tagger = nullptr;
        return -1;
    }
    record(u"GetPinyinObject");
    *tagger = &g_objects[g_nextObject++ % 64];
    ++script().liveObjects;
    return 0;
}

TAGGER_EXPORT int PinyinTagSen(void* tagger, const char16_t* text, char16_t** answer,
                               std::int32_t* answerLength) {
    if (!tagger || !text || !answer || !answerLength) return -1;
    const std::u16string input(text);
    record(u"PinyinTagSen " + input);
    if (script().nullAnswers.count(input)) {
        *answer = nullptr;
        *answerLength = 0;
        return -1;
    }
    const auto scripted = script().answers.find(input);
    const std::u16string reply =
        scripted != script().answers.end() ? scripted->second : composeAnswer(input);
    *answer = new char16_t[reply.size() + 1];
    std::memcpy(*answer, reply.data(), reply.size() * sizeof(char16_t));
    (*answer)[reply.size()] = 0;
    *answerLength = static_cast<std::int32_t>(reply.size());
    return 0;
}

TAGGER_EXPORT int ReleasePinyinObject(void* tagger) {
    record(u"ReleasePinyinObject");
    if (tagger) --script().liveObjects;
    return 0;
}

TAGGER_EXPORT void TaggerDouble_Reset() {
    script() = Script();
}

TAGGER_EXPORT void TaggerDouble_SetReading(char16_t character, const char16_t* reading) {
    script().readings[character] = reading;
}

TAGGER_EXPORT void TaggerDouble_SetAnswer(const char16_t* text, const char16_t* answer,
                                          std::int32_t length) {
    if (!answer) {
        script().nullAnswers.insert(text);
        return;
    }
    script().answers[text] = std::u16string(answer, static_cast<std::size_t>(length));
}

TAGGER_EXPORT void TaggerDouble_SetNullObject(int nullObject) {
    script().nullObject = nullObject != 0;
}

TAGGER_EXPORT const char16_t* TaggerDouble_Journal() {
    return script().journal.c_str();
}

TAGGER_EXPORT int TaggerDouble_LiveObjects() {
    return script().liveObjects;
}
