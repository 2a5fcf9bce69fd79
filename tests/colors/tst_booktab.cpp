// The colour book tab in the colour dialog: pages, bars, names typed, and odd or missing books.

#include "colorbooktesthelpers.h"
#include "colordialogrunner.h"
#include "colortabactions.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include "uicolorbooktab.h"
#include "uicolorwidgets.h"
#include "zrcolordialog.h"

#include "zrui.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <memory>

namespace {

using ZrTest::clickOk;
using ColorTest::BookFolder;
using ColorTest::bookColor;
using ColorTest::dialogChild;
using ColorTest::runColorDialog;
using Outcome = ColorTest::DialogOutcome;

ZrUiColorBookPageLabel* pageStrip(QWidget* dialog) { return dialogChild<ZrUiColorBookPageLabel>(dialog, "colorBookPageLabel"); }
ZrUiColorListLabel* bars(QWidget* dialog) { return dialogChild<ZrUiColorListLabel>(dialog, "colorBookList"); }

// The middle of strip `index` of `count` strips down `widget`.
QPoint stripCentre(QWidget* widget, int index, int count)
{
    const double height = double(widget->height()) / count;
    return QPoint(widget->width() / 2, int((index + 0.5) * height));
}

void clickBar(QWidget* dialog, int entry)
{
    ZrUiColorListLabel* list = bars(dialog);
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, stripCentre(list, entry, list->entryCount()));
}

void chooseBook(QWidget* dialog, const QString& name)
{
    auto* combo = dialogChild<QComboBox>(dialog, "colorBookCombo");
    const int index = combo->findText(name);
    QVERIFY2(index != -1, qPrintable(name));
    combo->setCurrentIndex(index);
    Q_EMIT combo->activated(index);
}

void typeName(QWidget* dialog, const QString& text) { ColorTabTest::retype(dialogChild(dialog, "bookColorLineEdit"), text); }

QString text(const ZrJsonPtr& param, const char* key) { return param->GetVarS(key).toQString(); }
uint rgbOf(const ZrJsonPtr& param) { return uint(param->GetVarI("rgb", -1)); }
uint word(int r, int g, int b) { return uint(r | (g << 8) | (b << 16)); }

// "Harbour" has three pages of two colours; names hold digits and blanks as numbered books do.
QVector<zracb::BookColor> harbourColors()
{
    return {bookColor(QStringLiteral("Harbour 100 A"), 10, 20, 30), bookColor(QStringLiteral("Harbour 101"), 40, 50, 60),
            bookColor(QStringLiteral("Harbour 200"), 70, 80, 90), bookColor(QStringLiteral("Harbour 201"), 100, 110, 120),
            bookColor(QStringLiteral("Harbour 300"), 130, 140, 150), bookColor(QStringLiteral("Harbour 301"), 160, 170, 180)};
}

const char kEmptyBookXml[] = "<colorBook><bookName>Empty Book</bookName></colorBook>";
const char kBlankPageXml[] = "<colorBook><bookName>Blank Page</bookName><colorPage>"
                             "<pageColor><RGB8><red>1</red><green>2</green><blue>3</blue></RGB8></pageColor>"
                             "</colorPage></colorBook>";

} // namespace

class TestBookTab : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_host.reset(new ZrTest::Host);
        m_books.reset(new BookFolder);
        m_books->add(QStringLiteral("harbour.acb"), QStringLiteral("Harbour"), harbourColors(), true, 2);
        m_books->use();
    }
    void cleanup()
    {
        m_books.reset();
        BookFolder::use({});
        m_host.reset();
    }

    void pageStripEndsAndButtons()
    {
        QVector<int> pages;
        QVector<int> listPages;
        const Outcome out = runColorDialog(QStringLiteral(R"({"tabs":4,"method":195,"index":1})"), [&](ZrColorDialog* dialog) {
            ZrUiColorBookPageLabel* strip = pageStrip(dialog);
            QCOMPARE(strip->pageCount(), 3);
            const auto note = [&] {
                pages << strip->currentPage();
                listPages << bars(dialog)->GetCurrentBookColorPageIndex();
            };
            note();
            QPushButton* up = dialogChild<QPushButton>(dialog, "colorBookPageUp");
            QPushButton* down = dialogChild<QPushButton>(dialog, "colorBookPageDown");
            QTest::mouseClick(up, Qt::LeftButton);
            note();
            QTest::mouseClick(down, Qt::LeftButton);
            QTest::mouseClick(down, Qt::LeftButton);
            note();
            QTest::mouseClick(down, Qt::LeftButton);
            note();
            // Below the last strip is the last page; the top pixel is the first.
            QTest::mouseClick(strip, Qt::LeftButton, Qt::NoModifier, QPoint(3, 0));
            note();
            QTest::mouseClick(strip, Qt::LeftButton, Qt::NoModifier, QPoint(3, strip->height() - 1));
            note();
            QCOMPARE(bars(dialog)->currentEntry(), -1);
            clickBar(dialog, 1);
            clickOk(dialog);
        });
        QCOMPARE(pages, (QVector<int>{0, 0, 2, 2, 0, 2}));
        QCOMPARE(listPages, pages);
        QCOMPARE(out.result, 1);
        QCOMPARE(out.param->GetVarI("method", -1), 194);
        QCOMPARE(text(out.param, "colorName"), QStringLiteral("Harbour 301"));
        QCOMPARE(text(out.param, "bookName"), QStringLiteral("Harbour"));
        QCOMPARE(rgbOf(out.param), word(160, 170, 180));
    }

    void chooseByName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("other case") << "harbour 201" << "Harbour 201";
        QTest::newRow("blanks left out") << "Harbour201" << "Harbour 201";
        QTest::newRow("digits inside a longer name") << "100" << "Harbour 100 A";
    }
    void chooseByName()
    {
        QFETCH(QString, typed);
        QFETCH(QString, name);
        // A refusal would bring up its message: answered, so that it shows in the log below.
        ZrHostControl::pushMessageBoxAnswer(1);
        const Outcome out = runColorDialog(QStringLiteral(R"({"tabs":4,"method":195,"index":1})"), [&](ZrColorDialog* dialog) {
            typeName(dialog, typed);
            clickOk(dialog);
        });
        QCOMPARE(out.result, 1);
        QCOMPARE(text(out.param, "colorName"), name);
        QCOMPARE(text(out.param, "bookName"), QStringLiteral("Harbour"));
        QVERIFY(ZrHostControl::messageLog().isEmpty());
    }

    void unknownNameKeepsTheDialogOpen()
    {
        ZrHostControl::pushMessageBoxAnswer(1);
        const Outcome out = runColorDialog(QStringLiteral(R"({"tabs":4,"method":195,"index":3})"), [&](ZrColorDialog* dialog) {
            typeName(dialog, QStringLiteral("Harbour"));
            clickOk(dialog);
        });
        QVERIFY(out.leftOpen);
        QCOMPARE(out.result, 2);
        QCOMPARE(out.param->GetVarI("index", -1), 3);
        const auto log = ZrHostControl::messageLog();
        QCOMPARE(log.size(), 1);
        QCOMPARE(log.first().text, QStringLiteral("Harbour 配色系统中的颜色名无效。"));
    }

    void badBooks()
    {
        BookFolder odd;
        odd.addRaw(QStringLiteral("empty.acb"), kEmptyBookXml);
        odd.addRaw(QStringLiteral("blank.acb"), kBlankPageXml);
        QVector<zracb::BookColor> many;
        for (int i = 0; i < 1000; ++i)
            many << bookColor(QStringLiteral("Big %1").arg(i), i % 256, (i / 4) % 256, 7);
        odd.add(QStringLiteral("big.acb"), QStringLiteral("Big"), many, false, 1);
        const QString longName(500, QLatin1Char('x'));
        odd.add(QStringLiteral("long.acb"), QStringLiteral("Long"), {bookColor(longName, 1, 2, 3)});
        auto going = std::make_unique<BookFolder>();
        going->add(QStringLiteral("going.acb"), QStringLiteral("Going"), harbourColors(), false, 2);
        BookFolder::use({odd.path(), going->path(), m_books->path()});

        QStringList listed;
        QVector<int> pageCounts;
        const Outcome out = runColorDialog(QStringLiteral(R"({"tabs":4,"method":195,"index":1})"), [&](ZrColorDialog* dialog) {
            auto* combo = dialogChild<QComboBox>(dialog, "colorBookCombo");
            for (int i = 0; i < combo->count(); ++i)
                listed << combo->itemText(i);
            ZrUiColorBookPageLabel* strip = pageStrip(dialog);
            for (const char* name : {"Empty Book", "Blank Page", "Big", "Long"}) {
                chooseBook(dialog, QLatin1String(name));
                pageCounts << strip->pageCount();
                QTest::mouseClick(strip, Qt::LeftButton, Qt::NoModifier, QPoint(2, strip->height() - 1));
                QTest::mouseClick(dialogChild<QPushButton>(dialog, "colorBookPageDown"), Qt::LeftButton);
                QTest::mouseClick(bars(dialog), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
                dialog->grab();
            }
            QCOMPARE(strip->currentPage(), 0);
            QCOMPARE(dialogChild<QLineEdit>(dialog, "bookColorLineEdit")->text(), longName);
            // The folder goes; the book was never opened, so it shows no pages, and the rest go on.
            going.reset();
            chooseBook(dialog, QStringLiteral("Going"));
            QCOMPARE(strip->pageCount(), 0);
            dialog->grab();
            chooseBook(dialog, QStringLiteral("Big"));
            // Strips thinner than a pixel: the bottom pixel is one of the last pages, the button the last.
            QTest::mouseClick(strip, Qt::LeftButton, Qt::NoModifier, QPoint(2, strip->height() - 1));
            QVERIFY(strip->currentPage() >= 990);
            for (int i = 0; i < 10; ++i)
                QTest::mouseClick(dialogChild<QPushButton>(dialog, "colorBookPageDown"), Qt::LeftButton);
            QCOMPARE(strip->currentPage(), 999);
            clickBar(dialog, 0);
            clickOk(dialog);
        });
        QCOMPARE(listed, (QStringList{"Big", "Blank Page", "Empty Book", "Going", "Harbour", "Long"}));
        QCOMPARE(pageCounts, (QVector<int>{0, 1, 1000, 1}));
        QCOMPARE(out.result, 1);
        QCOMPARE(text(out.param, "colorName"), QStringLiteral("Big 999"));
        QCOMPARE(rgbOf(out.param), word(999 % 256, (999 / 4) % 256, 7));
    }

    void noBooksInstalled()
    {
        QTemporaryDir emptyFolder;
        BookFolder::use({emptyFolder.path()});
        QString item;
        bool comboEnabled = true;
        QString note;
        const Outcome out = runColorDialog(QStringLiteral(R"({"tabs":4,"method":195,"index":5})"), [&](ZrColorDialog* dialog) {
            auto* combo = dialogChild<QComboBox>(dialog, "colorBookCombo");
            item = combo->currentText();
            comboEnabled = combo->isEnabled();
            note = dialogChild<QTextEdit>(dialog, "colorBookNone")->toPlainText();
            QVERIFY(!dialog->findChild<QLabel*>(QStringLiteral("bookRedLabel")));
            clickOk(dialog);
        });
        QCOMPARE(item, QStringLiteral("未安装任何配色系统"));
        QVERIFY(!comboEnabled);
        QVERIFY2(note.contains(QStringLiteral("修改 配色系统位置 查找")), qPrintable(note));
        QVERIFY2(note.contains(emptyFolder.path()), qPrintable(note));
        QCOMPARE(out.result, 1);
        QCOMPARE(out.param->GetVarI("index", -1), 5);
    }

private:
    std::unique_ptr<ZrTest::Host> m_host;
    std::unique_ptr<BookFolder> m_books;
};

ZR_TEST_SUITE(TestBookTab)
#include "tst_booktab.moc"
