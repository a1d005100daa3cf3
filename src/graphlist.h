#ifndef TAVOLINE_GRAPHLIST_H
#define TAVOLINE_GRAPHLIST_H

#include <QString>
#include <QStringList>

/// A named, ordered list of graph names; a name may stand in it more than once.
class GraphList
{
public:
    explicit GraphList(QString name, QStringList names = QStringList());

    QString getName() const { return name; }
    QStringList getList() const { return names; }
    void setList(const QStringList &list) { names = list; }
    void addGraph(const QString &graph) { names.append(graph); }
    int size() const { return names.size(); }

private:
    QStringList names;
    QString name;
};

#endif
