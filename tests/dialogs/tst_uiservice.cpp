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

    void namesMatchInAnyCase_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("known");
        QTest::newRow("lower") << "messagebox" << true;
        QTest::newRow("empty") << "" << false;
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
