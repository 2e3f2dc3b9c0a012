// What a call did, in tabs: result and outputs, statements, rows, messages, log entries.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <vector>

#include "host/calls/arguments.h"
#include "host/calls/call_report.h"
#include "host/desktop/datum_table.h"
#include "host/services/message_catalogue.h"

namespace basalt::host {

class CallView final : public QWidget {
public:
    explicit CallView(const MessageCatalogue& catalogue, QWidget* parent = nullptr);

    void show(CallReport report);
    // Nothing was called, because an argument does not fit.
    void showProblem(const ArgumentError& problem);
    void clear();

private:
    [[nodiscard]] QTableWidget* addTable(const char* objectName, const QString& title, const QStringList& columns);
    [[nodiscard]] static QTableWidget* makeTable(const char* objectName, const QString& title,
                                                 const QStringList& columns);
    void addPage(QWidget* page, const QString& title);
    void addResult();
    void addQueries();
    void showState(const QString& text, bool success);
    void showError(const CallError& error);
    void showDetail(const QString& detail);
    void showResult(const CallReport& report);
    void showStatements(const CallReport& report);
    void showQueries();
    void showRows(Datum::List rows);
    void showMessages(const CallReport& report);
    void showEvents(const CallReport& report);
    void setTitle(int tab, std::size_t count);

    const MessageCatalogue& catalogue_;
    QLabel* state_;
    QPlainTextEdit* error_;
    QTabWidget* tabs_;
    QStringList titles_;
    QTableWidget* result_;
    QTableWidget* statements_;
    QComboBox* query_ = nullptr;
    QTableView* rowTable_ = nullptr;
    QLabel* queryText_ = nullptr;
    DatumTable rows_;
    QTableWidget* messages_;
    QTableWidget* events_;
    std::vector<QueryReport> queries_;
};

}  // namespace basalt::host
