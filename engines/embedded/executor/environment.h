// What a statement may refer to besides the database: the literals of its batch, `?` values, variables, and the state
// of the session.
#pragma once

#include <cstdint>
#include <exception>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/value.h"
#include "engines/embedded/ast/batch.h"
#include "engines/embedded/binder/binder.h"

namespace basalt::embedded {

// The variables of a batch or procedure.
class Variables : public VariableTypes {
public:
    // Both only for names that typeOf knows.
    [[nodiscard]] virtual const Value& valueOf(std::string_view name) const = 0;
    // The value is one of the variable's type already.
    virtual void assign(std::string_view name, Value value) = 0;
};

// The error that a CATCH block is about.
struct CaughtError {
    int number = 0;
    int severity = 16;
    int state = 1;
    int line = 1;
    std::string message;
    std::string procedure;
    std::exception_ptr original;  // for THROW alone, which raises it again
};

// What statements of one session leave behind for the next.
struct SessionState {
    std::int64_t rowCount = 0;     // @@ROWCOUNT
    std::int64_t error = 0;        // @@ERROR
    Value identity = Null{};       // @@IDENTITY
    Value scopeIdentity = Null{};  // SCOPE_IDENTITY(); the interpreter saves it around a procedure
    std::int64_t tranCount = 0;    // @@TRANCOUNT
    std::int64_t nestLevel = 0;    // @@NESTLEVEL
    int functionDepth = 0;         // functions of users inside each other
    bool noCount = false;          // SET NOCOUNT
    bool abortOnError = false;     // SET XACT_ABORT
    bool doomed = false;           // an error that CATCH has taken has made the transaction one to roll back
    int lockTimeout = -1;          // @@LOCK_TIMEOUT, in milliseconds; -1: as long as the session was opened for
    std::string identityInsert;    // the table of SET IDENTITY_INSERT ... ON
    const CaughtError* caught = nullptr;
};

struct Environment {
    // The literals that this run was written with, in the order of the batch: those of the text when it came through
    // the plan cache, otherwise those of the tree.
    const std::vector<Literal>* scanned = nullptr;
    const LiteralTable* table = nullptr;
    std::span<const Value> markers = {};
    std::span<const SqlType> markerTypes = {};
    Variables* variables = nullptr;

    [[nodiscard]] const Literal& literal(std::uint32_t index) const {
        return scanned != nullptr ? (*scanned)[index] : (*table)[index];
    }
};

}  // namespace basalt::embedded
