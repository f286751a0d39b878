// See csv_text.h. Tests: csv_text_test.cpp.
#include "host/csv_text.h"

#include <algorithm>

namespace brindle::host {

namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";  // of UTF-8

class CsvReader {
  public:
    explicit CsvReader(std::string_view text) : m_text(text) {
        if (m_text.starts_with(kMark)) m_text.remove_prefix(kMark.size());
    }

    std::string Read(std::vector<CsvRecord>& records, std::size_t& line) {
        std::string why;
        while (why.empty() && !m_text.empty()) {
            if (TakeLineEnd()) continue;
            CsvRecord record{m_line, {}};
            why = ReadRecord(record);
            if (why.empty()) records.push_back(std::move(record));
        }
        line = m_line;
        return why;
    }

  private:
    std::string ReadRecord(CsvRecord& record) {
        for (;;) {
            std::string& field = record.fields.emplace_back();
            const std::string why = m_text.starts_with('"') ? ReadQuoted(field) : ReadPlain(field);
            if (!why.empty()) return why;
            if (m_text.empty() || TakeLineEnd()) return {};
            m_text.remove_prefix(1);  // the comma
        }
    }

    std::string ReadPlain(std::string& field) {
        std::size_t end = std::min(m_text.find_first_of(",\"\n"), m_text.size());
        if (end < m_text.size() && m_text[end] == '"')
            return "a quote inside a field that does not begin with one";
        if (end < m_text.size() && m_text[end] == '\n' && end > 0 && m_text[end - 1] == '\r') --end;
        field = m_text.substr(0, end);
        m_text.remove_prefix(end);
        return {};
    }

    std::string ReadQuoted(std::string& field) {
        const std::size_t begun = m_line;
        m_text.remove_prefix(1);
        for (;;) {
            const std::size_t quote = m_text.find('"');
            if (quote == std::string_view::npos) {
                m_line = begun;
                return "a quote is never closed";
            }
            const std::string_view part = m_text.substr(0, quote);
            field += part;
            m_line += static_cast<std::size_t>(std::count(part.begin(), part.end(), '\n'));
            m_text.remove_prefix(quote + 1);
            if (!m_text.starts_with('"')) break;
            field += '"';
            m_text.remove_prefix(1);
        }
        const bool ends =
            m_text.empty() || m_text[0] == ',' || m_text[0] == '\n' || m_text.starts_with("\r\n");
        return ends ? "" : "text behind a closed quote";
    }

    bool TakeLineEnd() {
        const std::size_t length = m_text.starts_with("\r\n") ? 2 : m_text.starts_with('\n') ? 1 : 0;
        m_text.remove_prefix(length);
        if (length > 0) ++m_line;
        return length > 0;
    }

    std::string_view m_text;
    std::size_t m_line = 1;
};

}  // namespace

std::string ParseCsv(std::string_view text, std::vector<CsvRecord>& records, std::size_t& line) {
    return CsvReader(text).Read(records, line);
}

std::string CsvText(const std::vector<std::string>& fields) {
    std::string text;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) text += ',';
        const std::string& field = fields[i];
        // A field that begins with the mark would lose it at the beginning of a file.
        if (field.find_first_of(",\"\r\n") == std::string::npos && !field.starts_with(kMark)) {
            text += field;
            continue;
        }
        text += '"';
        for (const char c : field) text += c == '"' ? "\"\"" : std::string(1, c);
        text += '"';
    }
    return text;
}

}  // namespace brindle::host
