#ifndef TAVOLINE_COMMANDLINE_H
#define TAVOLINE_COMMANDLINE_H

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <exception>

/// The exit statuses of the program.
enum ExitStatus : int {
    Success = 0,
    Failure = 1,   ///< the input, a file or the work itself was at fault
    WrongUsage = 2 ///< the command line was wrong
};

/// Ends a command: a line of text for standard error, and the exit status.
class CommandError : public std::exception
{
public:
    explicit CommandError(QString text, ExitStatus status = Failure);
    /// A fault of an input file, @p line counted from 1.
    CommandError(const QString &file, qint64 line, const QString &text);

    QString text() const { return message; }
    ExitStatus status() const { return exitStatus; }
    const char *what() const noexcept override { return bytes.constData(); }

private:
    QString message;
    QByteArray bytes;
    ExitStatus exitStatus;
};

/// The name that stands for standard input and standard output.
inline const QString standardStream = QStringLiteral("-");

/// How a message names the input @p path.
QString inputName(const QString &path);

/// The output @p path cannot be written, for a @p reason in the words of the system.
CommandError cannotWrite(const QString &path, const QString &reason);

/// A text from a file or the command line in quotation marks, cut when it is long.
QString quoted(const QString &text);

/// Writes a line to standard error, as plain text (see plainText()), since names in it may come from a file.
void tell(const QString &line);

/// Reads @p arguments, the name of the command first, into @p parser, to which "--help" and "--version" are added.
/// Returns false when help, which ends with @p moreHelp, or the version was asked for and printed; throws CommandError
/// (WrongUsage) when they do not fit.
bool parseArguments(QCommandLineParser &parser, const QStringList &arguments, const QString &moreHelp = {});

/// Prints the line of the program and its version.
void printVersion();

/// Throws CommandError (WrongUsage), naming the first of @p arguments, when there is one.
void expectNoMore(const QStringList &arguments);

/// The one positional argument; throws CommandError (WrongUsage), naming @p what is expected, when there is not exactly
/// one.
QString onlyArgument(const QCommandLineParser &parser, const QString &what);

/// The option "-j N", the number of processors to use.
QCommandLineOption jobsOption();
/// Its value; by default all processors. Throws CommandError (WrongUsage) when it is no number from 1 to 1024.
int jobCount(const QCommandLineParser &parser);

/// The option "-o FILE", the file to write.
QCommandLineOption outputOption();
/// Its value; by default standard output. Throws CommandError (WrongUsage) when it is empty.
QString outputPath(const QCommandLineParser &parser);

#endif
