// Hands goods over to the label-printing scales: through the scale agent program, or one good through its library.
//
//   GoodInf_SendToScale("28,57,90", 1);     // starts the agent once for each key of each group that means one of them
//
// The agent's command line and the library's signature are fixed by the agent. Both are reached through the host
// (package/programs.h). The functions borrow DM.SharedQuery and leave it closed.
#pragma once

#include <cstdint>
#include <string>

#include "package/export.h"

namespace basalt {

#if defined(_WIN32)
#define BASALT_STDCALL __stdcall
#else
#define BASALT_STDCALL
#endif

// The kinds of scales, numbered by the host. 0 reads the goods from the database itself.
using TScaleType = int;

// "GoodInfo_Register" of the scale agent's library. Texts are UTF-16 and end with a zero; they are read during the
// call.
using TGoodInfoScaleAgent = std::int32_t(BASALT_STDCALL*)(std::int32_t GoodCode, const char16_t* Name1,
                                                          const char16_t* Name2, std::int32_t Price,
                                                          std::int32_t ItemType, std::int32_t AlterPrice,
                                                          const char16_t* Barcode, std::int32_t ItemCode,
                                                          std::int32_t Section, const char16_t* PLU,
                                                          std::int32_t ScaleIP);

// Sends the goods whose codes are listed with commas between; codes is pasted into the statement as it stands.
// scaleType 0 starts the agent once, with the connection string and the codes. Any other starts it once for every scale
// and key that means one of the goods, the last time with the flag "1"; goods that no key means start nothing.
// A DatabaseError passes to the caller, and nothing is started then. Whether the agent runs is not looked at.
void GoodInf_SendToScale(const std::string& codes, TScaleType scaleType);

}  // namespace basalt

extern "C" {

// Registers one good with the agent's library; the arguments go to "GoodInfo_Register" as they are. The result is the
// library's. A library or function that is not there is told to the user, and the result is 0.
BASALT_EXPORT std::int32_t BASALT_STDCALL GoodInfo_ScaleAgent(std::int32_t GoodCode, const char16_t* Name1,
                                                              const char16_t* Name2, std::int32_t Price,
                                                              std::int32_t ItemType, std::int32_t AlterPrice,
                                                              const char16_t* Barcode, std::int32_t ItemCode,
                                                              std::int32_t Section, const char16_t* PLU,
                                                              std::int32_t ScaleIP);
}
