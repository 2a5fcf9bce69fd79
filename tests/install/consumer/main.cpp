#include <ZrQtUtilsFunc.h>
#include <qt_common_ui.h>
#include <qt_messagebox.h>

int main()
{
    // Links the module's exported classes and C entry points without loading a host.
    int64_t (*entry)(int) = &zrrxEntryPoint;
    return entry && ZrQtUIModalDialogBase::getModalDlgCount() == 0 && zrutGetImageFullPath(QString()).isEmpty() ? 0 : 1;
}
