#include "zrtestmain.h"

#include <QApplication>
#include <QLocale>
#include <QStandardPaths>
#include <QTest>

#include <cstring>
#include <memory>

namespace ZrTest {

struct Suite
{
    const char* name;
    Factory factory;
};

static std::vector<Suite>& suites()
{
    static std::vector<Suite> s;
    return s;
}

bool registerSuite(const char* name, Factory factory)
{
    suites().push_back({name, std::move(factory)});
    return true;
}

} // namespace ZrTest

// Runs every registered suite, or only those named by "-suite NAME" arguments; the rest of the
// arguments go to QTest as usual.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? QByteArray("offscreen")
                                                                     : qgetenv("QT_QPA_PLATFORM"));
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);

    QStringList only;
    QStringList args;
    const QStringList all = app.arguments();
    for (int i = 0; i < all.size(); ++i) {
        if (all[i] == QLatin1String("-suite") && i + 1 < all.size())
            only << all[++i];
        else
            args << all[i];
    }

    int failed = 0;
    for (const auto& suite : ZrTest::suites()) {
        if (!only.isEmpty() && !only.contains(QLatin1String(suite.name)))
            continue;
        std::unique_ptr<QObject> test(suite.factory());
        failed += QTest::qExec(test.get(), args);
    }
    return failed == 0 ? 0 : 1;
}
