// What platform/macos calls of this framework, declared by ourselves for machines that have no SDK.
#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef enum : NSInteger {
    SMAppServiceStatusNotRegistered = 0,
    SMAppServiceStatusEnabled = 1,
    SMAppServiceStatusRequiresApproval = 2,
    SMAppServiceStatusNotFound = 3
} SMAppServiceStatus;

__attribute__((availability(macos, introduced = 13.0)))
@interface SMAppService : NSObject
@property(class, readonly, strong) SMAppService* mainAppService;
@property(readonly) SMAppServiceStatus status;
- (BOOL)registerAndReturnError:(NSError* _Nullable __autoreleasing* _Nullable)error;
- (BOOL)unregisterAndReturnError:(NSError* _Nullable __autoreleasing* _Nullable)error;
@end

#pragma clang assume_nonnull end
