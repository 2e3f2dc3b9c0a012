// Files that are missing, something else, damaged, newer, not writable, and disks that are full.
#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "engines/embedded/embedded_session.h"
#include "engines/embedded/exclusive_hold.h"
#include "tests/support/temp_folder.h"

namespace basalt::embedded {
namespace {

using testing::HasSubstr;

class Faults : public testing::Test {
protected:
    [[nodiscard]] std::string path() const { return folder_.file("shop.basalt"); }

    static DatabaseError errorOf(const std::string& path, const EmbeddedOptions& options) {
        try {
            const auto session = EmbeddedSession::open(path, options);
        } catch (const DatabaseError& error) {
            return error;
        }
        return DatabaseError(ErrorCategory::Other, "", 0, "no error");
    }

    void fill(int rows) {
        const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
        session->run("create table T(ID int not null primary key, A nvarchar(200))");
        session->begin();
        for (int i = 1; i <= rows; ++i)
            session->run("insert into T values(" + std::to_string(i) + ", N'" + std::string(150, 'x') + "')");
        session->commit();
    }

    test::TempFolder folder_;
};

TEST_F(Faults, aMissingFile) {
    const DatabaseError error = errorOf(path(), {});
    EXPECT_EQ(error.category(), ErrorCategory::NotFound);
    EXPECT_EQ(std::string(error.what()),
              "The database file '" + path() + "' does not exist. Check the path, or create the database first.");
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(Faults, aMissingFolder) {
    const DatabaseError error = errorOf(folder_.file("no/such/folder/shop.basalt"), {.createIfMissing = true});
    EXPECT_EQ(error.category(), ErrorCategory::Connection);
    EXPECT_THAT(error.what(), HasSubstr("Check that its folder exists and that you may write to it."));
}

TEST_F(Faults, aFileThatIsNoDatabase) {
    std::ofstream(path()) << std::string(5000, 'z');
    EXPECT_EQ(errorOf(path(), {}).category(), ErrorCategory::Corrupt);
}

TEST_F(Faults, aDatabaseOfAnotherProgram) {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(path().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "create table x(a)", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    const DatabaseError error = errorOf(path(), {});
    EXPECT_EQ(error.category(), ErrorCategory::Corrupt);
    EXPECT_EQ(std::string(error.what()),
              "The file '" + path() + "' is a database, but not one of this program. Check the path.");
}

// SQLite 3.40 reports NULLs that are not there in tables of this shape.
TEST_F(Faults, aSoundTableWithAKeyOfSeveralColumnsIsSound) {
    const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
    session->run(
        "create table L(Code int not null, Name nvarchar(50) not null, Comment nvarchar(50), Kind int not null, "
        "constraint PK_L primary key (Kind, Code)) "
        "insert into L values (1, N'a', null, 3), (2, N'b', N'c', 3)");
    EXPECT_THAT(session->integrityCheck(), testing::IsEmpty());
}

TEST_F(Faults, aNullWhereNoneMayBeIsFound) {
    {
        const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
        session->run("create table L(Code int not null primary key, Name nvarchar(50)) insert into L values (1, null)");
    }
    sqlite3* file = nullptr;
    ASSERT_EQ(sqlite3_open(path().c_str(), &file), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(file,
                           "pragma writable_schema = on; update sqlite_schema set sql = replace(sql, '\"Name\" "
                           "nvarchar(50)', '\"Name\" nvarchar(50) NOT NULL') where name = 'L'",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_changes(file), 1);
    sqlite3_close(file);
    const auto session = EmbeddedSession::open(path());
    EXPECT_THAT(session->integrityCheck(), testing::ElementsAre("NULL value in L.Name"));
}

TEST_F(Faults, valuesThatNobodyCanReadAreFound) {
    {
        const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
        session->run(
            "create table L(Code int not null, Kind nvarchar(5) not null, Price decimal(9,2), Name nvarchar(50), "
            "constraint PK_L primary key (Code, Kind)) "
            "create table H(A decimal(9,2)) "
            "insert into L values (1, N'a', 1.5, N'x'), (2, N'b', 2.5, N'y'), (3, N'c', null, null) "
            "insert into H values (1), (2)");
        EXPECT_THAT(session->integrityCheck(), testing::IsEmpty());
    }
    sqlite3* file = nullptr;
    ASSERT_EQ(sqlite3_open(path().c_str(), &file), SQLITE_OK);
    const auto byBytes = [](void*, int a, const void* left, int b, const void* right) {
        return std::string_view(static_cast<const char*>(left), static_cast<std::size_t>(a))
            .compare({static_cast<const char*>(right), static_cast<std::size_t>(b)});
    };
    ASSERT_EQ(sqlite3_create_collation(file, "TSQL", SQLITE_UTF8, nullptr, byBytes), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(file,
                           "update L set Price = x'8501' where Code = 2; update L set Name = cast(x'41ff' as text) "
                           "where Code = 1; update H set A = x'' where rowid = 2",
                           nullptr, nullptr, nullptr),
              SQLITE_OK)
        << sqlite3_errmsg(file);
    sqlite3_close(file);
    const auto session = EmbeddedSession::open(path());
    EXPECT_THAT(session->integrityCheck(),
                testing::ElementsAre("The value of A is no decimal number (H, row 2)",
                                     "The value of Name is no valid UTF-8 text (L, key 1, 'a')",
                                     "The value of Price is no decimal number (L, key 2, 'b')"));
}

TEST_F(Faults, aReferenceToARowThatIsNotThereIsFound) {
    {
        const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
        session->run(
            "create table P(ID int not null primary key) create table C(ID int not null primary key, P int references "
            "P(ID)) insert into P values (1), (2) insert into C values (1, 1), (2, null), (3, 2) "
            "create table Pair(A int not null, B int not null, primary key (A, B)) "
            "create table Heap(A int, B int, foreign key (A, B) references Pair (A, B)) "
            "insert into Pair values (1, 10), (2, 20) insert into Heap values (2, 20), (1, null), (1, 10) "
            "create table Kind(Name nvarchar(5) not null primary key) create table Good(Kind nvarchar(5) references "
            "Kind (Name)) insert into Kind values (N'Tea') insert into Good values (N'TEA'), (null)");
        EXPECT_THAT(session->integrityCheck(), testing::IsEmpty());
    }
    sqlite3* file = nullptr;
    ASSERT_EQ(sqlite3_open(path().c_str(), &file), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(file, "pragma foreign_keys = off; delete from P where ID = 1; delete from Pair where A = 1",
                           nullptr, nullptr, nullptr),
              SQLITE_OK)
        << sqlite3_errmsg(file);
    sqlite3_close(file);
    const auto session = EmbeddedSession::open(path());
    EXPECT_THAT(session->integrityCheck(),
                testing::UnorderedElementsAre(
                    "A row of C refers by P = 1 to a row of P that is not there (C, key 1)",
                    "A row of Heap refers by A, B = 1, 10 to a row of Pair that is not there (Heap, row 3)"));
}

TEST_F(Faults, manyReferencesToRowsThatAreNotThereAreCounted) {
    {
        const auto session = EmbeddedSession::open(path(), {.createIfMissing = true});
        session->run(
            "create table P(ID int not null primary key) create table C(ID int not null primary key, P int references "
            "P(ID), Q int references P(ID)) insert into P values (1), (2), (3) declare @I int = 1 while @I <= 100 begin "
            "insert into C values (@I, 1, case when @I <= 6 then 2 else 3 end) set @I = @I + 1 end");
    }
    sqlite3* file = nullptr;
    ASSERT_EQ(sqlite3_open(path().c_str(), &file), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(file, "pragma foreign_keys = off; delete from P where ID < 3", nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(file);
    const auto session = EmbeddedSession::open(path());
    EXPECT_THAT(session->integrityCheck(),
                testing::UnorderedElementsAre("A row of C refers by P = 1 to a row of P that is not there (C, key 1)",
                                              "A row of C refers by P = 1 to a row of P that is not there (C, key 2)",
                                              "A row of C refers by P = 1 to a row of P that is not there (C, key 3)",
                                              "A row of C refers by P = 1 to a row of P that is not there (C, key 4)",
                                              "A row of C refers by P = 1 to a row of P that is not there (C, key 5)",
                                              "95 rows more of C refer by P to rows of P that are not there",
                                              "A row of C refers by Q = 2 to a row of P that is not there (C, key 1)",
                                              "A row of C refers by Q = 2 to a row of P that is not there (C, key 2)",
                                              "A row of C refers by Q = 2 to a row of P that is not there (C, key 3)",
                                              "A row of C refers by Q = 2 to a row of P that is not there (C, key 4)",
                                              "A row of C refers by Q = 2 to a row of P that is not there (C, key 5)",
                                              "1 row more of C refers by Q to rows of P that are not there"));
}

TEST_F(Faults, aDamagedFile) {
    fill(2000);
    {
        std::fstream file(path(), std::ios::in | std::ios::out | std::ios::binary);
        const auto size = static_cast<long>(std::filesystem::file_size(path()));
        for (long at = 8 * 4096; at < size; at += 4096) {
            file.seekp(at);
            file << std::string(600, '\xFF');
        }
    }
    const auto session = EmbeddedSession::open(path(), {});
    try {
        session->run("select COUNT(A) from T");
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.category(), ErrorCategory::Corrupt) << error.what();
        EXPECT_THAT(error.what(),
                    HasSubstr("Restore it from a backup: basalt db restore BACKUP --database \"embedded:" +
                              std::filesystem::canonical(path()).string() + '"'));
    }
    EXPECT_THAT(session->integrityCheck(), testing::Not(testing::IsEmpty()));
}

TEST_F(Faults, aNewerSchema) {
    EmbeddedSession::open(path(), {.createIfMissing = true})->setSchemaVersion(7);
    EXPECT_EQ(EmbeddedSession::open(path(), {.knownSchemaVersion = 7})->schemaVersion(), 7);
    const DatabaseError error = errorOf(path(), {.knownSchemaVersion = 6});
    EXPECT_EQ(error.category(), ErrorCategory::Version);
    EXPECT_EQ(std::string(error.what()),
              "The database '" + path() +
                  "' was made by a newer release of the program. Update this computer's program, then open it again.");
}

TEST_F(Faults, aLockedFile) {
    fill(1);
    const auto writer = EmbeddedSession::open(path(), {});
    writer->begin();
    // Opening and reading go on; only writing waits.
    const auto reader = EmbeddedSession::open(path(), {.busyTimeoutMs = 50});
    EXPECT_EQ(reader->run("select ID from T").results.at(0).rows.value().rowCount(), 1U);
    EXPECT_THROW(reader->run("delete from T"), DatabaseError);
}

// A child process with other rights tells by its exit status which category the error had.
TEST_F(Faults, aFolderThatMayNotBeWritten) {
    fill(1);
    std::filesystem::remove(path() + "-wal");
    std::filesystem::remove(path() + "-shm");
    const std::string closed = folder_.file("closed");
    std::filesystem::create_directory(closed);
    std::filesystem::copy(path(), closed + "/shop.basalt");
    ASSERT_EQ(chmod((closed + "/shop.basalt").c_str(), 0444), 0);
    ASSERT_EQ(chmod(closed.c_str(), 0555), 0);
    ASSERT_EQ(chmod(folder_.path().c_str(), 0755), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (geteuid() == 0 && setuid(65534) != 0) _exit(100);
        const ErrorCategory existing = errorOf(closed + "/shop.basalt", {}).category();
        const ErrorCategory fresh = errorOf(closed + "/new.basalt", {.createIfMissing = true}).category();
        _exit(existing == ErrorCategory::Connection && fresh == ErrorCategory::Connection
                  ? 0
                  : 10 + static_cast<int>(existing));
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    ASSERT_EQ(chmod(closed.c_str(), 0755), 0);
}

// Whoever may only read leaves nothing beside the file: files of his would keep its owner from writing.
TEST_F(Faults, whoMayOnlyReadLeavesNothingBesideTheFile) {
    fill(1);
    ASSERT_FALSE(std::filesystem::exists(path() + "-wal"));
    ASSERT_EQ(chmod(path().c_str(), 0444), 0);
    ASSERT_EQ(chmod(folder_.path().c_str(), 0777), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (geteuid() == 0 && setuid(65534) != 0) _exit(100);
        const DatabaseError error = errorOf(path(), {});
        if (error.category() != ErrorCategory::Connection || error.nativeCode() != 3906) _exit(1);
        try {
            const ExclusiveHold hold(path());
            _exit(2);
        } catch (const DatabaseError& refused) {
            _exit(refused.category() == ErrorCategory::Connection && refused.nativeCode() == 3906 ? 0 : 3);
        }
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_FALSE(std::filesystem::exists(path() + "-wal"));
    EXPECT_FALSE(std::filesystem::exists(path() + "-shm"));
    ASSERT_EQ(chmod(path().c_str(), 0644), 0);
    EmbeddedSession::open(path())->run("insert into T values(2, N'mine')");
}

// A file that is taken away while it is open, and what may have come into its place.
class MovedFiles : public Faults {
protected:
    MovedFiles() {
        fill(3);
        session_ = EmbeddedSession::open(path());
    }

    void refuses(const std::function<void()>& request) const {
        try {
            request();
            ADD_FAILURE() << "no error";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.category(), ErrorCategory::Connection);
            EXPECT_EQ(error.nativeCode(), 5173);
            const std::string file = std::filesystem::canonical(folder_.path()).string() + "/shop.basalt";
            EXPECT_EQ(std::string(error.what()),
                      "The database file '" + file +
                          "' was removed or replaced while this program had it open; nothing of the request was kept. "
                          "Close every program that uses it, then put the same file back, begin anew, or restore a "
                          "backup: basalt db restore BACKUP --database \"embedded:" +
                          file + "\" (before a backup is copied there by hand, '" + file + "-wal' and '" + file +
                          "-shm' have to be removed)");
        }
        EXPECT_FALSE(session_->inTransaction());
    }
    void refusesToWrite() const {
        refuses([this] { session_->run("insert into T values(4, N'y')"); });
        refuses([this] { session_->run("update T set A = N'y'"); });
        refuses([this] { session_->run("create table U(ID int)"); });
        refuses([this] { session_->begin(); });
        refuses([this] { session_->run("begin transaction insert into T values(4, N'y') commit"); });
        // What only reads, or only concerns this session, goes on.
        EXPECT_EQ(session_->run("select ID from T").results.at(0).rows.value().rowCount(), 3U);
        session_->run("create table #mine(ID int) insert into #mine values(1)");
    }

    std::unique_ptr<EmbeddedSession> session_;
};

TEST_F(MovedFiles, nothingIsSavedIntoARemovedFile) {
    std::filesystem::remove(path());
    refusesToWrite();
}

TEST_F(MovedFiles, nothingIsSavedIntoAFileThatIsAnotherOneNow) {
    std::filesystem::rename(path(), folder_.file("aside"));
    std::filesystem::copy(folder_.file("aside"), path());
    refusesToWrite();
    session_.reset();
    // The one that came is whole, and nothing was written into it.
    const auto other = EmbeddedSession::open(path());
    EXPECT_EQ(other->run("select ID from T").results.at(0).rows.value().rowCount(), 3U);
    EXPECT_THAT(other->integrityCheck(), testing::IsEmpty());
}

TEST_F(MovedFiles, aTransactionThatHadBegunIsRolledBack) {
    session_->begin();
    session_->run("insert into T values(4, N'y')");
    std::filesystem::remove(path());
    refuses([this] { session_->commit(); });
    EXPECT_EQ(session_->run("select ID from T").results.at(0).rows.value().rowCount(), 3U);
}

TEST_F(MovedFiles, aFileThatIsPutBackIsWrittenAgain) {
    std::filesystem::rename(path(), folder_.file("aside"));
    refusesToWrite();
    std::filesystem::rename(folder_.file("aside"), path());
    session_->run("insert into T values(4, N'y')");
    session_.reset();
    EXPECT_EQ(EmbeddedSession::open(path())->run("select ID from T").results.at(0).rows.value().rowCount(), 4U);
}

// The log of a file that is gone would be written over the backup that is put into its place.
TEST_F(MovedFiles, nothingIsLeftBesideTheFileThatWasRemoved) {
    session_->run("insert into T values(4, N'lost')");
    const std::string backup = folder_.file("monday");
    session_->backUp(backup);
    session_->run("update T set A = N'later'");
    std::filesystem::remove(path());
    refuses([this] { session_->run("insert into T values(5, N'y')"); });
    session_.reset();
    EXPECT_FALSE(std::filesystem::exists(path() + "-wal"));
    EXPECT_FALSE(std::filesystem::exists(path() + "-shm"));
    std::filesystem::copy(backup, path());
    const auto copy = EmbeddedSession::open(path());
    EXPECT_THAT(copy->integrityCheck(), testing::IsEmpty());
    EXPECT_EQ(copy->run("select ID from T where A = N'lost'").results.at(0).rows.value().rowCount(), 1U);
}

TEST_F(MovedFiles, theLastOfSeveralLeavesNothingEither) {
    auto other = EmbeddedSession::open(path());
    session_->run("insert into T values(4, N'lost')");
    std::filesystem::remove(path());
    session_.reset();
    // The other one reads on.
    EXPECT_EQ(other->run("select ID from T").results.at(0).rows.value().rowCount(), 4U);
    other.reset();
    EXPECT_FALSE(std::filesystem::exists(path() + "-wal"));
    EXPECT_FALSE(std::filesystem::exists(path() + "-shm"));
}

TEST_F(MovedFiles, aSessionThatIsClosedWithinATransactionLeavesNothing) {
    session_->onProgress([] { return true; });
    session_->begin();
    session_->run("insert into T values(4, N'y')");
    std::filesystem::remove(path());
    session_.reset();
    EXPECT_FALSE(std::filesystem::exists(path() + "-wal"));
    EXPECT_FALSE(std::filesystem::exists(path() + "-shm"));
}

TEST_F(MovedFiles, aFileThatIsPutBackAfterTheEndHasAllThatWasSaved) {
    session_->run("insert into T values(4, N'saved')");
    std::filesystem::rename(path(), folder_.file("aside"));
    session_.reset();
    EXPECT_FALSE(std::filesystem::exists(path() + "-wal"));
    std::filesystem::rename(folder_.file("aside"), path());
    const auto again = EmbeddedSession::open(path());
    EXPECT_THAT(again->integrityCheck(), testing::IsEmpty());
    EXPECT_EQ(again->run("select ID from T where A = N'saved'").results.at(0).rows.value().rowCount(), 1U);
    again->run("insert into T values(5, N'y')");
}

// What is beside a file belongs to that file, whoever was there before.
TEST_F(MovedFiles, theLogOfTheFileThatCameStays) {
    std::filesystem::remove(path());
    for (const char* suffix : {"-wal", "-shm"})
        std::filesystem::remove(path() + suffix);
    EmbeddedOptions create;
    create.createIfMissing = true;
    auto other = EmbeddedSession::open(path(), create);
    other->run("create table Mine(ID int primary key) insert into Mine values(1)");
    session_.reset();
    EXPECT_TRUE(std::filesystem::exists(path() + "-wal"));
    EXPECT_EQ(EmbeddedSession::open(path())->run("select ID from Mine").results.at(0).rows.value().rowCount(), 1U);
    other->run("insert into Mine values(2)");
    other.reset();
    EXPECT_EQ(EmbeddedSession::open(path())->run("select ID from Mine").results.at(0).rows.value().rowCount(), 2U);
}

// The limit on the size of files stands in for a full disk.
TEST_F(Faults, aFullDisk) {
    fill(10);
    const auto session = EmbeddedSession::open(path(), {});
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = old;
    small.rlim_cur = 200'000;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    session->begin();
    ErrorCategory category = ErrorCategory::Other;
    try {
        for (int i = 100; i < 20'000; ++i)
            session->run("insert into T values(" + std::to_string(i) + ", N'" + std::string(200, 'y') + "')");
        session->commit();
    } catch (const DatabaseError& error) {
        category = error.category();
    }
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, ignored);
    EXPECT_EQ(category, ErrorCategory::DiskFull);
    EXPECT_FALSE(session->inTransaction());
    // Nothing of the transaction was kept, and the session works again.
    EXPECT_EQ(session->run("select ID from T").results.at(0).rows.value().rowCount(), 10U);
    session->run("insert into T values(11, N'z')");
    EXPECT_THAT(session->integrityCheck(), testing::IsEmpty());
    EXPECT_EQ(EmbeddedSession::open(path(), {})->run("select ID from T").results.at(0).rows.value().rowCount(), 11U);
}

}  // namespace
}  // namespace basalt::embedded
