// The line type combo box filled with 1 000 line types and their drawn previews, against drawing
// the same dash patterns with QPainter into icons and QComboBox::addItem.

#include "benchsupport.h"
#include "zrlinetypecombobox.h"

#include "zrdbdatabase.h"
#include "zrdocument.h"
#include "zrdrawingcontrol.h"
#include "zrlinetypedefs.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QElapsedTimer>
#include <QPainter>
#include <QPen>
#include <cstdio>
#include <vector>

namespace {

constexpr int kLineTypes = 1000;
constexpr QSize kIcon(80, 25);

std::vector<double> patternOf(int i) { return {2.0 + i % 9, -1.0 - i % 4, 0.0, -1.0 - i % 3}; }

// What a plain combo box would do: the pattern as a pen's dashes, stretched over the icon.
QIcon drawnIcon(const std::vector<double>& dashes)
{
    QPixmap pixmap(kIcon);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QPen pen(Qt::black, 1.0);
    QVector<qreal> pattern;
    for (double dash : dashes)
        pattern << std::max(1.0, std::abs(dash));
    pen.setDashPattern(pattern);
    painter.setPen(pen);
    painter.drawLine(5, kIcon.height() / 2, kIcon.width() - 5, kIcon.height() / 2);
    return QIcon(pixmap);
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    const int rounds = app.intArgument(1, 9, 3);
    ZrHostControl::openEmptyDrawing();
    ZrDbDatabase* db = zrDocManagerPtr()->curDocument()->database();
    QStringList names;
    for (int i = 0; i < kLineTypes; ++i) {
        const ZrLinetypeDefinition definition{ZrString(QStringLiteral("LT%1").arg(i, 4, 10, QLatin1Char('0'))),
                                              ZrString(), patternOf(i)};
        zrdbLoadLinetype(db, definition);
        names << definition.name.toQString();
    }

    ZrLineTypeComboBox ours(nullptr);
    ours.view();
    QComboBox plain;
    plain.setIconSize(kIcon);
    plain.view();

    QElapsedTimer timer;
    const zrbench::Medians medians = zrbench::timeInterleaved(
        rounds,
        [&] {
            timer.start();
            ours.OnThemeUpdate(0);
            return timer.nsecsElapsed() / 1e6;
        },
        [&] {
            timer.start();
            plain.clear();
            for (int i = 0; i < names.size(); ++i)
                plain.addItem(drawnIcon(patternOf(i)), names[i]);
            return timer.nsecsElapsed() / 1e6;
        });

    std::printf("line type combo box with %d line types and their previews, median of %d rounds\n", ours.count(),
                rounds);
    zrbench::printMedians(medians, "ZrLineTypeComboBox fill", "QPainter icons + QComboBox::addItem", 1.5);
    return 0;
}
