// zrui's steps, run in-process on dialogs of the test's own: radio buttons, and a message box that a
// dialog opens over itself, which only the steps after the one that opened it can answer.

#include "zrsteps.h"
#include "zrtestmain.h"

#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QVBoxLayout>

namespace {

// A run whose steps cannot go on ends at this limit, with the dialog rejected, instead of hanging.
constexpr int kTimeLimitMs = 10000;

const QString kRefusalTitle = QStringLiteral("名称");
const QString kRefusalText = QStringLiteral("名称不能为空。");

QPushButton* addOkButton(QDialog* dialog)
{
    auto* ok = new QPushButton(QStringLiteral("确定"), dialog);
    ok->setObjectName(QStringLiteral("btnOK"));
    ok->setAutoDefault(false);
    dialog->layout()->addWidget(ok);
    return ok;
}

// Refuses an empty name with a message box over itself and stays open, as the module's dialogs do.
class NameDialog : public QDialog
{
public:
    NameDialog()
    {
        new QVBoxLayout(this);
        m_name = new QLineEdit(this);
        layout()->addWidget(m_name);
        connect(addOkButton(this), &QPushButton::clicked, this, [this] {
            if (!m_name->text().isEmpty())
                return accept();
            QMessageBox box(QMessageBox::Warning, kRefusalTitle, kRefusalText, QMessageBox::NoButton, this);
            box.addButton(QStringLiteral("知道了"), QMessageBox::AcceptRole);
            box.exec();
            m_name->setFocus(Qt::OtherFocusReason);
        });
    }

    QString name() const { return m_name->text(); }

private:
    QLineEdit* m_name;
};

struct MessageBoxSeen
{
    QString title;
    QString text;
    bool operator==(const MessageBoxSeen& other) const { return title == other.title && text == other.text; }
};

} // namespace

class TstZrSteps : public QObject
{
    Q_OBJECT

private:
    // Runs `dialog` modally with the steps; `error` is what the runner reports.
    int runWithSteps(QDialog* dialog, const QString& stepText, QString* error,
                     QVector<MessageBoxSeen>* messageBoxes = nullptr)
    {
        QVector<ZrStep> steps;
        if (!parseSteps(stepText, &steps, error))
            return -1;
        ZrStepRunner runner(steps, QString(), kTimeLimitMs);
        if (messageBoxes) {
            runner.onMessageBox([messageBoxes](const QString& title, const QString& text) {
                messageBoxes->append({title, text});
            });
        }
        runner.start();
        const int result = dialog->exec();
        *error = runner.error();
        return result;
    }

private Q_SLOTS:
    // The rows are wide, so the middle of a row lies beyond the button's label.
    void radioButtonIsClickedByItsText()
    {
        QDialog dialog;
        dialog.setMinimumWidth(500);
        new QVBoxLayout(&dialog);
        auto* circle = new QRadioButton(QStringLiteral("圆"), &dialog);
        auto* square = new QRadioButton(QStringLiteral("方"), &dialog);
        dialog.layout()->addWidget(circle);
        dialog.layout()->addWidget(square);
        circle->setChecked(true);
        connect(addOkButton(&dialog), &QPushButton::clicked, &dialog, &QDialog::accept);

        QString error;
        QCOMPARE(runWithSteps(&dialog, QStringLiteral("click:方;click:btnOK"), &error), int(QDialog::Accepted));
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QVERIFY(square->isChecked());
        QVERIFY(!circle->isChecked());
    }

    void nestedMessageBoxIsAnsweredByTheNextStep_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::newRow("its button") << "click:btnOK;click:知道了;type:Li;click:btnOK";
        // Esc sent to the dialog instead of the box would reject the dialog.
        QTest::newRow("Esc") << "click:btnOK;key:Esc;type:Li;click:btnOK";
        QTest::newRow("twice") << "click:btnOK;key:Esc;click:btnOK;click:知道了;type:Li;click:btnOK";
    }

    void nestedMessageBoxIsAnsweredByTheNextStep()
    {
        QFETCH(QString, steps);
        NameDialog dialog;
        QString error;
        QVector<MessageBoxSeen> seen;
        QCOMPARE(runWithSteps(&dialog, steps, &error, &seen), int(QDialog::Accepted));
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(dialog.name(), QStringLiteral("Li"));
        const MessageBoxSeen refusal{kRefusalTitle, kRefusalText};
        QCOMPARE(seen, QVector<MessageBoxSeen>(steps.count(QStringLiteral("click:btnOK")) - 1, refusal));
    }

    // The failing step is in the nested box's loop: the run still ends, naming it, with both windows closed.
    void failingStepInANestedBoxEndsTheRun()
    {
        NameDialog dialog;
        QString error;
        QCOMPARE(runWithSteps(&dialog, QStringLiteral("click:btnOK;click:NoSuchButton;type:Li;click:btnOK"), &error),
                 int(QDialog::Rejected));
        QVERIFY2(error.startsWith(QStringLiteral("step 2 \"click:NoSuchButton\"")), qPrintable(error));
        QVERIFY(dialog.name().isEmpty());
    }
};

ZR_TEST_SUITE(TstZrSteps)
#include "tst_zrsteps.moc"
