#ifndef TAVOLINE_NAMESEARCH_H
#define TAVOLINE_NAMESEARCH_H

#include "isomorphismtable.h"

#include <QString>
#include <QtGlobal>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

/// Finds out under which names a database holds the graphs of a list: the graphs with these names are isomorphic to
/// them. Takes memory for the list, none for the database.
class NameSearch
{
public:
    /// Takes a name of the database that is no graph, its number among the names, and what is wrong with it.
    using FaultReceiver = std::function<void(std::string_view name, qint64 number, const QString &fault)>;

    /// Searches for the graphs of @p list, which are graph6 or sparse6 strings of graphs on at most
    /// SmallGraph::maxOrder vertices, with @p jobs threads. Names that are no graphs go to @p fault, in their order.
    NameSearch(const std::vector<std::string> &list, int jobs, FaultReceiver fault);

    /// Looks at the next name of the database. @p number is for the fault receiver.
    void offer(std::string_view name, qint64 number);
    /// To be called after the last name.
    void finish();

    /// The name of the graph @p index of the list, the first one if the database has several; empty if it has none.
    std::string_view nameOf(size_t index) const { return names[numbers[index]]; }

private:
    struct Offer {
        std::string name;
        qint64 number;
        std::optional<quint32> found; // the number of the sought graph that has the name
        QString fault;
    };

    void enter(const std::vector<std::string> &list);
    void compare();
    void compare(Offer &offer) const;

    int jobs;
    FaultReceiver tellFault;
    std::map<int, IsomorphismTable> tables; // by order: the numbers of the sought graphs
    std::vector<quint32> numbers;           // by place in the list
    std::vector<std::string> names;         // by number of the sought graph
    std::unordered_set<uint64_t> signatures;
    std::vector<Offer> batch;
};

#endif
