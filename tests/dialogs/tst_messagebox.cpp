// The message box as a caller and a user meet it: keys in, buttons, keys and clicks, keys out.

#include "zrtestinput.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include "qt_common_ui.h"
#include "qt_messagebox.h"
#include "zrsvglabel.h"

#include "zrarbitdict.h"
#include "zrui.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <memory>

namespace {

struct Outcome
{
    int result = -99;
    ZrJsonPtr param;
};

ZrJsonPtr parseParam(const char* json)
{
    ZrJsonPtr param = ElementValue::parse(ZrUtf8String(json));
    Q_ASSERT(param);
    return param;
}

// Runs "MessageBox" as a host module does and lets `user` act on the box once it is up.
Outcome runBox(ZrJsonPtr param, std::function<void(QDialog*)> user)
{
    ZrTest::whenModalShown([user](QWidget* box) { user(static_cast<QDialog*>(box)); });
    ZrJsonPtr result = zruiShowModelDialogEx(48, ZrString(L"MessageBox"), param, ZrRxObjectPtr(), nullptr);
    return {result ? result->GetVarI("result", -99) : -99, param};
}

Outcome runBox(const char* json, std::function<void(QDialog*)> user) { return runBox(parseParam(json), user); }

QList<QPushButton*> pushButtons(QDialog* box)
{
    QList<QPushButton*> buttons = box->findChildren<QPushButton*>();
    std::sort(buttons.begin(), buttons.end(), [](QPushButton* a, QPushButton* b) { return a->x() < b->x(); });
    return buttons;
}

QPushButton* buttonWithText(QDialog* box, const QString& text)
{
    for (QPushButton* button : box->findChildren<QPushButton*>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

// A run of characters whose width in `metrics` is exactly `width`, or empty when none is found.
// Widths are measured, not added up, so kerning cannot fool the search.
QString textOfWidth(const QFontMetrics& metrics, int width)
{
    QString base;
    while (metrics.horizontalAdvance(base + QLatin1Char('n')) < width - 24)
        base += QLatin1Char('n');
    for (int trim = 0; trim < 4 && !base.isEmpty(); ++trim, base.chop(1)) {
        for (char a = 33; a < 127; ++a) {
            for (char b = 33; b < 127; ++b) {
                const QString text = base + QLatin1Char(a) + QLatin1Char(b);
                if (metrics.horizontalAdvance(text) == width)
                    return text;
            }
        }
    }
    return QString();
}

} // namespace

class TestMessageBox : public QObject
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

    void buttonSets_data()
    {
        QTest::addColumn<int>("flag");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QList<int>>("ids");
        QTest::newRow("0") << 0 << QStringList{"确定(&O)"} << QList<int>{0};
        QTest::newRow("1") << 1 << QStringList{"确定(&O)", "取消(&C)"} << QList<int>{1, 2};
        QTest::newRow("2 crossed") << 2 << QStringList{"终止(&T)", "重试(&R)", "忽略(&I)"} << QList<int>{4, 3, 5};
        QTest::newRow("3") << 3 << QStringList{"是(&Y)", "否(&N)", "取消(&C)"} << QList<int>{6, 7, 2};
        QTest::newRow("5") << 5 << QStringList{"重试(&R)", "取消(&C)"} << QList<int>{4, 2};
    }

    // Every button accepts the box, so "result" is 1 even for Cancel; "ControlBtn" tells them apart.
    void buttonSets()
    {
        QFETCH(int, flag);
        QFETCH(QStringList, texts);
        QFETCH(QList<int>, ids);
        for (int i = 0; i < texts.size(); ++i) {
            const ZrUtf8String json(QStringLiteral("{\"flag\":%1,\"contentFlag\":1,\"msg\":\"M\"}").arg(flag));
            QStringList shown;
            Outcome out = runBox(json.c_str(), [&](QDialog* box) {
                for (QPushButton* b : pushButtons(box))
                    shown << b->text();
                QTest::mouseClick(buttonWithText(box, texts[i]), Qt::LeftButton);
            });
            QCOMPARE(shown, texts);
            QCOMPARE(out.result, 1);
            QCOMPARE(out.param->GetVarI("ControlBtn", -1), ids[i]);
        }
    }

    void escapeReportsTheLastButton_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("controlBtn");
        QTest::newRow("0") << QByteArray(R"({"flag":0})") << 0;
        QTest::newRow("1") << QByteArray(R"({"flag":1})") << 2;
        QTest::newRow("2") << QByteArray(R"({"flag":2})") << 5;
        QTest::newRow("4") << QByteArray(R"({"flag":4})") << 7;
        QTest::newRow("6 custom") << QByteArray(R"({"flag":6,"btnText":["甲","乙","丙"]})") << 2;
        QTest::newRow("6 empty") << QByteArray(R"({"flag":6,"btnText":[]})") << 0;
        QTest::newRow("unknown flag") << QByteArray(R"({"flag":7})") << -1;
        QTest::newRow("selectors only") << QByteArray(R"({"flag":3,"contentFlag":4})") << -1;
    }

    void escapeReportsTheLastButton()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, controlBtn);
        Outcome out = runBox(json.constData(), [](QDialog* box) { QTest::keyClick(box, Qt::Key_Escape); });
        QCOMPARE(out.result, 2);
        QCOMPARE(out.param->GetVarI("ControlBtn", -1), controlBtn);
    }

    void closeButtonIsAReject()
    {
        Outcome out = runBox(R"({"flag":4})", [](QDialog* box) { box->close(); });
        QCOMPARE(out.result, 2);
        QCOMPARE(out.param->GetVarI("ControlBtn", -1), 7);
    }

    void shortcuts_data()
    {
        QTest::addColumn<int>("flag");
        QTest::addColumn<QKeySequence>("keys");
        QTest::addColumn<int>("controlBtn");
        QTest::newRow("Alt+Y") << 3 << QKeySequence(Qt::ALT | Qt::Key_Y) << 6;
        QTest::newRow("Alt+N") << 3 << QKeySequence(Qt::ALT | Qt::Key_N) << 7;
        QTest::newRow("crossed Alt+R is abort") << 2 << QKeySequence(Qt::ALT | Qt::Key_R) << 4;
        QTest::newRow("crossed T is retry") << 2 << QKeySequence(Qt::Key_T) << 3;
        QTest::newRow("I") << 2 << QKeySequence(Qt::Key_I) << 5;
    }

    void shortcuts()
    {
        QFETCH(int, flag);
        QFETCH(QKeySequence, keys);
        QFETCH(int, controlBtn);
        const ZrUtf8String json(QStringLiteral("{\"flag\":%1}").arg(flag));
        Outcome out = runBox(json.c_str(), [keys](QDialog* box) { QTest::keySequence(box, keys); });
        QCOMPARE(out.result, 1);
        QCOMPARE(out.param->GetVarI("ControlBtn", -1), controlBtn);
    }

    void iconsByType_data()
    {
        QTest::addColumn<int>("dlgtype");
        QTest::addColumn<bool>("icon");
        QTest::newRow("question") << 32 << true;
        QTest::newRow("error") << 80 << true;
        QTest::newRow("none") << 0 << false;
        QTest::newRow("other") << 16 << false;
    }

    void iconsByType()
    {
        QFETCH(int, dlgtype);
        QFETCH(bool, icon);
        for (int theme : {1, 2}) {
            ZrHostControl::setTheme(theme);
            const ZrUtf8String json(QStringLiteral("{\"msg\":\"m\",\"contentFlag\":1,\"dlgtype\":%1}").arg(dlgtype));
            runBox(json.c_str(), [icon](QDialog* box) {
                QCOMPARE(box->findChildren<ZrSvgLabel*>().size(), icon ? 1 : 0);
                box->reject();
            });
        }
    }

    void longMessagesWrapAt351Pixels()
    {
        const QFontMetrics metrics(QLabel().fontMetrics());
        const QString fits = textOfWidth(metrics, 350);
        const QString wraps = textOfWidth(metrics, 351);
        if (fits.isEmpty() || wraps.isEmpty())
            QSKIP("no run of letters of exactly 350 and 351 pixels in this font");

        auto labelText = [](const QString& msg) {
            ZrJsonPtr param = ElementValue::createObject(2);
            param->SetDataI("contentFlag", 1);
            param->SetDataSW("msg", ZrString(msg));
            QString text;
            runBox(param, [&text](QDialog* box) {
                text = box->findChildren<QLabel*>()[0]->text();
                box->reject();
            });
            return text;
        };
        QCOMPARE(labelText(fits), fits);
        const QString wrapped = labelText(wraps);
        QVERIFY(wrapped.contains(QLatin1Char('\n')));
        QCOMPARE(QString(wrapped).remove(QLatin1Char('\n')), wraps);
        for (const QString& line : wrapped.split(QLatin1Char('\n')))
            QVERIFY(metrics.horizontalAdvance(line) <= 350 + metrics.maxWidth());

        const QString withBreak = wraps + QLatin1Char('\n') + wraps + wraps;
        QCOMPARE(labelText(withBreak), withBreak);
    }

    void selectorsAndChecks()
    {
        Outcome out = runBox(R"({"contentFlag":12,"selBtnText":["一","二"],"selCheckText":["a","b","c"]})",
                             [](QDialog* box) {
                                 QList<QCheckBox*> checks = box->findChildren<QCheckBox*>();
                                 QCOMPARE(checks.size(), 3);
                                 ZrTest::clickCheckBox(checks[1]);
                                 ZrTest::clickCheckBox(checks[2]);
                                 ZrTest::clickCheckBox(checks[2]);
                                 // No control row: the selectors are the only buttons.
                                 QCOMPARE(pushButtons(box).size(), 2);
                                 QTest::mouseClick(buttonWithText(box, QStringLiteral("二")), Qt::LeftButton);
                             });
        QCOMPARE(out.result, 1);
        QCOMPARE(out.param->GetVarI("selectedBtn", -1), 1);
        QCOMPARE(out.param->GetVarI("selectedCheck", -1), 2);
        QVERIFY(!out.param->hasProperty("ControlBtn"));
    }

    void untouchedChecksWriteNothing()
    {
        Outcome out = runBox(R"({"contentFlag":8,"selCheckText":["a"]})", [](QDialog* box) { box->reject(); });
        QVERIFY(!out.param->hasProperty("selectedCheck"));
    }

    void hostMessageBoxFunctions()
    {
        ZrJsonPtr answer;
        ZrTest::whenModalShown([](QWidget* box) { QTest::keyClick(box, Qt::Key_N, Qt::AltModifier); });
        answer = zruiMessageBoxEx(ZrString(L"标题"), ZrString(L"正文"), ZrJsonPtr(), 3, 1, 32, nullptr);
        QCOMPARE(answer->GetVarI("ControlBtn", -1), 7);
        QCOMPARE(answer->GetVarI("result"), 1);
        QCOMPARE(answer->GetVarSW("title").toQString(), QStringLiteral("标题"));

        // A custom button set in advance survives the keys the host adds.
        ZrJsonPtr param = ElementValue::createObject(2);
        param->SetDataSW("btnText/0", ZrString(L"知道了"));
        ZrTest::whenModalShown([](QWidget* box) {
            QTest::mouseClick(pushButtons(static_cast<QDialog*>(box))[0], Qt::LeftButton);
        });
        answer = zruiMessageBoxEx(ZrString(L"t"), ZrString(L"m"), param, 6, 1, 0, nullptr);
        QVERIFY(answer.sameValue(param));
        QCOMPARE(param->GetVarI("ControlBtn", -1), 0);

        ZrTest::whenModalShown([](QWidget* box) { QTest::keyClick(box, Qt::Key_Y); });
        QCOMPARE(ZrUiMessageBox(ZrString(L"c"), ZrString(L"t"), 4 | 32, nullptr), 6);
        ZrTest::whenModalShown([](QWidget* box) { QTest::keyClick(box, Qt::Key_Escape); });
        QCOMPARE(ZrUiMessageBox(ZrString(L"c"), ZrString(L"t"), 1, nullptr), 2);
    }

};

ZR_TEST_SUITE(TestMessageBox)
#include "tst_messagebox.moc"
