#pragma once
// The dialogs the UI service makes by name: one row per name, each with the function that builds
// the dialog and the rule that chooses its parent when the caller names none.

#include "qt_utils.h"

#include "zrstring.h"
#include "zruidialog.h"

class QWidget;

// Where a dialog goes when the caller gives no parent.
enum class ZrQtDialogParent {
    // The host's target window.
    TargetWindow,
    // Over the open modal dialog, else the active window, else the host's target window.
    OverModal,
};

struct ZrQtDialogEntry
{
    const wchar_t* name;
    ZrSmartPtr<ZrUiDialogBase> (*create)(QWidget* parent);
    ZrQtDialogParent parent;
};

// The row of `name`, compared without regard to case, the first match in the table's order; null
// for a name the service does not know.
const ZrQtDialogEntry* findDialogEntry(const ZrString& name);

// The factory of a dialog that runs in the frame ZrQtModalDialog<T>: the frame with its widget,
// or null when the widget could not be built.
template <class T>
ZrSmartPtr<ZrUiDialogBase> createModalDialog(QWidget* parent)
{
    ZrSmartPtr<ZrQtModalDialog<T>> frame(new ZrQtRxObjectImpl<ZrQtModalDialog<T>>(), kZrAttach);
    if (!frame->onCreate(parent, Qt::WindowFlags(), nullptr))
        return nullptr;
    return ZrSmartPtr<ZrUiDialogBase>(frame.get());
}
