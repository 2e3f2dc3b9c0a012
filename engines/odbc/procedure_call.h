// One call of a stored procedure: its text, its bound values, and what comes back.
//
//   ProcedureCall call(described, "OfferSellCost", arguments, traits);
//   BatchResult batch = connection.execute(call.text(), call.parameters());
//   CallResult result = call.finish(std::move(batch));
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ado/session.h"
#include "engines/odbc/parameters.h"

namespace basalt::odbc {

class ProcedureCall {
public:
    // The arguments must outlive the call. DatabaseError (8145) for one that the procedure does not have, and
    // (Conversion) for a value that its output parameter cannot hold.
    ProcedureCall(const ProcedureInfo& procedure, std::string_view name, std::span<const Argument> arguments,
                  const DriverTraits& traits);

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] Parameters& parameters() { return parameters_; }
    // DatabaseError (Truncation) when an output value had no room.
    [[nodiscard]] CallResult finish(BatchResult batch) const;

private:
    struct Bound {
        std::size_t place;  // of the parameter in the procedure
        const Argument* argument;
        const ColumnInfo* type;
        std::size_t output = 0;  // where its final value is found: the slot or the column
    };

    void callByPlace(std::string_view name);
    void callByName(std::string_view name);

    std::span<const Argument> arguments_;
    std::vector<Bound> bound_;  // in the procedure's order
    bool byPlace_ = true;
    std::string text_;
    Parameters parameters_;
};

}  // namespace basalt::odbc
