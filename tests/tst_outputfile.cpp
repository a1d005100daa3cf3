// Saves that are complete or leave the old file, and writing into what is there.

#include "outputfile.h"
#include "support/fulldisk.h"
#include "support/patience.h"
#include "support/redirection.h"
#include "support/testfiles.h"
#include "support/watchedcalls.h"

#include <QtTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <future>
#include <iterator>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace
{
std::function<void(OutputFile &)> text(const QByteArray &bytes)
{
    return [bytes](OutputFile &file) { file.write(bytes); };
}
} // namespace

class TestOutputFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { folder = std::make_unique<TestFolder>(); }

    void writesANewFile();
    void replacesAFile();
    void fullDiskKeepsTheOldFile_data();
    void fullDiskKeepsTheOldFile();
    void fullDiskLeavesNoNewFile();
    void targetsThatCannotBeOpened();
    void devices();
    void aFifo();
    void aSlowReader();
    void aFifoThatCannotBeClosed();
    void aFifoThatIsOpenedWhileSignalsCome();
    void standardStreams_data();
    void standardStreams();
    void standardInputIsNotWrittenTo();
    void givingUpKeepsTheOldFile();
    void theSignalOfTheFileSizeLimit();

private:
    std::unique_ptr<TestFolder> folder;
};

void TestOutputFile::writesANewFile()
{
    QCOMPARE(writeFile(folder->path("file"), text("some text")), WriteResult::Written);
    QCOMPARE(contents(folder->path("file")), QByteArray("some text"));
    QCOMPARE(writeFile(folder->path("empty"), text(QByteArray())), WriteResult::Written);
    QCOMPARE(contents(folder->path("empty")), QByteArray());
    QCOMPARE(folder->files(), (QStringList{QStringLiteral("empty"), QStringLiteral("file")}));
}

void TestOutputFile::replacesAFile()
{
    QCOMPARE(writeFile(folder->path("file"), text("a long first text")), WriteResult::Written);
    QCOMPARE(writeFile(folder->path("file"), text("short")), WriteResult::Written);
    QCOMPARE(contents(folder->path("file")), QByteArray("short"));
    QCOMPARE(folder->files(), QStringList{QStringLiteral("file")});
}

void TestOutputFile::fullDiskKeepsTheOldFile_data()
{
    QTest::addColumn<int>("blocks");
    QTest::addColumn<int>("size");
    QTest::newRow("within the buffer") << 1 << 17;
    QTest::newRow("in one large block") << 1 << 1000000;
    QTest::newRow("in many blocks") << 100000 << 5;
}

void TestOutputFile::fullDiskKeepsTheOldFile()
{
    QFETCH(int, blocks);
    QFETCH(int, size);
    QCOMPARE(writeFile(folder->path("file"), text("old")), WriteResult::Written);
    WriteResult result = WriteResult::Written;
    QString reason;
    {
        const FullDisk disk;
        const auto write = [&](OutputFile &file) {
            for (int i = 0; i < blocks; ++i) {
                file.write(QByteArray(size, 'x'));
            }
        };
        result = writeFile(folder->path("file"), write, &reason);
    }
    QCOMPARE(result, WriteResult::Failed);
    QCOMPARE(reason, QStringLiteral("File too large"));
    QCOMPARE(contents(folder->path("file")), QByteArray("old"));
    QCOMPARE(folder->files(), QStringList{QStringLiteral("file")});
}

void TestOutputFile::fullDiskLeavesNoNewFile()
{
    WriteResult tooLong = WriteResult::Written;
    WriteResult fitting = WriteResult::Failed;
    {
        const FullDisk disk;
        tooLong = writeFile(folder->path("long"), text("more than sixteen bytes"));
        fitting = writeFile(folder->path("fitting"), text("sixteen bytes..."));
    }
    QCOMPARE(tooLong, WriteResult::Failed);
    QCOMPARE(fitting, WriteResult::Written);
    QCOMPARE(folder->files(), QStringList{QStringLiteral("fitting")});
}

void TestOutputFile::targetsThatCannotBeOpened()
{
    QString reason;
    QCOMPARE(writeFile(QString(), text("x"), &reason), WriteResult::NotOpened);
    QCOMPARE(reason, QStringLiteral("No such file or directory"));
    QCOMPARE(writeFile(folder->path(), text("x"), &reason), WriteResult::NotOpened);
    QCOMPARE(reason, QStringLiteral("Is a directory"));
    QCOMPARE(writeFile(folder->path("missing/file"), text("x"), &reason), WriteResult::NotOpened);
    QCOMPARE(reason, QStringLiteral("No such file or directory"));
    QCOMPARE(folder->files(), QStringList());
}

void TestOutputFile::devices()
{
    QCOMPARE(writeFile(QStringLiteral("/dev/null"), text("x")), WriteResult::Written);
    for (const int size : {1, 1000000}) {
        QString reason;
        QCOMPARE(writeFile(QStringLiteral("/dev/full"), text(QByteArray(size, 'x')), &reason), WriteResult::Failed);
        QCOMPARE(reason, QStringLiteral("No space left on device"));
    }
}

void TestOutputFile::aFifo()
{
    const std::string name = folder->path("fifo").toStdString();
    QCOMPARE(::mkfifo(name.c_str(), 0600), 0);
    QCOMPARE(writeFile(folder->path("fifo"), text("x")), WriteResult::NotOpened);

    // More than the FIFO holds: the writer waits for its reader.
    const std::string longText(1000000, 'x');
    auto arrived = std::async(std::launch::async, [&] {
        std::ifstream reader(name);
        return std::string(std::istreambuf_iterator<char>(reader), {});
    });
    WriteResult result = WriteResult::NotOpened;
    const auto isOpened = [&] {
        result = writeFile(folder->path("fifo"), text(longText.c_str()));
        return result != WriteResult::NotOpened;
    };
    QVERIFY(QTest::qWaitFor(isOpened, patience));
    QCOMPARE(result, WriteResult::Written);
    QVERIFY(arrived.get() == longText);
}

void TestOutputFile::standardStreams_data()
{
    QTest::addColumn<int>("stream");
    QTest::addColumn<QString>("device");
    QTest::newRow("input, open for both") << STDIN_FILENO << QStringLiteral("/dev/stdin");
    QTest::newRow("output") << STDOUT_FILENO << QStringLiteral("/dev/stdout");
    QTest::newRow("error") << STDERR_FILENO << QStringLiteral("/dev/stderr");
}

void TestOutputFile::aSlowReader()
{
    const std::string name = folder->path("fifo").toStdString();
    QCOMPARE(::mkfifo(name.c_str(), 0600), 0);
    const int reader = ::open(name.c_str(), O_RDWR | O_CLOEXEC);
    auto arrived = std::async(std::launch::async, [&] {
        std::string bytes(1000000, '\0');
        QTest::qSleep(100);
        for (size_t count = 0; count < bytes.size();) {
            const ssize_t piece = ::read(reader, &bytes[count], bytes.size() - count);
            count += size_t(qMax<ssize_t>(piece, 0));
        }
        return bytes;
    });
    int writes = 0;
    WriteResult result = WriteResult::NotOpened;
    {
        const CallWatch watch(name, [&](const SystemCall &call) {
            writes += qstrcmp(call.kind, "write") == 0 ? 1 : 0;
            return 0;
        });
        result = writeFile(folder->path("fifo"), text(QByteArray(1000000, 'x')));
    }
    QVERIFY(arrived.get() == std::string(1000000, 'x'));
    ::close(reader);
    QCOMPARE(result, WriteResult::Written);
    // The writer waits until there is room; it does not ask again and again.
    QVERIFY2(writes < 2000, QByteArray::number(writes).constData());
}

void TestOutputFile::aFifoThatCannotBeClosed()
{
    const std::string name = folder->path("fifo").toStdString();
    QCOMPARE(::mkfifo(name.c_str(), 0600), 0);
    const int reader = ::open(name.c_str(), O_RDWR | O_CLOEXEC);
    for (const auto &[error, expected] : {std::pair(EIO, WriteResult::Failed), {EINTR, WriteResult::Written}}) {
        const int closing = error;
        const CallWatch watch(
            name, [closing](const SystemCall &call) { return qstrcmp(call.kind, "close") == 0 ? closing : 0; });
        QString reason;
        QCOMPARE(writeFile(folder->path("fifo"), text("x"), &reason), expected);
        QCOMPARE(reason, error == EIO ? QStringLiteral("Input/output error") : QString());
    }
    ::close(reader);
}

void TestOutputFile::aFifoThatIsOpenedWhileSignalsCome()
{
    const std::string name = folder->path("fifo").toStdString();
    QCOMPARE(::mkfifo(name.c_str(), 0600), 0);
    const int reader = ::open(name.c_str(), O_RDWR | O_CLOEXEC);
    int signalsLeft = 3;
    const CallWatch watch(
        name, [&](const SystemCall &call) { return qstrcmp(call.kind, "open") == 0 && signalsLeft-- > 0 ? EINTR : 0; });
    QCOMPARE(writeFile(folder->path("fifo"), text("x")), WriteResult::Written);
    ::close(reader);
}

/// Where a stream goes to a file, that file is neither replaced nor written to from its beginning.
void TestOutputFile::standardStreams()
{
    QFETCH(int, stream);
    QFETCH(QString, device);
    bool deviceIsReplaced = true;
    bool fileIsReplaced = true;
    bool otherIsReplaced = false;
    QCOMPARE(writeFile(folder->path("other"), text("other")), WriteResult::Written);
    {
        const Redirection redirection(stream, folder->path("file"), O_RDWR | O_CREAT);
        QCOMPARE(::write(stream, "first\n", 6), ssize_t(6));
        deviceIsReplaced = isReplaced(device);
        fileIsReplaced = isReplaced(folder->path("file"));
        otherIsReplaced = isReplaced(folder->path("other"));
        QCOMPARE(writeFile(device, text("second\n")), WriteResult::Written);
        QCOMPARE(writeFile(folder->path("file"), text("third\n")), WriteResult::Written);
        QCOMPARE(::write(stream, "fourth\n", 7), ssize_t(7));
    }
    QCOMPARE(contents(folder->path("file")), QByteArray("first\nsecond\nthird\nfourth\n"));
    QVERIFY(!deviceIsReplaced);
    QVERIFY(!fileIsReplaced);
    QVERIFY(otherIsReplaced);
    QVERIFY(isReplaced(folder->path("file")));
    QVERIFY(isReplaced(folder->path("missing")));
}

void TestOutputFile::standardInputIsNotWrittenTo()
{
    QCOMPARE(writeFile(folder->path("file"), text("old")), WriteResult::Written);
    const Redirection redirection(STDIN_FILENO, folder->path("file"), O_RDONLY);
    QVERIFY(isReplaced(folder->path("file")));
    QCOMPARE(writeFile(folder->path("file"), text("new")), WriteResult::Written);
    QCOMPARE(contents(folder->path("file")), QByteArray("new"));
}

void TestOutputFile::givingUpKeepsTheOldFile()
{
    QCOMPARE(writeFile(folder->path("file"), text("old")), WriteResult::Written);
    const WriteResult result = writeFile(folder->path("file"), [](OutputFile &file) {
        file.write("new");
        file.giveUp();
    });
    QCOMPARE(result, WriteResult::Failed);
    QCOMPARE(contents(folder->path("file")), QByteArray("old"));
    QCOMPARE(folder->files(), QStringList{QStringLiteral("file")});
}

/// Which ends a process that does not know it, whatever it has not saved yet.
void TestOutputFile::theSignalOfTheFileSizeLimit()
{
    std::signal(SIGXFSZ, SIG_DFL);
    failBeyondFileSizeLimit();
    QCOMPARE(std::raise(SIGXFSZ), 0);
    QVERIFY(std::signal(SIGXFSZ, SIG_DFL) == SIG_IGN);
}

QTEST_GUILESS_MAIN(TestOutputFile)
#include "tst_outputfile.moc"
