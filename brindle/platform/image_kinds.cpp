// PNG, JPEG, BMP and ICO files: their sizes, and whether they are whole. Tests: image_header_test.cpp.
#include "brindle/platform/image_kinds.h"

#include "brindle/framework/number_text.h"
#include "brindle/platform/byte_reader.h"

namespace brindle {
namespace {

Result Malformed(ImageKind kind, std::string_view what) {
    return ImageFault(kind, ErrorCode::kNotWellFormed, what);
}

// --- JPEG

constexpr std::uint8_t kMark = 0xFF, kEndOfPicture = 0xD9, kStartOfScan = 0xDA;

bool IsFrameSegment(std::uint8_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}
bool StandsAlone(std::uint8_t marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
}

// The marker after the coded data that a scan's header is followed by; 0 when there is none.
std::uint8_t SkipCodedData(ByteReader& reader) {
    while (reader.ok()) {
        if (reader.Byte() != kMark) continue;
        std::uint8_t marker = reader.Byte();
        while (marker == kMark) marker = reader.Byte();
        if (marker != 0 && !StandsAlone(marker)) return marker;
    }
    return 0;
}

std::uint8_t NextMarker(ByteReader& reader) {
    if (reader.Byte() != kMark) return 0;
    std::uint8_t marker = kMark;
    while (marker == kMark) marker = reader.Byte();
    return marker;
}

// --- BMP

struct BmpFormat {
    std::int64_t width = 0, height = 0;
    std::uint32_t bits = 0, compression = 0, imageBytes = 0;
};
constexpr std::uint32_t kOldHeader = 12, kHeader = 40;
constexpr std::uint32_t kPlainRows = 0, kRunLength8 = 1, kRunLength4 = 2, kMasks = 3;

// At the header that says its own size.
Result ReadBmpFormat(ByteReader& reader, ImageKind kind, BmpFormat& format) {
    const std::uint32_t size = reader.Little32();
    if (reader.ok() && size != kOldHeader && size < kHeader) return Malformed(kind, "has no known header");
    if (size == kOldHeader) {
        format.width = reader.Little16();
        format.height = reader.Little16();
    } else {
        format.width = static_cast<std::int32_t>(reader.Little32());
        format.height = static_cast<std::int32_t>(reader.Little32());
    }
    reader.Skip(2);  // planes
    format.bits = reader.Little16();
    if (size != kOldHeader) {
        format.compression = reader.Little32();
        format.imageBytes = reader.Little32();
    }
    if (!reader.ok()) return ImageEndsEarly(kind);
    if (format.width < 0) return Malformed(kind, "has a negative width");
    if (format.bits == 0 || format.bits > 32) return Malformed(kind, "has pixels of no known size");
    return {};
}

bool HasPlainRows(const BmpFormat& format) {
    return format.compression == kPlainRows || format.compression == kMasks;
}

// The size, and the bytes that rows which are not compressed take; 0 for sizes beyond the limits, which the caller
// judges.
std::uint64_t TakeSize(const BmpFormat& format, ImageHeader& header) {
    header.width = static_cast<std::uint32_t>(format.width);
    header.height = static_cast<std::uint32_t>(format.height < 0 ? -format.height : format.height);
    if (header.width > kLargestImageSide || header.height > kLargestImageSide) return 0;
    const std::uint64_t row = (std::uint64_t{header.width} * format.bits + 31) / 32 * 4;
    return row * header.height;
}

// --- ICO

constexpr std::uint32_t kUsualIconWidth = 32;

struct IconEntry {
    std::uint32_t width = 0, size = 0, offset = 0;
};

Result ScanIconPicture(std::string_view bytes, const IconEntry& entry, ImageHeader& header) {
    if (entry.offset > bytes.size() || entry.size > bytes.size() - entry.offset)
        return ImageEndsEarly(ImageKind::kIcon);
    const std::string_view picture = bytes.substr(entry.offset, entry.size);
    if (picture.starts_with(kPngStart)) {
        header.png = picture;
        return ScanPng(picture, header);
    }
    ByteReader reader(picture);
    BmpFormat format;
    if (Result result = ReadBmpFormat(reader, ImageKind::kIcon, format); !result.ok()) return result;
    if (!HasPlainRows(format))
        return ImageFault(ImageKind::kIcon, ErrorCode::kUnsupported, "is compressed in an unknown way");
    format.height /= 2;  // the picture and its mask
    if (TakeSize(format, header) + kHeader > picture.size()) return ImageEndsEarly(ImageKind::kIcon);
    return {};
}

}  // namespace

Result ScanPng(std::string_view bytes, ImageHeader& header) {
    constexpr std::uint32_t kHeaderSize = 13;
    ByteReader reader(bytes, kPngStart.size());
    if (reader.Big32() != kHeaderSize || reader.Take(4) != "IHDR")
        return reader.ok() ? Malformed(ImageKind::kPng, "does not begin with its header")
                           : ImageEndsEarly(ImageKind::kPng);
    header.width = reader.Big32();
    header.height = reader.Big32();
    reader.Skip(kHeaderSize - 8 + 4);  // with its check sum
    while (reader.ok()) {
        const std::uint32_t size = reader.Big32();
        const std::string_view type = reader.Take(4);
        reader.Skip(size);
        reader.Skip(4);
        if (reader.ok() && type == "IEND") return {};
    }
    return ImageEndsEarly(ImageKind::kPng);
}

std::string PngEssentials(std::string_view bytes) {
    constexpr std::size_t kAroundData = 12;  // size, type, check sum
    std::string essentials(kPngStart);
    ByteReader reader(bytes, kPngStart.size());
    while (!reader.AtEnd() && reader.ok()) {
        const std::size_t begin = reader.Position();
        const std::uint32_t size = reader.Big32();
        const std::string_view type = reader.Take(4);
        reader.Skip(size);
        reader.Skip(4);
        if (!reader.ok()) break;
        const bool critical = type[0] >= 'A' && type[0] <= 'Z';
        if (critical || type == "tRNS") essentials += bytes.substr(begin, size + kAroundData);
        if (type == "IEND") break;
    }
    return essentials;
}

Result ScanJpeg(std::string_view bytes, ImageHeader& header) {
    ByteReader reader(bytes, 2);
    bool sized = false;
    int scans = 0;
    std::uint8_t marker = NextMarker(reader);
    while (reader.ok() && marker != kEndOfPicture) {
        if (marker == 0) return Malformed(ImageKind::kJpeg, "has no marker where one is due");
        if (StandsAlone(marker)) {
            marker = NextMarker(reader);
            continue;
        }
        const std::uint16_t size = reader.Big16();
        if (reader.ok() && size < 2) return Malformed(ImageKind::kJpeg, "has a segment of no size");
        ByteReader segment(reader.Take(static_cast<std::size_t>(size - 2)));
        if (IsFrameSegment(marker) && !sized) {
            segment.Skip(1);  // bits of a sample
            header.height = segment.Big16();
            header.width = segment.Big16();
            if (reader.ok() && !segment.ok()) return Malformed(ImageKind::kJpeg, "has no size");
            sized = true;
        }
        if (marker == kStartOfScan && ++scans > kMostJpegScans)
            return ImageFault(ImageKind::kJpeg, ErrorCode::kLimit,
                              "has more than " + PrintInt(kMostJpegScans) + " scans");
        marker = marker == kStartOfScan ? SkipCodedData(reader) : NextMarker(reader);
    }
    if (!reader.ok()) return ImageEndsEarly(ImageKind::kJpeg);
    return sized && scans > 0 ? Result{} : Malformed(ImageKind::kJpeg, "holds no picture");
}

Result ScanBmp(std::string_view bytes, ImageHeader& header) {
    ByteReader reader(bytes, 10);
    const std::uint32_t offset = reader.Little32();
    BmpFormat format;
    if (Result result = ReadBmpFormat(reader, ImageKind::kBmp, format); !result.ok()) return result;
    std::uint64_t needed = TakeSize(format, header);
    if (format.compression == kRunLength8 || format.compression == kRunLength4) {
        needed = format.imageBytes;
        if (needed == 0) return Malformed(ImageKind::kBmp, "does not say how long it is");
    } else if (!HasPlainRows(format)) {
        return ImageFault(ImageKind::kBmp, ErrorCode::kUnsupported, "is compressed in an unknown way");
    }
    if (offset + needed > bytes.size()) return ImageEndsEarly(ImageKind::kBmp);
    return {};
}

Result ScanIcon(std::string_view bytes, ImageHeader& header) {
    ByteReader reader(bytes, 4);
    const std::uint16_t count = reader.Little16();
    if (reader.ok() && count == 0) return Malformed(ImageKind::kIcon, "holds no picture");
    IconEntry chosen;
    for (std::uint32_t i = 0; i < count && reader.ok(); ++i) {
        IconEntry entry;
        entry.width = reader.Byte();
        reader.Skip(7);
        entry.size = reader.Little32();
        entry.offset = reader.Little32();
        const bool usual = entry.width == kUsualIconWidth && chosen.width != kUsualIconWidth;
        if (i != 0 && !usual) continue;
        chosen = entry;
        header.picture = i;
    }
    if (!reader.ok()) return ImageEndsEarly(ImageKind::kIcon);
    Result result = ScanIconPicture(bytes, chosen, header);
    header.kind = ImageKind::kIcon;
    return result;
}

}  // namespace brindle
