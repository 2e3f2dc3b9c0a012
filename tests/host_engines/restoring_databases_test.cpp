// Backups that come back: what a program that died has left beside the old file must not reach them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "ado/error.h"
#include "host/engines/open_database.h"
#include "host/engines/restore_database.h"
#include "tests/support/files.h"

namespace basalt::host {
namespace {

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

class RestoringDatabases : public test::Files {
protected:
    void SetUp() override {
        createDatabase(url("shop.db"), false);
        note("shop.db", "of the backup");
        backUpDatabase(url("shop.db"), path("backup.db").string());
    }

    [[nodiscard]] DatabaseUrl url(const std::string& name) const { return {EngineKind::Embedded, path(name).string()}; }
    [[nodiscard]] RestoredDatabase restore() const {
        return restoreDatabase(url("shop.db"), path("backup.db").string());
    }
    void note(const std::string& name, const std::string& text) const { note(*openDatabase(url(name)), text); }
    static void note(Session& session, const std::string& text) {
        session.run("update Stores set Name = N'" + text + "'");
    }
    [[nodiscard]] std::string noted(const std::string& name) const {
        const BatchResult found = openDatabase(url(name))->run("select top 1 Name from Stores");
        return toText(found.results.at(0).rows->column(0).valueAt(0));
    }
    // The files as they are beside each other when the program that writes is killed.
    void killOver(const std::string& text) const {
        const auto session = openDatabase(url("shop.db"));
        note(*session, text);
        for (const char* suffix : {"", "-wal", "-shm"})
            fs::copy_file(path(std::string("shop.db") + suffix), path(std::string("killed.db") + suffix));
    }
    void leaveKilled() const {
        for (const char* suffix : {"", "-wal", "-shm"})
            fs::rename(path(std::string("killed.db") + suffix), path(std::string("shop.db") + suffix));
    }
    void isRestored() const {
        EXPECT_THAT(findDamage(url("shop.db")), IsEmpty());
        EXPECT_EQ(noted("shop.db"), "of the backup");
    }
};

TEST_F(RestoringDatabases, theLogOfAKilledProgramDoesNotReachTheCopy) {
    killOver("after the backup");
    leaveKilled();
    const RestoredDatabase done = restore();
    EXPECT_EQ(done.kept, fs::canonical(path("shop.db.before-restore")));
    EXPECT_THAT(names(), UnorderedElementsAre("shop.db", "shop.db.before-restore", "backup.db"));
    isRestored();
    // What the killed one had committed is in the former file.
    EXPECT_EQ(noted("shop.db.before-restore"), "after the backup");
}

TEST_F(RestoringDatabases, everyFormerFileIsKept) {
    note("shop.db", "first");
    EXPECT_EQ(restore().kept.filename(), "shop.db.before-restore");
    note("shop.db", "second");
    EXPECT_EQ(restore().kept.filename(), "shop.db.before-restore-2");
    isRestored();
    EXPECT_EQ(noted("shop.db.before-restore"), "first");
    EXPECT_EQ(noted("shop.db.before-restore-2"), "second");
}

TEST_F(RestoringDatabases, aDatabaseThatIsOpenIsLeftAlone) {
    const auto other = openDatabase(url("shop.db"));
    note(*other, "at work");
    EXPECT_THAT([this] { (void)restore(); }, ThrowsMessage<DatabaseError>(HasSubstr("is open in another program")));
    note(*other, "still at work");
    EXPECT_EQ(noted("shop.db"), "still at work");
    EXPECT_FALSE(fs::exists(path("shop.db.before-restore")));
}

TEST_F(RestoringDatabases, aDamagedDatabaseThatIsOpenIsLeftAlone) {
    const auto other = openDatabase(url("shop.db"));
    note(*other, "at work");
    // Over the head of the file, where the other one does not look again.
    std::fstream(path("shop.db"), std::ios::in | std::ios::out | std::ios::binary) << std::string(200, 'x');
    EXPECT_THAT([this] { (void)restore(); }, ThrowsMessage<DatabaseError>(HasSubstr("is open in another program")));
    EXPECT_FALSE(fs::exists(path("shop.db.before-restore")));
}

TEST_F(RestoringDatabases, aMissingDatabaseIsMade) {
    fs::remove(path("shop.db"));
    EXPECT_TRUE(restore().kept.empty());
    EXPECT_THAT(names(), UnorderedElementsAre("shop.db", "backup.db"));
    isRestored();
}

TEST_F(RestoringDatabases, theLogOfAMissingDatabaseIsKept) {
    killOver("after the backup");
    leaveKilled();
    fs::remove(path("shop.db"));
    const std::string log = read("shop.db-wal");
    ASSERT_FALSE(log.empty());
    (void)restore();
    EXPECT_THAT(names(), UnorderedElementsAre("shop.db", "backup.db", "shop.db.before-restore-wal"));
    EXPECT_EQ(read("shop.db.before-restore-wal"), log);
    isRestored();
}

TEST_F(RestoringDatabases, aDamagedDatabaseIsReplacedAndKeptWithItsLog) {
    killOver("after the backup");
    leaveKilled();
    write(path("shop.db"), std::string(5000, 'z'));
    // The log holds pages that would make a database of the file again.
    write(path("shop.db-wal"), std::string(100, 'w'));
    EXPECT_EQ(restore().kept.filename(), "shop.db.before-restore");
    EXPECT_EQ(read("shop.db.before-restore"), std::string(5000, 'z'));
    EXPECT_FALSE(fs::exists(path("shop.db-wal")));
    isRestored();
}

TEST_F(RestoringDatabases, whatIsNoSoundBackupChangesNothing) {
    note("shop.db", "as it was");
    const auto refuses = [this](const std::string& words) {
        EXPECT_THAT([this] { (void)restore(); }, ThrowsMessage<DatabaseError>(HasSubstr(words)));
        EXPECT_EQ(noted("shop.db"), "as it was");
        EXPECT_FALSE(fs::exists(path("shop.db.before-restore")));
        for (const std::string& name : names())
            EXPECT_EQ(name.find("draft"), std::string::npos) << name;
    };
    write(path("backup.db"), std::string(5000, 'z'));
    const std::string damaged = "the backup " + path("backup.db").string() +
                                " is damaged or is not a database. Nothing was restored; take another backup";
    EXPECT_THAT([this] { (void)restore(); }, ThrowsMessage<DatabaseError>(damaged));
    refuses(damaged);
    write(path("backup.db"), "");
    refuses("backup.db' is empty");
    fs::remove(path("backup.db"));
    EXPECT_THAT([this] { (void)restore(); }, ThrowsMessage<MissingDatabase>(HasSubstr("there is no backup at")));
    const std::function<void(Session&)> another = [](Session& session) { session.run("create table T(A int)"); };
    createDatabase(url("backup.db"), another);
    refuses("has not the tables of this program");
    fs::remove(path("backup.db"));
    createDatabase(url("backup.db"), false);
    {
        // The first page is whole, and most others are not.
        std::fstream file(path("backup.db"), std::ios::in | std::ios::out | std::ios::binary);
        const auto size = static_cast<long>(fs::file_size(path("backup.db")));
        for (long at = 12 * 4096; at < size; at += 4096) {
            file.seekp(at);
            file << std::string(600, '\xFF');
        }
    }
    EXPECT_THROW((void)restore(), DatabaseError);
    EXPECT_EQ(noted("shop.db"), "as it was");
}

TEST_F(RestoringDatabases, aBackupThatIsInUseIsNotCopied) {
    const auto other = openDatabase(url("backup.db"));
    note(*other, "in use");
    EXPECT_THAT([this] { (void)restore(); }, ThrowsMessage<UsageError>(HasSubstr("basalt db backup COPY")));
    EXPECT_THAT([this] { (void)restoreDatabase(url("shop.db"), path("shop.db").string()); },
                ThrowsMessage<UsageError>(HasSubstr("belongs to the database")));
}

// The administrator restores for others.
TEST_F(RestoringDatabases, theFileStaysItsOwners) {
    if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
    constexpr uid_t kOwner = 1234;
    constexpr gid_t kGroup = 4321;
    ASSERT_EQ(chown(path("shop.db").c_str(), kOwner, kGroup), 0);
    ASSERT_EQ(chmod(path("shop.db").c_str(), 0640), 0);
    (void)restore();
    struct stat restored {};
    ASSERT_EQ(stat(path("shop.db").c_str(), &restored), 0);
    EXPECT_EQ(restored.st_uid, kOwner);
    EXPECT_EQ(restored.st_gid, kGroup);
    EXPECT_EQ(restored.st_mode & 0777U, 0640U);
    isRestored();
}

// A medium that can only be read, and a link to the place.
TEST_F(RestoringDatabases, aBackupThatMayOnlyBeReadAndALinkAreTaken) {
    fs::permissions(path("backup.db"), fs::perms::owner_read);
    fs::create_symlink("shop.db", path("link.db"));
    note("shop.db", "later");
    (void)restoreDatabase(url("link.db"), path("backup.db").string());
    EXPECT_TRUE(fs::is_symlink(path("link.db")));
    isRestored();
    EXPECT_EQ(fs::status(path("shop.db")).permissions(), fs::status(path("shop.db.before-restore")).permissions());
    note("shop.db", "works on");
    EXPECT_EQ(noted("link.db"), "works on");
}

}  // namespace
}  // namespace basalt::host
