// The smallest host there can be: a database with one table, a user, and screens of the plainest kind. It loads the
// module, lends it the connection, calls a data function and entry points, and says what came back.
#include <dlfcn.h>

#include <QApplication>
#include <cstdio>
#include <string>
#include <vector>

#include "ado/connection.h"
#include "engines/embedded/embedded_session.h"
#include "package/module.h"
#include "small_screens.h"

namespace {

using namespace basalt;

class SilentMessages final : public MessageService {
public:
    int show(const MessageRequest& request) override {
        shown.push_back(request.operation);
        return mrNone;
    }
    std::vector<std::string> shown;
};

class OutsideHost final : public Host {
public:
    OutsideHost(Session& session, ScreenServices& screens)
        : screens_(screens),
          connection_(session),
          query_(connection_, "DM.SharedQuery"),
          command_(connection_, "DM.SharedCommand"),
          proc_(connection_, "DM.SharedProc"),
          dm_{connection_, query_, command_, proc_} {}

    TDM& DM() override { return dm_; }
    const TUserInfo& UserInfo() override { return user_; }
    const TIniOptions& IniOptions() override { return options_; }
    const TSettingRecord& SettingRecord() override { return settings_; }
    Value ScalerQuery(const std::string&, const std::string&, const std::string&, const std::string& key) override {
        return "Part " + key;
    }
    void ResetDataset(TADOQuery& query) override { query.Requery(); }
    bool CheckGoodUnitFormul(int) override { return true; }
    bool LocateLockCode_SoftwarePart(const std::string&, TSoftwarePart, int, bool) override { return false; }
    bool HavePermission(const TUserInfo&, TSoftwarePart part, TPermission permission, bool, bool,
                        const std::string&) override {
        std::printf("permission %d asked on part %d\n", static_cast<int>(permission), static_cast<int>(part));
        return mayOpen;
    }
    void SetUserEvent(TSoftwarePart, TPermission, const std::string&, bool, bool) override {}
    std::string NowDate(const std::string& separator) override { return "1405" + separator + "01" + separator + "01"; }
    int Call_insert_tags(const std::string&, std::uint8_t) override { return 0; }
    std::string Select_Entity_Multible(TSoftwarePart, const std::string&) override { return {}; }
    MessageService& Messages() override { return messages_; }
    ScreenServices* Screens() override { return &screens_; }

    bool mayOpen = false;

private:
    ScreenServices& screens_;
    TADOConnection connection_;
    TADOQuery query_;
    TADOCommand command_;
    TADOStoredProc proc_;
    TDM dm_;
    TUserInfo user_{.Code = 1, .UserName = "outside", .FullName = "Outside", .IsManager = true};
    TIniOptions options_;
    TSettingRecord settings_;
    SilentMessages messages_;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    auto session = embedded::EmbeddedSession::open(":memory:");
    session->run(
        "create table CostLevel (Code int not null, Name nvarchar(50), Comment nvarchar(200), CostType int not null, "
        "primary key (CostType, Code))");
    session->run("create table CodeLock_TBL (Code nvarchar(30) not null, Status int not null)");
    session->run("insert into CostLevel (Code, Name, CostType) values (1, N'مصرف کننده', 1), (4, N'همکار', 1)");
    SmallScreens screens([](TBaseDock_FRM& screen, SmallGrid& grid) {
        std::printf("%s shows %d rows, on \"%s\"\n", screen.windowTitle().toUtf8().constData(),
                    grid.View()->model()->rowCount(), grid.lineAt(grid.CurrentRow()).c_str());
        grid.View()->setCurrentIndex(grid.View()->model()->index(0, 0));
        screen.findChild<SmallButton*>("Select_BTN")->Click();
    });
    OutsideHost host(*session, screens);

    void* library = dlopen(MODULE_FILE, RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    auto moduleOf = reinterpret_cast<Module* (*)()>(dlsym(library, "Basalt_Module"));
    auto openList = reinterpret_cast<void (*)()>(dlsym(library, "Open_CostLevel_List"));
    auto select = reinterpret_cast<int (*)()>(dlsym(library, "Select_CostLevel_List"));
    if (!moduleOf || !openList || !select || moduleOf()->version() != kModuleVersion) {
        std::fprintf(stderr, "not the module that these headers belong to\n");
        return 1;
    }
    Module& module = *moduleOf();
    module.attach(host);

    {
        FunctionState state;
        FunctionCall call(state, {{"Part", 114}, {"CostType", 1}});
        module.registry().find("CostLevel_GetNewCode").at(0)->run(call);
        std::printf("next price level %lld\n", static_cast<long long>(call.resultValue().asInteger()));
    }
    openList();
    std::printf("entry point returned\n");
    host.mayOpen = true;
    std::printf("picked level %d\n", select());

    module.detach();
    return 0;
}
