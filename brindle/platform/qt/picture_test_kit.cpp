#include "brindle/platform/qt/picture_test_kit.h"

#include <QtGui/QPainter>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/qt_test_application.h"
#include "testing/vectors.h"

namespace brindle::testing {
namespace {

constexpr int kFlat = 24, kInterior = 3, kSamples = 16, kClip = 48;

int Channel(QRgb pixel, int index) {
    return static_cast<int>((pixel >> (8 * index)) & 0xFF);
}

bool IsMarked(const QImage& mask, int x, int y) {
    return !mask.isNull() && qRed(mask.pixel(x, y)) < 255;
}

struct Range {
    int low = 255, high = 0;
};

// Of the 3 by 3 pixels around a place.
Range Around(const QImage& image, int x, int y, int index) {
    Range range;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const int nx = std::clamp(x + dx, 0, image.width() - 1);
            const int ny = std::clamp(y + dy, 0, image.height() - 1);
            const int value = Channel(image.pixel(nx, ny), index);
            range.low = std::min(range.low, value);
            range.high = std::max(range.high, value);
        }
    return range;
}

void ComparePixel(Comparison& c, int x, int y) {
    bool worse = false;
    const bool clipEnd = IsMarked(c.clipEnds, x, y);
    for (int index = 0; index < 3; ++index) {
        const Range range = Around(c.recorded, x, y, index);
        const int ours = Channel(c.drawn.pixel(x, y), index), theirs = Channel(c.recorded.pixel(x, y), index);
        c.mean += std::abs(ours - theirs);
        const bool flat = range.high - range.low <= kFlat && !IsMarked(c.hiddenEdges, x, y);
        const int off = flat ? std::abs(ours - theirs) : std::max({0, range.low - ours, ours - range.high});
        int& worst = clipEnd ? c.clipWorst : flat ? c.flatWorst : c.edgeWorst;
        worst = std::max(worst, off);
        const int edge = kInterior + (range.high - range.low) / kSamples;
        worse |= off > (clipEnd ? kClip : flat ? kInterior : edge);
    }
    if (worse) ++c.outside;
}

void Compare(Comparison& c) {
    for (int y = 0; y < c.recorded.height(); ++y)
        for (int x = 0; x < c.recorded.width(); ++x)
            if (!IsMarked(c.corners, x, y)) ComparePixel(c, x, y);
    c.mean /= 3.0 * c.recorded.width() * c.recorded.height();
}

// The squares, a pixel larger on each side, in which the outline of `width` turns its corners.
QImage Corners(const nlohmann::json& p, int width) {
    if (width == 0) return {};
    QImage mask = Mask(p);
    QPainter painter(&mask);
    const CRect rect = Rect(p["rect"]);
    const int reach = width / 2 + 2;
    for (const int x : {rect.left, rect.right})
        for (const int y : {rect.top, rect.bottom})
            painter.fillRect(x - reach, y - reach, 2 * reach, 2 * reach, Qt::black);
    return mask;
}

QImage Draw(const nlohmann::json& p, const PictureRecipe& recipe) {
    QImage image(p["canvas"][0], p["canvas"][1], QImage::Format_RGB32);
    image.fill(static_cast<QRgb>(0xFF000000 | Number(p["background"])));
    QPainter painter(&image);
    PainterContext context(painter);
    recipe.draw(context.DC(), p);
    return image;
}

QImage Difference(const Comparison& c) {
    QImage image(c.recorded.size(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb a = c.recorded.pixel(x, y), b = c.drawn.pixel(x, y);
            const auto off = [&](int index) {
                return std::min(255, 8 * std::abs(Channel(a, index) - Channel(b, index)));
            };
            image.setPixel(x, y, qRgb(off(2), off(1), off(0)));
        }
    return image;
}

Comparison Compared(const std::string& file, const nlohmann::json& p, const PictureRecipe& recipe) {
    const std::string bytes = LoadVectorBytes("images/aa/" + file).value_or("");
    Comparison c;
    c.file = file;
    c.parameters = p;
    c.recorded =
        QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size()));
    c.drawn = Draw(p, recipe);
    if (recipe.clipEnds) c.clipEnds = recipe.clipEnds(p);
    if (recipe.hiddenEdges) c.hiddenEdges = recipe.hiddenEdges(p);
    if (recipe.cornerWidth) c.corners = Corners(p, recipe.cornerWidth(p));
    EXPECT_EQ(c.recorded.size(), c.drawn.size());
    if (c.recorded.size() == c.drawn.size()) Compare(c);
    EXPECT_EQ(c.outside, 0) << "pixels; flat ones off by " << c.flatWorst << ", edges by " << c.edgeWorst
                            << ", where a clip ends by " << c.clipWorst;
    return c;
}

void Report(const std::vector<Comparison>& all) {
    int flat = 0, edge = 0, clip = 0;
    double mean = 0;
    for (const Comparison& c : all) {
        flat = std::max(flat, c.flatWorst);
        edge = std::max(edge, c.edgeWorst);
        clip = std::max(clip, c.clipWorst);
        mean = std::max(mean, c.mean);
    }
    std::printf(
        "%zu pictures: flat pixels off by at most %d levels, edges by %d outside their mixture, where a clip "
        "ends by %d; mean of the worst %.3f\n",
        all.size(), flat, edge, clip, mean);
}

}  // namespace

unsigned long Number(const nlohmann::json& text) {
    return std::strtoul(text.get<std::string>().c_str(), nullptr, 16);
}

CRect Rect(const nlohmann::json& sides) {
    return {sides[0], sides[1], sides[2], sides[3]};
}

QImage Mask(const nlohmann::json& parameters) {
    QImage mask(parameters["canvas"][0], parameters["canvas"][1], QImage::Format_RGB32);
    mask.fill(Qt::white);
    return mask;
}

std::vector<Comparison> ComparePictures(const nlohmann::json& index, const PictureRecipe& recipe) {
    std::vector<Comparison> all;
    for (const auto& [file, p] : index["files"].items()) {
        if (p["recipe"] != recipe.name || p.contains("unsure")) continue;
        SCOPED_TRACE(file);
        all.push_back(Compared(file, p, recipe));
    }
    EXPECT_EQ(static_cast<int>(all.size()), recipe.count);
    Report(all);
    return all;
}

std::vector<Comparison> Worst(std::vector<Comparison> all) {
    constexpr std::size_t kRows = 12;
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.mean > b.mean; });
    if (all.size() > kRows) all.resize(kRows);
    return all;
}

void WriteSheet(const std::vector<Comparison>& rows, const std::string& name) {
    const char* folder = std::getenv("BRINDLE_PICTURE_SHEETS");
    if (!folder || !*folder || rows.empty()) return;
    NeedQtApplication();
    constexpr int kScale = 3, kLabel = 20, kGap = 6;
    int width = 0, height = 0;
    for (const Comparison& c : rows) {
        width = std::max(width, 3 * (c.recorded.width() * kScale + kGap));
        height += c.recorded.height() * kScale + kLabel + kGap;
    }
    QImage sheet(width, height, QImage::Format_RGB32);
    sheet.fill(Qt::darkGray);
    QPainter painter(&sheet);
    painter.setPen(Qt::white);
    int y = 0;
    for (const Comparison& c : rows) {
        painter.drawText(4, y + kLabel - 5, QString::fromStdString(c.file));
        const QSize size = c.recorded.size() * kScale;
        int x = 0;
        for (const QImage& image : {c.recorded, c.drawn, Difference(c)}) {
            painter.drawImage(QRect(QPoint(x, y + kLabel), size), image);
            x += size.width() + kGap;
        }
        y += size.height() + kLabel + kGap;
    }
    painter.end();
    const QString file = QString::fromUtf8(folder) + "/" + QString::fromStdString(name) + ".png";
    EXPECT_TRUE(sheet.save(file)) << file.toStdString();
}

}  // namespace brindle::testing
