#include "partcheck.h"

#include "commandline.h"
#include "script.h"

namespace
{
bool makesList(const ScriptStep &step)
{
    return !step.arguments.isEmpty() && step.kindOf(0) == ScriptArgument::NewList;
}
} // namespace

QString PartCheck::faultOf(const ScriptStep &step)
{
    if (step.command->need == Need::AllParts) {
        return QStringLiteral("other parts have graphs above those at hand");
    }
    const QLatin1String command(step.command->name);
    const QString name = step.arguments.value(0);
    const QString nameOfA = step.arguments.value(1);
    const QString nameOfB = step.arguments.value(2);
    const Deviation a = lists.value(nameOfA);
    const Deviation b = lists.value(nameOfB);
    // A name keeps what it had: a command that may fail need not have made the list.
    if (command == QLatin1String("load")) {
        if (hasLoaded) {
            return QStringLiteral("lists may be of the parts that were loaded before");
        }
        hasLoaded = true;
    } else if (command == QLatin1String("list-from-file")) {
        lists[name].hasOtherGraphs = true;
    } else if (command == QLatin1String("union")) {
        lists[name].lacksGraphs |= a.lacksGraphs || b.lacksGraphs;
        lists[name].hasOtherGraphs |= a.hasOtherGraphs || b.hasOtherGraphs;
        lists[name].dependsOnPart |= a.dependsOnPart || b.dependsOnPart;
    } else if (command == QLatin1String("intersection")) {
        if (a.lacksGraphs && b.lacksGraphs) {
            return QStringLiteral("both lists may lack graphs below those of other parts");
        }
        lists[name].lacksGraphs |= a.lacksGraphs || b.lacksGraphs;
        lists[name].hasOtherGraphs |= a.hasOtherGraphs && b.hasOtherGraphs;
        lists[name].dependsOnPart |= a.dependsOnPart || b.dependsOnPart;
    } else if (command == QLatin1String("difference")) {
        if (b.lacksGraphs) {
            return QStringLiteral("%1 may lack graphs below those of other parts").arg(quoted(nameOfB));
        }
        if (a.hasOtherGraphs && b.dependsOnPart) {
            return QStringLiteral("%1 may have graphs of other parts, which %2 lacks")
                .arg(quoted(nameOfA), quoted(nameOfB));
        }
        lists[name].lacksGraphs |= a.lacksGraphs;
        lists[name].hasOtherGraphs |= a.hasOtherGraphs;
        lists[name].dependsOnPart |= a.dependsOnPart || b.dependsOnPart;
    } else if (command == QLatin1String("remove-list")) {
        lists.remove(name);
    } else if (makesList(step)) {
        lists[name].lacksGraphs |= command == QLatin1String("subs");
        lists[name].dependsOnPart = true;
    }
    return QString();
}
