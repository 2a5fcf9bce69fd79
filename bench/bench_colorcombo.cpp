// The colour combo box filled with its standard items and ten recent colours, against
// QComboBox::addItem of the same icons and texts.

#include "benchsupport.h"
#include "zrcolorcombobox.h"

#include "zrdrawingcontrol.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QElapsedTimer>
#include <QIcon>
#include <cstdio>
#include <vector>

namespace {

// One round fills the list this many times: a single fill takes a fraction of a millisecond.
constexpr int kFillsPerRound = 200;

ZrCmColor recentColor(int i)
{
    ZrCmColor color;
    if (i % 2) {
        color.setColorMethod(ZrCmEntityColor::kByACI);
        color.setColorIndex(static_cast<uint16_t>(10 + i * 20));
    } else {
        color.setRGB(static_cast<uint8_t>(i * 25), static_cast<uint8_t>(200 - i * 15), static_cast<uint8_t>(i * 7));
    }
    return color;
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    const int rounds = app.intArgument(1, 15, 3);
    ZrHostControl::openEmptyDrawing();

    ZrColorComboBox ours(nullptr, true);
    for (int i = 0; i < 10; ++i)
        ours.AppendColorItem(recentColor(i));
    ours.init(ZrCmColor(), false, ZrDbObjectId::kNull);

    std::vector<QIcon> icons;
    QStringList texts;
    for (int i = 0; i < ours.count(); ++i) {
        icons.push_back(ours.itemIcon(i));
        texts << ours.itemText(i);
    }
    // Both with their list views, as every box has once its list was opened: each insertion also
    // reaches the view.
    QComboBox plain;
    plain.view();

    QElapsedTimer timer;
    const zrbench::Medians medians = zrbench::timeInterleaved(
        rounds,
        [&] {
            timer.start();
            for (int fill = 0; fill < kFillsPerRound; ++fill)
                ours.init(ZrCmColor(), false, ZrDbObjectId::kNull);
            return timer.nsecsElapsed() / 1e6;
        },
        [&] {
            timer.start();
            for (int fill = 0; fill < kFillsPerRound; ++fill) {
                plain.clear();
                for (int i = 0; i < texts.size(); ++i)
                    plain.addItem(icons[static_cast<size_t>(i)], texts[i]);
            }
            return timer.nsecsElapsed() / 1e6;
        });

    std::printf("colour combo box with %d items (10 recent colours), %d fills a round, median of %d rounds\n",
                texts.size(), kFillsPerRound, rounds);
    zrbench::printMedians(medians, "ZrColorComboBox::init", "QComboBox clear + addItem", 1.5);
    return 0;
}
