#ifndef TAVOLINE_PROGRESS_H
#define TAVOLINE_PROGRESS_H

#include <QString>

/// Tells on standard error, when that is a terminal, how far a piece of work has come; the line is gone at its end,
/// also when a signal ends the program.
class Progress
{
public:
    /// @p work names it, @p total is its size in any unit; 0 when nobody knows it.
    Progress(QString work, qint64 total);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// @p done of the total are done.
    void report(qint64 done);
    /// Removes what is shown, so that a line can be written to standard error; the next report() shows it again.
    static void clear();

private:
    QString work;
    qint64 total;
    bool isShown;
    qint64 shown = -1;
};

#endif
