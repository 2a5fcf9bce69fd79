#include "uicolorwidgets.h"
#include "uicolorwidgets_p.h"

#include "ZrQtUtilsFunc.h"
#include "uicolorbookmng.h"
#include "zrdbobject.h"
#include "zrdbsymtb.h"
#include "zrgeometry.h"
#include "zrqthelper.h"

#include <QPainter>
#include <QPainterPath>
#include <cstdlib>

QString channelLabelText(int channel, int value, bool opening)
{
    static const char* const openingKeys[3] = {"IDS_ZRUI_CMCOLOR_PROMPT2", "IDS_ZRUI_CMCOLOR_PROMPT4",
                                               "IDS_ZRUI_CMCOLOR_PROMPT6"};
    static const char* const openingWords[3] = {"红", "绿", "蓝"};
    static const char* const keys[3] = {"ZRED_IDD_PROPPAGE_COLORTRUE_9", "ZRED_IDD_PROPPAGE_COLORTRUE_10",
                                        "ZRED_IDD_PROPPAGE_COLORTRUE_11"};
    static const char* const words[3] = {"红:", "绿:", "蓝:"};
    if (opening)
        return QStringLiteral("  %1:   %2")
            .arg(zrUiText(openingKeys[channel], QString::fromUtf8(openingWords[channel])))
            .arg(value);
    return QStringLiteral("  %1   %2").arg(zrUiText(keys[channel], QString::fromUtf8(words[channel]))).arg(value);
}

// The item record travels in QVariants and queued signals under its own name.
static const int colorDataMetaType = qRegisterMetaType<ColorData>("ColorData");

ZrCmColorWarp::ZrCmColorWarp(ZrCmEntityColor::ColorMethod method)
{
    // The methods whose raw word carries the method itself; 201 is one the host keeps unnamed.
    const bool methodInWord = method == ZrCmEntityColor::kByACI || method == ZrCmEntityColor::kByPen
        || method == 201;
    const uint32_t word = methodInWord ? uint32_t(method) << 24 : 0;
    if (entityColor().colorMethod() != 0)
        setColor(word);
    setColorMethod(method);
}

ZrCmColorWarp::~ZrCmColorWarp() = default;

namespace {

// The background word the standard palettes are asked with wherever no drawing is in view.
constexpr uint32_t standardBackground = 0xFF30281E;

void splitPaletteEntry(uint32_t entry, int& r, int& g, int& b)
{
    r = int(entry & 0xFF);
    g = int((entry >> 8) & 0xFF);
    b = int((entry >> 16) & 0xFF);
}

bool isBlank(const wchar_t* text)
{
    return !text || !*text;
}

QString numberedColorText(int index)
{
    return zrUiText("IDS_ZRUI_CMCOLOR_PROMPT1", QStringLiteral("颜色 %d"))
        .replace(QStringLiteral("%d"), QString::number(index));
}

// The names of indexes 1 to 7, white for 7.
QString standardColorName(int index)
{
    switch (index) {
    case 1: return zrUiText("IDS_EATTEXT_91", QStringLiteral("红"));
    case 2: return zrUiText("IDS_EATTEXT_92", QStringLiteral("黄"));
    case 3: return zrUiText("IDS_EATTEXT_93", QStringLiteral("绿"));
    case 4: return zrUiText("IDS_EATTEXT_94", QStringLiteral("青"));
    case 5: return zrUiText("IDS_EATTEXT_95", QStringLiteral("蓝"));
    case 6: return zrUiText("IDS_EATTEXT_96", QStringLiteral("洋红"));
    default: return zrUiText("IDS_EATTEXT_97", QStringLiteral("白"));
    }
}

// The palette entry of an index colour, with the by-layer index 256 read as the foreground.
bool layerIndexEntry(const ZrCmColor& layerColor, const unsigned int* palette, uint32_t& entry)
{
    if (!palette || !layerColor.isByACI())
        return false;
    const int index = layerColor.colorIndex() == 256 ? 7 : layerColor.colorIndex();
    if (index > 255)
        return false;
    entry = palette[index];
    return true;
}

ZrCmColor bookColor(const wchar_t* colorName, const wchar_t* bookName, const ZrCmColor& channels)
{
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByColor);
    color.setNames(colorName, bookName);
    color.setRGB(channels.red(), channels.green(), channels.blue());
    return color;
}

ZrCmColor indexColor(const char* digits)
{
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByACI);
    // Cut to 16 bits with no range test: "300" is index 300, which reads as out of range later.
    color.setColorIndex(uint16_t(std::strtol(digits, nullptr, 10)));
    return color;
}

bool parseRgbText(const ZrUtf8String& rest, ZrCmColor& color)
{
    ZrArray<ZrUtf8String> parts;
    zrutSplitString(rest, ZrUtf8String(","), parts);
    if (parts.length() != 3)
        return false;
    for (const ZrUtf8String& part : parts) {
        if (!zrutIsUnsignedDigit(part))
            return false;
    }
    color.setColorMethod(ZrCmEntityColor::kByColor);
    // Each channel keeps its low 8 bits, so RGB:300,1,2 is red 44.
    color.setRGB(uint8_t(std::strtol(parts[0].c_str(), nullptr, 10)),
                 uint8_t(std::strtol(parts[1].c_str(), nullptr, 10)),
                 uint8_t(std::strtol(parts[2].c_str(), nullptr, 10)));
    return true;
}

bool parseBookText(const ZrUtf8String& text, ZrCmColor& color)
{
    ZrArray<ZrUtf8String> parts;
    zrutSplitString(text, ZrUtf8String("$"), parts);
    if (parts.length() != 2 || parts[0].isEmpty() || parts[1].isEmpty())
        return false;
    const ZrString book = parts[0].toWide();
    const ZrString name = parts[1].toWide();
    // A book that is gone still gives a book colour, with the channels of a default colour.
    ZrCmColor found;
    CEdColorBookManager::getInstance()->getColor(book, name, found);
    color = bookColor(name.c_str(), book.c_str(), found);
    return true;
}

bool findColorByName(const ZrUtf8String& text, ZrCmColor& color)
{
    CEdColorBookManager* books = CEdColorBookManager::getInstance();
    ZrArray<ZrString> bookNames;
    books->getColorBookNames(bookNames);
    for (const ZrString& book : bookNames) {
        const int pageCount = books->getPageNum(book);
        for (int p = 0; p < pageCount; ++p) {
            const SXuBookColorPage* page = books->getColorPage(book, p);
            for (const ZrCmColor& entry : page->colors) {
                if (ZrString(entry.colorName()).toUtf8() == text) {
                    color = bookColor(entry.colorName(), entry.bookName(), entry);
                    return true;
                }
            }
        }
    }
    return false;
}

bool parseColorText(const ZrUtf8String& text, ZrCmColor& color)
{
    if (text.isEmpty())
        return false;
    if (Zr_stricmpA(text.c_str(), "BYLAYER") == 0) {
        color.setColorMethod(ZrCmEntityColor::kByLayer);
        return true;
    }
    if (Zr_stricmpA(text.c_str(), "BYBLOCK") == 0) {
        color.setColorMethod(ZrCmEntityColor::kByBlock);
        return true;
    }
    if (zrutIsUnsignedDigit(text)) {
        color = indexColor(text.c_str());
        return true;
    }
    const std::string& bytes = text.std();
    if (bytes.compare(0, 4, "RGB:") == 0)
        return parseRgbText(ZrUtf8String(bytes.substr(4)), color);
    if (bytes.find('$') != std::string::npos)
        return parseBookText(text, color);
    const std::string colorWord = zrUiText("ZR_MATCHPROP_PROMPT18", QStringLiteral("颜色 ")).toStdString();
    if (!colorWord.empty() && bytes.find(colorWord) != std::string::npos) {
        const size_t blank = bytes.find(' ');
        const ZrUtf8String number(blank == std::string::npos ? std::string() : bytes.substr(blank + 1));
        if (!zrutIsUnsignedDigit(number))
            return false;
        color = indexColor(number.c_str());
        return true;
    }
    return findColorByName(text, color);
}

} // namespace

ColorData formatColor(const ZrCmColor& color, const unsigned int* palette, ZrDbObjectId layerId)
{
    ColorData data;
    if (!palette)
        palette = zrsiutCurPalette();
    if (!palette)
        return data;
    data.cmColor = color;

    if (color.isByBlock()) {
        data.kind = ColorData::kByBlockItem;
        data.text = QStringLiteral("ByBlock");
        // A block's colour is known only where it is inserted: with a layer the swatch stays empty.
        if (layerId.isErased())
            data.color = colorOfWord(palette[7]);
        else
            ZrDbObjectPointer<ZrDbObject> opened(layerId, ZrDb::kForRead);
        return data;
    }
    if (color.isByLayer()) {
        data.kind = ColorData::kByLayerItem;
        data.text = QStringLiteral("ByLayer");
        if (layerId.isErased()) {
            const ZrCmColor layerColor = zrqthelper::getCLayerColor();
            uint32_t entry = palette[7];
            if (layerColor.isByColor()) {
                data.color = QColor(layerColor.red(), layerColor.green(), layerColor.blue());
            } else {
                layerIndexEntry(layerColor, palette, entry);
                data.color = colorOfWord(entry);
            }
        } else {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(layerId, ZrDb::kForRead);
            if (layer) {
                const ZrCmColor layerColor = layer->color();
                data.color = QColor(layerColor.red(), layerColor.green(), layerColor.blue());
            }
        }
        return data;
    }
    if (color.colorMethod() == ZrCmEntityColor::kNone) {
        data.text = zrUiText("IDS_EATTEXT_98", QStringLiteral("无"));
        // Entry 7 is white or black, which reads the same in either byte order.
        data.color = QColor(QRgb(palette[7]));
        return data;
    }
    if (!color.isByACI()) {
        data.color = QColor(color.red(), color.green(), color.blue());
        if (isBlank(color.bookName()) && isBlank(color.colorName()))
            data.text = QStringLiteral("RGB:%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
        else
            data.text = QString::fromWCharArray(isBlank(color.colorName()) ? L"" : color.colorName());
        return data;
    }
    const int index = color.colorIndex();
    if (index < 1 || index > 255) {
        data.color = Qt::white;
        data.text = numberedColorText(index);
        return data;
    }
    data.color = colorOfWord(palette[index]);
    if (index >= 8)
        data.text = numberedColorText(index);
    else if (index == 7 && palette[7] == 0) // the foreground of a light drawing
        data.text = zrUiText("IDS_ZRUI_ZRUICOMBOBOX_PROMPT24", QStringLiteral("黑"));
    else
        data.text = standardColorName(index);
    return data;
}

bool convertColorStrToColorData(const ZrString& text, ColorData& out)
{
    ZrCmColor color;
    if (!parseColorText(text.toUtf8(), color))
        return false;
    out = formatColor(color, zrsiutCurPalette(), ZrDbObjectId::kNull);
    return true;
}

void getRgb(ZrCmColor* color, int& r, int& g, int& b)
{
    r = g = b = 255;
    if (!color)
        return;
    if (color->isByLayer()) {
        if (color->isByACI()) {
            const uint32_t* palette = zrcmAcadPalette(standardBackground);
            if (palette && color->colorIndex() <= 255)
                splitPaletteEntry(palette[color->colorIndex()], r, g, b);
            return;
        }
        uint32_t entry = 0;
        if (layerIndexEntry(zrqthelper::getCLayerColor(), zrsiutCurPalette(), entry))
            splitPaletteEntry(entry, r, g, b);
        return;
    }
    if (color->isByBlock()) {
        if (color->isByACI()) {
            aciToRgb(0, color, r, g, b);
        } else if (const uint32_t* palette = zrsiutCurPalette()) {
            splitPaletteEntry(palette[7], r, g, b);
        }
        return;
    }
    if (color->colorMethod() == ZrCmEntityColor::kByACI) {
        aciToRgb(0, color, r, g, b);
        return;
    }
    if (isBlank(color->bookName()) || isBlank(color->colorName())) {
        r = color->red();
        g = color->green();
        b = color->blue();
        return;
    }
    // A book colour shows what its book says now, not the channels stored with it.
    CEdColorBookManager* books = CEdColorBookManager::getInstance();
    const ZrString bookName(color->bookName());
    const ZrString colorName(color->colorName());
    if (!books->findData(bookName))
        return;
    const int pageCount = books->getPageNum(bookName);
    for (int p = 0; p < pageCount; ++p) {
        for (const ZrCmColor& entry : books->getColorPage(bookName, p)->colors) {
            if (ZrString(entry.colorName()).compare(colorName) == 0) {
                r = entry.red();
                g = entry.green();
                b = entry.blue();
                return;
            }
        }
    }
}

void aciToRgb(int, ZrCmColor* color, int& r, int& g, int& b)
{
    const uint32_t* palette = zrcmAcadPalette(standardBackground);
    if (palette && color && color->colorIndex() < 256)
        splitPaletteEntry(palette[color->colorIndex()], r, g, b);
}

// 0.5001 rather than 0.5: the true colour tab rounds with the same constant, and both must agree.
void RGBtoHSL(short r, short g, short b, short& h, short& s, short& l)
{
    ZrGeVector3d hsl;
    zrdbConvertRgbToHsl(ZrGeVector3d(r / 255.0, g / 255.0, b / 255.0), hsl);
    h = short(hsl.x + 0.5001);
    s = short(hsl.y * 100 + 0.5001);
    l = short(hsl.z * 100 + 0.5001);
}

void HSLtoRGB(short h, short s, short l, short& r, short& g, short& b)
{
    ZrGeVector3d rgb;
    zrdbConvertHslToRgb(ZrGeVector3d(h, s / 100.0, l / 100.0), rgb);
    r = short(rgb.x * 255 + 0.5001);
    g = short(rgb.y * 255 + 0.5001);
    b = short(rgb.z * 255 + 0.5001);
}

// The small widgets the colour dialog's tabs share.

namespace {

QString indexColorText(int index)
{
    if (index == 256)
        return QStringLiteral("BYLAYER");
    if (index == 0)
        return QStringLiteral("BYBLOCK");
    if (index <= 7)
        return standardColorName(index);
    if (index <= 255)
        return QStringLiteral("%1").arg(index);
    return QString();
}

const QString kBlankSwatch = QStringLiteral("QLabel { background-color : white; color : gray; }");

} // namespace

ZrColorWidgetBase::ZrColorWidgetBase(QWidget* parent) : QWidget(parent) {}
ZrColorWidgetBase::~ZrColorWidgetBase() = default;

ZrColorTabWidget::ZrColorTabWidget(QWidget* parent) : QTabWidget(parent) {}
ZrColorTabWidget::~ZrColorTabWidget() = default;
void ZrColorTabWidget::slotAccept() { Q_EMIT Accepted(0); }
void ZrColorTabWidget::slotRejected() { Q_EMIT Rejected(); }

ZrColorLabel::ZrColorLabel(QWidget* parent) : QLabel(parent) {}
ZrColorLabel::~ZrColorLabel() = default;

void ZrColorLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    QLabel::mouseDoubleClickEvent(event);
    Q_EMIT doubleClicked();
}

ZrColorLineEdit::ZrColorLineEdit(QWidget* parent) : QLineEdit(parent) {}
ZrColorLineEdit::~ZrColorLineEdit() = default;

void ZrColorLineEdit::setColor(ZrCmColor* color)
{
    m_color = color;
    setText(color ? getColorText(*color) : QString());
}

ZrCmColor* ZrColorLineEdit::color() const { return m_color; }

QString ZrColorLineEdit::getColorText(const ZrCmColor& color)
{
    switch (color.colorMethod()) {
    case ZrCmEntityColor::kByLayer:
        return QStringLiteral("BYLAYER");
    case ZrCmEntityColor::kByBlock:
        return QStringLiteral("BYBLOCK");
    case ZrCmEntityColor::kByACI:
        return indexColorText(color.colorIndex());
    case ZrCmEntityColor::kByColor:
        if (color.hasColorName() && color.hasBookName())
            return QString::fromWCharArray(color.colorName());
        return QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
    default:
        return QString();
    }
}

ZrColorPushButton::ZrColorPushButton(bool up, QWidget* parent) : QPushButton(parent), m_up(up) {}
ZrColorPushButton::~ZrColorPushButton() = default;

void ZrColorPushButton::paintEvent(QPaintEvent* event)
{
    QPushButton::paintEvent(event);
    const int w = width();
    const int h = height();
    QPainter painter(this);
    painter.setWindow(QRect(QPoint(0, 0), QPoint(w - 1, h - 1)));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 3));
    const int tip = m_up ? 2 : h - 2;
    const int base = m_up ? h - 2 : 2;
    QPainterPath arrow(QPointF(w / 3, base));
    arrow.lineTo(w / 2, tip);
    arrow.lineTo(2 * (w / 3), base);
    arrow.closeSubpath();
    painter.setBrush(Qt::gray);
    painter.drawPath(arrow);
}

struct ZrUiColorResultWidget::Private
{
    ZrColorLabel* oldLabel = nullptr;
    ZrColorLabel* newLabel = nullptr;
    ZrCmColor* newColor = nullptr;
    ZrCmColor* oldColor = nullptr;
};

ZrUiColorResultWidget::ZrUiColorResultWidget(QWidget* parent) : QWidget(parent), d(new Private)
{
    setFixedHeight(64);
    setMinimumWidth(100);
    const auto makeLabel = [this](const QString& name, const QSize& size) {
        auto* label = new ZrColorLabel(this);
        label->setObjectName(name);
        label->setFrameShape(QFrame::Box);
        label->setFixedSize(size);
        label->setStyleSheet(kBlankSwatch);
        return label;
    };
    d->oldLabel = makeLabel(QStringLiteral("oldColorLabel"), QSize(36, 34));
    d->newLabel = makeLabel(QStringLiteral("newColorLabel"), QSize(48, 52));
    connect(d->newLabel, &ZrColorLabel::doubleClicked, this, &ZrUiColorResultWidget::newColorDoubleClicked);
    connect(d->oldLabel, &ZrColorLabel::doubleClicked, this, &ZrUiColorResultWidget::restoreOldColor);
}

ZrUiColorResultWidget::~ZrUiColorResultWidget() = default;

void ZrUiColorResultWidget::init(ZrCmColor* newColor, ZrCmColor* oldColor)
{
    d->newColor = newColor;
    d->oldColor = oldColor;
}

void ZrUiColorResultWidget::SetColor(ZrColorLabel* label, int r, int g, int b)
{
    label->setStyleSheet(
        QStringLiteral("QLabel{ background-color:rgb(%1,%2,%3);  color : gray; }").arg(r).arg(g).arg(b));
}

void ZrUiColorResultWidget::fresh(ZrColorLabel* label, ZrCmColor* color)
{
    if (!color)
        return;
    int r, g, b;
    getRgb(color, r, g, b);
    SetColor(label, r, g, b);
}

void ZrUiColorResultWidget::FreshNewColor() { fresh(d->newLabel, d->newColor); }
void ZrUiColorResultWidget::FreshOldColor() { fresh(d->oldLabel, d->oldColor); }

ZrColorLabel* ZrUiColorResultWidget::newColorLabel() const { return d->newLabel; }
ZrColorLabel* ZrUiColorResultWidget::oldColorLabel() const { return d->oldLabel; }

void ZrUiColorResultWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    // The new square lies below and left of the old one, overlapping it.
    d->oldLabel->move(width() - 36, 0);
    d->newLabel->move(width() - 68, 12);
}

// The whole starting colour comes back, names and channels with it, so that what the caller gets
// is exactly the colour it gave.
void ZrUiColorResultWidget::restoreOldColor()
{
    if (!d->newColor || !d->oldColor)
        return;
    *d->newColor = *d->oldColor;
    FreshNewColor();
    Q_EMIT oldColorDoubleClicked();
}
