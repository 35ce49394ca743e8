// SPDX-License-Identifier: MIT
#include "minihost/slxcore/ziparchive_p.h"

#include <zlib.h>

#include <QDateTime>
#include <algorithm>
#include <cstring>
#include <limits>

namespace minihost {
namespace {

constexpr std::uint32_t kLocalSignature = 0x04034b50;
constexpr std::uint32_t kCentralSignature = 0x02014b50;
constexpr std::uint32_t kEndSignature = 0x06054b50;
constexpr std::uint32_t kZip64EndSignature = 0x06064b50;
constexpr std::uint32_t kZip64LocatorSignature = 0x07064b50;
constexpr std::uint32_t kDescriptorSignature = 0x08074b50;
constexpr std::uint64_t kLocalSize = 30, kCentralSize = 46, kEndSize = 22;
constexpr std::uint64_t kZip64EndSize = 56, kZip64LocatorSize = 20;
constexpr std::uint16_t kFlagEncrypted = 1, kFlagDescriptor = 8, kFlagUtf8 = 0x800;
constexpr std::uint32_t kMax32 = 0xFFFFFFFF;

// Little-endian fields; callers check the bounds first.
std::uint16_t u16(const QByteArray& b, std::uint64_t at) {
    const auto* p = reinterpret_cast<const unsigned char*>(b.constData()) + at;
    return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}
std::uint32_t u32(const QByteArray& b, std::uint64_t at) {
    return u16(b, at) | static_cast<std::uint32_t>(u16(b, at + 2)) << 16;
}
std::uint64_t u64(const QByteArray& b, std::uint64_t at) {
    return u32(b, at) | static_cast<std::uint64_t>(u32(b, at + 4)) << 32;
}
void put(QByteArray& b, std::uint64_t at, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        b[static_cast<int>(at) + i] = static_cast<char>(value >> (8 * i));
}
void append(QByteArray& b, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) b.append(static_cast<char>(value >> (8 * i)));
}

std::string quoted(const std::string& name) {
    return "\"" + name + "\"";
}
[[noreturn]] void damaged(const std::string& what) {
    throw ZipError("damaged zip archive (" + what + ")");
}

// Where a zip64 extra field of `central` (a record of `extraLength` extra bytes) keeps the value
// of the 32-bit field that reads 0xFFFFFFFF: the values present are, in order, the size, the
// compressed size and the local header's offset. Returns the position, or 0 when absent.
std::uint64_t zip64Slot(const QByteArray& central, int which) {
    const std::uint64_t nameLength = u16(central, 28), extraLength = u16(central, 30);
    const std::uint64_t fields[] = {u32(central, 24), u32(central, 20), u32(central, 42)};
    std::uint64_t slot = 0;
    for (int i = 0; i < which; ++i) slot += fields[i] == kMax32 ? 8 : 0;
    std::uint64_t at = kCentralSize + nameLength;
    const std::uint64_t end = at + extraLength;
    while (at + 4 <= end) {
        const std::uint16_t id = u16(central, at), length = u16(central, at + 2);
        if (id == 1) return slot + 8 <= length && at + 4 + length <= end ? at + 4 + slot : 0;
        at += 4 + length;
    }
    return 0;
}

// A 32-bit field of a central record, or its 64-bit value from the zip64 extra field.
std::uint64_t wideField(const QByteArray& central, int which, const std::string& name) {
    const std::uint64_t offsets[] = {24, 20, 42};
    const std::uint32_t narrow = u32(central, offsets[which]);
    if (narrow != kMax32) return narrow;
    const std::uint64_t slot = zip64Slot(central, which);
    if (!slot) damaged("entry " + quoted(name) + " lacks its zip64 sizes");
    return u64(central, slot);
}

std::pair<std::uint16_t, std::uint16_t> dosNow() {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate d = now.date();
    const QTime t = now.time();
    return {
        static_cast<std::uint16_t>(t.hour() << 11 | t.minute() << 5 | t.second() / 2),
        static_cast<std::uint16_t>(std::max(0, d.year() - 1980) << 9 | d.month() << 5 | d.day())};
}

QByteArray deflated(const QByteArray& data) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK)
        throw std::bad_alloc();
    QByteArray out;
    out.resize(static_cast<int>(deflateBound(&stream, static_cast<uLong>(data.size()))));
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
    stream.avail_in = static_cast<uInt>(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    const int result = deflate(&stream, Z_FINISH);
    out.resize(static_cast<int>(stream.total_out));
    deflateEnd(&stream);
    if (result != Z_STREAM_END) throw ZipError("cannot compress a part");
    return out;
}

std::uint32_t checksum(const char* data, std::uint64_t size) {
    return static_cast<std::uint32_t>(
        crc32_z(crc32(0, nullptr, 0), reinterpret_cast<const Bytef*>(data), size));
}

// Appends entries to a new archive and finishes it with its directory.
class Writer {
public:
    // Copies `entry` of `source` as stored; only its offset in the central record changes.
    void copy(const QByteArray& source, const ZipEntry& entry) {
        const std::uint64_t offset = start();
        m_out.append(source.constData() + entry.localOffset,
                     static_cast<int>(entry.recordEnd - entry.localOffset));
        if ((entry.flags & kFlagDescriptor) && !entry.descriptorCopied) {
            // The data descriptor the flags announce was missing or wrong: a sound one follows.
            append(m_out, kDescriptorSignature, 4);
            append(m_out, entry.crc, 4);
            append(m_out, entry.compressedSize, 4);
            append(m_out, entry.size, 4);
        }
        QByteArray central = entry.central;
        if (u32(central, 42) == kMax32)
            put(central, zip64Slot(central, 2), offset, 8);
        else
            put(central, 42, offset, 4);
        m_directory += central;
        ++m_count;
    }

    // Adds `data` under `name`, deflated; `like` (when given) lends its attributes and comment.
    void add(const std::string& name, const QByteArray& data, const ZipEntry* like) {
        const std::uint64_t offset = start();
        const QByteArray packed = deflated(data);
        const std::pair<std::uint16_t, std::uint16_t> when = dosNow();  // time, date
        const std::uint32_t crc =
            checksum(data.constData(), static_cast<std::uint64_t>(data.size()));
        const std::uint16_t flags = like ? (like->flags & kFlagUtf8) : kFlagUtf8;
        auto header = [&](QByteArray& b) {
            append(b, 20, 2);  // version needed: deflate
            append(b, flags, 2);
            append(b, 8, 2);
            append(b, when.first, 2);
            append(b, when.second, 2);
            append(b, crc, 4);
            append(b, static_cast<std::uint64_t>(packed.size()), 4);
            append(b, static_cast<std::uint64_t>(data.size()), 4);
            append(b, name.size(), 2);
        };
        append(m_out, kLocalSignature, 4);
        header(m_out);
        append(m_out, 0, 2);  // no extra field
        m_out.append(name.data(), static_cast<int>(name.size()));
        m_out += packed;

        QByteArray comment;
        if (like) {
            const QByteArray& c = like->central;
            comment = c.mid(static_cast<int>(kCentralSize + u16(c, 28) + u16(c, 30)), u16(c, 32));
        }
        append(m_directory, kCentralSignature, 4);
        append(m_directory, like ? u16(like->central, 4) : 20, 2);  // made by
        header(m_directory);
        append(m_directory, 0, 2);  // no extra field
        append(m_directory, static_cast<std::uint64_t>(comment.size()), 2);
        append(m_directory, 0, 2);  // disk
        append(m_directory, like ? u16(like->central, 36) : 0, 2);
        append(m_directory, like ? u32(like->central, 38) : 0, 4);
        append(m_directory, offset, 4);
        m_directory.append(name.data(), static_cast<int>(name.size()));
        m_directory += comment;
        ++m_count;
    }

    QByteArray finish(const QByteArray& comment) {
        const std::uint64_t directoryOffset = start();
        if (m_count > 0xFFFF) throw ZipError("too many entries to be written");
        m_out += m_directory;
        append(m_out, kEndSignature, 4);
        append(m_out, 0, 4);  // this disk, the directory's disk
        append(m_out, m_count, 2);
        append(m_out, m_count, 2);
        append(m_out, static_cast<std::uint64_t>(m_directory.size()), 4);
        append(m_out, directoryOffset, 4);
        append(m_out, static_cast<std::uint64_t>(comment.size()), 2);
        m_out += comment;
        return m_out;
    }

private:
    // Where the next record goes; archives of 4 GiB and more would need zip64 and are refused.
    std::uint64_t start() const {
        const std::uint64_t offset = static_cast<std::uint64_t>(m_out.size());
        if (offset + static_cast<std::uint64_t>(m_directory.size()) >= kMax32)
            throw ZipError("too large to be written");
        return offset;
    }

    QByteArray m_out;
    QByteArray m_directory;
    std::uint64_t m_count = 0;
};

}  // namespace

ZipArchive::ZipArchive(const QByteArray& bytes, std::int64_t maxEntries) : m_bytes(bytes) {
    readDirectory(maxEntries);
    locateLocalRecords();
}

void ZipArchive::readDirectory(std::int64_t maxEntries) {
    const std::uint64_t size = static_cast<std::uint64_t>(m_bytes.size());
    // The end record is the last one whose comment fits in the file (the comment is at most
    // 65535 bytes).
    std::uint64_t end = 0;
    bool found = false;
    if (size >= kEndSize) {
        const std::uint64_t lowest = size > kEndSize + 0xFFFF ? size - kEndSize - 0xFFFF : 0;
        for (std::uint64_t at = size - kEndSize + 1; at-- > lowest;) {
            if (u32(m_bytes, at) == kEndSignature &&
                at + kEndSize + u16(m_bytes, at + 20) <= size) {
                end = at;
                found = true;
                break;
            }
        }
    }
    if (!found) {
        if (size >= 4 && u32(m_bytes, 0) == kLocalSignature)
            damaged("no central directory; the file may be cut short");
        throw ZipError("not a zip archive");
    }
    m_comment = m_bytes.mid(static_cast<int>(end + kEndSize), u16(m_bytes, end + 20));
    std::uint64_t count = u16(m_bytes, end + 10);
    std::uint64_t directorySize = u32(m_bytes, end + 12);
    std::uint64_t directoryOffset = u32(m_bytes, end + 16);
    std::uint64_t directoryEnd = end;
    if (end >= kZip64LocatorSize + kZip64EndSize &&
        u32(m_bytes, end - kZip64LocatorSize) == kZip64LocatorSignature) {
        // Zip64: the wide end record lies just before its locator.
        const std::uint64_t wide = end - kZip64LocatorSize - kZip64EndSize;
        if (u32(m_bytes, wide) != kZip64EndSignature) damaged("zip64 end record missing");
        count = u64(m_bytes, wide + 32);
        directorySize = u64(m_bytes, wide + 40);
        directoryOffset = u64(m_bytes, wide + 48);
        directoryEnd = wide;
    }
    if (static_cast<std::int64_t>(std::min<std::uint64_t>(count, INT64_MAX)) > maxEntries)
        throw ZipError("too many entries (" + std::to_string(count) + "; the limit is " +
                       std::to_string(maxEntries) + ")");
    if (directorySize > directoryEnd) damaged("central directory larger than the file");
    m_directoryStart = directoryEnd - directorySize;
    // Bytes before the archive (a stub) move every offset by the same amount.
    if (directoryOffset > m_directoryStart) damaged("central directory outside the file");
    const std::uint64_t stub = m_directoryStart - directoryOffset;

    std::uint64_t at = m_directoryStart;
    m_entries.reserve(static_cast<std::size_t>(count));
    for (std::uint64_t i = 0; i < count; ++i) {
        if (at + kCentralSize > directoryEnd) damaged("central directory cut short");
        if (u32(m_bytes, at) != kCentralSignature)
            damaged("central directory record " + std::to_string(i + 1) + " is damaged");
        const std::uint64_t length =
            kCentralSize + u16(m_bytes, at + 28) + u16(m_bytes, at + 30) + u16(m_bytes, at + 32);
        if (at + length > directoryEnd) damaged("central directory cut short");
        ZipEntry entry;
        entry.central = m_bytes.mid(static_cast<int>(at), static_cast<int>(length));
        entry.name = std::string(m_bytes.constData() + at + kCentralSize, u16(m_bytes, at + 28));
        entry.flags = u16(m_bytes, at + 8);
        entry.method = u16(m_bytes, at + 10);
        entry.crc = u32(m_bytes, at + 16);
        entry.size = wideField(entry.central, 0, entry.name);
        entry.compressedSize = wideField(entry.central, 1, entry.name);
        const std::uint64_t offset = wideField(entry.central, 2, entry.name);
        if (offset > m_directoryStart - stub)
            damaged("entry " + quoted(entry.name) + " starts outside the archive");
        entry.localOffset = stub + offset;
        if (!m_byName.emplace(entry.name, m_entries.size()).second)
            damaged("two entries named " + quoted(entry.name));
        m_entries.push_back(std::move(entry));
        at += length;
    }
}

void ZipArchive::locateLocalRecords() {
    for (ZipEntry& entry : m_entries) {
        const std::uint64_t at = entry.localOffset;
        const std::string name = quoted(entry.name);
        if (at + kLocalSize > m_directoryStart || u32(m_bytes, at) != kLocalSignature)
            damaged("entry " + name + " has no local header");
        const std::uint64_t nameLength = u16(m_bytes, at + 26);
        entry.dataOffset = at + kLocalSize + nameLength + u16(m_bytes, at + 28);
        if (entry.dataOffset > m_directoryStart ||
            std::string(m_bytes.constData() + at + kLocalSize, nameLength) != entry.name)
            damaged("the local header of entry " + name + " names another file");
        if (entry.compressedSize > m_directoryStart - entry.dataOffset)
            damaged("entry " + name + " runs past the end of the archive's data");
        const std::uint64_t dataEnd = entry.dataOffset + entry.compressedSize;
        entry.recordEnd = dataEnd;
        if (entry.flags & kFlagDescriptor) {
            // The descriptor repeats the directory's checksum and sizes, with or without its
            // signature, with 4-byte or (zip64) 8-byte sizes.
            std::uint64_t p = dataEnd;
            if (p + 4 <= m_directoryStart && u32(m_bytes, p) == kDescriptorSignature) p += 4;
            if (p + 12 <= m_directoryStart && u32(m_bytes, p) == entry.crc &&
                u32(m_bytes, p + 4) == static_cast<std::uint32_t>(entry.compressedSize) &&
                u32(m_bytes, p + 8) == static_cast<std::uint32_t>(entry.size))
                entry.recordEnd = p + 12;
            else if (p + 20 <= m_directoryStart && u32(m_bytes, p) == entry.crc &&
                     u64(m_bytes, p + 4) == entry.compressedSize &&
                     u64(m_bytes, p + 12) == entry.size)
                entry.recordEnd = p + 20;
            entry.descriptorCopied = entry.recordEnd != dataEnd;
        }
    }
    // No two entries share bytes (one compressed stream read as many is how zip bombs work).
    std::vector<ZipEntry*> byOffset;
    for (ZipEntry& entry : m_entries) byOffset.push_back(&entry);
    std::sort(byOffset.begin(), byOffset.end(),
              [](const ZipEntry* a, const ZipEntry* b) { return a->localOffset < b->localOffset; });
    for (std::size_t i = 1; i < byOffset.size(); ++i) {
        ZipEntry& before = *byOffset[i - 1];
        const ZipEntry& after = *byOffset[i];
        if (before.dataOffset + before.compressedSize > after.localOffset)
            damaged("entries " + quoted(before.name) + " and " + quoted(after.name) + " overlap");
        if (before.recordEnd > after.localOffset) {  // what looked like a descriptor was not one
            before.recordEnd = before.dataOffset + before.compressedSize;
            before.descriptorCopied = false;
        }
    }
}

const ZipEntry* ZipArchive::find(const std::string& name) const {
    const auto it = m_byName.find(name);
    return it == m_byName.end() ? nullptr : &m_entries[it->second];
}

QByteArray ZipArchive::read(const ZipEntry& entry, const QString& part, std::uint64_t limit) const {
    const std::string name = part.toStdString();
    auto problem = [&](const std::string& what) -> ZipError {
        return ZipError("part " + name + " " + what);
    };
    if (entry.size > limit)
        throw problem("claims " + std::to_string(entry.size) + " bytes (the limit is " +
                      std::to_string(limit) + ")");
    if (entry.flags & kFlagEncrypted) throw problem("is encrypted");
    const char* packed = m_bytes.constData() + entry.dataOffset;
    QByteArray data;
    if (entry.method == 0) {
        if (entry.compressedSize != entry.size) throw problem("is damaged (its sizes disagree)");
        data = QByteArray(packed, static_cast<int>(entry.size));
    } else if (entry.method == 8) {
        // Never more than the directory promised, plus one byte to notice a lie.
        data.resize(static_cast<int>(entry.size) + 1);
        z_stream stream{};
        if (inflateInit2(&stream, -15) != Z_OK) throw std::bad_alloc();
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed));
        stream.avail_in = static_cast<uInt>(entry.compressedSize);
        stream.next_out = reinterpret_cast<Bytef*>(data.data());
        stream.avail_out = static_cast<uInt>(data.size());
        const int result = inflate(&stream, Z_FINISH);
        const std::uint64_t produced = stream.total_out;
        inflateEnd(&stream);
        if (produced > entry.size) throw problem("holds more data than its header says");
        if (result == Z_DATA_ERROR || result == Z_NEED_DICT || result == Z_MEM_ERROR)
            throw problem("is damaged (cannot be decompressed)");
        if (result != Z_STREAM_END || produced < entry.size) throw problem("is truncated");
        data.resize(static_cast<int>(produced));
    } else {
        throw problem("uses an unsupported compression method");
    }
    if (checksum(data.constData(), static_cast<std::uint64_t>(data.size())) != entry.crc)
        throw problem("is damaged (checksum mismatch)");
    return data;
}

QByteArray ZipArchive::withReplacements(
    const std::map<std::string, QByteArray>& replacements) const {
    for (const auto& replacement : replacements)
        if (!find(replacement.first))
            throw ZipError("cannot replace part " + quoted(replacement.first));
    Writer writer;
    for (const ZipEntry& entry : m_entries) {
        const auto replacement = replacements.find(entry.name);
        if (replacement == replacements.end())
            writer.copy(m_bytes, entry);
        else
            writer.add(entry.name, replacement->second, &entry);
    }
    return writer.finish(m_comment);
}

QByteArray ZipArchive::build(const std::vector<std::pair<std::string, QByteArray>>& parts) {
    Writer writer;
    for (const auto& [name, data] : parts) writer.add(name, data, nullptr);
    return writer.finish(QByteArray());
}

}  // namespace minihost
