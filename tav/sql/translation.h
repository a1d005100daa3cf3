#ifndef TAVOLINE_TRANSLATION_H
#define TAVOLINE_TRANSLATION_H

#include "dialect.h"
#include "manifest.h"
#include "script.h"
#include "statements.h"

#include <QString>

#include <memory>
#include <vector>

/// The tables of a database, and where they are.
struct TableFolder {
    QString path;
    Manifest manifest;
};

struct TranslationOptions {
    Engine engine = Engine::DuckDb;
    /// About so many graphs are worked on in one statement at most.
    qint64 graphsAtOnce = 4'000'000;
    /// Whether all graphs below or above some are listed in the order of the database, and not breadth first.
    bool sortsClosures = false;
};

/// Turns a script of 'tav run' into SQL that asks the same of the tables of its databases. Where the SQL succeeds it
/// makes the same lists; where a command of the script would fail for want of a list, it ends with the same message.
class Translation
{
public:
    /// @p script is the name of the script in messages; @p folders are the tables of the databases that it may load.
    Translation(QString script, TranslationOptions options, std::vector<TableFolder> folders);
    ~Translation();
    Translation(const Translation &) = delete;
    Translation &operator=(const Translation &) = delete;

    /// Adds a line of the script without a command.
    void addRemark(const QString &line);
    /// Adds a line with the command @p step. Throws CommandError when that cannot be said in SQL, or would fail.
    void addStep(const QString &line, const ScriptStep &step);
    /// Ends the script and returns its text.
    QByteArray finish();

private:
    class Writer;
    std::unique_ptr<Writer> writer;
};

#endif
