// How each user arranged each screen: columns, sort, window size. One text (JSON, of the screens' making) a user and
// screen.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "ado/session.h"
#include "package/types.h"

namespace basalt::host {

class FormOptionStore {
public:
    explicit FormOptionStore(Session& session) : session_(session) {}

    // The screen is named by its TComponentSoftwarePart or, where it has none, by its class name (100 characters).
    [[nodiscard]] static std::string key(TComponentSoftwarePart part) { return std::to_string(static_cast<int>(part)); }

    [[nodiscard]] std::optional<std::string> load(int userCode, const std::string& key);
    void save(int userCode, const std::string& key, const std::string& options);
    // Saves without a wait that anybody would notice. What another program's writing holds up is kept here: load()
    // knows it, and each later saveSoon() and saveRest() tries it again.
    void saveSoon(int userCode, const std::string& key, const std::string& options);
    void saveRest();
    void remove(int userCode, const std::string& key);

private:
    Session& session_;
    std::map<std::pair<int, std::string>, std::string> unsaved_;  // options by user and screen
};

}  // namespace basalt::host
