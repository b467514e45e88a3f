// From: developer.apple.com, "NSDate". Not checked against a binding.
#pragma once

#import <Foundation/NSObject.h>

typedef double NSTimeInterval;
