// What the drawing reader refuses: numbers beyond what the host holds, points that are not numbers,
// files in another encoding; and how its messages quote what they refuse.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QtEndian>

namespace {

QJsonObject entity(const char* type, std::initializer_list<QPair<QString, QJsonValue>> fields)
{
    QJsonObject json{{QStringLiteral("type"), QLatin1String(type)}};
    for (const auto& field : fields)
        json.insert(field.first, field.second);
    return json;
}

QJsonArray point(double x, double y) { return QJsonArray{x, y, 0.0}; }

} // namespace

class ZrDrawingValuesTest : public HostFixture
{
    Q_OBJECT

    // The empty drawing as the host writes it, to be spoilt by a test.
    static QJsonObject emptyDrawing()
    {
        ZrHostControl::openEmptyDrawing();
        return QJsonDocument::fromJson(ZrHostControl::drawingText(curDatabase())).object();
    }

    static void addToModelSpace(QJsonObject& drawing, const QJsonObject& json)
    {
        QJsonArray blocks = drawing.value(QStringLiteral("blocks")).toArray();
        for (int i = 0; i < blocks.size(); ++i) {
            QJsonObject block = blocks[i].toObject();
            if (block.value(QStringLiteral("name")).toString() != QLatin1String("*Model_Space"))
                continue;
            QJsonArray entities = block.value(QStringLiteral("entities")).toArray();
            entities.append(json);
            block.insert(QStringLiteral("entities"), entities);
            blocks[i] = block;
        }
        drawing.insert(QStringLiteral("blocks"), blocks);
    }

    static void setVariable(QJsonObject& drawing, const char* name, const QJsonValue& value)
    {
        QJsonObject variables = drawing.value(QStringLiteral("variables")).toObject();
        variables.insert(QLatin1String(name), value);
        drawing.insert(QStringLiteral("variables"), variables);
    }

    // The message of a refused file; empty when the file was read.
    static QString refusal(const QByteArray& text)
    {
        QString error;
        return ZrHostControl::openDrawingText(text, QStringLiteral("bad.json"), &error) ? QString() : error;
    }
    static QString refusal(const QJsonObject& drawing) { return refusal(QJsonDocument(drawing).toJson()); }

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void valuesBeyondTheHostAreRefusedWithTheirPlace_data()
    {
        QTest::addColumn<QJsonObject>("drawing");
        QTest::addColumn<QString>("place");
        QJsonObject drawing = emptyDrawing();
        setVariable(drawing, "LTSCALE", 1e307);
        QTest::newRow("LTSCALE 1e307") << drawing << QStringLiteral("variables, field \"LTSCALE\"");
        drawing = emptyDrawing();
        addToModelSpace(drawing, entity("circle", {{QStringLiteral("radius"), 1e308}}));
        QTest::newRow("radius 1e308") << drawing << QStringLiteral("entities[0], field \"radius\"");
        drawing = emptyDrawing();
        addToModelSpace(drawing, entity("blockReference", {{QStringLiteral("block"), QStringLiteral("*Paper_Space")},
                                                           {QStringLiteral("scale"), 1e308}}));
        QTest::newRow("block scale 1e308") << drawing << QStringLiteral("entities[0], field \"scale\"");
        drawing = emptyDrawing();
        addToModelSpace(drawing, entity("line", {{QStringLiteral("start"), point(-2e15, 0)}}));
        QTest::newRow("line start -2e15") << drawing << QStringLiteral("entities[0], field \"start\"");
        drawing = emptyDrawing();
        addToModelSpace(drawing, entity("line", {{QStringLiteral("end"), point(0, 1e300)}}));
        QTest::newRow("line end 1e300") << drawing << QStringLiteral("entities[0], field \"end\"");
        drawing = emptyDrawing();
        setVariable(drawing, "UCSORG", QJsonArray{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
        QTest::newRow("UCSORG of texts") << drawing << QStringLiteral("variables, field \"UCSORG\"");
        drawing = emptyDrawing();
        setVariable(drawing, "UCSORG", QJsonArray{true, QJsonValue(), QJsonObject()});
        QTest::newRow("UCSORG of true, null, {}") << drawing << QStringLiteral("variables, field \"UCSORG\"");
        drawing = emptyDrawing();
        setVariable(drawing, "UCSORG", QJsonArray{1.0, 2.0, 1e16});
        QTest::newRow("UCSORG beyond") << drawing << QStringLiteral("variables, field \"UCSORG\"");
        drawing = emptyDrawing();
        addToModelSpace(drawing, entity("line", {{QStringLiteral("xdata"),
                                                  QJsonArray{QJsonArray{1001, QStringLiteral("APP")},
                                                             QJsonArray{1010, QJsonArray{QStringLiteral("a"), 1, 2}}}}}));
        QTest::newRow("xdata point of a text") << drawing << QStringLiteral("entities[0], field \"xdata\"");
    }
    void valuesBeyondTheHostAreRefusedWithTheirPlace()
    {
        QFETCH(QJsonObject, drawing);
        QFETCH(QString, place);
        ZrHostControl::openSampleDrawing();
        const ZrDbDatabase* before = curDatabase();
        const QString error = refusal(drawing);
        QVERIFY2(error.startsWith(QStringLiteral("bad.json: ")) && error.contains(place), qPrintable(error));
        QCOMPARE(curDatabase(), before);
    }

    void valuesWithinTheHostAreRead()
    {
        QJsonObject drawing = emptyDrawing();
        setVariable(drawing, "LTSCALE", 1e12);
        setVariable(drawing, "UCSORG", QJsonArray{1.0, -2.5, 1e15});
        addToModelSpace(drawing, entity("circle", {{QStringLiteral("radius"), 1e15}}));
        QCOMPARE(refusal(drawing), QString());
        QCOMPARE(curDatabase()->ltscale(), 1e12);
        ZrResBuf origin;
        QCOMPARE(zredGetVar(L"UCSORG", &origin), RTNORM);
        QCOMPARE(origin.resval.rpoint[1], -2.5);
        QCOMPARE(origin.resval.rpoint[2], 1e15);
    }
};

ZR_TEST_SUITE(ZrDrawingValuesTest)

#include "tst_drawingvalues.moc"
