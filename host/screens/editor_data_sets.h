// The data sets that an editor opens on the module's connection, seen from outside: an editor's base knows no store,
// yet it must tell that a record is gone and leave nothing half entered when saving fails.
#pragma once

#include <vector>

#include "ado/data_set.h"

namespace basalt::host {

class EditorDataSets final : private StatementObserver {
public:
    // Watches until it goes away.
    explicit EditorDataSets(TADOConnection& connection);
    ~EditorDataSets() override;
    EditorDataSets(const EditorDataSets&) = delete;
    EditorDataSets& operator=(const EditorDataSets&) = delete;

    // From here on another data set may be the one opened last.
    void forgetOpened() { opened_ = nullptr; }
    // Takes the one opened last for the record's own; record() gives it as long as it lives and is open.
    void nameRecord() { record_ = opened_; }
    [[nodiscard]] TDataSet* record() const { return record_ && record_->Active() ? record_ : nullptr; }

    // True when a record is being entered or changed in any of them.
    [[nodiscard]] bool entering() const;
    // Drops what is being entered in any of them.
    void cancelEdits();

private:
    void sending(const SentStatement&) override {}
    void touched(TDataSet& dataSet) override;
    void leaving(TDataSet& dataSet) override;

    TADOConnection& connection_;
    std::vector<TDataSet*> known_;
    TDataSet* opened_ = nullptr;
    TDataSet* record_ = nullptr;
};

}  // namespace basalt::host
