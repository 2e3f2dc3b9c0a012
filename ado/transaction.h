// A transaction that ends with its scope.
//
//   Transaction transaction(connection);
//   ... statements ...
//   transaction.commit();      // left out, or an exception on the way: everything is rolled back
#pragma once

#include "ado/connection.h"

namespace basalt {

class Transaction {
public:
    // UsageError when the connection already has one.
    explicit Transaction(TADOConnection& connection) : connection_(&connection) { connection.BeginTrans(); }
    ~Transaction() {
        if (connection_ == nullptr) return;
        try {
            connection_->RollbackTrans();
        } catch (const std::exception&) {
            // The error that led here is the one to report; a database that cannot even roll back has lost the
            // connection and with it the transaction.
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // A failure leaves the transaction open, to be rolled back.
    void commit() {
        connection().CommitTrans();
        connection_ = nullptr;
    }
    void rollback() {
        TADOConnection& connection = this->connection();
        connection_ = nullptr;
        connection.RollbackTrans();
    }

private:
    [[nodiscard]] TADOConnection& connection() {
        if (connection_ == nullptr) throw UsageError("this transaction has already ended");
        return *connection_;
    }

    TADOConnection* connection_;
};

}  // namespace basalt
