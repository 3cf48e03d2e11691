#include "ui/icons/IconImage.h"

#include "ui/icons/SvgLimits.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace hollowfernpike {

namespace {

constexpr qsizetype mostBytes = qsizetype{4} << 20;
constexpr qint64 mostPixels = qint64{4} << 20;

/// Null if it is no regular file. Does not wait for the other end of a pipe.
QByteArray contentsOf(const std::string& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return {};
    }
    QByteArray bytes;
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_size <= mostBytes) {
        bytes.resize(status.st_size);
        qsizetype length = 0;
        for (ssize_t part = 1; part > 0 && length < bytes.size(); length += part) {
            part = std::max<ssize_t>(0, ::read(descriptor, bytes.data() + length,
                                               static_cast<std::size_t>(bytes.size() - length)));
        }
        bytes.truncate(length);
    }
    ::close(descriptor);
    return bytes;
}

/// Null if it is damaged or too much.
QByteArray unpacked(const QByteArray& packed) {
    z_stream stream = {};
    if (::inflateInit2(&stream, 16 + MAX_WBITS) != Z_OK) { // 16: with the header of gzip
        return {};
    }
    QByteArray bytes;
    bytes.resize(mostBytes);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    const bool isWhole = ::inflate(&stream, Z_FINISH) == Z_STREAM_END;
    bytes.truncate(isWhole ? static_cast<qsizetype>(stream.total_out) : 0);
    ::inflateEnd(&stream);
    return bytes;
}

/// The name by which the toolkit knows a format of pixels; null if it is none that we read.
const char* formatOf(const QByteArray& bytes) {
    if (bytes.startsWith("\x89PNG\r\n\x1a\n")) {
        return "png";
    }
    if (bytes.startsWith("\xFF\xD8\xFF")) {
        return "jpeg";
    }
    return bytes.startsWith("/* XPM") ? "xpm" : nullptr;
}

QImage scaledDown(const QImage& image, const QSize& size) {
    const bool fits = image.width() <= size.width() && image.height() <= size.height();
    return fits ? image : image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QImage decoded(const QByteArray& bytes, const char* format) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    const QSize whole = reader.size();
    const bool fits = !whole.isEmpty() && qint64{whole.width()} * whole.height() <= mostPixels;
    return fits ? reader.read() : QImage();
}

QImage drawn(const QByteArray& text, const QSize& size) {
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "svg");
    const QSize whole = reader.size();
    reader.setScaledSize((whole.isEmpty() ? size : whole).scaled(size, Qt::KeepAspectRatio));
    return reader.read();
}

} // namespace

QImage readIconImage(const std::string& file, const QSize& size) {
    return iconImage(contentsOf(file), size);
}

QImage iconImage(const QByteArray& bytes, const QSize& size) {
    if (const char* const format = formatOf(bytes)) {
        return scaledDown(decoded(bytes, format), size);
    }
    const QByteArray text = bytes.startsWith("\x1f\x8b") ? unpacked(bytes) : bytes;
    return isHarmlessSvg(text) ? drawn(text, size) : QImage();
}

bool isHarmlessPicture(const QByteArray& bytes) {
    const char* const format = formatOf(bytes);
    return format != nullptr && !decoded(bytes, format).isNull();
}

} // namespace hollowfernpike
