// SPDX-License-Identifier: MIT
#include "document/dialogapply.h"

#include <map>

#include "common/bstrholder.h"
#include "common/comptr.h"
#include "common/hostapplication.h"
#include "document/textaccess.h"
#include "nvo/transaction.h"
#include "slxcore/slxoldapi.h"

namespace {

struct Brackets {
    QString open;
    QString close;
};

// The grouped readings' brackets.
Brackets groupBrackets(int bracketType) {
    switch (bracketType) {
    case 1:
        return {QStringLiteral("\uFF08"), QStringLiteral("\uFF09")};
    case 2:
        return {QStringLiteral("["), QStringLiteral("]")};
    case 4:
        return {QStringLiteral("/"), QStringLiteral("/")};
    case 5:
        return {QStringLiteral("{"), QStringLiteral("}")};
    default:
        return {};
    }
}

// The per-character table holds fullwidth parentheses in row 3 too, but only the types in the
// mask {1, 2, 4, 5} use their row: type 3 has no brackets. Both the row and the mask are kept.
Brackets perCharBrackets(int bracketType) {
    static const Brackets table[] = {
        {},
        {QStringLiteral("\uFF08"), QStringLiteral("\uFF09")},
        {QStringLiteral("["), QStringLiteral("]")},
        {QStringLiteral("\uFF08"), QStringLiteral("\uFF09")},
        {QStringLiteral("/"), QStringLiteral("/")},
        {QStringLiteral("{"), QStringLiteral("}")},
    };
    constexpr unsigned kMask = (1u << 1) | (1u << 2) | (1u << 4) | (1u << 5);
    if (bracketType < 1 || bracketType > 5 || !(kMask & (1u << bracketType)))
        return {};
    return table[bracketType];
}

// The sub-range (start, length) of `range`, or an empty holder.
ComPtr<slxoldapi::TextRange> characters(slxoldapi::TextRange* range, int start, int length) {
    ComPtr<slxoldapi::TextRange> part;
    if (range && range->Characters(start, length, part.put()) < 0)
        part.reset();
    return part;
}

ComPtr<slxoldapi::TextFrame> frameOf(slxoldapi::Shape* shape) {
    ComPtr<slxoldapi::TextFrame> frame;
    if (shape && shape->get_TextFrame(frame.put()) < 0)
        frame.reset();
    return frame;
}

ComPtr<slxoldapi::TextRange> rangeOf(slxoldapi::TextFrame* frame) {
    ComPtr<slxoldapi::TextRange> range;
    if (frame && frame->get_TextRange(range.put()) < 0)
        range.reset();
    return range;
}

void autoSize(slxoldapi::TextFrame* frame) {
    if (frame)
        frame->put_AutoSize(1);
}

}  // namespace

QString joinPhoneticItems(const QVector<PhoneticItem>& items, int bracketType, bool useReadings) {
    const Brackets brackets = groupBrackets(bracketType);
    QString joined = brackets.open;
    for (int i = 0; i + 1 < items.size(); ++i) {
        if (!useReadings) {
            joined += items[i].text;
        } else if (!items[i].pinyin.isEmpty()) {
            joined += items[i].pinyin;
            joined += QLatin1Char(' ');
        }
    }
    if (!items.isEmpty())
        joined += useReadings ? items.constLast().pinyin : items.constLast().text;
    joined += brackets.close;
    return joined;
}

int insertPerCharReadings(slxoldapi::TextRange* range, const QVector<PhoneticItem>& items, int bracketType,
                          const TextStyle* style) {
    if (!range)
        return 0;
    std::int32_t length = 0;
    if (range->get_Length(&length) < 0 || length <= 0)
        return 0;
    int total = length;
    // Every character range is taken before the first insertion, so each index refers to the
    // text as it was; the ranges then shift along with the insertions.
    std::map<int, ComPtr<slxoldapi::TextRange>> characterRanges;
    for (const PhoneticItem& item : items) {
        if (item.pinyin.isEmpty())
            continue;
        ComPtr<slxoldapi::TextRange> character = characters(range, item.index, 1);
        if (character)
            characterRanges[item.index] = std::move(character);
    }
    const Brackets brackets = perCharBrackets(bracketType);
    BstrHolder text;
    for (const PhoneticItem& item : items) {
        const auto found = characterRanges.find(item.index);
        if (found == characterRanges.end())
            continue;
        const QString s = brackets.open + item.pinyin + brackets.close;
        text.reassign(s);
        ComPtr<slxoldapi::TextRange> inserted;
        found->second->InsertAfter(text.get(), inserted.put());
        total += s.size();
        if (style)
            applyTextStyle(characters(found->second.get(), 1, s.size()).get(), style);
    }
    return total;
}

void ZPhoneticSymbolModel::applyPhoneticItems(const QVector<PhoneticItem>& items, int styleType, int bracketType) {
    if (!coreApp || items.isEmpty())
        return;
    ZxApplication* application = hostApplication();
    const QString stepName = tr("set phonetic symbol");
    ZFormatTransGuard guard(application ? application->coreApplication() : coreApp, stepName, true);
    ZFormatStaticTransGuard* hostStep = ZFormatStaticTransGuard::instance();
    if (hostStep->isActive())
        hostStep->setName(stepName);
    else
        guard.start();

    // Only bracket type 3 formats what is written, and then only as bold.
    TextStyle bold;
    bold.bold = true;
    const TextStyle* style = bracketType == 3 ? &bold : nullptr;
    this->bracketType = bracketType;
    this->styleType = styleType;

    slxoldapi::Shape* rawShape = nullptr;
    slxoldapi::TextFrame* rawFrame = nullptr;
    slxoldapi::TextRange* rawRange = nullptr;
    findTextTarget(coreApp, rawShape, rawFrame, rawRange);
    ComPtr<slxoldapi::Shape> shape = ComPtr<slxoldapi::Shape>::adopt(rawShape);
    ComPtr<slxoldapi::TextFrame> frame = ComPtr<slxoldapi::TextFrame>::adopt(rawFrame);
    ComPtr<slxoldapi::TextRange> range = ComPtr<slxoldapi::TextRange>::adopt(rawRange);
    if (!range && shape) {
        frame = frameOf(shape.get());
        if (frame)
            range = rangeOf(frame.get());
    }
    const bool target = shape && range && frame;
    std::int32_t length = 0;
    if (target)
        range->get_Length(&length);

    const QString readings = joinPhoneticItems(items, bracketType, true);
    const QString chars = joinPhoneticItems(items, 6, false);
    switch (styleType) {
    case 1:
        if (target) {
            BstrHolder text(readings);
            ComPtr<slxoldapi::TextRange> inserted;
            range->InsertAfter(text.get(), inserted.put());
            if (bracketType == 3)
                applyTextStyle(characters(range.get(), length, readings.size()).get(), style);
            autoSize(frame.get());
        } else {
            ComPtr<slxoldapi::Shape> box;
            insertReadingTextBox(coreApp, chars + readings, nullptr, 400, 250, box.put(), 12);
            ComPtr<slxoldapi::TextFrame> boxFrame = frameOf(box.get());
            const ComPtr<slxoldapi::TextRange> boxRange = rangeOf(boxFrame.get());  // taken, not used
            // Deliberately the old selection's range, not the new box's.
            if (bracketType == 3 && range)
                applyTextStyle(characters(range.get(), chars.size(), readings.size()).get(), style);
            autoSize(boxFrame.get());
            if (box)
                box->Select(-1);
        }
        break;
    case 2:
        if (target) {
            insertPerCharReadings(range.get(), items, bracketType, style);
            autoSize(frame.get());
        } else {
            ComPtr<slxoldapi::Shape> box;
            insertReadingTextBox(coreApp, chars, nullptr, 400, 250, box.put(), 24);
            ComPtr<slxoldapi::TextFrame> boxFrame = frameOf(box.get());
            ComPtr<slxoldapi::TextRange> boxRange = rangeOf(boxFrame.get());
            const int n = insertPerCharReadings(boxRange.get(), items, bracketType, style);
            int width = 12 * n + 24 * chars.size();
            if (width >= 851)
                width = 850;
            if (box)
                box->put_Width(static_cast<float>(width));
            autoSize(boxFrame.get());
            if (box)
                box->Select(-1);
        }
        break;
    case 3:
        if (target) {
            ComPtr<slxoldapi::Shape> box;
            insertReadingTextBox(coreApp, readings, style, 400, 250, box.put(), 12);
            ComPtr<slxoldapi::TextFrame> boxFrame = frameOf(box.get());
            if (box)
                box->Select(-1);
            autoSize(boxFrame.get());
        } else {
            ComPtr<slxoldapi::Shape> readingsBox;
            insertReadingTextBox(coreApp, readings, style, 400, 220, readingsBox.put(), 12);
            autoSize(frameOf(readingsBox.get()).get());
            if (readingsBox)
                readingsBox->Select(-1);
            ComPtr<slxoldapi::Shape> charsBox;
            insertReadingTextBox(coreApp, chars, nullptr, 400, 250, charsBox.put(), 20);
            autoSize(frameOf(charsBox.get()).get());
            if (charsBox)
                charsBox->Select(0);
        }
        break;
    default:
        break;
    }
    if (!hostStep->isActive())
        guard.commit();
}
