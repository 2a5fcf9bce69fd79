// The tab bar: painting 200 tabs on a bar 1 600 pixels wide against QTabBar painting the same tabs at
// the same size, and adding 2 000 tabs one by one, the visible range found again after each, against
// QTabBar::addTab of the same texts, at 500, 1 000 and 2 000 tabs.

#include "benchsupport.h"
#include "zrtabbar.h"

#include <QElapsedTimer>
#include <QImage>
#include <QTabBar>
#include <cstdio>

namespace {

constexpr int kBarWidth = 1600;
constexpr int kBarHeight = 24;
constexpr int kPaintedTabs = 200;
// One round paints this many times: a single paint takes a fraction of a millisecond.
constexpr int kPaintsPerRound = 20;

QString tabText(int i)
{
    return QStringLiteral("Drawing%1.dwg").arg(i);
}

// The range is what a paint or a hit test finds first; a host asks for it after each insertion.
class RangeBar : public ZrTabBar
{
public:
    void findRange()
    {
        int start = 0;
        int end = 0;
        calcStartAndEndDrawIndex(start, end);
    }
};

void fill(ZrTabBar& bar, int count)
{
    bar.addTab(QStringLiteral("+"));
    for (int i = 0; i < count; ++i)
        bar.addTab(tabText(i));
}

double paintRound(QWidget& widget, QImage& target)
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < kPaintsPerRound; ++i)
        widget.render(&target);
    return timer.nsecsElapsed() / 1e6 / kPaintsPerRound;
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    const int rounds = app.intArgument(1, 15, 3);

    ZrTabBar ours;
    ours.resize(kBarWidth, kBarHeight);
    fill(ours, kPaintedTabs);
    ours.setCurrentIndex(kPaintedTabs - 1);
    QTabBar plain;
    plain.resize(kBarWidth, kBarHeight);
    for (int i = 0; i < kPaintedTabs; ++i)
        plain.addTab(tabText(i));
    plain.addTab(QStringLiteral("+"));
    plain.setCurrentIndex(kPaintedTabs - 1);
    ours.show();
    plain.show();
    QImage target(kBarWidth, kBarHeight, QImage::Format_ARGB32_Premultiplied);

    const zrbench::Medians painting = zrbench::timeInterleaved(
        rounds, [&] { return paintRound(ours, target); }, [&] { return paintRound(plain, target); });
    std::printf("painting %d tabs on a bar %d pixels wide, one paint, median of %d rounds\n", kPaintedTabs,
                kBarWidth, rounds);
    zrbench::printMedians(painting, "ZrTabBar paint", "QTabBar paint", 1.2);
    std::printf("  %-38s %8s  (goal: under 2 ms)\n", "", painting.ours < 2.0 ? "met" : "NOT MET");

    std::printf("adding tabs one by one, the visible range found after each, median of %d rounds\n", rounds);
    for (const int count : {500, 1000, 2000}) {
        QElapsedTimer timer;
        const zrbench::Medians adding = zrbench::timeInterleaved(
            rounds,
            [&] {
                RangeBar bar;
                bar.resize(kBarWidth, kBarHeight);
                bar.show();
                timer.start();
                bar.addTab(QStringLiteral("+"));
                for (int i = 0; i < count; ++i) {
                    bar.addTab(tabText(i));
                    bar.findRange();
                }
                return timer.nsecsElapsed() / 1e6;
            },
            [&] {
                QTabBar bar;
                bar.resize(kBarWidth, kBarHeight);
                bar.show();
                timer.start();
                for (int i = 0; i < count; ++i)
                    bar.addTab(tabText(i));
                return timer.nsecsElapsed() / 1e6;
            });
        const QByteArray name = QStringLiteral("ZrTabBar %1 tabs").arg(count).toLatin1();
        const QByteArray baseline = QStringLiteral("QTabBar::addTab %1 tabs").arg(count).toLatin1();
        zrbench::printMedians(adding, name.constData(), baseline.constData(), 1.5);
    }
    return 0;
}
