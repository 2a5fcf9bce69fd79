// The true colour tab: what the user's presses, drags and typed numbers make of the colour, in its
// own window and inside the colour dialog as a host module opens it.

#include "colordialogrunner.h"
#include "colortabactions.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include "uicolorwidgets.h"
#include "uitruecolortab.h"
#include "zrcolordialog.h"

#include "zrui.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>
#include <QVBoxLayout>
#include <memory>

namespace {

ZrCmColor trueColor(int r, int g, int b)
{
    ZrCmColor color;
    color.setRGB(uint8_t(r), uint8_t(g), uint8_t(b));
    return color;
}

QList<int> channelsOf(const ZrCmColor& color) { return {color.red(), color.green(), color.blue()}; }

QList<int> hslToRgb(int h, int s, int l)
{
    short r = 0, g = 0, b = 0;
    HSLtoRGB(short(h), short(s), short(l), r, g, b);
    return {r, g, b};
}

// A mouse move with the left button held, which QTest does not send on every platform.
void dragTo(QWidget* widget, const QPoint& point)
{
    QMouseEvent move(QEvent::MouseMove, point, widget->mapToGlobal(point), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

// Chooses a mode with the keyboard on the combo box, as a user may.
void chooseMode(QComboBox* combo, int mode)
{
    combo->setFocus(Qt::MouseFocusReason);
    while (combo->currentIndex() != mode)
        QTest::keyClick(combo, combo->currentIndex() < mode ? Qt::Key_Down : Qt::Key_Up);
}

// The tab in a dialog of its own, shown and active, on the dialog's two colours.
struct TabWindow
{
    explicit TabWindow(ZrCmColor start) : newColor(start), oldColor(start)
    {
        tab = new ZrTrueColorWnd(&dialog, &dialog);
        (new QVBoxLayout(&dialog))->addWidget(tab);
        tab->initializeData(&newColor, &oldColor);
        // As the dialog does when the tab is entered.
        tab->updateColor(true);
        dialog.show();
        dialog.activateWindow();
        if (!QTest::qWaitForWindowActive(&dialog))
            qWarning("the tab's window never became active");
    }

    template <class T = QWidget>
    T* child(const char* name) { return ColorTest::dialogChild<T>(&dialog, name); }
    int spin(const char* name) { return child<QSpinBox>(name)->value(); }
    QList<int> hsl() { return {spin("hueSpinBox"), spin("saturationSpinBox"), spin("luminanceSpinBox")}; }
    QWidget* field() { return child("ZrHSLPallete"); }
    void pressField(const QPoint& point)
    {
        QTest::mousePress(field(), Qt::LeftButton, Qt::NoModifier, point);
        QTest::mouseRelease(field(), Qt::LeftButton, Qt::NoModifier, point);
    }

    QDialog dialog;
    ZrCmColor newColor;
    ZrCmColor oldColor;
    ZrTrueColorWnd* tab = nullptr;
};

using ZrTest::clickOk;
using ColorTabTest::retype;
using ColorTest::dialogChild;
using ColorTest::runColorDialog;

QList<int> rgbOf(const ZrJsonPtr& param)
{
    const int rgb = param->GetVarI("rgb", -1);
    return {rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF};
}

} // namespace

class TestTrueColorTab : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;

private Q_SLOTS:
    void init() { m_host.reset(new ZrTest::Host); }

    // The mode outlives the dialog; every test starts in HSL whatever the last one left.
    void cleanup()
    {
        {
            TabWindow reset(trueColor(1, 2, 3));
            chooseMode(reset.child<QComboBox>("colorModeCombo"), 0);
        }
        QVERIFY(!QApplication::activeModalWidget());
        m_host.reset();
    }

    void opensWithTheColourInHsl_data()
    {
        QTest::addColumn<QList<int>>("rgb");
        QTest::addColumn<QList<int>>("hsl");
        QTest::newRow("white") << QList<int>{255, 255, 255} << QList<int>{0, 0, 100};
        QTest::newRow("black") << QList<int>{0, 0, 0} << QList<int>{0, 0, 0};
        QTest::newRow("red") << QList<int>{255, 0, 0} << QList<int>{0, 100, 50};
        QTest::newRow("hue near 359") << QList<int>{255, 0, 4} << QList<int>{359, 100, 50};
        QTest::newRow("mid grey") << QList<int>{128, 128, 128} << QList<int>{0, 0, 50};
        QTest::newRow("dark teal") << QList<int>{10, 90, 80} << QList<int>{173, 80, 20};
    }

    // The spin boxes show the colour, and the tab hands the very same channels back untouched.
    void opensWithTheColourInHsl()
    {
        QFETCH(QList<int>, rgb);
        QFETCH(QList<int>, hsl);
        TabWindow window(trueColor(rgb[0], rgb[1], rgb[2]));
        QCOMPARE(window.hsl(), hsl);
        QCOMPARE(channelsOf(window.newColor), rgb);
        QCOMPARE(window.tab->getColorLineEdit()->text(),
                 QStringLiteral("%1,%2,%3").arg(rgb[0]).arg(rgb[1]).arg(rgb[2]));
    }

    void typedHslGivesTheRoundedChannels_data()
    {
        QTest::addColumn<QList<int>>("hsl");
        QTest::addColumn<QList<int>>("rgb");
        QTest::newRow("hue 0") << QList<int>{0, 100, 50} << QList<int>{255, 0, 0};
        QTest::newRow("hue 359") << QList<int>{359, 100, 50} << QList<int>{255, 0, 4};
        QTest::newRow("saturation 0") << QList<int>{200, 0, 50} << QList<int>{128, 128, 128};
        QTest::newRow("luminance 0") << QList<int>{120, 100, 0} << QList<int>{0, 0, 0};
        QTest::newRow("luminance 100") << QList<int>{120, 100, 100} << QList<int>{255, 255, 255};
        QTest::newRow("between") << QList<int>{30, 60, 37} << QList<int>{151, 94, 38};
    }

    // Typed in the order hue, saturation, luminance; the line and the caller's colour follow.
    void typedHslGivesTheRoundedChannels()
    {
        QFETCH(QList<int>, hsl);
        QFETCH(QList<int>, rgb);
        QCOMPARE(hslToRgb(hsl[0], hsl[1], hsl[2]), rgb);
        TabWindow window(trueColor(10, 20, 30));
        retype(window.child("luminanceSpinBox"), QString::number(hsl[2]));
        retype(window.child("hueSpinBox"), QString::number(hsl[0]));
        retype(window.child("saturationSpinBox"), QString::number(hsl[1]));
        QCOMPARE(channelsOf(window.newColor), rgb);
        QCOMPARE(int(window.newColor.colorMethod()), int(ZrCmEntityColor::kByColor));
        QCOMPARE(window.tab->getColorLineEdit()->text(),
                 QStringLiteral("%1,%2,%3").arg(rgb[0]).arg(rgb[1]).arg(rgb[2]));
        QCOMPARE(window.child<QLabel>("trueRedLabel")->text(), QStringLiteral("  红:   %1").arg(rgb[0]));
    }

    // The bar shows the colour's hue and saturation from light to dark, each band converted and
    // rounded as the spin boxes are.
    void luminanceBarPaintsTheRoundedColours()
    {
        TabWindow window(trueColor(38, 157, 217));
        short h = 0, s = 0, l = 0;
        RGBtoHSL(38, 157, 217, h, s, l);
        const QImage bar = window.child("ZrColorLightWnd")->grab().toImage();
        // H is 179: bands start at y = 2, 5, ...; the band at 89 has luminance (177 - 89) * 100 / 175.
        const int luminance = int((179 - 2 - 89) * (100.0 / 175));
        QCOMPARE(luminance, 50);
        const QColor painted = bar.pixelColor(15, 90);
        QCOMPARE((QList<int>{painted.red(), painted.green(), painted.blue()}), hslToRgb(h, s, luminance));
        // Light at the top and dark at the bottom.
        QVERIFY(bar.pixelColor(15, 4).lightness() > bar.pixelColor(15, 170).lightness());
    }

    void firstPressLuminanceRule_data()
    {
        QTest::addColumn<QList<int>>("start");
        QTest::newRow("white") << QList<int>{255, 255, 255};
        QTest::newRow("black") << QList<int>{0, 0, 0};
    }

    // From white or black the first press shows a colour at luminance 50; once used, the rule is
    // spent: the old colour brought back and pressed again stays white.
    void firstPressLuminanceRule()
    {
        QFETCH(QList<int>, start);
        TabWindow window(trueColor(start[0], start[1], start[2]));
        QVERIFY(!window.tab->pressSeen() && !window.tab->firstPress() && !window.tab->lightTouched());
        const QPoint atHue120(62, 0);
        window.pressField(atHue120);
        QCOMPARE(window.hsl(), (QList<int>{120, 100, 50}));
        QCOMPARE(channelsOf(window.newColor), hslToRgb(120, 100, 50));
        QVERIFY(window.tab->pressSeen());
        QVERIFY(!window.tab->firstPress());
        QVERIFY(!window.tab->lightTouched());

        QTest::mouseDClick(window.child("oldColorLabel"), Qt::LeftButton);
        QCOMPARE(channelsOf(window.newColor), start);
        QCOMPARE(window.hsl()[2], start[2] ? 100 : 0);
        window.pressField(atHue120);
        QCOMPARE(window.hsl()[2], start[2] ? 100 : 0);
        QCOMPARE(channelsOf(window.newColor), start);
    }

    // The user took the luminance to the top of the bar: the first press keeps it there.
    void firstPressKeepsALuminanceTheUserSet()
    {
        TabWindow window(trueColor(40, 50, 60));
        QTest::mouseClick(window.child("ZrColorLightWnd"), Qt::LeftButton, Qt::NoModifier, QPoint(15, 2));
        QCOMPARE(window.hsl()[2], 100);
        QVERIFY(window.tab->lightTouched());
        window.pressField(QPoint(62, 0));
        QCOMPARE(window.hsl(), (QList<int>{120, 100, 100}));
        QCOMPARE(channelsOf(window.newColor), (QList<int>{255, 255, 255}));
        QVERIFY(window.tab->firstPress());
    }

    // Off the right or bottom edge the hue and saturation of the last point stay; off the left or
    // top they stop at the edge values.
    void draggingOffTheField()
    {
        TabWindow window(trueColor(128, 64, 64));
        QWidget* field = window.field();
        QTest::mousePress(field, Qt::LeftButton, Qt::NoModifier, QPoint(93, 85));
        QCOMPARE(window.hsl().mid(0, 2), (QList<int>{180, 50}));
        dragTo(field, QPoint(185, 169));
        QCOMPARE(window.hsl().mid(0, 2), (QList<int>{358, 0}));
        dragTo(field, QPoint(400, 60));
        QCOMPARE(window.hsl().mid(0, 2), (QList<int>{358, 0}));
        dragTo(field, QPoint(60, 300));
        QCOMPARE(window.hsl().mid(0, 2), (QList<int>{358, 0}));
        dragTo(field, QPoint(-20, -20));
        QCOMPARE(window.hsl().mid(0, 2), (QList<int>{0, 100}));
        // The field itself holds the edge values too, which the bar is painted from.
        auto* pallete = static_cast<ZrHSLPallete*>(field);
        QCOMPARE((QList<int>{pallete->hue(), pallete->saturation()}), (QList<int>{0, 100}));
        QTest::mouseRelease(field, Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
        dragTo(field, QPoint(93, 85));
        QCOMPARE(window.hsl().mid(0, 2), (QList<int>{0, 100}));
    }

    // Switching modes there and back keeps the caller's channels exactly, and the next tab opens in
    // the mode chosen last.
    void modeSwitchKeepsTheColourAndIsRemembered()
    {
        {
            TabWindow window(trueColor(10, 200, 31));
            auto* combo = window.child<QComboBox>("colorModeCombo");
            QCOMPARE(combo->currentIndex(), 0);
            chooseMode(combo, 1);
            QVERIFY(!window.dialog.findChild<QWidget*>(QStringLiteral("ZrHSLPallete")));
            QCOMPARE((QList<int>{window.spin("redSpinBox"), window.spin("greenSpinBox"), window.spin("blueSpinBox")}),
                     (QList<int>{10, 200, 31}));
            QCOMPARE(channelsOf(window.newColor), (QList<int>{10, 200, 31}));
            chooseMode(combo, 0);
            QVERIFY(!window.dialog.findChild<QWidget*>(QStringLiteral("redSpinBox")));
            short h = 0, s = 0, l = 0;
            RGBtoHSL(10, 200, 31, h, s, l);
            QCOMPARE(window.hsl(), (QList<int>{h, s, l}));
            QCOMPARE(channelsOf(window.newColor), (QList<int>{10, 200, 31}));
            chooseMode(combo, 1);
        }
        TabWindow next(trueColor(1, 2, 3));
        QCOMPARE(next.child<QComboBox>("colorModeCombo")->currentIndex(), 1);
        QCOMPARE(next.spin("blueSpinBox"), 3);
    }

    // A slider clicked moves its channel, its spin box and the other sliders' colours.
    void rgbSlidersAndSpinBoxes()
    {
        TabWindow window(trueColor(0, 0, 0));
        chooseMode(window.child<QComboBox>("colorModeCombo"), 1);
        auto* green = window.child<ZrRGBSlider>("greenSlider");
        QTest::mouseClick(green, Qt::LeftButton, Qt::NoModifier, QPoint(2 + 103, 10));
        QCOMPARE(green->point2Value(QPoint(105, 10)), 127);
        QCOMPARE(window.spin("greenSpinBox"), 127);
        QCOMPARE(channelsOf(window.newColor), (QList<int>{0, 127, 0}));
        QCOMPARE(green->sliderPos(), int(127 / 255.0 * 206) + 2);
        retype(window.child("blueSpinBox"), QStringLiteral("255"));
        QCOMPARE(channelsOf(window.newColor), (QList<int>{0, 127, 255}));
        // The red slider's far end now paints red beside the chosen green and blue.
        const QColor end = window.child("redSlider")->grab().toImage().pixelColor(205, 12);
        QCOMPARE((QList<int>{end.green(), end.blue()}), (QList<int>{127, 255}));
    }

    // Each label's key takes the user to its field, alone as well as with Alt (the label's mnemonic);
    // the colour key selects the line.
    void keysFocusTheirFields()
    {
        TabWindow window(trueColor(5, 6, 7));
        const auto press = [&window](Qt::Key key, Qt::KeyboardModifiers modifiers) {
            window.tab->setFocus();
            QTest::keyClick(&window.dialog, key, modifiers);
            return QApplication::focusWidget();
        };
        QCOMPARE(press(Qt::Key_U, Qt::NoModifier), window.child("hueSpinBox"));
        QCOMPARE(press(Qt::Key_S, Qt::NoModifier), window.child("saturationSpinBox"));
        QCOMPARE(press(Qt::Key_L, Qt::NoModifier), window.child("luminanceSpinBox"));
        QCOMPARE(press(Qt::Key_M, Qt::NoModifier), window.child("colorModeCombo"));
        QCOMPARE(press(Qt::Key_M, Qt::AltModifier), window.child("colorModeCombo"));
        QCOMPARE(press(Qt::Key_C, Qt::NoModifier), window.child("trueColorLineEdit"));
        QCOMPARE(window.tab->getColorLineEdit()->selectedText(), QStringLiteral("5,6,7"));
        chooseMode(window.child<QComboBox>("colorModeCombo"), 1);
        QCOMPARE(press(Qt::Key_G, Qt::NoModifier), window.child("greenSpinBox"));
        QCOMPARE(press(Qt::Key_B, Qt::NoModifier), window.child("blueSpinBox"));
    }

    void outOfRangeSpinValuesAreRefused_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("spin");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("value");
        QTest::newRow("hue 400") << 0 << "hueSpinBox" << "400" << 40;
        QTest::newRow("hue 360") << 0 << "hueSpinBox" << "360" << 360;
        QTest::newRow("saturation 101") << 0 << "saturationSpinBox" << "101" << 10;
        QTest::newRow("luminance -5") << 0 << "luminanceSpinBox" << "-5" << 5;
        QTest::newRow("red 256") << 1 << "redSpinBox" << "256" << 25;
        QTest::newRow("blue 255") << 1 << "blueSpinBox" << "255" << 255;
    }

    void outOfRangeSpinValuesAreRefused()
    {
        QFETCH(int, mode);
        QFETCH(QString, spin);
        QFETCH(QString, typed);
        QFETCH(int, value);
        TabWindow window(trueColor(90, 90, 90));
        chooseMode(window.child<QComboBox>("colorModeCombo"), mode);
        retype(window.child(spin.toLatin1().constData()), typed);
        QCOMPARE(window.spin(spin.toLatin1().constData()), value);
    }

    // The channel labels word a channel by one set of texts when the tab is made and by another from
    // its first update on; a translation may tell them apart, so each must come from its own key.
    void channelLabelsBeforeAndAfterTheFirstUpdate()
    {
        ZrHostControl::setLanguageTexts({{QStringLiteral("IDS_ZRUI_CMCOLOR_PROMPT2"), QStringLiteral("R")},
                                         {QStringLiteral("ZRED_IDD_PROPPAGE_COLORTRUE_11"), QStringLiteral("Blue =")}});
        QDialog dialog;
        ZrCmColor newColor = trueColor(1, 2, 3);
        ZrCmColor oldColor = newColor;
        auto* tab = new ZrTrueColorWnd(&dialog, &dialog);
        const auto labelText = [&dialog](const char* name) { return dialogChild<QLabel>(&dialog, name)->text(); };
        QCOMPARE(labelText("trueRedLabel"), QStringLiteral("  R:   255"));
        QCOMPARE(labelText("trueBlueLabel"), QStringLiteral("  蓝:   255"));
        tab->initializeData(&newColor, &oldColor);
        tab->updateColor(true);
        QCOMPARE(labelText("trueRedLabel"), QStringLiteral("  红:   1"));
        QCOMPARE(labelText("trueBlueLabel"), QStringLiteral("  Blue =   3"));
        ZrHostControl::setLanguageTexts({});
    }

    void hslSpinBoxesShowTheirWidestValue_data()
    {
        QTest::addColumn<int>("pixelSize");
        QTest::newRow("the dialog's font") << 0;
        QTest::newRow("16 pixels") << 16;
    }

    // "360" fits the hue's edit field, whatever the font; the fields never go below the 45 pixels the
    // tab was laid out for.
    void hslSpinBoxesShowTheirWidestValue()
    {
        QFETCH(int, pixelSize);
        TabWindow window(trueColor(255, 0, 4));
        if (pixelSize > 0) {
            QFont font = window.dialog.font();
            font.setPixelSize(pixelSize);
            window.dialog.setFont(font);
        }
        window.dialog.layout()->activate();
        for (const char* name : {"hueSpinBox", "saturationSpinBox", "luminanceSpinBox"}) {
            auto* spin = window.child<QSpinBox>(name);
            const QLineEdit* edit = spin->findChild<QLineEdit*>();
            QVERIFY(spin->width() >= 45);
            // QLineEdit keeps 2 pixels free on either side of its text.
            const int room = edit->contentsRect().width() - 4;
            QVERIFY2(room >= edit->fontMetrics().horizontalAdvance(QString::number(spin->maximum())),
                     name);
        }
    }

    void colourOpensOnThisTabAndTypedChannelsReachTheCaller()
    {
        QList<int> opened;
        int shownTab = -1;
        const QString param = QStringLiteral(R"({"method":194,"rgb":%1})").arg(10 | 20 << 8 | 30 << 16);
        const auto out = runColorDialog(param, [&](ZrColorDialog* dialog) {
            shownTab = dialog->tabWidget()->currentIndex();
            chooseMode(dialogChild<QComboBox>(dialog, "colorModeCombo"), 1);
            opened = {dialogChild<QSpinBox>(dialog, "redSpinBox")->value(),
                      dialogChild<QSpinBox>(dialog, "greenSpinBox")->value(),
                      dialogChild<QSpinBox>(dialog, "blueSpinBox")->value()};
            retype(dialogChild(dialog, "redSpinBox"), QStringLiteral("200"));
            retype(dialogChild(dialog, "blueSpinBox"), QStringLiteral("7"));
            clickOk(dialog);
        });
        QCOMPARE(shownTab, 1);
        QCOMPARE(opened, (QList<int>{10, 20, 30}));
        QVERIFY(!out.leftOpen);
        QCOMPARE(out.result, 1);
        QCOMPARE(out.param->GetVarI("method", -1), 194);
        QCOMPARE(rgbOf(out.param), (QList<int>{200, 20, 7}));
    }

    void typedColourText_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QList<int>>("rgb");
        QTest::newRow("plain") << "1,2,3" << QList<int>{1, 2, 3};
        QTest::newRow("cut to 8 bits") << "300,0,0" << QList<int>{44, 0, 0};
        QTest::newRow("two parts") << "1,2" << QList<int>{};
        QTest::newRow("letters") << "a,b,c" << QList<int>{};
        QTest::newRow("empty part") << "1,,2" << QList<int>{};
        QTest::newRow("negative") << "-1,2,3" << QList<int>{};
        QTest::newRow("four parts") << "1,2,3,4" << QList<int>{};
    }

    // A text that is no true colour keeps the dialog open with the message; a good one is taken on OK.
    void typedColourText()
    {
        QFETCH(QString, typed);
        QFETCH(QList<int>, rgb);
        ZrHostControl::pushMessageBoxAnswer(1);
        const auto out = runColorDialog(QStringLiteral(R"({"method":194,"rgb":0})"), [&typed](ZrColorDialog* dialog) {
            retype(dialogChild(dialog, "trueColorLineEdit"), typed);
            clickOk(dialog);
        });
        const auto log = ZrHostControl::messageLog();
        if (rgb.isEmpty()) {
            QVERIFY(out.leftOpen);
            QCOMPARE(out.result, 2);
            QCOMPARE(log.size(), 1);
            QCOMPARE(log.first().text, QStringLiteral("不是有效的真彩色值！"));
            QCOMPARE(rgbOf(out.param), (QList<int>{0, 0, 0}));
        } else {
            QVERIFY(!out.leftOpen);
            QCOMPARE(out.result, 1);
            QVERIFY(log.isEmpty());
            QCOMPARE(rgbOf(out.param), rgb);
        }
    }

    // The index tab holds the user on a bad text; this tab lets the user go, and says nothing.
    void badTextDoesNotStopATabSwitch()
    {
        ZrHostControl::pushMessageBoxAnswer(1);
        int after = -1;
        const auto out = runColorDialog(QStringLiteral(R"({"method":194,"rgb":255})"), [&after](ZrColorDialog* dialog) {
            retype(dialogChild(dialog, "trueColorLineEdit"), QStringLiteral("a,b,c"));
            QTabBar* bar = dialog->tabWidget()->tabBar();
            QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(0).center());
            after = dialog->tabWidget()->currentIndex();
        });
        QCOMPARE(after, 0);
        QVERIFY(ZrHostControl::messageLog().isEmpty());
        QCOMPARE(out.result, 2);
    }

    // Entering the tab turns an index colour into the plain colour it showed.
    void enteringTheTabMakesATrueColour()
    {
        const auto out = runColorDialog(QStringLiteral(R"({"method":195,"index":1})"), [](ZrColorDialog* dialog) {
            QTabBar* bar = dialog->tabWidget()->tabBar();
            QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(1).center());
            clickOk(dialog);
        });
        QCOMPARE(out.result, 1);
        QCOMPARE(out.param->GetVarI("method", -1), 194);
        QCOMPARE(rgbOf(out.param), (QList<int>{255, 0, 0}));
    }
};

ZR_TEST_SUITE(TestTrueColorTab)
#include "tst_truecolortab.moc"
