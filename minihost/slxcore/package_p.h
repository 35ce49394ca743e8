// SPDX-License-Identifier: MIT
// The zip package of a deck, read without trusting it and rewritten without touching what was
// not edited.
#pragma once

#include <QByteArray>
#include <QString>
#include <map>
#include <memory>
#include <pugixml.hpp>
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

// How XML parts are parsed: everything kept (whitespace-only text, comments, declarations), and
// line ends as written.
constexpr unsigned kXmlParseOptions =
    (pugi::parse_full | pugi::parse_ws_pcdata) & ~static_cast<unsigned>(pugi::parse_eol);
// Parts larger than this are not decompressed (a slide is a few kilobytes; 64 MiB is absurd).
constexpr std::uint64_t kMaxPartBytes = 64ull << 20;
constexpr std::int64_t kMaxEntries = 20000;

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
    // missing, too large, encrypted or damaged.
    QByteArray read(const std::string& part) const;
    // The part parsed into `doc`; throws also when it is not well-formed.
    void parse(const std::string& part, pugi::xml_document& doc) const;
    // This archive with the parts in `replacements` rewritten (deflated) in place; every other
    // entry is copied as stored, byte for byte, in the directory's order.
    QByteArray withReplacements(const std::map<std::string, QByteArray>& replacements) const;
    // A new archive holding `parts` in this order, deflated.
    static QByteArray build(const std::vector<std::pair<std::string, QByteArray>>& parts);

    [[noreturn]] void fail(const QString& problem) const;

private:
    void checkEntries() const;

    QByteArray m_bytes;
    QString m_name;
    std::unique_ptr<ZipArchive> m_zip;  // reads m_bytes
};

// The part a relationship of `sourcePart` targets ("../slides/slide1.xml" from
// "ppt/slideLayouts/slideLayout1.xml" -> "ppt/slides/slide1.xml"); percent-escapes decoded.
// Throws (through `package`) when the target leaves the archive.
std::string resolveTarget(const Package& package, const std::string& sourcePart,
                          const std::string& target);
// "ppt/presentation.xml" -> "ppt/_rels/presentation.xml.rels".
std::string relationshipsPart(const std::string& part);

}  // namespace minihost
