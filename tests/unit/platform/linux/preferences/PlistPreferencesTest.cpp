#include "platform/linux/preferences/PlistPreferences.h"
#include "platform/PropertyList.h"
#include "tests/unit/platform/linux/Sandbox.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPointF>
#include <QTemporaryDir>

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace quorvane::platform {

namespace {

using platform::PlistPreferences;
namespace PropertyList = platform::PropertyList;

const QString one = QStringLiteral("one");
const QString two = QStringLiteral("two");

/// Removes root's right to read every file for its lifetime: the process runs as the account "nobody", which
/// owns the folder.
class Unprivileged {
public:
    explicit Unprivileged(const QString &folder) {
        constexpr uid_t unprivileged = 65534;
        if (m_wasRoot) {
            EXPECT_EQ(chown(QFile::encodeName(folder).constData(), unprivileged, unprivileged), 0);
            EXPECT_EQ(seteuid(unprivileged), 0);
        }
    }

    ~Unprivileged() {
        if (m_wasRoot) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }

    Unprivileged(const Unprivileged &) = delete;
    Unprivileged &operator=(const Unprivileged &) = delete;

private:
    const bool m_wasRoot = geteuid() == 0;
};

class PlistPreferencesTest : public ::testing::Test {
protected:
    [[nodiscard]] static unsigned modeOf(const QString &name) {
        struct stat status {};

        return stat(QFile::encodeName(name).constData(), &status) == 0 ? status.st_mode & 07777U : 0;
    }

    [[nodiscard]] QVariantMap onDisk() const {
        return PropertyList::readFile(m_path).value_or(QVariantMap());
    }

    static void write(const QString &name, const QByteArray &bytes) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    /// Collects the problems that the store reports.
    static void listen(PlistPreferences &store, QStringList &problems) {
        store.setProblemHandler([&problems](const QString &text) { problems.append(text); });
    }

    [[nodiscard]] QStringList renamedFiles() const {
        return QDir(QFileInfo(m_path).path())
            .entryList({QStringLiteral("*.corrupt-*")}, QDir::Files | QDir::Hidden);
    }

    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(QStringLiteral("Library/Preferences/test.plist"));
};

TEST_F(PlistPreferencesTest, ReadingCreatesNothing) {
    const PlistPreferences store(m_path);
    EXPECT_FALSE(store.value(one).isValid());
    EXPECT_EQ(store.filePath(), m_path);
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty());
}

TEST_F(PlistPreferencesTest, FirstWriteCreatesPrivateFoldersAndFile) {
    const mode_t before = umask(0);
    PlistPreferences store(m_path);
    store.setValue(one, 1);
    umask(before);
    EXPECT_EQ(modeOf(m_path), 0600U);
    EXPECT_EQ(modeOf(m_path + QStringLiteral(".lock")), 0600U);
    EXPECT_EQ(modeOf(QFileInfo(m_path).path()), 0700U);
    EXPECT_EQ(modeOf(m_folder.filePath(QStringLiteral("Library"))), 0700U);
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}}));
}

TEST_F(PlistPreferencesTest, OpenFileBecomesPrivateWithTheNextWrite) {
    PlistPreferences store(m_path);
    store.setValue(one, 1);
    ASSERT_EQ(chmod(m_path.toUtf8().constData(), 0644), 0);
    store.setValue(one, 2);
    EXPECT_EQ(modeOf(m_path), 0600U);
}

TEST_F(PlistPreferencesTest, EveryTypeSurvivesARestart) {
    const QVariantMap values{{QStringLiteral("text"), QString::fromUtf16(u"aXbY\0", 5)},
                             {QStringLiteral("empty"), QStringLiteral("")},
                             {QStringLiteral("number"), qint64{-1}},
                             {QStringLiteral("yes"), true},
                             {QStringLiteral("real"), 0.5},
                             {QStringLiteral("bytes"), QByteArray("\0\x01", 2)}};
    PlistPreferences(m_path).setValues(values);
    const PlistPreferences again(m_path);
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        EXPECT_EQ(again.value(entry.key()), *entry);
        EXPECT_EQ(again.value(entry.key()).typeId(), entry->typeId());
    }
}

TEST_F(PlistPreferencesTest, UnwrittenValuesAreWrittenWithTheNextChangeOrRequest) {
    PlistPreferences store(m_path);
    store.setValuesUnwritten({{one, 1}});
    EXPECT_EQ(store.integer(one), 1);
    EXPECT_FALSE(QFileInfo::exists(m_path));
    store.setValue(two, 2);
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}, {two, qint64{2}}}));
    store.setValuesUnwritten({{one, 3}, {two, {}}});
    EXPECT_FALSE(store.value(two).isValid());
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}, {two, qint64{2}}}));
    EXPECT_TRUE(store.synchronize());
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{3}}}));
}

TEST_F(PlistPreferencesTest, RemovingAKey) {
    PlistPreferences store(m_path);
    store.setValues({{one, 1}, {two, 2}});
    store.remove(one);
    EXPECT_FALSE(store.value(one).isValid());
    EXPECT_EQ(onDisk(), (QVariantMap{{two, qint64{2}}}));
}

TEST_F(PlistPreferencesTest, ValuesThatCannotBeStoredAreDropped) {
    PlistPreferences store(m_path);
    store.setValue(one, QPointF(1, 2));
    EXPECT_FALSE(store.value(one).isValid());
}

TEST_F(PlistPreferencesTest, TwoStoresMergeByKey) {
    PlistPreferences first(m_path);
    PlistPreferences second(m_path);
    first.setValue(one, 1);
    second.setValue(two, 2);
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}, {two, qint64{2}}}));
    EXPECT_EQ(second.integer(one), 1) << "a write also reads what others wrote";
    EXPECT_EQ(first.integer(two), 0);
    EXPECT_TRUE(first.synchronize());
    EXPECT_EQ(first.integer(two), 2);
    second.remove(one);
    EXPECT_TRUE(first.synchronize());
    EXPECT_FALSE(first.value(one).isValid());
}

TEST_F(PlistPreferencesTest, UnchangedValuesDoNotRewriteTheFile) {
    PlistPreferences store(m_path);
    store.setValue(one, 1);

    struct stat before {};

    ASSERT_EQ(stat(m_path.toUtf8().constData(), &before), 0);
    store.setValue(one, 1);

    struct stat after {};

    ASSERT_EQ(stat(m_path.toUtf8().constData(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(PlistPreferencesTest, CorruptFileIsRenamedAndReported) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(m_path).path()));
    write(m_path, "this is no property list");
    PlistPreferences store(m_path);
    QStringList problems;
    listen(store, problems);
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems[0].contains(QStringLiteral(".corrupt-")));
    ASSERT_EQ(renamedFiles().size(), 1);
    QFile renamed(QFileInfo(m_path).path() + QLatin1Char('/') + renamedFiles()[0]);
    ASSERT_TRUE(renamed.open(QIODevice::ReadOnly));
    EXPECT_EQ(renamed.readAll(), "this is no property list");
    EXPECT_EQ(modeOf(renamed.fileName()), 0600U);
    EXPECT_FALSE(QFile::exists(m_path));
    store.setValue(one, 1);
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}}));
}

TEST_F(PlistPreferencesTest, FileCorruptedMeanwhileIsRestoredFromMemory) {
    PlistPreferences(m_path).setValue(two, 2);
    PlistPreferences store(m_path);
    QStringList problems;
    listen(store, problems);
    store.setValue(one, 1);
    for (int round = 0; round < 2; ++round) {
        write(m_path, QByteArray("<plist>\0broken", 14));
        EXPECT_TRUE(store.synchronize());
        EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}, {two, qint64{2}}}));
    }
    EXPECT_EQ(renamedFiles().size(), 2);
    EXPECT_EQ(problems.size(), 2);
}

TEST_F(PlistPreferencesTest, RemovedFileIsAResetOfWhatThisProcessDidNotSet) {
    PlistPreferences(m_path).setValue(two, 2);
    PlistPreferences store(m_path);
    store.setValue(one, 1);
    ASSERT_TRUE(QFile::remove(m_path));
    EXPECT_EQ(store.integer(two), 2) << "the file was not read again yet";
    EXPECT_TRUE(store.synchronize());
    EXPECT_FALSE(QFile::exists(m_path)) << "there was nothing to write";
    EXPECT_EQ(store.integer(one), 1);
    EXPECT_FALSE(store.value(two).isValid());
    store.setValue(QStringLiteral("three"), 3);
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}, {QStringLiteral("three"), qint64{3}}}));
}

TEST_F(PlistPreferencesTest, LinkIsNotUsed) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(m_path).path()));
    const QString target = m_folder.filePath(QStringLiteral("target"));
    ASSERT_TRUE(PropertyList::writeFile(target, {{one, 1}}));
    ASSERT_TRUE(QFile::link(target, m_path));
    PlistPreferences store(m_path);
    store.setValue(two, 2);
    EXPECT_FALSE(store.synchronize());
    EXPECT_EQ(store.integer(two), 2);
    EXPECT_EQ(PropertyList::readFile(target), (QVariantMap{{one, qint64{1}}}));
}

TEST_F(PlistPreferencesTest, ForeignFileIsNotUsed) {
    if (geteuid() != 0 || !sandbox::hasAccounts()) {
        GTEST_SKIP() << "needs root to change a file's owner";
    }
    PlistPreferences(m_path).setValue(one, 1);
    ASSERT_EQ(chown(m_path.toUtf8().constData(), 12345, 12345), 0);
    PlistPreferences store(m_path);
    QStringList problems;
    listen(store, problems);
    store.setValue(two, 2);
    EXPECT_FALSE(store.synchronize());
    EXPECT_EQ(store.integer(two), 2);
    EXPECT_EQ(problems.size(), 1) << "a problem is reported once";
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}}));
    ASSERT_EQ(chown(m_path.toUtf8().constData(), 0, 0), 0);
    EXPECT_TRUE(store.synchronize()) << "pending changes are written when that is possible again";
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}, {two, qint64{2}}}));
}

TEST_F(PlistPreferencesTest, LostReadPermissionOfTheOwnerIsRestored) {
    const Unprivileged user(m_folder.path());
    PlistPreferences(m_path).setValue(one, 1);
    ASSERT_EQ(chmod(m_path.toUtf8().constData(), 0), 0);
    const PlistPreferences store(m_path);
    EXPECT_EQ(store.integer(one), 1);
    EXPECT_EQ(modeOf(m_path), 0600U);
}

TEST_F(PlistPreferencesTest, ValuesStayInMemoryWithoutAFolder) {
    write(m_folder.filePath(QStringLiteral("Library")), "a file where the folder should be");
    PlistPreferences store(m_path);
    QStringList problems;
    listen(store, problems);
    store.setValue(one, 1);
    EXPECT_EQ(store.integer(one), 1);
    EXPECT_FALSE(store.synchronize());
    EXPECT_FALSE(problems.isEmpty());
}

TEST_F(PlistPreferencesTest, LockFileLeftBehindDoesNotBlock) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(m_path).path()));
    write(m_path + QStringLiteral(".lock"), "12345\nleft\nbehind\n");
    QElapsedTimer clock;
    clock.start();
    PlistPreferences store(m_path);
    store.setValue(one, 1);
    EXPECT_LT(clock.elapsed(), 1000);
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}}));
}

TEST_F(PlistPreferencesTest, LockHeldForEverBlocksOnlyUntilTheLimit) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(m_path).path()));
    const int other =
        open((m_path + QStringLiteral(".lock")).toUtf8().constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    PlistPreferences store(m_path, 50);
    QStringList problems;
    listen(store, problems);
    store.setValue(one, 1);
    close(other);
    EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}}));
    EXPECT_FALSE(problems.isEmpty());
}

TEST_F(PlistPreferencesTest, ThreadsKeepEachOthersKeys) {
    PlistPreferences store(m_path);
    constexpr int threads = 4;
    constexpr int keys = 25;
    std::vector<std::thread> writers;
    writers.reserve(threads);
    for (int thread = 0; thread < threads; ++thread) {
        writers.emplace_back([&store, thread] {
            for (int i = 0; i < keys; ++i) {
                const QString name = QStringLiteral("%1-%2").arg(thread).arg(i);
                store.setValue(name, i);
                EXPECT_EQ(store.integer(name), i);
            }
        });
    }
    for (std::thread &writer : writers) {
        writer.join();
    }
    EXPECT_EQ(onDisk().size(), threads * keys);
}

/// Runs the work in a separate process.
template <typename Work>
pid_t runInChild(Work work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    return child;
}

TEST_F(PlistPreferencesTest, ProcessesKeepEachOthersKeys) {
    constexpr int processes = 4;
    constexpr int keys = 50;
    std::vector<pid_t> children;
    children.reserve(processes);
    for (int process = 0; process < processes; ++process) {
        children.push_back(runInChild([this, process] {
            PlistPreferences store(m_path, 30000);
            for (int i = 0; i < keys; ++i) {
                store.setValue(QStringLiteral("%1-%2").arg(process).arg(i), i);
            }
        }));
    }
    for (const pid_t child : children) {
        int status = 1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(onDisk().size(), processes * keys);
}

TEST_F(PlistPreferencesTest, FileIsCompleteWhenAWriterIsKilled) {
    PlistPreferences(m_path).setValue(one, QString(20000, u'x'));
    for (int round = 0; round < 40; ++round) {
        const pid_t child = runInChild([this] {
            PlistPreferences store(m_path);
            for (int i = 0;; ++i) {
                store.setValues({{two, i}, {QStringLiteral("long"), QString(20000, u'y')}});
            }
        });
        // At a different moment of the child's writing in each round.
        usleep(static_cast<useconds_t>(3000 + round * 137));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        const auto found = PropertyList::readFile(m_path);
        ASSERT_TRUE(found) << "round " << round;
        EXPECT_EQ(found->value(one).toString().size(), 20000);
    }
    EXPECT_TRUE(renamedFiles().isEmpty());
    PlistPreferences store(m_path);
    store.setValue(one, 1);
    EXPECT_EQ(onDisk().value(one), QVariant(qint64{1}));
}

TEST_F(PlistPreferencesTest, FullDiskKeepsTheOldFile) {
    if (!sandbox::isInside()) {
        GTEST_SKIP() << "needs mount namespaces for a small disk";
    }
    const QByteArray small = m_folder.path().toUtf8();
    ASSERT_EQ(mount("small", small.constData(), "tmpfs", 0, "size=64k,mode=700"), 0);
    {
        PlistPreferences store(m_path);
        QStringList problems;
        listen(store, problems);
        store.setValue(one, 1);
        store.setValue(two, QString(200000, u'x'));
        EXPECT_FALSE(store.synchronize());
        EXPECT_EQ(store.string(two).size(), 200000);
        EXPECT_EQ(problems.size(), 1);
        EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}}));
        EXPECT_EQ(QDir(QFileInfo(m_path).path()).entryList(QDir::Files | QDir::Hidden).size(), 2)
            << "the file and its lock";
        store.setValue(two, QStringLiteral("short"));
        EXPECT_EQ(onDisk(), (QVariantMap{{one, qint64{1}}, {two, QStringLiteral("short")}}));
    }
    EXPECT_EQ(umount2(small.constData(), MNT_DETACH), 0);
}

} // namespace

} // namespace quorvane::platform
