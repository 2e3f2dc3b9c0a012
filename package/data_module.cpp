#include "package/data_module.h"

#include <utility>

#include "package/services.h"

namespace basalt {

TDataModule::TDataModule(std::string name) : name_(std::move(name)), connection_(DM().ADOConnection1) {}

}  // namespace basalt
