#include "nodedisplay.h"

#include "numbertext.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTableWidgetItem>

NodeDisplay::NodeDisplay(const QString &name) : table(new QTableWidget), nameEdit(new QLineEdit(name))
{
    setWindowTitle(tr("Node information"));
    auto *done = new QPushButton(tr("Done"));
    connect(done, &QPushButton::clicked, this, &QDialog::hide);
    auto *grid = new QGridLayout(this);
    grid->addWidget(nameEdit, 0, 0);
    grid->addWidget(done, 0, 1);
    grid->addWidget(table, 1, 0, 1, 2);
}

void NodeDisplay::setValue(const QString &name, double value)
{
    const int row = nbValues++;
    if (table->columnCount() == 0) {
        table->setColumnCount(1);
    }
    if (row == 0) {
        table->setHorizontalHeaderItem(0, new QTableWidgetItem(tr("Value")));
    }
    table->setRowCount(nbValues);
    table->setVerticalHeaderItem(row, new QTableWidgetItem(name));
    table->setItem(row, 0, new QTableWidgetItem(numberText(value)));
}

void NodeDisplay::resetValues()
{
    table->clear(); // QTableWidget deletes the items, those of the headers too
    table->setRowCount(0);
    table->setColumnCount(1);
    nbValues = 0;
}
