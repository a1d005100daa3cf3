// The dialog with the values of one vertex.

#include "nodedisplay.h"
#include "support/patience.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

class TestNodeDisplay : public QObject
{
    Q_OBJECT

private slots:
    void isAHiddenNonModalDialogOfItsOwn();
    void grid();
    void doneHidesTheDialog();
    void valuesAreAppendedAsRows();
    void sameNameTwiceGivesTwoRows();
    void valuesHaveSixDigits_data();
    void valuesHaveSixDigits();
    void resetLeavesOneColumnAndNoRow();
    void valuesAfterAResetStartAgain();
    void textsAreRows();
    void valuesCannotBeEdited();
    void everythingIsExplained();
};

namespace
{
QTableWidget *tableOf(const NodeDisplay &dialog)
{
    return dialog.findChild<QTableWidget *>();
}

/// The rows of the table, each "name: value".
QStringList rows(const NodeDisplay &dialog)
{
    const QTableWidget *table = tableOf(dialog);
    QStringList texts;
    for (int row = 0; row < table->rowCount(); ++row) {
        texts << table->verticalHeaderItem(row)->text() + QStringLiteral(": ") + table->item(row, 0)->text();
    }
    return texts;
}
} // namespace

void TestNodeDisplay::isAHiddenNonModalDialogOfItsOwn()
{
    const NodeDisplay dialog(QStringLiteral("Node 7"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Node information"));
    QCOMPARE(dialog.parent(), nullptr);
    QVERIFY(!dialog.isModal());
    QVERIFY(dialog.isHidden());
}

void TestNodeDisplay::grid()
{
    const NodeDisplay dialog(QStringLiteral("Node 7"));
    const auto *grid = qobject_cast<QGridLayout *>(dialog.layout());
    QVERIFY(grid != nullptr);
    QCOMPARE(grid->count(), 3);
    QCOMPARE(grid->rowCount(), 2);
    QCOMPARE(grid->columnCount(), 2);
    const auto *name = qobject_cast<QLineEdit *>(grid->itemAtPosition(0, 0)->widget());
    QVERIFY(name != nullptr);
    QCOMPARE(name->text(), QStringLiteral("Node 7"));
    const auto *done = qobject_cast<QPushButton *>(grid->itemAtPosition(0, 1)->widget());
    QVERIFY(done != nullptr);
    QCOMPARE(done->text(), QStringLiteral("Done"));
    QCOMPARE(grid->itemAtPosition(1, 0)->widget(), tableOf(dialog));
    QCOMPARE(grid->itemAtPosition(1, 1)->widget(), tableOf(dialog));
    QCOMPARE(tableOf(dialog)->columnCount(), 0);
    QCOMPARE(tableOf(dialog)->rowCount(), 0);
}

void TestNodeDisplay::doneHidesTheDialog()
{
    NodeDisplay dialog(QStringLiteral("Node 7"));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog, patience));
    QTest::mouseClick(dialog.findChild<QPushButton *>(), Qt::LeftButton);
    QVERIFY(dialog.isHidden());
}

void TestNodeDisplay::valuesAreAppendedAsRows()
{
    NodeDisplay dialog(QStringLiteral("Node 7"));
    dialog.setValue(QStringLiteral("degree"), 3);
    QCOMPARE(tableOf(dialog)->columnCount(), 1);
    QCOMPARE(tableOf(dialog)->horizontalHeaderItem(0)->text(), QStringLiteral("Value"));
    dialog.setValue(QStringLiteral("centrality"), 0.25);
    QCOMPARE(rows(dialog), (QStringList{QStringLiteral("degree: 3"), QStringLiteral("centrality: 0.25")}));
}

void TestNodeDisplay::sameNameTwiceGivesTwoRows()
{
    NodeDisplay dialog(QStringLiteral("Node 7"));
    dialog.setValue(QStringLiteral("degree"), 3);
    dialog.setValue(QStringLiteral("degree"), 4);
    QCOMPARE(rows(dialog), (QStringList{QStringLiteral("degree: 3"), QStringLiteral("degree: 4")}));
}

void TestNodeDisplay::valuesHaveSixDigits_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 12.0 << QStringLiteral("12");
    QTest::newRow("rounded") << 3.14159265 << QStringLiteral("3.14159");
    QTest::newRow("large") << 1234567.0 << QStringLiteral("1.23457e+06");
    QTest::newRow("small") << -0.00001 << QStringLiteral("-1e-05");
}

void TestNodeDisplay::valuesHaveSixDigits()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    NodeDisplay dialog(QStringLiteral("Node 7"));
    dialog.setValue(QStringLiteral("x"), value);
    QCOMPARE(tableOf(dialog)->item(0, 0)->text(), text);
}

void TestNodeDisplay::resetLeavesOneColumnAndNoRow()
{
    NodeDisplay dialog(QStringLiteral("Node 7"));
    dialog.resetValues();
    QCOMPARE(tableOf(dialog)->columnCount(), 1);
    QCOMPARE(tableOf(dialog)->rowCount(), 0);
    dialog.setValue(QStringLiteral("degree"), 3);
    dialog.setValue(QStringLiteral("centrality"), 0.25);
    dialog.resetValues();
    QCOMPARE(tableOf(dialog)->columnCount(), 1);
    QCOMPARE(tableOf(dialog)->rowCount(), 0);
}

void TestNodeDisplay::valuesAfterAResetStartAgain()
{
    NodeDisplay dialog(QStringLiteral("Node 7"));
    dialog.setValue(QStringLiteral("degree"), 3);
    dialog.setValue(QStringLiteral("centrality"), 0.25);
    dialog.resetValues();
    dialog.setValue(QStringLiteral("colour"), 2);
    QCOMPARE(tableOf(dialog)->horizontalHeaderItem(0)->text(), QStringLiteral("Value"));
    QCOMPARE(rows(dialog), (QStringList{QStringLiteral("colour: 2")}));
}

void TestNodeDisplay::textsAreRows()
{
    NodeDisplay dialog(QStringLiteral("Node 7"));
    dialog.setText(QStringLiteral("neighbours"), QStringLiteral("<b>1</b>, 2"));
    dialog.setValue(QStringLiteral("degree"), 2);
    QCOMPARE(rows(dialog), (QStringList{QStringLiteral("neighbours: <b>1</b>, 2"), QStringLiteral("degree: 2")}));
}

void TestNodeDisplay::valuesCannotBeEdited()
{
    NodeDisplay dialog(QStringLiteral("Node 7"));
    dialog.setValue(QStringLiteral("degree"), 2);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog, patience));
    QTableWidget *table = tableOf(dialog);
    table->setCurrentCell(0, 0);
    QTest::keyClick(table, Qt::Key_F2);
    QTest::keyClick(table, Qt::Key_5);
    QVERIFY(table->findChild<QLineEdit *>() == nullptr);
}

void TestNodeDisplay::everythingIsExplained()
{
    const NodeDisplay dialog(QStringLiteral("Node 7"));
    QCOMPARE(dialog.findChild<QLineEdit *>()->toolTip(), QStringLiteral("Names the vertex once \"Done\" is pressed."));
    QCOMPARE(tableOf(dialog)->toolTip(),
             QStringLiteral("Tells what is true of the vertex in the graph that is shown."));
    QVERIFY(!dialog.findChild<QPushButton *>()->toolTip().isEmpty());
}

QTEST_MAIN(TestNodeDisplay)
#include "tst_nodedisplay.moc"
