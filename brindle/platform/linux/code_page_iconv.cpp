// The Linux code page service: an own table for Windows-1252, the identity for UTF-8, iconv for all others.
//
// Can: every code page that iconv knows as "CP<number>" or "WINDOWS-<number>" and that keeps ASCII where it
// is. Cannot: code pages in which ASCII bytes mean something else (EBCDIC, UTF-16); Select refuses them. A
// conversion opens its own iconv descriptor, so that threads share nothing.
#include <iconv.h>

#include <atomic>
#include <cerrno>
#include <string>

#include "brindle/platform/backend.h"
#include "brindle/platform/utf8.h"
#include "brindle/platform/windows1252.h"

namespace brindle {
namespace {

constexpr const char* kReplacementUtf8 = "\xEF\xBF\xBD";

// An iconv descriptor for one conversion.
class Converter {
  public:
    Converter(const std::string& to, const std::string& from)
        : m_handle(iconv_open(to.c_str(), from.c_str())) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (ok()) iconv_close(m_handle);
    }
    bool ok() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    // Converts as much of `in` as it can, appends it to `out` and drops it from `in`. False when the first
    // byte of what is left cannot be converted.
    bool Convert(std::string_view& in, std::string& out) {
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);  // back to the initial state
        while (!in.empty()) {
            char buffer[512];
            char* to = buffer;
            std::size_t room = sizeof buffer;
            char* from = const_cast<char*>(in.data());
            std::size_t left = in.size();
            const std::size_t done = iconv(m_handle, &from, &left, &to, &room);
            const int error = errno;
            out.append(buffer, static_cast<std::size_t>(to - buffer));
            in.remove_prefix(in.size() - left);
            if (done == static_cast<std::size_t>(-1) && error != E2BIG) return false;
        }
        return true;
    }

  private:
    iconv_t m_handle;
};

std::string IconvName(unsigned codePage) {
    for (const char* prefix : {"CP", "WINDOWS-"}) {
        const std::string name = prefix + std::to_string(codePage);
        if (Converter("UTF-8", name).ok() && Converter(name, "UTF-8").ok()) return name;
    }
    return {};
}

bool KeepsAscii(const std::string& name) {
    std::string ascii;
    for (char c = 1; c < 0x7F; ++c) ascii += c;
    std::string_view in = ascii;
    std::string out;
    return Converter("UTF-8", name).Convert(in, out) && out == ascii;
}

void AppendUtf8ByIconv(const std::string& name, std::string_view bytes, std::string& utf8) {
    Converter converter("UTF-8", name);
    while (!bytes.empty()) {
        if (!converter.ok() || !converter.Convert(bytes, utf8)) {
            utf8 += kReplacementUtf8;
            bytes.remove_prefix(1);
        }
    }
}

bool AppendBytesByIconv(const std::string& name, std::string_view utf8, std::string& bytes) {
    Converter converter(name, "UTF-8");
    bool complete = true;
    while (!utf8.empty()) {
        if (converter.ok() && converter.Convert(utf8, bytes)) continue;
        complete = false;
        bytes += '?';
        std::size_t length = 0;
        DecodeUtf8(utf8, length);
        utf8.remove_prefix(length);
    }
    return complete;
}

class IconvCodePage final : public CodePage {
  public:
    bool Select(unsigned codePage) override {
        if (codePage != kCodePageWindows1252 && codePage != kCodePageUtf8) {
            const std::string name = IconvName(codePage);
            if (name.empty() || !KeepsAscii(name)) return false;
        }
        m_selected.store(codePage, std::memory_order_relaxed);
        LetterCaseFollows(*this);
        return true;
    }

    unsigned Selected() const override { return m_selected.load(std::memory_order_relaxed); }

    void AppendUtf8(std::string_view bytes, std::string& utf8) const override {
        const unsigned codePage = Selected();
        const std::size_t ascii = codePage == kCodePageUtf8 ? bytes.size() : AsciiPrefix(bytes);
        if (codePage == kCodePageWindows1252) {
            AppendUtf8FromWindows1252(bytes, utf8);
            return;
        }
        utf8.append(bytes.substr(0, ascii));
        if (ascii < bytes.size()) AppendUtf8ByIconv(IconvName(codePage), bytes.substr(ascii), utf8);
    }

    bool AppendBytes(std::string_view utf8, std::string& bytes) const override {
        const unsigned codePage = Selected();
        if (codePage == kCodePageWindows1252) return AppendWindows1252FromUtf8(utf8, bytes);
        const std::size_t ascii = codePage == kCodePageUtf8 ? utf8.size() : AsciiPrefix(utf8);
        bytes.append(utf8.substr(0, ascii));
        return ascii == utf8.size() || AppendBytesByIconv(IconvName(codePage), utf8.substr(ascii), bytes);
    }

  private:
    std::atomic<unsigned> m_selected{kCodePageWindows1252};
};

}  // namespace

CodePage& BackendCodePage() noexcept {
    constinit static IconvCodePage codePage;
    return codePage;
}

}  // namespace brindle
