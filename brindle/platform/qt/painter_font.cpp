// Font records as Qt has them. Tests: painter_surface_test.cpp.
#include "brindle/platform/qt/painter_font.h"

#include <QtGui/QFont>
#include <QtGui/QFontMetricsF>
#include <QtGui/QGuiApplication>
#include <algorithm>
#include <cstring>
#include <string>

#include "brindle/platform/code_page.h"

namespace brindle {
namespace {

constexpr int kDefaultHeight = 16, kLargestHeight = 4096;
constexpr int kNormalWeight = 400;

// The size of the characters; a positive height is that of the line, with what stands above and below them.
int CharacterHeight(const QFont& font, std::int32_t height) {
    if (height == 0) height = kDefaultHeight;
    const int wanted =
        static_cast<int>(std::clamp<std::int64_t>(std::abs(std::int64_t{height}), 1, kLargestHeight));
    if (height < 0) return wanted;
    QFont probe = font;
    probe.setPixelSize(wanted);
    const QFontMetricsF metrics(probe);
    return std::max(1, static_cast<int>(wanted * wanted / std::max(metrics.height(), 1.0)));
}

}  // namespace

bool FontsAvailable() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

QFont QtFont(const LOGFONTA& record) {
    const std::string_view face(record.lfFaceName, ::strnlen(record.lfFaceName, sizeof record.lfFaceName));
    const std::string name = ToUtf8(face);
    QFont font(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    font.setStyleHint(QFont::SansSerif);
    font.setWeight(static_cast<QFont::Weight>(record.lfWeight == 0 ? kNormalWeight
                                                                   : std::clamp(record.lfWeight, 1, 1000)));
    font.setItalic(record.lfItalic != 0);
    font.setUnderline(record.lfUnderline != 0);
    font.setStrikeOut(record.lfStrikeOut != 0);
    font.setPixelSize(CharacterHeight(font, record.lfHeight));
    if (record.lfWidth != 0) {
        const double wanted = std::abs(static_cast<double>(record.lfWidth));
        const double usual = std::max(QFontMetricsF(font).averageCharWidth(), 1.0);
        font.setStretch(static_cast<int>(std::clamp(100 * wanted / usual, 1.0, 4000.0)));
    }
    return font;
}

}  // namespace brindle
