// Marks a symbol that the shared library exports. Every such symbol also stands in package/exports.txt.
#pragma once

#if defined(_WIN32)
#define BASALT_EXPORT __declspec(dllexport)
#else
#define BASALT_EXPORT __attribute__((visibility("default")))
#endif
