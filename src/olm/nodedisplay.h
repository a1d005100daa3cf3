#ifndef TAVOLINE_OLM_NODEDISPLAY_H
#define TAVOLINE_OLM_NODEDISPLAY_H

#include <QDialog>
#include <QString>

class QLineEdit;
class QTableWidget;

/// The dialog that lists named values of one vertex. It is not modal and starts hidden.
class NodeDisplay : public QDialog
{
    Q_OBJECT

public:
    explicit NodeDisplay(const QString &name);

    /// Appends a row; the same name twice gives two rows. Nothing in this program adds a row: a tool that knows values
    /// of the vertices can.
    void setValue(const QString &name, double value);
    /// Removes all rows.
    void resetValues();

private:
    QTableWidget *table;
    QLineEdit *nameEdit;
    int nbValues = 0;
};

#endif
