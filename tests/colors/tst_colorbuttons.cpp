// The small colour buttons as a user meets them: the swatch's "..." and the colour dialog behind it,
// the flat and the two-menu buttons under the mouse, the status images in both themes and the
// gradient preview as it is painted.

#include "colordialogrunner.h"
#include "colortabactions.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include "ZrQtUtilsFunc.h"
#include "uicolorwidgets.h"
#include "zrcolorbutton.h"

#include <QAction>
#include <QApplication>
#include <QEnterEvent>
#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {

QColor channelsOf(const ZrCmColor& color) { return QColor(color.red(), color.green(), color.blue()); }

// Close enough for an antialiased or interpolated pixel.
bool near(const QColor& a, const QColor& b, int tolerance = 6)
{
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance
        && qAbs(a.blue() - b.blue()) <= tolerance;
}

QString describe(const QColor& a, const QColor& b)
{
    return QStringLiteral("got %1, wanted %2").arg(a.name(), b.name());
}

#define COMPARE_COLOR(actual, expected)                                                                  \
    do {                                                                                                 \
        const QColor zrActual = (actual);                                                                \
        const QColor zrExpected = (expected);                                                            \
        QVERIFY2(near(zrActual, zrExpected), qPrintable(describe(zrActual, zrExpected)));                \
    } while (false)

QColor pixel(QWidget* widget, int x, int y) { return widget->grab().toImage().pixelColor(x, y); }

using ZrTest::aci;
using ZrTest::clickOk;

// Types `text` over the index tab's colour line.
void typeColor(QWidget* dialog, const QString& text)
{
    ColorTabTest::retype(ColorTest::dialogChild(dialog, "colorLineEdit"), text);
}

// Runs `action` on the popup menu once it is up; a menu runs its own event loop, like a dialog.
void whenPopupShown(std::function<void(QMenu*)> action)
{
    auto* timer = new QTimer(qApp);
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, action] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu || !menu->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        action(menu);
    });
    timer->start();
}

void sendEnter(QWidget* widget)
{
    QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(widget->mapToGlobal(QPoint(1, 1))));
    QApplication::sendEvent(widget, &enter);
}

void sendLeave(QWidget* widget)
{
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(widget, &leave);
}

QString themedImage(const char* name) { return zrutGetImageFullPath(QString::fromLatin1(name)); }

} // namespace

class TestColorButtons : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;

private Q_SLOTS:
    void init() { m_host.reset(new ZrTest::Host); }

    void cleanup()
    {
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QApplication::activePopupWidget());
        m_host.reset();
    }

    // The dialog opens on the colour shown, with ByLayer and ByBlock off; OK takes the choice and
    // tells of it once, while the setter never does.
    void moreButtonOpensTheDialogAndOkTakesTheChoice()
    {
        ZrColorButtonWidget widget;
        QSignalSpy changed(&widget, &ZrColorButtonWidget::colorChanged);
        widget.setColor(aci(5));
        QCOMPARE(changed.count(), 0);
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));

        QString shown;
        bool byBlockEnabled = true;
        ZrTest::whenModalShown([&](QWidget* dialog) {
            shown = dialog->findChild<QLineEdit*>(QStringLiteral("colorLineEdit"))->text();
            if (auto* byBlock = dialog->findChild<QPushButton*>(QStringLiteral("btnByBlock")))
                byBlockEnabled = byBlock->isEnabled();
            typeColor(dialog, QStringLiteral("30"));
            clickOk(dialog);
        });
        QTest::mouseClick(widget.innerButton(), Qt::LeftButton);
        QCOMPARE(shown, ZrColorLineEdit::getColorText(aci(5)));
        QVERIFY(!byBlockEnabled);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(widget.color(), aci(30));
        // The swatch follows: the middle of the widget, left of the "..." button, shows the new colour.
        COMPARE_COLOR(pixel(&widget, 10, widget.height() / 2), channelsOf(aci(30)));
    }

    void cancelEscAndCloseKeepTheColourAndStaySilent_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("cancel") << 0;
        QTest::newRow("Esc") << 1;
        QTest::newRow("close") << 2;
    }

    // A colour typed and then given up must not reach the widget.
    void cancelEscAndCloseKeepTheColourAndStaySilent()
    {
        QFETCH(int, way);
        ZrColorButtonWidget widget;
        widget.setColor(aci(3));
        QSignalSpy changed(&widget, &ZrColorButtonWidget::colorChanged);
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        ZrTest::whenModalShown([way](QWidget* dialog) {
            typeColor(dialog, QStringLiteral("40"));
            if (way == 0)
                QTest::mouseClick(ColorTest::dialogButton(dialog, QStringLiteral("取消")), Qt::LeftButton);
            else if (way == 1)
                QTest::keyClick(dialog, Qt::Key_Escape);
            else
                dialog->close();
        });
        QTest::mouseClick(widget.innerButton(), Qt::LeftButton);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(widget.color(), aci(3));
    }

    // A double click on the swatch opens the dialog too, but not with the right button: the right
    // double click comes first, so a dialog it opened would be the one the helper answers.
    void doubleClickOpensTheDialogExceptWithTheRightButton()
    {
        ZrColorButtonWidget widget;
        widget.setColor(aci(3));
        QSignalSpy changed(&widget, &ZrColorButtonWidget::colorChanged);
        widget.resize(120, 25);
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        int opened = 0;
        ZrTest::whenModalShown([&opened](QWidget* dialog) {
            ++opened;
            typeColor(dialog, QStringLiteral("50"));
            clickOk(dialog);
        });
        QTest::mouseDClick(&widget, Qt::RightButton, Qt::NoModifier, QPoint(10, 12));
        QCOMPARE(opened, 0);
        QCOMPARE(changed.count(), 0);
        QTest::mouseDClick(&widget, Qt::LeftButton, Qt::NoModifier, QPoint(10, 12));
        QCOMPARE(opened, 1);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(widget.color(), aci(50));
    }

    // Grey frame at rest, blue under the mouse, none when switched off; the swatch is the colour.
    void swatchFrameFollowsTheMouse()
    {
        ZrColorButtonWidget widget;
        widget.setColor(aci(1));
        const QColor red = channelsOf(aci(1));
        widget.resize(120, 40);
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        QCOMPARE(widget.height(), 25);
        const int y = widget.height() / 2;
        COMPARE_COLOR(pixel(&widget, 0, y), QColor(191, 191, 191));
        COMPARE_COLOR(pixel(&widget, 10, y), red);
        sendEnter(&widget);
        COMPARE_COLOR(pixel(&widget, 0, y), QColor(0, 120, 215));
        sendLeave(&widget);
        COMPARE_COLOR(pixel(&widget, 0, y), QColor(191, 191, 191));
        widget.setShowFrame(false);
        COMPARE_COLOR(pixel(&widget, 0, y), red);
    }

    // The border runs one pixel short of the right and bottom edges.
    void pixmapWithBorderLeavesTheLastRowAndColumnPlain()
    {
        ZrColorButtonWidget widget;
        const QColor colour(20, 160, 90);
        const QImage image = widget.getColorPixmapWithBorder(12, 10, colour).toImage();
        QCOMPARE(image.size(), QSize(12, 10));
        COMPARE_COLOR(image.pixelColor(6, 5), colour);
        COMPARE_COLOR(image.pixelColor(11, 5), colour);
        COMPARE_COLOR(image.pixelColor(6, 9), colour);
        QVERIFY(image.pixelColor(10, 5).green() < colour.green() - 20);
        QVERIFY(image.pixelColor(6, 8).green() < colour.green() - 20);
    }

    // Light at rest, the hover colour under the mouse, the highlight while the left button is down;
    // a click still reaches the caller.
    void hoverButtonFillFollowsMouseAndButton()
    {
        ZrTransparentHoverButton button{QIcon()};
        QCOMPARE(button.objectName(), QStringLiteral("ZrTransparentHoverButton"));
        QCOMPARE(button.focusPolicy(), Qt::NoFocus);
        const QColor hover(10, 200, 30);
        button.setHoverColor(hover);
        button.resize(24, 24);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        QSignalSpy clicked(&button, &QPushButton::clicked);

        COMPARE_COLOR(pixel(&button, 2, 2), button.palette().color(QPalette::Light));
        sendEnter(&button);
        COMPARE_COLOR(pixel(&button, 2, 2), hover);
        QTest::mousePress(&button, Qt::LeftButton, Qt::NoModifier, QPoint(12, 12));
        COMPARE_COLOR(pixel(&button, 2, 2), button.palette().color(QPalette::Highlight));
        QTest::mouseRelease(&button, Qt::LeftButton, Qt::NoModifier, QPoint(12, 12));
        COMPARE_COLOR(pixel(&button, 2, 2), hover);
        QCOMPARE(clicked.count(), 1);
        // A right press is not a press of the button.
        QTest::mousePress(&button, Qt::RightButton, Qt::NoModifier, QPoint(12, 12));
        COMPARE_COLOR(pixel(&button, 2, 2), hover);
        QTest::mouseRelease(&button, Qt::RightButton, Qt::NoModifier, QPoint(12, 12));
        sendLeave(&button);
        COMPARE_COLOR(pixel(&button, 2, 2), button.palette().color(QPalette::Light));
    }

    void menuButtonWithoutActionsIsAPlainButton()
    {
        ZrMenuPushButton button;
        button.resize(90, 24);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        QSignalSpy clicked(&button, &QPushButton::clicked);
        QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier, QPoint(80, 12));
        QCOMPARE(clicked.count(), 1);
        QVERIFY(!button.menu());
        QVERIFY(!button.actionMenu());
    }

    void menuButtonOpensTheActionListInItsRightThird_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<bool>("actionList");
        // 90 pixels wide: the right third starts at 60.
        QTest::newRow("left edge") << 1 << false;
        QTest::newRow("just left of the split") << 59 << false;
        QTest::newRow("at the split") << 60 << true;
        QTest::newRow("right edge") << 88 << true;
    }

    // The user picks the first entry of the menu that opens; the caller sees that entry triggered.
    void menuButtonOpensTheActionListInItsRightThird()
    {
        QFETCH(int, x);
        QFETCH(bool, actionList);
        QWidget window;
        auto* button = new ZrMenuPushButton(&window);
        button->setGeometry(0, 0, 90, 24);
        QAction listed(QStringLiteral("listed"));
        button->addMenu(&listed);
        QAction* main = button->mainMenu()->addAction(QStringLiteral("main"));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QSignalSpy listedTriggered(&listed, &QAction::triggered);
        QSignalSpy mainTriggered(main, &QAction::triggered);

        QMenu* opened = nullptr;
        whenPopupShown([&opened](QMenu* menu) {
            opened = menu;
            QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
        });
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(x, 12));
        QTRY_VERIFY(opened);
        QCOMPARE(opened, actionList ? button->actionMenu() : button->mainMenu());
        QTRY_COMPARE(listedTriggered.count() + mainTriggered.count(), 1);
        QCOMPARE(listedTriggered.count(), actionList ? 1 : 0);
    }

    // The images the panels name exist in both themes, are the same size in both, and differ, so
    // that each theme has its own.
    void statusImagesExistInBothThemes()
    {
        for (const char* name : {"colorsample/swap.svg", "colorsample/gradient_shifted.svg",
                                 "colorsample/gradient_centred.svg"}) {
            ZrHostControl::setTheme(1);
            const QString light = themedImage(name);
            ZrHostControl::setTheme(2);
            const QString dark = themedImage(name);
            QVERIFY2(light.contains(QLatin1String("/light/")), name);
            QVERIFY2(dark.contains(QLatin1String("/dark/")), name);
            const QImage lightImage(light);
            const QImage darkImage(dark);
            QVERIFY2(!lightImage.isNull() && !darkImage.isNull(), name);
            QCOMPARE(lightImage.size(), darkImage.size());
            QVERIFY2(lightImage != darkImage, name);
        }
    }

    // The icon and the size follow the status; a status without an image, or an image that is not
    // there, leaves both alone.
    void iconButtonFollowsItsStatusInEachTheme_data()
    {
        QTest::addColumn<int>("theme");
        QTest::newRow("light") << 1;
        QTest::newRow("dark") << 2;
    }

    void iconButtonFollowsItsStatusInEachTheme()
    {
        QFETCH(int, theme);
        ZrHostControl::setTheme(theme);
        const QString shifted = themedImage("colorsample/gradient_shifted.svg");
        const QString centred = themedImage("colorsample/gradient_centred.svg");
        QVERIFY(!shifted.isEmpty() && !centred.isEmpty());
        const QSize image = QImage(shifted).size();

        ZrIconPushButton button;
        button.setData(shifted + QLatin1Char('$') + centred + QLatin1String("$/no/such/image.svg"), false,
                       QStringLiteral("normal$centred$gone"), false);
        QCOMPARE(button.currentStatus(), QStringLiteral("normal"));
        QCOMPARE(button.size(), image + QSize(4, 4));
        QCOMPARE(button.iconSize(), image);
        const QImage atRest = button.icon().pixmap(image).toImage();
        QCOMPARE(atRest, QImage(shifted).convertToFormat(atRest.format()));

        button.updateBtnStatus(QStringLiteral("centred"));
        const QImage centredIcon = button.icon().pixmap(image).toImage();
        QCOMPARE(centredIcon, QImage(centred).convertToFormat(centredIcon.format()));

        button.updateBtnStatus(QStringLiteral("gone"));
        QCOMPARE(button.icon().pixmap(image).toImage(), centredIcon);
        button.updateBtnStatus(QStringLiteral("hover"));
        QCOMPARE(button.icon().pixmap(image).toImage(), centredIcon);
        QCOMPARE(button.size(), image + QSize(4, 4));

        ZrIconPushButton twoRows;
        twoRows.setData(shifted, true, QStringLiteral("normal"), false);
        QCOMPARE(twoRows.size(), QSize(image.width() + 4, 2 * (image.height() + 4)));
    }

    // The image alone says the state: held down, the button looks as it does at rest.
    void iconButtonNeverLooksPressed()
    {
        ZrIconPushButton button;
        button.setData(themedImage("colorsample/swap.svg"), false, QStringLiteral("normal"), false);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        const QImage atRest = button.grab().toImage();
        QTest::mousePress(&button, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
        QVERIFY(button.isDown());
        QCOMPARE(button.grab().toImage(), atRest);
        QTest::mouseRelease(&button, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    }

    // With one colour, the second is a shade of the first: white at scroll 99, black at -99, the
    // colour's own lightness in between.
    void oneColourGradientShadesToWhiteOrBlack_data()
    {
        QTest::addColumn<int>("scroll");
        QTest::addColumn<QColor>("end");
        QTest::newRow("99") << 99 << QColor(Qt::white);
        QTest::newRow("-99") << -99 << QColor(Qt::black);
        QTest::newRow("0") << 0 << QColor(255, 0, 0);
    }

    void oneColourGradientShadesToWhiteOrBlack()
    {
        QFETCH(int, scroll);
        QFETCH(QColor, end);
        ZrGradientColorPushButton button;
        button.resize(100, 40);
        button.setColor1(QColor(255, 0, 0));
        button.setColor2(QColor(0, 0, 255));
        button.setScroll(scroll);
        QVERIFY(!button.getDoubleColor());
        const QImage image = button.grab().toImage();
        COMPARE_COLOR(image.pixelColor(6, 20), QColor(255, 0, 0));
        COMPARE_COLOR(image.pixelColor(94, 20), end);
    }

    // Linear modes at their angles: where the first colour and the second lie along the button.
    void linearGradientsPutTheColoursWhereTheModeAndAngleSay_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("degree");
        QTest::addColumn<bool>("mid");
        QTest::addColumn<QPoint>("firstAt");
        QTest::addColumn<QPoint>("secondAt");
        // 120 by 60: the gradient runs over the 112 by 52 pixels inside the 4-pixel margin.
        QTest::newRow("1 at 0: left to right") << 1 << 0 << false << QPoint(6, 30) << QPoint(114, 30);
        QTest::newRow("1 at 90: bottom to top") << 1 << 90 << false << QPoint(60, 54) << QPoint(60, 4);
        QTest::newRow("1 at 180: right to left") << 1 << 180 << false << QPoint(113, 30) << QPoint(4, 30);
        // Centred, the first colour holds over the first 0.3 of the way.
        QTest::newRow("1 centred") << 1 << 0 << true << QPoint(35, 30) << QPoint(114, 30);
        QTest::newRow("2: second in the middle") << 2 << 0 << false << QPoint(4, 30) << QPoint(43, 30);
        QTest::newRow("2 centred") << 2 << 0 << true << QPoint(4, 30) << QPoint(60, 30);
        QTest::newRow("3: first in the middle") << 3 << 0 << false << QPoint(43, 30) << QPoint(4, 30);
    }

    void linearGradientsPutTheColoursWhereTheModeAndAngleSay()
    {
        QFETCH(int, mode);
        QFETCH(int, degree);
        QFETCH(bool, mid);
        QFETCH(QPoint, firstAt);
        QFETCH(QPoint, secondAt);
        ZrGradientColorPushButton button;
        button.resize(120, 60);
        button.setDoubleColor(true);
        button.setColor1(QColor(0, 0, 255));
        button.setColor2(QColor(255, 255, 0));
        button.setMode(mode);
        button.setDegree(degree);
        button.setMid(mid);
        const QImage image = button.grab().toImage();
        COMPARE_COLOR(image.pixelColor(firstAt), QColor(0, 0, 255));
        COMPARE_COLOR(image.pixelColor(secondAt), QColor(255, 255, 0));
    }

    // Centred radial modes: 4 to 6 have the second colour at the centre, 7 to 9 the first.
    void radialGradientsPutTheRightColourAtTheCentre()
    {
        for (const int mode : {4, 7}) {
            ZrGradientColorPushButton button;
            button.resize(80, 80);
            button.setDoubleColor(true);
            button.setMid(true);
            button.setColor1(QColor(0, 0, 255));
            button.setColor2(QColor(255, 255, 0));
            button.setMode(mode);
            const QImage image = button.grab().toImage();
            const QColor centre = mode == 4 ? QColor(255, 255, 0) : QColor(0, 0, 255);
            const QColor rim = mode == 4 ? QColor(0, 0, 255) : QColor(255, 255, 0);
            COMPARE_COLOR(image.pixelColor(40, 40), centre);
            // The corners lie on the radius, 0.5 × 72 × √2 from the centre.
            QVERIFY2(near(image.pixelColor(5, 5), rim, 40), qPrintable(describe(image.pixelColor(5, 5), rim)));
        }
    }

    // The chosen one among several is framed in blue on a pale fill round the gradient.
    void activeGradientIsFramed()
    {
        ZrGradientColorPushButton button;
        button.resize(80, 40);
        button.setDoubleColor(true);
        button.setColor1(QColor(255, 0, 0));
        button.setColor2(QColor(255, 0, 0));
        QVERIFY(pixel(&button, 3, 20) != QColor(229, 241, 251));
        button.setActive(true);
        const QImage image = button.grab().toImage();
        COMPARE_COLOR(image.pixelColor(0, 20), QColor(0, 120, 215));
        COMPARE_COLOR(image.pixelColor(3, 20), QColor(229, 241, 251));
        COMPARE_COLOR(image.pixelColor(40, 20), QColor(255, 0, 0));
    }
};

ZR_TEST_SUITE(TestColorButtons)
#include "tst_colorbuttons.moc"
