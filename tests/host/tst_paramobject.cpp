// The host's strings and its parameter object: sharing, paths, readers, JSON text in and out.

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

class ZrStringTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void utf8RoundTrip_data()
    {
        QTest::addColumn<QByteArray>("utf8");
        QTest::addColumn<int>("characters");
        QTest::newRow("ascii") << QByteArray("layer 0") << 7;
        QTest::newRow("chinese") << QByteArray("图层") << 2;
        // One wchar_t per character past U+FFFF, where UTF-16 would need two.
        QTest::newRow("non-BMP") << QByteArray("a\xF0\x9F\x98\x80z\xF0\x9D\x84\x9E") << 4;
        QTest::newRow("empty") << QByteArray() << 0;
    }

    void utf8RoundTrip()
    {
        QFETCH(QByteArray, utf8);
        QFETCH(int, characters);
        const ZrString wide = ZrString::fromUtf8(utf8.constData());
        QCOMPARE(wide.length(), characters);
        QCOMPARE(wide.toQString(), QString::fromUtf8(utf8));
        QCOMPARE(QByteArray::fromStdString(wide.toUtf8().std()), utf8);
    }

    void invalidUtf8BecomesReplacement_data()
    {
        QTest::addColumn<QByteArray>("utf8");
        QTest::addColumn<QString>("expected");
        const QString r(QChar(0xFFFD));
        QTest::newRow("stray byte") << QByteArray("a\xFF" "b") << "a" + r + "b";
        QTest::newRow("truncated at end") << QByteArray("a\xF0\x9F\x98") << "a" + r;
        QTest::newRow("overlong slash") << QByteArray("\xC0\xAF") << r + r;
        QTest::newRow("encoded surrogate") << QByteArray("\xED\xA0\x80") << r + r + r;
        QTest::newRow("past U+10FFFF") << QByteArray("\xF4\x90\x80\x80") << r + r + r + r;
    }

    void invalidUtf8BecomesReplacement()
    {
        QFETCH(QByteArray, utf8);
        QFETCH(QString, expected);
        QCOMPARE(ZrString::fromUtf8(utf8.constData()).toQString(), expected);
    }

    void unpairedSurrogateEncodesAsReplacement()
    {
        const wchar_t text[] = {L'x', static_cast<wchar_t>(0xD800), 0};
        QCOMPARE(QByteArray::fromStdString(ZrString(text).toUtf8().std()), QByteArray("x\xEF\xBF\xBD"));
    }

    void compareNoCase_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("expected");
        QTest::newRow("ascii") << "Layer0" << "LAYER0" << 0;
        QTest::newRow("accents") << "ÉCOLE" << "école" << 0;
        QTest::newRow("cyrillic") << "Привет" << "пРИВЕТ" << 0;
        QTest::newRow("final sigma") << "ΟΔΟΣ" << "οδος" << 0;
        QTest::newRow("order ignores case") << "b" << "A" << 1;
        QTest::newRow("prefix first") << "ab" << "ABC" << -1;
        QTest::newRow("different") << "abc" << "abd" << -1;
    }

    void compareNoCase()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, expected);
        QCOMPARE(ZrString(a).compareNoCase(ZrString(b)), expected);
        QCOMPARE(ZrString(b).compareNoCase(ZrString(a)), -expected);
    }

    void format()
    {
        // "%s" and "%c" take wide arguments, as in the host's Windows texts.
        QCOMPARE(ZrString::format(L"%d files in %s", 3, L"图纸").toQString(), QString("3 files in 图纸"));
        QCOMPARE(ZrString::format(L"%ls|%c|%03d", L"x", L'中', 7).toQString(), QString("x|中|007"));
        // Longer than the first buffer.
        const std::wstring longText(1000, L'字');
        QCOMPARE(ZrString::format(L"<%s>", longText.c_str()).std(), L"<" + longText + L">");
    }

    void trimFindUpper()
    {
        ZrString padded(L"\u3000 \t layer name \n");
        QCOMPARE(padded.trim().toQString(), QString("layer name"));
        ZrString blank(L" \t ");
        QVERIFY(blank.trim().isEmpty());

        const ZrString name(L"layer*name");
        QCOMPARE(name.findOneOf(L"?*"), 5);
        QCOMPARE(name.findOneOf(L"<>"), -1);
        QCOMPARE(name.find(ZrString(L"name")), 6);
        QCOMPARE(name.find(ZrString(L"Name")), -1);

        ZrString command(L"flatshot é");
        QCOMPARE(command.makeUpper().toQString(), QString("FLATSHOT É"));
    }
};

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

    void nullUndefinedAndMissing()
    {
        QVERIFY(ZrJsonPtr().isNull());
        QVERIFY(ZrJsonPtr().isNullOrNoDef());

        const ZrJsonPtr param = parse(R"({"n":null,"zero":0,"empty":{}})");
        const ZrJsonPtr jsonNull = param->GetVarJsonPtr("n");
        QVERIFY(jsonNull.isNull() && jsonNull->isNull() && !jsonNull->isUndefined());
        QVERIFY(param->hasProperty("n"));

        const ZrJsonPtr missing = param->GetVarJsonPtr("nothing/here");
        QVERIFY(missing);
        QVERIFY(!missing.isNull());
        QVERIFY(missing.isNullOrNoDef() && missing->isUndefined());
        QCOMPARE(missing->ArrayCount(), 0);
        QCOMPARE(missing->size(), 0);
        QVERIFY(missing->at(0)->isUndefined());
        QVERIFY(!param->safeProperty_ptr("nothing"));

        // A missing child is a detached value: filling it leaves the parent alone.
        missing->append(ElementValue::fromInt(1));
        QCOMPARE(missing->ArrayCount(), 1);
        QVERIFY(!param->hasProperty("nothing"));

        QVERIFY(!param->GetVarJsonPtr("zero").isNullOrNoDef());
        QVERIFY(!param->GetVarJsonPtr("empty").isNullOrNoDef());
    }

    void pathWrites_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("index makes an array") << QByteArray("{}") << QByteArray("btnText/0") << QByteArray(R"({"btnText":["x"]})");
        QTest::newRow("index at size appends") << QByteArray(R"({"a":["p"]})") << QByteArray("a/1") << QByteArray(R"({"a":["p","x"]})");
        QTest::newRow("index past size pads") << QByteArray("{}") << QByteArray("a/2") << QByteArray(R"({"a":[null,null,"x"]})");
        QTest::newRow("index replaces") << QByteArray(R"({"a":["p","q"]})") << QByteArray("a/0") << QByteArray(R"({"a":["x","q"]})");
        QTest::newRow("index on object is a name") << QByteArray(R"({"a":{}})") << QByteArray("a/0") << QByteArray(R"({"a":{"0":"x"}})");
        QTest::newRow("leading zero is a name") << QByteArray("{}") << QByteArray("a/01") << QByteArray(R"({"a":{"01":"x"}})");
        QTest::newRow("objects made on the way") << QByteArray("{}") << QByteArray("a/b/c") << QByteArray(R"({"a":{"b":{"c":"x"}}})");
        QTest::newRow("object in array") << QByteArray("{}") << QByteArray("list/0/name") << QByteArray(R"({"list":[{"name":"x"}]})");
        QTest::newRow("scalar on the way replaced") << QByteArray(R"({"a":5})") << QByteArray("a/b") << QByteArray(R"({"a":{"b":"x"}})");
        QTest::newRow("rewrite keeps order") << QByteArray(R"({"a":1,"b":2})") << QByteArray("a") << QByteArray(R"({"a":"x","b":2})");
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
        QTest::newRow("negative real") << QByteArray("neg") << -2 << qint64(-2) << true << -2.9 << "def";
        QTest::newRow("huge real saturates") << QByteArray("huge") << std::numeric_limits<int>::max() << max << true << 1e300 << "def";
        QTest::newRow("false") << QByteArray("f") << 0 << qint64(0) << false << 0.0 << "def";
        QTest::newRow("string is no number") << QByteArray("s") << -1 << qint64(-1) << true << -1.0 << "12";
        QTest::newRow("null") << QByteArray("n") << -1 << qint64(-1) << true << -1.0 << "def";
        QTest::newRow("object") << QByteArray("o") << -1 << qint64(-1) << true << -1.0 << "def";
        QTest::newRow("missing") << QByteArray("nothing") << -1 << qint64(-1) << true << -1.0 << "def";
        QTest::newRow("element") << QByteArray("a/1") << 0 << qint64(0) << false << 0.0 << "def";
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

    void readersIntoOutputKeepItOnFailure()
    {
        const ZrJsonPtr value = parse(R"({"count":3,"name":"a","list":[]})");
        int count = -5;
        QVERIFY(!value->GetDataI("name", count));
        QVERIFY(!value->GetDataI("list", count));
        QCOMPARE(count, -5);
        QVERIFY(value->GetDataI("count", count));
        QCOMPARE(count, 3);
        ZrUtf8String name("kept");
        QVERIFY(!value->GetDataS("count", name));
        QVERIFY(!value->GetDataS("missing", name));
        QCOMPARE(name.std(), std::string("kept"));
        QVERIFY(value->GetDataS("name", name));
        QCOMPARE(name.std(), std::string("a"));
    }

    void removeWhileWalkingBackwards()
    {
        const ZrJsonPtr recent = parse(R"([{"n":0},{"n":1,"drop":true},{"n":2,"drop":true},{"n":3},{"n":4,"drop":true}])");
        for (int i = recent->ArrayCount() - 1; i >= 0; --i) {
            if ((*recent)[i]->GetVarB("drop"))
                QVERIFY(recent->remove_array_item(i));
        }
        QCOMPARE(compact(recent), QByteArray(R"([{"n":0},{"n":3}])"));
        QVERIFY(!recent->remove_array_item(2));
        QVERIFY(!recent->remove_array_item(-1));
        QVERIFY(recent->removeProperty("1"));
        QVERIFY(recent->removeProperty("0/n"));
        QCOMPARE(compact(recent), QByteArray("[{}]"));
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

    void textRoundTrip_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("int64 extremes") << QByteArray("[9223372036854775807,-9223372036854775808,0]");
        QTest::newRow("reals") << QByteArray("[0.1,1.5,1.0,-2.5e-07,1e+21,5e-324,18446744073709551616.0]");
        QTest::newRow("member order") << QByteArray(R"({"z":1,"a":{"y":true,"b":null}})");
        QTest::newRow("non-BMP") << QByteArray(R"(["😀𝄞","图层"])");
        // Not a raw string: moc loses its way in this one.
        QTest::newRow("escapes") << QByteArray("[\"\\\"\\\\\\b\\f\\n\\r\\t\\u0000\\u001f\"]");
        QTest::newRow("empty containers") << QByteArray(R"({"a":[],"b":{},"c":[[{}]]})");
    }

    void textRoundTrip()
    {
        QFETCH(QByteArray, text);
        ZrJsonParseError error;
        const ZrJsonPtr value = ElementValue::parse(text.constData(), static_cast<size_t>(text.size()), &error);
        QVERIFY2(value, error.message.c_str());
        QVERIFY(error.ok());
        QCOMPARE(compact(value), text);
        const ZrJsonPtr again = parse(QByteArray::fromStdString(value->toJson(true).std()));
        QVERIFY(again && again->equals(*value));
    }

    void textNormalisation()
    {
        // Escapes decode to UTF-8; numbers too big for int64 become reals.
        const ZrJsonPtr value = parse(R"(["\ud83d\ude00\u00e9\/", 18446744073709551616, -0])");
        QCOMPARE(value->at(0)->safeStrValueW().length(), 3);
        QCOMPARE(compact(value), QByteArray(R"(["😀é/",18446744073709551616.0,0])"));

        // What JSON cannot say is dropped or written as null.
        const ZrJsonPtr written = ElementValue::createObject(kZrJsonObject);
        written->SetDataD("nan", std::nan(""));
        written->SetDataD("inf", std::numeric_limits<double>::infinity());
        written->SetDataJ("undefined", ElementValue::createObject(kZrJsonUndefined));
        written->SetDataS("bad", "a\xFF");
        QCOMPARE(compact(written), QByteArray("{\"nan\":null,\"inf\":null,\"bad\":\"a\xEF\xBF\xBD\"}"));

        const ZrJsonPtr duplicates = parse(R"({"a":1,"b":2,"a":3})");
        QCOMPARE(compact(duplicates), QByteArray(R"({"a":3,"b":2})"));

        QCOMPARE(QByteArray::fromStdString(parse(R"({"a":[1,2],"b":{}})")->toJson(true).std()),
                 QByteArray("{\n    \"a\": [\n        1,\n        2\n    ],\n    \"b\": {}\n}"));
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
        QTest::newRow("missing colon") << QByteArray("{\n  \"a\" 1\n}") << "expected ':' after object key" << 8 << 2 << 7;
        QTest::newRow("crlf lines") << QByteArray("[\r\n1,\r\n x]") << "expected a value" << 8 << 3 << 2;
        QTest::newRow("trailing comma") << QByteArray("[1,2,]") << "expected a value" << 5 << 1 << 6;
        QTest::newRow("trailing garbage") << QByteArray("{\"a\":1} x") << "unexpected data after the value" << 8 << 1 << 9;
        QTest::newRow("leading zero") << QByteArray("[01]") << "expected ',' or ']' after array element" << 2 << 1 << 3;
        QTest::newRow("truncated array") << QByteArray("[1,") << "unexpected end of input" << 3 << 1 << 4;
        QTest::newRow("invalid UTF-8") << QByteArray("[\"\xFF\"]") << "invalid UTF-8 in string" << 2 << 1 << 3;
        QTest::newRow("control character") << QByteArray("\"a\tb\"") << "control character in string" << 2 << 1 << 3;
        QTest::newRow("lone surrogate") << QByteArray(R"(["\udc00"])") << "lone surrogate in \\u escape" << 2 << 1 << 3;
        QTest::newRow("bad escape") << QByteArray(R"("\x")") << "invalid escape sequence" << 1 << 1 << 2;
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

    void cloneIsDeepAndEqualityIgnoresOrder()
    {
        const ZrJsonPtr original = parse(R"({"a":{"b":[1,2]},"c":"x"})");
        const ZrJsonPtr copy = original->clone();
        copy->SetDataI("a/b/0", 9);
        QCOMPARE(original->GetVarI("a/b/0"), 1);
        QVERIFY(!copy->equals(*original));
        QVERIFY(parse(R"({"c":"x","a":{"b":[1,2]}})")->equals(*original));
        QVERIFY(!parse(R"({"a":{"b":[2,1]},"c":"x"})")->equals(*original));
    }
};

ZR_TEST_SUITE(ZrStringTest)
ZR_TEST_SUITE(ParamObjectTest)

#include "tst_paramobject.moc"
