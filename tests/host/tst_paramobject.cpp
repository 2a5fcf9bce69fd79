// The host's parameter object: sharing, paths, readers, JSON text in.

#include "zrtestmain.h"

#include "zrjson.h"
#include "zrstring.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

ZrJsonPtr parse(const QByteArray& text)
{
    return ElementValue::parse(text.constData(), static_cast<size_t>(text.size()));
}

QByteArray compact(const ZrJsonPtr& value)
{
    return QByteArray::fromStdString(value->toJson().std());
}

} // namespace

class ParamObjectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesThroughCopiesAreShared()
    {
        ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
        auto dialog = [](ZrJsonPtr copy) {
            copy->SetDataI("result", 1);
            copy->GetVarJsonPtr("options")->SetDataB("recurse", true);
        };
        param->SetDataJ("options", ElementValue::createObject(kZrJsonObject));
        dialog(param);
        QCOMPARE(param->safePropertyi32("result", -1), 1);
        QVERIFY(param->GetVarB("options/recurse"));

        // SetDataJ keeps the very value: later writes through the caller's handle show in the parent.
        ZrJsonPtr list = ElementValue::createObject(kZrJsonArray);
        param->SetDataJ("list", list);
        list->append(ElementValue::fromString("a.dwg"));
        QCOMPARE(param->GetVarS("list/0").std(), std::string("a.dwg"));

        // A child outlives its parent while a handle holds it.
        ZrJsonPtr options = param->GetVarJsonPtr("options");
        param = nullptr;
        QVERIFY(options->GetVarB("recurse"));
    }

    void pathWrites_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("index makes an array") << QByteArray("{}") << QByteArray("btnText/0") << QByteArray(R"({"btnText":["x"]})");
        QTest::newRow("index at size appends") << QByteArray(R"({"a":["p"]})") << QByteArray("a/1") << QByteArray(R"({"a":["p","x"]})");
        QTest::newRow("index past size pads") << QByteArray("{}") << QByteArray("a/2") << QByteArray(R"({"a":[null,null,"x"]})");
        QTest::newRow("index on object is a name") << QByteArray(R"({"a":{}})") << QByteArray("a/0") << QByteArray(R"({"a":{"0":"x"}})");
        QTest::newRow("leading zero is a name") << QByteArray("{}") << QByteArray("a/01") << QByteArray(R"({"a":{"01":"x"}})");
        QTest::newRow("scalar on the way replaced") << QByteArray(R"({"a":5})") << QByteArray("a/b") << QByteArray(R"({"a":{"b":"x"}})");
        QTest::newRow("empty key is the value") << QByteArray(R"({"a":1})") << QByteArray("") << QByteArray(R"("x")");
        QTest::newRow("name into array refused") << QByteArray(R"({"a":[1]})") << QByteArray("a/name") << QByteArray(R"({"a":[1]})");
        QTest::newRow("huge index refused") << QByteArray("{}") << QByteArray("a/999999999") << QByteArray("{}");
    }

    void pathWrites()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, after);
        const ZrJsonPtr value = parse(before);
        QVERIFY(value);
        value->SetDataS(key.constData(), "x");
        QCOMPARE(compact(value), after);
    }

    void readers_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<int>("asInt");
        QTest::addColumn<qint64>("asLong");
        QTest::addColumn<bool>("asBool");
        QTest::addColumn<double>("asReal");
        QTest::addColumn<QString>("asText");
        const qint64 max = std::numeric_limits<qint64>::max();
        // Defaults: -1, -1, true, -1.0 and "def".
        QTest::newRow("int") << QByteArray("i") << 42 << qint64(42) << true << 42.0 << "def";
        QTest::newRow("int64 saturates as int") << QByteArray("big") << std::numeric_limits<int>::max() << max << true << 9223372036854775807.0 << "def";
        QTest::newRow("real truncates") << QByteArray("r") << 2 << qint64(2) << true << 2.9 << "def";
        QTest::newRow("huge real saturates") << QByteArray("huge") << std::numeric_limits<int>::max() << max << true << 1e300 << "def";
        QTest::newRow("false") << QByteArray("f") << 0 << qint64(0) << false << 0.0 << "def";
        QTest::newRow("string is no number") << QByteArray("s") << -1 << qint64(-1) << true << -1.0 << "12";
        QTest::newRow("null") << QByteArray("n") << -1 << qint64(-1) << true << -1.0 << "def";
        QTest::newRow("missing") << QByteArray("nothing") << -1 << qint64(-1) << true << -1.0 << "def";
        QTest::newRow("past the end") << QByteArray("a/2") << -1 << qint64(-1) << true << -1.0 << "def";
        QTest::newRow("wide text") << QByteArray("a/0") << -1 << qint64(-1) << true << -1.0 << "图层😀";
    }

    void readers()
    {
        QFETCH(QByteArray, key);
        QFETCH(int, asInt);
        QFETCH(qint64, asLong);
        QFETCH(bool, asBool);
        QFETCH(double, asReal);
        QFETCH(QString, asText);
        const ZrJsonPtr value = parse(R"({"i":42,"big":9223372036854775807,"r":2.9,"neg":-2.9,"huge":1e300,)"
                                      R"("f":false,"s":"12","n":null,"o":{},"a":["图层😀",false]})");
        QVERIFY(value);
        const char* k = key.constData();
        QCOMPARE(value->GetVarI(k, -1), asInt);
        QCOMPARE(value->safePropertyi32(ZrUtf8String(k), -1), asInt);
        QCOMPARE(qint64(value->GetVarL(k, -1)), asLong);
        QCOMPARE(value->GetVarB(k, true), asBool);
        QCOMPARE(value->GetVarD(k, -1.0), asReal);
        QCOMPARE(value->GetVarSW(k, L"def").toQString(), asText);
        QCOMPARE(value->GetVarS(k, "def").toQString(), asText);
        QCOMPARE(value->safePropertysW(ZrUtf8String(k), ZrString(L"def")).toQString(), asText);
    }

    void cyclesAreRefused()
    {
        const ZrJsonPtr parent = ElementValue::createObject(kZrJsonObject);
        const ZrJsonPtr child = ElementValue::createObject(kZrJsonObject);
        parent->SetDataJ("child", child);
        child->SetDataJ("parent", parent);
        child->SetDataJ("deeper/parent", parent);
        parent->SetDataJ("self", parent);
        child->SetDataJ("", parent);
        QCOMPARE(compact(parent), QByteArray(R"({"child":{}})"));

        // The child is shared by a second parent: it may not take that parent in either.
        const ZrJsonPtr other = ElementValue::createObject(kZrJsonObject);
        other->SetDataJ("shared", child);
        parent->SetDataJ("child/other", other);
        QCOMPARE(compact(parent), QByteArray(R"({"child":{}})"));

        const ZrJsonPtr array = ElementValue::createObject(kZrJsonArray);
        array->append(array);
        QCOMPARE(array->ArrayCount(), 0);
    }

    void parseErrors_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("column");
        QTest::newRow("empty") << QByteArray() << "unexpected end of input" << 0 << 1 << 1;
        QTest::newRow("unterminated string") << QByteArray("{\n  \"a\": \"abc") << "unterminated string" << 9 << 2 << 8;
        QTest::newRow("crlf lines") << QByteArray("[\r\n1,\r\n x]") << "expected a value" << 8 << 3 << 2;
        QTest::newRow("trailing garbage") << QByteArray("{\"a\":1} x") << "unexpected data after the value" << 8 << 1 << 9;
        QTest::newRow("truncated array") << QByteArray("[1,") << "unexpected end of input" << 3 << 1 << 4;
        QTest::newRow("invalid UTF-8") << QByteArray("[\"\xFF\"]") << "invalid UTF-8 in string" << 2 << 1 << 3;
        QTest::newRow("lone surrogate") << QByteArray(R"(["\udc00"])") << "lone surrogate in \\u escape" << 2 << 1 << 3;
        QTest::newRow("number out of range") << QByteArray("[1e400]") << "number out of range" << 1 << 1 << 2;
        QTest::newRow("too deep") << QByteArray(513, '[') << "nesting deeper than 512 levels" << 512 << 1 << 513;
    }

    void parseErrors()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, message);
        QFETCH(int, offset);
        QFETCH(int, line);
        QFETCH(int, column);
        ZrJsonParseError error;
        QVERIFY(!ElementValue::parse(text.constData(), static_cast<size_t>(text.size()), &error));
        QCOMPARE(error.message.toQString(), message);
        QCOMPARE(error.offset, offset);
        QCOMPARE(error.line, line);
        QCOMPARE(error.column, column);
    }

    void nestingLimitIsInclusive()
    {
        const QByteArray deepest = QByteArray(512, '[') + QByteArray(512, ']');
        QVERIFY(parse(deepest));
    }
};

ZR_TEST_SUITE(ParamObjectTest)

#include "tst_paramobject.moc"
