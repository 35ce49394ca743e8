// SPDX-License-Identifier: MIT
// Helpers for tests over decks: the public test decks, zip inspection, and the object model's
// out-pointers.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace decktest {

// The public test decks' folder; tests that need them skip when it is absent.
QString testDeckDir();
QStringList testDeckNames();  // "poi-bug64693.pptx", ...
// The real-world decks (testDeckDir()/real), by name.
QString realDeckDir();
QStringList realDeckNames();
QByteArray readFile(const QString& path);

struct ZipEntry {
    QString name;
    std::uint32_t crc = 0;
    std::uint64_t compressedSize = 0;
    std::uint64_t size = 0;
    int method = 0;
    QByteArray data;  // uncompressed
    QByteArray raw;   // as stored (compressed)
};
// Every entry of a zip held in `bytes`, in archive order (empty when it is not one).
std::vector<ZipEntry> zipEntries(const QByteArray& bytes);
QByteArray zipPart(const QByteArray& bytes, const QString& name);
// A zip of `parts` in order; `stored` keeps them uncompressed.
QByteArray makeZip(const std::vector<std::pair<QString, QByteArray>>& parts, bool stored = false);
// Overwrites the uncompressed size that the local and central headers of entry `name` claim.
QByteArray withClaimedSize(QByteArray zip, const QString& name, std::uint32_t size);

using Parts = std::vector<std::pair<QString, QByteArray>>;
// The parts of a new one-slide deck, to be spoilt or filled in by a test.
Parts blankParts();
Parts replaced(Parts parts, const QString& name, const QByteArray& data);
Parts without(Parts parts, const QString& name);
QByteArray partOf(const Parts& parts, const QString& name);
// A one-slide deck whose slide holds `shapes` (p:sp elements written with the prefixes p: and a:).
QByteArray deckWithShapes(const QByteArray& shapes);

}  // namespace decktest
