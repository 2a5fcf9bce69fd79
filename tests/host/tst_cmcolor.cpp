// The host's colour value: methods and channels, display names and the parameter-object form.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrarbitdict.h"
#include "zrcmcolor.h"
#include "zrconfig.h"
#include "zrdocument.h"
#include "zrstring.h"
#include "zrsystem.h"

#include <QDir>
#include <QTest>
#include <QWidget>

#include <memory>

Q_DECLARE_METATYPE(ZrCmColor)

namespace {

ZrCmColor indexColor(uint16_t index)
{
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByACI);
    color.setColorIndex(index);
    return color;
}

ZrCmColor trueColor(uint8_t red, uint8_t green, uint8_t blue, const wchar_t* name = nullptr,
                    const wchar_t* book = nullptr)
{
    ZrCmColor color;
    color.setRGB(red, green, blue);
    color.setNames(name, book);
    return color;
}

ZrCmColor methodColor(ZrCmEntityColor::ColorMethod method)
{
    ZrCmColor color;
    color.setColorMethod(method);
    return color;
}

QString channels(const ZrCmColor& color)
{
    return QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
}

QString text(const wchar_t* wide) { return QString::fromWCharArray(wide); }

} // namespace

class CmColorTest : public HostFixture
{
    Q_OBJECT

private Q_SLOTS:
    void methodsAndTheRawWord()
    {
        const ZrCmColor byLayer;
        QVERIFY(byLayer.isByLayer());
        QCOMPARE(byLayer.colorIndex(), uint16_t(256));
        QCOMPARE(byLayer.color(), 0xC0000100u);
        QCOMPARE(methodColor(ZrCmEntityColor::kByBlock).colorIndex(), uint16_t(0));
        QCOMPARE(indexColor(3).color(), 0xC3000003u);
        QCOMPARE(trueColor(0x10, 0x20, 0x30).color(), 0xC2102030u);

        // The word carries the whole value: a colour set from another's word equals it.
        for (const ZrCmColor& original : {indexColor(42), trueColor(1, 2, 3), methodColor(ZrCmEntityColor::kNone)}) {
            ZrCmColor copy;
            QCOMPARE(copy.setColor(original.color()), 0);
            QVERIFY(copy == original);
        }

        // A word whose top byte is no method is refused, and the colour stays as it was.
        ZrCmColor kept = indexColor(5);
        QVERIFY(kept.setColor(0x01000007u) != 0);
        QVERIFY(kept.setColorMethod(static_cast<ZrCmEntityColor::ColorMethod>(7)) != 0);
        QVERIFY(kept.setColorMethod(static_cast<ZrCmEntityColor::ColorMethod>(202)) != 0);
        QVERIFY(kept.setColorMethod(static_cast<ZrCmEntityColor::ColorMethod>(191)) != 0);
        QVERIFY(kept == indexColor(5));
    }

    // A true colour made from a default (by layer) colour must not read as by layer or by block
    // through its index: controls match index 256 and 0 to those items.
    void aTrueColourAnswersTheNearestIndex()
    {
        QCOMPARE(trueColor(250, 2, 3).colorIndex(), uint16_t(1));
        QCOMPARE(trueColor(0, 0, 0).colorIndex(), uint16_t(18));
        QCOMPARE(trueColor(255, 255, 254).colorIndex(), uint16_t(7));
        ZrCmColor fromLayer;
        fromLayer.setRGB(12, 200, 30);
        QVERIFY(fromLayer.colorIndex() >= 1 && fromLayer.colorIndex() <= 255);
        QCOMPARE(fromLayer.entityColor().colorIndex(), fromLayer.colorIndex());
    }

    void channelsResolveInEveryMethod_data()
    {
        QTest::addColumn<ZrCmColor>("color");
        QTest::addColumn<QString>("expected");
        QTest::newRow("index 1") << indexColor(1) << "255,0,0";
        QTest::newRow("index 7") << indexColor(7) << "255,255,255";
        QTest::newRow("index 8") << indexColor(8) << "128,128,128";
        QTest::newRow("index 11, half saturated") << indexColor(11) << "255,127,127";
        QTest::newRow("index 150, hue 210") << indexColor(150) << "0,127,255";
        QTest::newRow("index 250") << indexColor(250) << "51,51,51";
        QTest::newRow("true colour") << trueColor(1, 2, 3) << "1,2,3";
        QTest::newRow("channels set one by one") << [] {
            ZrCmColor color;
            color.setRed(10);
            color.setBlue(30);
            return color;
        }() << "10,255,30";
    }

    void channelsResolveInEveryMethod()
    {
        QFETCH(ZrCmColor, color);
        QFETCH(QString, expected);
        QCOMPARE(channels(color), expected);
    }

    void displayNames_data()
    {
        QTest::addColumn<ZrCmColor>("color");
        QTest::addColumn<QString>("expected");
        QTest::newRow("by layer") << ZrCmColor() << "BYLAYER";
        QTest::newRow("by block") << methodColor(ZrCmEntityColor::kByBlock) << "BYBLOCK";
        QTest::newRow("index") << indexColor(12) << "12";
        QTest::newRow("true colour") << trueColor(1, 22, 255) << "1,22,255";
        QTest::newRow("book colour") << trueColor(1, 2, 3, L"Sky 12", L"Book") << "Book$Sky 12";
        QTest::newRow("named colour without a book") << trueColor(1, 2, 3, L"Sky") << "Sky";
        QTest::newRow("none") << methodColor(ZrCmEntityColor::kNone) << "";
    }

    void displayNames()
    {
        QFETCH(ZrCmColor, color);
        QFETCH(QString, expected);
        QCOMPARE(text(color.colorNameForDisplay()), expected);
    }

    void jsonRoundTrip_data()
    {
        QTest::addColumn<ZrCmColor>("color");
        QTest::newRow("by layer") << ZrCmColor();
        QTest::newRow("by block") << methodColor(ZrCmEntityColor::kByBlock);
        QTest::newRow("index") << indexColor(3);
        QTest::newRow("index beyond the palette") << indexColor(300);
        QTest::newRow("true colour") << trueColor(1, 2, 3);
        QTest::newRow("book colour") << trueColor(200, 100, 0, L"橙 12 号", L"色册 A");
        QTest::newRow("none") << methodColor(ZrCmEntityColor::kNone);
    }

    void jsonRoundTrip()
    {
        QFETCH(ZrCmColor, color);
        ZrJsonPtr param = ElementValue::createObject(2);
        param->SetDataI("tabs", 1);
        ZrCmColorToJson(color, param);
        QVERIFY(JsonToZrCmColor(param) == color);
        QCOMPARE(param->GetVarI("tabs"), 1);

        // Through JSON text as well, as a caller on the command line hands it over.
        const ZrJsonPtr reread = ElementValue::parse(param->toJson());
        QVERIFY(reread);
        const ZrCmColor back = JsonToZrCmColor(reread);
        QVERIFY(back == color);
        QCOMPARE(text(back.colorName()), text(color.colorName()));
        QCOMPARE(text(back.bookName()), text(color.bookName()));
    }

    void init() { startHost(); }
    void cleanup() { ZrHostControl::shutdown(); }
};

ZR_TEST_SUITE(CmColorTest)
#include "tst_cmcolor.moc"
