// Theme images: the folder by theme, raw images, the ribbon folder as fall-back, and separators.

#include "zrtesthost.h"
#include "zrtestmain.h"

#include "ZrQtUtilsFunc.h"

#include "zrconfig.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <memory>

class TestImagePath : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;
    QTemporaryDir m_root;

    void touch(const QString& relative)
    {
        const QString path = m_root.filePath(relative);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

private Q_SLOTS:
    void initTestCase()
    {
        touch(QStringLiteral("ImageRes/light/a.svg"));
        touch(QStringLiteral("ImageRes/dark/a.svg"));
        touch(QStringLiteral("ImageRes/light/sub/b.png"));
        touch(QStringLiteral("ImageRes/raw.svg"));
        touch(QStringLiteral("RibbonIcon/light/ribbon.svg"));
        touch(QStringLiteral("RibbonIcon/dark/ribbon.svg"));
    }

    void init()
    {
        m_host.reset(new ZrTest::Host(ZrTest::Host::Options{false, false}));
        ZrHostControl::setResourceRoot(m_root.path());
    }

    void cleanup() { m_host.reset(); }

    void lookups_data()
    {
        QTest::addColumn<int>("theme");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("raw");
        QTest::addColumn<QString>("expected");
        QTest::newRow("light") << 1 << "a.svg" << false << "/ImageRes/light/a.svg";
        QTest::newRow("any other theme is dark") << 0 << "a.svg" << false << "/ImageRes/dark/a.svg";
        QTest::newRow("raw") << 1 << "raw.svg" << true << "/ImageRes/raw.svg";
        QTest::newRow("raw never themed") << 1 << "a.svg" << true << "";
        QTest::newRow("themed never raw") << 1 << "raw.svg" << false << "";
        QTest::newRow("ribbon fall-back") << 2 << "ribbon.svg" << false << "/RibbonIcon/dark/ribbon.svg";
        QTest::newRow("raw has no fall-back") << 1 << "ribbon.svg" << true << "";
        QTest::newRow("backslash in name") << 1 << "sub\\b.png" << false << "";
    }

    void lookups()
    {
        QFETCH(int, theme);
        QFETCH(QString, name);
        QFETCH(bool, raw);
        QFETCH(QString, expected);
        ZrHostControl::setTheme(theme);
        QCOMPARE(zrutGetImageFullPath(name, raw), expected.isEmpty() ? QString() : m_root.path() + expected);
    }

};

ZR_TEST_SUITE(TestImagePath)
#include "tst_imagepath.moc"
