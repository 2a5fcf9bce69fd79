// A 4 000 by 4 000 picture turned into a host raster image and back, against one memcpy of its
// pixels.

#include "benchsupport.h"
#include "ZrQtUtilsFunc.h"

#include "zrgiraster.h"

#include <QElapsedTimer>
#include <QImage>
#include <cstdio>
#include <cstring>
#include <vector>

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    const int rounds = app.intArgument(1, 9, 3);
    QImage picture(4000, 4000, QImage::Format_RGBA8888);
    picture.fill(QColor(30, 120, 210, 200));
    const size_t bytes = size_t(picture.sizeInBytes());
    std::vector<uchar> copy(bytes);

    QElapsedTimer timer;
    const zrbench::Medians medians = zrbench::timeInterleaved(
        rounds,
        [&] {
            timer.start();
            const QImage back = zrutZrGiRasterImage2QImage(zrutQImage2ZrGiRasterImage(picture));
            const double elapsed = timer.nsecsElapsed() / 1e6;
            if (back.size() != picture.size())
                std::fprintf(stderr, "the picture did not come back\n");
            return elapsed;
        },
        [&] {
            timer.start();
            std::memcpy(copy.data(), picture.constBits(), bytes);
            return timer.nsecsElapsed() / 1e6;
        });

    std::printf("QImage 4000x4000 RGBA8888 to a raster image and back, median of %d rounds\n", rounds);
    zrbench::printMedians(medians, "zrutQImage2ZrGiRasterImage + back", "memcpy of the pixels", 3.0);
    return 0;
}
