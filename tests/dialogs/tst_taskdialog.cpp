// The task dialog as a caller and a user meet it: keys in, command and standard buttons, the check
// box, Esc and the close button, keys out; and what it makes of sizes and lists it cannot hold.

#include "zrtestinput.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include "qt_common_ui.h"
#include "qt_taskdialog.h"
#include "zrsvglabel.h"

#include "zrarbitdict.h"
#include "zrui.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <memory>

namespace {

struct Outcome
{
    int result = -99;
    ZrJsonPtr param;

    int controlBtn() const { return param->GetVarI("ControlBtn", -1); }
};

ZrJsonPtr parseParam(const QByteArray& json)
{
    ZrJsonPtr param = ElementValue::parse(ZrUtf8String(json.constData()));
    Q_ASSERT(param);
    return param;
}

// Runs "TaskDialog" as a host module does and lets `user` act on it once it is up.
Outcome runTask(ZrJsonPtr param, std::function<void(QDialog*)> user)
{
    ZrTest::whenModalShown([user](QWidget* widget) {
        auto* dialog = static_cast<QDialog*>(widget);
        user(dialog);
        // Every user here ends the dialog. One still up is a fault (a click or key that did nothing),
        // and a check that failed half-way leaves it up too: the run must end either way.
        const auto checkClosed = [dialog] {
            QTRY_VERIFY2_WITH_TIMEOUT(!dialog->isVisible(), "the dialog is still open", 2000);
        };
        if (!QTest::currentTestFailed())
            checkClosed();
        if (dialog->isVisible())
            dialog->reject();
    });
    ZrJsonPtr result = zruiShowModelDialogEx(48, ZrString(L"TaskDialog"), param, ZrRxObjectPtr(), nullptr);
    return {result ? result->GetVarI("result", -99) : -99, param};
}

Outcome runTask(const QByteArray& json, std::function<void(QDialog*)> user) { return runTask(parseParam(json), user); }

// The standard buttons in their row, left to right.
QList<QPushButton*> standardButtons(QDialog* dialog)
{
    QList<QPushButton*> buttons;
    for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
        if (!qobject_cast<ZrQtTaskButton*>(button))
            buttons << button;
    }
    std::sort(buttons.begin(), buttons.end(), [](QPushButton* a, QPushButton* b) { return a->x() < b->x(); });
    return buttons;
}

QStringList texts(const QList<QPushButton*>& buttons)
{
    QStringList list;
    for (QPushButton* button : buttons)
        list << button->text();
    return list;
}

QList<ZrQtTaskButton*> commandButtons(QDialog* dialog)
{
    QList<ZrQtTaskButton*> buttons = dialog->findChildren<ZrQtTaskButton*>();
    std::sort(buttons.begin(), buttons.end(), [](QWidget* a, QWidget* b) { return a->y() < b->y(); });
    return buttons;
}

ZrQtTaskButton* commandWithId(QDialog* dialog, int id)
{
    for (ZrQtTaskButton* button : dialog->findChildren<ZrQtTaskButton*>()) {
        if (button->getCommandId() == id)
            return button;
    }
    return nullptr;
}

// Three commands with ids 1, 2 and 3 and a check box, as the acceptance runs them.
QByteArray threeCommands(const char* extra)
{
    return QByteArray(R"({"title":"保存","msg":"图纸已存在。","contentFlag":13,
        "selBtnText":[{"id":1,"caption":"另存为新图纸","extend":"保留原图纸"},
                      {"id":2,"caption":"覆盖现有图纸","extend":"原图纸将被替换"},
                      {"id":3,"caption":"放弃保存"}],
        "checkboxText":"保护现有图纸")")
        + extra + "}";
}

QString allLabelText(QDialog* dialog)
{
    QStringList list;
    for (QLabel* label : dialog->findChildren<QLabel*>())
        list << label->text();
    return list.join(QLatin1Char('|'));
}

} // namespace

class TestTaskDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;

private Q_SLOTS:
    void init() { m_host.reset(new ZrTest::Host); }

    void cleanup()
    {
        QVERIFY(!QApplication::activeModalWidget());
        m_host.reset();
    }

    void standardButtonsByBit_data()
    {
        QTest::addColumn<int>("flag");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<QList<int>>("ids");
        QTest::newRow("OK") << 1 << QStringList{"确定(&O)"} << QList<int>{1};
        QTest::newRow("Retry before Cancel") << 24 << QStringList{"重试(&R)", "取消(&C)"} << QList<int>{4, 2};
        QTest::newRow("Yes, No") << 6 << QStringList{"是(&Y)", "否(&N)"} << QList<int>{6, 7};
        QTest::newRow("all six") << 63 << QStringList{"确定(&O)", "是(&Y)", "否(&N)", "重试(&R)", "取消(&C)", "关闭(&C)"}
                                 << QList<int>{1, 6, 7, 4, 2, 8};
        QTest::newRow("64 is no bit of the table") << 65 << QStringList{"确定(&O)"} << QList<int>{1};
    }

    // Every button accepts the dialog; "ControlBtn" tells which it was.
    void standardButtonsByBit()
    {
        QFETCH(int, flag);
        QFETCH(QStringList, shown);
        QFETCH(QList<int>, ids);
        for (int i = 0; i < ids.size(); ++i) {
            QStringList seen;
            const Outcome out = runTask(QStringLiteral(R"({"msg":"M","contentFlag":3,"flag":%1})").arg(flag).toUtf8(),
                                        [&](QDialog* dialog) {
                                            seen = texts(standardButtons(dialog));
                                            QTest::mouseClick(standardButtons(dialog).value(i), Qt::LeftButton);
                                        });
            QCOMPARE(seen, shown);
            QCOMPARE(out.result, 1);
            QCOMPARE(out.controlBtn(), ids[i]);
        }
    }

    void escapeAndClose_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("controlBtn");
        QTest::newRow("only commands") << threeCommands(R"(,"contentFlag":4)") << 2;
        QTest::newRow("Yes and No") << QByteArray(R"({"contentFlag":2,"flag":6})") << 7;
        QTest::newRow("OK and Close") << QByteArray(R"({"contentFlag":2,"flag":33})") << 8;
        // A flag of no known bit builds an empty row: nothing is written over the initial 8.
        QTest::newRow("empty row") << QByteArray(R"({"contentFlag":2,"flag":128})") << 8;
        // A focus bit alone makes no OK, and "flag" 0 makes no row: Esc is then a cancel.
        QTest::newRow("no row") << QByteArray(R"({"msg":"M","contentFlag":3,"flag":0,"focusFlagBtnId":2})") << 2;
    }

    void escapeAndClose()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, controlBtn);
        // Esc where the focus is (a command button drops other keys), then the window's close button.
        Outcome out = runTask(json, [](QDialog* dialog) {
            QWidget* focus = dialog->focusWidget();
            QTest::keyClick(focus ? focus : dialog, Qt::Key_Escape);
        });
        QCOMPARE(out.result, 2);
        QCOMPARE(out.controlBtn(), controlBtn);
        out = runTask(json, [](QDialog* dialog) { dialog->close(); });
        QCOMPARE(out.result, 2);
        QCOMPARE(out.controlBtn(), controlBtn);
    }

    void commandButtonsAnswerTheirIds()
    {
        Outcome out = runTask(threeCommands(""), [](QDialog* dialog) {
            QCOMPARE(commandButtons(dialog).size(), 3);
            QTest::mouseClick(commandWithId(dialog, 3), Qt::LeftButton);
        });
        QCOMPARE(out.result, 1);
        QCOMPARE(out.controlBtn(), 3);

        // A click on the caption reaches the button under it.
        out = runTask(threeCommands(""), [](QDialog* dialog) {
            QLabel* caption = nullptr;
            for (QLabel* label : commandWithId(dialog, 1)->findChildren<QLabel*>()) {
                if (label->text() == QStringLiteral("另存为新图纸"))
                    caption = label;
            }
            QVERIFY(caption);
            QTest::mouseClick(caption, Qt::LeftButton);
        });
        QCOMPARE(out.controlBtn(), 1);
    }

    // The key's name notwithstanding, checking the box disables the listed commands.
    void checkBoxDisablesTheListedCommands()
    {
        const Outcome out = runTask(threeCommands(R"(,"enableBtnId":[2,"x",3])"), [](QDialog* dialog) {
            QCheckBox* check = dialog->findChild<QCheckBox*>();
            QVERIFY(!check->isChecked());
            QVERIFY(commandWithId(dialog, 2)->isEnabled());
            ZrTest::clickCheckBox(check);
            QVERIFY(commandWithId(dialog, 1)->isEnabled());
            QVERIFY(!commandWithId(dialog, 2)->isEnabled());
            QVERIFY(!commandWithId(dialog, 3)->isEnabled());
            // A click on a disabled command does nothing.
            QTest::mouseClick(commandWithId(dialog, 2), Qt::LeftButton);
            QVERIFY(dialog->isVisible());
            ZrTest::clickCheckBox(check);
            QTest::mouseClick(commandWithId(dialog, 2), Qt::LeftButton);
        });
        QCOMPARE(out.result, 1);
        QCOMPARE(out.controlBtn(), 2);
        QCOMPARE(out.param->GetVarB("selectedCheck", true), false);
    }

    // The flag bit of "focusFlagBtnId" names the button that has the focus and takes Return.
    void focusButtonTakesReturn()
    {
        const Outcome out = runTask(R"({"msg":"M","contentFlag":3,"flag":9,"focusFlagBtnId":8})", [](QDialog* dialog) {
            QCOMPARE(dialog->focusWidget(), static_cast<QWidget*>(standardButtons(dialog)[1]));
            QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
        });
        QCOMPARE(out.controlBtn(), 2);
    }

    void icons_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("icons");
        // Compared in full: 304 is not 48 here, as it would be in the message box.
        QTest::newRow("error") << QByteArray(R"({"dlgtype":80})") << 1;
        QTest::newRow("304") << QByteArray(R"({"dlgtype":304})") << 0;
        QTest::newRow("unknown code") << QByteArray(R"({"dlgtype":12345})") << 0;
        QTest::newRow("own icon") << QByteArray("{\"dlgtype\":7,\"mainicon\":\"" ZR_RESOURCE_ROOT "/ImageRes/zrapp/zrapp.svg\"}")
                                  << 1;
        QTest::newRow("own icon missing") << QByteArray(R"({"dlgtype":7,"mainicon":"/nonexistent/i.svg"})") << 0;
    }

    void icons()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, icons);
        runTask(json, [icons](QDialog* dialog) {
            QCOMPARE(dialog->findChildren<ZrSvgLabel*>().size(), icons);
            dialog->reject();
        });
    }

    void givenHeightNeverBelowTheSizeHint()
    {
        runTask(R"({"msg":"M","contentFlag":1,"dlgHeight":10})", [](QDialog* dialog) {
            QCOMPARE(dialog->minimumHeight(), dialog->maximumHeight());
            QVERIFY(dialog->height() > 10);
            QVERIFY(dialog->height() >= dialog->sizeHint().height());
            dialog->reject();
        });
        runTask(R"({"msg":"M","contentFlag":1,"dlgWidth":560,"dlgHeight":300})", [](QDialog* dialog) {
            QCOMPARE(dialog->size(), QSize(560, 300));
            dialog->reject();
        });
    }

    void sizesItCannotHold_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("0 x 0") << 0;
        QTest::newRow("100000 x 100000") << 100000;
    }

    // Neither a dialog that cuts its buttons off nor one larger than the screen.
    void sizesItCannotHold()
    {
        QFETCH(int, size);
        const Outcome out = runTask(threeCommands(QStringLiteral(R"(,"flag":9,"contentFlag":15,"dlgWidth":%1,"dlgHeight":%1)")
                                                      .arg(size)
                                                      .toUtf8()),
                                    [](QDialog* dialog) {
                                        const QSize screen = dialog->screen()->availableGeometry().size();
                                        QVERIFY(dialog->width() <= screen.width());
                                        QVERIFY(dialog->height() <= screen.height());
                                        QVERIFY(dialog->width() >= dialog->minimumSizeHint().width());
                                        // The commands are seen whole, not cut off at the right.
                                        ZrQtTaskButton* command = commandWithId(dialog, 3);
                                        QWidget* viewport = dialog->findChild<QScrollArea*>()->viewport();
                                        QVERIFY(command->width() >= 450);
                                        QVERIFY(command->mapTo(viewport, QPoint(command->width(), 0)).x()
                                                <= viewport->width());
                                        QTest::mouseClick(standardButtons(dialog)[1], Qt::LeftButton);
                                    });
        QCOMPARE(out.controlBtn(), 2);
    }

    void hundredCommandButtonsScroll()
    {
        QByteArray items;
        for (int i = 0; i < 100; ++i)
            items += QStringLiteral(R"(%1{"id":%2,"caption":"命令 %2","extend":"说明"})").arg(i ? "," : "").arg(i).toUtf8();
        const Outcome out = runTask("{\"contentFlag\":6,\"flag\":8,\"selBtnText\":[" + items + "]}", [](QDialog* dialog) {
            QCOMPARE(commandButtons(dialog).size(), 100);
            QVERIFY(dialog->height() <= dialog->screen()->availableGeometry().height());
            // The Cancel row stays in sight, and the last command can be scrolled to and clicked.
            QPushButton* cancel = standardButtons(dialog)[0];
            QVERIFY(dialog->rect().contains(QRect(cancel->mapTo(dialog, QPoint(0, 0)), cancel->size())));
            auto* area = dialog->findChild<QScrollArea*>();
            ZrQtTaskButton* last = commandWithId(dialog, 99);
            area->ensureWidgetVisible(last);
            QVERIFY(area->viewport()->rect().contains(last->mapTo(area->viewport(), last->rect().center())));
            QTest::mouseClick(last, Qt::LeftButton);
        });
        QCOMPARE(out.controlBtn(), 99);
    }

    void emptyCaptionsShowNothing()
    {
        const Outcome out = runTask(R"({"contentFlag":4,"selBtnText":[{"id":4,"caption":"","extend":"看不见"},{"id":5}]})",
                                    [](QDialog* dialog) {
                                        QVERIFY(!allLabelText(dialog).contains(QStringLiteral("看不见")));
                                        QTest::mouseClick(commandWithId(dialog, 5), Qt::LeftButton);
                                    });
        QCOMPARE(out.result, 1);
        QCOMPARE(out.controlBtn(), 5);
    }

};

ZR_TEST_SUITE(TestTaskDialog)
#include "tst_taskdialog.moc"
