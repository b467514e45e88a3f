// From: developer.apple.com, "CALayer". Binding: xamarin-macios src/coreanimation.cs.
#pragma once

#import <Foundation/Foundation.h>

@interface CALayer : NSObject
@property CGFloat cornerRadius;
@property BOOL masksToBounds;
@end
