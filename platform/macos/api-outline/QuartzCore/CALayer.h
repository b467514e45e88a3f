// From: developer.apple.com, "CALayer". Checked against: objc2's generated QuartzCore/CALayer.rs (MIT).
#pragma once

#import <Foundation/Foundation.h>

@interface CALayer : NSObject
@property CGFloat cornerRadius;
@property BOOL masksToBounds;
@end
