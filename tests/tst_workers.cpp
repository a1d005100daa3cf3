// Values that are computed by child processes.

#include "commandline.h"
#include "interruption.h"
#include "support/patience.h"
#include "workers.h"

#include <QtTest>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <dlfcn.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
int possibleChildren = INT_MAX; // how many fork() makes before it fails
bool isParentToDie = false;
} // namespace

/// Stands in front of the one of the system: with isParentToDie, the child begins when its parent has ended.
extern "C" pid_t fork()
{
    const auto ofTheSystem = reinterpret_cast<pid_t (*)()>(dlsym(RTLD_NEXT, "fork"));
    if (isParentToDie) {
        const pid_t parent = getpid();
        if (ofTheSystem() != 0) {
            _exit(0);
        }
        while (getppid() == parent) {
            usleep(1000);
        }
        return 0;
    }
    if (possibleChildren == 0) {
        errno = EAGAIN;
        return -1;
    }
    --possibleChildren;
    return ofTheSystem();
}

namespace
{
constexpr size_t count = 1000;

std::optional<double> half(size_t index)
{
    return index % 3 == 0 ? std::nullopt : std::optional(index / 2.0);
}

std::optional<double> waitForever(size_t)
{
    pause();
    return std::nullopt;
}

void ignoreReport(size_t) {}

/// How many indices a child takes at a time.
constexpr size_t pieceLength = 64;

/// Sets values[i] to work(i).
void computeInProcesses(SharedValues &values, size_t indices, int jobs,
                        const std::function<std::optional<double>(size_t)> &work,
                        const std::function<void(size_t)> &report)
{
    workInProcesses(
        indices, pieceLength, jobs, [&](size_t index) { values.set(index, work(index)); }, report);
}

/// What the error of a computation says, empty when there is none.
QString errorOf(const std::function<std::optional<double>(size_t)> &work)
{
    SharedValues values(count);
    try {
        computeInProcesses(values, count, 3, work, ignoreReport);
    } catch (const CommandError &error) {
        return error.text();
    }
    return QString();
}
} // namespace

class TestWorkers : public QObject
{
    Q_OBJECT

private slots:
    void init() { const InterruptionScope scope; } // forgets the signal of an earlier test

    void everyIndexOnce_data()
    {
        QTest::addColumn<int>("jobs");
        for (const int jobs : {1, 2, 3, 1024}) {
            QTest::addRow("%d", jobs) << jobs;
        }
    }

    void everyIndexOnce()
    {
        QFETCH(int, jobs);
        SharedValues values(count);
        size_t reported = 0;
        computeInProcesses(values, count, jobs, half, [&](size_t done) {
            QVERIFY(done >= reported);
            reported = done;
        });
        for (size_t index = 0; index < count; ++index) {
            QVERIFY(values.at(index) == half(index));
        }
        QCOMPARE(reported, count);
        QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1); // no child is left
    }

    void anExceptionIsTold()
    {
        QCOMPARE(errorOf([](size_t index) {
                     if (index == 500) {
                         throw CommandError(QStringLiteral("the work failed"));
                     }
                     return half(index);
                 }),
                 QStringLiteral("the work failed"));
        QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1);
    }

    void aDeadChildIsAnError()
    {
        QCOMPARE(errorOf([](size_t index) {
                     if (index == 500) {
                         std::raise(SIGKILL);
                     }
                     return half(index);
                 }),
                 QStringLiteral("a child process was ended by a signal: Killed"));
        QCOMPARE(errorOf([](size_t index) -> std::optional<double> { _exit(index == 0 ? 1 : 0); }),
                 QStringLiteral("a child process ended with status 1"));
    }

    /// As it is with children of a process that was started with SIGCHLD ignored.
    void aDeadChildIsAnErrorWhereChildrenAreIgnored()
    {
        const sighandler_t before = std::signal(SIGCHLD, SIG_IGN);
        QCOMPARE(errorOf([](size_t index) {
                     if (index == 500) {
                         std::raise(SIGKILL);
                     }
                     return half(index);
                 }),
                 QStringLiteral("a child process was ended by a signal: Killed"));
        QVERIFY(std::signal(SIGCHLD, before) == SIG_IGN);
    }

    void aChildThatEndsEarlyIsAnError()
    {
        QCOMPARE(errorOf([](size_t index) {
                     if (index == 500) {
                         _exit(0);
                     }
                     return half(index);
                 }),
                 QStringLiteral("a child process ended before its work was done"));
    }

    /// The pipe takes so many bytes at once, not mixed with those of another child; the last one ends the line.
    void aLongMessageIsCut()
    {
        for (const int length : {PIPE_BUF - 2, PIPE_BUF - 1, PIPE_BUF, PIPE_BUF + 1, 1 << 20}) {
            const QString text(length, QLatin1Char('x'));
            QCOMPARE(errorOf([&](size_t) -> std::optional<double> { throw CommandError(text); }),
                     text.left(PIPE_BUF - 1));
        }
    }

    void aMessageEndsWithItsLine()
    {
        QCOMPARE(errorOf([](size_t) -> std::optional<double> { throw CommandError(QStringLiteral("one\ntwo")); }),
                 QStringLiteral("one"));
        QCOMPARE(errorOf([](size_t) -> std::optional<double> { throw CommandError(QString()); }),
                 QStringLiteral("a child process ended with status 1"));
    }

    /// More than a pipe holds until somebody reads it: no child waits, and the message is that of one of them.
    void manyLongMessages()
    {
        constexpr size_t children = 40;
        struct Shared {
            std::atomic<size_t> started{0};
            std::array<std::atomic<pid_t>, children> ids{};
            std::atomic<bool> go{false};
        };
        const SharedMemory memory(sizeof(Shared));
        auto &shared = *new (memory.data()) Shared;
        constexpr size_t pieces = 64 * children;
        SharedValues values(pieces);
        QString message;
        try {
            computeInProcesses(
                values, pieces, children,
                [&](size_t) -> std::optional<double> {
                    const size_t number = shared.started++;
                    shared.ids.at(number) = getpid();
                    while (!shared.go) {
                        usleep(1000);
                    }
                    throw CommandError(QString(1 << 16, QLatin1Char(char('0' + number))));
                },
                [&](size_t) {
                    for (const std::atomic<pid_t> &id : shared.ids) {
                        while (id == 0) {
                            usleep(1000);
                        }
                    }
                    shared.go = true;
                    for (const pid_t child : shared.ids) {
                        siginfo_t end{};
                        waitid(P_PID, id_t(child), &end, WEXITED | WNOWAIT); // leaves it to the next waitpid()
                    }
                });
        } catch (const CommandError &error) {
            message = error.text();
        }
        QCOMPARE(message.size(), PIPE_BUF - 1);
        QCOMPARE(message, QString(PIPE_BUF - 1, message.at(0)));
        QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1); // no child is left
    }

    /// The first report of the parent lets both fail and waits until they have ended.
    void ofTwoMessagesOneIsTold()
    {
        struct Shared {
            std::atomic<size_t> started{0};
            std::array<std::atomic<pid_t>, 2> children{};
            std::atomic<bool> go{false};
        };
        const SharedMemory memory(sizeof(Shared));
        auto &shared = *new (memory.data()) Shared;
        SharedValues values(count);
        QString message;
        try {
            computeInProcesses(
                values, count, 2,
                [&](size_t) -> std::optional<double> {
                    shared.children.at(shared.started++) = getpid();
                    while (!shared.go) {
                        usleep(1000);
                    }
                    throw CommandError(QStringLiteral("the work failed"));
                },
                [&](size_t) {
                    while (shared.children.back() == 0 || shared.children.front() == 0) {
                        usleep(1000);
                    }
                    shared.go = true;
                    for (const pid_t child : shared.children) {
                        siginfo_t end{};
                        waitid(P_PID, id_t(child), &end, WEXITED | WNOWAIT); // leaves it to the next waitpid()
                    }
                });
        } catch (const CommandError &error) {
            message = error.text();
        }
        QCOMPARE(message, QStringLiteral("the work failed"));
    }

    /// A piece of the work is 64 indices.
    void noMoreChildrenThanPieces()
    {
        possibleChildren = 8;
        SharedValues values(65);
        computeInProcesses(values, 65, 8, half, ignoreReport);
        QCOMPARE(possibleChildren, 6);
        possibleChildren = INT_MAX;
    }

    void noDescriptorIsLeft()
    {
        const auto descriptors = [] { return QDir(QStringLiteral("/proc/self/fd")).count(); };
        const auto before = descriptors();
        SharedValues values(count);
        computeInProcesses(values, count, 2, half, ignoreReport);
        QCOMPARE(descriptors(), before);
    }

    void fewerChildrenDoTheWork()
    {
        possibleChildren = 2;
        SharedValues values(count);
        computeInProcesses(values, count, 8, half, ignoreReport);
        QCOMPARE(possibleChildren, 0);
        for (size_t index = 0; index < count; ++index) {
            QVERIFY(values.at(index) == half(index));
        }
        QCOMPARE(errorOf(half), QStringLiteral("fork: Resource temporarily unavailable"));
        possibleChildren = INT_MAX;
    }

    /// The others do not wait for the end of their work.
    void anErrorEndsTheOthers()
    {
        QCOMPARE(errorOf([](size_t index) {
                     if (index == 0) {
                         throw CommandError(QStringLiteral("the work failed"));
                     }
                     return waitForever(index);
                 }),
                 QStringLiteral("the work failed"));
        QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1);
    }

    void aSignalEndsAll()
    {
        const InterruptionScope scope;
        SharedValues values(count);
        int signal = 0;
        try {
            computeInProcesses(
                values, count, 2,
                [](size_t index) {
                    kill(getppid(), SIGTERM);
                    return waitForever(index);
                },
                ignoreReport);
        } catch (const Interrupted &interruption) {
            signal = interruption.signal();
        }
        QCOMPARE(signal, SIGTERM);
        QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1);
    }

    /// The pipe ends when nobody is left who holds its other end.
    void childrenDieWithTheirParent()
    {
        std::array<int, 2> ends{};
        QCOMPARE(pipe(ends.data()), 0);
        const pid_t parent = fork();
        if (parent == 0) {
            SharedValues values(count);
            computeInProcesses(
                values, count, 2,
                [&](size_t index) {
                    static_cast<void>(write(ends[1], "x", 1) + 1);
                    return waitForever(index);
                },
                ignoreReport);
            _exit(0);
        }
        close(ends[1]);
        char byte = 0;
        QCOMPARE(read(ends[0], &byte, 1), ssize_t(1));
        QCOMPARE(read(ends[0], &byte, 1), ssize_t(1)); // both children are at work
        kill(parent, SIGKILL);
        QCOMPARE(waitpid(parent, nullptr, 0), parent);
        pollfd end{ends[0], POLLIN, 0};
        QCOMPARE(poll(&end, 1, patience), 1);
        QCOMPARE(read(ends[0], &byte, 1), ssize_t(0));
        close(ends[0]);
    }

    /// A parent that ends between fork() and the wish to die with it: the child has another parent by then.
    void aChildWhoseParentHasDiedDoesNoWork()
    {
        std::array<int, 2> ends{};
        QCOMPARE(pipe(ends.data()), 0);
        const pid_t parent = fork();
        if (parent == 0) {
            isParentToDie = true;
            SharedValues values(count);
            computeInProcesses(
                values, count, 1,
                [&](size_t index) {
                    static_cast<void>(write(ends[1], "x", 1) + 1);
                    return half(index);
                },
                ignoreReport);
            _exit(0);
        }
        close(ends[1]);
        QCOMPARE(waitpid(parent, nullptr, 0), parent);
        pollfd end{ends[0], POLLIN, 0};
        QCOMPARE(poll(&end, 1, patience), 1);
        char byte = 0;
        QCOMPARE(read(ends[0], &byte, 1), ssize_t(0)); // the end, and nothing before
        close(ends[0]);
    }

    /// An action of the caller for the end of a child is there again, and was not called for these.
    void theActionForTheEndOfChildrenComesBack()
    {
        static std::atomic<int> calls;
        calls = 0;
        const sighandler_t before = std::signal(SIGCHLD, [](int) { ++calls; });
        SharedValues values(count);
        computeInProcesses(values, count, 3, half, ignoreReport);
        QCOMPARE(calls.load(), 0);
        QCOMPARE(std::raise(SIGCHLD), 0);
        QCOMPARE(calls.load(), 1);
        std::signal(SIGCHLD, before);
    }

    void aSignalAfterAllChildrenFailedIsTheReason()
    {
        const InterruptionScope scope;
        bool isInterrupted = false;
        SharedValues values(count);
        try {
            computeInProcesses(
                values, count, 1,
                [](size_t) -> std::optional<double> {
                    kill(getppid(), SIGTERM);
                    throw CommandError(QStringLiteral("the work failed"));
                },
                ignoreReport);
        } catch (const Interrupted &) {
            isInterrupted = true;
        }
        QVERIFY(isInterrupted);
    }

    /// The scope is the parent's: a signal that it would only note ends a child.
    void aSignalEndsAChildAtOnce()
    {
        const sighandler_t ofQt = std::signal(SIGTERM, SIG_DFL);
        QString error;
        {
            const InterruptionScope scope;
            error = errorOf([](size_t index) {
                std::raise(SIGTERM);
                return half(index);
            });
        }
        std::signal(SIGTERM, ofQt);
        QCOMPARE(error, QStringLiteral("a child process was ended by a signal: Terminated"));
    }

    void whatTheValuesHold()
    {
        SharedValues values(3);
        QVERIFY(values.at(2) == 0.0);
        values.set(0, std::nullopt);
        values.set(1, -0.5);
        QVERIFY(!values.at(0).has_value());
        QVERIFY(values.at(1) == -0.5);
        QVERIFY(values.at(2) == 0.0);
        bool isRefused = false;
        try {
            const SharedMemory tooMuch(size_t(1) << 62);
        } catch (const std::bad_alloc &) {
            isRefused = true;
        }
        QVERIFY(isRefused);
    }

    void nothingToDo()
    {
        possibleChildren = 0;
        SharedValues values(1);
        computeInProcesses(values, 0, 8, half, [](size_t done) { QCOMPARE(done, size_t(0)); });
        possibleChildren = INT_MAX;
    }
};

QTEST_APPLESS_MAIN(TestWorkers)
#include "tst_workers.moc"
