// The search box: a choice of fields and one input.
#pragma once

#include <QComboBox>
#include <vector>

#include "host/screens/search_change.h"
#include "host/screens/search_edit.h"

namespace basalt::host {

class GeneralSearchFrame final : public TGeneral_Search_Frame, public SearchFrameLink {
public:
    GeneralSearchFrame(ScreenContext& context, const QString& objectName, QWidget* parent);

    void init() override;
    [[nodiscard]] std::string Filter() const override;
    void Clear() override;
    void FocusFirst() override;
    void AddItem(const TSearchItem& item) override;
    void SetItemIndex(int index) override;
    [[nodiscard]] int ItemIndex() const override { return fields_->currentIndex(); }
    [[nodiscard]] SearchChange& change() override { return change_; }
    [[nodiscard]] QString narrowing() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void adaptInput();
    // Whether the condition has changed since it was last asked for.
    [[nodiscard]] bool narrowsOtherwise();

    std::vector<TSearchItem> items_;
    QComboBox* fields_;
    SearchEdit* input_;
    std::string narrowing_;  // the condition as it was last told
    SearchChange change_;
};

}  // namespace basalt::host
