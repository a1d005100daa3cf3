#include "graphlist.h"

#include <utility>

GraphList::GraphList(QString listName, QStringList graphNames) : names(std::move(graphNames)), name(std::move(listName))
{
}
