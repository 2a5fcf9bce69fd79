// zrui end to end: runs the real executable, which loads the module as a plug-in,
// and checks what a caller gets back.

#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"
#include "zrtestmain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString kMessageBoxParam =
    QStringLiteral(R"({"title":"T","msg":"M","flag":3,"contentFlag":1,"dlgtype":32})");

// Three commands; the check box, checked at first, holds the second back until it is cleared.
const QString kTaskDialogParam = QStringLiteral(
    R"({"title":"保存","msg":"图纸已存在。","contentFlag":13,"enableBtnId":[2],"checkboxChecked":true,)"
    R"("checkboxText":"保护现有图纸","selBtnText":[{"id":1,"caption":"另存为新图纸","extend":"保留原图纸"},)"
    R"({"id":2,"caption":"覆盖现有图纸","extend":"原图纸将被替换"},{"id":3,"caption":"不保存"}]})");

struct ZruiRun
{
    bool finished = false;
    int exitCode = -1;
    QByteArray out;
    QString err;

    // The one line a finished dialog prints.
    QJsonObject answerLine() const
    {
        const QList<QByteArray> lines = out.trimmed().split('\n');
        return lines.size() == 1 ? QJsonDocument::fromJson(lines.first()).object() : QJsonObject();
    }
};

} // namespace

class TstZrui : public QObject
{
    Q_OBJECT

private:
    ZruiRun runColourDialog(const char* param, const QString& steps)
    {
        return run({"dialog", "ColorDialog", "--param", param, "--do", steps, "--timeout-ms", "20000"});
    }

    ZruiRun run(const QStringList& args, const QString& program = QStringLiteral(ZR_ZRUI_FILE),
                const QHash<QString, QString>& extraEnv = {})
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (auto it = extraEnv.begin(); it != extraEnv.end(); ++it)
            env.insert(it.key(), it.value());
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        // Keeps the user configuration the host saves at exit out of the real home.
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_dir.filePath(QStringLiteral("config")));
        process.setProcessEnvironment(env);
        process.start(program, args);
        ZruiRun result;
        result.finished = process.waitForFinished(60000);
        if (!result.finished)
            process.kill();
        result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        result.out = process.readAllStandardOutput();
        result.err = QString::fromUtf8(process.readAllStandardError());
        return result;
    }

    QString tempPath(const QString& name) const { return m_dir.filePath(name); }

    QString hostAppFile() const
    {
        return QFileInfo(QStringLiteral(ZR_ZRUI_FILE)).dir().filePath(QStringLiteral("zrhostapp"));
    }

    QTemporaryDir m_dir;
    // The host's own sample, saved: a drawing file the host must read back.
    QString m_goodDrawing;
    // Broken on line 2.
    QString m_brokenDrawing;
    QString m_paramFile;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        ZrHostControl::Options options;
        options.configDir = tempPath(QStringLiteral("config"));
        options.resourceRoot = QStringLiteral(ZR_RESOURCE_ROOT);
        ZrHostControl::initialize(options);
        ZrHostControl::openSampleDrawing();
        m_goodDrawing = tempPath(QStringLiteral("sample.json"));
        QString error;
        const bool saved = ZrHostControl::saveDrawing(m_goodDrawing, &error);
        ZrHostControl::shutdown();
        QVERIFY2(saved, qPrintable(error));

        m_brokenDrawing = tempPath(QStringLiteral("broken-drawing.json"));
        QFile broken(m_brokenDrawing);
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("{\n  \"layers\": [,]\n}\n");

        m_paramFile = tempPath(QStringLiteral("param.json"));
        QFile param(m_paramFile);
        QVERIFY(param.open(QIODevice::WriteOnly));
        QVERIFY(param.write(kMessageBoxParam.toUtf8()) > 0);
    }

    // The parameters given inline or in a file, a good drawing opened first (it must not change the
    // answer), and a dialog nobody answers closed by the timeout.
    void messageBoxAnswersTheWayItWasClosed_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("result");
        QTest::addColumn<int>("controlButton");

        const QStringList box{"--param", kMessageBoxParam};
        const QString abortRetryIgnore =
            QStringLiteral(R"({"title":"T","msg":"M","flag":2,"contentFlag":1,"dlgtype":48})");
        QTest::newRow("mnemonic No") << box + QStringList{"--do", "key:Alt+N"} << 1 << 7;
        QTest::newRow("Esc") << box + QStringList{"--do", "key:Esc"} << 2 << 2;
        QTest::newRow("click Abort by its text") << QStringList{"--param", abortRetryIgnore, "--do", "click:终止(&T)"}
                                                 << 1 << 4;
        QTest::newRow("param file") << QStringList{"--param-file", m_paramFile, "--do", "key:Alt+N"} << 1 << 7;
        QTest::newRow("drawing opened first") << box + QStringList{"--drawing", m_goodDrawing, "--do", "key:Alt+N"}
                                              << 1 << 7;
        QTest::newRow("timeout") << box + QStringList{"--timeout-ms", "200"} << 2 << 2;
    }

    void messageBoxAnswersTheWayItWasClosed()
    {
        QFETCH(QStringList, args);
        QFETCH(int, result);
        QFETCH(int, controlButton);

        const ZruiRun r = run(QStringList{"dialog", "MessageBox"} + args);
        QVERIFY2(r.finished, "zrui did not end");
        QVERIFY2(r.exitCode == 0, qPrintable(r.err));
        const QJsonObject line = r.answerLine();
        QVERIFY2(!line.isEmpty(), r.out.constData());
        QCOMPARE(line.value("result").toInt(-99), result);
        QCOMPARE(line.value("param").toObject().value("ControlBtn").toInt(-99), controlButton);
        QCOMPARE(line.value("param").toObject().value("msg").toString(), QStringLiteral("M"));
        QCOMPARE(line.value("answer").toObject().value("result").toInt(-99), result);
    }

    // The painted tab bar: a tab chosen by its text, the plus, a step that finds no tab.
    void tabBarCommandPrintsTabsAndCurrent()
    {
        ZruiRun chosen = run({"tabbar", "开始", "Plan", "Section", "--start-page", "--do", "select:ZrTabBar=Plan"});
        QVERIFY(chosen.finished);
        QCOMPARE(chosen.exitCode, 0);
        QCOMPARE(chosen.answerLine().value(QStringLiteral("current")).toInt(), 1);
        QCOMPARE(chosen.answerLine().value(QStringLiteral("tabs")).toVariant().toStringList(),
                 (QStringList{"开始", "Plan", "Section", "+"}));

        ZruiRun added = run({"tabbar", "Plan", "--do", "select:ZrTabBar=+;select:ZrTabBar=+"});
        QCOMPARE(added.exitCode, 0);
        QCOMPARE(added.answerLine().value(QStringLiteral("tabs")).toVariant().toStringList(),
                 (QStringList{"Plan", "Drawing1", "Drawing2", "+"}));
        QCOMPARE(added.answerLine().value(QStringLiteral("current")).toInt(), 2);

        ZruiRun missing = run({"tabbar", "Plan", "--do", "select:ZrTabBar=Nothing"});
        QCOMPARE(missing.exitCode, 2);
        QVERIFY2(missing.err.contains(QStringLiteral("no item \"Nothing\"")), qPrintable(missing.err));
        QCOMPARE(run({"tabbar", "--width", "0"}).exitCode, 2);
    }

    // Command buttons are clicked by their caption. Before the check box is cleared the second one
    // takes no click: the run says so and the dialog answers nothing.
    void taskDialogCommandHeldBackByItsCheckBox()
    {
        ZruiRun r = run({"dialog", "TaskDialog", "--param", kTaskDialogParam, "--do", "click:覆盖现有图纸"});
        QCOMPARE(r.exitCode, 2);
        QVERIFY2(r.err.contains(QStringLiteral("step 1 \"click:覆盖现有图纸\": \"覆盖现有图纸\" is disabled")),
                 qPrintable(r.err));
        QVERIFY(r.out.isEmpty());

        r = run({"dialog", "TaskDialog", "--param", kTaskDialogParam, "--do", "click:保护现有图纸;click:覆盖现有图纸"});
        QVERIFY2(r.exitCode == 0, qPrintable(r.err));
        QCOMPARE(r.answerLine().value("result").toInt(), 1);
        const QJsonObject param = r.answerLine().value("param").toObject();
        QCOMPARE(param.value("ControlBtn").toInt(), 2);
        QCOMPARE(param.value("selectedCheck").toBool(true), false);
    }

    void failuresExitWithTheirCode_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("stderrPattern");

        const QStringList box{"dialog", "MessageBox", "--param", kMessageBoxParam};
        QTest::newRow("unknown dialog") << QStringList{"dialog", "About"} << 3 << "About";
        QTest::newRow("malformed JSON") << QStringList{"dialog", "MessageBox", "--param", "{"} << 2
                                        << "line \\d+, column \\d+";
        QTest::newRow("missing param file") << QStringList{"dialog", "MessageBox", "--param-file", "/nonexistent/p.json"}
                                            << 2 << "/nonexistent/p.json";
        QTest::newRow("unknown step") << box + QStringList{"--do", "key:Esc;frob:1"} << 2 << "step 2 \"frob:1\"";
        QTest::newRow("missing click target") << box + QStringList{"--do", "wait:10;click:NoSuchButton"} << 2
                                              << "step 2 \"click:NoSuchButton\"";
        QTest::newRow("escaped semicolon stays in the step") << box + QStringList{"--do", "click:a\\;b"} << 2
                                                             << "step 1 \"click:a;b\"";
        QTest::newRow("no command") << QStringList{} << 2 << "usage";
        QTest::newRow("bad theme") << box + QStringList{"--theme", "blue"} << 2 << "usage";
        QTest::newRow("missing drawing") << box + QStringList{"--drawing", "/nonexistent/d.json"} << 2
                                         << "/nonexistent/d.json";
        QTest::newRow("broken drawing") << QStringList{"list", "--drawing", m_brokenDrawing} << 2
                                        << "broken-drawing.json.*line 2";
    }

    void failuresExitWithTheirCode()
    {
        QFETCH(QStringList, args);
        QFETCH(int, exitCode);
        QFETCH(QString, stderrPattern);

        const ZruiRun r = run(args);
        QVERIFY2(r.finished, "zrui did not end");
        QCOMPARE(r.exitCode, exitCode);
        QVERIFY2(r.err.contains(QRegularExpression(stderrPattern)), qPrintable(r.err));
        QVERIFY2(r.out.isEmpty(), r.out.constData());
    }

    // The colour dialog's index grid is painted: only a click at a pixel reaches a colour. Its cells
    // are 17 pixels wide and hold the colours 1 to 9; the dialog starts on colour 3, so an answer of 3
    // would not tell a missed click.
    // A bad colour text is refused over the dialog; Esc closes the refusal, and the dialog is still
    // there for the next Esc.
    void pointStepsPickAPaintedColour_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("result");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("warned");

        QTest::newRow("click, then OK") << "clickat:ZrPaleteWnd_standard@25,8;click:确定" << 1 << 2 << "";
        QTest::newRow("click, then Cancel") << "clickat:ZrPaleteWnd_standard@25,8;click:取消" << 2 << 3 << "";
        QTest::newRow("bad colour text keeps the dialog open")
            << "focus:colorLineEdit;key:Ctrl+A;type:RGB:1,2;click:确定;key:Esc;key:Esc" << 2 << 3
            << "zrui: message box \"\": 不是有效的颜色名或值！";
    }

    void pointStepsPickAPaintedColour()
    {
        QFETCH(QString, steps);
        QFETCH(int, result);
        QFETCH(int, index);
        QFETCH(QString, warned);

        const ZruiRun r = runColourDialog(R"({"tabs":1,"method":195,"index":3})", steps);
        QVERIFY2(r.exitCode == 0, qPrintable(r.err));
        QVERIFY2(r.err.contains(warned), qPrintable(r.err));
        QCOMPARE(r.answerLine().value("result").toInt(-99), result);
        QCOMPARE(r.answerLine().value("param").toObject().value("index").toInt(-99), index);
    }

    // The lineweight settings through zrui: the unit switched, a weight and the display chosen, then
    // OK; the answers come back in the parameter object.
    void lineWeightDialogAnswersTheChoices()
    {
        const ZruiRun r = run({"dialog", "LineWeightDialog", "--timeout-ms", "20000", "--do",
                               "click:inchRadio;select:lweightList=0.020\";click:displayCheck;click:okButton"});
        QVERIFY2(r.exitCode == 0, qPrintable(r.err));
        QCOMPARE(r.answerLine().value("result").toInt(-99), 1);
        const QJsonObject param = r.answerLine().value("param").toObject();
        QCOMPARE(param.value("LWUNITS").toInt(-99), 0);
        QCOMPARE(param.value("CELWEIGHT").toInt(-99), 50);
        QCOMPARE(param.value("LWDISPLAY").toBool(false), true);
        QCOMPARE(param.value("LWDISPSCALE").toDouble(-99), 0.55);
    }

    // The file dialog's accept rules as a user meets them through zrui: typed names and Return,
    // and the overwrite question answered by its mnemonics.
    void fileDialogAcceptsTypedNames_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("box");
        QTest::newRow("invalid name") << "type:a|b;key:Return" << 2 << "" << R"(message box "": "a|b"\n文件名无效。)";
        QTest::newRow("plain name") << "type:plain;key:Return" << 1 << "plain.dwg" << "";
        // No leaves the file dialog on top: the next name typed is saved.
        QTest::newRow("keep the old file") << "type:old;key:Return;key:Alt+N;key:Ctrl+A;type:new;key:Return" << 1
                                           << "new.dwg"
                                           << R"(message box "确认另存为": old.dwg  已存在。\n要替换它吗？)";
        QTest::newRow("replace it") << "type:old;key:Return;key:Alt+Y" << 1 << "old.dwg"
                                    << R"(message box "确认另存为": old.dwg  已存在。\n要替换它吗？)";
    }
    void fileDialogAcceptsTypedNames()
    {
        QFETCH(QString, steps);
        QFETCH(int, result);
        QFETCH(QString, fileName);
        QFETCH(QString, box);
        const QString folder = tempPath(QStringLiteral("drawings"));
        QVERIFY(QDir().mkpath(folder));
        QFile old(folder + QStringLiteral("/old.dwg"));
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.close();
        const QString param = QStringLiteral(R"x({"Open":false,"dir":"%1","filter":"图纸 (*.dwg)","defFilter":"图纸 (*.dwg)"})x")
                                  .arg(folder);
        // A refused name leaves the dialog open; the timeout closes it as its close button would.
        const ZruiRun r = run({"dialog", "FileDialogBox", "--param", param, "--do", steps, "--timeout-ms", "3000"});
        QVERIFY2(r.finished && r.exitCode == 0, qPrintable(r.err));
        const QJsonObject answer = r.answerLine().value("answer").toObject();
        QCOMPARE(answer.value("result").toInt(), result);
        QCOMPARE(answer.value("fileName").toString(), fileName);
        if (result == 1)
            QCOMPARE(answer.value("filePath").toString(), folder + '/' + fileName);
        if (!box.isEmpty())
            QVERIFY2(r.err.contains(box), qPrintable(r.err));
        QCOMPARE(r.err.count(QStringLiteral("zrui: message box")), box.isEmpty() ? 0 : 1);
    }

    // The headless path scripts/run-host.sh takes. The tour clicks two entities on different layers
    // and fails unless the layer box blanks, so a zero exit covers the selection path as well.
    void hostAppTakesItsScreenshots()
    {
        if (!QFileInfo::exists(hostAppFile()))
            QSKIP("zrhostapp is not built");
        const QString dir = tempPath(QStringLiteral("host-shots"));
        const ZruiRun r = run({"--screenshot", dir, "--theme", "dark"}, hostAppFile());
        QVERIFY2(r.finished, "zrhostapp did not end");
        QVERIFY2(r.exitCode == 0, qPrintable(r.err));
        for (const char* name : {"main-window.png", "message-box.png", "color-dialog.png", "color-dialog-true.png",
                                 "color-dialog-book.png", "task-dialog.png", "export-panel.png",
                                 "file-dialog.png", "lineweight-dialog.png"}) {
            const QImage shot(QDir(dir).filePath(QLatin1String(name)));
            QVERIFY2(!shot.isNull(), name);
            QVERIFY2(r.out.contains(name), r.out.constData());
        }
        // The true colour opens another tab than the index colour does.
        QVERIFY(QImage(QDir(dir).filePath(QStringLiteral("color-dialog-true.png")))
                != QImage(QDir(dir).filePath(QStringLiteral("color-dialog.png"))));
        // The book colour opens another tab than the index colour does.
        QVERIFY(QImage(QDir(dir).filePath(QStringLiteral("color-dialog-book.png")))
                != QImage(QDir(dir).filePath(QStringLiteral("color-dialog.png"))));
        QVERIFY2(r.out.contains("\"result\": 2"), r.out.constData());
    }

};

ZR_TEST_SUITE(TstZrui)
#include "tst_zrui.moc"
