#ifndef TAVOLINE_PROGRESS_H
#define TAVOLINE_PROGRESS_H

#include <QString>

/// Shows the progress of some work in a line on standard error, if that is a terminal. The line is removed at the end
/// of the work, also when a signal ends the program.
class Progress
{
public:
    /// @p work is the name of the work, @p total its size in any unit, or 0 when it is not known.
    Progress(const QString &work, qint64 total);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// Shows that @p done units are done.
    void report(qint64 done);
    /// Removes the line, so that another can be written to standard error; the next report() shows it again.
    static void clear();

private:
    QString work;
    qint64 total;
    bool isShown;
    qint64 shown = -1;
};

#endif
