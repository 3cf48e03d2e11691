#include "platform/macos/ApplicationBundles.h"

#include "platform/macos/Text.h"

#include <AppKit/AppKit.h>

#include <filesystem>
#include <system_error>

namespace hollowfernpike::macos {

namespace {

constexpr std::string_view extension = ".app";

NSBundle* bundleOrNil(const std::string& path) {
    NSString* place = text(path);
    return [place length] == 0 ? nil : [NSBundle bundleWithPath:place];
}

std::vector<std::filesystem::path> bundlesIn(const std::filesystem::path& directory) {
    std::error_code ignored;
    std::vector<std::filesystem::path> bundles;
    for (std::filesystem::recursive_directory_iterator entry(
             directory, std::filesystem::directory_options::skip_permission_denied, ignored);
         !ignored && entry != std::filesystem::recursive_directory_iterator();
         entry.increment(ignored)) {
        const bool isBundle = entry->path().extension() == extension;
        if (isBundle) {
            bundles.push_back(entry->path());
        }
        if (isBundle || entry.depth() > 0) {
            entry.disable_recursion_pending();
        }
    }
    return bundles;
}

/// An empty picture, whose rows may be longer than what they show.
NSBitmapImageRep* canvasOf(int side) {
    return pooled([[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                          pixelsWide:side
                                                          pixelsHigh:side
                                                       bitsPerSample:8
                                                     samplesPerPixel:4
                                                            hasAlpha:YES
                                                            isPlanar:NO
                                                      colorSpaceName:NSDeviceRGBColorSpace
                                                         bytesPerRow:0
                                                        bitsPerPixel:0]);
}

void drawInto(NSBitmapImageRep* canvas, NSImage* image, int side) {
    [NSGraphicsContext saveGraphicsState];
    [NSGraphicsContext
        setCurrentContext:[NSGraphicsContext graphicsContextWithBitmapImageRep:canvas]];
    [image drawInRect:NSMakeRect(0, 0, side, side)
             fromRect:NSZeroRect
            operation:NSCompositingOperationCopy
             fraction:1];
    [NSGraphicsContext restoreGraphicsState];
}

platform::IconPixels pixelsOf(NSBitmapImageRep* canvas, int side) {
    platform::IconPixels pixels{.side = side, .bytes = {}};
    const auto width = static_cast<std::ptrdiff_t>(side) * 4;
    const auto step = static_cast<std::ptrdiff_t>([canvas bytesPerRow]);
    const std::uint8_t* row = [canvas bitmapData];
    for (int y = 0; y < side; ++y, row += step) {
        pixels.bytes.insert(pixels.bytes.end(), row, row + width);
    }
    return pixels;
}

} // namespace

std::optional<platform::ApplicationBundle> ApplicationBundles::bundleAt(const std::string& path) {
    @autoreleasepool {
        NSBundle* bundle = bundleOrNil(path);
        if (bundle == nil) {
            return std::nullopt;
        }
        NSString* identifier = [bundle bundleIdentifier];
        return platform::ApplicationBundle{
            .bundleIdentifier = identifier == nil ? std::nullopt : std::optional(utf8(identifier))};
    }
}

std::string ApplicationBundles::displayName(const std::string& path,
                                            std::string_view /*language*/) {
    @autoreleasepool {
        if (bundleOrNil(path) == nil) {
            return {};
        }
        auto name = utf8([[NSFileManager defaultManager] displayNameAtPath:text(path)]);
        if (name.ends_with(extension)) {
            name.erase(name.size() - extension.size());
        }
        return name;
    }
}

platform::FileIcon ApplicationBundles::iconForFile(const std::string& path) {
    return {.themeName = {}, .imageFile = {}, .drawnFor = path};
}

std::optional<platform::IconPixels> ApplicationBundles::drawIcon(const std::string& file,
                                                                 int side) {
    @autoreleasepool {
        NSString* path = text(file);
        if ([path length] == 0 || side <= 0) {
            return std::nullopt;
        }
        NSImage* image = [[NSWorkspace sharedWorkspace] iconForFile:path];
        NSBitmapImageRep* canvas = canvasOf(side);
        if (image == nil || canvas == nil) {
            return std::nullopt;
        }
        drawInto(canvas, image, side);
        return pixelsOf(canvas, side);
    }
}

platform::Standing ApplicationBundles::standingOf(const std::string& path) {
    @autoreleasepool {
        return bundleOrNil(path) == nil ? platform::Standing::gone : platform::Standing::fine;
    }
}

std::vector<platform::InstalledApplication>
ApplicationBundles::installedApplications(std::string_view language) {
    std::vector<platform::InstalledApplication> installed;
    for (const auto& directory : applicationDirectories()) {
        for (const auto& bundle : bundlesIn(directory)) {
            const auto& path = bundle.native();
            const auto found = bundleAt(path);
            if (found && found->bundleIdentifier) {
                installed.push_back({.path = path,
                                     .bundleIdentifier = *found->bundleIdentifier,
                                     .name = displayName(path, language),
                                     .genericName = {},
                                     .keywords = {},
                                     .icon = iconForFile(path)});
            }
        }
    }
    return installed;
}

std::vector<std::string> ApplicationBundles::applicationDirectories() {
    @autoreleasepool {
        const std::string places[] = {"/Applications", utf8(NSHomeDirectory()) + "/Applications",
                                      "/System/Applications"};
        std::vector<std::string> directories;
        for (const auto& place : places) {
            std::error_code unknown;
            if (std::filesystem::is_directory(place, unknown)) {
                directories.push_back(place);
            }
        }
        return directories;
    }
}

} // namespace hollowfernpike::macos
