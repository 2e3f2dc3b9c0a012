// What was reported as saved is there after the writer was killed, and nothing is there by half.
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "engines/embedded/embedded_session.h"
#include "tests/support/temp_folder.h"

namespace basalt::embedded {
namespace {

// Writes pairs of rows, each pair in a transaction, and reports each pair that is committed.
[[noreturn]] void writeForever(const std::string& path, int report) {
    try {
        const auto session = EmbeddedSession::open(path, {});
        std::int64_t next = toInt64(
            session->run("select isnull(max(N), 0) + 1 from A").results.at(0).rows.value().column(0).valueAt(0));
        while (true) {
            const std::string number = std::to_string(next);
            session->begin();
            session->run("insert into A values(" + number + ", N'" + number + std::string(300, 'a') + "')");
            session->run("insert into B(N, P) values(" + number + ", " + number + ".5)");
            session->commit();
            if (write(report, &next, sizeof next) != sizeof next) _exit(2);
            ++next;
        }
    } catch (const DatabaseError&) {
        _exit(3);
    }
}

TEST(Durability, aKilledWriterLosesNothingThatItReported) {
    test::TempFolder folder;
    const std::string path = folder.file("shop.basalt");
    {
        const auto session = EmbeddedSession::open(path, {.createIfMissing = true});
        session->run("create table A(N bigint not null primary key, T nvarchar(400))");
        session->run("create index IX_A on A(N) include(T)");
        session->run("create table B(ID int identity(1,1) primary key, N bigint references A(N), P decimal(23,9))");
    }
    std::mt19937 random(20240320);
    std::int64_t reported = 0;
    for (int round = 0; round < 30; ++round) {
        int pipes[2];
        ASSERT_EQ(pipe(pipes), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            close(pipes[0]);
            writeForever(path, pipes[1]);
        }
        close(pipes[1]);
        // Some rounds die at once, while the file is recovered; the others after a while of writing.
        std::int64_t number = 0;
        const auto commits = random() % 12;
        for (unsigned i = 0; i < commits; ++i) {
            if (read(pipes[0], &number, sizeof number) == sizeof number) reported = number;
        }
        usleep(static_cast<useconds_t>(random() % 3000));
        kill(child, SIGKILL);
        while (read(pipes[0], &number, sizeof number) == sizeof number)
            reported = number;
        close(pipes[0]);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed by itself: " << WEXITSTATUS(status);

        const auto session = EmbeddedSession::open(path, {});
        const BatchResult result = session->run(
            "select COUNT(*), isnull(MAX(N), 0), (select COUNT(*) from B), (select COUNT(DISTINCT N) from B) from A");
        const RowSet& rows = *result.results.at(0).rows;
        const std::int64_t count = rows.column(0).intAt(0);
        ASSERT_GE(count, reported) << "round " << round;
        ASSERT_EQ(rows.column(1).intAt(0), count);
        ASSERT_EQ(rows.column(2).intAt(0), count) << "half a transaction is there";
        ASSERT_EQ(rows.column(3).intAt(0), count);
        ASSERT_THAT(session->integrityCheck(), testing::IsEmpty());
    }
    EXPECT_GT(reported, 0);
}

}  // namespace
}  // namespace basalt::embedded
