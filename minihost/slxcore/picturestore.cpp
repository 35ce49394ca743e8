// SPDX-License-Identifier: MIT
#include "minihost/slxcore/picturestore.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <cmath>

#include "minihost/slxcore/decklimits.h"
#include "minihost/slxcore/pngscaling_p.h"

namespace minihost {
namespace {

// The formats pictures in decks come in that are drawn; others (SVG, TIFF, ...) are not handed
// to a decoder at all.
bool drawnFormat(const QByteArray& format) {
    return format == "png" || format == "jpeg" || format == "gif" || format == "bmp";
}

// The size to decode a picture of `own` pixels at for drawing it into `wanted` device pixels:
// no larger than the picture or the limit a side (the proportions of `wanted` kept), at least 1.
QSize decodingSize(const QSize& own, const QSize& wanted) {
    QSize size(std::min(wanted.width(), own.width()), std::min(wanted.height(), own.height()));
    const int longer = std::max(size.width(), size.height());
    if (longer > limits::kPictureDrawnSide) {
        const double scale = static_cast<double>(limits::kPictureDrawnSide) / longer;
        size = QSize(static_cast<int>(std::lround(size.width() * scale)),
                     static_cast<int>(std::lround(size.height() * scale)));
    }
    return size.expandedTo(QSize(1, 1));
}

}  // namespace

PictureStore::PictureStore(Reader read) : m_read(std::move(read)) {}

PictureStore::~PictureStore() = default;

QString PictureStore::problem(const QString& part) const {
    const auto it = m_entries.find(part);
    return it == m_entries.end() ? QString() : it->second.problem;
}

QImage PictureStore::picture(const QString& part, const QSize& pixels) {
    auto [it, fresh] = m_entries.try_emplace(part);
    Entry& entry = it->second;
    if (fresh) {
        entry.recent = m_recent.insert(m_recent.begin(), part);
    } else {
        m_recent.splice(m_recent.begin(), m_recent, entry.recent);
    }
    if (!entry.problem.isEmpty()) return {};
    const QSize wanted = pixels.expandedTo(QSize(1, 1));
    if (!entry.image.isNull()) {
        const QSize needed = decodingSize(entry.size, wanted);
        if (entry.image.width() >= needed.width() && entry.image.height() >= needed.height())
            return entry.image;
    }
    decode(part, entry, wanted);
    const QImage image = entry.image;  // may go in keepWithinMemory when it alone is too large
    keepWithinMemory();
    return image;
}

void PictureStore::decode(const QString& part, Entry& entry, const QSize& wanted) {
    m_memory -= entry.image.sizeInBytes();
    entry.image = QImage();
    QString problem;
    QByteArray bytes = m_read(part, &problem);
    const QString name = QStringLiteral("picture \"%1\"").arg(part);
    if (bytes.isEmpty()) {
        entry.problem = problem.isEmpty() ? name + QStringLiteral(" is empty") : problem;
        return;
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format();
    if (!drawnFormat(format)) {
        entry.problem = format.isEmpty()
                            ? name + QStringLiteral(" is in no format this program draws")
                            : name + QStringLiteral(" is in %1, which is not drawn")
                                         .arg(QString::fromLatin1(format).toUpper());
        return;
    }
    const QSize own = reader.size();
    const std::int64_t pixels = static_cast<std::int64_t>(own.width()) * own.height();
    if (!own.isValid() || own.isEmpty()) {
        entry.problem = name + QStringLiteral(" gives no size in its header");
        return;
    }
    if (own.width() > limits::kPictureSide || own.height() > limits::kPictureSide ||
        pixels > limits::kPicturePixels) {
        entry.problem = name + QStringLiteral(
                                   " claims %1 x %2 pixels (the limit is %3 a side and %4 "
                                   "in all)")
                                   .arg(own.width())
                                   .arg(own.height())
                                   .arg(limits::kPictureSide)
                                   .arg(limits::kPicturePixels);
        return;
    }
    // Counted once, when first decoded: the work of decoding grows with the picture's own size.
    if (!entry.size.isValid()) {
        if (m_pixelsTaken + pixels > limits::kDeckPicturePixels) {
            entry.problem =
                name + QStringLiteral(" takes the deck's pictures to %1 pixels (the limit is %2)")
                           .arg(m_pixelsTaken + pixels)
                           .arg(limits::kDeckPicturePixels);
            return;
        }
        m_pixelsTaken += pixels;
        entry.size = own;
    }
    const QSize size = decodingSize(own, wanted);
    QImage image;
    if (pixels <= limits::kPictureWholePixels) {
        image = reader.read();
        if (!image.isNull() && image.size() != size)
            image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    } else if (format == "png") {
        QString why;
        image = decodePngScaled(bytes, size, limits::kPictureSide, &why);
        if (image.isNull())
            problem = name + QStringLiteral(" cannot be decoded scaled (%1)").arg(why);
    } else if (format == "jpeg") {
        // Below the quality of 50 the decoder shrinks while it decodes (1/2, 1/4, 1/8), so a
        // large photograph never takes its whole size in memory.
        reader.setQuality(49);
        reader.setScaledSize(size);
        image = reader.read();
    } else {
        problem = name + QStringLiteral(
                             " has %1 x %2 pixels in %3, which is decoded only whole "
                             "(the limit is %4 pixels)")
                             .arg(own.width())
                             .arg(own.height())
                             .arg(QString::fromLatin1(format).toUpper())
                             .arg(limits::kPictureWholePixels);
    }
    ++m_decodes;
    if (image.isNull()) {
        entry.problem =
            problem.isEmpty()
                ? name + QStringLiteral(" cannot be decoded (%1)").arg(reader.errorString())
                : problem;
        return;
    }
    entry.image = image;
    m_memory += entry.image.sizeInBytes();
}

void PictureStore::keepWithinMemory() {
    for (auto it = m_recent.rbegin(); m_memory > limits::kPictureMemory && it != m_recent.rend();
         ++it) {
        Entry& entry = m_entries.at(*it);
        m_memory -= entry.image.sizeInBytes();
        entry.image = QImage();
    }
}

}  // namespace minihost
