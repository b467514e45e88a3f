// From: developer.apple.com, "NSLog". No binding has it.
#pragma once

#import <Foundation/NSString.h>

NS_ASSUME_NONNULL_BEGIN

extern "C" void NSLog(NSString* format, ...) __attribute__((format(__NSString__, 1, 2)));

NS_ASSUME_NONNULL_END
