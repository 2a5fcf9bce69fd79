#pragma once
// A label that previews a file: raster images, SVG files and the thumbnail stored in a drawing.

#include "zrqtbaseutils_export.h"

#include <QLabel>
#include <memory>

class ZrString;

class ZRQTBASEUTILS_EXPORT ZrImagePreviewLabel : public QLabel
{
    Q_OBJECT
public:
    // Word wrap on.
    explicit ZrImagePreviewLabel(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    explicit ZrImagePreviewLabel(const QString& text, QWidget* parent = nullptr,
                                 Qt::WindowFlags flags = Qt::WindowFlags());
    ~ZrImagePreviewLabel() override;

    // Stores the path and tells its kind by extension, case-sensitively.
    void setFilePath(const QString& path);
    // Clears the label and draws the preview of the file's kind.
    void showPreview();
    // From now on files of 2 MiB and more are previewed too.
    void setWithoutSize();
    // The last thumbnail of a drawing; null when there was none.
    QPixmap getPreviewPixmap() const;

    void showImage();
    void showDwg();
    // PDF files have no preview: the label stays empty.
    void showPdf();
    // Scales the pixmap into the parent, keeping its aspect, and centres the label there.
    void scaledPixmapAndPreview(QPixmap& pixmap);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

// True when a line of the file opens an <svg element with the SVG namespace.
ZRQTBASEUTILS_EXPORT bool isSvgFormat(const ZrString& path);
