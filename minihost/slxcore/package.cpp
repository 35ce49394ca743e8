// SPDX-License-Identifier: MIT
#include "minihost/slxcore/package_p.h"

#include <zip.h>

#include <QStringList>
#include <QUrl>
#include <cstdlib>
#include <cstring>
#include <memory>

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

// The bytes a writable buffer source holds after zip_close.
QByteArray sourceBytes(zip_source_t* source) {
    QByteArray out;
    if (zip_source_open(source) < 0) return out;
    zip_source_seek(source, 0, SEEK_END);
    const zip_int64_t size = zip_source_tell(source);
    zip_source_seek(source, 0, SEEK_SET);
    if (size > 0) {
        out.resize(static_cast<int>(size));
        if (zip_source_read(source, out.data(), static_cast<zip_uint64_t>(size)) != size)
            out.clear();
    }
    zip_source_close(source);
    return out;
}

struct SourceDeleter {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};

}  // namespace

Package::Package(QByteArray bytes, QString displayName)
    : m_bytes(std::move(bytes)), m_name(std::move(displayName)) {
    if (m_bytes.isEmpty()) fail(QStringLiteral("empty file"));
    zip_error_t error;
    zip_error_init(&error);
    m_source = zip_source_buffer_create(m_bytes.constData(),
                                        static_cast<zip_uint64_t>(m_bytes.size()), 0, &error);
    if (!m_source) fail(QStringLiteral("out of memory"));
    m_archive = zip_open_from_source(m_source, ZIP_RDONLY | ZIP_CHECKCONS, &error);
    const int code = zip_error_code_zip(&error);
    zip_error_fini(&error);
    if (!m_archive) {
        zip_source_free(m_source);
        m_source = nullptr;
        if (code == ZIP_ER_NOZIP) fail(QStringLiteral("not a zip archive"));
        if (code == ZIP_ER_INCONS) fail(QStringLiteral("damaged zip archive (inconsistent directory)"));
        fail(QStringLiteral("unreadable zip archive (libzip error %1)").arg(code));
    }
    try {
        checkEntries();
    } catch (...) {
        zip_discard(m_archive);  // the destructor does not run for a throwing constructor
        m_archive = nullptr;
        throw;
    }
}

void Package::checkEntries() const {
    const zip_int64_t count = zip_get_num_entries(m_archive, 0);
    if (count > kMaxEntries)
        fail(QStringLiteral("too many entries (%1; the limit is %2)").arg(count).arg(kMaxEntries));
    for (zip_int64_t i = 0; i < count; ++i) {
        const char* raw = zip_get_name(m_archive, static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
        const QString name = QString::fromUtf8(raw ? raw : "");
        if (!safeEntryName(name))
            fail(QStringLiteral("entry \"%1\" points outside the archive").arg(name));
    }
}

Package::~Package() {
    if (m_archive) zip_discard(m_archive);  // also frees the source
}

void Package::fail(const QString& problem) const {
    throw DeckError((m_name + QStringLiteral(": ") + problem).toStdString());
}

bool Package::has(const std::string& part) const {
    return zip_name_locate(m_archive, part.c_str(), ZIP_FL_ENC_RAW) >= 0;
}

QByteArray Package::read(const std::string& part) const {
    const zip_int64_t index = zip_name_locate(m_archive, part.c_str(), ZIP_FL_ENC_RAW);
    if (index < 0) fail(QStringLiteral("missing part %1").arg(quoted(part)));
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat_index(m_archive, static_cast<zip_uint64_t>(index), 0, &stat) < 0 ||
        !(stat.valid & ZIP_STAT_SIZE))
        fail(QStringLiteral("part %1 has no size").arg(quoted(part)));
    if (stat.size > kMaxPartBytes)
        fail(QStringLiteral("part %1 claims %2 bytes (the limit is %3)")
                 .arg(quoted(part))
                 .arg(stat.size)
                 .arg(kMaxPartBytes));
    zip_file_t* file = zip_fopen_index(m_archive, static_cast<zip_uint64_t>(index), 0);
    if (!file) {
        const int code = zip_error_code_zip(zip_get_error(m_archive));
        if (code == ZIP_ER_NOPASSWD || code == ZIP_ER_ENCRNOTSUPP || code == ZIP_ER_WRONGPASSWD)
            fail(QStringLiteral("part %1 is encrypted").arg(quoted(part)));
        if (code == ZIP_ER_COMPNOTSUPP)
            fail(QStringLiteral("part %1 uses an unsupported compression method").arg(quoted(part)));
        fail(QStringLiteral("part %1 cannot be opened").arg(quoted(part)));
    }
    std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> holder(file, zip_fclose);
    // Never more than the header promised (plus one byte, to notice a lie).
    QByteArray data;
    data.resize(static_cast<int>(stat.size) + 1);
    zip_int64_t total = 0;
    for (;;) {
        const zip_int64_t got = zip_fread(file, data.data() + total,
                                          static_cast<zip_uint64_t>(data.size() - total));
        if (got < 0) {
            if (zip_error_code_zip(zip_file_get_error(file)) == ZIP_ER_CRC)
                fail(QStringLiteral("part %1 is damaged (checksum mismatch)").arg(quoted(part)));
            fail(QStringLiteral("part %1 is damaged (cannot be decompressed)").arg(quoted(part)));
        }
        if (got == 0) break;
        total += got;
        if (total > static_cast<zip_int64_t>(stat.size))
            fail(QStringLiteral("part %1 holds more data than its header says").arg(quoted(part)));
    }
    if (total != static_cast<zip_int64_t>(stat.size))
        fail(QStringLiteral("part %1 is truncated").arg(quoted(part)));
    data.resize(static_cast<int>(total));
    return data;
}

void Package::parse(const std::string& part, pugi::xml_document& doc) const {
    const QByteArray data = read(part);
    const pugi::xml_parse_result result =
        doc.load_buffer(data.constData(), static_cast<std::size_t>(data.size()), kXmlParseOptions,
                        pugi::encoding_auto);
    if (!result)
        fail(QStringLiteral("part %1 is not well-formed XML (%2 at byte %3)")
                 .arg(quoted(part), QString::fromUtf8(result.description()))
                 .arg(result.offset));
}

QByteArray Package::withReplacements(const std::map<std::string, QByteArray>& replacements) const {
    zip_error_t error;
    zip_error_init(&error);
    // libzip writes the new archive into the source it was opened from, and may hand the old
    // buffer's memory to the new one: it gets a copy it owns (and frees), never our bytes.
    void* copy = std::malloc(static_cast<std::size_t>(m_bytes.size()));
    if (!copy) throw std::bad_alloc();
    std::memcpy(copy, m_bytes.constData(), static_cast<std::size_t>(m_bytes.size()));
    std::unique_ptr<zip_source_t, SourceDeleter> source(zip_source_buffer_create(
        copy, static_cast<zip_uint64_t>(m_bytes.size()), 1, &error));
    if (!source) std::free(copy);
    zip_t* archive = source ? zip_open_from_source(source.get(), 0, &error) : nullptr;
    zip_error_fini(&error);
    if (!archive) fail(QStringLiteral("cannot be rewritten"));
    zip_source_keep(source.get());  // survives zip_close, which hands it back holding the result
    for (const auto& [part, data] : replacements) {
        const zip_int64_t index = zip_name_locate(archive, part.c_str(), ZIP_FL_ENC_RAW);
        zip_source_t* content = zip_source_buffer(archive, data.constData(),
                                                  static_cast<zip_uint64_t>(data.size()), 0);
        if (index < 0 || !content ||
            zip_file_replace(archive, static_cast<zip_uint64_t>(index), content, 0) < 0) {
            zip_source_free(content);
            zip_discard(archive);
            fail(QStringLiteral("cannot replace part %1").arg(quoted(part)));
        }
        zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE, 0);
    }
    if (zip_close(archive) < 0) {
        zip_discard(archive);
        fail(QStringLiteral("cannot be rewritten"));
    }
    return sourceBytes(source.get());
}

QByteArray Package::build(const std::vector<std::pair<std::string, QByteArray>>& parts) {
    zip_error_t error;
    zip_error_init(&error);
    std::unique_ptr<zip_source_t, SourceDeleter> source(zip_source_buffer_create(nullptr, 0, 0, &error));
    zip_t* archive = source ? zip_open_from_source(source.get(), ZIP_TRUNCATE, &error) : nullptr;
    zip_error_fini(&error);
    if (!archive) throw DeckError("new deck: cannot create its archive");
    zip_source_keep(source.get());
    for (const auto& [part, data] : parts) {
        zip_source_t* content = zip_source_buffer(archive, data.constData(),
                                                  static_cast<zip_uint64_t>(data.size()), 0);
        if (!content || zip_file_add(archive, part.c_str(), content, ZIP_FL_ENC_UTF_8) < 0) {
            zip_source_free(content);
            zip_discard(archive);
            throw DeckError("new deck: cannot add part " + part);
        }
    }
    if (zip_close(archive) < 0) {
        zip_discard(archive);
        throw DeckError("new deck: cannot create its archive");
    }
    return sourceBytes(source.get());
}

std::string relationshipsPart(const std::string& part) {
    const std::size_t slash = part.rfind('/');
    const std::string folder = slash == std::string::npos ? std::string() : part.substr(0, slash + 1);
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
                package.fail(QStringLiteral("relationship target \"%1\" of \"%2\" points outside "
                                            "the archive")
                                 .arg(QString::fromStdString(target),
                                      QString::fromStdString(sourcePart)));
            segments.removeLast();
            continue;
        }
        segments << segment;
    }
    return segments.join(QLatin1Char('/')).toStdString();
}

}  // namespace minihost
