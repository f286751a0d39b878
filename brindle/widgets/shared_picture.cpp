// The shared cache of pictures and bitmaps. It is there while it holds something, so that nothing is left to the end of
// the process. Tests: shared_picture_test.cpp.
#include "brindle/widgets/shared_picture.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "brindle/framework/letter_case.h"
#include "brindle/framework/mul_div.h"
#include "brindle/framework/number_text.h"
#include "brindle/platform/files.h"
#include "brindle/platform/image_header.h"
#include "brindle/platform/images.h"
#include "brindle/platform/path_text.h"
#include "brindle/platform/screen.h"
#include "brindle/widgets/gdi_plus_picture.h"

namespace {

using brindle::GdiPlusPicture;
using brindle::Image;
using brindle::ImageFrames;
using brindle::ImagePicture;
using brindle::PictureScale;

constexpr std::size_t kLongestPath = 260;
constexpr std::int32_t kMetricPerInch = 2540;  // hundredths of a millimetre

struct PictureRelease {
    void operator()(IPicture* picture) const { picture->Release(); }
};
using PictureReference = std::unique_ptr<IPicture, PictureRelease>;

// One of the two objects.
struct Entry {
    PictureReference picture;  // the cache's reference
    std::unique_ptr<CBitmap> bitmap;
    std::uint32_t count = 1;
};
using Cache = std::map<std::string, Entry>;

constinit Cache* g_cache = nullptr;  // null: holds nothing

Entry* Find(const std::string& key) {
    if (!g_cache) return nullptr;
    const auto found = g_cache->find(key);
    return found == g_cache->end() ? nullptr : &found->second;
}

void Store(std::string key, Entry entry) {
    if (!g_cache) g_cache = new Cache;
    g_cache->emplace(std::move(key), std::move(entry));
}

// Counts a release of the entry that `is` says is meant. The entry is out of the cache before its object goes.
template <class Is>
Entry* CountRelease(const Is& is, Entry& gone) {
    if (!g_cache) return nullptr;
    const auto found =
        std::find_if(g_cache->begin(), g_cache->end(), [&](const auto& each) { return is(each.second); });
    if (found == g_cache->end()) return nullptr;
    if (--found->second.count > 0) return &found->second;
    gone = std::move(found->second);
    g_cache->erase(found);
    if (g_cache->empty()) delete std::exchange(g_cache, nullptr);
    return &gone;
}

std::string Lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), &brindle::ToLower);
    return text;
}

// Both kinds of keys stand in one map, told apart by their first letter.
std::string PictureKey(const std::string& fullPath) {
    return "p" + Lowered(fullPath);
}
std::string BitmapKey(const char* path, std::uint32_t background) {
    return "b" + Lowered(path) + "_b" + brindle::PrintUnsigned(background);
}

bool Load(const char* path, ImageFrames wanted, Image& image) {
    std::string bytes;
    return brindle::CurrentFiles().ReadWhole(path, brindle::kMostImageBytes, bytes).ok() &&
           brindle::CurrentImages().Decode(bytes, wanted, image).ok();
}

bool StepsThroughFrames(std::string_view path) {
    constexpr std::size_t kLetters = 3;
    if (path.size() < kLetters) return false;
    const std::string_view last = path.substr(path.size() - kLetters);
    return brindle::EqualNoCase(last, "gif") || brindle::EqualNoCase(last, "png");
}

PictureReference LoadPicture(const char* path) {
    const bool steps = StepsThroughFrames(path);
    Image image;
    if (!Load(path, steps ? ImageFrames::kAll : ImageFrames::kFirst, image)) return nullptr;
    if (steps) return PictureReference(new GdiPlusPicture(std::move(image)));
    brindle::Screen& screen = brindle::CurrentScreen();
    return PictureReference(new ImagePicture(std::move(image), PictureScale{screen.DotsPerInchX()},
                                             PictureScale{screen.DotsPerInchY()}));
}

// A colour of the picture, multiplied by alpha, on the ground.
std::uint32_t Over(std::uint32_t pixel, std::uint32_t ground) {
    const std::uint32_t rest = 255 - (pixel >> 24);
    std::uint32_t result = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const std::uint32_t channel = (pixel >> shift & 0xFF) + ((ground >> shift & 0xFF) * rest + 127) / 255;
        result |= std::min(channel, 255u) << shift;
    }
    return result;
}

// How many pixels of the screen so many of the picture take.
std::int32_t OnScreen(std::int32_t pixels, std::int32_t dotsPerInch) {
    const auto metric = static_cast<std::int32_t>(PictureScale{dotsPerInch}.ToMetric(pixels));
    return brindle::MulDiv(metric, dotsPerInch, kMetricPerInch);
}

std::unique_ptr<CBitmap> Render(const Image& image, std::uint32_t background) {
    const std::int32_t width = OnScreen(image.width, brindle::CurrentScreen().DotsPerInchX());
    const std::int32_t height = OnScreen(image.height, brindle::CurrentScreen().DotsPerInchY());
    const std::uint32_t ground =
        (background & 0xFF) << 16 | (background & 0xFF00) | (background >> 16 & 0xFF);
    std::vector<std::uint32_t> pixels;
    pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (std::int64_t y = 0; y < height; ++y)
        for (std::int64_t x = 0; x < width; ++x)
            pixels.push_back(Over(image.pixels[static_cast<std::size_t>(
                                      y * image.height / height * image.width + x * image.width / width)],
                                  ground));
    auto bitmap = std::make_unique<CBitmap>();
    if (!bitmap->CreateBitmap(width, height, pixels.data())) return nullptr;
    bitmap->SetBitmapDimension(width, height);
    return bitmap;
}

}  // namespace

IPicture* CreateSharedPicture(const char* path) {
    if (!path || !*path) return nullptr;
    const std::string full = brindle::FullPathOf(brindle::CurrentFiles().CurrentDirectory(), path);
    if (full.size() > kLongestPath) return nullptr;
    std::string key = PictureKey(full);
    if (Entry* entry = Find(key)) {
        ++entry->count;
        entry->picture->AddRef();
        return entry->picture.get();
    }
    Entry entry;
    entry.picture = LoadPicture(path);
    IPicture* picture = entry.picture.get();
    if (!picture) return nullptr;
    Store(std::move(key), std::move(entry));
    picture->AddRef();
    return picture;
}

void ReleaseSharedPicture(IPicture* picture) {
    Entry gone;
    if (!picture || !CountRelease([&](const Entry& each) { return each.picture.get() == picture; }, gone))
        return;
    picture->Release();
}

CBitmap* CreateSharedBitmap(const char* path, unsigned long background) {
    if (!path || !*path) return nullptr;
    const auto colour = static_cast<std::uint32_t>(background);
    std::string key = BitmapKey(path, colour);
    if (Entry* entry = Find(key)) {
        ++entry->count;
        return entry->bitmap.get();
    }
    Image image;
    if (!Load(path, ImageFrames::kFirst, image)) return nullptr;
    Entry entry;
    entry.bitmap = Render(image, colour);
    CBitmap* bitmap = entry.bitmap.get();
    if (bitmap) Store(std::move(key), std::move(entry));
    return bitmap;
}

void ReleaseSharedBitmap(CBitmap* bitmap) {
    Entry gone;
    if (!bitmap) return;
    CountRelease([&](const Entry& each) { return each.bitmap.get() == bitmap; }, gone);
    if (gone.bitmap) gone.bitmap->DeleteObject();
}
