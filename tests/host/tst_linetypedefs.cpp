// Line type definitions read from files: the host's shipped set, the refusals of files it cannot
// hold, and loading a definition into a drawing.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrarbitdict.h"
#include "zrlinetypedefs.h"

#include <QTest>

class ZrLinetypeDefsTest : public HostFixture
{
    Q_OBJECT

    static QStringList names(const std::vector<ZrLinetypeDefinition>& definitions)
    {
        QStringList out;
        for (const ZrLinetypeDefinition& definition : definitions)
            out << definition.name.toQString();
        return out;
    }

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void readsDefinitions()
    {
        std::vector<ZrLinetypeDefinition> definitions;
        QString error;
        const QByteArray text = "; ours\r\n\r\n*DASHED, Dashed __ __\r\nA, 12, -6\r\n*DOTTY,\nA,0,-2.5\n"
                                "*SOLID\nA\n*dashed,a second one\nA,1,-1\n*TWELVE,most\nA,1,-1,1,-1,1,-1,1,-1,1,-1,0,-1\n";
        QVERIFY2(zrdbParseLinetypeDefinitions(text, definitions, error), qPrintable(error));
        QCOMPARE(names(definitions), (QStringList{"DASHED", "DOTTY", "SOLID", "TWELVE"}));
        QCOMPARE(definitions[0].comments.toQString(), QStringLiteral("Dashed __ __"));
        QCOMPARE(definitions[0].dashes, (std::vector<double>{12.0, -6.0}));
        QCOMPARE(definitions[1].dashes, (std::vector<double>{0.0, -2.5}));
        QVERIFY(definitions[2].dashes.empty());
        QCOMPARE(definitions[3].dashes.size(), size_t(12));
    }

    void refusesWhatItCannotHold_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("error");
        QTest::newRow("thirteen dashes") << QByteArray("*OK\nA,1\n*MANY\nA,1,-1,1,-1,1,-1,1,-1,1,-1,1,-1,1\n")
                                         << "line 4: more than 12 dashes";
        QTest::newRow("a dash of 1e12") << QByteArray("*HUGE\nA,1e12,-1\n") << "line 2: a dash of 1e+12 is longer than 1e+06";
        QTest::newRow("not a number") << QByteArray("*X\nA,1,one\n") << "line 2: \"one\" is not a length";
        QTest::newRow("nan") << QByteArray("*X\nA,nan\n") << "line 2: \"nan\" is not a length";
        QTest::newRow("no pattern") << QByteArray("\n*X,a\n*Y\nA,1\n") << "line 2: the definition has no pattern line";
        QTest::newRow("no pattern at the end") << QByteArray("*X\nA,1\n*Y\n") << "line 3: the definition has no pattern line";
        QTest::newRow("pattern alone") << QByteArray("A,1,-1\n") << "line 1: a pattern line without a \"*NAME\" line before it";
        QTest::newRow("not aligned") << QByteArray("*X\nB,1\n") << "line 2: a pattern line starts with \"A\"";
        QTest::newRow("bad name") << QByteArray("*A|B\nA,1\n") << "line 1: \"A|B\" is not a line type name";
        QTest::newRow("empty name") << QByteArray("*,x\nA,1\n") << "line 1: \"\" is not a line type name";
    }

    void refusesWhatItCannotHold()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        std::vector<ZrLinetypeDefinition> definitions;
        QString said;
        QVERIFY(!zrdbParseLinetypeDefinitions(text, definitions, said));
        QCOMPARE(said, error);
        QVERIFY(definitions.empty());
    }

    void loadingAddsOnce()
    {
        ZrHostControl::openEmptyDrawing();
        ZrDbDatabase* db = curDatabase();
        const ZrLinetypeDefinition definition{ZrString(L"ZIGZAG"), ZrString(L"ours"), {3.0, -1.0}};
        const ZrDbObjectId id = zrdbLoadLinetype(db, definition);
        QVERIFY(id.isValid());
        QCOMPARE(zrdbLoadLinetype(db, {ZrString(L"zigzag"), ZrString(), {}}), id);
        ZrDbObjectPointer<ZrDbLinetypeTableRecord> record(id, ZrDb::kForRead);
        QCOMPARE(record->numDashes(), 2);
        QCOMPARE(record->comments().toQString(), QStringLiteral("ours"));
        QVERIFY(zrdbLoadLinetype(nullptr, definition).isNull());
        QVERIFY(ZrEdLinetypeService::cast(zr_arbitDict_getservice(19).get()));
    }
};

ZR_TEST_SUITE(ZrLinetypeDefsTest)
#include "tst_linetypedefs.moc"
