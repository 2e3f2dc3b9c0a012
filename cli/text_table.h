// Aligned columns for people, whatever the script of the texts.
//
//   TextTable table({{"Code", true}, {"Name", false}});
//   table.add({"1", "عمده"});
//   table.write(std::cout, outputIsTerminal());
//
//   Code | Name
//   -----+-----
//      1 | عمده
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace basalt::cli {

class TextTable {
public:
    struct Title {
        std::string text;
        bool right = false;  // numbers stand to the right
    };

    explicit TextTable(std::vector<Title> titles);

    // One cell a column. What would break the line is shown as a blank.
    void add(std::vector<std::string> cells);
    // Columns of the terminal that a line takes.
    [[nodiscard]] std::size_t width() const;
    // Each line of the table as a block of its own, a title and a cell a line: for tables wider than the terminal.
    void writeBlocks(std::ostream& out) const;
    // On a terminal, right-to-left cells are kept in their columns by invisible marks. The indent goes before each
    // line.
    void write(std::ostream& out, bool terminal, const std::string& indent = {}) const;

private:
    void writeLine(std::ostream& out, bool terminal, const std::vector<std::string>& cells) const;

    std::vector<Title> titles_;
    std::vector<std::vector<std::string>> lines_;
    std::vector<std::size_t> widths_;  // in columns of the terminal
};

}  // namespace basalt::cli
