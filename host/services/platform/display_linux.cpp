#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <future>
#include <memory>
#include <sstream>
#include <system_error>
#include <thread>

#include "host/services/platform/display.h"

namespace basalt::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPlatform = "QT_QPA_PLATFORM";
constexpr std::chrono::seconds kLongestWait(5);
constexpr const char* kAdvice = "or QT_QPA_PLATFORM=offscreen to draw without any";

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// The library that Qt's own plugin talks to the server with, so it is there when that can be used. It knows how to
// reach a server and where the user's authority for it is kept.
class XcbLibrary {
public:
    XcbLibrary() : handle_(dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL)) {}
    ~XcbLibrary() {
        if (handle_) dlclose(handle_);
    }
    XcbLibrary(const XcbLibrary&) = delete;
    XcbLibrary& operator=(const XcbLibrary&) = delete;

    template <typename Function>
    [[nodiscard]] Function* find(const char* name) const {
        return handle_ ? reinterpret_cast<Function*>(dlsym(handle_, name)) : nullptr;
    }

    [[nodiscard]] bool hasAll() const {
        return find<void()>("xcb_connect") && find<void()>("xcb_connection_has_error") &&
               find<void()>("xcb_disconnect");
    }

private:
    void* handle_;
};

enum class Answer { LetsIn, Refuses, None };

// libxcb waits without end for a server that takes the connection and never answers. Whoever has waited long enough
// leaves it to its thread, which then stays until the program ends.
Answer askServer(const std::string& name) {
    struct Connection;
    const auto library = std::make_shared<XcbLibrary>();
    const auto connect = library->find<Connection*(const char*, int*)>("xcb_connect");
    const auto failure = library->find<int(Connection*)>("xcb_connection_has_error");
    const auto disconnect = library->find<void(Connection*)>("xcb_disconnect");
    const auto answer = std::make_shared<std::promise<bool>>();
    std::future<bool> letsIn = answer->get_future();
    std::thread([library, connect, failure, disconnect, answer, name] {
        Connection* connection = connect(name.c_str(), nullptr);
        const bool failed = failure(connection) != 0;
        disconnect(connection);
        answer->set_value(!failed);
    }).detach();
    if (letsIn.wait_for(kLongestWait) != std::future_status::ready) return Answer::None;
    return letsIn.get() ? Answer::LetsIn : Answer::Refuses;
}

// Empty when the display of DISPLAY can be opened.
std::string xProblem() {
    const std::string name = variable("DISPLAY");
    if (name.empty()) return "there is no display";
    if (!XcbLibrary().hasAll()) return "the display \"" + name + "\" cannot be opened: libxcb is not installed";
    const char* reason = "no server answers there, or it does not let this user in";
    switch (askServer(name)) {
        case Answer::LetsIn:
            return {};
        case Answer::Refuses:
            break;
        case Answer::None:
            reason = "the server there does not answer";
            break;
    }
    return "the display \"" + name + "\" cannot be opened: " + reason + ". Set DISPLAY to another one, " + kAdvice;
}

bool acceptsConnections(const fs::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string text = path.string();
    if (text.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, text.c_str(), text.size() + 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return false;
    const bool accepted = connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    return accepted;
}

bool hasWaylandPlugin(const fs::path& plugins) {
    std::error_code failure;
    fs::directory_iterator entry(plugins, failure);
    for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
        if (entry->path().filename().string().starts_with("libqwayland")) return true;
    }
    return false;
}

// Plugins elsewhere are for Qt to look for.
bool hasPlugin(const fs::path& plugins, const std::string& name) {
    std::error_code failure;
    if (!variable("QT_QPA_PLATFORM_PLUGIN_PATH").empty() || !fs::is_directory(plugins, failure)) return true;
    return fs::exists(plugins / ("libq" + name + ".so"), failure);
}

// Empty when windows can be shown through Wayland.
std::string waylandProblem(const fs::path& plugins) {
    const std::string name = variable("WAYLAND_DISPLAY");
    if (name.empty()) return "there is no display";
    // An absolute name stands for itself.
    const fs::path path = fs::path(variable("XDG_RUNTIME_DIR")) / name;
    if (!hasWaylandPlugin(plugins))
        return "the display \"" + name + "\" cannot be used: Qt's plugin for Wayland is not installed";
    if (acceptsConnections(path)) return {};
    return "the display \"" + name + "\" cannot be opened: nobody answers at " + path.string() +
           ". Set WAYLAND_DISPLAY to another one, " + kAdvice;
}

// The environment names platforms: "xcb", "offscreen:argument", several with ";" between of which the first that works
// is taken.
std::string namedPlatformProblem(const std::string& names, const fs::path& plugins) {
    std::string problem;
    std::istringstream all(names);
    for (std::string each; std::getline(all, each, ';');) {
        const std::string name = each.substr(0, each.find(':'));
        std::string found;
        if (name == "xcb") {
            found = xProblem();
        } else if (name.starts_with("wayland")) {
            found = waylandProblem(plugins);
        } else if (!hasPlugin(plugins, name)) {
            found = "there is no display that windows can be shown on. QT_QPA_PLATFORM names \"" + name +
                    "\", for which Qt has no plugin; set it to xcb, wayland or offscreen, or to nothing";
        }
        if (found.empty()) return {};
        if (problem.empty()) problem = found;
    }
    return problem;
}

}  // namespace

std::string displayProblem(const fs::path& platformPlugins) {
    if (const std::string named = variable(kPlatform); !named.empty())
        return namedPlatformProblem(named, platformPlugins);
    const std::string x = xProblem();
    const std::string wayland = waylandProblem(platformPlugins);
    if (x.empty() && !wayland.empty()) {
        setenv(kPlatform, "xcb", 1);
    } else if (!x.empty() && wayland.empty()) {
        setenv(kPlatform, "wayland", 1);
    }
    if (x.empty() || wayland.empty()) return {};
    return variable("DISPLAY").empty() ? wayland : x;
}

void useOffscreenDisplay() {
    const std::string named = variable(kPlatform);
    if (named.empty() || named.starts_with("xcb") || named.starts_with("wayland")) setenv(kPlatform, "offscreen", 1);
}

}  // namespace basalt::host
