#pragma once
// The reference host's main window: the drawing tabs, the drawing view, the property toolbar with
// the module's layer, colour, line type and lineweight boxes and Undo/Redo, the layer panel, the
// colour sample panel, the File menu (drawings opened, saved and exported through the module's file
// dialog), the Format and Dialogs menus and the command line.

#include "zrjson.h"

#include <QMainWindow>
#include <memory>

class CXuDocument;
class ZrColorComboBox;
class ZrDocumentTabBar;
class ZrDrawingView;
class ZrLayerComboBox;
class ZrLayoutTabBar;
class ZrLineTypeComboBox;
class ZrLineWidthComboBox;

class ZrHostMainWindow : public QMainWindow
{
public:
    // `dialogs`: the names the module's UI service answers to. The module must be loaded and the
    // reactor service installed: the layer and colour boxes register with it.
    explicit ZrHostMainWindow(const QStringList& dialogs);
    ~ZrHostMainWindow() override;

    void appendToCommandLine(const QString& line);
    // Names the current drawing in the title and on its tab.
    void setDrawingName(const QString& name);
    // The file the current drawing came from or went to, which names it; empty for the sample drawing.
    void setDrawingFile(const QString& file);
    // A new empty drawing in a tab of its own, as "+" makes it.
    CXuDocument* newDrawing();
    // Opens a drawing file (JSON or DXF) in a tab of its own; on error the open drawings stay as they
    // were and `error` names the place; `notice` tells what a DXF drawing lost.
    bool openDrawingInNewTab(const QString& file, QString* error, QString* notice = nullptr);
    // Closes the drawing of a document tab, asking first when it was changed; false when the user
    // kept it.
    bool closeDrawingTab(int index);

    ZrDrawingView* drawingView() const;
    ZrLayerComboBox* layerBox() const;
    ZrColorComboBox* colorBox() const;
    ZrDocumentTabBar* documentTabs() const;
    ZrLayoutTabBar* layoutTabs() const;
    ZrLineTypeComboBox* lineTypeBox() const;
    ZrLineWidthComboBox* lineWeightBox() const;
    // 格式 → 线宽…: the lineweight settings of the drawing, changed as one undo step.
    void openLineWeightSettings();

private:
    // The file of the current drawing, empty when it has none; its name as its tab tells it.
    QString drawingFile() const;
    QString drawingName() const;
    // Runs a dialog with its sample parameter and writes the answer line to the command line.
    void runDialog(const QString& name);
    // 文件 → 打开图纸…, 保存图纸… and 输出 PDF… through the module's file dialog.
    void openDrawingFile();
    void saveDrawingFile();
    void exportPdf();
    // Opens a drawing file (JSON or DXF), saying what went wrong or what a DXF drawing lost.
    void openDrawingPath(const QString& file);
    // The file dialog's answer on OK; null when it was cancelled, or when the module has no file
    // dialog, which the user is told.
    ZrJsonPtr runFileDialog(const ZrJsonPtr& param);
    // Points the colour book folders at one folder: written to the user configuration and read again
    // by the next colour dialog.
    void chooseColorBookFolder();
    // Undo and Redo follow the current drawing's history and name its next step.
    void refreshUndoActions();
    void refreshSelectionCount();
    // The document of the current tab becomes the host's current one; the start tab shows the start page.
    void activateTab(int index);

    struct Data;
    std::unique_ptr<Data> d;
};
