// The starts of the scale agent while goods are sent to the scales: shown as they happen, and remembered.
//
//   const ScaleStarts starts(host, progressBar);
//   send();
//   if (starts.failure()) tell(starts.sent(), starts.asked());
#pragma once

#include <QProgressBar>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "host/services/reference_host.h"

namespace basalt::host {

// Stands before the host's programs as long as it lives.
class ScaleStarts final : public ProgramService {
public:
    ScaleStarts(ReferenceHost& host, QProgressBar& bar);
    ~ScaleStarts() override;
    ScaleStarts(const ScaleStarts&) = delete;
    ScaleStarts& operator=(const ScaleStarts&) = delete;

    [[nodiscard]] StartResult start(const ProgramStart& program) override;
    [[nodiscard]] std::unique_ptr<ProgramLibrary> load(const std::string& name) override { return inner_.load(name); }

    [[nodiscard]] int asked() const { return asked_; }
    [[nodiscard]] int sent() const { return sent_; }
    // Those that had a start of their own, by their codes; none when all go together.
    [[nodiscard]] const std::set<int>& goods() const { return goods_; }
    // The first start that came to nothing, and the program's name.
    [[nodiscard]] const std::optional<std::pair<std::string, StartResult>>& failure() const { return failure_; }

private:
    ReferenceHost& host_;
    ProgramService& inner_;
    QProgressBar& bar_;
    int asked_ = 0;
    int sent_ = 0;
    std::set<int> goods_;
    std::optional<std::pair<std::string, StartResult>> failure_;
};

}  // namespace basalt::host
