// The host's controls, as the module's screens use them.
//
// The host makes them (ScreenServices) and owns their looks; the module sees these interfaces. They carry no Q_OBJECT
// and report events through callbacks, because host and module are separate libraries that each compile this header.
// Plain edits, labels, combo boxes and panels are Qt's own.
#pragma once

#include <QAbstractItemView>
#include <QString>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "ado/data_source.h"
#include "ado/query.h"
#include "package/screens/print_setting.h"
#include "package/types.h"

namespace basalt {

// One column of a grid. A column whose field the data source lacks shows empty cells.
struct TGridColumn {
    std::string FieldName;
    QString Title;
    bool Visible = true;
    bool VisibleForCustomization = true;  // offered in the column chooser
    bool TitleButton = true;              // a click on the title sorts
    int Width = 0;                        // pixels; 0 = by content and stretch
    // Number format "positive;negative;zero" with # and 0, for instance "#,#0.##;-#,#0.##;0"; empty shows the text.
    std::string DisplayFormat = {};
};

// A grid on a data source: sort by title, column chooser, copy, print with preview, PDF, XLSX and CSV.
class TSmartDBGrid_VRO : public QWidget {
public:
    using QWidget::QWidget;

    virtual void SetDataSource(TDataSource* source) = 0;
    virtual int AddColumn(const TGridColumn& column) = 0;  // returns its index, from 0
    virtual void SetColumn(int index, const TGridColumn& column) = 0;
    [[nodiscard]] virtual TGridColumn Column(int index) const = 0;  // as the user has arranged it
    [[nodiscard]] virtual int ColumnCount() const = 0;
    virtual void RemoveColumn(int index) = 0;
    // The indexes of all columns, hidden ones too, as they stand on the screen, where the user may have moved them.
    [[nodiscard]] virtual std::vector<int> ColumnOrder() const = 0;
    virtual void SetMultiSelect(bool on) = 0;
    virtual void SetTitleLines(int lines) = 0;
    // The row shown as current, from 0; -1 when the grid is empty. It is the data set's cursor.
    [[nodiscard]] virtual int CurrentRow() const = 0;
    [[nodiscard]] virtual std::vector<int> SelectedRows() const = 0;
    [[nodiscard]] virtual QAbstractItemView* View() = 0;
    // Makes the last row as shown, in the user's sort order, the current one; nothing when the grid is empty.
    virtual void GoToLastRow() = 0;
    // An error that tells the user why, where there are too many rows to be shown as pages. To be called before the
    // user is asked how the pages shall look.
    virtual void CheckPrintable() const = 0;
    // Shows the rows as pages: the setting's visible columns by their field names, in its order, on its paper. A column
    // that the grid lacks is left out. Errors pass to the caller.
    virtual void PrintPreview(const TPrintSetting& setting) = 0;

    std::function<void()> OnDblClick;
};

// What "save" does after the record is written.
enum class TSaveKind { Save, SaveAndNew, SaveAndClose, SaveAndPrint };

// A button with its caption, whose last word names the short-cut key ("حذف F7"), and for save buttons a drop-down of
// the variants of saving.
class TSmartButton_VRO : public QWidget {
public:
    using QWidget::QWidget;

    virtual void SetCaption(const std::string& caption) = 0;  // also sets the short cut
    [[nodiscard]] virtual std::string Caption() const = 0;
    virtual void Click() = 0;  // as a user would: nothing when disabled
    // Which variant the plain button does: 0 save, 1 save and new, 2 save and close, 3 save and print. The others are
    // in the drop-down. Only for the save control of an editor.
    virtual void SetSaveMode(int mode) = 0;

    std::function<void()> OnClick;
};

// A button that is shown and enabled.
[[nodiscard]] inline bool isUsable(const QWidget* control) {
    return control && control->isVisibleTo(control->window()) && control->isEnabled();
}

// Enough for a handler to act when it is called; keys and clicks reach usable buttons only.
[[nodiscard]] inline bool isEnabledOrVisible(const QWidget* control) {
    return control && (control->isEnabled() || control->isVisibleTo(control->window()));
}

enum class TSearchDataType { Digits, Text, Amount };

struct TSearchItem {
    std::string FieldName;
    std::string Title;
    TSearchDataType DataType = TSearchDataType::Text;
};

// A panel that narrows a list. Several frames work on one list through the search manager.
class TSearchFrame : public QWidget {
public:
    using QWidget::QWidget;

    virtual void init() = 0;  // after the items are known: builds the inputs, empty
    // The condition for the list's columns, T-SQL without WHERE; empty when the frame narrows nothing.
    [[nodiscard]] virtual std::string Filter() const = 0;
    virtual void Clear() = 0;
    virtual void FocusFirst() = 0;

    std::function<void()> OnChange;  // the inputs have changed
};

// A search box whose items name the fields that it can search. Search folds Arabic and Persian yeh and kaf and digits.
class TGeneral_Search_Frame : public TSearchFrame {
public:
    using TSearchFrame::TSearchFrame;
    virtual void AddItem(const TSearchItem& item) = 0;
    virtual void SetItemIndex(int index) = 0;  // which item is selected, from 0
    [[nodiscard]] virtual int ItemIndex() const = 0;
};

// From-to ranges; items as in the general frame.
struct TSearchRange {
    int Item = -1;  // the chosen one; -1 while there is none
    std::string From;
    std::string To;  // both as typed
};

class TRange_Search_Frame : public TSearchFrame {
public:
    using TSearchFrame::TSearchFrame;
    [[nodiscard]] virtual TSearchRange Range() const = 0;
    // Puts back what Range gave, without telling of it. UsageError when there is no such item.
    virtual void SetRange(const TSearchRange& range) = 0;
    virtual void AddItem(const TSearchItem& item) = 0;
    virtual void DeleteItem(int index) = 0;
    [[nodiscard]] virtual int ItemCount() const = 0;
    [[nodiscard]] virtual TSearchItem Item(int index) const = 0;
};
using TRange_Digit_Search_Frame = TRange_Search_Frame;
using TRange_Cost_Search_Frame = TRange_Search_Frame;

// Tabs that each stand for one value of a field.
class TTab_Search_Frame : public TSearchFrame {
public:
    using TSearchFrame::TSearchFrame;
    virtual void SetFieldName(const std::string& field) = 0;
    virtual void AddTab(const std::string& title, const std::string& value) = 0;
    virtual void SetTabIndex(int index) = 0;
    [[nodiscard]] virtual int TabIndex() const = 0;
    virtual void Search_TBCChange() = 0;  // the frame's own reaction to a change of tab

    std::function<void()> OnTabChange;  // replaces the frame's own reaction, which the screen then calls itself
};

// Re-runs a list's statement with the conditions of its frames.
class TVaroSearchManager {
public:
    virtual ~TVaroSearchManager() = default;
    virtual void SetDataSource(TDataSource* source) = 0;
    virtual void SetSQLScript(const std::string& sql) = 0;  // the list's statement, without any condition of the frames
    virtual void AddFrame(TSearchFrame* frame) = 0;
    // Sets the data source's query to the statement narrowed by all frames (the statement itself when none narrows) and
    // opens it. After a failure the query holds the previous statement and rows, and the error passes on.
    virtual void ExecuteFilter_DataSet() = 0;

    std::function<void()> AfterSearch;
};

}  // namespace basalt
