// Whether a text of T-SQL may leave the transaction otherwise than it found it.
//
//   if (mayChangeTransaction("exec CloseTheYear")) ...    // ask the server
#pragma once

#include <string_view>

namespace basalt::odbc {

// True when the text has one of the words that begin, end or name a transaction, or calls a procedure, which may do so
// by itself. Words in texts and comments count too: the server is then asked once too often.
[[nodiscard]] bool mayChangeTransaction(std::string_view sql);

// True when the text says a setting after which every statement may begin a transaction (SET IMPLICIT_TRANSACTIONS,
// SET ANSI_DEFAULTS).
[[nodiscard]] bool mayChangeImplicitTransactions(std::string_view sql);

// True when the text has a word that is said to begin a transaction (or to name one that ends). What stands in texts,
// quoted names and comments counts only where the text runs texts: a search for "tran" begins none.
[[nodiscard]] bool mayBeginTransaction(std::string_view sql);

enum class TransactionEnd { None, Commit, Rollback };

// What a text does that ends the whole transaction and does nothing else: "ROLLBACK", "COMMIT TRAN;",
// "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION". None for every other text.
[[nodiscard]] TransactionEnd transactionEnd(std::string_view sql);

}  // namespace basalt::odbc
