// What tests of widgets share: a host over a scripted session, messages and outputs that are answered from queues, and
// rows for data sets.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QtTest>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ado/query.h"
#include "host/screens/output_services.h"
#include "host/screens/print_document.h"
#include "host/screens/screen_services_impl.h"
#include "package/services.h"
#include "tests/host_screens/escape_clock.h"
#include "tests/host_screens/when_busy.h"
#include "tests/support/scripted_session.h"

namespace basalt::host {

// "MsgUnsavedChanges" or "DatabaseError(first argument; second argument)".
inline std::string line(const MessageRequest& request) {
    std::string text = request.operation;
    for (std::size_t i = 0; i < request.arguments.size(); ++i)
        text += (i == 0 ? "(" : "; ") + request.arguments[i];
    return request.arguments.empty() ? text : text + ")";
}

// Answers messages from a queue; fails the test for a message that was not expected and for one that never came.
class QueuedMessages final : public MessageService {
public:
    ~QueuedMessages() override {
        for (const auto& [operation, answer] : expected_)
            ADD_FAILURE() << "never shown: " << operation;
    }
    void expect(std::string operation, int answer = mrNone) { expected_.emplace_back(std::move(operation), answer); }

    int show(const MessageRequest& request) override {
        shown.push_back(request);
        if (expected_.empty() || expected_.front().first != request.operation) {
            ADD_FAILURE() << "unexpected message " << line(request);
            return request.isQuestion() ? mrNo : mrNone;
        }
        const int answer = expected_.front().second;
        expected_.pop_front();
        return answer;
    }

    std::vector<MessageRequest> shown;

private:
    std::deque<std::pair<std::string, int>> expected_;
};

// Answers file choices from a queue and notes previews.
class QueuedOutput final : public OutputServices {
public:
    ~QueuedOutput() override {
        if (!files.empty()) ADD_FAILURE() << files.size() << " files were never asked for";
    }
    std::deque<std::optional<QString>> files;
    std::vector<QString> asked;
    std::vector<QString> previews;
    std::vector<QPageLayout> layouts;
    std::function<void(PrintDocument& document)> onPreview;

    std::optional<QString> chooseFile(QWidget*, const QString& title, const QString& suggestedName,
                                      const QString& suffix) override {
        asked.push_back(title + QLatin1Char('|') + suggestedName + QLatin1Char('.') + suffix);
        if (files.empty()) {
            ADD_FAILURE() << "unexpected question for a file: " << title.toStdString();
            return std::nullopt;
        }
        const auto file = files.front();
        files.pop_front();
        return file;
    }
    void preview(ScreenContext&, QWidget*, PrintDocument& document, const QPageLayout& paper) override {
        previews.push_back(document.title());
        layouts.push_back(paper);
        if (onPreview) onPreview(document);
    }
};

inline HostOptions testOptions() {
    HostOptions options;
    options.workstationName = "TEST";
    options.persistOptions = false;
    return options;
}

// Code, Name, Price: the rows that most tests look at.
inline RowSet priceRows(const std::vector<std::tuple<int, std::string, std::optional<std::string>>>& rows) {
    ColumnInfo code;
    code.name = "Code";
    code.type = FieldType::Integer;
    ColumnInfo name;
    name.name = "Name";
    name.type = FieldType::Text;
    name.size = 50;
    ColumnInfo price;
    price.name = "Price";
    price.type = FieldType::Decimal;
    price.precision = 23;
    price.scale = 2;
    RowSet set({code, name, price});
    for (const auto& [number, text, amount] : rows) {
        set.column(0).appendInt(number);
        set.column(1).appendText(text);
        if (amount) {
            set.column(2).appendDecimal(Decimal::parse(*amount)->rescaled(2).coefficient());
        } else {
            set.column(2).appendNull();
        }
        set.finishRow();
    }
    return set;
}

class ScreenTest : public ::testing::Test {
protected:
    ScreenTest() {
        host.setMessages(messages);
        host.setScreens(&screens);
        screens.setOutput(output);
        neverBusy(screens);
    }

    // A data set on given rows.
    TADOQuery& open(RowSet rows) {
        session.expect("select rows", std::move(rows));
        query.Close();
        query.SQL = "select rows";
        query.Open();
        return query;
    }

    // The first print asks for it: it stands above all of them. This company has none.
    void expectCompanyName() { session.expect("SELECT Name, Value FROM dbo.HostSettings", RowSet()); }

    // Calls when the event loop of the next dialog runs.
    static void whenShown(std::function<void()> act) { QTimer::singleShot(0, qApp, std::move(act)); }

    EscapeClock escapeClock;
    ScriptedSession session;
    QueuedMessages messages;
    QueuedOutput output;
    ReferenceHost host{session, testOptions()};
    HostScreenServices screens{host};
    AttachedHost attached{host};
    TADOQuery query{host.DM().ADOConnection1, "Rows_QUR"};
    TDataSource source{&query};
};

// Types a text of any script, which QTest::keyClicks does not.
inline void type(QWidget* widget, const QString& text) {
    for (const QChar character : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(character), Qt::NoModifier);
}

// A control of that name inside a widget; fails the test when there is none.
template <class Widget>
Widget* control(QWidget& parent, const char* objectName) {
    auto* found = parent.findChild<QWidget*>(QString::fromLatin1(objectName));
    auto* typed = dynamic_cast<Widget*>(found);
    if (!typed) ADD_FAILURE() << "no control " << objectName;
    return typed;
}

}  // namespace basalt::host
