// SPDX-License-Identifier: MIT
#include "decktestutil.h"

#include <zip.h>

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cstring>
#include <memory>

#include "minihost/slxcore/deck.h"

namespace decktest {

QString testDeckDir() {
    return QStringLiteral(ZPHONETIC_TESTDECKS_DIR);
}

QStringList testDeckNames() {
    return QDir(testDeckDir()).entryList({QStringLiteral("*.pptx")}, QDir::Files, QDir::Name);
}

QString realDeckDir() {
    return testDeckDir() + QStringLiteral("/real");
}

QStringList realDeckNames() {
    return QDir(realDeckDir()).entryList({QStringLiteral("*.pptx")}, QDir::Files, QDir::Name);
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::vector<ZipEntry> zipEntries(const QByteArray& bytes) {
    std::vector<ZipEntry> entries;
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(bytes.constData(), bytes.size(), 0, &error);
    zip_t* archive = source ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr;
    zip_error_fini(&error);
    if (!archive) {
        zip_source_free(source);
        return entries;
    }
    const zip_int64_t count = zip_get_num_entries(archive, 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        zip_stat_t stat;
        zip_stat_index(archive, i, 0, &stat);
        ZipEntry entry;
        entry.name = QString::fromUtf8(stat.name);
        entry.crc = stat.crc;
        entry.compressedSize = stat.comp_size;
        entry.size = stat.size;
        entry.method = stat.comp_method;
        entry.data.resize(static_cast<int>(stat.size));
        if (zip_file_t* file = zip_fopen_index(archive, i, 0)) {
            zip_fread(file, entry.data.data(), stat.size);
            zip_fclose(file);
        }
        entry.raw.resize(static_cast<int>(stat.comp_size));
        if (zip_file_t* file = zip_fopen_index(archive, i, ZIP_FL_COMPRESSED)) {
            zip_fread(file, entry.raw.data(), stat.comp_size);
            zip_fclose(file);
        }
        entries.push_back(entry);
    }
    zip_discard(archive);
    return entries;
}

QByteArray zipPart(const QByteArray& bytes, const QString& name) {
    for (const ZipEntry& entry : zipEntries(bytes))
        if (entry.name == name) return entry.data;
    return {};
}

QByteArray makeZip(const std::vector<std::pair<QString, QByteArray>>& parts, bool stored) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(nullptr, 0, 0, &error);
    zip_t* archive = zip_open_from_source(source, ZIP_TRUNCATE, &error);
    zip_error_fini(&error);
    zip_source_keep(source);
    for (const auto& [name, data] : parts) {
        zip_source_t* content = zip_source_buffer(archive, data.constData(), data.size(), 0);
        const zip_int64_t index =
            zip_file_add(archive, name.toUtf8().constData(), content, ZIP_FL_ENC_UTF_8);
        if (stored) zip_set_file_compression(archive, index, ZIP_CM_STORE, 0);
    }
    zip_close(archive);
    QByteArray out;
    zip_source_open(source);
    zip_source_seek(source, 0, SEEK_END);
    out.resize(static_cast<int>(zip_source_tell(source)));
    zip_source_seek(source, 0, SEEK_SET);
    zip_source_read(source, out.data(), out.size());
    zip_source_close(source);
    zip_source_free(source);
    return out;
}

QByteArray withClaimedSize(QByteArray zip, const QString& name, std::uint32_t size) {
    const QByteArray wanted = name.toUtf8();
    auto patch = [&](const char* signature, int sizeOffset, int nameOffset) {
        for (int at = zip.indexOf(signature); at >= 0; at = zip.indexOf(signature, at + 4)) {
            if (zip.mid(at + nameOffset, wanted.size()) != wanted) continue;
            for (int i = 0; i < 4; ++i)  // little-endian, as zip headers are
                zip[at + sizeOffset + i] = static_cast<char>((size >> (8 * i)) & 0xFF);
        }
    };
    patch("PK\x03\x04", 22, 30);
    patch("PK\x01\x02", 24, 46);
    return zip;
}

Parts blankParts() {
    QString error;
    const QByteArray bytes = minihost::Deck::create(1)->toBytes(&error);
    Parts parts;
    for (const ZipEntry& entry : zipEntries(bytes)) parts.emplace_back(entry.name, entry.data);
    return parts;
}

Parts replaced(Parts parts, const QString& name, const QByteArray& data) {
    for (auto& part : parts)
        if (part.first == name) part.second = data;
    return parts;
}

Parts without(Parts parts, const QString& name) {
    parts.erase(std::remove_if(parts.begin(), parts.end(),
                               [&](const auto& part) { return part.first == name; }),
                parts.end());
    return parts;
}

QByteArray partOf(const Parts& parts, const QString& name) {
    for (const auto& part : parts)
        if (part.first == name) return part.second;
    return {};
}

QByteArray deckWithShapes(const QByteArray& shapes) {
    const Parts parts = blankParts();
    QByteArray slide = partOf(parts, QStringLiteral("ppt/slides/slide1.xml"));
    slide.replace("</p:grpSpPr></p:spTree>", "</p:grpSpPr>" + shapes + "</p:spTree>");
    return makeZip(replaced(parts, QStringLiteral("ppt/slides/slide1.xml"), slide));
}

}  // namespace decktest
