#pragma once
// The reference host's main window: the drawing view, the property toolbar with the module's layer
// and colour boxes and Undo/Redo, the layer panel, the colour sample panel, the Dialogs menu and the
// command line.

#include <QMainWindow>
#include <memory>

class CXuDocument;
class ZrColorComboBox;
class ZrDocumentTabBar;
class ZrDrawingView;
class ZrLayerComboBox;
class ZrLayoutTabBar;

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
    // A new empty drawing in a tab of its own, as "+" makes it.
    CXuDocument* newDrawing();
    // Opens a drawing file in a tab of its own; on error the open drawings stay as they were and
    // `error` names the place.
    bool openDrawingInNewTab(const QString& file, QString* error);
    // Closes the drawing of a document tab, asking first when it was changed; false when the user
    // kept it.
    bool closeDrawingTab(int index);

    ZrDrawingView* drawingView() const;
    ZrLayerComboBox* layerBox() const;
    ZrColorComboBox* colorBox() const;
    ZrDocumentTabBar* documentTabs() const;
    ZrLayoutTabBar* layoutTabs() const;

private:
    // Runs a dialog with its sample parameter and writes the answer line to the command line.
    void runDialog(const QString& name);
    void openDrawingFile();
    void saveDrawingFile();
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
