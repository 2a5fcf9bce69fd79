#include "qt_messagebox.h"
#include "qt_messagebox_p.h"

#include "ZrQtUtilsFunc.h"
#include "zrsvglabel.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDebug>
#include <QFile>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// The bits of "contentFlag".
constexpr int kShowMessage = 1;
constexpr int kShowSelectors = 4;
constexpr int kShowChecks = 8;

// The button sets of "flag" that the builder treats apart.
constexpr int kYesNo = 4;
constexpr int kCustomButtons = 6;

// Messages wider than this are wrapped by hand, so that the box does not grow with long text.
const int kWrapWidth = 351;
const int kWrapLimit = 349;

using zrdialogparts::ButtonChoice;
using zrdialogparts::buttonText;
using zrdialogparts::kCancel;
using zrdialogparts::kNo;
using zrdialogparts::kOk;
using zrdialogparts::kRetry;
using zrdialogparts::kYes;

// The message box counts its OK button 0 in the single-button sets.
const ButtonChoice kOk0 = {"IDS_DLG_PROMPT_OK_KEY", "确定(&O)", 'O', 0};
// The abort and retry buttons cross their shortcuts and ids on purpose: callers read these ids.
const ButtonChoice kAbort = {"IDS_QTUTILS_TASKDIALOG_0", "终止(&T)", 'R', 4};
const ButtonChoice kRetryCrossed = {"IDS_UITASKDIALOG_PROMPT4", "重试(&R)", 'T', 3};
const ButtonChoice kIgnore = {"CMDSRES_IDD_DIALOG_HATCH_27", "忽略(&I)", 'I', 5};

std::vector<ButtonChoice> buttonSet(int flag)
{
    switch (flag) {
    case 0: return {kOk0};
    case 1: return {kOk, kCancel};
    case 2: return {kAbort, kRetryCrossed, kIgnore};
    case 3: return {kYes, kNo, kCancel};
    case 4: return {kYes, kNo};
    case 5: return {kRetry, kCancel};
    default: return {};
    }
}

QString wrapMessage(const QString& msg, const QFontMetrics& metrics)
{
    if (msg.contains(QLatin1Char('\n')) || msg.contains(QLatin1Char('\r'))
        || metrics.horizontalAdvance(msg) < kWrapWidth)
        return msg;
    QString wrapped;
    int sum = 0;
    for (const QChar ch : msg) {
        sum += metrics.horizontalAdvance(ch);
        if (sum > kWrapLimit) {
            wrapped += QLatin1Char('\n');
            sum = 0;
        }
        wrapped += ch;
    }
    return wrapped;
}

// One button per string of `texts` in a column, and in a new group of the dialog with its index as id.
template <class Button>
QButtonGroup* buttonColumn(QDialog* dialog, QVBoxLayout* column, const ZrJsonPtr& texts, bool exclusive)
{
    auto* group = new QButtonGroup;
    group->setParent(dialog);
    group->setExclusive(exclusive);
    for (int i = 0; i < texts->ArrayCount(); ++i) {
        auto* button = new Button(texts->at(i)->safeStrValueW().toQString());
        column->addWidget(button);
        group->addButton(button, i);
    }
    column->setContentsMargins(0, 0, 0, 8);
    return group;
}

} // namespace

ZrQtMessageBox::ZrQtMessageBox(ZrQtUIModalDialogBase* base, QWidget* parent, QFlags<Qt::WindowType> flags)
    : ZrQtModalDialogImpl<ZrQtMessageBox, QDialog>(base, parent, flags)
{
    setWindowFlags(zrdialogparts::withoutExtraTitleButtons(windowFlags()));
    setWindowIcon(QIcon(zrutGetImageFullPath(QStringLiteral("zrapp/zrapp.svg"), true)));
}

// The button groups are children of the dialog and go with it.
ZrQtMessageBox::~ZrQtMessageBox() = default;

bool ZrQtMessageBox::onInitDialog(ZrJsonPtr param, ZrRxObjectPtr helper)
{
    ZrQtModalDialogImpl::onInitDialog(param, helper);
    if (!param.isNull() && param->hasProperty("WindowMaximizeButtonHint"))
        m_noMaximize = param->GetVarB("WindowMaximizeButtonHint", false);
    return onCreateInner() == 1;
}

int ZrQtMessageBox::onCreateInner()
{
    if (m_param.isNull())
        return 0;
    const QString title = m_param->GetVarSW("title").toQString();
    const QString msg = m_param->GetVarSW("msg").toQString();
    const int dlgtype = m_param->GetVarI("dlgtype", 0);
    const int contentFlag = m_param->GetVarI("contentFlag", 0);
    const int flag = m_param->GetVarI("flag", 0);
    m_checkMask = 0;

    auto* outer = new QVBoxLayout(this);
    auto* messageRow = new QHBoxLayout;
    auto* selectorColumn = new QVBoxLayout;
    auto* checkColumn = new QVBoxLayout;
    auto* buttonRow = new QHBoxLayout;
    outer->addSpacing(20);
    outer->addLayout(messageRow);
    outer->addLayout(selectorColumn);
    outer->addLayout(checkColumn);
    outer->addSpacing(20);
    outer->addLayout(buttonRow);

    setWindowTitle(title);
    const int titleWidth = fontMetrics().horizontalAdvance(title) + 150;
    setMinimumWidth(titleWidth < 451 ? titleWidth : 450);
    setWindowIcon(windowIcon());

    if (contentFlag & kShowMessage)
        buildMessageRow(messageRow, msg, dlgtype);
    if (contentFlag & kShowSelectors)
        buildSelectors(selectorColumn);
    if (contentFlag & kShowChecks)
        buildChecks(checkColumn);
    // The selectors are the way out of a box that has them.
    if (!(contentFlag & kShowSelectors))
        buildControlButtons(buttonRow, flag);

    if (m_noMaximize)
        setWindowFlags(windowFlags() & ~Qt::WindowMaximizeButtonHint);
    adjustSize();
    setFixedSize(size());
    return 1;
}

void ZrQtMessageBox::buildMessageRow(QHBoxLayout* row, const QString& msg, int dlgtype)
{
    // Only the low eight bits of the type count here.
    const QString image = zrdialogparts::iconPath(dlgtype & 0xFF);
    if (QFile::exists(image)) {
        auto* icon = new ZrSvgLabel;
        icon->setFixedSize(32, 32);
        icon->setPixmap(image);
        row->addWidget(icon, 0, Qt::AlignLeft);
    }
    auto* label = new QLabel;
    label->setText(wrapMessage(msg, label->fontMetrics()));
    label->setContentsMargins(8, 0, 0, 0);
    row->addWidget(label);
    row->addStretch(0);
    row->setContentsMargins(0, 0, 0, 8);
}

void ZrQtMessageBox::buildSelectors(QVBoxLayout* column)
{
    QButtonGroup* selectors = buttonColumn<QPushButton>(this, column, m_param->GetVarJsonPtr("selBtnText"), true);
    connect(selectors, &QButtonGroup::idClicked, this, [this](int id) {
        qDebug() << "m_pGroupSelectors = " << id;
        m_param->SetDataI("selectedBtn", id);
        accept();
    });
}

void ZrQtMessageBox::buildChecks(QVBoxLayout* column)
{
    QButtonGroup* checks = buttonColumn<QCheckBox>(this, column, m_param->GetVarJsonPtr("selCheckText"), false);
    connect(checks, &QButtonGroup::idToggled, this, [this](int id, bool checked) {
        // The mask has eight bits: boxes from the ninth on never show in it.
        if (id < 8) {
            if (checked)
                m_checkMask |= uint8_t(1u << id);
            else
                m_checkMask &= uint8_t(~(1u << id));
        }
        qDebug() << "m_pGroupCheck = " << id << ", val = " << (checked ? "true" : "false");
        m_param->SetDataI("selectedCheck", m_checkMask);
    });
}

void ZrQtMessageBox::buildControlButtons(QHBoxLayout* row, int flag)
{
    // The buttons sit at the right.
    row->addStretch(0);
    m_pGroupBtns = new QButtonGroup;
    m_pGroupBtns->setParent(this);
    if (flag == kCustomButtons) {
        const ZrJsonPtr texts = m_param->GetVarJsonPtr("btnText");
        for (int i = 0; i < texts->ArrayCount(); ++i)
            addControlButton(row, texts->at(i)->safeStrValueW().toQString(), QChar(), i);
        if (texts->ArrayCount() == 0)
            addControlButton(row, buttonText(kOk0), QChar(), 0);
    } else {
        const std::vector<ButtonChoice> choices = buttonSet(flag);
        for (const ButtonChoice& choice : choices) {
            QPushButton* button = addControlButton(row, buttonText(choice), QLatin1Char(choice.shortcut), choice.id);
            // Yes and no: no is the safe answer.
            if (flag == kYesNo && &choice == &choices[1] && button)
                button->setFocus(Qt::OtherFocusReason);
        }
    }
    row->setContentsMargins(0, 0, 0, 8);
    connect(m_pGroupBtns, &QButtonGroup::idClicked, this, [this](int id) {
        m_param->SetDataI("ControlBtn", id);
        blockSignals(true);
        accept();
        blockSignals(false);
    }, Qt::UniqueConnection);
}

QPushButton* ZrQtMessageBox::addControlButton(QHBoxLayout* row, const QString& text, QChar shortcut, int id)
{
    if (!row || !m_pGroupBtns)
        return nullptr;
    auto* button = new QPushButton(text);
    if (!shortcut.isNull()) {
        // The plain letter replaces the mnemonic of the text; Alt with the letter is a shortcut of its own.
        const int key = shortcut.unicode();
        button->setShortcut(QKeySequence(key));
        auto* altShortcut = new QShortcut(QKeySequence(int(Qt::ALT) | key), button, nullptr, nullptr, Qt::WindowShortcut);
        connect(altShortcut, &QShortcut::activated, button, &QPushButton::click);
    }
    row->addWidget(button, 0, Qt::AlignRight | Qt::AlignVCenter);
    m_pGroupBtns->addButton(button, id);
    return button;
}

void ZrQtMessageBox::reject()
{
    const int last = zrdialogparts::lastButtonId(m_pGroupBtns, -1);
    if (last != -1)
        m_param->SetDataI("ControlBtn", last);
    QDialog::reject();
}

QString ZrQtMessageBox::getTextColor() const { return zrdialogparts::textColor(this); }

QString ZrQtMessageBox::getButtonTextColor() const { return QStringLiteral("rgb(0, 116, 216)"); }

namespace zrdialogparts {

namespace {

struct IconEntry
{
    int code;
    const char* image;
    bool raw;
};

const IconEntry kIcons[] = {
    {32, "question.svg", false},
    {48, "common/information.svg", true},
    {64, "TriangleWarningBig.svg", false},
    {80, "common/error.png", true},
};

} // namespace

QString iconPath(int code)
{
    for (const IconEntry& entry : kIcons) {
        if (entry.code == code)
            return zrutGetImageFullPath(QString::fromLatin1(entry.image), entry.raw);
    }
    return QString();
}

bool isIconCode(int code)
{
    return std::any_of(std::begin(kIcons), std::end(kIcons), [code](const IconEntry& entry) { return entry.code == code; });
}

const ButtonChoice kOk = {"IDS_DLG_PROMPT_OK_KEY", "确定(&O)", 'O', 1};
const ButtonChoice kCancel = {"IDS_EATTEXT_5", "取消(&C)", 'C', 2};
const ButtonChoice kYes = {"IDS_EATTEXT_118", "是(&Y)", 'Y', 6};
const ButtonChoice kNo = {"IDS_EATTEXT_119", "否(&N)", 'N', 7};
const ButtonChoice kRetry = {"IDS_UITASKDIALOG_PROMPT4", "重试(&R)", 'R', 4};

QString buttonText(const ButtonChoice& choice) { return zrUiText(choice.key, QString::fromUtf8(choice.text)); }

int lastButtonId(const QButtonGroup* group, int none)
{
    if (!group || group->buttons().isEmpty())
        return none;
    return group->id(group->buttons().last());
}

QString textColor(const QWidget* widget)
{
    QColor color = widget->palette().color(QPalette::Window);
    if (color.lightness() < 96) {
        color.setHsl(color.hslHue(), color.hslSaturation(), 255 - color.lightness(), 255);
        return QString::asprintf("rgb(%d, %d, %d)", color.red(), color.green(), color.blue());
    }
    return QStringLiteral("rgb(0, 51, 153)");
}

Qt::WindowFlags withoutExtraTitleButtons(Qt::WindowFlags flags)
{
    return flags & ~(Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint | Qt::WindowContextHelpButtonHint);
}

} // namespace zrdialogparts
