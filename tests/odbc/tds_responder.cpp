#include "tds_responder.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace basalt::odbc::test {

namespace {

constexpr unsigned kBatch = 0x01;
constexpr unsigned kProcedureCall = 0x03;
constexpr unsigned kReply = 0x04;
constexpr unsigned kAttention = 0x06;
constexpr unsigned kLogin = 0x10;
constexpr unsigned kPrelogin = 0x12;
constexpr std::size_t kHeader = 8;
constexpr std::size_t kPacket = 4096;

bool receive(int client, char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t got = recv(client, data, size, 0);
        if (got <= 0) return false;
        data += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

bool sendAll(int client, std::string_view data) {
    while (!data.empty()) {
        const ssize_t sent = send(client, data.data(), data.size(), MSG_NOSIGNAL);
        if (sent <= 0) return false;
        data.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool sendPackets(int client, std::string_view body, bool complete) {
    char number = 1;
    do {
        const std::string_view part = body.substr(0, kPacket - kHeader);
        body.remove_prefix(part.size());
        const std::size_t length = part.size() + kHeader;
        std::string packet;
        packet += static_cast<char>(kReply);
        packet += static_cast<char>(complete && body.empty() ? 1 : 0);
        packet += static_cast<char>(length >> 8);
        packet += static_cast<char>(length & 0xFF);
        packet += std::string(2, '\0');
        packet += number++;
        packet += '\0';
        packet += part;
        if (!sendAll(client, packet)) return false;
    } while (!body.empty());
    return true;
}

// Version and "encryption is not supported".
std::string preloginReply() {
    using namespace std::string_view_literals;
    return std::string("\x00\x00\x0B\x00\x06\x01\x00\x11\x00\x01\xFF\x0B\x00\x0C\x38\x00\x00\x02"sv);
}

}  // namespace

TdsResponder::TdsResponder() {
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    if (listener_ < 0 || bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        listen(listener_, 4) != 0 || getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("the responder cannot listen");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
}

TdsResponder::~TdsResponder() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        if (client_ >= 0) shutdown(client_, SHUT_RDWR);
    }
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    close(listener_);
}

std::string TdsResponder::connectionPart() const {
    return "SERVER=127.0.0.1;PORT=" + std::to_string(port_) + ";TDS_Version=7.4;Database=Basalt;UID=sa;PWD=top-secret;";
}

void TdsResponder::answer(const TdsReply& reply) {
    const std::lock_guard lock(mutex_);
    answers_.push_back({Answer::Complete, reply.bytes()});
}

void TdsResponder::answerAndHangUp(const std::string& bytes) {
    const std::lock_guard lock(mutex_);
    answers_.push_back({Answer::HangUp, bytes});
}

void TdsResponder::keepWaiting() {
    const std::lock_guard lock(mutex_);
    answers_.push_back({Answer::Wait, {}});
}

void TdsResponder::answerWith(std::function<TdsReply(const TdsRequest&)> handler) {
    const std::lock_guard lock(mutex_);
    handler_ = std::move(handler);
}

void TdsResponder::refuseLogin(int number, const std::string& message) {
    const std::lock_guard lock(mutex_);
    refusals_.push_back(TdsReply().error(number, 14, message).doneWithError());
}

std::vector<TdsRequest> TdsResponder::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

std::size_t TdsResponder::leftovers() const {
    const std::lock_guard lock(mutex_);
    return answers_.size();
}

int TdsResponder::logins() const {
    const std::lock_guard lock(mutex_);
    return logins_;
}

int TdsResponder::attentions() const {
    const std::lock_guard lock(mutex_);
    return attentions_;
}

void TdsResponder::serve() {
    while (true) {
        const int client = accept(listener_, nullptr, nullptr);
        if (client < 0) return;
        // The packets of a long answer would wait for one another.
        const int atOnce = 1;
        setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof(atOnce));
        {
            const std::lock_guard lock(mutex_);
            if (stopping_) {
                close(client);
                return;
            }
            client_ = client;
        }
        try {
            talk(client);
        } catch (const std::exception& problem) {
            // The client tells its test.
            sendPackets(client, TdsReply().error(50001, 16, problem.what()).doneWithError().bytes(), true);
        }
        const std::lock_guard lock(mutex_);
        client_ = -1;
        close(client);
    }
}

void TdsResponder::talk(int client) {
    Message message;
    while (true) {
        unsigned char header[kHeader];
        if (!receive(client, reinterpret_cast<char*>(header), kHeader)) return;
        const std::size_t length = (std::size_t{header[2]} << 8) + header[3];
        if (length < kHeader) throw std::runtime_error("a packet is shorter than its header");
        std::string part(length - kHeader, '\0');
        if (!receive(client, part.data(), part.size())) return;
        message.type = header[0];
        message.body += part;
        if ((header[1] & 1U) == 0) continue;
        if (!handle(client, message)) return;
        message.body.clear();
    }
}

bool TdsResponder::handle(int client, const Message& message) {
    switch (message.type) {
        case kPrelogin:
            return sendPackets(client, preloginReply(), true);
        case kLogin:
            return logIn(client);
        case kAttention: {
            const std::lock_guard lock(mutex_);
            ++attentions_;
        }
            return sendPackets(client, TdsReply().cancelled().bytes(), true);
        case kBatch:
            return respond(client, readBatch(message.body));
        case kProcedureCall:
            return respond(client, readProcedureCall(message.body));
        default:
            throw std::runtime_error("a message of type " + std::to_string(message.type));
    }
}

bool TdsResponder::logIn(int client) {
    TdsReply reply;
    {
        const std::lock_guard lock(mutex_);
        ++logins_;
        if (refusals_.empty()) {
            reply.loginAccepted();
        } else {
            reply = refusals_.front();
            refusals_.pop_front();
        }
    }
    return sendPackets(client, reply.bytes(), true);
}

bool TdsResponder::respond(int client, const TdsRequest& request) {
    Answer answer;
    std::function<TdsReply(const TdsRequest&)> handler;
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
        if (answers_.empty() && handler_) {
            handler = handler_;
        } else if (answers_.empty()) {
            answer.bytes = TdsReply().error(50000, 16, "unexpected request: " + request.text).doneWithError().bytes();
        } else {
            answer = answers_.front();
            answers_.pop_front();
        }
    }
    if (handler) answer.bytes = handler(request).bytes();
    if (answer.end == Answer::Wait) return true;
    return sendPackets(client, answer.bytes, answer.end == Answer::Complete) && answer.end == Answer::Complete;
}

}  // namespace basalt::odbc::test
