#include "cli/workstation.h"

#include <iostream>

#include "host/services/path_text.h"
#include "host/services/platform/user_folders.h"

namespace basalt::cli {

namespace {

host::WorkstationOptions read() {
    const host::IniOptionsFile file(host::userDataFolderIfAny());
    if (!file.damaged().empty()) {
        std::cerr << "basalt: warning: the options of this workstation cannot be read, and the usual ones hold; the "
                     "damaged file is kept at "
                  << host::textFromPath(file.damaged()) << '\n';
    }
    return file.options();
}

}  // namespace

const host::WorkstationOptions& workstationOptions() {
    static const host::WorkstationOptions options = read();
    return options;
}

host::OpenOptions openOptions() {
    return {.queryTimeoutSeconds = workstationOptions().queryTimeoutSeconds};
}

}  // namespace basalt::cli
