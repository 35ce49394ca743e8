// SPDX-License-Identifier: MIT
// The dialog's result, written in the layout the user chose: after the text, after each
// character, or in a text box of its own; each with a target text in a shape or without one.
#include "document/dialogresultapply.h"

#include <QStringList>
#include <map>

#include "common/bstrholder.h"
#include "common/comptr.h"
#include "common/hostapplication.h"
#include "document/joinreadings.h"
#include "document/phonetictransaction.h"
#include "document/textaccess.h"
#include "slxcore/slxoldapi.h"

using slxoldapi::Shape;
using slxoldapi::TextFrame;
using slxoldapi::TextRange;

namespace {

// Brackets around a group of readings, by bracket type 0..5 (0 and 3: none).
constexpr char16_t kGroupBrackets[6][2] = {{0, 0}, {0xFF08, 0xFF09}, {u'[', u']'},
                                           {0, 0}, {u'/', u'/'},     {u'{', u'}'}};
// Brackets around each character's reading. Row 3 holds the fullwidth parentheses, but the mask
// below leaves type 3 out: its readings are bold instead. Both the row and the mask are kept.
constexpr char16_t kPerCharBrackets[6][2] = {{0, 0},           {0xFF08, 0xFF09}, {u'[', u']'},
                                             {0xFF08, 0xFF09}, {u'/', u'/'},     {u'{', u'}'}};
constexpr unsigned kPerCharBracketMask = (1u << 1) | (1u << 2) | (1u << 4) | (1u << 5);

constexpr int kBoldBracketType = 3;
constexpr int kNoBracketType = 6;
constexpr int kReadingsAboveTop = kReadingBoxTop - 30;  // above the characters' box

QString bracketed(const QString& text, const char16_t (&pair)[2]) {
    QString result;
    if (pair[0]) result += QChar(pair[0]);
    result += text;
    if (pair[1]) result += QChar(pair[1]);
    return result;
}

bool hasGroupBrackets(int bracketType) {
    return bracketType >= 1 && bracketType <= 5;
}

bool hasPerCharBrackets(int bracketType) {
    return bracketType >= 0 && bracketType <= 5 && (kPerCharBracketMask & (1u << bracketType));
}

// A new text box with `text` (see insertReadingTextBox), its frame and, when asked for, the
// frame's range.
struct NewBox {
    ComPtr<Shape> shape;
    ComPtr<TextFrame> frame;
    ComPtr<TextRange> range;
};

enum class TakeRange { No, Yes };

NewBox addBox(IZApplication* coreApp, const QString& text, const TextStyle* style, int top,
              int charWidth, TakeRange takeRange) {
    NewBox box;
    insertReadingTextBox(coreApp, text, style, kReadingBoxLeft, top, box.shape.put(), charWidth);
    if (box.shape) box.shape->get_TextFrame(box.frame.put());
    if (box.frame && takeRange == TakeRange::Yes) box.frame->get_TextRange(box.range.put());
    return box;
}

void formatSubRange(TextRange* range, int start, int length, const TextStyle* style) {
    if (!range) return;
    ComPtr<TextRange> sub;
    range->Characters(start, length, sub.put());
    applyTextStyle(sub.get(), style);
}

}  // namespace

QString joinPhoneticItems(const QVector<PhoneticItem>& items, int bracketType, bool useReadings) {
    QString group;
    if (useReadings) {
        QStringList readings;
        for (const PhoneticItem& item : items) readings << item.pinyin;
        group = joinReadings(readings);
    } else {
        for (const PhoneticItem& item : items) group += item.text;
    }
    return hasGroupBrackets(bracketType) ? bracketed(group, kGroupBrackets[bracketType]) : group;
}

int insertPerCharReadings(TextRange* range, const QVector<PhoneticItem>& items, int bracketType,
                          const TextStyle* style) {
    if (!range) return 0;
    std::int32_t length = 0;
    range->get_Length(&length);
    if (length <= 0) return 0;
    int total = length;

    // Every position first: insertions must not shift the characters later items refer to.
    std::map<int, ComPtr<TextRange>> characters;
    for (const PhoneticItem& item : items) {
        if (item.pinyin.isEmpty()) continue;
        ComPtr<TextRange> character;
        if (SUCCEEDED(range->Characters(item.index, 1, character.put())) && character)
            characters[item.index] = std::move(character);
    }

    static const char16_t kNone[2] = {0, 0};
    const char16_t(&brackets)[2] =
        hasPerCharBrackets(bracketType) ? kPerCharBrackets[bracketType] : kNone;
    BstrHolder text;
    for (const PhoneticItem& item : items) {
        const auto found = characters.find(item.index);
        if (found == characters.end()) continue;
        TextRange* character = found->second.get();
        const QString reading = bracketed(item.pinyin, brackets);
        text.reassign(reading);
        ComPtr<TextRange> inserted;
        character->InsertAfter(text.get(), inserted.put());
        total += reading.size();
        if (style) formatSubRange(character, 1, reading.size(), style);
    }
    return total;
}

void ZPhoneticSymbolModel::applyPhoneticItems(const QVector<PhoneticItem>& items, int styleType,
                                              int bracketType) {
    ZxApplication* application = hostApplication();
    if (!coreApp || items.isEmpty() || !application) return;
    PhoneticTransaction transaction(application, tr("set phonetic symbol"));

    // Only bracket type 3 formats what it writes, and then only the bold attribute.
    TextStyle boldStyle;
    boldStyle.bold = true;
    const TextStyle* style = bracketType == kBoldBracketType ? &boldStyle : nullptr;
    this->bracketType = bracketType;
    this->styleType = styleType;

    ComPtr<Shape> shape;
    ComPtr<TextFrame> frame;
    ComPtr<TextRange> range;
    {
        Shape* foundShape = nullptr;
        TextFrame* foundFrame = nullptr;
        TextRange* foundRange = nullptr;
        findTextTarget(coreApp, foundShape, foundFrame, foundRange);
        shape = ComPtr<Shape>::adopt(foundShape);
        frame = ComPtr<TextFrame>::adopt(foundFrame);
        range = ComPtr<TextRange>::adopt(foundRange);
    }
    if (!range && shape) {
        shape->get_TextFrame(frame.put());
        if (frame) frame->get_TextRange(range.put());
    }
    const bool target = shape && range && frame;
    std::int32_t length = 0;
    if (target) range->get_Length(&length);

    const QString readings = joinPhoneticItems(items, bracketType, true);
    const QString chars = joinPhoneticItems(items, kNoBracketType, false);
    switch (styleType) {
        case 1:
            if (target) {
                BstrHolder text(readings);
                ComPtr<TextRange> inserted;
                range->InsertAfter(text.get(), inserted.put());
                if (bracketType == kBoldBracketType)
                    formatSubRange(range.get(), length, readings.size(), style);
                frame->put_AutoSize(1);
            } else {
                NewBox box =
                    addBox(coreApp, chars + readings, nullptr, kReadingBoxTop, 12, TakeRange::Yes);
                // Deliberately the old selection's range, not the new box's.
                if (bracketType == kBoldBracketType)
                    formatSubRange(range.get(), chars.size(), readings.size(), style);
                if (box.frame) box.frame->put_AutoSize(1);
                if (box.shape) box.shape->Select(-1);
            }
            break;
        case 2:
            if (target) {
                insertPerCharReadings(range.get(), items, bracketType, style);
                frame->put_AutoSize(1);
            } else {
                NewBox box = addBox(coreApp, chars, nullptr, kReadingBoxTop, 24, TakeRange::Yes);
                const int written =
                    insertPerCharReadings(box.range.get(), items, bracketType, style);
                if (box.shape) {
                    const int width = 12 * written + 24 * chars.size();
                    box.shape->put_Width(static_cast<float>(
                        width >= kReadingBoxMaxWidth + 1 ? kReadingBoxMaxWidth : width));
                }
                if (box.frame) box.frame->put_AutoSize(1);
                if (box.shape) box.shape->Select(-1);
            }
            break;
        case 3:
            if (target) {
                NewBox box = addBox(coreApp, readings, style, kReadingBoxTop, 12, TakeRange::No);
                if (box.shape) box.shape->Select(-1);
                if (box.frame) box.frame->put_AutoSize(1);
            } else {
                NewBox readingsBox =
                    addBox(coreApp, readings, style, kReadingsAboveTop, 12, TakeRange::No);
                if (readingsBox.frame) readingsBox.frame->put_AutoSize(1);
                if (readingsBox.shape) readingsBox.shape->Select(-1);
                NewBox charsBox =
                    addBox(coreApp, chars, nullptr, kReadingBoxTop, 20, TakeRange::No);
                if (charsBox.frame) charsBox.frame->put_AutoSize(1);
                if (charsBox.shape) charsBox.shape->Select(0);
            }
            break;
        default:
            break;  // the choices are stored, the step is committed, nothing is written
    }
    transaction.commit();
}
