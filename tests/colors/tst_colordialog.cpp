// The colour dialog as a host module meets it: the parameter object before and after the user acts.

#include "zrtesthost.h"
#include "zrtestmain.h"

#include "colordialogrunner.h"

#include "qt_common_ui.h"
#include "uicolorindextab.h"
#include "uicolorwidgets.h"
#include "zrcolordialog.h"

#include "zrarbitdict.h"
#include "zrui.h"
#include "zruidialog.h"

#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <memory>

namespace {

using ColorTest::dialogButton;
using ColorTest::dialogChild;
using ColorTest::runColorDialog;
using Outcome = ColorTest::DialogOutcome;

ZrJsonPtr parseParam(const QString& json)
{
    ZrJsonPtr param = ElementValue::parse(ZrUtf8String(json));
    Q_ASSERT(param);
    return param;
}

QByteArray jsonOf(const ZrJsonPtr& param) { return QByteArray::fromStdString(param->toJson().std()); }

// The parameter most cases start from: index tab only, colour 3.
const QString kIndex3 = QStringLiteral(R"({"tabs":1,"method":195,"index":3})");

QLineEdit* colorLine(QWidget* dialog) { return dialogChild<QLineEdit>(dialog, "colorLineEdit"); }

// Cells are 12 pixels with a pitch of 14 on the two large grids, 17 with a pitch of 19 on the small
// ones; the first cell starts 2 pixels in. These are the centres of the cells named.
const QPoint kUpperRow0Col1(22, 8);    // index 28
const QPoint kUpperRow4Col0(8, 64);    // index 10
const QPoint kStandardCol4(86, 10);    // index 5

void clickCell(QWidget* dialog, const char* grid, QPoint centre)
{
    QTest::mouseClick(dialogChild(dialog, grid), Qt::LeftButton, Qt::NoModifier, centre);
}

// Replaces the line's text as a user does: focus, select all, type.
void typeColor(QWidget* dialog, const QString& text)
{
    QLineEdit* line = colorLine(dialog);
    line->setFocus(Qt::MouseFocusReason);
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Backspace);
    // Chinese comes through the input method, as it does for a user.
    for (const QChar ch : text) {
        if (ch.unicode() < 128) {
            QTest::keyClicks(line, QString(ch));
        } else {
            QInputMethodEvent commit;
            commit.setCommitString(QString(ch));
            QApplication::sendEvent(line, &commit);
        }
    }
}

int methodOf(const ZrJsonPtr& param) { return param->GetVarI("method", -1); }
int indexOf(const ZrJsonPtr& param) { return param->GetVarI("index", -1); }

// A companion that notes what the dialog tells it.
class NotedHelper : public ZrUiHelper
{
public:
    bool onNotify(ZrJsonPtr param) override
    {
        notes << (param ? param->GetVarI("index", -1) : -2);
        return true;
    }
    QList<int> notes;
};

} // namespace

class TestColorDialog : public QObject
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

    void clickOnCellThenOkWritesItsIndex()
    {
        ZrRxObjectPtr helper(new ZrRxObjectImpl<NotedHelper>(), kZrAttach);
        QString shown;
        const auto user = [&shown](ZrColorDialog* dialog) {
            clickCell(dialog, "ZrPaleteWnd_upper", kUpperRow0Col1);
            shown = colorLine(dialog)->text();
            QTest::mouseClick(dialogButton(dialog, QStringLiteral("确定")), Qt::LeftButton);
        };
        const Outcome out = runColorDialog(parseParam(kIndex3), user, helper);
        QCOMPARE(shown, QStringLiteral("28"));
        QCOMPARE(out.result, 1);
        QCOMPARE(methodOf(out.param), 195);
        QCOMPARE(indexOf(out.param), 28);
        QCOMPARE(static_cast<NotedHelper*>(helper.get())->notes, QList<int>{28});
    }

    void cancelEscAndCloseLeaveTheParameterAsItWas_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("cancel") << 0;
        QTest::newRow("Esc") << 1;
        QTest::newRow("close") << 2;
    }

    void cancelEscAndCloseLeaveTheParameterAsItWas()
    {
        QFETCH(int, way);
        const ZrJsonPtr param = parseParam(kIndex3);
        const QByteArray before = jsonOf(param);
        ZrRxObjectPtr helper(new ZrRxObjectImpl<NotedHelper>(), kZrAttach);
        const auto user = [way](ZrColorDialog* dialog) {
            clickCell(dialog, "ZrPaleteWnd_upper", kUpperRow4Col0);
            if (way == 0)
                QTest::mouseClick(dialogButton(dialog, QStringLiteral("取消")), Qt::LeftButton);
            else if (way == 1)
                QTest::keyClick(dialog, Qt::Key_Escape);
            else
                dialog->close();
        };
        const Outcome out = runColorDialog(param, user, helper);
        QVERIFY(!out.leftOpen);
        QCOMPARE(out.result, 2);
        QCOMPARE(jsonOf(out.param), before);
        QVERIFY(static_cast<NotedHelper*>(helper.get())->notes.isEmpty());
    }

    void typedColours_data()
    {
        QTest::addColumn<QString>("param");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("method");
        QTest::addColumn<int>("index");
        const QString buttonsOff =
            QStringLiteral(R"({"tabs":1,"method":195,"index":3,"isByLayerEnable":false,"isByBLockEnable":false})");
        QTest::newRow("RED") << kIndex3 << "RED" << 195 << 1;
        QTest::newRow("红") << kIndex3 << "红" << 195 << 1;
        QTest::newRow("255") << kIndex3 << "255" << 195 << 255;
        QTest::newRow("256 with ByLayer off") << buttonsOff << "256" << 192 << 256;
        QTest::newRow("0 with ByBlock off") << buttonsOff << "0" << 193 << 0;
        QTest::newRow("bylayer while enabled") << kIndex3 << "bylayer" << 192 << 256;
        QTest::newRow("BYBLOCK allowed")
            << QStringLiteral(R"({"tabs":1,"method":195,"index":3,"isByBLockEnable":true})") << "BYBLOCK" << 193 << 0;
    }

    void typedColours()
    {
        QFETCH(QString, param);
        QFETCH(QString, typed);
        QFETCH(int, method);
        QFETCH(int, index);
        // A refusal would be answered at once and fail the check of the log below, not hang the run.
        ZrHostControl::pushMessageBoxAnswer(1);
        const Outcome out = runColorDialog(param, [&typed](ZrColorDialog* dialog) {
            typeColor(dialog, typed);
            QTest::keyClick(colorLine(dialog), Qt::Key_Return);
        });
        QVERIFY(!out.leftOpen);
        QCOMPARE(out.result, 1);
        QCOMPARE(methodOf(out.param), method);
        QCOMPARE(indexOf(out.param), index);
        QVERIFY(ZrHostControl::messageLog().isEmpty());
    }

    void badTextKeepsTheDialogOpenWithTheMessage_data()
    {
        QTest::addColumn<QString>("param");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("lineAfter");
        QTest::addColumn<bool>("byDoubleClick");
        QTest::newRow("RGB:1,2") << kIndex3 << "RGB:1,2" << "RGB:1,2" << false;
        QTest::newRow("257") << kIndex3 << "257" << "257" << false;
        QTest::newRow("-1") << kIndex3 << "-1" << "-1" << false;
        QTest::newRow("empty") << kIndex3 << "" << "" << false;
        // Refused while its button is off; the line shows the colour again.
        QTest::newRow("BYLAYER, ByLayer off")
            << QStringLiteral(R"({"tabs":1,"method":195,"index":3,"isByLayerEnable":false})") << "BYLAYER" << "绿"
            << false;
        // The double click leaves the focus in the line, so the edit is not finished and the word is
        // not taken there; the tab then counts the missing key as off, although the button is on.
        QTest::newRow("BYBLOCK, key missing")
            << kIndex3 << "BYBLOCK" << "绿" << true;
    }

    void badTextKeepsTheDialogOpenWithTheMessage()
    {
        QFETCH(QString, param);
        QFETCH(QString, typed);
        QFETCH(QString, lineAfter);
        QFETCH(bool, byDoubleClick);
        ZrHostControl::pushMessageBoxAnswer(1);
        const ZrJsonPtr in = parseParam(param);
        const QByteArray before = jsonOf(in);
        QString line;
        const Outcome out = runColorDialog(in, [&](ZrColorDialog* dialog) {
            typeColor(dialog, typed);
            if (byDoubleClick)
                QTest::mouseDClick(dialogChild(dialog, "newColorLabel"), Qt::LeftButton);
            else
                QTest::mouseClick(dialogButton(dialog, QStringLiteral("确定")), Qt::LeftButton);
            line = colorLine(dialog)->text();
        });
        QVERIFY(out.leftOpen);
        QCOMPARE(out.result, 2);
        QCOMPARE(jsonOf(out.param), before);
        QCOMPARE(line, lineAfter);
        const auto log = ZrHostControl::messageLog();
        QCOMPARE(log.size(), 1);
        QCOMPARE(log.first().text, QStringLiteral("不是有效的颜色名或值！"));
    }

    void okWithoutChangeHandsBackTheSameColour_data()
    {
        QTest::addColumn<QString>("param");
        QTest::newRow("ByLayer") << R"({"method":192,"index":256})";
        QTest::newRow("ByBlock") << R"({"method":193,"index":0})";
        QTest::newRow("grey") << R"({"method":195,"index":254})";
        QTest::newRow("true colour") << R"({"method":194,"index":256,"rgb":197121})";
    }

    void okWithoutChangeHandsBackTheSameColour()
    {
        QFETCH(QString, param);
        ZrHostControl::pushMessageBoxAnswer(1);
        const ZrCmColor given = JsonToZrCmColor(parseParam(param));
        const Outcome out = runColorDialog(param, [](ZrColorDialog* dialog) {
            QTest::mouseClick(dialogButton(dialog, QStringLiteral("确定")), Qt::LeftButton);
        });
        QCOMPARE(out.result, 1);
        const ZrCmColor back = JsonToZrCmColor(out.param);
        QCOMPARE(int(back.colorMethod()), int(given.colorMethod()));
        QCOMPARE(back.colorIndex(), given.colorIndex());
        QCOMPARE(back.color(), given.color());
    }

    void doubleClickOnTheNewColourAccepts()
    {
        const Outcome out = runColorDialog(kIndex3, [](ZrColorDialog* dialog) {
            clickCell(dialog, "ZrPaleteWnd_standard", kStandardCol4);
            QTest::mouseDClick(dialogChild(dialog, "newColorLabel"), Qt::LeftButton);
        });
        QVERIFY(!out.leftOpen);
        QCOMPARE(out.result, 1);
        QCOMPARE(indexOf(out.param), 5);
    }

    void badTextStopsAClickOnAnotherTab_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("tabAfter");
        QTest::addColumn<int>("messages");
        QTest::newRow("bad text") << "RGB:1,2" << 0 << 1;
        QTest::newRow("good text") << "blue" << 1 << 0;
    }

    void badTextStopsAClickOnAnotherTab()
    {
        QFETCH(QString, typed);
        QFETCH(int, tabAfter);
        QFETCH(int, messages);
        ZrHostControl::pushMessageBoxAnswer(1);
        int tab = -1;
        QString lineBack;
        const Outcome out = runColorDialog(kIndex3, [&](ZrColorDialog* dialog) {
            ZrColorTabWidget* tabs = dialog->tabWidget();
            tabs->addTab(new QWidget, QStringLiteral("other"));
            typeColor(dialog, typed);
            QTabBar* bar = tabs->tabBar();
            QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(1).center());
            tab = tabs->currentIndex();
            // Back on the index tab, it shows what the other tab was left with.
            QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(0).center());
            lineBack = colorLine(dialog)->text();
        });
        QCOMPARE(tab, tabAfter);
        QCOMPARE(ZrHostControl::messageLog().size(), messages);
        QCOMPARE(lineBack, tabAfter == 1 ? QStringLiteral("蓝") : typed);
        QVERIFY(out.leftOpen);
    }
};

ZR_TEST_SUITE(TestColorDialog)
#include "tst_colordialog.moc"
