#include "ZrQtUtilsFunc.h"
#include "zrbmpfile_p.h"

#include "zrcmcolor.h"
#include "zrconfig.h"
#include "zrgiraster.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QImageReader>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QRadioButton>
#include <QTableView>
#include <QTreeWidget>
#include <climits>
#include <cstring>
#include <sys/stat.h>

QString zrUiText(const char* key, const QString& def)
{
    ZrRxObjectPtr object = CXuSystem::instance()->serviceManager()->getService(ZrString(L"ZrUiLanguageSvr"));
    const ZrUiLanguageSvr* language = ZrUiLanguageSvr::cast(object.get());
    if (!language)
        return def;
    return language->getText(ZrString::fromUtf8(key), ZrString(def)).toQString();
}

QString zrutGetImageFullPath(const QString& name, const bool& raw)
{
    if (name.isEmpty())
        return QString();
    ZrJsonPtr rootValue = zr_runtime_config("ResRootPath");
    if (rootValue.isNullOrNoDef())
        return QString();
    const QString theme = zredGetCurrentTheme() == 1 ? QStringLiteral("light/") : QStringLiteral("dark/");
    const QString root = rootValue->safeStrValue().toQString();

    QString path = root + QStringLiteral("/ImageRes/") + (raw ? QString() : theme) + name;
    if (!QFile::exists(path)) {
        if (!raw)
            path = root + QStringLiteral("/RibbonIcon/") + theme + name;
        if (raw || !QFile::exists(path))
            return QString();
    }
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

void drawSmoothPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source, QPainter& painter)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, pixmap, source);
}

void drawSmoothPixmap(const QPointF& point, const QPixmap& pixmap, QPainter& painter)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(point, pixmap);
}

void drawSmoothPixmap(const QRect& target, const QPixmap& pixmap, const QRect& source, QPainter& painter)
{
    drawSmoothPixmap(QRectF(target), pixmap, QRectF(source), painter);
}

void drawSmoothPixmap(const QPoint& point, const QPixmap& pixmap, QPainter& painter)
{
    drawSmoothPixmap(QPointF(point), pixmap, painter);
}

void drawSmoothPixmap(const QRect& target, const QPixmap& pixmap, QPainter& painter)
{
    drawSmoothPixmap(QRectF(target), pixmap, QRectF(pixmap.rect()), painter);
}

void drawSmoothPixmap(int x, int y, const QPixmap& pixmap, QPainter& painter)
{
    drawSmoothPixmap(QPointF(x, y), pixmap, painter);
}

void drawSmoothPixmap(int x, int y, int w, int h, const QPixmap& pixmap, QPainter& painter)
{
    drawSmoothPixmap(QRectF(x, y, w, h), pixmap, QRectF(pixmap.rect()), painter);
}

void drawSmoothPixmap(int x, int y, int w, int h, const QPixmap& pixmap, int sx, int sy, int sw, int sh,
                      QPainter& painter)
{
    drawSmoothPixmap(QRectF(x, y, w, h), pixmap, QRectF(sx, sy, sw, sh), painter);
}

void drawSmoothPixmap(int x, int y, const QPixmap& pixmap, int sx, int sy, int sw, int sh, QPainter& painter)
{
    drawSmoothPixmap(QRectF(x, y, sw, sh), pixmap, QRectF(sx, sy, sw, sh), painter);
}

void drawSmoothPixmap(const QPointF& point, const QPixmap& pixmap, const QRectF& source, QPainter& painter)
{
    drawSmoothPixmap(QRectF(point, source.size()), pixmap, source, painter);
}

void drawSmoothPixmap(const QPoint& point, const QPixmap& pixmap, const QRect& source, QPainter& painter)
{
    drawSmoothPixmap(QRectF(QPointF(point), QSizeF(source.size())), pixmap, QRectF(source), painter);
}

namespace {

// The bits of a bitmap held in memory start behind the 14-byte file header and the 40-byte
// information header.
constexpr uint32_t kBmpDataOffset = 54;

QImage imageOfBitmap(const uint8_t* bitmap, size_t size)
{
    if (size > size_t(INT_MAX - kZrBmpFileHeaderSize))
        return QImage();
    QByteArray file(kZrBmpFileHeaderSize + static_cast<int>(size), Qt::Uninitialized);
    zrWriteBmpFileHeader(reinterpret_cast<uint8_t*>(file.data()), static_cast<uint32_t>(kZrBmpFileHeaderSize + size),
                         kBmpDataOffset);
    std::memcpy(file.data() + kZrBmpFileHeaderSize, bitmap, size);
    QImage image;
    if (!image.loadFromData(file, "BMP"))
        return QImage();
    return image;
}

// The QImage format that reads a raster's rows as they stand, and how many bits a pixel takes there.
struct RowLayout
{
    QImage::Format format = QImage::Format_RGB888;
    int bitsPerPixel = 24;
    bool swapRedBlue = false;
    bool colorTable = false;
};

RowLayout rowLayoutOf(const ZrGiRasterImage& raster)
{
    const ZrGiPixelFormatInfo pixel = raster.pixelFormat();
    RowLayout layout;
    const int depth = raster.colorDepth();
    if (depth == 24 && pixel.isBGR()) {
        layout.format = QImage::Format_BGR888;
    } else if (depth == 32 && (pixel.isRGBA() || pixel.isBGRA())) {
        // An alpha channel the raster describes is kept. Blue, green, red and alpha bytes are Qt's
        // own 32-bit words on a little-endian machine: read in place rather than swapped.
        layout.format = pixel.numAlphaBits ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888;
        layout.bitsPerPixel = 32;
        layout.swapRedBlue = pixel.isBGRA();
        if (layout.swapRedBlue && pixel.numAlphaBits && Q_BYTE_ORDER == Q_LITTLE_ENDIAN) {
            layout.format = QImage::Format_ARGB32;
            layout.swapRedBlue = false;
        }
    } else if ((depth == 8 || depth == 1) && raster.numColors() > 0) {
        layout.format = depth == 8 ? QImage::Format_Indexed8 : QImage::Format_Mono;
        layout.bitsPerPixel = depth;
        layout.colorTable = true;
    }
    // Anything else is read as 24-bit RGB, provided its rows are long enough for that.
    return layout;
}

void releaseRaster(void* raster) { zrrxRelease(static_cast<ZrGiRasterImage*>(raster)); }

QImage imageOfScanLines(ZrGiRasterImage* raster)
{
    const int width = raster->pixelWidth();
    const int height = raster->pixelHeight();
    const int scanLineSize = raster->scanLineSize();
    const uint8_t* bits = raster->scanLines();
    if (!bits || width < 1 || height < 1)
        return QImage();
    const RowLayout layout = rowLayoutOf(*raster);
    if (int64_t(scanLineSize) * 8 < int64_t(width) * layout.bitsPerPixel)
        return QImage();
    const bool inPlace = !layout.swapRedBlue && !layout.colorTable && layout.format != QImage::Format_RGBX8888;
    // Read in place, the picture holds a reference to the raster; it copies before any change.
    if (inPlace)
        zrrxAddRef(raster);
    QImage rows(bits, width, height, scanLineSize, layout.format, inPlace ? releaseRaster : nullptr,
                inPlace ? raster : nullptr);
    if (rows.isNull()) {
        if (inPlace)
            zrrxRelease(raster);
        return QImage();
    }
    if (inPlace)
        return rows;
    QImage copy = layout.swapRedBlue ? rows.rgbSwapped() : rows.copy();
    if (copy.format() == QImage::Format_RGBX8888) {
        // Qt takes the fourth byte of these pixels to be 0xFF; the raster's padding need not be.
        for (int y = 0; y < height; ++y) {
            uchar* pixel = copy.scanLine(y);
            for (int x = 0; x < width; ++x, pixel += 4)
                pixel[3] = 0xFF;
        }
    }
    if (layout.colorTable) {
        // Indexes past the table show black rather than whatever follows it.
        QVector<QRgb> colors(1 << layout.bitsPerPixel, qRgb(0, 0, 0));
        for (int i = 0; i < std::min(raster->numColors(), colors.size()); ++i)
            colors[i] = raster->color(i) | 0xFF000000u;
        copy.setColorTable(colors);
    }
    return copy;
}

} // namespace

QImage zrutZrGiRasterImage2QImage(ZrSmartPtr<ZrGiRasterImage> image)
{
    if (!image)
        return QImage();
    size_t size = 0;
    if (image->imageSource() == ZrGiRasterImage::kFromDib) {
        if (const uint8_t* bitmap = image->bitmapData(size))
            return imageOfBitmap(bitmap, size);
    }
    return imageOfScanLines(image.get());
}

ZrSmartPtr<ZrGiRasterImage> zrutQImage2ZrGiRasterImage(const QImage& image)
{
    if (image.isNull())
        return nullptr;
    QImage source = image;
    ZrGiPixelFormatInfo pixel;
    switch (image.format()) {
    case QImage::Format_RGB888: pixel = ZrGiPixelFormatInfo::rgb24(); break;
    case QImage::Format_BGR888: pixel = ZrGiPixelFormatInfo::bgr24(); break;
    case QImage::Format_RGBA8888: pixel = ZrGiPixelFormatInfo::rgba32(); break;
    default:
        source = image.convertToFormat(QImage::Format_RGBA8888);
        if (source.isNull())
            return nullptr;
        pixel = ZrGiPixelFormatInfo::rgba32();
        break;
    }
    const QVector<QRgb> colors = source.colorTable();
    // The wrapper reads the QImage's rows in place; the clone is what outlives it.
    const ZrSmartPtr<ZrGiRasterImage> wrapped = zrutImageWrap(source.width(), source.height(), source.depth(), pixel,
                                                              source.constBits(), source.bytesPerLine(),
                                                              colors.constData(), colors.size());
    return zrutCloneImage(wrapped.get());
}

QImage getImage(const QString& file)
{
    QImageReader reader(file);
    if (reader.imageCount() <= 0)
        return QImage();
    // Formats of one image cannot jump, but already stand at the first.
    if (reader.currentImageNumber() > 0 && !reader.jumpToImage(0))
        return QImage();
    QImage image;
    if (!reader.read(&image))
        return QImage();
    return image;
}

QString dealWithTextDisplay(QString text)
{
    if (zr_sys_language() == ZrUtf8String("zh-CN"))
        return text;
    const int ampersand = text.indexOf(QLatin1Char('&'));
    // A trailing "&" marks no letter.
    if (ampersand < 0 || ampersand + 1 >= text.size())
        return text;
    text.insert(ampersand + 2, QLatin1Char(')'));
    text.insert(ampersand + 1, QLatin1Char('('));
    return text;
}

namespace {

QString fullTextTip(const QString& text) { return dealWithTextDisplay(text).remove(QLatin1Char('&')); }

} // namespace

void zrutAdjustWidgetTextDisplay(QWidget* widget, Qt::TextElideMode mode)
{
    if (!widget)
        return;
    const QFontMetrics metrics(widget->font());
    QString text;
    int reserved = 0;
    auto* label = qobject_cast<QLabel*>(widget);
    auto* pushButton = qobject_cast<QPushButton*>(widget);
    auto* radioButton = qobject_cast<QRadioButton*>(widget);
    auto* checkBox = qobject_cast<QCheckBox*>(widget);
    auto* groupBox = qobject_cast<QGroupBox*>(widget);
    // What each kind of widget takes of its width besides the text: indicators, frames, the dots.
    if (label) {
        text = label->text();
        reserved = metrics.horizontalAdvance(QStringLiteral("..."));
    } else if (radioButton) {
        text = radioButton->text();
        reserved = 50;
    } else if (checkBox) {
        text = checkBox->text();
        reserved = 20;
    } else if (groupBox) {
        text = groupBox->title();
        reserved = 20;
    } else if (pushButton) {
        text = pushButton->text();
    } else {
        return;
    }
    const QString elided = metrics.elidedText(text, mode, widget->maximumWidth() - reserved);
    if (elided == text) {
        if (pushButton && pushButton->maximumWidth() >= pushButton->sizeHint().width())
            pushButton->setMinimumWidth(pushButton->sizeHint().width());
        return;
    }
    if (label)
        label->setText(elided);
    else if (groupBox)
        groupBox->setTitle(elided);
    else
        static_cast<QAbstractButton*>(widget)->setText(elided);
    if (widget->toolTip().isEmpty())
        widget->setToolTip(fullTextTip(text));
}

void zrutAdjustWidgetItemTextDisplay(QWidget* widget, void* item, int width, Qt::TextElideMode mode)
{
    if (!widget || !item)
        return;
    const QFontMetrics metrics(widget->font());
    if (qobject_cast<QListWidget*>(widget)) {
        auto* listItem = static_cast<QListWidgetItem*>(item);
        const QString text = listItem->text();
        const QString elided = metrics.elidedText(text, mode, width);
        if (elided == text)
            return;
        listItem->setText(elided);
        if (listItem->toolTip().isEmpty())
            listItem->setToolTip(dealWithTextDisplay(text));
    } else if (qobject_cast<QTreeWidget*>(widget)) {
        auto* treeItem = static_cast<QTreeWidgetItem*>(item);
        const QString text = treeItem->text(0);
        const QString elided = metrics.elidedText(text, mode, width);
        if (elided == text)
            return;
        treeItem->setText(0, elided);
        if (treeItem->toolTip(0).isEmpty())
            treeItem->setToolTip(0, dealWithTextDisplay(text));
    }
}

void zrutAdjustComboBoxDisplay(QComboBox* comboBox, Qt::TextElideMode mode)
{
    if (!comboBox)
        return;
    const QFontMetrics metrics(comboBox->font());
    for (int i = 0; i < comboBox->count(); ++i) {
        const QString text = comboBox->itemText(i);
        if (metrics.elidedText(text, mode, comboBox->maximumWidth()) == text)
            continue;
        if (comboBox->itemData(i, Qt::ToolTipRole).toString().isEmpty())
            comboBox->setItemData(i, dealWithTextDisplay(text), Qt::ToolTipRole);
    }
}

void zrutUpdateListViewInComboBox(QComboBox* comboBox)
{
    if (comboBox && comboBox->view())
        comboBox->view()->setAutoScroll(true);
}

void zrutAdjustWidgetPos(QWidget* widget, QRect rect, QRect bounds)
{
    if (!widget)
        return;
    const QPoint overrun(std::max(0, rect.right() - bounds.right()), std::max(0, rect.bottom() - bounds.bottom()));
    widget->move(rect.topLeft() - overrun);
}

void zrutAdjustTableWidgetOrViewTitle(QWidget* widget, int margin)
{
    auto* table = qobject_cast<QTableView*>(widget);
    if (!table || !table->model())
        return;
    const int columns = table->model()->columnCount();
    if (columns < 1)
        return;
    const QFontMetrics metrics(table->horizontalHeader()->font());
    const auto titleWidth = [&](int column) {
        return metrics.horizontalAdvance(table->model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    };
    int used = 0;
    for (int column = 0; column + 1 < columns; ++column) {
        const int width = titleWidth(column) + margin;
        table->setColumnWidth(column, width);
        used += width;
    }
    const int rest = table->viewport()->width() - used;
    const int lastWidth = titleWidth(columns - 1);
    table->setColumnWidth(columns - 1, lastWidth <= rest ? rest : lastWidth + margin);
}

void zrutAdjustTableWidgetOrViewItem(QWidget* widget, const QFont& font, QString text, int column, int margin,
                                     int maxWidth)
{
    auto* table = qobject_cast<QTableView*>(widget);
    if (!table)
        return;
    table->setColumnWidth(column, std::min(QFontMetrics(font).horizontalAdvance(text) + margin, maxWidth));
}

QString zrutGetWidgetPaletteColorString(QWidget* widget, QPalette::ColorRole role, QPalette::ColorGroup group)
{
    if (!widget)
        return QString();
    const QColor color = widget->palette().color(group, role);
    return QStringLiteral("rgb(%1, %2, %3)").arg(color.red()).arg(color.green()).arg(color.blue());
}

void zrutUpdateComboBoxStyleCreateByUIFile(QWidget* widget, const bool& skip)
{
    if (!widget || skip)
        return;
    const QString sheet = QStringLiteral(
        "QComboBox {color:#000000;background-color:#f5f5f5;combobox-popup:0;}                         QC"
        "omboBox QLineEdit { color:#000000;background-color:#f5f5f5; selection-color:#FFFFFF; selection-"
        "background-color:rgb(47, 140, 198); }                        QComboBox QAbstractItemView {color"
        ":#000000;background-color:#ffffff;selection-color:#ffffff;                                   se"
        "lection-background-color:rgb(47, 140, 198);}                         QComboBox:disabled {color:"
        "#787878;}                         QComboBox QAbstractScrollArea QScrollBar:vertical {border:1px"
        " solid #bcbcbc;                                   background:rgb(230, 230, 230);padding-top:12p"
        "x;padding-bottom:12px;width:13px}                         QComboBox QAbstractScrollArea QScroll"
        "Bar:add-line:vertical {bottom:1px;right:1px;width:11px;                                   heigh"
        "t:11px;border-image:url(%1);}                         QComboBox QAbstractScrollArea QScrollBar:"
        "sub-line:vertical {top:1px;right:1px;width:11px;                                   height:11px;"
        "border-image:url(%2);}                         QComboBox QAbstractScrollArea QScrollBar:handle:"
        "vertical {border-top:1px solid #bcbcbc;                                   border-bottom:1px sol"
        "id #bcbcbc;background:#f5f5f5;}")
        .arg(zrutGetImageFullPath(QStringLiteral("common/arrow_down.bmp"), true),
             zrutGetImageFullPath(QStringLiteral("common/arrow_up.bmp"), true));
    for (QComboBox* comboBox : widget->findChildren<QComboBox*>()) {
        // The line edit of an editable box takes the sheet's colours only when told to.
        if (comboBox->isEditable() && comboBox->lineEdit())
            comboBox->lineEdit()->setAttribute(Qt::WA_StyleSheet);
        comboBox->setStyleSheet(sheet);
    }
}

int zrutRecursiveChmod(const QString& dir, int mode)
{
    const QDir folder(dir);
    if (dir.isEmpty() || !folder.exists())
        return -1;
    ::chmod(QFile::encodeName(folder.absolutePath()).constData(), static_cast<mode_t>(mode));
    // Links are passed over: a link to a folder above would never end.
    const QFileInfoList entries = folder.entryInfoList(
        QDir::Dirs | QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::DirsFirst);
    if (entries.isEmpty())
        return -1;
    for (const QFileInfo& entry : entries) {
        if (entry.isDir())
            zrutRecursiveChmod(entry.absoluteFilePath(), mode);
        else
            ::chmod(QFile::encodeName(entry.absoluteFilePath()).constData(), static_cast<mode_t>(mode));
    }
    return 0;
}

QPushButton* zrutInitCheckPushButton(QWidget* parent, const QString& icon, bool checkable, bool withArrow, bool enabled)
{
    // A name of the theme's images, else a path.
    const QString themed = zrutGetImageFullPath(icon);
    const QIcon image(themed.isEmpty() ? icon : themed);
    QPushButton* button = nullptr;
    if (withArrow) {
        auto* arrowButton = new ZrQtPanelButtonWithArrow(parent, false);
        arrowButton->setIcon(image);
        arrowButton->setFixedSize(32, 24);
        button = arrowButton;
    } else {
        button = new QPushButton(image, QString(), parent);
        button->setFixedSize(24, 24);
    }
    button->setFlat(true);
    button->setLayoutDirection(Qt::LeftToRight);
    button->setCheckable(checkable);
    button->setEnabled(enabled);
    button->setDefault(false);
    button->setAutoDefault(false);
    return button;
}

namespace {
constexpr int kPanelIconSide = 16;
} // namespace

ZrQtPanelLabelWithArrow::ZrQtPanelLabelWithArrow(QWidget* parent, bool split) : QLabel(parent), m_split(split) {}

void ZrQtPanelLabelWithArrow::setIcon(const QIcon& icon)
{
    m_icon = icon;
    update();
}

void ZrQtPanelLabelWithArrow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const int y = (height() - kPanelIconSide) / 2;
    drawSmoothPixmap(0, y, m_icon.pixmap(kPanelIconSide, kPanelIconSide), painter);
    const QString arrowPath = zrutGetImageFullPath(QStringLiteral("ArrowDown.svg"));
    const QPixmap arrow = arrowPath.isEmpty() ? QPixmap() : QIcon(arrowPath).pixmap(kPanelIconSide, kPanelIconSide);
    int arrowX = width() - 2 * kPanelIconSide + kPanelIconSide;
    if (m_split) {
        const int gap = (width() - 2 * kPanelIconSide) / 2;
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawLine(gap + kPanelIconSide, y, gap + kPanelIconSide, y + kPanelIconSide - 1);
        arrowX = 2 * gap + kPanelIconSide;
    }
    drawSmoothPixmap(arrowX, y, arrow, painter);
}

struct ZrQtPanelButtonWithArrow::Private
{
    // Stays false: nothing in this module tells the two halves apart.
    bool clickLeftArea = false;
    ZrQtPanelLabelWithArrow* label = nullptr;
};

ZrQtPanelButtonWithArrow::ZrQtPanelButtonWithArrow(QWidget* parent, bool split)
    : QPushButton(parent), d(std::make_unique<Private>())
{
    d->label = new ZrQtPanelLabelWithArrow(this, split);
    // The button takes the clicks the label would swallow.
    d->label->setAttribute(Qt::WA_TransparentForMouseEvents);
    d->label->resize(size());
}

ZrQtPanelButtonWithArrow::~ZrQtPanelButtonWithArrow() = default;

void ZrQtPanelButtonWithArrow::setIcon(const QIcon& icon) { d->label->setIcon(icon); }
bool ZrQtPanelButtonWithArrow::isClickLeftArea() const { return d->clickLeftArea; }

void ZrQtPanelButtonWithArrow::resizeEvent(QResizeEvent* event)
{
    QPushButton::resizeEvent(event);
    d->label->resize(size());
}

void ZrQtPanelButtonWithArrow::mousePressEvent(QMouseEvent* event) { QPushButton::mousePressEvent(event); }

void ZrQtCategeryTitleWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
}

void ZrQtColorLabel::SetColor(const QColor& color)
{
    const int side = QFontMetrics(QApplication::font()).height();
    QPixmap square(side, side);
    square.fill(color);
    setPixmap(square);
}

void ZrQtColorLabel::SetColor(unsigned int rgb) { SetColor(QColor::fromRgb(static_cast<QRgb>(rgb))); }

void ZrQtColorLabel::SetColor(const ZrCmColor& color) { SetColor(QColor(color.red(), color.green(), color.blue())); }
