// Microsoft SQL Server through ODBC: unixODBC with FreeTDS' or Microsoft's driver, or Windows' own ODBC.
//
//   auto session = OdbcSession::open("Driver=FreeTDS;Server=shop;Port=1433;Database=Basalt;UID=sa;PWD=...");
//   const BatchResult r = session->run("select Name from CostLevel where Code = 1");
//
// Statements are executed directly, as the text that was given; session temporary tables live as long as the
// connection. When the connection is lost, the request that met the loss fails with category Connection; the next
// request connects anew, once. When a transaction was lost with it, every request is refused (25S03) until rollback, or
// commit, which fails, has ended that transaction: whoever overlooks the loss must not write on without one. Texts that
// say only ROLLBACK or COMMIT end it too. Passwords of the connection string stay out of everything that can be
// read from here. One thread uses a session.
#pragma once

#include <memory>
#include <string>

#include "ado/session.h"

namespace basalt::odbc {

struct OdbcOptions {
    int loginTimeoutSeconds = 15;
    int queryTimeoutSeconds = 0;  // where limitTime does not say otherwise; 0: a statement may take as long as it takes
};

class OdbcSession final : public Session {
public:
    // DatabaseError (Connection) when the driver cannot be loaded, the server not be reached or the login is refused.
    [[nodiscard]] static std::unique_ptr<OdbcSession> open(const std::string& connectionString,
                                                           const OdbcOptions& options = {});
    ~OdbcSession() override;

    BatchResult run(std::string_view sql) override;
    BatchResult run(std::string_view sql, std::span<const Value> parameters) override;
    ProcedureInfo procedure(std::string_view name) override;
    // DatabaseError (NotFound, 2812) when the catalog knows no such procedure.
    CallResult call(std::string_view name, std::span<const Argument> arguments) override;
    void begin() override;
    // DatabaseError (3902) when there is no transaction, for instance because it was lost with the connection.
    void commit() override;
    void rollback() override;
    // After a batch or a procedure that may have begun or ended a transaction by itself the server is asked, once. When
    // the connection proves to be lost then, the next request fails with the loss. True too while a transaction that
    // was lost with its connection is still to be ended.
    [[nodiscard]] bool inTransaction() const override;
    TableInfo table(std::string_view name) override;
    void limitTime(std::optional<int> seconds) override;
    [[nodiscard]] std::string engine() const override { return "odbc"; }
    // Server and database of the connection string.
    [[nodiscard]] std::string location() const override;

private:
    class Core;
    explicit OdbcSession(std::unique_ptr<Core> core);

    std::unique_ptr<Core> core_;
};

}  // namespace basalt::odbc
