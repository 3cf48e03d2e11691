#include "platform/macos/fakes/Settings.h"

#include "platform/macos/fakes/Objects.h"

#include <AppKit/AppKit.h>

namespace hollowfernpike::test {

namespace {

NSUserDefaults* settings() {
    return [NSUserDefaults standardUserDefaults];
}

} // namespace

void emptySettings() {
    @autoreleasepool {
        NSString* own = [[NSProcessInfo processInfo] processName];
        [settings() setPersistentDomain:[NSDictionary dictionary] forName:own];
    }
}

void setNumberInSettings(const std::string& key, long number) {
    @autoreleasepool {
        [settings() setObject:[NSNumber numberWithLong:number] forKey:textOf(key)];
    }
}

void setListInSettings(const std::string& key, const std::vector<std::string>& texts) {
    @autoreleasepool {
        NSMutableArray* list = [NSMutableArray array];
        for (const auto& text : texts) {
            [list addObject:textOf(text)];
        }
        [settings() setObject:list forKey:textOf(key)];
    }
}

std::vector<std::string> listInSettings(const std::string& key) {
    @autoreleasepool {
        std::vector<std::string> texts;
        for (NSString* text in [settings() arrayForKey:textOf(key)]) {
            texts.emplace_back([text UTF8String]);
        }
        return texts;
    }
}

void setOtherDomain(const std::string& name, const std::string& key, const std::string& text) {
    @autoreleasepool {
        [settings() setPersistentDomain:[NSDictionary dictionaryWithObject:textOf(text)
                                                                    forKey:textOf(key)]
                                forName:textOf(name)];
    }
}

std::uintptr_t nativeView() {
    static NSView* view = [NSView new];
    return reinterpret_cast<std::uintptr_t>(view);
}

HomeOfApplications::HomeOfApplications() {
    @autoreleasepool {
        applications_ = std::filesystem::path([NSHomeDirectory() UTF8String]) / "Applications";
    }
    std::filesystem::create_directories(applications_);
}

HomeOfApplications::~HomeOfApplications() {
    std::filesystem::remove_all(applications_);
}

} // namespace hollowfernpike::test
