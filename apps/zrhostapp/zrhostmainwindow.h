#pragma once
// The reference host's main window: the drawing view, the property toolbar with the module's layer
// and colour boxes and Undo/Redo, the layer panel, the colour sample panel, the Dialogs menu and the
// command line.

#include <QMainWindow>
#include <memory>

class ZrColorComboBox;
class ZrDrawingView;
class ZrLayerComboBox;

class ZrHostMainWindow : public QMainWindow
{
public:
    // `dialogs`: the names the module's UI service answers to. The module must be loaded and the
    // reactor service installed: the layer and colour boxes register with it.
    explicit ZrHostMainWindow(const QStringList& dialogs);
    ~ZrHostMainWindow() override;

    void appendToCommandLine(const QString& line);
    // Names the open drawing in the title.
    void setDrawingName(const QString& name);

    ZrDrawingView* drawingView() const;
    ZrLayerComboBox* layerBox() const;
    ZrColorComboBox* colorBox() const;

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

    struct Data;
    std::unique_ptr<Data> d;
};
