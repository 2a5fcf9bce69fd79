// The layer combo box with 10 000 layers: filling it against QComboBox::addItems of the same names,
// and opening the list of a drawing-bound box, which refreshes it first.

#include "benchsupport.h"
#include "zrlayercombobox.h"

#include "zrdbdatabase.h"
#include "zrdbsymtb.h"
#include "zrdrawingcontrol.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Layers in a shuffled order, so that the sort has work to do.
void addLayers(int count)
{
    std::vector<int> numbers(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        numbers[static_cast<size_t>(i)] = i;
    std::shuffle(numbers.begin(), numbers.end(), *QRandomGenerator::global());
    ZrDbLayerTable* table = nullptr;
    curDatabase()->getLayerTable(table, ZrDb::kForWrite);
    for (int number : numbers) {
        auto* layer = new ZrDbLayerTableRecord;
        layer->setName(ZrString(QStringLiteral("Layer-%1").arg(number, 5, 10, QLatin1Char('0'))));
        table->add(layer);
        layer->close();
    }
    table->close();
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);

    const int count = app.intArgument(1, 10000, 100);
    const int rounds = app.intArgument(2, 15, 3);
    ZrHostControl::openEmptyDrawing();
    addLayers(count);

    ZrLayerComboBox picker(0, nullptr);
    QStringList names;
    for (int i = 0; i < picker.count(); ++i)
        names << picker.itemText(i);
    QComboBox plain;
    plain.addItems(names);

    std::vector<double> ours;
    std::vector<double> qt;
    QElapsedTimer timer;
    for (int i = 0; i < rounds; ++i) {
        timer.start();
        picker.init();
        ours.push_back(timer.nsecsElapsed() / 1e6);
        timer.start();
        plain.clear();
        plain.addItems(names);
        qt.push_back(timer.nsecsElapsed() / 1e6);
    }
    const double a = zrbench::median(ours);
    const double b = zrbench::median(qt);
    std::printf("layer combo box with %d layers, median of %d rounds\n", names.size(), rounds);
    std::printf("  ZrLayerComboBox::init                %8.2f ms\n", a);
    std::printf("  QComboBox clear + addItems           %8.2f ms\n", b);
    std::printf("  ratio ours / Qt                      %8.2f  (goal: at most 1.50)\n", a / b);

    // A drawing-bound box refreshes its list whenever it opens.
    ZrLayerComboBox bound(true, 0, nullptr);
    bound.show();
    if (!QTest::qWaitForWindowExposed(&bound))
        std::fprintf(stderr, "the box was never shown\n");
    std::vector<double> popup;
    for (int i = 0; i < rounds; ++i) {
        timer.start();
        bound.showPopup();
        QWidget* list = bound.view()->window();
        while (!list->isVisible())
            QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        popup.push_back(timer.nsecsElapsed() / 1e6);
        bound.hidePopup();
        QCoreApplication::processEvents();
    }
    std::printf("  showPopup until shown                %8.2f ms  (goal: under 50)\n", zrbench::median(popup));

    return 0;
}
