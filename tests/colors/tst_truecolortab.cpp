// The true colour tab: what presses and typed numbers make of the colour, alone and inside the dialog.

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
        QTest::newRow("hue near 359") << QList<int>{255, 0, 4} << QList<int>{359, 100, 50};
        QTest::newRow("mid grey") << QList<int>{128, 128, 128} << QList<int>{0, 0, 50};
        QTest::newRow("dark teal") << QList<int>{10, 90, 80} << QList<int>{173, 80, 20};
    }

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

    void firstPressLuminanceRule_data()
    {
        QTest::addColumn<QList<int>>("start");
        QTest::newRow("white") << QList<int>{255, 255, 255};
        QTest::newRow("black") << QList<int>{0, 0, 0};
    }

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
};

ZR_TEST_SUITE(TestTrueColorTab)
#include "tst_truecolortab.moc"
