// The dialog frame: result codes, temporary exits, the modal count and the one-shot function.

#include "zrtesthost.h"
#include "zrtestmain.h"

#include "qt_utils.h"

#include "zrdocument.h"
#include "zrsystem.h"

#include <QGuiApplication>
#include <QPointer>
#include <QTest>
#include <memory>

namespace {

class ProbeDialog : public ZrQtModalDialogImpl<ProbeDialog, QDialog>
{
public:
    ProbeDialog(ZrQtUIModalDialogBase* base, QWidget* parent, Qt::WindowFlags flags)
        : ZrQtModalDialogImpl(base, parent, flags)
    {
    }

    bool exchangeData(bool) override { return true; }
};

using ProbeFrame = ZrQtModalDialog<ProbeDialog>;

ZrSmartPtr<ProbeFrame> makeFrame(const char* name = nullptr)
{
    ZrSmartPtr<ProbeFrame> frame(new ZrQtRxObjectImpl<ProbeFrame>(), kZrAttach);
    frame->onCreate(nullptr, Qt::WindowFlags(), name);
    frame->onInit(ElementValue::createObject(2), ZrRxObjectPtr());
    return frame;
}

CXuCommandObject* commandObject() { return CXuSystem::instance()->docContext()->commandObject(); }

} // namespace

class TestDialogFrame : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;

private Q_SLOTS:
    // The frame stands alone: no module, no service.
    void init() { m_host.reset(new ZrTest::Host(ZrTest::Host::Options{false, false})); }
    void cleanup()
    {
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(ZrQtUIModalDialogBase::getModalDlgCount(), 0);
        m_host.reset();
    }

    void endDialogCodeIsTheResult_data()
    {
        QTest::addColumn<int>("code");
        for (int code : {1, 2, 11})
            QTest::addRow("%d", code) << code;
    }

    void endDialogCodeIsTheResult()
    {
        QFETCH(int, code);
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        ZrTest::whenModalShown([&](QWidget*) { frame->endDialog(code); });
        QCOMPARE(frame->doModal(), code);
        QCOMPARE(frame->getResult()->GetVarI("result"), code);
    }

    void temporaryExitGivesEleven()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        frame->setTempExitFlag(true);
        ZrTest::whenModalShown([](QWidget* dialog) { static_cast<QDialog*>(dialog)->reject(); });
        QCOMPARE(frame->doModal(), 11);
        QVERIFY(frame->getTempExitFlag());
    }

    void editorCommandEndsWithOkOrCancel_data()
    {
        QTest::addColumn<int>("ending");
        QTest::addColumn<int>("result");
        QTest::newRow("complete without return") << 0 << 1;
        QTest::newRow("cancel") << 1 << 2;
    }

    void editorCommandEndsWithOkOrCancel()
    {
        QFETCH(int, ending);
        QFETCH(int, result);
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        int flagsDuringPick = 0;
        bool hiddenDuringPick = false;
        ZrTest::whenModalShown([&](QWidget*) {
            frame->setBeginEditorCommandFunc([&](void*) {
                flagsDuringPick = frame->flags();
                hiddenDuringPick = !frame->getWidget()->isVisible();
                if (ending == 0)
                    frame->completeEditorCommand(false);
                else
                    frame->cancelEditorCommand();
            }, nullptr);
            frame->beginEditorCommand();
        });
        QCOMPARE(frame->doModal(), result);
        QCOMPARE(flagsDuringPick & 1, 1);
        QVERIFY(hiddenDuringPick);
        QCOMPARE(frame->flags() & 1, 0);
    }

    // The document closes during a pick in the drawing: the window that held the dialog goes, and
    // the dialog with it. Whether the pick then asks to go back or cancels, the run ends as a
    // cancel and nothing touches the dead dialog (the sanitizers watch).
    void parentGoneDuringAPickEndsAsACancel_data()
    {
        QTest::addColumn<bool>("backToDialog");
        QTest::newRow("back to the dialog") << true;
        QTest::newRow("cancel") << false;
    }

    void parentGoneDuringAPickEndsAsACancel()
    {
        QFETCH(bool, backToDialog);
        auto* document = new QWidget;
        ZrSmartPtr<ProbeFrame> frame(new ZrQtRxObjectImpl<ProbeFrame>(), kZrAttach);
        QVERIFY(frame->onCreate(document, Qt::WindowFlags(), nullptr));
        QVERIFY(frame->onInit(ElementValue::createObject(2), ZrRxObjectPtr()));
        QPointer<QWidget> dialog = frame->getWidget();
        int picks = 0;
        ZrTest::whenModalShown([&](QWidget*) {
            frame->setBeginEditorCommandFunc([&](void*) {
                ++picks;
                delete document;
                if (backToDialog)
                    frame->completeEditorCommand(true);
                else
                    frame->cancelEditorCommand();
            }, nullptr);
            frame->beginEditorCommand();
        });
        QCOMPARE(frame->doModal(), 2);
        QCOMPARE(picks, 1);
        QVERIFY(!dialog);
        QVERIFY(!frame->getWidget());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void nestedDialogsTouchCommandStateOnlyAtTheOutermost()
    {
        ZrSmartPtr<ProbeFrame> outer = makeFrame();
        ZrSmartPtr<ProbeFrame> inner = makeFrame();
        int countInInner = 0;
        int callsAfterInner = -1;
        ZrTest::whenModalShown([&](QWidget* outerWidget) {
            ZrTest::whenModalShown([&](QWidget*) {
                countInInner = ZrQtUIModalDialogBase::getModalDlgCount();
                inner->onCancel();
            }, outerWidget);
            inner->doModal();
            callsAfterInner = ZrHostControl::commandStateCalls();
            outer->onCancel();
        });
        outer->doModal();
        QCOMPARE(countInInner, 2);
        QCOMPARE(callsAfterInner, 0);
        QCOMPARE(ZrHostControl::commandStateCalls(), 1);
        QCOMPARE(commandObject()->commandState(), false);
    }

};

ZR_TEST_SUITE(TestDialogFrame)
#include "tst_dialogframe.moc"
