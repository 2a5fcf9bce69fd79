// The host's XML reader, as the colour books use it: the tree of a good file,
// and every kind of bad file refused or read safely, never a crash or a hang.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrxmlfiler.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

struct FilerDeleter
{
    void operator()(CXuUtXmlFiler* filer) const { CXuUtXmlFiler::destroyInstance(filer); }
};
using Filer = std::unique_ptr<CXuUtXmlFiler, FilerDeleter>;

Filer newFiler() { return Filer(CXuUtXmlFiler::createInstance()); }

QString nameOf(const CXuUtXmlNode* node)
{
    ZrString name;
    node->getName(name);
    return name.toQString();
}

QString textOf(const CXuUtXmlNode* node)
{
    ZrString text;
    node->getText(text);
    return text.toQString();
}

QByteArray nested(int depth, bool closed)
{
    QByteArray text;
    for (int i = 0; i < depth; ++i)
        text += "<n>";
    text += "deep";
    if (closed) {
        for (int i = 0; i < depth; ++i)
            text += "</n>";
    }
    return text;
}

} // namespace

class XmlFilerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheElementTree()
    {
        const QString path = file("book.xml",
                                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                  "<!-- a book of our own -->\n"
                                  "<colorBook>\n"
                                  "  <bookName>色册 &amp; 1</bookName>\n"
                                  "  <colorPage>\n"
                                  "    <pageColor><colorName>Sky</colorName></pageColor>\n"
                                  "    <?note skipped?>\n"
                                  "    <pageColor><colorName><![CDATA[a<b]]></colorName></pageColor>\n"
                                  "  </colorPage>\n"
                                  "  <colorPage/>\n"
                                  "  <ColorPage/>\n"
                                  "  <mixed>one<b>inner</b>two</mixed>\n"
                                  "  <blank>  </blank>\n"
                                  "</colorBook>\n");
        Filer filer = newFiler();
        QVERIFY(!filer->getRootNode());
        QVERIFY(filer->loadFile(ZrString(path)));
        CXuUtXmlNode* root = filer->getRootNode();
        QVERIFY(root);
        QCOMPARE(nameOf(root), QStringLiteral("colorBook"));
        QCOMPARE(root->childCount(), 6);
        QCOMPARE(textOf(root->child(ZrString(L"bookName"))), QStringLiteral("色册 & 1"));

        // The first child of the name, and names are matched with their case.
        CXuUtXmlNode* page = root->child(ZrString(L"colorPage"));
        QCOMPARE(page, root->childAt(1));
        QCOMPARE(root->child(ZrString(L"ColorPage")), root->childAt(3));
        QVERIFY(!root->child(ZrString(L"colorpage")));
        QVERIFY(!root->child(ZrString()));

        // Comments, instructions and text are no children.
        QCOMPARE(page->childCount(), 2);
        QCOMPARE(textOf(page->childAt(0)->child(ZrString(L"colorName"))), QStringLiteral("Sky"));
        QCOMPARE(textOf(page->childAt(1)->child(ZrString(L"colorName"))), QStringLiteral("a<b"));
        QVERIFY(!page->childAt(2));
        QVERIFY(!page->childAt(-1));
        QCOMPARE(root->childAt(2)->childCount(), 0);
        QVERIFY(!root->childAt(2)->childAt(0));

        // An element's own text leaves out its children's.
        QCOMPARE(textOf(root->child(ZrString(L"mixed"))), QStringLiteral("onetwo"));
        // Blanks are the text of an element that holds nothing else; indentation around children is not.
        QCOMPARE(textOf(root->child(ZrString(L"blank"))), QStringLiteral("  "));
        QCOMPARE(textOf(page), QString());
        // The same node each time it is asked for.
        QCOMPARE(root->childAt(4), root->child(ZrString(L"mixed")));
    }

    void aFailedLoadLeavesNothing()
    {
        Filer filer = newFiler();
        QVERIFY(filer->loadFile(ZrString(file("a.xml", "<a/>"))));
        QVERIFY(filer->loadFile(ZrString(file("b.xml", "<b><c/></b>"))));
        QCOMPARE(nameOf(filer->getRootNode()), QStringLiteral("b"));
        QVERIFY(!filer->loadFile(ZrString(file("bad.xml", "<b>"))));
        QVERIFY(!filer->getRootNode());
    }

    void refusesBadFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("not XML") << QByteArray("RGB8 colours: 255 0 0\n");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("truncated in a tag") << QByteArray("<colorBook><colorPage><pageCol");
        QTest::newRow("mismatched end") << QByteArray("<a><b></a></b>");
        QTest::newRow("two roots") << QByteArray("<a/><b/>");
        QTest::newRow("text beside the root") << QByteArray("<a/>x");
        QTest::newRow("nested 10000 deep, never closed") << nested(10000, false);
        QTest::newRow("binary") << QByteArray("\x00\x01\x02\xFF<a>", 7);
    }

    void refusesBadFiles()
    {
        QFETCH(QByteArray, bytes);
        Filer filer = newFiler();
        QVERIFY(!filer->loadFile(ZrString(file("bad.acb", bytes))));
        QVERIFY(!filer->getRootNode());
    }

    void refusesAnAbsurdSize()
    {
        // Well-formed, so only the size can refuse it: 64 MB is read, a byte more is not.
        const qint64 limit = qint64(64) << 20;
        QByteArray bytes("<a/>");
        bytes.append(int(limit) - bytes.size(), ' ');
        const QString path = file("huge.acb", bytes);
        Filer filer = newFiler();
        QVERIFY(filer->loadFile(ZrString(path)));
        bytes.clear();
        QFile huge(path);
        QVERIFY(huge.open(QIODevice::Append) && huge.write(" ", 1) == 1);
        huge.close();
        QVERIFY(!filer->loadFile(ZrString(path)));
        QVERIFY(!filer->getRootNode());
    }

private:
    QString file(const char* name, const QByteArray& bytes)
    {
        const QString path = m_dir.filePath(QString::fromUtf8(name));
        if (!writeFile(path, bytes))
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    QTemporaryDir m_dir;
};

ZR_TEST_SUITE(XmlFilerTest)
#include "tst_xmlfiler.moc"
