#include "host/desktop/desktop.h"

#include <QApplication>
#include <QEventLoop>
#include <QScreen>

#include "host/desktop/database_opener.h"
#include "host/desktop/error_box.h"
#include "host/desktop/main_shell.h"
#include "host/desktop/shell_style.h"
#include "host/desktop/sign_in_dialog.h"
#include "host/module_loader/module_loader.h"
#include "host/screens/qt_message_service.h"
#include "host/screens/screen_services_impl.h"
#include "host/screens/theme.h"

namespace basalt::host {
namespace {

constexpr QSize kSmallScreen(1440, 900);

MainShell::End showShell(const DesktopContext& context) {
    MainShell shell(context);
    QEventLoop loop;
    MainShell::End end = MainShell::End::Quit;
    shell.OnClosed = [&](MainShell::End how) {
        end = how;
        loop.quit();
    };
    // A small screen has no room for anything beside it.
    const QSize room = themeScreenRoom(shell);
    const bool small = room.width() <= kSmallScreen.width() || room.height() <= kSmallScreen.height();
    if (small && room.width() >= shell.minimumWidth())
        shell.showMaximized();
    else
        shell.show();
    shell.activateWindow();
    loop.exec();
    return end;
}

}  // namespace

int Desktop::run() {
    // Whoever reads a damaged file first moves it away and is the one to tell of it.
    const IniOptionsFile workstation(options_.persistOptions ? options_.userDataFolder : std::filesystem::path());
    DatabaseOpener opener(options_.database,
                          {.createMissing = options_.createMissing,
                           .open = {.queryTimeoutSeconds = workstation.options().queryTimeoutSeconds}});
    std::optional<OpenedDatabase> opened = opener.open();
    if (!opened) return 1;
    try {
        ReferenceHost host(*opened->session, {.userDataFolder = options_.userDataFolder,
                                              .persistOptions = options_.persistOptions,
                                              .programFolder = options_.programFolder});
        host.DM().ADOConnection1.ConnectionString = opener.url().connectionString();
        QString notice = QString::fromStdString(opened->notice);
        const std::string warning = workstation.warning();
        if (!warning.empty()) notice += (notice.isEmpty() ? "" : "\n") + QString::fromStdString(warning);
        work(host, notice);
        return 0;
    } catch (const std::exception& error) {
        showUncaughtError(error);
        return 1;
    }
}

bool Desktop::signIn(ReferenceHost& host, const QString& notice) {
    SignInDialog dialog(host, notice);
    dialog.setStyleSheet(shellStyleSheet());
    return dialog.exec() == QDialog::Accepted;
}

void Desktop::work(ReferenceHost& host, const QString& notice) {
    QtMessageService messages(host.catalogue());
    host.setMessages(messages);
    HostScreenServices screens(host);
    host.setScreens(&screens);
    const AttachedModule attached(module_, host);
    host.setExports(&module_.registry());

    QString shownNotice = notice;
    while (signIn(host, shownNotice)) {
        shownNotice.clear();
        const MainShell::End end = showShell({host, module_.registry(), screens, screens.context()});
        host.signOut();
        if (end == MainShell::End::Quit) break;
    }
    host.setExports(nullptr);
    host.setScreens(nullptr);
}

}  // namespace basalt::host
