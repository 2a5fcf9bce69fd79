// The small colour buttons as a user meets them: the swatch's "..." with the dialog behind it, menus, gradients.

#include "colordialogrunner.h"
#include "colortabactions.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include "ZrQtUtilsFunc.h"
#include "uicolorwidgets.h"
#include "zrcolorbutton.h"

#include <QAction>
#include <QApplication>
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

    void menuButtonOpensTheActionListInItsRightThird_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<bool>("actionList");
        // 90 pixels wide: the right third starts at 60.
        QTest::newRow("just left of the split") << 59 << false;
        QTest::newRow("at the split") << 60 << true;
    }

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
        // Centred, the first colour holds over the first 0.3 of the way.
        QTest::newRow("1 centred") << 1 << 0 << true << QPoint(35, 30) << QPoint(114, 30);
        QTest::newRow("2: second in the middle") << 2 << 0 << false << QPoint(4, 30) << QPoint(43, 30);
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
};

ZR_TEST_SUITE(TestColorButtons)
#include "tst_colorbuttons.moc"
