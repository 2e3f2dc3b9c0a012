// Marks a symbol that the shared library exports. Every such symbol also stands in package/exports.txt.
#pragma once

#if defined(_WIN32)
// The list alone says what is exported: a mark would add GoodInfo_ScaleAgent by the name that a 32-bit compiler gives
// it, _GoodInfo_ScaleAgent@44.
#define BASALT_EXPORT
#else
#define BASALT_EXPORT __attribute__((visibility("default")))
#endif
