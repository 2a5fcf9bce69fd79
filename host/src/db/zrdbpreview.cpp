#include "zrthumbnail.h"

#include "zrstreambuf.h"

#include <QtEndian>
#include <QString>
#include <QtGlobal>
#include <cstring>

void ZrThumbnailImage::clear()
{
    header.clear();
    bmp.clear();
    png.clear();
}

namespace {

const uint8_t kImageSentinel[16] = {0x1F, 0x25, 0x6D, 0x07, 0xD4, 0x36, 0x28, 0x28,
                                    0x9D, 0x57, 0xCA, 0x3F, 0x9D, 0x44, 0x10, 0x2B};
const uint8_t kPngSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr uint64_t kImageAddressAt = 0x0D;
// A preview is a small picture: parts or pictures beyond these are damage, not previews.
constexpr uint64_t kMaxPartBytes = 64u << 20;
constexpr uint64_t kMaxPicturePixels = 4096u * 4096u;
constexpr int kMaxEntries = 16;

enum PartCode : uint8_t { kHeaderPart = 1, kBmpPart = 2, kWmfPart = 3, kPngPart = 6 };

bool readAt(ZrStreamBuf* stream, uint64_t at, void* buffer, uint64_t count)
{
    return stream->seek(int64_t(at), ZrDb::kSeekFromStart) == at && stream->getBytes(buffer, count) == count;
}

// Releases 13 and later: "AC1012" onwards. Earlier files keep their preview elsewhere.
bool isDrawingVersion(const char* magic)
{
    if (magic[0] != 'A' || magic[1] != 'C')
        return false;
    int version = 0;
    for (int i = 2; i < 6; ++i) {
        if (magic[i] < '0' || magic[i] > '9')
            return false;
        version = version * 10 + (magic[i] - '0');
    }
    return version >= 1012;
}

// A DIB whose header, palette and rows fit in its part, uncompressed, of a preview's size.
bool isSoundDib(const std::vector<uint8_t>& dib, QString* why)
{
    if (dib.size() < 40) {
        *why = QStringLiteral("%1 bytes are too few for a bitmap header").arg(dib.size());
        return false;
    }
    const uint8_t* p = dib.data();
    const uint32_t headerSize = qFromLittleEndian<quint32>(p);
    const int32_t width = qFromLittleEndian<qint32>(p + 4);
    const int32_t height = qFromLittleEndian<qint32>(p + 8);
    const uint16_t planes = qFromLittleEndian<quint16>(p + 12);
    const uint16_t bits = qFromLittleEndian<quint16>(p + 14);
    const uint32_t compression = qFromLittleEndian<quint32>(p + 16);
    const uint64_t rows = height < 0 ? uint64_t(-int64_t(height)) : uint64_t(height);
    if (headerSize < 40 || headerSize > dib.size() || planes != 1 || compression != 0
        || (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)) {
        *why = QStringLiteral("the bitmap header (size %1, planes %2, %3 bits, compression %4) is not one of a preview")
                   .arg(headerSize).arg(planes).arg(bits).arg(compression);
        return false;
    }
    if (width <= 0 || rows == 0 || uint64_t(width) * rows > kMaxPicturePixels) {
        *why = QStringLiteral("the bitmap claims %1 x %2 pixels").arg(width).arg(height);
        return false;
    }
    const uint64_t scanLine = (uint64_t(width) * bits + 31) / 32 * 4;
    const uint64_t palette = bits <= 8 ? 4u << bits : 0;
    if (headerSize + palette + scanLine * rows > dib.size()) {
        *why = QStringLiteral("the bitmap of %1 x %2 pixels needs more than its %3 bytes")
                   .arg(width).arg(height).arg(dib.size());
        return false;
    }
    return true;
}

// A PNG signature and a first chunk IHDR of a preview's size.
bool isSoundPng(const std::vector<uint8_t>& png, QString* why)
{
    if (png.size() < 33 || std::memcmp(png.data(), kPngSignature, 8) != 0 || std::memcmp(png.data() + 12, "IHDR", 4) != 0) {
        *why = QStringLiteral("the PNG part has no PNG header");
        return false;
    }
    const uint64_t width = qFromBigEndian<quint32>(png.data() + 16);
    const uint64_t height = qFromBigEndian<quint32>(png.data() + 20);
    if (width == 0 || height == 0 || width * height > kMaxPicturePixels) {
        *why = QStringLiteral("the PNG claims %1 x %2 pixels").arg(width).arg(height);
        return false;
    }
    return true;
}

const char* partName(uint8_t code)
{
    return code == kBmpPart ? "BMP" : code == kPngPart ? "PNG" : "header";
}

} // namespace

int zrDbGetPreviewBitmap(ZrStreamBuf* stream, ZrThumbnailImage* preview)
{
    if (!preview)
        return ZrPreview::kNoFile;
    preview->clear();
    if (!stream)
        return ZrPreview::kNoFile;
    const uint64_t length = stream->length();
    char magic[6];
    uint8_t address[4];
    if (length < kImageAddressAt + 4 || !readAt(stream, 0, magic, 6) || !readAt(stream, kImageAddressAt, address, 4))
        return ZrPreview::kNoFile;
    if (!isDrawingVersion(magic))
        return ZrPreview::kNotDrawing;

    const uint64_t imageAt = qFromLittleEndian<quint32>(address);
    // Sentinel, overall size, count of entries.
    uint8_t intro[21];
    if (imageAt > length || length - imageAt < sizeof intro || !readAt(stream, imageAt, intro, sizeof intro)
        || std::memcmp(intro, kImageSentinel, 16) != 0) {
        qWarning("drawing preview: no image data at offset %llu of a file of %llu bytes",
                 static_cast<unsigned long long>(imageAt), static_cast<unsigned long long>(length));
        return ZrPreview::kNoImageData;
    }
    const int entries = intro[20];
    if (entries > kMaxEntries) {
        qWarning("drawing preview: %d entries at offset %llu, more than a preview has", entries,
                 static_cast<unsigned long long>(imageAt));
        return ZrPreview::kNoImageData;
    }
    for (int i = 0; i < entries; ++i) {
        uint8_t entry[9];
        const uint64_t entryAt = imageAt + sizeof intro + uint64_t(i) * sizeof entry;
        if (!readAt(stream, entryAt, entry, sizeof entry)) {
            qWarning("drawing preview: entry %d at offset %llu runs past the end of the file", i,
                     static_cast<unsigned long long>(entryAt));
            break;
        }
        const uint8_t code = entry[0];
        std::vector<uint8_t>* part = code == kHeaderPart ? &preview->header
                                     : code == kBmpPart  ? &preview->bmp
                                     : code == kPngPart  ? &preview->png
                                                         : nullptr;
        if (!part)
            continue; // WMF and codes of later releases
        const uint64_t start = qFromLittleEndian<quint32>(entry + 1);
        const uint64_t size = qFromLittleEndian<quint32>(entry + 5);
        if (size == 0)
            continue;
        // Both are 32 bits, so their sum cannot overflow 64 bits.
        if (start + size > length || size > kMaxPartBytes) {
            qWarning("drawing preview: the %s part of %llu bytes at offset %llu lies outside the file of %llu bytes",
                     partName(code), static_cast<unsigned long long>(size), static_cast<unsigned long long>(start),
                     static_cast<unsigned long long>(length));
            continue;
        }
        part->resize(size_t(size));
        if (!readAt(stream, start, part->data(), size)) {
            part->clear();
            continue;
        }
        QString why;
        if ((code == kBmpPart && !isSoundDib(*part, &why)) || (code == kPngPart && !isSoundPng(*part, &why))) {
            qWarning("drawing preview: the %s part at offset %llu is left out: %s", partName(code),
                     static_cast<unsigned long long>(start), qPrintable(why));
            part->clear();
        }
    }
    return ZrPreview::kOk;
}
