// The editor of one good's prices and discounts: ten levels of prices and four of discounts, for sale and purchase, and
// which of them are the good's defaults.
//
//   CreateEditor<PriceEditor>(host, registry, 57)->ShowModal();
//
// An empty input is a price or discount that the good does not have. The module does not say what
// a discount is of; here, as in all of this host, it is percents, 0 to 100. The decimal mark
// may be typed as a point, a slash or "٫"; it is shown as the last.
//
// Inputs are named after their columns (CostLevel_Sell_3_EDT, Default_Discount_Buy_Number_CMB).
#pragma once

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <map>
#include <string>
#include <vector>

#include "host/price_editor/price_matrix.h"
#include "host/screens/smart_button.h"
#include "package/screens/base_get_frm.h"

namespace basalt::host {

class PriceEditor final : public TBaseGet_FRM {
public:
    PriceEditor(ReferenceHost& host, const Registry& registry, int goodCode);

    void CreateControls() override;
    void SetComponents() override;
    void Init(bool flag) override;
    [[nodiscard]] bool IsNewRecordMode(const Value& code) override;
    [[nodiscard]] Value GetNewCode() override;
    void PrepareQuery(const Value& code) override;
    void OnFill(const Value& code) override;
    [[nodiscard]] bool IsValid() override;
    void OnSave() override;
    void AfterSave() override;
    void FormShow(QObject* sender) override;

private:
    struct Group {
        const char* objectName;
        QString title;
        QString columnTitle;
        const char* stem;       // "CostLevel"
        const char* titleStem;  // of the level's title
        int levels;
    };

    [[nodiscard]] int goodCode() const;
    QWidget* makeGroup(const Group& group, QWidget* parent);
    void addAmount(QGridLayout& layout, const std::string& field, const QString& title, int row, int column);
    void showPrices(const GoodPrices& prices);
    void showValue(const std::string& field, const std::optional<Decimal>& value);
    [[nodiscard]] GoodPrices entered() const;
    // False after having told that somebody else has been quicker, or that the good is gone.
    [[nodiscard]] bool mayReplaceStored();
    // Shows what the table has of the fields, and elsewhere what the user has entered.
    void takeOver(const GoodPrices& stored, const std::vector<std::string>& fields);
    [[nodiscard]] QWidget* inputOf(const std::string& field) const;
    // For a message: the titles of the first of them, and how many more there are.
    [[nodiscard]] std::string wordsFor(const std::vector<std::string>& fields) const;
    // As the user knows the input: what it is for, and the name of its level.
    [[nodiscard]] QString levelTitle(const std::string& field) const;
    // False after having told what is wrong with the input, if anything is.
    [[nodiscard]] bool accepts(const std::string& field, QLineEdit& input);

    ReferenceHost& host_;
    PriceMatrix matrix_;
    std::string goodName_;
    GoodPrices shown_;    // as the table has them, and the inputs where nobody has touched them
    GoodPrices written_;  // as a save would leave the table, until it is committed
    QLabel* good_ = nullptr;
    SmartButton* save_ = nullptr;
    std::map<std::string, QLabel*> titles_;  // by the name of the level's title
    std::map<std::string, QLineEdit*> amounts_;
    std::vector<std::string> fields_;  // of the amounts, as they stand on the screen
    std::map<std::string, QComboBox*> defaults_;
};

}  // namespace basalt::host
