#include "host/transfer/definition_order.h"

#include <map>

#include "ado/names.h"

namespace basalt::host {

namespace {

bool isNamePart(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z') || c == '_' || c == '@' || c == '#' || c == '$';
}

// Every word of a text, folded as names are; more than are names of objects, never fewer.
std::set<std::string> wordsOf(const std::string& text) {
    std::set<std::string> words;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && isNamePart(text[end]))
            ++end;
        if (end > at) words.insert(foldName(text.substr(at, end - at)));
        // Names with blanks stand in brackets.
        if (end < text.size() && text[end] == '[') {
            const std::size_t close = text.find(']', end);
            if (close != std::string::npos) words.insert(foldName(text.substr(end + 1, close - end - 1)));
        }
        at = end + 1;
    }
    return words;
}

class Sorter {
public:
    explicit Sorter(const DatabaseSchema& schema) {
        for (const TableSchema& table : schema.tables)
            nodes_[foldName(table.name)].item.table = &table;
        for (const ModuleSchema& module : schema.modules) {
            if (module.kind != ModuleSchema::Kind::Procedure) nodes_[foldName(module.name)].item.module = &module;
        }
        for (auto& [name, node] : nodes_)
            visit(node);
        for (const ModuleSchema& module : schema.modules) {
            if (module.kind == ModuleSchema::Kind::Procedure) order_.items.push_back({nullptr, &module});
        }
    }

    [[nodiscard]] DefinitionOrder take() { return std::move(order_); }

private:
    enum class State { New, Open, Done };
    struct Node {
        DefinitionOrder::Item item;
        State state = State::New;
    };

    // False when the object itself waits for the one that is being visited.
    bool require(const std::string& name) {
        const auto found = nodes_.find(name);
        if (found == nodes_.end()) return true;
        if (found->second.state == State::Open) return false;
        visit(found->second);
        return true;
    }

    void visit(Node& node) {
        if (node.state != State::New) return;
        node.state = State::Open;
        if (const TableSchema* table = node.item.table) {
            visitTable(*table);
        } else {
            for (const std::string& word : wordsOf(node.item.module->text))
                (void)require(word);
        }
        node.state = State::Done;
        order_.items.push_back(node.item);
    }

    void visitTable(const TableSchema& table) {
        for (const ForeignKeySchema& reference : table.foreignKeys) {
            // A table is there for itself once it is made.
            if (sameName(reference.referencedTable, table.name)) continue;
            if (!require(foldName(reference.referencedTable))) order_.late.insert(&reference);
        }
        std::string texts;
        for (const ColumnSchema& column : table.columns)
            texts += column.defaultText + " " + column.computedText + " ";
        for (const CheckSchema& check : table.checks)
            texts += check.text + " ";
        for (const std::string& word : wordsOf(texts)) {
            const auto found = nodes_.find(word);
            if (found != nodes_.end() && found->second.item.module) (void)require(word);
        }
    }

    std::map<std::string, Node> nodes_;  // by folded name
    DefinitionOrder order_;
};

}  // namespace

DefinitionOrder definitionOrder(const DatabaseSchema& schema) {
    return Sorter(schema).take();
}

}  // namespace basalt::host
