// SPDX-License-Identifier: MIT
// The pictures of one deck, decoded for whatever draws its slides (the studio's slide view and
// thumbnails, a rendering to files): each part decoded once, at the size it is drawn, within
// limits, and shared by everyone who draws. A picture whose header claims 100000 x 100000 pixels
// is refused before anything is decoded; one of 12000 x 12000 pixels drawn 400 pixels wide takes
// 400 pixels' width of memory, however often and by however many views it is drawn.
//
// Deck::pictures() gives a deck's store; the names it takes are DrawnShape::picture. One thread.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <cstdint>
#include <functional>
#include <list>
#include <map>

#include "hostexport.h"

namespace minihost {

class ZHOST_API PictureStore {
public:
    // The bytes of part `part` of the deck, or an empty array and `*problem` (a complete
    // message, "<file>: <what is wrong>").
    using Reader = std::function<QByteArray(const QString& part, QString* problem)>;
    explicit PictureStore(Reader read);
    ~PictureStore();
    PictureStore(const PictureStore&) = delete;
    PictureStore& operator=(const PictureStore&) = delete;

    // The picture of media part `part` for drawing into `pixels` device pixels (the painter scales
    // what it is given to the box it draws in). Its size is read from its header first; it is
    // decoded at `pixels` (at most its own size, and limits::kPictureDrawnSide a side), and a later
    // call for a size no larger gets the same image without decoding; a larger one decodes it
    // again. A null image, and problem() says why, when the part cannot be read or decoded, is not
    // PNG, JPEG, GIF or BMP, claims more than limits::kPictureSide a side or
    // limits::kPicturePixels in all, has more than limits::kPictureWholePixels and cannot be
    // decoded scaled (only PNG without interlacing and JPEG can), or when the deck's pictures have
    // already taken limits::kDeckPicturePixels. Decoded pictures kept take at most
    // limits::kPictureMemory; the least recently drawn go first.
    QImage picture(const QString& part, const QSize& pixels);
    // Why picture() gave `part` no image, e.g. "picture \"ppt/media/image1.png\" claims 100000 x
    // 100000 pixels (the limit is 65535 a side and 268435456 in all)", or the deck's own message
    // when the part cannot be read; empty when it gave one (or was not asked for).
    QString problem(const QString& part) const;

    // How many times a picture was decoded, for tests and benchmarks.
    int decodes() const { return m_decodes; }

private:
    struct Entry {
        QSize size;  // its own, from its header; invalid until read
        QImage image;
        QString problem;
        std::list<QString>::iterator recent;
    };
    void decode(const QString& part, Entry& entry, const QSize& wanted);
    void keepWithinMemory();

    Reader m_read;
    std::map<QString, Entry> m_entries;
    std::list<QString> m_recent;  // most recently drawn first
    std::int64_t m_pixelsTaken = 0;
    std::int64_t m_memory = 0;
    int m_decodes = 0;
};

}  // namespace minihost
