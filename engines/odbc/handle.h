// ODBC handles that free themselves.
#pragma once

#include <utility>

#include "engines/odbc/odbc_api.h"

namespace basalt::odbc {

template <SQLSMALLINT kType>
class Handle {
public:
    static constexpr SQLSMALLINT type = kType;

    Handle() = default;
    // get() is null when there was no memory; the parent then tells why.
    explicit Handle(SQLHANDLE parent) {
        if (!SQL_SUCCEEDED(SQLAllocHandle(kType, parent, &handle_))) handle_ = SQL_NULL_HANDLE;
    }
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, SQL_NULL_HANDLE)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle() {
        if (handle_ != SQL_NULL_HANDLE) SQLFreeHandle(kType, handle_);
    }

    [[nodiscard]] SQLHANDLE get() const { return handle_; }

private:
    SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

}  // namespace basalt::odbc
