// The statement of a component, which the component hears about when it changes.
//
//   query.SQL = "select Code, Name from CostLevel";
//   query.SQL.Add("where Code > 0");       // a further line
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace basalt {

class StatementText {
public:
    explicit StatementText(std::function<void()> changed) : changed_(std::move(changed)) {}
    StatementText(const StatementText&) = delete;

    // Byte for byte what will be sent.
    [[nodiscard]] const std::string& Text() const { return text_; }
    [[nodiscard]] bool empty() const { return text_.empty(); }

    void Text(std::string text) {
        text_ = std::move(text);
        changed_();
    }
    StatementText& operator=(std::string text) {
        Text(std::move(text));
        return *this;
    }
    StatementText& operator=(const StatementText& other) {
        if (this != &other) Text(other.text_);
        return *this;
    }
    // Appends a line: after the first one a carriage return and line feed stand between.
    void Add(std::string_view line) {
        std::string text = text_;
        if (!text.empty()) text += "\r\n";
        text += line;
        Text(std::move(text));
    }
    void Clear() { Text({}); }

private:
    friend class TADOQuery;

    std::string text_;
    std::function<void()> changed_;
};

}  // namespace basalt
