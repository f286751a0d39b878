// Shared pictures and bitmaps: many widgets that show the same file share one loaded picture. A process-wide cache
// counts how often each was created and released. Files are PNG, GIF, JPEG, BMP and ICO, named by host paths; what is
// decoded and refused is the desktop's business, and without one nothing is decoded.
//
// Pictures are as they were when they were first loaded: a file that changes is read again only after its last
// release. Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/ui/bitmap.h"
#include "brindle/framework/ui/picture.h"

// The picture in the file, with one reference for the caller, or null, nothing cached, when the file cannot be read or
// decoded, or its absolute path is longer than 260 characters. Paths that differ in letter case only are the same. A
// file whose name ends in "gif" or "png" (in any case) also offers kPictureAnimationId; of others the first frame is
// taken.
BRINDLE_API IPicture* CreateSharedPicture(const char* path);
// Gives the caller's reference back. After as many releases as creations the picture leaves the cache, and goes unless
// somebody else holds a reference. Does nothing for null and for a picture that is not in the cache.
BRINDLE_API void ReleaseSharedPicture(IPicture* picture);

// The first frame of the file on a ground of the colour (0x00BBGGRR), as large as it is on the screen, or null, nothing
// cached. The cache owns it. The same file on two colours is two bitmaps.
// Kept: the path is not made absolute, so that two ways to write one file are two bitmaps.
BRINDLE_API CBitmap* CreateSharedBitmap(const char* path, unsigned long background);
// After as many releases as creations the bitmap is destroyed. Does nothing for null and for a bitmap that is not in
// the cache.
BRINDLE_API void ReleaseSharedBitmap(CBitmap* bitmap);
