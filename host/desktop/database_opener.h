// Opens the database together with the user: asks what to do as long as it cannot be opened.
#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "host/desktop/database_problem_dialog.h"
#include "host/desktop/database_start.h"

namespace basalt::host {

// The questions for a file. Tests answer them without the dialogs of the platform.
struct DatabaseFileChooser {
    std::function<std::optional<QString>()> existing;
    std::function<std::optional<QString>(const QString& suggested)> created;  // a file that is not there yet

    [[nodiscard]] static DatabaseFileChooser dialogs();
};

class DatabaseOpener {
public:
    DatabaseOpener(DatabaseUrl url, StartOptions options, DatabaseFileChooser files = DatabaseFileChooser::dialogs())
        : url_(std::move(url)), options_(options), files_(std::move(files)) {}

    // nullopt when the user leaves.
    [[nodiscard]] std::optional<OpenedDatabase> open();
    // What was opened, which the user may have chosen meanwhile.
    [[nodiscard]] const DatabaseUrl& url() const { return url_; }

private:
    // What the user wants is prepared for the next try; false when the user leaves.
    [[nodiscard]] bool ask(const std::exception& error);
    [[nodiscard]] QString suggestedFile() const;

    DatabaseUrl url_;
    StartOptions options_;
    DatabaseFileChooser files_;
};

}  // namespace basalt::host
