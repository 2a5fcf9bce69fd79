// The file dialog's rules on names, filters and extensions, case by case.

#include "zrtestmain.h"

#include "qt_filedialog_p.h"

#include <QTest>

using namespace ZrFileRules;

class TstAcceptRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invalidCharacters()
    {
        const QString forbidden = QStringLiteral("<>/\\\";:?*,=`|");
        QCOMPARE(forbidden.size(), 13);
        for (QChar c : forbidden)
            QVERIFY2(holdsInvalidChar(QStringLiteral("plan") + c + QStringLiteral("a.dwg")), qPrintable(QString(c)));
        // Characters a Windows name refuses but these rules let through, and names of other scripts.
        for (const QString& name : {QStringLiteral("a'b.dwg"), QStringLiteral("平面 图.dwg"), QStringLiteral("a$b&c"),
                                    QStringLiteral("a\nb"), QStringLiteral("[1]{2}(3)")})
            QVERIFY2(!holdsInvalidChar(name), qPrintable(name));
    }

    void filterPatterns_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<bool>("lastOpen");
        QTest::addColumn<QString>("patterns");
        QTest::newRow("plain") << "图纸 (*.dwg)" << false << "*.dwg";
        QTest::newRow("first open") << "A (b) (*.dwg)" << false << "b) (*.dwg";
        QTest::newRow("last open") << "A (b) (*.dwg)" << true << "*.dwg";
        QTest::newRow("no close: to the end") << "图纸 (*.dwg" << true << "*.dwg";
        QTest::newRow("close at index 1 keeps it whole") << "x) (*.dwg" << true << "x) (*.dwg";
    }
    void filterPatterns()
    {
        QFETCH(QString, filter);
        QFETCH(bool, lastOpen);
        QFETCH(QString, patterns);
        QCOMPARE(ZrFileRules::filterPatterns(filter, lastOpen), patterns);
    }

    void filterExtension_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("extension");
        QTest::newRow("one pattern") << "图纸 (*.dwg)" << "a.dxf" << ".dwg";
        QTest::newRow("no filter") << "" << "a.dwg" << "";
        QTest::newRow("catch-all without dot") << "所有文件 (*)" << "" << "*";
        QTest::newRow("name keeps one of several") << "图纸 (*.dwg *.dxf)" << "a.dxf" << ".dxf";
        QTest::newRow("name without extension") << "图纸 (*.dwg *.dxf)" << "a" << ".dwg";
        QTest::newRow("semicolon tail cut") << "图纸 (*.dwg;*.dws *.dxf)" << "" << ".dwg";
        QTest::newRow("last bracket counts") << "A (b) (*.pdf)" << "" << ".pdf";
    }
    void filterExtension()
    {
        QFETCH(QString, filter);
        QFETCH(QString, name);
        QFETCH(QString, extension);
        QCOMPARE(ZrFileRules::filterExtension(filter, name), extension);
    }

    void saveExtensionAndName_data()
    {
        QTest::addColumn<QString>("filterExt");
        QTest::addColumn<bool>("hasDef");
        QTest::addColumn<QString>("defFilter");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("saved");
        QTest::newRow("foreign extension kept") << ".dwg" << false << "" << "plan.txt" << "plan.txt.dwg";
        QTest::newRow("wildcard takes the default") << ".*" << true << "图纸 (*.dwg)" << "plan" << "plan.dwg";
        QTest::newRow("wildcard without default") << ".*" << false << "" << "plan" << "plan";
        QTest::newRow("catch-all adds nothing") << "*" << true << "图纸 (*.dwg)" << "plan" << "plan";
        QTest::newRow("default ignored for a real extension") << ".dxf" << true << "图纸 (*.dwg)" << "p" << "p.dxf";
    }
    void saveExtensionAndName()
    {
        QFETCH(QString, filterExt);
        QFETCH(bool, hasDef);
        QFETCH(QString, defFilter);
        QFETCH(QString, name);
        QFETCH(QString, saved);
        QCOMPARE(nameWithExtension(name, saveExtension(filterExt, hasDef, defFilter)), saved);
    }

    void shortName()
    {
        const QString hundred(100, QLatin1Char('n'));
        QCOMPARE(shortNameForMessage(QStringLiteral("/tmp/x/") + hundred), hundred);
        const QString longer = hundred + QStringLiteral("m");
        QCOMPARE(shortNameForMessage(QStringLiteral("/tmp/x/") + longer), QString(97, QLatin1Char('n')) + "...");
        QCOMPARE(shortNameForMessage(QStringLiteral("plain.dwg")), QStringLiteral("plain.dwg"));
    }

    void chosenFilter_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("nextRow");
        QTest::addColumn<bool>("hasDef");
        QTest::addColumn<QString>("defFilter");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("result");
        QTest::newRow("dwg to dxf") << "DXF (*.dxf)" << "" << false << "" << "plan.dwg" << "plan.dxf";
        QTest::newRow("next row lends its extension") << "其他" << "DXF (*.dxf)" << false << "" << "plan.dwg"
                                                      << "plan.dxf";
        QTest::newRow("no dot anywhere") << "其他" << "" << false << "" << "plan.dwg" << QString();
        QTest::newRow("all files takes the default") << "所有 (*.*)" << "" << true << "图纸 (*.dwt)" << "p.dwg"
                                                     << "p.dwt";
        QTest::newRow("jpeg pair keeps the name") << "JPEG (*.jpg *.jpeg)" << "" << false << "" << "p.png"
                                                  << QString();
    }
    void chosenFilter()
    {
        QFETCH(QString, filter);
        QFETCH(QString, nextRow);
        QFETCH(bool, hasDef);
        QFETCH(QString, defFilter);
        QFETCH(QString, name);
        QFETCH(QString, result);
        const QString got = nameForChosenFilter(filter, nextRow, hasDef, defFilter, name);
        QCOMPARE(got.isNull(), result.isNull());
        QCOMPARE(got, result);
    }

};

ZR_TEST_SUITE(TstAcceptRules)
#include "tst_acceptrules.moc"
