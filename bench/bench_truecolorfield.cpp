// The hue and saturation field of the true colour tab painted at its size, against one
// QPainter::drawImage of a precomputed picture of the same size. The field keeps its picture as a
// pixmap made on its first paint, so a paint is one copy of it and the cross drawn over it.

#include "benchsupport.h"

#include "uitruecolortab.h"

#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <cstdio>

namespace {

// Enough paints in one round that the timer's resolution does not weigh.
const int kPaintsPerRound = 200;

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    const int rounds = app.intArgument(1, 30, 3);

    ZrHSLPallete field(nullptr);
    field.setValue(120, 60);
    const QSize size = field.size();
    QImage target(size, QImage::Format_ARGB32_Premultiplied);
    // The picture as the field gets it, in the format it is read in.
    const QImage picture = ZrHSLPallete::fieldImage(size);

    const auto ours = [&] {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < kPaintsPerRound; ++i)
            field.render(&target, QPoint(), QRegion(), QWidget::RenderFlags());
        return timer.nsecsElapsed() / 1e6;
    };
    const auto baseline = [&] {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < kPaintsPerRound; ++i) {
            QPainter painter(&target);
            painter.drawImage(0, 0, picture);
        }
        return timer.nsecsElapsed() / 1e6;
    };
    const zrbench::Medians medians = zrbench::timeInterleaved(rounds, ours, baseline);
    std::printf("hue and saturation field %dx%d, %d paints a round, median of %d rounds\n", size.width(),
                size.height(), kPaintsPerRound, rounds);
    zrbench::printMedians(medians, "ZrHSLPallete paint", "QPainter::drawImage of its picture", 1.5);
    return 0;
}
