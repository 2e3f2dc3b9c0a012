#include "host/steps/steps_file.h"

#include <QStringDecoder>
#include <charconv>
#include <functional>
#include <map>
#include <utility>

#include "host/screens/persian_digits.h"
#include "host/steps/key_name.h"
#include "host/steps/steps_error.h"

namespace basalt::host {

namespace {

std::string inLatinDigits(std::string_view text) {
    return latinDigits(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))).toStdString();
}

bool isUtf8(std::string_view text) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString ignored = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    return !decoder.hasError();
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// One line, taken apart word by word. The free text at the end of some steps is everything after one blank, so that a
// text may begin and end with blanks itself.
class Line {
public:
    Line(std::string_view text, const std::string& file, int number) : rest_(text), file_(file), number_(number) {}

    [[noreturn]] void fail(const std::string& message) const { throw StepsError(file_, number_, message); }

    [[nodiscard]] std::string word(const std::string& what) {
        while (!rest_.empty() && isBlank(rest_.front()))
            rest_.remove_prefix(1);
        std::size_t end = 0;
        while (end < rest_.size() && !isBlank(rest_[end]))
            ++end;
        if (end == 0) fail("expected " + what + ", found the end of the line");
        std::string result(rest_.substr(0, end));
        rest_.remove_prefix(end);
        return result;
    }

    [[nodiscard]] int number(const std::string& what, int least) {
        const std::string text = word(what);
        const std::optional<int> value = asNumber(text);
        if (!value || *value < least) {
            fail("expected " + what + " (a number from " + std::to_string(least) + "), found \"" + text + "\"");
        }
        return *value;
    }

    [[nodiscard]] std::string text() {
        if (!rest_.empty()) rest_.remove_prefix(1);
        return std::string(std::exchange(rest_, {}));
    }

    [[nodiscard]] std::string trimmedText() {
        while (!rest_.empty() && isBlank(rest_.front()))
            rest_.remove_prefix(1);
        while (!rest_.empty() && isBlank(rest_.back()))
            rest_.remove_suffix(1);
        return std::string(std::exchange(rest_, {}));
    }

    void end() {
        const std::string extra = trimmedText();
        if (!extra.empty()) fail("expected the end of the line, found \"" + extra + "\"");
    }

    [[nodiscard]] static std::optional<int> asNumber(std::string_view text) {
        const std::string digits = inLatinDigits(text);
        int value = 0;
        const char* const last = digits.data() + digits.size();
        const auto [end, failure] = std::from_chars(digits.data(), last, value);
        if (failure != std::errc() || end != last) return std::nullopt;
        return value;
    }

private:
    std::string_view rest_;
    const std::string& file_;
    int number_;
};

std::vector<std::string> splitArguments(std::string_view text) {
    std::vector<std::string> arguments;
    while (true) {
        const std::size_t bar = text.find('|');
        std::string_view piece = text.substr(0, bar);
        while (!piece.empty() && isBlank(piece.front()))
            piece.remove_prefix(1);
        while (!piece.empty() && isBlank(piece.back()))
            piece.remove_suffix(1);
        arguments.emplace_back(piece);
        if (bar == std::string_view::npos) return arguments;
        text.remove_prefix(bar + 1);
    }
}

// \n, \t and \\ stand for a line break, a tab and a backslash.
std::string unescaped(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (text[i] == '\\' && (next == 'n' || next == 't' || next == '\\')) {
            result += next == 'n' ? '\n' : next == 't' ? '\t' : '\\';
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

StepAction parseMessage(Line& line) {
    ExpectMessage step{.operation = line.word("the message's operation"), .number = {}, .arguments = {}};
    std::string rest = line.trimmedText();
    if (step.operation == "ShowSmartMessage") {
        const std::size_t end = rest.find_first_of(" \t|");
        step.number = Line::asNumber(std::string_view(rest).substr(0, end));
        if (step.number) rest = end == std::string::npos ? "" : rest.substr(end + 1);
    }
    if (!rest.empty()) step.arguments = splitArguments(rest);
    return step;
}

using Parser = std::function<StepAction(Line&)>;

StepAction parseWith(const std::map<std::string, Parser, std::less<>>& parsers, Line& line, const std::string& what) {
    const std::string keyword = line.word(what);
    const auto found = parsers.find(keyword);
    if (found == parsers.end()) {
        std::string known;
        for (const auto& [name, parser] : parsers)
            known += (known.empty() ? "" : ", ") + name;
        line.fail("expected " + what + " (" + known + "), found \"" + keyword + "\"");
    }
    StepAction action = found->second(line);
    line.end();
    return action;
}

Parser stateParser(ObjectState state) {
    return [state](Line& line) -> StepAction { return ExpectState{state, line.word("an object")}; };
}

const std::map<std::string, Parser, std::less<>>& expectations() {
    static const std::map<std::string, Parser, std::less<>> parsers = {
        {"text",
         [](Line& line) -> StepAction {
             std::string object = line.word("an object");
             return ExpectText{std::move(object), line.text()};
         }},
        {"rows",
         [](Line& line) -> StepAction {
             std::string grid = line.word("a grid");
             return ExpectRows{std::move(grid), line.number("a count of rows", 0)};
         }},
        {"cell",
         [](Line& line) -> StepAction {
             ExpectCell step;
             step.grid = line.word("a grid");
             step.row = line.number("a row", 0);
             step.column = line.word("a column");
             step.text = line.text();
             return step;
         }},
        {"enabled", stateParser(ObjectState::Enabled)},
        {"disabled", stateParser(ObjectState::Disabled)},
        {"visible", stateParser(ObjectState::Visible)},
        {"hidden", stateParser(ObjectState::Hidden)},
        {"focused", stateParser(ObjectState::Focused)},
        {"message", parseMessage},
        {"statement", [](Line& line) -> StepAction { return ExpectStatement{unescaped(line.text())}; }},
        {"unsent",
         [](Line& line) -> StepAction {
             std::string beginning = unescaped(line.text());
             if (beginning.empty()) line.fail("expected how a statement begins, found the end of the line");
             return ExpectUnsent{std::move(beginning)};
         }},
        {"screen", [](Line& line) -> StepAction { return ExpectScreen{line.word("a screen")}; }},
        {"result", [](Line& line) -> StepAction { return ExpectResult{line.trimmedText()}; }},
        {"file",
         [](Line& line) -> StepAction {
             std::string file = line.word("a file");
             return ExpectFile{std::move(file), line.trimmedText()};
         }},
    };
    return parsers;
}

const std::map<std::string, Parser, std::less<>>& actions() {
    static const std::map<std::string, Parser, std::less<>> parsers = {
        {"click", [](Line& line) -> StepAction { return ClickStep{line.word("an object")}; }},
        {"dblclick", [](Line& line) -> StepAction { return DoubleClickStep{line.word("an object")}; }},
        {"key",
         [](Line& line) -> StepAction {
             std::string object = line.word("an object");
             const std::string name = line.word("a key");
             const std::optional<QKeyCombination> key = keyNamed(name);
             if (!key) line.fail("expected a key (F3, Enter, Ctrl+C), found \"" + name + "\"");
             return KeyStep{std::move(object), *key};
         }},
        {"type",
         [](Line& line) -> StepAction {
             std::string object = line.word("an object");
             std::string text = line.text();
             if (text.empty()) line.fail("expected the text to type, found the end of the line");
             return TypeStep{std::move(object), std::move(text)};
         }},
        {"clear", [](Line& line) -> StepAction { return ClearStep{line.word("an object")}; }},
        {"row",
         [](Line& line) -> StepAction {
             std::string grid = line.word("a grid");
             return RowStep{std::move(grid), line.number("a row", 0)};
         }},
        {"tab",
         [](Line& line) -> StepAction {
             std::string object = line.word("an object");
             return TabStep{std::move(object), line.number("a tab", 0)};
         }},
        {"choose",
         [](Line& line) -> StepAction {
             std::string combo = line.word("a combo box");
             return ChooseStep{std::move(combo), line.number("an item", 0)};
         }},
        {"answer",
         [](Line& line) -> StepAction {
             const std::string word = line.word("an answer");
             const std::optional<Answer> answer = Answer::parse(inLatinDigits(word));
             if (!answer) line.fail("expected an answer (yes, no, cancel, ok or a number), found \"" + word + "\"");
             return AnswerStep{*answer};
         }},
        {"shot",
         [](Line& line) -> StepAction {
             std::string file = line.trimmedText();
             if (file.empty()) line.fail("expected the picture's file (shot FILE.png), found the end of the line");
             if (!file.ends_with(".png"))
                 line.fail("expected the picture's file (shot FILE.png), found \"" + file + "\"");
             return ShotStep{std::move(file)};
         }},
        {"names", [](Line&) -> StepAction { return NamesStep{}; }},
        {"export",
         [](Line& line) -> StepAction {
             ExportStep step;
             step.grid = line.word("a grid");
             step.format = line.word("a format (csv, xlsx or pdf)");
             if (step.format != "csv" && step.format != "xlsx" && step.format != "pdf")
                 line.fail("expected a format (csv, xlsx or pdf), found \"" + step.format + "\"");
             step.file = line.trimmedText();
             if (step.file.empty()) line.fail("expected the file to write, found the end of the line");
             return step;
         }},
        {"expect", [](Line& line) -> StepAction { return parseWith(expectations(), line, "what to expect"); }},
    };
    return parsers;
}

}  // namespace

std::vector<Step> parseSteps(std::string_view text, const std::string& file) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    std::vector<Step> steps;
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        std::string_view content = text.substr(0, end);
        if (!isUtf8(content)) throw StepsError(file, number, "the line is not UTF-8");
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!content.empty() && content.back() == '\r') content.remove_suffix(1);
        const std::size_t first = content.find_first_not_of(" \t");
        if (first == std::string_view::npos || content[first] == '#') continue;
        Line line(content, file, number);
        steps.push_back({number, parseWith(actions(), line, "a step")});
    }
    return steps;
}

}  // namespace basalt::host
