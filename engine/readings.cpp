// SPDX-License-Identifier: MIT
#include "engine/readings.h"

#include <QVector>

#include "common/bstrholder.h"

namespace {

bool isChinese(QChar character) {
    return character.unicode() >= 0x4E00 && character.unicode() <= 0x9FA5;
}

// Tags `text` with the handle's provider; null when there is no block.
ReadingBlockPtr tagWithHandle(const PinyinTaggerHandle& handle, const QString& text) {
    BstrHolder bstr(text);
    ReadingBlock* block = nullptr;
    tagText(handle.library, handle.coreApplication, bstr.get(), &block);
    return ReadingBlockPtr(block);
}

}  // namespace

void readingsFromBlock(const ReadingBlock& block, QStringList& readings) {
    readings.clear();
    for (std::int32_t i = 0; i + 1 < block.boundaryCount; ++i) {
        if (block.boundaries && block.boundaries[i] < block.boundaries[i + 1])
            readings.append(QString::fromUtf16(block.text + block.boundaries[i],
                                               block.boundaries[i + 1] - block.boundaries[i]));
        else
            readings.append(QString());
    }
}

void tagAlternatives(const PinyinTaggerHandle* handle, const QString& text,
                     QMap<QChar, QStringList>& candidates) {
    if (!handle) return;
    for (QChar character : text) {
        if (!isChinese(character)) continue;
        // Every occurrence is tagged again: no cache, deliberately simple.
        const ReadingBlockPtr block = tagWithHandle(*handle, QString(character));
        if (block && block->boundaryCount >= 2) {
            QStringList alternatives;
            readingsFromBlock(*block, alternatives);
            candidates.insert(character, alternatives);
        }
    }
}

bool tagReadings(const PinyinTaggerHandle* handle, const QString& text,
                 const QMap<QChar, QStringList>* candidates, QStringList& readings) {
    QString normalised = text;
    for (QChar& character : normalised)
        if (!isChinese(character)) character = QLatin1Char(' ');
    QVector<int> missing;
    if (candidates) {
        for (int i = 0; i < normalised.size(); ++i) {
            if (normalised[i] == QLatin1Char(' ')) continue;
            if (!candidates->contains(normalised[i])) {
                normalised[i] = QLatin1Char(' ');
                missing.append(i);
            }
        }
    }
    if (normalised.isEmpty()) return false;

    bool tagged = false;
    if (handle) {
        const ReadingBlockPtr block = tagWithHandle(*handle, normalised);
        if (block && block->boundaryCount >= 2) {
            readingsFromBlock(*block, readings);
            tagged = true;
        }
    }
    // Two spaces, not "": a Chinese character without readings, as opposed to a non-Chinese one.
    for (int index : missing)
        if (index < readings.size() && readings[index].isEmpty())
            readings[index] = QStringLiteral("  ");
    return tagged;
}
