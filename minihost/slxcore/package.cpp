// SPDX-License-Identifier: MIT
#include "minihost/slxcore/package_p.h"

#include <QStringList>
#include <QUrl>
#include <algorithm>

#include "minihost/slxcore/decklimits.h"
#include "minihost/slxcore/ziparchive_p.h"

namespace minihost {
namespace {

// An entry name that stays inside the archive: relative, forward slashes, no "..".
bool safeEntryName(const QString& name) {
    if (name.isEmpty() || name.startsWith(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return false;
    const QStringList segments = name.split(QLatin1Char('/'));
    if (segments.first().contains(QLatin1Char(':'))) return false;  // a drive letter
    return !segments.contains(QStringLiteral(".."));
}

QString quoted(const std::string& part) {
    return QStringLiteral("\"%1\"").arg(QString::fromStdString(part));
}

// What parsing `xml` will take in memory, reckoned before it is parsed: the parser's copy of the
// bytes, two nodes for every "<" (an element, and the text before it) and an attribute for every
// "=", at the sizes pugixml gives them on a 64-bit machine.
std::uint64_t xmlMemoryOf(const QByteArray& xml) {
    constexpr std::uint64_t kNodeBytes = 64, kAttributeBytes = 40;
    std::uint64_t tags = 0, attributes = 0;
    for (const char c : xml) {
        tags += c == '<';
        attributes += c == '=';
    }
    return static_cast<std::uint64_t>(xml.size()) + 2 * kNodeBytes * tags +
           kAttributeBytes * attributes;
}

// How deep the elements of a document nest, walked without recursion (pugixml walks its tree
// with a loop).
class DepthWalker : public pugi::xml_tree_walker {
public:
    bool for_each(pugi::xml_node& node) override {
        if (node.type() == pugi::node_element) deepest = std::max(deepest, depth() + 1);
        return true;
    }
    int deepest = 0;
};

}  // namespace

Package::Package(QByteArray bytes, QString displayName)
    : m_bytes(std::move(bytes)), m_name(std::move(displayName)) {
    if (m_bytes.isEmpty()) fail(QStringLiteral("empty file"));
    try {
        m_zip = std::make_unique<ZipArchive>(m_bytes, limits::kEntries);
    } catch (const ZipError& e) {
        fail(QString::fromStdString(e.what()));
    }
    checkEntries();
}

void Package::checkEntries() const {
    for (const ZipEntry& entry : m_zip->entries()) {
        const QString name = QString::fromStdString(entry.name);
        if (!safeEntryName(name))
            fail(QStringLiteral("entry \"%1\" points outside the archive").arg(name));
    }
}

Package::~Package() = default;

void Package::fail(const QString& problem) const {
    throw DeckError((m_name + QStringLiteral(": ") + problem).toStdString());
}

void Package::failLimit(const QString& problem) const {
    throw DeckLimitError((m_name + QStringLiteral(": ") + problem).toStdString());
}

bool Package::has(const std::string& part) const {
    return m_zip->find(part) != nullptr;
}

QByteArray Package::read(const std::string& part) const {
    const ZipEntry* entry = m_zip->find(part);
    if (!entry) fail(QStringLiteral("missing part %1").arg(quoted(part)));
    if (entry->size > limits::kPartBytes)
        failLimit(QStringLiteral("part %1 claims %2 bytes (the limit is %3)")
                      .arg(quoted(part))
                      .arg(entry->size)
                      .arg(limits::kPartBytes));
    // Counted before it is decompressed: the directory's size is checked when it is.
    if (!m_counted.count(part)) {
        if (m_decompressed + entry->size > limits::kDeckBytes)
            failLimit(QStringLiteral("part %1 takes the parts read to %2 bytes decompressed "
                                     "(the limit is %3)")
                          .arg(quoted(part))
                          .arg(m_decompressed + entry->size)
                          .arg(limits::kDeckBytes));
        m_decompressed += entry->size;
        m_counted.insert(part);
    }
    try {
        return m_zip->read(*entry, quoted(part), limits::kPartBytes);
    } catch (const ZipError& e) {
        fail(QString::fromStdString(e.what()));
    }
}

void Package::parse(const std::string& part, pugi::xml_document& doc) const {
    const QByteArray data = read(part);
    const std::uint64_t memory = xmlMemoryOf(data);
    if (m_xmlMemory + memory > limits::kXmlMemory)
        failLimit(QStringLiteral("part %1 takes the XML held in memory to about %2 bytes (the "
                                 "limit is %3)")
                      .arg(quoted(part))
                      .arg(m_xmlMemory + memory)
                      .arg(limits::kXmlMemory));
    m_xmlMemory += memory;
    const pugi::xml_parse_result result =
        doc.load_buffer(data.constData(), static_cast<std::size_t>(data.size()), kXmlParseOptions,
                        pugi::encoding_auto);
    // Memory running out is not the file's fault, and not a matter of well-formedness.
    if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
    if (!result)
        fail(QStringLiteral("part %1 is not well-formed XML (%2 at byte %3)")
                 .arg(quoted(part), QString::fromUtf8(result.description()))
                 .arg(result.offset));
    DepthWalker walker;
    doc.traverse(walker);
    if (walker.deepest > limits::kXmlDepth)
        failLimit(QStringLiteral("part %1 nests elements %2 deep (the limit is %3)")
                      .arg(quoted(part))
                      .arg(walker.deepest)
                      .arg(limits::kXmlDepth));
}

QByteArray Package::withReplacements(const std::map<std::string, QByteArray>& replacements) const {
    try {
        return m_zip->withReplacements(replacements);
    } catch (const ZipError& e) {
        fail(QStringLiteral("cannot be rewritten: %1").arg(QString::fromStdString(e.what())));
    }
}

QByteArray Package::build(const std::vector<std::pair<std::string, QByteArray>>& parts) {
    try {
        return ZipArchive::build(parts);
    } catch (const ZipError& e) {
        throw DeckError(std::string("new deck: ") + e.what());
    }
}

std::string relationshipsPart(const std::string& part) {
    const std::size_t slash = part.rfind('/');
    const std::string folder =
        slash == std::string::npos ? std::string() : part.substr(0, slash + 1);
    const std::string file = slash == std::string::npos ? part : part.substr(slash + 1);
    return folder + "_rels/" + file + ".rels";
}

std::string resolveTarget(const Package& package, const std::string& sourcePart,
                          const std::string& target) {
    const QString decoded = QUrl::fromPercentEncoding(QByteArray::fromStdString(target));
    QStringList segments;
    if (!decoded.startsWith(QLatin1Char('/'))) {
        segments = QString::fromStdString(sourcePart).split(QLatin1Char('/'));
        segments.removeLast();  // the source's own file name
    }
    for (const QString& segment : decoded.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (segment == QLatin1String(".")) continue;
        if (segment == QLatin1String("..")) {
            if (segments.isEmpty())
                package.fail(
                    QStringLiteral("relationship target \"%1\" of \"%2\" points outside "
                                   "the archive")
                        .arg(QString::fromStdString(target), QString::fromStdString(sourcePart)));
            segments.removeLast();
            continue;
        }
        segments << segment;
    }
    return segments.join(QLatin1Char('/')).toStdString();
}

}  // namespace minihost
