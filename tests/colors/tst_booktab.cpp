// The colour book tab as a user meets it in the colour dialog: pages stepped through with the strip
// and its buttons, colours picked from the bars or typed by name, and books that are empty, huge or
// gone while the dialog is open.

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
#include <QImage>
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

    // The strip stops at its ends; every step shows the page's bars with none framed.
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
        QTest::newRow("blanks added") << "Har bour 2 01" << "Harbour 201";
        QTest::newRow("digits inside a longer name") << "100" << "Harbour 100 A";
        QTest::newRow("other case, no blanks") << "HARBOUR300" << "Harbour 300";
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

    // Without digits a name must match whole; the message names the book and the choice stays open.
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

    // The first click of a double click picks the bar; the second accepts with it.
    void doubleClickOnBarAccepts()
    {
        const Outcome out = runColorDialog(QStringLiteral(R"({"tabs":4,"method":195,"index":1})"), [&](ZrColorDialog* dialog) {
            QTest::mouseClick(dialogChild<QPushButton>(dialog, "colorBookPageDown"), Qt::LeftButton);
            ZrUiColorListLabel* list = bars(dialog);
            QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, stripCentre(list, 0, 2));
            QTest::mouseDClick(list, Qt::LeftButton, Qt::NoModifier, stripCentre(list, 0, 2));
        });
        QVERIFY(!out.leftOpen);
        QCOMPARE(out.result, 1);
        QCOMPARE(text(out.param, "colorName"), QStringLiteral("Harbour 200"));
        QCOMPARE(rgbOf(out.param), word(70, 80, 90));
    }

    // A book colour opens the book tab at its page with its bar framed, where there is a third tab;
    // with fewer tabs the tab stays where it was, counted by position.
    void tabForABookColor_data()
    {
        QTest::addColumn<int>("tabs");
        QTest::addColumn<int>("current");
        QTest::addColumn<bool>("onBookTab");
        QTest::newRow("three tabs") << 7 << 2 << true;
        QTest::newRow("book tab alone") << 4 << 0 << true;
        QTest::newRow("index and book") << 5 << 0 << false;
    }
    void tabForABookColor()
    {
        QFETCH(int, tabs);
        QFETCH(int, current);
        QFETCH(bool, onBookTab);
        const QString json = QStringLiteral(R"({"tabs":%1,"method":194,"rgb":%2,"colorName":"Harbour 201","bookName":"Harbour"})")
                                 .arg(tabs)
                                 .arg(word(100, 110, 120));
        int tabCount = 0;
        int currentTab = -1;
        bool bookTabShown = false;
        int page = -1;
        int entry = -1;
        QString red;
        runColorDialog(json, [&](ZrColorDialog* dialog) {
            tabCount = dialog->tabWidget()->count();
            currentTab = dialog->tabWidget()->currentIndex();
            bookTabShown = qobject_cast<ZrUiColorBookTab*>(dialog->tabWidget()->currentWidget()) != nullptr;
            page = pageStrip(dialog)->currentPage();
            entry = bars(dialog)->currentEntry();
            red = dialogChild<QLabel>(dialog, "bookRedLabel")->text();
        });
        if (tabs == 7 && tabCount < 3)
            QSKIP("this build's dialog has no true colour tab");
        QCOMPARE(currentTab, current);
        QCOMPARE(bookTabShown, onBookTab);
        QCOMPARE(page, 1);
        QCOMPARE(entry, 1);
        QCOMPARE(red, QStringLiteral("  红:   100"));
    }

    // The names on the bars turn from white to black where the channels add up to 384.
    void barTextFlipsAt384()
    {
        BookFolder flip;
        flip.add(QStringLiteral("flip.acb"), QStringLiteral("Flip"),
                 {bookColor(QStringLiteral("WWWWWWWW"), 127, 128, 128), bookColor(QStringLiteral("BBBBBBBB"), 128, 128, 128)});
        flip.use();
        ZrUiColorListLabel list;
        list.resize(200, 80);
        list.setBookInfo(QStringLiteral("Flip"), 0, -1);
        QCOMPARE(list.entryCount(), 2);
        const QImage image = list.grab().toImage();
        const auto countOf = [&image](QRgb wanted, int top, int bottom) {
            int count = 0;
            for (int y = top; y < bottom; ++y)
                for (int x = 0; x < image.width(); ++x)
                    count += image.pixel(x, y) == wanted;
            return count;
        };
        QCOMPARE(image.pixel(2, 20), qRgb(127, 128, 128));
        QCOMPARE(image.pixel(2, 60), qRgb(128, 128, 128));
        QVERIFY(countOf(qRgb(255, 255, 255), 0, 40) > 10);
        QCOMPARE(countOf(qRgb(0, 0, 0), 0, 39), 0);
        QVERIFY(countOf(qRgb(0, 0, 0), 41, 80) > 10);
        QCOMPARE(countOf(qRgb(255, 255, 255), 41, 80), 0);
    }

    // The bars show the page and the size asked for, also when coming back to one shown before, and a
    // book read again from its file shows its new colours.
    void barsFollowPageSizeAndBook()
    {
        ZrUiColorListLabel list;
        list.resize(200, 80);
        const auto barsAre = [&list](int y0, QRgb first, int y1, QRgb second) {
            const QImage image = list.grab().toImage();
            return image.pixel(2, y0) == first && image.pixel(image.width() - 3, y1) == second;
        };
        list.setBookInfo(QStringLiteral("Harbour"), 0, -1);
        QVERIFY(barsAre(20, qRgb(10, 20, 30), 60, qRgb(40, 50, 60)));
        list.setBookInfo(QStringLiteral("Harbour"), 1, -1);
        QVERIFY(barsAre(20, qRgb(70, 80, 90), 60, qRgb(100, 110, 120)));
        list.setBookInfo(QStringLiteral("Harbour"), 0, -1);
        QVERIFY(barsAre(20, qRgb(10, 20, 30), 60, qRgb(40, 50, 60)));
        list.resize(300, 160);
        QVERIFY(barsAre(120, qRgb(40, 50, 60), 150, qRgb(40, 50, 60)));
        QVERIFY(barsAre(20, qRgb(10, 20, 30), 70, qRgb(10, 20, 30)));

        BookFolder repainted;
        repainted.add(QStringLiteral("harbour.acb"), QStringLiteral("Harbour"),
                      {bookColor(QStringLiteral("Harbour 100 A"), 200, 20, 30),
                       bookColor(QStringLiteral("Harbour 101"), 40, 50, 60)});
        repainted.use();
        list.setBookInfo(QStringLiteral("Harbour"), 0, -1);
        QVERIFY(barsAre(20, qRgb(200, 20, 30), 120, qRgb(40, 50, 60)));
    }

    // The strip shows a book read again with its new page colours, also when the manager puts the new
    // record where the old one was, as it does when the folders are looked at again.
    void stripFollowsABookReadAgain()
    {
        ZrUiColorBookPageLabel strip;
        strip.resize(20, 90);
        const auto firstStrip = [&strip] { return strip.grab().toImage().pixel(10, 15); };
        strip.setBookName(QStringLiteral("Harbour"), 2);
        QCOMPARE(firstStrip(), qRgb(10, 20, 30));

        BookFolder repainted;
        QVector<zracb::BookColor> colors = harbourColors();
        colors[0] = bookColor(QStringLiteral("Harbour 100 A"), 200, 20, 30);
        repainted.add(QStringLiteral("harbour.acb"), QStringLiteral("Harbour"), colors, true, 2);
        repainted.use();
        strip.setBookName(QStringLiteral("Harbour"), 2);
        QCOMPARE(strip.pageCount(), 3);
        QCOMPARE(firstStrip(), qRgb(200, 20, 30));
    }

    // Books with nothing in them, a huge one, a long name, and a folder that goes away: the tab shows
    // what there is and the user can still pick and accept.
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

    // With no book anywhere the tab says where books are looked for, and OK still takes the colour.
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
