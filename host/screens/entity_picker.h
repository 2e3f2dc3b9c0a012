// A dialog to pick any number of persons or goods: a searchable list with check boxes.
//
// Space checks the current row, as a click on it does; Enter in the search leads to the list.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QTableView>
#include <string>

#include "host/screens/entity_list_model.h"
#include "host/screens/screen_context.h"
#include "host/screens/search_edit.h"
#include "host/services/entity_store.h"

namespace basalt::host {

class EntityPicker final : public QDialog {
public:
    // UsageError for a part that has no list; DatabaseError when the list cannot be read.
    EntityPicker(ScreenContext& context, TSoftwarePart part, const QString& searchText);

    // Each followed by a comma, in the order in which they were picked.
    [[nodiscard]] std::string codes() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void search();
    void showCount();

    ScreenContext& context_;
    TSoftwarePart part_;
    EntityStore store_;
    EntityListModel model_;
    SearchEdit* search_;
    QTableView* list_;
    QLabel* count_;
};

}  // namespace basalt::host
