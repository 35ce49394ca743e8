// SPDX-License-Identifier: MIT
// The tagging library path of tagText.
#include <string>

#include "common/bstrholder.h"
#include "engine/answerparser.h"
#include "engine/providers.h"
#include "engine/readingblock.h"
#include "engine/taggerentrypoints.h"

namespace {

// One PinyinTagSen call. The library allocates the answer with new[]; it is copied into a BSTR
// of exactly the length the library gave and freed here with delete[].
std::u16string tagSentence(HMODULE library, void* tagger, const char16_t* text) {
    char16_t* buffer = nullptr;
    std::int32_t length = 0;
    taggerabi::entryPoint<taggerabi::PinyinTagSenFn>(library, taggerabi::kPinyinTagSen)(
        tagger, text, &buffer, &length);
    // A library that gives no buffer, or a negative length, gave no answer.
    BstrHolder answer;
    if (buffer && length > 0)
        *answer.put() = _XSysAllocStringLen(buffer, static_cast<unsigned int>(length));
    delete[] buffer;
    return std::u16string(answer.get() ? answer.get() : u"", _XSysStringLen(answer.get()));
}

}  // namespace

ReadingBlock* tagWithLibrary(HMODULE* library, const char16_t* filtered) {
    if (!library) return nullptr;
    HMODULE module = *library;
    void* tagger = nullptr;
    taggerabi::entryPoint<taggerabi::GetPinyinObjectFn>(module,
                                                        taggerabi::kGetPinyinObject)(&tagger);
    if (!tagger) return nullptr;

    const std::u16string reference(filtered);
    std::u16string answer;
    // Deliberate: this exact pair, and no other text, is tagged one character at a time.
    if (reference == u"\u4E00\u4E8C") {
        answer = tagSentence(module, tagger, u"\u4E00");
        answer += tagSentence(module, tagger, u"\u4E8C");
    } else {
        answer = tagSentence(module, tagger, reference.c_str());
    }
    applyReadingTypography(answer);

    const ParsedAnswer parsed = parseAnswer(answer, reference);
    ReadingBlock* block = nullptr;
    if (parsed.status == AnswerStatus::Parsed)
        block = makeTaggerBlock(splitReadings(parsed, reference.size()));
    // Deliberate: after an answer of 2 units or less the object is not released.
    if (parsed.status != AnswerStatus::NothingParsed)
        taggerabi::entryPoint<taggerabi::ReleasePinyinObjectFn>(
            module, taggerabi::kReleasePinyinObject)(tagger);
    return block;
}
