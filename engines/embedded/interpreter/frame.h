// The values of the variables in one run of a program.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engines/embedded/executor/environment.h"
#include "engines/embedded/interpreter/layout.h"

namespace basalt::embedded {

class Frame final : public Variables {
public:
    // Everything is NULL at first. `layout` outlives the frame.
    explicit Frame(const Layout& layout) : layout_(layout), values_(layout.size()), tables_(layout.size()) {}

    [[nodiscard]] const SqlType* typeOf(std::string_view name) const override;
    [[nodiscard]] std::string tableOf(std::string_view name) const override;
    [[nodiscard]] const Value& valueOf(std::string_view name) const override;
    void assign(std::string_view name, Value value) override;

    // By position in the layout.
    [[nodiscard]] const Value& operator[](std::size_t index) const { return values_[index]; }
    void set(std::size_t index, Value value) { values_[index] = std::move(value); }
    // The catalog's name of the table that stands behind a table variable.
    void setTable(std::size_t index, std::string name) { tables_[index] = std::move(name); }
    [[nodiscard]] const std::string& table(std::size_t index) const { return tables_[index]; }
    [[nodiscard]] const Layout& layout() const { return layout_; }

private:
    const Layout& layout_;
    std::vector<Value> values_;
    std::vector<std::string> tables_;
};

}  // namespace basalt::embedded
