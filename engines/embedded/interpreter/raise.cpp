// Errors and messages: PRINT, RAISERROR, THROW, TRY ... CATCH, and which errors end what.
#include <algorithm>
#include <array>
#include <utility>

#include "ado/progress.h"
#include "engines/embedded/interpreter/interpreter.h"
#include "engines/embedded/interpreter/message_format.h"
#include "engines/embedded/interpreter/raised_error.h"
#include "engines/embedded/lexer/error_context.h"
#include "engines/embedded/runtime/convert.h"
#include "engines/embedded/runtime/sql_error.h"

namespace basalt::embedded {

namespace {

// The number of errors that have no number of their own.
constexpr int kUserError = 50000;
// RAISERROR takes no lower numbers.
constexpr int kFirstMessage = 13000;
// From here on an error ends the connection at the server, and with it the batch and the transaction, TRY or not.
constexpr int kFirstFatalSeverity = 20;

// Errors that end their statement only; every other ends the batch.
bool endsStatementOnly(int number) {
    constexpr std::array kNumbers = {
        127,    // a TOP or FETCH of fewer rows than none
        201,    // a parameter was not supplied
        214,    // a parameter of another type than a procedure of the server's takes
        220,    // arithmetic overflow for a small integer type
        232,    // arithmetic overflow of a float
        242,    // a date that does not exist, or lies out of range
        266,    // transactions left open by a procedure, or closed
        289,    // parts that make no date
        506,    // ESCAPE with more than one character
        512,    // a subquery with more than one row
        515,    // NULL into a column that takes none
        517,    // a date that runs over
        530,    // too deep a recursion
        535,    // a difference of dates that runs over
        536,    // a negative length for RIGHT
        537,    // a negative length for LEFT or SUBSTRING
        544,    // a number for an identity column
        545,    // none for it with IDENTITY_INSERT on
        547,    // foreign key or check
        628,    // SAVE without BEGIN
        1031,   // a TOP of more than 100 percent
        1060,   // a TOP or FETCH of NULL rows
        1222,   // a lock that was not to be had in time
        1505,   // rows that are not unique under a new index
        2501,   // DBCC for no table
        2560,   // DBCC with a value that means nothing
        2601,   // unique index
        2627,   // primary key or unique constraint
        2628,   // a text too long for its column
        2732,   // RAISERROR with a number that it does not take
        2748,   // RAISERROR with a value of a type that it does not take
        2754,   // RAISERROR with a severity that takes WITH LOG
        2786,   // RAISERROR with a value of another type than its place in the text
        2787,   // RAISERROR with a text that says a place wrongly
        2812,   // no such procedure
        3623,   // an operation on floats that means nothing
        3701,   // nothing to drop
        3705,   // DROP for another kind of object
        3726,   // DROP of a table that another one refers to
        3902,   // COMMIT without BEGIN
        3903,   // ROLLBACK without BEGIN
        4712,   // TRUNCATE of a table that another one refers to
        6401,   // no transaction or savepoint of that name
        7997,   // DBCC for a table without an identity column
        8106,   // IDENTITY_INSERT for a table without one
        8107,   // IDENTITY_INSERT for a second table
        8115,   // arithmetic overflow
        8134,   // division by zero
        8143,   // a parameter supplied twice
        8144,   // too many arguments
        8145,   // no such parameter
        8146,   // arguments for a procedure without parameters
        8152,   // a text too long for its column
        8162,   // an output asked of a parameter that is none
        8178,   // a parameter of a text was not supplied
        10742,  // a negative OFFSET
        10744,  // a FETCH of no rows
    };
    return std::ranges::find(kNumbers, number) != kNumbers.end();
}

// A name that means nothing when its statement is looked at, which is when its turn comes. The procedure or batch that
// the statement stands in cannot be made sense of and ends, TRY or not; its caller hears of an error like any other.
bool isUnknownName(int number) {
    return number == error::kInvalidColumn || number == error::kInvalidObject || number == 107 || number == 4104;
}

bool losesTheTransaction(const DatabaseError& error) {
    if (const auto* raised = dynamic_cast<const RaisedError*>(&error);
        raised != nullptr && raised->error().severity >= kFirstFatalSeverity) {
        return true;
    }
    return error.category() == ErrorCategory::Connection || error.category() == ErrorCategory::Corrupt ||
           error.category() == ErrorCategory::DiskFull;
}

int severityOf(const DatabaseError& error) {
    switch (error.nativeCode()) {
        case 2601:
        case 2627:
            return 14;
        case 102:
        case 156:
            return 15;
        case 3701:
            return 11;
        default:
            return 16;
    }
}

// The server's own words, without the place that this engine adds below them.
std::string wordsOf(const DatabaseError& error) {
    const std::string_view what = error.what();
    const std::size_t context = what.find("\nLine ");
    return std::string(what.substr(0, context));
}

// The server gives some errors as two: what is wrong, and what has therefore not been done. A caller reads the first
// one, CATCH and @@ERROR are told of the last.
struct LastError {
    int number;
    std::string message;
};

LastError lastOf(const DatabaseError& error) {
    switch (error.nativeCode()) {
        case 5074: {  // a column that something depends on; its words have a line for each such thing, and the last
            const std::string words = wordsOf(error);
            return {4922, words.substr(words.rfind('\n') + 1)};
        }
        case 3728:  // no such constraint
            return {3727, "Could not drop constraint. See previous errors."};
        case 1753:  // a reference to another length or scale
        case 1767:  // a reference to no table
        case 1776:  // a reference to no key
        case 1778:  // a reference to another type
        case 1779:  // a second primary key
        case 1781:  // a second default
        case 8111:  // a primary key over what takes NULL
            return {1750, "Could not create constraint or index. See previous errors."};
        default:
            return {error.nativeCode(), wordsOf(error)};
    }
}

std::string textOf(const TypedValue& value) {
    if (isNull(value.value)) return {};
    return toText(convert(value.value, value.type, SqlType::text(TypeKind::NVarChar, kMaxLength)));
}

int integerOf(const TypedValue& value) {
    if (isNull(value.value)) return 0;
    return static_cast<int>(toInt64(convert(value.value, value.type, SqlType::of(TypeKind::Int))));
}

}  // namespace

bool Interpreter::goesOn(Activation& activation, const ast::Statement& statement, const DatabaseError& error) {
    if (located_ != &error) {
        // The innermost statement is where it happened.
        located_ = &error;
        errorLine_ = static_cast<int>(locate(activation.batch.text, statement.range.begin).line);
        errorProcedure_ = activation.isText ? std::string() : activation.procedure;
        // What a function has failed with comes through SQLite, as an error of the statement that has called it.
        const bool ofFunction = std::exchange(functionFailed_, activation.function != nullptr);
        const bool unknown = isUnknownName(error.nativeCode()) && dynamic_cast<const RaisedError*>(&error) == nullptr;
        unknownIn_ = unknown && !ofFunction ? &activation : nullptr;
        endsAll_ = executor_.state().abortOnError;
    }
    const bool procedureEnded = unknownIn_ != nullptr && unknownIn_ != &activation && !endsAll_;
    SessionState& state = executor_.state();
    const auto* raised = dynamic_cast<const RaisedError*>(&error);
    state.error = raised != nullptr ? raised->error().number : lastOf(error).number;
    state.rowCount = 0;
    const bool dooms = raised != nullptr ? state.abortOnError : executor_.dooms(error);
    // The innermost place decides: a procedure's XACT_ABORT is over when the TRY of its caller hears of the error.
    if (tries_ > 0 && dooms && state.tranCount > 0) state.doomed = true;
    const bool endsBatch =
        raised ? raised->ends() : endsAll_ || !(procedureEnded || endsStatementOnly(error.nativeCode()));
    // An error in a function ends the statement that has called it.
    if (losesTheTransaction(error) || tries_ > 0 || activation.function != nullptr) return false;
    // The innermost statement of the batch itself; what a procedure runs has a text of its own.
    if (!pending_ && !failedAt_ && raised == nullptr && &activation.batch == outermost_) failedAt_ = statement.range;
    if (!endsBatch) {
        if (!pending_) pending_ = std::current_exception();
        located_ = nullptr;
        return true;
    }
    // On the way out of its procedure; what that means is the caller's affair.
    if (unknownIn_ == &activation && !endsAll_ && &activation.batch != outermost_) return false;
    if (dooms && executor_.inTransaction()) executor_.rollback();
    // An earlier error is the one that the caller hears of.
    if (pending_) throwPending();
    return false;
}

void Interpreter::throwPending() {
    if (!pending_) return;
    const std::exception_ptr error = std::exchange(pending_, nullptr);
    std::rethrow_exception(error);
}

void Interpreter::runToEnd(const std::function<void()>& batch) {
    const auto rollsBack = [this] {
        const bool doomed = executor_.isDoomed();
        if (doomed) executor_.rollback();
        return doomed;
    };
    try {
        batch();
        throwPending();
    } catch (const DatabaseError&) {
        rollsBack();
        // An earlier error is the one that the caller hears of.
        throwPending();
        throw;
    }
    if (!rollsBack()) return;
    throwSqlError(3998,
                  "Uncommittable transaction is detected at the end of the batch. The transaction is rolled back.");
}

Interpreter::Flow Interpreter::runTryCatch(Activation& activation, const ast::TryCatchStatement& statement) {
    CaughtError caught;
    const int tries = tries_;
    try {
        ++tries_;
        const Flow flow = runStatements(activation, statement.tries);
        --tries_;
        return flow;
    } catch (const DatabaseError& error) {
        tries_ = tries;
        if (losesTheTransaction(error) || isCancelled(error) || (located_ == &error && unknownIn_ == &activation))
            throw;
        if (const auto* raised = dynamic_cast<const RaisedError*>(&error)) {
            caught = raised->error();
        } else {
            LastError last = lastOf(error);
            caught.number = last.number;
            caught.severity = severityOf(error);
            caught.message = std::move(last.message);
            caught.line = kNowhere;
        }
        if (caught.line == kNowhere && located_ == &error) {
            caught.line = errorLine_;
            caught.procedure = errorProcedure_;
        }
        caught.original = std::current_exception();
        located_ = nullptr;
    }
    struct Restore {
        SessionState& state;
        const CaughtError* outer;
        ~Restore() { state.caught = outer; }
    } const restore{executor_.state(), executor_.state().caught};
    executor_.state().caught = &caught;
    executor_.state().error = caught.number;
    executor_.state().rowCount = 0;
    return runStatements(activation, statement.catches);
}

void Interpreter::print(Activation& activation, const ast::PrintStatement& statement) {
    activation.into->say(textOf(evaluate(activation, *statement.message)));
    executor_.state().error = 0;
    executor_.state().rowCount = 0;
}

void Interpreter::raise(Activation& activation, const ast::RaisErrorStatement& statement) {
    const TypedValue message = evaluate(activation, *statement.message);
    const auto has = [&](std::string_view option) {
        return std::ranges::find(statement.options, option) != statement.options.end();
    };
    CaughtError error;
    error.number = kUserError;
    error.line = kNowhere;
    error.severity = std::clamp(integerOf(evaluate(activation, *statement.severity)), 0, 25);
    const int state = integerOf(evaluate(activation, *statement.state));
    error.state = state < 0 ? 1 : std::min(state, 255);
    if (error.severity > 18 && !has("LOG")) {
        throwSqlError(2754,
                      "Error severity levels greater than 18 can only be specified by members of the sysadmin role, "
                      "using the WITH LOG option.");
    }
    if (message.type.isNumber()) {
        const int number = integerOf(message);
        if (number < kFirstMessage || number == kUserError) {
            throwSqlError(2732, "Error number " + std::to_string(number) + " is invalid. The number must be from " +
                                    std::to_string(kFirstMessage) + " through 2147483647 and it cannot be 50000.");
        }
        error.number = 18054;
        error.message = "Error " + textOf(message) + ", severity " + std::to_string(error.severity) + ", state " +
                        std::to_string(error.state) +
                        " was raised, but no message with that error number was found in sys.messages. If error is "
                        "larger than 50000, make sure the user-defined message is added using sp_addmessage.";
    } else {
        std::vector<Value> values;
        for (const ast::ExpressionPtr& argument : statement.arguments) {
            values.push_back(evaluate(activation, *argument).value);
        }
        error.message = formatMessage(textOf(message), values);
    }
    // Up to severity 10 it is a message, not an error.
    if (error.severity <= 10) {
        activation.into->say(error.message);
        executor_.state().error = has("SETERROR") ? error.number : 0;
        executor_.state().rowCount = 0;
        return;
    }
    if (error.severity >= kFirstFatalSeverity && executor_.inTransaction()) executor_.rollback();
    throw RaisedError(ErrorCategory::Other, "42000", error, false);
}

void Interpreter::throwError(Activation& activation, const ast::ThrowStatement& statement) {
    if (!statement.number) {
        const CaughtError* caught = executor_.state().caught;
        if (caught == nullptr) {
            throwSqlError(10704,
                          "To rethrow an error, a THROW statement must be used inside a CATCH block. Insert the THROW "
                          "statement inside a CATCH block, or add error parameters to the THROW statement.");
        }
        // The same error again, of the same category; only that now it ends the batch whatever its number.
        try {
            std::rethrow_exception(caught->original);
        } catch (const DatabaseError& original) {
            CaughtError again = *caught;
            again.original = nullptr;
            throw RaisedError(original, wordsOf(original), again, true);
        }
    }
    CaughtError error;
    error.line = kNowhere;
    error.number = integerOf(evaluate(activation, *statement.number));
    error.message = textOf(evaluate(activation, *statement.message));
    error.state = std::clamp(integerOf(evaluate(activation, *statement.state)), 0, 255);
    if (error.number < kUserError) {
        throwSqlError(
            35100, "Error number " + std::to_string(error.number) +
                       " in the THROW statement is outside the valid range. Specify an error number in the valid range "
                       "of 50000 to 2147483647.");
    }
    throw RaisedError(ErrorCategory::Other, "42000", error, true);
}

}  // namespace basalt::embedded
