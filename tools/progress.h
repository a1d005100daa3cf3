#ifndef TAVOLINE_PROGRESS_H
#define TAVOLINE_PROGRESS_H

#include <QString>

/// Tells on standard error, when that is a terminal, how far a piece of work has come; the line is gone at its end.
class Progress
{
public:
    /// @p work names it, @p total is its size in any unit.
    Progress(QString work, qint64 total);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// @p done of the total are done.
    void report(qint64 done);

private:
    QString work;
    qint64 total;
    bool isShown;
    int shownPercent = -1;
};

#endif
