// Filters of file boxes. Tests: desktop_qt_test.cpp.
#include "brindle/platform/qt/file_filters.h"

#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

QString NextText(std::string_view& pairs) {
    const std::string_view text = pairs.substr(0, pairs.find('\0'));
    pairs.remove_prefix(std::min(pairs.size(), text.size() + 1));
    return QtText(text).trimmed();
}

}  // namespace

QStringList NameFilters(std::string_view pairs) {
    QStringList filters;
    while (!pairs.empty()) {
        QString text = NextText(pairs);
        const QString given = NextText(pairs);
        if (text.isEmpty() || given.isEmpty()) break;
        QStringList patterns = given.split(';', Qt::SkipEmptyParts);
        for (QString& pattern : patterns) {
            pattern = pattern.trimmed();
            if (pattern == "*.*") pattern = "*";
        }
        const QString named = " (" + given + ")";
        if (text.endsWith(named)) text.chop(named.size());
        filters << text + " (" + patterns.join(' ') + ")";
    }
    return filters;
}

}  // namespace brindle
