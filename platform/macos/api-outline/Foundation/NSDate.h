// From: developer.apple.com, "NSDate". Checked against: objc2's generated Foundation/NSDate.rs (MIT).
#pragma once

#import <Foundation/NSObject.h>

typedef double NSTimeInterval;
