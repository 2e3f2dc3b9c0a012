#include "engines/embedded/interpreter/frame.h"

#include <utility>

namespace basalt::embedded {

const SqlType* Frame::typeOf(std::string_view name) const {
    const std::size_t index = layout_.find(name);
    return index == Layout::kNone || layout_[index].table != nullptr ? nullptr : &layout_[index].type;
}

std::string Frame::tableOf(std::string_view name) const {
    const std::size_t index = layout_.find(name);
    return index == Layout::kNone ? std::string() : tables_[index];
}

const Value& Frame::valueOf(std::string_view name) const {
    return values_[layout_.find(name)];
}

void Frame::assign(std::string_view name, Value value) {
    values_[layout_.find(name)] = std::move(value);
}

}  // namespace basalt::embedded
