#pragma once
// A label that paints an icon scaled smoothly to its size.

#include "zrqtbaseutils_export.h"

#include <QLabel>
#include <memory>

class ZRQTBASEUTILS_EXPORT ZrSvgLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ZrSvgLabel(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~ZrSvgLabel() override;

    void setPixmap(const QString& file);
    // Paints the icon with its top left corner at (x, y).
    void setPixmap(const QIcon& icon, int x, int y);
    void setIcon(const QIcon& icon);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
