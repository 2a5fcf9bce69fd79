// System variables: one store behind every route, undo of their changes, their events.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrarbitdict.h"
#include "zrdbviewportdata.h"
#include "zrui.h"

#include <QSet>
#include <QTest>

class ZrSysVarTest : public HostFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }
    void init() { freshDrawing(); }

    void oneStoreBehindEveryRoute()
    {
        ZrDbDatabase* db = curDatabase();
        const ZrDbObjectId walls = addLayer(db, L"墙体");
        QCOMPARE(db->setClayer(walls), 0);
        QCOMPARE(variableText(L"clayer"), QStringLiteral("墙体"));

        ZrResBuf* weight = zrutBuildList(RTSHORT, 30, 0);
        QCOMPARE(zredSetVar(L"CELWEIGHT", weight), RTNORM);
        zrutRelRb(weight);
        QCOMPARE(int(db->celweight()), 30);

        auto* service = ZrDbDatabaseService::cast(zrrxGetService(3).get());
        ZrResBuf* style = nullptr;
        QCOMPARE(service->getSysVar(db, L"CTABLESTYLE", style), RTNORM);
        QCOMPARE(style->restype, short(RTSTR));
        QCOMPARE(QString::fromWCharArray(style->resval.rstring), QStringLiteral("Standard"));
        zrutRelRb(style);

        ZrResBuf plotStyle;
        QCOMPARE(zredGetVar(L"CPLOTSTYLE", &plotStyle), RTNORM);
        QCOMPARE(int(plotStyle.restype), 5005);
        delete[] plotStyle.resval.rstring;
    }

    void refusedValuesChangeNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("unknown layer") << "CLAYER" << RTSTR << "no such layer" << 0;
        QTest::newRow("odd lineweight") << "CELWEIGHT" << RTSHORT << "" << 17;
        QTest::newRow("text for a number") << "LWUNITS" << RTSTR << "1" << 0;
        QTest::newRow("out of range") << "LWUNITS" << RTSHORT << "" << 2;
        QTest::newRow("unknown variable") << "NOSUCHVAR" << RTSHORT << "" << 1;
        QTest::newRow("read only") << "CMDACTIVE" << RTSHORT << "" << 1;
        QTest::newRow("bad colour") << "CECOLOR" << RTSTR << "RGB:256,0,0" << 0;
    }
    void refusedValuesChangeNothing()
    {
        QFETCH(QString, name);
        QFETCH(int, type);
        QFETCH(QString, text);
        QFETCH(int, number);
        const std::wstring key = name.toStdWString();
        const QByteArray before = ZrHostControl::drawingText(curDatabase());
        EventLog log;
        ZrResBuf* value = type == RTSTR ? zrutBuildList(RTSTR, text.toStdWString().c_str(), 0)
                                        : zrutBuildList(RTSHORT, number, 0);
        QCOMPARE(zredSetVar(key.c_str(), value), RTERROR);
        zrutRelRb(value);
        QCOMPARE(ZrHostControl::drawingText(curDatabase()), before);
        QCOMPARE(log.count(kZrUiEventSysVar), 0);
    }

    void changesAreAnnouncedByName()
    {
        ZrDbDatabase* db = curDatabase();
        EventLog log;
        ZrResBuf* units = zrutBuildList(RTSHORT, 0, 0);
        QCOMPARE(zredSetVar(L"LWUNITS", units), RTNORM);
        // The same value again is no change.
        QCOMPARE(zredSetVar(L"LWUNITS", units), RTNORM);
        zrutRelRb(units);
        QCOMPARE(db->setLtscale(2.0), 0);
        QSet<QString> names;
        for (const CZrGlobalUIReactorHelp& e : log.flushed()) {
            QCOMPARE(e.kind, int64_t(kZrUiEventSysVar));
            QCOMPARE(e.database, db);
            names << e.name.toQString();
        }
        QCOMPARE(names, (QSet<QString>{QStringLiteral("LWUNITS"), QStringLiteral("LTSCALE")}));
        QCOMPARE(log.count(kZrUiEventSysVar), 2);
    }
};

ZR_TEST_SUITE(ZrSysVarTest)

#include "tst_sysvars.moc"
