// The lineweight settings as a caller and a user meet them: the drawing's settings in, the user's
// choices, and the settings written back at OK and only then.

#include "controlstesthelpers.h"
#include "lineweighttesthelpers.h"
#include "zrtestinput.h"
#include "zrtestmain.h"

#include "zrlinewidthcombobox.h"
#include "zrpslineweightlist.h"

#include "zrhostappservices.h"
#include "zrresbuf.h"
#include "zrui.h"
#include "zruidialog.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <cwchar>
#include <memory>

using namespace ControlsTest;
using namespace LineWeightTest;

namespace {

// The host object, noting the order in which the dialog writes.
class RecordingServices : public CXuHostAppServices
{
public:
    int setSysVar(const wchar_t* name, const ZrResBuf* value) override
    {
        written << QString::fromWCharArray(name, static_cast<int>(wcslen(name)));
        return CXuHostAppServices::setSysVar(name, value);
    }
    QStringList written;
};

struct Settings
{
    double lwunits, celweight, lwdisplay, lwdefault, lwdispscale;
    bool operator==(const Settings& o) const
    {
        return lwunits == o.lwunits && celweight == o.celweight && lwdisplay == o.lwdisplay
            && lwdefault == o.lwdefault && lwdispscale == o.lwdispscale;
    }
};

Settings settings()
{
    return {variable(L"LWUNITS"), variable(L"CELWEIGHT"), variable(L"LWDISPLAY"), variable(L"LWDEFAULT"),
            variable(L"LWDISPSCALE")};
}

template <class Widget>
Widget* child(QWidget* dialog, const char* name)
{
    auto* widget = dialog->findChild<Widget*>(QLatin1String(name));
    if (!widget)
        qWarning("no %s", name);
    return widget;
}

} // namespace

class TestLineWeightDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host.reset(new Host); }
    void cleanup() { m_host.reset(); }

    void opensOnTheDrawingsSettings()
    {
        setVariable(L"CELWEIGHT", 30);
        setVariable(L"LWDISPLAY", 1);
        setVariable(L"LWDEFAULT", 35);
        setVariable(L"LWDISPSCALE", 0.3);
        const Settings before = settings();
        auto* host = new ZrRxObjectImpl<RecordingServices>();
        const ZrRxObjectPtr kept(host, kZrAttach);
        const int result = run(kept, [](QWidget* dialog) {
            QVERIFY(child<QRadioButton>(dialog, "millimetreRadio")->isChecked());
            QVERIFY(!child<QRadioButton>(dialog, "inchRadio")->isChecked());
            auto* list = child<ZrQtLweightListWidget>(dialog, "lweightList");
            QCOMPARE(list->currentItem()->text(), QStringLiteral("0.30 mm"));
            QCOMPARE(list->lineweightScale(), 0.3);
            QVERIFY(child<QCheckBox>(dialog, "displayCheck")->isChecked());
            QCOMPARE(child<QSlider>(dialog, "scaleSlider")->value(), 4);
            QCOMPARE(child<ZrLineWidthComboBox>(dialog, "defaultCombo")->currentText(), QStringLiteral("0.35 mm"));
            QCOMPARE(child<QLabel>(dialog, "currentLweightLabel")->text(), QStringLiteral("当前线宽: 0.30 mm\""));
            QCOMPARE(dialog->windowTitle(), QStringLiteral("线宽设置"));
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QCOMPARE(result, 2);
        QVERIFY(host->written.isEmpty());
        QVERIFY(settings() == before);
    }

    // Units switched, a row, the display, the slider and the default chosen, then OK: all five
    // settings in the order the host expects, and the same answers in the parameter object.
    void everyChoiceIsWrittenAtOk()
    {
        auto* host = new ZrRxObjectImpl<RecordingServices>();
        const ZrRxObjectPtr kept(host, kZrAttach);
        const ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
        const int result = run(kept, [](QWidget* dialog) {
            auto* list = child<ZrQtLweightListWidget>(dialog, "lweightList");
            auto* combo = child<ZrLineWidthComboBox>(dialog, "defaultCombo");
            QCOMPARE(list->currentItem()->text(), QStringLiteral("ByLayer"));
            QTest::mouseClick(child<QRadioButton>(dialog, "inchRadio"), Qt::LeftButton);
            // The list and the default box change unit at once, on the same weights.
            QCOMPARE(list->item(3)->text(), QStringLiteral("0.000\""));
            QCOMPARE(list->currentItem()->text(), QStringLiteral("ByLayer"));
            QCOMPARE(combo->currentText(), QStringLiteral("0.010\""));
            QVERIFY(ZrTest::clickListItem(list, QStringLiteral("0.020\"")));
            QCOMPARE(child<QLabel>(dialog, "currentLweightLabel")->text(), QStringLiteral("当前线宽: 0.020\"\""));
            ZrTest::clickCheckBox(child<QCheckBox>(dialog, "displayCheck"));
            auto* slider = child<QSlider>(dialog, "scaleSlider");
            slider->setFocus();
            QTest::keyClick(slider, Qt::Key_End);
            QCOMPARE(slider->value(), 18);
            pick(*combo, QStringLiteral("0.014\""));
            QTest::mouseClick(child<QPushButton>(dialog, "okButton"), Qt::LeftButton);
        }, param);
        QCOMPARE(result, 1);
        QCOMPARE(host->written, (QStringList{QStringLiteral("LWDISPLAY"), QStringLiteral("LWUNITS"),
                                             QStringLiteral("LWDEFAULT"), QStringLiteral("CELWEIGHT"),
                                             QStringLiteral("LWDISPSCALE")}));
        const Settings after = settings();
        QCOMPARE(after.lwunits, 0.0);
        QCOMPARE(after.celweight, 50.0);
        QCOMPARE(after.lwdisplay, 1.0);
        QCOMPARE(after.lwdefault, 35.0);
        QCOMPARE(after.lwdispscale, 1.0);
        QCOMPARE(param->GetVarI("LWUNITS", -9), 0);
        QCOMPARE(param->GetVarI("CELWEIGHT", -9), 50);
        QCOMPARE(param->GetVarI("LWDEFAULT", -9), 35);
        QCOMPARE(param->GetVarB("LWDISPLAY", false), true);
    }

    void leavingWritesNothing_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("Esc") << QStringLiteral("Esc");
        QTest::newRow("close button") << QStringLiteral("close");
        QTest::newRow("cancel") << QStringLiteral("cancel");
    }

    void leavingWritesNothing()
    {
        QFETCH(QString, how);
        const Settings before = settings();
        // A companion that is not the host's variable object: the dialog works on the drawing's.
        const ZrRxObjectPtr helper(new ZrRxObjectImpl<ZrUiHelper>(), kZrAttach);
        const ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
        const int result = run(helper, [how](QWidget* dialog) {
            QTest::mouseClick(child<QRadioButton>(dialog, "inchRadio"), Qt::LeftButton);
            QVERIFY(ZrTest::clickListItem(child<ZrQtLweightListWidget>(dialog, "lweightList"), QStringLiteral("0.083\"")));
            ZrTest::clickCheckBox(child<QCheckBox>(dialog, "displayCheck"));
            if (how == QLatin1String("Esc"))
                QTest::keyClick(dialog, Qt::Key_Escape);
            else if (how == QLatin1String("close"))
                dialog->close();
            else
                QTest::mouseClick(child<QPushButton>(dialog, "cancelButton"), Qt::LeftButton);
        }, param);
        QCOMPARE(result, 2);
        QVERIFY(settings() == before);
        QCOMPARE(param->size(), 0);
    }

private:
    int run(ZrRxObjectPtr helper, std::function<void(QWidget*)> user, ZrJsonPtr param = ZrJsonPtr())
    {
        if (!param)
            param = ElementValue::createObject(kZrJsonObject);
        ZrTest::whenModalShown([user](QWidget* dialog) {
            user(dialog);
            // A check that failed returned early: the dialog must not outlive the test.
            if (dialog->isVisible())
                dialog->close();
        });
        const ZrJsonPtr answer
            = zruiShowModelDialogEx(48, ZrString(L"LineWeightDialog"), param, std::move(helper), nullptr);
        return answer ? answer->GetVarI("result", -99) : -99;
    }

    std::unique_ptr<Host> m_host;
};

ZR_TEST_SUITE(TestLineWeightDialog)
#include "tst_lineweightdialog.moc"
