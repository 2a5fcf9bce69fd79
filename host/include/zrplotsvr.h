#pragma once
// The host's plot service "CXuPlotSvr": what an export publishes and how, kept in the user
// configuration under "Publish".

#include "zrdbobjectid.h"
#include "zrhost_export.h"
#include "zrrxobject.h"
#include "zrstring.h"

class QWidget;

// The options of the publish options dialog.
struct SXuPublishOptions
{
    // 1 all sheets in one file, 0 a file a sheet.
    int sheetMode = 1;
    bool layerInformation = false;
    // True: crossing lines merge their colours; false: the later one covers the earlier.
    bool mergeControl = false;
    bool passwordProtected = false;
    // With protection: asked for when the file is written, instead of the one given here.
    bool passwordPrompt = true;
    bool blockInformation = false;
    ZrString password;
    ZrString blockTemplate;
};

// The fields a plot stamp prints in a corner of each sheet.
struct SXuPlotStampFields
{
    bool drawingName = true;
    bool layoutName = true;
    bool dateTime = true;
    bool loginName = false;
    bool deviceName = false;
    bool paperSize = false;
    bool plotScale = false;
};

class ZRHOST_EXPORT CXuPlotSvr : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(CXuPlotSvr)
public:
    // The dialogs answer true on OK, which stores what was chosen.
    virtual bool showPlotStampDialog(QWidget* parent);
    virtual bool showPublishOptionsDialog(QWidget* parent);
    virtual SXuPublishOptions publishOptions() const;
    // Kind 0 DWF, 1 DWFX, 2 PDF; mode 1 publishes to a file.
    virtual void setPublishType(int kind, int mode);
    virtual void setOpenInViewer(bool open);
    virtual bool openInViewer() const;
    virtual void setPlotStamp(bool on);
    virtual bool plotStamp() const;
    // Makes the stored range fit the ranges of the model (true: display, extents, window) or of a
    // paper layout (false: current layout, all layouts).
    virtual void preparePlotRanges(bool modelLayout);
    virtual void setPlotRange(int index, bool modelLayout);
    virtual int plotRange(bool modelLayout) const;
    // True while the model's range is the window and no window was picked.
    virtual bool needsWindowPick() const;
    // Lets the user give the window's two corners; true when one was given.
    virtual bool pickWindow(QWidget* parent);
    // Edits the page setup `settings` (a ZrDbPlotSettings) for kind 1 DWF, 2 DWFX or 0 PDF.
    virtual bool editPageSetupOverride(ZrDbObjectId settings, int overrideKind, QWidget* parent);
    virtual void setUseOverride(bool use);
    virtual bool useOverride() const;

    // What the export itself reads.
    int publishKind() const;
    int publishMode() const;
    SXuPlotStampFields plotStampFields() const;
    void setPlotStampFields(const SXuPlotStampFields& fields);
    void setPublishOptions(const SXuPublishOptions& options);
    // The picked window in drawing units; false when none was picked.
    bool plotWindow(double& x1, double& y1, double& x2, double& y2) const;
    void setPlotWindow(double x1, double y1, double x2, double y2);
};
