// The host's category picker: where in the tree of categories one is, as chips, with an editor and a menu to go on.
//
//   categories_ = attachedScreens().createCategoryFrame("TCategory_frame1", base().FormPanel());
//   categories_->create_bubble(parent, 1);
//   categories_->createmenuItemByCode(parent);
//   ...
//   const int chosen = categories_->CurrentCode();
//
// The chips are one way down the tree, its top first; the last is the category that is chosen. Choosing another shows
// the way to that one instead, and taking a chip away takes those below it too. All that reads the categories passes a
// DatabaseError to the caller and leaves the chips as they were.
#pragma once

#include <QAbstractButton>
#include <QLineEdit>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace basalt {

struct TCategoryBubble {
    int Code = 0;
    std::string Name;  // whole, where the chip may cut it
};

class TCategory_frame : public QWidget {
public:
    using QWidget::QWidget;

    // Once the screen shows: reads the categories and builds the menus. True begins without chips, false keeps those
    // that there are.
    virtual void open(bool anew) = 0;
    // The chips become the way to the category: kind 1 down to itself, 2 down to the one above it. None for 0 and for a
    // category that is not there. UsageError for another kind.
    virtual void create_bubble(int category, int kind) = 0;
    // The menu offers what lies below the category; for 0, and where nothing lies below, the whole tree.
    virtual void createmenuItemByCode(int category) = 0;
    // Reads the categories anew: the chips' names and the menu, and the names that are offered for what is typed.
    virtual void Fill_allPop() = 0;
    virtual void Fill_allPopname() = 0;

    [[nodiscard]] virtual std::vector<TCategoryBubble> Bubbles() const = 0;
    virtual void ClearBubbles() = 0;
    // Gives the last chip the focus, if there is one.
    virtual void SelectLastBubble() = 0;
    // Of the last chip; 0 without chips.
    [[nodiscard]] virtual int CurrentCode() const = 0;
    // As many chips as the tree is deep.
    [[nodiscard]] virtual int BubbleLimit() const = 0;
    [[nodiscard]] virtual QLineEdit* Editor() = 0;
    [[nodiscard]] virtual QAbstractButton* SelectButton() = 0;  // drops the menu down

    // The frame's own handling of a key that was released in the editor: offers the categories whose names hold what is
    // typed; Enter takes the one of just this name, or the only one that is found; Delete and Backspace in the empty
    // editor take the last chip away. The key is 0 for a text that came without keys.
    virtual void EditorKeyUp(int key) = 0;
    // The same of a category that was chosen by its name or in the menu: its chips, and the menu below it.
    virtual void EditorValueEditDone(int category) = 0;

    // A key goes down in the editor. True: that was all, the editor does not get it.
    std::function<bool(int key)> OnEditorKeyDown;
    // Each of these replaces the frame's own handling, which the screen then calls itself.
    std::function<void(int key)> OnEditorKeyUp;
    std::function<void(int category)> OnEditorValueEditDone;
    // The user has changed the chips.
    std::function<void()> OnChange;
};

}  // namespace basalt
