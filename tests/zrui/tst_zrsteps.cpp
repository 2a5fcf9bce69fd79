// zrui's steps, run in-process on dialogs of the test's own: a message box that a dialog opens over
// itself, a painted widget that notes the mouse events it gets, and the widgets a choice is made in.

#include "zrsteps.h"
#include "zrtestmain.h"

#include <QComboBox>
#include <QLabel>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTabWidget>
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

// A grid of cells drawn by hand, as palettes and swatches are, that notes the mouse as it sees it.
class PaintedGrid : public QWidget
{
public:
    static constexpr int kWidth = 80;
    static constexpr int kHeight = 40;

    explicit PaintedGrid(QWidget* parent) : QWidget(parent)
    {
        setObjectName(QStringLiteral("grid"));
        setFixedSize(kWidth, kHeight);
        setMouseTracking(true);
    }

    // "enter", "leave", then "press X,Y", "release X,Y", "double X,Y" and "move X,Y".
    QStringList seen;

protected:
    bool event(QEvent* event) override
    {
        static const QMap<QEvent::Type, QString> names{
            {QEvent::Enter, QStringLiteral("enter")},
            {QEvent::Leave, QStringLiteral("leave")},
            {QEvent::MouseButtonPress, QStringLiteral("press")},
            {QEvent::MouseButtonRelease, QStringLiteral("release")},
            {QEvent::MouseButtonDblClick, QStringLiteral("double")},
            {QEvent::MouseMove, QStringLiteral("move")},
        };
        const QString name = names.value(event->type());
        if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
            seen << name;
        } else if (!name.isEmpty()) {
            const QPoint at = static_cast<QMouseEvent*>(event)->pos();
            seen << QStringLiteral("%1 %2,%3").arg(name).arg(at.x()).arg(at.y());
        }
        return QWidget::event(event);
    }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        for (int x = 0; x < kWidth; x += 10) {
            for (int y = 0; y < kHeight; y += 10)
                painter.fillRect(x, y, 10, 10, QColor::fromHsv((x * 4 + y) % 360, 200, 230));
        }
    }
};

// A dialog with a column of widgets and an OK button that accepts it.
class ColumnDialog : public QDialog
{
public:
    ColumnDialog()
    {
        new QVBoxLayout(this);
        connect(addOkButton(this), &QPushButton::clicked, this, &QDialog::accept);
    }

    template <typename Widget>
    Widget* add(const QString& name)
    {
        auto* widget = new Widget(this);
        widget->setObjectName(name);
        static_cast<QVBoxLayout*>(layout())->insertWidget(layout()->count() - 1, widget);
        return widget;
    }
};

} // namespace

class TstZrSteps : public QObject
{
    Q_OBJECT

private:
    // Runs `dialog` modally with the steps; `error` is what the runner reports.
    int runWithSteps(QDialog* dialog, const QString& stepText, QString* error)
    {
        QVector<ZrStep> steps;
        if (!parseSteps(stepText, &steps, error))
            return -1;
        ZrStepRunner runner(steps, QString(), kTimeLimitMs);
        runner.start();
        const int result = dialog->exec();
        *error = runner.error();
        return result;
    }

    // Runs the steps and then OK; empty when all went well, else what did not.
    QString runThenAccept(QDialog* dialog, const QString& stepText)
    {
        QString error;
        const int result = runWithSteps(dialog, stepText + QStringLiteral(";click:btnOK"), &error);
        if (error.isEmpty() && result != QDialog::Accepted)
            error = QStringLiteral("the dialog was not accepted");
        return error;
    }

private Q_SLOTS:

    void newStepsAreRead_data()
    {
        QTest::addColumn<QString>("written");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<QString>("item");

        QTest::newRow("clickat") << "clickat:grid@3,4" << int(ZrStep::ClickAt) << "grid" << QPoint(3, 4) << "";
        QTest::newRow("hover, blanks around the pixels") << "hover:grid@ 12 , 7 " << int(ZrStep::Hover) << "grid"
                                                         << QPoint(12, 7) << "";
        QTest::newRow("the last @ ends the name") << "clickat:a@b@5,6" << int(ZrStep::ClickAt) << "a@b" << QPoint(5, 6)
                                                  << "";
        // Outside any widget: the run, not the reading, refuses it.
        QTest::newRow("select") << "select:layers=图层 1" << int(ZrStep::Select) << "layers" << QPoint() << "图层 1";
        QTest::newRow("the first = ends the name") << "select:combo=a=b@1,2" << int(ZrStep::Select) << "combo"
                                                   << QPoint() << "a=b@1,2";
    }

    void newStepsAreRead()
    {
        QFETCH(QString, written);
        QFETCH(int, kind);
        QFETCH(QString, target);
        QFETCH(QPoint, point);
        QFETCH(QString, item);

        QVector<ZrStep> steps;
        QString error;
        QVERIFY2(parseSteps(QStringLiteral("key:Esc;") + written, &steps, &error), qPrintable(error));
        QCOMPARE(steps.size(), 2);
        QCOMPARE(int(steps[1].kind), kind);
        QCOMPARE(steps[1].target, target);
        QCOMPARE(steps[1].point, point);
        QCOMPARE(steps[1].item, item);
    }

    void badNewStepsAreNamed_data()
    {
        QTest::addColumn<QString>("written");

        for (const char* verb : {"clickat", "dblclickat", "hover"}) {
            const QString v = QLatin1String(verb);
            QTest::addRow("%s without a point", verb) << v + ":grid";
            QTest::addRow("%s without a name", verb) << v + ":@1,2";
            QTest::addRow("%s with one coordinate", verb) << v + ":grid@1";
            QTest::addRow("%s with a fraction", verb) << v + ":grid@1.5,2";
            QTest::addRow("%s with nothing", verb) << v;
        }
        QTest::newRow("select without =") << "select:combo";
        QTest::newRow("select without a name") << "select:=红";
    }

    void badNewStepsAreNamed()
    {
        QFETCH(QString, written);

        QVector<ZrStep> steps;
        QString error;
        QVERIFY(!parseSteps(QStringLiteral("wait:0;") + written + QStringLiteral(";close"), &steps, &error));
        QVERIFY2(error.startsWith(QStringLiteral("step 2 \"%1\": ").arg(written)), qPrintable(error));
    }

    // The widget sees what a real mouse gives it, at the pixel asked for; two clicks in a row, even in
    // two steps, are two clicks and not a double click.
    void mouseStepsReachAPaintedWidget_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QStringList>("seen");

        // Each row at pixels of its own: Qt passes a move on only when the pointer has moved.
        QTest::newRow("hover") << "hover:grid@12,7" << QStringList{"enter", "move 12,7"};
        QTest::newRow("click") << "clickat:grid@13,8" << QStringList{"enter", "move 13,8", "press 13,8", "release 13,8"};
        QTest::newRow("double click") << "dblclickat:grid@79,39"
                                      << QStringList{"enter", "move 79,39", "press 79,39", "release 79,39",
                                                     "double 79,39", "release 79,39"};
        QTest::newRow("two clicks") << "clickat:grid@0,0;clickat:grid@0,0"
                                    << QStringList{"enter", "move 0,0", "press 0,0", "release 0,0", "press 0,0",
                                                   "release 0,0"};
    }

    void mouseStepsReachAPaintedWidget()
    {
        QFETCH(QString, steps);
        QFETCH(QStringList, seen);

        ColumnDialog dialog;
        // A painted widget of the same name that is not shown must not take the steps.
        dialog.add<PaintedGrid>(QStringLiteral("grid"))->hide();
        auto* grid = dialog.add<PaintedGrid>(QStringLiteral("grid"));
        const QString error = runThenAccept(&dialog, steps);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(grid->seen.join(QStringLiteral(" | ")), seen.join(QStringLiteral(" | ")));
        QVERIFY(grid->underMouse());
    }

    // Each step that cannot find its target ends the run, named, with the dialog closed.
    void missingTargetsEndTheRun_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("why");

        QTest::newRow("no such widget") << "clickat:nowhere@1,1" << "no visible widget named \"nowhere\"";
        QTest::newRow("right of the widget") << "clickat:grid@80,0" << "80,0 lies outside \"grid\", which is 80x40";
        QTest::newRow("below the widget") << "dblclickat:grid@0,40" << "0,40 lies outside \"grid\"";
        QTest::newRow("no widget to select in") << "select:nowhere=a" << "no visible widget named \"nowhere\"";
        QTest::newRow("not a chooser") << "select:grid=a" << "\"grid\" is not a combo box";
        QTest::newRow("no such combo item") << "select:combo=红色" << "no item \"红色\" in \"combo\"";
        QTest::newRow("disabled combo item") << "select:combo=灰" << "\"灰\" in \"combo\" is disabled";
        QTest::newRow("disabled tab") << "select:tabs=图层 1" << "\"图层 1\" in \"tabs\" is disabled";
        QTest::newRow("tab beyond the scroll buttons") << "select:tabs=图层 19"
                                                       << "\"图层 19\" in \"tabs\" is out of sight";
        QTest::newRow("a list item's start only") << "select:list=item 1" << "no item \"item 1\" in \"list\"";
    }

    void missingTargetsEndTheRun()
    {
        QFETCH(QString, step);
        QFETCH(QString, why);

        ColumnDialog dialog;
        dialog.add<PaintedGrid>(QStringLiteral("grid"));
        dialog.add<PaintedGrid>(QStringLiteral("hidden"))->hide();
        auto* combo = dialog.add<QComboBox>(QStringLiteral("combo"));
        combo->addItems({QStringLiteral("红"), QStringLiteral("blue"), QStringLiteral("灰")});
        qobject_cast<QStandardItemModel*>(combo->model())->item(2)->setEnabled(false);
        auto* off = dialog.add<QComboBox>(QStringLiteral("off"));
        off->addItem(QStringLiteral("红"));
        off->setEnabled(false);
        auto* tabs = dialog.add<QTabWidget>(QStringLiteral("tabs"));
        for (int i = 0; i < 20; ++i)
            tabs->addTab(new QWidget, QStringLiteral("图层 %1").arg(i));
        tabs->setTabEnabled(1, false);
        auto* list = dialog.add<QListWidget>(QStringLiteral("list"));
        list->addItem(QStringLiteral("item 10"));

        QString error;
        QCOMPARE(runWithSteps(&dialog, QStringLiteral("wait:0;") + step + QStringLiteral(";click:btnOK"), &error),
                 int(QDialog::Rejected));
        QVERIFY2(error.startsWith(QStringLiteral("step 2 \"%1\": %2").arg(step, why)), qPrintable(error));
        QCOMPARE(combo->currentIndex(), 0);
        QVERIFY(!combo->view()->isVisible());
    }

    // A choice in a combo box's list gives every signal a user's choice gives, and closes the list.
    void selectChoosesInAComboBox()
    {
        ColumnDialog dialog;
        auto* combo = dialog.add<QComboBox>(QStringLiteral("combo"));
        combo->addItems({QStringLiteral("红"), QStringLiteral("黄"), QStringLiteral("绿色"), QStringLiteral("绿")});
        // Far enough down that the list must scroll to it.
        for (int i = 0; i < 60; ++i)
            combo->addItem(QStringLiteral("颜色 %1").arg(i));
        QSignalSpy activated(combo, QOverload<int>::of(&QComboBox::activated));
        QSignalSpy textActivated(combo, &QComboBox::textActivated);
        QSignalSpy changed(combo, QOverload<int>::of(&QComboBox::currentIndexChanged));

        const QString error = runThenAccept(&dialog, QStringLiteral("select:combo=绿;select:combo=颜色 55"));
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(combo->currentIndex(), 59);
        QCOMPARE(activated.size(), 2);
        QCOMPARE(activated.at(0).at(0).toInt(), 3);
        QCOMPARE(textActivated.at(1).at(0).toString(), QStringLiteral("颜色 55"));
        QCOMPARE(changed.size(), 2);
        QVERIFY(!combo->view()->isVisible());

        // Choosing the current item again still activates it, as a user's pick of it does.
        activated.clear();
        changed.clear();
        const QString again = runThenAccept(&dialog, QStringLiteral("select:combo=颜色 55"));
        QVERIFY2(again.isEmpty(), qPrintable(again));
        QCOMPARE(activated.size(), 1);
        QCOMPARE(changed.size(), 0);
    }

    // A button that lays its caption out in a label of its own is found by that caption; of two with
    // one caption the enabled one takes the click, and a disabled one alone ends the run saying so.
    void buttonIsFoundByItsBuddyCaption()
    {
        ColumnDialog dialog;
        auto captioned = [&dialog] {
            auto* button = dialog.add<QPushButton>(QString());
            (new QLabel(QStringLiteral("覆盖"), button))->setBuddy(button);
            return button;
        };
        QPushButton* held = captioned();
        held->setEnabled(false);
        QPushButton* free = captioned();
        QSignalSpy clicks(free, &QPushButton::clicked);
        const QString error = runThenAccept(&dialog, QStringLiteral("click:覆盖"));
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(clicks.count(), 1);

        free->setEnabled(false);
        QString disabled;
        QCOMPARE(runWithSteps(&dialog, QStringLiteral("click:覆盖;click:btnOK"), &disabled), int(QDialog::Rejected));
        QCOMPARE(disabled, QStringLiteral("step 1 \"click:覆盖\": \"覆盖\" is disabled"));
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
