// SPDX-License-Identifier: MIT
#include "minihost/slxcore/pngscaling_p.h"

#include <png.h>

#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <vector>

namespace minihost {
namespace {

// What libpng works on. libpng reports an error by a longjmp to the last setjmp: the functions
// that set one (readHeader, readRow) keep no object with a destructor alive across it, and
// everything they touch lives here or with their caller.
struct Reading {
    png_structp png = nullptr;
    png_infop info = nullptr;
    const png_byte* data = nullptr;
    std::size_t size = 0;
    std::size_t at = 0;
    char problem[160] = {};
};

void readBytes(png_structp png, png_bytep out, png_size_t length) {
    auto* reading = static_cast<Reading*>(png_get_io_ptr(png));
    if (length > reading->size - reading->at) png_error(png, "the picture is cut short");
    std::memcpy(out, reading->data + reading->at, length);
    reading->at += length;
}

[[noreturn]] void onError(png_structp png, png_const_charp message) {
    auto* reading = static_cast<Reading*>(png_get_error_ptr(png));
    std::snprintf(reading->problem, sizeof reading->problem, "%s", message);
    png_longjmp(png, 1);
}

void onWarning(png_structp, png_const_charp) {}

// Reads the header and asks for 8-bit RGBA rows. False after an error.
bool readHeader(Reading* r, png_uint_32* width, png_uint_32* height, int* passes) {
    if (setjmp(png_jmpbuf(r->png))) return false;
    png_read_info(r->png, r->info);
    png_set_expand(r->png);  // palette, gray below 8 bits and tRNS to 8-bit RGB(A)
    png_set_strip_16(r->png);
    png_set_gray_to_rgb(r->png);
    png_set_add_alpha(r->png, 0xFF, PNG_FILLER_AFTER);
    *passes = png_set_interlace_handling(r->png);
    png_read_update_info(r->png, r->info);
    *width = png_get_image_width(r->png, r->info);
    *height = png_get_image_height(r->png, r->info);
    return png_get_rowbytes(r->png, r->info) == static_cast<png_size_t>(*width) * 4;
}

bool readRow(Reading* r, png_bytep row) {
    if (setjmp(png_jmpbuf(r->png))) return false;
    png_read_row(r->png, row, nullptr);
    return true;
}

}  // namespace

QImage decodePngScaled(const QByteArray& png, const QSize& size, int maxSide, QString* problem) {
    Reading r;
    r.data = reinterpret_cast<const png_byte*>(png.constData());
    r.size = static_cast<std::size_t>(png.size());
    r.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &r, onError, onWarning);
    if (r.png) r.info = png_create_info_struct(r.png);
    if (!r.png || !r.info) {
        png_destroy_read_struct(&r.png, &r.info, nullptr);
        throw std::bad_alloc();
    }
    png_set_read_fn(r.png, &r, readBytes);
    png_set_user_limits(r.png, static_cast<png_uint_32>(maxSide),
                        static_cast<png_uint_32>(maxSide));
    png_uint_32 width = 0, height = 0;
    int passes = 0;
    QImage result;
    if (!readHeader(&r, &width, &height, &passes)) {
        *problem = QString::fromUtf8(r.problem[0] ? r.problem : "its rows are not 8-bit RGBA");
    } else if (passes > 1) {
        *problem = QStringLiteral("it is interlaced");
    } else if (size.width() < 1 || size.height() < 1 ||
               static_cast<png_uint_32>(size.width()) > width ||
               static_cast<png_uint_32>(size.height()) > height) {
        *problem = QStringLiteral("it is smaller than it would be drawn");
    } else {
        const int outWidth = size.width(), outHeight = size.height();
        result = QImage(size, QImage::Format_ARGB32_Premultiplied);
        if (result.isNull()) throw std::bad_alloc();
        // Each pixel of the picture falls on one pixel of the result: column x on x * W / w, row
        // y on y * H / h. A pixel of the result is the average of those that fall on it,
        // premultiplied by their alpha.
        std::vector<int> column(width);
        std::vector<std::uint64_t> across(static_cast<std::size_t>(outWidth));
        for (png_uint_32 x = 0; x < width; ++x) {
            column[x] = static_cast<int>(static_cast<std::uint64_t>(x) * outWidth / width);
            ++across[static_cast<std::size_t>(column[x])];
        }
        std::vector<png_byte> row(static_cast<std::size_t>(width) * 4);
        std::vector<std::uint64_t> sums(static_cast<std::size_t>(outWidth) * 4);
        int outRow = 0;
        std::uint64_t rowsIn = 0;
        auto flush = [&]() {
            auto* line = reinterpret_cast<QRgb*>(result.scanLine(outRow));
            for (int x = 0; x < outWidth; ++x) {
                const std::uint64_t n = across[static_cast<std::size_t>(x)] * rowsIn;
                const std::uint64_t* s = &sums[static_cast<std::size_t>(x) * 4];
                line[x] =
                    qRgba(static_cast<int>(s[0] / (n * 255)), static_cast<int>(s[1] / (n * 255)),
                          static_cast<int>(s[2] / (n * 255)), static_cast<int>(s[3] / n));
            }
            std::fill(sums.begin(), sums.end(), 0);
            rowsIn = 0;
        };
        for (png_uint_32 y = 0; y < height; ++y) {
            if (!readRow(&r, row.data())) {
                *problem = QString::fromUtf8(r.problem);
                result = QImage();
                break;
            }
            const int target = static_cast<int>(static_cast<std::uint64_t>(y) * outHeight / height);
            if (target != outRow) {
                flush();
                outRow = target;
            }
            for (png_uint_32 x = 0; x < width; ++x) {
                const png_byte* p = &row[static_cast<std::size_t>(x) * 4];
                std::uint64_t* s = &sums[static_cast<std::size_t>(column[x]) * 4];
                s[0] += static_cast<std::uint64_t>(p[0]) * p[3];
                s[1] += static_cast<std::uint64_t>(p[1]) * p[3];
                s[2] += static_cast<std::uint64_t>(p[2]) * p[3];
                s[3] += p[3];
            }
            ++rowsIn;
        }
        if (!result.isNull()) flush();
    }
    png_destroy_read_struct(&r.png, &r.info, nullptr);
    return result;
}

}  // namespace minihost
