// One step of a steps file: what a user does, or what must be there afterwards. docs/steps.md describes them.
#pragma once

#include <Qt>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/calls/answer.h"

namespace basalt::host {

// What a user does. Objects are object names in the screen on top; "-" is the screen itself.
struct ClickStep {
    std::string object;
};
struct DoubleClickStep {
    std::string object;
};
struct KeyStep {
    std::string object;
    QKeyCombination key;
};
struct TypeStep {
    std::string object, text;
};
struct ClearStep {
    std::string object;
};
struct RowStep {
    std::string grid;
    int row;
};  // rows, tabs and items count from 0
struct TabStep {
    std::string object;
    int tab;
};
struct ChooseStep {
    std::string combo;
    int item;
};
struct AnswerStep {
    Answer answer;
};
struct ShotStep {
    std::string file;
};
struct NamesStep {};  // lists the objects of the screen on top
struct ExportStep {
    std::string grid, format, file;
};  // format: csv, xlsx or pdf

// What must be there.
struct ExpectText {
    std::string object, text;
};
struct ExpectRows {
    std::string grid;
    int count;
};
struct ExpectCell {
    std::string grid;
    int row;
    std::string column, text;
};  // column: number from 0, field name or title
enum class ObjectState { Enabled, Disabled, Visible, Hidden, Focused };
struct ExpectState {
    ObjectState state;
    std::string object;
};
struct ExpectMessage {
    std::string operation;
    std::optional<int> number;
    std::optional<std::vector<std::string>> arguments;  // not compared when left out
};
struct ExpectStatement {
    std::string text;
};
// None of those sent behind the one that was expected last begins like this.
struct ExpectUnsent {
    std::string beginning;
};
struct ExpectScreen {
    std::string name;
};
struct ExpectResult {
    std::string value;
};
struct ExpectFile {
    std::string file;
    std::string expected;  // a file with the same contents; empty: any but none
};

using StepAction =
    std::variant<ClickStep, DoubleClickStep, KeyStep, TypeStep, ClearStep, RowStep, TabStep, ChooseStep, AnswerStep,
                 ShotStep, NamesStep, ExportStep, ExpectText, ExpectRows, ExpectCell, ExpectState, ExpectMessage,
                 ExpectStatement, ExpectUnsent, ExpectScreen, ExpectResult, ExpectFile>;

struct Step {
    int line = 0;  // from 1
    StepAction action;
};

// True for the steps that look and change nothing.
[[nodiscard]] inline bool isExpectation(const StepAction& action) {
    static_assert(std::is_same_v<std::variant_alternative_t<12, StepAction>, ExpectText>);
    return action.index() >= 12;
}

}  // namespace basalt::host
