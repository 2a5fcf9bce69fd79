// Colour books: the masking of channels, the "*.acb" reader, the searches by name, and zracb.

#include "colorbooktesthelpers.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include <QProcess>
#include <memory>

using namespace ColorTest;

namespace {

CEdColorBookManager* books() { return CEdColorBookManager::getInstance(); }

QByteArray bookText(const QByteArray& pages, const QByteArray& name = "Hand")
{
    return "<?xml version=\"1.0\"?><colorBook><bookName>" + name + "</bookName>" + pages + "</colorBook>";
}

QByteArray plainChannels(const QByteArray& red, const QByteArray& green, const QByteArray& blue)
{
    return "<RGB8><red>" + red + "</red><green>" + green + "</green><blue>" + blue + "</blue></RGB8>";
}

QByteArray plainEntry(const QByteArray& name, const QByteArray& red, const QByteArray& green, const QByteArray& blue)
{
    return "<colorEntry><colorName>" + name + "</colorName>" + plainChannels(red, green, blue) + "</colorEntry>";
}

QByteArray maskedChannels(const QByteArray& red, const QByteArray& green, const QByteArray& blue)
{
    return "<RGB8Encrypt><redEncrypt>" + red + "</redEncrypt><greenEncrypt>" + green + "</greenEncrypt><blueEncrypt>"
        + blue + "</blueEncrypt></RGB8Encrypt>";
}

struct Rgb
{
    int red, green, blue;
    bool operator==(const Rgb& o) const { return red == o.red && green == o.green && blue == o.blue; }
};

Rgb rgbOf(const ZrCmColor& color) { return {color.red(), color.green(), color.blue()}; }

QStringList colorNames(const SXuBookColorPage* page)
{
    QStringList names;
    for (const ZrCmColor& color : page->colors)
        names << QString::fromWCharArray(color.colorName());
    return names;
}

QString foundName(const QString& book, const QString& colour)
{
    ZrCmColor color;
    if (!books()->getColor(ZrString(book), ZrString(colour), color))
        return QString();
    return QString::fromWCharArray(color.colorName());
}

QStringList bookNames()
{
    ZrArray<ZrString> names;
    books()->getColorBookNames(names);
    QStringList out;
    for (const ZrString& name : names)
        out << name.toQString();
    return out;
}

struct ToolRun
{
    int exitCode = -1;
    QString out;
    QString err;
};

ToolRun runZracb(const QStringList& args)
{
    QProcess process;
    process.start(QStringLiteral(ZR_ZRACB_FILE), args);
    ToolRun run;
    if (!process.waitForFinished(60000))
        return run;
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace

class TestColorBooks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host.reset(new ZrTest::Host); }
    void cleanup() { m_host.reset(); }

    void unmasking_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("red");
        QTest::addColumn<QByteArray>("green");
        QTest::addColumn<QByteArray>("blue");
        QTest::addColumn<uint>("word");
        // Each text holds high digit 1 and low digit 2 with base 'a', each in its own positions.
        QTest::newRow("digit positions") << QByteArray() << QByteArray("cab") << QByteArray("bca")
                                         << QByteArray("abc") << 0x121212u;
        // Low digit 'a' - 'd' = -3 reads as 23; high digit 'd' - 'd' = 0.
        QTest::newRow("negative difference") << QByteArray() << QByteArray("add") << QByteArray("aaa")
                                             << QByteArray("aaa") << 23u;
        // Both digits wrap, and the byte keeps its low 8 bits: 24 * 16 + 23 = 407.
        QTest::newRow("byte kept to 8 bits") << QByteArray() << QByteArray("adb") << QByteArray("aaa")
                                             << QByteArray("aaa") << 151u;
        // The key's low byte goes to blue, its high byte to red.
        QTest::newRow("key by channel") << QByteArray("A") << QByteArray("cab") << QByteArray("bca")
                                        << QByteArray("abc") << 0x531212u;
        QTest::newRow("key of UTF-8") << QByteArray("\xC3\xA9") << QByteArray("cab") << QByteArray("bca")
                                      << QByteArray("abc") << 0xD14412u;
    }
    void unmasking()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, red);
        QFETCH(QByteArray, green);
        QFETCH(QByteArray, blue);
        QFETCH(uint, word);
        QCOMPARE(zrutUnmaskBookColor(ZrUtf8String(name.toStdString()), ZrUtf8String(red.toStdString()),
                                     ZrUtf8String(green.toStdString()), ZrUtf8String(blue.toStdString())),
                 word);
    }

    void readerTakesOnlyWholeEntries()
    {
        BookFolder folder;
        const zracb::MaskedChannels emptyKey = zracb::maskChannels(QString(), 10, 20, 30);
        folder.addRaw(QStringLiteral("hand.acb"), bookText(
            "<colorPage>"
            "<pageColor><colorName>named</colorName>" + plainChannels("1", "2", "3") + "</pageColor>"
            + plainEntry("whole", "1", "2", "3")
            + "<colorEntry><colorName>two channels</colorName><RGB8><red>1</red><green>2</green></RGB8></colorEntry>"
            + "<colorEntry><colorName>late name</colorName></colorEntry>"
            // Channels before the name: the key is the empty name's.
            + "<colorEntry>" + maskedChannels(emptyKey.red, emptyKey.green, emptyKey.blue)
            + "<colorName>channels first</colorName></colorEntry>"
            + "<colorEntry><colorName>short text</colorName>" + maskedChannels("ab", "aaa", "aaa") + "</colorEntry>"
            + "<colorEntry><colorName>over 255</colorName>" + plainChannels("256", "0", "0") + "</colorEntry>"
            + "<colorEntry><colorName>letters</colorName>" + plainChannels("12ab", "x", " 7") + "</colorEntry>"
            + "<ColorEntry><colorName>wrong case</colorName>" + plainChannels("1", "2", "3") + "</ColorEntry>"
            "<colorEntry extra=\"ignored\"><note/><colorName>with extras</colorName>" + plainChannels("4", "5", "6")
            + "</colorEntry>"
            "</colorPage>"
            "<colorPage><pageColor>" + plainChannels("7", "8", "9") + "</pageColor></colorPage>"));
        folder.use();

        QCOMPARE(books()->getPageNum(ZrString(L"Hand")), 2);
        const SXuBookColorPage* first = books()->getColorPage(ZrString(L"Hand"), 0);
        QCOMPARE(colorNames(first), QStringList({QStringLiteral("whole"), QStringLiteral("channels first"),
                                                 QStringLiteral("over 255"), QStringLiteral("letters"),
                                                 QStringLiteral("with extras")}));
        // A page colour beside a name is dropped; without one it is taken.
        QCOMPARE(first->pageColor, 0u);
        QCOMPARE(books()->getColorPage(ZrString(L"Hand"), 1)->pageColor, 0x090807u);

        QCOMPARE(rgbOf(first->colors[1]), (Rgb{10, 20, 30}));
        // No range test: 256 in red is green 1.
        QCOMPARE(rgbOf(first->colors[2]), (Rgb{0, 1, 0}));
        // Channels read as the C runtime reads numbers: up to the first other character.
        QCOMPARE(rgbOf(first->colors[3]), (Rgb{12, 0, 7}));
        QCOMPARE(QString::fromWCharArray(first->colors[0].bookName()), QStringLiteral("Hand"));
        QVERIFY(first->colors[0].isByColor());
    }

    void badBooksAreMissingOrEmpty_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("listed");
        const QByteArray good = bookText("<colorPage>" + plainEntry("ok", "1", "2", "3") + "</colorPage>");
        QTest::newRow("truncated") << good.left(good.size() - 30) << false;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("no book name") << QByteArray("<colorBook><colorPage/></colorBook>") << false;
        QByteArray huge = good;
        huge.insert(huge.indexOf("</colorBook>"), "<!--" + QByteArray(50 * 1024 * 1024, 'x') + "-->");
        QTest::newRow("50 MB") << huge << false;
        const int depth = 10000;
        QByteArray deep = "<colorPage>";
        for (int i = 0; i < depth; ++i)
            deep += "<colorEntry>";
        for (int i = 0; i < depth; ++i)
            deep += "</colorEntry>";
        QTest::newRow("nested 10 000 deep") << bookText(deep + "</colorPage>") << true;
        QTest::newRow("invalid UTF-8 in a name")
            << bookText("<colorPage>" + plainEntry("\xff\xfe\xc3", "1", "2", "3") + "</colorPage>") << true;
    }
    void badBooksAreMissingOrEmpty()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, listed);
        BookFolder folder;
        folder.addRaw(QStringLiteral("bad.acb"), bytes);
        folder.add(QStringLiteral("good.acb"), QStringLiteral("Good"), {bookColor(QStringLiteral("ok"), 1, 2, 3)});
        folder.use();
        QCOMPARE(bookNames().contains(QStringLiteral("Hand")), listed);
        QVERIFY(books()->getPageNum(ZrString(L"Hand")) <= 1);
        if (const SXuBookColorPage* page = books()->getColorPage(ZrString(L"Hand"), 0))
            QVERIFY(page->colors.length() <= 1);
        ZrCmColor color;
        QVERIFY(!books()->getColor(ZrString(L"Hand"), ZrString(L"ok 1"), color));
        // The good book beside it is untouched.
        QCOMPARE(foundName(QStringLiteral("Good"), QStringLiteral("OK")), QStringLiteral("ok"));
    }

    void coloursAreFoundByNameWithDigitsAndBlanks()
    {
        BookFolder folder;
        folder.add(QStringLiteral("zr.acb"), QStringLiteral("ZR Test"),
                   {bookColor(QStringLiteral("Harbour Blue"), 1, 1, 1), bookColor(QStringLiteral("ZR 120 Harbour Blue 3"), 2, 2, 2),
                    bookColor(QStringLiteral("ZR 120 Harbour Blue 13"), 3, 3, 3),
                    bookColor(QStringLiteral("Deep Harbour Blue"), 4, 4, 4), bookColor(QStringLiteral("ZR120Sand"), 5, 5, 5)},
                   true, 2);
        folder.use();
        const QString book = QStringLiteral("zr test");
        // Whole names ignoring case first, on any page.
        QCOMPARE(foundName(book, QStringLiteral("deep harbour blue")), QStringLiteral("Deep Harbour Blue"));
        QCOMPARE(foundName(book, QStringLiteral("zr 120 harbour blue 13")), QStringLiteral("ZR 120 Harbour Blue 13"));
        // Without digits only whole names.
        QCOMPARE(foundName(book, QStringLiteral("Harbour")), QString());
        QCOMPARE(foundName(book, QStringLiteral("HarbourBlue")), QString());
        // With digits a part matches as it is written, case and all; the first entry that holds it wins.
        QCOMPARE(foundName(book, QStringLiteral("Blue 1")), QStringLiteral("ZR 120 Harbour Blue 13"));
        QCOMPARE(foundName(book, QStringLiteral("120 Harbour")), QStringLiteral("ZR 120 Harbour Blue 3"));
        QCOMPARE(foundName(book, QStringLiteral("120 harbour")), QString());
        // With digits, blanks do not count, nor case, for names that hold blanks.
        QCOMPARE(foundName(book, QStringLiteral("zr120harbourblue13")), QStringLiteral("ZR 120 Harbour Blue 13"));
        QCOMPARE(foundName(book, QStringLiteral("ZR120Harbour Blue 3")), QStringLiteral("ZR 120 Harbour Blue 3"));
        // A name without blanks must be typed without them.
        QCOMPARE(foundName(book, QStringLiteral("zr 120 sand")), QString());
        QCOMPARE(foundName(book, QStringLiteral("zr120sand")), QStringLiteral("ZR120Sand"));

        int page = -1;
        QVERIFY(books()->getColorPageIndex(ZrString(book), ZrString(L"DEEP harbour blue"), page));
        QCOMPARE(page, 1);
        QVERIFY(!books()->getColorPageIndex(ZrString(book), ZrString(L"Blue 1"), page));
        QVERIFY(!books()->getColorPageIndex(ZrString(book), ZrString(), page));
        QCOMPARE(foundName(QString(), QStringLiteral("Harbour Blue")), QString());
        QCOMPARE(foundName(QStringLiteral("No Such Book"), QStringLiteral("Harbour Blue")), QString());

        ZrCmColor color;
        QVERIFY(books()->getColor(ZrString(book), 2, 0, color));
        QCOMPARE(QString::fromWCharArray(color.colorName()), QStringLiteral("ZR120Sand"));
        QVERIFY(!books()->getColor(ZrString(book), 2, 1, color));
        QVERIFY(!books()->getColor(ZrString(book), 3, 0, color));
        QVERIFY(!books()->getColorPage(ZrString(book), -1));
    }

    void zracbMakeThenDumpGivesEveryColourBack_data()
    {
        QTest::addColumn<bool>("masked");
        QTest::newRow("plain") << false;
        QTest::newRow("masked") << true;
    }
    void zracbMakeThenDumpGivesEveryColourBack()
    {
        QFETCH(bool, masked);
        QTemporaryDir dir;
        const QString input = dir.filePath(QStringLiteral("in.gpl"));
        const QByteArray palette = "GIMP Palette\nName: Ignored\nColumns: 3\n#\n"
                                   "255   0   0\tRed & <Bold>\n"
                                   "  0 128 255\tZR 7  two blanks\n"
                                   " 12  34  56\t漢字 é\n"
                                   "  0   0   0\tblack\n";
        BookFolder::use({});
        writeFile(input, palette);
        const QString book = dir.filePath(QStringLiteral("out.acb"));
        QStringList args = {QStringLiteral("make"), input, book, QStringLiteral("--page-size"), QStringLiteral("3"),
                            QStringLiteral("--name"), QStringLiteral("Tool & Book")};
        if (masked)
            args << QStringLiteral("--masked");
        const ToolRun made = runZracb(args);
        QVERIFY2(made.exitCode == 0, qPrintable(made.err));
        QFile written(book);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll().contains("RGB8Encrypt"), masked);

        const ToolRun dumped = runZracb({QStringLiteral("dump"), book});
        QCOMPARE(dumped.exitCode, 0);
        QCOMPARE(dumped.out, QStringLiteral("Name: Tool & Book\n"
                                            "# page 1, page colour 255 0 0\n"
                                            "255 0 0\tRed & <Bold>\n"
                                            "0 128 255\tZR 7  two blanks\n"
                                            "12 34 56\t漢字 é\n"
                                            "# page 2, page colour 0 0 0\n"
                                            "0 0 0\tblack\n"));
    }

    void zracbRefusesBadInputNamingTheLine()
    {
        QTemporaryDir dir;
        const QString book = dir.filePath(QStringLiteral("out.acb"));
        writeFile(book, "old");
        const struct
        {
            QByteArray text;
            QString message;
        } cases[] = {
            {"1 2 3 ok\n# note\n1 2 300 too big\n", QStringLiteral("line 3:")},
            {"1 2 3\n", QStringLiteral("line 1: the colour has no name")},
            {"1 2 3 ok\n1 2 three x\n", QStringLiteral("line 2:")},
            {"1 2 3 bad \xff name\n", QStringLiteral("line 1: not UTF-8")},
            {"# nothing\n", QStringLiteral("no colours")},
        };
        for (const auto& bad : cases) {
            const QString input = dir.filePath(QStringLiteral("bad.txt"));
            writeFile(input, bad.text);
            const ToolRun run = runZracb({QStringLiteral("make"), input, book});
            QCOMPARE(run.exitCode, 2);
            QVERIFY2(run.err.contains(bad.message), qPrintable(run.err));
        }
        QFile old(book);
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), QByteArray("old"));

        QCOMPARE(runZracb({QStringLiteral("make"), QStringLiteral("only-one")}).exitCode, 2);
        QCOMPARE(runZracb({QStringLiteral("make"), book, book, QStringLiteral("--page-size"), QStringLiteral("0")}).exitCode, 2);
        QCOMPARE(runZracb({QStringLiteral("frobnicate")}).exitCode, 2);
        const ToolRun notABook = runZracb({QStringLiteral("dump"), book});
        QCOMPARE(notABook.exitCode, 2);
        QVERIFY(notABook.err.contains(book));
    }

    void zracbSaysWhenTheBookCannotBeWritten()
    {
        QTemporaryDir dir;
        const QString input = dir.filePath(QStringLiteral("in.txt"));
        writeFile(input, "1 2 3 one\n");
        const QString book = dir.filePath(QStringLiteral("no-such-folder/out.acb"));
        const ToolRun run = runZracb({QStringLiteral("make"), input, book});
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.err.contains(book), qPrintable(run.err));
    }

private:
    std::unique_ptr<ZrTest::Host> m_host;
};

ZR_TEST_SUITE(TestColorBooks)
#include "tst_colorbooks.moc"
