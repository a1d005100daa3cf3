#ifndef TAVOLINE_PARTCHECK_H
#define TAVOLINE_PARTCHECK_H

#include <QMap>
#include <QString>

struct ScriptStep;

/// Follows a script, and finds the commands that go wrong where only some parts of a database are loaded. An answer is
/// right when the answers of all parts are together that of the whole.
class PartCheck
{
public:
    /// Why the next command goes wrong; empty when it does not.
    QString faultOf(const ScriptStep &step);

private:
    /// How a list may differ from those graphs at hand that are in the same list of the whole.
    struct Deviation {
        bool lacksGraphs = false;    ///< graphs of the base that are below graphs of other parts
        bool hasOtherGraphs = false; ///< such as only other parts have
        bool dependsOnPart = false;  ///< other parts have another list
    };

    bool hasLoaded = false;
    QMap<QString, Deviation> lists; // by name
};

#endif
