// The module's entry point and its UI service: loading, names, parents and the update command.

#include "zrtesthost.h"
#include "zrtestmain.h"

#include "qt_common_ui.h"
#include "qt_messagebox.h"
#include "zrglobaluireactor.h"

#include "zrarbitdict.h"
#include "zrui.h"

#include <QDialog>
#include <QTest>
#include <memory>

class TestUiService : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;

    static ZrEdCommandStack* commands()
    {
        return ZrEdCommandStack::cast(zrrxSysRegistry()->at(ACRX_COMMAND_DOCK));
    }

    static ZrQtCommonUISvr* service() { return ZrQtCommonUISvr::cast(zrUISvr(48).get()); }

private Q_SLOTS:
    void init() { m_host.reset(new ZrTest::Host); }

    void cleanup() { m_host.reset(); }

    void loadRegistersServiceAndCommand()
    {
        QVERIFY(service());
        // The dictionary holds the only reference: the temporary handle adds one.
        QCOMPARE(zrrxNumRefs(zrUISvr(48).get()), 2);
        QVERIFY(commands()->hasCommand(ZrString(L"GLOBAL_UI_UPDATEDB")));
        QCOMPARE(commands()->commandFlags(ZrString(L"GLOBAL_UI_UPDATEDB")), 12648470);
    }

    void unloadEmptiesSlotAndRemovesCommand()
    {
        zrrxEntryPoint(2);
        QVERIFY(zrUISvr(48).isNull());
        QVERIFY(!commands()->hasCommand(ZrString(L"GLOBAL_UI_UPDATEDB")));
        // Loading again works from the unloaded state, and uninitApp unloads the same way.
        zrrxEntryPoint(1);
        QVERIFY(service());
        uninitApp();
        QVERIFY(zrUISvr(48).isNull());
        QVERIFY(!commands()->hasCommand(ZrString(L"GLOBAL_UI_UPDATEDB")));
        initApp();
    }

    void otherMessagesDoNothing()
    {
        ZrRxObject* before = zrUISvr(48).get();
        QCOMPARE(zrrxEntryPoint(0), int64_t(0));
        QCOMPARE(zrrxEntryPoint(3), int64_t(0));
        QCOMPARE(zrUISvr(48).get(), before);
        QVERIFY(commands()->hasCommand(ZrString(L"GLOBAL_UI_UPDATEDB")));
    }

    void namesMatchInAnyCase_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("known");
        QTest::newRow("exact") << "MessageBox" << true;
        QTest::newRow("lower") << "messagebox" << true;
        QTest::newRow("upper") << "MESSAGEBOX" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("unknown") << "About" << false;
        QTest::newRow("prefix") << "Message" << false;
        QTest::newRow("longer") << "MessageBoxEx" << false;
    }

    void namesMatchInAnyCase()
    {
        QFETCH(QString, name);
        QFETCH(bool, known);
        ZrSmartPtr<ZrUiDialogBase> dialog = service()->createDialog(ZrString(name), nullptr);
        QCOMPARE(!dialog.isNull(), known);
        if (known) {
            // The caller's handle is the only reference, and the widget is a message box.
            QCOMPARE(zrrxNumRefs(dialog.get()), 1);
            QVERIFY(qobject_cast<ZrQtMessageBox*>(static_cast<QDialog*>(dialog->getDlg())));
        }
    }

    void messageBoxStacksOnOpenModalDialog()
    {
        QWidget target;
        ZrHostControl::setTargetWindow(&target);
        QDialog outer;
        QWidget* parentSeen = nullptr;
        ZrTest::whenModalShown([&](QWidget* modal) {
            ZrSmartPtr<ZrUiDialogBase> box = service()->createDialog(ZrString(L"MessageBox"), nullptr);
            parentSeen = static_cast<QWidget*>(box->getDlg())->parentWidget();
            modal->close();
        });
        outer.exec();
        QCOMPARE(parentSeen, &outer);
    }

    void givenParentIsKeptForMessageBox()
    {
        QWidget target;
        QWidget given;
        ZrHostControl::setTargetWindow(&target);
        QDialog outer;
        QWidget* parentSeen = nullptr;
        ZrTest::whenModalShown([&](QWidget* modal) {
            ZrSmartPtr<ZrUiDialogBase> box = service()->createDialog(ZrString(L"MessageBox"), &given);
            parentSeen = static_cast<QWidget*>(box->getDlg())->parentWidget();
            modal->close();
        });
        outer.exec();
        QCOMPARE(parentSeen, &given);
    }

    void messageBoxFallsBackToTargetWindow()
    {
        QWidget target;
        ZrHostControl::setTargetWindow(&target);
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QApplication::activeWindow());
        ZrSmartPtr<ZrUiDialogBase> box = service()->createDialog(ZrString(L"MessageBox"), nullptr);
        QCOMPARE(static_cast<QWidget*>(box->getDlg())->parentWidget(), &target);
    }

    void commandIgnoresUnknownKindAndEmptySlot()
    {
        SZrGlobalUIUpdateDbHelp order;
        order.property = static_cast<zrqthelper::Entity_Property>(10);
        service()->setUpdateDbHelpInfo(order);
        QVERIFY(commands()->runCommand(ZrString(L"GLOBAL_UI_UPDATEDB")));
        order.property = static_cast<zrqthelper::Entity_Property>(-1);
        service()->setUpdateDbHelpInfo(order);
        QVERIFY(commands()->runCommand(ZrString(L"GLOBAL_UI_UPDATEDB")));

        zr_arbitDict_clearservice(48);
        zrqthelper::zrmdGlobalUIUpdateDb();
        QVERIFY(zrUISvr(48).isNull());
        zrrxEntryPoint(1);
    }

    void queuedCommandRunsFromTheEventLoop()
    {
        QStringList ran;
        ZrHostControl::setCommandListener([&](const QString& command, bool known) {
            if (known)
                ran << command;
        });
        zredMenuMacro(L"GLOBAL_UI_UPDATEDB", false, true);
        QVERIFY(ran.isEmpty());
        QTRY_COMPARE(ran, QStringList{QStringLiteral("GLOBAL_UI_UPDATEDB")});
    }
};

ZR_TEST_SUITE(TestUiService)
#include "tst_uiservice.moc"
