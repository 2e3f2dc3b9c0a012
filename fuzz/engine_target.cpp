#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "ado/error.h"
#include "engines/embedded/embedded_session.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

namespace basalt::fuzz {

namespace {

using embedded::EmbeddedSession;

// So that texts that grow in a loop do not take all memory.
constexpr int kLongest = 1 << 20;

std::unique_ptr<EmbeddedSession> newDatabase() {
    std::unique_ptr<EmbeddedSession> session = EmbeddedSession::open(":memory:", {.longestValue = kLongest});
    session->run(
        "CREATE TABLE t (a int NOT NULL PRIMARY KEY, b nvarchar(20) NULL, c decimal(23, 9) NULL, d datetime NULL, e "
        "float NULL);"
        "CREATE TABLE u (id int IDENTITY(1,1) PRIMARY KEY, a int REFERENCES t (a), f varbinary(10), g bit DEFAULT 1);"
        "INSERT INTO t VALUES (1, N'عمده', 12500.5, '2024-03-20', 1.5), (2, N'x', NULL, NULL, NULL), (3, NULL, -1, "
        "'2024-01-01', 0);"
        "INSERT INTO u (a, f) VALUES (1, 0x0102), (2, NULL)");
    session->run("CREATE PROCEDURE p @a int = 1, @o int = NULL OUTPUT AS SELECT b FROM t WHERE a = @a SET @o = @a");
    return session;
}

// Enough of what the database holds to see whether a batch has left something behind.
std::array<std::int64_t, 3> contentsOf(EmbeddedSession& session) {
    const BatchResult result =
        session.run("SELECT COUNT(*), SUM(a), (SELECT COUNT(*) FROM sys.objects) FROM t WHERE b IS NULL OR LEN(b) > 0");
    const RowSet& rows = *result.results.at(0).rows;
    return {rows.column(0).intAt(0), rows.column(1).intAt(0), rows.column(2).intAt(0)};
}

// A batch may run for ever by right. It is given up then, as somebody would who presses Cancel.
constexpr std::chrono::milliseconds kPatience{100};
constexpr std::chrono::seconds kDeaf{20};

}  // namespace

void engine(std::string_view input) {
    static std::unique_ptr<EmbeddedSession> session = newDatabase();
    static const std::array<std::int64_t, 3> whole = contentsOf(*session);
    const auto begun = std::chrono::steady_clock::now();
    try {
        session->begin();
        session->onProgress([begun] { return std::chrono::steady_clock::now() - begun < kPatience; });
        static_cast<void>(session->run(input));
    } catch (const DatabaseError& error) {
        // An error that the batch itself raises may say nothing.
        require(error.what()[0] != '\0' || error.nativeCode() >= 50000, "an error has a message");
    }
    session->onProgress({});
    require(std::chrono::steady_clock::now() - begun < kDeaf, "a request that is given up ends");
    try {
        while (session->inTransaction())
            session->rollback();
        // A batch may have committed whatever it did.
        if (contentsOf(*session) != whole) session = newDatabase();
    } catch (const DatabaseError&) {
        session = newDatabase();
    }
}

}  // namespace basalt::fuzz
