// Asks for the weight of one container and how many there are, so that a gross weight can be reduced by them.
//
//   double weight = 0;
//   int count = 0;
//   if (Get_BoxesWeight(weight, count)) net = gross - weight * count;
//
// The weights entered before are offered again, also after a restart. Digits and the decimal point are shown as Persian
// ones; a weight may be typed with either side of its point left out.
#pragma once

#include <QObject>

#include "package/export.h"
#include "package/screens/base_dock_frm.h"

class QComboBox;
class QLineEdit;

namespace basalt {

class Registry;

class TGetBoxWeight_FRM : public TBaseDock_FRM {
public:
    // What is shown at first; values of 0 and less leave their input empty.
    TGetBoxWeight_FRM(double weight, int count);

    // What is in the inputs: 0 for a text that is no number, or no whole number of 32 bits.
    [[nodiscard]] double Weight() const;
    [[nodiscard]] int Count() const;

    void CreateControls() override;
    void FormCreate(QObject* sender) override;
    void SetComponents() override {}
    void Open() override {}
    void InitSearch(const std::string& /*text*/) override {}
    void InitSelect() override {}
    void RefreshList() override {}
    void FormShow(QObject* sender) override;

    void Submit_BTNClick();

protected:
    // The keys of the two inputs.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool refuse(QWidget& input, bool valid, int message, const char* field);
    void keepWeight();

    double firstWeight_;
    int firstCount_;
    QComboBox* weight_ = nullptr;
    QLineEdit* count_ = nullptr;
    TSmartButton_VRO* submit_ = nullptr;
};

// Shows the dialog. True when the user confirms; weight (of one container) and count are then what was entered, else
// unchanged. Errors of the dialog pass to the caller after it has been freed.
[[nodiscard]] bool Get_BoxesWeight(double& weight, int& count);

// What the registry lists of this screen.
void registerGoodsScreens(Registry& registry);

}  // namespace basalt
