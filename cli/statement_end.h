// When the lines that a person has typed are a batch to run.
//
//   StatementEnd end;
//   end.read("select Name from CostLevel");     end.reached()  false
//   end.read("where Code = 1;");                end.reached()  true
#pragma once

#include <string>
#include <string_view>

#include "host/services/script_batches.h"

namespace basalt::cli {

// A ; ends a batch when it is the last of its line, outside of texts and comments and of BEGIN ... END. The text of a
// procedure or function goes on behind it, up to a line that says GO.
class StatementEnd {
public:
    // The next line, without its line break.
    void read(std::string_view line);
    [[nodiscard]] bool reached() const;
    // The batch is in the middle of a text or a comment, where GO is no end either.
    [[nodiscard]] bool insideText() const { return scanner_.insideText(); }

private:
    host::ScriptScanner scanner_;
    std::string code_;  // with blanks for texts and comments
};

}  // namespace basalt::cli
