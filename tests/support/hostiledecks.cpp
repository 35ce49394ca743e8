// SPDX-License-Identifier: MIT
#include "hostiledecks.h"

#include <zlib.h>

#include <QtEndian>
#include <algorithm>
#include <map>
#include <utility>

#include "decktestutil.h"

namespace hostile {
namespace {

const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";
const char kNamespaces[] =
    " xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\""
    " xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\""
    " xmlns:p=\"http://schemas.openxmlformats.org/presentationml/2006/main\"";
const char kRelationshipType[] =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
const char16_t kPoem[] = u"床前明月光疑是地上霜举头望明月低头思故乡";

QByteArray xmlText(const QString& text) {
    return text.toHtmlEscaped().toUtf8();
}

QByteArray chinese(int characters) {
    const QString poem = QString::fromUtf16(kPoem);
    QString text;
    text.reserve(characters);
    while (text.size() < characters) text += poem.left(characters - text.size());
    return xmlText(text);
}

QByteArray relationships(const QByteArray& body) {
    return QByteArray(kDeclaration) +
           "<Relationships "
           "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">" +
           body + "</Relationships>";
}

QByteArray relationship(int id, const char* type, const QByteArray& target) {
    return "<Relationship Id=\"rId" + QByteArray::number(id) + "\" Type=\"" + kRelationshipType +
           type + "\" Target=\"" + target + "\"/>";
}

// ---- an archive written entry by entry; equal bytes are compressed once
struct Compressed {
    QByteArray data;
    std::uint16_t method = 8;  // 0: stored, 8: deflated
    std::uint32_t crc = 0;
    std::uint32_t size = 0;
};

// `rows` copies of `row`, deflated on their own and ended with `flush`.
QByteArray deflateRows(const QByteArray& row, int rows, int level, int flush) {
    z_stream stream{};
    deflateInit2(&stream, level, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    QByteArray out;
    char buffer[1 << 16];
    auto drain = [&](int mode) {
        int result = Z_OK;
        do {
            stream.next_out = reinterpret_cast<Bytef*>(buffer);
            stream.avail_out = sizeof buffer;
            result = deflate(&stream, mode);
            out.append(buffer, static_cast<int>(sizeof buffer - stream.avail_out));
        } while (stream.avail_in > 0 || stream.avail_out == 0 ||
                 (mode == Z_FINISH && result != Z_STREAM_END));
    };
    for (int i = 0; i < rows; ++i) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(row.constData()));
        stream.avail_in = static_cast<uInt>(row.size());
        drain(Z_NO_FLUSH);
    }
    drain(flush);
    deflateEnd(&stream);
    return out;
}

class Archive {
public:
    void add(const QString& name, const QByteArray& bytes) {
        // Keyed by the bytes' storage: parts made from one array share it.
        const auto key = std::make_pair(bytes.constData(), bytes.size());
        auto it = m_compressed.find(key);
        if (it == m_compressed.end()) {
            Compressed c;
            // Small parts are stored as they are, which is quicker to make and to read: only the
            // large ones need compressing for the deck to stay small.
            c.method = bytes.size() < (64 << 10) ? 0 : 8;
            c.data = c.method ? deflateRows(bytes, 1, 1, Z_FINISH) : bytes;
            c.crc = static_cast<std::uint32_t>(
                crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()),
                      static_cast<uInt>(bytes.size())));
            c.size = static_cast<std::uint32_t>(bytes.size());
            it = m_compressed.emplace(key, std::move(c)).first;
            m_keep.push_back(bytes);  // the key's storage stays alive
        }
        const Compressed& c = it->second;
        const QByteArray utf8 = name.toUtf8();
        const std::uint32_t offset = static_cast<std::uint32_t>(m_out.size());
        auto header = [&](QByteArray& b) {
            put16(b, 20);     // version needed
            put16(b, 0x800);  // UTF-8 name
            put16(b, c.method);
            put32(b, 0);  // time and date
            put32(b, c.crc);
            put32(b, static_cast<std::uint32_t>(c.data.size()));
            put32(b, c.size);
            put16(b, static_cast<std::uint16_t>(utf8.size()));
            put16(b, 0);  // no extra field
        };
        put32(m_out, 0x04034b50);
        header(m_out);
        m_out += utf8;
        m_out += c.data;
        put32(m_directory, 0x02014b50);
        put16(m_directory, 20);  // made by
        header(m_directory);
        put16(m_directory, 0);  // comment
        put16(m_directory, 0);  // disk
        put16(m_directory, 0);  // internal attributes
        put32(m_directory, 0);  // external attributes
        put32(m_directory, offset);
        m_directory += utf8;
        ++m_count;
    }

    QByteArray finish() {
        const std::uint32_t at = static_cast<std::uint32_t>(m_out.size());
        QByteArray out = m_out + m_directory;
        put32(out, 0x06054b50);
        put32(out, 0);
        put16(out, static_cast<std::uint16_t>(m_count));
        put16(out, static_cast<std::uint16_t>(m_count));
        put32(out, static_cast<std::uint32_t>(m_directory.size()));
        put32(out, at);
        put16(out, 0);
        return out;
    }

private:
    static void put16(QByteArray& b, std::uint16_t v) {
        b.append(static_cast<char>(v & 0xFF)).append(static_cast<char>(v >> 8));
    }
    static void put32(QByteArray& b, std::uint32_t v) {
        put16(b, static_cast<std::uint16_t>(v & 0xFFFF));
        put16(b, static_cast<std::uint16_t>(v >> 16));
    }

    QByteArray m_out, m_directory;
    int m_count = 0;
    std::map<std::pair<const char*, int>, Compressed> m_compressed;
    std::vector<QByteArray> m_keep;
};

// ---- PNG
QByteArray chunk(const char* type, const QByteArray& data) {
    QByteArray out(4, '\0');
    qToBigEndian<quint32>(static_cast<quint32>(data.size()), out.data());
    const QByteArray body = QByteArray(type, 4) + data;
    out += body;
    QByteArray crc(4, '\0');
    qToBigEndian<quint32>(static_cast<quint32>(crc32(0, reinterpret_cast<const Bytef*>(body.data()),
                                                     static_cast<uInt>(body.size()))),
                          crc.data());
    return out + crc;
}

QByteArray png(std::uint32_t width, std::uint32_t height, const QByteArray& zlibData) {
    QByteArray header(13, '\0');
    qToBigEndian<quint32>(width, header.data());
    qToBigEndian<quint32>(height, header.data() + 4);
    header[8] = 8;  // bits per sample
    header[9] = 6;  // RGBA
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header) + chunk("IDAT", zlibData) +
           chunk("IEND", QByteArray());
}

QByteArray deckWithOneSlide(const QByteArray& shapes, const std::vector<Media>& media = {}) {
    Slide slide{slideXml(shapes), {}};
    for (const Media& m : media) slide.media.push_back(m.part);
    return deck({slide}, media);
}

QByteArray deckListing(const std::vector<Slide>& slides, const std::vector<Media>& media,
                       const std::vector<int>& listed, const QByteArray& firstTarget);

}  // namespace

QByteArray textBox(int id, const QString& text, std::int64_t top) {
    return "<p:sp><p:nvSpPr><p:cNvPr id=\"" + QByteArray::number(id) + "\" name=\"Text " +
           QByteArray::number(id) +
           "\"/><p:cNvSpPr txBox=\"1\"/><p:nvPr/></p:nvSpPr><p:spPr><a:xfrm><a:off x=\"457200\" "
           "y=\"" +
           QByteArray::number(static_cast<qlonglong>(top)) +
           "\"/><a:ext cx=\"8229600\" cy=\"457200\"/></a:xfrm><a:prstGeom prst=\"rect\"><a:avLst/>"
           "</a:prstGeom></p:spPr><p:txBody><a:bodyPr wrap=\"square\"/><a:lstStyle/><a:p><a:r>"
           "<a:rPr lang=\"zh-CN\"/><a:t>" +
           xmlText(text) + "</a:t></a:r></a:p></p:txBody></p:sp>";
}

QByteArray picture(int id, const char* relationship) {
    return "<p:pic><p:nvPicPr><p:cNvPr id=\"" + QByteArray::number(id) + "\" name=\"Picture " +
           QByteArray::number(id) +
           "\"/><p:cNvPicPr/><p:nvPr/></p:nvPicPr><p:blipFill><a:blip r:embed=\"" + relationship +
           "\"/><a:stretch><a:fillRect/></a:stretch></p:blipFill><p:spPr><a:xfrm>"
           "<a:off x=\"1828800\" y=\"1371600\"/><a:ext cx=\"3657600\" cy=\"2743200\"/></a:xfrm>"
           "<a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom></p:spPr></p:pic>";
}

QByteArray slideXml(const QByteArray& shapes) {
    return QByteArray(kDeclaration) + "<p:sld" + kNamespaces +
           "><p:cSld><p:spTree><p:nvGrpSpPr><p:cNvPr id=\"1\" name=\"\"/><p:cNvGrpSpPr/><p:nvPr/>"
           "</p:nvGrpSpPr><p:grpSpPr/>" +
           shapes + "</p:spTree></p:cSld><p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr></p:sld>";
}

QByteArray greyPng(int width, int height, int level) {
    // Every row the same: filter "Sub", an opaque grey pixel, then each byte equal to the one
    // four before it (zeros).
    QByteArray row(1 + 4 * width, '\0');
    row[0] = 1;
    row[1] = row[2] = row[3] = static_cast<char>(0x80);
    row[4] = static_cast<char>(0xFF);
    // Rows deflated a few megabytes at a time and fully flushed stand alone: the stream of all
    // rows is that block repeated, then the rows left over, ended.
    const int block = std::max(1, std::min(height, (4 << 20) / static_cast<int>(row.size())));
    const QByteArray repeated = deflateRows(row, block, level, Z_FULL_FLUSH);
    QByteArray data("\x78\x01", 2);  // zlib header: deflate, 32 KiB window
    for (int i = 0; i < height / block; ++i) data += repeated;
    data += deflateRows(row, height % block, level, Z_FINISH);
    // The checksum of all rows, from the checksum of one.
    uLong total = adler32(0, nullptr, 0);
    uLong power = adler32(total, reinterpret_cast<const Bytef*>(row.constData()),
                          static_cast<uInt>(row.size()));
    z_off_t powerLength = row.size();
    for (std::int64_t left = height; left > 0; left >>= 1) {
        if (left & 1) total = adler32_combine(total, power, powerLength);
        power = adler32_combine(power, power, powerLength);
        powerLength *= 2;
    }
    QByteArray checksum(4, '\0');
    qToBigEndian<quint32>(static_cast<quint32>(total), checksum.data());
    return png(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
               data + checksum);
}

QByteArray pngClaiming(std::uint32_t width, std::uint32_t height) {
    return png(width, height, QByteArray("\x78\x01\x63\x00\x00\x00\x01\x00\x01", 9));
}

QByteArray deck(const std::vector<Slide>& slides, const std::vector<Media>& media) {
    std::vector<int> listed;
    for (std::size_t i = 1; i <= slides.size(); ++i) listed.push_back(static_cast<int>(i));
    return deckListing(slides, media, listed, QByteArray());
}

QByteArray deck(const std::vector<Slide>& slides, const std::vector<Media>& media,
                const std::vector<int>& listed) {
    return deckListing(slides, media, listed, QByteArray());
}

namespace {

// The deck of `slides` whose presentation lists the slides numbered in `listed` (from 1), the
// first one's relationship pointing at `firstTarget` when one is given.
QByteArray deckListing(const std::vector<Slide>& slides, const std::vector<Media>& media,
                       const std::vector<int>& listed, const QByteArray& firstTarget) {
    static const decktest::Parts blank = decktest::blankParts();
    Archive archive;
    QByteArray ids, rels = relationship(1, "slideMaster", "slideMasters/slideMaster1.xml") +
                           relationship(2, "theme", "theme/theme1.xml");
    for (std::size_t i = 0; i < slides.size(); ++i)
        rels += relationship(
            static_cast<int>(i) + 3, "slide",
            i == 0 && !firstTarget.isEmpty()
                ? firstTarget
                : "slides/slide" + QByteArray::number(static_cast<int>(i) + 1) + ".xml");
    for (std::size_t i = 0; i < listed.size(); ++i)
        ids += "<p:sldId id=\"" + QByteArray::number(256 + static_cast<int>(i)) + "\" r:id=\"rId" +
               QByteArray::number(listed[i] + 2) + "\"/>";
    for (const auto& [name, bytes] : blank) {
        if (name.startsWith(QLatin1String("ppt/slides/"))) continue;
        if (name == QLatin1String("ppt/presentation.xml")) {
            QByteArray presentation = bytes;
            const int from = presentation.indexOf("<p:sldIdLst>") + 12;
            presentation.replace(from, presentation.indexOf("</p:sldIdLst>") - from, ids);
            archive.add(name, presentation);
        } else if (name == QLatin1String("ppt/_rels/presentation.xml.rels")) {
            archive.add(name, relationships(rels));
        } else {
            archive.add(name, bytes);
        }
    }
    // Slides of equal XML and relationships share their bytes, so they are compressed once.
    std::map<QByteArray, QByteArray> sameXml, sameRels;
    for (std::size_t i = 0; i < slides.size(); ++i) {
        const QByteArray number = QByteArray::number(static_cast<int>(i) + 1);
        QByteArray slideRels = relationship(1, "slideLayout", "../slideLayouts/slideLayout1.xml");
        for (std::size_t m = 0; m < slides[i].media.size(); ++m)
            slideRels +=
                relationship(static_cast<int>(m) + 2, "image", "/" + slides[i].media[m].toUtf8());
        auto xml = sameXml.emplace(slides[i].xml, slides[i].xml).first;
        auto relsPart = sameRels.emplace(slideRels, relationships(slideRels)).first;
        archive.add("ppt/slides/slide" + QString::fromLatin1(number) + ".xml", xml->second);
        archive.add("ppt/slides/_rels/slide" + QString::fromLatin1(number) + ".xml.rels",
                    relsPart->second);
    }
    for (const Media& m : media) archive.add(m.part, m.bytes);
    return archive.finish();
}

}  // namespace

QByteArray nestedGroups(int depth) {
    QByteArray open, close;
    open.reserve(depth * 110);
    for (int i = 0; i < depth; ++i)
        open += "<p:grpSp><p:nvGrpSpPr><p:cNvPr id=\"" + QByteArray::number(100 + i) +
                "\" name=\"Group\"/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr/>";
    for (int i = 0; i < depth; ++i) close += "</p:grpSp>";
    return deckWithOneSlide(open + textBox(2, QString::fromUtf16(kPoem)) + close);
}

QByteArray nestedElements(int depth) {
    QByteArray nested = "<x:n xmlns:x=\"urn:hostile\">";
    nested += QByteArray("<x:n>").repeated(depth) + QByteArray("</x:n>").repeated(depth + 1);
    return deckWithOneSlide(textBox(2, QString::fromUtf16(kPoem)) + nested);
}

QByteArray repeatedSlide(int times) {
    const Slide slide{slideXml(textBox(2, QString::fromUtf16(kPoem))), {}};
    return deck({slide}, {}, std::vector<int>(static_cast<std::size_t>(times), 1));
}

QByteArray manySlides(int count) {
    const Slide slide{slideXml(textBox(2, QString::fromUtf16(kPoem))), {}};
    return deck(std::vector<Slide>(static_cast<std::size_t>(count), slide));
}

QByteArray manyShapes(int count, int slides) {
    QByteArray shapes;
    const QString text = QString::fromUtf16(kPoem).left(5);
    for (int i = 0; i < count; ++i) shapes += textBox(i + 2, text, (i % 50) * 120000);
    return deck(std::vector<Slide>(static_cast<std::size_t>(slides), Slide{slideXml(shapes), {}}));
}

QByteArray bareShapes(int count, int slides) {
    QByteArray shapes;
    for (int i = 0; i < count; ++i)
        shapes +=
            "<p:sp><p:nvSpPr><p:cNvPr id=\"" + QByteArray::number(i + 2) + "\"/></p:nvSpPr></p:sp>";
    return deck(std::vector<Slide>(static_cast<std::size_t>(slides), Slide{slideXml(shapes), {}}));
}

QByteArray longRun(int characters) {
    QByteArray shape = textBox(2, QStringLiteral("@"));
    shape.replace("<a:t>@</a:t>", "<a:t>" + chinese(characters) + "</a:t>");
    return deckWithOneSlide(shape);
}

QByteArray inflatingSlides(int count, std::int64_t bytes) {
    QByteArray xml = slideXml(textBox(2, QString::fromUtf16(kPoem)));
    const int at = xml.lastIndexOf("</p:sld>");
    xml.insert(at,
               QByteArray(static_cast<int>(std::max<std::int64_t>(0, bytes - xml.size())), ' '));
    return deck(std::vector<Slide>(static_cast<std::size_t>(count), Slide{xml, {}}));
}

QByteArray denseElements(std::int64_t count) {
    const QByteArray elements = "<x:n xmlns:x=\"urn:hostile\">" +
                                QByteArray("<x:e/>").repeated(static_cast<int>(count)) + "</x:n>";
    return deckWithOneSlide(textBox(2, QString::fromUtf16(kPoem)) + elements);
}

QByteArray bigPictures(int count, int side, int level) {
    const QByteArray image = greyPng(side, side, level);
    std::vector<Slide> slides;
    std::vector<Media> media;
    const QByteArray xml = slideXml(picture(3, "rId2") + textBox(2, QString::fromUtf16(kPoem)));
    for (int i = 1; i <= count; ++i) {
        const QString part = QStringLiteral("ppt/media/image%1.png").arg(i);
        slides.push_back({xml, {part}});
        media.push_back({part, image});
    }
    return deck(slides, media);
}

QByteArray claimedPicture(std::uint32_t width, std::uint32_t height) {
    return deckWithOneSlide(picture(3, "rId2") + textBox(2, QString::fromUtf16(kPoem)),
                            {{QStringLiteral("ppt/media/image1.png"), pngClaiming(width, height)}});
}

QByteArray controlCharacters(bool inTarget) {
    QByteArray shape = textBox(2, QStringLiteral("@"));
    shape.replace("<a:t>@</a:t>",
                  "<a:t>\xe4\xb8\xad\xe6\x96\x87\x1b[2J\x1b]52;c;aGk=\x07\xe2\x80\xae</a:t>");
    shape.replace("name=\"Text 2\"", "name=\"N\x1b[31m\"");
    shape.replace("<a:rPr lang=\"zh-CN\"/>",
                  "<a:rPr lang=\"zh-CN\"><a:latin typeface=\"F\x1b[2J\"/></a:rPr>");
    return deckListing({Slide{slideXml(shape), {}}}, {}, {1},
                       inTarget ? QByteArray("../../\x1b]52;c;aGk=\x07") : QByteArray());
}

}  // namespace hostile
