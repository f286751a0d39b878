// What is visible outside the library. Every exported class or function carries BRINDLE_API;
// everything else is hidden.
#pragma once

#if defined(_WIN32)
#if defined(BRINDLE_BUILDING)
#define BRINDLE_API __declspec(dllexport)
#else
#define BRINDLE_API __declspec(dllimport)
#endif
#else
#define BRINDLE_API __attribute__((visibility("default")))
#endif
