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
        QTest::newRow("dark") << 2 << "a.svg" << false << "/ImageRes/dark/a.svg";
        QTest::newRow("any other theme is dark") << 0 << "a.svg" << false << "/ImageRes/dark/a.svg";
        QTest::newRow("subfolder") << 1 << "sub/b.png" << false << "/ImageRes/light/sub/b.png";
        QTest::newRow("raw") << 1 << "raw.svg" << true << "/ImageRes/raw.svg";
        QTest::newRow("raw never themed") << 1 << "a.svg" << true << "";
        QTest::newRow("themed never raw") << 1 << "raw.svg" << false << "";
        QTest::newRow("ribbon fall-back") << 2 << "ribbon.svg" << false << "/RibbonIcon/dark/ribbon.svg";
        QTest::newRow("raw has no fall-back") << 1 << "ribbon.svg" << true << "";
        QTest::newRow("missing") << 1 << "nothing.svg" << false << "";
        QTest::newRow("empty name") << 1 << "" << false << "";
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

    void backslashesBecomeSlashes()
    {
        // A root written with backslashes still names the same folder once they are turned around.
        QString root = m_root.path();
        const QString link = m_root.path() + QStringLiteral("\\x");
        QVERIFY(QFile::link(root, link));
        ZrHostControl::setResourceRoot(link);
        QCOMPARE(zrutGetImageFullPath(QStringLiteral("a.svg"), false), root + QStringLiteral("/x/ImageRes/light/a.svg"));
        QFile::remove(link);
    }

    void noRootGivesNothing()
    {
        zr_runtime_config("")->SetDataNull("ResRootPath");
        QVERIFY(zrutGetImageFullPath(QStringLiteral("a.svg"), false).isEmpty());
        zr_runtime_config("")->removeProperty("ResRootPath");
        QVERIFY(zrutGetImageFullPath(QStringLiteral("a.svg"), false).isEmpty());
    }

    void shippedImagesAreThere()
    {
        ZrHostControl::setResourceRoot(QStringLiteral(ZR_RESOURCE_ROOT));
        for (int theme : {1, 2}) {
            ZrHostControl::setTheme(theme);
            QVERIFY(!zrutGetImageFullPath(QStringLiteral("question.svg"), false).isEmpty());
            QVERIFY(!zrutGetImageFullPath(QStringLiteral("TriangleWarningBig.svg"), false).isEmpty());
            QVERIFY(!zrutGetImageFullPath(QStringLiteral("common/information.svg"), true).isEmpty());
            QVERIFY(!zrutGetImageFullPath(QStringLiteral("common/error.png"), true).isEmpty());
            QVERIFY(!zrutGetImageFullPath(QStringLiteral("zrapp/zrapp.svg"), true).isEmpty());
        }
    }
};

ZR_TEST_SUITE(TestImagePath)
#include "tst_imagepath.moc"
