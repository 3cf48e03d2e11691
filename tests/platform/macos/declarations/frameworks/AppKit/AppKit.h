// What platform/macos calls of this framework, declared by ourselves for machines that have no SDK.
#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSUInteger NSApplicationActivationOptions;
enum : NSApplicationActivationOptions { NSApplicationActivateAllWindows = 1 };

typedef NSInteger NSApplicationActivationPolicy;
enum : NSApplicationActivationPolicy {
    NSApplicationActivationPolicyRegular = 0,
    NSApplicationActivationPolicyAccessory = 1
};

@interface NSRunningApplication : NSObject
@property(readonly, getter=isTerminated) BOOL terminated;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSURL* bundleURL;
@property(readonly) pid_t processIdentifier;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:
    (NSString*)bundleIdentifier;
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end

@interface NSImage : NSObject
- (void)drawInRect:(NSRect)dstSpacePortionRect
          fromRect:(NSRect)srcSpacePortionRect
         operation:(NSUInteger)op
          fraction:(CGFloat)requestedAlpha;
@end

typedef NSUInteger NSCompositingOperation;
enum : NSCompositingOperation { NSCompositingOperationCopy = 1 };

__attribute__((availability(macos, introduced = 10.15)))
@interface NSWorkspaceOpenConfiguration : NSObject
@property BOOL activates;
+ (instancetype)configuration;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(nullable void (^)(NSRunningApplication* _Nullable app,
                                                NSError* _Nullable error))completionHandler
    __attribute__((availability(macos, introduced = 10.15)));
- (NSImage*)iconForFile:(NSString*)fullPath;
@end

@interface NSApplication : NSObject
@property(class, readonly, strong) NSApplication* sharedApplication;
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
@end

@interface NSWindow : NSObject
- (void)makeKeyAndOrderFront:(nullable id)sender;
@end

@interface NSView : NSObject
@property(nullable, readonly, assign) NSWindow* window;
@end

typedef NSString* NSColorSpaceName;
extern "C" const NSColorSpaceName NSDeviceRGBColorSpace;

@interface NSBitmapImageRep : NSObject
@property(nullable, readonly) unsigned char* bitmapData;
@property(readonly) NSInteger bytesPerRow;
- (nullable instancetype)initWithBitmapDataPlanes:(unsigned char* _Nullable* _Nullable)planes
                                       pixelsWide:(NSInteger)width
                                       pixelsHigh:(NSInteger)height
                                    bitsPerSample:(NSInteger)bps
                                  samplesPerPixel:(NSInteger)spp
                                         hasAlpha:(BOOL)alpha
                                         isPlanar:(BOOL)isPlanar
                                   colorSpaceName:(NSColorSpaceName)colorSpaceName
                                      bytesPerRow:(NSInteger)rBytes
                                     bitsPerPixel:(NSInteger)pBits;
@end

@interface NSGraphicsContext : NSObject
@property(class, nullable, strong) NSGraphicsContext* currentContext;
+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmapRep;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

#pragma clang assume_nonnull end
