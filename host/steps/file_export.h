// Exports a grid the way a user does: by the grid's own command, with a name given in the dialog that asks for one.
#pragma once

#include <functional>
#include <string>

namespace basalt::host {

// `format` is csv, xlsx or pdf. The action returns when the file has been written, or could not be (which the screen
// tells with a message); it runs an event loop meanwhile. Missing folders are made. StepFailure when the grid does not
// offer the export or the folder cannot be made.
[[nodiscard]] std::function<void()> exportGrid(const std::string& grid, const std::string& format,
                                               const std::string& file);

// Requires the file to be there with something in it, and with the contents of `expected` when that is not empty.
// StepFailure otherwise, with the first line that differs.
void requireFile(const std::string& file, const std::string& expected);

}  // namespace basalt::host
