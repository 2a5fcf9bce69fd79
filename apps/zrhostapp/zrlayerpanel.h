#pragma once
// The layer panel: the layers of the current drawing with their states, read only.

#include <QTreeWidget>
#include <memory>

class ZrHostEvents;

class ZrLayerPanel : public QTreeWidget
{
public:
    // Follows the host's events; `events` must outlive the panel.
    explicit ZrLayerPanel(ZrHostEvents* events, QWidget* parent = nullptr);
    ~ZrLayerPanel() override;

    // Reads the layers again. Rows are rebuilt only when layers came or went; otherwise only the
    // rows whose layer changed are touched.
    void refresh();

private:
    struct Data;
    std::unique_ptr<Data> d;
};
