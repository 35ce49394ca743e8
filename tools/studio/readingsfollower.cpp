// SPDX-License-Identifier: MIT
#include "readingsfollower.h"

#include <QSet>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/readingsover.h"

namespace {

// The add-on's single-storey letter forms, which its readings carry in place of a and g.
constexpr QChar kAlpha(0x0251);
constexpr QChar kScriptG(0x0261);

}  // namespace

ReadingsFollower::ReadingsFollower(minihost::Deck* deck, minihost::ReadingFunction engine)
    : QObject(deck), m_deck(deck), m_engine(std::move(engine)) {
    connect(deck, &minihost::Deck::edited, this, &ReadingsFollower::follow);
}

void ReadingsFollower::follow(const minihost::DeckChange& change) {
    for (auto slide = change.shapes.cbegin(); slide != change.shapes.cend(); ++slide) {
        for (const int id : slide.value()) {
            const QSet<int> readings = m_deck->readingShapesOver(slide.key(), id);
            if (readings.isEmpty()) continue;
            if (m_deck->text(slide.key(), id).isNull()) {
                // The text is gone: its readings go with it.
                m_deck->removeReadingsOver(slide.key(), id, tr("delete"));
                continue;
            }
            // A step that changed the readings themselves is the user's: they are left as made.
            if (readings.intersects(slide.value())) continue;
            placeAgain(slide.key(), id);
        }
    }
}

std::optional<QList<minihost::Reading>> ReadingsFollower::engineReadings(
    const QString& text, const minihost::ReadingFunction& engine) {
    QString chinese;
    QList<int> positions;
    for (int pos = 0; pos < text.size(); ++pos) {
        if (!minihost::isReadChinese(text.at(pos))) continue;
        chinese += text.at(pos);
        positions << pos;
    }
    QList<minihost::Reading> readings;
    if (chinese.isEmpty()) return readings;
    QVector<minihost::HostReading> given;
    if (!engine || !engine(chinese, given) || given.size() != chinese.size()) return std::nullopt;
    for (int k = 0; k < positions.size(); ++k) {
        QString syllable = given.at(k).text;
        if (syllable.isEmpty()) continue;
        syllable.replace(QLatin1Char('a'), kAlpha).replace(QLatin1Char('g'), kScriptG);
        readings.append({positions.at(k), syllable});
    }
    return readings;
}

void ReadingsFollower::placeAgain(int slide, int textId) {
    if (const auto readings = engineReadings(m_deck->text(slide, textId), m_engine))
        m_deck->placeReadingsOver(slide, textId, *readings, tr("Pinyin over Text"));
}
