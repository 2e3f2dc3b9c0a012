// What each user may do: the users, and the rights of the chosen one to give and to take.
#pragma once

#include <QBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <vector>

#include "host/desktop/desktop_context.h"
#include "host/desktop/rights_model.h"
#include "host/desktop/shell_page.h"
#include "host/services/user_rights.h"

namespace basalt::host {

class RightsPage final : public ShellPage {
public:
    explicit RightsPage(DesktopContext context, QWidget* parent = nullptr);

    // Shows what is stored, of the user who was chosen last.
    void enter() override;
    // Asks about unsaved changes.
    bool mayLeave() override;

private:
    void makeUsers(QBoxLayout& layout);
    void makeRights(QBoxLayout& layout);
    void makeFooter(QBoxLayout& layout);
    // Reads the users, and shows the rights of this one or, when he is not there, of the first.
    void reload(int userCode);
    void choose();
    void show(RightsSheet sheet);
    // Asks whether changes are to be stored before something, named in the user's words; before leaving if it is not.
    // False when the user goes back to them.
    [[nodiscard]] bool settleChanges(const std::vector<std::string>& before);
    // False when nothing was written; the user has been told why.
    [[nodiscard]] bool save();
    void edited();
    void setUnsaved(bool unsaved);

    DesktopContext context_;
    UserRights rights_;
    RightsModel model_;
    std::vector<UserListItem> users_;
    bool mayEdit_ = false;
    QListWidget* list_ = nullptr;
    QLabel* note_ = nullptr;
    QTableView* table_ = nullptr;
    QLabel* state_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* undo_ = nullptr;
};

}  // namespace basalt::host
