// From-to ranges over one of several fields; of whole numbers or of amounts.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <functional>
#include <utility>
#include <vector>

#include "host/screens/search_change.h"
#include "host/screens/search_edit.h"

namespace basalt::host {

class RangeSearchFrame final : public TRange_Search_Frame, public SearchFrameLink {
public:
    RangeSearchFrame(ScreenContext& context, const QString& objectName, QWidget* parent);

    void init() override;
    [[nodiscard]] std::string Filter() const override;
    void Clear() override;
    void FocusFirst() override;
    [[nodiscard]] TSearchRange Range() const override;
    void SetRange(const TSearchRange& range) override;
    void AddItem(const TSearchItem& item) override;
    // A range of the deleted item no longer narrows the list; the screen re-runs the search when that matters to it.
    void DeleteItem(int index) override;
    [[nodiscard]] int ItemCount() const override { return static_cast<int>(items_.size()); }
    [[nodiscard]] TSearchItem Item(int index) const override;
    [[nodiscard]] SearchChange& change() override { return change_; }
    [[nodiscard]] QString narrowing() const override;
    // Whether the list has a field. A range of one that it lacks finds nothing: no record has a value there.
    void setFields(std::function<bool(const std::string&)> isField) { isField_ = std::move(isField); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // An input and what the list heeds of it: the last text that was empty or a number. What is being typed may be
    // neither for a while ("1," on the way to "1,000"), and the list stays as it is until it is one of them again.
    struct Bound {
        SearchEdit* edit;
        QString heeded;
    };

    void checkIndex(int index, const char* operation) const;
    void adaptInputs();
    static void heed(Bound& bound);
    // Tells of a bound that the user has left unfinished.
    void checkBound(SearchEdit& bound);
    void showAmount(QLineEdit& bound, bool grouped);
    // Whether the condition has changed since it was last asked for.
    [[nodiscard]] bool narrowsOtherwise();

    std::vector<TSearchItem> items_;
    QComboBox* fields_;
    QLabel* field_;  // instead of the choice while there is but one item
    Bound from_;
    Bound to_;
    std::string narrowing_;  // the condition as it was last told
    ScreenContext& context_;
    QString refused_;  // the text that the user has been told of
    SearchChange change_;
    std::function<bool(const std::string&)> isField_;
};

}  // namespace basalt::host
