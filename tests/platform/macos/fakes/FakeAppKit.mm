#include "platform/macos/fakes/Objects.h"

#include <AppKit/AppKit.h>
#include <Block.h>
#include <ServiceManagement/ServiceManagement.h>

#include <memory>

using hollowfernpike::test::FakeMac;
using hollowfernpike::test::MacApplication;
using hollowfernpike::test::textOf;

namespace {

NSError* errorOf(const std::string& reason) {
    return [NSError errorWithDomain:@"fake"
                               code:1
                           userInfo:[NSDictionary dictionaryWithObject:textOf(reason)
                                                                forKey:NSLocalizedDescriptionKey]];
}

} // namespace

// The runtime has instance variables only where a class is declared: subclasses have them.
@interface HFPRunningApplication : NSRunningApplication {
@public
    pid_t process;
}
+ (NSRunningApplication*)of:(const MacApplication&)application;
@end

@implementation HFPRunningApplication
+ (NSRunningApplication*)of:(const MacApplication&)application {
    HFPRunningApplication* made = [[self new] autorelease];
    made->process = application.process;
    ++FakeMac::shared().alive;
    return made;
}
- (void)dealloc {
    --FakeMac::shared().alive;
    [super dealloc];
}
- (pid_t)processIdentifier {
    return process;
}
@end

@implementation NSRunningApplication
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
    NSMutableArray* found = [NSMutableArray array];
    for (const auto& application : FakeMac::shared().running) {
        if ([textOf(application.bundleIdentifier) isEqualToString:bundleIdentifier]) {
            [found addObject:[HFPRunningApplication of:application]];
        }
    }
    return found;
}
+ (instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid {
    const auto* application = FakeMac::shared().application(pid);
    return application == nullptr ? nil : [HFPRunningApplication of:*application];
}
- (pid_t)processIdentifier {
    return 0;
}
- (NSString*)bundleIdentifier {
    const auto& mac = FakeMac::shared().application([self processIdentifier])->bundleIdentifier;
    return mac.empty() ? nil : textOf(mac);
}
- (NSURL*)bundleURL {
    return [NSURL fileURLWithPath:textOf("/Applications/" +
                                         std::to_string([self processIdentifier]) + ".app")];
}
- (BOOL)isTerminated {
    return FakeMac::shared().application([self processIdentifier])->isTerminated;
}
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options {
    const auto process = [self processIdentifier];
    FakeMac::shared().requests.push_back("activate " + std::to_string(process) +
                                         (options == 0 ? "" : " with options"));
    return FakeMac::shared().application(process)->activates;
}
@end

@interface HFPOpenConfiguration : NSWorkspaceOpenConfiguration {
    BOOL activates_;
}
@end

@implementation HFPOpenConfiguration
- (BOOL)activates {
    return activates_;
}
- (void)setActivates:(BOOL)activates {
    activates_ = activates;
}
@end

@implementation NSWorkspaceOpenConfiguration
+ (instancetype)configuration {
    return [[HFPOpenConfiguration new] autorelease];
}
- (BOOL)activates {
    return NO;
}
- (void)setActivates:(BOOL)activates {
}
@end

@implementation NSWorkspace
+ (NSWorkspace*)sharedWorkspace {
    static NSWorkspace* shared = [self new];
    return shared;
}
- (void)openApplicationAtURL:(NSURL*)url
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication*, NSError*))handler {
    auto& mac = FakeMac::shared();
    mac.requests.push_back(std::string("open ") + [[url path] UTF8String] +
                           ([configuration activates] ? " activating" : " in background"));
    if (handler == nil) {
        mac.opening.emplace_back([](std::int32_t, const std::string&) {});
        return;
    }
    const std::shared_ptr<void> kept((void*)Block_copy(handler),
                                     [](void* block) { Block_release(block); });
    mac.opening.emplace_back([kept](std::int32_t process, const std::string& error) {
        const auto call = (void (^)(NSRunningApplication*, NSError*))kept.get();
        @autoreleasepool {
            const MacApplication opened{.process = process};
            call(error.empty() ? [HFPRunningApplication of:opened] : nil,
                 error.empty() ? nil : errorOf(error));
        }
    });
}
- (NSImage*)iconForFile:(NSString*)path {
    return [path hasPrefix:@"/nothing"] ? nil : [[NSImage new] autorelease];
}
@end

@implementation SMAppService
+ (SMAppService*)mainAppService {
    return [[self new] autorelease];
}
- (SMAppServiceStatus)status {
    return static_cast<SMAppServiceStatus>(FakeMac::shared().loginItemStatus);
}
- (BOOL)change:(SMAppServiceStatus)status error:(NSError**)error {
    auto& mac = FakeMac::shared();
    if (!mac.loginItemError.empty()) {
        *error = errorOf(mac.loginItemError);
        return NO;
    }
    mac.loginItemStatus = status;
    return YES;
}
- (BOOL)registerAndReturnError:(NSError**)error {
    return [self change:SMAppServiceStatusEnabled error:error];
}
- (BOOL)unregisterAndReturnError:(NSError**)error {
    return [self change:SMAppServiceStatusNotRegistered error:error];
}
@end

@implementation NSApplication
+ (NSApplication*)sharedApplication {
    static NSApplication* shared = [self new];
    return shared;
}
- (void)activateIgnoringOtherApps:(BOOL)ignore {
    FakeMac::shared().requests.emplace_back(ignore ? "activate us" : "activate us politely");
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
    FakeMac::shared().activationPolicy = policy;
    return YES;
}
@end

@implementation NSWindow
- (void)makeKeyAndOrderFront:(id)sender {
    FakeMac::shared().requests.emplace_back(sender == nil ? "window in front"
                                                          : "window with sender");
}
@end

@implementation NSView
- (NSWindow*)window {
    return [[NSWindow new] autorelease];
}
@end

const NSColorSpaceName NSDeviceRGBColorSpace = @"NSDeviceRGBColorSpace";

// Rows are longer than what they show, as those of the system may be.
@interface HFPBitmap : NSBitmapImageRep {
    unsigned char* bytes_;
    NSInteger side_;
}
@end

@implementation HFPBitmap
- (instancetype)initWithSide:(NSInteger)side {
    self = [super init];
    side_ = side;
    bytes_ = static_cast<unsigned char*>(calloc(static_cast<size_t>([self bytesPerRow] * side), 1));
    ++FakeMac::shared().alive;
    return self;
}
- (void)dealloc {
    --FakeMac::shared().alive;
    free(bytes_);
    [super dealloc];
}
- (NSInteger)bytesPerRow {
    return side_ * 4 + 16;
}
- (unsigned char*)bitmapData {
    return bytes_;
}
@end

@implementation NSBitmapImageRep
- (instancetype)initWithBitmapDataPlanes:(unsigned char**)planes
                              pixelsWide:(NSInteger)width
                              pixelsHigh:(NSInteger)height
                           bitsPerSample:(NSInteger)bits
                         samplesPerPixel:(NSInteger)samples
                                hasAlpha:(BOOL)alpha
                                isPlanar:(BOOL)isPlanar
                          colorSpaceName:(NSColorSpaceName)colorSpace
                             bytesPerRow:(NSInteger)bytesPerRow
                            bitsPerPixel:(NSInteger)bitsPerPixel {
    [self release];
    const bool isAsked = planes == nullptr && width == height && bits == 8 && samples == 4 &&
                         alpha && !isPlanar && colorSpace == NSDeviceRGBColorSpace &&
                         bytesPerRow == 0 && bitsPerPixel == 0;
    return isAsked ? [[HFPBitmap alloc] initWithSide:width] : nil;
}
- (NSInteger)bytesPerRow {
    return 0;
}
- (unsigned char*)bitmapData {
    return nullptr;
}
@end

namespace {
NSBitmapImageRep* canvas; // on which is drawn
int savedStates;
} // namespace

@implementation NSGraphicsContext
+ (NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)rep {
    canvas = rep;
    return [[self new] autorelease];
}
+ (NSGraphicsContext*)currentContext {
    return nil;
}
+ (void)setCurrentContext:(NSGraphicsContext*)context {
    canvas = context == nil ? nil : canvas;
}
+ (void)saveGraphicsState {
    ++savedStates;
}
+ (void)restoreGraphicsState {
    if (--savedStates == 0) {
        canvas = nil;
    }
}
@end

// Each pixel is its row, its column, and two marks.
@implementation NSImage
- (void)drawInRect:(NSRect)place
          fromRect:(NSRect)part
         operation:(NSUInteger)operation
          fraction:(CGFloat)alpha {
    if (operation != NSCompositingOperationCopy || alpha != 1 || part.size.width != 0) {
        return;
    }
    for (NSInteger y = 0; y < static_cast<NSInteger>(place.size.height); ++y) {
        for (NSInteger x = 0; x < static_cast<NSInteger>(place.size.width); ++x) {
            unsigned char* pixel = [canvas bitmapData] + y * [canvas bytesPerRow] + x * 4;
            pixel[0] = static_cast<unsigned char>(y);
            pixel[1] = static_cast<unsigned char>(x);
            pixel[2] = 3;
            pixel[3] = 255;
        }
    }
}
@end
