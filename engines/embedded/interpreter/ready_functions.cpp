// The tables of the table variables of functions, made before the statement that calls them.
#include "ado/names.h"
#include "engines/embedded/interpreter/interpreter.h"
#include "engines/embedded/lexer/lexer.h"

namespace basalt::embedded {

namespace {

// All names that stand in a text of T-SQL from a place on, folded: more than it calls, and never less.
std::set<std::string> namesIn(std::string_view text, std::size_t from) {
    Lexer lexer;
    lexer.scan(text);
    std::set<std::string> names;
    for (const Token& token : lexer.tokens()) {
        if (token.range.begin < from) continue;
        const std::string_view spelling = text.substr(token.range.begin, token.range.size());
        if (token.kind == TokenKind::Word) names.insert(foldName(spelling));
        if (token.kind == TokenKind::QuotedName) names.insert(foldName(nameValue(spelling)));
    }
    return names;
}

// What functions and views name, so far as that are functions and views again.
class Calls {
public:
    explicit Calls(Catalog& catalog) : catalog_(catalog) {}

    void follow(const std::set<std::string>& names) {
        std::vector<std::string> waiting(names.begin(), names.end());
        while (!waiting.empty()) {
            const std::string name = std::move(waiting.back());
            waiting.pop_back();
            if (calls_.contains(name)) continue;
            const Module* module = catalog_.module(name);
            if (module == nullptr || module->kind == ModuleKind::Procedure) continue;
            std::set<std::string>& called = calls_[name];
            for (const std::string& each : namesIn(module->text, endOfName(module->text))) {
                const Module* other = catalog_.module(each);
                if (other == nullptr || other->kind == ModuleKind::Procedure) continue;
                called.insert(each);
                waiting.push_back(each);
            }
        }
    }

    [[nodiscard]] const std::map<std::string, std::set<std::string>>& all() const { return calls_; }

    [[nodiscard]] bool reachesItself(const std::string& name) const {
        std::set<std::string> seen;
        std::vector<std::string> waiting{name};
        while (!waiting.empty()) {
            const auto found = calls_.find(waiting.back());
            waiting.pop_back();
            for (const std::string& each : found->second) {
                if (each == name) return true;
                if (seen.insert(each).second) waiting.push_back(each);
            }
        }
        return false;
    }

private:
    // Behind CREATE FUNCTION dbo.F, which is no call.
    static std::size_t endOfName(std::string_view text) {
        Lexer lexer;
        lexer.scan(text);
        const std::vector<Token>& tokens = lexer.tokens();
        const auto isName = [&](std::size_t i) {
            return tokens[i].kind == TokenKind::Word || tokens[i].kind == TokenKind::QuotedName;
        };
        std::size_t i = 0;
        while (tokens[i].kind != TokenKind::End && !isKind(text, tokens[i]))
            ++i;
        while (tokens[i].kind != TokenKind::End && (isName(i + 1) || tokens[i + 1].kind == TokenKind::Point)) {
            ++i;
            if (isName(i) && tokens[i + 1].kind != TokenKind::Point) break;
        }
        return tokens[i].range.end;
    }
    static bool isKind(std::string_view text, const Token& token) {
        const std::string_view spelling = text.substr(token.range.begin, token.range.size());
        return token.kind == TokenKind::Word && (sameName(spelling, "FUNCTION") || sameName(spelling, "VIEW"));
    }

    Catalog& catalog_;
    std::map<std::string, std::set<std::string>> calls_;
};

}  // namespace

bool Interpreter::makeReady(const std::set<std::string>& functions, std::span<const std::string> texts) {
    std::set<std::string> names;
    for (const std::string& function : functions)
        names.insert(foldName(function));
    for (const std::string& text : texts)
        names.merge(namesIn(text, 0));
    Calls calls(catalog_);
    calls.follow(names);
    bool made = false;
    for (const auto& [name, called] : calls.all()) {
        const std::shared_ptr<Program> program = findModule(name, ModuleKind::Function);
        if (program == nullptr) continue;
        const Layout& layout = program->layout();
        for (std::size_t i = 0; i < layout.size(); ++i) {
            if (layout[i].table == nullptr) continue;
            // How deep the recursion goes turns out too late.
            const std::size_t depths = calls.reachesItself(name) ? kDeepestCall : 1;
            for (std::size_t depth = 0; depth < depths; ++depth) {
                const Environment environment{.table = &program->batch().literals};
                if (createTableVariable(layout[i], depth, program->batch(), environment)) made = true;
            }
        }
    }
    return made;
}

}  // namespace basalt::embedded
