#ifndef TAVOLINE_OLM_NODEDISPLAY_H
#define TAVOLINE_OLM_NODEDISPLAY_H

#include <QDialog>
#include <QString>

class QLineEdit;
class QTableWidget;

/// The dialog that names one vertex and lists what is known of it. It is not modal and starts hidden.
class NodeDisplay : public QDialog
{
    Q_OBJECT

public:
    explicit NodeDisplay(const QString &name);

    /// Shows the name of the vertex.
    void setNodeName(const QString &name);
    /// Appends a row; the same name twice gives two rows.
    void setValue(const QString &name, double value);
    void setText(const QString &name, const QString &text);
    /// Removes all rows.
    void resetValues();

signals:
    /// The name was changed, and "Done" pressed. There is no tab and no line end in it, which the files could not hold.
    void nameChosen(const QString &name);

private:
    void conclude();

    QTableWidget *table;
    QLineEdit *nameEdit;
    int nbValues = 0;
};

#endif
