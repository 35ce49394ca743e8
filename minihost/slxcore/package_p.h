// SPDX-License-Identifier: MIT
// The zip package of a deck, read without trusting it and rewritten without touching what was
// not edited.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <map>
#include <memory>
#include <pugixml.hpp>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace minihost {

class ZipArchive;

// A deck that cannot be read or written. The message is complete: "<file>: <what is wrong>".
class DeckError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A deck past one of the limits of decklimits.h. Unlike a damaged layout or picture, which is
// drawn without, it is never passed over: the deck is refused.
class DeckLimitError : public DeckError {
public:
    using DeckError::DeckError;
};

// How XML parts are parsed: everything kept (whitespace-only text, comments, declarations), and
// line ends as written.
constexpr unsigned kXmlParseOptions =
    (pugi::parse_full | pugi::parse_ws_pcdata) & ~static_cast<unsigned>(pugi::parse_eol);
class Package {
public:
    // Opens the archive in `bytes`, checking its directory (ziparchive_p.h says what is
    // accepted): every entry name must stay inside the archive. Throws DeckError naming
    // `displayName`.
    Package(QByteArray bytes, QString displayName);
    ~Package();
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    const QByteArray& bytes() const { return m_bytes; }
    const QString& displayName() const { return m_name; }
    bool has(const std::string& part) const;
    // The part's bytes, checked against the directory's size and checksum; throws when it is
    // missing, too large, encrypted or damaged. Every part read counts once towards the deck's
    // decompressed bytes (limits::kDeckBytes), however often it is read: DeckLimitError past them.
    QByteArray read(const std::string& part) const;
    // The part parsed into `doc`; throws also when it is not well-formed, nests its elements
    // deeper than limits::kXmlDepth, or would take the XML held for the deck past
    // limits::kXmlMemory (DeckLimitError for both). Callers parse a part once and keep it.
    void parse(const std::string& part, pugi::xml_document& doc) const;
    // This archive with the parts in `replacements` rewritten (deflated) in place; every other
    // entry is copied as stored, byte for byte, in the directory's order.
    QByteArray withReplacements(const std::map<std::string, QByteArray>& replacements) const;
    // A new archive holding `parts` in this order, deflated.
    static QByteArray build(const std::vector<std::pair<std::string, QByteArray>>& parts);

    [[noreturn]] void fail(const QString& problem) const;
    // The same, as a limit passed.
    [[noreturn]] void failLimit(const QString& problem) const;

    // What was read so far: decompressed bytes, and the memory the parsed XML is reckoned at.
    std::uint64_t decompressedBytes() const { return m_decompressed; }
    std::uint64_t xmlMemory() const { return m_xmlMemory; }

private:
    void checkEntries() const;

    QByteArray m_bytes;
    QString m_name;
    std::unique_ptr<ZipArchive> m_zip;        // reads m_bytes
    mutable std::set<std::string> m_counted;  // parts whose bytes m_decompressed holds
    mutable std::uint64_t m_decompressed = 0;
    mutable std::uint64_t m_xmlMemory = 0;
};

// The part a relationship of `sourcePart` targets ("../slides/slide1.xml" from
// "ppt/slideLayouts/slideLayout1.xml" -> "ppt/slides/slide1.xml"); percent-escapes decoded.
// Throws (through `package`) when the target leaves the archive.
std::string resolveTarget(const Package& package, const std::string& sourcePart,
                          const std::string& target);
// "ppt/presentation.xml" -> "ppt/_rels/presentation.xml.rels".
std::string relationshipsPart(const std::string& part);

}  // namespace minihost
