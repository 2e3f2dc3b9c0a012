// Files that a user asked for: written beside their place, and there when they are whole.
#pragma once

#include <QString>
#include <exception>
#include <functional>

namespace basalt::host {

// Asked now and then by whoever writes a long file, with how much of it is done; false gives the file up. An empty one
// lets the writer work undisturbed.
using OutputProgress = std::function<bool(int done, int all)>;

// The user has given the file up, and need not be told so.
class OutputCancelled final : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "the output was given up"; }
};

// OutputCancelled when the answer is no.
void askToGoOn(const OutputProgress& progress, int done, int all);

// Lets `write` make and close the file under another name, then gives it its own; a file that is there gives way only
// then. `write` returns false when the file could not be written. OutputError then, with the reason, and when there is
// no place for the file; after any failure the place is as it was.
void writeOutputFile(const QString& path, const std::function<bool(const QString& draft)>& write);

}  // namespace basalt::host
