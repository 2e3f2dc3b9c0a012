#include <memory>
#include <string>

#include "ado/error.h"
#include "engines/embedded/embedded_session.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

namespace basalt::fuzz {

namespace {

using embedded::EmbeddedSession;

std::unique_ptr<EmbeddedSession> newDatabase() {
    std::unique_ptr<EmbeddedSession> session = EmbeddedSession::open(":memory:");
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

// What may run for ever by right.
bool mayLoop(std::string_view input) {
    std::string capitals(input);
    for (char& c : capitals) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    for (const char* word : {"WHILE", "GOTO", "WITH", "REPLICATE", "SPACE", "PROC"}) {
        if (capitals.find(word) != std::string::npos) return true;
    }
    return false;
}

}  // namespace

void engine(std::string_view input) {
    if (mayLoop(input)) return;
    static std::unique_ptr<EmbeddedSession> session = newDatabase();
    try {
        session->begin();
        static_cast<void>(session->run(input));
    } catch (const DatabaseError& error) {
        // An error that the batch itself raises may say nothing.
        require(error.what()[0] != '\0' || error.nativeCode() >= 50000, "an error has a message");
    }
    try {
        while (session->inTransaction())
            session->rollback();
        const BatchResult rows = session->run("SELECT COUNT(*), SUM(a) FROM t");
        const bool same =
            rows.results.at(0).rows->column(0).intAt(0) == 3 && rows.results.at(0).rows->column(1).intAt(0) == 6;
        // A batch may have committed whatever it did.
        if (!same) session = newDatabase();
    } catch (const DatabaseError&) {
        session = newDatabase();
    }
}

}  // namespace basalt::fuzz
