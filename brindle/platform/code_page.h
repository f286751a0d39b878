// CodePage: conversion between the library's bytes (the ANSI code page) and UTF-8.
//
// The code page is Windows-1252 unless a host sets another. In Windows-1252 the five unassigned bytes (81 8D
// 8F 90 9D) stand for the C1 characters of the same number, so every byte converts both ways. When the code
// page is UTF-8 both conversions are the identity. Thread: conversions may come from any thread; the code
// page is chosen at start-up.
#pragma once

#include <string>
#include <string_view>

#include "brindle/framework/export.h"

namespace brindle {

constexpr unsigned kCodePageWindows1252 = 1252;
constexpr unsigned kCodePageUtf8 = 65001;

class CodePage {
  public:
    // Chooses the code page by its number. False, and nothing changed, when the backend does not know it.
    virtual bool Select(unsigned codePage) = 0;
    virtual unsigned Selected() const = 0;
    // Appends the UTF-8 form of `bytes` to `utf8`. Never fails: a byte without a character becomes U+FFFD.
    virtual void AppendUtf8(std::string_view bytes, std::string& utf8) const = 0;
    // Appends the code page's form of `utf8` to `bytes`. A character with no byte there becomes "?", and so
    // does each byte that is not well-formed UTF-8; the result is false if there was any of either.
    virtual bool AppendBytes(std::string_view utf8, std::string& bytes) const = 0;

  protected:
    ~CodePage() = default;  // never destroyed through this interface
};

// The service in place.
BRINDLE_API CodePage& CurrentCodePage() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
CodePage* SetCodePage(CodePage* service) noexcept;

// By the service in place, as its AppendUtf8 and AppendBytes.
BRINDLE_API std::string ToUtf8(std::string_view bytes);
std::string FromUtf8(std::string_view utf8);

}  // namespace brindle
