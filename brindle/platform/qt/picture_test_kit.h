// The recipes as pixels, beside recorded pictures of the same recipes by an independent drawing service.
//
// How they are compared: pixel by pixel and channel by channel. Where the 3 by 3 pixels around a place in the
// recorded picture are about the same (they differ by at most kFlat levels), ours must be within kInterior levels of
// it. Anywhere else is an edge: ours must be a mixture of those nine pixels: between their smallest and largest,
// widened by kInterior and a sixteenth of what they differ by. (A recorded pixel is the mean of 16 by 16 samples, of
// which a row may lie on the other side of a line.) Thus edges may be smoothed differently, while nothing may lie
// elsewhere or have another colour. Four exceptions:
// - The recordings clip a gloss or glow smoothly and we by whole pixels. Along the outlines of those clips, a pixel on
//   either side, a pixel may be kClip levels off.
// - Where the edge of a body shows through a transparent outline, the place counts as an edge however small the
//   difference is.
// - In the recordings an outline without round corners is four sides with blunt ends: the square in which two of them
//   would be mitred is missing. It is not compared; that ours is mitred says painter_surface_test.cpp.
// - Dashed lines are not compared, since renderers differ in them.
//
// With BRINDLE_PICTURE_SHEETS=FOLDER in the environment the tests also write sheets: recorded, drawn, and their
// difference times 8, of the worst pictures of each recipe, and of the buttons by what is varied.
#pragma once

#include <gtest/gtest.h>

#include <QtGui/QImage>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "brindle/framework/rect.h"
#include "brindle/framework/ui/dc.h"

namespace brindle::testing {

struct Comparison {
    std::string file;
    nlohmann::json parameters;
    QImage recorded, drawn;
    QImage clipEnds;     // black where a clip may end; null: nowhere
    QImage hiddenEdges;  // black where an edge shows through an outline; null: nowhere
    QImage corners;      // black where the mitres are; null: there are none
    int flatWorst = 0;   // levels away where it must agree
    int edgeWorst = 0;   // levels outside the mixture
    int clipWorst = 0;   // levels away where a clip ends
    int outside = 0;     // pixels that are worse than allowed
    double mean = 0;     // levels, over all pixels and channels
};

// How one kind of pictures is drawn, and where they are compared less strictly.
struct PictureRecipe {
    std::string name;  // "recipe" in the recordings' index
    int count;         // of its pictures
    std::function<void(CDC&, const nlohmann::json&)> draw;
    std::function<QImage(const nlohmann::json&)> clipEnds;
    std::function<QImage(const nlohmann::json&)> hiddenEdges;
    std::function<int(const nlohmann::json&)> cornerWidth;  // of the outline where corners are square, else 0
};

unsigned long Number(const nlohmann::json& text);
CRect Rect(const nlohmann::json& sides);
// White, as large as the picture.
QImage Mask(const nlohmann::json& parameters);

// Draws and compares all pictures of a recipe; each that is too far off is a test failure. Empty without recordings.
std::vector<Comparison> ComparePictures(const nlohmann::json& index, const PictureRecipe& recipe);
// One row for each, with its file's name, into BRINDLE_PICTURE_SHEETS; nothing without that.
void WriteSheet(const std::vector<Comparison>& rows, const std::string& name);
// Those that are farthest off on average.
std::vector<Comparison> Worst(std::vector<Comparison> all);

}  // namespace brindle::testing
