// The editor of one price level or discount level.
//
//   base().ShowEditor(CreateEditor<TCostLevel_Get_FRM>(spPriceLevels, Value{std::int64_t{3}}, fmEdit));
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <memory>

#include "costlevel/costlevel_dm.h"
#include "package/screens/base_get_frm.h"

namespace basalt {

class TCostLevel_Get_FRM : public TBaseGet_FRM {
public:
    TCostLevel_Get_FRM(TSoftwarePart part, Value code, TFormMode mode, Value param = {}, bool flag1 = false,
                       bool flag2 = false);

    void CreateControls() override;
    void SetComponents() override;
    void Init(bool flag) override;
    [[nodiscard]] bool IsNewRecordMode(const Value& code) override;
    [[nodiscard]] Value GetNewCode() override;
    void PrepareQuery(const Value& code) override;
    void OnFill(const Value& code) override;
    [[nodiscard]] bool IsValid() override;
    void OnSave() override;
    void FormShow(QObject* sender) override;

private:
    [[nodiscard]] int code() const;
    [[nodiscard]] std::string name() const;
    void showCode(int code);
    [[nodiscard]] std::string codeText() const;

    TCostLevelMapper mapper_;
    std::unique_ptr<TCostLevel_DM> levels_;
    QSpinBox* codeEdit_ = nullptr;
    QLineEdit* nameEdit_ = nullptr;
    QLineEdit* commentEdit_ = nullptr;
    QComboBox* typeBox_ = nullptr;
    TSmartButton_VRO* save_ = nullptr;
};

}  // namespace basalt
