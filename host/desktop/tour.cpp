#include "host/desktop/tour.h"

#include <QDir>
#include <QFile>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "host/desktop/desktop.h"
#include "host/services/path_text.h"
#include "host/steps/step_player.h"
#include "host/steps/steps_error.h"
#include "host/steps/steps_file.h"

// The steps files lie in a static library, which registers no resources by itself. Q_INIT_RESOURCE must stand outside
// of any namespace.
static void initializeTourResource() {
    Q_INIT_RESOURCE(tour);
}

namespace basalt::host {
namespace {

namespace fs = std::filesystem;

// A new tour begins on a new database: what an earlier one left in the folder goes first.
void removeOldDatabase(const fs::path& database) {
    for (const char* ending : {"", "-wal", "-shm", "-journal"}) {
        fs::path file = database;
        fs::remove(file += ending);
    }
}

// Pictures go into the tour's folder; their names are reported in the order of the tour.
void placePictures(std::vector<Step>& steps, const fs::path& folder, std::vector<std::string>& pictures) {
    for (Step& step : steps) {
        if (auto* shot = std::get_if<ShotStep>(&step.action)) {
            shot->file = textFromPath(folder / pathFromText(shot->file));
            pictures.push_back(shot->file);
        }
    }
}

// One steps file: a run of the desktop from the first window to the last. What went wrong, if anything.
std::optional<std::string> takeStage(Module& module, const DesktopOptions& options, std::vector<Step> steps,
                                     const std::string& name) {
    StepPlayer player(std::move(steps), name);
    player.start();
    Desktop desktop(module, options);
    const int status = desktop.run();
    player.returned(Datum(status));
    player.finish();
    return player.failure();
}

}  // namespace

int takeTour(Module& module, const fs::path& folder) {
    initializeTourResource();
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (failure) {
        std::cerr << "basalt-desktop: the folder " << textFromPath(folder) << " cannot be made: " << failure.message()
                  << '\n';
        return 1;
    }
    const fs::path place = fs::absolute(folder);
    const fs::path database = place / "tour.db";
    removeOldDatabase(database);
    const DesktopOptions options{.database = {EngineKind::Embedded, textFromPath(database)},
                                 .createMissing = true,
                                 .userDataFolder = place,
                                 .persistOptions = false};

    const QDir stages(QStringLiteral(":/basalt/tour"));
    for (const QString& name : stages.entryList({QStringLiteral("*.steps")}, QDir::Files, QDir::Name)) {
        std::cout << name.toStdString() << std::endl;
        std::vector<std::string> pictures;
        std::optional<std::string> problem;
        try {
            QFile file(stages.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) throw StepsError(name.toStdString(), 0, "cannot be read");
            std::vector<Step> steps = parseSteps(file.readAll().toStdString(), name.toStdString());
            placePictures(steps, place, pictures);
            problem = takeStage(module, options, std::move(steps), name.toStdString());
        } catch (const std::exception& error) {
            problem = error.what();
        }
        for (const std::string& picture : pictures) {
            if (fs::exists(pathFromText(picture))) std::cout << "  " << picture << '\n';
        }
        if (problem) {
            std::cerr << "basalt-desktop: the tour has failed. " << *problem << '\n';
            return 1;
        }
    }
    std::cout << "The tour is done; its pictures are in " << textFromPath(place) << std::endl;
    return 0;
}

}  // namespace basalt::host
