#include "host/calls/answer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace basalt::host {

namespace {

constexpr std::array<std::pair<std::string_view, int>, 4> names = {
    {{"ok", mrOk}, {"cancel", mrCancel}, {"yes", mrYes}, {"no", mrNo}}};

}  // namespace

std::optional<Answer> Answer::parse(std::string_view text) {
    for (const auto& [name, value] : names) {
        if (text == name) return Answer{value, true};
    }
    int value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return Answer{value, false};
}

bool Answer::fits(const MessageRequest& question) const {
    return !named || std::any_of(question.buttons.begin(), question.buttons.end(),
                                 [this](TMessageButton button) { return modalResultOf(button) == value; });
}

std::string answerName(int modalResult) {
    for (const auto& [name, value] : names) {
        if (value == modalResult) return std::string(name);
    }
    return std::to_string(modalResult);
}

int modalResultOf(TMessageButton button) {
    switch (button) {
        case TMessageButton::Ok:
            return mrOk;
        case TMessageButton::Cancel:
            return mrCancel;
        case TMessageButton::Yes:
            return mrYes;
        case TMessageButton::No:
            return mrNo;
    }
    return mrNone;
}

std::string buttonNames(const MessageRequest& question) {
    std::string text;
    for (TMessageButton button : question.buttons)
        text += (text.empty() ? "" : ", ") + answerName(modalResultOf(button));
    return text;
}

std::string describe(const MessageRequest& message) {
    std::string text = message.operation;
    if (message.number != 0) text += " " + std::to_string(message.number);
    std::string words;
    for (const std::string& argument : message.arguments)
        words += (words.empty() ? "" : " | ") + argument;
    return words.empty() ? text : text + " (" + words + ")";
}

}  // namespace basalt::host
