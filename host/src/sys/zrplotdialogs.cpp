#include "zrplotdialogs.h"

#include "zrdbplotsettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// A dialog with a form and OK and Cancel under it.
class FormDialog : public QDialog
{
public:
    FormDialog(QWidget* parent, const QString& objectName, const QString& title) : QDialog(parent)
    {
        setObjectName(objectName);
        setWindowTitle(title);
        auto* layout = new QVBoxLayout(this);
        form = new QFormLayout;
        layout->addLayout(form);
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("确定"));
        buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("取消"));
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        layout->addWidget(buttons);
    }

    QCheckBox* addCheck(const char* name, const QString& text, bool checked)
    {
        auto* box = new QCheckBox(text, this);
        box->setObjectName(QLatin1String(name));
        box->setChecked(checked);
        form->addRow(box);
        return box;
    }

    QComboBox* addCombo(const char* name, const QString& label, const QStringList& items, int current)
    {
        auto* combo = new QComboBox(this);
        combo->setObjectName(QLatin1String(name));
        combo->addItems(items);
        combo->setCurrentIndex(current);
        form->addRow(label, combo);
        return combo;
    }

    QFormLayout* form;
};

const char* const kPapers[] = {"ISO A4 (210.00 x 297.00 毫米)", "ISO A3 (297.00 x 420.00 毫米)",
                               "ISO A2 (420.00 x 594.00 毫米)", "ISO A1 (594.00 x 841.00 毫米)",
                               "ISO A0 (841.00 x 1189.00 毫米)", "Letter (8.50 x 11.00 英寸)"};

} // namespace

bool zrPlotStampDialog(QWidget* parent, SXuPlotStampFields& fields)
{
    FormDialog dialog(parent, QStringLiteral("PlotStampDialog"), QStringLiteral("打印戳记"));
    QCheckBox* drawingName = dialog.addCheck("drawingName", QStringLiteral("图形名"), fields.drawingName);
    QCheckBox* layoutName = dialog.addCheck("layoutName", QStringLiteral("布局名称"), fields.layoutName);
    QCheckBox* dateTime = dialog.addCheck("dateTime", QStringLiteral("日期和时间"), fields.dateTime);
    QCheckBox* loginName = dialog.addCheck("loginName", QStringLiteral("登录名"), fields.loginName);
    QCheckBox* deviceName = dialog.addCheck("deviceName", QStringLiteral("设备名"), fields.deviceName);
    QCheckBox* paperSize = dialog.addCheck("paperSize", QStringLiteral("图纸尺寸"), fields.paperSize);
    QCheckBox* plotScale = dialog.addCheck("plotScale", QStringLiteral("打印比例"), fields.plotScale);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    fields = {drawingName->isChecked(), layoutName->isChecked(), dateTime->isChecked(), loginName->isChecked(),
              deviceName->isChecked(), paperSize->isChecked(), plotScale->isChecked()};
    return true;
}

bool zrPublishOptionsDialog(QWidget* parent, SXuPublishOptions& options)
{
    FormDialog dialog(parent, QStringLiteral("PublishOptionsDialog"), QStringLiteral("输出选项"));
    QComboBox* sheets = dialog.addCombo("sheetMode", QStringLiteral("类型:"),
                                        {QStringLiteral("单页文件"), QStringLiteral("多页文件")}, options.sheetMode == 1);
    QCheckBox* layers = dialog.addCheck("layerInformation", QStringLiteral("包含图层信息"), options.layerInformation);
    QComboBox* merge = dialog.addCombo("mergeControl", QStringLiteral("合并控制:"),
                                       {QStringLiteral("直线覆盖"), QStringLiteral("直线合并")}, options.mergeControl);
    const int passwordRow = !options.passwordProtected ? 0 : options.passwordPrompt ? 1 : 2;
    QComboBox* password = dialog.addCombo("passwordProtection", QStringLiteral("密码保护:"),
                                          {QStringLiteral("禁用"), QStringLiteral("提示输入密码"), QStringLiteral("指定密码")},
                                          passwordRow);
    auto* passwordEdit = new QLineEdit(options.password.toQString(), &dialog);
    passwordEdit->setObjectName(QStringLiteral("password"));
    passwordEdit->setEchoMode(QLineEdit::Password);
    passwordEdit->setEnabled(passwordRow == 2);
    dialog.form->addRow(QStringLiteral("密码:"), passwordEdit);
    QObject::connect(password, QOverload<int>::of(&QComboBox::currentIndexChanged), passwordEdit,
                     [passwordEdit](int row) { passwordEdit->setEnabled(row == 2); });
    QCheckBox* blocks = dialog.addCheck("blockInformation", QStringLiteral("包含块信息"), options.blockInformation);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    options.sheetMode = sheets->currentIndex();
    options.layerInformation = layers->isChecked();
    options.mergeControl = merge->currentIndex() == 1;
    options.passwordProtected = password->currentIndex() != 0;
    options.passwordPrompt = password->currentIndex() == 1;
    options.password = ZrString(password->currentIndex() == 2 ? passwordEdit->text() : QString());
    options.blockInformation = blocks->isChecked();
    return true;
}

bool zrPlotWindowDialog(QWidget* parent, double corners[4])
{
    FormDialog dialog(parent, QStringLiteral("PlotWindowDialog"), QStringLiteral("指定打印窗口"));
    const char* const names[] = {"firstX", "firstY", "secondX", "secondY"};
    const QString labels[] = {QStringLiteral("第一角点 X:"), QStringLiteral("第一角点 Y:"),
                              QStringLiteral("对角点 X:"), QStringLiteral("对角点 Y:")};
    QDoubleSpinBox* boxes[4];
    for (int i = 0; i < 4; ++i) {
        boxes[i] = new QDoubleSpinBox(&dialog);
        boxes[i]->setObjectName(QLatin1String(names[i]));
        boxes[i]->setRange(-1e9, 1e9);
        boxes[i]->setDecimals(4);
        boxes[i]->setValue(corners[i]);
        dialog.form->addRow(labels[i], boxes[i]);
    }
    if (dialog.exec() != QDialog::Accepted)
        return false;
    for (int i = 0; i < 4; ++i)
        corners[i] = boxes[i]->value();
    return true;
}

bool zrPageSetupOverrideDialog(QWidget* parent, ZrDbObjectId settingsId, int overrideKind)
{
    ZrDbObjectPointer<ZrDbPlotSettings> settings(settingsId, ZrDb::kForWrite);
    if (!settings)
        return false;
    const QString kinds[] = {QStringLiteral("PDF"), QStringLiteral("DWF"), QStringLiteral("DWFX")};
    FormDialog dialog(parent, QStringLiteral("PageSetupOverrideDialog"),
                      QStringLiteral("页面设置替代 - %1").arg(kinds[overrideKind >= 0 && overrideKind <= 2 ? overrideKind : 0]));
    QStringList papers;
    for (const char* paper : kPapers)
        papers << QString::fromUtf8(paper);
    const QString current = settings->getCanonicalMediaName().toQString();
    if (!papers.contains(current))
        papers.prepend(current);
    QComboBox* paper = dialog.addCombo("paper", QStringLiteral("图纸尺寸:"), papers, papers.indexOf(current));
    QComboBox* rotation = dialog.addCombo("orientation", QStringLiteral("图形方向:"),
                                          {QStringLiteral("纵向"), QStringLiteral("横向")},
                                          settings->plotRotation() == ZrDbPlotSettings::k90degrees ? 1 : 0);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    settings->setCanonicalMediaName(ZrString(paper->currentText()));
    settings->setPlotRotation(rotation->currentIndex() == 1 ? ZrDbPlotSettings::k90degrees : ZrDbPlotSettings::k0degrees);
    return true;
}
