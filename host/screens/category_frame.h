// The category picker over the database's table of categories.
#pragma once

#include <QCompleter>
#include <QMenu>
#include <QStandardItemModel>
#include <QToolButton>
#include <vector>

#include "host/screens/category_chip.h"
#include "host/screens/screen_context.h"
#include "host/services/category_store.h"
#include "package/screens/category_frame.h"

namespace basalt::host {

class CategoryFrame final : public TCategory_frame {
public:
    CategoryFrame(ScreenContext& context, const QString& objectName, QWidget* parent);

    void open(bool anew) override;
    void create_bubble(int category, int kind) override;
    void createmenuItemByCode(int category) override;
    void Fill_allPop() override;
    void Fill_allPopname() override;
    [[nodiscard]] std::vector<TCategoryBubble> Bubbles() const override { return way_; }
    void ClearBubbles() override;
    void SelectLastBubble() override;
    [[nodiscard]] int CurrentCode() const override;
    [[nodiscard]] int BubbleLimit() const override;
    [[nodiscard]] QLineEdit* Editor() override { return editor_; }
    [[nodiscard]] QAbstractButton* SelectButton() override { return select_; }
    void EditorKeyUp(int key) override;
    void EditorValueEditDone(int category) override;

    // Watches the keys of the editor, and of the list of names that hangs below it and gets them while it is open.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeSelect();
    void makeEditor();
    void readTree();
    [[nodiscard]] std::vector<TCategoryBubble> wayTo(int category) const;
    void showWay(std::vector<TCategoryBubble> way);
    void fillMenu();
    void addItems(QMenu& menu, int parent, std::size_t depth);
    [[nodiscard]] std::vector<Category> found();
    void offerNames();
    void closeNames();
    [[nodiscard]] bool pressed(int key, bool inEditor);
    void released(int key);
    void keyUp(int key);
    void choose(int category);
    void takeChip(std::size_t index);

    ScreenContext& context_;
    CategoryStore store_;
    CategoryTree tree_;
    std::vector<TCategoryBubble> way_;
    std::vector<CategoryChip*> chips_;
    QToolButton* select_;
    QMenu* menu_;
    int menuBelow_ = 0;      // whose categories the menu offers
    bool menuIsOld_ = true;  // it is filled when it is dropped down
    QLineEdit* editor_;
    QStandardItemModel names_;
    QCompleter* completer_;
    QString offeredFor_;  // the text that names were last offered for
    int pressedKey_ = 0;  // the last that went down here
    bool keyIsDown_ = false;
    bool emptyAtPress_ = false;
};

}  // namespace basalt::host
