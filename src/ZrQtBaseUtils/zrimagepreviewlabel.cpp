#include "zrimagepreviewlabel.h"

#include "ZrQtUtilsFunc.h"
#include "zrbmpfile_p.h"
#include "zrdynlinker.h"
#include "zrglobaluireactor.h"
#include "zrlogger.h"
#include "zrrasterservices.h"
#include "zrstreambuf.h"
#include "zrsystemservices.h"
#include "zrthumbnail.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPixmap>
#include <QtEndian>

#include <spdlog/spdlog.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

namespace {

enum Kind { kNone = 0, kImage = 1, kPdf = 2, kDwg = 3, kDwt = 4 };

// Images of this size and more are not decoded unless the limit is off.
constexpr qint64 kSizeLimit = 2097152;
constexpr int kBmpInfoHeaderSize = 40;

int kindOfExtension(const QString& extension)
{
    static const QStringList images = QStringLiteral("jpg;bmp;gif;jpeg;tif;tiff;tga;png;pcx;cal;svg")
                                          .split(QLatin1Char(';'));
    if (images.contains(extension))
        return kImage;
    if (extension == QLatin1String("pdf"))
        return kPdf;
    if (extension == QLatin1String("dwg"))
        return kDwg;
    if (extension == QLatin1String("dwt"))
        return kDwt;
    return kNone;
}

void logWarning(int line, const char* function, const char* text)
{
    const std::shared_ptr<spdlog::logger> logger = ZrLogger::getInstance()->getSpdLogger();
    if (!logger)
        return;
    char buffer[1024];
    std::snprintf(buffer, sizeof buffer, "%s", text);
    logger->log(spdlog::source_loc{__FILE__, line, function}, spdlog::level::warn, spdlog::string_view_t(buffer));
}

using Bytes = std::vector<uchar>;

// A BMP file of `restSize` bytes after its file header, which holds `dibHeaderSize` bytes of header
// and a palette of `paletteSize` bytes before the rows; the file header is written, the rest is left
// to the caller.
Bytes bmpFile(quint64 restSize, quint32 dibHeaderSize, quint32 paletteSize)
{
    Bytes file(size_t(kZrBmpFileHeaderSize + restSize));
    zrWriteBmpFileHeader(file.data(), quint32(kZrBmpFileHeaderSize + restSize),
                         kZrBmpFileHeaderSize + dibHeaderSize + paletteSize);
    return file;
}

// A BMP file of a host image, rows from the top; empty for an image whose pixels lie only in a
// bitmap of its own.
Bytes bmpOfRaster(const ZrGiRasterImage& image)
{
    const int width = image.pixelWidth();
    const int height = image.pixelHeight();
    const int bits = image.colorDepth();
    const int colors = std::max(image.numColors(), 0);
    if (width <= 0 || height <= 0 || !image.scanLines() || image.scanLineSize() <= 0)
        return Bytes();
    const quint32 paletteSize = quint32(colors) * 4;
    const quint64 scanLine = ZrGiRasterImage::calcBMPScanLineSize(quint64(width), bits);
    const quint64 imageSize = scanLine * quint64(height);
    Bytes file = bmpFile(kBmpInfoHeaderSize + paletteSize + imageSize, kBmpInfoHeaderSize, paletteSize);
    uchar* p = file.data() + kZrBmpFileHeaderSize;
    qToLittleEndian<quint32>(kBmpInfoHeaderSize, p);
    qToLittleEndian<qint32>(width, p + 4);
    qToLittleEndian<qint32>(-height, p + 8);
    qToLittleEndian<quint16>(1, p + 12);
    qToLittleEndian<quint16>(quint16(bits), p + 14);
    qToLittleEndian<quint32>(0, p + 16);
    qToLittleEndian<quint32>(quint32(imageSize), p + 20);
    qToLittleEndian<qint32>(image.xPelsPerMeter(), p + 24);
    qToLittleEndian<qint32>(image.yPelsPerMeter(), p + 28);
    qToLittleEndian<quint32>(0, p + 32);
    qToLittleEndian<quint32>(0, p + 36);
    // Table entries are 0xFFRRGGBB words: little-endian they are the blue, green, red and reserved
    // bytes of a BMP palette entry.
    uchar* palette = p + kBmpInfoHeaderSize;
    for (int i = 0; i < colors; ++i)
        qToLittleEndian<quint32>(image.color(i), palette + 4 * i);
    uchar* rows = palette + paletteSize;
    const size_t copied = size_t(std::min<quint64>(scanLine, quint64(image.scanLineSize())));
    for (int row = 0; row < height; ++row)
        std::memcpy(rows + quint64(row) * scanLine, image.scanLine(row), copied);
    return file;
}

// The size a preview takes: its parent's, or its own without one.
QSize previewArea(const QWidget* label)
{
    return label->parentWidget() ? label->parentWidget()->size() : label->size();
}

// An SVG file drawn no larger than `fit`: its declared size may be any, and drawing it whole at
// 12 000 by 12 000 would take 576 MB.
QPixmap readSvg(const QString& path, const QSize& fit)
{
    QImageReader reader(path);
    const QSize size = reader.size();
    if (size.isValid() && !fit.isEmpty() && (size.width() > fit.width() || size.height() > fit.height()))
        reader.setScaledSize(size.scaled(fit, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    return QPixmap::fromImage(reader.read());
}

quint32 readLittleEndian32(ZrStreamBuf& stream)
{
    uchar bytes[4] = {};
    stream.getBytes(bytes, 4);
    return qFromLittleEndian<quint32>(bytes);
}

quint16 readLittleEndian16(ZrStreamBuf& stream)
{
    uchar bytes[2] = {};
    stream.getBytes(bytes, 2);
    return qFromLittleEndian<quint16>(bytes);
}

// The DIB of a drawing's preview made into a BMP file; empty when its header does not fit its rows.
Bytes bmpOfDib(std::vector<uint8_t>& dib)
{
    if (dib.size() < 16 || dib.size() > std::numeric_limits<uint>::max() - kZrBmpFileHeaderSize)
        return Bytes();
    const ZrSmartPtr<ZrFlatMemStream> stream = ZrFlatMemStream::createNew(dib.data(), dib.size());
    const quint32 headerSize = readLittleEndian32(*stream);
    const qint32 width = qint32(readLittleEndian32(*stream));
    const qint32 height = qint32(readLittleEndian32(*stream));
    readLittleEndian16(*stream); // planes
    const quint16 bits = readLittleEndian16(*stream);
    const quint64 rows = height < 0 ? quint64(-qint64(height)) : quint64(height);
    const quint64 imageSize = ZrGiRasterImage::calcBMPScanLineSize(quint64(qMax(width, 0)), bits) * rows;
    const quint64 paletteSize = bits <= 8 ? quint64(4) << bits : 0;
    if (width <= 0 || rows == 0 || bits == 0 || bits > 32 || quint64(headerSize) + paletteSize + imageSize > dib.size())
        return Bytes();
    Bytes file = bmpFile(dib.size(), headerSize, quint32(paletteSize));
    std::copy(dib.begin(), dib.end(), file.begin() + kZrBmpFileHeaderSize);
    return file;
}

} // namespace

struct ZrImagePreviewLabel::Private
{
    int kind = kNone;
    QString path;
    QString name;
    bool withoutSize = false;
    QPixmap preview;
};

ZrImagePreviewLabel::ZrImagePreviewLabel(QWidget* parent, Qt::WindowFlags flags)
    : QLabel(parent, flags), d(new Private)
{
    setWordWrap(true);
}

ZrImagePreviewLabel::ZrImagePreviewLabel(const QString& text, QWidget* parent, Qt::WindowFlags flags)
    : QLabel(text, parent, flags), d(new Private)
{
}

ZrImagePreviewLabel::~ZrImagePreviewLabel() = default;

void ZrImagePreviewLabel::setFilePath(const QString& path)
{
    d->path = path;
    d->kind = kNone;
    QString normalised = path;
    normalised.replace(QLatin1Char('\\'), QLatin1Char('/'));
    d->name = normalised.mid(normalised.lastIndexOf(QLatin1Char('/')) + 1);
    if (d->name.isEmpty())
        return;
    const int dot = d->name.lastIndexOf(QLatin1Char('.'));
    if (dot >= 0)
        d->kind = kindOfExtension(d->name.mid(dot + 1));
}

void ZrImagePreviewLabel::showPreview()
{
    clear();
    switch (d->kind) {
    case kImage:
        showImage();
        break;
    case kPdf:
        showPdf();
        break;
    case kDwg:
    case kDwt:
        showDwg();
        break;
    default:
        break;
    }
}

void ZrImagePreviewLabel::setWithoutSize() { d->withoutSize = true; }

QPixmap ZrImagePreviewLabel::getPreviewPixmap() const { return d->preview; }

void ZrImagePreviewLabel::showImage()
{
    const QSize area = previewArea(this);
    if (QFileInfo(d->path).size() >= kSizeLimit && !d->withoutSize) {
        move(0, 0);
        resize(area);
        setAlignment(Qt::AlignCenter);
        setText(zrUiText("IDS_QTUTILS_IMAGE_PREVIEWLABEL_0", QStringLiteral(">2M不显示预览")));
        return;
    }
    QPixmap pixmap;
    const int dot = d->name.lastIndexOf(QLatin1Char('.'));
    // Pictures are read no larger than they are shown.
    const QSize fit = area * devicePixelRatioF();
    if (isSvgFormat(ZrString(d->path)) || d->name.mid(dot + 1).compare(QLatin1String("svg"), Qt::CaseInsensitive) == 0) {
        pixmap = readSvg(d->path, fit);
    } else {
        const ZrSmartPtr<ZrRxRasterServices> raster(
            ZrRxRasterServices::cast(zrrxDynamicLinkerLoadAppEx(ZrString(L"ZrRaster"), true, 2, false).get()));
        const ZrSmartPtr<ZrGiRasterImage> image =
            raster ? raster->loadRasterImage(ZrString(d->path), fit.width(), fit.height()) : nullptr;
        if (image) {
            const Bytes file = bmpOfRaster(*image);
            pixmap.loadFromData(file.data(), uint(file.size()), "BMP");
        }
    }
    scaledPixmapAndPreview(pixmap);
}

void ZrImagePreviewLabel::showDwg()
{
    ZrQtBlockSignalUtil blocker(this);
    ZrRxSystemServices* services = zrrxSystemServices();
    if (!services)
        return;
    ZrThumbnailImage thumbnail;
    const ZrStreamBufPtr stream = services->createFile(ZrString(d->path), Zr::kFileRead, Zr::kShareDenyNo,
                                                       Zr::kOpenExisting);
    zrDbGetPreviewBitmap(stream.get(), &thumbnail);
    if (!thumbnail.hasBmp() && !thumbnail.hasPng()) {
        clear();
        logWarning(__LINE__, "showDwg", "odImage为空");
        d->preview = QPixmap();
        return;
    }
    QPixmap pixmap;
    if (thumbnail.hasBmp()) {
        const Bytes file = bmpOfDib(thumbnail.bmp);
        if (file.empty() || !pixmap.loadFromData(file.data(), uint(file.size()), "BMP"))
            clear();
    } else if (!pixmap.loadFromData(thumbnail.png.data(), uint(thumbnail.png.size()), "PNG")) {
        clear();
    }
    if (pixmap.isNull()) {
        clear();
        return;
    }
    setPixmap(pixmap);
    scaledPixmapAndPreview(pixmap);
    d->preview = pixmap;
}

void ZrImagePreviewLabel::showPdf() {}

void ZrImagePreviewLabel::scaledPixmapAndPreview(QPixmap& pixmap)
{
    if (pixmap.isNull())
        return;
    const QSize area = previewArea(this);
    const double areaWidth = area.width();
    const double areaHeight = area.height();
    const double pictureWidth = pixmap.width();
    const double pictureHeight = pixmap.height();
    // A parent not laid out yet has no size to fit into: the picture is shown as it is.
    QSize target = pixmap.size();
    if (areaWidth > 0 && areaHeight > 0) {
        if (pictureWidth / areaWidth > pictureHeight / areaHeight)
            target = QSize(int(areaWidth), int(pictureHeight * areaWidth / pictureWidth));
        else
            target = QSize(int(pictureWidth * areaHeight / pictureHeight), int(areaHeight));
    }
    const QPixmap scaled = pixmap.scaled(target, Qt::KeepAspectRatio, Qt::FastTransformation);
    resize(target);
    move((area.width() - width()) / 2, (area.height() - height()) / 2);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    setPixmap(scaled);
    setAlignment(Qt::AlignCenter);
}

bool isSvgFormat(const ZrString& path)
{
    QFile file(path.toQString());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray namespaceAttribute = QByteArrayLiteral("xmlns=\"http://www.w3.org/2000/svg\"");
    // Lines are read in pieces of at most 1 MiB, so that a file without line breaks is never read whole.
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(1 << 20);
        if (line.isEmpty())
            break;
        if (line.contains("<svg") && line.contains(namespaceAttribute))
            return true;
    }
    return false;
}
