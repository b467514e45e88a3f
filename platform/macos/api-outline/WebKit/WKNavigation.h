// From: developer.apple.com, "WKNavigation", "WKNavigationAction", "WKNavigationResponse", "WKFrameInfo".
// Checked against: xamarin-macios src/wkwebkit.cs.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, WKNavigationType) {
  WKNavigationTypeLinkActivated = 0,
};

@interface WKNavigation : NSObject
@end

@interface WKFrameInfo : NSObject <NSCopying>
@property(nonatomic, readonly, getter=isMainFrame) BOOL mainFrame;
@end

@interface WKNavigationAction : NSObject
@property(nullable, nonatomic, readonly, copy) WKFrameInfo* targetFrame;
@property(nonatomic, readonly) WKNavigationType navigationType;
@property(nonatomic, readonly, copy) NSURLRequest* request;
@end

@interface WKNavigationResponse : NSObject
@property(nonatomic, readonly) BOOL canShowMIMEType;
@end

NS_ASSUME_NONNULL_END
