// Looks on at what the module does through its host: statements, queries, messages, log entries.
//
//   CallRecorder recorder(host);
//   recorder.begin(messages);
//   ... call the module ...
//   CallReport report = recorder.end();
//
// It watches from its making to its end, so that it knows a query that an earlier call opened and this one writes
// through.
#pragma once

#include <string>
#include <vector>

#include "host/calls/call_report.h"
#include "host/services/reference_host.h"

namespace basalt::host {

class CallRecorder final : private StatementObserver, private HostObserver, private MessageService {
public:
    explicit CallRecorder(ReferenceHost& host);
    ~CallRecorder() override;
    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;

    // Starts an empty report. Until end() the host's messages are shown and answered by `messages`, which must live so
    // long.
    void begin(MessageService& messages);
    // Statements, queries, messages and events since begin(). The host has its own messages again.
    [[nodiscard]] CallReport end();
    // The statements since begin(), for those who look while the call runs.
    [[nodiscard]] const std::vector<SentStatement>& statements() const { return report_.statements; }

private:
    struct Watched {
        TDataSet* dataSet;
        bool touched;  // since begin()
        bool used;     // ever sent its statement; the statement that a store is made with says nothing about a call
    };

    void sending(const SentStatement& statement) override;
    void touched(TDataSet& dataSet) override;
    void leaving(TDataSet& dataSet) override;
    void userEvent(TSoftwarePart part, TPermission permission, const std::string& text) override;
    void programStarting(const ProgramStart& program) override;
    int show(const MessageRequest& request) override;

    void report(TDataSet& dataSet);

    ReferenceHost& host_;
    std::vector<Watched> watched_;  // living data sets, in the order in which they were first touched
    MessageService* shown_ = nullptr;
    MessageService* hostMessages_ = nullptr;
    CallReport report_;
};

}  // namespace basalt::host
