/* SPDX-License-Identifier: MIT */
#ifndef ZPHONETIC_PINYIN_TAGGER_H
#define ZPHONETIC_PINYIN_TAGGER_H

/*
 * libPinyinTagger.so: pinyin readings of Chinese text, in context.
 *
 * Load it with dlopen and look up these six functions by name, or link it directly. Strings are
 * UTF-16 (char16_t), NUL-terminated. Every function returns 0 on success and a negative status
 * (PINYIN_TAGGER_E_*) on failure; no function throws or aborts on any input.
 *
 * Typical use:
 *     LoadPinYinLibrary(NULL);
 *     OpenDictionary(u"/…/Pinyin.dic", u"/…/firrule.dic", u"/…/secrule.dic");
 *     void* t = NULL;
 *     if (GetPinyinObject(&t) == 0) {
 *         char16_t* answer = NULL; int32_t length = 0;
 *         if (PinyinTagSen(t, u"银行行长", &answer, &length) == 0) {
 *             // answer holds u"银/yín行/háng行/háng长/zhǎng", length is 24
 *             delete[] answer;
 *         }
 *         ReleasePinyinObject(t);
 *     }
 *     CloseDictionary();
 *
 * Threads: LoadPinYinLibrary, OpenDictionary, CloseDictionary, GetPinyinObject and
 * ReleasePinyinObject may be called from any thread; they are serialised inside. A tagger object
 * may be used by one thread at a time; different objects may tag at the same time.
 *
 * The user's own readings. Besides the dictionaries, the library reads a plain UTF-8 file of
 * words with their readings, one a line, and the choice of how the tones of 一 and 不 are
 * written:
 *     曾老师 zēng lǎo shī          (tone numbers as well: zeng1 lao3 shi1)
 *     tones original               ("taught", the default, writes 一个 yí gè and 不是 bú shì as
 *                                  first-grade books do; "original" yī gè and bù shì, as
 *                                  dictionaries do: only the changed tones of 一 and 不 differ)
 * Lines starting with "#" are comments. A word of the file takes its readings wherever it occurs
 * in a text, over everything the engine would decide (tone changes and the choice of tones
 * included); where words of the file overlap, the one starting first wins, then the longest. A
 * one-character word's reading comes first among that character's readings. The file is
 *     $ZPHONETIC_READINGS_FILE when set (and not empty), else
 *     $XDG_CONFIG_HOME/zphonetic/readings.txt, else $HOME/.config/zphonetic/readings.txt,
 * and $ZPHONETIC_TONES ("taught" or "original"), when set, overrides the file's choice of tones.
 * OpenDictionary reads the file; GetPinyinObject reads it again when it has changed since, so
 * that every tagger object gets the file as it is when the object is made. A missing file means
 * no words of the user's; a line that is not a word with one reading per character (nor a
 * comment, nor the tones) is skipped, and a file that cannot be read is not used: neither ever
 * makes a function fail. What was skipped is noted, once per version of the file, on standard
 * error ("libPinyinTagger: <file>: line 3 skipped: ...").
 */

#include <stdint.h>

#ifdef __cplusplus
#define PINYIN_TAGGER_API extern "C" __attribute__((visibility("default")))
#else
#include <uchar.h>
#define PINYIN_TAGGER_API __attribute__((visibility("default")))
#endif

/* Status codes. */
#define PINYIN_TAGGER_OK 0
#define PINYIN_TAGGER_E_ARGUMENT (-1)   /* a null or unknown pointer where one is required */
#define PINYIN_TAGGER_E_NOT_OPEN (-2)   /* no dictionaries are open */
#define PINYIN_TAGGER_E_DICTIONARY (-3) /* a dictionary is missing, truncated or corrupt */
#define PINYIN_TAGGER_E_MEMORY (-4)     /* out of memory */
#define PINYIN_TAGGER_E_TOO_LONG (-5)   /* the answer would not fit an int32 length */
#define PINYIN_TAGGER_E_INTERNAL (-6)   /* an unexpected internal error */

/*
 * Prepares the library. `hostInterface` is an interface of the calling application; this library
 * does not use it and accepts NULL. Always returns 0. Calling it is optional and may be repeated.
 */
PINYIN_TAGGER_API int LoadPinYinLibrary(void* hostInterface);

/*
 * Opens the three dictionaries, given by full paths: the character readings ("Pinyin.dic"), the
 * words ("firrule.dic") and the context rules ("secrule.dic"). The files are mapped, not copied,
 * and each is checked (magic, version, size, the checksum of its index) before it is used; each
 * block of a file's data is checked against its own checksum the first time a text needs it, so
 * opening takes the same short time whatever the files' sizes.
 * Success: returns 0; taggers obtained from now on use these dictionaries, and the user's own
 * readings (above), read now. Dictionaries that were open before are closed.
 * Failure: returns PINYIN_TAGGER_E_ARGUMENT for a null path, PINYIN_TAGGER_E_DICTIONARY when a file
 * is missing, truncated or corrupt. No dictionaries are open afterwards (even if some were
 * before): GetPinyinObject fails until a later OpenDictionary succeeds.
 */
PINYIN_TAGGER_API int OpenDictionary(const char16_t* pinyinDic, const char16_t* firstRules,
                                     const char16_t* secondRules);

/*
 * Closes the dictionaries; returns 0, also when none were open. Tagger objects obtained before
 * keep working with the dictionaries they were made with until they are released; the files are
 * unmapped when the last of them is released.
 */
PINYIN_TAGGER_API int CloseDictionary(void);

/*
 * Creates a tagger object in *tagger, with the user's own readings as their file is now (read
 * again when it changed since it was last read).
 * Success: returns 0 and *tagger is non-null; release it with ReleasePinyinObject.
 * Failure: *tagger is set to NULL (when `tagger` is non-null) and the result is
 * PINYIN_TAGGER_E_ARGUMENT (tagger is NULL), PINYIN_TAGGER_E_NOT_OPEN (no dictionaries open) or
 * PINYIN_TAGGER_E_MEMORY.
 */
PINYIN_TAGGER_API int GetPinyinObject(void** tagger);

/*
 * Tags `text` (NUL-terminated UTF-16). The answer holds, for each UTF-16 unit of the text in
 * order, the unit itself, "/" and its reading, with nothing between one reading and the next unit:
 * "中/zhōng国/guó". A reading is NFC pinyin with tone marks (ü and the toned ü precomposed; no
 * tone mark = neutral tone) and never contains "/". In a text of two or more units each unit has
 * exactly one reading, chosen in context; a unit without a reading (kana, fullwidth forms, Latin
 * letters, digits) has an empty one ("ア/"). A text of exactly one unit gets all the modern
 * readings of that character, most common first (the user's own first, see above), separated by
 * single spaces ("还/hái huán").
 * Success: returns 0; *answer is a NUL-terminated buffer allocated with new char16_t[] that the
 * caller owns and frees with delete[]; *answerLength is its length in UTF-16 units, the NUL not
 * counted. An empty text gives an empty answer (length 0, buffer still to be freed).
 * Failure: *answer is NULL and *answerLength 0 (for the out pointers that are non-null); returns
 * PINYIN_TAGGER_E_ARGUMENT (a null pointer, or a tagger not obtained from GetPinyinObject or
 * already released), PINYIN_TAGGER_E_MEMORY, PINYIN_TAGGER_E_TOO_LONG, or
 * PINYIN_TAGGER_E_DICTIONARY when a block of a dictionary that the text needed does not match its
 * checksum (the file and its bytes are named on standard error); the dictionaries then stay
 * damaged, and every later text fails the same way.
 */
PINYIN_TAGGER_API int PinyinTagSen(void* tagger, const char16_t* text, char16_t** answer,
                                   int32_t* answerLength);

/*
 * Destroys a tagger object from GetPinyinObject. Returns 0, or PINYIN_TAGGER_E_ARGUMENT (and does
 * nothing) for NULL, an unknown pointer or one already released.
 */
PINYIN_TAGGER_API int ReleasePinyinObject(void* tagger);

#endif /* ZPHONETIC_PINYIN_TAGGER_H */
