// The host's colour value and what surrounds it: methods and channels, names, the parameter-object
// form, the palettes, HSL, colour texts, the small string helpers, the help service and the folders
// searched for colour books.

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

template <typename Text>
QStringList texts(const ZrArray<Text>& list)
{
    QStringList out;
    for (const Text& item : list)
        out << item.toQString();
    return out;
}

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

    void setColorIndexKeepsTheMethod()
    {
        ZrCmColor layer;
        layer.setColorIndex(3);
        QVERIFY(layer.isByLayer());
        QCOMPARE(layer.colorIndex(), uint16_t(3));

        ZrCmColor rgb = trueColor(9, 8, 7);
        rgb.setColorIndex(1);
        QVERIFY(rgb.isByColor());
        QCOMPARE(channels(rgb), QStringLiteral("9,8,7"));

        const ZrCmEntityColor entity = indexColor(200).entityColor();
        QCOMPARE(entity.colorMethod(), ZrCmEntityColor::kByACI);
        QCOMPARE(entity.colorIndex(), uint16_t(200));
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
        QTest::newRow("index 5") << indexColor(5) << "0,0,255";
        QTest::newRow("index 7") << indexColor(7) << "255,255,255";
        QTest::newRow("index 8") << indexColor(8) << "128,128,128";
        QTest::newRow("index 11, half saturated") << indexColor(11) << "255,127,127";
        QTest::newRow("index 20, hue 15") << indexColor(20) << "255,63,0";
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

    void anIndexColourTurnedTrueColourKeepsItsLook()
    {
        ZrCmColor color = indexColor(30);
        const QString before = channels(color);
        color.setColorMethod(ZrCmEntityColor::kByColor);
        QVERIFY(color.isByColor());
        QCOMPARE(channels(color), before);
    }

    void namesAreValuesOfTheirOwn()
    {
        ZrCmColor color = trueColor(10, 20, 30, L"天空", L"我的色册");
        QVERIFY(color.hasColorName());
        QVERIFY(color.hasBookName());
        QCOMPARE(text(color.colorName()), QStringLiteral("天空"));
        QCOMPARE(text(color.bookName()), QStringLiteral("我的色册"));

        const ZrCmColor copy = color;
        color.setNames(L"海", nullptr);
        QCOMPARE(text(copy.colorName()), QStringLiteral("天空"));
        QVERIFY(!color.hasBookName());
        QVERIFY(copy != color);

        // Setting the channels keeps the names: a book colour is named, then given its value.
        color.setRGB(1, 1, 1);
        QCOMPARE(text(color.colorName()), QStringLiteral("海"));
        color.setNames(nullptr, nullptr);
        QVERIFY(!color.hasColorName());
        QCOMPARE(text(color.colorName()), QString());
    }

    void comparison()
    {
        QVERIFY(trueColor(1, 2, 3, L"a", L"b") == trueColor(1, 2, 3, L"a", L"b"));
        QVERIFY(trueColor(1, 2, 3, L"a", L"b") != trueColor(1, 2, 3, L"a", L"c"));
        QVERIFY(trueColor(1, 2, 3, L"a") != trueColor(1, 2, 3));
        QVERIFY(trueColor(1, 2, 3) != trueColor(1, 2, 4));
        // The same look by two methods is two colours.
        QVERIFY(indexColor(1) != trueColor(255, 0, 0));
        QVERIFY(indexColor(1) != methodColor(ZrCmEntityColor::kByLayer));
        // Asking for the display text changes nothing that counts.
        ZrCmColor asked = indexColor(9);
        asked.colorNameForDisplay();
        QVERIFY(asked == indexColor(9));
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

    void theDisplayNameFollowsTheValue()
    {
        ZrCmColor color = trueColor(1, 2, 3);
        QCOMPARE(text(color.colorNameForDisplay()), QStringLiteral("1,2,3"));
        color.setBlue(4);
        QCOMPARE(text(color.colorNameForDisplay()), QStringLiteral("1,2,4"));
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
        QTest::newRow("colour name only") << trueColor(0, 0, 0, L"Ink");
        QTest::newRow("none") << methodColor(ZrCmEntityColor::kNone);
        QTest::newRow("pen") << methodColor(ZrCmEntityColor::kByPen);
        QTest::newRow("foreground") << methodColor(ZrCmEntityColor::kForeground);
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

    void jsonKeys()
    {
        ZrJsonPtr param = ElementValue::createObject(2);
        ZrCmColorToJson(trueColor(0x11, 0x22, 0x33, L"n", L"b"), param);
        QCOMPARE(param->GetVarI("method"), 194);
        QCOMPARE(param->GetVarI("rgb"), 0x332211);
        QCOMPARE(param->GetVarSW("colorName").toQString(), QStringLiteral("n"));
        QCOMPARE(param->GetVarSW("bookName").toQString(), QStringLiteral("b"));

        ZrCmColorToJson(indexColor(5), param);
        QCOMPARE(param->GetVarI("method"), 195);
        QCOMPARE(param->GetVarI("index"), 5);
        // The names of the colour written before are gone.
        QCOMPARE(param->GetVarSW("colorName", L"left").toQString(), QString());

        // Missing keys keep a default colour's values; rgb counts only for a true colour.
        QVERIFY(JsonToZrCmColor(ElementValue::createObject(2)) == ZrCmColor());
        QVERIFY(JsonToZrCmColor(ZrJsonPtr()) == ZrCmColor());
        ZrJsonPtr partial = ElementValue::parse("{\"method\": 195, \"index\": 4, \"rgb\": 255}");
        QVERIFY(JsonToZrCmColor(partial) == indexColor(4));
        partial = ElementValue::parse("{\"method\": 194, \"rgb\": 197121}");
        QCOMPARE(channels(JsonToZrCmColor(partial)), QStringLiteral("1,2,3"));
    }

    void palettesCarryRedInTheLowByte()
    {
        for (const uint32_t* palette : {zrcmAcadPalette(0xFF30281E), zrcmDispPalette(0xFF30281E), zrcmAcadPalette(0)}) {
            QVERIFY(palette);
            QCOMPARE(palette[1], 0x0000FFu);
            QCOMPARE(palette[5], 0xFF0000u);
            QCOMPARE(palette[7], 0xFFFFFFu);
            for (int i = 0; i < 256; ++i) {
                const ZrCmColor color = indexColor(uint16_t(i));
                const uint32_t packed = color.red() | (color.green() << 8) | (color.blue() << 16);
                QCOMPARE(palette[i], packed);
            }
        }
        // On a white background the foreground is black.
        QCOMPARE(zrcmAcadPalette(0xFFFFFFFF)[7], 0u);
    }

    void theCurrentPaletteFollowsTheDrawingBackground()
    {
        QCOMPARE(zrsiutCurPalette()[7], 0xFFFFFFu);
        ZrHostControl::setDrawingBackgroundDark(false);
        QCOMPARE(zrsiutCurPalette()[7], 0u);
        QCOMPARE(zrsiutCurPalette()[1], 0x0000FFu);
        ZrHostControl::setDrawingBackgroundDark(true);
        QCOMPARE(zrsiutCurPalette()[7], 0xFFFFFFu);
        // The colour value itself never changes with the background.
        ZrHostControl::setDrawingBackgroundDark(false);
        QCOMPARE(channels(indexColor(7)), QStringLiteral("255,255,255"));
        ZrHostControl::shutdown();
        QCOMPARE(zrsiutCurPalette()[7], 0xFFFFFFu);
    }

    void hslEdges_data()
    {
        QTest::addColumn<double>("red");
        QTest::addColumn<double>("green");
        QTest::addColumn<double>("blue");
        QTest::addColumn<double>("hue");
        QTest::addColumn<double>("saturation");
        QTest::addColumn<double>("luminance");
        QTest::newRow("red, hue 0") << 1.0 << 0.0 << 0.0 << 0.0 << 1.0 << 0.5;
        QTest::newRow("hue 359") << 1.0 << 0.0 << 1.0 / 60 << 359.0 << 1.0 << 0.5;
        QTest::newRow("green") << 0.0 << 1.0 << 0.0 << 120.0 << 1.0 << 0.5;
        QTest::newRow("blue") << 0.0 << 0.0 << 1.0 << 240.0 << 1.0 << 0.5;
        QTest::newRow("magenta") << 1.0 << 0.0 << 1.0 << 300.0 << 1.0 << 0.5;
        QTest::newRow("grey, saturation 0") << 0.5 << 0.5 << 0.5 << 0.0 << 0.0 << 0.5;
        QTest::newRow("black, luminance 0") << 0.0 << 0.0 << 0.0 << 0.0 << 0.0 << 0.0;
        QTest::newRow("white, luminance 1") << 1.0 << 1.0 << 1.0 << 0.0 << 0.0 << 1.0;
        QTest::newRow("pale") << 1.0 << 0.8 << 0.8 << 0.0 << 1.0 << 0.9;
        QTest::newRow("dark olive") << 0.3 << 0.3 << 0.1 << 60.0 << 0.5 << 0.2;
    }

    void hslEdges()
    {
        QFETCH(double, red);
        QFETCH(double, green);
        QFETCH(double, blue);
        QFETCH(double, hue);
        QFETCH(double, saturation);
        QFETCH(double, luminance);
        ZrGeVector3d hsl;
        zrdbConvertRgbToHsl(ZrGeVector3d(red, green, blue), hsl);
        QVERIFY2(hsl.isEqualTo(ZrGeVector3d(hue, saturation, luminance), 1e-9),
                 qPrintable(QStringLiteral("%1 %2 %3").arg(hsl.x).arg(hsl.y).arg(hsl.z)));
        ZrGeVector3d rgb;
        zrdbConvertHslToRgb(ZrGeVector3d(hue, saturation, luminance), rgb);
        QVERIFY2(rgb.isEqualTo(ZrGeVector3d(red, green, blue), 1e-9),
                 qPrintable(QStringLiteral("%1 %2 %3").arg(rgb.x).arg(rgb.y).arg(rgb.z)));
    }

    void hslRoundTripsEveryCorner()
    {
        // Each channel at five levels: every edge of the hue circle and every saturation branch.
        const double levels[] = {0.0, 0.2, 0.5, 0.8, 1.0};
        for (double r : levels) {
            for (double g : levels) {
                for (double b : levels) {
                    ZrGeVector3d hsl;
                    ZrGeVector3d rgb;
                    zrdbConvertRgbToHsl(ZrGeVector3d(r, g, b), hsl);
                    QVERIFY(hsl.x >= 0.0 && hsl.x < 360.0);
                    zrdbConvertHslToRgb(hsl, rgb);
                    QVERIFY2(rgb.isEqualTo(ZrGeVector3d(r, g, b), 1e-9),
                             qPrintable(QStringLiteral("%1 %2 %3").arg(r).arg(g).arg(b)));
                }
            }
        }
        // A hue of a full turn is red again; values out of range are held to it.
        ZrGeVector3d rgb;
        zrdbConvertHslToRgb(ZrGeVector3d(360.0, 1.5, 0.5), rgb);
        QVERIFY(rgb.isEqualTo(ZrGeVector3d(1, 0, 0), 1e-9));
    }

    void colourToText()
    {
        QCOMPARE(zrutColorToStr(0).toQString(), QStringLiteral("BYBLOCK"));
        QCOMPARE(zrutColorToStr(256).toQString(), QStringLiteral("BYLAYER"));
        QCOMPARE(zrutColorToStr(1).toQString(), QStringLiteral("1"));
        QCOMPARE(zrutColorToStr(255).toQString(), QStringLiteral("255"));
    }

    void splitString_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("separator");
        QTest::addColumn<QStringList>("parts");
        QTest::newRow("book and colour") << "Book$Sky" << "$" << QStringList{"Book", "Sky"};
        QTest::newRow("empty part kept") << "A$$B" << "$" << QStringList{"A", "", "B"};
        QTest::newRow("empty text") << "" << "$" << QStringList{""};
        QTest::newRow("separator only") << "$" << "$" << QStringList{"", ""};
        QTest::newRow("trailing") << "1,2," << "," << QStringList{"1", "2", ""};
        QTest::newRow("no separator") << "Sky" << "$" << QStringList{"Sky"};
        QTest::newRow("long separator") << "a::b:c" << "::" << QStringList{"a", "b:c"};
        QTest::newRow("multibyte") << "红$绿" << "$" << QStringList{"红", "绿"};
        QTest::newRow("empty separator") << "a,b" << "" << QStringList{"a,b"};
    }

    void splitString()
    {
        QFETCH(QString, text);
        QFETCH(QString, separator);
        QFETCH(QStringList, parts);
        ZrArray<ZrUtf8String> out;
        out.append("left over");
        zrutSplitString(ZrUtf8String(text), ZrUtf8String(separator), out);
        QCOMPARE(texts(out), parts);
    }

    void unsignedDigits_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("digits");
        QTest::newRow("empty") << "" << false;
        QTest::newRow("zero") << "0" << true;
        QTest::newRow("number") << "0123456789" << true;
        QTest::newRow("letter at end") << "12a" << false;
        QTest::newRow("blank") << " 1" << false;
        QTest::newRow("sign") << "-1" << false;
        QTest::newRow("plus") << "+1" << false;
        QTest::newRow("full-width digit") << "１" << false;
        QTest::newRow("slash and colon") << "/:" << false;
    }

    void unsignedDigits()
    {
        QFETCH(QString, text);
        QFETCH(bool, digits);
        QCOMPARE(zrutIsUnsignedDigit(ZrUtf8String(text)), digits);
    }

    void compareIgnoringAsciiCase()
    {
        QCOMPARE(Zr_stricmpA("ByLayer", "BYLAYER"), 0);
        QCOMPARE(Zr_stricmpA("", ""), 0);
        QVERIFY(Zr_stricmpA("a", "B") < 0);
        QVERIFY(Zr_stricmpA("BYLAYERS", "bylayer") > 0);
        QVERIFY(Zr_stricmpA("bylaye", "BYLAYER") < 0);
        // '@' and '[' lie beside the capitals; only letters fold.
        QVERIFY(Zr_stricmpA("@", "`") != 0);
        QVERIFY(Zr_stricmpA("[", "{") != 0);
        // Bytes past ASCII compare as they are.
        QVERIFY(Zr_stricmpA("\xC3\xA9", "\xC3\x89") != 0);
        QCOMPARE(Zr_stricmpA("红", "红"), 0);
    }

    void productTexts()
    {
        ZrString out(L"stale");
        zr_getOEMStringRePlace(out, "appEnName");
        QCOMPARE(out.toQString(), QStringLiteral("ZrCAD"));
        zr_getOEMStringRePlace(out, "noSuchKey");
        QVERIFY(out.isEmpty());
    }

    void theHelpServiceRecordsTopics()
    {
        QStringList heard;
        ZrHostControl::setHelpListener([&heard](const QString& topic) { heard << topic; });
        CXuSysHelpSvr* help = CXuSysHelpSvr::cast(zr_arbitDict_getservice(1).get());
        QVERIFY(help);
        help->help(ZrString(L"颜色"));
        help->help(ZrString(L"ZRAPP_HELP/ZRAPP_HLP/default"));
        const QStringList expected{QStringLiteral("颜色"), QStringLiteral("ZRAPP_HELP/ZRAPP_HLP/default")};
        QCOMPARE(ZrHostControl::helpTopics(), expected);
        QCOMPARE(heard, expected);
        QCOMPARE(help->displayScale(0), 1.0);
        ZrHostControl::setHelpListener({});
    }

    void anActiveViewNeedsADrawingAndAWindow()
    {
        CXuSystem* system = CXuSystem::instance();
        QVERIFY(!system->isActiveViewReady());
        auto view = std::make_unique<QWidget>();
        ZrHostControl::setViewWindow(view.get());
        QVERIFY(system->isActiveViewReady());
        view.reset();
        QVERIFY(!system->isActiveViewReady());

        view = std::make_unique<QWidget>();
        ZrHostControl::setViewWindow(view.get());
        CXuDocManager* documents = system->docManager();
        while (documents->curDocument())
            documents->closeDocument(documents->curDocument());
        QVERIFY(!system->isActiveViewReady());
    }

    void colourBookFoldersInOrder()
    {
        ZrHostControl::shutdown();
        QVERIFY(writeFile(QDir(m_config.path()).filePath(QStringLiteral("user-config.json")),
                          "{\"ColorBookPaths\": [\"/books/user\", 7, \"/books/shared\"]}"));
        Environment environment;
        environment.set("ZR_COLORBOOK_PATH", "/books/env1::/books/env2");
        startHost();

        QStringList folders = texts(CXuSystem::instance()->pathService()->colorBookFolders());
        QCOMPARE(folders.mid(0, 4), (QStringList{QStringLiteral("/books/user"), QStringLiteral("/books/shared"),
                                                 QStringLiteral("/books/env1"), QStringLiteral("/books/env2")}));
        QCOMPARE(folders.size(), 5);
        QVERIFY2(folders.last().endsWith(QStringLiteral("/share/ZrHost/colorbooks")), qPrintable(folders.last()));
        QVERIFY(!folders.last().contains(QStringLiteral("..")));
        const QString installed = folders.last();

        // The list is read anew each time: a change of the environment shows at once.
        environment.set("ZR_COLORBOOK_PATH", QByteArray());
        folders = texts(CXuSystem::instance()->pathService()->colorBookFolders());
        QCOMPARE(folders, (QStringList{QStringLiteral("/books/user"), QStringLiteral("/books/shared"), installed}));

        // One folder may be written without the array.
        zr_user_config("")->SetDataS("ColorBookPaths", "/books/one");
        QCOMPARE(texts(CXuSystem::instance()->pathService()->colorBookFolders()),
                 (QStringList{QStringLiteral("/books/one"), installed}));
        zr_user_config("")->SetDataB("ColorBookPaths", true);
        QCOMPARE(texts(CXuSystem::instance()->pathService()->colorBookFolders()), QStringList{installed});

        const QStringList fixed{QStringLiteral("/only/here")};
        ZrHostControl::setColorBookFolders(fixed);
        QCOMPARE(texts(CXuSystem::instance()->pathService()->colorBookFolders()), fixed);
        ZrHostControl::setColorBookFolders({});
        QVERIFY(CXuSystem::instance()->pathService()->colorBookFolders().isEmpty());
        ZrHostControl::resetColorBookFolders();
        QCOMPARE(texts(CXuSystem::instance()->pathService()->colorBookFolders()), QStringList{installed});
    }

    void init() { startHost(); }
    void cleanup() { ZrHostControl::shutdown(); }
};

ZR_TEST_SUITE(CmColorTest)
#include "tst_cmcolor.moc"
