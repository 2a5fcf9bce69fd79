#include "qt_taskdialog.h"
#include "qt_messagebox_p.h"

#include "ZrQtUtilsFunc.h"
#include "zrsvglabel.h"

#include "zrarbitdict.h"
#include "zrsystem.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFile>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace {

// The bits of "contentFlag".
constexpr int kShowMessage = 1;
constexpr int kShowStandardButtons = 2;
constexpr int kShowCommandButtons = 4;
constexpr int kShowCheckBox = 8;

// The bits of "options".
constexpr int kOpenExternalLinks = 1;
constexpr int kIconAsWindowIcon = 2;

// "flag" 64 takes the buttons from "btnText".
constexpr int kCustomButtons = 64;
// The bit of "ControlBtnId" by which the check box disables the No button.
constexpr int kCheckDisablesNo = 4;
// What "ControlBtn" holds until a choice is made.
constexpr int kClosedWithoutChoice = 8;

constexpr int kCommandButtonMinWidth = 450;
constexpr int kNotGiven = -1;

using zrdialogparts::ButtonChoice;

const ButtonChoice kClose = {"CMDSRES_IDD_DIALOG_LAYWALK_MAIN_6", "关闭(&C)", 'C', 8};

struct StandardButton
{
    int bit;
    const ButtonChoice* choice;
};

// Always in this order, whatever the numeric order of the bits.
const StandardButton kStandardButtons[] = {
    {1, &zrdialogparts::kOk},     {2, &zrdialogparts::kYes},     {4, &zrdialogparts::kNo},
    {16, &zrdialogparts::kRetry}, {8, &zrdialogparts::kCancel}, {32, &kClose},
};

// The host's display scale for the arrow of a command button; 1 without the host's system service.
double displayScale()
{
    const ZrRxObjectPtr service = zr_arbitDict_getservice(1);
    CXuSysHelpSvr* help = CXuSysHelpSvr::cast(service.get());
    return help ? help->displayScale(0) : 1.0;
}

QLabel* wrappedLabel(const QString& text)
{
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

QFont fontOfSize(QFont font, int pointSize)
{
    font.setPointSize(pointSize);
    return font;
}

} // namespace

ZrQtTaskButton::ZrQtTaskButton(QWidget* parent) : QPushButton(parent)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* iconColumn = new QVBoxLayout;
    auto* arrow = new QLabel;
    arrow->setFixedSize(m_iconSize, m_iconSize);
    const int pixels = qRound(m_iconSize * displayScale());
    arrow->setPixmap(QIcon(zrutGetImageFullPath(QStringLiteral("DesignCenter/DcNextPage.svg"), false)).pixmap(pixels, pixels));
    arrow->setScaledContents(true);
    arrow->setAlignment(Qt::AlignVCenter);
    arrow->setContentsMargins(m_margin, 0, 0, 0);
    iconColumn->addWidget(arrow);
    iconColumn->addItem(new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Expanding));
    layout->addLayout(iconColumn);

    auto* textColumn = new QVBoxLayout;
    textColumn->setContentsMargins(0, 0, 0, 0);
    m_pTitleLabel = new QLabel;
    m_pDetailLabel = new QLabel;
    for (QLabel* label : {m_pTitleLabel, m_pDetailLabel}) {
        // The button is the buddy, so the caption's mnemonic presses it.
        label->setBuddy(this);
        label->setAlignment(Qt::AlignVCenter);
        label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        label->setMinimumHeight(m_iconSize);
        textColumn->addWidget(label);
    }
    m_pTitleLabel->setContentsMargins(0, 0, m_margin, 0);
    m_pDetailLabel->setContentsMargins(0, m_margin, m_margin, m_margin);
    layout->addLayout(textColumn);

    installEventFilter(this);
    m_pTitleLabel->installEventFilter(this);
    m_pDetailLabel->installEventFilter(this);
}

ZrQtTaskButton::~ZrQtTaskButton() = default;

void ZrQtTaskButton::setText(const QString& title, const QString& detail)
{
    if (title.isEmpty())
        return;
    m_pTitleLabel->setFont(fontOfSize(m_pTitleLabel->font(), 10));
    m_pDetailLabel->setFont(fontOfSize(m_pDetailLabel->font(), 8));
    m_pTitleLabel->setText(title);
    if (detail.isEmpty()) {
        m_pTitleLabel->setWordWrap(true);
        m_pDetailLabel->hide();
    } else {
        m_pTitleLabel->setWordWrap(false);
        m_pDetailLabel->show();
        m_pDetailLabel->setWordWrap(true);
        m_pDetailLabel->setText(detail);
    }
}

void ZrQtTaskButton::resetButtonContentDisplay()
{
    const int labelWidth = width() - m_iconSize - m_margin;
    const QString title = m_pTitleLabel->text();
    const QString detail = m_pDetailLabel->text();
    if (labelWidth <= 0 || title.isEmpty())
        return;
    const QFontMetrics titleMetrics(m_pTitleLabel->font());
    const QFontMetrics detailMetrics(m_pDetailLabel->font());
    m_pDetailLabel->setAlignment(Qt::AlignLeft);
    if (detail.isEmpty()) {
        m_pTitleLabel->setWordWrap(true);
        m_pTitleLabel->setMinimumHeight(m_iconSize);
        m_pDetailLabel->hide();
        setFixedHeight(m_iconSize + titleMetrics.horizontalAdvance(title) / labelWidth * titleMetrics.lineSpacing());
    } else {
        m_pTitleLabel->setWordWrap(false);
        m_pTitleLabel->setFixedHeight(m_iconSize);
        m_pDetailLabel->show();
        m_pDetailLabel->setWordWrap(true);
        setFixedHeight((detailMetrics.horizontalAdvance(detail) / labelWidth + 1) * detailMetrics.lineSpacing()
                       + 2 * m_margin + m_iconSize);
    }
}

void ZrQtTaskButton::setCommondId(int id) { m_commandId = id; }
int ZrQtTaskButton::getCommandId() const { return m_commandId; }

void ZrQtTaskButton::keyPressEvent(QKeyEvent* event)
{
    // Only Return and Enter answer; the push button's own keys (Space) are not passed on.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        Q_EMIT taskBtnClick(m_commandId);
}

bool ZrQtTaskButton::eventFilter(QObject* object, QEvent* event)
{
    // The press answers at once; the push button's clicked signal is not used.
    if (object == this && event->type() == QEvent::MouseButtonPress && isEnabled()
        && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
        Q_EMIT taskBtnClick(m_commandId);
    else if ((object == m_pTitleLabel || object == m_pDetailLabel) && event->type() == QEvent::Shortcut && isEnabled())
        Q_EMIT taskBtnClick(m_commandId);
    return QPushButton::eventFilter(object, event);
}

ZrQtTaskDialog::ZrQtTaskDialog(ZrQtUIModalDialogBase* base, QWidget* parent, QFlags<Qt::WindowType> flags)
    : ZrQtModalDialogImpl<ZrQtTaskDialog, QDialog>(base, parent, flags)
{
    // Here rather than after the content is built: new window flags would take the focus off the
    // button chosen for it.
    setWindowFlags(zrdialogparts::withoutExtraTitleButtons(windowFlags()));
}

// The button group is a child of the dialog and goes with it.
ZrQtTaskDialog::~ZrQtTaskDialog() = default;

bool ZrQtTaskDialog::onInitDialog(ZrJsonPtr param, ZrRxObjectPtr helper)
{
    ZrQtModalDialogImpl::onInitDialog(param, helper);
    if (m_param.isNull())
        return false;
    m_title = m_param->GetVarSW("title").toQString();
    m_msg = m_param->GetVarSW("msg").toQString();
    m_content = m_param->GetVarSW("content").toQString();
    m_expandedInformation = m_param->GetVarSW("expandedInformation").toQString();
    m_mainIcon = m_param->GetVarSW("mainicon").toQString();
    m_dlgType = m_param->GetVarI("dlgtype", 0);
    m_contentFlag = m_param->GetVarI("contentFlag", 0);
    m_flag = m_param->GetVarI("flag", 0);
    m_focusFlagBtnId = m_param->GetVarI("focusFlagBtnId", 0);
    m_options = m_param->GetVarI("options", 0);
    m_dlgWidth = m_param->GetVarI("dlgWidth", m_dlgWidth);
    m_dlgHeight = m_param->GetVarI("dlgHeight", m_dlgHeight);

    if (m_param->hasProperty("enableBtnId")) {
        const ZrJsonPtr ids = m_param->GetVarJsonPtr("enableBtnId");
        for (int i = 0; i < ids->ArrayCount(); ++i) {
            const int64_t id = ids->at(i)->safeIntValue(kNotGiven);
            if (id != kNotGiven && id >= std::numeric_limits<int>::min() && id <= std::numeric_limits<int>::max())
                m_enableBtnIds.append(int(id));
        }
    }
    // A dialog given only text gets an OK button.
    if (!m_param->hasProperty("selBtnText") && m_flag == 0 && m_focusFlagBtnId == 0) {
        m_flag = 1;
        m_focusFlagBtnId = 1;
        m_contentFlag |= kShowStandardButtons;
    }

    m_pMainLayout = new QVBoxLayout(this);
    createTitle();
    createBody();
    createBottom();
    m_param->SetDataI("ControlBtn", kClosedWithoutChoice);

    setDlgSize();
    adjustSize();

    // Esc on any part of the dialog closes it as the window's close button would.
    for (QWidget* child : findChildren<QWidget*>())
        child->installEventFilter(this);
    installEventFilter(this);
    return true;
}

void ZrQtTaskDialog::setDlgSize()
{
    // A given size is kept within the screen, and never below what the content needs.
    const QScreen* shownOn = (parentWidget() ? parentWidget() : this)->screen();
    const QSize available = shownOn ? shownOn->availableGeometry().size() : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (m_dlgHeight != kNotGiven)
        setFixedHeight(std::min(std::max(m_dlgHeight, sizeHint().height()), available.height()));
    if (m_dlgWidth != kNotGiven)
        setFixedWidth(std::max(std::min(m_dlgWidth, available.width()), minimumSizeHint().width()));
}

void ZrQtTaskDialog::createTitle()
{
    setWindowTitle(m_title);
    if (zrdialogparts::isIconCode(m_dlgType))
        m_mainIcon = zrdialogparts::iconPath(m_dlgType);
    if ((m_options & kIconAsWindowIcon) && !m_mainIcon.isEmpty() && QFile::exists(m_mainIcon)) {
        QIcon icon;
        icon.addFile(m_mainIcon, QSize(), QIcon::Normal, QIcon::Off);
        setWindowIcon(icon);
    }
}

void ZrQtTaskDialog::createBody()
{
    auto* row = new QWidget;
    auto* rowLayout = new QHBoxLayout(row);
    m_pMainLayout->addWidget(row);
    if (!m_mainIcon.isEmpty() && QFile::exists(m_mainIcon)) {
        auto* icon = new ZrSvgLabel;
        icon->setFixedSize(32, 32);
        icon->setPixmap(m_mainIcon);
        rowLayout->addWidget(icon, 0, Qt::AlignTop);
    }
    auto* body = new QWidget;
    m_pBodyLayout = new QVBoxLayout(body);
    rowLayout->addWidget(body);
    createMainInfo();
    createRadioBtns();
    createCommandBtns();
}

void ZrQtTaskDialog::createMainInfo()
{
    auto* info = new QWidget;
    auto* infoLayout = new QHBoxLayout(info);
    infoLayout->setSpacing(1);
    infoLayout->setContentsMargins(1, 1, 1, 1);
    m_pBodyLayout->addWidget(info);
    if (!(m_contentFlag & kShowMessage))
        return;

    auto* texts = new QWidget;
    auto* textsLayout = new QVBoxLayout(texts);
    textsLayout->setSpacing(1);
    textsLayout->setContentsMargins(1, 1, 1, 1);
    infoLayout->addWidget(texts);
    textsLayout->addWidget(wrappedLabel(m_msg));
    const bool openLinks = m_options & kOpenExternalLinks;
    if (!m_content.isEmpty()) {
        textsLayout->addWidget(new QLabel);
        QLabel* content = wrappedLabel(m_content);
        content->setOpenExternalLinks(openLinks);
        textsLayout->addWidget(content);
    }
    if (!m_expandedInformation.isEmpty()) {
        QLabel* expanded = wrappedLabel(m_expandedInformation);
        expanded->setOpenExternalLinks(openLinks);
        textsLayout->addWidget(expanded);
    }
}

void ZrQtTaskDialog::createCommandBtns()
{
    if (!(m_contentFlag & kShowCommandButtons))
        return;
    auto* column = new QWidget;
    auto* columnLayout = new QVBoxLayout(column);
    columnLayout->setSpacing(5);
    columnLayout->setContentsMargins(1, 1, 1, 1);
    m_commandArea = new QScrollArea;
    m_commandArea->setFrameShape(QFrame::NoFrame);
    m_commandArea->setWidgetResizable(true);
    m_commandArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_commandArea->setWidget(column);
    m_pBodyLayout->addWidget(m_commandArea);

    const ZrJsonPtr items = m_param->GetVarJsonPtr("selBtnText");
    const int defaultId = m_param->GetVarI("defaultBtnId", 0);
    ZrQtTaskButton* defaultButton = nullptr;
    for (int i = 0; i < items->ArrayCount(); ++i) {
        const ZrJsonPtr item = items->at(i);
        auto* button = new ZrQtTaskButton;
        button->setText(item->GetVarSW("caption").toQString(), item->GetVarSW("extend").toQString());
        button->setCommondId(item->GetVarI("id", 0));
        button->setMinimumWidth(kCommandButtonMinWidth);
        if (button->getCommandId() == defaultId) {
            button->setDefault(true);
            defaultButton = button;
        } else {
            button->setAutoDefault(false);
            button->setDefault(false);
        }
        columnLayout->addWidget(button);
        m_taskBtns.append(button);
        connect(button, &ZrQtTaskButton::taskBtnClick, this, [this](int id) {
            m_param->SetDataI("ControlBtn", id);
            accept();
        });
    }
    if (!defaultButton && !m_taskBtns.isEmpty()) {
        defaultButton = m_taskBtns.first();
        defaultButton->setDefault(true);
    }
    // The default command answers Return: a command button answers only the keys it has the focus of.
    if (defaultButton)
        defaultButton->setFocus(Qt::OtherFocusReason);
    // Room for a scroll bar beside buttons at their narrowest, whether it shows or not.
    m_commandArea->setMinimumWidth(column->minimumSizeHint().width()
                                   + m_commandArea->verticalScrollBar()->sizeHint().width());
}

void ZrQtTaskDialog::createBottom()
{
    if (!(m_contentFlag & kShowCheckBox) && !((m_contentFlag & kShowStandardButtons) && m_flag != 0))
        return;
    auto* bottom = new QWidget;
    m_pBottomLayout = new QVBoxLayout(bottom);
    m_pBottomLayout->setSpacing(1);
    m_pBottomLayout->setContentsMargins(1, 1, 1, 1);
    m_pMainLayout->addWidget(bottom);
    createCheckBoxesAndYesNoBtns();
    createFooterInfo();
}

void ZrQtTaskDialog::createCheckBoxesAndYesNoBtns()
{
    auto* column = new QWidget;
    auto* columnLayout = new QVBoxLayout(column);
    columnLayout->setSpacing(1);
    columnLayout->setContentsMargins(1, 1, 1, 1);
    m_pBottomLayout->addWidget(column);

    if (m_contentFlag & kShowCheckBox) {
        m_checkBox = new QCheckBox(m_param->GetVarSW("checkboxText").toQString());
        columnLayout->addWidget(m_checkBox, 0, Qt::AlignLeft);
        m_checkBox->setChecked(m_param->GetVarB("checkboxChecked", false));
        m_param->SetDataB("selectedCheck", m_checkBox->isChecked());
        // The listed command buttons follow the box from the start, not only from its first change.
        setBtnState(m_checkBox->isChecked());
        connect(m_checkBox, &QCheckBox::stateChanged, this, [this](int state) {
            setBtnState(m_checkBox->isChecked());
            m_param->SetDataB("selectedCheck", state == Qt::Checked);
        });
    }
    if (!(m_contentFlag & kShowStandardButtons) || m_flag == 0)
        return;

    const int controlBtnId = m_param->GetVarI("ControlBtnId", 0);
    const int disabledMask = m_param->GetVarI("nDisabledButtonMask", 0);
    auto* row = new QWidget;
    auto* rowLayout = new QHBoxLayout(row);
    rowLayout->setSpacing(1);
    rowLayout->setContentsMargins(1, 1, 1, 1);
    columnLayout->addWidget(row);
    rowLayout->addItem(new QSpacerItem(40, 20, QSizePolicy::Expanding, QSizePolicy::Minimum));
    m_pGroupBtns = new QButtonGroup(this);

    auto addButton = [&](const QString& text, int id) {
        auto* button = new QPushButton(text);
        m_pGroupBtns->addButton(button, id);
        rowLayout->addWidget(button, 0, Qt::AlignRight);
        return button;
    };
    QPushButton* focusButton = nullptr;
    if (m_flag == kCustomButtons) {
        const ZrJsonPtr texts = m_param->GetVarJsonPtr("btnText");
        // The mask is ANDed with the index, not with a bit shifted to it: a mask of 1 disables 1, 3, 5 ...
        for (int i = 0; i < texts->ArrayCount(); ++i) {
            QPushButton* button = addButton(texts->at(i)->safeStrValueW().toQString(), i);
            button->setEnabled((i & disabledMask) == 0);
            if (i == 0)
                button->setAutoDefault(true);
        }
        if (texts->ArrayCount() == 0) {
            QPushButton* button = addButton(zrdialogparts::buttonText(zrdialogparts::kOk), zrdialogparts::kOk.id);
            button->setEnabled(!(disabledMask & 1));
            button->setAutoDefault(true);
        }
    } else {
        for (const StandardButton& standard : kStandardButtons) {
            if (!(m_flag & standard.bit))
                continue;
            QPushButton* button = addButton(zrdialogparts::buttonText(*standard.choice), standard.choice->id);
            button->setEnabled(!(disabledMask & standard.bit));
            if (m_focusFlagBtnId == standard.bit) {
                button->setAutoDefault(true);
                focusButton = button->isEnabled() ? button : nullptr;
            }
            if (standard.choice == &zrdialogparts::kNo && (controlBtnId & kCheckDisablesNo) && m_checkBox
                && button->isEnabled())
                setCtlBtnState(m_checkBox, button);
        }
    }
    // The chosen button starts with the focus, so Return presses it; the command buttons, when there
    // are any, keep the focus.
    if (focusButton && m_taskBtns.isEmpty())
        focusButton->setFocus(Qt::OtherFocusReason);

    connect(m_pGroupBtns, &QButtonGroup::idClicked, this, [this](int id) {
        m_param->SetDataI("ControlBtn", id);
        accept();
    });
}

void ZrQtTaskDialog::setCtlBtnState(QCheckBox* check, QPushButton* button)
{
    button->setEnabled(!check->isChecked());
    connect(check, &QCheckBox::stateChanged, button, [check, button] { button->setEnabled(!check->isChecked()); });
}

void ZrQtTaskDialog::setBtnState(int disable)
{
    for (ZrQtTaskButton* button : qAsConst(m_taskBtns)) {
        if (m_enableBtnIds.contains(button->getCommandId()))
            button->setEnabled(disable == 0);
    }
}

bool ZrQtTaskDialog::hasCancel() const
{
    if (m_param.isNull())
        return false;
    if ((m_contentFlag & kShowCheckBox) || (m_param->GetVarI("nDisabledButtonMask", 0) & 8))
        return true;
    const ZrJsonPtr items = m_param->GetVarJsonPtr("selBtnText");
    for (int i = 0; i < items->ArrayCount(); ++i) {
        if (items->at(i)->GetVarI("id", 0) == kZrDlgCancel)
            return true;
    }
    return false;
}

QString ZrQtTaskDialog::getTextColor() const { return zrdialogparts::textColor(this); }

void ZrQtTaskDialog::reject()
{
    // Without a button row Esc is a cancel; an empty row leaves the answer of a dialog closed
    // without a choice.
    const int id = zrdialogparts::lastButtonId(m_pGroupBtns, m_pGroupBtns ? kNotGiven : kZrDlgCancel);
    if (id != kNotGiven)
        m_param->SetDataI("ControlBtn", id);
    QDialog::reject();
}

bool ZrQtTaskDialog::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        close();
    return QDialog::eventFilter(object, event);
}

void ZrQtTaskDialog::showEvent(QShowEvent* event)
{
    // Only now do the command buttons have their width.
    for (ZrQtTaskButton* button : qAsConst(m_taskBtns))
        button->resetButtonContentDisplay();
    fitCommandColumn();
    QDialog::showEvent(event);
}

void ZrQtTaskDialog::fitCommandColumn()
{
    // A given height decides alone; the column then scrolls within it.
    if (!m_commandArea || m_dlgHeight != kNotGiven)
        return;
    const QScreen* shownOn = screen();
    const int limit = shownOn ? shownOn->availableGeometry().height() * 2 / 3 : QWIDGETSIZE_MAX;
    m_commandArea->setMinimumHeight(std::min(m_commandArea->widget()->sizeHint().height(), limit));
}
