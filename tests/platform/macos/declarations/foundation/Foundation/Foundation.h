// What platform/macos calls of this framework, declared by ourselves for machines that have no SDK.
#pragma once

#include <stddef.h>
#include <stdint.h>

#define nil nullptr
#define YES __objc_yes
#define NO __objc_no

typedef signed char BOOL;
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double CGFloat;
typedef struct _NSZone NSZone;

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

struct CGPoint {
    CGFloat x;
    CGFloat y;
};
struct CGSize {
    CGFloat width;
    CGFloat height;
};
struct CGRect {
    CGPoint origin;
    CGSize size;
};
typedef CGRect NSRect;

#pragma clang assume_nonnull begin

inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return {{x, y}, {width, height}};
}
extern "C" const NSRect NSZeroRect;

@class NSString;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)aClass;
@end

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

@protocol NSCopying
- (id)copyWithZone:(nullable NSZone*)zone;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (instancetype)autorelease __attribute__((unavailable("with automatic reference counting")));
@end

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying>
@property(readonly) NSUInteger length;
@property(nullable, readonly) const char* UTF8String;
@property(readonly, copy) NSString* precomposedStringWithCanonicalMapping;
- (BOOL)isEqualToString:(NSString*)aString;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)len
                              encoding:(NSStringEncoding)encoding;
@end

@interface NSNumber : NSObject
@property(readonly) double doubleValue;
+ (NSNumber*)numberWithBool:(BOOL)value;
@end

@interface NSArray<__covariant Element> : NSObject <NSFastEnumeration>
@end

@interface NSDictionary<__covariant Key, __covariant Object> : NSObject <NSFastEnumeration>
+ (instancetype)dictionaryWithObjects:(const Object _Nonnull[_Nullable])objects
                              forKeys:(const Key<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)cnt;
- (nullable Object)objectForKey:(Key)aKey;
@end

@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSURL : NSObject
+ (NSURL*)fileURLWithPath:(NSString*)path;
@end

@interface NSBundle : NSObject
@property(nullable, readonly, copy) NSString* bundleIdentifier;
+ (nullable instancetype)bundleWithPath:(NSString*)path;
@end

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (NSString*)displayNameAtPath:(NSString*)path;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
- (nullable NSDictionary<NSString*, id>*)persistentDomainForName:(NSString*)domainName;
@end

typedef NSUInteger NSSearchPathDirectory;
enum : NSSearchPathDirectory { NSApplicationSupportDirectory = 14 };
typedef NSUInteger NSSearchPathDomainMask;
enum : NSSearchPathDomainMask { NSUserDomainMask = 1 };

extern "C" {
NSString* NSHomeDirectory(void);
NSArray<NSString*>* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                                        NSSearchPathDomainMask domainMask,
                                                        BOOL expandTilde);
}

#pragma clang assume_nonnull end
