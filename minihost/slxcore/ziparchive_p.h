// SPDX-License-Identifier: MIT
// A zip archive read as the common unzip programs read it, and written with the entries that
// were not replaced copied byte for byte.
//
// The central directory is the truth: local headers only have to carry the entry's name (their
// sizes, extra fields, timestamps and flags may differ, as many real writers leave them), and
// every entry's data is checked (sizes, checksum) when it is read. Refused: a missing or
// truncated central directory, entries outside the file or overlapping each other or the
// directory, duplicate names, spanned archives. A stub before the archive is allowed.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace minihost {

// What is wrong with an archive or an entry, without the file's name ("damaged zip archive
// (...)", "part \"x\" is truncated").
class ZipError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ZipEntry {
    std::string name;  // as stored (UTF-8 or the archive's code page, unchanged)
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t crc = 0;
    std::uint64_t compressedSize = 0;
    std::uint64_t size = 0;
    std::uint64_t localOffset = 0;  // in the buffer (a leading stub already counted)
    std::uint64_t dataOffset = 0;
    std::uint64_t recordEnd = 0;    // after the data and its descriptor, when one is recognised
    bool descriptorCopied = false;  // recordEnd includes the data descriptor the flags announce
    QByteArray central;             // the central directory record, as stored
};

class ZipArchive {
public:
    // Reads the directory of the archive in `bytes` (which must outlive this object). Throws
    // ZipError. More than `maxEntries` entries are refused before any is read.
    ZipArchive(const QByteArray& bytes, std::int64_t maxEntries);

    const std::vector<ZipEntry>& entries() const { return m_entries; }
    const ZipEntry* find(const std::string& name) const;
    // The entry's data, decompressed and checked against the directory's size and checksum.
    // `part` is the quoted name the messages use. Sizes above `limit` are refused unread.
    QByteArray read(const ZipEntry& entry, const QString& part, std::uint64_t limit) const;
    // The archive with the entries named in `replacements` written anew (deflated) in their
    // place; every other entry is copied as stored (its local record, data and central record
    // byte for byte, only its offset updated). A leading stub is not copied.
    QByteArray withReplacements(const std::map<std::string, QByteArray>& replacements) const;

    // A new archive of `parts` in this order, deflated, names marked UTF-8.
    static QByteArray build(const std::vector<std::pair<std::string, QByteArray>>& parts);

private:
    void readDirectory(std::int64_t maxEntries);
    void locateLocalRecords();

    const QByteArray& m_bytes;
    std::vector<ZipEntry> m_entries;
    std::map<std::string, std::size_t> m_byName;
    std::uint64_t m_directoryStart = 0;
    QByteArray m_comment;
};

}  // namespace minihost
