#pragma once
// Stands in for the drawing view: a grid and a small sample plan, in the colours of the theme.

#include <QWidget>

class ZrDrawingView : public QWidget
{
public:
    explicit ZrDrawingView(QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
