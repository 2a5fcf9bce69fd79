#pragma once
// Files with the layout of a DWG file's preview section, made by the tests themselves: the version,
// the pointer at 0x0D to the image data, the sentinel, the entries and their parts.

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageWriter>
#include <QVector>
#include <QtEndian>

namespace ZrTest {

enum PreviewCode : quint8 { kPreviewHeader = 1, kPreviewBmp = 2, kPreviewWmf = 3, kPreviewPng = 6 };

struct PreviewPart
{
    quint8 code;
    QByteArray data;
};

constexpr int kImageAddressAt = 0x0D;
// Where the builder puts the image data, and where entry i of its table starts.
constexpr int kImageDataAt = 0x80;
constexpr int previewEntryAt(int i) { return kImageDataAt + 21 + 9 * i; }

inline void putLittleEndian32(QByteArray& bytes, int at, quint32 value)
{
    qToLittleEndian<quint32>(value, reinterpret_cast<uchar*>(bytes.data()) + at);
}

inline QByteArray dwgWithPreview(const QVector<PreviewPart>& parts, const char* version = "AC1032")
{
    static const char start[] = "\x1F\x25\x6D\x07\xD4\x36\x28\x28\x9D\x57\xCA\x3F\x9D\x44\x10\x2B";
    static const char end[] = "\xE0\xDA\x92\xF8\x2B\xC9\xD7\xD7\x62\xA8\x35\xC0\x62\xBB\xEF\xD4";
    QByteArray file(kImageDataAt, '\0');
    file.replace(0, 6, version);
    putLittleEndian32(file, kImageAddressAt, kImageDataAt);
    file.append(start, 16);
    file.append(QByteArray(4, '\0'));
    file.append(char(parts.size()));
    int dataAt = file.size() + 9 * parts.size();
    QByteArray table;
    QByteArray data;
    for (const PreviewPart& part : parts) {
        QByteArray entry(9, '\0');
        entry[0] = char(part.code);
        putLittleEndian32(entry, 1, quint32(dataAt + data.size()));
        putLittleEndian32(entry, 5, quint32(part.data.size()));
        table += entry;
        data += part.data;
    }
    file += table + data;
    putLittleEndian32(file, kImageDataAt + 16, quint32(file.size() - kImageDataAt - 20));
    file.append(end, 16);
    // Drawing data would follow; a little of it keeps the image from ending the file.
    file.append(QByteArray(64, '\x55'));
    return file;
}

inline QByteArray imageBytes(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.write(image);
    return bytes;
}

// A DIB as a drawing stores it: a BMP file without its 14-byte file header.
inline QByteArray dibOf(const QImage& image) { return imageBytes(image, "BMP").mid(14); }
inline QByteArray pngOf(const QImage& image) { return imageBytes(image, "PNG"); }

inline QImage filledImage(int width, int height, QColor colour, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(width, height, format);
    image.fill(colour);
    return image;
}

} // namespace ZrTest
