// The recipes as pixels, beside recorded pictures of the same recipes by an independent drawing service.
//
// How they are compared: pixel by pixel and channel by channel. Where the 3 by 3 pixels around a place in the
// recorded picture are about the same (they differ by at most kFlat levels), ours must be within kInterior levels of
// it. Anywhere else is an edge: ours must be a mixture of those nine pixels (between their smallest and largest,
// widened by kEdge: a recorded pixel is the mean of 16 by 16 samples, of which a row may lie beyond the line where a
// gradient begins anew). Thus edges may be smoothed differently, while nothing may lie elsewhere or have another
// colour. Two exceptions: the recordings clip a gloss smoothly and we by whole pixels, so where a gloss ends, on the
// frame's outline, a pixel may be kClip levels off; and dashed lines are not compared, since renderers differ in them.
//
// The worst pictures go to a sheet in the test's folder: recorded, drawn, difference times 8.
#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "brindle/platform/qt/painter_context.h"
#include "brindle/widgets/ov_drawing.h"
#include "testing/vectors.h"

namespace brindle {
namespace {

constexpr int kFlat = 24, kInterior = 3, kEdge = 5, kClip = 48;

struct Comparison {
    std::string name;
    QImage recorded, drawn;
    QImage glossEnd;    // black where a gloss may end; null: there is none
    int flatWorst = 0;  // levels away where it must agree
    int edgeWorst = 0;  // levels outside the mixture
    int clipWorst = 0;  // levels away where a gloss ends
    int outside = 0;    // pixels that are worse than allowed
    double mean = 0;    // levels, over all pixels and channels
};

int Channel(QRgb pixel, int index) {
    return static_cast<int>((pixel >> (8 * index)) & 0xFF);
}

void ComparePixel(Comparison& c, int x, int y) {
    bool worse = false;
    const bool glossEnd = !c.glossEnd.isNull() && qRed(c.glossEnd.pixel(x, y)) < 255;
    for (int index = 0; index < 3; ++index) {
        int low = 255, high = 0;
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx) {
                const int nx = std::clamp(x + dx, 0, c.recorded.width() - 1);
                const int ny = std::clamp(y + dy, 0, c.recorded.height() - 1);
                const int value = Channel(c.recorded.pixel(nx, ny), index);
                low = std::min(low, value);
                high = std::max(high, value);
            }
        const int ours = Channel(c.drawn.pixel(x, y), index), theirs = Channel(c.recorded.pixel(x, y), index);
        c.mean += std::abs(ours - theirs);
        const bool flat = high - low <= kFlat;
        const int off = flat ? std::abs(ours - theirs) : std::max({0, low - ours, ours - high});
        int& worst = glossEnd ? c.clipWorst : flat ? c.flatWorst : c.edgeWorst;
        worst = std::max(worst, off);
        worse |= off > (glossEnd ? kClip : flat ? kInterior : kEdge);
    }
    if (worse) ++c.outside;
}

void Compare(Comparison& c) {
    for (int y = 0; y < c.recorded.height(); ++y)
        for (int x = 0; x < c.recorded.width(); ++x) ComparePixel(c, x, y);
    c.mean /= 3.0 * c.recorded.width() * c.recorded.height();
}

unsigned long Number(const nlohmann::json& text) {
    return std::strtoul(text.get<std::string>().c_str(), nullptr, 16);
}

CRect Rect(const nlohmann::json& sides) {
    return {sides[0], sides[1], sides[2], sides[3]};
}

void DrawFrame(CDC& dc, const nlohmann::json& p) {
    OVDrawing::DrawFrame(&dc, Rect(p["rect"]), Number(p["colour1"]), Number(p["colour2"]),
                         Number(p["border_colour"]), p["border_width"], p["pen_style"], p["fill_mode"],
                         p["hollow"], {p["roundness_x"], p["roundness_y"]});
}

using DrawRecipe = void (*)(CDC&, const nlohmann::json&);

// The outline of a glossy frame, as wide as its edge and a pixel on each side.
QImage FrameGlossEnd(const nlohmann::json& p) {
    if (p["fill_mode"] != 3) return {};
    QImage image(p["canvas"][0], p["canvas"][1], QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    PainterContext context(painter);
    OVDrawing::DrawFrame(&context.DC(), Rect(p["rect"]), 0, 0, 0, 2, 0, 0, true,
                         {p["roundness_x"], p["roundness_y"]});
    return image;
}

QImage Draw(const nlohmann::json& p, DrawRecipe recipe) {
    QImage image(p["canvas"][0], p["canvas"][1], QImage::Format_RGB32);
    image.fill(static_cast<QRgb>(0xFF000000 | Number(p["background"])));
    QPainter painter(&image);
    PainterContext context(painter);
    recipe(context.DC(), p);
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

// Recorded, drawn and difference of the worst, each three times as large.
void WriteSheet(std::vector<Comparison> all, const QString& name) {
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.mean > b.mean; });
    constexpr int kRows = 12, kScale = 3, kCell = 115 * kScale;
    QImage sheet(3 * kCell, kRows * kCell / 2, QImage::Format_RGB32);
    sheet.fill(Qt::darkGray);
    QPainter painter(&sheet);
    for (int row = 0; row < std::min<int>(kRows, static_cast<int>(all.size())); ++row) {
        const Comparison& c = all[static_cast<std::size_t>(row)];
        const QImage images[] = {c.recorded, c.drawn, Difference(c)};
        for (int column = 0; column < 3; ++column)
            painter.drawImage(QRect(column * kCell, row * kCell / 2, c.recorded.width() * kScale,
                                    std::min(c.recorded.height() * kScale, kCell / 2 - 4)),
                              images[column]);
    }
    painter.end();
    sheet.save(QString::fromStdString(::testing::TempDir()) + name);
}

void CompareAll(const std::string& recipe, DrawRecipe draw, int expected) {
    BRINDLE_VECTORS_OR_SKIP(index, "images/index.json");
    std::vector<Comparison> all;
    for (const auto& [file, p] : index["files"].items()) {
        if (p["recipe"] != recipe || p.contains("unsure")) continue;
        SCOPED_TRACE(file);
        const std::string bytes = testing::LoadVectorBytes("images/aa/" + file).value_or("");
        Comparison c{
            file,
            QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size())),
            Draw(p, draw), FrameGlossEnd(p)};
        ASSERT_FALSE(c.recorded.isNull());
        ASSERT_EQ(c.recorded.size(), c.drawn.size());
        Compare(c);
        EXPECT_EQ(c.outside, 0) << "pixels; flat ones off by " << c.flatWorst << ", edges by " << c.edgeWorst
                                << ", where a gloss ends by " << c.clipWorst;
        all.push_back(c);
    }
    EXPECT_EQ(static_cast<int>(all.size()), expected);
    int flat = 0, edge = 0, clip = 0;
    double mean = 0;
    for (const Comparison& c : all) {
        flat = std::max(flat, c.flatWorst);
        edge = std::max(edge, c.edgeWorst);
        clip = std::max(clip, c.clipWorst);
        mean = std::max(mean, c.mean);
    }
    std::printf(
        "%zu pictures: flat pixels off by at most %d levels, edges by %d outside their mixture, where a "
        "gloss ends by "
        "%d; mean of the worst %.3f\n",
        all.size(), flat, edge, clip, mean);
    WriteSheet(all, QString::fromStdString(recipe + ".png"));
}

TEST(Pictures, Frames) {
    CompareAll("frame", DrawFrame, 70);
}

}  // namespace
}  // namespace brindle
