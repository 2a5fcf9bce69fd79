// The colour book tab switched to a 1 000-page book and painting its page strip and the bars of its
// first page, against a QListWidget filled with that page's names and swatches and painted.

#include "benchsupport.h"
#include "uicolorbookmng.h"
#include "uicolorbooktab.h"

#include "zrhostcontrol.h"

#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QListWidget>
#include <QPixmap>
#include <QVBoxLayout>
#include <cstdio>

namespace {

const char kPagesBook[] = "ZR Pages";
const char kOtherBook[] = "ZR Bench";

// Chooses a book in the tab's combo box as the user's click does.
void chooseBook(QComboBox* books, const char* name)
{
    const int index = books->findText(QLatin1String(name));
    books->setCurrentIndex(index);
    Q_EMIT books->activated(index);
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    const int rounds = app.intArgument(1, 21, 3);

    ZrHostControl::setColorBookFolders({QFileInfo(QStringLiteral(ZR_BENCH_PAGES_BOOK)).absolutePath(),
                                        QFileInfo(QStringLiteral(ZR_BENCH_COLORBOOK)).absolutePath()});
    CEdColorBookManager* manager = CEdColorBookManager::getInstance();
    manager->loadData();
    const int pageCount = manager->getPageNum(ZrString(QLatin1String(kPagesBook)));
    const SXuBookColorPage* firstPage = manager->getColorPage(ZrString(QLatin1String(kPagesBook)), 0);
    if (pageCount != 1000 || !firstPage) {
        std::fprintf(stderr, "bench_booktab: the book \"%s\" has %d pages, not 1000\n", kPagesBook, pageCount);
        return 1;
    }

    ZrCmColor newColor;
    ZrCmColor oldColor;
    QDialog dialog;
    auto* tab = new ZrUiColorBookTab(&dialog, &dialog);
    (new QVBoxLayout(&dialog))->addWidget(tab);
    tab->initializeData(&newColor, &oldColor);
    dialog.resize(390, 395);
    dialog.show();
    auto* books = tab->findChild<QComboBox*>(QStringLiteral("colorBookCombo"));
    // What the switch changes: the panel of the page strip and the bars of the first page.
    QWidget* panel = tab->findChild<QWidget*>(QStringLiteral("colorBookList"))->parentWidget();

    QListWidget list;
    list.resize(390, 395);
    list.show();

    // The first time the strip of this book is painted at this size, before the rounds keep it.
    QElapsedTimer timer;
    timer.start();
    chooseBook(books, kPagesBook);
    panel->repaint();
    const double firstMs = timer.nsecsElapsed() / 1e6;

    const zrbench::Medians medians = zrbench::timeInterleaved(
        rounds,
        [&] {
            chooseBook(books, kOtherBook);
            timer.start();
            chooseBook(books, kPagesBook);
            panel->repaint();
            return timer.nsecsElapsed() / 1e6;
        },
        [&] {
            list.clear();
            timer.start();
            for (const ZrCmColor& color : firstPage->colors) {
                QPixmap swatch(16, 16);
                swatch.fill(QColor(color.red(), color.green(), color.blue()));
                list.addItem(new QListWidgetItem(QIcon(swatch), QString::fromWCharArray(color.colorName())));
            }
            list.doItemsLayout();
            list.repaint();
            return timer.nsecsElapsed() / 1e6;
        });

    std::printf("colour book tab on a book of %d pages, first page of %d colours, median of %d rounds\n", pageCount,
                firstPage->colors.length(), rounds);
    std::printf("  ZrUiColorBookTab, book switched, strip and bars painted  %8.3f ms\n", medians.ours);
    std::printf("  the same, the first time (strip not yet kept)            %8.3f ms\n", firstMs);
    std::printf("  QListWidget filled and painted                           %8.3f ms\n", medians.baseline);
    std::printf("  ratio ours / Qt                                          %8.2f  (goal: at most 1.50)\n",
                medians.ours / medians.baseline);
    return 0;
}
