// Rows of a statement in memory, with a cursor: the base of TADOQuery and TADOStoredProc.
//
//   for (query.First(); !query.Eof(); query.Next()) total += query.FieldByName("Price").AsFloat();
//
//   if (query.Locate("Code;CostType", {7, 1})) {
//       query.Edit();
//       query.FieldByName("Name") = "عمده";
//       query.Post();                              // one UPDATE, keyed by primary key and by the old Name
//   }
//
// A data set holds a copy; nobody else's changes show until Requery. Records count from 1 in RecNo, rows from 0 where a
// row is an argument. With a filter on, counts, moves and rows are those of the accepted records.
//
// Leaving a record in edit state (moving, Edit of another, Append, Locate) posts it when it has changes and cancels it
// when it has none. Closing drops it.
//
// Unless said otherwise, calls on a closed data set are UsageError. Failures of the database are DatabaseError and
// leave the data set as it was, the record being edited included.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ado/connection.h"
#include "ado/data_source.h"
#include "ado/field.h"
#include "ado/rowset.h"

namespace basalt {

enum TDataSetState { dsInactive, dsBrowse, dsEdit, dsInsert, dsCalcFields };

struct LocateOptions {
    bool caseInsensitive = false;
    bool partialKey = false;  // texts need only begin with the value
};

class RowFilter;

class TDataSet {
public:
    virtual ~TDataSet();
    TDataSet(const TDataSet&) = delete;
    TDataSet& operator=(const TDataSet&) = delete;

    [[nodiscard]] const std::string& Name() const { return name_; }
    // Borrowed. Another connection closes the data set.
    [[nodiscard]] TADOConnection* Connection() const { return connection_; }
    void Connection(TADOConnection* connection);

    // Opening an open data set does nothing, closing a closed one neither. Open is a UsageError without a connection or
    // statement, and when the statement gives no result set; of several result sets it takes the first. After a failed
    // Open the data set is closed.
    void Open();
    void Close();
    // Runs the statement again and goes to the first record; opens a closed data set. After a failure the data set
    // still shows what it showed, or is closed where that was too much to be kept meanwhile (ado/rows_beside.h).
    void Requery();
    [[nodiscard]] bool Active() const { return active_; }
    [[nodiscard]] TDataSetState State() const { return calculating_ ? dsCalcFields : state_; }
    // The text that Open sends; empty for a stored procedure.
    [[nodiscard]] virtual std::string statementText() const = 0;

    // The cursor. These four answer on a closed data set too, which has no records.
    [[nodiscard]] int RecordCount() const { return static_cast<int>(visibleCount()); }
    [[nodiscard]] bool IsEmpty() const { return visibleCount() == 0 && state_ != dsInsert; }
    [[nodiscard]] bool Bof() const { return !active_ || bof_; }
    [[nodiscard]] bool Eof() const { return !active_ || eof_; }
    // 0 when empty and while a new record is entered. In OnCalcFields the number of the record being calculated.
    [[nodiscard]] int RecNo() const;
    void RecNo(int number);  // UsageError beyond 1 to RecordCount
    void First();
    void Last();
    void Next() { MoveBy(1); }
    void Prior() { MoveBy(-1); }
    // How far it went, which is less at the ends; there Bof or Eof becomes true and the cursor stays on the last
    // record.
    int MoveBy(int distance);

    // The first record whose fields have these values; true and the cursor on it, or false and nothing moved. Numbers
    // compare by value, a text given for a number is read as one. UsageError for an unknown field or when the counts of
    // fields and values differ.
    bool Locate(std::string_view keyFields, const std::vector<Value>& values, LocateOptions options = {});
    bool Locate(std::string_view keyField, const Value& value, LocateOptions options = {});

    // A condition in the small filter language (ado/row_filter.h). UsageError with the position when it is not
    // understood; the old filter stays then. On a closed data set it is checked when the data set opens.
    void Filter(std::string text);
    [[nodiscard]] const std::string& Filter() const { return filterText_; }
    void Filtered(bool on);
    [[nodiscard]] bool Filtered() const { return filtered_; }

    // Fields, calculated ones last. Index from 0.
    [[nodiscard]] int FieldCount() const;
    [[nodiscard]] TField& Fields(int index);
    // Names compare without case. UsageError that lists the fields there are when there is none of that name.
    [[nodiscard]] TField& FieldByName(std::string_view name);
    [[nodiscard]] TField* FindField(std::string_view name);  // nullptr when there is none, or closed

    // A field whose value OnCalcFields assigns, for one record at a time, when it is looked at. Add it while closed; it
    // stays over closing and opening.
    void AddCalculatedField(std::string name, FieldType type, int size = 0);
    std::function<void(TDataSet&)> OnCalcFields;

    // What is expected of a field that the statement gives: one of another kind (whole numbers of any width are one
    // kind) or with more decimals makes Open a UsageError. A declared text is no longer than declared, and a read-only
    // field cannot be assigned. A field that the statement does not give is not there. Declare while closed; it stays
    // over closing and opening. UsageError when the name is declared already.
    void DeclareField(FieldDeclaration field);
    [[nodiscard]] const std::vector<FieldDeclaration>& declaredFields() const { return declared_; }

    // Any row without moving the cursor. The row being edited shows what has been typed. Undefined for a row or field
    // that is not there.
    [[nodiscard]] Value valueAt(std::int64_t row, int field) const;
    [[nodiscard]] std::string textAt(std::int64_t row, int field) const;  // as fieldText
    [[nodiscard]] const ColumnInfo& fieldInfo(int field) const;
    // The stored rows, all of them; rowOf gives the place of a visible row among them.
    [[nodiscard]] const RowSet& rowSet() const { return rows_; }
    [[nodiscard]] std::size_t rowOf(std::int64_t row) const;

    // Editing. Edit on an empty data set is a UsageError.
    void Edit();
    void Append();
    void Insert() { Append(); }  // new records stand at the end until the next Requery
    // Sends one INSERT or UPDATE; nothing when an edit changed nothing. UsageError in another state, for a statement
    // whose rows belong to no one table with its primary key among the fields, and for a field that belongs to no
    // table. DatabaseError (Conflict) when another user has changed or deleted the record. After a failure the record
    // is still being edited, with what was typed.
    void Post();
    void Cancel();  // back to browsing; nothing when not editing
    // Removes the current record from its table; drops a record that is being entered. UsageError when there is none.
    void Delete();
    // Whether the record being edited has assigned values that differ from the stored ones.
    [[nodiscard]] bool Modified() const;

    std::function<void(TDataSet&)> BeforePost;
    std::function<void(TDataSet&)> AfterScroll;

    void addListener(DataSourceListener& listener) { listeners_.add(listener); }
    void removeListener(DataSourceListener& listener) { listeners_.remove(listener); }

protected:
    TDataSet(TADOConnection* connection, std::string name);

    // Runs what the data set stands for. Throws when there are no rows.
    virtual RowSet fetch() = 0;
    [[nodiscard]] TADOConnection& connected() const;  // UsageError when there is none
    [[noreturn]] void fail(const std::string& problem) const;
    // The first result set of a batch; UsageError when there is none.
    [[nodiscard]] RowSet firstRows(BatchResult& batch) const;
    void announceTouched();
    // Leaves a record in edit state, as moving does.
    void finishRecord();
    // Shows other rows, without the filter. `shown` is called when nothing can fail any more, before anybody is told.
    void showInstead(RowSet rows, const std::function<void()>& shown);
    void statementChanged();  // another statement closes the data set
    // For the most derived destructor, while the statement can still be asked for.
    void announceLeaving();

private:
    friend class TField;
    friend class TDataSource;
    friend class TADOConnection;

    // Where a field's value is to be looked up.
    struct Record {
        enum Kind { None, Stored, Entered } kind = None;
        std::size_t row = 0;  // among the stored rows
        bool edited = false;  // typed values come first
        std::int64_t number = 0;
    };

    [[nodiscard]] std::size_t visibleCount() const {
        return !active_ ? 0 : visible_ ? visible_->size() : rows_.rowCount();
    }
    [[nodiscard]] bool editing() const { return state_ == dsEdit || state_ == dsInsert; }
    void requireActive(const char* action) const;
    [[nodiscard]] Record current() const;
    [[nodiscard]] Record recordAt(std::int64_t row) const;
    // The column when the value lies there as it is; nullptr when it was typed, is calculated or there is no record.
    [[nodiscard]] const Column* storedCell(int field, const Record& record) const;
    [[nodiscard]] Value valueIn(int field, const Record& record) const;
    [[nodiscard]] Value calculatedValue(std::size_t field, const Record& record) const;
    void assign(int field, const Value& value);
    void show(RowSet rows);
    [[nodiscard]] const FieldDeclaration* declaration(std::string_view name) const;  // nullptr: none
    void checkDeclarations(const RowSet& rows) const;
    void leaveRecord();
    void moveTo(std::size_t row);
    [[nodiscard]] bool matches(std::size_t row, const std::vector<int>& fields, const std::vector<Value>& values,
                               LocateOptions options) const;
    [[nodiscard]] std::unique_ptr<RowFilter> compiledFilter(const std::string& text, const RowSet& rows) const;
    void selectRows(std::size_t stay);
    void setState(TDataSetState state);
    void postEdit();
    void postInsert();
    void scrolled();

    std::string name_;
    TADOConnection* connection_ = nullptr;
    RowSet rows_;
    bool active_ = false;
    TDataSetState state_ = dsInactive;
    bool bof_ = true;
    bool eof_ = true;
    std::size_t at_ = 0;                               // the current visible row
    std::optional<std::vector<std::size_t>> visible_;  // the accepted rows, when a filter is on
    std::vector<std::optional<Value>> typed_;          // a column's assigned value while editing

    std::string filterText_;
    bool filtered_ = false;
    std::unique_ptr<RowFilter> filter_;

    mutable std::vector<FieldSlot> fields_;  // made when first asked for
    std::vector<ColumnInfo> calculated_;
    std::vector<FieldDeclaration> declared_;
    mutable bool calculating_ = false;
    mutable Record calculatedRecord_;
    mutable std::vector<Value> calculatedValues_;

    ListenerList<DataSourceListener> listeners_;
    std::vector<TDataSource*> sources_;
};

}  // namespace basalt
