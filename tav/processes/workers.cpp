#include "workers.h"

#include "commandline.h"
#include "interruption.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <cmath>
#include <csignal>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <limits>
#include <new>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
constexpr int millisecondsBetweenReports = 100;

CommandError systemError(const char *call)
{
    return CommandError(QStringLiteral("%1: %2").arg(QLatin1String(call), qt_error_string()));
}

/// The pipe on which child processes send error messages to their parent.
class Pipe
{
public:
    Pipe()
    {
        if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
            throw systemError("pipe");
        }
    }
    ~Pipe()
    {
        close(ends[0]);
        closeWriteEnd();
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    /// Closes the parent's end for writing, so that the pipe ends when the last child does.
    void closeWriteEnd()
    {
        if (ends[1] >= 0) {
            close(ends[1]);
            ends[1] = -1;
        }
    }

    /// Sends a line with the text @p text. It is cut to PIPE_BUF bytes: the system writes up to so many at once, not
    /// mixed with the line of another child.
    void tell(const char *text) const
    {
        const QByteArray line = QByteArray(text).left(PIPE_BUF - 1) + '\n';
        // It fails when the parent has ended, or when the pipe is full of other messages.
        [[maybe_unused]] const ssize_t written = write(ends[1], line.constData(), line.size());
    }

    /// Waits until there is a line, or all children have ended, or some time has passed.
    void waitAWhile() const
    {
        pollfd readEnd{ends[0], POLLIN, 0};
        poll(&readEnd, 1, millisecondsBetweenReports);
    }

    /// The first line, or an empty text.
    QString told() const
    {
        std::array<char, PIPE_BUF> text{};
        const ssize_t length = read(ends[0], text.data(), text.size());
        const char *const end = std::find(text.data(), text.data() + std::max<ssize_t>(length, 0), '\n');
        return QString::fromLocal8Bit(text.data(), int(end - text.data()));
    }

private:
    std::array<int, 2> ends{-1, -1};
};

/// While one lives, SIGCHLD has its default action. If the process was started with SIGCHLD ignored, waitpid() could
/// not tell how a child ended.
class ChildrenWait
{
public:
    ChildrenWait()
    {
        struct sigaction action = {};
        action.sa_handler = SIG_DFL;
        sigaction(SIGCHLD, &action, &before);
    }
    ~ChildrenWait() { sigaction(SIGCHLD, &before, nullptr); }
    ChildrenWait(const ChildrenWait &) = delete;
    ChildrenWait &operator=(const ChildrenWait &) = delete;

private:
    struct sigaction before = {};
};

class Children
{
public:
    Children() = default;
    ~Children()
    {
        for (const pid_t child : living) {
            kill(child, SIGKILL);
            waitpid(child, nullptr, 0);
        }
    }
    Children(const Children &) = delete;
    Children &operator=(const Children &) = delete;

    /// Makes @p count children, which call @p work and end; fewer when the system allows no more.
    void start(size_t count, const std::function<void()> &work)
    {
        const pid_t parent = getpid();
        while (living.size() < count) {
            const pid_t child = fork();
            if (child < 0 && living.empty()) {
                throw systemError("fork");
            }
            if (child < 0) {
                return;
            }
            if (child == 0) {
                live(parent, work);
            }
            living.push_back(child);
        }
    }

    /// Calls @p tick now and then until all children have ended.
    void wait(const std::function<void()> &tick)
    {
        for (messages.closeWriteEnd(); !living.empty(); tick()) {
            messages.waitAWhile();
            living.erase(std::remove_if(living.begin(), living.end(), [this](pid_t child) { return hasEnded(child); }),
                         living.end());
            InterruptionScope::check(); // before the failures: the signal may have ended the children, too
            if (!failure.isEmpty()) {
                throw CommandError(failure);
            }
        }
    }

private:
    /// The life of a child.
    [[noreturn]] void live(pid_t parent, const std::function<void()> &work) const
    {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(Failure);
        }
        InterruptionScope::leave();
        try {
            work();
        } catch (const std::exception &exception) {
            messages.tell(exception.what());
            _exit(Failure);
        }
        _exit(Success);
    }

    /// Whether @p child has ended; notes how, if it is the first that did not end with success.
    bool hasEnded(pid_t child)
    {
        int status = 0;
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended != 0 && failure.isEmpty()) {
            failure = ended < 0 ? systemError("waitpid").text() : failureOf(status);
        }
        return ended != 0;
    }

    /// How a child with the status @p status failed; an empty text when it ended with success.
    QString failureOf(int status) const
    {
        if (WIFSIGNALED(status)) {
            return QStringLiteral("a child process was ended by a signal: %1")
                .arg(QString::fromLocal8Bit(strsignal(WTERMSIG(status))));
        }
        if (WEXITSTATUS(status) == Success) {
            return QString();
        }
        const QString message = messages.told();
        return message.isEmpty() ? QStringLiteral("a child process ended with status %1").arg(WEXITSTATUS(status))
                                 : message;
    }

    ChildrenWait waiting; // the first member: it is restored last, when all children have ended
    Pipe messages;
    std::vector<pid_t> living;
    QString failure;
};
} // namespace

SharedMemory::SharedMemory(size_t size)
    : begin(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
    , length(size)
{
    if (begin == MAP_FAILED) {
        throw std::bad_alloc();
    }
}

SharedMemory::~SharedMemory()
{
    munmap(begin, length);
}

std::optional<double> SharedValues::at(size_t index) const
{
    const double number = numbers()[index];
    return std::isnan(number) ? std::nullopt : std::optional(number);
}

void SharedValues::set(size_t index, std::optional<double> value)
{
    numbers()[index] = value.value_or(std::numeric_limits<double>::quiet_NaN());
}

void workInProcesses(size_t count, size_t pieceLength, int jobs, const std::function<void(size_t)> &work,
                     const std::function<void(size_t)> &report)
{
    using Counter = std::atomic<size_t>;
    static_assert(Counter::is_always_lock_free, "processes share it");
    const SharedMemory memory(2 * sizeof(Counter));
    auto *const counters = static_cast<Counter *>(memory.data());
    auto &next = *new (counters) Counter(0);
    auto &done = *new (counters + 1) Counter(0);
    const auto takePieces = [&] {
        for (size_t begin = 0; (begin = next.fetch_add(pieceLength)) < count;) {
            const size_t end = std::min(begin + pieceLength, count);
            for (size_t index = begin; index < end; ++index) {
                work(index);
            }
            done += end - begin;
        }
    };
    const size_t pieces = (count + pieceLength - 1) / pieceLength;
    Children children;
    children.start(std::min<size_t>(jobs, pieces), takePieces);
    children.wait([&] { report(done); });
    if (done != count) {
        throw CommandError(QStringLiteral("a child process ended before its work was done"));
    }
}
