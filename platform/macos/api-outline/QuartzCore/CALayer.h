// From: developer.apple.com, "CALayer". Not checked against a binding.
#pragma once

#import <Foundation/Foundation.h>

@interface CALayer : NSObject
@property CGFloat cornerRadius;
@property BOOL masksToBounds;
@end
