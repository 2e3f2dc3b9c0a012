// Errors that no handler between here and their cause has caught.
#pragma once

#include <QWidget>
#include <exception>

namespace basalt::host {

// Says on the standard error what went wrong and shows it to the user, who has to close the box. Needs no host: that
// may be what has failed.
void showUncaughtError(const std::exception& error, QWidget* parent = nullptr);

}  // namespace basalt::host
