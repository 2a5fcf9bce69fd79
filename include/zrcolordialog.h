#pragma once
// The modal colour picker: its tabs share one new colour, which OK writes back into the caller's
// parameter object, and one old colour, which never changes.

#include "zrqtbaseutils_export.h"

#include "zrcmcolor.h"
#include "zrjson.h"
#include "zrrxobject.h"

#include <QDialog>
#include <memory>

class ZrColorTabWidget;

class ZRQTBASEUTILS_EXPORT ZrColorDialog : public QDialog
{
    Q_OBJECT
public:
    // The bits of "tabs".
    enum TabBit {
        kIndexTab = 1,
        kTrueColorTab = 2,
        kColorBookTab = 4,
    };

    explicit ZrColorDialog(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~ZrColorDialog() override;

    // Builds the tabs "tabs" asks for from the colour of `param`. `object`, when it is a ZrUiHelper,
    // is told of the parameter object when the user accepts.
    void initializeData(ZrJsonPtr param, ZrRxObjectPtr object);

    ZrColorTabWidget* tabWidget() const;
    const ZrCmColor& newColor() const;
    const ZrCmColor& oldColor() const;

    // The tab a colour opens on among `tabCount` tabs, -1 to stay on the current one. Positions, not
    // kinds: the tab at position 1 counts as the true colour tab even when it is not.
    static int tabForColor(const ZrCmColor& color, int tabCount);

    void accept() override;

public Q_SLOTS:
    void slot_currentTabChange(int index);
    void onColorChanged(const QString& text);
    void slot_help_button_clicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Q_DISABLE_COPY(ZrColorDialog)
    struct Private;
    std::unique_ptr<Private> d;
};
