#include "engines/embedded/runtime/steps.h"

#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace basalt::embedded {

namespace {

struct Known {
    ScalarFunction function = nullptr;
    NullRule nulls = NullRule::Propagate;
};

class KnownSteps {
public:
    void add(std::string_view name, int count, Known known) {
        const std::lock_guard lock(mutex_);
        known_.insert_or_assign({std::string(name), count}, known);
    }
    [[nodiscard]] Known find(std::string_view name, int count) {
        const std::lock_guard lock(mutex_);
        const auto found = known_.find({std::string(name), count});
        return found == known_.end() ? Known{} : found->second;
    }

private:
    std::mutex mutex_;
    std::map<std::pair<std::string, int>, Known> known_;
};

KnownSteps& knownSteps() {
    static KnownSteps steps;
    return steps;
}

struct Step {
    Known known;
    std::vector<HeldValue> arguments;  // from the second on
};

constexpr const char* kStepPointer = "basalt_step";

// The name is a literal: it is looked up for a statement's first row and kept for the others.
Known namedStep(sqlite3_context* context, const Call& call, int count) {
    if (const auto* kept = static_cast<const Known*>(sqlite3_get_auxdata(context, 0))) return *kept;
    const Known known = knownSteps().find(call.text(0), count);
    if (known.function == nullptr) throw std::logic_error("No step has this name.");
    sqlite3_set_auxdata(context, 0, new Known(known), [](void* kept) { delete static_cast<Known*>(kept); });
    return known;
}

// t_step(name, second argument, third ...): what the operator behind takes.
void makeStep(sqlite3_context* context, int count, sqlite3_value** arguments) {
    auto& database = *static_cast<SqliteDatabase*>(sqlite3_user_data(context));
    guarded(context, database, [&] {
        const Call call(context, count, arguments);
        auto step = std::make_unique<Step>();
        step->known = namedStep(context, call, count);
        for (int i = 1; i < count; ++i) {
            step->arguments.emplace_back(sqlite3_value_dup(arguments[i]));
            if (step->arguments.back() == nullptr) throw std::bad_alloc();
        }
        sqlite3_result_pointer(context, step.release(), kStepPointer,
                               [](void* pointer) { delete static_cast<Step*>(pointer); });
    });
}

// value -> step
void takeStep(sqlite3_context* context, int, sqlite3_value** arguments) {
    auto& database = *static_cast<SqliteDatabase*>(sqlite3_user_data(context));
    guarded(context, database, [&] {
        const auto* step = static_cast<const Step*>(sqlite3_value_pointer(arguments[1], kStepPointer));
        if (step == nullptr) throw std::logic_error("A step is missing.");
        std::vector<sqlite3_value*> values{arguments[0]};
        for (const HeldValue& value : step->arguments)
            values.push_back(value.get());
        if (step->known.nulls == NullRule::Propagate) {
            for (sqlite3_value* value : values) {
                if (sqlite3_value_type(value) == SQLITE_NULL) return;
            }
        }
        Call call(context, static_cast<int>(values.size()), values.data());
        step->known.function(call);
    });
}

void add(SqliteDatabase& database, const char* name, int count, int flags,
         void (*function)(sqlite3_context*, int, sqlite3_value**)) {
    const int code = sqlite3_create_function_v2(database.handle(), name, count, SQLITE_UTF8 | SQLITE_INNOCUOUS | flags,
                                                &database, function, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) throw database.failure(code);
}

}  // namespace

void knowStep(std::string_view name, int count, ScalarFunction function, NullRule nulls) {
    knownSteps().add(name, count, {function, nulls});
}

bool isStep(std::string_view name, std::size_t count) {
    return knownSteps().find(name, static_cast<int>(count)).function != nullptr;
}

void addSteps(SqliteDatabase& database) {
    // Made anew for each row: a pointer is no value that SQLite could keep.
    add(database, "t_step", -1, 0, makeStep);
    add(database, "->", 2, SQLITE_DETERMINISTIC, takeStep);
}

}  // namespace basalt::embedded
