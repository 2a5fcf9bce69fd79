// DXF drawings in the reference host: files another program wrote (made with ezdxf as the test
// runs) read onto their layers, what cannot be held counted, and bad files refused with their line.

#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"
#include "zrtestmain.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

#include <cmath>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;
const QString kPython = QStringLiteral("/usr/bin/python3");

// A drawing in the manner of other CAD programs: layers of every state, the mapped entities, a block
// and its insert, and a spline and a hatch the host has no entity for.
const char kEzdxfScript[] = R"(
import sys, ezdxf
doc = ezdxf.new("R2013", setup=True)
doc.layers.add("墙体", color=1, linetype="DASHED")
doc.layers.add("门窗", color=5)
doc.layers.add("OFF", color=3).off()
doc.layers.add("FROZEN", color=4).freeze()
doc.layers.add("LOCKED", color=6).lock()
msp = doc.modelspace()
msp.add_line((0, 0), (100, 0), dxfattribs={"layer": "墙体"})
msp.add_line((0, 10), (100, 10), dxfattribs={"layer": "墙体", "color": 2, "linetype": "CENTER"})
msp.add_line((0, 20), (100, 20), dxfattribs={"layer": "OFF", "true_color": ezdxf.rgb2int((10, 20, 30))})
msp.add_circle((50, 50), 20, dxfattribs={"layer": "门窗"})
msp.add_arc((0, 0), 10, 0, 90, dxfattribs={"layer": "门窗"})
msp.add_lwpolyline([(0, 0), (10, 0), (10, 10)], close=True, dxfattribs={"layer": "墙体"})
msp.add_lwpolyline([(0, 0, 0, 0, 1), (10, 0, 0, 0, 0)], format="xyseb", dxfattribs={"layer": "FROZEN"})
msp.add_text("你好 DXF %%c20", dxfattribs={"layer": "门窗", "height": 2.5}).set_placement((5, 5))
msp.add_mtext("第一行\\P第二行", dxfattribs={"char_height": 3}).set_location((20, 20))
door = doc.blocks.new("DOOR", base_point=(1, 1))
door.add_line((1, 1), (1, 10))
door.add_arc((1, 1), 9, 0, 90)
msp.add_blockref("DOOR", (30, 30), dxfattribs={"layer": "门窗", "rotation": 90, "xscale": 2, "yscale": 2})
msp.add_linear_dim(base=(0, 30), p1=(0, 0), p2=(100, 0), dxfattribs={"layer": "墙体"}).render()
msp.add_spline([(0, 0), (10, 10), (20, 0)])
msp.add_spline([(0, 5), (10, 15), (20, 5)])
hatch = msp.add_hatch(color=2)
hatch.paths.add_polyline_path([(0, 0), (5, 0), (5, 5)], is_closed=True)
doc.saveas(sys.argv[1])
)";

// Writes the drawing above to `path`; false with the reason when ezdxf cannot be run.
bool makeEzdxfDrawing(const QString& path, QString* why)
{
    QProcess python;
    python.start(kPython, {QStringLiteral("-c"), QString::fromUtf8(kEzdxfScript), path});
    if (!python.waitForFinished(60000) || python.exitCode() != 0 || !QFile::exists(path)) {
        *why = QStringLiteral("python3-ezdxf is needed to make the DXF drawings (%1 -c 'import ezdxf'): %2")
                   .arg(kPython, QString::fromLocal8Bit(python.readAllStandardError()).trimmed());
        return false;
    }
    return true;
}

// A DXF text of one ENTITIES section around `entities`, which starts at line 5.
QByteArray entitiesDxf(const QByteArray& entities)
{
    return "0\nSECTION\n2\nENTITIES\n" + entities + "0\nENDSEC\n0\nEOF\n";
}

template <class Table>
ZrDbObjectId recordNamed(int (ZrDbDatabase::*getTable)(Table*&, ZrDb::OpenMode) const, const QString& name)
{
    Table* table = nullptr;
    ZrDbObjectId id;
    if ((curDatabase()->*getTable)(table, ZrDb::kForRead) != Zr::eOk)
        return id;
    table->getIdAt(ZrString(name), id);
    table->close();
    return id;
}

QString recordName(ZrDbObjectId id)
{
    ZrDbObjectPointer<ZrDbSymbolTableRecord> record(id, ZrDb::kForRead);
    return record ? record->name().toQString() : QString();
}

// The entities of model space of one kind, in drawing order.
template <class Entity>
std::vector<ZrDbObjectId> entitiesOf()
{
    std::vector<ZrDbObjectId> found;
    for (ZrDbObjectId id : ZrHostControl::entitiesOfCurrentSpace()) {
        ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
        if (entity && Entity::cast(entity.object()))
            found.push_back(id);
    }
    return found;
}

bool near(const ZrGePoint3d& p, double x, double y) { return std::fabs(p.x - x) < 1e-6 && std::fabs(p.y - y) < 1e-6; }

} // namespace

class TstDxf : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        ZrHostControl::Options options;
        options.configDir = m_config.path();
        ZrHostControl::initialize(options);
        QString why;
        m_hasEzdxf = makeEzdxfDrawing(m_files.filePath(QStringLiteral("other.dxf")), &why);
        if (!m_hasEzdxf)
            qWarning("%s", qPrintable(why));
    }

    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void anotherProgramsDrawingOpensOnItsLayers()
    {
        if (!m_hasEzdxf)
            QSKIP("python3-ezdxf is missing: no DXF of another program to read");
        QString error, notice;
        QVERIFY2(ZrHostControl::openDrawing(m_files.filePath(QStringLiteral("other.dxf")), &error, &notice),
                 qPrintable(error));

        const ZrDbObjectId walls = recordNamed(&ZrDbDatabase::getLayerTable, QStringLiteral("墙体"));
        {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(walls, ZrDb::kForRead);
            QVERIFY(layer);
            QCOMPARE(layer->color().colorIndex(), uint16_t(1));
            QCOMPARE(recordName(layer->linetypeObjectId()), QStringLiteral("DASHED"));
            QVERIFY(!layer->isOff() && !layer->isFrozen() && !layer->isLocked());
        }
        const auto layerState = [](const char* name) {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(
                recordNamed(&ZrDbDatabase::getLayerTable, QLatin1String(name)), ZrDb::kForRead);
            return layer ? QString::fromLatin1("%1%2%3 %4")
                               .arg(layer->isOff() ? "off" : "")
                               .arg(layer->isFrozen() ? "frozen" : "")
                               .arg(layer->isLocked() ? "locked" : "")
                               .arg(layer->color().colorIndex())
                         : QStringLiteral("missing");
        };
        QCOMPARE(layerState("OFF"), QStringLiteral("off 3"));
        QCOMPARE(layerState("FROZEN"), QStringLiteral("frozen 4"));
        QCOMPARE(layerState("LOCKED"), QStringLiteral("locked 6"));

        const std::vector<ZrDbObjectId> lines = entitiesOf<ZrDbLine>();
        QCOMPARE(lines.size(), size_t(3));
        {
            ZrDbObjectPointer<ZrDbLine> first(lines[0], ZrDb::kForRead);
            QCOMPARE(first->layerId(), walls);
            QVERIFY(near(first->endPoint(), 100, 0));
            QCOMPARE(first->color().colorMethod(), ZrCmEntityColor::kByLayer);
            ZrDbObjectPointer<ZrDbLine> second(lines[1], ZrDb::kForRead);
            QCOMPARE(second->color().colorIndex(), uint16_t(2));
            QCOMPARE(second->linetype().toQString(), QStringLiteral("CENTER"));
            ZrDbObjectPointer<ZrDbLine> third(lines[2], ZrDb::kForRead);
            QCOMPARE(third->color().colorMethod(), ZrCmEntityColor::kByColor);
            QCOMPARE(QColor(third->color().red(), third->color().green(), third->color().blue()), QColor(10, 20, 30));
        }
        const std::vector<ZrDbObjectId> circles = entitiesOf<ZrDbCircle>();
        QCOMPARE(circles.size(), size_t(1));
        {
            ZrDbObjectPointer<ZrDbCircle> circle(circles[0], ZrDb::kForRead);
            QCOMPARE(circle->radius(), 20.0);
            QVERIFY(near(circle->center(), 50, 50));
            QCOMPARE(recordName(circle->layerId()), QStringLiteral("门窗"));
        }
        const std::vector<ZrDbObjectId> arcs = entitiesOf<ZrDbArc>();
        QCOMPARE(arcs.size(), size_t(1));
        {
            ZrDbObjectPointer<ZrDbArc> arc(arcs[0], ZrDb::kForRead);
            QCOMPARE(arc->startAngle(), 0.0);
            QVERIFY(std::fabs(arc->endAngle() - kPi / 2) < 1e-12);
        }

        const std::vector<ZrDbObjectId> polylines = entitiesOf<ZrDbPolyline>();
        QCOMPARE(polylines.size(), size_t(2));
        {
            ZrDbObjectPointer<ZrDbPolyline> triangle(polylines[0], ZrDb::kForRead);
            QVERIFY(triangle->isClosed());
            QCOMPARE(triangle->numVerts(), 3);
            QVERIFY(near(triangle->vertexAt(2), 10, 10));
            // A bulge of 1 is a half circle turning left from (0,0) to (10,0): it passes (5,-5).
            ZrDbObjectPointer<ZrDbPolyline> half(polylines[1], ZrDb::kForRead);
            QVERIFY(!half->isClosed());
            QVERIFY(half->numVerts() > 4);
            QVERIFY(near(half->vertexAt(0), 0, 0));
            QVERIFY(near(half->vertexAt(half->numVerts() - 1), 10, 0));
            bool passesBelow = false;
            for (int i = 0; i < half->numVerts(); ++i) {
                const ZrGePoint3d p = half->vertexAt(i);
                QVERIFY2(std::fabs(std::hypot(p.x - 5, p.y) - 5) < 1e-6, "a vertex off the half circle");
                QVERIFY(p.y < 1e-9);
                passesBelow = passesBelow || near(p, 5, -5);
            }
            QVERIFY(passesBelow);
        }

        const std::vector<ZrDbObjectId> texts = entitiesOf<ZrDbText>();
        QCOMPARE(texts.size(), size_t(1));
        {
            ZrDbObjectPointer<ZrDbText> text(texts[0], ZrDb::kForRead);
            QCOMPARE(text->textString().toQString(), QStringLiteral("你好 DXF ⌀20"));
            QCOMPARE(text->height(), 2.5);
            QVERIFY(near(text->position(), 5, 5));
        }
        const std::vector<ZrDbObjectId> mtexts = entitiesOf<ZrDbMText>();
        QCOMPARE(mtexts.size(), size_t(1));
        {
            ZrDbObjectPointer<ZrDbMText> mtext(mtexts[0], ZrDb::kForRead);
            QCOMPARE(mtext->contents().toQString(), QStringLiteral("第一行\\P第二行"));
            QCOMPARE(mtext->textHeight(), 3.0);
        }

        // The insert: its block holds the two entities, moved so that the base point is the origin.
        // The dimension is the picture ezdxf drew of it, an anonymous block where it stands.
        const std::vector<ZrDbObjectId> inserts = entitiesOf<ZrDbBlockReference>();
        QCOMPARE(inserts.size(), size_t(2));
        {
            ZrDbObjectPointer<ZrDbBlockReference> dimension(inserts[1], ZrDb::kForRead);
            QVERIFY(near(dimension->position(), 0, 0));
            QCOMPARE(recordName(dimension->layerId()), QStringLiteral("墙体"));
            ZrDbObjectPointer<ZrDbBlockTableRecord> picture(dimension->blockTableRecord(), ZrDb::kForRead);
            QVERIFY(picture->name().toQString().startsWith(QStringLiteral("*D")));
            QVERIFY(picture->entityHandles().size() >= 3);
        }
        ZrDbObjectPointer<ZrDbBlockReference> insert(inserts[0], ZrDb::kForRead);
        QVERIFY(near(insert->position(), 30, 30));
        QVERIFY(std::fabs(insert->rotation() - kPi / 2) < 1e-12);
        QCOMPARE(insert->scale(), 2.0);
        QCOMPARE(insert->blockTableRecord(), recordNamed(&ZrDbDatabase::getBlockTable, QStringLiteral("DOOR")));
        ZrDbObjectPointer<ZrDbBlockTableRecord> door(insert->blockTableRecord(), ZrDb::kForRead);
        QCOMPARE(door->entityHandles().size(), size_t(2));
        ZrDbObjectPointer<ZrDbLine> jamb(ZrDbObjectId(door->entityHandles()[0]), ZrDb::kForRead);
        QVERIFY(jamb);
        QVERIFY(near(jamb->startPoint(), 0, 0));
        QVERIFY(near(jamb->endPoint(), 0, 9));

        // Nothing is dropped in silence: the splines and the hatch are counted in one notice.
        // ezdxf's set-up adds arrow blocks of its own with what else it needs: the total is the sum.
        const QStringList parts = notice.section(QStringLiteral(": "), 1).split(QStringLiteral(", "));
        int total = 0;
        for (const QString& part : parts)
            total += part.section(QLatin1Char(' '), 0, 0).toInt();
        QVERIFY2(notice.startsWith(QStringLiteral("%1 objects left out").arg(total)), qPrintable(notice));
        QVERIFY2(notice.contains(QStringLiteral("2 SPLINE")), qPrintable(notice));
        QVERIFY2(notice.contains(QStringLiteral("1 HATCH")), qPrintable(notice));
        QVERIFY2(notice.contains(QStringLiteral("1 dimensions drawn as their pictures")), qPrintable(notice));
    }

    // A cut drawing and things that are no drawing are refused with their line; the open drawing stays.
    void badFilesAreRefusedWithTheirLine_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("fault");
        const QByteArray line = "0\nLINE\n8\n0\n10\n";
        QTest::newRow("not a DXF") << QByteArray("hello\nworld\n") << "line 1: this is not a DXF file: \"hello\"";
        QTest::newRow("empty") << QByteArray() << "line 0: the file is empty";
        QTest::newRow("no end mark") << QByteArray("0\nSECTION\n2\nENTITIES\n") + line + "1\n20\n2\n"
                                     << "line 12: the file ends before its EOF mark";
        QTest::newRow("cut in a group") << QByteArray("0\nSECTION\n2\nENTITIES\n0\nLINE\n10")
                                        << "line 7: the file ends inside a group";
        QTest::newRow("cut in a number") << QByteArray("0\nSECTION\n2\nENTITIES\n0\nLINE\n10\n1e-")
                                         << "line 8: the file is cut short in this line: group 10: \"1e-\" is not a number";
        QTest::newRow("infinite") << entitiesDxf(line + "1e999\n") << "line 10: group 10: \"1e999\" is not a finite number";
        QTest::newRow("too large") << entitiesDxf(line + "1e300\n")
                                   << "line 10: group 10: \"1e300\" is beyond the largest value";
        QTest::newRow("group code") << entitiesDxf("0\nLINE\nxx\n0\n") << "line 7: \"xx\" is no group code";
        QTest::newRow("vertex count") << entitiesDxf("0\nLWPOLYLINE\n90\n2000000000\n10\n0\n20\n0\n")
                                      << "line 8: a polyline of 2000000000 vertices";
        QTest::newRow("vertices uncounted") << entitiesDxf("0\nLWPOLYLINE\n10\n0\n20\n0\n")
                                            << "line 8: a polyline gives vertices before their number";
        QTest::newRow("huge array") << entitiesDxf("0\nINSERT\n2\nB\n70\n1000\n71\n1000\n0\nLINE\n")
                                    << "line 14: an insert repeats its block 1000000 times";
        QTest::newRow("long line") << entitiesDxf("0\nTEXT\n1\n" + QByteArray(3000, 'x') + "\n")
                                   << "line 8: the line is longer than 2049 characters";
        QTest::newRow("moved too far") << QByteArray("0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nB\n10\n-1e15\n20\n0\n0\nLINE\n10\n"
                                                     "1e15\n20\n0\n11\n0\n21\n0\n0\nENDBLK\n0\nENDSEC\n0\nEOF\n")
                                       << "line 24: a point lands beyond the largest value";
        QTest::newRow("block twice") << QByteArray("0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nB\n0\nENDBLK\n0\nBLOCK\n2\nB\n0\n"
                                                   "ENDBLK\n0\nENDSEC\n0\nEOF\n")
                                     << "line 16: the block B is defined twice";
    }

    void badFilesAreRefusedWithTheirLine()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, fault);
        ZrHostControl::openEmptyDrawing();
        const ZrDbDatabase* before = curDatabase();
        QString error;
        QVERIFY(!ZrHostControl::openDxfText(text, QStringLiteral("bad.dxf"), &error));
        QVERIFY2(error.startsWith(QStringLiteral("bad.dxf: ") + fault), qPrintable(error));
        QCOMPARE(curDatabase(), before);
    }

    // The real thing cut short anywhere is refused, never half read.
    void aTruncatedDrawingIsRefused()
    {
        if (!m_hasEzdxf)
            QSKIP("python3-ezdxf is missing: no DXF of another program to cut");
        QFile file(m_files.filePath(QStringLiteral("other.dxf")));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray whole = file.readAll();
        ZrHostControl::openEmptyDrawing();
        const ZrDbDatabase* before = curDatabase();
        // Cuts in every kind of line: codes, names, numbers, texts.
        for (int part = 1; part < 200; ++part) {
            QString error;
            QVERIFY(!ZrHostControl::openDxfText(whole.left(int(whole.size() * (part / 200.0))), QStringLiteral("cut.dxf"), &error));
            QVERIFY2(error.contains(QStringLiteral("cut short")), qPrintable(error));
            QCOMPARE(curDatabase(), before);
        }
    }

private:
    QTemporaryDir m_config;
    QTemporaryDir m_files;
    bool m_hasEzdxf = false;
};

ZR_TEST_SUITE(TstDxf)
#include "tst_dxf.moc"
