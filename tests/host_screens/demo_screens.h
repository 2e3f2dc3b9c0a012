// Screens with everything in place: the reference host over the demo company, and a user who is signed in.
#pragma once

#include <memory>

#include "ado/error.h"
#include "engines/embedded/embedded_session.h"
#include "host/services/deploy.h"
#include "host/services/sql_access.h"
#include "package/screens/base_get_frm.h"
#include "tests/host_screens/screen_test.h"
#include "tests/host_screens/when_busy.h"
#include "tests/support/tracing_session.h"

namespace basalt::host {

class DemoScreens : public ::testing::Test {
protected:
    // Watched, what the screens send passes through `passing`, which cannot be interrupted.
    explicit DemoScreens(bool watched = false)
        : host(watched ? static_cast<Session&>(passing) : *session, testOptions()) {
        deployDatabase(*session, {.demo = true});
        host.signInAs(1);
        host.setMessages(messages);
        host.setScreens(&screens);
        screens.setOutput(output);
        neverBusy(screens);
    }

    // Shows the editor modally, acts inside of its loop, and closes it without asking.
    static int run(TBaseGet_FRM& editor, const std::function<void()>& act) {
        QTimer::singleShot(0, &editor, [&editor, &act] {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
            act();
            if (!editor.isVisible()) return;
            editor.SetIsSaved(true);
            editor.reject();
        });
        return editor.ShowModal();
    }
    // The next transaction fails where it should be committed. The screens must be watched.
    void failCommitOnce() {
        passing.onCommit = [this] {
            passing.onCommit = {};
            throw DatabaseError(ErrorCategory::DiskFull, "53100", 1105, "no room");
        };
    }
    // The first value of the first row.
    [[nodiscard]] std::string one(const std::string& sql) {
        const RowSet rows = rowsOf(*session, sql);
        return rows.rowCount() == 0 ? "no row" : textAt(rows, 0, 0);
    }
    // Of a price level, or of another kind.
    [[nodiscard]] std::string nameOf(int code, int kind = 1) {
        return one("SELECT Name FROM CostLevel WHERE CostType = " + std::to_string(kind) +
                   " AND Code = " + std::to_string(code));
    }

    EscapeClock escapeClock;
    std::unique_ptr<Session> session = embedded::EmbeddedSession::open(":memory:", {.createIfMissing = true});
    // What the screens send, and where a test lets it fail. The tests' own statements go past it.
    std::vector<std::string> sent;
    TracingSession passing{*session, sent};
    QueuedMessages messages;
    QueuedOutput output;
    ReferenceHost host;
    HostScreenServices screens{host};
    AttachedHost attached{host};
};

}  // namespace basalt::host
