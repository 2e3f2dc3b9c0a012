// Files that a user asked for: written beside their place, and there when they are whole.
#pragma once

#include <QString>
#include <functional>

namespace basalt::host {

// What a user is told of a file that was not written: OutputError.
[[noreturn]] void outputFails(const QString& path, const QString& reason);

// Lets `write` make and close the file under another name, then gives it its own; a file that is there gives way only
// then. OutputError when there is no place for it; after any failure the place is as it was.
void writeOutputFile(const QString& path, const std::function<void(const QString& draft)>& write);

}  // namespace basalt::host
