#pragma once
// The drawing view: paints the current document's drawing and makes the pick-first selection with
// the mouse. Left click picks, Shift+click adds or removes, a band dragged to the right selects what
// lies inside it and one dragged to the left what it touches, Esc clears; the wheel zooms about the
// cursor, the middle button pans, and its double click fits the drawing into the window.

#include "zrdbobjectid.h"

#include <QWidget>
#include <memory>

class ZrHostEvents;

class ZrDrawingView : public QWidget
{
    Q_OBJECT
public:
    // Repaints on the host's events; `events` must outlive the view.
    explicit ZrDrawingView(ZrHostEvents* events, QWidget* parent = nullptr);
    ~ZrDrawingView() override;

    QSize sizeHint() const override;

    // Fits the drawing into the window; a drawing the view has not shown before is fitted by itself.
    void zoomExtents();
    // Drawing units to the window's pixels.
    QTransform drawingToWindow() const;
    // The topmost entity drawn within a few pixels of `pos`; null when there is none.
    ZrDbObjectId entityAt(const QPoint& pos) const;
    // A point of the window where a click picks `entity`; false when there is none in sight.
    bool pickPoint(ZrDbObjectId entity, QPoint* pos) const;

Q_SIGNALS:
    // Where the cursor is, in drawing units.
    void cursorMoved(const QPointF& point);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Data;
    std::unique_ptr<Data> d;
};
