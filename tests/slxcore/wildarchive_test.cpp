// SPDX-License-Identifier: MIT
// Archives as real writers make them, built here byte by byte: local headers that disagree with
// the central directory in the ways unzip programs accept (data descriptors, local sizes of
// zero, other extra fields and timestamps, an archive comment, a leading stub) open, and are
// written back with their untouched entries unchanged; archives that cannot be read soundly (no
// or a cut central directory, a failing checksum, absurd sizes, overlapping entries) are refused
// with a message naming what is wrong.
#include <gtest/gtest.h>
#include <zlib.h>

#include <map>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "qtprinters.h"

namespace {

using Parts = decktest::Parts;

void put(QByteArray& b, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) b.append(static_cast<char>(value >> (8 * i)));
}
void patch(QByteArray& b, int at, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) b[at + i] = static_cast<char>(value >> (8 * i));
}

// How an archive departs from the tidy form.
struct Quirks {
    bool descriptor = false;          // sizes and checksum after the data (flag bit 3)
    bool descriptorSignature = true;  // ... with the optional signature
    bool zeroLocalSizes = false;      // local header sizes and checksum left at zero
    QByteArray localExtra;            // extra field in the local headers only
    QByteArray centralExtra;          // extra field in the central records only
    bool otherLocalTimes = false;     // local timestamps differ from the central ones
    QByteArray comment;               // the archive's comment
    QByteArray stub;                  // bytes before the archive
    bool offsetsCountStub = false;    // offsets measured from the file's start (else the zip's)
    bool stored = false;              // no compression
};

struct HandZip {
    QByteArray bytes;
    std::map<QString, QByteArray> records;  // each entry's local header, data and descriptor
    int directoryStart = 0;                 // in `bytes`
};

QByteArray deflateRaw(const QByteArray& data) {
    z_stream stream{};
    deflateInit2(&stream, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    QByteArray out(static_cast<int>(deflateBound(&stream, data.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
    stream.avail_in = data.size();
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = out.size();
    deflate(&stream, Z_FINISH);
    out.resize(static_cast<int>(stream.total_out));
    deflateEnd(&stream);
    return out;
}

HandZip handZip(const Parts& parts, const Quirks& q) {
    HandZip zip;
    zip.bytes = q.stub;
    QByteArray directory;
    for (const auto& [name, data] : parts) {
        const QByteArray packed = q.stored ? data : deflateRaw(data);
        const std::uint32_t crc =
            crc32(0, reinterpret_cast<const Bytef*>(data.constData()), data.size());
        const QByteArray raw = name.toUtf8();
        const int offset = zip.bytes.size() - (q.offsetsCountStub ? 0 : q.stub.size());
        const std::uint16_t flags = q.descriptor ? 8 : 0;
        QByteArray local;
        put(local, 0x04034b50, 4);
        put(local, 20, 2);
        put(local, flags, 2);
        put(local, q.stored ? 0 : 8, 2);
        put(local, q.otherLocalTimes ? 0x1234 : 0x6000, 2);
        put(local, q.otherLocalTimes ? 0x4321 : 0x5A21, 2);
        const bool zeros = q.zeroLocalSizes || q.descriptor;
        put(local, zeros ? 0 : crc, 4);
        put(local, zeros ? 0 : packed.size(), 4);
        put(local, zeros ? 0 : data.size(), 4);
        put(local, raw.size(), 2);
        put(local, q.localExtra.size(), 2);
        local += raw + q.localExtra + packed;
        if (q.descriptor) {
            if (q.descriptorSignature) put(local, 0x08074b50, 4);
            put(local, crc, 4);
            put(local, packed.size(), 4);
            put(local, data.size(), 4);
        }
        zip.records[name] = local;
        zip.bytes += local;
        put(directory, 0x02014b50, 4);
        put(directory, 20, 2);
        put(directory, 20, 2);
        put(directory, flags, 2);
        put(directory, q.stored ? 0 : 8, 2);
        put(directory, 0x6000, 2);
        put(directory, 0x5A21, 2);
        put(directory, crc, 4);
        put(directory, packed.size(), 4);
        put(directory, data.size(), 4);
        put(directory, raw.size(), 2);
        put(directory, q.centralExtra.size(), 2);
        put(directory, 0, 2);  // comment
        put(directory, 0, 2);  // disk
        put(directory, 0, 2);
        put(directory, 0, 4);
        put(directory, offset, 4);
        directory += raw + q.centralExtra;
    }
    zip.directoryStart = zip.bytes.size();
    const int directoryOffset = zip.bytes.size() - (q.offsetsCountStub ? 0 : q.stub.size());
    zip.bytes += directory;
    put(zip.bytes, 0x06054b50, 4);
    put(zip.bytes, 0, 4);
    put(zip.bytes, parts.size(), 2);
    put(zip.bytes, parts.size(), 2);
    put(zip.bytes, directory.size(), 4);
    put(zip.bytes, directoryOffset, 4);
    put(zip.bytes, q.comment.size(), 2);
    zip.bytes += q.comment;
    return zip;
}

// An extended-timestamp extra field, as many writers add (to the local header, the central
// record, or both with different lengths).
QByteArray timestampExtra(int times) {
    QByteArray extra;
    put(extra, 0x5455, 2);
    put(extra, 1 + 4 * times, 2);
    put(extra, 7, 1);
    for (int i = 0; i < times; ++i) put(extra, 1700000000 + i, 4);
    return extra;
}

QString loadError(const QByteArray& bytes) {
    QString error;
    const auto deck = minihost::Deck::load(bytes, QStringLiteral("hand.pptx"), &error);
    EXPECT_FALSE(deck);
    EXPECT_TRUE(error.startsWith(QStringLiteral("hand.pptx: "))) << error.toStdString();
    return error.mid(11);
}

// The archive opens as a deck; once edited, it is written with every untouched entry's record
// copied byte for byte, and what was written opens again (here and in an independent reader).
void opensAndWritesBack(const HandZip& zip) {
    QString error;
    auto deck = minihost::Deck::load(zip.bytes, QStringLiteral("hand.pptx"), &error);
    ASSERT_TRUE(deck) << error.toStdString();
    deck->addTextBox(1, QStringLiteral("汉字"), QRectF(10, 10, 100, 40));
    const QByteArray written = deck->toBytes(&error);
    ASSERT_FALSE(written.isEmpty()) << error.toStdString();
    const QString edited = QStringLiteral("ppt/slides/slide1.xml");
    for (const auto& [name, record] : zip.records) {
        if (name == edited) continue;
        EXPECT_TRUE(written.contains(record)) << name.toStdString() << " was not copied as stored";
    }
    auto again = minihost::Deck::load(written, QStringLiteral("again.pptx"), &error);
    ASSERT_TRUE(again) << error.toStdString();
    ASSERT_EQ(again->shapes(1).size(), 1);
    EXPECT_EQ(again->shapes(1).first().text, QStringLiteral("汉字"));
    const std::vector<decktest::ZipEntry> entries = decktest::zipEntries(written);
    ASSERT_EQ(entries.size(), zip.records.size());
    for (const decktest::ZipEntry& entry : entries)
        EXPECT_EQ(entry.crc, crc32(0, reinterpret_cast<const Bytef*>(entry.data.constData()),
                                   entry.data.size()))
            << entry.name.toStdString();
}

class WildArchive : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(minihost::liveObjectCount(), 0); }
    const Parts parts = decktest::blankParts();
};

TEST_F(WildArchive, TidyArchiveOpens) {
    opensAndWritesBack(handZip(parts, {}));
}

TEST_F(WildArchive, DataDescriptorsWithAndWithoutSignature) {
    Quirks q;
    q.descriptor = true;
    opensAndWritesBack(handZip(parts, q));
    q.descriptorSignature = false;
    opensAndWritesBack(handZip(parts, q));
    q.stored = true;
    opensAndWritesBack(handZip(parts, q));
}

TEST_F(WildArchive, LocalSizesOfZeroWithoutDescriptor) {
    Quirks q;
    q.zeroLocalSizes = true;
    opensAndWritesBack(handZip(parts, q));
}

TEST_F(WildArchive, ExtraFieldsAndTimestampsThatDiffer) {
    Quirks q;
    q.localExtra = timestampExtra(3);
    q.centralExtra = timestampExtra(1);
    q.otherLocalTimes = true;
    opensAndWritesBack(handZip(parts, q));
    q.centralExtra.clear();
    opensAndWritesBack(handZip(parts, q));
}

TEST_F(WildArchive, ArchiveCommentIsKept) {
    Quirks q;
    q.comment = "written by a teacher's tool; PK\x05\x06 inside a comment is not an end record";
    const HandZip zip = handZip(parts, q);
    opensAndWritesBack(zip);
    QString error;
    auto deck = minihost::Deck::load(zip.bytes, QStringLiteral("hand.pptx"), &error);
    deck->addTextBox(1, QStringLiteral("字"), QRectF(0, 0, 10, 10));
    EXPECT_TRUE(deck->toBytes(&error).endsWith(q.comment));
}

TEST_F(WildArchive, LeadingStub) {
    Quirks q;
    q.stub = QByteArray(777, 'S');
    opensAndWritesBack(handZip(parts, q));  // offsets from the archive's own start
    q.offsetsCountStub = true;
    opensAndWritesBack(handZip(parts, q));  // offsets from the file's start (self-extractors)
}

TEST_F(WildArchive, EverythingAtOnce) {
    Quirks q;
    q.descriptor = true;
    q.localExtra = timestampExtra(2);
    q.otherLocalTimes = true;
    q.comment = "comment";
    q.stub = "#!/bin/sh\nexit 0\n";
    opensAndWritesBack(handZip(parts, q));
}

TEST_F(WildArchive, NoCentralDirectory) {
    const HandZip zip = handZip(parts, {});
    EXPECT_EQ(
        loadError(zip.bytes.left(zip.directoryStart)),
        QStringLiteral("damaged zip archive (no central directory; the file may be cut short)"));
}

TEST_F(WildArchive, CentralDirectoryCutShort) {
    HandZip zip = handZip(parts, {});
    const int end = zip.bytes.lastIndexOf("PK\x05\x06");
    patch(zip.bytes, end + 8, parts.size() + 1, 2);  // one record more than there is
    patch(zip.bytes, end + 10, parts.size() + 1, 2);
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("damaged zip archive (central directory cut short)"));
    zip = handZip(parts, {});
    const int last = zip.bytes.lastIndexOf("PK\x01\x02");  // the last record loses its signature
    patch(zip.bytes, last, 0x2a2a2a2a, 4);
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("damaged zip archive (central directory record %1 is damaged)")
                  .arg(parts.size()));
}

TEST_F(WildArchive, DirectoryOutsideTheFile) {
    HandZip zip = handZip(parts, {});
    const int end = zip.bytes.lastIndexOf("PK\x05\x06");
    patch(zip.bytes, end + 12, zip.bytes.size() * 2, 4);
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("damaged zip archive (central directory larger than the file)"));
    zip = handZip(parts, {});
    patch(zip.bytes, end + 16, zip.directoryStart + 5, 4);
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("damaged zip archive (central directory outside the file)"));
}

TEST_F(WildArchive, ChecksumFailsWhenTheEntryIsRead) {
    Quirks q;
    q.stored = true;
    HandZip zip = handZip(parts, q);
    const int at = zip.bytes.indexOf("<p:sld ");
    ASSERT_GT(at, 0);
    zip.bytes[at + 1] = 'q';
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("part \"ppt/slides/slide1.xml\" is damaged (checksum mismatch)"));
    // With a data descriptor and zero local sizes, the checksum that counts is the directory's.
    q.descriptor = true;
    zip = handZip(parts, q);
    zip.bytes[zip.bytes.indexOf("<p:sld ") + 1] = 'q';
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("part \"ppt/slides/slide1.xml\" is damaged (checksum mismatch)"));
}

TEST_F(WildArchive, AbsurdSizes) {
    HandZip zip = handZip(parts, {});
    // The first entry claims more compressed bytes than the file holds.
    patch(zip.bytes, zip.directoryStart + 20, 0x7FFFFFF0, 4);
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("damaged zip archive (entry \"%1\" runs past the end of the archive's "
                             "data)")
                  .arg(parts.front().first));
    zip = handZip(parts, {});
    patch(zip.bytes, zip.directoryStart + 42, 0x7FFFFFF0, 4);  // starts far past the end
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("damaged zip archive (entry \"%1\" starts outside the archive)")
                  .arg(parts.front().first));
}

TEST_F(WildArchive, OverlappingEntries) {
    // The slide's record is hidden inside another entry's stored data, and the directory points
    // into it: a reader would read the same bytes twice.
    Quirks q;
    q.stored = true;
    HandZip inner = handZip(parts, q);
    Parts carrier = parts;
    const QByteArray slide = inner.records[QStringLiteral("ppt/slides/slide1.xml")];
    carrier.emplace_back(QStringLiteral("ppt/media/carrier.bin"), slide);
    HandZip zip = handZip(carrier, q);
    const int carrierAt = zip.bytes.indexOf(zip.records[QStringLiteral("ppt/media/carrier.bin")]);
    const int hiddenAt = carrierAt + 30 + QByteArray("ppt/media/carrier.bin").size();
    // Point the slide's central record at the hidden copy.
    const QByteArray name = "ppt/slides/slide1.xml";
    int record = zip.directoryStart;
    while (zip.bytes.mid(record + 46, name.size()) != name)
        record = zip.bytes.indexOf("PK\x01\x02", record + 4);
    patch(zip.bytes, record + 42, hiddenAt, 4);
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("damaged zip archive (entries \"ppt/media/carrier.bin\" and "
                             "\"ppt/slides/slide1.xml\" overlap)"));
}

TEST_F(WildArchive, LocalHeaderNamingAnotherFile) {
    HandZip zip = handZip(parts, {});
    zip.bytes[30] = static_cast<char>(zip.bytes[30] ^ 0x20);
    EXPECT_EQ(loadError(zip.bytes),
              QStringLiteral("damaged zip archive (the local header of entry \"%1\" names another "
                             "file)")
                  .arg(parts.front().first));
}

TEST_F(WildArchive, TwoEntriesWithOneName) {
    Parts twice = parts;
    twice.push_back(parts.back());
    EXPECT_EQ(
        loadError(handZip(twice, {}).bytes),
        QStringLiteral("damaged zip archive (two entries named \"%1\")").arg(parts.back().first));
}

TEST_F(WildArchive, DeflatedDataCutShort) {
    HandZip zip = handZip(parts, {});
    // The slide's compressed size shrinks: the stream ends early, and is refused when read.
    const QByteArray name = "ppt/slides/slide1.xml";
    int record = zip.directoryStart;
    while (zip.bytes.mid(record + 46, name.size()) != name)
        record = zip.bytes.indexOf("PK\x01\x02", record + 4);
    const std::uint32_t packed = static_cast<unsigned char>(zip.bytes[record + 20]) |
                                 static_cast<unsigned char>(zip.bytes[record + 21]) << 8;
    patch(zip.bytes, record + 20, packed / 2, 4);
    EXPECT_EQ(loadError(zip.bytes), QStringLiteral("part \"ppt/slides/slide1.xml\" is truncated"));
}

}  // namespace
