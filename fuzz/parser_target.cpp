#include <string>

#include "ado/error.h"
#include "engines/embedded/parser/parser.h"
#include "engines/embedded/printer/printer.h"
#include "fuzz/require.h"
#include "fuzz/targets.h"

namespace basalt::fuzz {

void parser(std::string_view input) {
    using namespace embedded;
    ast::Batch batch;
    try {
        batch = parse(input);
    } catch (const DatabaseError& error) {
        require(error.what()[0] != '\0', "an error has a message");
        return;
    }
    const std::string tree = print(batch, Parentheses::All);
    const std::string printed = print(batch);
    try {
        const ast::Batch again = parse(printed);
        require(print(again, Parentheses::All) == tree, "the printed text has the same tree", printed);
        require(print(again) == printed, "printing is stable", printed);
        require(again.parameterMarkers == batch.parameterMarkers, "markers stay", printed);
    } catch (const DatabaseError& error) {
        // Parentheses that the text did without may take a tree at the limit over it.
        require(error.category() == ErrorCategory::Limit, "the printed text parses", printed + error.what());
    }
}

}  // namespace basalt::fuzz
