// Base of the stores: a data module owns one query per purpose, all on the host's connection.
//
//   class TCostLevel_DM : public TDataModule {
//   public:
//       TCostLevel_DM() : TDataModule("TCostLevel_DM") { own(CostLevel_List_QUR); }
//       TADOQuery CostLevel_List_QUR{connection(), "CostLevel_List_QUR"};
//   };
#pragma once

#include <string>
#include <vector>

#include "ado/query.h"

namespace basalt {

class TDataModule {
public:
    explicit TDataModule(std::string name);  // on DM().ADOConnection1
    virtual ~TDataModule() = default;
    TDataModule(const TDataModule&) = delete;
    TDataModule& operator=(const TDataModule&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] TADOConnection& connection() const { return connection_; }
    // The queries it owns, in the order of their declaration, for listings.
    [[nodiscard]] const std::vector<TADOQuery*>& queries() const { return queries_; }

protected:
    // Once per query, in the constructor's body.
    void own(TADOQuery& query) { queries_.push_back(&query); }
    // What the query held before is closed, also when the new statement fails.
    static void open(TADOQuery& query, const std::string& statement);
    static void execute(TADOQuery& query, const std::string& statement);

private:
    std::string name_;
    TADOConnection& connection_;
    std::vector<TADOQuery*> queries_;
};

}  // namespace basalt
