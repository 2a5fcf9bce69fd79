#pragma once
// The export panel of the file dialog: publish settings of the host's plot service.

#include "zrqtbaseutils_export.h"

#include <QWidget>
#include <memory>

class CXuPlotSvr;
class ZrDbObjectId;

class ZRQTBASEUTILS_EXPORT ZrQtExportWidget : public QWidget
{
    Q_OBJECT
public:
    // `extension` is the file type being exported ("pdf", "*.dwfx", ...): it chooses the publish type.
    explicit ZrQtExportWidget(QString extension, QWidget* parent = nullptr,
                              Qt::WindowFlags flags = Qt::WindowFlags());
    ~ZrQtExportWidget() override;

    void initWidget();
    void initPublishType(QString extension);
    void ResetPublishType(CXuPlotSvr* service);
    void UpdateOptions(CXuPlotSvr* service);
    void initExportControl(CXuPlotSvr* service);
    void initialPlotRangeCombox(CXuPlotSvr* service);
    void initialPageSetCombox(CXuPlotSvr* service);
    bool isCurrentLayoutModelType();
    // The page setup override of the current layout, made in its extension dictionary when missing.
    bool getPlotSettingsId(ZrDbObjectId& id);

public Q_SLOTS:
    void OnBnClickedButtonOptions();
    void OnBnClickedButtonPlotStamp();
    void OnBnClickedButtonWindowPick();
    void OnBnClickedButtonPageSetupOverride();
    void OnBnClickedCheckPlotStamp();
    void OnBnClickedCheckOpenInViewer();
    void OnComboxExportChange(int index);
    void OnComboxPageSetChange(int index);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
