// Reading the pages of a 5 000-colour masked book through the colour book manager, against one bare
// QXmlStreamReader pass over the same file that only counts its elements.

#include "benchsupport.h"
#include "uicolorbookmng.h"

#include "zrhostcontrol.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>
#include <cstdio>

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    const int rounds = app.intArgument(1, 21, 3);
    const QString path = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral(ZR_BENCH_COLORBOOK);

    ZrHostControl::setColorBookFolders({QFileInfo(path).absolutePath()});
    CEdColorBookManager* books = CEdColorBookManager::getInstance();
    books->loadData();
    SXuBookColorData* book = books->findData(ZrString(L"ZR Bench"));
    if (!book) {
        std::fprintf(stderr, "bench_colorbook: no book \"ZR Bench\" in %s\n", qPrintable(path));
        return 1;
    }

    int colours = 0;
    int elements = 0;
    QElapsedTimer timer;
    const zrbench::Medians medians = zrbench::timeInterleaved(
        rounds,
        [&] {
            timer.start();
            books->loadColorData(book);
            const double ms = timer.nsecsElapsed() / 1e6;
            colours = 0;
            for (const SXuBookColorPage& page : book->pages)
                colours += page.colors.length();
            return ms;
        },
        [&] {
            timer.start();
            QFile file(path);
            file.open(QIODevice::ReadOnly);
            QXmlStreamReader xml(&file);
            elements = 0;
            while (!xml.atEnd()) {
                if (xml.readNext() == QXmlStreamReader::StartElement)
                    ++elements;
            }
            return timer.nsecsElapsed() / 1e6;
        });

    std::printf("colour book of %d colours in %d pages (%d elements), median of %d rounds\n", colours,
                book->pages.length(), elements, rounds);
    zrbench::printMedians(medians, "CEdColorBookManager::loadColorData", "QXmlStreamReader counting elements", 2.0);
    return 0;
}
