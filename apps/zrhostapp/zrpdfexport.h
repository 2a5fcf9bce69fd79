#pragma once
// The reference host's PDF output of the current layout.

#include <QRectF>
#include <QString>

class QPainter;

struct ZrPdfPage
{
    // What is shown, in drawing units; empty for the extents of what is drawn.
    QRectF area;
    // The plot stamp's line at the foot of the page; empty for none.
    QString stamp;
};

// The page as the export's plot service sets it up: its range (the view's `visibleArea` for the
// display, the extents, or the picked window) and its plot stamp, for a drawing called `drawingName`.
ZrPdfPage zrPdfPageOfPlotService(const QRectF& visibleArea, const QString& drawingName);

// Paints the entities of the current space, on their visible layers, into `page` of the painter's
// device: `area` fitted and centred, the stamp below.
void zrPaintLayout(QPainter& painter, const QRectF& page, const ZrPdfPage& options);

// Writes the layout on an A4 landscape page as a PDF: whole or not at all. On failure the old file
// stays as it was and `error` names the file.
bool zrWriteLayoutPdf(const QString& path, const ZrPdfPage& options, QString* error);
