// Fuzz target for the reader of a drawing's preview section: the bytes as a drawing file, read into
// a thumbnail record, then shown by the image preview label as the file dialog shows it.

#include "fuzzsupport.h"

#include "zrimagepreviewlabel.h"
#include "zrstreambuf.h"
#include "zrthumbnail.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

// The label paints into pixmaps, which need the application; the offscreen platform serves.
struct Preview
{
    Preview()
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app.reset(new QApplication(argc, argv));
        pane.reset(new QWidget);
        pane->resize(200, 150);
        label = new ZrImagePreviewLabel(pane.get());
    }

    int argc = 1;
    char name[16] = "fuzz_thumbnail";
    char* argv[2] = {name, nullptr};
    std::unique_ptr<QApplication> app;
    QTemporaryDir dir;
    std::unique_ptr<QWidget> pane;
    ZrImagePreviewLabel* label = nullptr;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::vector<uint8_t> bytes(data, data + size);
    const ZrSmartPtr<ZrFlatMemStream> stream = ZrFlatMemStream::createNew(bytes.data(), bytes.size());
    ZrThumbnailImage thumbnail;
    const int status = zrDbGetPreviewBitmap(stream.get(), &thumbnail);
    require(status == ZrPreview::kOk || thumbnail.isEmpty(), "a refused file left parts behind");
    for (const auto* part : {&thumbnail.header, &thumbnail.bmp, &thumbnail.png})
        require(part->size() <= size, "a part larger than the file");

    static Preview preview;
    const QString path = preview.dir.filePath(QStringLiteral("fuzz.dwg"));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate), "cannot write the drawing");
    require(file.write(reinterpret_cast<const char*>(data), qint64(size)) == qint64(size), "short write");
    file.close();
    preview.label->setFilePath(path);
    preview.label->showPreview();
    require(!thumbnail.isEmpty() || preview.label->getPreviewPixmap().isNull(), "a preview without a thumbnail");
    return 0;
}
