#include "zrcolordialog.h"

#include "ZrQtUtilsFunc.h"
#include "uicolorbooktab.h"
#include "uicolorindextab.h"
#include "uitruecolortab.h"
#include "uicolorwidgets.h"

#include "zrarbitdict.h"
#include "zrsystem.h"
#include "zruidialog.h"

#include <QDialogButtonBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

namespace {

const int kHelpServiceSlot = 1;

// Index colours 256 and 0 are what ByLayer and ByBlock are called in the grids; the caller gets
// them back under their own methods.
ZrCmColor asHandedBack(const ZrCmColor& color)
{
    ZrCmColor back(color);
    if (color.isByACI() && color.colorIndex() == 256)
        back.setColorMethod(ZrCmEntityColor::kByLayer);
    else if (color.isByACI() && color.colorIndex() == 0)
        back.setColorMethod(ZrCmEntityColor::kByBlock);
    return back;
}

} // namespace

struct ZrColorDialog::Private
{
    ZrJsonPtr param;
    ZrRxObjectPtr object;
    ZrColorTabWidget* tabs = nullptr;
    ZrIndexColorWnd* indexTab = nullptr;
    ZrColorWidgetBase* bookTab = nullptr;
    ZrCmColor newColor;
    ZrCmColor oldColor;
    QPushButton* ok = nullptr;

    ZrColorWidgetBase* currentTab() const { return qobject_cast<ZrColorWidgetBase*>(tabs->currentWidget()); }
};

ZrColorDialog::ZrColorDialog(QWidget* parent, Qt::WindowFlags flags) : QDialog(parent, flags), d(new Private)
{
    setObjectName(QStringLiteral("ZrColorDialog"));
    setWindowTitle(zrUiText("IDS_ZRED_UICOLORSHEET_PROMPT1", QStringLiteral("选择颜色")));
    d->tabs = new ZrColorTabWidget(this);
    d->tabs->tabBar()->installEventFilter(this);

    auto* buttons = new QDialogButtonBox(this);
    d->ok = buttons->addButton(zrUiText("IDS_STRING180", QStringLiteral("确定")), QDialogButtonBox::YesRole);
    buttons->addButton(zrUiText("IDS_STRING181", QStringLiteral("取消")), QDialogButtonBox::NoRole);
    buttons->addButton(zrUiText("IDS_ZRAPP_NAVICUBE_PROMPT4", QStringLiteral("帮助")), QDialogButtonBox::HelpRole);
    d->ok->setDefault(true);
    d->ok->setFocus();
    connect(buttons, &QDialogButtonBox::accepted, this, &ZrColorDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ZrColorDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, &ZrColorDialog::slot_help_button_clicked);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(d->tabs);
    layout->addWidget(buttons);
}

ZrColorDialog::~ZrColorDialog() = default;

void ZrColorDialog::initializeData(ZrJsonPtr param, ZrRxObjectPtr object)
{
    d->param = param;
    d->object = object;
    d->newColor = JsonToZrCmColor(param);
    d->oldColor = d->newColor;

    const int64_t allTabs = kIndexTab | kTrueColorTab | kColorBookTab;
    const int64_t tabBits = param ? param->GetVarL("tabs", allTabs) : allTabs;
    const auto addIndexTab = [this, &param] {
        d->indexTab = new ZrIndexColorWnd(this);
        d->indexTab->initializeData(param, &d->newColor, &d->oldColor);
        d->tabs->addTab(d->indexTab, zrUiText("IDS_ZRED_UICOLORSHEET_PROMPT2", QStringLiteral("  索引颜色  ")));
    };
    if (tabBits & kIndexTab)
        addIndexTab();
    // The true colour tab ("   真彩色   ") and the colour book tab ("  配色系统  ") join here, in
    // that order, when their bits are set.
    if (tabBits & kTrueColorTab) {
        auto* trueColorTab = new ZrTrueColorWnd(this);
        trueColorTab->initializeData(&d->newColor, &d->oldColor);
        d->tabs->addTab(trueColorTab, zrUiText("IDS_ZRED_UICOLORSHEET_PROMPT3", QStringLiteral("   真彩色   ")));
    }
    if (tabBits & kColorBookTab) {
        auto* bookTab = new ZrUiColorBookTab(this);
        bookTab->initializeData(&d->newColor, &d->oldColor);
        d->bookTab = bookTab;
        d->tabs->addTab(bookTab, zrUiText("IDS_ZRED_UICOLORSHEET_PROMPT4", QStringLiteral("  配色系统  ")));
    }
    for (int i = 0; i < d->tabs->count(); ++i) {
        if (auto* line = d->tabs->widget(i)->findChild<ZrColorLineEdit*>())
            connect(line, &QLineEdit::textChanged, this, &ZrColorDialog::onColorChanged);
    }
    // A dialog without tabs would offer nothing to choose: the index tab, without the connection.
    if (d->tabs->count() == 0)
        addIndexTab();

    d->tabs->setCurrentIndex(0);
    const int tab = tabForColor(d->newColor, d->tabs->count());
    if (tab != -1) {
        d->tabs->setCurrentIndex(tab);
        if (tab == 1) {
            if (auto* trueColor = qobject_cast<ZrColorWidgetBase*>(d->tabs->widget(1)))
                trueColor->updateColor(true);
        }
    }
    // Last, so that building the tabs raises nothing.
    connect(d->tabs, &QTabWidget::currentChanged, this, &ZrColorDialog::slot_currentTabChange);
}

int ZrColorDialog::tabForColor(const ZrCmColor& color, int tabCount)
{
    switch (color.colorMethod()) {
    case ZrCmEntityColor::kByLayer:
    case ZrCmEntityColor::kByBlock:
    case ZrCmEntityColor::kByACI:
    case ZrCmEntityColor::kNone:
        return 0;
    default:
        break;
    }
    if (color.hasColorName() && color.hasBookName())
        return tabCount > 2 ? 2 : -1;
    return tabCount > 1 ? 1 : -1;
}

ZrColorTabWidget* ZrColorDialog::tabWidget() const { return d->tabs; }
const ZrCmColor& ZrColorDialog::newColor() const { return d->newColor; }
const ZrCmColor& ZrColorDialog::oldColor() const { return d->oldColor; }

void ZrColorDialog::slot_currentTabChange(int index)
{
    if (auto* tab = qobject_cast<ZrColorWidgetBase*>(d->tabs->widget(index)))
        tab->updateColor(true);
}

// Typing a colour makes OK the button that Return presses.
void ZrColorDialog::onColorChanged(const QString&)
{
    if (d->ok->isDefault())
        return;
    d->ok->setDefault(true);
    d->ok->setFocus(Qt::OtherFocusReason);
}

void ZrColorDialog::slot_help_button_clicked()
{
    if (auto* help = CXuSysHelpSvr::cast(zr_arbitDict_getservice(kHelpServiceSlot).get()))
        help->help(ZrString(L"ZRAPP_ZRR/ZRAPP_ZRR/ZRR_COLOR"));
}

// A tab that holds a colour it cannot read keeps the user until the text is put right. The true
// colour tab always holds a colour and is not asked.
bool ZrColorDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != d->tabs->tabBar() || event->type() != QEvent::MouseButtonPress)
        return QDialog::eventFilter(watched, event);
    const int clicked = d->tabs->tabBar()->tabAt(static_cast<QMouseEvent*>(event)->pos());
    if (clicked == -1 || clicked == d->tabs->currentIndex())
        return false;
    ZrColorWidgetBase* current = d->currentTab();
    const bool asked = current && (current == d->indexTab || current == d->bookTab);
    if (asked && !current->checkvalue()) {
        event->ignore();
        return true;
    }
    return false;
}

void ZrColorDialog::accept()
{
    ZrColorWidgetBase* current = d->currentTab();
    if (current && !current->checkvalue())
        return;
    ZrCmColorToJson(asHandedBack(d->newColor), d->param);
    if (auto* helper = ZrUiHelper::cast(d->object.get()))
        helper->onNotify(d->param);
    QDialog::accept();
}
