// A registered function in one line.
#pragma once

#include <string>

#include "package/registry.h"

namespace basalt {

// "CostLevel_ExistName(Code integer, CostType integer, Name text) integer"
inline std::string signature(const FunctionEntry& entry) {
    std::string text = entry.name + '(';
    for (const FunctionParameter& parameter : entry.parameters) {
        if (text.back() != '(') text += ", ";
        if (!parameter.input) text += "out ";
        text += parameter.name + ' ' + parameter.type;
    }
    return text + ')' + (entry.result.empty() ? "" : ' ' + entry.result);
}

}  // namespace basalt
