#include "zrcommandpanel.h"

#include "zrhostcontrol.h"
#include "zrui.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

struct ZrCommandPanel::Data
{
    QPlainTextEdit* history = nullptr;
    QLineEdit* input = nullptr;
};

ZrCommandPanel::ZrCommandPanel(QWidget* parent) : QWidget(parent), d(std::make_unique<Data>())
{
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    d->history = new QPlainTextEdit(this);
    d->history->setObjectName(QStringLiteral("commandHistory"));
    d->history->setReadOnly(true);
    d->history->setFont(fixed);
    d->history->setMaximumBlockCount(2000);

    d->input = new QLineEdit(this);
    d->input->setObjectName(QStringLiteral("commandInput"));
    d->input->setFont(fixed);
    d->input->setPlaceholderText(QStringLiteral("键入命令名，按回车执行"));

    auto* prompt = new QLabel(QStringLiteral("命令:"), this);
    prompt->setBuddy(d->input);
    auto* inputRow = new QHBoxLayout;
    inputRow->addWidget(prompt);
    inputRow->addWidget(d->input, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 6);
    layout->setSpacing(4);
    layout->addWidget(d->history, 1);
    layout->addLayout(inputRow);

    connect(d->input, &QLineEdit::returnPressed, this, [this] {
        const QString command = d->input->text().trimmed();
        d->input->clear();
        if (!command.isEmpty())
            zredMenuMacro(command.toStdWString().c_str(), true, true);
    });
    ZrHostControl::setMacroListener([this](const ZrHostControl::MacroCall& call) {
        appendLine(QStringLiteral("命令: %1").arg(call.text));
    });
    ZrHostControl::setCommandListener([this](const QString& command, bool known) {
        appendLine(known ? QStringLiteral("  %1 完成").arg(command) : QStringLiteral("  未知命令 \"%1\"").arg(command));
    });
    ZrHostControl::setHelpListener([this](const QString& topic) { appendLine(QStringLiteral("帮助: %1").arg(topic)); });
}

ZrCommandPanel::~ZrCommandPanel()
{
    ZrHostControl::setMacroListener({});
    ZrHostControl::setCommandListener({});
    ZrHostControl::setHelpListener({});
}

void ZrCommandPanel::appendLine(const QString& line)
{
    d->history->appendPlainText(line);
}
