#include "nodedisplay.h"

#include "numbertext.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTableWidgetItem>

NodeDisplay::NodeDisplay(const QString &name) : table(new QTableWidget), nameEdit(new QLineEdit(name))
{
    setWindowTitle(tr("Node information"));
    nameEdit->setAccessibleName(tr("Name of the vertex"));
    nameEdit->setToolTip(tr("Names the vertex once \"Done\" is pressed."));
    table->setAccessibleName(tr("Values of the vertex"));
    table->setToolTip(tr("Tells what is true of the vertex in the graph that is shown."));
    table->setEditTriggers(QTableWidget::NoEditTriggers);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    // A long text is broken into lines: the rows are as high as the width of the column asks for. QHeaderView has that
    // width only after it has sent the signal.
    connect(table->horizontalHeader(), &QHeaderView::sectionResized, table, &QTableWidget::resizeRowsToContents,
            Qt::QueuedConnection);
    auto *done = new QPushButton(tr("Done"));
    done->setToolTip(tr("Gives the vertex the name and closes this window."));
    connect(done, &QPushButton::clicked, this, &NodeDisplay::conclude);
    auto *grid = new QGridLayout(this);
    grid->addWidget(nameEdit, 0, 0);
    grid->addWidget(done, 0, 1);
    grid->addWidget(table, 1, 0, 1, 2);
}

void NodeDisplay::setNodeName(const QString &name)
{
    nameEdit->setText(name);
}

// A name that was not changed is not given back: QLineEdit cuts a very long one.
void NodeDisplay::conclude()
{
    if (nameEdit->isModified()) {
        emit nameChosen(nameEdit->text().replace(QRegularExpression(QStringLiteral("[\t\r\n]")), QStringLiteral(" ")));
    }
    hide();
}

void NodeDisplay::setValue(const QString &name, double value)
{
    setText(name, numberText(value));
}

void NodeDisplay::setText(const QString &name, const QString &text)
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
    table->setItem(row, 0, new QTableWidgetItem(text));
    table->resizeRowToContents(row);
}

void NodeDisplay::resetValues()
{
    table->clear(); // QTableWidget deletes the items, those of the headers too
    table->setRowCount(0);
    table->setColumnCount(1);
    nbValues = 0;
}
