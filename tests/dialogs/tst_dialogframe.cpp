// The dialog frame: result codes, temporary exits, the modal count and the one-shot function.

#include "zrtesthost.h"
#include "zrtestmain.h"

#include "qt_utils.h"

#include "zrdocument.h"
#include "zrsystem.h"

#include <QCursor>
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

    bool exchangeData(bool save) override
    {
        exchanges << save;
        return true;
    }

    QList<bool> exchanges;
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
        for (int code : {1, 2, 3, 4, 5, 6, 7, 11})
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

    void closeButtonGivesCancel()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        ZrTest::whenModalShown([](QWidget* dialog) { dialog->close(); });
        QCOMPARE(frame->doModal(), 2);
    }

    void plainAcceptGivesOk()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        ZrTest::whenModalShown([](QWidget* dialog) { static_cast<QDialog*>(dialog)->accept(); });
        QCOMPARE(frame->doModal(), 1);
    }

    void resultIsNotEndedWhileRunningAndCursorIsArrow()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
        int during = 0;
        int countDuring = 0;
        Qt::CursorShape shape = Qt::BlankCursor;
        ZrTest::whenModalShown([&](QWidget*) {
            during = frame->getResult()->GetVarI("result");
            countDuring = ZrQtUIModalDialogBase::getModalDlgCount();
            shape = QGuiApplication::overrideCursor()->shape();
            frame->onOk();
        });
        frame->doModal();
        QCOMPARE(during, -1);
        QCOMPARE(countDuring, 1);
        QCOMPARE(shape, Qt::ArrowCursor);
        // The dialog replaced the wait cursor and took its own arrow away again.
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void temporaryExitGivesEleven()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        frame->setTempExitFlag(true);
        ZrTest::whenModalShown([](QWidget* dialog) { static_cast<QDialog*>(dialog)->reject(); });
        QCOMPARE(frame->doModal(), 11);
        QVERIFY(frame->getTempExitFlag());
    }

    void temporaryExitAfterReturnIsACancel()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        int runs = 0;
        // Step aside for a pick; the pick returns to the dialog, which then leaves by a temporary exit.
        ZrTest::whenModalShown([&](QWidget*) {
            frame->setBeginEditorCommandFunc([&](void*) {
                ++runs;
                frame->completeEditorCommand(true);
                ZrTest::whenModalShown([&](QWidget* dialog) {
                    frame->setTempExitFlag(true);
                    static_cast<QDialog*>(dialog)->reject();
                });
            }, nullptr);
            frame->beginEditorCommand();
        });
        QCOMPARE(frame->doModal(), 2);
        QCOMPARE(runs, 1);
        QCOMPARE(frame->m_dlg->exchanges, (QList<bool>{true, false}));
        QCOMPARE(frame->flags() & 1, 0);
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

    void oneShotFunctionRunsOnceWithItsArgument()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        int first = 0;
        int second = 0;
        void* seen = nullptr;
        int marker = 0;
        frame->setBeginEditorCommandFunc([&](void*) { ++first; }, nullptr);
        frame->setBeginEditorCommandFunc([&](void* arg) {
            ++second;
            seen = *static_cast<void**>(arg);
        }, &marker);
        ZrTest::whenModalShown([&](QWidget*) { frame->onCancel(); });
        frame->doModal();
        QCOMPARE(first, 0);
        QCOMPARE(second, 1);
        QCOMPARE(seen, static_cast<void*>(&marker));

        ZrTest::whenModalShown([&](QWidget*) { frame->onCancel(); });
        frame->doModal();
        QCOMPARE(second, 1);
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

    void okLeavesCommandStateAlone()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        ZrTest::whenModalShown([&](QWidget*) { frame->onOk(); });
        frame->doModal();
        QCOMPARE(ZrHostControl::commandStateCalls(), 0);
    }

    void noDocumentSkipsCommandState()
    {
        CXuDocManager* documents = CXuSystem::instance()->docManager();
        documents->closeDocument(documents->curDocument());
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        ZrTest::whenModalShown([&](QWidget*) { frame->onCancel(); });
        QCOMPARE(frame->doModal(), 2);
    }

    void frameWithoutDialogRunsNothing()
    {
        ZrSmartPtr<ZrQtUIModalDialogBase> frame(new ZrQtRxObjectImpl<ZrQtUIModalDialogBase>(), kZrAttach);
        QCOMPARE(frame->doModal(), -1);
        auto* plain = new QWidget;
        frame->setWidget(plain);
        QCOMPARE(frame->doModal(), -1);
        QVERIFY(!plain->isVisible());
    }

    void secondCreateKeepsTheDialog()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame("first");
        ProbeDialog* dialog = frame->m_dlg;
        dialog->setModal(false);
        QVERIFY(frame->onCreate(nullptr, Qt::WindowFlags(), "second"));
        QCOMPARE(frame->m_dlg.data(), dialog);
        QCOMPARE(dialog->getUserConfigName(), ZrUtf8String("first"));
        QVERIFY(!dialog->isModal());
        QVERIFY(frame->freshAndActive(ZrJsonPtr()));
    }

    void invokerForwardsAndOutlivesTheDialog()
    {
        ZrSmartPtr<ProbeFrame> frame = makeFrame();
        ZrSmartPtr<ZrUiDialogInvoker> invoker = frame->m_dlg->getInvoker();
        QCOMPARE(frame->m_dlg->getInvoker().get(), invoker.get());
        QCOMPARE(invoker->getModalDialogBase(), static_cast<ZrUiModalDialogBase*>(frame.get()));
        frame->setFlags(8);
        QCOMPARE(invoker->flags(), 8);
        QVERIFY(invoker->exchangeData(true));
        QCOMPARE(frame->m_dlg->exchanges, QList<bool>{true});

        ZrTest::whenModalShown([&](QWidget*) { invoker->endDialog(6); });
        QCOMPARE(frame->doModal(), 6);

        frame.release();
        QVERIFY(!invoker->getModalDialogBase());
        invoker->endDialog(1);
    }

    void paramsAreSharedWithTheCaller()
    {
        ZrJsonPtr param = ElementValue::createObject(2);
        ZrSmartPtr<ProbeFrame> frame(new ZrQtRxObjectImpl<ProbeFrame>(), kZrAttach);
        frame->onCreate(nullptr, Qt::WindowFlags(), nullptr);
        QVERIFY(frame->onInit(param, ZrRxObjectPtr()));
        frame->m_dlg->m_param->SetDataI("answer", 42);
        QCOMPARE(param->GetVarI("answer"), 42);
        QVERIFY(frame->getParam().sameValue(param));
    }
};

ZR_TEST_SUITE(TestDialogFrame)
#include "tst_dialogframe.moc"
