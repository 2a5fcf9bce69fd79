// Colour values: item texts and swatches of colours, and the colour texts users type.

#include "colorbooktesthelpers.h"
#include "colordialogrunner.h"
#include "drawingtesthelpers.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include "uicolorwidgets.h"

#include <QVariant>
#include <memory>

using namespace ColorTest;

namespace {

ZrCmColor trueColor(int red, int green, int blue)
{
    ZrCmColor color;
    color.setRGB(uint8_t(red), uint8_t(green), uint8_t(blue));
    return color;
}

ZrCmColor methodColor(ZrCmEntityColor::ColorMethod method)
{
    ZrCmColor color;
    color.setColorMethod(method);
    return color;
}

QColor entryColor(const uint32_t* palette, int index)
{
    const uint32_t entry = palette[index];
    return QColor(int(entry & 0xFF), int((entry >> 8) & 0xFF), int((entry >> 16) & 0xFF));
}

QColor rgbOf(ZrCmColor color)
{
    int r = 0, g = 0, b = 0;
    getRgb(&color, r, g, b);
    return QColor(r, g, b);
}

void setLayerColor(ZrDbObjectId layer, const ZrCmColor& color)
{
    ZrDbObjectPointer<ZrDbLayerTableRecord> record(layer, ZrDb::kForWrite);
    QVERIFY(record);
    record->setColor(color);
}

} // namespace

class TestColorValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_host.reset(new ZrTest::Host);
        m_books.reset(new BookFolder);
        m_books->add(QStringLiteral("values.acb"), QStringLiteral("Values"),
                     {bookColor(QStringLiteral("ZR 7 Test"), 10, 20, 30), bookColor(QStringLiteral("颜色 x"), 1, 1, 1),
                      bookColor(QStringLiteral("rgb:9,9,9"), 9, 8, 7)});
        m_books->use();
    }
    void cleanup()
    {
        m_books.reset();
        m_host.reset();
    }

    void indexColourItems_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("paletteSwatch");
        QTest::newRow("1") << 1 << QStringLiteral("红") << true;
        QTest::newRow("7 on a dark drawing") << 7 << QStringLiteral("白") << true;
        QTest::newRow("8") << 8 << QStringLiteral("颜色 8") << true;
        QTest::newRow("255") << 255 << QStringLiteral("颜色 255") << true;
        QTest::newRow("0") << 0 << QStringLiteral("颜色 0") << false;
        QTest::newRow("256") << 256 << QStringLiteral("颜色 256") << false;
        QTest::newRow("257") << 257 << QStringLiteral("颜色 257") << false;
    }
    void indexColourItems()
    {
        QFETCH(int, index);
        QFETCH(QString, text);
        QFETCH(bool, paletteSwatch);
        const ColorData data = formatColor(aci(index));
        QCOMPARE(data.text, text);
        QCOMPARE(data.kind, 0);
        QCOMPARE(data.color, paletteSwatch ? entryColor(zrsiutCurPalette(), index) : QColor(Qt::white));
        QVERIFY(data.cmColor == aci(index));
    }

    void foregroundFollowsTheDrawingBackground()
    {
        ZrHostControl::setDrawingBackgroundDark(false);
        QCOMPARE(zrsiutCurPalette()[7], 0u);
        ColorData data = formatColor(aci(7));
        QCOMPARE(data.text, QStringLiteral("黑"));
        QCOMPARE(data.color, QColor(Qt::black));
        QCOMPARE(formatColor(methodColor(ZrCmEntityColor::kNone)).color, QColor(Qt::black));
        QCOMPARE(rgbOf(methodColor(ZrCmEntityColor::kByBlock)), QColor(Qt::black));
        // A palette given by the caller wins over the drawing's.
        QCOMPARE(formatColor(aci(7), zrcmAcadPalette(0)).text, QStringLiteral("白"));

        ZrHostControl::setDrawingBackgroundDark(true);
        data = formatColor(methodColor(ZrCmEntityColor::kNone));
        QCOMPARE(data.text, QStringLiteral("无"));
        QCOMPARE(data.color, QColor(Qt::white));
        QCOMPARE(rgbOf(methodColor(ZrCmEntityColor::kByBlock)), QColor(Qt::white));
    }

    void byLayerAndByBlockItems()
    {
        const ZrDbObjectId layer = DrawingTest::addLayer(QStringLiteral("Walls"));
        setLayerColor(layer, trueColor(10, 20, 30));
        setLayerColor(curDatabase()->clayer(), aci(3));
        const ZrCmColor byLayer = methodColor(ZrCmEntityColor::kByLayer);
        const ZrCmColor byBlock = methodColor(ZrCmEntityColor::kByBlock);

        // Without a layer: the current layer's colour, and the foreground for ByBlock.
        ColorData data = formatColor(byLayer);
        QCOMPARE(data.kind, int(ColorData::kByLayerItem));
        QCOMPARE(data.text, QStringLiteral("ByLayer"));
        QCOMPARE(data.color, entryColor(zrsiutCurPalette(), 3));
        QCOMPARE(rgbOf(byLayer), entryColor(zrsiutCurPalette(), 3));
        data = formatColor(byBlock);
        QCOMPARE(data.kind, int(ColorData::kByBlockItem));
        QCOMPARE(data.text, QStringLiteral("ByBlock"));
        QCOMPARE(data.color, entryColor(zrsiutCurPalette(), 7));

        // With a layer: that layer's colour, and no swatch at all for ByBlock.
        QCOMPARE(formatColor(byLayer, nullptr, layer).color, QColor(10, 20, 30));
        QVERIFY(!formatColor(byBlock, nullptr, layer).color.isValid());

        setLayerColor(curDatabase()->clayer(), trueColor(40, 50, 60));
        QCOMPARE(formatColor(byLayer).color, QColor(40, 50, 60));
        // The swatch of a ByLayer colour knows only index colours of the current layer.
        QCOMPARE(rgbOf(byLayer), QColor(Qt::white));
    }

    void typedColourTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<int>("method");
        QTest::addColumn<int>("index");
        QTest::addColumn<QColor>("rgb");
        QTest::addColumn<QString>("itemText");
        const QColor none;
        QTest::newRow("empty") << QString() << false << 0 << 0 << none << QString();
        QTest::newRow("bylayer") << QStringLiteral("bylayer") << true << 192 << 0 << none << QStringLiteral("ByLayer");
        QTest::newRow("ByBlock") << QStringLiteral("ByBlock") << true << 193 << 0 << none << QStringLiteral("ByBlock");
        QTest::newRow("index 300") << QStringLiteral("300") << true << 195 << 300 << none << QStringLiteral("颜色 300");
        QTest::newRow("index 0") << QStringLiteral("0") << true << 195 << 0 << none << QStringLiteral("颜色 0");
        QTest::newRow("index cut to 16 bits") << QStringLiteral("65537") << true << 195 << 1 << none << QStringLiteral("红");
        QTest::newRow("RGB") << QStringLiteral("RGB:1,2,3") << true << 194 << 0 << QColor(1, 2, 3)
                             << QStringLiteral("RGB:1,2,3");
        QTest::newRow("RGB 300 wraps") << QStringLiteral("RGB:300,1,2") << true << 194 << 0 << QColor(44, 1, 2)
                                       << QStringLiteral("RGB:44,1,2");
        QTest::newRow("RGB 256") << QStringLiteral("RGB:256,0,0") << true << 194 << 0 << QColor(0, 0, 0)
                                 << QStringLiteral("RGB:0,0,0");
        QTest::newRow("RGB two parts") << QStringLiteral("RGB:1,2") << false << 0 << 0 << none << QString();
        QTest::newRow("RGB four parts") << QStringLiteral("RGB:1,2,3,4") << false << 0 << 0 << none << QString();
        QTest::newRow("RGB not first") << QStringLiteral(" RGB:1,2,3") << false << 0 << 0 << none << QString();
        // Lower case is no RGB text: it is looked up as a name, here with a book colour of that name.
        QTest::newRow("rgb as a name") << QStringLiteral("rgb:9,9,9") << true << 194 << 0 << QColor(9, 8, 7)
                                       << QStringLiteral("rgb:9,9,9");
        QTest::newRow("rgb no such name") << QStringLiteral("rgb:1,2,3") << false << 0 << 0 << none << QString();
        QTest::newRow("book colour") << QStringLiteral("Values$zr 7 test") << true << 194 << 0 << QColor(10, 20, 30)
                                     << QStringLiteral("zr 7 test");
        QTest::newRow("book gone") << QStringLiteral("Gone$Colour") << true << 194 << 0 << QColor()
                                   << QStringLiteral("Colour");
        QTest::newRow("no book") << QStringLiteral("$B") << false << 0 << 0 << none << QString();
        QTest::newRow("colour word") << QStringLiteral("颜色 12") << true << 195 << 12 << none << QStringLiteral("颜色 12");
        // Not a number behind the word: refused, though a book colour has this very name.
        QTest::newRow("colour word x") << QStringLiteral("颜色 x") << false << 0 << 0 << none << QString();
        QTest::newRow("colour name") << QStringLiteral("ZR 7 Test") << true << 194 << 0 << QColor(10, 20, 30)
                                     << QStringLiteral("ZR 7 Test");
        QTest::newRow("name case matters") << QStringLiteral("zr 7 test") << false << 0 << 0 << none << QString();
    }
    void typedColourTexts()
    {
        QFETCH(QString, text);
        QFETCH(bool, ok);
        QFETCH(int, method);
        QFETCH(int, index);
        QFETCH(QColor, rgb);
        QFETCH(QString, itemText);
        ColorData out;
        out.text = QStringLiteral("before");
        QCOMPARE(convertColorStrToColorData(ZrString(text), out), ok);
        if (!ok) {
            QCOMPARE(out.text, QStringLiteral("before"));
            return;
        }
        QCOMPARE(out.text, itemText);
        QCOMPARE(int(out.cmColor.colorMethod()), method);
        if (method == 195)
            QCOMPARE(int(out.cmColor.colorIndex()), index);
        if (method != 194)
            return;
        if (rgb.isValid())
            QCOMPARE(QColor(out.cmColor.red(), out.cmColor.green(), out.cmColor.blue()), rgb);
        if (text.contains(QLatin1Char('$'))) {
            QCOMPARE(QString::fromWCharArray(out.cmColor.bookName()), text.section(QLatin1Char('$'), 0, 0));
            QCOMPARE(QString::fromWCharArray(out.cmColor.colorName()), text.section(QLatin1Char('$'), 1));
        } else if (!text.startsWith(QLatin1String("RGB:"))) {
            QCOMPARE(QString::fromWCharArray(out.cmColor.bookName()), QStringLiteral("Values"));
        }
    }

private:
    std::unique_ptr<ZrTest::Host> m_host;
    std::unique_ptr<BookFolder> m_books;
};

ZR_TEST_SUITE(TestColorValues)
#include "tst_colorvalues.moc"
