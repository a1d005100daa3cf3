// What a file that is saved over another one keeps of it, and what is left when a step of the save fails.

#include "outputfile.h"
#include "replacement.h"
#include "support/testfiles.h"
#include "support/watchedcalls.h"
#include "support/withoutrights.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <memory>
#include <new>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{
const char accessList[] = "system.posix_acl_access";
const char defaultList[] = "system.posix_acl_default";

QByteArray contents(const QByteArray &path)
{
    return contents(QFile::decodeName(path));
}

/// Makes a file of the mode, whatever the umask is.
void makeFile(const QByteArray &path, const QByteArray &text, mode_t mode = 0644)
{
    write(QFile::decodeName(path), text);
    if (::chmod(path.constData(), mode) != 0) {
        qFatal("cannot set the mode of %s", path.constData());
    }
}

struct stat statusOf(const QByteArray &path)
{
    struct stat status = {};
    if (::lstat(path.constData(), &status) != 0) {
        qFatal("no %s", path.constData());
    }
    return status;
}

/// The mode in octal digits.
QByteArray modeOf(const QByteArray &path)
{
    return QByteArray::number(statusOf(path).st_mode & 07777U, 8);
}

void setAttribute(const QByteArray &path, const char *name, const QByteArray &value)
{
    if (::setxattr(path.constData(), name, value.constData(), size_t(value.size()), 0) != 0) {
        qFatal("%s cannot have %s", path.constData(), name);
    }
}

/// The value of an extended attribute; "none" without it.
QByteArray attribute(const QByteArray &path, const char *name)
{
    QByteArray value(1000, '\0');
    const ssize_t length = ::getxattr(path.constData(), name, value.data(), size_t(value.size()));
    return length < 0 ? QByteArray("none") : value.left(int(length));
}

/// An access control list as the kernel stores it: the owner, @p reader and the group may do what the digits say, and
/// so may others.
QByteArray accessControlList(quint16 owner, quint16 reader, quint16 group, quint16 mask, quint16 others)
{
    constexpr quint32 nobodyInParticular = 0xffffffff;
    constexpr quint32 readerId = 12345;
    QByteArray list;
    const auto append = [&](auto number) {
        const auto bytes = qToLittleEndian(number);
        list.append(reinterpret_cast<const char *>(&bytes), int(sizeof bytes));
    };
    const auto appendEntry = [&](quint16 tag, quint16 rights, quint32 id) {
        append(tag);
        append(rights);
        append(id);
    };
    append(quint32(2)); // the version of the format
    appendEntry(0x01, owner, nobodyInParticular);
    appendEntry(0x02, reader, readerId);
    appendEntry(0x04, group, nobodyInParticular);
    appendEntry(0x10, mask, nobodyInParticular);
    appendEntry(0x20, others, nobodyInParticular);
    return list;
}

int succeeding(const SystemCall & /*call*/)
{
    return 0;
}

bool isOf(const SystemCall &call, const char *kind)
{
    return qstrcmp(call.kind, kind) == 0;
}

/// Lets the given call of a kind fail.
CallHook failing(const char *kind, int error, int occurrence = 1)
{
    return [kind, error, left = occurrence](const SystemCall &call) mutable {
        return isOf(call, kind) && --left == 0 ? error : 0;
    };
}

/// Lets all calls of a kind fail.
CallHook failingAlways(const char *kind, int error)
{
    return [kind, error](const SystemCall &call) { return isOf(call, kind) ? error : 0; };
}

CallHook withoutUnnamedFiles(int error = EOPNOTSUPP)
{
    return [error](const SystemCall &call) { return call.isUnnamed ? error : 0; };
}

CallHook together(const CallHook &first, const CallHook &second)
{
    return [first, second](const SystemCall &call) {
        const int error = first(call);
        return error != 0 ? error : second(call);
    };
}

QTestData &newRow(const QByteArray &name)
{
    return QTest::newRow(name.constData());
}

/// With the umask while one lives.
class Umask
{
public:
    explicit Umask(mode_t mask) : before(::umask(mask)) {}
    ~Umask() { ::umask(before); }
    Umask(const Umask &) = delete;
    Umask &operator=(const Umask &) = delete;

private:
    mode_t before;
};

struct Saved {
    WriteResult result = WriteResult::Written;
    QString reason;
};

Saved save(const QByteArray &path, const std::function<void()> &meanwhile = {})
{
    Saved saved;
    const auto write = [&](OutputFile &file) {
        file.write("new");
        if (meanwhile) {
            meanwhile();
        }
    };
    saved.result = writeFile(QFile::decodeName(path), write, &saved.reason);
    return saved;
}
} // namespace

/// The rows "named" and "unnamed" stand for file systems that know only files with a name, and for others.
class TestReplacement : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void modes_data();
    void modes();
    void aNewFileFollowsTheUmask_data();
    void aNewFileFollowsTheUmask();
    void aFileThatMayNotBeWrittenToIsKept();
    void ownerAndGroup();
    void bitsOfPrograms();
    void withoutTheOwner_data();
    void withoutTheOwner();
    void withoutTheGroup_data();
    void withoutTheGroup();
    void nobodyMayReadBeforeTheEnd_data();
    void nobodyMayReadBeforeTheEnd();

    void accessControlLists();
    void aListThatCannotBeKept_data();
    void aListThatCannotBeKept();
    void aFileSystemWithoutLists();
    void aListWithoutItsGroup();
    void theDefaultListIsNotForAnOldFile_data();
    void theDefaultListIsNotForAnOldFile();
    void theDefaultListIsForANewFile_data();
    void theDefaultListIsForANewFile();
    void otherAttributes();
    void attributesThatCannotBeKept_data();
    void attributesThatCannotBeKept();

    void symbolicLinks_data();
    void symbolicLinks();
    void manyLinks();
    void aCircleOfLinks();
    void aLinkThatCannotBeRead();
    void hardLinks();
    void aRelativePath();

    void longNames_data();
    void longNames();
    void aNameThatIsTooLong();
    void aNameWithAZero();

    void failingSteps_data();
    void failingSteps();
    void interruptedSteps_data();
    void interruptedSteps();
    void aFileSystemThatCannotSync();
    void fileSystemsThatKnowOnlyNamedFiles_data();
    void fileSystemsThatKnowOnlyNamedFiles();
    void aFolderWithoutRoom();
    void aTargetThatCannotBeLookedAt();
    void aFolderThatVanishes_data();
    void aFolderThatVanishes();
    void aFolderThatBecomesReadOnly();
    void aTargetThatBecomesAFolder_data();
    void aTargetThatBecomesAFolder();
    void onlyRegularFilesAreReplaced();

    void temporaryNamesAreNotFollowed_data();
    void temporaryNamesAreNotFollowed();
    void temporaryNamesCannotBePredicted_data();
    void temporaryNamesCannotBePredicted();
    void nothingIsRemovedAfterASave_data();
    void nothingIsRemovedAfterASave();
    void anExceptionLeavesNothing_data();
    void anExceptionLeavesNothing();

private:
    static void kindsOfFiles();

    QByteArray folder() const { return QFile::encodeName(directory->path()); }
    QByteArray path(const QByteArray &name) const { return folder() + '/' + name; }
    QByteArray file() const { return path("file"); }
    QStringList files() const { return filesIn(directory->path()); }
    bool isAlone(const char *name) const { return files() == QStringList{QString::fromLatin1(name)}; }
    std::unique_ptr<CallWatch> watch(const CallHook &hook) const
    {
        return std::make_unique<CallWatch>(folder().toStdString(), hook);
    }
    /// A watch for the current row of kindsOfFiles().
    std::unique_ptr<CallWatch> watchKind(const CallHook &hook = succeeding) const;

    std::unique_ptr<QTemporaryDir> directory;
};

void TestReplacement::init()
{
    // Beside the program: the folder for temporary files may know no attributes.
    directory = std::make_unique<QTemporaryDir>(QCoreApplication::applicationFilePath() + QStringLiteral("-XXXXXX"));
    QVERIFY(directory->isValid());
}

void TestReplacement::kindsOfFiles()
{
    QTest::addColumn<bool>("isNamed");
    QTest::newRow("named") << true;
    QTest::newRow("unnamed") << false;
}

std::unique_ptr<CallWatch> TestReplacement::watchKind(const CallHook &hook) const
{
    QFETCH(bool, isNamed);
    return watch(isNamed ? together(withoutUnnamedFiles(), hook) : hook);
}

void TestReplacement::modes_data()
{
    QTest::addColumn<mode_t>("mode");
    for (const mode_t mode : {0600U, 0640U, 0604U, 0644U, 0666U, 0755U, 0200U}) {
        newRow(QByteArray::number(mode, 8)) << mode;
    }
}

void TestReplacement::modes()
{
    QFETCH(mode_t, mode);
    for (const mode_t mask : {0000U, 0077U}) {
        const Umask umask(mask);
        makeFile(file(), "old", mode);
        QCOMPARE(save(file()).result, WriteResult::Written);
        QCOMPARE(modeOf(file()), QByteArray::number(mode, 8));
        QCOMPARE(::chmod(file().constData(), 0600), 0);
        QCOMPARE(contents(file()), QByteArray("new"));
    }
}

void TestReplacement::aNewFileFollowsTheUmask_data()
{
    kindsOfFiles();
}

void TestReplacement::aNewFileFollowsTheUmask()
{
    const auto watch = watchKind();
    for (const auto &[mask, mode] : {std::pair(0000U, "666"), {0022U, "644"}, {0027U, "640"}, {0077U, "600"}}) {
        const Umask umask(mask);
        QCOMPARE(save(file()).result, WriteResult::Written);
        QCOMPARE(modeOf(file()), QByteArray(mode));
        QCOMPARE(::unlink(file().constData()), 0);
    }
}

void TestReplacement::aFileThatMayNotBeWrittenToIsKept()
{
    makeFile(file(), "old", 0444);
    QCOMPARE(::chmod(folder().constData(), 0777), 0); // nothing else is in the way
    Saved saved;
    {
        const WithoutRights rights(QFile::decodeName(file()), 0444);
        saved = save(file());
    }
    QCOMPARE(saved.result, WriteResult::NotOpened);
    QCOMPARE(saved.reason, QStringLiteral("Permission denied"));
    QCOMPARE(contents(file()), QByteArray("old"));
    QCOMPARE(modeOf(file()), QByteArray("444"));
    QVERIFY(isAlone("file"));
}

/// The administrator can give files away; anybody can give them to another group of his, if there is one.
void TestReplacement::ownerAndGroup()
{
    makeFile(file(), "old", 0660);
    const int groupCount = ::getgroups(0, nullptr);
    QVERIFY(groupCount >= 0);
    std::vector<gid_t> groups(groupCount, 0);
    QCOMPARE(::getgroups(groupCount, groups.data()), groupCount);
    groups.push_back(::getegid());
    const bool isAdministrator = ::geteuid() == 0;
    const uid_t owner = isAdministrator ? 12345 : ::geteuid();
    const gid_t group = isAdministrator ? 54321 : *std::max_element(groups.begin(), groups.end());
    QCOMPARE(::chown(file().constData(), owner, group), 0);
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(contents(file()), QByteArray("new"));
    QCOMPARE(statusOf(file()).st_uid, owner);
    QCOMPARE(statusOf(file()).st_gid, group);
    QCOMPARE(modeOf(file()), QByteArray("660"));
}

void TestReplacement::bitsOfPrograms()
{
    makeFile(file(), "old", 06755);
    Replacement replacement;
    QVERIFY(replacement.open(file())); // an ordinary user's write() would take the bits off
    QVERIFY(replacement.commit());
    QCOMPARE(modeOf(file()), QByteArray("6755"));
}

void TestReplacement::withoutTheOwner_data()
{
    QTest::addColumn<mode_t>("mode");
    QTest::addColumn<QByteArray>("kept");
    QTest::newRow("permissions") << mode_t(0664) << QByteArray("664");
    // A program would run as another user than before.
    QTest::newRow("set-user-ID") << mode_t(04755) << QByteArray("755");
}

void TestReplacement::withoutTheOwner()
{
    QFETCH(mode_t, mode);
    QFETCH(QByteArray, kept);
    makeFile(file(), "old", mode);
    const auto watched = watch(failing("fchown", EPERM, 1));
    Replacement replacement;
    QVERIFY(replacement.open(file()));
    QVERIFY(replacement.commit());
    QCOMPARE(modeOf(file()), kept);
}

void TestReplacement::withoutTheGroup_data()
{
    QTest::addColumn<mode_t>("mode");
    QTest::addColumn<QByteArray>("kept");
    QTest::newRow("closed to others") << mode_t(0660) << QByteArray("600");
    QTest::newRow("closed to the group") << mode_t(0606) << QByteArray("600");
    QTest::newRow("others may read") << mode_t(0664) << QByteArray("644");
    QTest::newRow("the group may read") << mode_t(0646) << QByteArray("644");
    QTest::newRow("open") << mode_t(0666) << QByteArray("666");
    QTest::newRow("set-group-ID") << mode_t(02755) << QByteArray("755");
}

/// The members of the old group are others for the new file, and its own group was others for the old one.
void TestReplacement::withoutTheGroup()
{
    QFETCH(mode_t, mode);
    QFETCH(QByteArray, kept);
    makeFile(file(), "old", mode);
    const auto watched = watch(failing("fchown", EPERM, 2));
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(modeOf(file()), kept);
}

void TestReplacement::nobodyMayReadBeforeTheEnd_data()
{
    kindsOfFiles();
}

void TestReplacement::nobodyMayReadBeforeTheEnd()
{
    makeFile(file(), "old", 0600);
    setAttribute(folder(), defaultList, accessControlList(6, 6, 6, 6, 6));
    const Umask umask(0);
    QList<QByteArray> modes; // for the group and others
    const auto watched = watchKind([&](const SystemCall &call) {
        if (isOf(call, "fchown") || isOf(call, "fchmod")) {
            struct stat status = {};
            ::fstat(call.descriptor, &status);
            modes.append(QByteArray::number(status.st_mode & 0077U, 8));
        }
        return 0;
    });
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(modes, (QList<QByteArray>{"0", "0", "0"})); // before the owner, the group and the mode are set
}

void TestReplacement::accessControlLists()
{
    makeFile(file(), "old", 0600);
    const QByteArray list = accessControlList(6, 4, 0, 4, 0);
    setAttribute(file(), accessList, list);
    QCOMPARE(modeOf(file()), QByteArray("640")); // where others than the owner see the mask
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(attribute(file(), accessList), list);
    QCOMPARE(modeOf(file()), QByteArray("640"));
}

void TestReplacement::aListThatCannotBeKept_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<QByteArray>("kind");
    QTest::newRow("that cannot be read") << true << QByteArray("getxattr");
    QTest::newRow("that cannot be set") << true << QByteArray("fsetxattr");
    QTest::newRow("of the folder that cannot be removed") << false << QByteArray("fremovexattr");
}

/// The bits that stand for the group are those of the mask, which may be more than the group had.
void TestReplacement::aListThatCannotBeKept()
{
    QFETCH(bool, isThere);
    QFETCH(QByteArray, kind);
    makeFile(file(), "old", 0664);
    if (isThere) {
        setAttribute(file(), accessList, accessControlList(6, 6, 0, 6, 0));
    }
    setAttribute(folder(), defaultList, accessControlList(7, 7, 7, 7, 7));
    const auto watched = watch(failing(kind.constData(), EIO));
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(modeOf(file()), QByteArray("600"));
    QCOMPARE(attribute(file(), accessList), QByteArray("none"));
}

void TestReplacement::aFileSystemWithoutLists()
{
    for (const int error : {ENODATA, EOPNOTSUPP}) {
        makeFile(file(), "old", 0640);
        const auto watched = watch(failingAlways("fremovexattr", error));
        QCOMPARE(save(file()).result, WriteResult::Written);
        QCOMPARE(modeOf(file()), QByteArray("640"));
    }
}

void TestReplacement::aListWithoutItsGroup()
{
    makeFile(file(), "old", 0660);
    setAttribute(file(), accessList, accessControlList(6, 6, 6, 6, 4));
    const auto watched = watch(failing("fchown", EPERM, 2));
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(modeOf(file()), QByteArray("600"));
    QCOMPARE(attribute(file(), accessList), QByteArray("none"));
}

void TestReplacement::theDefaultListIsNotForAnOldFile_data()
{
    kindsOfFiles();
}

void TestReplacement::theDefaultListIsNotForAnOldFile()
{
    makeFile(file(), "old", 0640);
    setAttribute(folder(), defaultList, accessControlList(7, 7, 7, 7, 7));
    const auto watched = watchKind();
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(attribute(file(), accessList), QByteArray("none"));
    QCOMPARE(modeOf(file()), QByteArray("640"));
}

void TestReplacement::theDefaultListIsForANewFile_data()
{
    kindsOfFiles();
}

void TestReplacement::theDefaultListIsForANewFile()
{
    setAttribute(folder(), defaultList, accessControlList(7, 4, 0, 4, 0));
    const auto watched = watchKind();
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(attribute(file(), accessList), accessControlList(6, 4, 0, 4, 0));
}

void TestReplacement::otherAttributes()
{
    makeFile(file(), "old", 0600);
    setAttribute(file(), "user.origin", "nauty-geng");
    setAttribute(file(), "user.empty", "");
    setAttribute(file(), "user.bytes", QByteArray("a\0b", 3));
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(contents(file()), QByteArray("new"));
    QCOMPARE(attribute(file(), "user.origin"), QByteArray("nauty-geng"));
    QCOMPARE(attribute(file(), "user.empty"), QByteArray());
    QCOMPARE(attribute(file(), "user.bytes"), QByteArray("a\0b", 3));
    QCOMPARE(attribute(file(), accessList), QByteArray("none"));
}

void TestReplacement::attributesThatCannotBeKept_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::newRow("listed") << QByteArray("listxattr");
    QTest::newRow("read") << QByteArray("getxattr");
    QTest::newRow("set") << QByteArray("fsetxattr");
}

void TestReplacement::attributesThatCannotBeKept()
{
    QFETCH(QByteArray, kind);
    makeFile(file(), "old", 0640);
    setAttribute(file(), "user.origin", "nauty-geng");
    const auto watched = watch(failingAlways(kind.constData(), EOPNOTSUPP));
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(contents(file()), QByteArray("new"));
    QCOMPARE(modeOf(file()), QByteArray("640"));
    QCOMPARE(attribute(file(), "user.origin"), QByteArray("none"));
}

void TestReplacement::symbolicLinks_data()
{
    QTest::addColumn<QByteArray>("link");
    QTest::addColumn<bool>("isThere");
    for (const bool isThere : {true, false}) {
        const QByteArray what = isThere ? " to a file" : " to nothing";
        newRow("a name" + what) << QByteArray("file") << isThere;
        newRow("a relative path" + what) << QByteArray("sub/../file") << isThere;
        newRow("another link" + what) << QByteArray("sub/link") << isThere;
        newRow("an absolute path" + what) << QByteArray("/") << isThere;
    }
}

void TestReplacement::symbolicLinks()
{
    QFETCH(QByteArray, link);
    QFETCH(bool, isThere);
    if (isThere) {
        makeFile(file(), "old", 0640);
    }
    QVERIFY(QDir(directory->path()).mkdir(QStringLiteral("sub")));
    QCOMPARE(::symlink("../file", path("sub/link").constData()), 0);
    const QByteArray target = link == "/" ? file() : link;
    QCOMPARE(::symlink(target.constData(), path("link").constData()), 0);
    QCOMPARE(save(path("link")).result, WriteResult::Written);
    QCOMPARE(contents(file()), QByteArray("new"));
    QVERIFY(S_ISREG(statusOf(file()).st_mode));
    QVERIFY(!isThere || modeOf(file()) == "640");
    QVERIFY(S_ISLNK(statusOf(path("link")).st_mode));
    QVERIFY(S_ISLNK(statusOf(path("sub/link")).st_mode));
    QCOMPARE(files().size(), 3);
}

/// The kernel follows 40 links, and so does a save.
void TestReplacement::manyLinks()
{
    makeFile(file(), "old");
    QByteArray last = "file";
    for (int i = 1; i <= 41; ++i) {
        const QByteArray link = "link" + QByteArray::number(i);
        QCOMPARE(::symlink(last.constData(), path(link).constData()), 0);
        last = link;
    }
    const Saved saved = save(path("link41"));
    QCOMPARE(saved.result, WriteResult::NotOpened);
    QCOMPARE(saved.reason, QStringLiteral("Too many levels of symbolic links"));
    QCOMPARE(contents(file()), QByteArray("old"));
    QCOMPARE(save(path("link40")).result, WriteResult::Written);
    QCOMPARE(contents(file()), QByteArray("new"));
}

void TestReplacement::aCircleOfLinks()
{
    QCOMPARE(::symlink("two", path("one").constData()), 0);
    QCOMPARE(::symlink("one", path("two").constData()), 0);
    for (const bool isSeenAtOnce : {true, false}) {
        // The links may be changed between one call and the next.
        const auto watched = watch(isSeenAtOnce ? succeeding : failing("fstat", ENOENT, 2));
        const Saved saved = save(path("one"));
        QCOMPARE(saved.result, WriteResult::NotOpened);
        QCOMPARE(saved.reason, QStringLiteral("Too many levels of symbolic links"));
        QCOMPARE(files(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    }
}

/// Else the file would take the place of the link.
void TestReplacement::aLinkThatCannotBeRead()
{
    makeFile(file(), "old");
    QCOMPARE(::symlink("file", path("link").constData()), 0);
    const auto watched = watch(failing("readlink", EIO));
    const Saved saved = save(path("link"));
    QCOMPARE(saved.result, WriteResult::NotOpened);
    QCOMPARE(saved.reason, QStringLiteral("Input/output error"));
    QVERIFY(S_ISLNK(statusOf(path("link")).st_mode));
    QCOMPARE(contents(file()), QByteArray("old"));
}

void TestReplacement::hardLinks()
{
    makeFile(file(), "old");
    QCOMPARE(::link(file().constData(), path("other").constData()), 0);
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(contents(file()), QByteArray("new"));
    QCOMPARE(contents(path("other")), QByteArray("old"));
}

void TestReplacement::aRelativePath()
{
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(directory->path()));
    const Saved saved = save("file");
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(saved.result, WriteResult::Written);
    QCOMPARE(contents(file()), QByteArray("new"));
}

void TestReplacement::longNames_data()
{
    kindsOfFiles();
}

void TestReplacement::longNames()
{
    const auto watched = watchKind();
    for (int length = 230; length <= 255; ++length) {
        const QByteArray name(length, 'x');
        makeFile(path(name), "old");
        for (const QByteArray &saved : {name, QByteArray(length, 'y')}) {
            QCOMPARE(save(path(saved)).result, WriteResult::Written);
            QCOMPARE(contents(path(saved)), QByteArray("new"));
        }
    }
    QCOMPARE(files().size(), 52);
}

void TestReplacement::aNameThatIsTooLong()
{
    const Saved saved = save(path(QByteArray(256, 'x')));
    QCOMPARE(saved.result, WriteResult::NotOpened);
    QCOMPARE(saved.reason, QStringLiteral("File name too long"));
    QCOMPARE(files(), QStringList());
}

/// For the kernel the name ends there, and is that of another file.
void TestReplacement::aNameWithAZero()
{
    QString reason;
    const QString name = QFile::decodeName(file()) + QChar(QChar::Null) + QLatin1Char('x');
    QCOMPARE(writeFile(
                 name, [](OutputFile &output) { output.write("new"); }, &reason),
             WriteResult::NotOpened);
    QCOMPARE(reason, QStringLiteral("Invalid argument"));
    QCOMPARE(files(), QStringList());
}

void TestReplacement::failingSteps_data()
{
    QTest::addColumn<bool>("isNamed");
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("reason");
    const auto add = [](const char *kind, std::initializer_list<bool> kinds) {
        for (const bool isNamed : kinds) {
            const QByteArray name = QByteArray(kind) + (isNamed ? ", named" : ", unnamed");
            newRow(name + ", EIO") << isNamed << QByteArray(kind) << EIO << QStringLiteral("Input/output error");
            newRow(name + ", ENOSPC") << isNamed << QByteArray(kind) << ENOSPC
                                      << QStringLiteral("No space left on device");
        }
    };
    add("write", {true, false});
    add("fsync", {true, false});
    add("close", {true, false});
    add("rename", {true, false});
    add("link", {false});
}

void TestReplacement::failingSteps()
{
    QFETCH(QByteArray, kind);
    QFETCH(int, error);
    QFETCH(QString, reason);
    makeFile(file(), "old");
    const auto watched = watchKind(failing(kind.constData(), error));
    Saved saved = save(file());
    QCOMPARE(saved.result, WriteResult::Failed);
    QCOMPARE(saved.reason, reason);
    QCOMPARE(contents(file()), QByteArray("old"));
    QVERIFY(isAlone("file"));
    QCOMPARE(save(file()).result, WriteResult::Written); // it failed once
}

void TestReplacement::interruptedSteps_data()
{
    QTest::addColumn<bool>("isNamed");
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind : {"open", "write", "fsync", "close"}) {
        newRow(QByteArray(kind) + ", named") << true << QByteArray(kind);
        newRow(QByteArray(kind) + ", unnamed") << false << QByteArray(kind);
    }
}

void TestReplacement::interruptedSteps()
{
    QFETCH(bool, isNamed);
    QFETCH(QByteArray, kind);
    makeFile(file(), "old");
    int calls = 0;
    // Every second call is interrupted.
    const auto interrupting = [&](const SystemCall &call) {
        return isOf(call, kind.constData()) && ++calls % 2 == 1 ? EINTR : 0;
    };
    const CallHook named = together(interrupting, withoutUnnamedFiles());
    const auto watched = watch(isNamed ? named : interrupting);
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(contents(file()), QByteArray("new"));
    QVERIFY(isAlone("file"));
    QVERIFY(calls > 0);
}

void TestReplacement::aFileSystemThatCannotSync()
{
    for (const int error : {EINVAL, ENOSYS}) {
        makeFile(file(), "old");
        const auto watched = watch(failing("fsync", error));
        QCOMPARE(save(file()).result, WriteResult::Written);
        QCOMPARE(contents(file()), QByteArray("new"));
    }
}

void TestReplacement::fileSystemsThatKnowOnlyNamedFiles_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<int>("error");
    QTest::newRow("no such file system") << QByteArray("open") << EOPNOTSUPP;
    QTest::newRow("no such kernel") << QByteArray("open") << EISDIR;
    QTest::newRow("no such flag") << QByteArray("open") << EINVAL;
    QTest::newRow("no /proc") << QByteArray("access") << ENOENT;
}

void TestReplacement::fileSystemsThatKnowOnlyNamedFiles()
{
    QFETCH(QByteArray, kind);
    QFETCH(int, error);
    const auto watched = watch(kind == "open" ? withoutUnnamedFiles(error) : failing("access", error));
    QStringList beforeTheEnd;
    QCOMPARE(save(file(), [&] { beforeTheEnd = files(); }).result, WriteResult::Written);
    QCOMPARE(beforeTheEnd.size(), 1);
    QVERIFY2(beforeTheEnd.first().startsWith(QStringLiteral("file.")), qPrintable(beforeTheEnd.first()));
    QVERIFY(isAlone("file"));
    QCOMPARE(contents(file()), QByteArray("new"));
}

/// The folder is not tried a second time.
void TestReplacement::aFolderWithoutRoom()
{
    const auto watched = watch(withoutUnnamedFiles(ENOSPC));
    const Saved saved = save(file());
    QCOMPARE(saved.result, WriteResult::NotOpened);
    QCOMPARE(saved.reason, QStringLiteral("No space left on device"));
    QCOMPARE(files(), QStringList());
}

void TestReplacement::aTargetThatCannotBeLookedAt()
{
    makeFile(file(), "old");
    QCOMPARE(::mkfifo(path("pipe").constData(), 0600), 0);
    for (const int occurrence : {1, 2}) {
        for (const char *name : {"file", "pipe"}) {
            const auto watched = watch(failing("fstat", EIO, occurrence));
            save(path(name));
        }
        QVERIFY(S_ISFIFO(statusOf(path("pipe")).st_mode));
        QCOMPARE(files(), (QStringList{QStringLiteral("file"), QStringLiteral("pipe")}));
    }
    makeFile(file(), "old");
    const auto watched = watch(failing("fstat", EIO, 2));
    const Saved saved = save(file());
    QCOMPARE(saved.result, WriteResult::NotOpened);
    QCOMPARE(saved.reason, QStringLiteral("Input/output error"));
    QCOMPARE(contents(file()), QByteArray("old"));
}

void TestReplacement::aFolderThatVanishes_data()
{
    kindsOfFiles();
}

void TestReplacement::aFolderThatVanishes()
{
    const QString sub = QFile::decodeName(path("sub"));
    QVERIFY(QDir().mkdir(sub));
    const auto watched = watchKind();
    const Saved saved = save(path("sub/file"), [&] { QVERIFY(QDir(sub).removeRecursively()); });
    QCOMPARE(saved.result, WriteResult::Failed);
    QCOMPARE(saved.reason, QStringLiteral("No such file or directory"));
    QCOMPARE(files(), QStringList());
}

/// What has no name yet leaves nothing behind even then.
void TestReplacement::aFolderThatBecomesReadOnly()
{
    makeFile(file(), "old", 0666);
    constexpr uid_t nobody = 65534;
    QCOMPARE(::chown(folder().constData(), ::geteuid() == 0 ? nobody : ::geteuid(), gid_t(-1)), 0);
    Saved saved;
    {
        const WithoutRights rights(directory->path(), 0755);
        saved = save(file(), [this] { QCOMPARE(::chmod(folder().constData(), 0555), 0); });
    }
    QCOMPARE(saved.result, WriteResult::Failed);
    QCOMPARE(saved.reason, QStringLiteral("Permission denied"));
    QCOMPARE(contents(file()), QByteArray("old"));
    QVERIFY(isAlone("file"));
}

void TestReplacement::aTargetThatBecomesAFolder_data()
{
    kindsOfFiles();
}

void TestReplacement::aTargetThatBecomesAFolder()
{
    makeFile(file(), "old");
    const auto watched = watchKind();
    const Saved saved = save(file(), [this] {
        QCOMPARE(::unlink(file().constData()), 0);
        QCOMPARE(::mkdir(file().constData(), 0755), 0);
    });
    QCOMPARE(saved.result, WriteResult::Failed);
    QCOMPARE(saved.reason, QStringLiteral("Is a directory"));
    QVERIFY(S_ISDIR(statusOf(file()).st_mode));
    QVERIFY(isAlone("file"));
}

void TestReplacement::onlyRegularFilesAreReplaced()
{
    QCOMPARE(::mkfifo(path("pipe").constData(), 0600), 0);
    QCOMPARE(::mkdir(path("sub").constData(), 0700), 0);
    for (const char *name : {"pipe", "sub"}) {
        Replacement replacement;
        errno = 0;
        QVERIFY(!replacement.open(path(name)));
        QCOMPARE(errno, EEXIST);
    }
}

void TestReplacement::temporaryNamesAreNotFollowed_data()
{
    kindsOfFiles();
}

/// Somebody who knew the name could put a link under it.
void TestReplacement::temporaryNamesAreNotFollowed()
{
    QFETCH(bool, isNamed);
    makeFile(path("precious"), "precious");
    QByteArray name;
    bool isLinked = false;
    const auto watched = watchKind([&](const SystemCall &call) {
        const QByteArray taken = QByteArray::fromStdString(call.path);
        if (name.isEmpty() && isOf(call, isNamed ? "open" : "link") && taken.startsWith(file() + '.')) {
            name = taken;
            isLinked = ::symlink("precious", name.constData()) == 0;
        }
        return 0;
    });
    QCOMPARE(save(file()).result, WriteResult::Written);
    QVERIFY(isLinked);
    QCOMPARE(contents(file()), QByteArray("new"));
    QVERIFY(S_ISREG(statusOf(file()).st_mode));
    QCOMPARE(contents(path("precious")), QByteArray("precious"));
    QVERIFY(S_ISLNK(statusOf(name).st_mode));
    QCOMPARE(files().size(), 3);
}

void TestReplacement::temporaryNamesCannotBePredicted_data()
{
    kindsOfFiles();
}

/// Not from the names before, nor by a process in the same state.
void TestReplacement::temporaryNamesCannotBePredicted()
{
    QFETCH(bool, isNamed);
    std::set<QByteArray> names;
    const auto saveOften = [&] {
        const auto watched = watchKind([&](const SystemCall &call) {
            const QByteArray taken = QByteArray::fromStdString(call.path);
            if (isOf(call, isNamed ? "open" : "link") && taken.startsWith(file() + '.')) {
                names.insert(taken);
            }
            return 0;
        });
        for (int i = 0; i < 10; ++i) {
            save(file());
        }
    };
    const QString namesOfChild = QFile::decodeName(path("names"));
    const pid_t child = ::fork();
    if (child == 0) {
        saveOften();
        QFile list(namesOfChild);
        list.open(QIODevice::WriteOnly);
        for (const QByteArray &name : names) {
            list.write(name + '\n');
        }
        list.close();
        ::_exit(0);
    }
    QCOMPARE(::waitpid(child, nullptr, 0), child);
    saveOften();
    QCOMPARE(names.size(), size_t(10));
    for (const QByteArray &name : contents(path("names")).split('\n')) {
        names.insert(name);
    }
    QCOMPARE(names.size(), size_t(21)); // one is empty
}

void TestReplacement::nothingIsRemovedAfterASave_data()
{
    kindsOfFiles();
}

/// The temporary name may be that of another file by then.
void TestReplacement::nothingIsRemovedAfterASave()
{
    int removals = 0;
    const auto watched = watchKind([&](const SystemCall &call) {
        removals += isOf(call, "unlink") ? 1 : 0;
        return 0;
    });
    QCOMPARE(save(file()).result, WriteResult::Written);
    QCOMPARE(removals, 0);
}

void TestReplacement::anExceptionLeavesNothing_data()
{
    kindsOfFiles();
}

void TestReplacement::anExceptionLeavesNothing()
{
    makeFile(file(), "old");
    const auto watched = watchKind();
    QVERIFY_EXCEPTION_THROWN(save(file(), [] { throw std::bad_alloc(); }), std::bad_alloc);
    QCOMPARE(contents(file()), QByteArray("old"));
    QVERIFY(isAlone("file"));
}

QTEST_GUILESS_MAIN(TestReplacement)
#include "tst_replacement.moc"
