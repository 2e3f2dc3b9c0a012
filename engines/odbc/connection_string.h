// What may be told about an ODBC connection string, and what may not.
//
//   const ConnectionString text("Driver=FreeTDS;Server=shop;Database=Basalt;UID=sa;PWD={a;b}");
//   text.publicParts()                       "Server=shop;Database=Basalt"
//   text.masked()                            "Driver=FreeTDS;Server=shop;Database=Basalt;UID=sa;PWD=***"
//   text.withoutSecrets("login a;b failed")  "login *** failed"
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace basalt::odbc {

class ConnectionString {
public:
    explicit ConnectionString(std::string text);

    // The text as given, for the driver alone.
    [[nodiscard]] const std::string& text() const { return text_; }
    // Server, DSN and database; nothing else is known to be free of secrets.
    [[nodiscard]] std::string publicParts() const;
    // The whole text with *** for each password, for those who are told what another program was given.
    [[nodiscard]] std::string masked() const;
    // What a part says, without braces; nullopt when there is no such part. Keys compare without case.
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;
    // The message of a driver with the values of all passwords blotted out. A short one is blotted out where it stands
    // by itself, not in the middle of a word.
    [[nodiscard]] std::string withoutSecrets(std::string message) const;

private:
    struct Part {
        std::string key;
        std::string written;  // with its braces
        std::string value;    // without
        std::size_t at = 0;   // where the written value stands in the text
    };
    std::string text_;
    std::vector<Part> parts_;
};

}  // namespace basalt::odbc
